// SPDX-License-Identifier: Apache-2.0
// A pattern's syntax tree in RE2's words.
#pragma once

#include <string>

#include "patterns/expression.h"

namespace zr::patterns {

// A regular expression of RE2 that matches, as a whole, what the tree does.
std::string Translate(const Node &expression);

// The code points of a class, by RE2's tables.
CodeSet SetOf(const CharClass &chars);

} // namespace zr::patterns
