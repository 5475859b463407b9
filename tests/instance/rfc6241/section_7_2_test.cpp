// SPDX-License-Identifier: Apache-2.0
// RFC 6241, section 7.2: the data of <edit-config>.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

// The interfaces of the examples of that section.
const std::string kTop =
    "container top { list interface { key name; min-elements 5; leaf name { type string; }"
    "  leaf mtu { type uint32; mandatory true; must '. > 100'; }"
    "  leaf peer { type leafref { path '../../interface/name'; } }"
    "  leaf octets { config false; type uint64; }"
    "  choice kind { leaf copper { type empty; } case light { leaf color { type string; }"
    "   leaf length { type uint8; } } }"
    "  container address { leaf ip { type string; } } } }";

Texts Edit(const std::string &interface, const std::string &attributes = "")
{
    Schema schema(kTop);
    return schema.CheckMessage(
        "<config xmlns:xc=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><top xmlns=\"urn:m\">"
        "<interface" +
            attributes + ">" + interface + "</interface></top></config>",
        ZR_DATA_EDIT);
}

std::string EditConfig(const std::string &inner)
{
    return "<rpc message-id=\"101\" xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">"
           "<edit-config><target><running/></target>" +
           inner + "</edit-config></rpc>";
}

} // namespace

TEST(Edit, IsAPartThatNeedNotBeWhole)
{
    EXPECT_THAT(Edit("<name>Ethernet0/0</name><peer>x</peer>"), IsEmpty())
        << "no mandatory leaf, no number of entries, no target of a leafref is asked for";
    EXPECT_THAT(Edit("<name>Ethernet0/0</name><mtu>7</mtu>"), IsEmpty())
        << "no condition is evaluated";
}

TEST(Edit, HasKnownNamesAndValues)
{
    EXPECT_THAT(Edit("<name>a</name><mtu>x</mtu><none/><octets>1</octets>"),
                ElementsAre(StartsWith("invalid-value /top/interface[name='a']/mtu: "),
                            StartsWith("unknown-element /top/interface[name='a']/none: "),
                            StartsWith("unknown-element /top/interface[name='a']/octets: ")));
}

TEST(Edit, HasTheOperationsOfNetconf)
{
    for (const char *operation : {"merge", "replace", "create", "delete", "remove"})
        EXPECT_THAT(Edit("<name>a</name>", std::string(" xc:operation=\"") + operation + "\""),
                    IsEmpty())
            << operation;
    for (const char *operation : {"none", "", "Merge", "update"})
        EXPECT_THAT(Edit("<name>a</name>", std::string(" xc:operation=\"") + operation + "\""),
                    ElementsAre(StartsWith("bad-attribute /top/interface[name='a']: ")))
            << operation;
    EXPECT_THAT(Edit("<name>a</name>", " operation=\"merge\""),
                ElementsAre(StartsWith("unknown-attribute /top/interface[name='a']: ")))
        << "the attribute is in the namespace of NETCONF";
}

TEST(Edit, TellsTheAttributeAtFault)
{
    Schema schema(kTop);
    schema.CheckMessage("<c><top xmlns=\"urn:m\" x:operation=\"none\" "
                        "xmlns:x=\"urn:ietf:params:xml:ns:netconf:base:1.0\"/></c>",
                        ZR_DATA_EDIT);
    ASSERT_EQ(schema.xml().size(), 1u);
    EXPECT_THAT(schema.xml()[0], HasSubstr("<error-info><bad-attribute>operation</bad-attribute>"
                                           "<bad-element>top</bad-element></error-info>"));
}

TEST(Edit, NeedsNoValueOfALeafThatIsDeleted)
{
    EXPECT_THAT(Edit("<name>a</name><mtu xc:operation=\"delete\"/>"), IsEmpty());
    EXPECT_THAT(Edit("<name>a</name><mtu xc:operation=\"remove\">1500</mtu>"), IsEmpty());
    EXPECT_THAT(Edit("<name>a</name><mtu/>", " xc:operation=\"delete\""), IsEmpty())
        << "what stands in a node that is deleted is deleted too";
    EXPECT_THAT(Edit("<name>a</name><mtu xc:operation=\"delete\">x</mtu>"),
                ElementsAre(StartsWith("invalid-value ")));
    EXPECT_THAT(Edit("<name>a</name><mtu/>"), ElementsAre(StartsWith("invalid-value ")));
}

TEST(Edit, DeletesAKeyWithItsEntryAlone)
{
    EXPECT_THAT(Edit("<name xc:operation=\"delete\">a</name>"),
                ElementsAre(StartsWith("bad-attribute /top/interface[name='a']/name: ")));
    EXPECT_THAT(Edit("<name xc:operation=\"delete\">a</name>", " xc:operation=\"delete\""),
                IsEmpty());
}

TEST(Edit, IsTakenOutOfItsOperation)
{
    Schema schema(kTop);
    auto check = [&](const std::string &inner) {
        return schema.CheckMessage(EditConfig(inner), ZR_DATA_EDIT);
    };
    EXPECT_THAT(check("<config><top xmlns=\"urn:m\"/></config>"), IsEmpty());
    EXPECT_THAT(check("<default-operation>none</default-operation><config/>"), IsEmpty());
    EXPECT_THAT(check("<default-operation>delete</default-operation><config/>"),
                ElementsAre(StartsWith("invalid-value /nc:default-operation: ")));
    EXPECT_THAT(check("<config><x xmlns=\"urn:m\"/></config>"),
                ElementsAre(StartsWith("unknown-element /x: ")));
    EXPECT_THAT(check(""), ElementsAre("missing-element /nc:edit-config: "
                                       "\"config\" is missing in \"edit-config\""));
    EXPECT_THAT(schema.CheckMessage("<edit-data xmlns=\"urn:ietf:params:xml:ns:yang:"
                                    "ietf-netconf-nmda\"><config><x xmlns=\"urn:m\"/></config>"
                                    "</edit-data>",
                                    ZR_DATA_EDIT),
                ElementsAre(StartsWith("unknown-element /x: ")));
}

TEST(Data, HasNoAttributesOfEdits)
{
    Schema schema("leaf a { type string; }");
    EXPECT_THAT(schema.Check("<a xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" "
                             "nc:operation=\"merge\">x</a>"),
                ElementsAre("unknown-attribute /a: attribute \"operation\" is not known"));
}

namespace {

const std::string kHosts =
    "container hosts { presence p; list host { key \"name zone\"; leaf name { type string; }"
    "  leaf zone { type int8; } leaf note { type string; } leaf-list tag { type int8; } } }"
    "container plain { leaf a { type int8; } }";

// What an edit finds in a datastore with the host "a" of zone 1.
Texts EditHosts(const std::string &edit, const std::string &defaultOperation = "")
{
    Schema schema(kHosts);
    std::string config =
        "<config xmlns:xc=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" + edit + "</config>";
    if (!defaultOperation.empty())
        config =
            EditConfig("<default-operation>" + defaultOperation + "</default-operation>" + config);
    return schema.CheckMessage(config, ZR_DATA_EDIT,
                               "<data><hosts xmlns=\"urn:m\"><host><name>a</name><zone>1</zone>"
                               "<note>x</note><tag>7</tag></host></hosts></data>");
}

std::string Hosts(const std::string &inner)
{
    return "<hosts xmlns=\"urn:m\">" + inner + "</hosts>";
}

} // namespace

TEST(EditOfADatastore, CreatesWhatIsNotThere)
{
    EXPECT_THAT(EditHosts(Hosts("<host xc:operation='create'><name>a</name><zone>2</zone></host>")),
                IsEmpty());
    EXPECT_THAT(
        EditHosts(Hosts("<host xc:operation='create'><name>a</name><zone>+1</zone></host>")),
        ElementsAre("data-exists /hosts/host[name='a'][zone='1']: \"host\" is there and "
                    "cannot be created"));
    EXPECT_THAT(
        EditHosts(Hosts("<host><name>a</name><zone>1</zone>"
                        "<note xc:operation='create'>y</note>"
                        "<tag xc:operation='create'>7</tag>"
                        "<tag xc:operation='create'>8</tag></host>")),
        ElementsAre(StartsWith("data-exists /hosts/host[name='a'][zone='1']/note: "),
                    StartsWith("data-exists /hosts/host[name='a'][zone='1']/tag[.='7']: ")));
    EXPECT_THAT(EditHosts("<hosts xmlns='urn:m' xc:operation='create'/>"),
                ElementsAre(StartsWith("data-exists /hosts: ")));
}

TEST(EditOfADatastore, DeletesWhatIsThere)
{
    EXPECT_THAT(EditHosts(Hosts("<host xc:operation='delete'><name>a</name><zone>1</zone></host>")),
                IsEmpty());
    EXPECT_THAT(EditHosts(Hosts("<host xc:operation='delete'><name>b</name><zone>1</zone></host>"
                                "<host xc:operation='remove'><name>c</name><zone>1</zone></host>")),
                ElementsAre("data-missing /hosts/host[name='b'][zone='1']: \"host\" is not there"));
    EXPECT_THAT(
        EditHosts(Hosts("<host><name>b</name><zone>1</zone><note xc:operation='delete'/>"
                        "<tag xc:operation='delete'>7</tag></host>")),
        ElementsAre(StartsWith("data-missing /hosts/host[name='b'][zone='1']/note: "),
                    StartsWith("data-missing /hosts/host[name='b'][zone='1']/tag[.='7']: ")));
    EXPECT_THAT(EditHosts("<plain xmlns='urn:m' xc:operation='delete'/>"),
                ElementsAre(StartsWith("data-missing /plain: ")));
}

TEST(EditOfADatastore, LooksIntoNothingThatIsReplaced)
{
    EXPECT_THAT(EditHosts(Hosts("<host xc:operation='replace'><name>a</name><zone>1</zone>"
                                "<note xc:operation='create'>y</note></host>")),
                IsEmpty());
    EXPECT_THAT(EditHosts(Hosts("<host><name>b</name><zone>1</zone><note>y</note></host>")),
                IsEmpty())
        << "a merge makes what is not there";
}

TEST(EditOfADatastore, WithoutADefaultOperationNamesWhatIsThere)
{
    EXPECT_THAT(EditHosts(Hosts("<host><name>a</name><zone>1</zone>"
                                "<tag xc:operation='create'>8</tag></host>"),
                          "none"),
                IsEmpty());
    EXPECT_THAT(EditHosts(Hosts("<host><name>b</name><zone>1</zone>"
                                "<tag xc:operation='create'>8</tag></host>"),
                          "none"),
                ElementsAre("data-missing /hosts/host[name='b'][zone='1']: \"host\" is not there"));
    EXPECT_THAT(EditHosts("<plain xmlns='urn:m'><a xc:operation='create'>1</a></plain>", "none"),
                IsEmpty())
        << "a container without presence is always there";
}

} // namespace datatest
