// SPDX-License-Identifier: Apache-2.0
#include "loader/unload.h"

#include <zrschema/module.h>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "model/module_records.h"
#include "schema/augment/augment.h"
#include "schema/lookup/lookup.h"
#include "schema/module/module.h"

// What the removal of a module concerns: the modules to be destroyed with it, and what has to be
// remembered of each for its return.

namespace {

bool HasRelation(const ZrModRelTbl *table, uint32_t kind, const char *otherName)
{
    for (const ZrModRelItem &item : zr::ItemsOf<ZrModRelItem>(&table->items))
        if (item.kind == kind && zr::TextEquals(item.otherName, otherName))
            return true;
    return false;
}

bool EndsIn(const ZrsDeviation &deviation, const char *moduleName)
{
    zr::ModuleNameText name;
    return zr::LastNamedModule(deviation.targetPath, name) && zr::TextEquals(name, moduleName);
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

} // namespace

uint32_t ZRS_LOADER_CheckRelTblHaveDevByWithSameName(const ZrModRelTbl *table,
                                                     const char *deviatingModuleName)
{
    bool isDeviated = table != nullptr && deviatingModuleName != nullptr &&
                      HasRelation(table, ZR_RELATION_DEVIATED_BY, deviatingModuleName);
    return isDeviated ? 1 : 0;
}

uint32_t ZRS_LOADER_IsAugAndRmvModShareSameDevaition(ZrCtx *ctx, const char *removedModuleName,
                                                     const char *deviatingModuleName)
{
    if (ctx == nullptr || removedModuleName == nullptr || deviatingModuleName == nullptr)
        return 0;
    const ZrMod *deviating = ZR_CTX_GetModuleByModName(ctx, deviatingModuleName);
    if (deviating == nullptr || NamesNodeOf(deviating, removedModuleName))
        return 0;
    for (const ZrModRelTbl *table = zr::FirstRelationTable(ctx); table != nullptr;
         table = zr::NextRelationTable(ctx, table)) {
        if (HasRelation(table, ZR_RELATION_AUGMENTED_BY, removedModuleName) &&
            HasRelation(table, ZR_RELATION_DEVIATED_BY, deviatingModuleName))
            return 1;
    }
    return 0;
}

uint32_t ZRS_LOADER_UpdateIndirectDeviatedMod(ZrCtx *ctx, const char *moduleName, ZrsPendTbl *table)
{
    const ZrModRelTbl *relations = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (relations == nullptr)
        return ZR_OK;
    for (const ZrModRelItem &item : zr::ItemsOf<ZrModRelItem>(&relations->items)) {
        // What such a deviation did elsewhere holds without this module too.
        if (item.kind == ZR_RELATION_DEVIATED_BY &&
            ZRS_LOADER_IsAugAndRmvModShareSameDevaition(ctx, moduleName, item.otherName) != 0)
            continue;
        uint32_t status = AppendIfLoaded(ctx, table, item.otherName);
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
    for (const ZrModRelTbl *relations = zr::FirstRelationTable(ctx); relations != nullptr;
         relations = zr::NextRelationTable(ctx, relations)) {
        if (!HasRelation(relations, ZR_RELATION_DEVIATED_BY, moduleName) ||
            !HasChanged(module, relations->moduleName))
            continue;
        uint32_t status = AppendIfLoaded(ctx, table, relations->moduleName);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_LOADER_PropagateModuleRemove(ZrCtx *ctx, const char *moduleName, ZrsPendTbl *table)
{
    uint32_t status = ZRS_LOADER_UpdateIndirectDeviatedMod(ctx, moduleName, table);
    return status != ZR_OK ? status : ZRS_LOADER_UnloadModDeviation(ctx, moduleName, table);
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

// Removing.

namespace {

// Deletes the relations in which the module is the one that augments or deviates.
void DeleteRelationsOf(ZrCtx *ctx, const ZrMod *module)
{
    const ZrModRelTbl *next = nullptr;
    for (const ZrModRelTbl *table = zr::FirstRelationTable(ctx); table != nullptr; table = next) {
        next = zr::NextRelationTable(ctx, table);
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

// Notes the features at the last moment: the callback of a module before this one may have turned
// some on or off.
uint32_t NoteFeatures(const ZrCtx *ctx, ZrsPendNode *node)
{
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, node->moduleName);
    return module != nullptr ? ZRS_LOADER_SaveEnabledFeatureToPendNode(module, node)
                             : uint32_t{ZR_OK};
}

} // namespace

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

uint32_t ZRS_LOADER_UnloadModUncoupleProc(ZrCtx *ctx, ZrsPendTbl *table)
{
    for (const ZrsPendNode &node : zr::ItemsOf<ZrsPendNode>(&table->nodes))
        ZRS_LOADER_ProcModuleAugAndRelationUncouple(ctx, node.moduleName);
    return ZR_OK;
}

uint32_t ZRS_LOADER_UnloadModRemoveProc(ZrCtx *ctx, ZrsPendTbl *table)
{
    for (ZrsPendNode &node : zr::ItemsOf<ZrsPendNode>(&table->nodes)) {
        uint32_t status = NoteFeatures(ctx, &node);
        if (status != ZR_OK)
            return status;
        if (ctx->reloadModuleFunc != nullptr)
            ctx->reloadModuleFunc(ctx, node.moduleName);
        ZR_CTX_DestroyModuleNode(ctx, ZR_CTX_GetModuleByModName(ctx, node.moduleName));
    }
    return ZR_OK;
}

// Loading again.

uint32_t ZRS_LOADER_EnableReloadModFeature(ZrCtx *ctx, const ZrsPendNode *pendingNode)
{
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, pendingNode->moduleName);
    if (module == nullptr)
        return ZR_ERR_NOT_FOUND;
    uint32_t result = ZR_OK;
    for (const ZrsPendFeature &feature : zr::ItemsOf<ZrsPendFeature>(&pendingNode->features)) {
        if ((feature.flags & ZRS_FEATURE_ENABLED) != 0)
            result |= ZR_MOD_EnableFeature(module, feature.name);
    }
    return result;
}

// A module that does not come back keeps no other one from coming.
uint32_t ZRS_LOADER_ReloadRelatedMod(ZrCtx *ctx, ZrsPendTbl *table)
{
    uint32_t result = ZR_OK;
    for (const ZrsPendNode &node : zr::ItemsOf<ZrsPendNode>(&table->nodes)) {
        if (node.doNotReload != 0)
            continue;
        result |= ZR_CTX_LoadModule(ctx, node.moduleName);
        result += ZRS_LOADER_EnableReloadModFeature(ctx, &node);
    }
    return result;
}

// The whole.

namespace {

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
    for (ZrsPendNode &node : zr::ItemsOf<ZrsPendNode>(&table->nodes)) { // what it appends too
        status = ZRS_LOADER_PropagateModuleRemove(ctx, node.moduleName, table);
        if (status == ZR_OK)
            status = ReserveFeatures(ctx, &node);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
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
    zr::PendTable table;
    uint32_t status = Collect(ctx, module, &table);
    return status == ZR_OK ? UnloadCollected(ctx, &table) : status;
}

uint32_t ZR_CTX_UnloadModule(ZrCtx *ctx, const char *moduleName)
{
    return ctx != nullptr ? ZRS_LOADER_UnloadModuleProc(ctx, moduleName) : uint32_t{ZR_OK};
}
