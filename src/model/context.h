// Creation and taking apart of contexts; the functions of an application stand in
// zrschema/context.h.
#pragma once

#include <zrschema/context.h>

namespace zr {

// Destroys the relation tree, the search directories, the dictionary and the record itself, in
// that order; the error store and the modules are gone before. A half-built context is accepted.
void DestroyContextParts(ZrCtx *ctx);

} // namespace zr
