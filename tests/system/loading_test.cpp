// SPDX-License-Identifier: Apache-2.0
// Loading: which files make a module, what comes along with it, and what stays when it fails.
#include "application.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A submodule of "box".
constexpr char kLid[] = R"(
    <submodule name='box-lid' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>
      <belongs-to module='box'><prefix value='b'/></belongs-to>
      <container name='lid'/>
    </submodule>)";

class Loading : public Application {};

TEST_F(Loading, ReadsAModuleByItsNameFromAFile)
{
    Write("box", "<container name='box'/>");
    Start();
    EXPECT_EQ(Module("box"), nullptr);
    EXPECT_EQ(Load("box"), ZR_OK);
    EXPECT_STREQ(ZR_MOD_GetModuleNs(Module("box")), "urn:box");
    EXPECT_NE(Node("/box:box"), nullptr);
    EXPECT_EQ(Load("box"), ZR_OK) << "is loaded already";
    EXPECT_EQ(Load("crate"), ZR_ERR_NOT_FOUND);
}

TEST_F(Loading, TakesTheFileOfTheDirectoryThatWasAddedFirst)
{
    zrtest::TempDir older;
    older.Write("box.yin",
                zrtest::ModuleText("box", "<leaf name='old'><type name='int8'/></leaf>"));
    Write("box", "<leaf name='new'><type name='int8'/></leaf>");
    Start();
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, older.path().c_str()), ZR_OK);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, "modules"), ZR_ERR_BAD_DIR) << "not absolute";
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_NE(Node("/box:new"), nullptr);
    EXPECT_EQ(Node("/box:old"), nullptr);

    ASSERT_EQ(Unload("box"), ZR_OK);
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, folder_.path().c_str()), ZR_OK);
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_NE(Node("/box:old"), nullptr);
}

TEST_F(Loading, TakesAFileWithARevisionInItsNameWhereThereIsNoneWithout)
{
    WriteFile("box@2026-01-15.yin",
              zrtest::ModuleText("box", "<revision date='2026-01-15'/><container name='box'/>"));
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_STREQ(ZR_MOD_GetRevision(Module("box")), "2026-01-15");

    Write("box", "<revision date='2026-11-01'/><container name='box'/>");
    ASSERT_EQ(Unload("box"), ZR_OK);
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_STREQ(ZR_MOD_GetRevision(Module("box")), "2026-11-01");
}

TEST_F(Loading, MakesOneModuleOfAllFilesWithSuffixes)
{
    WriteFile("box@@lid.yin", zrtest::ModuleText("box", R"(
        <container name='box'><leaf name='lid'><type name='boolean'/></leaf></container>)"));
    WriteFile("box@@lock.yin", zrtest::ModuleText("box", R"(
        <container name='box'><leaf name='lock'><type name='string'/></leaf></container>)"));
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_NE(Node("/box:box/lid"), nullptr);
    EXPECT_NE(Node("/box:box/lock"), nullptr);
    // A file that comes later is merged in by loading once more.
    WriteFile("box@@feet.yin", zrtest::ModuleText("box", R"(
        <container name='box'><leaf name='feet'><type name='uint8'/></leaf></container>)"));
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_NE(Node("/box:box/feet"), nullptr);
}

TEST_F(Loading, PutsTheSubmodulesThatAModuleIncludesIntoIt)
{
    WriteFile("box-lid.yin", kLid);
    Write("box", "<include module='box-lid'/><container name='box'/>");
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_STREQ(ZR_MOD_GetModuleName(ZR_NODE_GetModule(Node("/box:lid"))), "box");
    EXPECT_THAT(Loaded(), ElementsAre("box")) << "a submodule is no module";
}

TEST_F(Loading, ReadsAModuleFromMemory)
{
    Start();
    EXPECT_EQ(ZR_CTX_LoadMemory(ctx_, R"(
        <module name='box' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:b='urn:box'>
          <namespace uri='urn:box'/>
          <prefix value='b'/>
          <leaf name='size'><type name='uint8'/></leaf>
        </module>)"),
              ZR_OK);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:box"), Module("box"));
    EXPECT_NE(Node("/box:size"), nullptr);
    EXPECT_EQ(ZR_CTX_LoadMemory(ctx_, "<module name='crate'>"), ZR_ERR_INVALID) << "no XML";
    EXPECT_EQ(ZR_CTX_LoadMemory(ctx_, "<crate/>"), ZR_ERR_FAILED) << "no module";
}

TEST_F(Loading, BringsImportsAlongInAContextThatIsToDoSo)
{
    Write("units", "<typedef name='litre'><type name='uint8'/></typedef>");
    Write("box", R"(
        <import module='units'><prefix value='u'/></import>
        <leaf name='size'><type name='u:litre'/></leaf>)");
    Start(ZR_CTX_LOAD_IMPORTS);
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_THAT(Loaded(), ElementsAre("box", "units"));
    EXPECT_EQ(Check("/box:size", "12"), ZR_OK);
}

TEST_F(Loading, LeavesImportsToTheApplicationElse)
{
    Write("units", "<typedef name='litre'><type name='uint8'/></typedef>");
    Write("box", R"(
        <import module='units'><prefix value='u'/></import>
        <leaf name='size'><type name='u:litre'/></leaf>)");
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_THAT(Loaded(), ElementsAre("box"));
    EXPECT_EQ(Check("/box:size", "12"), ZR_ERR_VALUE_DERIVED) << "its typedef is not there yet";
    ASSERT_EQ(Load("units"), ZR_OK);
    EXPECT_EQ(Check("/box:size", "12"), ZR_OK);
}

TEST_F(Loading, PassesTheStatusOfAMissingImportOnUnlessTheContextIgnoresIt)
{
    Write("box", "<import module='units'><prefix value='u'/></import><container name='box'/>");
    Start(ZR_CTX_LOAD_IMPORTS);
    EXPECT_EQ(Load("box"), ZR_ERR_NOT_FOUND);
    EXPECT_THAT(Loaded(), ElementsAre("box")) << "the module itself stays";
    ZR_CTX_Delete(ctx_);

    Start(ZR_CTX_LOAD_IMPORTS | ZR_CTX_IGNORE_IMPORT_ERRORS);
    EXPECT_EQ(ZT_CTX_IgnoreImportModError(ctx_), 1u);
    EXPECT_EQ(Load("box"), ZR_OK);
}

TEST_F(Loading, TriesTheImportsThatFailedAgainWhenTheModuleIsLoadedAgain)
{
    Write("box", "<import module='units'><prefix value='u'/></import>");
    Start(ZR_CTX_LOAD_IMPORTS);
    EXPECT_EQ(Load("box"), ZR_ERR_NOT_FOUND);
    Write("units", "");
    EXPECT_EQ(Load("box"), ZR_OK);
    EXPECT_THAT(Loaded(), ElementsAre("box", "units"));
    Remove("box.yin");
    EXPECT_EQ(Load("box"), ZR_ERR_NOT_FOUND) << "the file is needed for it";
    EXPECT_THAT(Loaded(), ElementsAre("box", "units"));
}

TEST_F(Loading, FindsTheSubmodulesOfATextFromMemoryInTheDirectories)
{
    WriteFile("box-lid.yin", kLid);
    Start();
    ASSERT_EQ(
        ZR_CTX_LoadMemory(ctx_, zrtest::ModuleText("box", "<include module='box-lid'/>").c_str()),
        ZR_OK);
    EXPECT_NE(Node("/box:lid"), nullptr);
}

TEST_F(Loading, LeavesNothingOfAModuleThatIsWrong)
{
    Write("box", "<container name='box'/>");
    WriteFile("crate.yin", zrtest::ModuleText("crate", "<leaf name='size'/>"));
    WriteFile("other.yin", zrtest::ModuleText("box", "<container name='box'/>"));
    WriteFile("torn.yin", "<module name='torn'>");
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_EQ(Load("crate"), ZR_ERR_INVALID) << "a leaf without a type";
    EXPECT_EQ(Load("other"), ZR_ERR_INVALID) << "another module's name in it";
    EXPECT_EQ(Load("torn"), ZR_ERR_INVALID) << "no XML";
    EXPECT_THAT(Loaded(), ElementsAre("box"));
}

TEST_F(Loading, KeepsDescriptionsAndUnitsOnlyWhereTheContextIsToKeepThem)
{
    Write("box", R"(
        <leaf name='size'>
          <type name='uint8'/>
          <units name='litres'/>
          <description><text>How much goes in.</text></description>
        </leaf>)");
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_EQ(ZR_NODE_GetDescription(Node("/box:size")), nullptr);
    EXPECT_EQ(ZR_NODE_GetUnitsValueStr(Node("/box:size")), nullptr);
    ZR_CTX_Delete(ctx_);

    Start(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS);
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_STREQ(ZR_NODE_GetDescription(Node("/box:size")), "How much goes in.");
    EXPECT_STREQ(ZR_NODE_GetUnitsValueStr(Node("/box:size")), "litres");
}

class LoadErrors : public Application {};

TEST_F(LoadErrors, SayWhichModuleFailedInWhichFileWhenAndWhy)
{
    Write("crate", "<leaf name='size'><type name='uint8'/><mandatory value='maybe'/></leaf>");
    Start();
    EXPECT_EQ(Load("crate"), ZR_ERR_INVALID);
    Texts seen;
    auto note = [](const char *module, const char *file, uint32_t kind, const char *message,
                   uint32_t time, void *out) {
        EXPECT_GT(time, 1700000000u) << "in seconds since 1970";
        static_cast<Texts *>(out)->push_back(
            std::string(kind == ZR_LOAD_ERROR ? "error" : "warning") + " of " + module + " in " +
            OrDash(file) + ": " + message);
        return 0u;
    };
    EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx_, note, &seen), ZR_OK);
    EXPECT_THAT(seen, ElementsAre("error of crate in crate.yin: Failed to parse value \"maybe\" of "
                                  "statement \"mandatory\".",
                                  "error of crate in crate.yin: Failed to parse \"leaf\" statement "
                                  "\"size\"."));
}

TEST_F(LoadErrors, AreForgottenWhenTheModuleIsLoadedAfresh)
{
    Write("crate", "<leaf name='size'/>");
    Start();
    EXPECT_EQ(Load("crate"), ZR_ERR_INVALID);
    EXPECT_THAT(Errors(), testing::SizeIs(2)) << "of each module the first two are kept";
    Write("crate", "<leaf name='size'><type name='uint8'/></leaf>");
    EXPECT_EQ(Load("crate"), ZR_OK);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(LoadErrors, TellOfAnAugmentThatFindsNoTargetInAModuleThatIsLoaded)
{
    Write("box", "<container name='box'/>");
    Write("wheels", R"(
        <import module='box'><prefix value='b'/></import>
        <augment target-node='/b:crate'><leaf name='wheels'><type name='uint8'/></leaf></augment>)");
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_EQ(Load("wheels"), ZR_OK) << "the module is loaded all the same";
    EXPECT_THAT(Errors(), ElementsAre("wheels: Failed to couple augment statements."));
}

} // namespace
