// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.10: the identityref type.
#include "support/value.h"

namespace datatest {

TEST(Identityref, TakesWhatIsDerivedFromAllItsBases)
{
    const std::string identities =
        "identity a; identity b; identity c { base a; base b; } identity d { base a; }"
        " identity e { base c; }";
    const std::string type = "identityref { base a; base b; }";
    EXPECT_TRUE(Reads(type, "m:e", "m:e", identities));
    EXPECT_TRUE(Reads(type, "c", "m:c", identities)) << "the default namespace";
    for (const char *bad : {"m:a", "m:d", "m:none", "x:c", ""})
        EXPECT_FALSE(Takes(type, bad, identities)) << bad;
}

TEST(Identityref, IsReadWithTheNamespacesOfItsElement)
{
    Schema schema;
    schema.Add("b", "identity alg; identity own { base alg; }");
    schema.Add("d", "import b { prefix b; } identity des { base b:alg; }");
    schema.Add("m", "import b { prefix crypto; } identity aes { base crypto:alg; }"
                    " leaf v { type identityref { base crypto:alg; } }");
    for (const char *good :
         {"<v>aes</v>", "<v xmlns:x=\"urn:m\">x:aes</v>", "<v xmlns:x=\"urn:d\">x:des</v>",
          "<v xmlns:b=\"urn:d\">b:des</v>", "<x:v xmlns:x=\"urn:m\" xmlns=\"urn:d\">des</x:v>",
          "<v xmlns:x=\"urn:b\">x:own</v>"})
        EXPECT_TRUE(schema.Check(good).empty()) << good;
    for (const char *bad : {"<v>des</v>", "<v>d:des</v>", "<v xmlns:x=\"urn:m\">x:des</v>",
                            "<v xmlns:x=\"urn:none\">x:des</v>", "<v xmlns:x=\"urn:b\">x:alg</v>",
                            "<v> aes</v>", "<v>:aes</v>", "<v xmlns:x=\"urn:m\">x:</v>"})
        EXPECT_FALSE(schema.Check(bad).empty()) << bad;
}

TEST(Identityref, IsComparedInConditionsWithThePrefixesOfTheModule)
{
    Schema schema;
    schema.Add("b", "identity alg; identity des { base alg; }");
    schema.Add("m", "import b { prefix crypto; } identity aes { base crypto:alg; }"
                    " leaf v { type identityref { base crypto:alg; } }"
                    " leaf a { when \"../v = 'm:aes'\"; type int8; }"
                    " leaf d { when \"../v = 'crypto:des'\"; type int8; }");
    EXPECT_TRUE(schema.Check("<v xmlns:q=\"urn:m\">q:aes</v><a>1</a>").empty());
    EXPECT_TRUE(schema.Check("<v xmlns:q=\"urn:b\">q:des</v><d>1</d>").empty());
    EXPECT_EQ(schema.Check("<v>aes</v><d>1</d>").size(), 1u);
}

TEST(Identityref, OfADefaultHasThePrefixesOfTheModule)
{
    Schema schema;
    schema.Add("b", "identity alg; identity des { base alg; }");
    schema.Add("m", "import b { prefix crypto; } identity aes { base crypto:alg; }"
                    " leaf v { type identityref { base crypto:alg; } default crypto:des; }"
                    " leaf w { type identityref { base crypto:alg; } default aes; }"
                    " leaf ok { type empty; must \"derived-from-or-self(../v, 'crypto:des') and "
                    "derived-from-or-self(../w, 'aes')\"; }");
    EXPECT_TRUE(schema.Check("<ok/>").empty());
    EXPECT_FALSE(schema.Check("<w xmlns:q=\"urn:b\">q:des</w><ok/>").empty());
}

} // namespace datatest
