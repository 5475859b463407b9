// SPDX-License-Identifier: Apache-2.0
// Runs a fuzz target over files and over the files of folders, in the order of their names. With
// --goals, they are all of the target's saved inputs, which together meet its goals.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "support.h"

namespace {

std::vector<std::string> FilesOf(const std::filesystem::path &path)
{
    if (!std::filesystem::is_directory(path))
        return {path.string()};
    std::vector<std::string> files;
    for (const auto &entry : std::filesystem::directory_iterator(path)) {
        if (entry.is_regular_file())
            files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool RunFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    // The last line before a crash names the file.
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    bool goals = argc > 1 && std::string_view(argv[1]) == "--goals";
    int first = goals ? 2 : 1;
    if (argc <= first) {
        std::fprintf(stderr, "usage: %s [--goals] FILE-OR-FOLDER...\n", argv[0]);
        return 2;
    }
    size_t count = 0;
    for (int i = first; i < argc; ++i) {
        for (const std::string &file : FilesOf(argv[i])) {
            if (!RunFile(file))
                return 1;
            ++count;
        }
    }
    std::printf("%zu inputs\n", count);
    return count != 0 && (!goals || zrfuzz::Goal::AllMet()) ? 0 : 1;
}
