// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::string Source(const std::string &name, const std::string &body)
{
    return "module " + name + " {\n  yang-version 1.1; namespace urn:" + name + "; prefix " + name +
           ";\n" + body + "\n}\n";
}

std::string ReadAll(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// A module that uses another one's grouping and type.
class Prepare : public testing::Test {
protected:
    void SetUp() override
    {
        folder.Add("m.yang",
                   Source("m", "import t { prefix t; }\ncontainer c { description \"what\"; "
                               "uses t:g; }"));
        folder.Add("t.yang",
                   Source("t", "typedef k { type int8; }\ngrouping g { leaf a { type k; } }"));
    }
    ToolRun Run(const std::string &arguments)
    {
        return RunTool("prepare -p " + folder.path() + " " + arguments);
    }

    Folder folder, out;
};

} // namespace

TEST_F(Prepare, WritesOneFileForEachModule)
{
    ToolRun run = Run("-o " + out.path() + " --all");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out + run.err, "");
    EXPECT_THAT(ReadAll(out.path() + "/m.yin"), HasSubstr("<type name=\"t:k\"/>"));
    EXPECT_THAT(ReadAll(out.path() + "/t.yin"), HasSubstr("<typedef name=\"k\">"));
}

TEST_F(Prepare, PrintsOneModule)
{
    Run("-o " + out.path() + " m");
    ToolRun run = Run("--stdout m");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, ReadAll(out.path() + "/m.yin"));
    EXPECT_THAT(Run("--stdout --strip m").out, testing::Not(HasSubstr("description")));
}

TEST_F(Prepare, SaysWhatIsWrongAndWritesNothingOfIt)
{
    folder.Add("bad.yang", Source("bad", "  leaf a { type nothing; }"));
    ToolRun run = Run("-o " + out.path() + " --all");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, folder.path() + "/bad.yang:3:12: error: unknown typedef \"nothing\"\n");
    EXPECT_FALSE(std::filesystem::exists(out.path() + "/bad.yin"));
    EXPECT_TRUE(std::filesystem::exists(out.path() + "/m.yin"));
}

TEST_F(Prepare, TellsTheSameAsObjects)
{
    folder.Add("bad.yang", Source("bad", "  leaf a { type nothing; }"));
    ToolRun run = Run("-o " + out.path() + " --json bad m");
    json document = json::parse(run.out);
    EXPECT_EQ(document["modules"][0], (json{{"module", "bad"}, {"file", nullptr}}));
    EXPECT_EQ(document["modules"][1]["file"], out.path() + "/m.yin");
    EXPECT_EQ(document["errors"][0]["line"], 3);
    EXPECT_EQ(document["errors"][0]["column"], 12);
    EXPECT_EQ(document["errors"][0]["message"], "unknown typedef \"nothing\"");
}

TEST_F(Prepare, WritesWhatItReadForMake)
{
    Run("-o " + out.path() + " --dependencies " + out.path() + "/rules m");
    EXPECT_EQ(ReadAll(out.path() + "/rules"), out.path() + "/m.yin: \\\n  " + folder.path() +
                                                  "/m.yang \\\n  " + folder.path() + "/t.yang\n");
}

TEST_F(Prepare, QuotesForMakeWhatMakeWouldTakeApart)
{
    std::string place = out.path() + "/two words#$";
    std::filesystem::create_directory(place);
    Run("-o '" + place + "' --dependencies " + out.path() + "/rules t");
    EXPECT_EQ(ReadAll(out.path() + "/rules"),
              out.path() + "/two\\ words\\#$$/t.yin: \\\n  " + folder.path() + "/t.yang\n");
}

TEST_F(Prepare, DecidesExpressionsByTheFeaturesGiven)
{
    folder.Add(
        "f.yang",
        Source("f", "feature a; feature b;\nleaf l { if-feature \"a or b\"; type string; }"));
    EXPECT_THAT(Run("--stdout f").err,
                HasSubstr("f.yang:4:10: warning: \"a or b\" cannot be expressed"));
    EXPECT_THAT(Run("--stdout --features f:b f").out, HasSubstr("<leaf name=\"l\">"));
    EXPECT_THAT(Run("--stdout --features f: f").out, testing::Not(HasSubstr("leaf")));
}

TEST_F(Prepare, StopsAtALimitOfNodesThatCanBeSet)
{
    ToolRun run = Run("--node-limit 1 --stdout m");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("module \"m\" expands to more nodes than are allowed"));
    EXPECT_EQ(Run("--node-limit 10 --stdout m").status, 0);
    EXPECT_EQ(Run("--node-limit 0 --stdout m").status, 2);
}

TEST_F(Prepare, RefusesWhatItCannotDo)
{
    EXPECT_EQ(RunTool("prepare -p /no/such/folder --stdout m").status, 1);
    EXPECT_EQ(RunTool("prepare -p /no/such/folder --stdout m").err,
              "zrschema: cannot list /no/such/folder: No such file or directory\n");
    EXPECT_EQ(Run("-o /no/such/folder m").err,
              "zrschema: cannot write /no/such/folder/m.yin: No such file or directory\n");
    EXPECT_EQ(Run("--stdout nothing").status, 1);
    for (const char *usage :
         {"m", "--all", "-o . --stdout m", "-o .", "-o . --all m", "--stdout m t",
          "--stdout --features x m", "--stdout --dependencies x m"})
        EXPECT_EQ(Run(usage).status, 2) << usage;
}

TEST_F(Prepare, IsDoneForTheOtherCommandsToo)
{
    std::string place = "-p " + folder.path() + " ";
    EXPECT_EQ(RunTool("tree " + place + "m").out, "module: m\n+--rw c\n   +--rw a?   t:k\n");
    EXPECT_THAT(RunTool("check " + place + "--all").out, HasSubstr("2 modules: 2 loaded"));
    EXPECT_THAT(RunTool("node " + place + "-m m /m:c/a").out, HasSubstr("kind: leaf"));
    EXPECT_EQ(RunTool("value " + place + "-m m /m:c/a 5").status, 0);
    EXPECT_EQ(RunTool("value " + place + "-m m /m:c/a 500").status, 1);
}

TEST_F(Prepare, OtherCommandsSayWhatIsWrongWithASource)
{
    folder.Add("bad.yang", Source("bad", "  leaf a { type nothing; }"));
    ToolRun run = RunTool("tree -p " + folder.path() + " bad");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, folder.path() + "/bad.yang:3:12: error: unknown typedef \"nothing\"\n"
                                       "zrschema: cannot load module bad: its source has errors\n");
}

TEST_F(Prepare, OtherCommandsTakeTheNewestRevisionUnlessOneIsNamed)
{
    folder.Add("r@2020-01-01.yang", Source("r", "revision 2020-01-01; leaf old { type string; }"));
    folder.Add("r@2021-01-01.yang", Source("r", "revision 2021-01-01; leaf new { type string; }"));
    EXPECT_THAT(RunTool("tree -p " + folder.path() + " r").out, HasSubstr("new?"));
    EXPECT_THAT(RunTool("tree -p " + folder.path() + " r@2020-01-01").out, HasSubstr("old?"));
    EXPECT_THAT(RunTool("tree -p " + folder.path() + " r@2020-01-01.yang").out, HasSubstr("old?"));
}

TEST_F(Prepare, ADirectoryMayHoldPreparedModulesBesides)
{
    folder.AddModule("y.yin", "y", "<leaf name=\"a\"><type name=\"string\"/></leaf>");
    EXPECT_THAT(RunTool("tree -p " + folder.path() + " y m").out,
                testing::AllOf(HasSubstr("module: y\n"), HasSubstr("module: m\n")));
}
