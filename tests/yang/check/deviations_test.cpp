// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using yangtest::BodyOf;
using yangtest::Preparation;

namespace {

constexpr const char *kTarget =
    "container c { leaf a { type int8; default 4; } leaf b { type string; units x; must '1'; } "
    "list l { key k; unique u; leaf k { type string; } leaf u { type string; } } }";

std::vector<std::string> OfDeviation(const std::string &path, const std::string &deviate)
{
    Preparation preparation;
    preparation.AddModule("m",
                          "import t { prefix t; }\ndeviation " + path + " { " + deviate + " }");
    preparation.AddModule("t", kTarget);
    preparation.Prepare("m");
    return preparation.reports();
}

} // namespace

TEST(Deviations, OfWhatIsThereAreSilent)
{
    EXPECT_THAT(OfDeviation("/t:c/t:a", "deviate not-supported;"), IsEmpty());
    EXPECT_THAT(OfDeviation("/t:c/t:a", "deviate replace { default 5; type int16; config false; }"),
                IsEmpty());
    EXPECT_THAT(
        OfDeviation("/t:c/t:b",
                    "deviate delete { units x; must '1'; } deviate add { default y; must '2'; }"),
        IsEmpty());
    EXPECT_THAT(
        OfDeviation("/t:c/t:l", "deviate delete { unique u; } deviate add { max-elements 4; }"),
        IsEmpty());
}

TEST(Deviations, OfWhatIsNotThereAreReported)
{
    EXPECT_THAT(OfDeviation("/t:c/t:x", "deviate not-supported;"),
                ElementsAre("m.yang:2:1: error: \"/t:c/t:x\" leads to nothing: there is no \"x\""));
    EXPECT_THAT(OfDeviation("/t:c/t:a", "deviate add { default 5; }"),
                ElementsAre("m.yang:2:36: error: leaf \"a\" already has a \"default\""));
    EXPECT_THAT(OfDeviation("/t:c/t:a", "deviate replace { units y; }"),
                ElementsAre("m.yang:2:40: error: leaf \"a\" has no \"units\""));
    EXPECT_THAT(OfDeviation("/t:c/t:b", "deviate delete { units y; }"),
                ElementsAre("m.yang:2:39: error: leaf \"b\" has no such \"units\""));
    EXPECT_THAT(OfDeviation("/t:c", "deviate add { default y; }"),
                ElementsAre("m.yang:2:32: error: container \"c\" cannot have a \"default\""));
    EXPECT_THAT(OfDeviation("/t:c/t:a", "deviate replace { default 300; }"),
                ElementsAre("m.yang:2:40: error: default \"300\" is no value of type \"int8\""));
}

TEST(Deviations, AreWrittenWithAPrefixOnEachStep)
{
    Preparation preparation;
    preparation.AddModule("m", "import t { prefix t; } deviation /t:c/t:a { description why; "
                               "deviate replace { type uint8; } }");
    preparation.AddModule("t", kTarget);
    EXPECT_EQ(BodyOf(preparation), R"(  <deviation target-node="/t:c/t:a">
    <description>
      <text>why</text>
    </description>
    <deviate value="replace">
      <type name="uint8"/>
    </deviate>
  </deviation>
)");
}

TEST(Deviations, AgreeWithEachOther)
{
    const auto twice = [](const std::string &first, const std::string &second) {
        return OfDeviation("/t:c/t:a", first + " }\ndeviation /t:c/t:a { " + second);
    };
    EXPECT_THAT(twice("deviate replace { type int16; }", "deviate replace { default 7; }"),
                IsEmpty());
    EXPECT_THAT(twice("deviate delete { default 4; }", "deviate add { default 5; }"), IsEmpty());
    EXPECT_THAT(twice("deviate add { must '1'; }", "deviate add { must '2'; }"), IsEmpty());
    EXPECT_THAT(twice("deviate replace { default 5; }", "deviate replace { default 6; }"),
                ElementsAre("m.yang:3:40: error: leaf \"a\" is deviated twice in its \"default\""));
    EXPECT_THAT(
        twice("deviate not-supported;", "deviate replace { default 6; }"),
        ElementsAre("m.yang:3:22: error: leaf \"a\" is not supported, and is deviated besides"));
    EXPECT_THAT(
        twice("deviate add { units x; }", "deviate not-supported;"),
        ElementsAre("m.yang:3:22: error: leaf \"a\" is not supported, and is deviated besides"));
}
