// SPDX-License-Identifier: Apache-2.0
#include "foundation/text.h"

#include <array>
#include <charconv>
#include <cstring>

#include "platform/memory.h"
#include "platform/strings.h"

namespace {

char *CopyOf(const char *str, size_t length)
{
    zr::Owned<char> copy(zr::New<char>(length + 1));
    if (!copy || strncpy_s(copy.get(), length + 1, str, length) != 0)
        return nullptr;
    return copy.release();
}

} // namespace

char *ZR_UTL_StrDup(const char *str)
{
    return str != nullptr ? CopyOf(str, std::strlen(str)) : nullptr;
}

char *ZR_UTL_StrDupWithSpecifyLength(const char *str, uint32_t length)
{
    if (str == nullptr || length == 0 || strnlen(str, length) < length)
        return nullptr;
    return CopyOf(str, length);
}

char *ZR_UTL_CreateEmptyString(void)
{
    return CopyOf("", 0);
}

const char *ZR_UTL_Strnchr(const char *str, char ch, uint32_t limit)
{
    if (str == nullptr)
        return nullptr;
    if (*str == ch)
        return str;
    for (; limit != 0 && *str != '\0'; --limit) {
        ++str;
        if (*str == ch && *str != '\0')
            return str;
    }
    return nullptr;
}

uint32_t ZR_UTL_CountCharNumber(const char *str, char ch)
{
    uint32_t count = 0;
    for (; str != nullptr && *str != '\0'; ++str)
        count += *str == ch ? 1 : 0;
    return count;
}

uint32_t ZR_UTL_IsNulStringEqual(const char *a, const char *b)
{
    if (a == nullptr || b == nullptr)
        return a == b ? 1 : 0;
    return std::strcmp(a, b) == 0 ? 1 : 0;
}

namespace {

// White space as the C library's conversions skip it, more than this folder's blanks.
bool IsSpace(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

// Where the sign or the first digit stands.
const char *SkipSpace(const char *str)
{
    str = ZR_UTL_ConsumeAllSpaceChar(str);
    while (IsSpace(*str))
        ++str;
    return str;
}

// Reads a number at `text`; a "+" before the first digit is dropped, since from_chars takes none.
template <typename Integer>
uint32_t ReadDecimal(const char *text, const char **endOut, Integer *valueOut)
{
    if (text[0] == '+' && zr::IsDigit(text[1]))
        ++text;
    Integer value = 0;
    auto result = std::from_chars(text, text + std::strlen(text), value);
    if (result.ec != std::errc())
        return ZR_ERR_INVALID;
    *valueOut = value;
    if (endOut != nullptr)
        *endOut = result.ptr;
    return ZR_OK;
}

} // namespace

uint32_t ZR_UTL_ReadInputStrAsSignedInteger(const char *str, const char **endOut, uint32_t,
                                            int64_t *valueOut)
{
    if (str == nullptr || valueOut == nullptr)
        return ZR_ERR_INVALID;
    return ReadDecimal(SkipSpace(str), endOut, valueOut);
}

uint32_t ZR_UTL_ReadInputStrAsUnsignedInteger(const char *str, const char **endOut, uint32_t,
                                              uint64_t *valueOut)
{
    if (str == nullptr || valueOut == nullptr)
        return ZR_ERR_INVALID;
    return ReadDecimal(SkipSpace(str), endOut, valueOut);
}

namespace {

constexpr std::array<bool, 256> IdentifierChars()
{
    std::array<bool, 256> chars{};
    for (unsigned ch = 0; ch < chars.size(); ++ch) {
        chars[ch] = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') ||
                    (ch >= '0' && ch <= '9') || ch == '_' || ch == '-' || ch == '.';
    }
    return chars;
}

constexpr std::array<bool, 256> kIdentifierChars = IdentifierChars();

bool IsIdentifierChar(char ch)
{
    return kIdentifierChars[static_cast<unsigned char>(ch)];
}

bool EndsStep(char ch)
{
    return ch == '\0' || ch == '/';
}

void Empty(char *out, uint32_t size)
{
    if (out != nullptr && size != 0)
        *out = '\0';
}

} // namespace

bool zr::IsIdentifier(const char *text)
{
    bool startsWell =
        IsIdentifierChar(*text) && *text != '-' && *text != '.' && !zr::IsDigit(*text);
    return startsWell && text[ZR_UTL_ConsumeIdentNameBestEffort(text)] == '\0';
}

uint32_t ZR_UTL_ConsumeIdentNameBestEffort(const char *str)
{
    uint32_t length = 0;
    while (str != nullptr && IsIdentifierChar(str[length]))
        ++length;
    return length;
}

uint32_t ZR_UTL_ConsumeIdentNameFromTail(const char *str, uint32_t length, const char **stopOut)
{
    uint32_t consumed = 0;
    while (str != nullptr && consumed < length && IsIdentifierChar(str[length - 1 - consumed]))
        ++consumed;
    if (stopOut != nullptr)
        *stopOut = str != nullptr ? str + (length - consumed) - 1 : nullptr;
    return consumed;
}

const char *ZR_UTL_ConsumeAllSpaceChar(const char *str)
{
    while (str != nullptr && zr::IsBlank(*str))
        ++str;
    return str;
}

uint32_t ZR_UTL_GetXPathNextNodeName(const char *src, char *nameOut, uint32_t nameSize)
{
    Empty(nameOut, nameSize);
    uint32_t length = ZR_UTL_ConsumeIdentNameBestEffort(src);
    if (length == 0)
        return ZR_ERR_FAILED;
    if (!EndsStep(src[length]))
        return ZR_ERR_INVALID;
    return strncpy_s(nameOut, nameSize, src, length) == 0 ? ZR_OK : ZR_ERR_OVERFLOW;
}

uint32_t ZR_UTL_GetXPathNextPrefixAndNode(const char *src, char *prefixOut, uint32_t prefixSize,
                                          char *nameOut, uint32_t nameSize)
{
    Empty(prefixOut, prefixSize);
    Empty(nameOut, nameSize);
    uint32_t length = ZR_UTL_ConsumeIdentNameBestEffort(src);
    if (length == 0)
        return ZR_ERR_FAILED;
    if (EndsStep(src[length]))
        return strncpy_s(nameOut, nameSize, src, length) == 0 ? ZR_OK : ZR_ERR_INVALID;
    if (src[length] != ':' || strncpy_s(prefixOut, prefixSize, src, length) != 0)
        return ZR_ERR_INVALID;
    uint32_t status = ZR_UTL_GetXPathNextNodeName(src + length + 1, nameOut, nameSize);
    if (status != ZR_OK)
        Empty(prefixOut, prefixSize);
    return status;
}

const char *ZR_UTL_SkipPredicateParis(const char *p)
{
    if (p == nullptr)
        return nullptr;
    while (*p == '[') {
        while (*p != ']') {
            if (*p == '\0')
                return nullptr;
            ++p;
        }
        ++p;
    }
    return EndsStep(*p) ? p : nullptr;
}

const char *ZR_UTL_GetXPathNextPredicatedPrefixNode(const char *src, char *prefixOut,
                                                    uint32_t prefixSize, char *nameOut,
                                                    uint32_t nameSize)
{
    Empty(prefixOut, prefixSize);
    Empty(nameOut, nameSize);
    uint32_t length = ZR_UTL_ConsumeIdentNameBestEffort(src);
    if (length == 0)
        return nullptr;
    if (src[length] == ':') {
        if (strncpy_s(prefixOut, prefixSize, src, length) != 0)
            return nullptr;
        src += length + 1;
        length = ZR_UTL_ConsumeIdentNameBestEffort(src);
        if (length == 0)
            return nullptr;
    }
    const char *rest = src + length;
    if (*rest != '[' && !EndsStep(*rest))
        return nullptr;
    if (strncpy_s(nameOut, nameSize, src, length) != 0) {
        Empty(prefixOut, prefixSize);
        return nullptr;
    }
    return ZR_UTL_SkipPredicateParis(rest);
}
