// SPDX-License-Identifier: Apache-2.0
#include "foundation/array.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "platform/memory.h"
#include "schema/record_fixture.h"
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

struct Pair {
    const char *text;
    uint32_t number;
};

class RecordArrays : public zrtest::RecordTest {
protected:
    auto Fill(uint32_t number)
    {
        return [this, number](Pair *record) -> uint32_t {
            record->number = number;
            return zr::Intern(dict_, record->text, std::to_string(number).c_str()) ? 0 : 12;
        };
    }
    auto Clear()
    {
        return [this](Pair *record) { zr::Release(dict_, record->text); };
    }
    auto Copy()
    {
        return [this](Pair *copy, const Pair *from) -> uint32_t {
            copy->number = from->number;
            return zr::Intern(dict_, copy->text, from->text) ? 0 : 12;
        };
    }
    void TearDown() override
    {
        zr::FreeRecords(array_, count_, Clear());
        RecordTest::TearDown();
    }

    Pair *array_ = nullptr;
    uint16_t count_ = 0;
};

TEST_F(RecordArrays, AppendRecordsOneByOne)
{
    for (uint32_t number : {7u, 8u, 9u})
        ASSERT_EQ(zr::AppendOne(&array_, &count_, Fill(number)), ZR_OK);
    ASSERT_EQ(count_, 3);
    EXPECT_EQ(array_[0].number, 7u);
    EXPECT_STREQ(array_[2].text, "9");
}

TEST_F(RecordArrays, PassTheStatusOfAFillOnAndDoNotCount)
{
    ASSERT_EQ(zr::AppendOne(&array_, &count_, Fill(7)), ZR_OK);
    auto refuse = [](Pair *) { return uint32_t{99}; };
    EXPECT_EQ(zr::AppendOne(&array_, &count_, refuse), 99u);
    EXPECT_EQ(count_, 1);
    EXPECT_EQ(zr::AppendOne(&array_, &count_, Fill(8)), ZR_OK);
    EXPECT_EQ(count_, 2);
}

TEST_F(RecordArrays, FindTheFirstMatch)
{
    for (uint32_t number : {7u, 8u, 8u})
        ASSERT_EQ(zr::AppendOne(&array_, &count_, Fill(number)), ZR_OK);
    auto isEight = [](const Pair &record) { return record.number == 8; };
    EXPECT_EQ(zr::FindFirst(array_, 3, isEight), &array_[1]);
    EXPECT_EQ(zr::FindFirst(array_, 1, isEight), nullptr);
    EXPECT_EQ(zr::FindFirst(static_cast<Pair *>(nullptr), 3, isEight), nullptr);
}

TEST_F(RecordArrays, AreCopiedWholeOrNotAtAll)
{
    for (uint32_t number : {7u, 8u})
        ASSERT_EQ(zr::AppendOne(&array_, &count_, Fill(number)), ZR_OK);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        Pair *copy = memory.Run([&] { return zr::CopyRecords(array_, count_, Copy(), Clear()); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        zr::FreeRecords(copy, copy == nullptr ? 0 : 2, Clear());
    });
    // the second of two cannot be filled: the first is released again
    int64_t blocks = guard_.LiveBlocks();
    auto refuseSecond = [&](Pair *copy, const Pair *from) {
        return from->number == 8 ? uint32_t{ZR_ERR_INVALID} : Copy()(copy, from);
    };
    EXPECT_EQ(zr::CopyRecords(array_, count_, refuseSecond, Clear()), nullptr);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
    EXPECT_EQ(zr::CopyRecords(array_, 0, Copy(), Clear()), nullptr);
}

TEST_F(RecordArrays, AreComparedInOrder)
{
    const Pair a[] = {{nullptr, 1}, {nullptr, 2}};
    const Pair b[] = {{nullptr, 2}, {nullptr, 1}};
    auto same = [](const Pair *x, const Pair *y) { return x->number == y->number; };
    EXPECT_TRUE(zr::RecordsSame(a, 2, a, 2, same));
    EXPECT_FALSE(zr::RecordsSame(a, 2, b, 2, same));
    EXPECT_FALSE(zr::RecordsSame(a, 2, a, 1, same));
    EXPECT_TRUE(zr::RecordsSame(a, 0, b, 0, same));
}

TEST_F(RecordArrays, TextsAreCopiedAndFreedTogether)
{
    const char *const texts[] = {ZR_DICT_Insert(dict_, "a"), ZR_DICT_Insert(dict_, "b")};
    const char **copy = zr::CopyTexts(dict_, texts, 2);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy[0], texts[0]);
    EXPECT_EQ(copy[1], texts[1]);
    ZR_DICT_Remove(dict_, texts[0]);
    ZR_DICT_Remove(dict_, texts[1]);
    EXPECT_STREQ(copy[1], "b"); // a reference of its own to each
    zr::Release(dict_, copy[0]);
    zr::FreeTexts(dict_, copy, 2); // a text that is gone already is passed over
    EXPECT_EQ(zr::FindInterned(dict_, "b"), nullptr);
}

TEST_F(RecordArrays, AnEmptyArrayOfTextsIsNull)
{
    EXPECT_EQ(zr::CopyTexts(dict_, nullptr, 0), nullptr);
    zr::FreeTexts(dict_, nullptr, 0);
}

TEST_F(RecordArrays, InternNullAsNull)
{
    const char *field = "old";
    EXPECT_TRUE(zr::Intern(dict_, field, nullptr));
    EXPECT_EQ(field, nullptr);
}

TEST_F(RecordArrays, TextsAreEqualByContentAndNeverWhenNull)
{
    std::string a = "same";
    std::string b = "same";
    EXPECT_TRUE(zr::TextEquals(a.c_str(), b.c_str()));
    EXPECT_TRUE(zr::TextEquals(a.c_str(), a.c_str()));
    EXPECT_FALSE(zr::TextEquals("a", "b"));
    EXPECT_FALSE(zr::TextEquals(nullptr, "b"));
    EXPECT_FALSE(zr::TextEquals("a", nullptr));
    EXPECT_FALSE(zr::TextEquals(nullptr, nullptr));
}

} // namespace
