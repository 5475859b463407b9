// RFC 7950, section 9: built-in types.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string Leaf(const std::string &type, const std::string &must = "")
{
    return "leaf v { type " + type + (type.ends_with('}') ? " " : "; ") + must + "} ";
}

bool Takes(const std::string &type, const std::string &text, const std::string &rest = "")
{
    Schema schema(Leaf(type) + rest);
    return schema.Check("<v xmlns:m=\"urn:m\">" + text + "</v>").empty();
}

// Whether the canonical form of a text is `canonical`, as a condition sees it.
bool Reads(const std::string &type, const std::string &text, const std::string &canonical,
           const std::string &rest = "")
{
    Schema schema(Leaf(type, "must \"string(.) = '" + canonical + "'\"; ") + rest);
    return schema.Check("<v xmlns:m=\"urn:m\">" + text + "</v>").empty();
}

} // namespace

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

TEST(Decimal64, IsWrittenWithOneDigitAtLeastBehindThePoint)
{
    const std::string type = "decimal64 { fraction-digits 2; range \"-1..9.5\"; }";
    EXPECT_TRUE(Reads(type, "+1", "1.0"));
    EXPECT_TRUE(Reads(type, "01.50", "1.5"));
    EXPECT_TRUE(Reads(type, "-0.00", "0.0"));
    for (const char *bad : {"", "1.234", ".5", "1.", "9.51", "-1.01", "1e1"})
        EXPECT_FALSE(Takes(type, bad)) << bad;
}

TEST(Decimal64, KeepsTheRangesOfItsTypedefs)
{
    const std::string base = "typedef t { type decimal64 { fraction-digits 2; range \"-3..9\"; } }";
    const std::string type = "t { range \"min..-1 | 1.5..2 | 7..max\"; }";
    for (const char *good : {"-3", "-1.00", "1.5", "1.50", "2.0", "7", "9.00"})
        EXPECT_TRUE(Takes(type, good, base)) << good;
    for (const char *bad : {"-3.01", "-0.99", "1.49", "2.01", "6.99", "9.01"})
        EXPECT_FALSE(Takes(type, bad, base)) << bad;
}

TEST(Union, KeepsTheRangesOfItsMembers)
{
    const std::string base = "typedef t { type int8 { range \"-5..5\"; } }"
                             " typedef s { type string { length \"2..4\"; } }";
    const std::string type = "union { type t { range \"0..max\"; } type s { length \"3..max\"; } }";
    EXPECT_TRUE(Takes(type, "0", base));
    EXPECT_TRUE(Takes(type, "5", base));
    EXPECT_TRUE(Takes(type, "abcd", base));
    for (const char *bad : {"6", "-1", "ab", "abcde"})
        EXPECT_FALSE(Takes(type, bad, base)) << bad;
}

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

TEST(Boolean, IsTrueOrFalse)
{
    EXPECT_TRUE(Takes("boolean", "true"));
    EXPECT_FALSE(Takes("boolean", "1"));
}

TEST(Enumeration, TakesItsNamesAlone)
{
    EXPECT_TRUE(Takes("enumeration { enum a; enum b; }", "b"));
    EXPECT_FALSE(Takes("enumeration { enum a; enum b; }", " b"));
}

TEST(Bits, AreWrittenInTheOrderOfTheirPositions)
{
    const std::string type = "bits { bit a { position 1; } bit b { position 0; } }";
    EXPECT_TRUE(Reads(type, " a\n b ", "b a"));
    EXPECT_TRUE(Reads(type, "", ""));
    EXPECT_FALSE(Takes(type, "a a"));
    EXPECT_FALSE(Takes(type, "c"));
}

TEST(Binary, IsBase64WithALengthInOctets)
{
    EXPECT_TRUE(Reads("binary { length 3; }", "QU\nJD", "QUJD"));
    EXPECT_TRUE(Takes("binary { length 1; }", "QQ=="));
    for (const char *bad : {"QUI=", "QUJ", "Q===", "QU*D"})
        EXPECT_FALSE(Takes("binary { length 3; }", bad)) << bad;
}

TEST(Identityref, TakesWhatIsDerivedFromAllItsBases)
{
    const std::string identities =
        "identity a; identity b; identity c { base a; base b; } identity d { base a; }"
        " identity e { base c; }";
    const std::string type = "identityref { base a; base b; }";
    EXPECT_TRUE(Reads(type, "m:e", "m:e", identities));
    EXPECT_TRUE(Reads(type, "c", "m:c", identities)) << "the default namespace";
    for (const char *bad : {"m:a", "m:d", "m:none", "x:c", ""})
        EXPECT_FALSE(Takes(type, bad, identities)) << bad;
}

TEST(Leafref, TakesTheValuesOfItsTarget)
{
    Schema schema("list l { key k; leaf k { type int8; } }"
                  " leaf r { type leafref { path \"../l/k\"; } }"
                  " leaf loose { type leafref { path \"/m:l/m:k\"; require-instance false; } }");
    EXPECT_THAT(schema.Check("<l><k>1</k></l><r>+1</r><loose>7</loose>"), IsEmpty());
    EXPECT_THAT(
        schema.Check("<l><k>1</k></l><r>2</r>"),
        ElementsAre(
            "data-missing[instance-required] /r: \"r\" refers to \"2\", which is not there"));
    EXPECT_THAT(
        schema.Check("<loose>x</loose>"),
        ElementsAre("invalid-value /loose: \"x\" is no value of \"loose\": it is no integer"));
}

TEST(Leafref, LooksIntoItsOwnEntry)
{
    Schema schema("list l { key k; leaf k { type string; } leaf-list v { type string; }"
                  "  leaf r { type leafref { path \"../v\"; } } }");
    EXPECT_THAT(schema.Check("<l><k>1</k><v>a</v><r>a</r></l><l><k>2</k><v>b</v></l>"), IsEmpty());
    EXPECT_EQ(schema.Check("<l><k>1</k><v>a</v><r>b</r></l><l><k>2</k><v>b</v></l>").size(), 1u);
}

TEST(Empty, TakesNoText)
{
    EXPECT_TRUE(Takes("empty", ""));
    EXPECT_FALSE(Takes("empty", " "));
}

TEST(Union, TakesTheFirstMemberThatFits)
{
    EXPECT_TRUE(Reads("union { type int8; type string; }", "+5", "5"));
    EXPECT_TRUE(Reads("union { type int8; type string; }", "+500", "+500"));
    EXPECT_FALSE(Takes("union { type int8; type boolean; }", "500"));
}

TEST(InstanceIdentifier, LeadsToANodeOfTheSchema)
{
    const std::string list = "list l { key k; leaf k { type string; } leaf a { type string; } }";
    EXPECT_TRUE(Takes("instance-identifier", "/m:l[ m:k = 'x' ]/m:a", list));
    for (const char *bad : {"", "l", "/l", "/m:none", "/m:l[m:k]", "/x:l", "/m:l/"})
        EXPECT_FALSE(Takes("instance-identifier", bad, list)) << bad;
}

} // namespace datatest
