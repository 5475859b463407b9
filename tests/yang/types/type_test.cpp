// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::ReportsOf;
using yangtest::ReportsOf1;

namespace {

std::vector<std::string> OfType(const std::string &type)
{
    return ReportsOf("\nleaf l { " + type + " }");
}

} // namespace

TEST(Types, ReportRestrictionsOfOtherTypes)
{
    EXPECT_THAT(OfType("type int8 { length 4; pattern x; enum a; }"),
                ElementsAre("2:22: error: \"length\" may not stand in type \"int8\"",
                            "2:32: error: \"pattern\" may not stand in type \"int8\"",
                            "2:43: error: \"enum\" may not stand in type \"int8\""));
    EXPECT_THAT(ReportsOf("\ntypedef t { type decimal64 { fraction-digits 2; } }\nleaf l { type t "
                          "{ fraction-digits 1; } }"),
                ElementsAre("3:19: error: \"fraction-digits\" may not stand in type \"t\""));
}

TEST(Types, ReportWhatTheyNeed)
{
    const char *cases[][2] = {{"decimal64", "fraction-digits"},
                              {"enumeration", "enum"},
                              {"bits", "bit"},
                              {"leafref", "path"},
                              {"identityref", "base"},
                              {"union", "type"}};
    for (const auto &[type, needed] : cases)
        EXPECT_THAT(OfType(std::string("type ") + type + ";"),
                    ElementsAre(std::string("2:10: error: type \"") + type + "\" without \"" +
                                needed + "\""));
}

TEST(Types, KeepRangesWithinTheirBase)
{
    EXPECT_THAT(OfType("type int8 { range \"-128..127\"; }"), IsEmpty());
    EXPECT_THAT(OfType("type int8 { range \"-129..0\"; }"),
                ElementsAre("2:22: error: bad range \"-129..0\": it goes beyond its base type"));
    EXPECT_THAT(OfType("type uint64 { range \"0..18446744073709551615\"; }"), IsEmpty());
    EXPECT_THAT(OfType("type int64 { range \"-9223372036854775808..9223372036854775807\"; }"),
                IsEmpty());
    EXPECT_THAT(
        OfType("type uint8 { range \"1..4 | 3..5\"; }"),
        ElementsAre(
            "2:23: error: bad range \"1..4 | 3..5\": its parts are not in ascending order"));
    EXPECT_THAT(
        OfType("type uint8 { range \"4..1\"; }"),
        ElementsAre("2:23: error: bad range \"4..1\": its parts are not in ascending order"));
    EXPECT_THAT(OfType("type uint8 { range \"1..\"; }"),
                ElementsAre("2:23: error: bad range \"1..\": it is malformed"));
    EXPECT_THAT(OfType("type string { length \"-1\"; }"),
                ElementsAre("2:24: error: bad length \"-1\": it is malformed"));
}

TEST(Types, KeepRangesWithinTheTypedefsTheyRestrict)
{
    const std::string base = "typedef t { type int32 { range \"1..4 | 5..9 | 20..30\"; } }\n";
    EXPECT_THAT(ReportsOf(base + "leaf l { type t { range \"2..7 | max\"; } }"), IsEmpty());
    EXPECT_THAT(ReportsOf(base + "leaf l { type t { range \"min..max\"; } }"),
                ElementsAre("2:19: error: bad range \"min..max\": it goes beyond its base type"));
    EXPECT_THAT(ReportsOf(base + "leaf l { type t { range \"min..9\"; } }"), IsEmpty());
}

TEST(Types, CompareDecimalsByTheirDigits)
{
    EXPECT_THAT(OfType("type decimal64 { fraction-digits 2; range \"-0.5..1.25 | 3\"; }"),
                IsEmpty());
    EXPECT_THAT(OfType("type decimal64 { fraction-digits 1; range \"0..1.25\"; }"),
                ElementsAre("2:46: error: bad range \"0..1.25\": it is malformed"));
    EXPECT_THAT(OfType("type decimal64 { fraction-digits 18; range \"0..9.3\"; }"),
                ElementsAre("2:47: error: bad range \"0..9.3\": it is malformed"));
}

TEST(Types, ReportEnumsAndBitsThatClash)
{
    EXPECT_THAT(OfType("type enumeration { enum a; enum a; enum b { value 0; } }"),
                ElementsAre("2:37: error: enum \"a\" stands here twice",
                            "2:45: error: enum \"b\" has the value of another"));
    EXPECT_THAT(OfType("type enumeration { enum a { value 2147483647; } enum b; }"),
                ElementsAre("2:58: error: enum \"b\" needs a value"));
    EXPECT_THAT(OfType("type bits { bit a { position 3; } bit b { position 3; } }"),
                ElementsAre("2:44: error: bit \"b\" has the position of another"));
}

TEST(Types, ChooseAmongTheEnumsOfTheirBase)
{
    const std::string base = "typedef t { type enumeration { enum a; enum b { value 5; } } }\n";
    EXPECT_THAT(ReportsOf(base + "leaf l { type t { enum b; } }"), IsEmpty());
    EXPECT_THAT(ReportsOf(base + "leaf l { type t { enum b { value 6; } enum c; } }"),
                ElementsAre("2:28: error: the base type has another value for \"b\"",
                            "2:39: error: the base type has no enum \"c\""));
    EXPECT_THAT(ReportsOf1(base + "leaf l { type t { enum b; } }"),
                ElementsAre("2:19: error: \"enum\" may not stand in type \"t\""));
}

TEST(Types, OfYang1KeepEmptyAndLeafrefOutOfUnions)
{
    const char *body = "\nleaf l { type union { type string; type empty; } }";
    EXPECT_THAT(ReportsOf(body), IsEmpty());
    EXPECT_THAT(
        ReportsOf1(body),
        ElementsAre("2:36: error: a union of YANG 1 may not have a member of type \"empty\""));
}

TEST(Types, StandOnEachOtherInChainsOfSomeLength)
{
    std::string chain = "typedef t0 { type string; }\n";
    for (int i = 1; i <= 400; ++i)
        chain += "typedef t" + std::to_string(i) + " { type t" + std::to_string(i - 1) + "; }\n";
    EXPECT_THAT(ReportsOf(chain),
                ElementsAre("130:16: error: typedefs stand on each other more than 128 deep"));
}
