// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/inherited.h"

#include <algorithm>
#include <string>

namespace zr::data {

namespace {

// Rewriting adds steps upwards and nothing else.
bool IsStep(char c)
{
    return c == '.' || c == '/';
}

// The length of the beginning of a text that is another one but for steps; npos when none is.
size_t MatchRewritten(std::string_view text, std::string_view original)
{
    size_t at = 0;
    for (char c : original) {
        if (IsStep(c))
            continue;
        while (at < text.size() && IsStep(text[at]))
            ++at;
        if (at == text.size() || text[at] != c)
            return std::string_view::npos;
        ++at;
    }
    while (at < text.size() && IsStep(text[at]))
        ++at;
    return at;
}

} // namespace

std::pmr::string AtParent(std::string_view given, std::string_view augments,
                          std::pmr::memory_resource *memory)
{
    constexpr std::string_view kOpen = "(", kAnd = ") and (";
    if (MatchRewritten(given, augments) == given.size())
        return std::pmr::string(augments, memory);
    // The node has a condition of its own as well: "(REWRITTEN) and (OWN)".
    size_t length = given.starts_with(kOpen) ? MatchRewritten(given.substr(1), augments)
                                             : std::string_view::npos;
    if (length == std::string_view::npos || !given.substr(1 + length).starts_with(kAnd))
        return std::pmr::string(given, memory);
    std::pmr::string both(kOpen, memory);
    return ((both += augments) += given.substr(1 + length));
}

} // namespace zr::data
