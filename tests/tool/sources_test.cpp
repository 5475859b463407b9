// SPDX-License-Identifier: Apache-2.0
// The commands on folders that hold sources, or sources and prepared modules.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kSources = "-p " ZR_EXAMPLES_DIR "/modules ";
const std::string kRequests = ZR_EXAMPLES_DIR "/requests/";

std::string Source(const std::string &name, const std::string &body)
{
    return "module " + name + " {\n  yang-version 1.1; namespace urn:" + name + "; prefix " + name +
           ";\n" + body + "\n}\n";
}

// "m" is a source and imports "y", which is there prepared alone and imports the source "t".
class Sources : public testing::Test {
protected:
    void SetUp() override
    {
        folder.Add("m.yang", Source("m", "import y { prefix y; }\nleaf a { type y:k; }\n"
                                         "rpc r { input { leaf b { type y:k; } } }\n"
                                         "notification n { leaf c { type y:k; } }"));
        folder.AddModule("y.yin", "y",
                         "<import module='t'><prefix value='t'/></import>"
                         "<typedef name='k'><type name='t:k'/></typedef>");
        folder.Add("t@2020-01-01.yang",
                   Source("t", "revision 2020-01-01;\n"
                               "typedef k { type int8; } leaf old { type k; }"));
        folder.Add("t@2021-01-01.yang",
                   Source("t", "revision 2021-01-01;\n"
                               "typedef k { type int8; } leaf new { type k; }"));
    }
    ToolRun Run(const std::string &command, const std::string &arguments,
                const std::string &input = "")
    {
        return RunTool(command + " -p " + folder.path() + " " + arguments, input);
    }

    Folder folder;
};

void ExpectOneLine(const ToolRun &run, const std::string &what)
{
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(what));
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
}

} // namespace

TEST_F(Sources, ImportPreparedModulesThatImportSources)
{
    ToolRun run = Run("tree", "m");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("module: m\n+--rw a?   y:k\n"));
    EXPECT_EQ(run.err, "");
}

TEST_F(Sources, AreDescribed)
{
    ToolRun run = Run("node", "-m m /m:a");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, AllOf(HasSubstr("kind: leaf"), HasSubstr("y:k")));
    EXPECT_EQ(json::parse(Run("node", "-m m --json /m:a").out)["kind"], "leaf");
}

TEST_F(Sources, CheckValues)
{
    EXPECT_EQ(Run("value", "-m m /m:a 127").out, "127: accepted as t:k\n");
    EXPECT_EQ(Run("value", "-m m /m:a 128").status, 1);
}

TEST_F(Sources, ValidateRequestsAndNotifications)
{
    EXPECT_EQ(Run("validate", "--rpc -m m -", "<r xmlns='urn:m'><b>5</b></r>").status, 0);
    ToolRun bad = Run("validate", "--rpc -m m -", "<r xmlns='urn:m'><b>500</b></r>");
    EXPECT_EQ(bad.status, 1);
    EXPECT_THAT(bad.out + bad.err, HasSubstr("/m:r"));
    EXPECT_EQ(Run("validate", "--notification -m m -", "<n xmlns='urn:m'><c>5</c></n>").status, 0);
}

TEST_F(Sources, AreCheckedTogetherWithPreparedModules)
{
    EXPECT_THAT(Run("check", "--all").out, AllOf(HasSubstr("t: loaded 2021-01-01"),
                                                 HasSubstr("3 modules: 3 loaded, 0 failed")));
    EXPECT_THAT(Run("check", "m y").out, HasSubstr("2 modules: 2 loaded"));
}

TEST_F(Sources, AreTakenBeforePreparedModulesOfTheirName)
{
    folder.Add("y.yang", Source("y", "typedef k { type uint8; }"));
    EXPECT_EQ(Run("value", "-m m /m:a 200").status, 0);
}

TEST_F(Sources, OfANamedRevisionAreTakenWhereItIsNamed)
{
    EXPECT_THAT(Run("check", "t@2020-01-01").out, HasSubstr("t: loaded 2020-01-01"));
    EXPECT_EQ(Run("node", "-m t@2020-01-01 /t:old").status, 0);
    EXPECT_EQ(Run("node", "-m t@2020-01-01 /t:new").status, 1);
    EXPECT_EQ(Run("value", "-m t@2021-01-01 /t:new 5").status, 0);
    ToolRun run = Run("tree", "t@2019-01-01");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("error: no source of \"t@2019-01-01\" in the directories"));
}

TEST_F(Sources, ThatAreNotThereAreGuessed)
{
    folder.Add("ietf-interfaces.yang", Source("ietf-interfaces", ""));
    EXPECT_THAT(Run("tree", "ietf-interface").err, HasSubstr("did you mean ietf-interfaces?"));
}

TEST_F(Sources, ThatCannotBeReadAreOneLine)
{
    for (const char *command : {"tree", "check --all", "node -m m /m:a"})
        ExpectOneLine(RunTool(std::string(command) + " -p /no/such/folder" +
                              (std::string(command) == "tree" ? " m" : "")),
                      "zrschema: cannot list /no/such/folder: No such file or directory");
    folder.Add("other.yang", Source("m", ""));
    folder.Add("binary.yang", std::string("\x7F"
                                          "ELF\0\1",
                                          6));
    ExpectOneLine(Run("prepare", "--stdout other"),
                  "other.yang:1:1: error: the file of \"other\" holds \"m\"");
    ExpectOneLine(Run("prepare", "--stdout binary"),
                  "binary.yang:1:5: error: the file is not a text");
    ExpectOneLine(Run("prepare", "--stdout y"),
                  "error: \"y\" is there as prepared YIN alone: there is no source");
    EXPECT_EQ(Run("tree", "binary").status, 1);
}

TEST(SampleModules, AreUsedAsTheyArePublished)
{
    EXPECT_EQ(
        RunTool("tree " + kSources + "--all-features example-router example-routing").out,
        RunTool("tree " + kExampleModules + " --all-features example-router example-routing").out);
    EXPECT_THAT(RunTool("check " + kSources + "--all").out,
                HasSubstr("5 modules: 5 loaded, 0 failed, 0 errors, 0 warnings"));
    EXPECT_EQ(RunTool("validate --rpc " + kSources + "-m example-router " + kRequests + "ping.xml")
                  .status,
              0);
    EXPECT_EQ(RunTool("validate --rpc " + kSources + "-m example-router " + kRequests +
                      "ping-too-large.xml")
                  .status,
              1);
}
