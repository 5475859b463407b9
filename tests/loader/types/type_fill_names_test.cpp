#include "loader/type_snippet.h"

namespace {

using zrtest::TypeSnippet;
using Texts = std::vector<std::string>;

constexpr char kBadEnumeration[] = "Failed to parse value \"enumeration\" of statement \"type\".";
constexpr char kBadBits[] = "Failed to parse value \"bits\" of statement \"type\".";

std::string Enum(const std::string &name, const std::string &value = "")
{
    return "<enum name=\"" + name + "\">" +
           (value.empty() ? "" : "<value value=\"" + value + "\"/>") + "</enum>";
}

std::string Bit(const std::string &name, const std::string &position = "")
{
    return "<bit name=\"" + name + "\">" +
           (position.empty() ? "" : "<position value=\"" + position + "\"/>") + "</bit>";
}

std::string Enumeration(const std::string &enums)
{
    return "<type name=\"enumeration\">" + enums + "</type>";
}

std::string Bits(const std::string &bits)
{
    return "<type name=\"bits\">" + bits + "</type>";
}

std::vector<int64_t> Values(const TypeSnippet &snippet)
{
    std::vector<int64_t> values;
    ZR_TYPE_ScanNameValuePair(
        &snippet.type(),
        [](const char *, const char *, int64_t value, void *out) {
            static_cast<std::vector<int64_t> *>(out)->push_back(value);
            return uint32_t{0};
        },
        &values);
    return values;
}

TEST(EnumFill, NumbersNamesAboveTheGreatestSoFar)
{
    TypeSnippet snippet(
        Enumeration(Enum("a") + Enum("b", "10") + Enum("c") + Enum("d", "3") + Enum("e")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{0, 10, 11, 3, 12}));
}

TEST(EnumFill, StartsAtZeroAfterNegativeValues)
{
    TypeSnippet snippet(Enumeration(Enum("a", "-5") + Enum("b") + Enum("c", "-1") + Enum("d")));
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{-5, 0, -1, 1}));
}

TEST(EnumFill, TakesDuplicateValuesAndNames)
{
    TypeSnippet snippet(Enumeration(Enum("a", "1") + Enum("b", "1") + Enum("a")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{1, 1, 2}));
}

TEST(EnumFill, TakesValuesBetweenTheEndsOf32Bits)
{
    TypeSnippet snippet(Enumeration(Enum("a", "2147483646") + Enum("b", "-2147483647") +
                                    Enum("c", " 7 ") + Enum("d", "+8") + Enum("e", "007")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{2147483646, -2147483647, 7, 8, 7}));
}

class BadEnumValue : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(Each, BadEnumValue,
                         testing::Values("2147483647", "-2147483648", "2147483648", "-2147483649",
                                         "9223372036854775808", "x", "1x", "1 2", "-", "0x1",
                                         "1.0"));

TEST_P(BadEnumValue, IsRefused)
{
    TypeSnippet snippet(Enumeration(Enum("a", GetParam())));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << GetParam();
    EXPECT_EQ(snippet.Messages(), Texts{kBadEnumeration});
}

TEST(EnumFill, RefusesANameThatWouldBeNumberedBeyond32Bits)
{
    TypeSnippet last(Enumeration(Enum("a", "2147483646") + Enum("b")));
    EXPECT_EQ(last.status(), ZR_OK);
    EXPECT_EQ(Values(last), (std::vector<int64_t>{2147483646, 2147483647}));
    TypeSnippet beyond(Enumeration(Enum("a", "2147483646") + Enum("b") + Enum("c")));
    EXPECT_EQ(beyond.status(), ZR_ERR_INVALID);
}

TEST(EnumFill, RefusesAnEnumWithoutAName)
{
    TypeSnippet snippet(Enumeration("<enum><value value=\"1\"/></enum>"));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{kBadEnumeration});
}

TEST(EnumFill, ReadsTheFirstValueAlone)
{
    TypeSnippet snippet(Enumeration("<enum name=\"a\"><value value=\"4\"/><value value=\"x\"/>"
                                    "</enum>"));
    EXPECT_EQ(Values(snippet), std::vector<int64_t>{4});
}

std::string Described(const std::string &name, const std::string &content)
{
    return "<enum name=\"" + name + "\"><description>" + content + "</description></enum>";
}

TEST(EnumDescriptions, AreKeptBesideTheirNames)
{
    TypeSnippet snippet(Enumeration(Described("a", "<text>About a.</text>") + Enum("b") +
                                    Described("c", "<text/>")),
                        ZR_CTX_KEEP_DESCRIPTIONS);
    EXPECT_EQ(snippet.status(), ZR_OK);
    const auto *body = snippet.Get<ZrtConsEnum>(ZRT_CONS_ENUM);
    ASSERT_NE(body->descriptions, nullptr);
    EXPECT_STREQ(body->descriptions[0], "About a.");
    EXPECT_EQ(body->descriptions[1], nullptr);
    EXPECT_STREQ(body->descriptions[2], "");
}

TEST(EnumDescriptions, AreNotKeptWithoutTheOption)
{
    TypeSnippet snippet(Enumeration(Described("a", "<text>About a.</text>")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.Get<ZrtConsEnum>(ZRT_CONS_ENUM)->descriptions, nullptr);
}

TEST(BitFill, NumbersNamesAboveTheGreatestSoFar)
{
    TypeSnippet snippet(Bits(Bit("x", "5") + Bit("y") + Bit("z", "1") + Bit("w")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{5, 6, 1, 7}));
}

TEST(BitFill, TakesPositionsUpTo4294967294)
{
    TypeSnippet snippet(Bits(Bit("x", "4294967294") + Bit("y")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{4294967294, 4294967295}));
}

TEST(BitFill, TakesDuplicatePositions)
{
    TypeSnippet snippet(Bits(Bit("x", "1") + Bit("y", "1")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{1, 1}));
}

class BadBitPosition : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(Each, BadBitPosition,
                         testing::Values("4294967295", "4294967296", "18446744073709551616", "-1",
                                         "-0", "x", "1x", "1 2", "0x1"));

TEST_P(BadBitPosition, IsRefused)
{
    TypeSnippet snippet(Bits(Bit("a", GetParam())));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << GetParam();
    EXPECT_EQ(snippet.Messages(), Texts{kBadBits});
}

TEST(BitFill, RefusesANameThatWouldBePlacedBeyond32Bits)
{
    TypeSnippet snippet(Bits(Bit("x", "4294967294") + Bit("y") + Bit("z")));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
}

TEST(BitFill, RefusesABitWithoutAName)
{
    TypeSnippet snippet(Bits("<bit/>"));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{kBadBits});
}

} // namespace
