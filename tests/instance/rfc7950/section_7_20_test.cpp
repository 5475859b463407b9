// RFC 7950, section 7.20: features, and deviations.
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

} // namespace datatest
