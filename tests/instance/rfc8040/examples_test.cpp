// SPDX-License-Identifier: Apache-2.0
// Examples of RFC 8040, read and written: its jukebox, a datastore, and tagged defaults.
#include "support/schema.h"

namespace datatest {

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr ZrDataWriteOptions kJson = {ZR_DATA_JSON, ZR_DATA_EXPLICIT, 0};

// As far as the examples need it (appendix A.1).
constexpr const char *kJukebox = R"(
  identity genre; identity alternative { base genre; } identity blues { base genre; }
  container jukebox { presence "An empty container indicates that the jukebox is available";
    container library { list artist { key name; leaf name { type string { length "1 .. max"; } }
      list album { key name; leaf name { type string { length "1 .. max"; } }
        leaf genre { type identityref { base genre; } }
        leaf year { type uint16 { range "1900 .. max"; } } } } }
    container player { leaf gap { type decimal64 { fraction-digits 1; range "0.0 .. 2.0"; } } } })";

const std::string kAlbums =
    R"("example-jukebox:jukebox":{"library":{"artist":[{"name":"Foo Fighters","album":[)"
    R"({"name":"Wasting Light","genre":"example-jukebox:alternative","year":2011}]}]},)"
    R"("player":{"gap":"0.5"}})";

} // namespace

TEST(Rfc8040, TheJukeboxIsTheSameInXmlAndJson)
{
    Schema schema;
    schema.Add("example-jukebox", kJukebox);
    const std::string json = "{" + kAlbums + "}";
    const std::string xml = schema.Write(json, {ZR_DATA_XML, ZR_DATA_EXPLICIT, 0});
    EXPECT_THAT(xml, HasSubstr("<genre xmlns:example-jukebox=\"urn:example-jukebox\">"
                               "example-jukebox:alternative</genre><year>2011</year>"));
    EXPECT_EQ(schema.Write(xml, kJson), json);
}

TEST(Rfc8040, Section3_1TheDatastoreIsWhatItsMemberHolds)
{
    Schema schema;
    schema.Add("example-jukebox", kJukebox);
    EXPECT_EQ(schema.Write("{\"ietf-restconf:data\": {" + kAlbums + "}}", kJson),
              "{" + kAlbums + "}");
}

TEST(Rfc8040, AppendixB_3_9TaggedDefaultsAreAnnotations)
{
    Schema schema;
    schema.Add("example", "container interfaces { list interface { key name; leaf name { type"
                          " string; } leaf mtu { type uint32; default 1500; } leaf status {"
                          " config false; type string; } } }");
    const std::string tagged =
        R"({"example:interfaces":{"interface":[{"name":"eth1","mtu":1500,"@mtu":)"
        R"({"ietf-netconf-with-defaults:default":true},"status":"up"}]}})";
    EXPECT_EQ(schema.Write(R"({"example:interfaces": {"interface": [{"name": "eth1",
                               "status": "up"}]}})",
                           {ZR_DATA_JSON, ZR_DATA_REPORT_ALL_TAGGED, 0}, ZR_DATA_CONFIG_AND_STATE),
              tagged);
    EXPECT_THAT(schema.CheckJson(tagged, ZR_DATA_CONFIG_AND_STATE), IsEmpty());
}

} // namespace datatest
