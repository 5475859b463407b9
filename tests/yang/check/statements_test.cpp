// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::Preparation;
using yangtest::ReportsOf;

TEST(StatementChecks, WhatIsCurrentRefersToWhatIsCurrent)
{
    EXPECT_THAT(
        ReportsOf("typedef d { type int8; status deprecated; } grouping o { status obsolete; }\n"
                  "identity i { status obsolete; } feature f { status deprecated; }\n"
                  "extension x { status deprecated; }\n"
                  "leaf a { type d; }\n"
                  "leaf b { type d; status deprecated; }\n"
                  "container c { status deprecated; uses o; leaf in { type d; } }\n"
                  "container e { status obsolete; uses o; leaf in { type d; } }\n"
                  "identity j { base i; }\n"
                  "leaf g { if-feature f; type int8; } container h { m:x; }"),
        ElementsAre("4:10: error: typedef \"d\" is deprecated and what refers to it is current",
                    "6:34: error: grouping \"o\" is obsolete and what refers to it is deprecated",
                    "8:14: error: identity \"i\" is obsolete and what refers to it is current",
                    "9:10: error: feature \"f\" is deprecated and what refers to it is current",
                    "9:51: error: extension \"x\" is deprecated and what refers to it is current"));
}

TEST(StatementChecks, OtherModulesDeprecateWhatTheyWant)
{
    Preparation preparation;
    preparation.AddModule("m", "import t { prefix t; } leaf a { type t:d; }");
    preparation.AddModule("t", "typedef d { type int8; status obsolete; }");
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_OK);
    EXPECT_THAT(preparation.reports(), IsEmpty());
}
