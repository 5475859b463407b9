// From a module name to a loaded module of the context: files read, merged, linked and coupled.
#pragma once

#include <zrschema/context.h>

#include <libxml/tree.h>

#include "loader/load_state.h"
#include "model/module_records.h"

extern "C" {
// Loads a module from its file or files: 0, 2 when no file is found, else the status of linking it
// into the context (22 when not even the first file could be read).
ZR_API uint32_t ZRS_LOADER_LoadModuleByModName(ZrCtx *ctx, const char *moduleName);
// Loads what a loaded module imports, and what that imports, breadth-first: 0 or the first failure.
ZR_API uint32_t ZRS_LOADER_LoadModuleImportedNames(ZrCtx *ctx, const char *moduleName);
// Reads one file into `*moduleSlot`, or merges it into the module that stands there.
ZR_API uint32_t ZRS_LOADER_LoadModuleByPath(ZrCtx *ctx, const char *path, const char *moduleName,
                                            ZrsLoadAssister *assister, ZrMod **moduleSlot);
// Reads one file into a new module record; failures are recorded under `moduleName`. Null on
// failure.
ZR_API ZrMod *ZRS_LOADER_ReadFilePathToZrMod(ZrCtx *ctx, const char *path, const char *moduleName,
                                             const char *expectedName);
// Turns a document into a new module record; `expectedName` may be null. Null on failure.
ZR_API ZrMod *ZRS_LOADER_ParseYinContent(ZrCtx *ctx, xmlDoc *document, const char *expectedName);
ZR_API ZrMod *ZRS_LOADER_ParseYinDocToZrMod(ZrCtx *ctx, xmlNode *root, const char *expectedName);
// 0 when the names are equal or no name is expected, else 22.
ZR_API uint32_t ZRS_LOADER_CheckParsedModNameMatched(const char *parsedName,
                                                     const char *expectedName);
// Links a module into the context and couples it; `assister` may be null. 22 for a null module, 1
// when its name or namespace is taken. Failures to resolve or couple are recorded only.
ZR_API uint32_t ZRS_LOADER_AppendModuleToCtx(ZrCtx *ctx, ZrMod *module, ZrsLoadAssister *assister);
}

// Coupling of a module that has just been linked into the context: its typedef references, its
// augments and its deviations, and the relations that let other modules' changes find it again.

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
