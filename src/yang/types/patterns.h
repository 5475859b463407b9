// Patterns: the regular expressions of XML Schema (RFC 7950, section 9.4.5).
#pragma once

#include <string_view>

namespace zr::yang {

// Returns null, or what is wrong with a pattern. The text is UTF-8.
const char *FindPatternFault(std::string_view pattern);

} // namespace zr::yang
