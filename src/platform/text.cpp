#include "platform/text.h"

#include <locale.h>

#include <cstdlib>
#include <cstring>
#include <zrschema/types.h>

namespace {

bool IsBlank(char ch)
{
    return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n';
}

const char *SkipBlanks(const char *text)
{
    while (IsBlank(*text))
        ++text;
    return text;
}

const char *SkipDigits(const char *text)
{
    while (*text >= '0' && *text <= '9')
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
