// SPDX-License-Identifier: Apache-2.0
#include "schema/members/members.h"

#include "foundation/array.h"
#include "schema/members/condition_records.h"
#include "schema/record_fixture.h"
#include "types/real_type.h"

namespace {

class Members : public zrtest::RecordTest {
protected:
    void SetUp() override { module_ = NewModule("m"); }
    ZrMod *module_ = nullptr;
};

TEST_F(Members, ImportNeedsModuleNameAndPrefix)
{
    ZrsImport record = {};
    EXPECT_EQ(ZRS_MOD_FillImport(dict_, &record, nullptr, "p"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillImport(dict_, &record, "n", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillImport(dict_, nullptr, "n", "p"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillImport(nullptr, &record, "n", "p"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneImport(nullptr, "n", "p"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneImport(module_, nullptr, "p"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneImport(module_, "n", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(module_->importCount, 0);
}

TEST_F(Members, ImportWithoutMemoryForAStringIsInvalid)
{
    ZrsImport record;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] { return ZRS_MOD_FillImport(dict_, &record, "n", "p"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_INVALID : ZR_OK);
        EXPECT_EQ(record.moduleName == nullptr, memory.Failed());
        EXPECT_EQ(record.prefix == nullptr, memory.Failed());
        ZRS_MOD_ClearImport(dict_, &record);
    });
}

TEST_F(Members, ImportIsFoundByItsPrefix)
{
    ASSERT_EQ(ZRS_MOD_AppendOneImport(module_, "n", "p"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneImport(module_, "o", "q"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneImport(module_, "x", "q"), ZR_OK);
    std::string prefix = "q"; // a buffer of the caller
    ZrsImport *found = ZRS_MOD_FindImportByPrefix(module_->imports, 3, prefix.c_str());
    ASSERT_EQ(found, &module_->imports[1]);
    EXPECT_STREQ(found->moduleName, "o");
    EXPECT_EQ(ZRS_MOD_FindImportByPrefix(module_->imports, 1, "q"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindImportByPrefix(module_->imports, 3, "r"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindImportByPrefix(module_->imports, 3, nullptr), nullptr);
    EXPECT_EQ(ZRS_MOD_FindImportByPrefix(nullptr, 3, "q"), nullptr);
}

TEST_F(Members, IncludeIsFoundByItsName)
{
    ASSERT_EQ(ZRS_MOD_AppendOneInclude(module_, "s"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneInclude(module_, "t"), ZR_OK);
    std::string name = "t";
    EXPECT_EQ(ZRS_MOD_FindIncludeBySubName(module_->includes, 2, name.c_str()),
              &module_->includes[1]);
    EXPECT_EQ(ZRS_MOD_FindIncludeBySubName(module_->includes, 1, "t"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindIncludeBySubName(nullptr, 2, "t"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindIncludeBySubName(module_->includes, 2, nullptr), nullptr);
}

TEST_F(Members, IncludeNeedsItsName)
{
    ZrsInclude record = {};
    EXPECT_EQ(ZRS_MOD_FillInclude(dict_, &record, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillInclude(dict_, nullptr, "s"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneInclude(module_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneInclude(nullptr, "s"), ZR_ERR_INVALID);
    EXPECT_EQ(module_->includeCount, 0);
}

TEST_F(Members, IncludeWithoutMemoryHoldsNothing)
{
    ZrsInclude record;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] { return ZRS_MOD_FillInclude(dict_, &record, "s"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.submoduleName == nullptr, memory.Failed());
        ZRS_MOD_ClearInclude(dict_, &record);
    });
}

TEST_F(Members, ExtensionKeepsArgumentAndYinElement)
{
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(module_, "a", "text", 1), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(module_, "b", nullptr, 0), ZR_OK);
    std::string name = "a";
    ZrsExtension *found = ZRS_MOD_FindExtensionByName(module_, name.c_str());
    ASSERT_EQ(found, &module_->extensions[0]);
    EXPECT_STREQ(found->argument, "text");
    EXPECT_EQ(found->yinElement, 1u);
    EXPECT_EQ(module_->extensions[1].argument, nullptr);
    EXPECT_EQ(ZRS_MOD_FindExtensionByName(module_, "c"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindExtensionByName(nullptr, "a"), nullptr);
}

TEST_F(Members, ExtensionNeedsItsName)
{
    ZrsExtension record = {};
    EXPECT_EQ(ZRS_MOD_SetExtension(dict_, &record, nullptr, "text", 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_SetExtension(dict_, nullptr, "a", "text", 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneExtension(module_, nullptr, "text", 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneExtension(nullptr, "a", "text", 1), ZR_ERR_INVALID);
}

TEST_F(Members, ExtensionWithoutMemoryHoldsNothing)
{
    ZrsExtension record;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZRS_MOD_SetExtension(dict_, &record, "a", "text", 1); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(record.name == nullptr, memory.Failed());
        EXPECT_EQ(record.argument == nullptr, memory.Failed());
        ZRS_MDL_ClearExtension(dict_, &record);
    });
}

TEST_F(Members, ExtensionsAreTheSameInNameArgumentAndYinElement)
{
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(module_, "a", "text", 1), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(module_, "a", "text", 1), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(module_, "b", "text", 1), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(module_, "a", "other", 1), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneExtension(module_, "a", "text", 0), ZR_OK);
    const ZrsExtension *array = module_->extensions;
    EXPECT_EQ(ZRS_MOD_CheckTwoExtensionSame(&array[0], &array[1]), 1u);
    for (int i : {2, 3, 4})
        EXPECT_EQ(ZRS_MOD_CheckTwoExtensionSame(&array[0], &array[i]), 0u) << i;
    EXPECT_EQ(ZRS_MOD_CheckTwoExtensionSame(&array[0], nullptr), 0u);
}

TEST_F(Members, LinkageArraysAreFreedWhenNull)
{
    ZRS_MOD_FreeImports(dict_, nullptr, 0);
    ZRS_MOD_FreeIncludes(dict_, nullptr, 0);
    ZRS_MOD_FreeExtensions(dict_, nullptr, 0);
    ZRS_MOD_ClearImport(dict_, nullptr);
    ZRS_MOD_ClearInclude(dict_, nullptr);
    ZRS_MDL_ClearExtension(dict_, nullptr);
}

// One row a kind: how to append one member, and where it is counted.
struct AppendRow {
    const char *kind;
    uint32_t (*append)(ZrMod *module);
    uint16_t ZrMod::*count;
    uint32_t statusWithoutMemory; // when the dictionary is what refuses
};

const ZrtRealType kString = {ZRT_TYPE_STRING, 0, 0, nullptr};

// Each with a text of its own, so that the dictionary needs memory for it.
// clang-format off
const AppendRow kAppends[] = {
    // kind       append one                                                                count                     status
    {"import",    [](ZrMod *m) { return ZRS_MOD_AppendOneImport(m, "n1", "p1"); },          &ZrMod::importCount,      ZR_ERR_INVALID},
    {"include",   [](ZrMod *m) { return ZRS_MOD_AppendOneInclude(m, "n2"); },               &ZrMod::includeCount,     ZR_ERR_NO_MEMORY},
    {"feature",   [](ZrMod *m) { return ZRS_MOD_AppendOneFeature(m, "n3"); },               &ZrMod::featureCount,     ZR_ERR_NO_MEMORY},
    {"identity",  [](ZrMod *m) { return ZRS_MOD_AppendOneIdentity(m, "n4"); },              &ZrMod::identityCount,    ZR_ERR_NO_MEMORY},
    {"extension", [](ZrMod *m) { return ZRS_MOD_AppendOneExtension(m, "n5", "a", 0); },     &ZrMod::extensionCount,   ZR_ERR_NO_MEMORY},
    {"typedef",   [](ZrMod *m) { return ZRS_MOD_AppendOneTypeDef(m, "n6", &kString, "d"); }, &ZrMod::typedefCount,    ZR_ERR_NO_MEMORY},
    {"deviation", [](ZrMod *m) { return ZRS_MOD_AppendOneDeviation(m, "/n7:a"); },          &ZrMod::deviationCount,   ZR_ERR_NO_MEMORY},
};
// clang-format on

TEST_F(Members, AreCountedOnlyWhenTheyAreFilled)
{
    for (const AppendRow &row : kAppends) {
        SCOPED_TRACE(row.kind);
        guard_.FailAt(0); // the array
        EXPECT_EQ(row.append(module_), ZR_ERR_NO_MEMORY);
        EXPECT_EQ(module_->*row.count, 0);
        guard_.FailAt(1); // the dictionary
        EXPECT_EQ(row.append(module_), row.statusWithoutMemory);
        EXPECT_EQ(module_->*row.count, 0);
        guard_.Stop(); // the room that was left is used
        EXPECT_EQ(row.append(module_), ZR_OK);
        EXPECT_EQ(row.append(module_), ZR_OK);
        EXPECT_EQ(module_->*row.count, 2);
    }
}

TEST_F(Members, AreRefusedBeyond65535OfAKind)
{
    for (const AppendRow &row : kAppends) {
        SCOPED_TRACE(row.kind);
        EXPECT_EQ(row.append(module_), ZR_OK);
        module_->*row.count = UINT16_MAX;
        EXPECT_EQ(row.append(module_), ZR_ERR_INVALID);
        EXPECT_EQ(module_->*row.count, UINT16_MAX);
        module_->*row.count = 1;
    }
}

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

class Features : public zrtest::RecordTest {
protected:
    void SetUp() override
    {
        module_ = NewModule("m");
        for (const char *name : {"f", "g", "h"})
            ASSERT_EQ(ZRS_MOD_AppendOneFeature(module_, name), ZR_OK);
        NewModule("empty");
    }
    // The names of those that are on.
    std::string On()
    {
        std::string names;
        for (const char *name : {"f", "g", "h"}) {
            if (ZR_CTX_IsModFeatureEnable(ctx_, "m", name) == 1)
                names += name;
        }
        return names;
    }
    ZrMod *module_ = nullptr;
};

TEST_F(Features, AreOffAtFirst)
{
    EXPECT_EQ(On(), "");
}

TEST_F(Features, AreTurnedOnAndOffByName)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(On(), "g");
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "h"), ZR_OK);
    EXPECT_EQ(On(), "gh");
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(On(), "h");
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "h"), ZR_OK);
    EXPECT_EQ(On(), "");
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "h"), ZR_OK);
}

TEST_F(Features, AreAllTurnedOnByAStar)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "*"), ZR_OK);
    EXPECT_EQ(On(), "fgh");
    EXPECT_EQ(ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(ctx_, "empty"), "*"), ZR_OK);
}

TEST_F(Features, AreNotTurnedOffByAStar)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "*"), ZR_OK);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "*"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "*"), ZR_ERR_INVALID);
    EXPECT_EQ(On(), "fgh");
}

TEST_F(Features, ThatAreUnknownChangeNothing)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "**"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "x", "g"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "m", "x"), 0u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "x", "g"), 0u);
    EXPECT_EQ(On(), "g");
}

TEST_F(Features, NeedEveryArgument)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_DisableFeature(nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(nullptr, "m", "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "m", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(nullptr, "m", "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", nullptr), ZR_ERR_INVALID);
}

TEST_F(Features, KeepTheirOtherFlags)
{
    module_->features[0].flags = 0x81;
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "f"), ZR_OK);
    EXPECT_EQ(module_->features[0].flags, 0x81 | ZRS_FEATURE_ENABLED);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "f"), ZR_OK);
    EXPECT_EQ(module_->features[0].flags, 0x81);
}

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

class TypeDef : public zrtest::RecordTest {
protected:
    void SetUp() override { module_ = NewModule("m"); }
    void TearDown() override
    {
        ZRT_TYPE_DestroyZrtRealTypeInner(ctx_, &derived_);
        RecordTest::TearDown();
    }
    // A type derived from the module's typedef of that name.
    const ZrtRealType *DerivedFrom(const char *name)
    {
        ZRT_TYPE_DestroyZrtRealTypeInner(ctx_, &derived_);
        auto *body = zr::New<ZrtConsDerived>();
        body->moduleName = ZR_DICT_Insert(dict_, "m");
        body->typedefName = ZR_DICT_Insert(dict_, name);
        EXPECT_EQ(ZRT_TYPE_ExpandConstraintArray(&derived_, 1), ZR_OK);
        derived_.constraints[0] = {ZRT_CONS_DERIVED, body};
        derived_.consCount = 1;
        return &derived_;
    }
    ZrMod *module_ = nullptr;
    ZrtRealType plain_ = {ZRT_TYPE_INT8, 0, 0, nullptr};
    ZrtRealType derived_ = {};
};

TEST_F(TypeDef, NeedsNameAndType)
{
    ZrsTypDef record = {};
    EXPECT_EQ(ZRS_MOD_FillTypeDef(ctx_, &record, nullptr, &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillTypeDef(ctx_, &record, "t", nullptr, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillTypeDef(ctx_, nullptr, "t", &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillTypeDef(nullptr, &record, "t", &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(nullptr, "t", &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(module_, nullptr, &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", nullptr, "1"), ZR_ERR_INVALID);
}

TEST_F(TypeDef, HoldsACopyOfTheTypeAndNoUnits)
{
    const ZrtRealType *source = DerivedFrom("base");
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", source, "1"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "u", &plain_, nullptr), ZR_OK);
    const ZrsTypDef *array = module_->typedefs;
    EXPECT_STREQ(array[0].name, "t");
    EXPECT_STREQ(array[0].defaultValue, "1");
    EXPECT_EQ(array[0].units, nullptr);
    ASSERT_EQ(array[0].realType.consCount, 1);
    EXPECT_NE(array[0].realType.constraints, source->constraints);
    EXPECT_STREQ(ZRT_TYPE_GetTypeConsDataDerived(&array[0].realType)->typedefName, "base");
    EXPECT_EQ(array[1].defaultValue, nullptr);
    EXPECT_EQ(array[1].realType.baseType, ZRT_TYPE_INT8);
}

TEST_F(TypeDef, WithoutMemoryHoldsNothing)
{
    const ZrtRealType *source = DerivedFrom("base");
    ZrsTypDef record;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZRS_MOD_FillTypeDef(ctx_, &record, "t", source, "1"); });
        // the strings first (12), then the type (22)
        EXPECT_EQ(status != ZR_OK, memory.Failed());
        EXPECT_TRUE(status == ZR_OK || status == ZR_ERR_NO_MEMORY || status == ZR_ERR_INVALID)
            << status;
        EXPECT_EQ(record.name == nullptr, memory.Failed());
        EXPECT_EQ(record.defaultValue == nullptr, memory.Failed());
        ZRS_TYPE_DestroyTypDefInner(ctx_, &record);
    });
}

TEST_F(TypeDef, OfATypeThatCannotBeCopiedIsInvalid)
{
    ZrtConsSlot slot = {ZRT_CONS_RANGE, nullptr}; // a slot without a body
    ZrtRealType broken = {ZRT_TYPE_INT8, 0, 1, &slot};
    ZrsTypDef record;
    EXPECT_EQ(ZRS_MOD_FillTypeDef(ctx_, &record, "t", &broken, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(record.name, nullptr);
    EXPECT_EQ(record.defaultValue, nullptr);
    EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", &broken, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(module_->typedefCount, 0);
}

TEST_F(TypeDef, IsFoundByItsName)
{
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", &plain_, nullptr), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "u", &plain_, nullptr), ZR_OK);
    std::string name = "u";
    EXPECT_EQ(ZRS_MOD_FindTypDefObjByName(module_->typedefs, 2, name.c_str()),
              &module_->typedefs[1]);
    EXPECT_EQ(ZRS_MOD_FindTypDefObjByName(module_->typedefs, 1, "u"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindTypDefObjByName(nullptr, 2, "u"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindZrsTypDefByName(module_, name.c_str()), &module_->typedefs[1]);
    EXPECT_EQ(ZRS_MOD_FindZrsTypDefByName(module_, "v"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindZrsTypDefByName(nullptr, "u"), nullptr);
}

TEST_F(TypeDef, IsDestroyedWithItsUnits)
{
    int64_t blocks = guard_.LiveBlocks();
    ZrsTypDef record;
    ASSERT_EQ(ZRS_MOD_FillTypeDef(ctx_, &record, "t", &plain_, "1"), ZR_OK);
    record.units = ZR_DICT_Insert(dict_, "seconds");
    ZRS_TYPE_DestroyTypDefInner(ctx_, &record);
    EXPECT_EQ(record.name, nullptr);
    EXPECT_EQ(record.units, nullptr);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
    ZRS_TYPE_DestroyTypDefInner(ctx_, nullptr);
    ZRS_TYPE_FreeTypDefArray(ctx_, nullptr, 0);
}

} // namespace
