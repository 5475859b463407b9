// SPDX-License-Identifier: Apache-2.0
#include "patterns/utf8.h"

#include <cstdint>
#include <iterator>

namespace zr::patterns {

namespace {

// The forms by their length: the bits that say so in the first byte, and the least code.
struct Form {
    uint8_t mask, mark;
    char32_t least;
};
constexpr Form kForms[] = {
    {0x80, 0x00, 0x0},
    {0xE0, 0xC0, 0x80},
    {0xF0, 0xE0, 0x800},
    {0xF8, 0xF0, 0x10000},
};
constexpr char32_t kLast = 0x10FFFF, kFirstSurrogate = 0xD800, kLastSurrogate = 0xDFFF;
constexpr uint8_t kRestMask = 0xC0, kRestMark = 0x80;
constexpr unsigned kRestBits = 6;

uint8_t Byte(std::string_view text, size_t at)
{
    return static_cast<uint8_t>(text[at]);
}

bool IsXmlCharacter(char32_t code)
{
    constexpr char32_t kNone[] = {0xFFFE, 0xFFFF}; // beside surrogates
    bool isControl = code < ' ' && code != '\t' && code != '\n' && code != '\r';
    return code <= kLast && !isControl && code != kNone[0] && code != kNone[1];
}

} // namespace

char32_t Decode(std::string_view text, size_t &lengthOut)
{
    lengthOut = 1;
    for (const Form &form : kForms) {
        if ((Byte(text, 0) & form.mask) != form.mark) {
            ++lengthOut;
            continue;
        }
        auto code = static_cast<char32_t>(Byte(text, 0) & ~form.mask);
        if (text.size() < lengthOut)
            return kNoCode;
        for (size_t i = 1; i < lengthOut; ++i) {
            if ((Byte(text, i) & kRestMask) != kRestMark)
                return kNoCode;
            code = code << kRestBits | (Byte(text, i) & static_cast<uint8_t>(~kRestMask));
        }
        bool isSurrogate = code >= kFirstSurrogate && code <= kLastSurrogate;
        return code < form.least || code > kLast || isSurrogate ? kNoCode : code;
    }
    return kNoCode;
}

void Append(std::string &text, char32_t code)
{
    size_t rest = 0; // bytes behind the first
    while (rest + 1 < std::size(kForms) && code >= kForms[rest + 1].least)
        ++rest;
    text += static_cast<char>(kForms[rest].mark | code >> (rest * kRestBits));
    while (rest-- > 0)
        text += static_cast<char>(kRestMark | (code >> (rest * kRestBits) & 0x3F));
}

bool IsXmlText(std::string_view text)
{
    // Most texts are of one kind of byte, which a loop without a way out tells soonest.
    bool isPlain = true;
    for (char c : text)
        isPlain &= static_cast<uint8_t>(c) >= ' ' && static_cast<uint8_t>(c) < kForms[1].least;
    if (isPlain)
        return true;
    while (!text.empty()) {
        size_t length = 0;
        if (!IsXmlCharacter(Decode(text, length)))
            return false;
        text.remove_prefix(length);
    }
    return true;
}

} // namespace zr::patterns
