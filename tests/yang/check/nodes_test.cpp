// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::ReportsOf;
using yangtest::ReportsOf1;

TEST(NodeChecks, ConfigurationStandsInConfiguration)
{
    EXPECT_THAT(ReportsOf("\ncontainer c { config false; leaf a { type string; config true; } }\n"
                          "rpc r { input { leaf b { type string; config true; } } }"),
                ElementsAre("2:51: error: leaf \"a\" is configuration in a parent that is not"));
}

TEST(NodeChecks, SeeWhatARefineDoes)
{
    EXPECT_THAT(ReportsOf("\ngrouping g { container c { leaf a { type string; config true; } } }\n"
                          "uses g { refine c { config false; } }"),
                ElementsAre("2:50: error: leaf \"a\" is configuration in a parent that is not"));
}

TEST(NodeChecks, AMandatoryLeafHasNoDefault)
{
    EXPECT_THAT(ReportsOf("\nleaf a { type string; mandatory true; default x; }"),
                ElementsAre("2:39: error: leaf \"a\" is mandatory and has a default"));
    EXPECT_THAT(ReportsOf("\nleaf-list a { type string; min-elements 1; default x; }"),
                ElementsAre("2:44: error: leaf-list \"a\" needs elements and has a default"));
}

TEST(NodeChecks, DefaultsOfALeafListDiffer)
{
    EXPECT_THAT(ReportsOf("\nleaf-list a { type string; default x; default x; }"),
                ElementsAre("2:39: error: default \"x\" stands here twice"));
}

TEST(NodeChecks, AListNeedsNoMoreElementsThanItMayHave)
{
    EXPECT_THAT(ReportsOf("\nleaf-list a { type string; min-elements 4; max-elements 3; }"),
                ElementsAre("2:28: error: leaf-list \"a\" needs more elements than it may have"));
}

TEST(NodeChecks, TheDefaultOfAChoiceIsOneOfItsCases)
{
    EXPECT_THAT(
        ReportsOf(
            "\nchoice h { default z; leaf a { type string; } }\n"
            "choice i { default b; mandatory true; leaf b { type string; mandatory true; } }"),
        ElementsAre("2:12: error: choice \"h\" has no case \"z\"",
                    "3:12: error: choice \"i\" is mandatory and has a default",
                    "3:12: error: the default case \"b\" has the mandatory node \"b\""));
}

TEST(NodeChecks, ActionsStandNeitherInMessagesNorInKeylessLists)
{
    EXPECT_THAT(
        ReportsOf("\nlist l { config false; action a; }\ngrouping g { container c { action b; } }\n"
                  "rpc r { input { uses g; } }"),
        ElementsAre("2:24: error: action \"a\" stands in the keyless list \"l\"",
                    "3:28: error: action \"b\" stands in rpc \"r\""));
}

TEST(NodeChecks, AlsoSeeGroupingsThatNothingUses)
{
    EXPECT_THAT(ReportsOf("\ngrouping g { leaf a { type int8; default 300; } list l { key x; } }"),
                ElementsAre("2:34: error: default \"300\" is no value of type \"int8\"",
                            "2:58: error: list \"l\" has no leaf \"x\" for its key"));
}

TEST(ListChecks, AConfiguredListHasAKeyOfItsLeafs)
{
    EXPECT_THAT(
        ReportsOf("\nlist a { leaf x { type string; } }\nlist b { key 'x y'; leaf x { type string; "
                  "} container y; }\n"
                  "list c { key 'x x z'; leaf x { type string; } }\nlist d { config false; }"),
        ElementsAre("2:1: error: list \"a\" is configuration and has no key",
                    "3:10: error: key \"y\" is no leaf", "4:10: error: key \"x\" is named twice",
                    "4:10: error: list \"c\" has no leaf \"z\" for its key"));
}

TEST(ListChecks, AKeyIsThereAlways)
{
    EXPECT_THAT(
        ReportsOf("\nfeature f; list a { key 'x y z'; leaf x { type string; if-feature f; } leaf y "
                  "{ type string; when '1'; }\n"
                  "leaf z { type string; config false; } }"),
        ElementsAre(
            "2:21: error: key \"x\" depends on a feature",
            "2:21: error: key \"y\" depends on a condition",
            "2:21: error: key \"z\" is configuration and its list is not, or the other way round"));
}

TEST(ListChecks, AKeyOfYang1IsNotEmpty)
{
    const char *body = "\nlist a { key x; leaf x { type empty; } }";
    EXPECT_THAT(ReportsOf1(body), ElementsAre("2:10: error: key \"x\" is of type \"empty\""));
    EXPECT_THAT(ReportsOf(body), IsEmpty());
}

TEST(ListChecks, UniqueNamesLeafsBelow)
{
    EXPECT_THAT(
        ReportsOf(
            "\nlist a { key k; leaf k { type string; } unique 'k c/d'; container c { leaf d { type "
            "string; } }\n"
            "unique 'c'; unique 'c/x'; unique 'l/k'; list l { key k; leaf k { type string; } }\n"
            "unique 'k s'; leaf s { type string; config false; } }"),
        ElementsAre("3:1: error: list \"a\" has no leaf \"c\" to be unique",
                    "3:13: error: list \"a\" has no leaf \"c/x\" to be unique",
                    "3:27: error: list \"a\" has no leaf \"l/k\" to be unique",
                    "4:1: error: \"k s\" mixes configuration and state"));
}
