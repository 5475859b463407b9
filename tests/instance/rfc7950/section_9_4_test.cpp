// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.4: the string type.
#include "support/value.h"

namespace datatest {

TEST(String, HasALengthInCharacters)
{
    EXPECT_TRUE(Takes("string { length 2; }", "\xC3\xA4\xC3\xB6"));
    EXPECT_FALSE(Takes("string { length 2; }", "abc"));
    EXPECT_TRUE(
        Takes("string { pattern '[a-z]+'; pattern 'x.*' { modifier invert-match; } }", "ab"));
    EXPECT_FALSE(
        Takes("string { pattern '[a-z]+'; pattern 'x.*' { modifier invert-match; } }", "xa"));
    EXPECT_FALSE(Takes("string { pattern '[a-z]+'; }", "1"));
}

TEST(String, HasTheLengthsOfAllItsTypedefs)
{
    const std::string base = "typedef t { type string { length 1..255; } }";
    const std::string type = "t { length \"11 | 42..max\"; }";
    for (size_t good : {11u, 42u, 255u})
        EXPECT_TRUE(Takes(type, std::string(good, 'x'), base)) << good;
    for (size_t bad : {0u, 10u, 12u, 41u, 256u})
        EXPECT_FALSE(Takes(type, std::string(bad, 'x'), base)) << bad;
}

TEST(String, CountsCharactersOfAnyNumberOfBytes)
{
    const std::string type = "string { length 3; }";
    EXPECT_TRUE(Takes(type, "a\xE2\x82\xAC\xF0\x9F\x98\x80"));
    EXPECT_TRUE(Takes(type, "&#x1F600;&lt;&amp;"));
    EXPECT_FALSE(Takes(type, "\xF0\x9F\x98\x80"));
    EXPECT_FALSE(Takes(type, "e\xCC\x81"))
        << "a letter and an accent are two, without normalization";
}

TEST(String, MatchesAllPatternsOfAllItsTypedefs)
{
    const std::string base = "typedef t { type string { pattern '[a-z]*'; pattern '.{2,4}'; } }";
    const std::string type = "t { pattern '.*z'; }";
    EXPECT_TRUE(Takes(type, "abz", base));
    for (const char *bad : {"z", "abcdz", "aBz", "abc"})
        EXPECT_FALSE(Takes(type, bad, base)) << bad;
}

TEST(String, MatchesAPatternAsAWhole)
{
    EXPECT_TRUE(Takes("string { length 0..4; pattern '[0-9a-fA-F]*'; }", "9A00"));
    EXPECT_TRUE(Takes("string { length 0..4; pattern '[0-9a-fA-F]*'; }", ""));
    EXPECT_FALSE(Takes("string { length 0..4; pattern '[0-9a-fA-F]*'; }", "00ABAB"));
    EXPECT_FALSE(Takes("string { length 0..4; pattern '[0-9a-fA-F]*'; }", "xx00"));
    EXPECT_FALSE(Takes("string { pattern 'b'; }", "abc"));
}

TEST(String, MatchesNoneOfItsInvertedPatterns)
{
    const std::string type = "string { length 1..max; pattern '[a-zA-Z_][a-zA-Z0-9\\-_.]*';"
                             " pattern '[xX][mM][lL].*' { modifier invert-match; } }";
    EXPECT_TRUE(Takes(type, "enabled"));
    for (const char *bad : {"10-mbit", "xml-element", ""})
        EXPECT_FALSE(Takes(type, bad)) << bad;
}

TEST(String, KeepsItsSpacesAndLines)
{
    EXPECT_TRUE(Takes("string { length 4; }", " a\n "));
    EXPECT_TRUE(Takes("string { length 3; }", "a\tb"));
    EXPECT_FALSE(Takes("string { pattern '[a-z]*'; }", "a "));
}

TEST(String, HoldsNoNoncharacters)
{
    for (const char *good : {"\xEF\xB7\x8F", "\xEF\xB7\xB0", "\xF0\x9F\xBF\xBD", "&#x10FFFD;"})
        EXPECT_TRUE(Takes("string", good)) << good;
    for (const char *bad :
         {"\xEF\xB7\x90", "&#xFDEF;", "a&#x1FFFE;", "\xF0\x9F\xBF\xBF", "&#x10FFFF;b"})
        EXPECT_FALSE(Takes("string", bad)) << bad;
}

TEST(String, HoldsNoControlCharacters)
{
    Schema schema("leaf a { type string; }");
    EXPECT_TRUE(schema.Check("<a>&#9;&#10;&#13;&#x85;&#x7F;</a>").empty());
    for (const char *bad : {"&#0;", "&#1;", "&#xB;", "&#x1F;", "&#xD800;", "&#xFFFE;"})
        EXPECT_THAT(schema.Check(std::string("<a>") + bad + "</a>"),
                    testing::ElementsAre(testing::StartsWith("malformed-message ")))
            << bad;
}

TEST(String, IsRefusedInTheWordsOfItsLengthOrPattern)
{
    Schema schema("typedef t { type string { length 1..4 { error-app-tag length; }"
                  " pattern '[a-z]*'; pattern 'x.*' { modifier invert-match;"
                  "  error-message \"No x.\"; error-app-tag x; } } }"
                  " leaf v { type t { pattern '.*b' { error-message \"A b.\"; } } }");
    EXPECT_THAT(schema.Check("<v>ab</v>"), testing::IsEmpty());
    EXPECT_THAT(
        schema.Check("<v>abbbb</v>"),
        testing::ElementsAre("invalid-value[length] /v: \"abbbb\" is no value of \"v\": its "
                             "length is out of range"));
    EXPECT_THAT(schema.Check("<v>ba</v>"), testing::ElementsAre("invalid-value /v: A b."));
    EXPECT_THAT(schema.Check("<v>xb</v>"), testing::ElementsAre("invalid-value[x] /v: No x."));
    EXPECT_THAT(schema.Check("<v>Ab</v>"),
                testing::ElementsAre("invalid-value /v: \"Ab\" is no value of \"v\": a pattern "
                                     "refuses it"));
}

} // namespace datatest
