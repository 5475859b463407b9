// Expressions of "range" and "length" (RFC 7950, sections 9.2.4 and 9.4.4).
#pragma once

#include "types/range_segments.h"

extern "C" {
// Splits the expression into parts and hands each to `pushFunc`; 0, or 22 when it is malformed,
// or what `pushFunc` returned.
ZR_API uint32_t ZRT_LOADER_ScanParseRangeExprWithCb(const char *expression,
                                                    ZrtRangePushFunc pushFunc, ZrtRangePush *push);
}

namespace zr {

// Parse the argument of a "range" or "length" into the body of `type`'s slot and set the type's
// bounds flags: 0, 12 when memory runs out, else as above.
uint32_t ParseRangeInto(ZrtRealType *type, ZrtConsRange *body, const char *expression);
uint32_t ParseLengthInto(ZrtRealType *type, ZrtConsRange *body, const char *expression);

} // namespace zr
