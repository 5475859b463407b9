// SPDX-License-Identifier: Apache-2.0
// Text: comparison, search, conversion, character classes, and bounds-checked copies.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

extern "C" {
// Compares byte by byte as unsigned: negative, 0 or positive. Null sorts before every text.
int32_t PAL_StrCmp(const char *a, const char *b);
// The same over at most `length` bytes.
int32_t PAL_StrNCmp(const char *a, const char *b, size_t length);
// Bytes before the NUL; 0 for null.
size_t PAL_StrLen(const char *text);
// The first and the last occurrence of `ch`, null when there is none. The NUL counts as a
// character of the text.
const char *PAL_StrChr(const char *text, char ch);
const char *PAL_StrRChr(const char *text, char ch);
// The first occurrence of `part`, null when there is none.
const char *PAL_StrStr(const char *text, const char *part);
// Converts what the number() function of XPath 1.0 (section 4.4) accepts: blanks, an optional "-",
// digits with an optional ".", blanks. ZR_OK, or ZR_ERR_INVALID when the text is anything else ("",
// "+1", "1e5", "inf"); the value is then left alone. A number too large for a double becomes an
// infinity. The locale has no say.
uint32_t PAL_StrToFloat(const char *text, double *valueOut);
}

namespace zr {

// Character classes of ASCII, whatever the locale is.

inline bool IsDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

inline bool IsLetter(char ch)
{
    return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z');
}

// White space of XML (section 2.3) and of XPath.
inline bool IsXmlSpace(char ch)
{
    return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n';
}

// What std::string_view does with a check that throws, and would make the library need the C++
// library at run time.

inline bool StartsWith(std::string_view text, std::string_view start)
{
    return text.size() >= start.size() && std::memcmp(text.data(), start.data(), start.size()) == 0;
}

// The first `length` characters, or as many as there are.
inline std::string_view First(std::string_view text, size_t length)
{
    return {text.data(), length < text.size() ? length : text.size()};
}

// The text from `at` on, which lies in it or at its end.
inline std::string_view From(std::string_view text, size_t at)
{
    return {text.data() + at, text.size() - at};
}

} // namespace zr

extern "C" {
// Bounds-checked memory and string functions: zero (or the length, for the printing ones) on
// success, negative on failure. A null pointer or a destination that is too small is a failure;
// nothing is ever cut, but by the function that says so. A failed string function leaves an empty
// destination, a failed memory function leaves it alone. Source and destination do not overlap.
int memcpy_s(void *dest, size_t destSize, const void *src, size_t count);
int memset_s(void *dest, size_t destSize, int ch, size_t count);
int strcpy_s(char *dest, size_t destSize, const char *src);
// Copies the first `count` characters of `src`, or all when it has fewer, and a NUL.
int strncpy_s(char *dest, size_t destSize, const char *src, size_t count);
int strcat_s(char *dest, size_t destSize, const char *src);
int sprintf_s(char *dest, size_t destSize, const char *format, ...)
    __attribute__((format(printf, 3, 4)));
// At most `count` characters; a longer text fails.
int snprintf_s(char *dest, size_t destSize, size_t count, const char *format, ...)
    __attribute__((format(printf, 4, 5)));
int vsnprintf_s(char *dest, size_t destSize, size_t count, const char *format, va_list args)
    __attribute__((format(printf, 4, 0)));
// Cuts a longer text to destSize - 1 characters, which is then the result.
int vsnprintf_truncated_s(char *dest, size_t destSize, const char *format, va_list args)
    __attribute__((format(printf, 3, 0)));
}
