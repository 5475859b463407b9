// SPDX-License-Identifier: Apache-2.0
#include "instance/write/output.h"

#include <algorithm>

namespace zr::data {

void Output::BreakLine(uint32_t indent, uint32_t depth)
{
    constexpr std::string_view kBlanks = "                                ";
    if (indent == 0)
        return;
    *this << '\n';
    for (size_t left = size_t{indent} * depth; left != 0;) {
        std::string_view part = kBlanks.substr(0, std::min(left, kBlanks.size()));
        *this << part;
        left -= part.size();
    }
}

} // namespace zr::data
