// SPDX-License-Identifier: Apache-2.0
// The value checks of ranges and lengths, and the default check of the integer types.
#include <cstring>

#include "foundation/text.h"
#include "types/constraints.h"
#include "types/default_checks.h"
#include "types/range.h"

namespace {

constexpr uint32_t kSignFlags = ZRT_SEG_SIGNED | ZRT_SEG_UNSIGNED;
constexpr uint32_t kStartMarks = ZRT_SEG_START_MIN | ZRT_SEG_START_MAX;
constexpr uint32_t kEndMarks = ZRT_SEG_END_MIN | ZRT_SEG_END_MAX;

// Of an integer type ZRT_SEG_SIGNED or ZRT_SEG_UNSIGNED, of another one 0.
uint32_t SignOf(uint32_t baseType)
{
    ZrtGenericSeg bounds = {};
    ZRT_CONS_GetBasedIntegerMinMaxVal(baseType, &bounds);
    return bounds.flags;
}

// Reads the number of a value into the context, where later checks of the same value find it.
bool ReadNumber(uint32_t baseType, const char *text, ZrtValidateCtx *validation)
{
    if (validation->value.flags != 0)
        return true;
    int64_t number = 0;
    uint64_t magnitude = 0;
    const char *end = nullptr;
    uint32_t status = ZR_ERR_INVALID;
    bool isDecimal = baseType == ZRT_TYPE_DECIMAL64;
    uint32_t sign = isDecimal ? uint32_t{ZRT_SEG_SIGNED} : SignOf(baseType);
    if (isDecimal)
        status = ZRT_CONS_ConvertValStrToDecimal64PowerInteger(text, validation->fractionDigits,
                                                               &number);
    else if (sign == ZRT_SEG_SIGNED)
        status = ZR_UTL_ReadInputStrAsSignedInteger(text, &end, 0, &number);
    else if (sign == ZRT_SEG_UNSIGNED)
        status = ZR_UTL_ReadInputStrAsUnsignedInteger(text, &end, 0, &magnitude);
    if (status != ZR_OK || (end != nullptr && *ZR_UTL_ConsumeAllSpaceChar(end) != '\0'))
        return false;
    if (sign == ZRT_SEG_SIGNED)
        magnitude = static_cast<uint64_t>(number);
    validation->value = {magnitude, magnitude, sign};
    return true;
}

// A bound that was written with so many fraction digits, scaled like a value that has `wanted`. One
// that is out of reach then is the last that can be reached. False when it has too many digits.
bool Rescale(uint64_t &bound, bool isSigned, uint32_t digits, uint32_t wanted)
{
    if (digits > wanted)
        return false;
    if (!isSigned && bound > uint64_t{INT64_MAX})
        bound = uint64_t{INT64_MAX};
    auto number = static_cast<int64_t>(bound);
    for (; digits < wanted; ++digits) {
        if (__builtin_mul_overflow(number, int64_t{10}, &number)) {
            number = number < 0 ? INT64_MIN : INT64_MAX;
            break;
        }
    }
    bound = static_cast<uint64_t>(number);
    return true;
}

// A segment of a derived type whose numbers may have decimals, as the base type has it: scaled for
// a decimal64, else as it is. It has no sign, and takes no value, when the base type has no such
// numbers.
ZrtGenericSeg FitToBase(ZrtGenericSeg segment, const ZrtValidateCtx *validation)
{
    if ((segment.flags & ZRT_SEG_DECIMAL) == 0)
        return segment;
    bool isDecimal = validation->baseType == ZRT_TYPE_DECIMAL64;
    uint32_t wanted = isDecimal ? validation->fractionDigits : 0;
    bool isSigned = (segment.flags & ZRT_SEG_SIGNED) != 0;
    uint32_t startDigits = segment.flags >> ZRT_SEG_START_DIGITS_SHIFT & ZRT_SEG_DIGITS_MASK;
    uint32_t endDigits = segment.flags >> ZRT_SEG_END_DIGITS_SHIFT & ZRT_SEG_DIGITS_MASK;
    uint64_t start = segment.start;
    uint64_t end = segment.end;
    if (!Rescale(start, isSigned, startDigits, wanted) ||
        !Rescale(end, isSigned, endDigits, wanted)) {
        segment.flags = 0;
    } else if (isDecimal) {
        segment.start = start;
        segment.end = end;
        segment.flags = (segment.flags & ~kSignFlags) | ZRT_SEG_SIGNED;
    }
    return segment;
}

// The segment with "min" and "max" replaced by the parent's bounds. It is then signed when it or,
// if it took a bound over, the parent is.
ZrtGenericSeg ResolveSegment(ZrtGenericSeg segment, const ZrtGenericSeg &parent)
{
    uint32_t flags = segment.flags;
    if ((flags & ZRT_SEG_START_MIN) != 0)
        segment.start = parent.start;
    if ((flags & ZRT_SEG_START_MAX) != 0)
        segment.start = parent.end;
    if ((flags & ZRT_SEG_END_MIN) != 0)
        segment.end = parent.start;
    if ((flags & ZRT_SEG_END_MAX) != 0)
        segment.end = parent.end;
    if ((flags & (kStartMarks | kEndMarks)) != 0)
        flags |= parent.flags & kSignFlags;
    segment.flags = (flags & ZRT_SEG_SIGNED) != 0 ? uint32_t{ZRT_SEG_SIGNED} : flags & kSignFlags;
    return segment;
}

// One segment, ready to be compared with the value.
ZrtGenericSeg Segment(const ZrtConsRange *range, uint32_t index, uint32_t baseType,
                      const ZrtValidateCtx *validation)
{
    return ResolveSegment(FitToBase(zr::ReadSegment(range, index, baseType), validation),
                          validation->bounds);
}

uint32_t CheckResolved(const ZrtGenericSeg &segment, uint64_t value)
{
    switch (segment.flags) {
    case ZRT_SEG_SIGNED:
        return ZRT_CONS_CheckValueAgainstRangeSegInt64Signed(&segment, value);
    case ZRT_SEG_UNSIGNED:
        return ZRT_CONS_CheckValueAgainstRangeSegInt64Unsigned(&segment, value);
    default:
        return ZRT_SEG_BELOW;
    }
}

// Where the value lies, seen from the segment at the index. `narrow` compares narrow segments.
uint32_t CheckSegment(const ZrtConsRange *range, uint32_t index, ZrtSegCheckFunc narrow,
                      uint64_t value, const ZrtValidateCtx *validation)
{
    if (range->segSize != sizeof(ZrtGenericSeg)) {
        const auto *bytes = static_cast<const unsigned char *>(range->segments);
        return narrow(bytes + size_t{index} * range->segSize, value);
    }
    return CheckResolved(Segment(range, index, ZRT_TYPE_DERIVED, validation), value);
}

// The start of the first segment and the end of the last.
void RecordSegments(const ZrtConsRange *range, uint32_t baseType, ZrtValidateCtx *validation)
{
    if (validation->parentBounds == 0)
        return;
    ZrtGenericSeg first = Segment(range, 0, baseType, validation);
    ZrtGenericSeg last = Segment(range, range->segCount - 1u, baseType, validation);
    uint32_t flags = first.flags | last.flags;
    zr::RecordBounds(validation, {first.start, last.end, flags});
}

// A type with bounds of its own has been entered before this one, its ancestor.
bool IsReplaced(const ZrtValidateCtx *validation)
{
    return validation->explicitBounds > 1;
}

uint64_t LengthOf(uint32_t inputKind, const void *value, const ZrtValidateCtx *validation)
{
    if (validation->baseType == ZRT_TYPE_BINARY)
        return validation->binaryLength;
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    return text != nullptr ? std::strlen(text) : 0;
}

} // namespace

namespace zr {

void RecordBounds(ZrtValidateCtx *validation, const ZrtGenericSeg &bounds)
{
    if (validation->parentBounds != 0)
        validation->bounds = bounds;
}

void RecordFullLength(ZrtValidateCtx *validation)
{
    RecordBounds(validation, {0, UINT32_MAX, ZRT_SEG_UNSIGNED});
}

} // namespace zr

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataRange(const void *body, uint32_t inputKind,
                                                    const void *value, ZrtValidateCtx *validation)
{
    const auto *range = static_cast<const ZrtConsRange *>(body);
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    if (text == nullptr)
        return ZR_ERR_VALUE_RANGE;
    if (IsReplaced(validation))
        return ZR_OK;
    if (validation->baseType == ZRT_TYPE_DERIVED ||
        !ReadNumber(validation->baseType, text, validation))
        return ZR_ERR_VALUE_RANGE;
    uint32_t currentType =
        validation->current != nullptr ? validation->current->baseType : validation->baseType;
    if (range->segSize != ZRT_CONS_GetZrtSegIntegerSize(currentType))
        return ZR_ERR_INVALID;
    ZrtSegCheckFunc narrow = zr::NarrowSegCheck(currentType);
    uint64_t number = validation->value.start;
    for (uint32_t i = 0; i < range->segCount; ++i) {
        uint32_t order = CheckSegment(range, i, narrow, number, validation);
        if (order == ZRT_SEG_INSIDE) {
            RecordSegments(range, currentType, validation);
            return ZR_OK;
        }
        // Segments ascend: the first one above the value ends the walk (docs/oddities.md).
        if (order == ZRT_SEG_BELOW)
            break;
    }
    return ZR_ERR_VALUE_RANGE;
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataLength(const void *body, uint32_t inputKind,
                                                     const void *value, ZrtValidateCtx *validation)
{
    const auto *range = static_cast<const ZrtConsRange *>(body);
    if (IsReplaced(validation))
        return ZR_OK;
    if (range->segSize != sizeof(ZrtNarrowSeg<uint32_t>) && range->segSize != sizeof(ZrtGenericSeg))
        return ZR_ERR_INVALID;
    uint64_t length = LengthOf(inputKind, value, validation);
    for (uint32_t i = 0; i < range->segCount; ++i) {
        if (CheckSegment(range, i, ZRT_CONS_CheckValueAgainstRangeSegInt32Unsigned, length,
                         validation) == ZRT_SEG_INSIDE) {
            RecordSegments(range, ZRT_TYPE_UINT32, validation);
            return ZR_OK;
        }
    }
    return ZR_ERR_VALUE_LENGTH;
}

uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictRange(uint32_t baseType, uint32_t inputKind,
                                                     const void *value, ZrtValidateCtx *validation)
{
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    ZrtGenericSeg bounds = {};
    if (text == nullptr || ZRT_CONS_GetBasedIntegerMinMaxVal(baseType, &bounds) != ZR_OK ||
        bounds.flags == 0 || !ReadNumber(baseType, text, validation) ||
        CheckResolved(bounds, validation->value.start) != ZRT_SEG_INSIDE)
        return ZR_ERR_VALUE_RANGE;
    zr::RecordBounds(validation, bounds);
    return ZR_OK;
}

uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictLength(uint32_t, uint32_t, const void *,
                                                      ZrtValidateCtx *validation)
{
    zr::RecordFullLength(validation);
    return ZR_OK;
}

// The body that ranges and lengths share; a length is a range of unsigned counts.

void *ZRT_CONS_CreateConsDataBodyWithRange(uint32_t)
{
    // The number of segments is known only when the expression is read.
    return ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsRange), 0, 0);
}

void ZRT_CONS_DestroyConsDataBodyWithRange(ZrCtx *, void *body)
{
    auto *range = static_cast<ZrtConsRange *>(body);
    if (range == nullptr)
        return;
    zr::Free(range->segments);
    zr::Free(range);
}

void *ZRT_CONS_CopyConsDataBodyWithRange(ZrCtx *, const void *body)
{
    static_assert(offsetof(ZrtConsRange, segments) == zr::kBodyArrayOffset);
    const auto *source = static_cast<const ZrtConsRange *>(body);
    if (source == nullptr)
        return nullptr;
    auto *copy = static_cast<ZrtConsRange *>(ZRT_CONS_CreateConsDataBodyAndSegSize(
        sizeof(ZrtConsRange), source->segCount, source->segSize));
    if (copy == nullptr)
        return nullptr;
    copy->segCount = source->segCount;
    copy->segSize = source->segSize;
    if (copy->segments != nullptr)
        std::memcpy(copy->segments, source->segments, size_t{source->segCount} * source->segSize);
    return copy;
}

namespace {

uint32_t ScanSegments(const void *body, uint32_t baseType, ZrStartEndScanFunc callback,
                      void *userData)
{
    const auto *range = static_cast<const ZrtConsRange *>(body);
    for (uint32_t i = 0; i < range->segCount; ++i) {
        ZrtGenericSeg segment = zr::ReadSegment(range, i, baseType);
        uint64_t start = segment.start;
        uint64_t end = segment.end;
        uint32_t result = callback(start, end, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

} // namespace

uint32_t ZRT_CONS_ScanStartEndPairsWithLength(const void *body, uint32_t,
                                              ZrStartEndScanFunc callback, void *userData)
{
    return ScanSegments(body, ZRT_TYPE_UINT32, callback, userData);
}

uint32_t ZRT_CONS_ScanStartEndPairsWithRange(const void *body, uint32_t baseType,
                                             ZrStartEndScanFunc callback, void *userData)
{
    return ScanSegments(body, baseType, callback, userData);
}
