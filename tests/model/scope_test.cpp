// SPDX-License-Identifier: Apache-2.0
#include "model/scope.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "schema/module/module.h"
#include "support/alloc.h"
#include "support/context.h"

using zr::ImportTable;

namespace {

class ImportTableTest : public testing::Test {
protected:
    void Fill(ImportTable::Key key)
    {
        ASSERT_EQ(table_.Make(imports_.data(), static_cast<uint32_t>(imports_.size()), key), ZR_OK);
        for (uint32_t i = 0; i < imports_.size(); ++i)
            first_.push_back(table_.FindOrAdd(i));
    }
    std::vector<ZrsImport> imports_ = {{"a", "p"}, {"b", "q"}, {"c", "p"}, {"a", "p"}, {"a", "r"}};
    ImportTable table_;
    std::vector<const ZrsImport *> first_;
};

TEST_F(ImportTableTest, FindsTheFirstImportOfAPrefix)
{
    Fill(ImportTable::kPrefix);
    EXPECT_EQ(table_.Find("p"), &imports_[0]);
    EXPECT_EQ(table_.Find("q"), &imports_[1]);
    EXPECT_EQ(table_.Find("r"), &imports_[4]);
    EXPECT_EQ(table_.Find("s"), nullptr);
    EXPECT_EQ(table_.Find(""), nullptr);
    EXPECT_EQ(table_.Find(nullptr), nullptr);
    EXPECT_EQ(first_, (std::vector<const ZrsImport *>{nullptr, nullptr, &imports_[0], &imports_[0],
                                                      nullptr}));
}

TEST_F(ImportTableTest, TellsModulesApartWhenTheyAreInTheKey)
{
    Fill(ImportTable::kPrefixAndModule);
    EXPECT_EQ(first_,
              (std::vector<const ZrsImport *>{nullptr, nullptr, nullptr, &imports_[0], nullptr}));
}

TEST_F(ImportTableTest, FindsNothingBeforeItIsMadeOrWithoutImports)
{
    EXPECT_EQ(table_.Find("p"), nullptr);
    ASSERT_EQ(table_.Make(nullptr, 0, ImportTable::kPrefix), ZR_OK);
    EXPECT_EQ(table_.Find("p"), nullptr);
}

TEST_F(ImportTableTest, TakesManyImports)
{
    std::vector<std::string> prefixes;
    for (int i = 0; i < 5000; ++i)
        prefixes.push_back("p" + std::to_string(i));
    imports_.clear();
    for (const std::string &prefix : prefixes)
        imports_.push_back({"a", prefix.c_str()});
    Fill(ImportTable::kPrefix);
    for (size_t i = 0; i < prefixes.size(); ++i)
        EXPECT_EQ(table_.Find(std::string(prefixes[i]).c_str()), &imports_[i]);
}

TEST_F(ImportTableTest, SaysWhenThereIsNoMemory)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(table_.Make(imports_.data(), 5, ImportTable::kPrefix), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(table_.Find("p"), nullptr);
}

TEST(ModuleNameInFile, LooksIntoTheFileAndThenIntoTheOneThatIncludesIt)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", ""), ZR_OK);
    ZrMod *m = ctx.Module("m");
    EXPECT_EQ(zr::ModuleNameInFile(m, "m"), nullptr) << "no file is being read";

    const ZrsImport outer[] = {{"outer-x", "x"}, {"outer-y", "y"}, {"outer-own", "own"}};
    const ZrsImport inner[] = {{"inner-x", "x"}, {"inner-m", "m"}};
    ZrsFilePrefixes file, submodule;
    ASSERT_EQ(file.imports.Make(outer, 3, ImportTable::kPrefix), ZR_OK);
    ASSERT_EQ(submodule.imports.Make(inner, 2, ImportTable::kPrefix), ZR_OK);
    for (uint32_t i = 0; i < 3; ++i)
        file.imports.FindOrAdd(i);
    for (uint32_t i = 0; i < 2; ++i)
        submodule.imports.FindOrAdd(i);
    file.modulePrefix = "m";
    submodule.modulePrefix = "own";
    submodule.including = &file;
    m->file = &submodule;
    EXPECT_STREQ(ZRS_MOD_GetModuleNameByPrefix(m, "own"), "m");
    EXPECT_STREQ(ZRS_MOD_GetModuleNameByPrefix(m, "x"), "inner-x");
    EXPECT_STREQ(ZRS_MOD_GetModuleNameByPrefix(m, "m"), "inner-m");
    EXPECT_STREQ(ZRS_MOD_GetModuleNameByPrefix(m, "y"), "outer-y");
    EXPECT_EQ(ZRS_MOD_GetModuleNameByPrefix(m, "z"), nullptr);
    m->file = nullptr;
    EXPECT_STREQ(ZRS_MOD_GetModuleNameByPrefix(m, "m"), "m");
    EXPECT_EQ(ZRS_MOD_GetModuleNameByPrefix(m, "x"), nullptr);
}

} // namespace
