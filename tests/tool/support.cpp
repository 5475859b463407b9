#include "support.h"

#include <sys/wait.h>

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
