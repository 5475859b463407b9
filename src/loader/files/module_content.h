// SPDX-License-Identifier: Apache-2.0
// From the document of a file to a module record: header, linkage and body statements, and the
// content of the submodules that are included.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "loader/statements/engine.h"

extern "C" {
// Turns a document into a new module record, for the caller to release with ZRS_MOD_Free;
// `expectedName` may be null. Null on failure, which is recorded unless the document is not one of
// a module of that name.
ZR_API ZrMod *ZRS_LOADER_ParseYinContent(ZrCtx *ctx, xmlDoc *document, const char *expectedName);
// The same for the document's root.
ZR_API ZrMod *ZRS_LOADER_ParseYinDocToZrMod(ZrCtx *ctx, xmlNode *root, const char *expectedName);
// ZR_OK when the names are equal or no name is expected, else ZR_ERR_INVALID.
ZR_API uint32_t ZRS_LOADER_CheckParsedModNameMatched(const char *parsedName,
                                                     const char *expectedName);

// The parsers below give ZR_OK or the status of the first failure, which is recorded.

// Reads a whole "module" element into the module record, which has its name already.
ZR_API uint32_t ZRS_LOADER_ParseModuleContent(ZrMod *module, xmlNode *root,
                                              const char *expectedName);
// "yang-version", "namespace" and "prefix"; ends as soon as it has seen all three.
ZR_API uint32_t ZRS_LOADER_ParseModuleHeadStmts(ZrMod *module, xmlNode *root);
// The bit of a header statement, 0 for every other statement. For callers outside the library.
ZR_API uint32_t ZRS_LOADER_MapModuleHeadStmtToBit(uint32_t statement);
// Every "import" and "include" in document order.
ZR_API uint32_t ZRS_LOADER_ParseLinkageStmts(ZrMod *module, xmlNode *root);
// Counts the array statements of a body and grows the module's arrays by them; what the module
// holds already stays in front. The index counters of the rows hold the lengths so far.
ZR_API uint32_t ZRS_LOADER_CounterAndExpandBodyStmtArray(ZrMod *module, xmlNode *root,
                                                         ZrsSubElem *rows, uint32_t rowCount);
// Reads a "submodule" element into the including module. For callers outside the library.
ZR_API uint32_t ZRS_LOADER_ParseSubmoduleContent(ZrMod *module, xmlNode *root,
                                                 const char *submoduleName);
// Finds, reads and parses a submodule into the including module: also ZR_ERR_NOT_FOUND when there
// is no file of that name, and ZR_ERR_INVALID when includes are nested more than 128 deep. For
// callers outside the library.
ZR_API uint32_t ZRS_LOADER_LoadSubModule(ZrMod *module, const char *submoduleName);
}
