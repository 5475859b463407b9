// SPDX-License-Identifier: Apache-2.0
// The usage examples of RFC 7950 that have data, a section each.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

std::string Source(const std::string &name, const std::string &ns, const std::string &prefix,
                   const std::string &body)
{
    return "module " + name + " { yang-version 1.1; namespace \"" + ns + "\"; prefix " + prefix +
           "; " + body + " }";
}

// The module that the edits of the examples are written for.
Schema &System()
{
    static Schema schema;
    if (ZR_CTX_GetModuleByModName(schema.ctx(), "example-config") == nullptr)
        schema.AddSource(
            "example-config",
            Source(
                "example-config", "urn:example:config", "ex",
                "container system { container services { container ssh { presence \"Enables SSH\";"
                "   leaf port { type uint16; default 22; } leaf-list allow-user { type string; }"
                "   leaf-list cipher { type string; ordered-by user; } } }"
                "  container protocol { choice name { case a { leaf udp { type empty; } }"
                "   case b { leaf tcp { type empty; } } } }"
                "  list user { key \"first-name surname\"; ordered-by user;"
                "   leaf first-name { type string; } leaf surname { type string; }"
                "   leaf type { type string; } }"
                "  list account { key name; leaf name { type string; } leaf type { type string; }"
                "   leaf full-name { type string; } } }"));
    return schema;
}

std::string InSystem(const std::string &inner)
{
    return "<system xmlns=\"urn:example:config\" xmlns:ex=\"urn:example:config\">" + inner +
           "</system>";
}

Texts Data(const std::string &inner)
{
    return System().CheckDocument("<config>" + InSystem(inner) + "</config>");
}

Texts Edit(const std::string &inner)
{
    return System().CheckDocument(
        "<rpc message-id=\"101\" xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\""
        " xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\""
        " xmlns:yang=\"urn:ietf:params:xml:ns:yang:1\"><edit-config><target><running/></target>"
        "<config>" +
            InSystem(inner) + "</config></edit-config></rpc>",
        ZR_DATA_EDIT);
}

std::string Ssh(const std::string &inner)
{
    return "<services><ssh>" + inner + "</ssh></services>";
}

} // namespace

TEST(Rfc7950, Section7_5_4_3Mtu)
{
    Schema schema(
        "container interface { leaf ifType { type enumeration { enum ethernet; enum atm; } }"
        " leaf ifMTU { type uint32; }"
        " must 'ifType != \"ethernet\" or ifMTU = 1500' {"
        "  error-message \"An Ethernet MTU must be 1500\"; }"
        " must 'ifType != \"atm\" or (ifMTU <= 17966 and ifMTU >= 64)' {"
        "  error-message \"An ATM MTU must be 64 .. 17966\"; } }");
    auto check = [&](const char *type, const char *mtu) {
        return schema.Check(std::string("<interface><ifType>") + type + "</ifType><ifMTU>" + mtu +
                            "</ifMTU></interface>");
    };
    EXPECT_THAT(check("ethernet", "1500"), IsEmpty());
    EXPECT_THAT(check("atm", "64"), IsEmpty());
    EXPECT_THAT(check("ethernet", "1499"),
                ElementsAre("operation-failed[must-violation] /interface: "
                            "An Ethernet MTU must be 1500"));
    EXPECT_THAT(check("atm", "17967"), ElementsAre("operation-failed[must-violation] /interface: "
                                                   "An ATM MTU must be 64 .. 17966"));
}

TEST(Rfc7950, Section7_5_9Ssh)
{
    EXPECT_THAT(Data("<services><ssh/></services>"), IsEmpty());
    EXPECT_THAT(Edit("<services><ssh nc:operation=\"delete\"/></services>"), IsEmpty());
}

TEST(Rfc7950, Section7_6_8Port)
{
    EXPECT_THAT(Data(Ssh("<port>2022</port>")), IsEmpty());
    EXPECT_THAT(Edit(Ssh("<port>2022</port>")), IsEmpty());
    EXPECT_THAT(Edit(Ssh("<port>65536</port>")), SizeIs(1));
}

TEST(Rfc7950, Section7_7_10UsersAndCiphers)
{
    EXPECT_THAT(Data(Ssh("<allow-user>alice</allow-user><allow-user>bob</allow-user>")), IsEmpty());
    EXPECT_THAT(Edit(Ssh("<allow-user>eric</allow-user>")), IsEmpty());
    EXPECT_THAT(Edit(Ssh("<cipher nc:operation=\"create\" yang:insert=\"after\""
                         " yang:value=\"3des-cbc\">blowfish-cbc</cipher>")),
                IsEmpty());
}

TEST(Rfc7950, Section7_8_3_1UniqueServers)
{
    Schema schema("list server { key name; unique \"ip port\"; leaf name { type string; }"
                  " leaf ip { type string; } leaf port { type uint16; } }");
    const std::string smtp = "<server><name>smtp</name><ip>192.0.2.1</ip><port>25</port></server>";
    EXPECT_THAT(
        schema.Check(smtp + "<server><name>http</name><ip>192.0.2.1</ip><port>25</port>"
                            "</server>"),
        ElementsAre(StartsWith("operation-failed[data-not-unique] /server[name='http']: ")));
    EXPECT_THAT(schema.Check(smtp + "<server><name>http</name><ip>192.0.2.1</ip></server>"
                                    "<server><name>ftp</name><ip>192.0.2.1</ip></server>"),
                IsEmpty());
}

TEST(Rfc7950, Section7_8_7Users)
{
    EXPECT_THAT(Data("<account><name>fred</name><type>admin</type><full-name>Fred Flintstone"
                     "</full-name></account>"),
                IsEmpty());
    EXPECT_THAT(Edit("<account nc:operation=\"create\"><name>barney</name><type>admin</type>"
                     "<full-name>Barney Rubble</full-name></account>"),
                IsEmpty());
    auto insert = [](const char *key) {
        return Edit(
            std::string("<user nc:operation=\"merge\" yang:insert=\"before\" yang:key=\"[ex:") +
            key +
            "='fred']\n  [ex:surname='flintstone']\"><first-name>barney</first-name>"
            "<surname>rubble</surname></user>");
    };
    EXPECT_THAT(insert("first-name"), IsEmpty());
    EXPECT_THAT(insert("name"), ElementsAre(StartsWith("bad-attribute ")))
        << "as the example has it, which is an erratum: no key has that name";
}

TEST(Rfc7950, Section7_9_6Protocol)
{
    EXPECT_THAT(Data("<protocol><tcp/></protocol>"), IsEmpty());
    EXPECT_THAT(Edit("<protocol><udp nc:operation=\"create\"/></protocol>"), IsEmpty());
    EXPECT_THAT(Data("<protocol><tcp/><udp/></protocol>"), SizeIs(1));
}

TEST(Rfc7950, Section7_13_4HttpServer)
{
    Schema schema;
    schema.Add("example-system", "grouping endpoint { leaf ip { type string; }"
                                 " leaf port { type uint16; } }");
    schema.Add("m",
               "import example-system { prefix sys; }"
               " container http-server { leaf name { type string; }"
               "  uses sys:endpoint { refine port { default 80; } } }"
               " list server { key \"ip port\"; leaf name { type string; } uses sys:endpoint; }");
    EXPECT_THAT(schema.Check("<http-server><name>extern-web</name><ip>192.0.2.1</ip>"
                             "<port>80</port></http-server>"),
                IsEmpty());
    EXPECT_THAT(schema.Check("<server><ip>192.0.2.1</ip><port>80</port></server>"
                             "<server><ip>192.0.2.1</ip></server>"),
                SizeIs(1));
}

TEST(Rfc7950, Section7_14_5RockTheHouse)
{
    Schema schema;
    schema.AddSource("example-rock", Source("example-rock", "urn:example:rock", "rock",
                                            "rpc rock-the-house { input { leaf zip-code {"
                                            " type string; } } }"));
    EXPECT_THAT(
        schema.CheckMessage("<rpc message-id=\"101\" "
                            "xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><rock-the-house "
                            "xmlns=\"urn:example:rock\"><zip-code>27606-0100</zip-code>"
                            "</rock-the-house></rpc>",
                            ZR_DATA_REQUEST),
        IsEmpty());
    EXPECT_THAT(schema.CheckMessage("<rpc-reply message-id=\"101\" "
                                    "xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><ok/>"
                                    "</rpc-reply>",
                                    ZR_DATA_REPLY, "", "example-rock:rock-the-house"),
                IsEmpty());
}

TEST(Rfc7950, Section7_15_3ServerFarm)
{
    Schema schema;
    schema.AddSource(
        "example-server-farm",
        Source("example-server-farm", "urn:example:server-farm", "sfarm",
               "list server { key name; leaf name { type string; } action reset {"
               " input { leaf reset-at { type string; mandatory true; } }"
               " output { leaf reset-finished-at { type string; mandatory true; } } } }"));
    EXPECT_THAT(
        schema.CheckMessage(
            "<rpc message-id=\"101\" xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><action "
            "xmlns=\"urn:ietf:params:xml:ns:yang:1\"><server xmlns=\"urn:example:server-farm\">"
            "<name>apache-1</name><reset><reset-at>2014-07-29T13:42:00Z</reset-at></reset>"
            "</server></action></rpc>",
            ZR_DATA_REQUEST),
        IsEmpty());
    EXPECT_THAT(schema.CheckMessage(
                    "<rpc-reply message-id=\"101\" "
                    "xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><reset-finished-at "
                    "xmlns=\"urn:example:server-farm\">2014-07-29T13:42:12Z</reset-finished-at>"
                    "</rpc-reply>",
                    ZR_DATA_REPLY, "", "/example-server-farm:server/reset"),
                IsEmpty());
}

TEST(Rfc7950, Section7_16_3Events)
{
    Schema schema;
    schema.Add("example-interface-module",
               "container interfaces { list interface { key name; leaf name { type string; }"
               " notification interface-enabled { leaf by-user { type string; } } } }");
    schema.Add("ex", "list interface { key name; leaf name { type string; } }");
    schema.Add("event", "notification event { leaf event-class { type string; }"
                        " leaf reporting-entity { type instance-identifier {"
                        "  require-instance false; } } leaf severity { type string; } }");
    auto notify = [&](const std::string &inner) {
        return schema.CheckMessage(
            "<notification xmlns=\"urn:ietf:params:xml:ns:netconf:notification:1.0\">"
            "<eventTime>2008-07-08T00:01:00Z</eventTime>" +
                inner + "</notification>",
            ZR_DATA_NOTIFICATION);
    };
    EXPECT_THAT(notify("<event xmlns=\"urn:event\" xmlns:ex=\"urn:ex\">"
                       "<event-class>fault</event-class><reporting-entity>"
                       "/ex:interface[ex:name='Ethernet0']</reporting-entity>"
                       "<severity>major</severity></event>"),
                IsEmpty());
    EXPECT_THAT(notify("<interfaces xmlns=\"urn:example-interface-module\"><interface>"
                       "<name>eth1</name><interface-enabled><by-user>fred</by-user>"
                       "</interface-enabled></interface></interfaces>"),
                IsEmpty());
}

TEST(Rfc7950, Section7_17_3Ds0)
{
    Schema schema;
    schema.Add("example-interface-module",
               "container interfaces { list ifEntry { key ifIndex; leaf ifIndex { type uint32; }"
               " leaf ifDescr { type string; } leaf ifType { type string; }"
               " leaf ifMtu { type int32; } } }");
    schema.Add("ds0", "import example-interface-module { prefix if; }"
                      " augment /if:interfaces/if:ifEntry { when \"if:ifType='ds0'\";"
                      "  leaf ds0ChannelNumber { type uint8; } }");
    auto check = [&](const char *type) {
        return schema.CheckDocument(
            std::string(
                "<data><interfaces xmlns=\"urn:example-interface-module\" "
                "xmlns:ds0=\"urn:ds0\"><ifEntry><ifIndex>2</ifIndex><ifDescr>Flintstone Inc "
                "DS0</ifDescr><ifType>") +
            type +
            "</ifType><ds0:ds0ChannelNumber>1</ds0:ds0ChannelNumber></ifEntry></interfaces></"
            "data>");
    };
    EXPECT_THAT(check("ds0"), IsEmpty());
    EXPECT_THAT(check("ethernetCsmacd"), ElementsAre(StartsWith("unknown-element ")));
}

TEST(Rfc7950, Section9_10_5Crypto)
{
    Schema schema;
    schema.AddSource("example-crypto-base",
                     Source("example-crypto-base", "urn:example:crypto-base", "crypto",
                            "identity crypto-alg; identity symmetric-key;"));
    schema.AddSource(
        "example-des",
        Source("example-des", "urn:example:des", "des",
               "import example-crypto-base { prefix crypto; }"
               " identity des { base crypto:crypto-alg; base crypto:symmetric-key; }"
               " identity des3 { base crypto:crypto-alg; base crypto:symmetric-key; }"));
    schema.AddSource("example-my-crypto",
                     Source("example-my-crypto", "urn:example:my-crypto", "mc",
                            "import example-crypto-base { prefix crypto; }"
                            " identity aes { base crypto:crypto-alg; }"
                            " leaf crypto { type identityref { base crypto:crypto-alg; } }"
                            " container aes-parameters { when \"../crypto = 'mc:aes'\";"
                            "  leaf bits { type uint16; } }"));
    auto check = [&](const std::string &crypto) {
        return schema.CheckDocument("<data xmlns=\"urn:example:my-crypto\">" + crypto + "</data>");
    };
    const std::string parameters = "<aes-parameters><bits>128</bits></aes-parameters>";
    EXPECT_THAT(check("<crypto xmlns:des=\"urn:example:des\">des:des3</crypto>"), IsEmpty());
    EXPECT_THAT(check("<crypto xmlns:x=\"urn:example:des\">x:des3</crypto>"), IsEmpty());
    EXPECT_THAT(check("<crypto xmlns:mc=\"urn:example:my-crypto\">mc:aes</crypto>" + parameters),
                IsEmpty());
    EXPECT_THAT(check("<crypto>aes</crypto>" + parameters), IsEmpty());
    EXPECT_THAT(check("<crypto xmlns:x=\"urn:example:des\">x:des3</crypto>" + parameters),
                SizeIs(1));
}

TEST(Rfc7950, Section10_4_1_1Ethernet)
{
    Schema schema;
    schema.AddSource(
        "example-interface",
        Source("example-interface", "urn:m", "exif",
               "identity interface-type; identity ethernet { base interface-type; }"
               " identity fast-ethernet { base ethernet; } identity gigabit-ethernet { base "
               "ethernet; }"
               " list interface { key name; leaf name { type string; }"
               "  leaf type { type identityref { base interface-type; } } }"
               " augment /interface { when 'derived-from(type, \"exif:ethernet\")';"
               "  leaf generic { type empty; } }"
               " augment /interface { when 'derived-from-or-self(type, \"exif:fast-ethernet\")';"
               "  leaf fast { type empty; } }"));
    auto check = [&](const std::string &type, const std::string &leaf) {
        return schema
            .Check("<interface><name>a</name><type>" + type + "</type><" + leaf + "/></interface>")
            .size();
    };
    EXPECT_EQ(check("fast-ethernet", "generic"), 0u);
    EXPECT_EQ(check("gigabit-ethernet", "generic"), 0u);
    EXPECT_EQ(check("ethernet", "generic"), 1u);
    EXPECT_EQ(check("fast-ethernet", "fast"), 0u);
    EXPECT_EQ(check("gigabit-ethernet", "fast"), 1u);
}

} // namespace datatest
