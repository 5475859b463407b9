#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support.h"

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
    for (const char *command : {"", "tree ", "check ", "node ", "value ", "validate "}) {
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
    ExpectUsageError("tree");
    ExpectUsageError("tree " + kExampleModules);
    ExpectUsageError("tree example-router");
    ExpectUsageError("tree -p /nonexistent example-router");
    ExpectUsageError("tree " + kExampleModules + " --dance example-router");
    ExpectUsageError("tree " + kExampleModules + " --feature tunnels example-router");
    ExpectUsageError("check " + kExampleModules);
    ExpectUsageError("check " + kExampleModules + " --all example-router");
    ExpectUsageError("node " + kExampleModules + " /example-router:router");
    ExpectUsageError("node " + kExampleModules + " -m example-router");
    ExpectUsageError("value " + kExampleModules + " -m example-router /example-router:router");
    ExpectUsageError("validate --rpc " + kExampleModules + " -m example-router");
}
