#include "loader/unload.h"

#include <zrschema/module.h>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "schema/augment.h"
#include "schema/change_events.h"
#include "schema/module.h"

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
