// SPDX-License-Identifier: Apache-2.0
// A look at the text of a YIN file that makes it needless to parse most of it: a folder of many
// modules is put in order by what stands at their beginnings.
#pragma once

#include <cstddef>
#include <string_view>

namespace tool {

inline constexpr std::string_view kYinNamespace = "urn:ietf:params:xml:ns:yang:yin:1";

// Whether a word is a statement of RFC 7950, section 7, or one of the elements "text" and "value"
// that hold an argument (section 13.1).
bool IsKeyword(std::string_view word);

struct YinLook {
    // No statement is passed over, if the text is well-formed.
    bool isPlain = false;
    std::string_view root; // "module" or "submodule"
    // Where the first statement stands that is none of the header, or the end tag of the root.
    // Nothing behind it is imported, included or a revision.
    size_t headerEnd = 0;
};

// Looks at a text whose elements are YIN because its root says so, a module or submodule. Of all
// others `isPlain` is false: they are to be parsed.
YinLook LookAtYin(std::string_view text);

} // namespace tool
