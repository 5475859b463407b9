// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.2: the integer types.
#include "support/value.h"

namespace datatest {

TEST(Integer, TakesDecimalDigitsWithASign)
{
    EXPECT_TRUE(Reads("int8", "+007", "7"));
    EXPECT_TRUE(Reads("int8", "-128", "-128"));
    EXPECT_TRUE(Reads("uint64", "18446744073709551615", "18446744073709551615"));
    for (const char *bad : {"", " 1", "1 ", "128", "-129", "0x10", "1.0", "+", "a"})
        EXPECT_FALSE(Takes("int8", bad)) << bad;
    EXPECT_FALSE(Takes("uint8", "-1"));
    EXPECT_FALSE(Takes("uint64", "18446744073709551616"));
}

TEST(Integer, KeepsTheRangesOfAllItsTypedefs)
{
    const std::string outer = "typedef t { type int32 { range \"-10..-1 | 1..10\"; } }";
    EXPECT_TRUE(Takes("t { range \"min..-1 | 1..5\"; }", "-10", outer));
    EXPECT_TRUE(Takes("t { range \"min..-1 | 1..5\"; }", "5", outer));
    EXPECT_FALSE(Takes("t { range \"min..-1 | 1..5\"; }", "6", outer));
    EXPECT_FALSE(Takes("t { range \"min..-1 | 1..5\"; }", "0", outer));
    EXPECT_TRUE(Takes("t { range \"2..max\"; }", "10", outer));
    EXPECT_FALSE(Takes("t { range \"2..max\"; }", "11", outer));
}

TEST(Integer, HasTheLimitsOfItsSize)
{
    struct Row {
        const char *type, *least, *below, *greatest, *above;
    };
    const Row rows[] = {
        {"int8", "-128", "-129", "127", "128"},
        {"int16", "-32768", "-32769", "32767", "32768"},
        {"int32", "-2147483648", "-2147483649", "2147483647", "2147483648"},
        {"int64", "-9223372036854775808", "-9223372036854775809", "9223372036854775807",
         "9223372036854775808"},
        {"uint8", "0", "-1", "255", "256"},
        {"uint16", "0", "-1", "65535", "65536"},
        {"uint32", "0", "-1", "4294967295", "4294967296"},
        {"uint64", "0", "-1", "18446744073709551615", "18446744073709551616"},
    };
    for (const Row &row : rows) {
        EXPECT_TRUE(Reads(row.type, row.least, row.least)) << row.type;
        EXPECT_TRUE(Reads(row.type, row.greatest, row.greatest)) << row.type;
        EXPECT_FALSE(Takes(row.type, row.below)) << row.type;
        EXPECT_FALSE(Takes(row.type, row.above)) << row.type;
    }
}

TEST(Integer, HasOneSignAndAnyNumberOfLeadingZeros)
{
    EXPECT_TRUE(Reads("int16", "-0", "0"));
    EXPECT_TRUE(Reads("uint16", "+0", "0"));
    EXPECT_TRUE(Reads("uint8", "0000000000000000000000000000255", "255"));
    EXPECT_TRUE(Reads("int8", "010", "10")) << "no octal number in data";
    for (const char *bad : {"--1", "+-1", "- 1", "1 2", "1,000", "1e3", "\xD9\xA1"})
        EXPECT_FALSE(Takes("int16", bad)) << bad;
}

TEST(Integer, HasTheEndsOfItsBaseForMinAndMax)
{
    EXPECT_TRUE(Takes("int8 { range \"min | 5 | max\"; }", "-128"));
    EXPECT_TRUE(Takes("int8 { range \"min | 5 | max\"; }", "127"));
    EXPECT_FALSE(Takes("int8 { range \"min | 5 | max\"; }", "126"));
    const std::string base = "typedef t { type uint16 { range \"10..20 | 30..40\"; } }"
                             " typedef s { type t { range \"min..15 | 35\"; } }";
    EXPECT_TRUE(Takes("s { range \"min | max\"; }", "10", base));
    EXPECT_TRUE(Takes("s { range \"min | max\"; }", "35", base));
    for (const char *bad : {"11", "15", "40", "65535"})
        EXPECT_FALSE(Takes("s { range \"min | max\"; }", bad, base)) << bad;
}

TEST(Integer, OfADefaultMayBeHexadecimalOrOctal)
{
    Schema schema("leaf a { type int16; default 0xf00; must '. = 3840'; }"
                  " leaf b { type int16; default -0xf; must '. = -15'; }"
                  " leaf c { type int16; default 052; must '. = 42'; }");
    EXPECT_TRUE(schema.Check("").empty());
}

TEST(Range, SaysWhatIsToldOfAValueThatIsOutOfIt)
{
    Schema schema("typedef t { type int8 { range 0..99 { error-message \"Of t.\"; } } }"
                  " leaf v { type t { range \"1..9 | 20..max\" { error-message \"Of v.\";"
                  " error-app-tag v; } } } leaf inherits { type t; }");
    EXPECT_THAT(schema.Check("<v>10</v>"), testing::ElementsAre("invalid-value[v] /v: Of v."));
    EXPECT_THAT(schema.Check("<v>100</v>"), testing::ElementsAre("invalid-value /v: Of t."));
    EXPECT_THAT(schema.Check("<inherits>100</inherits>"),
                testing::ElementsAre("invalid-value /inherits: Of t."));
    EXPECT_THAT(schema.Check("<v>20</v>"), testing::IsEmpty());
}

} // namespace datatest
