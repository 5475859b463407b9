// SPDX-License-Identifier: Apache-2.0
#include "platform/strings.h"

#include <gtest/gtest.h>
#include <zrschema/types.h>

#include <clocale>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace {

TEST(StrCmp, ComparesBytesAsUnsigned)
{
    EXPECT_EQ(PAL_StrCmp("abc", "abc"), 0);
    EXPECT_LT(PAL_StrCmp("abc", "abd"), 0);
    EXPECT_GT(PAL_StrCmp("abc", "ab"), 0);
    EXPECT_GT(PAL_StrCmp("\xc3\xa9", "z"), 0);
}

TEST(StrCmp, SortsNullBeforeEveryText)
{
    EXPECT_EQ(PAL_StrCmp(nullptr, nullptr), 0);
    EXPECT_LT(PAL_StrCmp(nullptr, ""), 0);
    EXPECT_GT(PAL_StrCmp("", nullptr), 0);
    EXPECT_LT(PAL_StrNCmp(nullptr, "a", 1), 0);
    EXPECT_GT(PAL_StrNCmp("a", nullptr, 1), 0);
}

TEST(StrNCmp, LooksAtNoMoreThanTheLength)
{
    EXPECT_EQ(PAL_StrNCmp("abcX", "abcY", 3), 0);
    EXPECT_LT(PAL_StrNCmp("abcX", "abcY", 4), 0);
    EXPECT_EQ(PAL_StrNCmp("a", "b", 0), 0);
}

TEST(StrLen, CountsBytes)
{
    EXPECT_EQ(PAL_StrLen(""), 0u);
    EXPECT_EQ(PAL_StrLen("\xc3\xa9t\xc3\xa9"), 5u);
    EXPECT_EQ(PAL_StrLen(nullptr), 0u);
}

TEST(StrChr, FindsTheFirstAndTheLastOccurrence)
{
    const char *text = "a/b/c";
    EXPECT_EQ(PAL_StrChr(text, '/'), text + 1);
    EXPECT_EQ(PAL_StrRChr(text, '/'), text + 3);
    EXPECT_EQ(PAL_StrChr(text, 'x'), nullptr);
    EXPECT_EQ(PAL_StrRChr(text, 'x'), nullptr);
    EXPECT_EQ(PAL_StrChr(text, '\0'), text + 5);
    EXPECT_EQ(PAL_StrChr(nullptr, 'a'), nullptr);
    EXPECT_EQ(PAL_StrRChr(nullptr, 'a'), nullptr);
}

TEST(StrStr, FindsTheFirstOccurrence)
{
    const char *text = "m@@ext@@more";
    EXPECT_EQ(PAL_StrStr(text, "@@"), text + 1);
    EXPECT_EQ(PAL_StrStr(text, "@@@"), nullptr);
    EXPECT_EQ(PAL_StrStr(nullptr, "a"), nullptr);
    EXPECT_EQ(PAL_StrStr(text, nullptr), nullptr);
}

struct NumberRow {
    const char *text;
    double value;
};

TEST(StrToFloat, AcceptsWhatNumberOfXPathAccepts)
{
    const NumberRow rows[] = {
        {"0", 0.0},
        {"1", 1.0},
        {"-1", -1.0},
        {"007", 7.0},
        {"1.5", 1.5},
        {"-1.5", -1.5},
        {"1.", 1.0},
        {".5", 0.5},
        {"-.5", -0.5},
        {" 42", 42.0},
        {"42 ", 42.0},
        {" \t\r\n42\n\r\t ", 42.0},
        {"0.1", 0.1},
        {"18446744073709551615", 18446744073709551615.0},
        {"123456789.123456789", 123456789.123456789},
    };
    for (const NumberRow &row : rows) {
        double value = -99;
        EXPECT_EQ(PAL_StrToFloat(row.text, &value), ZR_OK) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(StrToFloat, RefusesEverythingElseAndLeavesTheValue)
{
    const char *texts[] = {"",     " ",        ".",    "-",   "-.",    "+1",   "1e5",
                           "1E5",  "inf",      "-inf", "nan", "NaN",   "0x10", "1,5",
                           "1.2.", "1 2",      "- 1",  "--1", "1.2.3", "a",    "1a",
                           "a1",   "Infinity", "\v1",  "1\f", "1-",    ". 5",  "5. 5"};
    for (const char *text : texts) {
        double value = -99;
        EXPECT_EQ(PAL_StrToFloat(text, &value), ZR_ERR_INVALID) << text;
        EXPECT_EQ(value, -99) << text;
    }
}

TEST(StrToFloat, RefusesNull)
{
    double value;
    EXPECT_EQ(PAL_StrToFloat(nullptr, &value), ZR_ERR_INVALID);
    EXPECT_EQ(PAL_StrToFloat("1", nullptr), ZR_ERR_INVALID);
}

TEST(StrToFloat, TurnsANumberBeyondTheLargestIntoAnInfinity)
{
    double value = 0;
    std::string large(400, '9');
    EXPECT_EQ(PAL_StrToFloat(large.c_str(), &value), ZR_OK);
    EXPECT_EQ(value, std::numeric_limits<double>::infinity());
    EXPECT_EQ(PAL_StrToFloat(("-" + large + ".0").c_str(), &value), ZR_OK);
    EXPECT_EQ(value, -std::numeric_limits<double>::infinity());
}

TEST(StrToFloat, TurnsANumberBelowTheSmallestIntoZero)
{
    double value = 1;
    std::string small = "0." + std::string(400, '0') + "1";
    EXPECT_EQ(PAL_StrToFloat(small.c_str(), &value), ZR_OK);
    EXPECT_EQ(value, 0.0);
    EXPECT_EQ(PAL_StrToFloat(("-" + small).c_str(), &value), ZR_OK);
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(std::signbit(value));
}

TEST(StrToFloat, DoesNotReadTheLocale)
{
    const char *old = std::setlocale(LC_NUMERIC, nullptr);
    std::string saved = old != nullptr ? old : "C";
    // Where no such locale is installed the rows above already say the same.
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    double value = 0;
    EXPECT_EQ(PAL_StrToFloat("1.5", &value), ZR_OK);
    EXPECT_EQ(value, 1.5);
    EXPECT_EQ(PAL_StrToFloat("1,5", &value), ZR_ERR_INVALID);
    std::setlocale(LC_NUMERIC, saved.c_str());
}

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
