// SPDX-License-Identifier: Apache-2.0
// A source: the text of one file, what is known of it before it means anything, and the characters
// that it may hold.
#pragma once

#include <cstdint>
#include <string_view>

namespace zr::yang {

struct Source {
    std::string_view path; // as it was found; what reports call the file; NUL behind it
    std::string_view name; // of the module or submodule, "" before it is known
    std::string_view text;
    bool isPrepared = false; // YIN, which is imported and not judged: reports on it are dropped
    uint32_t order = 0;      // in which sources were read
    uint32_t errors = 0;     // also those that are not kept
    uint32_t reports = 0;    // that are kept
};

// A place in a source. Lines and columns count from 1; columns are characters.
struct Place {
    Source *source = nullptr;
    uint32_t line = 0; // 0: the file as a whole
    uint32_t column = 0;
};

// The place of a byte of the source's text.
Place PlaceOf(Source &source, size_t offset);

// The line of that number, without its end; "" when there is none.
std::string_view LineOf(const Source &source, uint32_t line);

// UTF-8 (RFC 3629) and the characters of YANG (RFC 7950, section 14).
struct TextFault {
    size_t offset = 0;
    const char *what = nullptr; // null: there is none
};

// The first byte that is no UTF-8 or no character of YANG.
TextFault FindTextFault(std::string_view text);

// The characters of a text that is UTF-8.
uint32_t CountCharacters(std::string_view text);

} // namespace zr::yang
