// SPDX-License-Identifier: Apache-2.0
// What a module says of itself.
#include "schema/module/module.h"

#include <initializer_list>

#include "model/node_record.h"
#include "model/scope.h"
#include "schema/lookup/lookup.h"
#include "schema/members/ext_inst.h"

namespace {

template <typename T> T FieldOf(const ZrMod *module, T ZrMod::*field)
{
    return module == nullptr ? nullptr : module->*field;
}

} // namespace

namespace zr {

ZrMod *NewModule(ZrCtx *ctx)
{
    auto *module = New<ZrMod>();
    if (module == nullptr)
        return nullptr;
    module->ctx = ctx;
    PAL_AVL3_InitNode(&module->byNameLink);
    PAL_AVL3_InitNode(&module->byNamespaceLink);
    return module;
}

} // namespace zr

const char *ZR_MOD_GetModuleName(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::name);
}

const char *ZR_MOD_GetModuleNs(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::ns);
}

const char *ZR_MOD_GetModulePrefix(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::prefix);
}

const char *ZR_MOD_GetOrganization(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::organization);
}

const char *ZR_MOD_GetRevision(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::revision);
}

const char *ZR_MOD_GetYangVersion(const ZrMod *module)
{
    if (module == nullptr)
        return nullptr;
    return module->yangVersion == ZRS_YANG_VERSION_1_1 ? "1.1" : "1";
}

const char *ZR_MOD_GetDescription(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::description);
}

void *ZR_MOD_GetPrivate(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::privateData);
}

void ZR_MOD_SetPrivate(ZrMod *module, void *privateData)
{
    if (module != nullptr)
        module->privateData = privateData;
}

const ZrtRealType *ZR_MOD_GetRealTypeByTypDefName(const ZrMod *module, const char *name)
{
    const ZrsTypDef *found = ZRS_MOD_FindZrsTypDefByName(module, name);
    return found == nullptr ? nullptr : &found->realType;
}

const char *ZR_MOD_GetTypedefDefault(const ZrMod *module, const char *name)
{
    const ZrsTypDef *found = ZRS_MOD_FindZrsTypDefByName(module, name);
    return found == nullptr ? nullptr : found->defaultValue;
}

const char *ZR_MOD_GetTypedefUnits(const ZrMod *module, const char *name)
{
    const ZrsTypDef *found = ZRS_MOD_FindZrsTypDefByName(module, name);
    return found == nullptr ? nullptr : found->units;
}

const char *ZR_MOD_GetIdentityName(const ZrsIdentity *identity)
{
    return identity == nullptr ? nullptr : identity->name;
}

const char *ZR_MOD_GetIdentityDescription(const ZrsIdentity *identity)
{
    return identity == nullptr ? nullptr : identity->description;
}

// Scans over what a module holds. Each ends with the first result that is not 0 and returns it.

namespace {

uint32_t ScanTopNodes(ZrNode *head, ZrNodeScanFunc callback, void *userData)
{
    for (ZrNode *node = head; node != nullptr; node = node->next) {
        uint32_t result = callback(node, ZR_ARRIVAL_ROOT, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

template <typename Record, typename Visit>
uint32_t ScanRecords(const Record *records, uint32_t count, Visit visit)
{
    for (uint32_t i = 0; records != nullptr && i < count; ++i) {
        if (uint32_t result = visit(records[i]); result != 0)
            return result;
    }
    return 0;
}

} // namespace

uint32_t ZR_MOD_ScanAllFeatures(const ZrMod *module, ZrFeatureScanFunc callback, void *userData)
{
    if (module == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanRecords(module->features, module->featureCount, [=](const ZrsFeature &feature) {
        return callback(feature.name, (feature.flags & ZRS_FEATURE_ENABLED) != 0, userData);
    });
}

uint32_t ZR_MOD_ScanAllImports(const ZrMod *module, ZrImportScanFunc callback, void *userData)
{
    if (module == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanRecords(module->imports, module->importCount, [=](const ZrsImport &import) {
        const ZrMod *loaded = ZR_CTX_GetModuleByModName(module->ctx, import.moduleName);
        return callback(import.moduleName, import.prefix, ZR_MOD_GetRevision(loaded), userData);
    });
}

uint32_t ZR_MOD_ScanAllSubmodules(const ZrMod *module, ZrTextScanFunc callback, void *userData)
{
    if (module == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanRecords(module->includes, module->includeCount, [=](const ZrsInclude &include) {
        return callback(include.submoduleName, userData);
    });
}

uint32_t ZR_MOD_ScanAllDeviations(const ZrMod *module, ZrDeviationScanFunc callback, void *userData)
{
    if (module == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanRecords(
        module->deviations, module->deviationCount, [=](const ZrsDeviation &deviation) {
            zr::ModuleNameText target;
            bool named = zr::LastNamedModule(deviation.targetPath, target);
            return callback(deviation.targetPath, named ? target : nullptr,
                            (deviation.flags & ZRS_DEVIATION_COUPLED) != 0, userData);
        });
}

uint32_t ZR_MOD_ScanAllExtInsts(const ZrMod *module, ZrExtInstScanFunc callback, void *userData)
{
    if (module == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return zr::ScanExtInsts(module->extInsts, module->extInstCount, callback, userData);
}

uint32_t ZR_MOD_IterScanTopmostNode(const ZrMod *module, ZrNodeScanFunc callback, void *userData)
{
    if (module == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    for (ZrNode *head : {module->dataNodes, module->rpcs, module->notifications}) {
        uint32_t result = ScanTopNodes(head, callback, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

uint32_t ZR_MOD_IterScanAugmentNode(const ZrMod *module, ZrNodeScanFunc callback, void *userData)
{
    if (module == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanTopNodes(module->augments, callback, userData);
}

uint32_t ZR_MOD_ScanAllIdentity(const ZrMod *module, ZrIdentityScanFunc callback, void *userData)
{
    if (module == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanRecords(module->identities, module->identityCount,
                       [=](const ZrsIdentity &identity) { return callback(&identity, userData); });
}

uint32_t ZR_MOD_ScanIdentityBase(const ZrsIdentity *identity, ZrIdentBaseScanFunc callback,
                                 void *userData)
{
    if (identity == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanRecords(identity->bases, identity->baseCount, [=](const ZrsIdentBase &base) {
        return callback(base.moduleName, base.identityName, userData, identity->bases);
    });
}

uint32_t ZR_MOD_ScanIdentityIfFeatures(const ZrsIdentity *identity, ZrIfFeatureScanFunc callback,
                                       void *userData)
{
    if (identity == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanRecords(identity->ifFeatures, identity->ifFeatureCount,
                       [=](const ZrsIfFeature &condition) {
                           return callback(condition.moduleName, condition.featureName, userData);
                       });
}

uint32_t ZR_MOD_IsIdentityEnabled(const ZrsIdentity *identity, const ZrCtx *ctx)
{
    return identity != nullptr && ctx != nullptr &&
           zr::AreFeaturesOn(ctx, identity->ifFeatures, identity->ifFeatureCount);
}
