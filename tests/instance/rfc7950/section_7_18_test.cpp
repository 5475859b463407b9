// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.18: the identity statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Identity, OfAnotherModuleIsNamedByItsPrefixInTheData)
{
    Schema schema("identity base; leaf v { type identityref { base base; } }");
    schema.Add("n", "import m { prefix m; } identity one { base m:base; }");
    EXPECT_THAT(schema.Check("<v xmlns:q=\"urn:n\">q:one</v>"), IsEmpty());
    EXPECT_THAT(schema.Check("<v xmlns:q=\"urn:m\">q:one</v>"),
                ElementsAre(StartsWith("invalid-value /v: ")));
    EXPECT_THAT(schema.Check("<v xmlns:q=\"urn:m\">q:base</v>"),
                ElementsAre(StartsWith("invalid-value /v: ")))
        << "the base itself is not derived from it";
}

TEST(Identity, IsDerivedOverAnyNumberOfSteps)
{
    Schema schema("identity a; identity b { base a; } identity c { base b; } identity other;"
                  " leaf v { type identityref { base a; } }");
    EXPECT_THAT(schema.Check("<v>b</v>"), IsEmpty());
    EXPECT_THAT(schema.Check("<v>c</v>"), IsEmpty());
    for (const char *bad : {"a", "other"})
        EXPECT_THAT(schema.Check(std::string("<v>") + bad + "</v>"),
                    ElementsAre(StartsWith("invalid-value /v: ")))
            << bad;
}

TEST(Identity, WithSeveralBasesIsDerivedFromAllOfThem)
{
    Schema schema(
        "identity a; identity b; identity c { base a; base b; } identity d { base a; }"
        " leaf v { type identityref { base a; } } leaf w { type identityref { base b; } }");
    EXPECT_THAT(schema.Check("<v>c</v><w>c</w>"), IsEmpty());
    EXPECT_THAT(schema.Check("<v>d</v><w>d</w>"), ElementsAre(StartsWith("invalid-value /w: ")));
}

TEST(Identity, WhoseFeaturesAreOffIsNone)
{
    Schema schema("feature f; identity a; identity b { base a; if-feature f; }"
                  " identity c { base b; } identity d { base a; base b; }"
                  " leaf v { type identityref { base a; } } leaf w { type identityref { base b; } }"
                  " leaf x { type int8; must \"derived-from-or-self(../v, 'b')\"; }");
    EXPECT_THAT(schema.Check("<v>b</v>"), ElementsAre("invalid-value /v: \"b\" is no value of "
                                                      "\"v\": there is no such identity"));
    EXPECT_THAT(schema.Check("<v>d</v>"), IsEmpty());
    EXPECT_THAT(schema.Check("<v>c</v>"), ElementsAre(StartsWith("invalid-value /v: ")))
        << "its base is not there";
    EXPECT_THAT(schema.Check("<w>c</w>"), ElementsAre(StartsWith("invalid-value /w: ")));
    EXPECT_THAT(schema.Check("<v>d</v><x>1</x>"), ElementsAre(StartsWith("operation-failed")));
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_THAT(schema.Check("<v>b</v><w>c</w><x>1</x>"), IsEmpty());
    EXPECT_THAT(schema.Check("<v>c</v>"), IsEmpty());
}

} // namespace datatest
