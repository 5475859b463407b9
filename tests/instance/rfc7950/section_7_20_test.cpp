// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.20: features and deviations.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Feature, ThatIsOffTakesOperationsAndNotificationsToo)
{
    Schema schema("feature f; rpc r { if-feature f; } notification n { if-feature f; }"
                  " container c { action a { if-feature f; } }");
    const std::string action = "<action xmlns=\"urn:ietf:params:xml:ns:yang:1\">"
                               "<c xmlns=\"urn:m\"><a/></c></action>";
    EXPECT_THAT(schema.CheckMessage("<r xmlns=\"urn:m\"/>", ZR_DATA_REQUEST),
                ElementsAre(StartsWith("unknown-element /r: ")));
    EXPECT_THAT(schema.CheckMessage("<n xmlns=\"urn:m\"/>", ZR_DATA_NOTIFICATION),
                ElementsAre(StartsWith("unknown-element /n: ")));
    EXPECT_THAT(schema.CheckMessage(action, ZR_DATA_REQUEST),
                ElementsAre(StartsWith("unknown-element /c/a: ")));
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_THAT(schema.CheckMessage("<r xmlns=\"urn:m\"/>", ZR_DATA_REQUEST), IsEmpty());
    EXPECT_THAT(schema.CheckMessage("<n xmlns=\"urn:m\"/>", ZR_DATA_NOTIFICATION), IsEmpty());
    EXPECT_THAT(schema.CheckMessage(action, ZR_DATA_REQUEST), IsEmpty());
}

TEST(Feature, ThatIsOffIsNotAskedFor)
{
    Schema schema("feature f; container c { presence p;"
                  "  leaf a { if-feature f; mandatory true; type int8; } }"
                  " list l { key k; unique a; leaf k { type int8; }"
                  "  leaf a { if-feature f; type int8; } }");
    EXPECT_THAT(schema.Check("<c/><l><k>1</k></l><l><k>2</k></l>"), IsEmpty());
}

TEST(Deviation, TakesANodeAway)
{
    Schema schema("container c { leaf a { type int8; mandatory true; } leaf b { type int8; } }");
    schema.Add("d", "import m { prefix m; } deviation /m:c/m:a { deviate not-supported; }");
    EXPECT_THAT(schema.Check("<c><b>1</b></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a>1</a></c>"), ElementsAre(StartsWith("unknown-element /c/a: ")));
}

TEST(Deviation, ChangesTypesDefaultsAndConditions)
{
    Schema schema("container c { leaf a { type int8; default 1; }"
                  "  leaf b { type string; must \"../a = '1'\"; } leaf e { type int8; } }");
    schema.Add("d", "import m { prefix m; }"
                    " deviation /m:c/m:a { deviate replace { default 2; } }"
                    " deviation /m:c/m:b { deviate add { must \"../m:a = '2'\"; }"
                    "  deviate delete { must \"../a = '1'\"; } }"
                    " deviation /m:c/m:e { deviate replace { type boolean; }"
                    "  deviate add { mandatory true; } }");
    EXPECT_THAT(schema.Check("<c><b>x</b><e>true</e></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><e>1</e></c>"), ElementsAre(StartsWith("invalid-value /c/e: ")));
    EXPECT_THAT(schema.Check("<c><b>x</b><a>1</a></c>"),
                ElementsAre("missing-element /c/e: \"e\" is missing",
                            StartsWith("operation-failed[must-violation] /c/b: ")));
}

TEST(Feature, ThatIsOffMakesItsNodesUnknown)
{
    Schema schema("feature f; leaf a { if-feature f; type string; }");
    EXPECT_THAT(schema.Check("<a>1</a>"),
                ElementsAre("unknown-element /a: element \"a\" is not in the schema here"));
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_THAT(schema.Check("<a>1</a>"), IsEmpty()) << "the plan is made again";
}

TEST(Feature, ThatIsSaidToBeOffTakesValuesOfEnumerationsAndBits)
{
    const std::string body =
        "feature f; feature g;"
        " leaf e { type enumeration { enum a; enum b { if-feature 'f or g'; } } }"
        " leaf s { type bits { bit x; bit y { if-feature 'not f'; } } }";
    for (bool isOn : {false, true}) {
        Schema schema;
        schema.Decide("m", "f", isOn);
        schema.Decide("m", "g", false);
        schema.Add("m", body);
        EXPECT_THAT(schema.Check("<e>a</e><s>x</s>"), IsEmpty());
        if (isOn) {
            EXPECT_THAT(schema.Check("<e>b</e>"), IsEmpty());
            EXPECT_THAT(schema.Check("<s>y</s>"), ElementsAre(StartsWith("invalid-value /s: ")));
        } else {
            EXPECT_THAT(schema.Check("<e>b</e>"), ElementsAre(StartsWith("invalid-value /e: ")));
            EXPECT_THAT(schema.Check("<s>y</s>"), IsEmpty());
        }
    }
}

TEST(Feature, IsDecidedForExpressionsBeforehand)
{
    const std::string body = "feature f; feature g; leaf a { if-feature 'f and not g'; type int8; }"
                             " leaf b { if-feature 'f or g'; type int8; }";
    for (bool isOn : {false, true}) {
        Schema schema;
        schema.Decide("m", "f", true);
        schema.Decide("m", "g", isOn);
        schema.Add("m", body);
        ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
        EXPECT_THAT(schema.Check("<b>1</b>"), IsEmpty());
        if (isOn) {
            EXPECT_THAT(schema.Check("<a>1</a>"), ElementsAre(StartsWith("unknown-element /a: ")));
        } else {
            EXPECT_THAT(schema.Check("<a>1</a>"), IsEmpty());
        }
    }
}

TEST(Feature, IsAskedForTogetherWithAllOthersOfItsNode)
{
    Schema schema("feature f; feature g; leaf a { if-feature f; if-feature g; type int8; }"
                  " leaf b { if-feature 'f and g'; type int8; }");
    ZrMod *module = ZR_CTX_GetModuleByModName(schema.ctx(), "m");
    ZR_MOD_EnableFeature(module, "f");
    EXPECT_THAT(schema.Check("<a>1</a><b>1</b>"), testing::SizeIs(2));
    ZR_MOD_EnableFeature(module, "g");
    EXPECT_THAT(schema.Check("<a>1</a><b>1</b>"), IsEmpty());
}

TEST(Feature, ThatIsOffTakesTheNodesOfItsContainerChoiceAndUses)
{
    Schema schema(
        "feature f; grouping g { leaf u { type int8; mandatory true; } }"
        " container c { if-feature f; leaf a { type int8; mandatory true; } }"
        " choice o { if-feature f; mandatory true; leaf b { type int8; } }"
        " choice p { case x { if-feature f; leaf d { type int8; } } leaf e { type int8; } }"
        " uses g { if-feature f; }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    for (const char *name : {"c", "b", "d", "u"})
        EXPECT_THAT(schema.Check(std::string("<") + name + "/>"),
                    ElementsAre(StartsWith(std::string("unknown-element /") + name + ": ")));
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_THAT(schema.Check("<c><a>1</a></c><b>1</b><d>1</d><u>1</u>"), IsEmpty());
    EXPECT_THAT(schema.Check(""), testing::SizeIs(3));
}

TEST(Deviation, ChangesNumbersMandatoryAndState)
{
    Schema schema("leaf a { type int8; mandatory true; } leaf b { type int8; }"
                  " container c { leaf s { type int8; } }");
    schema.Add("d", "import m { prefix m; } deviation /m:a { deviate replace { mandatory false; } }"
                    " deviation /m:b { deviate add { mandatory true; } }"
                    " deviation /m:c/m:s { deviate add { config false; } }");
    EXPECT_THAT(schema.Check("<b>1</b>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><s>1</s></c>"),
                testing::UnorderedElementsAre("missing-element /b: \"b\" is missing",
                                              StartsWith("unknown-element /c/s: ")));
}

TEST(Feature, OfAnotherModuleDecidesAboutEnumsToo)
{
    Schema schema("feature f; typedef t { type enumeration { enum a; enum b { if-feature f; } } }");
    schema.Add("n", "import m { prefix q; } leaf v { type q:t; }"
                    " leaf w { type enumeration { enum a; enum c { if-feature q:f; } } }");
    EXPECT_THAT(schema.Check("<v xmlns=\"urn:n\">b</v><w xmlns=\"urn:n\">c</w>"),
                testing::SizeIs(2));
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_THAT(schema.Check("<v xmlns=\"urn:n\">b</v><w xmlns=\"urn:n\">c</w>"), IsEmpty());
}

} // namespace datatest
