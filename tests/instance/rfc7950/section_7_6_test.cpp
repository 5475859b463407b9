// RFC 7950, section 7.6: the leaf statement; 7.7: the leaf-list statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(LeafList, HoldsAValueOnceInConfiguration)
{
    Schema schema("leaf-list a { type int8; } leaf-list s { config false; type int8; }");
    EXPECT_THAT(schema.Check("<a>1</a><a>2</a>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a><a>+1</a>"),
                ElementsAre("bad-element /a[.='1']: the value \"1\" stands here a second time"));
    EXPECT_THAT(schema.Check("<s>1</s><s>1</s>", ZR_DATA_CONFIG_AND_STATE), IsEmpty());
}

} // namespace datatest
