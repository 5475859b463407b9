// SPDX-License-Identifier: Apache-2.0
// The YANG sources of the search directories: what libzryang makes of them, and what it reports.
#pragma once

#include <zryang/zryang.h>

#include <string>
#include <vector>

#include "run.h"

namespace tool {

class Sources {
public:
    explicit Sources(Run &run);
    ~Sources();
    Sources(const Sources &) = delete;
    Sources &operator=(const Sources &) = delete;

    ZrYang *yang() const { return yang_; }
    // Whether the directory could be listed; why not is said.
    bool AddDirectory(const std::string &directory);
    void AddFile(const std::string &path);
    // Decides expressions as a session has the features: off but for those that are named.
    void DecideFeatures(const std::vector<std::string> &on, bool all);
    // The prepared text of NAME or NAME@REVISION; false when it has errors, which are said.
    bool Prepare(const std::string &module, std::string &text);
    // The names of all modules.
    std::vector<std::string> Names();

private:
    Run &run_;
    ZrYang *yang_;
};

constexpr const char *kSourceExtension = ".yang";

} // namespace tool
