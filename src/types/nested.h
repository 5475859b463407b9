// Values handed on to another type: a union's member or a leafref's target.
#pragma once

#include "model/type_records.h"

namespace zr {

// Validates the value against `type` in a fresh context that carries over `outer`'s library
// context, and `node` as the leaf, which is `outer`'s own or the target of a leafref of it. On
// success `*matchedOut` is the type that the fresh context recorded as matched, or null.
uint32_t ValidateNested(const ZrtRealType *type, uint32_t inputKind, const void *value,
                        ZrtValidateCtx *outer, const ZrNode *node, const ZrtRealType **matchedOut);

} // namespace zr
