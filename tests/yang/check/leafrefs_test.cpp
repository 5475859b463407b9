// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::Preparation;
using yangtest::ReportsOf;

TEST(Leafrefs, LeadToLeafs)
{
    EXPECT_THAT(ReportsOf("\nlist l { key k; leaf k { type string; } choice h { case c { leaf in { "
                          "type string; } } }\n"
                          "leaf a { type leafref { path '../k'; } } leaf b { type leafref { path "
                          "'/l[k = current()/../k]/in'; } }\n"
                          "leaf c { type leafref { path '../../l/k'; } } leaf d { type leafref { "
                          "path '/m:l/m:k'; } } }"),
                IsEmpty());
    EXPECT_THAT(ReportsOf("\ncontainer c { leaf a { type leafref { path '../b'; } }\nleaf d { type "
                          "leafref { path '/c'; } }\n"
                          "leaf e { type leafref { path '../../../c'; } }\nleaf f { type leafref { "
                          "path '/x:c'; } } }"),
                testing::IsSupersetOf(
                    {"2:39: error: the path of leafref \"a\" leads to nothing: there is no \"b\"",
                     "3:25: error: the path of leafref \"d\" leads to the container \"c\", which "
                     "is no leaf",
                     "4:25: error: the path of leafref \"e\" leads to nothing: there is no \"..\"",
                     "5:25: error: unknown prefix \"x\""}));
}

TEST(Leafrefs, OfConfigurationLeadToConfiguration)
{
    EXPECT_THAT(
        ReportsOf(
            "\nleaf s { type string; config false; }\nleaf a { type leafref { path '/s'; } }\n"
            "leaf b { type leafref { path '/s'; require-instance false; } }"),
        ElementsAre(
            "3:25: error: leafref \"a\" is configuration and leads to \"s\", which is not"));
}

TEST(Leafrefs, LookThroughInputAndOutput)
{
    EXPECT_THAT(
        ReportsOf(
            "list l { key k; leaf k { type string; } action a { input { leaf x { type string; }\n"
            "leaf y { type leafref { path '../x'; } } leaf z { type leafref { path '../../k'; } } "
            "} } }"),
        IsEmpty());
}

TEST(Leafrefs, OfAGroupingAreFollowedWhereItIsUsed)
{
    const char *grouping = "\ngrouping g { leaf a { type leafref { path '../../k'; } } }\n";
    EXPECT_THAT(ReportsOf(grouping), IsEmpty());
    EXPECT_THAT(
        ReportsOf(std::string(grouping) + "leaf k { type string; } container c { uses g; }"),
        IsEmpty());
    EXPECT_THAT(
        ReportsOf(std::string(grouping) + "container c { uses g; }"),
        ElementsAre("2:38: error: the path of leafref \"a\" leads to nothing: there is no \"k\""));
}

TEST(Leafrefs, InTypedefsAndUnionsAreFollowedToo)
{
    EXPECT_THAT(
        ReportsOf("\ntypedef t { type leafref { path '/m:x'; } }\nleaf a { type union { type int8; "
                  "type t; } }"),
        ElementsAre(
            "2:28: error: the path of leafref \"a\" leads to nothing: there is no \"m:x\""));
}

TEST(Leafrefs, FindNodesThatAugmentsAdd)
{
    Preparation preparation;
    preparation.AddModule("m", "import o { prefix o; } augment /o:c { leaf x { type string; } leaf "
                               "y { type leafref { path '../x'; } }\n"
                               "leaf z { type leafref { path '/o:c/m:x'; } } leaf w { type leafref "
                               "{ path '../o:own'; } } leaf v { type leafref { path '../../top'; } "
                               "} } leaf top { type string; }");
    preparation.AddModule("o", "container c { leaf own { type string; } }");
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_OK);
    EXPECT_THAT(preparation.reports(), IsEmpty());
}

TEST(Leafrefs, HaveThePathsOfLeafrefsAlone)
{
    const auto of = [](const std::string &path) {
        return ReportsOf("list l { key k; leaf k { type string; } leaf v { type string; } }\n"
                         "leaf a { type leafref { path \"" +
                         path + "\"; } } leaf s { type string; }");
    };
    const char *what = "2:25: error: \"";
    for (const char *path :
         {"../l/k", "/m:l[m:k = current()/../s]/v", " ../l [k=current()/../m:s] /v",
          "/l[k=current()/../../l/k][v=current()/../s]/k"})
        EXPECT_THAT(of(path), IsEmpty()) << path;
    const std::pair<std::string, std::string> cases[] = {
        {"k", "\"k\""},
        {"..", "end"},
        {"../l/../s", "\"..\""},
        {"/l/*", "\"*\""},
        {"//k", "\"//\""},
        {"/l[k='x']/v", "\"'x'\""},
        {"/l[1]/v", "\"1\""},
        {"/l[k=current()/s]/v", "\"s\""},
        {"/l[k=current()/../s and v=current()/../s]/v", "\"and\""},
        {"/l/k | /s", "\"|\""},
        {"deref(.)/../k", "\"deref\""},
        {"/child::l/k", "\"child\""},
    };
    for (const auto &[path, token] : cases)
        EXPECT_THAT(of(path),
                    ElementsAre(what + path + "\" is no path of a leafref: unexpected " + token));
}

TEST(Leafrefs, DoNotLeadToThemselves)
{
    EXPECT_THAT(
        ReportsOf(
            "\nleaf a { type leafref { path '../b'; } }\nleaf b { type leafref { path '/c'; } }"
            "\nleaf c { type leafref { path '../a'; } }\nleaf d { type leafref { path '/a'; } }"
            "\nleaf e { type leafref { path '/e'; } }"),
        ElementsAre("2:25: error: leafref \"a\" leads to itself: a, b, c, a",
                    "6:25: error: leafref \"e\" leads to itself: e, e"));
}

TEST(Leafrefs, MayStandInLongChains)
{
    std::string body = "leaf l0 { type string; }";
    for (int i = 1; i < 20000; ++i)
        body += "leaf l" + std::to_string(i) + " { type leafref { path '../l" +
                std::to_string(i - 1) + "'; } }\n";
    EXPECT_THAT(ReportsOf(body), IsEmpty());
}

TEST(Leafrefs, HaveDefaultsOfTheTypeThatTheyLeadTo)
{
    EXPECT_THAT(ReportsOf("\nleaf a { type int8; } leaf b { type leafref { path '../a'; } }\n"
                          "leaf c { type leafref { path '../b'; } default 5; }\n"
                          "leaf d { type leafref { path '../b'; } default x; }"),
                ElementsAre("4:40: error: default \"x\" is no value of type \"int8\""));
}
