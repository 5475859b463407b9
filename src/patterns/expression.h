// SPDX-License-Identifier: Apache-2.0
// The syntax tree of a pattern (XML Schema's volume of datatypes, appendix F), and its parser.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "patterns/code_set.h"

namespace zr::patterns {

struct Category {
    std::string_view name; // one that FindCategory() gives
    bool negated;
};

// A set of characters as it is written: "." and escapes have the form of a bracketed class.
struct CharClass {
    bool negated = false;
    std::vector<CodeRange> ranges;
    std::vector<Category> categories;
    std::vector<CharClass> subtracted; // one at most
};

struct Node {
    enum class Kind { Class, Sequence, Choice, Repeat };

    Kind kind = Kind::Sequence;
    CharClass chars;            // of a Class
    std::vector<Node> children; // of a Sequence and a Choice any number, of a Repeat one
    uint32_t least = 0;         // of a Repeat
    uint32_t most = 0;          // kNoEnd for none
};

constexpr uint32_t kNoEnd = UINT32_MAX;
constexpr uint32_t kMostRepeats = 1000000; // a larger number in a pattern is too large for any use

// A bound for what calls itself: groups in groups, and classes taken from classes.
constexpr uint32_t kMostGroups = 100;
constexpr uint32_t kMostSubtractions = 60;

enum class Verdict { Sound, Faulty, TooLarge };

// Parses a pattern, which is UTF-8. Faulty is also what only some readers of the rules take for a
// pattern: "-" between other members of a class, an escape of a character that needs none, a block
// that the rules do not list.
Verdict Parse(std::string_view pattern, Node &out);

} // namespace zr::patterns
