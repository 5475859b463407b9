// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.16: the notification statement. The envelope is that of RFC 5277.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const std::string kEvents =
    "container interfaces { list interface { key name; leaf name { type string; }"
    "  leaf enabled { type boolean; default true; } leaf up { config false; type boolean; }"
    "  notification failed { must \"../up = 'false'\"; leaf why { type string; mandatory true; } } "
    "} }"
    " notification lost { leaf name { type leafref { path '/interfaces/interface/name'; } }"
    "  leaf-list times { type int8; }"
    "  must \"/interfaces/interface[name = current()/name]/enabled = 'true'\"; }";

std::string Event(const std::string &inner, const std::string &time = "2026-01-02T03:04:05Z")
{
    std::string text = "<notification xmlns=\"urn:ietf:params:xml:ns:netconf:notification:1.0\">";
    if (!time.empty())
        text += "<eventTime>" + time + "</eventTime>";
    return text + inner + "</notification>";
}

const std::string kStore = Wrap("<interfaces><interface><name>a</name><up>false</up></interface>"
                                "<interface><name>b</name><enabled>false</enabled></interface>"
                                "</interfaces>");

} // namespace

TEST(Notification, LooksIntoTheDatastore)
{
    Schema schema(kEvents);
    auto lost = [&](const char *name) {
        return schema.CheckMessage(
            Event(std::string("<lost xmlns=\"urn:m\"><name>") + name + "</name></lost>"),
            ZR_DATA_NOTIFICATION, kStore);
    };
    EXPECT_THAT(lost("a"), IsEmpty()) << "a default of the datastore is in use";
    EXPECT_THAT(lost("b"), ElementsAre(StartsWith("operation-failed[must-violation] /lost: ")));
    EXPECT_THAT(lost("c"), ElementsAre(StartsWith("operation-failed[must-violation] /lost: "),
                                       StartsWith("data-missing[instance-required] /lost/name: ")));
}

TEST(Notification, IsTakenBareAndInItsEnvelope)
{
    Schema schema("notification n { leaf a { type int8; mandatory true; } }");
    EXPECT_THAT(schema.CheckMessage("<n xmlns=\"urn:m\"><a>1</a></n>", ZR_DATA_NOTIFICATION),
                IsEmpty());
    EXPECT_THAT(schema.CheckMessage(Event("<n xmlns=\"urn:m\"><a>1</a></n>"), ZR_DATA_NOTIFICATION),
                IsEmpty());
    EXPECT_THAT(schema.CheckMessage(Event("<n xmlns=\"urn:m\"/>"), ZR_DATA_NOTIFICATION),
                ElementsAre("missing-element /n/a: \"a\" is missing"));
    EXPECT_THAT(schema.CheckMessage(Event("<x xmlns=\"urn:m\"/>"), ZR_DATA_NOTIFICATION),
                ElementsAre(StartsWith("unknown-element /x: ")));
}

TEST(Notification, HasItsTimeInTheEnvelope)
{
    Schema schema("notification n;");
    const std::string n = "<n xmlns=\"urn:m\"/>";
    EXPECT_THAT(schema.CheckMessage(Event(n, ""), ZR_DATA_NOTIFICATION),
                ElementsAre("missing-element /ncEvent:notification: "
                            "\"eventTime\" is missing in \"notification\""));
    EXPECT_THAT(schema.CheckMessage(Event(n, "today"), ZR_DATA_NOTIFICATION),
                ElementsAre(StartsWith("invalid-value /ncEvent:eventTime: ")));
    EXPECT_THAT(schema.CheckMessage(Event(n, "2026-01-02T03:04:05.25+01:00"), ZR_DATA_NOTIFICATION),
                IsEmpty());
    EXPECT_THAT(schema.CheckMessage(Event(n + n), ZR_DATA_NOTIFICATION),
                ElementsAre(StartsWith("bad-element /n: ")));
    EXPECT_THAT(schema.CheckMessage(Event(""), ZR_DATA_NOTIFICATION),
                ElementsAre(StartsWith("missing-element /ncEvent:notification: ")));
}

TEST(Notification, InsideDataStandsInTheNodesThatLeadToIt)
{
    Schema schema(kEvents);
    auto failed = [&](const std::string &inner) {
        return schema.CheckMessage(
            Event("<interfaces xmlns=\"urn:m\"><interface>" + inner + "</interface></interfaces>"),
            ZR_DATA_NOTIFICATION, kStore);
    };
    EXPECT_THAT(failed("<name>a</name><failed><why>x</why></failed>"), IsEmpty());
    EXPECT_THAT(failed("<name>b</name><failed><why>x</why></failed>"),
                ElementsAre(StartsWith("operation-failed[must-violation] "
                                       "/interfaces/interface[name='b']/failed: ")))
        << "the state of the entry is seen";
    EXPECT_THAT(failed("<name>a</name><failed/>"),
                ElementsAre("missing-element /interfaces/interface[name='a']/failed/why: "
                            "\"why\" is missing"));
    EXPECT_THAT(failed("<failed><why>x</why></failed>"),
                testing::Contains("missing-element /interfaces/interface[3]/name: "
                                  "key \"name\" is missing"));
    EXPECT_THAT(failed("<name>a</name>"),
                ElementsAre("missing-element /interfaces/interface[name='a']: "
                            "no notification stands in \"interface\""));
}

TEST(Notification, MayHoldAValueTwiceAndInAnyOrder)
{
    Schema schema(kEvents);
    EXPECT_THAT(schema.CheckMessage("<lost xmlns=\"urn:m\"><times>1</times><times>1</times>"
                                    "<name>a</name></lost>",
                                    ZR_DATA_NOTIFICATION, kStore),
                IsEmpty());
    EXPECT_THAT(schema.warnings(), IsEmpty());
}

TEST(Notification, HasItsMandatoryLeafsWhereTheirParentIs)
{
    Schema schema("notification n { container c { leaf a { type int8; mandatory true; } }"
                  "  container p { presence x; leaf b { type int8; mandatory true; } } }");
    auto event = [&](const std::string &inner) {
        return schema.CheckMessage("<n xmlns=\"urn:m\">" + inner + "</n>", ZR_DATA_NOTIFICATION);
    };
    EXPECT_THAT(event("<c><a>1</a></c>"), IsEmpty());
    EXPECT_THAT(event("<p/>"),
                testing::UnorderedElementsAre("missing-element /n/c/a: \"a\" is missing",
                                              "missing-element /n/p/b: \"b\" is missing"));
}

TEST(Notification, HasItsDefaultsInUse)
{
    Schema schema("notification n { leaf a { type int8; default 1; }"
                  "  leaf-list l { type int8; default 2; default 3; } must 'a + sum(l) = 6'; }");
    auto event = [&](const std::string &inner) {
        return schema.CheckMessage("<n xmlns=\"urn:m\">" + inner + "</n>", ZR_DATA_NOTIFICATION);
    };
    EXPECT_THAT(event(""), IsEmpty());
    EXPECT_THAT(event("<l>5</l>"), IsEmpty());
    EXPECT_THAT(event("<a>2</a>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /n: ")));
}

TEST(Notification, InsideDataNeedsAllContainersAndListsThatLeadToIt)
{
    Schema schema("container c { container d { notification n; }"
                  "  list l { key k; leaf k { type int8; } notification e; } }");
    auto event = [&](const std::string &inner) {
        return schema.CheckMessage(Event("<c xmlns=\"urn:m\">" + inner + "</c>"),
                                   ZR_DATA_NOTIFICATION);
    };
    EXPECT_THAT(event("<d><n/></d>"), IsEmpty());
    EXPECT_THAT(event("<n/>"), ElementsAre(StartsWith("unknown-element /c/n: ")));
    EXPECT_THAT(event("<l><k>1</k><e/></l>"), IsEmpty());
    EXPECT_THAT(event("<l><e/></l>"),
                ElementsAre("missing-element /c/l[1]/k: key \"k\" is missing"));
    EXPECT_THAT(event("<e/>"), ElementsAre(StartsWith("unknown-element /c/e: ")));
}

} // namespace datatest
