// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.6: the leaf statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(Leaf, StandsOnce)
{
    Schema schema("leaf a { type string; }");
    EXPECT_THAT(schema.Check("<a>x</a>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>x</a><a>y</a>"),
                ElementsAre("bad-element /a: \"a\" stands here a second time"));
}

TEST(Leaf, HoldsNoElement)
{
    Schema schema("leaf a { type string; }");
    EXPECT_THAT(schema.Check("<a><b/></a>"),
                ElementsAre("bad-element /a/b: an element stands in leaf \"a\""));
}

TEST(Leaf, HasTheTextOfAllItsPieces)
{
    Schema schema("leaf a { type string { length 3; } must \". = 'xyz'\"; }");
    EXPECT_THAT(schema.Check("<a>x<!-- c --><![CDATA[y]]>z</a>"), IsEmpty());
}

TEST(Leaf, ThatIsMandatoryIsMissed)
{
    Schema schema(
        "list l { key k; leaf k { type string; } leaf a { type string; mandatory true; } }");
    EXPECT_THAT(schema.Check("<l><k>1</k></l>"),
                ElementsAre("missing-element /l[k='1']/a: \"a\" is missing"));
}

TEST(Leaf, HasNoDefaultInACaseThatIsNotChosen)
{
    Schema schema("container c { must \"not(b)\"; choice o { case x { leaf a { type string; } }"
                  "  case y { leaf b { type string; default 1; } } } }");
    EXPECT_THAT(schema.Check("<c/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a>1</a></c>"), IsEmpty());
}

TEST(Leaf, HasItsDefaultInTheDefaultCaseAndInTheChosenOne)
{
    Schema schema("container c { must \"b = '1'\"; choice o { default y;"
                  "  case x { leaf a { type string; } }"
                  "  case y { leaf b { type string; default 1; } leaf d { type string; } } } }");
    EXPECT_THAT(schema.Check("<c/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><d>1</d></c>"), IsEmpty());
    EXPECT_EQ(schema.Check("<c><a>1</a></c>").size(), 1u);
}

TEST(Leaf, TakesTheDefaultOfItsType)
{
    Schema schema("typedef t { type int8; default 0x10; } container c { must \"a = 16\"; leaf a { "
                  "type t; } }");
    EXPECT_THAT(schema.Check("<c/>"), IsEmpty());
}

TEST(Leaf, ThatIsMandatoryAtTheTopIsAlwaysAskedFor)
{
    Schema schema("leaf a { type string; mandatory true; }");
    EXPECT_THAT(schema.Check("<a>1</a>"), IsEmpty());
    EXPECT_THAT(schema.Check(""), ElementsAre("missing-element /a: \"a\" is missing"));
}

TEST(Leaf, ThatIsMandatoryInACaseIsAskedForWhereAnotherNodeOfTheCaseIs)
{
    Schema schema(
        "choice o { case x { leaf b { type empty; }"
        "   container n { leaf a { type string; mandatory true; } leaf c { type empty; } } }"
        "  leaf y { type empty; } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<y/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<b/><n><a>1</a></n>"), IsEmpty());
    EXPECT_THAT(schema.Check("<b/>"), ElementsAre("missing-element /n/a: \"a\" is missing"));
    EXPECT_THAT(schema.Check("<n><c/></n>"), ElementsAre("missing-element /n/a: \"a\" is missing"));
}

TEST(Leaf, HasItsDefaultAtTheTopAndInContainersWithoutPresence)
{
    Schema schema("leaf a { type int8; default 1; } container n { container i {"
                  "  leaf b { type int8; default 2; } } }"
                  " leaf sum { type int8; must '. = ../a + ../n/i/b'; }");
    EXPECT_THAT(schema.Check("<sum>3</sum>"), IsEmpty());
    EXPECT_THAT(schema.Check("<sum>3</sum><a>2</a>"), SizeIs(1)) << "its value stands for it";
}

TEST(Leaf, HasItsDefaultInEachEntryAndContainerWithPresenceThatIsThere)
{
    Schema schema("list l { key k; leaf k { type string; } leaf a { type int8; default 1; } }"
                  " container p { presence x; leaf b { type int8; default 1; } }"
                  " leaf n { type int8; must '. = count(../l/a) + count(../p/b)'; }");
    EXPECT_THAT(schema.Check("<n>0</n>"), IsEmpty());
    EXPECT_THAT(schema.Check("<l><k>1</k></l><l><k>2</k></l><p/><n>3</n>"), IsEmpty());
    EXPECT_THAT(schema.Check("<p/><n>0</n>"), SizeIs(1));
}

TEST(Leaf, HasItsDefaultInAContainerOfTheChosenCase)
{
    Schema schema("container c { choice o { case x { leaf a { type empty; }"
                  "   container n { leaf b { type int8; default 1; } } } leaf y { type empty; } }"
                  "  must 'count(n/b) = count(a)'; }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<c><y/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><n/></c>"), SizeIs(1)) << "the case is chosen by any node";
}

TEST(Leaf, WithItsOwnDefaultDoesNotTakeThatOfItsType)
{
    Schema schema("typedef t { type int8; default 1; }"
                  " leaf a { type t; default 2; must '. = 2'; }"
                  " leaf b { type t; mandatory true; }");
    EXPECT_THAT(schema.Check("<b>1</b>"), IsEmpty());
    EXPECT_THAT(schema.Check(""), ElementsAre("missing-element /b: \"b\" is missing"))
        << "what is mandatory takes no default from its type";
}

TEST(Leaf, ThatIsALeafOfAKeyTakesNoDefault)
{
    Schema schema("typedef t { type string; default x; }"
                  " list l { key \"a b\"; leaf a { type t; } leaf b { type int8; default 1; } }");
    EXPECT_THAT(schema.Check("<l><a>1</a><b>2</b></l>"), IsEmpty());
    EXPECT_THAT(schema.Check("<l/>"), ElementsAre("missing-element /l[1]/a: key \"a\" is missing",
                                                  "missing-element /l[1]/b: key \"b\" is missing"));
}

} // namespace datatest
