#include "foundation/text.h"

#include <cstring>

#include "platform/memory.h"
#include "platform/secure.h"

namespace {

char *CopyOf(const char *str, size_t length)
{
    zr::ScopedBlock<char> copy(static_cast<char *>(zr::AllocZeroed(length + 1)));
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
