// SPDX-License-Identifier: Apache-2.0
// Modules as files of a folder that is there as long as the object.
#pragma once

#include <string>

namespace bench {

class ModuleFolder {
public:
    ModuleFolder();
    ~ModuleFolder();
    ModuleFolder(const ModuleFolder &) = delete;
    ModuleFolder &operator=(const ModuleFolder &) = delete;

    void Add(const std::string &module, const std::string &text) const;
    const std::string &path() const { return path_; }

private:
    std::string path_;
};

} // namespace bench
