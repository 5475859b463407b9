// SPDX-License-Identifier: Apache-2.0
// Examples of RFC 8343 (interfaces), RFC 8344 (addresses) and RFC 8349 (routing), with the
// published modules.
#include "support/schema.h"

namespace datatest {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

// The module of RFC 8343, appendix C.
constexpr const char *kVlan = R"(<module name="ex-vlan" xmlns="urn:ietf:params:xml:ns:yang:yin:1"
 xmlns:vlan="http://example.com/vlan" xmlns:if="urn:ietf:params:xml:ns:yang:ietf-interfaces"
 xmlns:ianaift="urn:ietf:params:xml:ns:yang:iana-if-type">
 <yang-version value="1.1"/><namespace uri="http://example.com/vlan"/><prefix value="vlan"/>
 <import module="ietf-interfaces"><prefix value="if"/></import>
 <import module="iana-if-type"><prefix value="ianaift"/></import>
 <augment target-node="/if:interfaces/if:interface">
  <when condition="if:type = 'ianaift:ethernetCsmacd' or if:type = 'ianaift:ieee8023adLag'"/>
  <leaf name="vlan-tagging"><type name="boolean"/><default value="false"/></leaf></augment>
 <augment target-node="/if:interfaces/if:interface">
  <when condition="if:type = 'ianaift:l2vlan'"/>
  <leaf name="base-interface"><type name="if:interface-ref"/>
   <must condition="/if:interfaces/if:interface[if:name = current()]/vlan:vlan-tagging = 'true'">
    <error-message><value>The base interface must have VLAN tagging enabled.</value></error-message>
   </must></leaf>
  <leaf name="vlan-id"><type name="uint16"><range value="1..4094"/></type>
   <must condition="../vlan:base-interface"/></leaf></augment></module>)";

class Published : public testing::Test {
protected:
    void SetUp() override
    {
        if (*ZR_CORPUS_DIR == '\0')
            GTEST_SKIP() << "ZR_CORPUS_DIR is not set";
        ZR_CTX_SetSearchDir(schema_.ctx(), ZR_CORPUS_DIR);
    }
    void Load(std::initializer_list<const char *> modules)
    {
        for (const char *module : modules)
            ASSERT_EQ(ZR_CTX_LoadModule(schema_.ctx(), module), ZR_OK) << module;
    }
    Texts Check(const std::string &data, uint32_t kind = ZR_DATA_CONFIG)
    {
        return schema_.CheckDocument("<data>" + data + "</data>", kind);
    }

    Schema schema_{"", ZR_CTX_STANDARD | ZR_CTX_LOAD_IMPORTS};
};

std::string Interfaces(const std::string &inner)
{
    return "<interfaces xmlns=\"urn:ietf:params:xml:ns:yang:ietf-interfaces\" "
           "xmlns:ianaift=\"urn:ietf:params:xml:ns:yang:iana-if-type\" "
           "xmlns:vlan=\"http://example.com/vlan\">" +
           inner + "</interfaces>";
}

std::string Vlans(const std::string &tagging)
{
    return Interfaces(
        "<interface><name>eth0</name><type>ianaift:ethernetCsmacd</type>"
        "<enabled>false</enabled></interface>"
        "<interface><name>eth1</name><type>ianaift:ethernetCsmacd</type><enabled>true</enabled>" +
        tagging +
        "</interface><interface><name>eth1.10</name><type>ianaift:l2vlan</type>"
        "<enabled>true</enabled><vlan:base-interface>eth1</vlan:base-interface>"
        "<vlan:vlan-id>10</vlan:vlan-id></interface>"
        "<interface><name>lo1</name><type>ianaift:softwareLoopback</type>"
        "<enabled>true</enabled></interface>");
}

std::string Routing(const std::string &address)
{
    return "<routing xmlns=\"urn:ietf:params:xml:ns:yang:ietf-routing\">"
           "<router-id>192.0.2.1</router-id><control-plane-protocols><control-plane-protocol>"
           "<type>static</type><name>st0</name><static-routes>"
           "<ipv4 xmlns=\"urn:ietf:params:xml:ns:yang:ietf-ipv4-unicast-routing\"><route>"
           "<destination-prefix>0.0.0.0/0</destination-prefix><next-hop>" +
           address +
           "</next-hop></route></ipv4></static-routes></control-plane-protocol>"
           "</control-plane-protocols></routing>";
}

} // namespace

TEST_F(Published, InterfacesWithVlansAreValid)
{
    Load({"ietf-interfaces", "iana-if-type"});
    ASSERT_EQ(ZR_CTX_LoadMemory(schema_.ctx(), kVlan), ZR_OK);
    EXPECT_THAT(Check(Vlans("<vlan:vlan-tagging>true</vlan:vlan-tagging>")), IsEmpty());
    EXPECT_THAT(Check(Vlans("")),
                ElementsAre("operation-failed[must-violation] /ietf-interfaces:interfaces/"
                            "ietf-interfaces:interface[ietf-interfaces:name='eth1.10']/"
                            "ex-vlan:base-interface: The base interface must have VLAN tagging "
                            "enabled."));
}

TEST_F(Published, InterfacesNeedNamesAndTypes)
{
    Load({"ietf-interfaces", "iana-if-type"});
    EXPECT_THAT(Check(Interfaces("<interface><name>a</name><type>ianaift:none</type></interface>"
                                 "<interface><name>b</name></interface><interface/>")),
                testing::SizeIs(4));
}

TEST_F(Published, ANotificationNamesAVirtualRouterOfItsOwnInterface)
{
    Load({"ietf-interfaces", "iana-if-type", "ietf-ip", "ietf-vrrp"});
    auto interface = [](const std::string &name, const std::string &id) {
        return "<interface><name>" + name +
               "</name><type>ianaift:ethernetCsmacd</type>"
               "<ipv4 xmlns=\"urn:ietf:params:xml:ns:yang:ietf-ip\">"
               "<vrrp xmlns=\"urn:ietf:params:xml:ns:yang:ietf-vrrp\"><vrrp-instance><vrid>" +
               id + "</vrid></vrrp-instance></vrrp></ipv4></interface>";
    };
    auto notify = [&](const std::string &name, const std::string &id) {
        return schema_.CheckMessage(
            "<vrrp-virtual-router-error-event xmlns=\"urn:ietf:params:xml:ns:yang:ietf-vrrp\">"
            "<interface>" +
                name + "</interface><ipv4><vrid>" + id +
                "</vrid></ipv4><virtual-router-error-reason>interval-error"
                "</virtual-router-error-reason></vrrp-virtual-router-error-event>",
            ZR_DATA_NOTIFICATION,
            "<data>" + Interfaces(interface("eth0", "1") + interface("eth1", "2")) + "</data>");
    };
    EXPECT_THAT(notify("eth0", "1"), IsEmpty());
    EXPECT_THAT(notify("eth1", "2"), IsEmpty());
    EXPECT_THAT(notify("eth1", "1"),
                ElementsAre("data-missing[instance-required] "
                            "/ietf-vrrp:vrrp-virtual-router-error-event/ietf-vrrp:ipv4/"
                            "ietf-vrrp:vrid: \"vrid\" refers to \"1\", which is not there"));
}

TEST_F(Published, AddressesOfInterfacesAreValid)
{
    Load({"ietf-interfaces", "iana-if-type", "ietf-ip"});
    auto check = [&](const std::string &length) {
        return Check(Interfaces(
            "<interface><name>eth0</name><type>ianaift:ethernetCsmacd</type>"
            "<ipv4 xmlns=\"urn:ietf:params:xml:ns:yang:ietf-ip\"><address><ip>192.0.2.1</ip>"
            "<prefix-length>" +
            length +
            "</prefix-length></address></ipv4>"
            "<ipv6 xmlns=\"urn:ietf:params:xml:ns:yang:ietf-ip\"><mtu>1280</mtu><address>"
            "<ip>2001:db8::10</ip><prefix-length>32</prefix-length></address>"
            "<dup-addr-detect-transmits>0</dup-addr-detect-transmits></ipv6></interface>"));
    };
    EXPECT_THAT(check("24"), IsEmpty());
    EXPECT_THAT(check("33"), ElementsAre(StartsWith("invalid-value ")));
}

TEST_F(Published, StaticRoutesAreValid)
{
    Load({"ietf-routing", "ietf-ipv4-unicast-routing"});
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema_.ctx(), "ietf-routing"), "router-id");
    EXPECT_THAT(Check(Routing("<next-hop-address>192.0.2.2</next-hop-address>")), IsEmpty());
    EXPECT_THAT(Check(Routing("<special-next-hop>blackhole</special-next-hop>"
                              "<outgoing-interface>eth9</outgoing-interface>")),
                Contains(StartsWith("data-missing[instance-required] ")));
    EXPECT_THAT(Check(Routing("")), Contains(StartsWith("data-missing[missing-choice] ")));
}

} // namespace datatest
