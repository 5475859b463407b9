// SPDX-License-Identifier: Apache-2.0
// What the shells ask the program for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "support.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

using Lines = std::vector<std::string>;

// The candidates for the last word of a command line, without what is said of them.
Lines Complete(const std::string &words)
{
    ToolRun run = RunTool("complete -- " + words);
    EXPECT_EQ(run.status, 0) << words;
    EXPECT_EQ(run.err, "") << words;
    Lines lines;
    std::istringstream text(run.out);
    for (std::string line; std::getline(text, line);)
        lines.push_back(line.substr(0, line.find('\t')));
    return lines;
}

} // namespace

TEST(Complete, CommandsStandFirstWithWhatTheyDo)
{
    EXPECT_THAT(Complete("''"),
                ElementsAre("tree", "check", "prepare", "node", "value", "validate", "convert"));
    EXPECT_EQ(RunTool("complete -- tr").out, "tree\tprint modules as text trees (RFC 8340)\n");
    EXPECT_THAT(Complete("--"), ElementsAre("--help", "--version"));
    EXPECT_THAT(Complete("dance -"), IsEmpty());
}

TEST(Complete, OptionsAreThoseOfTheCommand)
{
    EXPECT_THAT(Complete("tree --a"), ElementsAre("--all-features"));
    EXPECT_THAT(Complete("validate --st"),
                ElementsAre("--strict-rpc", "--strict-reply", "--strict-notification"));
    EXPECT_THAT(Complete("tree -- --a"), IsEmpty());
    EXPECT_THAT(Complete("tree -"), Contains("-p"));
}

TEST(Complete, ValuesOfAFixedSetAreListed)
{
    EXPECT_THAT(Complete("convert --to ''"), ElementsAre("xml", "json"));
    EXPECT_THAT(Complete("convert --to=j"), ElementsAre("--to=json"));
    EXPECT_THAT(Complete("convert --defaults report"),
                ElementsAre("report-all", "report-all-tagged"));
}

TEST(Complete, FilesAndDirectoriesAreLeftToTheShell)
{
    EXPECT_THAT(Complete("tree -p ''"), ElementsAre(":directories"));
    EXPECT_THAT(Complete("tree --path=ex"), ElementsAre(":directories"));
    EXPECT_THAT(Complete("validate --config ''"), ElementsAre(":files"));
    EXPECT_THAT(Complete("tree -p . ./m"), ElementsAre(":files"));
}

TEST(Complete, ModulesAreThoseOfTheDirectoriesOfTheLine)
{
    Folder one, two;
    one.AddModule("alpha@@first.yin", "alpha", "");
    one.Add("beta@2020-02-02.yang", "module beta { namespace 'urn:b'; prefix b; }");
    two.AddModule("gamma.yin", "gamma", "");
    two.Add("part.yin", "<submodule name='part'/>");
    std::string both = "-p " + one.path() + " --path=" + two.path() + " ";
    EXPECT_THAT(Complete("check " + both + "''"), ElementsAre("alpha", "beta", "gamma"));
    EXPECT_THAT(Complete("check -p" + two.path() + " ''"), ElementsAre("gamma"));
    EXPECT_THAT(Complete("value " + both + "-m b"), ElementsAre("beta"));
    EXPECT_THAT(Complete("check " + both + "beta@"), ElementsAre("beta@2020-02-02"));
    EXPECT_THAT(Complete("check ''"), IsEmpty());
    EXPECT_THAT(Complete("check -p /nonexistent ''"), IsEmpty());
}

TEST(Complete, ADirectoryMayStandBelowTheHomeDirectory)
{
    Folder home;
    home.AddModule("alpha.yin", "alpha", "");
    std::string before = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
    setenv("HOME", home.path().substr(0, home.path().rfind('/')).c_str(), 1);
    std::string below = "'~" + home.path().substr(home.path().rfind('/')) + "'";
    EXPECT_THAT(Complete("check -p " + below + " ''"), ElementsAre("alpha"));
    setenv("HOME", before.c_str(), 1);
}

TEST(Complete, PathsGoOneStepDownAtATime)
{
    std::string line = "node -m example-router " + kExampleModules + " ";
    EXPECT_THAT(Complete(line + "''"), ElementsAre("/example-router:"));
    EXPECT_THAT(Complete(line + "/example-router:r"), ElementsAre("/example-router:router/"));
    EXPECT_THAT(Complete(line + "/example-router:router/h"),
                ElementsAre("/example-router:router/hostname"));
    EXPECT_THAT(Complete(line + "/example-router:router/nothing/"), IsEmpty());
    EXPECT_THAT(Complete(line + "/nothing:"), IsEmpty());
}

TEST(Complete, AStepIntoAnotherModuleNamesIt)
{
    std::string line = "node " + kExampleModules + " -m example-vendor ";
    EXPECT_THAT(Complete(line + "/example-router:router/interfaces/interface/example-v"),
                ElementsAre("/example-router:router/interfaces/interface/example-vendor:optics/"));
}

TEST(Complete, APathLoadsTheModuleThatItNames)
{
    EXPECT_THAT(Complete("value " + kExampleModules + " /example-ro"),
                ElementsAre("/example-router:", "/example-routing:"));
    EXPECT_THAT(Complete("value " + kExampleModules + " /example-router:router/ho"),
                ElementsAre("/example-router:router/hostname"));
    EXPECT_THAT(Complete("value -m example-router " + kExampleModules +
                         " /example-router:router/hostname ''"),
                IsEmpty());
}

TEST(Complete, FeaturesAndOperationsFollowTheirModule)
{
    std::string line = "validate " + kExampleModules + " ";
    EXPECT_THAT(Complete(line + "--feature example-routing"), ElementsAre("example-routing:"));
    EXPECT_THAT(Complete(line + "-m example-router --feature ''"), ElementsAre("example-router:"));
    EXPECT_THAT(Complete(line + "--feature example-router:"),
                ElementsAre("example-router:*", "example-router:tunnels"));
    EXPECT_THAT(Complete(line + "--strict-reply example-router:"),
                ElementsAre("example-router:ping"));
    EXPECT_THAT(Complete(line + "--strict-reply /example-router:p"),
                ElementsAre("/example-router:ping/"));
}

TEST(Complete, AModuleWithFaultsIsPassedOverInSilence)
{
    Folder folder;
    folder.Add("broken.yang", "module broken {");
    EXPECT_THAT(Complete("node -p " + folder.path() + " /broken:"), IsEmpty());
    EXPECT_THAT(Complete("tree -p " + folder.path() + " --feature broken:"),
                ElementsAre("broken:*"));
}

TEST(Complete, ItsOwnWordsStandBehindTwoDashes)
{
    for (const char *line : {"complete", "complete --", "complete tree", "describe tree"})
        EXPECT_EQ(RunTool(line).status, 2) << line;
    EXPECT_THAT(RunTool("--help").out, Not(testing::HasSubstr("complete")));
}
