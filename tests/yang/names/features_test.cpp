// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using yangtest::BodyOf;
using yangtest::Preparation;
using yangtest::ReportsOf;
using yangtest::ReportsOf1;

namespace {

constexpr const char *kFeatures = "feature a; feature b; feature c;";

// What comes of a leaf with an if-feature when a is on, b is off, and of c nothing is said.
std::string LeafWith(const std::string &expression)
{
    Preparation preparation;
    preparation.AddModule("m", std::string(kFeatures) + "leaf l { if-feature \"" + expression +
                                   "\"; type string; }");
    ZR_YANG_SetFeature(preparation.get(), "m", "a", 1);
    ZR_YANG_SetFeature(preparation.get(), "m", "b", 0);
    std::string body = BodyOf(preparation);
    size_t start = body.find("<leaf");
    return start != std::string::npos ? body.substr(start) : "";
}

} // namespace

TEST(Features, SingleOnesAndConjunctionsAreWrittenWhateverIsOn)
{
    EXPECT_THAT(LeafWith("b"), HasSubstr("<if-feature name=\"b\"/>"));
    std::string both = LeafWith("a and (b and m:c)");
    for (const char *name : {"a", "b", "c"})
        EXPECT_THAT(both, HasSubstr(std::string("<if-feature name=\"") + name + "\"/>"));
}

TEST(Features, OfAnExpressionAreAThousandAtMost)
{
    std::string chain = "a";
    for (int i = 1; i < 1000; ++i)
        chain += i % 2 == 0 ? " or a" : " and a";
    EXPECT_THAT(LeafWith(chain), HasSubstr("<leaf"));
    EXPECT_THAT(ReportsOf(std::string(kFeatures) + "leaf l { if-feature \"" + chain +
                          " or a\"; type string; }"),
                ElementsAre(HasSubstr("an expression of more than 1,000 features")));
}

TEST(Features, OtherExpressionsAreDecided)
{
    for (const char *on :
         {"a or b", "not b", "not (a and b)", "a or c", "b or not b", "not not a"}) {
        EXPECT_THAT(LeafWith(on), HasSubstr("<leaf")) << on;
        EXPECT_THAT(LeafWith(on), Not(HasSubstr("if-feature"))) << on;
    }
    for (const char *off : {"not a", "b or not a", "not (a or c)", "c and not a"})
        EXPECT_EQ(LeafWith(off), "") << off;
}

TEST(Features, WhatIsDecidedStandsBesideWhatIsWritten)
{
    std::string leaf = LeafWith("c and (a or b)");
    EXPECT_THAT(leaf, HasSubstr("<if-feature name=\"c\"/>"));
    EXPECT_THAT(leaf, Not(HasSubstr("name=\"a\"")));
}

TEST(Features, AnOpenExpressionIsAWarningAndTakenAsTrue)
{
    Preparation preparation;
    preparation.AddModule("m", std::string(kFeatures) +
                                   "\nleaf l { if-feature \"a or b\"; type string; }");
    EXPECT_THAT(BodyOf(preparation), HasSubstr("<leaf name=\"l\">\n    <type"));
    EXPECT_THAT(preparation.reports(), ElementsAre("m.yang:2:10: warning: \"a or b\" cannot be "
                                                   "expressed and is not decided: taken as true"));
}

TEST(Features, StarsStandForWhatNothingElseIsSaidOf)
{
    Preparation preparation;
    preparation.AddModule("m", std::string(kFeatures) +
                                   "leaf x { if-feature \"not a\"; type string; } "
                                   "leaf y { if-feature \"not b\"; type string; }");
    ZR_YANG_SetFeature(preparation.get(), "*", "*", 1);
    ZR_YANG_SetFeature(preparation.get(), "m", "b", 0);
    std::string body = BodyOf(preparation);
    EXPECT_THAT(body, Not(HasSubstr("<leaf name=\"x\">")));
    EXPECT_THAT(body, HasSubstr("<leaf name=\"y\">"));
}

TEST(Features, EnumsThatAreDecidedAreLeftOut)
{
    Preparation preparation;
    preparation.AddModule(
        "m", "feature a; leaf l { type enumeration { enum x { if-feature \"not a\"; } enum y; } }");
    ZR_YANG_SetFeature(preparation.get(), "m", "a", 1);
    std::string body = BodyOf(preparation);
    EXPECT_THAT(body, Not(HasSubstr("enum name=\"x\"")));
    EXPECT_THAT(body, HasSubstr("enum name=\"y\""));
}

TEST(Features, MalformedExpressionsAreReported)
{
    for (const char *bad : {"a b", "a or", "and", "(a", "a)", "not", "a and or b", "a|b"})
        EXPECT_THAT(ReportsOf(std::string(kFeatures) + "\nleaf l { if-feature '" + bad +
                              "'; type string; }"),
                    testing::Contains(std::string("2:10: error: \"") + bad +
                                      "\" is no expression of features"))
            << bad;
    EXPECT_THAT(
        ReportsOf1(std::string(kFeatures) + "\nleaf l { if-feature 'a and b'; type string; }"),
        ElementsAre("2:10: error: \"a and b\" is no expression of features"));
}

TEST(Features, ParenthesesHaveADepthThatIsEnough)
{
    std::string deep = std::string(1000, '(') + "a" + std::string(1000, ')');
    EXPECT_EQ(
        ReportsOf(std::string(kFeatures) + "leaf l { if-feature '" + deep + "'; type string; }")
            .size(),
        1u);
    std::string chain = "a";
    for (int i = 0; i < 20000; ++i)
        chain += " or b";
    EXPECT_EQ(
        ReportsOf(std::string(kFeatures) + "leaf l { if-feature '" + chain + "'; type string; }")
            .size(),
        1u);
}
