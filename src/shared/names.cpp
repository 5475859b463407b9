// SPDX-License-Identifier: Apache-2.0
#include "shared/names.h"

#include <algorithm>

namespace zr {

bool IsIdentifierStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsIdentifierChar(char c)
{
    return IsIdentifierStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool IsIdentifier(std::string_view text)
{
    return !text.empty() && IsIdentifierStart(text.front()) &&
           std::all_of(text.begin(), text.end(), IsIdentifierChar);
}

QName SplitName(std::string_view text)
{
    size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        return {{}, text};
    return {text.substr(0, colon), text.substr(colon + 1)};
}

} // namespace zr
