// SPDX-License-Identifier: Apache-2.0
// Unloading a module with everything that depends on it, and loading the dependent modules again.
//
// A deviation cannot be reverted in place, and an augment that was coupled keeps what it inherited.
// So the modules concerned are destroyed and read again: those that augment or deviate the module,
// those that it deviates, and so on from each of these. After that the schema is what loading the
// remaining modules alone would give.
#pragma once

#include <cstdint>
#include <zrschema/context.h>

#include "foundation/relations.h"
#include "loader/pending.h"

extern "C" {
// Unloads a module. One that is not loaded gives ZR_OK, and its recorded errors are forgotten.
// ZR_ERR_INVALID for a null argument; ZR_ERR_NO_MEMORY with nothing changed when memory runs out
// while the modules concerned are collected; otherwise the collected statuses of loading them
// again.
ZR_API uint32_t ZRS_LOADER_UnloadModuleProc(ZrCtx *ctx, const char *moduleName);

// Collecting: ZR_OK or ZR_ERR_NO_MEMORY, unless said otherwise.

// Appends to the table what the removal of a module concerns.
ZR_API uint32_t ZRS_LOADER_PropagateModuleRemove(ZrCtx *ctx, const char *moduleName,
                                                 ZrsPendTbl *table);
// Appends the modules that augment or deviate the module.
ZR_API uint32_t ZRS_LOADER_UpdateIndirectDeviatedMod(ZrCtx *ctx, const char *moduleName,
                                                     ZrsPendTbl *table);
// Appends the modules that the module deviates.
ZR_API uint32_t ZRS_LOADER_UnloadModDeviation(ZrCtx *ctx, const char *moduleName,
                                              ZrsPendTbl *table);
// 1 when the table's module is deviated by the named one, else 0. For callers outside the library.
ZR_API uint32_t ZRS_LOADER_CheckRelTblHaveDevByWithSameName(const ZrModRelTbl *table,
                                                            const char *deviatingModuleName);
// 1 when the deviating module changed the removed one only by taking away the target of one of its
// augments: both, the augmenting and the augmented module, stand in a relation to the deviating
// one, but no deviation names a node of the augmenting module. Else 0.
ZR_API uint32_t ZRS_LOADER_IsAugAndRmvModShareSameDevaition(ZrCtx *ctx,
                                                            const char *removedModuleName,
                                                            const char *deviatingModuleName);
// Notes the features that are on in the module; also ZR_ERR_INVALID for a null argument.
ZR_API uint32_t ZRS_LOADER_SaveEnabledFeatureToPendNode(const ZrMod *module,
                                                        ZrsPendNode *pendingNode);

// Removing.

// Uncouples every module of the table, and deletes its relations. ZR_OK.
ZR_API uint32_t ZRS_LOADER_UnloadModUncoupleProc(ZrCtx *ctx, ZrsPendTbl *table);
ZR_API uint32_t ZRS_LOADER_ProcModuleAugAndRelationUncouple(ZrCtx *ctx, const char *moduleName);
// Notes the features of every module of the table, tells the application and destroys it. ZR_OK, or
// ZR_ERR_NO_MEMORY with the modules from there on left.
ZR_API uint32_t ZRS_LOADER_UnloadModRemoveProc(ZrCtx *ctx, ZrsPendTbl *table);

// Loading again: ZR_OK, or something else when a module did not come back as it was.
ZR_API uint32_t ZRS_LOADER_ReloadRelatedMod(ZrCtx *ctx, ZrsPendTbl *table);
// Turns the noted features on again; ZR_ERR_NOT_FOUND when the module is not loaded.
ZR_API uint32_t ZRS_LOADER_EnableReloadModFeature(ZrCtx *ctx, const ZrsPendNode *pendingNode);
}
