// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

// One clear line on standard error, nothing on standard output, status 2.
void ExpectUsageError(const std::string &arguments)
{
    ToolRun run = RunTool(arguments);
    EXPECT_EQ(run.status, 2) << arguments;
    EXPECT_EQ(run.out, "") << arguments;
    EXPECT_THAT(run.err, StartsWith("zrschema: ")) << arguments;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << arguments << "\n" << run.err;
}

} // namespace

TEST(Usage, HelpAndVersionAreEverywhere)
{
    for (const char *command :
         {"", "tree ", "check ", "node ", "value ", "validate ", "convert "}) {
        ToolRun help = RunTool(std::string(command) + "--help");
        EXPECT_EQ(help.status, 0) << command;
        EXPECT_THAT(help.out, HasSubstr("--help"));
        ToolRun version = RunTool(std::string(command) + "--version");
        EXPECT_EQ(version.status, 0) << command;
        EXPECT_THAT(version.out, StartsWith("zrschema "));
    }
}

TEST(Usage, MistakesAreOneClearLine)
{
    ExpectUsageError("");
    ExpectUsageError("dance");
    ExpectUsageError("\"$(printf 'two\\nlines')\"");
    ExpectUsageError("tree");
    ExpectUsageError("tree " + kExampleModules);
    ExpectUsageError("tree example-router");
    ExpectUsageError("tree " + kExampleModules + " --dance example-router");
    ExpectUsageError("tree " + kExampleModules + " --feature tunnels example-router");
    ExpectUsageError("check " + kExampleModules);
    ExpectUsageError("check " + kExampleModules + " --all example-router");
    ExpectUsageError("node " + kExampleModules + " /example-router:router");
    ExpectUsageError("node " + kExampleModules + " -m example-router");
    ExpectUsageError("value " + kExampleModules + " -m example-router /example-router:router");
    ExpectUsageError("validate --rpc " + kExampleModules + " -m example-router");
    ExpectUsageError("convert " + kExampleModules + " -m example-router -");
    ExpectUsageError("convert --to yaml " + kExampleModules + " -m example-router -");
    ExpectUsageError("convert --to xml --defaults all " + kExampleModules + " -m example-router -");
    ExpectUsageError("convert --to xml " + kExampleModules + " -m example-router /nowhere.xml");
}

TEST(Usage, HelpSaysWhatIsEasilyMissed)
{
    for (const char *command : {"", "tree ", "node ", "validate "})
        EXPECT_THAT(RunTool(std::string(command) + "--help").out, HasSubstr("Features start off"))
            << command;
    for (const char *command : {"", "validate "}) {
        std::string help = RunTool(std::string(command) + "--help").out;
        EXPECT_THAT(help, HasSubstr("standard input"));
        EXPECT_THAT(help, HasSubstr("<rpc>"));
    }
}

TEST(Usage, CloseNamesOfCommandsAndOptionsAreShown)
{
    const std::pair<std::string, const char *> lines[] = {
        {"chek", "no such command: chek; did you mean check?"},
        {"validat --rpc", "no such command: validat; did you mean validate?"},
        {"dance", "no such command: dance (see"},
        {"tree " + kExampleModules + " --featur x example-types",
         "no such option: --featur; did you mean --feature?"},
        {"tree --pth . example-types", "no such option: --pth; did you mean --path?"},
        {"tree --all-feature=1 -p . m", "no such option: --all-feature=1; did you mean "
                                        "--all-features, --feature?"},
        {"value " + kExampleModules + " -m example-router /a -x",
         "no such option: -x; a value that begins with - stands behind --"},
    };
    for (const auto &[line, message] : lines) {
        ExpectUsageError(line);
        EXPECT_THAT(RunTool(line).err, HasSubstr(message));
    }
}

TEST(Usage, MistakesAreInTheDocumentWithJson)
{
    const std::pair<std::string, json> lines[] = {
        {"tree --json", {{"trees", json::array()}}},
        {"check --json", {{"modules", json::array()}, {"loaded", 0}, {"failed", 0}}},
        {"node --json --dance", json::object()},
        {"validate --json -p . --rpc -m x",
         {{"valid", nullptr},
          {"error", nullptr},
          {"defaults", json::array()},
          {"document", nullptr}}},
        {"dance --json", json::object()},
    };
    for (auto [line, members] : lines) {
        ToolRun run = RunTool(line);
        EXPECT_EQ(run.status, 2) << line;
        json document = json::parse(run.out, nullptr, false);
        ASSERT_EQ(document["errors"].size(), 1u) << line;
        std::string message = document["errors"][0]["message"];
        EXPECT_EQ(run.err, "zrschema: " + message + "\n");
        members["errors"] = document["errors"];
        EXPECT_EQ(document, members) << line;
    }
    ToolRun run = RunTool("value --json");
    EXPECT_EQ(run.status, 2);
    json document = json::parse(run.out);
    ASSERT_EQ(document.size(), 1u);
    EXPECT_EQ(document[0]["status"], nullptr);
    EXPECT_EQ(document[0]["errors"].size(), 1u);
}
