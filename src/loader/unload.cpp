#include "loader/unload.h"

#include <zrschema/module.h>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/text.h"
#include "schema/lookup/lookup.h"
#include "schema/module/module.h"

namespace {

// Deletes the relations in which the module is the one that augments or deviates.
void DeleteRelationsOf(ZrCtx *ctx, const ZrMod *module)
{
    void *next = nullptr;
    for (void *at = PAL_AVL3_First(&ctx->modRelations, &zr::kRelationTables); at != nullptr;
         at = next) {
        next = PAL_AVL3_Next(&ctx->modRelations, at, &zr::kRelationTables);
        const auto *table = static_cast<const ZrModRelTbl *>(at);
        bool augments =
            ZR_CTX_FindModRelationItem(table, ZR_RELATION_AUGMENTED_BY, module->name) != nullptr;
        bool deviates =
            ZR_CTX_FindModRelationItem(table, ZR_RELATION_DEVIATED_BY, module->name) != nullptr;
        // The table goes with its last relation.
        if (augments)
            ZR_CTX_DelTwoModRelation(ctx, table->moduleName, module->name,
                                     ZR_RELATION_AUGMENTED_BY);
        if (deviates)
            ZR_CTX_DelTwoModRelation(ctx, table->moduleName, module->name, ZR_RELATION_DEVIATED_BY);
    }
}

// Makes room for all features of the module, so that noting the ones that are on when its turn
// comes needs no memory.
uint32_t ReserveFeatures(const ZrCtx *ctx, ZrsPendNode *node)
{
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, node->moduleName);
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; module != nullptr && i < module->featureCount && status == ZR_OK; ++i)
        status = zr::AppendFeature(node, module->features[i].name, 0);
    return status;
}

// Starts the table with the module to be unloaded. One that was put together from several files is
// built again from the files that are there now.
uint32_t StartTable(ZrsPendTbl *table, const ZrMod *module)
{
    uint32_t status = zr::AppendPending(table, module->name);
    if (status == ZR_OK)
        ZRS_LOADER_FindModPendNodeByName(table, module->name)->doNotReload =
            module->mergeSourceCount == 0;
    return status;
}

// Collects everything that the unload needs; whatever needs memory is done here, before anything
// is changed.
uint32_t Collect(ZrCtx *ctx, const ZrMod *module, ZrsPendTbl *table)
{
    uint32_t status = StartTable(table, module);
    if (status != ZR_OK)
        return status;
    return zr::ForEachPending(table, [=](ZrsPendNode *node) {
        uint32_t result = ZRS_LOADER_PropagateModuleRemove(ctx, node->moduleName, table);
        return result != ZR_OK ? result : ReserveFeatures(ctx, node);
    });
}

uint32_t UnloadCollected(ZrCtx *ctx, ZrsPendTbl *table)
{
    uint32_t status = ZRS_LOADER_UnloadModUncoupleProc(ctx, table);
    if (status == ZR_OK)
        status = ZRS_LOADER_UnloadModRemoveProc(ctx, table);
    return status != ZR_OK ? status : ZRS_LOADER_ReloadRelatedMod(ctx, table);
}

} // namespace

uint32_t ZRS_LOADER_UnloadModuleProc(ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr || moduleName == nullptr)
        return ZR_ERR_INVALID;
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (module == nullptr) {
        ZR_CTX_DeleteErrNodeByModName(ctx->errMng, moduleName);
        return ZR_OK;
    }
    ZrsPendTbl table;
    zr::InitPendTable(&table);
    uint32_t status = Collect(ctx, module, &table);
    if (status == ZR_OK)
        status = UnloadCollected(ctx, &table);
    zr::FreePendTable(&table);
    return status;
}

uint32_t ZRS_LOADER_UnloadModUncoupleProc(ZrCtx *ctx, ZrsPendTbl *table)
{
    return zr::ForEachPending(table, [=](const ZrsPendNode *node) {
        return ZRS_LOADER_ProcModuleAugAndRelationUncouple(ctx, node->moduleName);
    });
}

uint32_t ZRS_LOADER_ProcModuleAugAndRelationUncouple(ZrCtx *ctx, const char *moduleName)
{
    ZRS_MOD_NotifyModuleChangeEvent(ctx, moduleName, ZRS_MODULE_UNLOADING, nullptr);
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (module == nullptr)
        return ZR_OK;
    zr::UncoupleModuleAugments(module);
    DeleteRelationsOf(ctx, module);
    return ZR_OK;
}

uint32_t ZRS_LOADER_UnloadModRemoveProc(ZrCtx *ctx, ZrsPendTbl *table)
{
    return zr::ForEachPending(table, [=](ZrsPendNode *node) -> uint32_t {
        // Not earlier: the callback of a module before this one may turn features on and off.
        const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, node->moduleName);
        uint32_t status = module != nullptr ? ZRS_LOADER_SaveEnabledFeatureToPendNode(module, node)
                                            : uint32_t{ZR_OK};
        if (status != ZR_OK)
            return status;
        if (ctx->reloadModuleFunc != nullptr)
            ctx->reloadModuleFunc(ctx, node->moduleName);
        ZR_CTX_DestroyModuleNode(ctx, ZR_CTX_GetModuleByModName(ctx, node->moduleName));
        return ZR_OK;
    });
}

uint32_t ZRS_LOADER_ReloadRelatedMod(ZrCtx *ctx, ZrsPendTbl *table)
{
    uint32_t result = ZR_OK;
    zr::ForEachPending(table, [ctx, &result](const ZrsPendNode *node) -> uint32_t {
        if (node->doNotReload == 0) {
            result |= ZR_CTX_LoadModule(ctx, node->moduleName);
            result += ZRS_LOADER_EnableReloadModFeature(ctx, node);
        }
        return ZR_OK; // the others are to come back in any case
    });
    return result;
}

uint32_t ZRS_LOADER_EnableReloadModFeature(ZrCtx *ctx, const ZrsPendNode *pendingNode)
{
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, pendingNode->moduleName);
    if (module == nullptr)
        return ZR_ERR_NOT_FOUND;
    uint32_t result = ZR_OK;
    for (const ZrListLink *link = pendingNode->features.next; link != &pendingNode->features;
         link = link->next) {
        const auto *feature = reinterpret_cast<const ZrsPendFeature *>(link);
        if ((feature->flags & ZRS_FEATURE_ENABLED) != 0)
            result |= ZR_MOD_EnableFeature(module, feature->name);
    }
    return result;
}

// What the removal of a module concerns: the modules to be destroyed with it, and what has to be
// remembered of each for its return.

namespace {

// Calls `visit`(table) for every relation table until it gives something other than 0, which is
// returned.
template <typename Visit> uint32_t ForEachTable(const ZrCtx *ctx, Visit visit)
{
    for (void *table = PAL_AVL3_First(&ctx->modRelations, &zr::kRelationTables); table != nullptr;
         table = PAL_AVL3_Next(&ctx->modRelations, table, &zr::kRelationTables)) {
        uint32_t result = visit(static_cast<const ZrModRelTbl *>(table));
        if (result != 0)
            return result;
    }
    return 0;
}

bool HasRelation(const ZrModRelTbl *table, uint32_t kind, const char *otherName)
{
    for (const ZrListLink *link = table->items.next; link != &table->items; link = link->next) {
        const auto *item = reinterpret_cast<const ZrModRelItem *>(link);
        if (item->kind == kind && PAL_StrCmp(item->otherName, otherName) == 0)
            return true;
    }
    return false;
}

bool EndsIn(const ZrsDeviation &deviation, const char *moduleName)
{
    zr::ModuleNameText name;
    return zr::LastNamedModule(deviation.targetPath, name) && PAL_StrCmp(name, moduleName) == 0;
}

// Whether any of the module's deviations names a node of the other module.
bool NamesNodeOf(const ZrMod *module, const char *otherName)
{
    for (uint32_t i = 0; i < module->deviationCount; ++i) {
        if (EndsIn(module->deviations[i], otherName))
            return true;
    }
    return false;
}

// Whether the module's deviations changed the other module: one that was applied, at least in
// part, or one that took an augment of it away without naming it.
bool HasChanged(const ZrMod *module, const char *otherName)
{
    for (uint32_t i = 0; i < module->deviationCount; ++i) {
        if (module->deviations[i].flags != 0 && EndsIn(module->deviations[i], otherName))
            return true;
    }
    return !NamesNodeOf(module, otherName);
}

uint32_t AppendIfLoaded(const ZrCtx *ctx, ZrsPendTbl *table, const char *moduleName)
{
    return ZR_CTX_GetModuleByModName(ctx, moduleName) != nullptr
               ? zr::AppendPending(table, moduleName)
               : uint32_t{ZR_OK};
}

ZrsPendFeature *FindFeature(ZrsPendNode *node, const char *name)
{
    for (ZrListLink *link = node->features.next; link != &node->features; link = link->next) {
        auto *feature = reinterpret_cast<ZrsPendFeature *>(link);
        if (PAL_StrCmp(feature->name, name) == 0)
            return feature;
    }
    return nullptr;
}

} // namespace

uint32_t ZRS_LOADER_CheckRelTblHaveDevByWithSameName(const ZrModRelTbl *table,
                                                     const char *deviatingModuleName)
{
    return table != nullptr && deviatingModuleName != nullptr &&
           HasRelation(table, ZR_RELATION_DEVIATED_BY, deviatingModuleName);
}

uint32_t ZRS_LOADER_IsAugAndRmvModShareSameDevaition(ZrCtx *ctx, const char *removedModuleName,
                                                     const char *deviatingModuleName)
{
    if (ctx == nullptr || removedModuleName == nullptr || deviatingModuleName == nullptr)
        return 0;
    const ZrMod *deviating = ZR_CTX_GetModuleByModName(ctx, deviatingModuleName);
    if (deviating == nullptr || NamesNodeOf(deviating, removedModuleName))
        return 0;
    return ForEachTable(ctx, [=](const ZrModRelTbl *table) -> uint32_t {
        return HasRelation(table, ZR_RELATION_AUGMENTED_BY, removedModuleName) &&
               ZRS_LOADER_CheckRelTblHaveDevByWithSameName(table, deviatingModuleName) != 0;
    });
}

uint32_t ZRS_LOADER_UpdateIndirectDeviatedMod(ZrCtx *ctx, const char *moduleName, ZrsPendTbl *table)
{
    const ZrModRelTbl *relations = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (relations == nullptr)
        return ZR_OK;
    for (const ZrListLink *link = relations->items.next; link != &relations->items;
         link = link->next) {
        const auto *item = reinterpret_cast<const ZrModRelItem *>(link);
        // What such a deviation did elsewhere holds without this module too.
        if (item->kind == ZR_RELATION_DEVIATED_BY &&
            ZRS_LOADER_IsAugAndRmvModShareSameDevaition(ctx, moduleName, item->otherName) != 0)
            continue;
        uint32_t status = AppendIfLoaded(ctx, table, item->otherName);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_LOADER_UnloadModDeviation(ZrCtx *ctx, const char *moduleName, ZrsPendTbl *table)
{
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (module == nullptr || module->deviationCount == 0)
        return ZR_OK;
    return ForEachTable(ctx, [=](const ZrModRelTbl *relations) -> uint32_t {
        if (ZRS_LOADER_CheckRelTblHaveDevByWithSameName(relations, moduleName) == 0 ||
            !HasChanged(module, relations->moduleName))
            return ZR_OK;
        return AppendIfLoaded(ctx, table, relations->moduleName);
    });
}

uint32_t ZRS_LOADER_PropagateModuleRemove(ZrCtx *ctx, const char *moduleName, ZrsPendTbl *table)
{
    uint32_t status = ZRS_LOADER_UpdateIndirectDeviatedMod(ctx, moduleName, table);
    return status != ZR_OK ? status : ZRS_LOADER_UnloadModDeviation(ctx, moduleName, table);
}

uint32_t zr::AppendFeature(ZrsPendNode *pendingNode, const char *featureName, uint32_t flags)
{
    zr::Owned<ZrsPendFeature> feature(zr::New<ZrsPendFeature>());
    if (!feature)
        return ZR_ERR_NO_MEMORY;
    feature.get()->name = ZR_UTL_StrDup(featureName);
    if (feature.get()->name == nullptr)
        return ZR_ERR_NO_MEMORY;
    feature.get()->flags = flags;
    ZrListLink *link = &feature.release()->link;
    link->prev = pendingNode->features.prev;
    link->next = &pendingNode->features;
    link->prev->next = link;
    link->next->prev = link;
    return ZR_OK;
}

uint32_t ZRS_LOADER_AddModFeatPend(ZrsPendNode *pendingNode, const char *featureName,
                                   uint32_t flags)
{
    if (pendingNode == nullptr || featureName == nullptr)
        return ZR_ERR_INVALID;
    ZrsPendFeature *noted = FindFeature(pendingNode, featureName);
    if (noted == nullptr)
        return zr::AppendFeature(pendingNode, featureName, flags);
    noted->flags = flags;
    return ZR_OK;
}

uint32_t ZRS_LOADER_SaveEnabledFeatureToPendNode(const ZrMod *module, ZrsPendNode *pendingNode)
{
    if (module == nullptr || pendingNode == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; i < module->featureCount; ++i) {
        const ZrsFeature &feature = module->features[i];
        if ((feature.flags & ZRS_FEATURE_ENABLED) == 0)
            continue;
        uint32_t status = ZRS_LOADER_AddModFeatPend(pendingNode, feature.name, feature.flags);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}
