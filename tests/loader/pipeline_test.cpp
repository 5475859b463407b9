// SPDX-License-Identifier: Apache-2.0
#include "loader/pipeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/context_record.h"
#include "foundation/search_dirs.h"
#include "model/module_records.h"
#include "model/node_record.h"
#include "support/alloc.h"
#include "support/context.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleText;
using zrtest::TempDir;
using zrtest::TestContext;
using zrtest::yin::Leaf;

namespace {

class LoadModule : public testing::Test {
protected:
    LoadModule() { ZR_CTX_SetSearchDir(ctx, dir.path().c_str()); }
    void Write(const std::string &file, const std::string &name, const std::string &body = "")
    {
        dir.Write(file, ModuleText(name, body));
    }
    uint32_t Load(const char *name) { return ZR_CTX_LoadModule(ctx, name); }
    TempDir dir;
    TestContext ctx;
};

} // namespace

TEST_F(LoadModule, LoadsTheModuleOfTheFile)
{
    Write("m.yin", "m", Leaf("x"));
    EXPECT_EQ(Load("m"), ZR_OK);
    ASSERT_NE(ctx.Module("m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx, "urn:m"), ctx.Module("m"));
    EXPECT_NE(ctx.Node("/m:x"), nullptr);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    EXPECT_STREQ(ZR_CTX_GetCurYinFile(ctx), "");
}

TEST_F(LoadModule, RefusesNullArguments)
{
    EXPECT_EQ(ZR_CTX_LoadModule(nullptr, "m"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_LoadModule(ctx, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_LoadMemory(nullptr, "<a/>"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_LoadMemory(ctx, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_LOADER_AppendModuleToCtx(ctx, nullptr, nullptr), ZR_ERR_INVALID);
}

TEST_F(LoadModule, WarnsOfAModuleThatIsNotFound)
{
    EXPECT_EQ(Load("m"), ZR_ERR_NOT_FOUND);
    EXPECT_THAT(ctx.Messages("m"), ElementsAre("Module \"m\" not found from search directories."));
}

TEST_F(LoadModule, RecordsAFileThatCannotBeRead)
{
    dir.Write("m.yin", "no xml at all");
    EXPECT_EQ(Load("m"), ZR_ERR_INVALID);
    EXPECT_THAT(ctx.Messages("m"), ElementsAre("Failed to read content from the yin file.",
                                               "Failed to parse module \"m\" from the yin file."));
    EXPECT_EQ(ctx.Module("m"), nullptr);
}

TEST_F(LoadModule, ForgetsEarlierErrorsOfAModuleThatIsNotLoaded)
{
    EXPECT_EQ(Load("m"), ZR_ERR_NOT_FOUND);
    Write("m.yin", "m");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_THAT(ctx.Messages("m"), IsEmpty());
}

TEST_F(LoadModule, RefusesAFileWhoseModuleHasAnotherName)
{
    Write("m.yin", "n");
    EXPECT_EQ(Load("m"), ZR_ERR_INVALID);
    EXPECT_THAT(ctx.Messages("m"), ElementsAre("Failed to parse module \"m\" from the yin file."));
    EXPECT_EQ(ctx.Module("n"), nullptr);
}

TEST_F(LoadModule, RefusesRootsThatAreNoModule)
{
    dir.Write("m.yin", "<submodule name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>");
    EXPECT_EQ(Load("m"), ZR_ERR_INVALID);
    EXPECT_THAT(ctx.Messages("m"), ElementsAre("Failed to parse module \"m\" from the yin file."));
    EXPECT_EQ(ctx.Load("<submodule name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>"),
              ZR_ERR_FAILED);
    EXPECT_EQ(ctx.Load("<container name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>"),
              ZR_ERR_FAILED);
}

TEST_F(LoadModule, RefusesAModuleWithoutAName)
{
    EXPECT_EQ(ctx.Load("<module xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>"), ZR_ERR_FAILED);
    EXPECT_EQ(ctx.Load("<module name='' xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>"),
              ZR_ERR_FAILED);
}

TEST_F(LoadModule, NamesTheFileInTheErrors)
{
    dir.Write("m@2020-01-01.yin", "<");
    Load("m");
    std::string file;
    ZR_CTX_ScanAllSchemaLoadFail(
        ctx,
        [](const char *, const char *yinFile, uint32_t, const char *, uint32_t, void *out) {
            *static_cast<std::string *>(out) = yinFile;
            return 0u;
        },
        &file);
    EXPECT_EQ(file, "m@2020-01-01.yin");
}

TEST_F(LoadModule, TakesTheDirectoryThatWasAddedFirst)
{
    TempDir second;
    Write("m.yin", "m", Leaf("first"));
    second.Write("m.yin", ModuleText("m", Leaf("second")));
    ZR_CTX_SetSearchDir(ctx, second.path().c_str());
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_NE(ctx.Node("/m:first"), nullptr);
    EXPECT_EQ(ctx.Node("/m:second"), nullptr);
}

TEST_F(LoadModule, LoadsOneFileOfSeveralRevisions)
{
    TempDir second;
    Write("m@2020-01-01.yin", "m", Leaf("revision"));
    second.Write("m.yin", ModuleText("m", Leaf("plain")));
    ZR_CTX_SetSearchDir(ctx, second.path().c_str());
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_NE(ctx.Node("/m:revision"), nullptr);
    EXPECT_EQ(ctx.Node("/m:plain"), nullptr);
}

TEST_F(LoadModule, ChangesNothingWhenItIsLoadedAlready)
{
    Write("m.yin", "m", Leaf("x"));
    Load("m");
    const ZrMod *module = ctx.Module("m");
    Write("m.yin", "m", Leaf("y"));
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m"), module);
    EXPECT_EQ(ctx.Node("/m:y"), nullptr);
}

TEST_F(LoadModule, MergesThePartsOfAModuleInSuffixedFiles)
{
    Write("m@@a.yin", "m", "<container name='c'>" + Leaf("a") + "</container>");
    Write("m@@b.yin", "m", "<container name='c'>" + Leaf("b") + "</container>");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    EXPECT_NE(ctx.Node("/m:c/a"), nullptr);
    EXPECT_NE(ctx.Node("/m:c/b"), nullptr);
    EXPECT_EQ(ctx.Module("m")->mergeSourceCount, 2);
}

TEST_F(LoadModule, AddsAPartThatAppearsLater)
{
    Write("m@@a.yin", "m", "<container name='c'>" + Leaf("a") + "</container>");
    Load("m");
    const ZrMod *module = ctx.Module("m");
    EXPECT_EQ(Load("m"), ZR_OK) << "nothing is pending";
    Write("m@@b.yin", "m", "<container name='c'>" + Leaf("b") + "</container>");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m"), module);
    EXPECT_NE(ctx.Node("/m:c/b"), nullptr);
    EXPECT_EQ(module->mergeSourceCount, 2);
}

TEST_F(LoadModule, ProcessesTenFilesAtTheMost)
{
    for (char part = 'a'; part < 'a' + 12; ++part)
        Write(std::string("m@@") + part + ".yin", "m", "<container name='c'/>");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->mergeSourceCount, 10);
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->mergeSourceCount, 12) << "the next load takes the others";
}

TEST_F(LoadModule, KeepsThePartsBeforeOneThatCannotBeMerged)
{
    Write("m@@a.yin", "m", Leaf("x"));
    EXPECT_EQ(Load("m"), ZR_OK);
    Write("m@@b.yin", "m", "<import module='other'><prefix value='p'/></import>");
    EXPECT_EQ(Load("m"), ZR_OK);
    Write("m@@c.yin", "m", "<import module='another'><prefix value='p'/></import>");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_THAT(ctx.Messages("m"), testing::SizeIs(2));
    EXPECT_NE(ctx.Node("/m:x"), nullptr);
    EXPECT_EQ(ctx.Module("m")->importCount, 1);
}

// What such a part brought before it failed stays, and must not come a second time.
TEST_F(LoadModule, MergesAPartThatFailedNotAgainUntilTheModuleIsUnloaded)
{
    Write("t.yin", "t", Leaf("x"));
    Load("t");
    Write("m@@a.yin", "m", "<import module='t'><prefix value='t'/></import>" + Leaf("x"));
    EXPECT_EQ(Load("m"), ZR_OK);
    Write("m@@b.yin", "m",
          "<import module='t'><prefix value='t'/></import><container name='x'/>"
          "<deviation target-node='/t:x'><deviate value='add'><must condition='1'/></deviate>"
          "</deviation>");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(Load("m"), ZR_OK);
        EXPECT_EQ(ctx.Module("m")->mergeSourceCount, 2);
        EXPECT_EQ(ctx.Module("m")->deviationCount, 1);
        EXPECT_EQ(ctx.Node("/t:x")->mustCount, 1);
    }
    Write("m@@b.yin", "m", Leaf("x") + Leaf("y"));
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->deviationCount, 1);
    EXPECT_EQ(ZR_CTX_UnloadModule(ctx, "m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->mergeSourceCount, 2);
    EXPECT_EQ(ctx.Module("m")->deviationCount, 0);
    EXPECT_EQ(ctx.Node("/t:x")->mustCount, 0);
}

TEST_F(LoadModule, ReadsAPartThatCannotBeParsedNotAgainAndGoesOnWithTheNextOne)
{
    Write("m@@a.yin", "m", Leaf("x"));
    EXPECT_EQ(Load("m"), ZR_OK);
    Write("m@@b.yin", "n");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_THAT(ctx.Messages("m"), ElementsAre("Failed to parse module \"m\" from the yin file."));
    Write("m@@c.yin", "m", "<feature name='f'/>");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->featureCount, 1);
    EXPECT_EQ(ctx.Module("m")->mergeSourceCount, 3);
    EXPECT_THAT(ctx.Messages("m"), testing::SizeIs(1));
}

TEST_F(LoadModule, ReadsAPartThatIsNoXmlOnceItIsMended)
{
    Write("m@@a.yin", "m", Leaf("x"));
    EXPECT_EQ(Load("m"), ZR_OK);
    dir.Write("m@@b.yin", "<module");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->mergeSourceCount, 1);
    Write("m@@b.yin", "m", "<feature name='f'/>");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->featureCount, 1);
    EXPECT_EQ(ctx.Module("m")->mergeSourceCount, 2);
}

TEST_F(LoadModule, RecordsAFailedMergeWithItsSummaries)
{
    dir.Write("m@@a.yin", ModuleText("m", "<feature name='f'/>"));
    EXPECT_EQ(Load("m"), ZR_OK);
    dir.Write("m@@b.yin", ModuleText("m", "<feature name='g'/><feature name='f'>"
                                          "<if-feature name='g'/></feature>"));
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_THAT(ctx.Messages("m"),
                ElementsAre("The if-feature informations of the feature \"f\" are different from "
                            "the existing feature",
                            "Failed to merge global definitions."));
}

TEST_F(LoadModule, RefusesANamespaceThatIsTaken)
{
    Write("a.yin", "a");
    dir.Write("b.yin", "<module name='b' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>"
                       "<namespace uri='urn:a'/><prefix value='b'/></module>");
    EXPECT_EQ(Load("a"), ZR_OK);
    EXPECT_EQ(Load("b"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages("b"), ElementsAre("Failed to load module \"b\"."));
    EXPECT_EQ(ctx.Module("b"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx, "urn:a"), ctx.Module("a")) << "the first one stays";
}

TEST_F(LoadModule, LoadsImportsBreadthFirstOnRequest)
{
    TestContext importing(ZR_CTX_LOAD_IMPORTS);
    ZR_CTX_SetSearchDir(importing, dir.path().c_str());
    Write("a.yin", "a",
          "<import module='b'><prefix value='b'/></import><import module='c'><prefix value='c'/>"
          "</import>");
    Write("b.yin", "b", "<import module='d'><prefix value='d'/></import>");
    Write("c.yin", "c");
    Write("d.yin", "d");
    EXPECT_EQ(ZR_CTX_LoadModule(importing, "a"), ZR_OK);
    for (const char *name : {"a", "b", "c", "d"})
        EXPECT_NE(importing.Module(name), nullptr) << name;
    EXPECT_EQ(Load("a"), ZR_OK);
    EXPECT_EQ(ctx.Module("b"), nullptr) << "without the option imports stay where they are";
}

TEST_F(LoadModule, FollowsNoImportsOfAModuleThatIsNotLoaded)
{
    EXPECT_EQ(ZRS_LOADER_LoadModuleImportedNames(ctx, "a"), ZR_ERR_INVALID);
}

TEST_F(LoadModule, StopsAtAnImportThatFails)
{
    TestContext importing(ZR_CTX_LOAD_IMPORTS);
    ZR_CTX_SetSearchDir(importing, dir.path().c_str());
    Write("a.yin", "a",
          "<import module='gone'><prefix value='g'/></import><import module='c'><prefix value='c'/>"
          "</import>");
    Write("c.yin", "c");
    EXPECT_EQ(ZR_CTX_LoadModule(importing, "a"), ZR_ERR_NOT_FOUND);
    EXPECT_NE(importing.Module("a"), nullptr);
    EXPECT_EQ(importing.Module("c"), nullptr);
    EXPECT_THAT(importing.Messages("gone"),
                ElementsAre("Module \"gone\" not found from search directories."));
}

TEST_F(LoadModule, GoesOnAfterAFailingImportOnRequest)
{
    TestContext importing(ZR_CTX_LOAD_IMPORTS | ZR_CTX_IGNORE_IMPORT_ERRORS);
    ZR_CTX_SetSearchDir(importing, dir.path().c_str());
    Write("a.yin", "a",
          "<import module='gone'><prefix value='g'/></import><import module='c'><prefix value='c'/>"
          "</import>");
    Write("c.yin", "c");
    EXPECT_EQ(ZR_CTX_LoadModule(importing, "a"), ZR_OK);
    EXPECT_NE(importing.Module("c"), nullptr);
}

TEST_F(LoadModule, LoadsModulesThatImportThemselvesOrEachOther)
{
    TestContext importing(ZR_CTX_LOAD_IMPORTS);
    ZR_CTX_SetSearchDir(importing, dir.path().c_str());
    Write("self.yin", "self", "<import module='self'><prefix value='me'/></import>");
    Write("a.yin", "a", "<import module='b'><prefix value='b'/></import>");
    Write("b.yin", "b", "<import module='a'><prefix value='a'/></import>");
    EXPECT_EQ(ZR_CTX_LoadModule(importing, "self"), ZR_OK);
    EXPECT_EQ(ZR_CTX_LoadModule(importing, "a"), ZR_OK);
    EXPECT_NE(importing.Module("b"), nullptr);
}

TEST_F(LoadModule, RecordsATypedefThatCannotBeResolved)
{
    Write("m.yin", "m", "<typedef name='t'><type name='nowhere'/></typedef>");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_THAT(ctx.Messages("m"), ElementsAre("Failed to update typedef statements."));
}

TEST_F(LoadModule, LeavesNothingBehindWhateverAllocationFails)
{
    Write("m@@a.yin", "m", "<feature name='f'/><container name='c'>" + Leaf("a") + "</container>");
    Write("m@@b.yin", "m", "<container name='c'>" + Leaf("b") + "</container>");
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        TestContext fresh;
        ASSERT_EQ(ZR_CTX_SetSearchDir(fresh, dir.path().c_str()), ZR_OK);
        uint32_t status = memory.RunStatus([&] { return ZR_CTX_LoadModule(fresh, "m"); });
        EXPECT_EQ(status == ZR_OK, fresh.Module("m") != nullptr);
        EXPECT_EQ(ZR_CTX_LoadModule(fresh, "m"), ZR_OK) << "the context stays usable";
    });
}

TEST(LoadMemory, RefusesTextThatIsNoXml)
{
    TestContext ctx;
    EXPECT_EQ(ctx.Load("not xml"), ZR_ERR_INVALID);
    EXPECT_EQ(ctx.Load(""), ZR_ERR_INVALID);
    EXPECT_EQ(ctx.Load("<module name='m'"), ZR_ERR_INVALID);
}

TEST(LoadMemory, KeepsTheFirstModuleOfAName)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", Leaf("x")), ZR_OK);
    const ZrMod *module = ctx.Module("m");
    EXPECT_EQ(ctx.LoadBody("m", Leaf("y")), ZR_OK);
    EXPECT_EQ(ctx.Module("m"), module);
    EXPECT_EQ(ctx.Node("/m:y"), nullptr);
}

TEST(LoadMemory, RefusesANamespaceThatIsTaken)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("a", ""), ZR_OK);
    EXPECT_EQ(ctx.Load("<module name='b' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>"
                       "<namespace uri='urn:a'/><prefix value='b'/></module>"),
              ZR_ERR_FAILED);
    EXPECT_EQ(ctx.Module("b"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx, "urn:a"), ctx.Module("a"));
}

TEST(LoadMemory, LoadsNoImports)
{
    TempDir dir;
    dir.Write("b.yin", ModuleText("b", ""));
    TestContext ctx(ZR_CTX_LOAD_IMPORTS);
    ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
    EXPECT_EQ(ctx.LoadBody("a", "<import module='b'><prefix value='b'/></import>"), ZR_OK);
    EXPECT_EQ(ctx.Module("b"), nullptr);
}
