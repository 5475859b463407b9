// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

std::string ReadFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

std::string Folder::AddModule(const std::string &fileName, const std::string &name,
                              const std::string &body) const
{
    return Add(fileName, "<module name='" + name +
                             "' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:p='urn:" + name +
                             "'>\n<namespace uri='urn:" + name + "'/><prefix value='p'/>\n" + body +
                             "\n</module>\n");
}

ToolRun RunTool(const std::string &arguments, const std::string &input)
{
    Folder folder;
    if (folder.path().empty())
        return {-1, "", "no temporary directory"};
    std::string out = folder.path() + "/out", err = folder.path() + "/err";
    std::string in = folder.Add("in", input);
    std::string command = "<" + in + " >" + out + " 2>" + err + " " ZR_TOOL " " + arguments;
    int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(out), ReadFile(err)};
}

ToolRun RunToolOnTerminal(const std::string &arguments)
{
    std::string command = "exec " ZR_TOOL " " + arguments;
    int terminal = -1;
    pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    std::string text;
    char buffer[4096];
    // The reading end of a terminal that is closed gives an error, not an end.
    for (ssize_t length; (length = read(terminal, buffer, sizeof(buffer))) > 0;)
        text.append(buffer, static_cast<size_t>(length));
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text, text};
}
