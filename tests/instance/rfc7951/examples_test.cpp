// SPDX-License-Identifier: Apache-2.0
// The examples of RFC 7951, each read, written as XML and written back.
#include "support/schema.h"

namespace datatest {

using testing::HasSubstr;

namespace {

constexpr ZrDataWriteOptions kXml = {ZR_DATA_XML, ZR_DATA_EXPLICIT, 0};
constexpr ZrDataWriteOptions kJson = {ZR_DATA_JSON, ZR_DATA_EXPLICIT, 0};

// Reads JSON, and expects it back from itself and by the way of XML, which is returned.
std::string Follow(Schema &schema, const std::string &json, uint32_t kind = ZR_DATA_CONFIG)
{
    std::string xml = schema.Write(json, kXml, kind);
    EXPECT_EQ(schema.Write(json, kJson, kind), json);
    EXPECT_EQ(schema.Write(xml, kJson, kind), json);
    return xml;
}

} // namespace

TEST(Rfc7951, Section4NamesAndNamespaces)
{
    Schema schema;
    schema.Add("example-foomod", "container top { leaf foo { type uint8; } }");
    schema.Add("example-barmod",
               "import example-foomod { prefix foo; } augment \"/foo:top\" { leaf bar { type"
               " boolean; } }");
    EXPECT_THAT(Follow(schema, R"({"example-foomod:top":{"foo":54,"example-barmod:bar":true}})"),
                HasSubstr("<top xmlns=\"urn:example-foomod\"><foo>54</foo>"
                          "<bar xmlns=\"urn:example-barmod\">true</bar></top>"));
}

TEST(Rfc7951, Section5_1Leaf)
{
    Schema schema("leaf foo { type uint8; }");
    Follow(schema, R"({"m:foo":123})");
}

TEST(Rfc7951, Section5_2Container)
{
    Schema schema("container bar { leaf foo { type uint8; } }");
    Follow(schema, R"({"m:bar":{"foo":123}})");
}

TEST(Rfc7951, Section5_3LeafList)
{
    Schema schema("leaf-list foo { type uint8; }");
    Follow(schema, R"({"m:foo":[123,0]})");
}

TEST(Rfc7951, Section5_4ListWhoseEntriesMayHaveAnyOrder)
{
    Schema schema("list bar { key foo; leaf foo { type uint8; } leaf baz { type string; } }");
    const std::string inOrder = R"({"m:bar":[{"foo":123,"baz":"zig"},{"foo":0,"baz":"zag"}]})";
    EXPECT_EQ(
        schema.Write(R"({"m:bar": [{"foo": 123, "baz": "zig"}, {"baz": "zag", "foo": 0}]})", kJson),
        inOrder);
    Follow(schema, inOrder);
}

TEST(Rfc7951, Section5_5Anydata)
{
    Schema schema("anydata data;");
    schema.Add("ietf-notification", "leaf x { type string; }");
    schema.Add("example-event", "leaf x { type string; }");
    EXPECT_THAT(Follow(schema,
                       R"({"m:data":{"ietf-notification:notification":{"eventTime":)"
                       R"("2014-07-29T13:43:01Z","example-event:event":{"event-class":"fault",)"
                       R"("reporting-entity":{"card":"Ethernet0"},"severity":"major"}}}})"),
                HasSubstr("<event xmlns=\"urn:example-event\"><event-class>fault</event-class>"));
}

TEST(Rfc7951, Section5_6Anyxml)
{
    Schema schema("anyxml bar;");
    const std::string json = R"({"m:bar":[true,null,true]})";
    EXPECT_EQ(schema.Write(json, kJson), json);
}

TEST(Rfc7951, Section6_1NumbersOf64BitsAreStrings)
{
    Schema schema(
        "container c { leaf a { type int8; } leaf b { type uint32; } leaf c { type int64; }"
        " leaf d { type uint64; } leaf e { type decimal64 { fraction-digits 2; } } }");
    EXPECT_THAT(Follow(schema, R"({"m:c":{"a":-5,"b":4294967295,"c":"-9223372036854775808",)"
                               R"("d":"18446744073709551615","e":"3.14"}})"),
                HasSubstr("<e>3.14</e>"));
    for (const char *bad : {R"({"m:c": {"a": "5"}})", R"({"m:c": {"c": 5}})",
                            R"({"m:c": {"e": 3.14}})", R"({"m:c": {"a": 5.0}})"})
        EXPECT_THAT(schema.CheckJson(bad),
                    testing::ElementsAre(testing::StartsWith("invalid-value ")))
            << bad;
}

TEST(Rfc7951, Section6_2To6_7StringsAndBooleans)
{
    Schema schema(
        "container c { leaf s { type string; } leaf b { type boolean; }"
        " leaf e { type enumeration { enum one; } } leaf f { type bits { bit x; bit y; } }"
        " leaf d { type binary; } leaf r { type leafref { path ../n; } }"
        " leaf n { type uint8; } }");
    EXPECT_THAT(Follow(schema, R"({"m:c":{"s":"a \"b\" \\","b":true,"e":"one","f":"x y",)"
                               R"("d":"QUJD","r":7,"n":7}})"),
                HasSubstr("<f>x y</f><d>QUJD</d><r>7</r>"));
    for (const char *bad :
         {R"({"m:c": {"s": 1}})", R"({"m:c": {"b": "true"}})", R"({"m:c": {"e": 0}})",
          R"({"m:c": {"f": ["x"]}})", R"({"m:c": {"r": "7", "n": 7}})"})
        EXPECT_FALSE(schema.CheckJson(bad).empty()) << bad;
}

TEST(Rfc7951, Section6_8Identityref)
{
    Schema schema;
    schema.Add("example-mod", "identity foobar; leaf type { type identityref { base foobar; } }");
    schema.Add("iana", "import example-mod { prefix e; } identity eth { base e:foobar; }");
    EXPECT_THAT(Follow(schema, R"({"example-mod:type":"iana:eth"})"),
                HasSubstr("xmlns:iana=\"urn:iana\">iana:eth</type>"));
}

TEST(Rfc7951, Section6_9Empty)
{
    Schema schema("leaf foo { type empty; }");
    Follow(schema, R"({"m:foo":[null]})");
}

TEST(Rfc7951, Section6_10UnionByTheTypeOfTheValue)
{
    Schema schema("leaf-list bar { type union { type uint16; type string; } }");
    EXPECT_EQ(schema.Write(R"({"m:bar": [13, "13.5"]})", kJson), R"({"m:bar":[13,"13.5"]})");
    // XML does not tell the number from the string.
    EXPECT_EQ(schema.Write(schema.Write(R"({"m:bar":["13"]})", kXml), kJson), R"({"m:bar":[13]})");
}

TEST(Rfc7951, Section6_11InstanceIdentifier)
{
    Schema schema;
    schema.Add("ietf-interfaces", "container interfaces { list interface { key name;"
                                  "  leaf name { type string; } } }");
    schema.Add("ietf-ip", "import ietf-interfaces { prefix if; }"
                          "augment /if:interfaces/if:interface { container ipv4 {"
                          "  leaf ip { type string; } } }"
                          "leaf i { type instance-identifier { require-instance false; } }");
    EXPECT_THAT(Follow(schema, R"({"ietf-ip:i":"/ietf-interfaces:interfaces/interface[name='eth0'])"
                               R"(/ietf-ip:ipv4/ip"})"),
                HasSubstr(">/ietf-interfaces:interfaces/ietf-interfaces:interface["
                          "ietf-interfaces:name='eth0']/ietf-ip:ipv4/ietf-ip:ip</i>"));
}

} // namespace datatest
