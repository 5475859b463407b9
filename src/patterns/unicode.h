// SPDX-License-Identifier: Apache-2.0
// The sets of characters that the escapes of XML Schema's patterns name (its volume of datatypes,
// appendix F): what does not change with Unicode's version. Which code points a category has,
// RE2 knows.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "patterns/code_set.h"

namespace zr::patterns {

// The name of a general category, such as "Lu" or "N", as a text that stays; "" for an unknown one.
std::string_view FindCategory(std::string_view name);

// The ranges of a block, such as "BasicLatin", or none for an unknown one.
std::vector<CodeRange> FindBlock(std::string_view name);

// "\i" and "\c": what an XML name starts with, and what it is made of.
std::span<const CodeRange> NameStartChars();
std::span<const CodeRange> NameChars();

} // namespace zr::patterns
