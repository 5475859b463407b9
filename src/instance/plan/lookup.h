// SPDX-License-Identifier: Apache-2.0
// Steps of expressions that name entries by their keys, in a form that an index answers.
#pragma once

#include <memory_resource>
#include <string>
#include <string_view>

namespace zr::data {

// The function that takes the place of such a step:
// zr-entries(PARENTS, 'm:list', 'm:key', VALUE, 'm:key', VALUE...).
inline constexpr std::string_view kEntriesFunction = "zr-entries";

// Appends an expression in which every name has its prefix, with calls of that function in place of
// the paths "PARENTS/m:list[m:key = VALUE]...": those whose values do not depend on the entry,
// because they are literals, absolute, or begin with current().
void AppendWithLookups(std::string_view expression, std::pmr::memory_resource *memory,
                       std::pmr::string &out);

} // namespace zr::data
