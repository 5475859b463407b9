// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.5: the container statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

TEST(Container, MayBeEmptyOrLeftOut)
{
    Schema schema("container c { leaf a { type string; } }");
    EXPECT_THAT(schema.Check(""), ElementsAre());
    EXPECT_THAT(schema.Check("<c/>"), ElementsAre());
}

TEST(Container, StandsOnce)
{
    Schema schema("container c { leaf a { type string; } }");
    EXPECT_THAT(schema.Check("<c/><c/>"),
                ElementsAre("bad-element /c: \"c\" stands here a second time"));
}

TEST(Container, HoldsNoText)
{
    Schema schema("container c { leaf a { type string; } }");
    EXPECT_THAT(schema.Check("<c> <a>x</a> y </c>"),
                ElementsAre("bad-element /c: text stands among elements"));
}

TEST(Container, OfPresenceAsksForItsChildrenOnlyWhereItStands)
{
    Schema schema("container c { presence \"on\"; leaf a { type string; mandatory true; } }");
    EXPECT_THAT(schema.Check(""), ElementsAre());
    EXPECT_THAT(schema.Check("<c/>"), ElementsAre("missing-element /c/a: \"a\" is missing"));
}

TEST(Container, WithoutPresenceAsksForItsChildrenWhereverItsParentStands)
{
    Schema schema("container c { container d { leaf a { type string; mandatory true; } } }");
    EXPECT_THAT(schema.Check(""), ElementsAre("missing-element /c/d/a: \"a\" is missing"));
}

TEST(Must, ThatIsFalseIsToldWithTheMessageOfTheSchema)
{
    Schema schema("container c { leaf type { type string; } leaf mtu { type uint32; }"
                  "  must \"type != 'ethernet' or (type = 'ethernet' and mtu = 1500)\" {"
                  "    error-message \"an ethernet MTU must be 1500\"; error-app-tag mtu; } }");
    EXPECT_THAT(schema.Check("<c><type>ethernet</type><mtu>1500</mtu></c>"), ElementsAre());
    EXPECT_THAT(schema.Check("<c><type>ethernet</type><mtu>1400</mtu></c>"),
                ElementsAre("operation-failed[mtu] /c: an ethernet MTU must be 1500"));
}

TEST(Must, WithoutAMessageIsToldWithItsCondition)
{
    Schema schema("container c { leaf a { type string; must \". = 'x'\"; } }");
    EXPECT_THAT(
        schema.Check("<c><a>y</a></c>"),
        ElementsAre("operation-failed[must-violation] /c/a: the condition \". = 'x'\" is false"));
}

TEST(Must, SeesDefaultsThatAreInUse)
{
    Schema schema("container c { leaf a { type string; must \"../b = '5'\"; }"
                  "  leaf b { type int8; default 5; } }");
    EXPECT_THAT(schema.Check("<c><a>y</a></c>"), ElementsAre());
    EXPECT_THAT(schema.Check("<c><a>y</a><b>6</b></c>"), testing::SizeIs(1));
}

TEST(Must, IsAskedOfEachNodeThatTheDataHas)
{
    Schema schema("list l { key k; must \"v != 'bad'\"; leaf k { type string; }"
                  "  leaf v { type string; must \"string-length(.) = 3\"; } }"
                  " leaf-list n { type int8; must '. < 5'; }");
    EXPECT_THAT(schema.Check("<l><k>1</k><v>yes</v></l><n>1</n><n>2</n>"), IsEmpty());
    EXPECT_THAT(schema.Check("<l><k>1</k><v>bad</v></l><l><k>2</k><v>long</v></l><n>1</n><n>5</n>"
                             "<n>6</n>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /l[k='1']: "),
                            StartsWith("operation-failed[must-violation] /l[k='2']/v: "),
                            StartsWith("operation-failed[must-violation] /n[.='5']: "),
                            StartsWith("operation-failed[must-violation] /n[.='6']: ")));
    EXPECT_THAT(schema.Check(""), IsEmpty());
}

TEST(Must, OfOneNodeIsToldForEachThatIsFalse)
{
    Schema schema("leaf a { type int8; must '. > 3'; must '. < 9'; must '. mod 2 = 0'; }");
    EXPECT_THAT(schema.Check("<a>4</a>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a>"), SizeIs(2));
}

TEST(Must, OfAContainerWithoutPresenceIsAskedAlsoWhereItDoesNotStand)
{
    Schema schema("container n { must '../on'; } leaf on { type empty; }"
                  " container p { presence x; must '../on'; }");
    EXPECT_THAT(schema.Check("<on/>"), IsEmpty());
    EXPECT_THAT(schema.Check(""), ElementsAre(StartsWith("operation-failed[must-violation] /n: ")));
    EXPECT_THAT(schema.Check("<p/>"),
                UnorderedElementsAre(StartsWith("operation-failed[must-violation] /p: "),
                                     StartsWith("operation-failed[must-violation] /n: ")));
}

TEST(Must, OfADefaultThatIsInUseIsAsked)
{
    Schema schema(
        "leaf a { type int8; default 5; must '../b < .'; } leaf b { type int8; default 1; }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<b>7</b>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /a: ")));
}

TEST(Must, OfStateIsAskedOfStateAlone)
{
    Schema schema("leaf a { type int8; } leaf s { config false; type int8; must '../a = .'; }");
    EXPECT_THAT(schema.Check("<a>1</a><s>1</s>", ZR_DATA_CONFIG_AND_STATE), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a><s>2</s>", ZR_DATA_CONFIG_AND_STATE),
                ElementsAre(StartsWith("operation-failed[must-violation] /s: ")));
}

} // namespace datatest
