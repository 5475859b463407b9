// SPDX-License-Identifier: Apache-2.0
// Segments of ranges and lengths: their widths, how they are stored, read and compared.
#pragma once

#include <zrschema/types.h>

#include <cstdint>

#include "model/type_records.h"

// A segment of one of the narrow widths.
template <typename Integer> struct ZrtNarrowSeg {
    Integer start;
    Integer end;
};

// Where a value lies, seen from a segment.
enum ZrtSegOrder : uint32_t { ZRT_SEG_INSIDE = 0, ZRT_SEG_BELOW = 1, ZRT_SEG_ABOVE = 2 };

// One parse of an expression: where the segments go and how numbers are read.
struct ZrtRangePush {
    ZrtConsRange *body;
    uint32_t capacity;       // segments that the body has room for
    uint32_t baseType;       // numbers of a decimal64 are read with its fraction digits
    uint32_t fractionDigits; // of a decimal64
    uint32_t usesMinMax;     // set to 1 by "min" or "max"
    // 1: what a typedef's bounds are is not known yet, so they may have decimals (ZRT_SEG_DECIMAL).
    uint32_t takesDecimals = 0;
};

// Stores a parsed part as the next segment: ZR_OK, ZR_ERR_INVALID when it does not fit the body,
// ZR_ERR_COPY when it cannot be copied.
typedef uint32_t (*ZrtRangePushFunc)(ZrtRangePush *push, const ZrtGenericSeg *part);

// Compares a value, signed or unsigned as the function's name says, with one segment.
typedef uint32_t (*ZrtSegCheckFunc)(const void *segment, uint64_t value);

extern "C" {
// Bytes of a range segment of the base type: two numbers of its width, or a ZrtGenericSeg.
ZR_API uint32_t ZRT_CONS_GetZrtSegIntegerSize(uint32_t baseType);
// The smallest and greatest value of an integer type; all zero for another type. ZR_OK, or
// ZR_ERR_INVALID for a number that is no type.
ZR_API uint32_t ZRT_CONS_GetBasedIntegerMinMaxVal(uint32_t baseType, ZrtGenericSeg *boundsOut);

// How a part becomes a segment of a range of that type, or of a length of that segment size; null
// where there is none.
ZR_API ZrtRangePushFunc ZRT_LOADER_GetRangeSplitFillFunc(uint32_t baseType);
ZR_API ZrtRangePushFunc ZRT_LOADER_GetLengthSplitFillFunc(uint32_t segSize);

// One for each width, and for the generic form with its marks for "min" and "max".
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegInt8Signed(ZrtRangePush *push,
                                                           const ZrtGenericSeg *part);
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegInt16Signed(ZrtRangePush *push,
                                                            const ZrtGenericSeg *part);
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegInt32Signed(ZrtRangePush *push,
                                                            const ZrtGenericSeg *part);
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegInt64Signed(ZrtRangePush *push,
                                                            const ZrtGenericSeg *part);
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegInt8Unsigned(ZrtRangePush *push,
                                                             const ZrtGenericSeg *part);
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegInt16Unsigned(ZrtRangePush *push,
                                                              const ZrtGenericSeg *part);
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegInt32Unsigned(ZrtRangePush *push,
                                                              const ZrtGenericSeg *part);
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegInt64Unsigned(ZrtRangePush *push,
                                                              const ZrtGenericSeg *part);
ZR_API uint32_t ZRT_LOADER_PushRangeValueIntoSegIntUnknown(ZrtRangePush *push,
                                                           const ZrtGenericSeg *part);

// A ZrtSegOrder: those of 64 bits read a ZrtGenericSeg, the others a ZrtNarrowSeg.
ZR_API uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt8Signed(const void *segment, uint64_t value);
ZR_API uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt16Signed(const void *segment, uint64_t value);
ZR_API uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt32Signed(const void *segment, uint64_t value);
ZR_API uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt64Signed(const void *segment, uint64_t value);
ZR_API uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt8Unsigned(const void *segment, uint64_t value);
ZR_API uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt16Unsigned(const void *segment,
                                                                uint64_t value);
ZR_API uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt32Unsigned(const void *segment,
                                                                uint64_t value);
ZR_API uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt64Unsigned(const void *segment,
                                                                uint64_t value);
}

namespace zr {

// The check of a narrow segment of the base type, or null where segments are generic.
ZrtSegCheckFunc NarrowSegCheck(uint32_t baseType);
// One segment in generic form; `baseType` tells how a narrow one is to be read, and a length of
// the narrow width is read as that of a uint32.
ZrtGenericSeg ReadSegment(const ZrtConsRange *range, uint32_t index, uint32_t baseType);

} // namespace zr

// Expressions of "range" and "length" (RFC 7950, sections 9.2.4 and 9.4.4).

extern "C" {
// Splits the expression into parts and hands each to `pushFunc`: ZR_OK, ZR_ERR_INVALID when it is
// malformed, or what `pushFunc` returned.
ZR_API uint32_t ZRT_LOADER_ScanParseRangeExprWithCb(const char *expression,
                                                    ZrtRangePushFunc pushFunc, ZrtRangePush *push);
}

namespace zr {

// Parse the argument of a "range" or "length" into the body of `type`'s slot and set the type's
// bounds flags: ZR_OK, ZR_ERR_NO_MEMORY, else as above. Decimals in the range of a derived type are
// taken when asked for; those of a decimal64 are in any case.
uint32_t ParseRangeInto(ZrtRealType *type, ZrtConsRange *body, const char *expression,
                        bool derivedTakesDecimals = false);
uint32_t ParseLengthInto(ZrtRealType *type, ZrtConsRange *body, const char *expression);

} // namespace zr

// Bounds that a type leaves for the types derived from it.

namespace zr {

// Records the smallest and greatest value as the parent bounds when an outer type needs them.
void RecordBounds(ZrtValidateCtx *validation, const ZrtGenericSeg &bounds);
// Records the bounds of a length that nothing restricts.
void RecordFullLength(ZrtValidateCtx *validation);

} // namespace zr

// decimal64 text as an integer scaled by ten to the power of its fraction digits.

extern "C" {
// ZR_OK, or ZR_ERR_INVALID when the text is no decimal64 of so many fraction digits (RFC 7950,
// section 9.3).
ZR_API uint32_t ZRT_CONS_ConvertValStrToDecimal64PowerInteger(const char *text,
                                                              uint32_t fractionDigits,
                                                              int64_t *valueOut);
}
