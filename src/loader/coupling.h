// SPDX-License-Identifier: Apache-2.0
// Coupling of a module that has just been linked into the context: its typedef references, its
// augments and its deviations, and the relations that let other modules' changes find it again.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "loader/pending.h"

extern "C" {
// Resolves the references to typedefs of the module itself, in its typedefs and in the types of its
// nodes: ZR_OK, or ZR_ERR_INVALID for a null module or a typedef that is not there.
ZR_API uint32_t ZRS_LOADER_UpdateGlobalTypDefDerivedFrom(ZrMod *module);
// Records the relations of the module's augments and couples them, in passes until a pass couples
// nothing more: ZR_OK, ZR_ERR_NO_MEMORY, or ZR_ERR_INVALID when an augment is left uncoupled.
// Records no message itself: the caller does, under ZRS_STAGE_AUGMENT.
ZR_API uint32_t ZRS_LOADER_CoupleAugmentAndGenRelation(ZrCtx *ctx, ZrMod *module);
// The same for the module's deviations: each is tried once; ZR_OK or the first failing status. A
// deviation whose target is not there yet is no failure.
ZR_API uint32_t ZRS_LOADER_CoupleDeviationAndGenRelation(ZrCtx *ctx, ZrMod *module);
// Sends the change event "loaded" for every loaded module of the table, in list order, and then
// for the module from which the walk over the imports started.
ZR_API void ZRS_LOADER_CoupleModPendTblAndCurMod(ZrCtx *ctx, ZrsPendTbl *table,
                                                 const char *startModuleName);
}

namespace zr {
// Couples what other modules have for the module, in the order in which they came to it: the event
// that tells of the load takes the newest first.
void CoupleDependents(ZrCtx *ctx, const char *moduleName);
} // namespace zr
