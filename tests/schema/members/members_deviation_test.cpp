// SPDX-License-Identifier: Apache-2.0
#include "foundation/array.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class Deviation : public zrtest::RecordTest {
protected:
    void SetUp() override { module_ = NewModule("m"); }
    // A deviate of everything.
    void FillSource(ZrsDeviate *source)
    {
        *source = ZrsDeviate();
        source->kind = ZRS_DEVIATE_REPLACE;
        source->flags = 0x4 | 0x8 | 0x10;
        ZrsMust must = {"a = 1", "message", "tag"};
        ASSERT_EQ(ZRS_NODE_AppendOneMust(dict_, &source->musts, &source->mustCount, &must), ZR_OK);
        for (const char *text : {"one", "two"}) {
            auto fill = [&](const char **slot) -> uint32_t {
                return zr::Intern(dict_, *slot, text) ? 0 : 12;
            };
            ASSERT_EQ(zr::AppendOne(&source->defaults, &source->defaultCount, fill), ZR_OK);
        }
        source->type = zr::New<ZrtRealType>();
        source->type->baseType = ZRT_TYPE_STRING;
        source->units = ZR_DICT_Insert(dict_, "seconds");
        ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &source->extInsts, &source->extInstCount,
                                                  "n", "ext", "arg"),
                  ZR_OK);
    }
    static void ExpectCopy(const ZrsDeviate &copy, const ZrsDeviate &source)
    {
        EXPECT_EQ(copy.kind, source.kind);
        EXPECT_EQ(copy.flags, source.flags);
        ASSERT_EQ(copy.mustCount, 1);
        EXPECT_EQ(copy.musts[0].condition, source.musts[0].condition);
        EXPECT_EQ(copy.musts[0].errorMessage, source.musts[0].errorMessage);
        EXPECT_EQ(copy.musts[0].errorAppTag, source.musts[0].errorAppTag);
        ASSERT_EQ(copy.defaultCount, 2);
        EXPECT_STREQ(copy.defaults[0], "one");
        EXPECT_STREQ(copy.defaults[1], "two");
        ASSERT_NE(copy.type, nullptr);
        EXPECT_NE(copy.type, source.type);
        EXPECT_EQ(copy.type->baseType, ZRT_TYPE_STRING);
        EXPECT_STREQ(copy.units, "seconds");
        ASSERT_EQ(copy.extInstCount, 1);
        EXPECT_EQ(ZRS_EXT_CheckTwoExtInstSame(&copy.extInsts[0], &source.extInsts[0]), 1u);
    }
    ZrMod *module_ = nullptr;
};

TEST_F(Deviation, NeedsItsTargetPath)
{
    ZrsDeviation record = {};
    EXPECT_EQ(ZRS_MOD_FillDeviationTargetNode(dict_, &record, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillDeviationTargetNode(dict_, nullptr, "/n:a"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillDeviationTargetNode(nullptr, &record, "/n:a"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneDeviation(module_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneDeviation(nullptr, "/n:a"), ZR_ERR_INVALID);
}

TEST_F(Deviation, WithoutMemoryHoldsNothing)
{
    ZrsDeviation record = {};
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZRS_MOD_FillDeviationTargetNode(dict_, &record, "/n:a"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.targetPath == nullptr, memory.Failed());
        ZRS_MOD_ClearDeviation(ctx_, &record);
    });
}

TEST_F(Deviation, StartsUnappliedAndWithoutDeviates)
{
    ASSERT_EQ(ZRS_MOD_AppendOneDeviation(module_, "/n:a"), ZR_OK);
    EXPECT_EQ(module_->deviations[0].flags, 0);
    EXPECT_EQ(module_->deviations[0].deviates, nullptr);
    EXPECT_EQ(module_->deviations[0].deviateCount, 0);
}

TEST_F(Deviation, IsNeverTheSameAsAnother)
{
    ASSERT_EQ(ZRS_MOD_AppendOneDeviation(module_, "/n:a"), ZR_OK);
    const ZrsDeviation *deviation = &module_->deviations[0];
    EXPECT_EQ(ZRS_MOD_CheckTwoDeviationSame(deviation, deviation), 0u);
    EXPECT_EQ(ZRS_MOD_CheckSameDeviationExist(module_->deviations, 1, deviation), nullptr);
    ZrsDeviate deviate = {};
    EXPECT_EQ(ZRS_MOD_CheckTwoDeviateSame(&deviate, &deviate), 0u);
}

TEST_F(Deviation, ClearReleasesItsDeviates)
{
    int64_t blocks = guard_.LiveBlocks();
    ZrsDeviation record = {};
    ASSERT_EQ(ZRS_MOD_FillDeviationTargetNode(dict_, &record, "/n:a"), ZR_OK);
    ASSERT_EQ(zr::NewArray(&record.deviates, 2), ZR_OK);
    record.deviateCount = 2;
    FillSource(&record.deviates[0]);
    FillSource(&record.deviates[1]);
    ZRS_MOD_ClearDeviation(ctx_, &record);
    EXPECT_EQ(record.targetPath, nullptr);
    EXPECT_EQ(record.deviates, nullptr);
    EXPECT_EQ(record.deviateCount, 0);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
    ZRS_MOD_ClearDeviation(ctx_, nullptr);
    ZRS_MOD_FreeDeviation(ctx_, nullptr, 0);
    ZRS_MOD_ClearDeviate(ctx_, nullptr);
    ZRS_MOD_FreeDeviate(ctx_, nullptr, 0);
}

TEST_F(Deviation, DeviateIsCopiedDeeplyOrNotAtAll)
{
    ZrsDeviate source;
    FillSource(&source);
    ZrsDeviate copy;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] { return ZRS_MOD_FillDeviate(ctx_, &copy, &source); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        if (memory.Failed()) {
            EXPECT_EQ(copy.musts, nullptr);
            EXPECT_EQ(copy.defaults, nullptr);
            EXPECT_EQ(copy.type, nullptr);
            EXPECT_EQ(copy.units, nullptr);
            EXPECT_EQ(copy.extInsts, nullptr);
            EXPECT_EQ(copy.mustCount + copy.defaultCount + copy.extInstCount, 0);
        } else {
            ExpectCopy(copy, source);
        }
        ZRS_MOD_ClearDeviate(ctx_, &copy);
    });
    EXPECT_EQ(ZRS_MOD_FillDeviate(ctx_, &copy, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillDeviate(ctx_, nullptr, &source), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillDeviate(nullptr, &copy, &source), ZR_ERR_INVALID);
    ZRS_MOD_ClearDeviate(ctx_, &source);
}

TEST_F(Deviation, DeviateOfNothingIsCopied)
{
    ZrsDeviate source = {};
    source.kind = ZRS_DEVIATE_NOT_SUPPORTED;
    ZrsDeviate copy;
    ASSERT_EQ(ZRS_MOD_FillDeviate(ctx_, &copy, &source), ZR_OK);
    EXPECT_EQ(copy.kind, uint32_t{ZRS_DEVIATE_NOT_SUPPORTED});
    EXPECT_EQ(copy.musts, nullptr);
    EXPECT_EQ(copy.type, nullptr);
}

TEST_F(Deviation, DeviatesAreCopiedTogether)
{
    ZrsDeviate sources[2];
    FillSource(&sources[0]);
    FillSource(&sources[1]);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrsDeviate *copies = memory.Run([&] { return ZRS_MOD_CopyDeviateArray(ctx_, sources, 2); });
        ASSERT_EQ(copies == nullptr, memory.Failed());
        if (copies != nullptr)
            ExpectCopy(copies[1], sources[1]);
        ZRS_MOD_FreeDeviate(ctx_, copies, 2);
    });
    EXPECT_EQ(ZRS_MOD_CopyDeviateArray(ctx_, sources, 0), nullptr);
    EXPECT_EQ(ZRS_MOD_CopyDeviateArray(ctx_, nullptr, 2), nullptr);
    ZRS_MOD_ClearDeviate(ctx_, &sources[0]);
    ZRS_MOD_ClearDeviate(ctx_, &sources[1]);
}

} // namespace
