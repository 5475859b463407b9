#include "platform/secure.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

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
