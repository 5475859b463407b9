#include <gtest/gtest.h>

#include <vector>

#include "support/alloc.h"
#include "types/constraints.h"
#include "types/range.h"

namespace {

using Pairs = std::vector<std::pair<uint64_t, uint64_t>>;

uint32_t Add(uint64_t start, uint64_t end, void *userData)
{
    auto *pairs = static_cast<Pairs *>(userData);
    pairs->emplace_back(start, end);
    return pairs->size() == 3 ? 33 : 0;
}

TEST(RangeBody, IsCreatedWithoutSegments)
{
    zrtest::AllocGuard guard;
    auto *body = static_cast<ZrtConsRange *>(ZRT_CONS_CreateConsDataBodyWithRange(5));
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->segCount, 0);
    EXPECT_EQ(body->segSize, 0);
    EXPECT_EQ(body->segments, nullptr);
    ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, body);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(RangeBody, IsCopiedWithItsSegments)
{
    zrtest::AllocGuard guard;
    ZrtNarrowSeg<uint16_t> segments[] = {{1, 2}, {3, 4}};
    ZrtConsRange body = {2, 4, segments};
    auto *copy = static_cast<ZrtConsRange *>(ZRT_CONS_CopyConsDataBodyWithRange(nullptr, &body));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->segCount, 2);
    EXPECT_EQ(copy->segSize, 4);
    EXPECT_EQ(uint64_t{zr::ReadSegment(copy, 1, ZRT_TYPE_UINT16).end}, 4u);
    ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, copy);
    zrtest::FailEachAllocation(guard, [&](zrtest::FailPoint &memory) {
        void *again =
            memory.Run([&] { return ZRT_CONS_CopyConsDataBodyWithRange(nullptr, &body); });
        EXPECT_EQ(again == nullptr, memory.Failed());
        ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, again);
    });
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(RangeBody, IsCopiedWhenItHasNoSegments)
{
    ZrtConsRange body = {};
    auto *copy = static_cast<ZrtConsRange *>(ZRT_CONS_CopyConsDataBodyWithRange(nullptr, &body));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->segments, nullptr);
    ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, copy);
}

TEST(RangeScan, ExtendsTheSignOfEveryWidth)
{
    ZrtNarrowSeg<int8_t> int8Seg = {-1, 1};
    ZrtNarrowSeg<int16_t> int16Seg = {-1, 1};
    ZrtNarrowSeg<int32_t> int32Seg = {-1, 1};
    struct Row {
        uint32_t type;
        uint16_t size;
        void *segment;
    };
    for (const Row &row : {Row{ZRT_TYPE_INT8, 2, &int8Seg}, Row{ZRT_TYPE_INT16, 4, &int16Seg},
                           Row{ZRT_TYPE_INT32, 8, &int32Seg}}) {
        ZrtConsRange body = {1, row.size, row.segment};
        Pairs pairs;
        EXPECT_EQ(ZRT_CONS_ScanStartEndPairsWithRange(&body, row.type, Add, &pairs), ZR_OK);
        EXPECT_EQ(pairs, (Pairs{{UINT64_MAX, 1}})) << row.type;
    }
}

TEST(RangeScan, KeepsUnsignedWidths)
{
    ZrtNarrowSeg<uint8_t> segments[] = {{254, 255}, {1, 2}};
    ZrtConsRange body = {2, 2, segments};
    Pairs pairs;
    EXPECT_EQ(ZRT_CONS_ScanStartEndPairsWithRange(&body, ZRT_TYPE_UINT8, Add, &pairs), ZR_OK);
    EXPECT_EQ(pairs, (Pairs{{254, 255}, {1, 2}}));
}

TEST(RangeScan, ReadsGenericSegmentsAndStopsAtANonZeroResult)
{
    ZrtGenericSeg segments[] = {{1, 2, ZRT_SEG_UNSIGNED},
                                {3, UINT64_MAX, ZRT_SEG_UNSIGNED},
                                {5, 6, ZRT_SEG_UNSIGNED},
                                {7, 8, ZRT_SEG_UNSIGNED}};
    ZrtConsRange body = {4, 20, segments};
    Pairs pairs;
    EXPECT_EQ(ZRT_CONS_ScanStartEndPairsWithRange(&body, ZRT_TYPE_UINT64, Add, &pairs), 33u);
    EXPECT_EQ(pairs, (Pairs{{1, 2}, {3, UINT64_MAX}, {5, 6}}));
}

TEST(LengthScan, ReadsNarrowSegmentsAsUnsignedWhateverTheType)
{
    ZrtNarrowSeg<uint32_t> segments[] = {{1, 4294967295}};
    ZrtConsRange body = {1, 8, segments};
    for (uint32_t type : {ZRT_TYPE_STRING, ZRT_TYPE_DERIVED, ZRT_TYPE_INT32, ZRT_TYPE_BINARY}) {
        Pairs pairs;
        EXPECT_EQ(ZRT_CONS_ScanStartEndPairsWithLength(&body, type, Add, &pairs), ZR_OK);
        EXPECT_EQ(pairs, (Pairs{{1, 4294967295}})) << type;
    }
}

} // namespace
