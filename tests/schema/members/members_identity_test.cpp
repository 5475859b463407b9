#include "foundation/array.h"
#include "schema/members/condition_records.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class Identity : public zrtest::RecordTest {
protected:
    void SetUp() override { module_ = NewModule("m"); }
    // A further identity with those bases of "n".
    ZrsIdentity *Add(const char *name, std::initializer_list<const char *> bases)
    {
        EXPECT_EQ(ZRS_MOD_AppendOneIdentity(module_, name), ZR_OK);
        ZrsIdentity *identity = &module_->identities[module_->identityCount - 1];
        for (const char *base : bases)
            EXPECT_EQ(zr::AppendOne(&identity->bases, &identity->baseCount,
                                    [&](ZrsIdentBase *record) {
                                        return ZRS_MOD_FillIdentBase(dict_, record, "n", base);
                                    }),
                      ZR_OK);
        return identity;
    }
    void AddIfFeature(ZrsIdentity *identity, const char *feature)
    {
        ASSERT_EQ(ZRS_NODE_AppendOneIfFeat(dict_, &identity->ifFeatures, &identity->ifFeatureCount,
                                           "n", feature),
                  ZR_OK);
    }
    ZrMod *module_ = nullptr;
};

TEST_F(Identity, NeedsItsName)
{
    ZrsIdentity record = {};
    EXPECT_EQ(ZRS_MOD_FillIdentity(dict_, &record, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillIdentity(dict_, nullptr, "i"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillIdentity(nullptr, &record, "i"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneIdentity(module_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneIdentity(nullptr, "i"), ZR_ERR_INVALID);
}

TEST_F(Identity, WithoutMemoryHoldsNothing)
{
    ZrsIdentity record = {};
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] { return ZRS_MOD_FillIdentity(dict_, &record, "i"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.name == nullptr, memory.Failed());
        ZRS_MDL_ClearIdentity(dict_, &record);
    });
}

TEST_F(Identity, IsFoundByItsName)
{
    Add("i", {});
    Add("j", {});
    std::string name = "j";
    EXPECT_EQ(ZRS_MOD_FindIdentityByName(module_, name.c_str()), &module_->identities[1]);
    EXPECT_EQ(ZRS_MOD_FindIdentityByName(module_, "k"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindIdentityByName(nullptr, "i"), nullptr);
}

TEST_F(Identity, ClearReleasesEverything)
{
    int64_t blocks = guard_.LiveBlocks();
    ZrsIdentity record = {};
    ASSERT_EQ(ZRS_MOD_FillIdentity(dict_, &record, "i"), ZR_OK);
    record.description = ZR_DICT_Insert(dict_, "text");
    ASSERT_EQ(zr::AppendOne(
                  &record.bases, &record.baseCount,
                  [&](ZrsIdentBase *base) { return ZRS_MOD_FillIdentBase(dict_, base, "n", "b"); }),
              ZR_OK);
    AddIfFeature(&record, "f");
    ZRS_MDL_ClearIdentity(dict_, &record);
    EXPECT_EQ(record.name, nullptr);
    EXPECT_EQ(record.bases, nullptr);
    EXPECT_EQ(record.baseCount, 0);
    EXPECT_EQ(record.ifFeatures, nullptr);
    EXPECT_EQ(record.ifFeatureCount, 0);
    EXPECT_EQ(record.description, nullptr);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
    ZRS_MDL_ClearIdentity(dict_, nullptr);
    ZRS_MOD_FreeIdentities(dict_, nullptr, 0);
}

TEST_F(Identity, IsTheSameInNameBasesAndConditions)
{
    Add("i", {"a", "b"});
    Add("i", {"a", "b"});
    Add("j", {"a", "b"});
    Add("i", {"b", "a"}); // the order matters
    Add("i", {"a"});
    Add("i", {"a", "b"});
    AddIfFeature(&module_->identities[5], "f");
    module_->identities[1].description = ZR_DICT_Insert(dict_, "text"); // does not matter
    const ZrsIdentity *array = module_->identities;
    EXPECT_EQ(ZRS_MOD_CheckTwoIdentitySame(&array[0], &array[1]), 1u);
    for (int i : {2, 3, 4, 5})
        EXPECT_EQ(ZRS_MOD_CheckTwoIdentitySame(&array[0], &array[i]), 0u) << i;
    EXPECT_EQ(ZRS_MOD_CheckTwoIdentitySame(&array[0], nullptr), 0u);
}

TEST_F(Identity, BaseNeedsBothNames)
{
    ZrsIdentBase record = {};
    EXPECT_EQ(ZRS_MOD_FillIdentBase(dict_, &record, nullptr, "b"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillIdentBase(dict_, &record, "n", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillIdentBase(dict_, nullptr, "n", "b"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillIdentBase(nullptr, &record, "n", "b"), ZR_ERR_INVALID);
}

TEST_F(Identity, BaseWithoutMemoryHoldsNothing)
{
    ZrsIdentBase record;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZRS_MOD_FillIdentBase(dict_, &record, "n", "b"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.moduleName == nullptr, memory.Failed());
        EXPECT_EQ(record.identityName == nullptr, memory.Failed());
        ZRS_MDL_ClearIdentBase(dict_, &record);
    });
    ZRS_MDL_ClearIdentBase(dict_, nullptr);
    ZRS_MDL_FreeIdentBases(dict_, nullptr, 0);
}

TEST_F(Identity, BasesAreTheSameInBothNames)
{
    const ZrsIdentity *identity = Add("i", {"a", "a", "b"});
    EXPECT_EQ(ZRS_MOD_CheckTwoIdentBaseSame(&identity->bases[0], &identity->bases[1]), 1u);
    EXPECT_EQ(ZRS_MOD_CheckTwoIdentBaseSame(&identity->bases[0], &identity->bases[2]), 0u);
    ZrsIdentBase elsewhere = {module_->name, identity->bases[0].identityName};
    EXPECT_EQ(ZRS_MOD_CheckTwoIdentBaseSame(&identity->bases[0], &elsewhere), 0u);
    EXPECT_EQ(ZRS_MOD_CheckTwoIdentBaseSame(nullptr, &elsewhere), 0u);
}

TEST_F(Identity, BasesAreCopied)
{
    const ZrsIdentity *identity = Add("i", {"a", "b"});
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrsIdentBase *copy =
            memory.Run([&] { return ZRS_MOD_CopyIdentBaseArray(dict_, identity->bases, 2); });
        ASSERT_EQ(copy == nullptr, memory.Failed());
        if (copy != nullptr) {
            EXPECT_EQ(ZRS_MOD_CheckTwoIdentBaseSame(&copy[0], &identity->bases[0]), 1u);
            EXPECT_EQ(ZRS_MOD_CheckTwoIdentBaseSame(&copy[1], &identity->bases[1]), 1u);
        }
        ZRS_MDL_FreeIdentBases(dict_, copy, 2);
    });
    EXPECT_EQ(ZRS_MOD_CopyIdentBaseArray(dict_, identity->bases, 0), nullptr);
    EXPECT_EQ(ZRS_MOD_CopyIdentBaseArray(dict_, nullptr, 2), nullptr);
}

} // namespace
