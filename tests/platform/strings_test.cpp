#include "platform/strings.h"
#include "platform/system.h"

#include <gtest/gtest.h>
#include <zrschema/types.h>

#include <clocale>
#include <cmath>
#include <ctime>
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

TEST(SystimeGet, CountsSecondsSince1970)
{
    auto before = static_cast<uint32_t>(std::time(nullptr));
    uint32_t now = PAL_SystimeGet();
    auto after = static_cast<uint32_t>(std::time(nullptr));
    EXPECT_GE(now, before);
    EXPECT_LE(now, after);
}

} // namespace
