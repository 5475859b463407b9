// SPDX-License-Identifier: Apache-2.0
#include "shared/escapes.h"

namespace zr {

std::string_view EscapeInText(char c)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '\r': // else a reader takes it for the end of a line
        return "&#13;";
    default:
        return "";
    }
}

std::string_view EscapeInAttribute(char c)
{
    switch (c) {
    case '"':
        return "&quot;";
    case '\n':
        return "&#10;";
    case '\t':
        return "&#9;";
    default:
        return EscapeInText(c);
    }
}

} // namespace zr
