// The parsers of "type" and "typedef", and the names of the built-in types.
#pragma once

#include "loader/statements.h"
#include "model/type_records.h"

extern "C" {
ZR_API uint32_t ZRT_LOADER_ParseTypeStmt(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                         void *destination);
ZR_API uint32_t ZRT_LOADER_ParseTypeDefStmt(ZrMod *module, xmlNode *element,
                                            uint32_t parentStatement, void *destination);
// ZrtBuiltInType of exactly a built-in type's name; 0 for every other name.
ZR_API uint32_t ZRT_LOADER_GetBaseTypeFromTypeName(const char *name);
}
