// SPDX-License-Identifier: Apache-2.0
#include "types/range.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {

TEST(SegmentSize, FollowsTheBaseType)
{
    for (uint32_t type = ZRT_TYPE_DERIVED; type <= ZRT_TYPE_NONE; ++type) {
        uint32_t width = sizeof(ZrtGenericSeg); // with flags that tell how to read it
        if (type == ZRT_TYPE_INT8 || type == ZRT_TYPE_UINT8)
            width = 2 * sizeof(uint8_t); // start and end
        if (type == ZRT_TYPE_INT16 || type == ZRT_TYPE_UINT16)
            width = 2 * sizeof(uint16_t);
        if (type == ZRT_TYPE_INT32 || type == ZRT_TYPE_UINT32)
            width = 2 * sizeof(uint32_t);
        EXPECT_EQ(ZRT_CONS_GetZrtSegIntegerSize(type), width) << ZR_GetBuiltInTypeName(type);
    }
    EXPECT_EQ(ZRT_CONS_GetZrtSegIntegerSize(UINT32_MAX), sizeof(ZrtGenericSeg));
}

TEST(BaseTypeBounds, AreThoseOfTheIntegerTypes)
{
    struct Row {
        uint32_t type;
        uint64_t min;
        uint64_t max;
        uint32_t flags;
    };
    const Row rows[] = {
        {ZRT_TYPE_INT8, static_cast<uint64_t>(INT64_C(-128)), 127, ZRT_SEG_SIGNED},
        {ZRT_TYPE_INT16, static_cast<uint64_t>(INT64_C(-32768)), 32767, ZRT_SEG_SIGNED},
        {ZRT_TYPE_INT32, static_cast<uint64_t>(INT64_C(-2147483648)), 2147483647, ZRT_SEG_SIGNED},
        {ZRT_TYPE_INT64, UINT64_C(0x8000000000000000), INT64_MAX, ZRT_SEG_SIGNED},
        {ZRT_TYPE_UINT8, 0, 255, ZRT_SEG_UNSIGNED},
        {ZRT_TYPE_UINT16, 0, 65535, ZRT_SEG_UNSIGNED},
        {ZRT_TYPE_UINT32, 0, 4294967295, ZRT_SEG_UNSIGNED},
        {ZRT_TYPE_UINT64, 0, UINT64_MAX, ZRT_SEG_UNSIGNED},
    };
    uint32_t integerTypes = 0;
    for (const Row &row : rows) {
        ZrtGenericSeg bounds = {};
        EXPECT_EQ(ZRT_CONS_GetBasedIntegerMinMaxVal(row.type, &bounds), ZR_OK);
        EXPECT_TRUE(bounds.start == row.min && bounds.end == row.max && bounds.flags == row.flags)
            << row.type;
        integerTypes |= 1u << row.type;
    }
    for (uint32_t type = 0; type < ZRT_TYPE_NONE; ++type) {
        ZrtGenericSeg bounds = {1, 1, 1};
        EXPECT_EQ(ZRT_CONS_GetBasedIntegerMinMaxVal(type, &bounds), ZR_OK);
        if ((integerTypes & (1u << type)) == 0) {
            EXPECT_TRUE(bounds.start == 0 && bounds.end == 0 && bounds.flags == 0) << type;
        }
    }
}

TEST(BaseTypeBounds, OfATypeAbove19Are22)
{
    ZrtGenericSeg bounds = {};
    EXPECT_EQ(ZRT_CONS_GetBasedIntegerMinMaxVal(20, &bounds), ZR_ERR_INVALID);
    EXPECT_EQ(ZRT_CONS_GetBasedIntegerMinMaxVal(UINT32_MAX, &bounds), ZR_ERR_INVALID);
}

TEST(RangePushTable, HasAFunctionForEachTypeThatTakesARange)
{
    const ZrtRangePushFunc rows[] = {
        ZRT_LOADER_PushRangeValueIntoSegIntUnknown,   // derived
        nullptr,                                      // binary
        nullptr,                                      // bits
        nullptr,                                      // boolean
        ZRT_LOADER_PushRangeValueIntoSegInt64Signed,  // decimal64
        nullptr,                                      // empty
        nullptr,                                      // enumeration
        nullptr,                                      // identityref
        nullptr,                                      // instance-identifier
        ZRT_LOADER_PushRangeValueIntoSegInt8Signed,   // int8
        ZRT_LOADER_PushRangeValueIntoSegInt16Signed,  // int16
        ZRT_LOADER_PushRangeValueIntoSegInt32Signed,  // int32
        ZRT_LOADER_PushRangeValueIntoSegInt64Signed,  // int64
        nullptr,                                      // leafref
        nullptr,                                      // string
        ZRT_LOADER_PushRangeValueIntoSegInt8Unsigned, // uint8
        ZRT_LOADER_PushRangeValueIntoSegInt16Unsigned,
        ZRT_LOADER_PushRangeValueIntoSegInt32Unsigned,
        ZRT_LOADER_PushRangeValueIntoSegInt64Unsigned,
        nullptr, // union
    };
    for (uint32_t type = 0; type < ZRT_TYPE_NONE; ++type)
        EXPECT_EQ(ZRT_LOADER_GetRangeSplitFillFunc(type), rows[type]) << type;
    EXPECT_EQ(ZRT_LOADER_GetRangeSplitFillFunc(20), nullptr);
    EXPECT_EQ(ZRT_LOADER_GetRangeSplitFillFunc(UINT32_MAX), nullptr);
}

TEST(LengthPushTable, HasAFunctionForBothWidths)
{
    EXPECT_EQ(ZRT_LOADER_GetLengthSplitFillFunc(8), ZRT_LOADER_PushRangeValueIntoSegInt32Unsigned);
    EXPECT_EQ(ZRT_LOADER_GetLengthSplitFillFunc(20), ZRT_LOADER_PushRangeValueIntoSegIntUnknown);
    for (uint32_t size : {0u, 2u, 4u, 16u, 21u})
        EXPECT_EQ(ZRT_LOADER_GetLengthSplitFillFunc(size), nullptr) << size;
}

// One push of one part into a body with room for `capacity` segments of a width.
struct Push {
    Push(ZrtRangePushFunc pushFunc, uint32_t segSize, uint64_t start, uint64_t end, uint32_t flags,
         uint32_t capacity = 1)
    {
        body.segSize = static_cast<uint16_t>(segSize);
        body.segments = memory;
        ZrtRangePush push = {&body, capacity, 0, 0, 0};
        ZrtGenericSeg part = {start, end, flags};
        status = pushFunc(&push, &part);
    }
    template <typename Integer> ZrtNarrowSeg<Integer> Narrow() const
    {
        ZrtNarrowSeg<Integer> segment;
        std::memcpy(&segment, memory, sizeof segment);
        return segment;
    }
    ZrtGenericSeg Generic() const
    {
        ZrtGenericSeg segment;
        std::memcpy(&segment, memory, sizeof segment);
        return segment;
    }
    uint32_t status;
    ZrtConsRange body = {};
    unsigned char memory[64] = {};
};

constexpr uint64_t Negative(int64_t value)
{
    return static_cast<uint64_t>(value);
}

constexpr uint32_t kMinMax = ZRT_SEG_START_MIN | ZRT_SEG_END_MAX;

template <typename Integer> void ExpectSignedNarrow(ZrtRangePushFunc pushFunc)
{
    constexpr auto kMin = std::numeric_limits<Integer>::min();
    constexpr auto kMax = std::numeric_limits<Integer>::max();
    uint32_t size = sizeof(ZrtNarrowSeg<Integer>);
    auto expect = [&](uint64_t start, uint64_t end, uint32_t flags, Integer low, Integer high) {
        Push push(pushFunc, size, start, end, flags);
        EXPECT_EQ(push.status, ZR_OK);
        EXPECT_EQ(push.body.segCount, 1);
        EXPECT_EQ(push.template Narrow<Integer>().start, low);
        EXPECT_EQ(push.template Narrow<Integer>().end, high);
    };
    expect(1, 5, ZRT_SEG_UNSIGNED, 1, 5);
    expect(Negative(-5), 5, ZRT_SEG_SIGNED, -5, 5);
    expect(0, static_cast<uint64_t>(kMax), ZRT_SEG_UNSIGNED, 0, kMax);
    // A positive part that does not fit becomes zeros; a signed one is cut to the width.
    expect(1, static_cast<uint64_t>(kMax) + 1, ZRT_SEG_UNSIGNED, 0, 0);
    expect(Negative(-1), static_cast<uint64_t>(kMax) + 1, ZRT_SEG_SIGNED, -1, kMin);
    expect(0, 0, kMinMax, kMin, kMax);
    expect(0, 0, ZRT_SEG_START_MAX | ZRT_SEG_END_MAX, kMax, kMax);
    expect(0, 0, ZRT_SEG_START_MIN | ZRT_SEG_END_MIN, kMin, kMin);
    expect(3, 0, ZRT_SEG_UNSIGNED | ZRT_SEG_END_MAX, 3, kMax);
}

template <typename Integer> void ExpectUnsignedNarrow(ZrtRangePushFunc pushFunc)
{
    constexpr auto kMax = std::numeric_limits<Integer>::max();
    uint32_t size = sizeof(ZrtNarrowSeg<Integer>);
    auto expect = [&](uint64_t start, uint64_t end, uint32_t flags, Integer low, Integer high) {
        Push push(pushFunc, size, start, end, flags);
        EXPECT_EQ(push.status, ZR_OK);
        EXPECT_EQ(push.template Narrow<Integer>().start, low);
        EXPECT_EQ(push.template Narrow<Integer>().end, high);
    };
    expect(1, 5, ZRT_SEG_UNSIGNED, 1, 5);
    expect(0, kMax, ZRT_SEG_UNSIGNED, 0, kMax);
    expect(1, uint64_t{kMax} + 45, ZRT_SEG_UNSIGNED, 1, 44); // cut to the width
    expect(0, 0, kMinMax, 0, kMax);
    expect(0, 0, ZRT_SEG_START_MAX | ZRT_SEG_END_MAX, kMax, kMax);
    expect(3, 0, ZRT_SEG_UNSIGNED | ZRT_SEG_END_MIN, 3, 0);
    Push negative(pushFunc, size, Negative(-1), 5, ZRT_SEG_SIGNED);
    EXPECT_EQ(negative.status, ZR_ERR_INVALID);
    EXPECT_EQ(negative.body.segCount, 0);
}

TEST(RangePush, StoresSignedNarrowSegments)
{
    ExpectSignedNarrow<int8_t>(ZRT_LOADER_PushRangeValueIntoSegInt8Signed);
    ExpectSignedNarrow<int16_t>(ZRT_LOADER_PushRangeValueIntoSegInt16Signed);
    ExpectSignedNarrow<int32_t>(ZRT_LOADER_PushRangeValueIntoSegInt32Signed);
}

TEST(RangePush, StoresUnsignedNarrowSegmentsAndRefusesNegativeParts)
{
    ExpectUnsignedNarrow<uint8_t>(ZRT_LOADER_PushRangeValueIntoSegInt8Unsigned);
    ExpectUnsignedNarrow<uint16_t>(ZRT_LOADER_PushRangeValueIntoSegInt16Unsigned);
    ExpectUnsignedNarrow<uint32_t>(ZRT_LOADER_PushRangeValueIntoSegInt32Unsigned);
}

void ExpectGeneric(const Push &push, uint64_t start, uint64_t end, uint32_t flags)
{
    EXPECT_EQ(push.status, ZR_OK);
    ZrtGenericSeg segment = push.Generic();
    EXPECT_TRUE(segment.start == start && segment.end == end && segment.flags == flags);
}

TEST(RangePush, Of64SignedBitsAlwaysCarriesTheSignedFlag)
{
    ZrtRangePushFunc push = ZRT_LOADER_PushRangeValueIntoSegInt64Signed;
    ExpectGeneric(Push(push, 20, 1, 5, ZRT_SEG_UNSIGNED), 1, 5, ZRT_SEG_SIGNED);
    ExpectGeneric(Push(push, 20, Negative(-5), 5, ZRT_SEG_SIGNED), Negative(-5), 5, ZRT_SEG_SIGNED);
    ExpectGeneric(Push(push, 20, 0, UINT64_C(1) << 63, ZRT_SEG_UNSIGNED), 0, 0, ZRT_SEG_SIGNED);
    ExpectGeneric(Push(push, 20, 0, 0, kMinMax), Negative(INT64_MIN), INT64_MAX, ZRT_SEG_SIGNED);
}

TEST(RangePush, Of64UnsignedBitsAlwaysCarriesTheUnsignedFlag)
{
    ZrtRangePushFunc push = ZRT_LOADER_PushRangeValueIntoSegInt64Unsigned;
    ExpectGeneric(Push(push, 20, 1, UINT64_MAX, ZRT_SEG_UNSIGNED), 1, UINT64_MAX, ZRT_SEG_UNSIGNED);
    ExpectGeneric(Push(push, 20, 0, 0, kMinMax), 0, UINT64_MAX, ZRT_SEG_UNSIGNED);
    EXPECT_EQ(Push(push, 20, Negative(-1), 5, ZRT_SEG_SIGNED).status, ZR_ERR_INVALID);
}

TEST(RangePush, OfAnUnknownTypeKeepsThePartAsItIs)
{
    ZrtRangePushFunc push = ZRT_LOADER_PushRangeValueIntoSegIntUnknown;
    ExpectGeneric(Push(push, 20, 7, 0, ZRT_SEG_UNSIGNED | ZRT_SEG_END_MAX), 7, 0,
                  ZRT_SEG_UNSIGNED | ZRT_SEG_END_MAX);
    ExpectGeneric(Push(push, 20, 0, 0, kMinMax), 0, 0, kMinMax);
}

TEST(RangePush, OfAnUnknownTypeIs104WithoutABlockForTheSegments)
{
    ZrtConsRange body = {0, sizeof(ZrtGenericSeg), nullptr};
    ZrtRangePush push = {&body, 1, 0, 0, 0};
    ZrtGenericSeg part = {1, 1, ZRT_SEG_UNSIGNED};
    EXPECT_EQ(ZRT_LOADER_PushRangeValueIntoSegIntUnknown(&push, &part), ZR_ERR_COPY);
    EXPECT_EQ(body.segCount, 0);
}

TEST(RangePush, RefusesASegmentBeyondTheRoom)
{
    for (uint32_t type = 0; type < ZRT_TYPE_NONE; ++type) {
        ZrtRangePushFunc push = ZRT_LOADER_GetRangeSplitFillFunc(type);
        if (push == nullptr)
            continue;
        Push full(push, ZRT_CONS_GetZrtSegIntegerSize(type), 1, 1, ZRT_SEG_UNSIGNED, 0);
        EXPECT_EQ(full.status, ZR_ERR_INVALID) << type;
        EXPECT_EQ(full.body.segCount, 0) << type;
    }
}

TEST(RangePush, RefusesABodyOfAnotherWidth)
{
    for (uint32_t type = 0; type < ZRT_TYPE_NONE; ++type) {
        ZrtRangePushFunc push = ZRT_LOADER_GetRangeSplitFillFunc(type);
        if (push == nullptr)
            continue;
        uint32_t other = ZRT_CONS_GetZrtSegIntegerSize(type) == 4 ? 8 : 4;
        EXPECT_EQ(Push(push, other, 1, 1, ZRT_SEG_UNSIGNED).status, ZR_ERR_INVALID) << type;
    }
}

template <typename Integer>
void ExpectNarrowOrder(ZrtSegCheckFunc check, int64_t below, int64_t above)
{
    ZrtNarrowSeg<Integer> segment = {static_cast<Integer>(below + 1),
                                     static_cast<Integer>(above - 1)};
    EXPECT_EQ(check(&segment, Negative(below)), ZRT_SEG_BELOW);
    EXPECT_EQ(check(&segment, Negative(below + 1)), ZRT_SEG_INSIDE);
    EXPECT_EQ(check(&segment, Negative(above - 1)), ZRT_SEG_INSIDE);
    EXPECT_EQ(check(&segment, Negative(above)), ZRT_SEG_ABOVE);
}

TEST(SegmentCheck, OfEachWidthTellsBelowInsideAndAbove)
{
    ExpectNarrowOrder<int8_t>(ZRT_CONS_CheckValueAgainstRangeSegInt8Signed, -101, 51);
    ExpectNarrowOrder<int16_t>(ZRT_CONS_CheckValueAgainstRangeSegInt16Signed, -30001, 301);
    ExpectNarrowOrder<int32_t>(ZRT_CONS_CheckValueAgainstRangeSegInt32Signed, -2000000001, 70001);
    ExpectNarrowOrder<uint8_t>(ZRT_CONS_CheckValueAgainstRangeSegInt8Unsigned, 9, 251);
    ExpectNarrowOrder<uint16_t>(ZRT_CONS_CheckValueAgainstRangeSegInt16Unsigned, 9, 60001);
    ExpectNarrowOrder<uint32_t>(ZRT_CONS_CheckValueAgainstRangeSegInt32Unsigned, 9, 4000000001);
}

TEST(SegmentCheck, Of64BitsComparesSignedOrUnsigned)
{
    ZrtGenericSeg segment = {Negative(-5), 5, ZRT_SEG_SIGNED};
    ZrtSegCheckFunc isSigned = ZRT_CONS_CheckValueAgainstRangeSegInt64Signed;
    EXPECT_EQ(isSigned(&segment, Negative(-6)), ZRT_SEG_BELOW);
    EXPECT_EQ(isSigned(&segment, Negative(-5)), ZRT_SEG_INSIDE);
    EXPECT_EQ(isSigned(&segment, 5), ZRT_SEG_INSIDE);
    EXPECT_EQ(isSigned(&segment, 6), ZRT_SEG_ABOVE);
    segment = {5, UINT64_MAX - 1, ZRT_SEG_UNSIGNED};
    ZrtSegCheckFunc isUnsigned = ZRT_CONS_CheckValueAgainstRangeSegInt64Unsigned;
    EXPECT_EQ(isUnsigned(&segment, 4), ZRT_SEG_BELOW);
    EXPECT_EQ(isUnsigned(&segment, UINT64_MAX - 1), ZRT_SEG_INSIDE);
    EXPECT_EQ(isUnsigned(&segment, UINT64_MAX), ZRT_SEG_ABOVE);
}

TEST(ReadSegment, WidensNarrowSegments)
{
    ZrtNarrowSeg<int8_t> segments[] = {{-3, 4}, {5, 6}};
    ZrtConsRange range = {2, 2, segments};
    ZrtGenericSeg first = zr::ReadSegment(&range, 0, ZRT_TYPE_INT8);
    EXPECT_TRUE(first.start == Negative(-3) && first.end == 4 && first.flags == ZRT_SEG_SIGNED);
    ZrtGenericSeg second = zr::ReadSegment(&range, 1, ZRT_TYPE_INT8);
    EXPECT_TRUE(second.start == 5 && second.end == 6);
    ZrtGenericSeg asUnsigned = zr::ReadSegment(&range, 0, ZRT_TYPE_UINT8);
    EXPECT_TRUE(asUnsigned.start == 253 && asUnsigned.flags == ZRT_SEG_UNSIGNED);
}

TEST(ReadSegment, TakesNarrowSegmentsOfATypeWithoutIntegersAsLengths)
{
    ZrtNarrowSeg<uint32_t> segment = {3, UINT32_MAX};
    ZrtConsRange range = {1, sizeof segment, &segment};
    for (uint32_t type : {ZRT_TYPE_STRING, ZRT_TYPE_DERIVED, ZRT_TYPE_INT8, ZRT_TYPE_NONE}) {
        ZrtGenericSeg read = zr::ReadSegment(&range, 0, type);
        EXPECT_TRUE(read.start == 3 && read.end == UINT32_MAX && read.flags == ZRT_SEG_UNSIGNED)
            << type;
    }
}

} // namespace
