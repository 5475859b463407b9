// SPDX-License-Identifier: Apache-2.0
#include "yang/xpath/expression.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using yangtest::ReportsOf;

namespace {

std::string FaultOf(const std::string &text)
{
    zr::yang::XPathVisitor nobody;
    zr::yang::XPathFault fault = ReadXPath(text, nobody);
    return fault.what == nullptr ? "" : std::string(fault.what) + " " + std::string(fault.text);
}

} // namespace

TEST(XPath, AcceptsWhatXPathHas)
{
    for (const char *right : {"a",
                              "/",
                              "/a/b",
                              "//a",
                              "a//b",
                              ".",
                              "..",
                              "../a",
                              "./a",
                              "@a",
                              "a/@b",
                              "*",
                              "p:*",
                              "p:a",
                              "a[1]",
                              "a[b = 'c'][2]/d",
                              "a | b",
                              "-1",
                              "--a",
                              "1 + 2 * 3 div 4 mod 5 - 6",
                              "a and b or c",
                              "and and and",
                              "a = b != c",
                              "a < b <= c > d >= e",
                              "\"x\"",
                              "'x'",
                              "1.5",
                              ".5",
                              "2.",
                              "child::a",
                              "ancestor-or-self::node()",
                              "text()",
                              "comment()",
                              "processing-instruction('a')",
                              "(a)[1]/b",
                              "id('x')/y",
                              "count(a) > 1",
                              "not(a)",
                              "concat('a', b, 'c')",
                              "current()/../a",
                              "deref(../a)/../b",
                              "derived-from-or-self(../t, 'p:i')",
                              "re-match(a, 'x')",
                              "bit-is-set(a, 'b')",
                              "enum-value(a)",
                              "* * *",
                              "a * b",
                              "div div div",
                              "a[not(b)]",
                              "string-length()",
                              "position() = last()",
                              "a-b - c"})
        EXPECT_EQ(FaultOf(right), "") << right;
}

TEST(XPath, RefusesWhatItHasNot)
{
    EXPECT_EQ(FaultOf(""), "unexpected end ");
    EXPECT_EQ(FaultOf("a ="), "unexpected end ");
    EXPECT_EQ(FaultOf("a b"), "unexpected b");
    EXPECT_EQ(FaultOf("(a"), "unexpected end ");
    EXPECT_EQ(FaultOf("a)"), "unexpected )");
    EXPECT_EQ(FaultOf("a["), "unexpected end ");
    EXPECT_EQ(FaultOf("a[]"), "unexpected ]");
    EXPECT_EQ(FaultOf("'abc"), "unexpected 'abc");
    EXPECT_EQ(FaultOf("a == b"), "unexpected =");
    EXPECT_EQ(FaultOf("a && b"), "unexpected &");
    EXPECT_EQ(FaultOf("$x"), "there are no variables: $x");
    EXPECT_EQ(FaultOf("foo(a)"), "unknown function foo");
    EXPECT_EQ(FaultOf("not()"), "wrong number of arguments of not");
    EXPECT_EQ(FaultOf("current(a)"), "wrong number of arguments of current");
    EXPECT_EQ(FaultOf("up::a"), "unknown axis up");
    EXPECT_EQ(FaultOf("a/"), "unexpected end ");
    EXPECT_EQ(FaultOf("//"), "unexpected end ");
    EXPECT_EQ(FaultOf("a,b"), "unexpected ,");
}

TEST(XPath, HasADepthThatIsEnough)
{
    EXPECT_EQ(FaultOf(std::string(90, '(') + "a" + std::string(90, ')')), "");
    EXPECT_EQ(FaultOf(std::string(100000, '(')), "too deep at (");
    std::string nested = "a";
    for (int i = 0; i < 100000; ++i)
        nested += "[a";
    EXPECT_EQ(FaultOf(nested), "too deep at a");
    EXPECT_EQ(FaultOf(std::string(100000, '-') + "a"), "");
}

TEST(XPath, IsReportedWithItsStatement)
{
    EXPECT_THAT(ReportsOf("\ncontainer c { must 'a =';\n when 'x:a = 1'; }"),
                ElementsAre("2:15: error: bad expression \"a =\": unexpected end",
                            "3:2: error: unknown prefix \"x\""));
}
