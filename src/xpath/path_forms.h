// SPDX-License-Identifier: Apache-2.0
// Two text services over schema paths: the module-name form and the split of a target path.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

extern "C" {
// The module-name form of a path whose steps carry prefixes of `module`: "/p:x/y/q:z" becomes
// "/m1:x/y/m2:z". A step names its module where the prefix changes; predicates are dropped; ".."
// and "." stay. The result is a new text, freed with the free hook. Null for a null argument, an
// unknown prefix, a malformed path, a result of more than 3,095 characters, or no memory.
ZR_API char *ZR_XPATH_TransformToJsonFormat(const ZrMod *module, const char *path);
// The same for a module and a path that are known not to be null.
ZR_API char *ZR_XPATH_GetJsonFormatXpath(const ZrMod *module, const char *path);
// Splits a target path at its last step that names a module: "/m:a/b/n:c/d" gives the module name
// "n", the head "/m:a/b" and the tail "/n:c/d". When the qualified step is the first one the head
// is null. Both texts are new and freed with the free hook; with either out-argument null none is
// made. ZR_OK, or ZR_ERR_INVALID for a null path or buffer, a path without such a step, a module
// name that does not fit, or no memory.
ZR_API uint32_t ZR_XPATH_SplitTargetNodeXpath(const char *path, char *moduleName,
                                              uint32_t moduleNameSize, char **headOut,
                                              char **tailOut);
}

namespace zr {

// The tail of such a split, inside the path itself: what stands before it is the head. The module
// name goes into the buffer. Null where the split fails; needs no memory.
const char *FindLastNamedStep(const char *path, char *moduleName, uint32_t moduleNameSize);

} // namespace zr
