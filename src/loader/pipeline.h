// SPDX-License-Identifier: Apache-2.0
// From a module name to a loaded module of the context: files found, read, merged, linked, coupled.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/context.h>

#include "loader/files/module_files.h"

extern "C" {
// Loads a module from its file or files: ZR_OK, ZR_ERR_NOT_FOUND when no file is found, else the
// status of linking it into the context (ZR_ERR_INVALID when not even the first file could be
// read).
ZR_API uint32_t ZRS_LOADER_LoadModuleByModName(ZrCtx *ctx, const char *moduleName);
// Loads what a loaded module imports, and what that imports, breadth-first: ZR_OK or the first
// failure.
ZR_API uint32_t ZRS_LOADER_LoadModuleImportedNames(ZrCtx *ctx, const char *moduleName);
// Reads one file into `*moduleSlot`, or merges it into the module that stands there.
ZR_API uint32_t ZRS_LOADER_LoadModuleByPath(ZrCtx *ctx, const char *path, const char *moduleName,
                                            ZrsLoadAssister *assister, ZrMod **moduleSlot);
// Reads one file into a new module record; failures are recorded under `moduleName`. Null on
// failure. For callers outside the library.
ZR_API ZrMod *ZRS_LOADER_ReadFilePathToZrMod(ZrCtx *ctx, const char *path, const char *moduleName,
                                             const char *expectedName);
// Links a module into the context and couples it; `assister` may be null. ZR_ERR_INVALID for a null
// module, ZR_ERR_FAILED when its name or namespace is taken. Failures to resolve or couple are
// recorded only.
ZR_API uint32_t ZRS_LOADER_AppendModuleToCtx(ZrCtx *ctx, ZrMod *module, ZrsLoadAssister *assister);
}
