// SPDX-License-Identifier: Apache-2.0
// Patterns: the regular expressions of XML Schema (RFC 7950, section 9.4.5).
#pragma once

#include <cstdint>
#include <memory_resource>
#include <string_view>

namespace zr::yang {

// Returns null, or what is wrong with a pattern. The text is UTF-8.
const char *FindPatternFault(std::string_view pattern);

// Open: libxml2, whose matcher this is, has not enough memory, gives up, or is not asked, because
// the pattern or the text is very long.
enum class Match : uint8_t { Yes, No, Open };

// Whether a sound pattern matches the whole of a text.
Match MatchPattern(std::string_view pattern, std::string_view text,
                   std::pmr::memory_resource *memory);

} // namespace zr::yang
