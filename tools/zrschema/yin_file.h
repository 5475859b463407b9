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
    std::set<std::string> features;
    std::vector<Problem> faults;     // why it cannot be read as XML: none or one
    std::vector<Problem> passedOver; // warnings of statements that have no effect
};

YinFile ReadYinFile(const std::string &path);
// The same of a text; `path` is what problems name.
YinFile ReadYinText(const std::string &text, const std::string &path);

} // namespace tool
