// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 6.4: XPath evaluations, and what they see of the data.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

TEST(XPath, OfConfigurationSeesNoState)
{
    Schema schema("leaf s { config false; type int8; } leaf a { type int8; must 'not(../s)'; }"
                  " container c { leaf b { type int8; must 'count(../*) = 2'; }"
                  "  leaf x { config false; type int8; default 1; } leaf d { type int8; }"
                  "  container e { config false; leaf f { type int8; must '../../b'; } } }");
    EXPECT_THAT(schema.Check("<s>1</s><a>1</a><c><e><f>1</f></e><b>1</b><x>1</x><d>1</d></c>",
                             ZR_DATA_CONFIG_AND_STATE),
                IsEmpty());
}

TEST(XPath, OfStateSeesConfigurationAndState)
{
    Schema schema("leaf a { type int8; } leaf t { config false; type int8; }"
                  " leaf s { config false; type int8; must '../a and ../t'; }");
    EXPECT_THAT(schema.Check("<s>1</s><t>1</t><a>1</a>", ZR_DATA_CONFIG_AND_STATE), IsEmpty());
    EXPECT_THAT(schema.Check("<s>1</s><t>1</t>", ZR_DATA_CONFIG_AND_STATE), SizeIs(1));
}

TEST(XPath, SeesStateInItsPlaceAgain)
{
    Schema schema("list l { config false; leaf v { type int8; } }"
                  " leaf a { type int8; must '../b or true()'; } leaf b { type int8; }"
                  " leaf s { config false; type string;"
                  "  must \"concat(../l[1]/v, ../l[2]/v, ../l[3]/v, local-name(../*[2])) = .\"; }");
    EXPECT_THAT(schema.Check("<l><v>1</v></l><a>1</a><l><v>2</v></l><l><v>3</v></l><b>1</b>"
                             "<s>123a</s>",
                             ZR_DATA_CONFIG_AND_STATE),
                IsEmpty());
}

TEST(XPath, OfADefaultThatIsStateSeesState)
{
    Schema schema("leaf s { config false; type int8; }"
                  " leaf d { config false; when '../s'; type int8; default 1; }"
                  " leaf c { when 'not(../s)'; type int8; default 2; }"
                  " leaf t { config false; type string; must \"concat(../d, ../c) = .\"; }");
    EXPECT_THAT(schema.Check("<s>1</s><t>12</t>", ZR_DATA_CONFIG_AND_STATE), IsEmpty());
}

TEST(XPath, TakesNamesWithoutPrefixAsThoseOfItsModule)
{
    Schema schema("container c { leaf a { type int8; } }");
    schema.Add("n", "import m { prefix p; } augment /p:c { leaf b { type int8; must '../p:a'; }"
                    " leaf d { type int8; must 'not(../a)'; } }");
    EXPECT_THAT(schema.Check("<c><a>1</a><b xmlns=\"urn:n\">1</b><d xmlns=\"urn:n\">1</d></c>"),
                IsEmpty());
    EXPECT_THAT(schema.Check("<c><b xmlns=\"urn:n\">1</b></c>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /c/n:b: ")));
}

TEST(XPath, SeesContainersWithoutPresence)
{
    Schema schema(
        "container n { container i { leaf a { type int8; } } }"
        " container p { presence x; } leaf b { type int8; must '../n/i and not(../p)'; }");
    EXPECT_THAT(schema.Check("<b>1</b>"), IsEmpty());
}

} // namespace datatest
