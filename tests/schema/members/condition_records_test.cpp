// SPDX-License-Identifier: Apache-2.0
#include "schema/members/condition_records.h"

#include "schema/record_fixture.h"

namespace {

class IfFeature : public zrtest::RecordTest {
protected:
    void TearDown() override
    {
        ZRS_NODE_FreeIfFeatures(dict_, array_, count_);
        RecordTest::TearDown();
    }
    uint32_t Append(const char *moduleName, const char *featureName)
    {
        return ZRS_NODE_AppendOneIfFeat(dict_, &array_, &count_, moduleName, featureName);
    }
    ZrsIfFeature *array_ = nullptr;
    uint16_t count_ = 0;
};

TEST_F(IfFeature, NeedsBothNames)
{
    ZrsIfFeature entry = {};
    EXPECT_EQ(ZRS_NODE_FillIfFeature(dict_, &entry, nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_FillIfFeature(dict_, &entry, "m", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_FillIfFeature(dict_, nullptr, "m", "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_FillIfFeature(nullptr, &entry, "m", "f"), ZR_ERR_INVALID);
    EXPECT_EQ(Append("m", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(count_, 0);
    EXPECT_EQ(ZRS_NODE_AppendOneIfFeat(dict_, nullptr, &count_, "m", "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AppendOneIfFeat(dict_, &array_, nullptr, "m", "f"), ZR_ERR_INVALID);
}

TEST_F(IfFeature, IsEmptyAfterAFillWithoutMemory)
{
    ZrsIfFeature entry;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZRS_NODE_FillIfFeature(dict_, &entry, "m", "f"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(entry.moduleName == nullptr, memory.Failed());
        EXPECT_EQ(entry.featureName == nullptr, memory.Failed());
        ZRS_NODE_ClearIfFeature(dict_, &entry);
        EXPECT_EQ(entry.moduleName, nullptr);
    });
    ZRS_NODE_ClearIfFeature(dict_, nullptr);
    ZRS_NODE_FreeIfFeatures(dict_, nullptr, 0);
}

TEST_F(IfFeature, AppendWithoutMemoryLeavesTheCount)
{
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] { return Append("m", "f"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(count_, memory.Failed() ? 0 : 1);
        ZRS_NODE_FreeIfFeatures(dict_, array_, count_);
        array_ = nullptr;
        count_ = 0;
    });
}

TEST_F(IfFeature, IsRefusedAsThe65536thOfAnArray)
{
    ASSERT_EQ(Append("m", "f"), ZR_OK);
    count_ = UINT16_MAX;
    EXPECT_EQ(Append("m", "g"), ZR_ERR_INVALID);
    EXPECT_EQ(count_, UINT16_MAX);
    count_ = 1;
}

TEST_F(IfFeature, IsTheSameByModuleAndFeature)
{
    ASSERT_EQ(Append("m", "f"), ZR_OK);
    ASSERT_EQ(Append("m", "f"), ZR_OK);
    ASSERT_EQ(Append("n", "f"), ZR_OK);
    ASSERT_EQ(Append("m", "g"), ZR_OK);
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureSame(&array_[0], &array_[1]), 1u);
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureSame(&array_[0], &array_[2]), 0u);
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureSame(&array_[0], &array_[3]), 0u);
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureSame(&array_[0], nullptr), 0u);
}

TEST_F(IfFeature, ArraysAreComparedInOrder)
{
    ASSERT_EQ(Append("m", "f"), ZR_OK);
    ASSERT_EQ(Append("m", "g"), ZR_OK);
    ZrsIfFeature swapped[] = {array_[1], array_[0]};
    ZrsIfFeature same[] = {array_[0], array_[1]};
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureArraySame(array_, 2, same, 2), 1u);
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureArraySame(array_, 2, swapped, 2), 0u);
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureArraySame(array_, 2, same, 1), 0u);
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureArraySame(nullptr, 0, nullptr, 0), 1u);
    EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureArraySame(array_, 2, nullptr, 0), 0u);
}

TEST_F(IfFeature, IsFoundByItsInternedNames)
{
    ASSERT_EQ(Append("m", "f"), ZR_OK);
    ASSERT_EQ(Append("m", "g"), ZR_OK);
    const char *module = array_[1].moduleName;
    const char *feature = array_[1].featureName;
    EXPECT_EQ(ZRS_NODE_FindIfFeature(array_, 2, module, feature), &array_[1]);
    EXPECT_EQ(ZRS_NODE_FindIfFeature(array_, 1, module, feature), nullptr);
    EXPECT_EQ(ZRS_NODE_FindIfFeature(array_, 0, module, feature), nullptr);
    EXPECT_EQ(ZRS_NODE_FindIfFeature(nullptr, 2, module, feature), nullptr);
    std::string copy = feature; // an equal text elsewhere is not the same
    EXPECT_EQ(ZRS_NODE_FindIfFeature(array_, 2, module, copy.c_str()), nullptr);
}

TEST_F(IfFeature, ArrayIsCopied)
{
    ASSERT_EQ(Append("m", "f"), ZR_OK);
    ASSERT_EQ(Append("n", "g"), ZR_OK);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrsIfFeature *copy =
            memory.Run([&] { return ZRS_NODE_CopyIfFeaturesArray(dict_, array_, count_); });
        ASSERT_EQ(copy == nullptr, memory.Failed());
        uint32_t copied = copy == nullptr ? 0 : 2;
        EXPECT_EQ(ZRS_NODE_CheckTwoIfFeatureArraySame(array_, count_, copy, copied),
                  !memory.Failed());
        ZRS_NODE_FreeIfFeatures(dict_, copy, 2);
    });
    EXPECT_EQ(ZRS_NODE_CopyIfFeaturesArray(dict_, array_, 0), nullptr);
    EXPECT_EQ(ZRS_NODE_CopyIfFeaturesArray(dict_, nullptr, 2), nullptr);
}

class Must : public zrtest::RecordTest {
protected:
    void TearDown() override
    {
        ZRS_NODE_FreeMusts(dict_, array_, count_);
        RecordTest::TearDown();
    }
    uint32_t Append(const char *condition, const char *message = nullptr, const char *tag = nullptr)
    {
        ZrsMust source = {condition, message, tag};
        return ZRS_NODE_AppendOneMust(dict_, &array_, &count_, &source);
    }
    std::string Conditions()
    {
        std::string text;
        for (uint32_t i = 0; i < count_; ++i)
            text += array_[i].condition == nullptr ? "-" : array_[i].condition;
        return text;
    }
    void Mark(uint32_t index) { zr::Release(dict_, array_[index].condition); }
    ZrsMust *array_ = nullptr;
    uint16_t count_ = 0;
};

TEST_F(Must, NeedsItsCondition)
{
    ZrsMust record = {};
    EXPECT_EQ(ZRS_NODE_FillMust(dict_, &record, nullptr, "message", "tag"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_FillMust(dict_, nullptr, "a", nullptr, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_FillMust(nullptr, &record, "a", nullptr, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(Append(nullptr, "message"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AppendOneMust(dict_, &array_, &count_, nullptr), ZR_ERR_INVALID);
    ZrsMust source = {"a", nullptr, nullptr};
    EXPECT_EQ(ZRS_NODE_AppendOneMust(nullptr, &array_, &count_, &source), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AppendOneMust(dict_, nullptr, &count_, &source), ZR_ERR_INVALID);
    EXPECT_EQ(count_, 0);
}

TEST_F(Must, MayLackMessageAndTag)
{
    ASSERT_EQ(Append("a"), ZR_OK);
    ASSERT_EQ(Append("b", "message", "tag"), ZR_OK);
    EXPECT_EQ(array_[0].errorMessage, nullptr);
    EXPECT_EQ(array_[0].errorAppTag, nullptr);
    EXPECT_STREQ(array_[1].errorMessage, "message");
    EXPECT_STREQ(array_[1].errorAppTag, "tag");
}

TEST_F(Must, IsEmptyAfterAFillWithoutMemory)
{
    ZrsMust record;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZRS_NODE_FillMust(dict_, &record, "a", "message", "tag"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.condition == nullptr, memory.Failed());
        EXPECT_EQ(record.errorMessage == nullptr, memory.Failed());
        EXPECT_EQ(record.errorAppTag == nullptr, memory.Failed());
        ZRS_NODE_ClearMust(dict_, &record);
        EXPECT_EQ(record.condition, nullptr);
    });
    ZRS_NODE_ClearMust(dict_, nullptr);
    ZRS_NODE_FreeMusts(dict_, nullptr, 0);
}

TEST_F(Must, MovesLeaveTheSourceEmpty)
{
    ZrsMust source = {};
    ASSERT_EQ(ZRS_NODE_FillMust(dict_, &source, "a", "message", "tag"), ZR_OK);
    ZrsMust destination = {};
    ZRS_NODE_AssignMoveMust(&destination, &source);
    EXPECT_STREQ(destination.condition, "a");
    EXPECT_STREQ(destination.errorMessage, "message");
    EXPECT_STREQ(destination.errorAppTag, "tag");
    EXPECT_EQ(source.condition, nullptr);
    EXPECT_EQ(source.errorMessage, nullptr);
    EXPECT_EQ(source.errorAppTag, nullptr);
    ZRS_NODE_AssignMoveMust(&destination, &destination); // onto itself: nothing is lost
    EXPECT_STREQ(destination.condition, "a");
    ZRS_NODE_AssignMoveMust(nullptr, &destination);
    ZRS_NODE_AssignMoveMust(&destination, nullptr);
    ZRS_NODE_ClearMust(dict_, &destination);
}

TEST_F(Must, IsTheSameByItsConditionAlone)
{
    ASSERT_EQ(Append("a", "one", "x"), ZR_OK);
    ASSERT_EQ(Append("a", "two", "y"), ZR_OK);
    ASSERT_EQ(Append("b", "one", "x"), ZR_OK);
    EXPECT_EQ(ZRS_NODE_CheckTwoMustSame(&array_[0], &array_[1]), 1u);
    EXPECT_EQ(ZRS_NODE_CheckTwoMustSame(&array_[0], &array_[2]), 0u);
    EXPECT_EQ(ZRS_NODE_CheckTwoMustSame(nullptr, &array_[2]), 0u);
}

TEST_F(Must, AppendWithoutMemoryLeavesTheCount)
{
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] { return Append("a", "message", "tag"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(count_, memory.Failed() ? 0 : 1);
        ZRS_NODE_FreeMusts(dict_, array_, count_);
        array_ = nullptr;
        count_ = 0;
    });
}

TEST_F(Must, IsRefusedAsThe65536thOfAnArray)
{
    ASSERT_EQ(Append("a"), ZR_OK);
    count_ = UINT16_MAX;
    EXPECT_EQ(Append("b"), ZR_ERR_INVALID);
    EXPECT_EQ(count_, UINT16_MAX);
    count_ = 1;
}

TEST_F(Must, ArrayIsCopied)
{
    ASSERT_EQ(Append("a", "one", "x"), ZR_OK);
    ASSERT_EQ(Append("b"), ZR_OK);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrsMust *copy = memory.Run([&] { return ZRS_NODE_CopyMustsArray(dict_, array_, count_); });
        ASSERT_EQ(copy == nullptr, memory.Failed());
        if (copy != nullptr) {
            EXPECT_EQ(copy[0].condition, array_[0].condition);
            EXPECT_EQ(copy[0].errorMessage, array_[0].errorMessage);
            EXPECT_EQ(copy[0].errorAppTag, array_[0].errorAppTag);
            EXPECT_EQ(copy[1].condition, array_[1].condition);
            EXPECT_EQ(copy[1].errorMessage, nullptr);
        }
        ZRS_NODE_FreeMusts(dict_, copy, 2);
    });
    EXPECT_EQ(ZRS_NODE_CopyMustsArray(dict_, array_, 0), nullptr);
    EXPECT_EQ(ZRS_NODE_CopyMustsArray(dict_, nullptr, 2), nullptr);
}

TEST_F(Must, SubtractKeepsTheUnmarkedInOrder)
{
    for (const char *condition : {"a", "b", "c", "d"})
        ASSERT_EQ(Append(condition, condition), ZR_OK);
    Mark(0);
    Mark(2);
    ASSERT_EQ(ZRS_NODE_SubtractMustsArray(dict_, &array_, 4, 2), ZR_OK);
    count_ = 2;
    EXPECT_EQ(Conditions(), "bd");
    EXPECT_STREQ(array_[1].errorMessage, "d");
}

TEST_F(Must, SubtractOfEverythingLeavesNoArray)
{
    ASSERT_EQ(Append("a"), ZR_OK);
    Mark(0);
    ASSERT_EQ(ZRS_NODE_SubtractMustsArray(dict_, &array_, 1, 0), ZR_OK);
    count_ = 0;
    EXPECT_EQ(array_, nullptr);
}

TEST_F(Must, SubtractWithMoreLeftThanStatedIsRefused)
{
    for (const char *condition : {"a", "b", "c"})
        ASSERT_EQ(Append(condition), ZR_OK);
    Mark(1);
    EXPECT_EQ(ZRS_NODE_SubtractMustsArray(dict_, &array_, 3, 1), ZR_ERR_INVALID);
    EXPECT_EQ(Conditions(), "a-c");
    EXPECT_EQ(ZRS_NODE_SubtractMustsArray(dict_, nullptr, 3, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_SubtractMustsArray(nullptr, &array_, 3, 2), ZR_ERR_INVALID);
}

TEST_F(Must, SubtractWithoutMemoryForTheNewArrayChangesNothing)
{
    for (const char *condition : {"a", "b"})
        ASSERT_EQ(Append(condition), ZR_OK);
    Mark(1);
    guard_.FailAt(0);
    EXPECT_EQ(ZRS_NODE_SubtractMustsArray(dict_, &array_, 2, 1), ZR_ERR_NO_MEMORY);
    guard_.Stop();
    EXPECT_EQ(Conditions(), "a-");
}

TEST_F(Must, SubtractLosesAllMustsWhenOneCannotBeCopied)
{
    // Interned strings are copied without memory, so one that the dictionary does not know stands
    // in: its copy needs an entry.
    ASSERT_EQ(Append("a"), ZR_OK);
    ASSERT_EQ(Append("b"), ZR_OK);
    Mark(1);
    ASSERT_EQ(Append("c"), ZR_OK);
    const char *interned = array_[2].condition;
    array_[2].condition = "not interned";
    guard_.FailAt(1);
    EXPECT_EQ(ZRS_NODE_SubtractMustsArray(dict_, &array_, 3, 2), ZR_ERR_NO_MEMORY);
    guard_.Stop();
    EXPECT_EQ(array_, nullptr);
    count_ = 0;
    ZR_DICT_Remove(dict_, interned);
}

} // namespace
