#include "foundation/array.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "platform/memory.h"
#include "support/alloc.h"

namespace {

class CountedArray : public testing::Test {
protected:
    ~CountedArray() override { zr::Free(array_); }
    void **slot() { return reinterpret_cast<void **>(&array_); }

    uint32_t *array_ = nullptr;
};

using NewArray = CountedArray;
using ExpandArray = CountedArray;

TEST_F(NewArray, IsZeroFilled)
{
    ASSERT_EQ(ZR_UTL_NewArray(slot(), 3, 4), ZR_OK);
    ASSERT_NE(array_, nullptr);
    EXPECT_EQ(array_[0] | array_[1] | array_[2], 0u);
}

TEST_F(NewArray, OfNoElementsStaysNull)
{
    zrtest::AllocGuard guard;
    EXPECT_EQ(ZR_UTL_NewArray(slot(), 0, 4), ZR_OK);
    EXPECT_EQ(array_, nullptr);
    EXPECT_EQ(guard.Count(), 0u);
}

TEST_F(NewArray, RefusesAnArrayThatIsThereAndLeavesItAlone)
{
    ASSERT_EQ(zr::NewArray(&array_, 1), ZR_OK);
    uint32_t *before = array_;
    array_[0] = 7;
    EXPECT_EQ(ZR_UTL_NewArray(slot(), 2, 4), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_NewArray(slot(), 0, 4), ZR_ERR_INVALID);
    EXPECT_EQ(array_, before);
    EXPECT_EQ(array_[0], 7u);
}

TEST_F(NewArray, RefusesANullAddressAndAnElementSizeOfZero)
{
    EXPECT_EQ(ZR_UTL_NewArray(nullptr, 1, 4), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_NewArray(slot(), 1, 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_NewArray(slot(), 0, 0), ZR_ERR_INVALID);
    EXPECT_EQ(array_, nullptr);
}

TEST_F(NewArray, Is12WhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZR_UTL_NewArray(slot(), 3, 4), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(array_, nullptr);
}

// A malloc hook that always refuses, for sizes that are too large to be tried.
TEST_F(NewArray, Is12ForMoreBytesThanThereCanBe)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0, true);
    EXPECT_EQ(ZR_UTL_NewArray(slot(), UINT32_MAX, UINT32_MAX), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(array_, nullptr);
}

TEST_F(ExpandArray, WithNoOldElementsMakesANewArray)
{
    ASSERT_EQ(ZR_UTL_ExpandArray(slot(), 0, 2, 4), ZR_OK);
    EXPECT_EQ(array_[0] | array_[1], 0u);
    EXPECT_EQ(ZR_UTL_ExpandArray(slot(), 0, 2, 4), ZR_ERR_INVALID)
        << "like NewArray of an array that is there";
}

TEST_F(ExpandArray, WithNothingToAddChangesNothing)
{
    EXPECT_EQ(ZR_UTL_ExpandArray(slot(), 0, 0, 4), ZR_OK);
    EXPECT_EQ(array_, nullptr);
    zr::NewArray(&array_, 1);
    uint32_t *before = array_;
    zrtest::AllocGuard guard;
    EXPECT_EQ(ZR_UTL_ExpandArray(slot(), 1, 0, 4), ZR_OK);
    EXPECT_EQ(array_, before);
    EXPECT_EQ(guard.Count(), 0u);
}

TEST_F(ExpandArray, KeepsTheOldElementsAndZeroesTheNewOnes)
{
    zr::NewArray(&array_, 2);
    array_[0] = 11;
    array_[1] = 22;
    ASSERT_EQ(ZR_UTL_ExpandArray(slot(), 2, 3, 4), ZR_OK);
    EXPECT_EQ(array_[0], 11u);
    EXPECT_EQ(array_[1], 22u);
    EXPECT_EQ(array_[2] | array_[3] | array_[4], 0u);
}

TEST_F(ExpandArray, GivesTheOldBlockBackAndKeepsNoSpareRoom)
{
    zrtest::AllocGuard guard;
    for (uint32_t count = 0; count < 100; ++count) {
        ASSERT_EQ(zr::ExpandArray(&array_, count, 1), ZR_OK);
        array_[count] = count;
    }
    EXPECT_EQ(guard.Count(), 100u);
    EXPECT_EQ(guard.LiveBlocks(), 1);
    for (uint32_t i = 0; i < 100; ++i)
        EXPECT_EQ(array_[i], i);
    zr::Free(array_);
    array_ = nullptr;
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

void *RefusingRealloc(void *, size_t)
{
    ADD_FAILURE() << "arrays grow by copying";
    return nullptr;
}

TEST_F(ExpandArray, DoesNotUseTheReallocHook)
{
    ZrReallocFunc saved = g_zrMemReAllocFunc;
    g_zrMemReAllocFunc = RefusingRealloc;
    EXPECT_EQ(zr::ExpandArray(&array_, 0, 1), ZR_OK);
    EXPECT_EQ(zr::ExpandArray(&array_, 1, 1), ZR_OK);
    g_zrMemReAllocFunc = saved;
}

TEST_F(ExpandArray, RefusesANullAddressAndAnElementSizeOfZero)
{
    EXPECT_EQ(ZR_UTL_ExpandArray(nullptr, 0, 1, 4), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_ExpandArray(nullptr, 1, 1, 4), ZR_ERR_INVALID);
    zr::NewArray(&array_, 1);
    EXPECT_EQ(ZR_UTL_ExpandArray(slot(), 1, 1, 0), ZR_ERR_INVALID);
}

TEST_F(ExpandArray, LeavesTheOldArrayUntouchedWhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    zr::NewArray(&array_, 1);
    array_[0] = 7;
    uint32_t *before = array_;
    guard.FailAt(0);
    EXPECT_EQ(ZR_UTL_ExpandArray(slot(), 1, 1, 4), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(array_, before);
    EXPECT_EQ(array_[0], 7u);
    zr::Free(array_);
    array_ = nullptr;
}

// A count without an array: there is nothing that could be copied.
TEST_F(ExpandArray, LeavesTheOldArrayUntouchedWhenCopyFails)
{
    zrtest::AllocGuard guard;
    EXPECT_EQ(ZR_UTL_ExpandArray(slot(), 2, 1, 4), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(array_, nullptr);
    EXPECT_EQ(guard.Count(), 1u);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST_F(ExpandArray, Is12WhenTheCountWouldWrap)
{
    zr::NewArray(&array_, 1);
    uint32_t *before = array_;
    EXPECT_EQ(ZR_UTL_ExpandArray(slot(), 1, UINT32_MAX, 4), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(array_, before);
}

struct Row {
    uint32_t number;
};

TEST(RowsInOrder, HoldsForOneRowOfEachNumber)
{
    constexpr Row kRows[] = {{3}, {4}, {5}};
    EXPECT_TRUE(zr::RowsInOrder(kRows, &Row::number, 3, 6));
}

TEST(RowsInOrder, TellsRowsThatAreMissingOrOutOfOrder)
{
    constexpr Row kSwapped[] = {{0}, {2}, {1}};
    EXPECT_FALSE(zr::RowsInOrder(kSwapped, &Row::number, 0, 3));
    constexpr Row kGap[] = {{0}, {2}};
    EXPECT_FALSE(zr::RowsInOrder(kGap, &Row::number, 0, 3));
    constexpr Row kShort[] = {{0}, {1}};
    EXPECT_FALSE(zr::RowsInOrder(kShort, &Row::number, 0, 3));
    constexpr Row kLong[] = {{0}, {1}, {2}, {3}};
    EXPECT_FALSE(zr::RowsInOrder(kLong, &Row::number, 0, 3));
}

} // namespace
