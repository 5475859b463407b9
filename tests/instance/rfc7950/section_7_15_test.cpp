// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.15: the action statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const std::string kServers =
    "list server { key \"name zone\"; leaf name { type string; } leaf zone { type string; }"
    "  leaf least { type int8; default 0; }"
    "  action reset { input { leaf delay { type int8; mandatory true; must '. >= ../../least'; } }"
    "   output { leaf at { type string; mandatory true; } } }"
    "  container unit { action stop { input { leaf now { type empty; } } } } }"
    " container box { action open; }";

std::string Action(const std::string &inner)
{
    return "<rpc message-id=\"1\" xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">"
           "<action xmlns=\"urn:ietf:params:xml:ns:yang:1\">" +
           inner + "</action></rpc>";
}

std::string Server(const std::string &inner)
{
    return Action("<server xmlns=\"urn:m\">" + inner + "</server>");
}

const std::string kKeys = "<name>a</name><zone>z</zone>";

} // namespace

TEST(Action, StandsInTheNodesThatLeadToIt)
{
    Schema schema(kServers);
    EXPECT_THAT(
        schema.CheckMessage(Server(kKeys + "<reset><delay>1</delay></reset>"), ZR_DATA_REQUEST),
        IsEmpty());
    EXPECT_THAT(
        schema.CheckMessage(Server(kKeys + "<unit><stop><now/></stop></unit>"), ZR_DATA_REQUEST),
        IsEmpty());
    EXPECT_THAT(schema.CheckMessage("<action xmlns=\"urn:ietf:params:xml:ns:yang:1\">"
                                    "<box xmlns=\"urn:m\"><open/></box></action>",
                                    ZR_DATA_REQUEST),
                IsEmpty())
        << "the rpc around it may be left out";
}

TEST(Action, HasAllKeysOfTheEntriesThatLeadToIt)
{
    Schema schema(kServers);
    EXPECT_THAT(schema.CheckMessage(Server("<name>a</name><reset><delay>1</delay></reset>"),
                                    ZR_DATA_REQUEST),
                ElementsAre("missing-element /server[1]/zone: key \"zone\" is missing"));
}

TEST(Action, StandsAloneInARequest)
{
    Schema schema(kServers);
    std::string reset = "<reset><delay>1</delay></reset>";
    EXPECT_THAT(schema.CheckMessage(Server(kKeys + reset + reset), ZR_DATA_REQUEST),
                ElementsAre(StartsWith("bad-element /server[name='a'][zone='z']/reset: ")));
    EXPECT_THAT(schema.CheckMessage(Server(kKeys + reset + "<least>1</least>"), ZR_DATA_REQUEST),
                ElementsAre(StartsWith("bad-element /server[name='a'][zone='z']/least: ")))
        << "nothing but keys stands beside it";
    EXPECT_THAT(schema.CheckMessage(Server(kKeys), ZR_DATA_REQUEST),
                ElementsAre("missing-element /server[name='a'][zone='z']: no action stands in "
                            "\"server\""));
    EXPECT_THAT(schema.CheckMessage(Action(""), ZR_DATA_REQUEST),
                ElementsAre(StartsWith("missing-element /yang:action: ")));
}

TEST(Action, OfAnotherNameIsUnknown)
{
    Schema schema(kServers);
    EXPECT_THAT(schema.CheckMessage(Server(kKeys + "<open/>"), ZR_DATA_REQUEST),
                ElementsAre(StartsWith("unknown-element /server[name='a'][zone='z']/open: ")));
    EXPECT_THAT(
        schema.CheckMessage("<server xmlns=\"urn:m\">" + kKeys + "</server>", ZR_DATA_REQUEST),
        ElementsAre(StartsWith("unknown-element /server: ")))
        << "without <action> it is no rpc";
}

TEST(Action, KeepsTheConditionsOfItsInputInTheEntryOfTheDatastore)
{
    Schema schema(kServers);
    std::string store = Wrap("<server><name>b</name><zone>z</zone><least>9</least></server>"
                             "<server>" +
                             kKeys + "<least>3</least></server>");
    auto reset = [&](const char *delay, const std::string &datastore) {
        return schema.CheckMessage(Server(kKeys + "<reset><delay>" + delay + "</delay></reset>"),
                                   ZR_DATA_REQUEST, datastore);
    };
    EXPECT_THAT(reset("3", store), IsEmpty());
    EXPECT_THAT(reset("2", store), ElementsAre(StartsWith("operation-failed[must-violation] "
                                                          "/server[name='a'][zone='z']/reset/")));
    EXPECT_THAT(reset("0", Wrap("")), IsEmpty()) << "an entry with its defaults";
}

TEST(Action, GivesTheParametersOfItsOutputAlone)
{
    Schema schema(kServers);
    auto check = [&](const std::string &output) {
        return schema.CheckMessage("<rpc-reply xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" +
                                       output + "</rpc-reply>",
                                   ZR_DATA_REPLY, "", "/m:server/reset");
    };
    EXPECT_THAT(check("<at xmlns=\"urn:m\">x</at>"), IsEmpty());
    EXPECT_THAT(check("<delay xmlns=\"urn:m\">1</delay>"),
                ElementsAre("missing-element /server[1]/reset/at: \"at\" is missing",
                            StartsWith("unknown-element /server[1]/reset/delay: ")));
}

TEST(Action, NeedsAllContainersAndListsThatLeadToIt)
{
    Schema schema(kServers);
    EXPECT_THAT(schema.CheckMessage(Server(kKeys + "<stop/>"), ZR_DATA_REQUEST),
                ElementsAre(StartsWith("unknown-element /server[name='a'][zone='z']/stop: ")))
        << "the container between is left out";
    EXPECT_THAT(schema.CheckMessage(Action("<reset xmlns=\"urn:m\"><delay>1</delay></reset>"),
                                    ZR_DATA_REQUEST),
                testing::Contains(StartsWith("unknown-element /reset: ")));
}

TEST(Action, IsTheOnlyOneInARequest)
{
    Schema schema(kServers);
    EXPECT_THAT(schema.CheckMessage(Action("<box xmlns=\"urn:m\"><open/></box>"
                                           "<box xmlns=\"urn:m\"><open/></box>"),
                                    ZR_DATA_REQUEST),
                ElementsAre(StartsWith("bad-element /box: ")));
    EXPECT_THAT(schema.CheckMessage(Server(kKeys + "<reset><delay>1</delay></reset>"
                                                   "<unit><stop/></unit>"),
                                    ZR_DATA_REQUEST),
                ElementsAre(StartsWith("bad-element /server[name='a'][zone='z']/unit: ")));
}

TEST(Action, HasItsInputsMandatoryLeafsAndDefaults)
{
    Schema schema("container c { action a { input { leaf x { type int8; mandatory true; }"
                  "  leaf d { type int8; default 4; must 'not(. < ../x)'; } } } }");
    auto request = [&](const std::string &input) {
        return schema.CheckMessage(Action("<c xmlns=\"urn:m\"><a>" + input + "</a></c>"),
                                   ZR_DATA_REQUEST);
    };
    EXPECT_THAT(request("<x>4</x>"), IsEmpty());
    EXPECT_THAT(request("<x>5</x>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /c/a/d: ")));
    EXPECT_THAT(request("<d>5</d>"), ElementsAre("missing-element /c/a/x: \"x\" is missing"));
}

TEST(Action, IsWarnedOfParametersInAnotherOrder)
{
    Schema schema(
        "container c { action a { input { leaf x { type int8; } leaf y { type int8; } } } }");
    EXPECT_THAT(schema.CheckMessage(Action("<c xmlns=\"urn:m\"><a><y>1</y><x>1</x></a></c>"),
                                    ZR_DATA_REQUEST),
                IsEmpty());
    EXPECT_THAT(schema.warnings(), ElementsAre(StartsWith("bad-element /c/a/x: ")));
}

TEST(Action, WithoutOutputIsAnsweredByOk)
{
    Schema schema(kServers);
    auto reply = [&](const std::string &inner) {
        return schema.CheckMessage("<rpc-reply xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" +
                                       inner + "</rpc-reply>",
                                   ZR_DATA_REPLY, "", "/m:box/open");
    };
    EXPECT_THAT(reply("<ok/>"), IsEmpty());
    EXPECT_THAT(reply(""), ElementsAre(StartsWith("missing-element /nc:rpc-reply: ")));
    EXPECT_THAT(reply("<x xmlns=\"urn:m\"/>"),
                testing::Contains(StartsWith("unknown-element /box/open/x: ")));
}

} // namespace datatest
