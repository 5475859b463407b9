// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::BodyOf;
using yangtest::ReportsOf;
using yangtest::ReportsOf1;

namespace {

// What comes of a string as the argument of "units".
std::string ValueOf(const std::string &written)
{
    std::string body = BodyOf("typedef t { type string; units " + written + "; }");
    size_t start = body.find("<units name=\"");
    if (start == std::string::npos)
        return body;
    start += 13;
    return body.substr(start, body.find("\"/>", start) - start);
}

} // namespace

TEST(Lexer, TakesWordsAndBothKindsOfQuotes)
{
    EXPECT_EQ(ValueOf("kelvin"), "kelvin");
    EXPECT_EQ(ValueOf("\"a b\""), "a b");
    EXPECT_EQ(ValueOf("'a \"b\\n'"), "a &quot;b\\n");
}

TEST(Lexer, ResolvesTheFourEscapes)
{
    EXPECT_EQ(ValueOf(R"("a\nb\tc\"d\\e")"), "a&#10;b&#9;c&quot;d\\e");
}

TEST(Lexer, JoinsStringsWithAPlusAcrossCommentsAndLines)
{
    EXPECT_EQ(ValueOf("\"a\" + 'b' /* and */ + // so on\n \"c\""), "abc");
}

TEST(Lexer, TrimsTheIndentationOfLinesAsFarAsTheOpeningQuote)
{
    EXPECT_EQ(ValueOf("\n   \"one   \n    two\n      three\n  four\""),
              "one&#10;two&#10;  three&#10;four");
}

TEST(Lexer, CountsATabAsEightColumnsOfIndentation)
{
    EXPECT_EQ(ValueOf("\n   \"one\n\ttwo\""), "one&#10;    two");
}

TEST(Lexer, KeepsLinesInSingleQuotesAsTheyAre)
{
    EXPECT_EQ(ValueOf("\n   'one \n    two'"), "one &#10;    two");
}

TEST(Lexer, TakesALineBreakOfTwoCharactersForOne)
{
    EXPECT_EQ(ValueOf("\"one\r\ntwo\""), "one&#10;two");
    EXPECT_EQ(ValueOf("'one\r\ntwo'"), "one&#10;two");
}

TEST(Lexer, KeepsABlankThatWasEscapedBeforeALineBreak)
{
    EXPECT_EQ(ValueOf("\"a\\t\nb\""), "a&#9;&#10;b");
}

TEST(Lexer, KeepsSlashesInsideWords)
{
    EXPECT_EQ(ValueOf("a/b"), "a/b");
}

TEST(Lexer, PassesOverComments)
{
    EXPECT_THAT(ReportsOf("/* one\n two */ // three\n leaf a { /**/ type string; }"), IsEmpty());
}

TEST(Lexer, ReportsAnUnknownEscapeInVersion11Alone)
{
    EXPECT_THAT(ReportsOf("\ntypedef t { type string; units \"a\\.b\"; }"),
                ElementsAre("2:34: error: a backslash may stand only before n, t, \" and \\"));
    EXPECT_THAT(ReportsOf1("\ntypedef t { type string; units \"a\\.b\"; }"), IsEmpty());
}

TEST(Lexer, ReportsAQuoteInsideAWordInVersion11Alone)
{
    EXPECT_THAT(ReportsOf("\ntypedef t { type string; units a'b; }"),
                ElementsAre("2:33: error: a quote in a string without quotes"));
    EXPECT_THAT(ReportsOf1("\ntypedef t { type string; units a'b; }"), IsEmpty());
}

TEST(Lexer, ReportsStringsAndCommentsWithoutAnEnd)
{
    EXPECT_THAT(ReportsOf("\nunits \"abc"), testing::Contains("2:7: error: string without an end"));
    EXPECT_THAT(ReportsOf("\n /* abc"), testing::Contains("2:2: error: comment without an end"));
}

TEST(Lexer, ReportsAPlusWithoutAString)
{
    EXPECT_THAT(ReportsOf("\ntypedef t { type string; units \"a\" + b; }"),
                testing::Contains("2:38: error: no string in quotes behind \"+\""));
}
