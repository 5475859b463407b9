// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.9: the choice statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

TEST(Choice, TakesOneCase)
{
    Schema schema("container food { choice snack { case sports { leaf pretzel { type empty; }"
                  "  leaf beer { type empty; } } leaf chocolate { type empty; } } }");
    EXPECT_THAT(schema.Check("<food><pretzel/><beer/></food>"), IsEmpty());
    EXPECT_THAT(schema.Check("<food><pretzel/><chocolate/></food>"),
                ElementsAre("bad-element /food/chocolate: \"chocolate\" and \"sports\" of choice "
                            "\"snack\" exclude each other"));
}

TEST(Choice, ThatIsMandatoryIsMissed)
{
    Schema schema("container c { presence p; choice how { mandatory true; leaf a { type empty; }"
                  "  leaf b { type empty; } } }");
    EXPECT_THAT(schema.Check("<c><a/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c/>"),
                ElementsAre("data-missing[missing-choice] /c: nothing of choice \"how\" is there"));
}

TEST(Choice, AsksForTheMandatoryNodesOfTheChosenCaseAlone)
{
    Schema schema("container c { choice how { case x { leaf a { type string; }"
                  "  leaf b { type string; mandatory true; } } leaf d { type string; } } }");
    EXPECT_THAT(schema.Check("<c/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><d>1</d></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a>1</a></c>"),
                ElementsAre("missing-element /c/b: \"b\" is missing"));
}

TEST(Choice, MayHaveNoCase)
{
    Schema schema("choice o { leaf a { type empty; } leaf b { type empty; } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
}

TEST(Choice, HasTheCasesOfNestedChoicesExcludeEachOther)
{
    Schema schema("choice o { case x { choice i { leaf a { type empty; } leaf b { type empty; } }"
                  "   leaf c { type empty; } } leaf y { type empty; } }");
    EXPECT_THAT(schema.Check("<a/><c/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a/><b/>"), ElementsAre(StartsWith("bad-element /b: ")));
    EXPECT_THAT(schema.Check("<a/><y/>"), ElementsAre(StartsWith("bad-element /y: ")));
}

TEST(Choice, HasOneCaseInEachEntry)
{
    Schema schema("list l { key k; leaf k { type int8; } choice o { leaf a { type empty; }"
                  "  container b { presence x; } } }");
    EXPECT_THAT(schema.Check("<l><k>1</k><a/></l><l><k>2</k><b/></l>"), IsEmpty());
    EXPECT_THAT(schema.Check("<l><k>1</k><a/><b/></l><l><k>2</k><b/></l>"),
                ElementsAre(StartsWith("bad-element /l[k='1']/b: ")));
}

TEST(Choice, ThatIsMandatoryAtTheTopIsAlwaysAskedFor)
{
    Schema schema("container n { choice o { mandatory true; leaf a { type empty; }"
                  "  container b { leaf c { type empty; } } } }");
    EXPECT_THAT(schema.Check("<n><a/></n>"), IsEmpty());
    EXPECT_THAT(schema.Check(""), ElementsAre(StartsWith("data-missing[missing-choice] /n: ")));
}

TEST(Choice, ThatIsMandatoryInACaseIsAskedForWhereAnotherNodeOfTheCaseIs)
{
    Schema schema("container c { choice o { case x { leaf a { type empty; }"
                  "   choice i { mandatory true; leaf b { type empty; } } }"
                  "  leaf y { type empty; } } }");
    EXPECT_THAT(schema.Check("<c/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><y/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a/><b/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a/></c>"),
                ElementsAre("data-missing[missing-choice] /c: nothing of choice \"i\" is there"));
}

TEST(Choice, HasTheDefaultsOfItsDefaultCaseWhereItHasNoNode)
{
    Schema schema("container transfer { choice how { default interval;"
                  "   case interval { leaf interval { type uint16; default 30; } }"
                  "   case daily { leaf daily { type empty; }"
                  "    leaf time-of-day { type string; default 01.00; } }"
                  "   case manual { leaf manual { type empty; } } } }"
                  " leaf seen { type string;"
                  "  must \". = concat(../transfer/interval, '-', ../transfer/time-of-day)\"; }");
    EXPECT_THAT(schema.Check("<seen>30-</seen>"), IsEmpty());
    EXPECT_THAT(schema.Check("<transfer><daily/></transfer><seen>-01.00</seen>"), IsEmpty());
    EXPECT_THAT(schema.Check("<transfer><manual/></transfer><seen>-</seen>"), IsEmpty());
    EXPECT_THAT(schema.Check("<transfer><manual/></transfer><seen>30-</seen>"), SizeIs(1));
}

TEST(Choice, HasTheDefaultCasesOfNestedChoicesInItsDefaultCaseAlone)
{
    Schema schema("container c { choice o { default x; case x { choice i { default z;"
                  "    leaf z { type int8; default 4; } } }"
                  "   case y { leaf y { type empty; } choice j { default w;"
                  "    leaf w { type int8; default 5; } } } }"
                  "  must 'count(z) + count(y) = 1 and count(w) = count(y)'; }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<c><y/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><y/><z>1</z></c>"),
                testing::Contains(StartsWith("bad-element /c/")));
}

TEST(Choice, HasTheNodesOfACaseInAnyOrderButInParameters)
{
    const std::string choice =
        "choice o { case x { leaf a { type empty; } leaf b { type empty; } } }";
    Schema schema("container c { " + choice + " } rpc r { input { " + choice + " } }");
    EXPECT_THAT(schema.Check("<c><b/><a/></c>"), IsEmpty());
    EXPECT_THAT(schema.warnings(), IsEmpty());
    EXPECT_THAT(schema.CheckMessage("<r xmlns=\"urn:m\"><b/><a/></r>", ZR_DATA_REQUEST), IsEmpty());
    EXPECT_THAT(schema.warnings(), ElementsAre(StartsWith("bad-element /r/a: ")));
}

} // namespace datatest
