// SPDX-License-Identifier: Apache-2.0
// A directory for a test's files.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace zrtest {

// A fresh directory that is removed with all its files at the end of the scope.
class TempDir {
public:
    TempDir()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "zrschema-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TempDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    const std::string &path() const { return path_; }
    // Writes a file and returns its path.
    std::string Write(const std::string &name, const std::string &content) const
    {
        std::string path = path_ + "/" + name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

private:
    std::string path_;
};

} // namespace zrtest
