// Bounds that a type leaves for the types derived from it.
#pragma once

#include "model/type_records.h"

namespace zr {

// Records the smallest and greatest value as the parent bounds when an outer type needs them.
void RecordBounds(ZrtValidateCtx *validation, const ZrtGenericSeg &bounds);
// Records 0..4294967295, the bounds of a length that nothing restricts.
void RecordFullLength(ZrtValidateCtx *validation);

} // namespace zr
