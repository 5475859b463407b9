// Coupling of a module that has just been linked into the context: its typedef references, its
// augments and its deviations, and the relations that let other modules' changes find it again.
#pragma once

#include <zrschema/context.h>

#include "loader/pending.h"
#include "model/module_record.h"

extern "C" {
// Resolves the references to typedefs of the module itself, in its typedefs and in the types of
// its nodes; 0, or 22 for a null module or a typedef that is not there.
ZR_API uint32_t ZRS_LOADER_UpdateGlobalTypDefDerivedFrom(ZrMod *module);
// Records the relations of the module's augments and couples them, in passes until a pass couples
// nothing more; 0, 12, or 22 when an augment is left uncoupled. Records no message itself: the
// caller does, under ZRS_STAGE_AUGMENT.
ZR_API uint32_t ZRS_LOADER_CoupleAugmentAndGenRelation(ZrCtx *ctx, ZrMod *module);
// The same for the module's deviations: each is tried once; 0 or the first failing status. A
// deviation whose target is not there yet is no failure.
ZR_API uint32_t ZRS_LOADER_CoupleDeviationAndGenRelation(ZrCtx *ctx, ZrMod *module);
// Sends the change event "loaded" for every loaded module of the table, in list order, and then
// for the module from which the walk over the imports started.
ZR_API void ZRS_LOADER_CoupleModPendTblAndCurMod(ZrCtx *ctx, ZrsPendTbl *table,
                                                 const char *startModuleName);
}
