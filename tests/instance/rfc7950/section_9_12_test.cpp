// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.12: the union type, and members that refer to instances.
#include "support/schema.h"
#include "support/value.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The example of section 9.12.4.
constexpr const char *kFilters = "list filter { key name; leaf name { type string; } }"
                                 " leaf outbound-filter { type union {"
                                 "  type leafref { path \"/filter/name\"; }"
                                 "  type enumeration { enum default-filter; } } }";

std::string NoMember(const std::string &path, const std::string &name, const std::string &value)
{
    return "invalid-value " + path + ": \"" + value + "\" is no value of \"" + name +
           "\": no member of the union takes it, and what it could refer to is not there";
}

constexpr const char *kHttp = "<filter><name>http</name></filter>";

} // namespace

TEST(Union, TakesTheFirstMemberThatFits)
{
    EXPECT_TRUE(Reads("union { type int8; type string; }", "+5", "5"));
    EXPECT_TRUE(Reads("union { type int8; type string; }", "+500", "+500"));
    EXPECT_FALSE(Takes("union { type int8; type boolean; }", "500"));
}

TEST(Union, KeepsTheRangesOfItsMembers)
{
    const std::string base = "typedef t { type int8 { range \"-5..5\"; } }"
                             " typedef s { type string { length \"2..4\"; } }";
    const std::string type = "union { type t { range \"0..max\"; } type s { length \"3..max\"; } }";
    EXPECT_TRUE(Takes(type, "0", base));
    EXPECT_TRUE(Takes(type, "5", base));
    EXPECT_TRUE(Takes(type, "abcd", base));
    for (const char *bad : {"6", "-1", "ab", "abcde"})
        EXPECT_FALSE(Takes(type, bad, base)) << bad;
}

TEST(UnionOfReferences, TakesTheMemberWhoseInstanceIsThere)
{
    Schema schema(kFilters);
    EXPECT_THAT(schema.Check(kHttp + std::string("<outbound-filter>http</outbound-filter>")),
                IsEmpty());
    EXPECT_THAT(schema.Check("<outbound-filter>default-filter</outbound-filter>"), IsEmpty());
    EXPECT_THAT(schema.Check("<outbound-filter>http</outbound-filter>"),
                ElementsAre(NoMember("/outbound-filter", "outbound-filter", "http")));
}

TEST(UnionOfReferences, GoesOnToAMemberThatTakesAnyText)
{
    Schema schema("leaf-list n { type int8; }"
                  " leaf u { type union { type leafref { path \"/n\"; } type string; }"
                  "  must \"string(.) = ../is\"; } leaf is { type string; }");
    EXPECT_THAT(schema.Check("<n>5</n><u>+5</u><is>5</is>"), IsEmpty())
        << "the value of an int8 is canonical";
    EXPECT_THAT(schema.Check("<n>6</n><u>+5</u><is>+5</is>"), IsEmpty())
        << "a string is as it is written";
}

TEST(UnionOfReferences, TriesEachMemberInItsOrder)
{
    Schema schema("leaf-list a { type string; } leaf-list b { type int8; }"
                  " typedef inner { type union { type leafref { path \"/b\"; }"
                  "  type instance-identifier; } }"
                  " leaf u { type union { type leafref { path \"/a\"; } type inner; type uint8; }"
                  "  must \"string(.) = ../is\"; } leaf is { type string; }");
    auto check = [&](const std::string &data, const std::string &value, const std::string &is) {
        return schema.CheckDocument("<data xmlns=\"urn:m\" xmlns:x=\"urn:m\">" + data + "<u>" +
                                    value + "</u><is>" + is + "</is></data>");
    };
    EXPECT_THAT(check("<a>+7</a><b>7</b>", "+7", "+7"), IsEmpty());
    EXPECT_THAT(check("<b>7</b>", "+7", "7"), IsEmpty());
    EXPECT_THAT(check("<b>7</b>", "/x:b[.='+7']", "/m:b[.='7']"), IsEmpty());
    EXPECT_THAT(check("<b>7</b>", "200", "200"), IsEmpty());
    EXPECT_THAT(check("<b>7</b>", "/x:b[.='8']", "/x:b[.='8']"),
                ElementsAre(NoMember("/u", "u", "/x:b[.='8']")));
}

TEST(UnionOfReferences, TakesAnyValueOfAMemberThatNeedsNoInstance)
{
    Schema schema("leaf-list n { type int8; }"
                  " leaf u { type union { type leafref { path \"/n\"; require-instance false; }"
                  "  type string; } must \"string(.) = '5'\"; }");
    EXPECT_THAT(schema.Check("<u>+5</u>"), IsEmpty());
}

TEST(UnionOfReferences, CountsDefaultsInUseOnBothSides)
{
    Schema schema("container c { leaf n { type int8; default 5; } }"
                  " leaf u { type union { type leafref { path \"/c/n\"; } type string; }"
                  "  default +5; } leaf is { type string; must \". = ../u\"; }");
    EXPECT_THAT(schema.Check("<is>5</is>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><n>6</n></c><is>+5</is>"), IsEmpty());
    Schema bad("leaf-list n { type string; }"
               " leaf u { type union { type leafref { path \"/n\"; } } default x; }");
    EXPECT_THAT(bad.Check(""), ElementsAre(NoMember("/u", "u", "x")));
    EXPECT_THAT(bad.Check("<n>x</n>"), IsEmpty());
}

TEST(UnionOfReferences, ComparesKeysAndTargetsByTheMemberThatHasThem)
{
    Schema schema("leaf-list n { type int8; }"
                  " list l { key k; leaf k { type union { type leafref { path \"/n\"; }"
                  "  type string; } } } leaf r { type string; must \"/l[k = current()]\"; }");
    const std::string entries = "<l><k>5</k></l><l><k>+5</k></l>";
    EXPECT_THAT(schema.Check(entries + "<r>+5</r>"), IsEmpty());
    EXPECT_EQ(schema.Check("<n>5</n>" + entries).size(), 1u) << "the same key twice";
}

TEST(UnionOfReferences, IsFollowedByDeref)
{
    Schema schema(std::string("list l { key k; leaf k { type string; }"
                              "  leaf on { type boolean; default true; } }"
                              " leaf u { type union { type uint8; type leafref { path \"/l/k\"; }"
                              "  type instance-identifier; type string; }"
                              "  must \"not(deref(.)) or deref(.)/../on = 'true'"
                              " or deref(.)/on = 'true'\"; }"));
    auto check = [&](const std::string &value, const std::string &on) {
        return schema
            .CheckDocument("<data xmlns=\"urn:m\" xmlns:m=\"urn:m\"><l><k>a</k><on>" + on +
                           "</on></l><u>" + value + "</u></data>")
            .size();
    };
    for (const char *refers : {"a", "/m:l[m:k='a']"}) {
        EXPECT_EQ(check(refers, "true"), 0u) << refers;
        EXPECT_EQ(check(refers, "false"), 1u) << refers;
    }
    for (const char *other : {"5", "b", "/m:l[m:k='b']"})
        EXPECT_EQ(check(other, "false"), 0u) << other;
}

TEST(UnionOfReferences, IsWrittenAsTheMemberThatHasIt)
{
    Schema schema("leaf-list n { type int8; }"
                  " leaf u { type union { type leafref { path \"/n\"; } type string; } }");
    ZrDataWriteOptions how = {ZR_DATA_JSON, ZR_DATA_EXPLICIT, 0};
    EXPECT_EQ(schema.Write(Wrap("<n>5</n><u>+5</u>"), how), "{\"m:n\":[5],\"m:u\":5}");
    EXPECT_EQ(schema.Write(Wrap("<n>6</n><u>+5</u>"), how), "{\"m:n\":[6],\"m:u\":\"+5\"}");
    EXPECT_EQ(schema.Write("{\"m:n\":[5],\"m:u\":\"5\"}", how), "{\"m:n\":[5],\"m:u\":\"5\"}")
        << "a string of JSON is no int8";
}

TEST(UnionOfReferences, LooksIntoTheDatastoreOfAMessage)
{
    Schema schema(std::string(kFilters) +
                  " rpc r { input { leaf f { type union { type leafref { path \"/filter/name\"; }"
                  "  type enumeration { enum none; } } } } }");
    auto call = [&](const std::string &filter, const std::string &store) {
        return schema.CheckMessage("<r xmlns=\"urn:m\"><f>" + filter + "</f></r>", ZR_DATA_REQUEST,
                                   store);
    };
    EXPECT_THAT(call("http", Wrap(kHttp)), IsEmpty());
    EXPECT_THAT(call("none", Wrap(kHttp)), IsEmpty());
    EXPECT_THAT(call("ftp", Wrap(kHttp)), ElementsAre(NoMember("/r/f", "f", "ftp")));
    EXPECT_THAT(call("ftp", ""), IsEmpty()) << "without a datastore";
}

} // namespace datatest
