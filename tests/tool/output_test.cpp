// Output that cannot be written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support.h"

namespace {

const std::string kCommands[] = {
    "tree " + kExampleModules + " example-router",
    "tree " + kExampleModules + " --json example-router",
    "check " + kExampleModules + " --all",
    "check " + kExampleModules + " --all --json",
    "node " + kExampleModules + " -m example-router /example-router:router",
    "node " + kExampleModules + " -m example-router --json /example-router:router",
    "value " + kExampleModules + " -m example-router /example-router:router/hostname a",
    "value " + kExampleModules + " -m example-router --json /example-router:router/hostname a",
    "validate --rpc " + kExampleModules +
        " -m example-router " ZR_EXAMPLES_DIR "/requests/ping.xml",
    "validate --rpc --json --print " + kExampleModules +
        " -m example-router " ZR_EXAMPLES_DIR "/requests/ping.xml",
    "--help",
    "tree --help",
    "--version",
    "value --version",
};

void ExpectOneLine(const std::string &command, const std::string &reason)
{
    ToolRun run = RunTool(command);
    EXPECT_EQ(run.status, 1) << command;
    EXPECT_EQ(run.err, "zrschema: cannot write the output: " + reason + "\n") << command;
}

} // namespace

TEST(Output, ThatCannotBeWrittenIsAFailureOfEveryCommand)
{
    for (const std::string &command : kCommands) {
        ASSERT_EQ(RunTool(command).status, 0) << command;
        ExpectOneLine(command + " >/dev/full", "No space left on device");
        ExpectOneLine(command + " >&-", "Bad file descriptor");
    }
}

TEST(Output, ThatFailsHalfwayIsAFailure)
{
    Folder folder;
    std::string body;
    for (int i = 0; i < 20000; ++i)
        body += "<leaf name='leaf-" + std::to_string(i) + "'><type name='string'/></leaf>\n";
    folder.AddModule("m.yin", "m", body);
    ExpectOneLine("tree m -p " + folder.path() + " >/dev/full", "No space left on device");
}
