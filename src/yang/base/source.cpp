// SPDX-License-Identifier: Apache-2.0
#include "yang/base/source.h"

#include <cstring>

namespace zr::yang {

namespace {

constexpr uint64_t kHighBits = 0x8080808080808080u;

// How a character begins, and what the least and the greatest of its kind are.
struct Form {
    unsigned char mask, lead;
    uint32_t length, least;
};
constexpr Form kForms[] = {
    {0x80, 0x00, 1, 0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

constexpr const char *kNoUtf8 = "the file is not UTF-8";
constexpr const char *kForbidden = "a character that no YANG module may hold";

// The length of the character at the beginning of the text, 0 when it is none; its code goes into
// `code`.
uint32_t ReadCharacter(std::string_view text, uint32_t &code)
{
    auto lead = static_cast<unsigned char>(text.front());
    for (const Form &form : kForms) {
        if ((lead & form.mask) != form.lead)
            continue;
        if (text.size() < form.length)
            return 0;
        code = lead & static_cast<unsigned char>(~form.mask);
        for (uint32_t i = 1; i < form.length; ++i) {
            auto next = static_cast<unsigned char>(text[i]);
            if ((next & 0xC0) != 0x80)
                return 0;
            code = code << 6 | (next & 0x3Fu);
        }
        return code >= form.least ? form.length : 0;
    }
    return 0;
}

// Control characters, surrogates and the non-characters at the end of each plane stay out.
bool IsYangCharacter(uint32_t code)
{
    if (code < 0x20)
        return code == '\t' || code == '\n' || code == '\r';
    if (code >= 0xFDD0 && code <= 0xFDEF)
        return false;
    return code <= 0x10FFFF && (code & 0xFFFE) != 0xFFFE;
}

// Eight bytes at once: whether all are ASCII and none is a control character but those allowed is
// told by the first test alone for the bytes that texts are made of.
bool IsPlain(const char *bytes)
{
    uint64_t word;
    std::memcpy(&word, bytes, sizeof(word));
    constexpr uint64_t kOnes = 0x0101010101010101u;
    // A byte below 0x20 borrows from its high bit.
    return ((word | (word - kOnes * 0x20)) & kHighBits) == 0;
}

} // namespace

TextFault FindTextFault(std::string_view text)
{
    size_t at = 0;
    while (at < text.size()) {
        if (text.size() - at >= sizeof(uint64_t) && IsPlain(text.data() + at)) {
            at += sizeof(uint64_t);
            continue;
        }
        uint32_t code = 0;
        uint32_t length = ReadCharacter(text.substr(at), code);
        if (length == 0 || (code >= 0xD800 && code <= 0xDFFF))
            return {at, kNoUtf8};
        if (!IsYangCharacter(code))
            return {at, code == 0 ? "the file is not a text" : kForbidden};
        at += length;
    }
    return {};
}

uint32_t CountCharacters(std::string_view text)
{
    uint32_t count = 0;
    for (char c : text)
        count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return count;
}

Place PlaceOf(Source &source, size_t offset)
{
    std::string_view before = source.text.substr(0, offset);
    size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    uint32_t line = 1;
    for (char c : before)
        line += c == '\n';
    return {&source, line, CountCharacters(before.substr(lineStart)) + 1};
}

std::string_view LineOf(const Source &source, uint32_t line)
{
    size_t start = 0;
    for (uint32_t i = 1; i < line; ++i) {
        start = source.text.find('\n', start);
        if (start == std::string_view::npos)
            return {};
        ++start;
    }
    std::string_view rest = source.text.substr(start);
    rest = rest.substr(0, rest.find('\n'));
    return rest.ends_with('\r') ? rest.substr(0, rest.size() - 1) : rest;
}

} // namespace zr::yang
