#include "support.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
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

ToolRun RunTool(const std::string &arguments, const std::string &input)
{
    char directory[] = "/tmp/zrschema-tool-XXXXXX";
    if (mkdtemp(directory) == nullptr)
        return {-1, "", "no temporary directory"};
    std::string out = std::string(directory) + "/out", err = std::string(directory) + "/err";
    std::string in = std::string(directory) + "/in";
    std::ofstream(in, std::ios::binary) << input;
    std::string command = ZR_TOOL " " + arguments + " <" + in + " >" + out + " 2>" + err;
    int status = std::system(command.c_str());
    ToolRun run{WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(out), ReadFile(err)};
    unlink(in.c_str());
    unlink(out.c_str());
    unlink(err.c_str());
    rmdir(directory);
    return run;
}
