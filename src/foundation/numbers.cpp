#include <charconv>
#include <cstring>

#include "foundation/text.h"

namespace {

bool IsDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

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
    if (text[0] == '+' && IsDigit(text[1]))
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
