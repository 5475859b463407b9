// SPDX-License-Identifier: Apache-2.0
#include "platform/strings.h"

#include <zrschema/types.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale.h>

namespace {

const char *SkipBlanks(const char *text)
{
    while (zr::IsXmlSpace(*text))
        ++text;
    return text;
}

const char *SkipDigits(const char *text)
{
    while (zr::IsDigit(*text))
        ++text;
    return text;
}

// True for a number in decimal notation without an exponent, between blanks.
bool IsDecimal(const char *text)
{
    const char *start = SkipBlanks(text);
    const char *whole = start + (*start == '-' ? 1 : 0);
    const char *end = SkipDigits(whole);
    auto digits = end - whole;
    if (*end == '.') {
        const char *fraction = end + 1;
        end = SkipDigits(fraction);
        digits += end - fraction;
    }
    return digits != 0 && *SkipBlanks(end) == '\0';
}

} // namespace

int32_t PAL_StrCmp(const char *a, const char *b)
{
    if (a == nullptr || b == nullptr)
        return (a != nullptr ? 1 : 0) - (b != nullptr ? 1 : 0);
    return std::strcmp(a, b);
}

int32_t PAL_StrNCmp(const char *a, const char *b, size_t length)
{
    if (a == nullptr || b == nullptr)
        return (a != nullptr ? 1 : 0) - (b != nullptr ? 1 : 0);
    return std::strncmp(a, b, length);
}

size_t PAL_StrLen(const char *text)
{
    return text != nullptr ? std::strlen(text) : 0;
}

const char *PAL_StrChr(const char *text, char ch)
{
    return text != nullptr ? std::strchr(text, ch) : nullptr;
}

const char *PAL_StrRChr(const char *text, char ch)
{
    return text != nullptr ? std::strrchr(text, ch) : nullptr;
}

const char *PAL_StrStr(const char *text, const char *part)
{
    return text != nullptr && part != nullptr ? std::strstr(text, part) : nullptr;
}

uint32_t PAL_StrToFloat(const char *text, double *valueOut)
{
    if (text == nullptr || valueOut == nullptr || !IsDecimal(text))
        return ZR_ERR_INVALID;
    // The C library always has its "C" locale: nothing is allocated, and the point is a point
    // whatever the application's locale is. std::from_chars() for doubles would need the C++
    // library at run time.
    locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    *valueOut = strtod_l(SkipBlanks(text), nullptr, plain);
    freelocale(plain);
    return ZR_OK;
}

namespace {

constexpr int kFailed = -1;

int FailEmpty(char *dest, size_t destSize)
{
    if (dest != nullptr && destSize != 0)
        *dest = '\0';
    return kFailed;
}

} // namespace

int memcpy_s(void *dest, size_t destSize, const void *src, size_t count)
{
    if (dest == nullptr || src == nullptr || count > destSize)
        return kFailed;
    std::memcpy(dest, src, count);
    return 0;
}

int memset_s(void *dest, size_t destSize, int ch, size_t count)
{
    if (dest == nullptr || count > destSize)
        return kFailed;
    std::memset(dest, ch, count);
    return 0;
}

int strcpy_s(char *dest, size_t destSize, const char *src)
{
    return strncpy_s(dest, destSize, src, SIZE_MAX);
}

int strncpy_s(char *dest, size_t destSize, const char *src, size_t count)
{
    if (dest == nullptr || src == nullptr)
        return FailEmpty(dest, destSize);
    // What does not fit is refused anyway, so no more of the source needs to be looked at.
    size_t length = strnlen(src, count < destSize ? count : destSize);
    if (length >= destSize)
        return FailEmpty(dest, destSize);
    std::memcpy(dest, src, length);
    dest[length] = '\0';
    return 0;
}

int strcat_s(char *dest, size_t destSize, const char *src)
{
    if (dest == nullptr || src == nullptr)
        return FailEmpty(dest, destSize);
    size_t used = strnlen(dest, destSize);
    if (used == destSize || strcpy_s(dest + used, destSize - used, src) != 0)
        return FailEmpty(dest, destSize);
    return 0;
}

int sprintf_s(char *dest, size_t destSize, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    int length = vsnprintf_s(dest, destSize, SIZE_MAX, format, args);
    va_end(args);
    return length;
}

int snprintf_s(char *dest, size_t destSize, size_t count, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    int length = vsnprintf_s(dest, destSize, count, format, args);
    va_end(args);
    return length;
}

int vsnprintf_s(char *dest, size_t destSize, size_t count, const char *format, va_list args)
{
    if (dest == nullptr || destSize == 0 || format == nullptr)
        return FailEmpty(dest, destSize);
    int length = std::vsnprintf(dest, destSize, format, args);
    if (length < 0 || static_cast<size_t>(length) >= destSize ||
        static_cast<size_t>(length) > count)
        return FailEmpty(dest, destSize);
    return length;
}

int vsnprintf_truncated_s(char *dest, size_t destSize, const char *format, va_list args)
{
    if (dest == nullptr || destSize == 0 || format == nullptr)
        return FailEmpty(dest, destSize);
    int length = std::vsnprintf(dest, destSize, format, args);
    if (length < 0)
        return FailEmpty(dest, destSize);
    return static_cast<size_t>(length) < destSize ? length : static_cast<int>(destSize - 1);
}
