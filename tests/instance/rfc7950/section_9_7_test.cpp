// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.7: the bits type.
#include "support/value.h"

namespace datatest {

TEST(Bits, AreWrittenInTheOrderOfTheirPositions)
{
    const std::string type = "bits { bit a { position 1; } bit b { position 0; } }";
    EXPECT_TRUE(Reads(type, " a\n b ", "b a"));
    EXPECT_TRUE(Reads(type, "", ""));
    EXPECT_FALSE(Takes(type, "a a"));
    EXPECT_FALSE(Takes(type, "c"));
}

TEST(Bits, TakesTheNamesThatItsTypedefsLeave)
{
    const std::string base = "typedef t { type bits { bit a { position 7; } bit b { position 3; }"
                             " bit c { position 5; } } }";
    const std::string type = "t { bit a; bit b { position 3; } }";
    EXPECT_TRUE(Reads(type, "a b", "b a", base)) << "in the order of the positions of the base";
    EXPECT_FALSE(Takes(type, "c", base));
    EXPECT_FALSE(Takes(type, "a,b", base));
    EXPECT_FALSE(Takes(type, "A", base));
}

TEST(Bits, HaveThePositionsThatFollowOneAnother)
{
    EXPECT_TRUE(Reads("bits { bit a { position 4294967294; } bit b; bit c { position 0; } }",
                      "b a c", "c a b"));
    EXPECT_TRUE(
        Reads("bits { bit disable-nagle { position 0; } bit auto-sense-speed { position 1; }"
              " bit ten-mb-only { position 2; } }",
              "ten-mb-only disable-nagle", "disable-nagle ten-mb-only"));
}

TEST(Bits, HaveNoNamesWhoseFeaturesAreOff)
{
    Schema schema("feature f; leaf v { type bits { bit a; bit b { if-feature f; } bit c; } }");
    EXPECT_TRUE(schema.Check("<v>a c</v>").empty());
    EXPECT_EQ(schema.Check("<v>a b</v>"),
              Texts{"invalid-value /v: \"a b\" is no value of \"v\": it "
                    "names a bit that is not there"});
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_TRUE(schema.Check("<v>a b</v>").empty());
}

} // namespace datatest
