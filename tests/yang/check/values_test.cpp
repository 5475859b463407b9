// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::ReportsOf;

namespace {

struct Case {
    const char *type;
    std::vector<const char *> right, wrong;
};

std::vector<std::string> OfDefault(const std::string &type, const std::string &value)
{
    return ReportsOf(
        "leaf five { type int8 { range 5; } } identity i; identity j { base i; } "
        "identity k; typedef lower { type string { pattern '[a-z]*'; } }\nleaf l { type " +
        type + " default '" + value + "'; }");
}

} // namespace

TEST(Values, DefaultsAreOfTheirTypes)
{
    const Case cases[] = {
        {"int8;", {"-128", "127", "+5", "0x7f", "010"}, {"128", "x", "", "1.0"}},
        {"uint64;", {"18446744073709551615"}, {"-1", "18446744073709551616"}},
        {"uint8 { range '1..4|9'; }", {"1", "9"}, {"5", "0"}},
        {"decimal64 { fraction-digits 2; range '0..2.5'; }",
         {"2.50", "0", "1.25"},
         {"2.51", "1.234", "-1"}},
        {"boolean;", {"true", "false"}, {"1", "TRUE", ""}},
        {"string { length '2..3'; }", {"ab", "abc", "\xC3\xA9\xC3\xA9"}, {"a", "abcd"}},
        {"string { pattern '[a-z]+'; pattern '.*b.*'; }", {"abc", "b"}, {"", "ac", "aB"}},
        {"string { pattern '[a-z]+' { modifier invert-match; } }", {"", "A", "a1"}, {"ab"}},
        {"lower { pattern 'a.*'; }", {"ab"}, {"ba", "aB"}},
        {"enumeration { enum 'a b'; enum c; }", {"a b", "c"}, {"a", ""}},
        {"bits { bit a; bit b; }", {"", "a", "b a"}, {"c", "a a"}},
        {"binary { length 3; }", {"YWJj"}, {"YWI=", "YWJ", "Y!Jj"}},
        {"empty;", {}, {""}},
        {"identityref { base i; }", {"j", "m:j"}, {"i", "k", "x:j", "nothing"}},
        {"instance-identifier;", {"/m:l"}, {"l"}},
        {"leafref { path '../m:five'; }", {"5"}, {}},
        {"union { type int8; type enumeration { enum x; } }", {"5", "x"}, {"y"}},
    };
    for (const Case &one : cases) {
        for (const char *value : one.right)
            EXPECT_THAT(OfDefault(one.type, value), IsEmpty()) << one.type << " " << value;
        for (const char *value : one.wrong)
            EXPECT_THAT(OfDefault(one.type, value),
                        testing::Contains(testing::HasSubstr(std::string("default \"") + value +
                                                             "\" is no value of type")))
                << one.type << " " << value;
    }
}

TEST(Values, RefinedAndTypedefsDefaultsAreOfTheirTypesToo)
{
    EXPECT_THAT(
        ReportsOf(
            "\ntypedef t { type int8; default 300; }\ngrouping g { leaf a { type boolean; } }\n"
            "uses g { refine a { default maybe; } }"),
        ElementsAre("2:24: error: default \"300\" is no value of type \"int8\"",
                    "4:21: error: default \"maybe\" is no value of type \"boolean\""));
}

TEST(Values, ARestrictionLeavesRoomForTheDefaultThatItInherits)
{
    EXPECT_THAT(
        ReportsOf(
            "typedef t { type int8; default 50; }\nleaf a { type t { range '0..9'; } }\n"
            "leaf b { type t { range '0..9'; } default 5; } leaf c { type t { range '0..60'; } }"),
        ElementsAre(
            "2:10: error: the default \"50\" of type \"t\" is no value of its restriction here"));
}

TEST(Values, ADefaultDoesNotDependOnAFeature)
{
    EXPECT_THAT(
        ReportsOf(
            "feature f;\ntypedef t { type enumeration { enum a { if-feature f; } enum b; } }\n"
            "leaf l { type t; default a; } leaf m { type t; default b; }\n"
            "leaf n { type bits { bit x; bit y { if-feature f; } } default 'x y'; }"),
        ElementsAre("3:18: error: default \"a\" depends on a feature",
                    "4:55: error: default \"y\" depends on a feature"));
}
