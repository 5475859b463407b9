// SPDX-License-Identifier: Apache-2.0
// The modes of RFC 6243, and where defaults stand.
#include <libxml/parser.h>

#include "support/schema.h"

namespace datatest {

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr uint32_t kModes[] = {ZR_DATA_EXPLICIT, ZR_DATA_TRIM, ZR_DATA_REPORT_ALL,
                               ZR_DATA_REPORT_ALL_TAGGED};

ZrDataWriteOptions Xml(uint32_t defaults)
{
    return {ZR_DATA_XML, defaults, 0};
}
ZrDataWriteOptions Json(uint32_t defaults)
{
    return {ZR_DATA_JSON, defaults, 0};
}

// After the module and the data of RFC 6243, appendix A.
constexpr const char *kInterfaces =
    "typedef status-type { type enumeration { enum ok; enum 'waking up'; enum 'not feeling so"
    " good'; } default ok; }"
    "container interfaces { list interface { key name; leaf name { type string; }"
    "  leaf mtu { type uint32; default 1500; } leaf status { config false; type status-type; } } }";

std::string Interfaces(const std::string &rest, const std::string &root = "<data>")
{
    return root + "<interfaces xmlns=\"urn:m\">" + rest + "</interfaces></data>";
}

const std::string kData =
    Interfaces("<interface><name>eth0</name><mtu>8192</mtu></interface>"
               "<interface><name>eth1</name><status>ok</status></interface>"
               "<interface><name>eth2</name><mtu>1500</mtu><status>waking up</status></interface>");

} // namespace

TEST(Defaults, ExplicitIsWhatTheDataHolds)
{
    Schema schema(kInterfaces);
    EXPECT_EQ(schema.Write(kData, Xml(ZR_DATA_EXPLICIT), ZR_DATA_CONFIG_AND_STATE), kData);
}

TEST(Defaults, TrimLeavesOutWhatHasItsDefault)
{
    Schema schema(kInterfaces);
    EXPECT_EQ(schema.Write(kData, Xml(ZR_DATA_TRIM), ZR_DATA_CONFIG_AND_STATE),
              Interfaces("<interface><name>eth0</name><mtu>8192</mtu></interface>"
                         "<interface><name>eth1</name></interface>"
                         "<interface><name>eth2</name><status>waking up</status></interface>"));
}

TEST(Defaults, ReportAllAddsTheOthersWhereTheSchemaHasThem)
{
    Schema schema(kInterfaces);
    EXPECT_EQ(
        schema.Write(kData, Xml(ZR_DATA_REPORT_ALL), ZR_DATA_CONFIG_AND_STATE),
        Interfaces("<interface><name>eth0</name><mtu>8192</mtu><status>ok</status></interface>"
                   "<interface><name>eth1</name><mtu>1500</mtu><status>ok</status></interface>"
                   "<interface><name>eth2</name><mtu>1500</mtu><status>waking up</status>"
                   "</interface>"));
}

TEST(Defaults, ReportAllTaggedMarksThem)
{
    Schema schema(kInterfaces);
    const std::string tagged =
        Interfaces("<interface><name>eth0</name><mtu>8192</mtu><status wd:default=\"true\">ok"
                   "</status></interface>"
                   "<interface><name>eth1</name><mtu wd:default=\"true\">1500</mtu>"
                   "<status>ok</status></interface>"
                   "<interface><name>eth2</name><mtu>1500</mtu><status>waking up</status>"
                   "</interface>",
                   "<data xmlns:wd=\"urn:ietf:params:xml:ns:netconf:default:1.0\">");
    EXPECT_EQ(schema.Write(kData, Xml(ZR_DATA_REPORT_ALL_TAGGED), ZR_DATA_CONFIG_AND_STATE),
              tagged);
    EXPECT_EQ(schema.Write(tagged, Xml(ZR_DATA_REPORT_ALL_TAGGED), ZR_DATA_CONFIG_AND_STATE),
              tagged);
    EXPECT_EQ(schema.Write(tagged, Xml(ZR_DATA_EXPLICIT), ZR_DATA_CONFIG_AND_STATE), kData);
}

TEST(Defaults, AreAnnotationsInJson)
{
    Schema schema(
        "leaf a { type int8; default 1; } leaf-list v { type int8; default 1; default 2; }");
    const std::string tagged = R"({"m:a":1,"@m:a":{"ietf-netconf-with-defaults:default":true},)"
                               R"("m:v":[1,2],"@m:v":[{"ietf-netconf-with-defaults:default":true},)"
                               R"({"ietf-netconf-with-defaults:default":true}]})";
    EXPECT_EQ(schema.Write("{}", Json(ZR_DATA_REPORT_ALL_TAGGED)), tagged);
    EXPECT_EQ(schema.Write(tagged, Json(ZR_DATA_REPORT_ALL_TAGGED)), tagged);
    EXPECT_EQ(schema.Write(tagged, Json(ZR_DATA_EXPLICIT)), "{}");
}

TEST(Defaults, ContainersStandForTheDefaultsInThemAlone)
{
    Schema schema("container a { container b { leaf c { type int8; default 1; } } container d; }"
                  "container e; container p { presence x; leaf q { type int8; default 2; } }");
    EXPECT_EQ(schema.Write("{}", Json(ZR_DATA_REPORT_ALL)), R"({"m:a":{"b":{"c":1}}})");
    EXPECT_EQ(schema.Write(R"({"m:e":{},"m:p":{}})", Json(ZR_DATA_REPORT_ALL)),
              R"({"m:a":{"b":{"c":1}},"m:e":{},"m:p":{"q":2}})");
}

TEST(Defaults, TrimKeepsWhatSelectsItsCase)
{
    Schema schema("choice c { default a; case a { leaf x { type int8; default 1; } }"
                  "  case b { leaf y { type int8; default 2; } leaf z { type int8; } }"
                  "  leaf s { type int8; default 3; } }");
    EXPECT_EQ(schema.Write(R"({"m:x":1})", Json(ZR_DATA_TRIM)), "{}");
    EXPECT_EQ(schema.Write(R"({"m:y":2})", Json(ZR_DATA_TRIM)), R"({"m:y":2})");
    EXPECT_EQ(schema.Write(R"({"m:y":2,"m:z":2})", Json(ZR_DATA_TRIM)), R"({"m:z":2})");
    EXPECT_EQ(schema.Write(R"({"m:s":3})", Json(ZR_DATA_TRIM)), R"({"m:s":3})");
}

TEST(Defaults, TrimLeavesALeafListOutAsAWhole)
{
    Schema schema("leaf-list v { type int8; ordered-by user; default 1; default 2; }");
    EXPECT_EQ(schema.Write(R"({"m:v":[1,2]})", Json(ZR_DATA_TRIM)), "{}");
    EXPECT_EQ(schema.Write(R"({"m:v":[1]})", Json(ZR_DATA_TRIM)), R"({"m:v":[1]})");
    EXPECT_EQ(schema.Write(R"({"m:v":[1,2,3]})", Json(ZR_DATA_TRIM)), R"({"m:v":[1,2,3]})");
    EXPECT_EQ(schema.Write(R"({"m:v":[2,1]})", Json(ZR_DATA_TRIM)), R"({"m:v":[2,1]})");
}

TEST(Defaults, TrimKeepsKeys)
{
    Schema schema("typedef t { type int8; default 1; } list l { key k; leaf k { type t; } }");
    EXPECT_EQ(schema.Write(R"({"m:l":[{"k":1}]})", Json(ZR_DATA_TRIM)), R"({"m:l":[{"k":1}]})");
}

TEST(Defaults, ConditionsDecideOfThem)
{
    Schema schema("leaf a { type int8; } leaf b { when '../a = 1'; type int8; default 5; }");
    EXPECT_EQ(schema.Write(R"({"m:a":1})", Json(ZR_DATA_REPORT_ALL)), R"({"m:a":1,"m:b":5})");
    EXPECT_EQ(schema.Write(R"({"m:a":2})", Json(ZR_DATA_REPORT_ALL)), R"({"m:a":2})");
}

TEST(Defaults, ATreeIsTheTextsAndTheCallersOwn)
{
    Schema schema("container c { leaf a { type int8; default 1; } leaf b { type string; } }");
    std::string text = Wrap("<c><b>x</b></c>");
    xmlDoc *given = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0);
    ZrDataOptions options = Options(ZR_DATA_CONFIG);
    ZrDataResult *result = nullptr;
    ZrDataDocument *document = nullptr;
    ASSERT_EQ(
        ZR_DATA_ReadTree(schema.plan(), &options, xmlDocGetRootElement(given), &document, &result),
        ZR_DATA_OK);
    void *tree = nullptr;
    EXPECT_EQ(ZR_DATA_WriteTree(document, ZR_DATA_REPORT_ALL, &tree), ZR_DATA_OK);
    ZR_DATA_DeleteDocument(document);
    ZR_DATA_DeleteResult(result);
    auto dump = [](xmlDoc *doc) {
        xmlChar *written = nullptr;
        xmlDocDumpMemory(doc, &written, nullptr);
        std::string copy = reinterpret_cast<char *>(written);
        xmlFree(written);
        return copy;
    };
    EXPECT_THAT(dump(given), HasSubstr(text));
    xmlFreeDoc(given);
    EXPECT_THAT(dump(static_cast<xmlDoc *>(tree)), HasSubstr(Wrap("<c><a>1</a><b>x</b></c>")));
    xmlFreeDoc(static_cast<xmlDoc *>(tree));
}

// After the examples of RFC 8344, appendix A, and RFC 8349, appendix D.
TEST(Defaults, WhatWasCompletedOfPublishedModulesIsValidAgain)
{
    const std::string corpus = ZR_CORPUS_DIR;
    if (corpus.empty())
        GTEST_SKIP() << "ZR_CORPUS_DIR names no folder";
    Schema schema(corpus, {"ietf-ip", "iana-if-type", "ietf-ipv4-unicast-routing"});
    const std::string data = R"({
      "ietf-interfaces:interfaces": {"interface": [
        {"name": "eth0", "type": "iana-if-type:ethernetCsmacd",
         "ietf-ip:ipv4": {"address": [{"ip": "192.0.2.1", "prefix-length": 24}]},
         "ietf-ip:ipv6": {"mtu": 1280, "dup-addr-detect-transmits": 0,
                          "address": [{"ip": "2001:db8::10", "prefix-length": 32}]}}]},
      "ietf-routing:routing": {"control-plane-protocols": {
        "control-plane-protocol": [{"type": "ietf-routing:static", "name": "st0",
          "static-routes": {"ietf-ipv4-unicast-routing:ipv4": {"route": [
            {"destination-prefix": "0.0.0.0/0", "next-hop": {"next-hop-address": "192.0.2.2"}}]
          }}}]}}})";
    const std::string whole = schema.Write(data, Json(ZR_DATA_REPORT_ALL));
    EXPECT_THAT(whole,
                HasSubstr(R"("ietf-ip:ipv4":{"enabled":true,"forwarding":false,"address":)"));
    for (uint32_t mode : kModes) {
        const std::string xml = schema.Write(data, Xml(mode));
        EXPECT_THAT(schema.CheckDocument(xml), IsEmpty());
        EXPECT_EQ(schema.Write(xml, Json(ZR_DATA_REPORT_ALL)), whole);
        EXPECT_EQ(schema.Write(schema.Write(data, Json(mode)), Json(ZR_DATA_REPORT_ALL)), whole);
    }
}

} // namespace datatest
