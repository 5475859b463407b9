// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::ReportsOf;

TEST(Scopes, ReportNamesThatAreNotKnown)
{
    EXPECT_THAT(
        ReportsOf("\nleaf a { type t; }\nleaf b { type x:t; }\nuses g;\nidentity i { base j; }\n"
                  "leaf c { if-feature f; type string; }\nm:e;\nx:e;"),
        ElementsAre("2:10: error: unknown typedef \"t\"", "3:10: error: unknown prefix \"x\"",
                    "4:1: error: unknown grouping \"g\"", "5:14: error: unknown identity \"j\"",
                    "6:10: error: unknown feature \"f\"", "7:1: error: unknown extension \"m:e\"",
                    "8:1: error: unknown prefix \"x\""));
}

TEST(Scopes, ReportNamesThatAreDefinedTwice)
{
    EXPECT_THAT(
        ReportsOf(
            "\ntypedef t { type string; } typedef t { type string; }\ngrouping g; grouping g;\n"
            "feature f; feature f;\nidentity i; identity i;\nextension e; extension e;"),
        ElementsAre("2:28: error: typedef \"t\" is defined twice",
                    "3:13: error: grouping \"g\" is defined twice",
                    "4:12: error: feature \"f\" is defined twice",
                    "5:13: error: identity \"i\" is defined twice",
                    "6:14: error: extension \"e\" is defined twice"));
}

TEST(Scopes, ReportNamesThatHideOthers)
{
    EXPECT_THAT(ReportsOf("\ntypedef t { type string; }\ncontainer c { typedef t { type int8; } "
                          "container d { typedef u { type int8; } } typedef u { type int8; } }\n"
                          "typedef int8 { type string; }"),
                ElementsAre("3:15: error: typedef \"t\" is defined around it too",
                            "3:54: error: typedef \"u\" is defined around it too",
                            "4:1: error: \"int8\" is the name of a built-in type"));
}

TEST(Scopes, TakeTheInnermostDefinition)
{
    EXPECT_THAT(
        ReportsOf("container a { typedef t { type int8; } leaf l { type t; default 5; } }\n"
                  "container b { typedef t { type string; } leaf l { type t; default x; } }\n"),
        IsEmpty());
    EXPECT_THAT(ReportsOf("\ncontainer a { typedef t { type int8; } }\nleaf l { type t; }"),
                ElementsAre("3:10: error: unknown typedef \"t\""));
}

TEST(Scopes, ReportDefinitionsThatNeedThemselves)
{
    EXPECT_THAT(
        ReportsOf("\ntypedef a { type b; } typedef b { type union { type string; type a; } }\n"
                  "grouping g { uses h; } grouping h { container c { uses g; } }\nidentity i { "
                  "base i; }\n"
                  "feature f { if-feature \"not g\"; } feature g { if-feature f; }\nuses g;"),
        ElementsAre("2:1: error: typedef \"a\" needs itself: a, b, a",
                    "3:1: error: grouping \"g\" needs itself: g, h, g",
                    "4:1: error: identity \"i\" needs itself: i, i",
                    "5:1: error: feature \"f\" needs itself: f, g, f"));
}

TEST(Scopes, ReportArgumentsOfExtensionsThatDoNotFit)
{
    EXPECT_THAT(ReportsOf("\nextension e; extension f { argument a; }\nm:e x;\nm:f;"),
                ElementsAre("3:1: error: extension \"m:e\" takes no argument",
                            "4:1: error: extension \"m:f\" needs an argument"));
}
