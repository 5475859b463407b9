#include "platform/strings.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

int Vsnprintf(char *dest, size_t size, size_t count, const char *format, ...)
    __attribute__((format(printf, 4, 5)));
int Vsnprintf(char *dest, size_t size, size_t count, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    int result = vsnprintf_s(dest, size, count, format, args);
    va_end(args);
    return result;
}

int Truncated(char *dest, size_t size, const char *format, ...)
    __attribute__((format(printf, 3, 4)));
int Truncated(char *dest, size_t size, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    int result = vsnprintf_truncated_s(dest, size, format, args);
    va_end(args);
    return result;
}

class SecureText : public testing::Test {
protected:
    SecureText() { std::strcpy(buffer_, "before"); }
    char buffer_[8];
};

TEST(SecureMemory, CopiesWhatFits)
{
    char dest[4] = {};
    EXPECT_EQ(memcpy_s(dest, 4, "abcd", 4), 0);
    EXPECT_EQ(std::memcmp(dest, "abcd", 4), 0);
}

TEST(SecureMemory, RefusesACopyThatDoesNotFitAndLeavesTheDestination)
{
    char dest[4] = {'x', 'x', 'x', 'x'};
    EXPECT_LT(memcpy_s(dest, 3, "abcd", 4), 0);
    EXPECT_EQ(std::memcmp(dest, "xxxx", 4), 0);
}

TEST(SecureMemory, RefusesNullPointers)
{
    char dest[4];
    EXPECT_LT(memcpy_s(nullptr, 4, "a", 1), 0);
    EXPECT_LT(memcpy_s(dest, 4, nullptr, 1), 0);
    EXPECT_LT(memset_s(nullptr, 4, 0, 1), 0);
}

TEST(SecureMemory, FillsWhatFitsAndRefusesMore)
{
    char dest[3] = {'x', 'x', 'x'};
    EXPECT_EQ(memset_s(dest, 3, 'y', 2), 0);
    EXPECT_EQ(std::memcmp(dest, "yyx", 3), 0);
    EXPECT_LT(memset_s(dest, 3, 'z', 4), 0);
    EXPECT_EQ(std::memcmp(dest, "yyx", 3), 0);
}

TEST_F(SecureText, StrcpyCopiesATextThatJustFits)
{
    EXPECT_EQ(strcpy_s(buffer_, 8, "1234567"), 0);
    EXPECT_STREQ(buffer_, "1234567");
}

TEST_F(SecureText, StrcpyEmptiesTheDestinationWhenTheTextDoesNotFit)
{
    EXPECT_LT(strcpy_s(buffer_, 8, "12345678"), 0);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(SecureText, StrcpyRefusesNullAndSizeZero)
{
    EXPECT_LT(strcpy_s(nullptr, 8, "a"), 0);
    EXPECT_LT(strcpy_s(buffer_, 0, "a"), 0);
    EXPECT_STREQ(buffer_, "before");
    EXPECT_LT(strcpy_s(buffer_, 8, nullptr), 0);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(SecureText, StrncpyCopiesAtMostCountCharactersAndEndsThem)
{
    EXPECT_EQ(strncpy_s(buffer_, 8, "interface", 5), 0);
    EXPECT_STREQ(buffer_, "inter");
    EXPECT_EQ(strncpy_s(buffer_, 8, "ab", 5), 0);
    EXPECT_STREQ(buffer_, "ab");
    EXPECT_EQ(strncpy_s(buffer_, 8, "ab", 0), 0);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(SecureText, StrncpyReadsNoFurtherThanCount)
{
    const char unterminated[2] = {'a', 'b'};
    EXPECT_EQ(strncpy_s(buffer_, 8, unterminated, 2), 0);
    EXPECT_STREQ(buffer_, "ab");
}

TEST_F(SecureText, StrncpyRefusesWhatDoesNotFitAndNeverCuts)
{
    EXPECT_LT(strncpy_s(buffer_, 3, "abc", 3), 0);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(SecureText, StrcatAppendsWhatFits)
{
    EXPECT_EQ(strcat_s(buffer_, 8, "7"), 0);
    EXPECT_STREQ(buffer_, "before7");
    EXPECT_LT(strcat_s(buffer_, 8, "8"), 0);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(SecureText, StrcatRefusesNullAndADestinationWithoutAnEnd)
{
    EXPECT_LT(strcat_s(nullptr, 8, "a"), 0);
    EXPECT_LT(strcat_s(buffer_, 8, nullptr), 0);
    char unterminated[2] = {'a', 'b'};
    EXPECT_LT(strcat_s(unterminated, 2, ""), 0);
    EXPECT_EQ(unterminated[0], '\0');
}

TEST_F(SecureText, SprintfGivesTheLength)
{
    EXPECT_EQ(sprintf_s(buffer_, 8, "%s-%d", "ab", 42), 5);
    EXPECT_STREQ(buffer_, "ab-42");
}

TEST_F(SecureText, SprintfRefusesATextThatDoesNotFit)
{
    EXPECT_EQ(sprintf_s(buffer_, 8, "%s", "1234567"), 7);
    EXPECT_LT(sprintf_s(buffer_, 8, "%s", "12345678"), 0);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(SecureText, SnprintfRefusesATextLongerThanItsCount)
{
    EXPECT_EQ(snprintf_s(buffer_, 8, 3, "%s", "abc"), 3);
    EXPECT_STREQ(buffer_, "abc");
    EXPECT_LT(snprintf_s(buffer_, 8, 3, "%s", "abcd"), 0);
    EXPECT_STREQ(buffer_, "");
    EXPECT_LT(snprintf_s(buffer_, 3, 7, "%s", "abc"), 0);
}

TEST_F(SecureText, VsnprintfIsTheSameWithAnArgumentList)
{
    EXPECT_EQ(Vsnprintf(buffer_, 8, 7, "%d", 1234567), 7);
    EXPECT_STREQ(buffer_, "1234567");
    EXPECT_LT(Vsnprintf(buffer_, 8, 6, "%d", 1234567), 0);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(SecureText, TruncatedCutsALongerText)
{
    EXPECT_EQ(Truncated(buffer_, 8, "%s", "short"), 5);
    EXPECT_STREQ(buffer_, "short");
    EXPECT_EQ(Truncated(buffer_, 8, "%s", "much too long"), 7);
    EXPECT_STREQ(buffer_, "much to");
}

TEST_F(SecureText, PrintingRefusesNullAndSizeZero)
{
    EXPECT_LT(sprintf_s(nullptr, 8, "a"), 0);
    EXPECT_LT(sprintf_s(buffer_, 0, "a"), 0);
    EXPECT_LT(Truncated(nullptr, 8, "a"), 0);
    EXPECT_LT(Truncated(buffer_, 0, "a"), 0);
    EXPECT_STREQ(buffer_, "before");
}

// A surrogate is no character that could be printed, in any locale.
TEST_F(SecureText, AFormattingErrorIsNegativeAndLeavesNothing)
{
    const wchar_t noCharacter[] = {static_cast<wchar_t>(0xD800), L'\0'};
    EXPECT_LT(Truncated(buffer_, 8, "%ls", noCharacter), 0);
    EXPECT_STREQ(buffer_, "");
    std::strcpy(buffer_, "before");
    EXPECT_LT(Vsnprintf(buffer_, 8, 8, "%ls", noCharacter), 0);
    EXPECT_STREQ(buffer_, "");
}

} // namespace
