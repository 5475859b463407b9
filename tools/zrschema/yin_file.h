// SPDX-License-Identifier: Apache-2.0
// One YIN file, read without the library: what it names, and what the library will pass over.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "run.h"

namespace tool {

struct YinFile {
    std::string root;     // "module", "submodule", or what else stands there; "" when it is no XML
    std::string name;     // of the module or submodule
    std::string revision; // the first one, "" when there is none
    std::set<std::string> imports;
    std::set<std::string> includes;
    std::vector<Problem> passedOver; // warnings of statements that have no effect
    bool isWhole = false;            // else what follows is not known
    std::set<std::string> features;
    std::vector<Problem> faults; // why it cannot be read as XML: none or one
};

// How much is to be read. Of a header alone is told what stands above `isWhole`.
enum class Extent { Header, Whole };

YinFile ReadYinFile(const std::string &path, Extent extent);
// The same of a text; `path` is what problems name.
YinFile ReadYinText(const std::string &text, const std::string &path, Extent extent);

} // namespace tool
