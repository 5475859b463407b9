// SPDX-License-Identifier: Apache-2.0
#include "schema/members/ext_inst.h"

#include "schema/record_fixture.h"

namespace {

class ExtInst : public zrtest::RecordTest {
protected:
    void TearDown() override
    {
        ZRS_EXT_FreeExtInsts(dict_, array_, count_);
        RecordTest::TearDown();
    }
    uint32_t Append(const char *moduleName, const char *name, const char *argument = nullptr)
    {
        return ZRS_EXT_AppendOneExtInstToArray(dict_, &array_, &count_, moduleName, name, argument);
    }
    // Gives the record a child, and that child a child of its own.
    void AddChildren(ZrsExtInst *record)
    {
        ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &record->children, &record->childCount,
                                                  "n", "child", "c"),
                  ZR_OK);
        ZrsExtInst *child = &record->children[0];
        ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &child->children, &child->childCount, "n",
                                                  "grandchild", nullptr),
                  ZR_OK);
    }
    std::string Names(const ZrsExtInst *array, uint32_t count)
    {
        std::string names;
        for (uint32_t i = 0; i < count; ++i)
            names += std::string(i == 0 ? "" : " ") +
                     (array[i].extensionName == nullptr ? "-" : array[i].extensionName);
        return names;
    }
    // Marks a record as removed.
    void Mark(uint32_t index) { zr::Release(dict_, array_[index].extensionName); }

    ZrsExtInst *array_ = nullptr;
    uint16_t count_ = 0;
};

uint32_t CollectInstance(const ZrsExtInst *instance, const char *moduleName,
                         const char *extensionName, const char *argument, void *userData)
{
    EXPECT_EQ(instance->extensionName, extensionName);
    *static_cast<std::string *>(userData) += std::string(moduleName) + ":" + extensionName + "(" +
                                             (argument == nullptr ? "-" : argument) + ")";
    return 0;
}

uint32_t StopWithSeven(const ZrsExtInst *, const char *, const char *, const char *, void *userData)
{
    ++*static_cast<int *>(userData);
    return 7;
}

TEST_F(ExtInst, IsFilledWithInternedStrings)
{
    ZrsExtInst record;
    ASSERT_EQ(ZRS_EXT_FillExtInst(dict_, &record, "m", "ext", "arg"), ZR_OK);
    EXPECT_STREQ(record.moduleName, "m");
    EXPECT_STREQ(record.extensionName, "ext");
    EXPECT_STREQ(record.argument, "arg");
    EXPECT_EQ(record.childCount, 0);
    EXPECT_EQ(record.children, nullptr);
    const char *again = ZR_DICT_Insert(dict_, "arg");
    EXPECT_EQ(record.argument, again);
    ZR_DICT_Remove(dict_, again);
    ZRS_EXT_ClearExtInst(dict_, &record);
    EXPECT_EQ(record.moduleName, nullptr);
    EXPECT_EQ(record.extensionName, nullptr);
    EXPECT_EQ(record.argument, nullptr);
}

TEST_F(ExtInst, WithoutAnArgumentHasNone)
{
    ZrsExtInst record;
    ASSERT_EQ(ZRS_EXT_FillExtInst(dict_, &record, "m", "ext", nullptr), ZR_OK);
    EXPECT_EQ(record.argument, nullptr);
    ZRS_EXT_ClearExtInst(dict_, &record);
}

TEST_F(ExtInst, NeedsBothNames)
{
    ZrsExtInst record;
    EXPECT_EQ(ZRS_EXT_FillExtInst(dict_, &record, nullptr, "ext", "arg"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_EXT_FillExtInst(dict_, &record, "m", nullptr, "arg"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_EXT_FillExtInst(dict_, nullptr, "m", "ext", "arg"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_EXT_FillExtInst(nullptr, &record, "m", "ext", "arg"), ZR_ERR_INVALID);
    EXPECT_EQ(Append(nullptr, "ext"), ZR_ERR_INVALID);
    EXPECT_EQ(Append("m", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(count_, 0);
    EXPECT_EQ(array_, nullptr);
}

TEST_F(ExtInst, HasNoStringsAfterAFillWithoutMemory)
{
    ZrsExtInst record;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZRS_EXT_FillExtInst(dict_, &record, "m", "ext", "arg"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.moduleName == nullptr, memory.Failed());
        ZRS_EXT_ClearExtInst(dict_, &record);
    });
}

TEST_F(ExtInst, ClearReleasesWholeTree)
{
    int64_t blocks = guard_.LiveBlocks();
    ZrsExtInst record;
    ASSERT_EQ(ZRS_EXT_FillExtInst(dict_, &record, "m", "ext", "arg"), ZR_OK);
    AddChildren(&record);
    ZRS_EXT_ClearExtInst(dict_, &record);
    EXPECT_EQ(record.childCount, 0);
    EXPECT_EQ(record.children, nullptr);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
    ZRS_EXT_ClearExtInst(dict_, nullptr);
    ZRS_EXT_FreeExtInsts(dict_, nullptr, 0);
}

TEST_F(ExtInst, IsTheSameWhenNamesAndArgumentAre)
{
    ASSERT_EQ(Append("m", "ext", "arg"), ZR_OK);
    ASSERT_EQ(Append("m", "ext", "arg"), ZR_OK);
    ASSERT_EQ(Append("n", "ext", "arg"), ZR_OK);
    ASSERT_EQ(Append("m", "other", "arg"), ZR_OK);
    ASSERT_EQ(Append("m", "ext", "other"), ZR_OK);
    ASSERT_EQ(Append("m", "ext"), ZR_OK);
    AddChildren(&array_[1]);
    EXPECT_EQ(ZRS_EXT_CheckTwoExtInstSame(&array_[0], &array_[1]), 1u); // children do not matter
    for (uint32_t i = 2; i < count_; ++i)
        EXPECT_EQ(ZRS_EXT_CheckTwoExtInstSame(&array_[0], &array_[i]), 0u) << i;
    EXPECT_EQ(ZRS_EXT_CheckTwoExtInstSame(&array_[0], nullptr), 0u);
    EXPECT_EQ(ZRS_EXT_CheckTwoExtInstSame(nullptr, &array_[0]), 0u);
}

TEST_F(ExtInst, IsFoundAtItsFirstPlace)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    ASSERT_EQ(Append("m", "b"), ZR_OK);
    ASSERT_EQ(Append("m", "b"), ZR_OK);
    ZrsExtInst wanted = array_[2];
    EXPECT_EQ(ZRS_EXT_FindSameExtInstInArray(array_, count_, &wanted), &array_[1]);
    EXPECT_EQ(ZRS_EXT_FindSameExtInstInArray(array_, 1, &wanted), nullptr);
    EXPECT_EQ(ZRS_EXT_FindSameExtInstInArray(array_, 0, &wanted), nullptr);
    EXPECT_EQ(ZRS_EXT_FindSameExtInstInArray(nullptr, 3, &wanted), nullptr);
    EXPECT_EQ(ZRS_EXT_FindSameExtInstInArray(array_, count_, nullptr), nullptr);
}

TEST_F(ExtInst, IsAppendedInOrder)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    ASSERT_EQ(Append("m", "b", "x"), ZR_OK);
    EXPECT_EQ(count_, 2);
    EXPECT_EQ(Names(array_, count_), "a b");
    EXPECT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, nullptr, &count_, "m", "c", nullptr),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &array_, nullptr, "m", "c", nullptr),
              ZR_ERR_INVALID);
}

TEST_F(ExtInst, AppendWithoutMemoryLeavesTheCount)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrsExtInst *array = nullptr;
        uint16_t count = 0;
        uint32_t status = memory.Run([&] {
            return ZRS_EXT_AppendOneExtInstToArray(dict_, &array, &count, "m", "b", "new");
        });
        EXPECT_EQ(count, memory.Failed() ? 0 : 1);
        ZRS_EXT_FreeExtInsts(dict_, array, count);
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
    });
}

TEST_F(ExtInst, AppendsIntoTheRoomThatAFirstFailedAppendLeft)
{
    guard_.FailAt(1); // the array is grown, the dictionary refuses
    EXPECT_EQ(Append("new", "a"), ZR_ERR_NO_MEMORY);
    guard_.Stop();
    EXPECT_EQ(count_, 0);
    ASSERT_NE(array_, nullptr);
    EXPECT_EQ(Append("new", "a"), ZR_OK);
    EXPECT_EQ(Names(array_, count_), "a");
}

TEST_F(ExtInst, IsRefusedAsThe65536thOfAnArray)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    count_ = UINT16_MAX;
    EXPECT_EQ(Append("m", "b"), ZR_ERR_INVALID);
    EXPECT_EQ(count_, UINT16_MAX);
    count_ = 1;
}

TEST_F(ExtInst, IsCopiedWithEverythingBelowIt)
{
    ASSERT_EQ(Append("m", "a", "x"), ZR_OK);
    ASSERT_EQ(Append("m", "b"), ZR_OK);
    AddChildren(&array_[0]);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrsExtInst *copy = memory.Run([&] { return ZRS_EXT_CopyExtInsts(dict_, array_, count_); });
        ASSERT_EQ(copy == nullptr, memory.Failed());
        if (copy != nullptr) {
            EXPECT_EQ(Names(copy, 2), "a b");
            EXPECT_EQ(copy[0].argument, array_[0].argument);
            ASSERT_EQ(copy[0].childCount, 1);
            EXPECT_NE(copy[0].children, array_[0].children);
            ASSERT_EQ(copy[0].children[0].childCount, 1);
            EXPECT_STREQ(copy[0].children[0].children[0].extensionName, "grandchild");
            EXPECT_EQ(copy[1].childCount, 0);
            ZRS_EXT_FreeExtInsts(dict_, copy, 2);
        }
    });
    EXPECT_EQ(ZRS_EXT_CopyExtInsts(dict_, array_, 0), nullptr);
    EXPECT_EQ(ZRS_EXT_CopyExtInsts(dict_, nullptr, 2), nullptr);
}

TEST_F(ExtInst, IsCopiedIntoAnotherContextOrNotAtAll)
{
    ASSERT_EQ(Append("m", "a", "x"), ZR_OK);
    ZrCtx *other = ZR_CTX_Create(0);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrsExtInst *copy =
            memory.Run([&] { return ZRS_EXT_CopyExtInsts(&other->dict, array_, count_); });
        ASSERT_EQ(copy == nullptr, memory.Failed());
        EXPECT_EQ(Names(copy, memory.Failed() ? 0 : 1), memory.Failed() ? "" : "a");
        ZRS_EXT_FreeExtInsts(&other->dict, copy, 1);
    });
    ZR_CTX_Delete(other);
}

TEST_F(ExtInst, TakesACopyOfChildren)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    ASSERT_EQ(Append("m", "b"), ZR_OK);
    ZrsExtInst record = {};
    EXPECT_EQ(ZRS_EXT_UpdateExtInstChildInsts(dict_, &record, array_, 0), ZR_OK);
    EXPECT_EQ(record.children, nullptr);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run(
            [&] { return ZRS_EXT_UpdateExtInstChildInsts(dict_, &record, array_, count_); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.childCount, memory.Failed() ? 0 : 2);
        EXPECT_EQ(Names(record.children, record.childCount), memory.Failed() ? "" : "a b");
        ZRS_EXT_ClearExtInst(dict_, &record);
    });
    EXPECT_EQ(ZRS_EXT_UpdateExtInstChildInsts(dict_, nullptr, array_, count_), ZR_ERR_INVALID);
}

TEST_F(ExtInst, IsMergedInWithItsChildren)
{
    ZrsExtInst source;
    ASSERT_EQ(ZRS_EXT_FillExtInst(dict_, &source, "m", "ext", "arg"), ZR_OK);
    AddChildren(&source);
    ASSERT_EQ(ZRS_EXT_MergeOneExtInstToArray(dict_, &array_, &count_, &source), ZR_OK);
    ASSERT_EQ(count_, 1);
    EXPECT_EQ(array_[0].argument, source.argument);
    EXPECT_EQ(Names(array_[0].children, array_[0].childCount), "child");
    EXPECT_EQ(ZRS_EXT_MergeOneExtInstToArray(dict_, &array_, &count_, nullptr), ZR_ERR_INVALID);
    ZRS_EXT_ClearExtInst(dict_, &source);
}

TEST_F(ExtInst, StaysCountedAndEmptyWhenItsChildrenCannotBeMergedIn)
{
    ZrsExtInst source;
    ASSERT_EQ(ZRS_EXT_FillExtInst(dict_, &source, "m", "ext", "arg"), ZR_OK);
    AddChildren(&source);
    guard_.FailAt(1); // the array is grown, the strings are there; the children's array fails
    EXPECT_EQ(ZRS_EXT_MergeOneExtInstToArray(dict_, &array_, &count_, &source), ZR_ERR_NO_MEMORY);
    guard_.Stop();
    ASSERT_EQ(count_, 1);
    EXPECT_EQ(array_[0].moduleName, nullptr);
    EXPECT_EQ(array_[0].extensionName, nullptr);
    EXPECT_EQ(array_[0].argument, nullptr);
    EXPECT_EQ(array_[0].children, nullptr);
    ZRS_EXT_ClearExtInst(dict_, &source);
}

TEST_F(ExtInst, MergeSkipsTheOnesThatAreThere)
{
    ASSERT_EQ(Append("m", "a", "x"), ZR_OK);
    ASSERT_EQ(Append("m", "b"), ZR_OK);
    ZrsExtInst *source = nullptr;
    uint16_t sourceCount = 0;
    for (const char *name : {"b", "c", "a", "c"})
        ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &source, &sourceCount, "m", name, nullptr),
                  ZR_OK);
    // "a" has another argument here, and the second "c" meets the first
    ASSERT_EQ(ZRS_EXT_MergeExtInsts(dict_, &array_, &count_, source, sourceCount), ZR_OK);
    EXPECT_EQ(Names(array_, count_), "a b c a");
    ASSERT_EQ(ZRS_EXT_MergeExtInsts(dict_, &array_, &count_, source, sourceCount), ZR_OK);
    EXPECT_EQ(count_, 4);
    EXPECT_EQ(ZRS_EXT_MergeExtInsts(dict_, &array_, &count_, nullptr, 0), ZR_OK);
    EXPECT_EQ(ZRS_EXT_MergeExtInsts(dict_, nullptr, &count_, source, sourceCount), ZR_ERR_INVALID);
    ZRS_EXT_FreeExtInsts(dict_, source, sourceCount);
}

TEST_F(ExtInst, MergeStopsAtTheFirstFailure)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    ZrsExtInst *source = nullptr;
    uint16_t sourceCount = 0;
    for (const char *name : {"b", "c"})
        ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &source, &sourceCount, "m", name, nullptr),
                  ZR_OK);
    guard_.FailAt(1); // growing for the second
    EXPECT_EQ(ZRS_EXT_MergeExtInsts(dict_, &array_, &count_, source, sourceCount),
              ZR_ERR_NO_MEMORY);
    guard_.Stop();
    EXPECT_EQ(Names(array_, count_), "a b");
    ZRS_EXT_FreeExtInsts(dict_, source, sourceCount);
}

TEST_F(ExtInst, SubtractKeepsTheUnmarkedInOrder)
{
    for (const char *name : {"a", "b", "c", "d"})
        ASSERT_EQ(Append("m", name, name), ZR_OK);
    AddChildren(&array_[1]);
    AddChildren(&array_[2]);
    Mark(0);
    Mark(2);
    ASSERT_EQ(ZRS_EXT_SubtractExtInstArray(dict_, &array_, 4, 2), ZR_OK);
    count_ = 2;
    EXPECT_EQ(Names(array_, count_), "b d");
    EXPECT_STREQ(array_[0].argument, "b");
    EXPECT_EQ(Names(array_[0].children, array_[0].childCount), "child");
    EXPECT_EQ(ZRS_EXT_SubtractExtInstArray(dict_, nullptr, 2, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_EXT_SubtractExtInstArray(nullptr, &array_, 2, 1), ZR_ERR_INVALID);
}

TEST_F(ExtInst, SubtractOfEverythingLeavesNoArray)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    Mark(0);
    ASSERT_EQ(ZRS_EXT_SubtractExtInstArray(dict_, &array_, 1, 0), ZR_OK);
    count_ = 0;
    EXPECT_EQ(array_, nullptr);
}

TEST_F(ExtInst, SubtractFromACountOfZeroStoresAnEmptyArray)
{
    guard_.FailAt(1);
    EXPECT_EQ(Append("new", "a"), ZR_ERR_NO_MEMORY); // an array without a counted record
    guard_.Stop();
    ASSERT_NE(array_, nullptr);
    ASSERT_EQ(ZRS_EXT_SubtractExtInstArray(dict_, &array_, 0, 0), ZR_OK);
    EXPECT_EQ(array_, nullptr);
}

TEST_F(ExtInst, SubtractWithMoreLeftThanStatedChangesNothingAndSucceeds)
{
    for (const char *name : {"a", "b", "c"})
        ASSERT_EQ(Append("m", name), ZR_OK);
    Mark(1);
    const ZrsExtInst *before = array_;
    EXPECT_EQ(ZRS_EXT_SubtractExtInstArray(dict_, &array_, 3, 1), ZR_OK);
    EXPECT_EQ(array_, before);
    EXPECT_EQ(Names(array_, count_), "a - c");
    EXPECT_EQ(ZRS_EXT_SubtractExtInstArray(dict_, &array_, 3, 0), ZR_OK);
    EXPECT_EQ(array_, before);
}

TEST_F(ExtInst, SubtractWithoutMemoryLeavesTheArray)
{
    for (const char *name : {"a", "b", "c"})
        ASSERT_EQ(Append("m", name), ZR_OK);
    AddChildren(&array_[0]);
    AddChildren(&array_[2]);
    Mark(1);
    // The array, then two levels of children of each survivor.
    for (uint64_t n = 0; n < 5; ++n) {
        const ZrsExtInst *before = array_;
        int64_t blocks = guard_.LiveBlocks();
        guard_.FailAt(n);
        EXPECT_EQ(ZRS_EXT_SubtractExtInstArray(dict_, &array_, 3, 2), ZR_ERR_NO_MEMORY) << n;
        guard_.Stop();
        EXPECT_EQ(array_, before);
        EXPECT_EQ(guard_.LiveBlocks(), blocks);
        EXPECT_EQ(Names(array_, count_), "a - c");
    }
}

TEST_F(ExtInst, OneThatMemoryRanOutForIsNotScanned)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    ASSERT_EQ(Append("m", "b"), ZR_OK);
    ZrsExtInst source;
    ASSERT_EQ(ZRS_EXT_FillExtInst(dict_, &source, "m", "c", nullptr), ZR_OK);
    AddChildren(&source);
    guard_.FailAt(1);
    EXPECT_EQ(ZRS_EXT_MergeOneExtInstToArray(dict_, &array_, &count_, &source), ZR_ERR_NO_MEMORY);
    guard_.Stop();
    std::string seen;
    EXPECT_EQ(zr::ScanExtInsts(array_, count_, CollectInstance, &seen), 0u);
    EXPECT_EQ(seen, "m:a(-)m:b(-)");
    ZRS_EXT_ClearExtInst(dict_, &source);
}

TEST_F(ExtInst, ChildrenAreScannedInOrderOneLevelAtATime)
{
    ASSERT_EQ(Append("m", "a"), ZR_OK);
    AddChildren(&array_[0]);
    ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &array_[0].children, &array_[0].childCount,
                                              "n", "second", nullptr),
              ZR_OK);
    std::string seen;
    EXPECT_EQ(ZR_EXT_ScanAllChildExtInsts(&array_[0], CollectInstance, &seen), ZR_OK);
    EXPECT_EQ(seen, "n:child(c)n:second(-)");
    int calls = 0;
    EXPECT_EQ(ZR_EXT_ScanAllChildExtInsts(&array_[0], StopWithSeven, &calls), 7u);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(ZR_EXT_ScanAllChildExtInsts(nullptr, CollectInstance, &seen), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_EXT_ScanAllChildExtInsts(&array_[0], nullptr, nullptr), ZR_ERR_INVALID);
    const ZrsExtInst *grandchild = &array_[0].children[0].children[0];
    EXPECT_EQ(ZR_EXT_ScanAllChildExtInsts(grandchild, StopWithSeven, &calls), ZR_OK);
}

} // namespace
