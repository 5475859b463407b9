// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "loader/files/module_content.h"
#include "loader/loader_fixture.h"
#include "model/module_records.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::TestContext;
using zrtest::yin::Import;

namespace {

// "module=prefix" of every import.
std::string Imports(const ZrMod *module)
{
    std::string text;
    for (uint32_t i = 0; i < module->importCount; ++i)
        text += std::string(i != 0 ? " " : "") + module->imports[i].moduleName + "=" +
                module->imports[i].prefix;
    return text;
}

TEST(Import, IsKeptWithItsPrefix)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Import("a", "pa") +
                                    "<import module='b'><revision-date date='2000-01-01'/>"
                                    "<prefix value='pb'/><prefix value='no'/></import>"),
              ZR_OK);
    EXPECT_EQ(Imports(ctx.Module("m")), "a=pa b=pb");
}

TEST(Import, HasThePrefixOfItsFirstChildOfThatNameWhateverItsNamespace)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m",
                           "<import module='a'><x:other xmlns:x='urn:x' value='no'/>"
                           "<x:prefix xmlns:x='urn:x' value='pa'/><prefix value='no'/></import>"
                           "<import module='b'><prefix xmlns='' value='pb'/></import>"),
              ZR_OK);
    EXPECT_EQ(Imports(ctx.Module("m")), "a=pa b=pb");
}

TEST(Import, MayStandAsOftenAsTheRecordCanCount)
{
    std::string imports;
    for (int i = 0; i < 65535; ++i)
        imports += Import("a" + std::to_string(i % 1000), "p" + std::to_string(i));
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", imports + Import("a0", "p0") + Import("a1", "p1") +
                                    "<feature name='f'><if-feature name='p65534:x'/></feature>"),
              ZR_OK);
    const ZrMod *m = ctx.Module("m");
    EXPECT_EQ(m->importCount, 65535);
    EXPECT_STREQ(m->imports[65534].prefix, "p65534");
    EXPECT_STREQ(m->features[0].ifFeatures[0].moduleName, "a534");
    EXPECT_EQ(ctx.LoadBody("n", imports + Import("a", "q")), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages("n"), ElementsAre("Failed to parse statement \"import\"."));
}

TEST(Import, ThatIsRepeatedTakesNoMemory)
{
    zrtest::AllocGuard guard;
    int64_t bytes[2];
    for (int repeated : {0, 1}) {
        TestContext ctx;
        std::string imports = Import("a", "p") + Import("b", "q");
        for (int i = 0; i < 100 * repeated; ++i)
            imports += Import("a", "p");
        ASSERT_EQ(ctx.LoadBody("m", imports), ZR_OK);
        bytes[repeated] = guard.LiveBytes();
    }
    EXPECT_EQ(bytes[0], bytes[1]);
}

TEST(Import, OfTheSameModuleUnderTheSamePrefixIsKeptOnce)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Import("a", "p") + Import("a", "p") + Import("a", "q")), ZR_OK);
    EXPECT_EQ(Imports(ctx.Module("m")), "a=p a=q");
}

TEST(Import, OfAnotherModuleUnderTheSamePrefixIsKeptButTheFirstOneCounts)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Import("a", "p") + Import("b", "p") +
                                    "<container name='c'><if-feature name='p:f'/></container>"),
              ZR_OK);
    EXPECT_EQ(Imports(ctx.Module("m")), "a=p b=p");
    EXPECT_STREQ(ctx.Node("/m:c")->ifFeatures[0].moduleName, "a");
}

TEST(Import, OfTheModuleItselfUnderItsOwnPrefixIsNoImport)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Import("m", "m")), ZR_OK);
    EXPECT_EQ(Imports(ctx.Module("m")), "");
}

struct BadImport {
    const char *xml;
    const char *first, *second;
};

const BadImport kBadImports[] = {
    {"<import/>", "Failed to get value of statement \"import\".",
     "Failed to parse statement \"import\"."},
    {"<import module='a'/>", "Failed to get value of statement \"prefix\".",
     "Failed to parse value \"a\" of statement \"import\"."},
    {"<import module='a'><prefix/></import>", "Failed to get value of statement \"prefix\".",
     "Failed to parse value \"a\" of statement \"import\"."},
    {"<import module='a'><prefix/><prefix value='p'/></import>",
     "Failed to get value of statement \"prefix\".",
     "Failed to parse value \"a\" of statement \"import\"."},
    {"<import module='a'><x:prefix xmlns:x='urn:x'/><prefix value='p'/></import>",
     "Failed to get value of statement \"prefix\".",
     "Failed to parse value \"a\" of statement \"import\"."},
};

TEST(Import, WithoutNameOrPrefixFails)
{
    for (const BadImport &row : kBadImports) {
        TestContext ctx;
        EXPECT_EQ(ctx.LoadBody("m", row.xml), ZR_ERR_FAILED);
        EXPECT_THAT(ctx.Messages(), ElementsAre(row.first, row.second)) << row.xml;
    }
}

TEST(Import, HasStatus22WhenItFails)
{
    for (const BadImport &row : kBadImports) {
        ModuleUnderTest module;
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseImport, row.xml, module.get()), ZR_ERR_INVALID)
            << row.xml;
    }
}

TEST(Linkage, StopsAtTheFirstFailure)
{
    ModuleUnderTest module;
    zrtest::Yin yin(Import("a", "pa") + "<include/>" + Import("b", "pb"));
    EXPECT_EQ(ZRS_LOADER_ParseLinkageStmts(module, yin.wrap()), ZR_ERR_INVALID);
    EXPECT_EQ(Imports(module), "x-mod=x ietf-netconf-acm=acm a=pa");
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"include\".",
                                               "Failed to parse statement \"include\"."));
}

TEST(Include, OfASubmoduleThatIsIncludedAlreadyDoesNothing)
{
    ModuleUnderTest module;
    ASSERT_EQ(ZRS_MOD_AppendOneInclude(module, "s"), ZR_OK);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseInclude, "<include module='s'/>", module.get()), ZR_OK);
    EXPECT_EQ(module->includeCount, 1);
    EXPECT_THAT(module.Messages(), IsEmpty());
}

TEST(Include, OfASubmoduleWithoutAFileFails)
{
    ModuleUnderTest module;
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseInclude, "<include module='s'/>", module.get()),
              ZR_ERR_NOT_FOUND);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to load submodule \"s\"."));
}

TEST(Include, OfANameThatIsNoFileNameIsNotFound)
{
    for (const char *name : {"../s", "/s", "sub/s", "s*", "?", "[s]"}) {
        ModuleUnderTest module;
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseInclude,
                        "<include module='" + std::string(name) + "'/>", module.get()),
                  ZR_ERR_NOT_FOUND)
            << name;
    }
}

TEST(Linkage, NamesTheStatementThatFailed)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<include module='s'/>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to load submodule \"s\".",
                                            "Failed to parse statement \"include\"."));
}

} // namespace
