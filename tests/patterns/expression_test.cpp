// SPDX-License-Identifier: Apache-2.0
#include "patterns/expression.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace zr::patterns;

Verdict Read(std::string_view pattern)
{
    Node out;
    return Parse(pattern, out);
}

TEST(Expression, IsWhatXmlSchemaAllows)
{
    for (const char *pattern : {"",
                                "a",
                                "|",
                                "a|",
                                "()",
                                "(a|b)*",
                                "a{2}",
                                "a{2,}",
                                "a{2,3}",
                                "a{0,0}",
                                "}",
                                "{",
                                "a|{",
                                "^$",
                                ".",
                                "[a]",
                                "[^a]",
                                "[a-z]",
                                "[-a]",
                                "[a-]",
                                "[-]",
                                "[^-a]",
                                "[a^]",
                                "[\\-a-c\\]]",
                                "[a-z-[aeiou]]",
                                "[^a-[b-[c]]]",
                                "[\\d\\w-[\\s]]",
                                "\\p{Lu}\\P{L}",
                                "\\p{IsBasicLatin}",
                                "[\\p{Nd}_]",
                                "\\.\\\\\\?\\*\\+\\(\\)\\[\\]\\{\\}\\-\\|\\^\\n\\r\\t",
                                "[\\n-\\r]",
                                "\\s\\S\\i\\I\\c\\C\\d\\D\\w\\W",
                                "\xC3\xA9[\xC3\xA0-\xE2\x82\xAC]"})
        EXPECT_EQ(Read(pattern), Verdict::Sound) << pattern;
}

TEST(Expression, IsRefusedWhereItIsNoneOrDoubtful)
{
    for (const char *pattern : {"(",       ")",       "(a",      "a)",         "*",
                                "+a",      "?",       "a**",     "a+?",        "a{1}{2}",
                                "a{",      "a{}",     "a{,2}",   "a{x}",       "a{2",
                                "a{3,2}",  "[",       "[]",      "[^]",        "[a",
                                "]",       "[z-a]",   "[a-b-c]", "[a--]",      "[--a]",
                                "[\\d-z]", "[a-\\d]", "[a[b]]",  "[a-z-[b]c]", "[a-[]]",
                                "\\",      "\\q",     "\\$",     "\\1",        "\\p",
                                "\\p{",    "\\p{}",   "\\p{Xx}", "\\p{Lu",     "\\p{IsNothing}",
                                "\\px",    "[\\]",    "\xFF",    "a\xC3"})
        EXPECT_EQ(Read(pattern), Verdict::Faulty) << pattern;
}

std::string Nested(size_t depth)
{
    return std::string(depth, '(') + "a" + std::string(depth, ')');
}

std::string Subtracted(uint32_t depth)
{
    std::string open, close;
    for (uint32_t i = 0; i < depth; ++i) {
        open += "[a-z-";
        close += "]";
    }
    return open + "[b]" + close;
}

TEST(Expression, IsTooLargeBeyondItsBounds)
{
    EXPECT_EQ(Read(Nested(kMostGroups)), Verdict::Sound);
    EXPECT_EQ(Read(Nested(kMostGroups + 1)), Verdict::TooLarge);
    EXPECT_EQ(Read(Nested(1000000)), Verdict::TooLarge);
    EXPECT_EQ(Read(Subtracted(kMostSubtractions)), Verdict::Sound);
    EXPECT_EQ(Read(Subtracted(kMostSubtractions + 1)), Verdict::TooLarge);
    EXPECT_EQ(Read("a{1000000}"), Verdict::Sound);
    EXPECT_EQ(Read("a{1000001}"), Verdict::TooLarge);
    EXPECT_EQ(Read("a{1,99999999999999999999}"), Verdict::TooLarge);
}

TEST(Expression, CountsGroupsThatAreOpenAlone)
{
    std::string pattern;
    for (uint32_t i = 0; i <= kMostGroups; ++i)
        pattern += "(a)";
    EXPECT_EQ(Read(pattern), Verdict::Sound);
}

} // namespace
