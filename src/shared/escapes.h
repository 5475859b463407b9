// SPDX-License-Identifier: Apache-2.0
// Characters that stand as references in XML, and texts with what must be escaped replaced.
#pragma once

#include <memory_resource>
#include <string>
#include <string_view>

namespace zr {

// The reference that stands for a character in the content of an element, or in the value of an
// attribute, where a reader would take white space for blanks; "" for one that stands for itself.
std::string_view EscapeInText(char c);
std::string_view EscapeInAttribute(char c);

// Hands a text to put() part by part, with what escape() gives for a character in its place.
template <typename Escape, typename Put>
void PutEscaped(std::string_view text, Escape escape, Put put)
{
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        auto replacement = escape(text[i]);
        if (std::string_view(replacement).empty())
            continue;
        put(text.substr(start, i - start));
        put(std::string_view(replacement));
        start = i + 1;
    }
    put(text.substr(start));
}

template <typename Escape>
void AppendEscaped(std::pmr::string &out, std::string_view text, Escape escape)
{
    PutEscaped(text, escape, [&](std::string_view part) { out += part; });
}

} // namespace zr
