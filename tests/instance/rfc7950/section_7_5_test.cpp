// RFC 7950, section 7.5: the container statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;

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

} // namespace datatest
