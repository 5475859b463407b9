// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.6: the enumeration type.
#include "support/value.h"

namespace datatest {

TEST(Enumeration, TakesItsNamesAlone)
{
    EXPECT_TRUE(Takes("enumeration { enum a; enum b; }", "b"));
    EXPECT_FALSE(Takes("enumeration { enum a; enum b; }", " b"));
}

TEST(Enumeration, TakesTheNamesThatItsTypedefsLeave)
{
    const std::string base = "typedef t { type enumeration { enum white { value 1; }"
                             " enum yellow { value 2; } enum red { value 3; } } }";
    const std::string type = "t { enum yellow; enum red { value 3; } }";
    EXPECT_TRUE(Takes(type, "yellow", base));
    EXPECT_TRUE(Takes(type, "red", base));
    for (const char *bad : {"white", "Red", "2", ""})
        EXPECT_FALSE(Takes(type, bad, base)) << bad;
}

TEST(Enumeration, TakesNamesWithSpacesInThem)
{
    EXPECT_TRUE(Takes("enumeration { enum \"not  now\"; }", "not  now"));
    EXPECT_FALSE(Takes("enumeration { enum \"not  now\"; }", "not now"));
}

TEST(Enumeration, HasTheValuesThatItsNamesAreGiven)
{
    Schema schema("typedef t { type enumeration { enum zero; enum one; enum seven { value 7; }"
                  "  enum eight; enum least { value -2147483648; }"
                  "  enum greatest { value 2147483647; } } }"
                  " leaf e { type t; must 'enum-value(.) = ../n'; } leaf n { type int32; }"
                  " leaf r { type t { enum seven; } must 'enum-value(.) = 7'; }");
    const std::pair<const char *, const char *> rows[] = {{"zero", "0"},
                                                          {"one", "1"},
                                                          {"seven", "7"},
                                                          {"eight", "8"},
                                                          {"least", "-2147483648"},
                                                          {"greatest", "2147483647"}};
    for (auto [name, value] : rows)
        EXPECT_TRUE(schema.Check(std::string("<e>") + name + "</e><n>" + value + "</n>").empty())
            << name;
    EXPECT_FALSE(schema.Check("<e>zero</e><n>1</n>").empty());
    EXPECT_TRUE(schema.Check("<r>seven</r>").empty()) << "a restricted type keeps them";
}

TEST(Enumeration, HasNoNamesWhoseFeaturesAreOff)
{
    Schema schema("feature f; feature g;"
                  " typedef t { type enumeration { enum a; enum b { if-feature f; } enum c; } }"
                  " leaf v { type t; } leaf w { type t { enum b; enum c { if-feature g; } } }"
                  " leaf x { type enumeration { enum a { if-feature \"f and g\"; } enum b; }"
                  "  must 'enum-value(.) = 1'; }");
    auto enable = [&](const char *feature) {
        ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), feature);
    };
    EXPECT_TRUE(schema.Check("<v>a</v>").empty());
    EXPECT_EQ(schema.Check("<v>b</v>"),
              Texts{"invalid-value /v: \"b\" is no value of \"v\": it is none of the enums"});
    EXPECT_EQ(schema.Check("<w>b</w>").size(), 1u) << "off where it is first named";
    EXPECT_EQ(schema.Check("<w>c</w>").size(), 1u) << "off where it is named again";
    EXPECT_TRUE(schema.Check("<x>b</x>").empty()) << "its value does not depend on the features";
    EXPECT_EQ(schema.Check("<x>a</x>").size(), 1u);
    EXPECT_EQ(schema.CheckJson("{\"m:v\": \"b\"}").size(), 1u);
    enable("f");
    EXPECT_TRUE(schema.Check("<v>b</v><w>b</w>").empty());
    EXPECT_EQ(schema.Check("<w>c</w>").size(), 1u);
    enable("g");
    EXPECT_TRUE(schema.Check("<w>c</w>").empty());
}

} // namespace datatest
