// SPDX-License-Identifier: Apache-2.0
#include "yang/types/patterns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::StrEq;
using yangtest::ReportsOf;
using zr::yang::FindPatternFault;
using zr::yang::Match;

TEST(Patterns, OfXmlSchemaAreRight)
{
    for (const char *pattern : {"",
                                "a|",
                                "()",
                                "(a|b)*c?d+",
                                "a{3}",
                                "a{2,}",
                                "a{2,10}",
                                "{",
                                "a}",
                                "^a$",
                                "[a-z-[aeiou]]",
                                "[^a-c\\-x]",
                                "[-a]",
                                "[a-]",
                                "[+--]",
                                "[\\^\\[\\]]",
                                "\\.\\d\\s\\S\\i\\c\\p{Lu}\\P{IsBasicLatin}",
                                "[\\d.-]+",
                                "((a)(b(c)))",
                                "\xC3\xA9+",
                                "[\xC3\xA0-\xC3\xA9]",
                                "a.*",
                                "[a-z-[b-d-[c]]]"})
        EXPECT_EQ(FindPatternFault(pattern), nullptr) << pattern;
}

TEST(Patterns, ThatAreNoneAreFound)
{
    const std::pair<const char *, const char *> cases[] = {
        {"(a", "a \"(\" is not closed"},
        {"a)", "a \")\" closes nothing"},
        {"a]", "a \"]\" closes nothing"},
        {"[a", "a \"[\" is not closed"},
        {"[", "a \"[\" is not closed"},
        {"[]", "an empty class"},
        {"[^]", "an empty class"},
        {"[a[b]", "a \"[\" in a class"},
        {"[a-[b]c]", "a subtraction that does not end its class"},
        {"*a", "there is nothing to repeat"},
        {"(?:a)", "there is nothing to repeat"},
        {"a**", "there is nothing to repeat"},
        {"a+?", "there is nothing to repeat"},
        {"a|*", "there is nothing to repeat"},
        {"a{x}", "bad quantity"},
        {"a{,3}", "bad quantity"},
        {"a{3", "bad quantity"},
        {"a{3,2}", "a quantity whose end is below its start"},
        {"a{10,9}", "a quantity whose end is below its start"},
        {"[z-a]", "a range whose end is below its start"},
        {"[a-\\d]", "a range that ends with a class"},
        {"\\", "a \"\\\" with nothing behind it"},
        {"\\b", "an unknown escape"},
        {"[\\/]", "an unknown escape"},
        {"\\p{Xx}", "an unknown category of characters"},
        {"\\p", "an unknown category of characters"},
        {"\\p{}", "an unknown category of characters"},
    };
    for (const auto &[pattern, fault] : cases)
        EXPECT_THAT(FindPatternFault(pattern), StrEq(fault)) << pattern;
}

TEST(Patterns, AreMatchedWithTheWholeOfAText)
{
    auto match = [](std::string_view pattern, std::string_view text) {
        return zr::yang::MatchPattern(pattern, text, std::pmr::new_delete_resource());
    };
    EXPECT_EQ(match("[a-z]{2}", "ab"), Match::Yes);
    EXPECT_EQ(match("[a-z]{2}", "abc"), Match::No);
    EXPECT_EQ(match("\\p{Lu}.", "\xC3\x89\xC3\xA9"), Match::Yes);
    EXPECT_EQ(match("[a-z-[aeiou]]*", "xyz"), Match::Yes);
}

TEST(Patterns, ThatWouldTakeTooLongAreLeftOpen)
{
    auto match = [](const std::string &pattern, const std::string &text) {
        return zr::yang::MatchPattern(pattern, text, std::pmr::new_delete_resource());
    };
    EXPECT_EQ(match(std::string(20000, 'a'), "a"), Match::Open);
    EXPECT_EQ(match("a*", std::string(20000, 'a')), Match::Open);
    std::string classes;
    for (int i = 0; i < 1000; ++i)
        classes += "[a-z-";
    EXPECT_EQ(match(classes + "b" + std::string(1000, ']'), "a"), Match::Open);
    EXPECT_NE(match("((a*)*)*b", std::string(200, 'a')), Match::Yes);
}

TEST(Patterns, AreReportedAtTheirPlace)
{
    EXPECT_THAT(ReportsOf("\nleaf a { type string { pattern 'a('; pattern 'b'; } }"),
                ElementsAre("2:24: error: bad pattern \"a(\": a \"(\" is not closed"));
}
