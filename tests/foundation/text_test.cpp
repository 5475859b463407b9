// SPDX-License-Identifier: Apache-2.0
#include "foundation/text.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "platform/memory.h"
#include "support/alloc.h"

namespace {

// Takes a new string, gives it back to the hook and returns its text; "(null)" for null.
std::string Taken(char *str)
{
    zr::Owned<char> block(str);
    return str != nullptr ? str : "(null)";
}

TEST(StrDup, CopiesTheText)
{
    const char *source = "interface";
    char *copy = ZR_UTL_StrDup(source);
    EXPECT_NE(copy, source);
    EXPECT_STREQ(copy, "interface");
    zr::Free(copy);
    EXPECT_EQ(Taken(ZR_UTL_StrDup("")), "");
    EXPECT_EQ(ZR_UTL_StrDup(nullptr), nullptr);
}

TEST(StrDupWithSpecifyLength, CopiesTheFirstCharacters)
{
    EXPECT_EQ(Taken(ZR_UTL_StrDupWithSpecifyLength("interface", 5)), "inter");
    EXPECT_EQ(Taken(ZR_UTL_StrDupWithSpecifyLength("interface", 9)), "interface");
}

TEST(StrDupWithSpecifyLength, IsNullForNullForLengthZeroAndBeyondTheEnd)
{
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength(nullptr, 1), nullptr);
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength("abc", 0), nullptr);
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength("abc", 4), nullptr);
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength("", 1), nullptr);
}

TEST(StringCopies, AreNullWhenMemoryRunsOutAndLeaveNothing)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZR_UTL_StrDup("a"), nullptr);
    guard.FailAt(0);
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength("a", 1), nullptr);
    guard.FailAt(0);
    EXPECT_EQ(ZR_UTL_CreateEmptyString(), nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(CreateEmptyString, IsAnEmptyString)
{
    EXPECT_EQ(Taken(ZR_UTL_CreateEmptyString()), "");
}

TEST(Strnchr, SearchesOnePositionMoreThanTheLimit)
{
    const char *text = "abc";
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'c', 1), nullptr);
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'c', 2), text + 2);
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'b', 0), nullptr);
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'b', 1), text + 1);
}

TEST(Strnchr, AlwaysLooksAtTheFirstPosition)
{
    const char *text = "abc";
    const char *empty = "";
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'a', 0), text);
    EXPECT_EQ(ZR_UTL_Strnchr(empty, '\0', 0), empty);
    EXPECT_EQ(ZR_UTL_Strnchr(empty, 'a', 5), nullptr);
}

TEST(Strnchr, StopsAtTheEndOfTheText)
{
    const char text[] = "ab\0c";
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'c', 10), nullptr);
    EXPECT_EQ(ZR_UTL_Strnchr(text, '\0', 10), nullptr);
    EXPECT_EQ(ZR_UTL_Strnchr(nullptr, 'a', 10), nullptr);
}

TEST(Strnchr, FindsTheFirstOfSeveral)
{
    const char *text = "a/b/c";
    EXPECT_EQ(ZR_UTL_Strnchr(text, '/', 4), text + 1);
}

TEST(CountCharNumber, CountsOccurrences)
{
    EXPECT_EQ(ZR_UTL_CountCharNumber("a|b|c", '|'), 2u);
    EXPECT_EQ(ZR_UTL_CountCharNumber("||", '|'), 2u);
    EXPECT_EQ(ZR_UTL_CountCharNumber("abc", '|'), 0u);
    EXPECT_EQ(ZR_UTL_CountCharNumber("", '|'), 0u);
    EXPECT_EQ(ZR_UTL_CountCharNumber("abc", '\0'), 0u);
    EXPECT_EQ(ZR_UTL_CountCharNumber(nullptr, '|'), 0u);
}

TEST(IsNulStringEqual, TakesNullAsEqualToNullOnly)
{
    EXPECT_EQ(ZR_UTL_IsNulStringEqual(nullptr, nullptr), 1u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual(nullptr, ""), 0u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual("", nullptr), 0u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual("", ""), 1u);
}

TEST(IsNulStringEqual, ComparesByteForByte)
{
    std::string a = "abc";
    EXPECT_EQ(ZR_UTL_IsNulStringEqual(a.c_str(), "abc"), 1u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual("abc", "abC"), 0u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual("abc", "abcd"), 0u);
}

struct SignedRow {
    const char *text;
    uint32_t status;
    int64_t value;
    const char *rest;
};

TEST(ReadSignedInteger, ReadsADecimalNumberAndTellsWhereItEnds)
{
    const SignedRow rows[] = {
        {"0", ZR_OK, 0, ""},
        {"42", ZR_OK, 42, ""},
        {"-42", ZR_OK, -42, ""},
        {"+42", ZR_OK, 42, ""},
        {"007", ZR_OK, 7, ""},
        {"-0", ZR_OK, 0, ""},
        {" \t\n5", ZR_OK, 5, ""},
        {" \r\v\f5", ZR_OK, 5, ""},
        {"5 ", ZR_OK, 5, " "},
        {"12abc", ZR_OK, 12, "abc"},
        {"0x10", ZR_OK, 0, "x10"},
        {"1..2", ZR_OK, 1, "..2"},
        {"9223372036854775807", ZR_OK, INT64_MAX, ""},
        {"-9223372036854775808", ZR_OK, INT64_MIN, ""},
        {"9223372036854775808", ZR_ERR_INVALID, 0, ""},
        {"-9223372036854775809", ZR_ERR_INVALID, 0, ""},
        {"99999999999999999999999999", ZR_ERR_INVALID, 0, ""},
        {"", ZR_ERR_INVALID, 0, ""},
        {" ", ZR_ERR_INVALID, 0, ""},
        {"-", ZR_ERR_INVALID, 0, ""},
        {"+", ZR_ERR_INVALID, 0, ""},
        {"+-5", ZR_ERR_INVALID, 0, ""},
        {"-+5", ZR_ERR_INVALID, 0, ""},
        {"--5", ZR_ERR_INVALID, 0, ""},
        {"- 5", ZR_ERR_INVALID, 0, ""},
        {"abc", ZR_ERR_INVALID, 0, ""},
        {".5", ZR_ERR_INVALID, 0, ""},
    };
    for (const SignedRow &row : rows) {
        int64_t value = -1;
        const char *end = nullptr;
        EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger(row.text, &end, 0, &value), row.status)
            << row.text;
        EXPECT_EQ(value, row.status == ZR_OK ? row.value : -1) << row.text;
        if (row.status == ZR_OK) {
            EXPECT_STREQ(end, row.rest) << row.text;
        } else {
            EXPECT_EQ(end, nullptr) << row.text;
        }
    }
}

struct UnsignedRow {
    const char *text;
    uint32_t status;
    uint64_t value;
    const char *rest;
};

TEST(ReadUnsignedInteger, ReadsADecimalNumberAndTellsWhereItEnds)
{
    const UnsignedRow rows[] = {
        {"0", ZR_OK, 0, ""},
        {"42", ZR_OK, 42, ""},
        {"+42", ZR_OK, 42, ""},
        {" \t\n\r5", ZR_OK, 5, ""},
        {"12abc", ZR_OK, 12, "abc"},
        {"0x10", ZR_OK, 0, "x10"},
        {"18446744073709551615", ZR_OK, UINT64_MAX, ""},
        {"18446744073709551616", ZR_ERR_INVALID, 0, ""},
        {"-1", ZR_ERR_INVALID, 0, ""},
        {" -1", ZR_ERR_INVALID, 0, ""},
        {"\r-1", ZR_ERR_INVALID, 0, ""},
        {"-0", ZR_ERR_INVALID, 0, ""},
        {"+-1", ZR_ERR_INVALID, 0, ""},
        {"", ZR_ERR_INVALID, 0, ""},
        {"x", ZR_ERR_INVALID, 0, ""},
    };
    for (const UnsignedRow &row : rows) {
        uint64_t value = 99;
        const char *end = nullptr;
        EXPECT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger(row.text, &end, 0, &value), row.status)
            << row.text;
        EXPECT_EQ(value, row.status == ZR_OK ? row.value : 99) << row.text;
        if (row.status == ZR_OK) {
            EXPECT_STREQ(end, row.rest) << row.text;
        }
    }
}

TEST(ReadInteger, TheEndIsOptional)
{
    int64_t signedValue = 0;
    uint64_t unsignedValue = 0;
    EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger("-7x", nullptr, 0, &signedValue), ZR_OK);
    EXPECT_EQ(signedValue, -7);
    EXPECT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger("7x", nullptr, 0, &unsignedValue), ZR_OK);
    EXPECT_EQ(unsignedValue, 7u);
}

TEST(ReadInteger, Is22ForNull)
{
    int64_t signedValue;
    uint64_t unsignedValue;
    EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger(nullptr, nullptr, 0, &signedValue),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger("1", nullptr, 0, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger(nullptr, nullptr, 0, &unsignedValue),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger("1", nullptr, 0, nullptr), ZR_ERR_INVALID);
}

TEST(ReadInteger, DoesNotReadTheReservedArgument)
{
    int64_t value = 0;
    EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger("0x10", nullptr, 16, &value), ZR_OK);
    EXPECT_EQ(value, 0);
}

TEST(ReadInteger, LeavesErrnoAlone)
{
    errno = 33;
    int64_t value = 0;
    ZR_UTL_ReadInputStrAsSignedInteger("99999999999999999999", nullptr, 0, &value);
    EXPECT_EQ(errno, 33);
    errno = 0;
}

// The C library's conversions are the witness.
TEST(ReadInteger, AgreesWithTheCLibraryOnRandomTexts)
{
    std::mt19937 random(7950);
    const char alphabet[] = "0123456789999-+ \t\n\r\va.";
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto length = random() % 23; length != 0; --length)
            text += alphabet[random() % (sizeof(alphabet) - 1)];
        const char *str = text.c_str();

        char *expectedEnd = nullptr;
        errno = 0;
        long long expected = std::strtoll(str, &expectedEnd, 10);
        bool fails = errno != 0 || expectedEnd == str;
        int64_t value = 0;
        const char *end = nullptr;
        ASSERT_EQ(ZR_UTL_ReadInputStrAsSignedInteger(str, &end, 0, &value),
                  fails ? ZR_ERR_INVALID : ZR_OK)
            << text;
        if (!fails) {
            ASSERT_EQ(value, expected) << text;
            ASSERT_EQ(end, expectedEnd) << text;
        }

        errno = 0;
        unsigned long long expectedUnsigned = std::strtoull(str, &expectedEnd, 10);
        fails = errno != 0 || expectedEnd == str || str[std::strspn(str, " \t\n\r\v")] == '-';
        uint64_t unsignedValue = 0;
        ASSERT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger(str, &end, 0, &unsignedValue),
                  fails ? ZR_ERR_INVALID : ZR_OK)
            << text;
        if (!fails) {
            ASSERT_EQ(unsignedValue, expectedUnsigned) << text;
            ASSERT_EQ(end, expectedEnd) << text;
        }
    }
    errno = 0;
}

TEST(ConsumeIdentName, CountsLeadingIdentifierCharacters)
{
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("if:name"), 2u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("aZ09_-."), 7u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("9lives"), 6u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("-x"), 2u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort(""), 0u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("/a"), 0u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort(" a"), 0u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort(nullptr), 0u);
}

TEST(ConsumeIdentName, KnowsExactlyTheAsciiLettersDigitsAndThreeSigns)
{
    std::string known = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    for (int ch = 1; ch < 256; ++ch) {
        const char text[] = {static_cast<char>(ch), '\0'};
        bool expected = known.find(text[0]) != std::string::npos;
        EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort(text), expected ? 1u : 0u) << ch;
    }
}

TEST(IsIdentifier, BeginsWithALetterOrUnderscore)
{
    for (const char *good : {"a", "Z", "_", "a1", "_-.", "xml", "if-name.x_9"})
        EXPECT_TRUE(zr::IsIdentifier(good)) << good;
    EXPECT_TRUE(zr::IsIdentifier(std::string(1000, 'a').c_str()));
    for (const char *bad : {"", "1a", "-a", ".a", "a b", "a:b", "a/b", "<x/>", "a\n", "\xC3\xA9"})
        EXPECT_FALSE(zr::IsIdentifier(bad)) << bad;
}

TEST(ConsumeIdentNameFromTail, FindsTheIdentifierThatEndsAtTheLength)
{
    const char *text = "/if:interface='x'";
    const char *stop = nullptr;
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 13, &stop), 9u);
    EXPECT_EQ(stop, text + 3);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 3, &stop), 2u);
    EXPECT_EQ(stop, text);
}

TEST(ConsumeIdentNameFromTail, StopsBeforeTheTextWhenAllOfItIsAnIdentifier)
{
    const char *text = &"/name"[1];
    const char *stop = nullptr;
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 4, &stop), 4u);
    EXPECT_EQ(stop, text - 1);
}

TEST(ConsumeIdentNameFromTail, ConsumesNothingWithoutAnIdentifier)
{
    const char *text = "/a/";
    const char *stop = nullptr;
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 3, &stop), 0u);
    EXPECT_EQ(stop, text + 2);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 0, nullptr), 0u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(nullptr, 3, &stop), 0u);
    EXPECT_EQ(stop, nullptr);
}

TEST(ConsumeAllSpaceChar, PassesSpacesTabsAndLineFeedsOnly)
{
    EXPECT_STREQ(ZR_UTL_ConsumeAllSpaceChar(" \t\n x "), "x ");
    EXPECT_STREQ(ZR_UTL_ConsumeAllSpaceChar("\rx"), "\rx");
    EXPECT_STREQ(ZR_UTL_ConsumeAllSpaceChar("x"), "x");
    EXPECT_STREQ(ZR_UTL_ConsumeAllSpaceChar(""), "");
    EXPECT_EQ(ZR_UTL_ConsumeAllSpaceChar(nullptr), nullptr);
}

class PathStep : public testing::Test {
protected:
    PathStep()
    {
        std::memset(prefix_, 'x', sizeof(prefix_));
        std::memset(name_, 'x', sizeof(name_));
    }
    char prefix_[8];
    char name_[10];
};

struct NameRow {
    const char *source;
    uint32_t status;
    const char *name;
};

TEST_F(PathStep, NextNodeNameReadsOneNameUpToASlashOrTheEnd)
{
    const NameRow rows[] = {
        {"name", ZR_OK, "name"},
        {"name/rest", ZR_OK, "name"},
        {"", ZR_ERR_FAILED, ""},
        {"/name", ZR_ERR_FAILED, ""},
        {"name[1]", ZR_ERR_INVALID, ""},
        {"name:x", ZR_ERR_INVALID, ""},
        {"name x", ZR_ERR_INVALID, ""},
        {"123456789", ZR_OK, "123456789"},
        {"1234567890", ZR_ERR_OVERFLOW, ""},
    };
    for (const NameRow &row : rows) {
        EXPECT_EQ(ZR_UTL_GetXPathNextNodeName(row.source, name_, sizeof(name_)), row.status)
            << row.source;
        EXPECT_STREQ(name_, row.name) << row.source;
    }
    EXPECT_EQ(ZR_UTL_GetXPathNextNodeName(nullptr, name_, sizeof(name_)), ZR_ERR_FAILED);
}

struct PrefixRow {
    const char *source;
    uint32_t status;
    const char *prefix;
    const char *name;
};

TEST_F(PathStep, NextPrefixAndNodeReadsANameWithOrWithoutAPrefix)
{
    const PrefixRow rows[] = {
        {"a:b/c", ZR_OK, "a", "b"},
        {"b", ZR_OK, "", "b"},
        {"b/c", ZR_OK, "", "b"},
        {"a:b", ZR_OK, "a", "b"},
        {"a:b c", ZR_ERR_INVALID, "", ""},
        {"", ZR_ERR_FAILED, "", ""},
        {":b", ZR_ERR_FAILED, "", ""},
        {"/b", ZR_ERR_FAILED, "", ""},
        {"a:", ZR_ERR_FAILED, "", ""},
        {"a:/b", ZR_ERR_FAILED, "", ""},
        {"a:b:c", ZR_ERR_INVALID, "", ""},
        {"a[1]", ZR_ERR_INVALID, "", ""},
        {"a b", ZR_ERR_INVALID, "", ""},
        {"1234567:n", ZR_OK, "1234567", "n"},
        {"12345678:n", ZR_ERR_INVALID, "", ""},    // the prefix does not fit
        {"1234567890", ZR_ERR_INVALID, "", ""},    // the name does not fit
        {"p:1234567890", ZR_ERR_OVERFLOW, "", ""}, // the name after a prefix does not fit
        {"p:123456789", ZR_OK, "p", "123456789"},
    };
    for (const PrefixRow &row : rows) {
        EXPECT_EQ(ZR_UTL_GetXPathNextPrefixAndNode(row.source, prefix_, sizeof(prefix_), name_,
                                                   sizeof(name_)),
                  row.status)
            << row.source;
        EXPECT_STREQ(prefix_, row.prefix) << row.source;
        EXPECT_STREQ(name_, row.name) << row.source;
    }
}

struct RestRow {
    const char *source;
    const char *rest; // null for an error
};

TEST_F(PathStep, SkipPredicatesPassesAnyRunOfThem)
{
    const RestRow rows[] = {
        {"", ""},
        {"/b", "/b"},
        {"x", nullptr},
        {" ", nullptr},
        {"[a]", ""},
        {"[a]/b", "/b"},
        {"[a][b][c]/d", "/d"},
        {"[]", ""},
        {"[a]y", nullptr},
        {"[a", nullptr},
        {"[", nullptr},
        {"[a][b", nullptr},
        {"[a[b]]", nullptr},    // predicates do not nest
        {"[x=']']/b", nullptr}, // the first bracket closes, also inside a literal
        {"[x='/']/b", "/b"},
    };
    for (const RestRow &row : rows) {
        const char *rest = ZR_UTL_SkipPredicateParis(row.source);
        if (row.rest != nullptr) {
            EXPECT_STREQ(rest, row.rest) << row.source;
        } else {
            EXPECT_EQ(rest, nullptr) << row.source;
        }
    }
    EXPECT_EQ(ZR_UTL_SkipPredicateParis(nullptr), nullptr);
}

struct StepRow {
    const char *source;
    const char *rest; // null for an error
    const char *prefix;
    const char *name;
};

TEST_F(PathStep, PredicatedStepReadsNamesAndPassesPredicates)
{
    const StepRow rows[] = {
        {"if:interface[name='x']/if:mtu", "/if:mtu", "if", "interface"},
        {"interface", "", "", "interface"},
        {"if:mtu", "", "if", "mtu"},
        {"a/b", "/b", "", "a"},
        {"a[1][2]", "", "", "a"},
        {"x[a]y", nullptr, "", "x"},
        {"", nullptr, "", ""},
        {"/a", nullptr, "", ""},
        {"a b", nullptr, "", ""},
        {"p:", nullptr, "p", ""},
        {"p:a:b", nullptr, "p", ""},
        {"12345678:a", nullptr, "", ""},   // the prefix does not fit
        {"p:1234567890", nullptr, "", ""}, // the name does not fit
        {"1234567890", nullptr, "", ""},
        {"p:123456789/x", "/x", "p", "123456789"},
    };
    for (const StepRow &row : rows) {
        const char *rest = ZR_UTL_GetXPathNextPredicatedPrefixNode(
            row.source, prefix_, sizeof(prefix_), name_, sizeof(name_));
        if (row.rest != nullptr) {
            EXPECT_STREQ(rest, row.rest) << row.source;
        } else {
            EXPECT_EQ(rest, nullptr) << row.source;
        }
        EXPECT_STREQ(prefix_, row.prefix) << row.source;
        EXPECT_STREQ(name_, row.name) << row.source;
    }
    EXPECT_EQ(ZR_UTL_GetXPathNextPredicatedPrefixNode(nullptr, prefix_, sizeof(prefix_), name_,
                                                      sizeof(name_)),
              nullptr);
}

TEST_F(PathStep, APathIsWalkedStepByStep)
{
    const char *rest = "/m:a/b[k='1'][l='2']/n:c";
    std::string steps;
    while (*rest == '/') {
        rest = ZR_UTL_GetXPathNextPredicatedPrefixNode(rest + 1, prefix_, sizeof(prefix_), name_,
                                                       sizeof(name_));
        ASSERT_NE(rest, nullptr);
        steps += std::string(prefix_) + "|" + name_ + ";";
    }
    EXPECT_STREQ(rest, "");
    EXPECT_EQ(steps, "m|a;|b;n|c;");
}

TEST_F(PathStep, ABufferOfNoBytesIsNotTouched)
{
    EXPECT_EQ(ZR_UTL_GetXPathNextNodeName("a", nullptr, 0), ZR_ERR_OVERFLOW);
    EXPECT_EQ(ZR_UTL_GetXPathNextPrefixAndNode("a", nullptr, 0, nullptr, 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_GetXPathNextPredicatedPrefixNode("a", nullptr, 0, nullptr, 0), nullptr);
}

} // namespace
