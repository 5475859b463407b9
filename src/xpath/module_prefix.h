// The one function of the schema folder that the path forms call. The path forms stand below the
// schema, which uses them itself; declaring the function here keeps its headers out of this folder.
#pragma once

#include <zrschema/types.h>

extern "C" {
// The name of the module that a prefix means inside `module`, or null.
ZR_API const char *ZRS_MOD_GetModuleNameByPrefix(const ZrMod *module, const char *prefix);
}
