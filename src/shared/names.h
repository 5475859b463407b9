// SPDX-License-Identifier: Apache-2.0
// Identifiers (RFC 7950, section 6.2), and names with a prefix.
#pragma once

#include <string_view>

namespace zr {

bool IsIdentifierStart(char c);
bool IsIdentifierChar(char c);
bool IsIdentifier(std::string_view text);
// "prefix:name" in two; the prefix is empty where there is none.
struct QName {
    std::string_view prefix, name;
};
QName SplitName(std::string_view text);

} // namespace zr
