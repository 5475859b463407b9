// Unloading a module with everything that depends on it, and loading the dependent modules again.
//
// A deviation cannot be reverted in place, and an augment that was coupled keeps what it inherited.
// So the modules concerned are destroyed and read again: those that augment or deviate the module,
// those that it deviates, and so on from each of these. After that the schema is what loading the
// remaining modules alone would give.
#pragma once

#include <cstddef>
#include <zrschema/context.h>

#include "loader/load_state.h"
#include "model/module_records.h"

extern "C" {
// Unloads a module. One that is not loaded gives 0, and its recorded errors are forgotten. 12 with
// nothing changed when memory runs out while the modules concerned are collected; otherwise the
// collected statuses of loading them again.
ZR_API uint32_t ZRS_LOADER_UnloadModuleProc(ZrCtx *ctx, const char *moduleName);

// Collecting (unload_collect.cpp). 0 or 12.

// Appends to the table what the removal of a module concerns.
ZR_API uint32_t ZRS_LOADER_PropagateModuleRemove(ZrCtx *ctx, const char *moduleName,
                                                 ZrsPendTbl *table);
// Appends the modules that augment or deviate the module.
ZR_API uint32_t ZRS_LOADER_UpdateIndirectDeviatedMod(ZrCtx *ctx, const char *moduleName,
                                                     ZrsPendTbl *table);
// Appends the modules that the module deviates.
ZR_API uint32_t ZRS_LOADER_UnloadModDeviation(ZrCtx *ctx, const char *moduleName,
                                              ZrsPendTbl *table);
// 1 when the table's module is deviated by the named one.
ZR_API uint32_t ZRS_LOADER_CheckRelTblHaveDevByWithSameName(const ZrModRelTbl *table,
                                                            const char *deviatingModuleName);
// 1 when the deviating module changed the removed one only by taking away the target of one of its
// augments: both, the augmenting and the augmented module, stand in a relation to the deviating
// one, but no deviation names a node of the augmenting module.
ZR_API uint32_t ZRS_LOADER_IsAugAndRmvModShareSameDevaition(ZrCtx *ctx,
                                                            const char *removedModuleName,
                                                            const char *deviatingModuleName);
// Notes the features that are on in the module. AddModFeatPend notes one with its flags; one that
// is noted already keeps its place and takes the flags.
ZR_API uint32_t ZRS_LOADER_SaveEnabledFeatureToPendNode(const ZrMod *module,
                                                        ZrsPendNode *pendingNode);
ZR_API uint32_t ZRS_LOADER_AddModFeatPend(ZrsPendNode *pendingNode, const char *featureName,
                                          uint32_t flags);

// Removing (unload.cpp).

// Uncouples every module of the table, and deletes its relations.
ZR_API uint32_t ZRS_LOADER_UnloadModUncoupleProc(ZrCtx *ctx, ZrsPendTbl *table);
ZR_API uint32_t ZRS_LOADER_ProcModuleAugAndRelationUncouple(ZrCtx *ctx, const char *moduleName);
// Notes the features of every module of the table, tells the application and destroys it. 0, or 12
// with the modules from there on left.
ZR_API uint32_t ZRS_LOADER_UnloadModRemoveProc(ZrCtx *ctx, ZrsPendTbl *table);

// Loading again (unload.cpp). 0, or non-zero when a module did not come back as it was.
ZR_API uint32_t ZRS_LOADER_ReloadRelatedMod(ZrCtx *ctx, ZrsPendTbl *table);
// Turns the noted features on again; 2 when the module is not loaded.
ZR_API uint32_t ZRS_LOADER_EnableReloadModFeature(ZrCtx *ctx, const ZrsPendNode *pendingNode);
}

namespace zr {

// How a context's relation tables are keyed, for walks over all of them.
inline constexpr PalAvlInfo kRelationTables = {ZR_CTX_CompareModRelationTbl,
                                               offsetof(ZrModRelTbl, moduleName),
                                               offsetof(ZrModRelTbl, treeNode)};

// Notes a feature that is not noted yet: 0 or 12.
uint32_t AppendFeature(ZrsPendNode *pendingNode, const char *featureName, uint32_t flags);

// Visits the nodes of a table in order, also those that `visit`(node) appends, until it gives a
// status other than 0, which is returned.
template <typename Visit> uint32_t ForEachPending(ZrsPendTbl *table, Visit visit)
{
    for (ZrListLink *link = table->nodes.next; link != &table->nodes; link = link->next) {
        uint32_t status = visit(reinterpret_cast<ZrsPendNode *>(link));
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

} // namespace zr
