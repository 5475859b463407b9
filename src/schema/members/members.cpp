// SPDX-License-Identifier: Apache-2.0
// The members of a module that are records of their own, but for deviations.
#include "schema/members/members.h"

#include <zrschema/context.h>

#include "foundation/array.h"
#include "schema/members/condition_records.h"
#include "types/real_type.h"

// What a module names of others, or for others: imports, includes, extensions.

uint32_t ZRS_MOD_FillImport(ZrDict *dict, ZrsImport *record, const char *moduleName,
                            const char *prefix)
{
    if (dict == nullptr || record == nullptr || moduleName == nullptr || prefix == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsImport();
    if (zr::Intern(dict, record->moduleName, moduleName) &&
        zr::Intern(dict, record->prefix, prefix))
        return ZR_OK;
    ZRS_MOD_ClearImport(dict, record);
    return ZR_ERR_INVALID; // docs/oddities.md: without memory an import counts as invalid
}

uint32_t ZRS_MOD_AppendOneImport(ZrMod *module, const char *moduleName, const char *prefix)
{
    if (module == nullptr || moduleName == nullptr || prefix == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->imports, &module->importCount, [=](ZrsImport *record) {
        return ZRS_MOD_FillImport(&module->ctx->dict, record, moduleName, prefix);
    });
}

void ZRS_MOD_ClearImport(ZrDict *dict, ZrsImport *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->moduleName);
    zr::Release(dict, record->prefix);
}

void ZRS_MOD_FreeImports(ZrDict *dict, ZrsImport *array, uint32_t count)
{
    zr::FreeRecords(array, count, [dict](ZrsImport *record) { ZRS_MOD_ClearImport(dict, record); });
}

uint32_t ZRS_MOD_FillInclude(ZrDict *dict, ZrsInclude *record, const char *name)
{
    if (dict == nullptr || record == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::Intern(dict, record->submoduleName, name) ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneInclude(ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->includes, &module->includeCount, [=](ZrsInclude *record) {
        return ZRS_MOD_FillInclude(&module->ctx->dict, record, name);
    });
}

void ZRS_MOD_ClearInclude(ZrDict *dict, ZrsInclude *record)
{
    if (record != nullptr)
        zr::Release(dict, record->submoduleName);
}

void ZRS_MOD_FreeIncludes(ZrDict *dict, ZrsInclude *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [dict](ZrsInclude *record) { ZRS_MOD_ClearInclude(dict, record); });
}

uint32_t ZRS_MOD_SetExtension(ZrDict *dict, ZrsExtension *record, const char *name,
                              const char *argument, uint32_t yinElement)
{
    if (dict == nullptr || record == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsExtension();
    record->yinElement = yinElement;
    if (zr::Intern(dict, record->name, name) && zr::Intern(dict, record->argument, argument))
        return ZR_OK;
    ZRS_MDL_ClearExtension(dict, record);
    return ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneExtension(ZrMod *module, const char *name, const char *argument,
                                    uint32_t yinElement)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->extensions, &module->extensionCount, [=](ZrsExtension *record) {
        return ZRS_MOD_SetExtension(&module->ctx->dict, record, name, argument, yinElement);
    });
}

void ZRS_MDL_ClearExtension(ZrDict *dict, ZrsExtension *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->name);
    zr::Release(dict, record->argument);
}

void ZRS_MOD_FreeExtensions(ZrDict *dict, ZrsExtension *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [dict](ZrsExtension *record) { ZRS_MDL_ClearExtension(dict, record); });
}

uint32_t ZRS_MOD_CheckTwoExtensionSame(const ZrsExtension *a, const ZrsExtension *b)
{
    return a != nullptr && b != nullptr && a->name == b->name && a->argument == b->argument &&
           a->yinElement == b->yinElement;
}

// The features of a module (RFC 7950, section 7.20.1).

uint32_t ZRS_MOD_FillFeature(ZrDict *dict, ZrsFeature *record, const char *name)
{
    if (dict == nullptr || record == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::Intern(dict, record->name, name) ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneFeature(ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->features, &module->featureCount, [=](ZrsFeature *record) {
        return ZRS_MOD_FillFeature(&module->ctx->dict, record, name);
    });
}

void ZRS_MDL_ClearFeature(ZrDict *dict, ZrsFeature *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->name);
    ZRS_NODE_FreeIfFeatures(dict, record->ifFeatures, record->ifFeatureCount);
    record->ifFeatures = nullptr;
    record->ifFeatureCount = 0;
}

void ZRS_MOD_FreeFeatures(ZrDict *dict, ZrsFeature *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [dict](ZrsFeature *record) { ZRS_MDL_ClearFeature(dict, record); });
}

uint32_t ZRS_MOD_CheckTwoFeatureSame(const ZrsFeature *a, const ZrsFeature *b)
{
    return a != nullptr && b != nullptr && a->name == b->name &&
           ZRS_NODE_CheckTwoIfFeatureArraySame(a->ifFeatures, a->ifFeatureCount, b->ifFeatures,
                                               b->ifFeatureCount) != 0;
}

// Turning features on and off. The bit in the feature's record is all that there is: whoever needs
// to know reads it each time, so nothing has to be told of a change.

namespace {

uint32_t Disable(ZrsFeature *feature)
{
    if (feature == nullptr)
        return ZR_ERR_INVALID;
    feature->flags = uint16_t(feature->flags & ~ZRS_FEATURE_ENABLED);
    return ZR_OK;
}

void Enable(ZrsFeature *feature)
{
    feature->flags = uint16_t(feature->flags | ZRS_FEATURE_ENABLED);
}

} // namespace

uint32_t ZR_MOD_EnableFeature(ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    if (zr::TextEquals(name, "*")) {
        for (uint32_t i = 0; i < module->featureCount; ++i)
            Enable(&module->features[i]);
        return ZR_OK;
    }
    ZrsFeature *feature = ZRS_MOD_FindFeatureByName(module, name);
    if (feature == nullptr)
        return ZR_ERR_INVALID;
    Enable(feature);
    return ZR_OK;
}

// "*" is a name like any other here (docs/oddities.md).
uint32_t ZR_MOD_DisableFeature(ZrMod *module, const char *name)
{
    return Disable(ZRS_MOD_FindFeatureByName(module, name));
}

uint32_t ZR_CTX_IsModFeatureEnable(const ZrCtx *ctx, const char *moduleName,
                                   const char *featureName)
{
    if (ctx == nullptr || moduleName == nullptr || featureName == nullptr)
        return ZR_ERR_INVALID;
    return zr::IsFeatureOn(ctx, moduleName, featureName);
}

uint32_t ZR_CTX_DisableModFeature(ZrCtx *ctx, const char *moduleName, const char *featureName)
{
    return Disable(ZR_CTX_FindFeatureByModNameAndFeatName(ctx, moduleName, featureName));
}

// The identities of a module and their bases (RFC 7950, section 7.18).

namespace {

auto BaseClearer(ZrDict *dict)
{
    return [dict](ZrsIdentBase *record) { ZRS_MDL_ClearIdentBase(dict, record); };
}

} // namespace

uint32_t ZRS_MOD_FillIdentity(ZrDict *dict, ZrsIdentity *record, const char *name)
{
    if (dict == nullptr || record == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::Intern(dict, record->name, name) ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneIdentity(ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->identities, &module->identityCount, [=](ZrsIdentity *record) {
        return ZRS_MOD_FillIdentity(&module->ctx->dict, record, name);
    });
}

void ZRS_MDL_ClearIdentity(ZrDict *dict, ZrsIdentity *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->name);
    ZRS_MDL_FreeIdentBases(dict, record->bases, record->baseCount);
    record->bases = nullptr;
    record->baseCount = 0;
    ZRS_NODE_FreeIfFeatures(dict, record->ifFeatures, record->ifFeatureCount);
    record->ifFeatures = nullptr;
    record->ifFeatureCount = 0;
    zr::Release(dict, record->description);
}

void ZRS_MOD_FreeIdentities(ZrDict *dict, ZrsIdentity *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [dict](ZrsIdentity *record) { ZRS_MDL_ClearIdentity(dict, record); });
}

uint32_t ZRS_MOD_CheckTwoIdentitySame(const ZrsIdentity *a, const ZrsIdentity *b)
{
    return a != nullptr && b != nullptr && a->name == b->name &&
           zr::RecordsSame(a->bases, a->baseCount, b->bases, b->baseCount,
                           ZRS_MOD_CheckTwoIdentBaseSame) &&
           ZRS_NODE_CheckTwoIfFeatureArraySame(a->ifFeatures, a->ifFeatureCount, b->ifFeatures,
                                               b->ifFeatureCount) != 0;
}

uint32_t ZRS_MOD_FillIdentBase(ZrDict *dict, ZrsIdentBase *record, const char *moduleName,
                               const char *identityName)
{
    if (dict == nullptr || record == nullptr || moduleName == nullptr || identityName == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsIdentBase();
    if (zr::Intern(dict, record->moduleName, moduleName) &&
        zr::Intern(dict, record->identityName, identityName))
        return ZR_OK;
    ZRS_MDL_ClearIdentBase(dict, record);
    return ZR_ERR_NO_MEMORY;
}

ZrsIdentBase *ZRS_MOD_CopyIdentBaseArray(ZrDict *dict, const ZrsIdentBase *array, uint32_t count)
{
    return zr::CopyRecords(
        array, count,
        [dict](ZrsIdentBase *copy, const ZrsIdentBase *from) {
            return ZRS_MOD_FillIdentBase(dict, copy, from->moduleName, from->identityName);
        },
        BaseClearer(dict));
}

void ZRS_MDL_ClearIdentBase(ZrDict *dict, ZrsIdentBase *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->moduleName);
    zr::Release(dict, record->identityName);
}

void ZRS_MDL_FreeIdentBases(ZrDict *dict, ZrsIdentBase *array, uint32_t count)
{
    zr::FreeRecords(array, count, BaseClearer(dict));
}

uint32_t ZRS_MOD_CheckTwoIdentBaseSame(const ZrsIdentBase *a, const ZrsIdentBase *b)
{
    return a != nullptr && b != nullptr && a->moduleName == b->moduleName &&
           a->identityName == b->identityName;
}

// The typedefs of a module (RFC 7950, section 7.3).

uint32_t ZRS_MOD_FillTypeDef(ZrCtx *ctx, ZrsTypDef *record, const char *name,
                             const ZrtRealType *realType, const char *defaultValue)
{
    if (ctx == nullptr || record == nullptr || name == nullptr || realType == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsTypDef();
    uint32_t status = ZR_ERR_NO_MEMORY;
    if (zr::Intern(&ctx->dict, record->name, name) &&
        zr::Intern(&ctx->dict, record->defaultValue, defaultValue))
        status = ZRT_TYPE_CopyZrtRealTypeInner(ctx, &record->realType, realType) == ZR_OK
                     ? ZR_OK
                     : ZR_ERR_INVALID; // docs/oddities.md: without memory a type is invalid
    if (status != ZR_OK) {
        zr::Release(&ctx->dict, record->name);
        zr::Release(&ctx->dict, record->defaultValue);
    }
    return status;
}

uint32_t ZRS_MOD_AppendOneTypeDef(ZrMod *module, const char *name, const ZrtRealType *realType,
                                  const char *defaultValue)
{
    if (module == nullptr || name == nullptr || realType == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->typedefs, &module->typedefCount, [=](ZrsTypDef *record) {
        return ZRS_MOD_FillTypeDef(module->ctx, record, name, realType, defaultValue);
    });
}

void ZRS_TYPE_DestroyTypDefInner(ZrCtx *ctx, ZrsTypDef *record)
{
    if (ctx == nullptr || record == nullptr)
        return;
    zr::Release(&ctx->dict, record->name);
    zr::Release(&ctx->dict, record->defaultValue);
    zr::Release(&ctx->dict, record->units);
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, &record->realType);
}

void ZRS_TYPE_FreeTypDefArray(ZrCtx *ctx, ZrsTypDef *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [ctx](ZrsTypDef *record) { ZRS_TYPE_DestroyTypDefInner(ctx, record); });
}
