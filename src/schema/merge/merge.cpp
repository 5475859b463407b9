// SPDX-License-Identifier: Apache-2.0
// Merging of the members of a module, and of whole modules.
#include "schema/merge/merge.h"

#include <cstdarg>

#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"

namespace {

// Records a message under the module and passes the status on.
__attribute__((format(printf, 3, 4))) uint32_t Fail(const ZrMod *module, uint32_t status,
                                                    const char *format, ...)
{
    va_list args;
    va_start(args, format);
    ZR_CTX_ImplAddModError(module->ctx, module->name, ZR_LOAD_ERROR, format, args);
    va_end(args);
    return status;
}

// Runs `merge`(record) over the records up to the first failure.
template <typename Record, typename Merge>
uint32_t MergeEach(const Record *array, uint32_t count, Merge merge)
{
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; i < count && status == ZR_OK; ++i)
        status = merge(array[i]);
    return status;
}

// Takes the record that was appended last away again: a part of it could not be copied.
template <typename Owner, typename Record>
void TakeBackLast(void (*clear)(Owner *, Record *), Owner *owner, Record *array, uint16_t &count)
{
    --count;
    clear(owner, &array[count]);
    array[count] = Record();
}

uint32_t MergeImport(ZrMod *module, const ZrsImport &source)
{
    const ZrsImport *existing =
        ZRS_MOD_FindImportByPrefix(module->imports, module->importCount, source.prefix);
    if (existing != nullptr) {
        if (zr::TextEquals(existing->moduleName, source.moduleName))
            return ZR_OK;
        return Fail(module, ZR_ERR_INVALID,
                    "The import module name \"%s\" corresponding to the prefix \"%s\" is "
                    "different from the existing module name \"%s\".",
                    source.moduleName, source.prefix, existing->moduleName);
    }
    uint32_t status = ZRS_MOD_AppendOneImport(module, source.moduleName, source.prefix);
    if (status != ZR_OK)
        return Fail(module, status, "Failed to merge import module name \"%s\" with prefix \"%s\".",
                    source.moduleName, source.prefix);
    return ZR_OK;
}

uint32_t MergeInclude(ZrMod *module, const ZrsInclude &source)
{
    if (ZRS_MOD_FindIncludeBySubName(module->includes, module->includeCount,
                                     source.submoduleName) != nullptr)
        return ZR_OK;
    uint32_t status = ZRS_MOD_AppendOneInclude(module, source.submoduleName);
    if (status != ZR_OK)
        return Fail(module, status, "Failed to merge include module name \"%s\".",
                    source.submoduleName);
    return ZR_OK;
}

// The new feature is off, whatever the source's was: the application turns features on.
uint32_t MergeFeature(ZrMod *module, const ZrsFeature &source)
{
    const ZrsFeature *existing = ZRS_MOD_FindFeatureByName(module, source.name);
    if (existing != nullptr) {
        if (ZRS_MOD_CheckTwoFeatureSame(existing, &source) != 0)
            return ZR_OK;
        return Fail(module, ZR_ERR_INVALID,
                    "The if-feature informations of the feature \"%s\" are different from "
                    "the existing feature",
                    source.name);
    }
    uint32_t status = ZRS_MOD_AppendOneFeature(module, source.name);
    if (status != ZR_OK)
        return Fail(module, status, "Failed to merge feature name \"%s\".", source.name);
    ZrDict *dict = &module->ctx->dict;
    ZrsFeature *feature = &module->features[module->featureCount - 1];
    feature->ifFeatures =
        ZRS_NODE_CopyIfFeaturesArray(dict, source.ifFeatures, source.ifFeatureCount);
    if (feature->ifFeatures == nullptr && source.ifFeatureCount != 0) {
        TakeBackLast(ZRS_MDL_ClearFeature, dict, module->features, module->featureCount);
        return Fail(module, ZR_ERR_NO_MEMORY,
                    "Failed to merge if-feature informations of feature \"%s\".", source.name);
    }
    feature->ifFeatureCount = source.ifFeatureCount;
    return ZR_OK;
}

// Copies bases and if-features; null, or the message of what failed.
const char *CopyIdentityParts(ZrDict *dict, ZrsIdentity *identity, const ZrsIdentity &source)
{
    identity->bases = ZRS_MOD_CopyIdentBaseArray(dict, source.bases, source.baseCount);
    if (identity->bases == nullptr && source.baseCount != 0)
        return "Failed to merge base informations of identity \"%s\".";
    identity->baseCount = source.baseCount;
    identity->ifFeatures =
        ZRS_NODE_CopyIfFeaturesArray(dict, source.ifFeatures, source.ifFeatureCount);
    if (identity->ifFeatures == nullptr && source.ifFeatureCount != 0)
        return "Failed to merge if-feature informations of identity \"%s\".";
    identity->ifFeatureCount = source.ifFeatureCount;
    return nullptr;
}

// The description stays behind (docs/oddities.md).
uint32_t MergeIdentity(ZrMod *module, const ZrsIdentity &source)
{
    const ZrsIdentity *existing = ZRS_MOD_FindIdentityByName(module, source.name);
    if (existing != nullptr) {
        if (ZRS_MOD_CheckTwoIdentitySame(existing, &source) != 0)
            return ZR_OK;
        return Fail(
            module, ZR_ERR_INVALID,
            "The information of the identity \"%s\" is different from the existing identity",
            source.name);
    }
    uint32_t status = ZRS_MOD_AppendOneIdentity(module, source.name);
    if (status != ZR_OK)
        return Fail(module, status, "Failed to merge identity name \"%s\".", source.name);
    ZrDict *dict = &module->ctx->dict;
    const char *failure =
        CopyIdentityParts(dict, &module->identities[module->identityCount - 1], source);
    if (failure == nullptr)
        return ZR_OK;
    TakeBackLast(ZRS_MDL_ClearIdentity, dict, module->identities, module->identityCount);
    return Fail(module, ZR_ERR_NO_MEMORY, failure, source.name);
}

uint32_t MergeExtension(ZrMod *module, const ZrsExtension &source)
{
    const ZrsExtension *existing = ZRS_MOD_FindExtensionByName(module, source.name);
    if (existing != nullptr) {
        if (ZRS_MOD_CheckTwoExtensionSame(existing, &source) != 0)
            return ZR_OK;
        return Fail(
            module, ZR_ERR_INVALID,
            "The information of the extension \"%s\" is different from the existing extension",
            source.name);
    }
    uint32_t status =
        ZRS_MOD_AppendOneExtension(module, source.name, source.argument, source.yinElement);
    if (status != ZR_OK)
        return Fail(module, status, "Failed to merge extension name \"%s\".", source.name);
    return ZR_OK;
}

// ZRS_MOD_CheckSameDeviationExist takes no two deviations for the same, so that each one is added.
uint32_t MergeDeviation(ZrMod *module, const ZrsDeviation &source)
{
    uint32_t status = ZRS_MOD_AppendOneDeviation(module, source.targetPath);
    if (status != ZR_OK)
        return Fail(module, status, "Failed to merge deviation \"%s\".", source.targetPath);
    ZrsDeviation *deviation = &module->deviations[module->deviationCount - 1];
    deviation->deviates =
        ZRS_MOD_CopyDeviateArray(module->ctx, source.deviates, source.deviateCount);
    if (deviation->deviates == nullptr && source.deviateCount != 0) {
        TakeBackLast(ZRS_MOD_ClearDeviation, module->ctx, module->deviations,
                     module->deviationCount);
        return Fail(module, ZR_ERR_NO_MEMORY,
                    "Failed to merge deviate informations of deviation \"%s\".", source.targetPath);
    }
    deviation->deviateCount = source.deviateCount;
    return ZR_OK;
}

// A typedef that is there is kept without a comparison.
uint32_t MergeTypeDef(ZrMod *module, const ZrsTypDef &source)
{
    if (ZRS_MOD_FindZrsTypDefByName(module, source.name) != nullptr)
        return ZR_OK;
    uint32_t status =
        ZRS_MOD_AppendOneTypeDef(module, source.name, &source.realType, source.defaultValue);
    if (status != ZR_OK)
        return Fail(module, status, "Failed to merge typedef \"%s\".", source.name);
    return ZR_OK;
}

uint32_t MergeModuleExtInsts(ZrMod *module, const ZrMod *source)
{
    uint32_t status =
        ZRS_EXT_MergeExtInsts(&module->ctx->dict, &module->extInsts, &module->extInstCount,
                              source->extInsts, source->extInstCount);
    if (status != ZR_OK)
        return Fail(module, status, "Failed to merge global extension instance informations.");
    return ZR_OK;
}

bool Mergeable(const ZrMod *destination, const ZrMod *source)
{
    return destination != nullptr && source != nullptr && destination != source &&
           destination->ctx != nullptr && destination->ctx == source->ctx;
}

// Merges one kind of member.
template <typename Record>
uint32_t MergeMembers(ZrMod *destination, const ZrMod *source, Record *ZrMod::*array,
                      uint16_t ZrMod::*count, uint32_t (*merge)(ZrMod *, const Record &))
{
    if (!Mergeable(destination, source))
        return ZR_ERR_INVALID;
    return MergeEach(source->*array, source->*count,
                     [=](const Record &record) { return merge(destination, record); });
}

} // namespace

uint32_t ZRS_MOD_MergeNonNodeMemberImport(ZrMod *destination, const ZrMod *source)
{
    return MergeMembers(destination, source, &ZrMod::imports, &ZrMod::importCount, MergeImport);
}

uint32_t ZRS_MOD_MergeNonNodeMemberInclude(ZrMod *destination, const ZrMod *source)
{
    return MergeMembers(destination, source, &ZrMod::includes, &ZrMod::includeCount, MergeInclude);
}

uint32_t ZRS_MOD_MergeNonNodeMemberFeature(ZrMod *destination, const ZrMod *source)
{
    return MergeMembers(destination, source, &ZrMod::features, &ZrMod::featureCount, MergeFeature);
}

uint32_t ZRS_MOD_MergeNonNodeMemberIdentity(ZrMod *destination, const ZrMod *source)
{
    return MergeMembers(destination, source, &ZrMod::identities, &ZrMod::identityCount,
                        MergeIdentity);
}

uint32_t ZRS_MOD_MergeNonNodeMemberExtension(ZrMod *destination, const ZrMod *source)
{
    return MergeMembers(destination, source, &ZrMod::extensions, &ZrMod::extensionCount,
                        MergeExtension);
}

uint32_t ZRS_MOD_MergeNonNodeMemberDeviation(ZrMod *destination, const ZrMod *source)
{
    return MergeMembers(destination, source, &ZrMod::deviations, &ZrMod::deviationCount,
                        MergeDeviation);
}

// The copies are resolved once all of them are there: a typedef may stand before the one that it is
// derived from, and the array does not move any more.
uint32_t ZRS_MOD_MergeNonNodeMemberTypeDef(ZrMod *destination, const ZrMod *source)
{
    if (!Mergeable(destination, source))
        return ZR_ERR_INVALID;
    if (source->typedefCount != 0)
        zr::ForgetResolvedOfModule(destination);
    uint32_t first = destination->typedefCount;
    uint32_t status =
        MergeMembers(destination, source, &ZrMod::typedefs, &ZrMod::typedefCount, MergeTypeDef);
    for (uint32_t i = first; i < destination->typedefCount && status == ZR_OK; ++i) {
        ZrsTypDef *added = &destination->typedefs[i];
        status = zr::ResolveAgain(&added->realType, destination);
        if (status != ZR_OK)
            return Fail(destination, status, "Failed to update real type of typedef \"%s\".",
                        added->name);
    }
    return status;
}

uint32_t ZRS_MOD_MergeGlobalDefData(ZrMod *destination, const ZrMod *source)
{
    static constexpr uint32_t (*kKinds[])(ZrMod *, const ZrMod *) = {
        ZRS_MOD_MergeNonNodeMemberImport,    ZRS_MOD_MergeNonNodeMemberInclude,
        ZRS_MOD_MergeNonNodeMemberFeature,   ZRS_MOD_MergeNonNodeMemberIdentity,
        ZRS_MOD_MergeNonNodeMemberExtension, ZRS_MOD_MergeNonNodeMemberDeviation,
        ZRS_MOD_MergeNonNodeMemberTypeDef,   MergeModuleExtInsts,
    };
    if (!Mergeable(destination, source))
        return ZR_ERR_INVALID;
    for (auto merge : kKinds) {
        uint32_t status = merge(destination, source);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_MOD_MergeTreeNodeData(ZrMod *destination, ZrMod *source)
{
    if (!Mergeable(destination, source))
        return ZR_ERR_INVALID;
    for (ZrNode *ZrMod::*list : zr::kTopChains) {
        uint32_t status = ZRS_NODE_MergeTreeNodeFromRootStart(
            &(destination->*list), &(source->*list), nullptr, destination);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_MOD_MergeTwoModuleInSameCtx(ZrMod *destination, ZrMod *source)
{
    if (!Mergeable(destination, source))
        return ZR_ERR_INVALID;
    uint32_t status = ZRS_MOD_MergeGlobalDefData(destination, source);
    if (status != ZR_OK)
        return Fail(destination, status, "%s", "Failed to merge global definitions.");
    status = ZRS_MOD_MergeTreeNodeData(destination, source);
    if (status != ZR_OK)
        return Fail(destination, status, "%s", "Failed to merge schema tree.");
    return ZR_OK;
}
