#include "types/constraints.h"

#include <gtest/gtest.h>

#include "support/alloc.h"

namespace {

TEST(CreateBody, MakesAZeroedBodyWithAZeroedArray)
{
    zrtest::AllocGuard guard;
    auto *body = static_cast<ZrtConsEnum *>(
        ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsEnum), 3, sizeof(ZrtEnumItem)));
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->count, 0);
    ASSERT_NE(body->items, nullptr);
    EXPECT_EQ(body->items[2].name, nullptr);
    EXPECT_EQ(body->items[2].value, 0);
    EXPECT_EQ(guard.LiveBlocks(), 2);
    zr::Free(body->items);
    zr::Free(body);
}

TEST(CreateBody, MakesNoArrayWhenCountOrItemSizeIsZero)
{
    zrtest::AllocGuard guard;
    for (auto [count, size] : {std::pair(0u, 8u), std::pair(3u, 0u), std::pair(0u, 0u)}) {
        auto *body = static_cast<ZrtConsEnum *>(
            ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsEnum), count, size));
        ASSERT_NE(body, nullptr);
        EXPECT_EQ(body->items, nullptr);
        zr::Free(body);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(CreateBody, FreesTheBodyWhenTheArrayCannotBeHad)
{
    uint64_t points = zrtest::FailEachAllocation([](zrtest::FailPoint &memory) {
        auto *body = static_cast<ZrtConsEnum *>(memory.Run(
            [] { return ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsEnum), 3, 8); }));
        EXPECT_EQ(body == nullptr, memory.Failed());
        if (body != nullptr)
            zr::Free(body->items);
        zr::Free(body);
    });
    EXPECT_EQ(points, 2u);
}

TEST(CreateBody, OfEveryKindCanBeDestroyedAtOnce)
{
    zrtest::AllocGuard guard;
    ZrCtx ctx = {};
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        void *body = ZRT_CONS_GetConsDataCreateBodyFunc(kind)(3);
        ASSERT_NE(body, nullptr) << kind;
        ZRT_CONS_GetConsDataDestroyBodyFunc(kind)(&ctx, body);
        EXPECT_EQ(guard.LiveBlocks(), 0) << kind;
    }
}

TEST(CreateBody, OfEveryKindIsNullWhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        guard.FailAt(0, true);
        EXPECT_EQ(ZRT_CONS_GetConsDataCreateBodyFunc(kind)(3), nullptr) << kind;
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(CreateBody, OfCountedKindsHasTheItemCount)
{
    ZrCtx ctx = {};
    for (uint32_t kind :
         {ZRT_CONS_BASE, ZRT_CONS_BIT, ZRT_CONS_ENUM, ZRT_CONS_PATTERN, ZRT_CONS_UNION}) {
        void *body = ZRT_CONS_GetConsDataCreateBodyFunc(kind)(7);
        ASSERT_NE(body, nullptr);
        EXPECT_EQ(*static_cast<uint16_t *>(body), 7) << kind;
        ZRT_CONS_GetConsDataDestroyBodyFunc(kind)(&ctx, body);
        EXPECT_EQ(ZRT_CONS_GetConsDataCreateBodyFunc(kind)(65536), nullptr) << kind;
    }
}

TEST(DestroyBody, AcceptsNull)
{
    ZrCtx ctx = {};
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind)
        ZRT_CONS_GetConsDataDestroyBodyFunc(kind)(&ctx, nullptr);
}

TEST(CopyBody, OfNullIsNull)
{
    ZrCtx ctx = {};
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind)
        EXPECT_EQ(ZRT_CONS_GetConsDataCopyBodyFunc(kind)(&ctx, nullptr), nullptr) << kind;
}

} // namespace
