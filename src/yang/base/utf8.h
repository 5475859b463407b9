// UTF-8 (RFC 3629) and the characters that a YANG source may hold (RFC 7950, section 14).
#pragma once

#include <cstdint>
#include <string_view>

namespace zr::yang {

struct TextFault {
    size_t offset = 0;
    const char *what = nullptr; // null: there is none
};

// The first byte that is no UTF-8 or no character of YANG.
TextFault FindTextFault(std::string_view text);

// The characters of a text that is UTF-8.
uint32_t CountCharacters(std::string_view text);

} // namespace zr::yang
