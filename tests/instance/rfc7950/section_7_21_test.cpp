// RFC 7950, section 7.21: config and when; 5.6.2: features.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(Feature, ThatIsOffMakesItsNodesUnknown)
{
    Schema schema("feature f; leaf a { if-feature f; type string; }");
    EXPECT_THAT(schema.Check("<a>1</a>"),
                ElementsAre("unknown-element /a: element \"a\" is not in the schema here"));
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_THAT(schema.Check("<a>1</a>"), IsEmpty()) << "the plan is made again";
}

TEST(Augment, AddsNodesInItsOwnNamespace)
{
    Schema schema("container c { leaf a { type string; } }");
    schema.Add(
        "n",
        "import m { prefix m; } augment \"/m:c\" { leaf b { type string; must \"../m:a = .\"; } }");
    EXPECT_THAT(schema.Check("<c><a>1</a><b xmlns=\"urn:n\">1</b></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a>1</a><b>1</b></c>"),
                ElementsAre("unknown-element /c/b: element \"b\" is not in the schema here"));
    EXPECT_EQ(schema.Check("<c><a>1</a><b xmlns=\"urn:n\">2</b></c>").size(), 1u);
}

} // namespace datatest
