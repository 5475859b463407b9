// Module content: header, linkage and body statements; the content of included submodules.
#pragma once

#include <libxml/tree.h>
#include <zrschema/types.h>

#include "loader/engine.h"
#include "loader/linkage.h"

extern "C" {
// Reads a whole "module" element into the module record, which has its name already.
ZR_API uint32_t ZRS_LOADER_ParseModuleContent(ZrMod *module, xmlNode *root,
                                              const char *expectedName);
// "yang-version", "namespace" and "prefix"; ends as soon as it has seen all three.
ZR_API uint32_t ZRS_LOADER_ParseModuleHeadStmts(ZrMod *module, xmlNode *root);
// The bit of a header statement, 0 for every other statement.
ZR_API uint32_t ZRS_LOADER_MapModuleHeadStmtToBit(uint32_t statement);
// Every "import" and "include" in document order.
ZR_API uint32_t ZRS_LOADER_ParseLinkageStmts(ZrMod *module, xmlNode *root);
// Counts the array statements of a body and grows the module's arrays by them; what the module
// holds already stays in front. The index counters of the rows hold the lengths so far.
ZR_API uint32_t ZRS_LOADER_CounterAndExpandBodyStmtArray(ZrMod *module, xmlNode *root,
                                                         ZrsSubElem *rows, uint32_t rowCount);
// Reads a "submodule" element into the including module.
ZR_API uint32_t ZRS_LOADER_ParseSubmoduleContent(ZrMod *module, xmlNode *root,
                                                 const char *submoduleName);
// Finds, reads and parses a submodule into the including module; 0 or the failing status: 2 when
// there is no file of that name, 22 when includes are nested more than 128 deep.
ZR_API uint32_t ZRS_LOADER_LoadSubModule(ZrMod *module, const char *submoduleName);
}

namespace zr {

// The body of a module, or of a submodule, whose revision, description and organization are checked
// and dropped.
uint32_t ParseModuleBody(ZrMod *module, xmlNode *root);
uint32_t ParseSubmoduleBody(ZrMod *module, xmlNode *root);
// A submodule that a file asks for; 22 when includes are nested too deep.
uint32_t LoadSubmodule(ZrMod *module, const char *submoduleName, Linkage *linkage);
// The argument of an element's first "prefix" child. A missing one is recorded together with the
// value of the statement that needs it, and gives null.
const char *RequirePrefixChild(ZrMod *module, const xmlNode *element, uint32_t statement,
                               const char *value);

} // namespace zr
