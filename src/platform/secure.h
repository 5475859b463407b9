// Bounds-checked memory and string functions: zero (or the length, for the printing ones) on
// success, negative on failure. A null pointer or a destination that is too small is a failure;
// nothing is ever cut, but by the function that says so. A failed string function leaves an empty
// destination, a failed memory function leaves it alone. Source and destination do not overlap.
#pragma once

#include <cstdarg>
#include <cstddef>

extern "C" {
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
