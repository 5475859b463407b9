// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.21: config and when.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

TEST(Config, KeepsStateOutOfAConfiguration)
{
    Schema schema("container c { leaf a { type string; } leaf s { config false; type string; } }");
    const char *data = "<c><a>1</a><s>2</s></c>";
    EXPECT_THAT(schema.Check(data, ZR_DATA_CONFIG_AND_STATE), IsEmpty());
    EXPECT_THAT(
        schema.Check(data),
        ElementsAre(
            "unknown-element /c/s: \"s\" is state data, which a configuration does not hold"));
}

TEST(Config, LeavesStateUnasked)
{
    Schema schema("container c { leaf s { config false; type string; mandatory true; } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("", ZR_DATA_CONFIG_AND_STATE),
                ElementsAre("missing-element /c/s: \"s\" is missing"));
}

TEST(When, ThatIsFalseLeavesNoPlaceForItsNode)
{
    Schema schema("container c { leaf kind { type string; } leaf a { when \"../kind = 'x'\"; type "
                  "string; } }");
    EXPECT_THAT(schema.Check("<c><kind>x</kind><a>1</a></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><kind>y</kind><a>1</a></c>"),
                ElementsAre("unknown-element /c/a: \"a\" has no place here: its condition "
                            "\"../kind = 'x'\" is false"));
}

TEST(When, DecidesWhetherAMissingNodeIsAskedFor)
{
    Schema schema("container c { leaf kind { type string; }"
                  "  leaf a { when \"../kind = 'x'\"; type string; mandatory true; } }");
    EXPECT_THAT(schema.Check("<c><kind>y</kind></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><kind>x</kind></c>"),
                ElementsAre("missing-element /c/a: \"a\" is missing"));
}

TEST(When, DecidesWhetherADefaultIsInUse)
{
    Schema schema(
        "container c { must \"count(a) = count(kind[. = 'x'])\"; leaf kind { type string; }"
        "  leaf a { when \"../kind = 'x'\"; type string; default 1; } }");
    EXPECT_THAT(schema.Check("<c><kind>y</kind></c><!-- -->"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><kind>x</kind></c>"), IsEmpty());
}

TEST(When, OfACaseIsEvaluatedAtTheParent)
{
    Schema schema("container c { leaf kind { type string; } choice o {"
                  "  case x { when \"kind = 'x'\"; leaf a { type string; } } } }");
    EXPECT_THAT(schema.Check("<c><kind>x</kind><a>1</a></c>"), IsEmpty());
    EXPECT_EQ(schema.Check("<c><kind>y</kind><a>1</a></c>").size(), 1u);
}

TEST(When, OfAChoiceIsEvaluatedAtTheParent)
{
    Schema schema("container c { leaf kind { type string; } choice o { when \"kind = 'x'\";"
                  "  mandatory true; leaf a { type string; } } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<c><kind>x</kind><a>1</a></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><kind>x</kind></c>"), SizeIs(1));
    EXPECT_THAT(schema.Check("<c><a>1</a></c>"), ElementsAre(StartsWith("unknown-element /c/a: ")));
}

TEST(When, AtTheTopIsEvaluatedAtTheRoot)
{
    Schema schema("leaf on { type empty; } leaf a { when '/on'; type int8; }"
                  " choice o { when 'on'; leaf b { type int8; } }");
    EXPECT_THAT(schema.Check("<on/><a>1</a><b>1</b>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a><b>1</b>"), SizeIs(2));
}

TEST(When, SeesItsNodeAsOneWithoutValueAndChildren)
{
    Schema schema("leaf a { when \"string(.) = ''\"; type string; }"
                  " container c { when 'not(b)'; leaf b { type int8; } }"
                  " leaf-list l { when 'count(../l) = 1'; type int8; }");
    EXPECT_THAT(schema.Check("<a>x</a><c><b>1</b></c><l>1</l><l>2</l>"), IsEmpty());
    Schema other("leaf a { when \". = 'x'\"; type string; } container c { when 'b';"
                 "  leaf b { type int8; } } leaf-list l { when 'count(../l) = 2'; type int8; }");
    EXPECT_THAT(other.Check("<a>x</a><c><b>1</b></c><l>1</l><l>2</l>"),
                ElementsAre(StartsWith("unknown-element /a: "), StartsWith("unknown-element /c: "),
                            StartsWith("unknown-element /l[.='1']: "),
                            StartsWith("unknown-element /l[.='2']: ")));
}

TEST(When, OfAChoiceOrCaseDoesNotSeeItsOwnNodes)
{
    Schema schema("container c { choice o { when 'not(a)'; leaf a { type int8; } }"
                  "  choice p { case x { when 'not(b)'; leaf-list b { type int8; } } } }");
    EXPECT_THAT(schema.Check("<c><b>1</b><a>1</a><b>2</b></c>"), IsEmpty());
    Schema other("container c { choice o { when 'a'; leaf a { type int8; } }"
                 "  choice p { case x { when 'count(b) = 2'; leaf-list b { type int8; } } } }");
    EXPECT_THAT(other.Check("<c><b>1</b><a>1</a><b>2</b></c>"), SizeIs(3));
}

TEST(When, LeavesTheDataAsItWasForOtherConditions)
{
    Schema schema(
        "list l { when 'not(k)'; key k; leaf k { type int8; } }"
        " choice o { when 'on'; leaf-list a { type int8; } container b { leaf x { type int8; } } }"
        " leaf on { type empty; }"
        " leaf all { type string; must \"concat(count(../l/k), count(../a), local-name(../*[2]),"
        " ../a[2]) = .\"; }");
    EXPECT_THAT(schema.Check("<l><k>1</k></l><a>4</a><on/><a>5</a><l><k>2</k></l><all>22a5</all>"),
                IsEmpty());
}

TEST(When, IsEvaluatedAfterTheDefaultsThatItLooksAt)
{
    Schema schema("container c { leaf a { when '../b = 1'; type int8; default 1; }"
                  "  leaf b { when '../d = 1'; type int8; default 1; }"
                  "  leaf d { type int8; default 1; } }"
                  " leaf n { type int8; must '. = count(../c/*)'; }");
    EXPECT_THAT(schema.Check("<n>3</n>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><d>2</d></c><n>1</n>"), IsEmpty());
}

TEST(When, OfAContainerMayNameWhatComesIntoUseInIt)
{
    Schema schema("container p { when 'not(x = 2) or ../b'; leaf x { type int8; default 1; } }"
                  " leaf b { when '../d'; type int8; default 1; } leaf d { type int8; default 1; }"
                  " leaf seen { type int8; must '. = ../p/x'; }");
    EXPECT_THAT(schema.Check("<seen>1</seen>"), IsEmpty());
}

TEST(When, IsEvaluatedAfterTheConditionsOfWhatItLooksAt)
{
    Schema schema("container c { leaf a { when 'not(../b)'; type int8; default 1; }"
                  "  leaf b { when '../on'; type int8; default 1; } leaf on { type empty; } }"
                  " leaf seen { type string; must '. = concat(count(../c/a), count(../c/b))'; }");
    EXPECT_THAT(schema.Check("<seen>10</seen>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><on/></c><seen>01</seen>"), IsEmpty());
}

TEST(When, ThatIsFalseLeavesANodeOutOfOtherConditions)
{
    Schema schema("leaf a { when '../b'; type int8; mandatory true; }"
                  " container b { when '../on'; leaf x { type int8; } } leaf on { type empty; }");
    EXPECT_THAT(schema.Check(""), IsEmpty()) << "the container is not there";
    EXPECT_THAT(schema.Check("<on/>"), ElementsAre("missing-element /a: \"a\" is missing"));
}

} // namespace datatest
