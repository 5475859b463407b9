// SPDX-License-Identifier: Apache-2.0
#include "patterns/translate.h"

#include <gtest/gtest.h>

namespace {

using namespace zr::patterns;

Node Tree(std::string_view pattern)
{
    Node tree;
    EXPECT_EQ(Parse(pattern, tree), Verdict::Sound) << pattern;
    return tree;
}

TEST(Translation, SaysWhatThePatternSaysInWordsOfRe2)
{
    const struct {
        const char *pattern, *expression;
    } rows[] = {
        {"", "(?:)"},
        {"ab|c", "(?:ab|c)"},
        {"(a|b)*c+d?", "(?:(?:a|b)*c+d{0,1})"},
        {"a{2}b{2,}c{2,3}d{1}", "(?:a{2}b{2,}c{2,3}d)"},
        {"^$\\^", "(?:\\^\\$\\^)"},
        {"{}", "(?:\\{\\})"},
        {".", "(?:[^\\x{a}-\\x{a}\\x{d}-\\x{d}])"},
        {"\\d\\D", "(?:[\\p{Nd}][\\P{Nd}])"},
        {"\\w\\W", "(?:[\\p{L}\\p{M}\\p{N}\\p{S}][^\\p{L}\\p{M}\\p{N}\\p{S}])"},
        {"[^a-c\\p{Lu}]", "(?:[^\\x{61}-\\x{63}\\p{Lu}])"},
        {"[a-e-[b-c]]", "(?:[\\x{61}-\\x{61}\\x{64}-\\x{65}])"},
        {"[a-[a]]", "(?:[^\\x{0}-\\x{10ffff}])"},
        {"\\p{C}", "(?:[^\\p{L}\\p{M}\\p{N}\\p{P}\\p{S}\\p{Z}])"},
        {"\\P{Cn}", "(?:[\\p{L}\\p{M}\\p{N}\\p{P}\\p{S}\\p{Z}\\p{Cc}\\p{Cf}\\p{Co}])"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Translate(Tree(row.pattern)), row.expression) << row.pattern;
}

CodeSet Set(std::string_view pattern)
{
    return SetOf(Tree(pattern).children[0].children[0].chars);
}

TEST(Classes, AreSetsOfCodePoints)
{
    EXPECT_EQ(Set("[a-fx-[c-d]]"),
              CodeSet(std::vector<CodeRange>{{'a', 'b'}, {'e', 'f'}, {'x', 'x'}}));
    EXPECT_EQ(Set("[^a-[\\P{IsBasicLatin}]]"),
              CodeSet(std::vector<CodeRange>{{0, 'a' - 1}, {'b', 0x7F}}));
    EXPECT_EQ(Set("[a-z-[b-y-[m]]]"),
              CodeSet(std::vector<CodeRange>{{'a', 'a'}, {'m', 'm'}, {'z', 'z'}}));
}

TEST(Classes, OfCategoriesShareOutAllCharacters)
{
    CodeSet all = CodeSet::Of(0xD800, 0xDFFF); // which are none
    for (const char *category :
         {"\\p{L}", "\\p{M}", "\\p{N}", "\\p{P}", "\\p{S}", "\\p{Z}", "\\p{C}"}) {
        CodeSet set = Set(category);
        EXPECT_EQ(set.Minus(all), set) << category << " overlaps with one before it";
        all = all.Union(set);
    }
    EXPECT_EQ(all, CodeSet::Of(0, kLastCode));
    EXPECT_EQ(Set("[\\p{Cn}\\p{Cc}\\p{Cf}\\p{Co}]"), Set("\\p{C}"));
    EXPECT_EQ(Set("[\\w\\W]").Union(CodeSet::Of(0xD800, 0xDFFF)), CodeSet::Of(0, kLastCode));
}

} // namespace
