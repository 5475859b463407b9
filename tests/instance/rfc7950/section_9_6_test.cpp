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

} // namespace datatest
