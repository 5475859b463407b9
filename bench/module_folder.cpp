// SPDX-License-Identifier: Apache-2.0
#include "module_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace bench {

ModuleFolder::ModuleFolder() : path_((fs::temp_directory_path() / "zrschema-bench-XXXXXX").string())
{
    if (mkdtemp(path_.data()) == nullptr)
        throw fs::filesystem_error("no temporary folder", path_, {});
}

ModuleFolder::~ModuleFolder()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void ModuleFolder::Add(const std::string &module, const std::string &text) const
{
    std::ofstream(path_ + "/" + module + ".yin", std::ios::binary) << text;
}

} // namespace bench
