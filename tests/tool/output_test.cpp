// SPDX-License-Identifier: Apache-2.0
// Output on a terminal, and such as cannot be written.
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

TEST(Terminal, ShowsTheLineOfAFaultWithAMarkUnderThePlace)
{
    Folder folder;
    folder.Add("m.yang", "module m {\n namespace 'urn:m'; prefix m; leaf a { type none; }\n}\n");
    ToolRun run = RunToolOnTerminal("prepare m -p " + folder.path() + " -o " + folder.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, folder.path() + "/m.yang:2:40: error: unknown typedef \"none\"\r\n"
                                       "   namespace 'urn:m'; prefix m; leaf a { type none; }\r\n"
                                       "                                         ^\r\n");
}

TEST(Terminal, ShowsNothingOfTheProgressInTheEnd)
{
    ToolRun plain = RunTool("check " + kExampleModules + " --all");
    ToolRun run = RunToolOnTerminal("check --all " + kExampleModules);
    EXPECT_EQ(run.status, 0);
    // What a line shows when it is erased to be written anew is gone.
    size_t start = 0, erased;
    while ((erased = run.out.find("\r\033[K", start)) != std::string::npos) {
        start = run.out.rfind('\n', erased) + 1;
        run.out.erase(start, erased + 4 - start);
    }
    std::erase(run.out, '\r');
    EXPECT_EQ(run.out, plain.out);
}
