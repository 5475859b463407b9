#include "loader/type_snippet.h"

namespace {

using zrtest::TypeSnippet;
using Texts = std::vector<std::string>;

std::string Message(const std::string &name)
{
    return "Failed to parse value \"" + name + "\" of statement \"type\".";
}

std::string Decimal(const std::string &digits)
{
    return "<type name=\"decimal64\"><fraction-digits value=\"" + digits + "\"/></type>";
}

TEST(FractionDigitsFill, TakesOneToEighteen)
{
    for (uint32_t digits = 1; digits <= 18; ++digits) {
        TypeSnippet snippet(Decimal(std::to_string(digits)));
        EXPECT_EQ(snippet.status(), ZR_OK);
        EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(&snippet.type()), digits);
    }
}

TEST(FractionDigitsFill, RefusesEverythingElse)
{
    for (const char *digits : {"0", "19", "-1", "x", "", "18446744073709551616", "256", "257"}) {
        TypeSnippet snippet(Decimal(digits));
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << digits;
        EXPECT_EQ(snippet.Messages(), Texts{Message("decimal64")});
    }
}

TEST(FractionDigitsFill, DoesNotLookAtWhatFollowsTheNumber)
{
    TypeSnippet snippet(Decimal("2x"));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(&snippet.type()), 2u);
}

TEST(FractionDigitsFill, TakesTheFirstOfSeveral)
{
    TypeSnippet snippet("<type name=\"decimal64\"><fraction-digits value=\"3\"/>"
                        "<fraction-digits value=\"5\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(&snippet.type()), 3u);
}

TEST(RangeFill, WithoutAnArgumentIsRefused)
{
    TypeSnippet range("<type name=\"int8\"><range/></type>");
    EXPECT_EQ(range.status(), ZR_ERR_INVALID);
    EXPECT_EQ(range.Messages(), Texts{Message("int8")});
    TypeSnippet length("<type name=\"string\"><length/></type>");
    EXPECT_EQ(length.status(), ZR_ERR_INVALID);
    EXPECT_EQ(length.Messages(), Texts{Message("string")});
}

TEST(RangeFill, OfADecimal64KnowsItsFractionDigitsWhereverTheyStand)
{
    TypeSnippet snippet("<type name=\"decimal64\"><range value=\"1.25..2\"/>"
                        "<fraction-digits value=\"2\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.type().boundsFlags, ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_EXPLICIT);
    TypeSnippet none("<type name=\"decimal64\"><range value=\"1.25..2\"/></type>");
    EXPECT_EQ(none.status(), ZR_ERR_INVALID);
}

TEST(RangeFill, TogetherWithALengthSetsTheFlagsOfBoth)
{
    TypeSnippet snippet("<type name=\"t:a\"><range value=\"1..max\"/><length value=\"1\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.type().boundsFlags,
              ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_EXPLICIT | ZRT_BOUNDS_RELATIVE);
}

std::string String(const std::string &pattern)
{
    return "<type name=\"string\">" + pattern + "</type>";
}

const char *PatternOf(const TypeSnippet &snippet)
{
    const auto *body = snippet.Get<ZrtConsPattern>(ZRT_CONS_PATTERN);
    return body != nullptr && body->count == 1 ? body->items[0].pattern : nullptr;
}

TEST(PatternFill, StripsAPairOfAnchors)
{
    struct Row {
        const char *written;
        const char *kept;
    };
    for (const Row &row :
         {Row{"^[a-z]+$", "[a-z]+"}, Row{"[a-z]+", "[a-z]+"}, Row{"^", "^"}, Row{"$", "$"},
          Row{"^$", ""}, Row{"^a", "^a"}, Row{"a$", "a$"}, Row{"^^a$$", "^a$"}}) {
        TypeSnippet snippet(String(std::string("<pattern value=\"") + row.written + "\"/>"));
        EXPECT_EQ(snippet.status(), ZR_OK);
        EXPECT_STREQ(PatternOf(snippet), row.kept) << row.written;
    }
}

TEST(PatternFill, IsInvertedByAnyModifier)
{
    struct Row {
        const char *child;
        uint32_t inverted;
    };
    for (const Row &row :
         {Row{"<modifier value=\"invert-match\"/>", 1}, Row{"<modifier value=\"anything\"/>", 1},
          Row{"<modifier/>", 1}, Row{"<error-message><value>no</value></error-message>", 0},
          Row{"", 0}}) {
        TypeSnippet snippet(
            String(std::string("<pattern value=\"a\">") + row.child + "</pattern>"));
        ASSERT_EQ(snippet.status(), ZR_OK);
        EXPECT_EQ(snippet.Get<ZrtConsPattern>(ZRT_CONS_PATTERN)->items[0].invertMatch, row.inverted)
            << row.child;
    }
}

TEST(PatternFill, WithoutAnArgumentIsRefused)
{
    TypeSnippet snippet(String("<pattern/>"));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{Message("string")});
}

TEST(PatternFill, TakesAPatternThatDoesNotCompile)
{
    TypeSnippet snippet(String("<pattern value=\"[a-\"/>"));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_STREQ(PatternOf(snippet), "[a-");
}

} // namespace
