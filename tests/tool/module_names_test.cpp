// SPDX-License-Identifier: Apache-2.0
// Modules that are named in other ways than by their names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "support.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kLeafOne = "<leaf name='one'><type name='string'/></leaf>";
const std::string kLeafTwo = "<leaf name='two'><type name='string'/></leaf>";

} // namespace

TEST(ModuleNames, AFileOfASearchDirectoryStandsForItsModule)
{
    for (const char *file : {"example-router.yin", ZR_EXAMPLE_MODULES "/example-router.yin"}) {
        ToolRun run = RunTool("tree " + kExampleModules + " " + file);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_THAT(run.out, StartsWith("module: example-router\n"));
    }
    EXPECT_EQ(RunTool("check " + kExampleModules + " example-types.yin").out,
              "example-types: loaded 2026-11-01\n"
              "1 modules: 1 loaded, 0 failed, 0 errors, 0 warnings\n");
}

TEST(ModuleNames, AFileElsewhereIsLoadedWithWhatItImportsFromTheSearchDirectories)
{
    Folder folder, elsewhere;
    folder.AddModule("base.yin", "base", "<typedef name='t'><type name='int8'/></typedef>");
    std::string file = elsewhere.AddModule("any-name.yin", "top",
                                           "<import module='base'><prefix value='b'/></import>"
                                           "<leaf name='one'><type name='b:t'/></leaf>");
    ToolRun run = RunTool("tree -p " + folder.path() + " " + file);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "module: top\n+--rw one?   base:t\n");
    run = RunTool("value -p " + folder.path() + " -m " + file + " /top:one 5");
    EXPECT_EQ(run.out, "5: accepted as base:t\n") << run.err;
    run = RunTool("check --imports -p " + folder.path() + " " + file);
    EXPECT_EQ(run.status, 0) << run.out;
}

TEST(ModuleNames, ARevisionChoosesTheFileThatHasIt)
{
    Folder folder;
    folder.AddModule("m.yin", "m", "<revision date='2022-02-02'/>" + kLeafTwo);
    folder.AddModule("m@2021-01-01.yin", "m", "<revision date='2021-01-01'/>" + kLeafOne);
    EXPECT_EQ(RunTool("tree m -p " + folder.path()).out, "module: m\n+--rw two?   string\n");
    EXPECT_EQ(RunTool("tree m@2022-02-02 -p " + folder.path()).out,
              "module: m\n+--rw two?   string\n");
    EXPECT_EQ(RunTool("tree m@2021-01-01 -p " + folder.path()).out,
              "module: m\n+--rw one?   string\n");
    EXPECT_EQ(RunTool("tree m@2021-01-01.yin -p " + folder.path()).out,
              "module: m\n+--rw one?   string\n");
    ToolRun run = RunTool("tree m@2020-01-01 -p " + folder.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("cannot load module m@2020-01-01: the directories have no such "
                                   "revision of m, but 20"));
}

TEST(ModuleNames, AChosenRevisionIsNotReplacedByAnImport)
{
    Folder folder;
    folder.AddModule("a.yin", "a", "<import module='m'><prefix value='m'/></import>");
    folder.AddModule("m.yin", "m", "<revision date='2022-02-02'/>" + kLeafTwo);
    folder.AddModule("m@2021-01-01.yin", "m", "<revision date='2021-01-01'/>" + kLeafOne);
    for (const char *imports : {"", "--imports "})
        EXPECT_THAT(
            RunTool("check " + std::string(imports) + "a m@2021-01-01 -p " + folder.path()).out,
            HasSubstr("m: loaded 2021-01-01\n"));
}

TEST(ModuleNames, AFileThatIsTooLargeIsNotRead)
{
    Folder folder;
    std::string file = folder.Add("huge.yin", "<module/>");
    std::filesystem::resize_file(file, uintmax_t{5} << 30); // it takes no room
    ToolRun run = RunTool("tree " + kExampleModules + " " + file);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              "zrschema: cannot load module " + file + ": the text is larger than 2 GiB\n");
}

TEST(ModuleNames, WhatCannotBeLoadedIsExplained)
{
    Folder folder;
    std::string broken = folder.Add("broken.yin", "<module>\n</modul>");
    std::string other = folder.Add("other.yin", "<rpc/>");
    std::string part = folder.Add("part.yin", "<submodule/>");
    const std::pair<std::string, std::string> words[] = {
        {part, "the file holds a submodule"},
        {other, "the file holds no module, but \"rpc\""},
        {broken, "line 2: Opening and ending tag mismatch"},
        {"/nonexistent/example-types.yin",
         "No such file or directory; did you mean example-types?"},
        {"example-typse.yin", "No such file or directory; did you mean example-types?"},
        {folder.path() + "/", "not a regular file"},
    };
    for (const auto &[word, why] : words) {
        ToolRun run = RunTool("tree " + kExampleModules + " " + word);
        EXPECT_EQ(run.status, 1) << word;
        EXPECT_THAT(run.err, HasSubstr("cannot load module " + word + ": ")) << word;
        EXPECT_THAT(run.err, HasSubstr(why)) << word;
    }
    std::filesystem::copy_file(ZR_EXAMPLE_MODULES "/example-services@@dns.yin",
                               folder.path() + "/example-services@@dns.yin");
    ToolRun run =
        RunTool("tree " + kExampleModules + " " + folder.path() + "/example-services@@dns.yin");
    EXPECT_THAT(run.err, HasSubstr("the file is one part of module example-services"));
}
