#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;

std::string String(const std::string &patterns)
{
    return "<type name=\"string\">" + patterns + "</type>";
}

TEST(Pattern, MatchesTheWholeValue)
{
    Leaf leaf(String("<pattern value=\"[a-z]+\"/>"));
    EXPECT_EQ(leaf.Check("abc"), ZR_OK);
    for (const char *bad : {"", "abc1", "1abc", "ABC", " abc", "abc\n"})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_PATTERN) << bad;
}

TEST(Pattern, OfSeveralAllHaveToMatch)
{
    Leaf leaf(String("<pattern value=\"a.*\"/><pattern value=\".*z\"/>"));
    EXPECT_EQ(leaf.Check("a-z"), ZR_OK);
    EXPECT_EQ(leaf.Check("a-y"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(leaf.Check("b-z"), ZR_ERR_VALUE_PATTERN);
}

TEST(Pattern, WithInvertMatchMustNotMatch)
{
    Leaf leaf(String("<pattern value=\"[xX][mM][lL].*\"><modifier value=\"invert-match\"/>"
                     "</pattern><pattern value=\"[a-zA-Z]*\"/>"));
    EXPECT_EQ(leaf.Check("abc"), ZR_OK);
    EXPECT_EQ(leaf.Check("xmlabc"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(leaf.Check("abc1"), ZR_ERR_VALUE_PATTERN);
}

TEST(Pattern, ThatDoesNotCompileRefusesEverything)
{
    Leaf leaf(String("<pattern value=\"[a-\"/>"));
    EXPECT_EQ(leaf.Check("a"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(leaf.Check(""), ZR_ERR_VALUE_PATTERN);
}

TEST(Pattern, ThatDoesNotCompileAcceptsEverythingWhenInverted)
{
    Leaf leaf(String("<pattern value=\"[a-\"><modifier value=\"invert-match\"/></pattern>"));
    EXPECT_EQ(leaf.Check("a"), ZR_OK);
    EXPECT_EQ(leaf.Check(""), ZR_OK);
}

TEST(Pattern, RefusesANullValueEvenWhenInverted)
{
    EXPECT_EQ(Leaf(String("<pattern value=\".*\"/>")).Check(nullptr), ZR_ERR_VALUE_PATTERN);
    Leaf inverted(String("<pattern value=\"a\"><modifier value=\"invert-match\"/></pattern>"));
    EXPECT_EQ(inverted.Check(nullptr), ZR_ERR_VALUE_PATTERN);
}

TEST(Pattern, OfTypedefsAllHaveToMatch)
{
    Leaf leaf("<type name=\"t\"><pattern value=\".{3}\"/></type>",
              "<typedef name=\"t\">" + String("<pattern value=\"[a-z]*\"/>") + "</typedef>");
    EXPECT_EQ(leaf.Check("abc"), ZR_OK);
    EXPECT_EQ(leaf.Check("ab"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(leaf.Check("ab1"), ZR_ERR_VALUE_PATTERN);
}

TEST(Pattern, IsCheckedOnEveryBaseType)
{
    Leaf leaf("<type name=\"int32\"><pattern value=\"[0-9]{2}\"/></type>");
    EXPECT_EQ(leaf.Check("12"), ZR_OK);
    EXPECT_EQ(leaf.Check("123"), ZR_ERR_VALUE_PATTERN);
}

TEST(Pattern, OfNoneTakesEverything)
{
    ZrtConsPattern body = {};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataPattern(&body, ZR_VALUE_STRING, "x", &validation),
        ZR_OK);
}

TEST(PatternCopy, MatchesNormallyWhereTheSourceIsInverted)
{
    Leaf leaf(String("<pattern value=\"a+\"><modifier value=\"invert-match\"/></pattern>"));
    EXPECT_EQ(leaf.Check("aa"), ZR_ERR_VALUE_PATTERN);
    ZrtRealType *copy = ZRT_TYPE_CopyZrtRealType(leaf.context(), leaf.type());
    ASSERT_NE(copy, nullptr);
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(copy, ZR_VALUE_STRING, "aa", &validation),
              ZR_OK);
    validation = {};
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(copy, ZR_VALUE_STRING, "b", &validation),
              ZR_ERR_VALUE_PATTERN);
    ZRT_TYPE_DestroyZrtRealType(leaf.context(), copy);
}

} // namespace
