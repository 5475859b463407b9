// SPDX-License-Identifier: Apache-2.0
#include "schema/merge/merge.h"

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/merge_fixture.h"
#include "types/real_type.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

class Merge : public zrtest::MergeTest {
protected:
    static Texts Names(const ZrMod *module)
    {
        Texts names;
        for (uint32_t i = 0; i < module->importCount; ++i)
            names.push_back(std::string("import ") + module->imports[i].prefix);
        for (uint32_t i = 0; i < module->includeCount; ++i)
            names.push_back(std::string("include ") + module->includes[i].submoduleName);
        for (uint32_t i = 0; i < module->featureCount; ++i)
            names.push_back(std::string("feature ") + module->features[i].name);
        for (uint32_t i = 0; i < module->identityCount; ++i)
            names.push_back(std::string("identity ") + module->identities[i].name);
        for (uint32_t i = 0; i < module->extensionCount; ++i)
            names.push_back(std::string("extension ") + module->extensions[i].name);
        for (uint32_t i = 0; i < module->deviationCount; ++i)
            names.push_back(std::string("deviation ") + module->deviations[i].targetPath);
        for (uint32_t i = 0; i < module->typedefCount; ++i)
            names.push_back(std::string("typedef ") + module->typedefs[i].name);
        for (uint32_t i = 0; i < module->extInstCount; ++i)
            names.push_back(std::string("instance ") + module->extInsts[i].extensionName);
        return names;
    }
    void AddFeature(ZrMod *module, const char *name, const char *condition = nullptr)
    {
        ASSERT_EQ(ZRS_MOD_AppendOneFeature(module, name), ZR_OK);
        ZrsFeature *feature = &module->features[module->featureCount - 1];
        if (condition == nullptr)
            return;
        ASSERT_EQ(ZRS_NODE_AppendOneIfFeat(dict_, &feature->ifFeatures, &feature->ifFeatureCount,
                                           "n", condition),
                  ZR_OK);
    }
    void AddIdentity(ZrMod *module, const char *name, const char *base = nullptr,
                     const char *condition = nullptr)
    {
        ASSERT_EQ(ZRS_MOD_AppendOneIdentity(module, name), ZR_OK);
        ZrsIdentity *identity = &module->identities[module->identityCount - 1];
        auto fill = [&](ZrsIdentBase *record) {
            return ZRS_MOD_FillIdentBase(dict_, record, "n", base);
        };
        if (base != nullptr) {
            ASSERT_EQ(zr::AppendOne(&identity->bases, &identity->baseCount, fill), ZR_OK);
        }
        if (condition != nullptr) {
            ASSERT_EQ(ZRS_NODE_AppendOneIfFeat(dict_, &identity->ifFeatures,
                                               &identity->ifFeatureCount, "n", condition),
                      ZR_OK);
        }
    }
    void AddDeviation(ZrMod *module, const char *path, const char *units)
    {
        ASSERT_EQ(ZRS_MOD_AppendOneDeviation(module, path), ZR_OK);
        ZrsDeviation *deviation = &module->deviations[module->deviationCount - 1];
        auto fill = [&](ZrsDeviate *record) {
            record->kind = ZRS_DEVIATE_ADD;
            record->units = ZR_DICT_Insert(dict_, units);
            return uint32_t{0};
        };
        ASSERT_EQ(zr::AppendOne(&deviation->deviates, &deviation->deviateCount, fill), ZR_OK);
    }
    void AddInstance(ZrMod *module, const char *name)
    {
        ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &module->extInsts, &module->extInstCount,
                                                  "n", name, nullptr),
                  ZR_OK);
    }
    // Fills the source with one member of each kind but no typedef.
    void FillSource()
    {
        ASSERT_EQ(ZRS_MOD_AppendOneImport(source_, "n", "p"), ZR_OK);
        ASSERT_EQ(ZRS_MOD_AppendOneInclude(source_, "sub"), ZR_OK);
        AddFeature(source_, "f", "cond-f");
        AddIdentity(source_, "i", "base-i", "cond-i");
        ASSERT_EQ(ZRS_MOD_AppendOneExtension(source_, "e", "arg-e", 1), ZR_OK);
        AddDeviation(source_, "/n:x", "units-d");
        AddInstance(source_, "inst");
    }
};

TEST_F(Merge, NeedsTwoModulesOfOneContext)
{
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(nullptr, source_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, destination_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_MergeGlobalDefData(nullptr, source_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_MergeTreeNodeData(destination_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_MergeNonNodeMemberImport(nullptr, source_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_MergeNonNodeMemberTypeDef(destination_, nullptr), ZR_ERR_INVALID);
    ZrCtx *elsewhere = ZR_CTX_Create(0);
    ZrMod *foreign = zr::NewModule(elsewhere);
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, foreign), ZR_ERR_INVALID);
    ZRS_MOD_Free(foreign);
    ZR_CTX_Delete(elsewhere);
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(Merge, AddsEveryKindOfMemberThatIsMissing)
{
    FillSource();
    AddTypedef(source_, "t", "string");
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_OK);
    EXPECT_THAT(Names(destination_),
                ElementsAre("import p", "include sub", "feature f", "identity i", "extension e",
                            "deviation /n:x", "typedef t", "instance inst"));
    EXPECT_THAT(Messages(), IsEmpty());
    EXPECT_STREQ(destination_->imports[0].moduleName, "n");
    EXPECT_EQ(ZRS_MOD_CheckTwoFeatureSame(&destination_->features[0], &source_->features[0]), 1u);
    EXPECT_EQ(ZRS_MOD_CheckTwoIdentitySame(&destination_->identities[0], &source_->identities[0]),
              1u);
    EXPECT_EQ(ZRS_MOD_CheckTwoExtensionSame(&destination_->extensions[0], &source_->extensions[0]),
              1u);
    ASSERT_EQ(destination_->deviations[0].deviateCount, 1);
    EXPECT_STREQ(destination_->deviations[0].deviates[0].units, "units-d");
}

TEST_F(Merge, OfTheSameMembersAgainLeavesOneOfEachButEveryDeviation)
{
    FillSource();
    AddTypedef(source_, "t", "string");
    ASSERT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_OK);
    ASSERT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_OK);
    EXPECT_THAT(Names(destination_),
                ElementsAre("import p", "include sub", "feature f", "identity i", "extension e",
                            "deviation /n:x", "deviation /n:x", "typedef t", "instance inst"));
}

TEST_F(Merge, CarriesNeitherEnabledBitNorDescriptionNorAppliedFlagOver)
{
    FillSource();
    source_->features[0].flags = ZRS_FEATURE_ENABLED;
    source_->identities[0].description = ZR_DICT_Insert(dict_, "text");
    source_->deviations[0].flags = ZRS_DEVIATION_COUPLED;
    ASSERT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_OK);
    EXPECT_EQ(destination_->features[0].flags, 0);
    EXPECT_EQ(destination_->identities[0].description, nullptr);
    EXPECT_EQ(destination_->deviations[0].flags, 0);
}

TEST_F(Merge, KeepsTheFeaturesThatAreOnInTheDestination)
{
    AddFeature(destination_, "f", "cond-f");
    destination_->features[0].flags = ZRS_FEATURE_ENABLED;
    AddFeature(source_, "f", "cond-f");
    ASSERT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_OK);
    EXPECT_EQ(destination_->featureCount, 1);
    EXPECT_EQ(destination_->features[0].flags, ZRS_FEATURE_ENABLED);
}

TEST_F(Merge, RefusesAnotherModuleForAKnownPrefix)
{
    ASSERT_EQ(ZRS_MOD_AppendOneImport(destination_, "n", "p"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneImport(source_, "o", "p"), ZR_OK);
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(),
                ElementsAre("The import module name \"o\" corresponding to the prefix \"p\" is "
                            "different from the existing module name \"n\".",
                            "Failed to merge global definitions."));
    EXPECT_EQ(destination_->importCount, 1);
}

TEST_F(Merge, RefusesAFeatureWithOtherConditions)
{
    AddFeature(destination_, "f", "a");
    AddFeature(source_, "f", "b");
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("The if-feature informations of the feature \"f\" are "
                                        "different from the existing feature",
                                        "Failed to merge global definitions."));
}

TEST_F(Merge, RefusesAnIdentityWithOtherBases)
{
    AddIdentity(destination_, "i", "a");
    AddIdentity(source_, "i", "b");
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_ERR_INVALID);
    EXPECT_THAT(
        Messages(),
        ElementsAre("The information of the identity \"i\" is different from the existing identity",
                    "Failed to merge global definitions."));
}

TEST_F(Merge, RefusesAnExtensionWithAnotherArgument)
{
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(destination_, "e", "a", 0), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(source_, "e", "b", 0), ZR_OK);
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("The information of the extension \"e\" is different from "
                                        "the existing extension",
                                        "Failed to merge global definitions."));
}

TEST_F(Merge, StopsAtTheFirstFailureAndKeepsWhatCameBefore)
{
    ASSERT_EQ(ZRS_MOD_AppendOneImport(source_, "n", "p"), ZR_OK);
    AddFeature(destination_, "f", "a");
    AddFeature(source_, "f", "b");
    AddFeature(source_, "g");
    AddIdentity(source_, "i");
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_ERR_INVALID);
    EXPECT_THAT(Names(destination_), ElementsAre("import p", "feature f"));
}

TEST_F(Merge, KeepsATypedefThatIsThereWithoutAComparison)
{
    AddTypedef(destination_, "t", "string");
    AddTypedef(source_, "t", "int8");
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_OK);
    ASSERT_EQ(destination_->typedefCount, 1);
    EXPECT_EQ(destination_->typedefs[0].realType.baseType, ZRT_TYPE_STRING);
}

TEST_F(Merge, RefusesATypedefWhoseBaseIsNowhere)
{
    AddTypedef(source_, "t", "nowhere");
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to update real type of typedef \"t\".",
                                        "Failed to merge global definitions."));
}

class MergeMessages : public Merge {
protected:
    void FailOnce(uint64_t n, uint32_t status, const char *message)
    {
        guard_.FailAt(n);
        EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), status);
        guard_.Stop();
        EXPECT_THAT(Messages(), ElementsAre(message, "Failed to merge global definitions."));
    }
};

TEST_F(MergeMessages, NameAnImportThatCannotBeAdded)
{
    ASSERT_EQ(ZRS_MOD_AppendOneImport(source_, "n", "p"), ZR_OK);
    FailOnce(0, 12, "Failed to merge import module name \"n\" with prefix \"p\".");
    EXPECT_EQ(destination_->importCount, 0);
}

TEST_F(MergeMessages, NameAnIncludeThatCannotBeAdded)
{
    ASSERT_EQ(ZRS_MOD_AppendOneInclude(source_, "sub"), ZR_OK);
    FailOnce(0, 12, "Failed to merge include module name \"sub\".");
}

TEST_F(MergeMessages, NameAFeatureThatCannotBeAdded)
{
    AddFeature(source_, "f", "a");
    FailOnce(0, 12, "Failed to merge feature name \"f\".");
}

TEST_F(MergeMessages, NameAFeatureWhoseConditionsCannotBeCopied)
{
    AddFeature(source_, "f", "a");
    FailOnce(1, 12, "Failed to merge if-feature informations of feature \"f\".");
    EXPECT_EQ(destination_->featureCount, 0); // not half of it
}

TEST_F(MergeMessages, NameAnIdentityThatCannotBeAdded)
{
    AddIdentity(source_, "i", "b", "a");
    FailOnce(0, 12, "Failed to merge identity name \"i\".");
}

TEST_F(MergeMessages, NameAnIdentityWhoseBasesCannotBeCopied)
{
    AddIdentity(source_, "i", "b", "a");
    FailOnce(1, 12, "Failed to merge base informations of identity \"i\".");
    EXPECT_EQ(destination_->identityCount, 0);
}

TEST_F(MergeMessages, NameAnIdentityWhoseConditionsCannotBeCopied)
{
    AddIdentity(source_, "i", "b", "a");
    FailOnce(2, 12, "Failed to merge if-feature informations of identity \"i\".");
    EXPECT_EQ(destination_->identityCount, 0);
}

TEST_F(MergeMessages, NameAnExtensionThatCannotBeAdded)
{
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(source_, "e", "a", 1), ZR_OK);
    FailOnce(0, 12, "Failed to merge extension name \"e\".");
}

TEST_F(MergeMessages, NameADeviationThatCannotBeAdded)
{
    AddDeviation(source_, "/n:x", "seconds");
    FailOnce(0, 12, "Failed to merge deviation \"/n:x\".");
}

TEST_F(MergeMessages, NameADeviationWhoseDeviatesCannotBeCopied)
{
    AddDeviation(source_, "/n:x", "seconds");
    FailOnce(1, 12, "Failed to merge deviate informations of deviation \"/n:x\".");
    EXPECT_EQ(destination_->deviationCount, 0);
}

TEST_F(MergeMessages, NameATypedefThatCannotBeAdded)
{
    AddTypedef(source_, "t", "string");
    FailOnce(0, 12, "Failed to merge typedef \"t\".");
}

TEST_F(MergeMessages, TellOfModuleExtensionInstancesThatCannotBeAdded)
{
    AddInstance(source_, "inst");
    FailOnce(0, 12, "Failed to merge global extension instance informations.");
}

TEST_F(MergeMessages, TellOfMembersBeyond65535)
{
    AddFeature(destination_, "f");
    AddFeature(source_, "g");
    destination_->featureCount = UINT16_MAX;
    // found by nobody, so that the search does not read beyond the one that is there
    ZrsFeature *one = destination_->features;
    ZrsFeature *many = nullptr;
    ASSERT_EQ(zr::NewArray(&many, UINT16_MAX), ZR_OK);
    destination_->features = many;
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge feature name \"g\".",
                                        "Failed to merge global definitions."));
    EXPECT_EQ(destination_->featureCount, UINT16_MAX);
    zr::Free(many);
    destination_->features = one;
    destination_->featureCount = 1;
}

TEST_F(MergeMessages, AreRecordedForTheTreeToo)
{
    AddData(destination_, ZR_NODE_CONTAINER, "a");
    AddData(source_, ZR_NODE_LIST, "a");
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge node \"a\" with diff reason \"other\".",
                                        "Failed to merge schema tree."));
}

TEST_F(Merge, LosesNothingWhenAnAllocationFails)
{
    FillSource();
    AddTypedef(source_, "u", "t");
    AddTypedef(source_, "t", "string");
    ASSERT_EQ(ZRS_MOD_AppendOneInclude(source_, "another"), ZR_OK);
    zrtest::FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrMod *destination = NewModule("m", false);
        uint32_t status =
            memory.RunStatus([&] { return ZRS_MOD_MergeTwoModuleInSameCtx(destination, source_); });
        EXPECT_EQ(memory.Failed(), status == ZR_ERR_NO_MEMORY || status == ZR_ERR_INVALID)
            << status;
        // merged again, nothing is missing and only the deviation may be there twice
        EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination, source_), ZR_OK);
        EXPECT_EQ(destination->identities[0].baseCount, 1);
        EXPECT_EQ(destination->identities[0].ifFeatureCount, 1);
        EXPECT_EQ(destination->features[0].ifFeatureCount, 1);
        EXPECT_EQ(destination->typedefCount, 2);
        EXPECT_EQ(destination->includeCount, 2);
        FreeModule(destination);
        ZR_CTX_DeleteErrNodeByModName(ctx_->errMng, "m"); // what was recorded
    });
}

} // namespace
