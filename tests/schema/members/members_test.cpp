#include "schema/members/members.h"
#include "schema/record_fixture.h"

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

} // namespace
