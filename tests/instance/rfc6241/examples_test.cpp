// SPDX-License-Identifier: Apache-2.0
// The examples of RFC 6241: the edits of section 7.2 on the datastore that they are made for, and
// replies of sections 4.3 and 4.4.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const std::string kSchema = "container top {"
                            "  list interface { key name; leaf name { type string; }"
                            "   leaf mtu { type uint16; }"
                            "   container address { leaf name { type string; }"
                            "    leaf prefix-length { type uint8; } } }"
                            "  container protocols { container ospf { list area { key name;"
                            "   leaf name { type string; } container interfaces {"
                            "    list interface { key name; leaf name { type string; } } } } } } }"
                            " rpc get-users;";

// The system as the examples find it.
const std::string kRunning =
    "<data><top xmlns='urn:m'><interface><name>Ethernet0/0</name><mtu>576</mtu></interface>"
    "<protocols><ospf><area><name>0.0.0.0</name><interfaces>"
    "<interface><name>192.0.2.1</name></interface><interface><name>192.0.2.4</name></interface>"
    "</interfaces></area></ospf></protocols></top></data>";

Texts Edit(const std::string &top, const std::string &defaultOperation = "")
{
    Schema schema(kSchema);
    return schema.CheckMessage(
        "<rpc message-id='101' xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'><edit-config>"
        "<target><running/></target>" +
            defaultOperation +
            "<config xmlns:xc='urn:ietf:params:xml:ns:netconf:base:1.0'><top xmlns='urn:m'>" + top +
            "</top></config></edit-config></rpc>",
        ZR_DATA_EDIT, kRunning);
}

const std::string kNone = "<default-operation>none</default-operation>";

std::string OspfInterface(const std::string &name)
{
    return "<protocols><ospf><area><name>0.0.0.0</name><interfaces>"
           "<interface xc:operation='delete'><name>" +
           name + "</name></interface></interfaces></area></ospf></protocols>";
}

} // namespace

TEST(Rfc6241, Section7_2SetsTheMtu)
{
    EXPECT_THAT(Edit("<interface><name>Ethernet0/0</name><mtu>1500</mtu></interface>"), IsEmpty());
}

TEST(Rfc6241, Section7_2ReplacesAnInterface)
{
    EXPECT_THAT(Edit("<interface xc:operation='replace'><name>Ethernet0/0</name><mtu>1500</mtu>"
                     "<address><name>192.0.2.4</name><prefix-length>24</prefix-length></address>"
                     "</interface>"),
                IsEmpty());
}

TEST(Rfc6241, Section7_2DeletesAnInterface)
{
    EXPECT_THAT(
        Edit("<interface xc:operation='delete'><name>Ethernet0/0</name></interface>", kNone),
        IsEmpty());
    EXPECT_THAT(
        Edit("<interface xc:operation='delete'><name>Ethernet0/1</name></interface>", kNone),
        ElementsAre(StartsWith("data-missing /top/interface[name='Ethernet0/1']: ")));
}

TEST(Rfc6241, Section7_2DeletesAnInterfaceOfAnOspfArea)
{
    EXPECT_THAT(Edit(OspfInterface("192.0.2.4"), kNone), IsEmpty());
    EXPECT_THAT(
        Edit(OspfInterface("192.0.2.9"), kNone),
        ElementsAre(StartsWith("data-missing /top/protocols/ospf/area[name='0.0.0.0']/interfaces/"
                               "interface[name='192.0.2.9']: ")));
}

TEST(Rfc6241, Section4_3RepliesWithAnError)
{
    Schema schema(kSchema);
    EXPECT_THAT(schema.CheckMessage(
                    "<rpc-reply message-id='101' xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'>"
                    "<rpc-error><error-type>rpc</error-type>"
                    "<error-tag>missing-attribute</error-tag>"
                    "<error-severity>error</error-severity><error-info>"
                    "<bad-attribute>message-id</bad-attribute><bad-element>rpc</bad-element>"
                    "</error-info></rpc-error></rpc-reply>",
                    ZR_DATA_REPLY, "", "m:get-users"),
                IsEmpty());
}

TEST(Rfc6241, Section4_4RepliesWithOk)
{
    Schema schema(kSchema);
    EXPECT_THAT(schema.CheckMessage("<rpc-reply message-id='101' "
                                    "xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'><ok/>"
                                    "</rpc-reply>",
                                    ZR_DATA_REPLY, "", "m:get-users"),
                IsEmpty());
}

} // namespace datatest
