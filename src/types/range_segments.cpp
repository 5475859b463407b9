// SPDX-License-Identifier: Apache-2.0
#include "types/range.h"

#include <cstring>
#include <iterator>
#include <limits>
#include <type_traits>

#include "foundation/array.h"
#include "platform/strings.h"

namespace {

// Segments are read and written as bytes: their block has no type of its own.
template <typename Segment> Segment LoadSegment(const void *segment)
{
    Segment copy;
    std::memcpy(&copy, segment, sizeof copy);
    return copy;
}

unsigned char *SegmentAt(const ZrtConsRange *range, uint32_t index)
{
    return static_cast<unsigned char *>(range->segments) + size_t{index} * range->segSize;
}

template <typename Integer>
constexpr uint32_t kSignFlag = std::is_signed_v<Integer> ? ZRT_SEG_SIGNED : ZRT_SEG_UNSIGNED;

template <typename Integer> uint32_t Order(Integer start, Integer end, uint64_t value)
{
    using Wide = std::conditional_t<std::is_signed_v<Integer>, int64_t, uint64_t>;
    Wide wide = static_cast<Wide>(value);
    if (wide < start)
        return ZRT_SEG_BELOW;
    return wide > end ? ZRT_SEG_ABOVE : ZRT_SEG_INSIDE;
}

template <typename Integer> uint32_t CheckNarrow(const void *segment, uint64_t value)
{
    auto seg = LoadSegment<ZrtNarrowSeg<Integer>>(segment);
    return Order<Integer>(seg.start, seg.end, value);
}

template <typename Integer> uint32_t CheckWide(const void *segment, uint64_t value)
{
    auto seg = LoadSegment<ZrtGenericSeg>(segment);
    return Order<Integer>(static_cast<Integer>(seg.start), static_cast<Integer>(seg.end), value);
}

bool HasRoom(const ZrtRangePush *push, uint32_t segSize)
{
    return push->body->segCount < push->capacity && push->body->segSize == segSize;
}

// What "min" and "max" make of one end of a part.
template <typename Integer>
Integer Resolve(Integer value, uint32_t flags, uint32_t minFlag, uint32_t maxFlag)
{
    if ((flags & minFlag) != 0)
        value = std::numeric_limits<Integer>::min();
    if ((flags & maxFlag) != 0)
        value = std::numeric_limits<Integer>::max();
    return value;
}

// The part as a segment of the integer type; false when the type cannot hold its sign.
template <typename Integer>
bool NarrowPart(const ZrtGenericSeg *part, ZrtNarrowSeg<Integer> &segment)
{
    bool isSigned = (part->flags & ZRT_SEG_SIGNED) != 0;
    uint64_t start = part->start;
    uint64_t end = part->end;
    if constexpr (std::is_signed_v<Integer>) {
        // docs/oddities.md: what a bound becomes that the type cannot hold.
        constexpr uint64_t kMax = static_cast<uint64_t>(std::numeric_limits<Integer>::max());
        if (!isSigned && (start > kMax || end > kMax))
            start = end = 0;
    } else if (isSigned) {
        return false;
    }
    segment.start =
        Resolve(static_cast<Integer>(start), part->flags, ZRT_SEG_START_MIN, ZRT_SEG_START_MAX);
    segment.end = Resolve(static_cast<Integer>(end), part->flags, ZRT_SEG_END_MIN, ZRT_SEG_END_MAX);
    return true;
}

template <typename Integer> uint32_t PushNarrow(ZrtRangePush *push, const ZrtGenericSeg *part)
{
    ZrtNarrowSeg<Integer> segment = {};
    if (!HasRoom(push, sizeof segment) || !NarrowPart(part, segment))
        return ZR_ERR_INVALID;
    std::memcpy(SegmentAt(push->body, push->body->segCount), &segment, sizeof segment);
    ++push->body->segCount;
    return ZR_OK;
}

template <typename Integer> uint32_t PushWide(ZrtRangePush *push, const ZrtGenericSeg *part)
{
    ZrtNarrowSeg<Integer> narrow = {};
    if (!HasRoom(push, sizeof(ZrtGenericSeg)) || !NarrowPart(part, narrow))
        return ZR_ERR_INVALID;
    ZrtGenericSeg segment = {static_cast<uint64_t>(narrow.start), static_cast<uint64_t>(narrow.end),
                             kSignFlag<Integer>};
    std::memcpy(SegmentAt(push->body, push->body->segCount), &segment, sizeof segment);
    ++push->body->segCount;
    return ZR_OK;
}

template <typename Integer> ZrtGenericSeg Widen(const void *segment)
{
    auto seg = LoadSegment<ZrtNarrowSeg<Integer>>(segment);
    using Wide = std::conditional_t<std::is_signed_v<Integer>, int64_t, uint64_t>;
    return {static_cast<uint64_t>(Wide{seg.start}), static_cast<uint64_t>(Wide{seg.end}),
            kSignFlag<Integer>};
}

template <typename Integer> constexpr ZrtGenericSeg BoundsOf()
{
    return {static_cast<uint64_t>(std::numeric_limits<Integer>::min()),
            static_cast<uint64_t>(std::numeric_limits<Integer>::max()), kSignFlag<Integer>};
}

template <typename Integer> constexpr uint32_t kNarrow = sizeof(ZrtNarrowSeg<Integer>);
constexpr uint32_t kWide = sizeof(ZrtGenericSeg);

// How the segments of a type's ranges are stored. Ranges of a typedef reference keep "min" and
// "max" as marks; types without a push have no ranges.
struct TypeRow {
    ZrtBuiltInType type;
    uint32_t segSize;
    ZrtRangePushFunc push;
    ZrtSegCheckFunc check;                // of narrow segments
    ZrtGenericSeg (*widen)(const void *); // of narrow segments
    ZrtGenericSeg bounds;
};

// clang-format off
constexpr TypeRow kTypeRows[] = {
//   type                          size               push                                           check                                            widen            bounds
    {ZRT_TYPE_DERIVED,             kWide,             ZRT_LOADER_PushRangeValueIntoSegIntUnknown,    nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_BINARY,              kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_BITS,                kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_BOOLEAN,             kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_DECIMAL64,           kWide,             ZRT_LOADER_PushRangeValueIntoSegInt64Signed,   nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_EMPTY,               kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_ENUMERATION,         kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_IDENTITYREF,         kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_INSTANCE_IDENTIFIER, kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_INT8,                kNarrow<int8_t>,   ZRT_LOADER_PushRangeValueIntoSegInt8Signed,    ZRT_CONS_CheckValueAgainstRangeSegInt8Signed,    Widen<int8_t>,   BoundsOf<int8_t>()},
    {ZRT_TYPE_INT16,               kNarrow<int16_t>,  ZRT_LOADER_PushRangeValueIntoSegInt16Signed,   ZRT_CONS_CheckValueAgainstRangeSegInt16Signed,   Widen<int16_t>,  BoundsOf<int16_t>()},
    {ZRT_TYPE_INT32,               kNarrow<int32_t>,  ZRT_LOADER_PushRangeValueIntoSegInt32Signed,   ZRT_CONS_CheckValueAgainstRangeSegInt32Signed,   Widen<int32_t>,  BoundsOf<int32_t>()},
    {ZRT_TYPE_INT64,               kWide,             ZRT_LOADER_PushRangeValueIntoSegInt64Signed,   nullptr,                                         nullptr,         BoundsOf<int64_t>()},
    {ZRT_TYPE_LEAFREF,             kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_STRING,              kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
    {ZRT_TYPE_UINT8,               kNarrow<uint8_t>,  ZRT_LOADER_PushRangeValueIntoSegInt8Unsigned,  ZRT_CONS_CheckValueAgainstRangeSegInt8Unsigned,  Widen<uint8_t>,  BoundsOf<uint8_t>()},
    {ZRT_TYPE_UINT16,              kNarrow<uint16_t>, ZRT_LOADER_PushRangeValueIntoSegInt16Unsigned, ZRT_CONS_CheckValueAgainstRangeSegInt16Unsigned, Widen<uint16_t>, BoundsOf<uint16_t>()},
    {ZRT_TYPE_UINT32,              kNarrow<uint32_t>, ZRT_LOADER_PushRangeValueIntoSegInt32Unsigned, ZRT_CONS_CheckValueAgainstRangeSegInt32Unsigned, Widen<uint32_t>, BoundsOf<uint32_t>()},
    {ZRT_TYPE_UINT64,              kWide,             ZRT_LOADER_PushRangeValueIntoSegInt64Unsigned, nullptr,                                         nullptr,         BoundsOf<uint64_t>()},
    {ZRT_TYPE_UNION,               kWide,             nullptr,                                       nullptr,                                         nullptr,         {}},
};
// clang-format on
static_assert(zr::RowsInOrder(kTypeRows, &TypeRow::type, ZRT_TYPE_DERIVED, ZRT_TYPE_NONE));

const TypeRow *RowOf(uint32_t baseType)
{
    return baseType < std::size(kTypeRows) ? &kTypeRows[baseType] : nullptr;
}

} // namespace

uint32_t ZRT_CONS_GetZrtSegIntegerSize(uint32_t baseType)
{
    const TypeRow *row = RowOf(baseType);
    return row != nullptr ? row->segSize : kWide;
}

uint32_t ZRT_CONS_GetBasedIntegerMinMaxVal(uint32_t baseType, ZrtGenericSeg *boundsOut)
{
    const TypeRow *row = RowOf(baseType);
    if (row == nullptr || boundsOut == nullptr)
        return ZR_ERR_INVALID;
    *boundsOut = row->bounds;
    return ZR_OK;
}

ZrtRangePushFunc ZRT_LOADER_GetRangeSplitFillFunc(uint32_t baseType)
{
    const TypeRow *row = RowOf(baseType);
    return row != nullptr ? row->push : nullptr;
}

ZrtRangePushFunc ZRT_LOADER_GetLengthSplitFillFunc(uint32_t segSize)
{
    switch (segSize) {
    case sizeof(ZrtNarrowSeg<uint32_t>):
        return ZRT_LOADER_PushRangeValueIntoSegInt32Unsigned;
    case sizeof(ZrtGenericSeg):
        return ZRT_LOADER_PushRangeValueIntoSegIntUnknown;
    default:
        return nullptr;
    }
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegInt8Signed(ZrtRangePush *push, const ZrtGenericSeg *part)
{
    return PushNarrow<int8_t>(push, part);
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegInt16Signed(ZrtRangePush *push, const ZrtGenericSeg *part)
{
    return PushNarrow<int16_t>(push, part);
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegInt32Signed(ZrtRangePush *push, const ZrtGenericSeg *part)
{
    return PushNarrow<int32_t>(push, part);
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegInt64Signed(ZrtRangePush *push, const ZrtGenericSeg *part)
{
    return PushWide<int64_t>(push, part);
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegInt8Unsigned(ZrtRangePush *push, const ZrtGenericSeg *part)
{
    return PushNarrow<uint8_t>(push, part);
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegInt16Unsigned(ZrtRangePush *push,
                                                       const ZrtGenericSeg *part)
{
    return PushNarrow<uint16_t>(push, part);
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegInt32Unsigned(ZrtRangePush *push,
                                                       const ZrtGenericSeg *part)
{
    return PushNarrow<uint32_t>(push, part);
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegInt64Unsigned(ZrtRangePush *push,
                                                       const ZrtGenericSeg *part)
{
    return PushWide<uint64_t>(push, part);
}

uint32_t ZRT_LOADER_PushRangeValueIntoSegIntUnknown(ZrtRangePush *push, const ZrtGenericSeg *part)
{
    // "min" and "max" stay symbolic: only a value's check knows the bounds that they stand for.
    if (!HasRoom(push, sizeof *part))
        return ZR_ERR_INVALID;
    uint32_t index = push->body->segCount;
    size_t room = size_t{push->capacity - index} * sizeof *part;
    if (memcpy_s(SegmentAt(push->body, index), room, part, sizeof *part) < 0)
        return ZR_ERR_COPY;
    ++push->body->segCount;
    return ZR_OK;
}

uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt8Signed(const void *segment, uint64_t value)
{
    return CheckNarrow<int8_t>(segment, value);
}

uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt16Signed(const void *segment, uint64_t value)
{
    return CheckNarrow<int16_t>(segment, value);
}

uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt32Signed(const void *segment, uint64_t value)
{
    return CheckNarrow<int32_t>(segment, value);
}

uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt64Signed(const void *segment, uint64_t value)
{
    return CheckWide<int64_t>(segment, value);
}

uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt8Unsigned(const void *segment, uint64_t value)
{
    return CheckNarrow<uint8_t>(segment, value);
}

uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt16Unsigned(const void *segment, uint64_t value)
{
    return CheckNarrow<uint16_t>(segment, value);
}

uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt32Unsigned(const void *segment, uint64_t value)
{
    return CheckNarrow<uint32_t>(segment, value);
}

uint32_t ZRT_CONS_CheckValueAgainstRangeSegInt64Unsigned(const void *segment, uint64_t value)
{
    return CheckWide<uint64_t>(segment, value);
}

namespace zr {

ZrtSegCheckFunc NarrowSegCheck(uint32_t baseType)
{
    const TypeRow *row = RowOf(baseType);
    return row != nullptr ? row->check : nullptr;
}

ZrtGenericSeg ReadSegment(const ZrtConsRange *range, uint32_t index, uint32_t baseType)
{
    const unsigned char *segment = SegmentAt(range, index);
    if (range->segSize == sizeof(ZrtGenericSeg))
        return LoadSegment<ZrtGenericSeg>(segment);
    const TypeRow *row = RowOf(baseType);
    if (row != nullptr && row->widen != nullptr && row->segSize == range->segSize)
        return row->widen(segment);
    return Widen<uint32_t>(segment);
}

} // namespace zr
