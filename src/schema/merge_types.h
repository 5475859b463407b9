// Typedef references while modules are merged. A derived type points into its module's typedef
// array, and that array moves when a typedef is added to it; so the pointers of the whole module
// are dropped before it grows. A dropped pointer does no harm: the typedef is looked up by its name
// until the reference is resolved again, which linking the module into its context does.
#pragma once

#include "model/module_record.h"

namespace zr {
// Drops the resolved typedefs of a type and of its union members.
void ForgetResolved(ZrtRealType *type);
// The same for every type of the module: its typedefs, and its nodes wherever they stand.
void ForgetResolvedOfModule(ZrMod *module);
// Resolves the type's references to typedefs of `module`, also those that were resolved before.
// 0, or 22 when one is not there.
uint32_t ResolveAgain(ZrtRealType *type, const ZrMod *module);
} // namespace zr
