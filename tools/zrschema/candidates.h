// SPDX-License-Identifier: Apache-2.0
// What may stand as the value of an option, or as a word, of a command line that is not whole yet.
#pragma once

#include <string>
#include <vector>

#include "command_line.h"

namespace tool {

struct Candidate {
    std::string text;
    std::string help;
};
using Candidates = std::vector<Candidate>;

// What the rest of the command line says of modules.
struct Given {
    Words directories;
    Words modules;
};

// Values that the word may become, and others; ":files" or ":directories" where the shell lists
// them. Throws when a directory cannot be listed.
Candidates ValuesOf(const OptionHelp &option, const Given &given, const std::string &word);

} // namespace tool
