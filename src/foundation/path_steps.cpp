#include <array>

#include "foundation/text.h"
#include "platform/secure.h"

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

bool IsBlank(char ch)
{
    return ch == ' ' || ch == '\t' || ch == '\n';
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
        IsIdentifierChar(*text) && *text != '-' && *text != '.' && !(*text >= '0' && *text <= '9');
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
    while (str != nullptr && IsBlank(*str))
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
