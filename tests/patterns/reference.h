// SPDX-License-Identifier: Apache-2.0
// What an expression matches, told by walking over its tree with sets of positions: slow, and plain
// enough to be seen to be right. And texts that an expression matches.
#pragma once

#include <map>
#include <random>
#include <string>

#include "patterns/expression.h"

namespace zrtest {

class Reference {
public:
    static constexpr size_t kMostCharacters = 63;

    explicit Reference(const zr::patterns::Node &root) : root_(root) {}

    // Whether the whole text, of kMostCharacters at most, matches.
    bool Matches(const std::u32string &text) const;

    // A text that matches, or comes close where the expression matches none; of kMostCharacters at
    // most.
    std::u32string Sample(std::mt19937 &random) const;

private:
    const zr::patterns::Node &root_;
};

// Whether a class has a character, by the sets of code points that its parts stand for.
bool Has(const zr::patterns::CharClass &chars, char32_t code);

std::string ToUtf8(const std::u32string &text);

} // namespace zrtest
