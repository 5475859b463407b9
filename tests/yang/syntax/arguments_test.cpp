// SPDX-License-Identifier: Apache-2.0
#include "yang/syntax/arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::ReportsOf;

namespace {

struct Case {
    const char *body;
    const char *statement, *argument;
};

} // namespace

TEST(Arguments, AreCheckedByTheirForms)
{
    const Case cases[] = {
        {"\nleaf 1a { type string; }", "leaf", "1a"},
        {"\nleaf a { type a:b:c; }", "type", "a:b:c"},
        {"\nleaf a { type string; config yes; }", "config", "yes"},
        {"\nleaf a { type string; mandatory TRUE; }", "mandatory", "TRUE"},
        {"\nleaf a { type string; status new; }", "status", "new"},
        {"\nleaf-list a { type string; ordered-by me; }", "ordered-by", "me"},
        {"\nleaf-list a { type string; min-elements -1; }", "min-elements", "-1"},
        {"\nleaf-list a { type string; min-elements 01; }", "min-elements", "01"},
        {"\nleaf-list a { type string; max-elements 0; }", "max-elements", "0"},
        {"\nleaf-list a { type string; max-elements all; }", "max-elements", "all"},
        {"\nleaf a { type decimal64 { fraction-digits 19; } }", "fraction-digits", "19"},
        {"\nleaf a { type enumeration { enum ' a'; } }", "enum", " a"},
        {"\nleaf a { type enumeration { enum a { value 2147483648; } } }", "value", "2147483648"},
        {"\nleaf a { type bits { bit a { position 4294967296; } } }", "position", "4294967296"},
        {"\nleaf a { type string { pattern a { modifier invert; } } }", "modifier", "invert"},
        {"\nrevision 2020-13-01;", "revision", "2020-13-01"},
        {"\naugment a { }", "augment", "a"},
        {"\naugment '/a//b' { }", "augment", "/a//b"},
        {"\ncontainer c { must ' '; }", "must", " "},
        {"\nextension e { argument a { yin-element 1; } }", "yin-element", "1"},
        {"\nlist l { key ''; config false; }", "key", ""},
    };
    for (const Case &one : cases)
        EXPECT_THAT(ReportsOf(one.body), testing::Contains(testing::EndsWith(
                                             std::string(": error: invalid argument \"") +
                                             one.argument + "\" of \"" + one.statement + "\"")))
            << one.body;
}

TEST(Arguments, AreNeededOrForbidden)
{
    EXPECT_THAT(ReportsOf("\nrpc r { input x { } }\ncontainer;"),
                ElementsAre("2:9: error: \"input\" takes no argument",
                            "3:1: error: \"container\" needs an argument"));
}

TEST(Arguments, KnowTheDaysOfTheMonths)
{
    using zr::yang::IsDate;
    EXPECT_TRUE(IsDate("2020-02-29"));
    EXPECT_TRUE(IsDate("2020-12-31"));
    for (const char *bad : {"2020-02-32", "2020-00-01", "2020-04-31", "20-04-01", "2020/04/01", ""})
        EXPECT_FALSE(IsDate(bad)) << bad;
}

TEST(Arguments, ReadNumbersThatFillTheText)
{
    using namespace zr::yang;
    uint64_t natural = 0;
    int64_t integer = 0;
    EXPECT_TRUE(ReadUnsigned("18446744073709551615", natural));
    EXPECT_EQ(natural, UINT64_MAX);
    EXPECT_FALSE(ReadUnsigned("18446744073709551616", natural));
    EXPECT_FALSE(ReadUnsigned("", natural));
    EXPECT_FALSE(ReadUnsigned("007", natural));
    EXPECT_TRUE(ReadInteger("-5", integer));
    EXPECT_EQ(integer, -5);
    EXPECT_FALSE(ReadInteger("-", integer));
    EXPECT_FALSE(ReadInteger("+5", integer));
}

TEST(Arguments, SplitWordsAndSteps)
{
    using namespace zr::yang;
    std::string_view words = "  a b\n c ";
    EXPECT_EQ(TakeWord(words), "a");
    EXPECT_EQ(TakeWord(words), "b");
    EXPECT_EQ(TakeWord(words), "c");
    EXPECT_EQ(TakeWord(words), "");
    std::string_view path = "/p:a/b";
    EXPECT_EQ(TakeStep(path), "p:a");
    EXPECT_EQ(TakeStep(path), "b");
    EXPECT_TRUE(path.empty());
}
