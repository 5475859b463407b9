#include "schema/members/condition_records.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class Feature : public zrtest::RecordTest {
protected:
    void SetUp() override { module_ = NewModule("m"); }
    // A further feature with those features of "n" as its conditions.
    ZrsFeature *Add(const char *name, std::initializer_list<const char *> conditions)
    {
        EXPECT_EQ(ZRS_MOD_AppendOneFeature(module_, name), ZR_OK);
        ZrsFeature *feature = &module_->features[module_->featureCount - 1];
        for (const char *condition : conditions)
            EXPECT_EQ(ZRS_NODE_AppendOneIfFeat(dict_, &feature->ifFeatures,
                                               &feature->ifFeatureCount, "n", condition),
                      ZR_OK);
        return feature;
    }
    ZrMod *module_ = nullptr;
};

TEST_F(Feature, StartsDisabled)
{
    EXPECT_EQ(Add("f", {})->flags, 0);
}

TEST_F(Feature, NeedsItsName)
{
    ZrsFeature record = {};
    EXPECT_EQ(ZRS_MOD_FillFeature(dict_, &record, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillFeature(dict_, nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillFeature(nullptr, &record, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneFeature(module_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneFeature(nullptr, "f"), ZR_ERR_INVALID);
}

TEST_F(Feature, WithoutMemoryHoldsNothing)
{
    ZrsFeature record = {};
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] { return ZRS_MOD_FillFeature(dict_, &record, "f"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.name == nullptr, memory.Failed());
        ZRS_MDL_ClearFeature(dict_, &record);
    });
}

TEST_F(Feature, IsFoundByItsName)
{
    Add("f", {});
    Add("g", {});
    std::string name = "g";
    EXPECT_EQ(ZRS_MOD_FindFeatureByName(module_, name.c_str()), &module_->features[1]);
    EXPECT_EQ(ZRS_MOD_FindFeatureByName(module_, "h"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindFeatureByName(module_, nullptr), nullptr);
    EXPECT_EQ(ZRS_MOD_FindFeatureByName(nullptr, "f"), nullptr);
}

TEST_F(Feature, ClearKeepsTheFlags)
{
    ZrsFeature *feature = Add("f", {"a", "b"});
    feature->flags = ZRS_FEATURE_ENABLED;
    ZRS_MDL_ClearFeature(dict_, feature);
    EXPECT_EQ(feature->name, nullptr);
    EXPECT_EQ(feature->ifFeatures, nullptr);
    EXPECT_EQ(feature->ifFeatureCount, 0);
    EXPECT_EQ(feature->flags, ZRS_FEATURE_ENABLED);
    ZRS_MDL_ClearFeature(dict_, nullptr);
    ZRS_MOD_FreeFeatures(dict_, nullptr, 0);
}

TEST_F(Feature, IsTheSameInNameAndConditions)
{
    Add("f", {"a", "b"});
    Add("f", {"a", "b"})->flags = ZRS_FEATURE_ENABLED; // being on does not matter
    Add("g", {"a", "b"});
    Add("f", {"b", "a"});
    Add("f", {"a"});
    Add("f", {});
    const ZrsFeature *array = module_->features;
    EXPECT_EQ(ZRS_MOD_CheckTwoFeatureSame(&array[0], &array[1]), 1u);
    for (int i : {2, 3, 4, 5})
        EXPECT_EQ(ZRS_MOD_CheckTwoFeatureSame(&array[0], &array[i]), 0u) << i;
    EXPECT_EQ(ZRS_MOD_CheckTwoFeatureSame(nullptr, &array[0]), 0u);
}

} // namespace
