// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::Preparation;
using yangtest::ReportsOf;

namespace {

std::vector<std::string> ReportsOfWhole(const std::string &text)
{
    Preparation preparation;
    preparation.Add("m.yang", text);
    preparation.Prepare("m");
    return preparation.reports();
}

} // namespace

TEST(Parser, GoesOnBehindWhatItCannotRead)
{
    EXPECT_THAT(ReportsOf("\nleaf a { type string }\nleaf b \"x\" y { type string; }\nfoo;"),
                ElementsAre("2:22: error: \";\" or \"{\" is expected behind \"type\"",
                            "3:8: error: \";\" or \"{\" is expected behind \"leaf\"",
                            "4:1: error: unknown statement \"foo\""));
}

TEST(Parser, ReportsAStatementThatBeginsWithAQuote)
{
    EXPECT_THAT(ReportsOf("\n\"leaf\" a;"),
                ElementsAre("2:1: error: a statement is expected here"));
}

TEST(Parser, ReportsWordsThatAreNoKeywords)
{
    EXPECT_THAT(ReportsOf("\n1:a b;"), ElementsAre("2:1: error: \"1:a\" is no keyword"));
}

TEST(Parser, ReportsAMissingBrace)
{
    EXPECT_THAT(ReportsOfWhole("module m {\n container c {\n namespace urn:m; prefix m;\n"),
                Contains("m.yang:2:2: error: \"container\" has no closing brace"));
}

TEST(Parser, ReportsABraceTooMany)
{
    EXPECT_THAT(ReportsOfWhole("module m { namespace urn:m; prefix m; } }"),
                ElementsAre("m.yang:1:41: error: something stands behind the end of the module"));
    EXPECT_THAT(ReportsOfWhole("} module m { namespace urn:m; prefix m; }"),
                ElementsAre("m.yang:1:1: error: a closing brace without an opening one"));
}

TEST(Parser, ReportsAFileWithoutAModule)
{
    EXPECT_THAT(ReportsOfWhole(" // nothing\n"),
                ElementsAre("m.yang: error: the file holds no module"));
    EXPECT_THAT(ReportsOfWhole("container c;"),
                ElementsAre("m.yang:1:1: error: the file holds no module"));
}

TEST(Parser, RefusesNestingThatIsTooDeep)
{
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "container a { ";
    EXPECT_THAT(ReportsOf("\n" + deep + std::string(100000, '}')),
                ElementsAre("2:2787: error: statements stand more than 200 deep in each other"));
}

TEST(Parser, RefusesNestingWithoutAnEnd)
{
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "a{";
    EXPECT_FALSE(ReportsOf(deep).empty());
    EXPECT_FALSE(ReportsOfWhole(std::string(100000, '{')).empty());
    EXPECT_FALSE(ReportsOfWhole(std::string(100000, '}')).empty());
}

TEST(Parser, KeepsNoMoreThanAHundredReportsOfAFile)
{
    std::string body;
    for (int i = 0; i < 300; ++i)
        body += "\nfoo;";
    std::vector<std::string> reports = ReportsOf(body);
    ASSERT_EQ(reports.size(), 101u);
    EXPECT_EQ(reports.front(), "2:1: error: unknown statement \"foo\"");
    EXPECT_EQ(reports.back(), "102:1: error: further reports on this file are left out");
}

TEST(Parser, TakesStatementsOfExtensionsWithAndWithoutArguments)
{
    EXPECT_THAT(ReportsOf("extension e; extension f { argument x; }\n"
                          "m:e; m:f \"a\" { m:e { m:f b; } }"),
                IsEmpty());
}
