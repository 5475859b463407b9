// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.8: the list statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

constexpr const char *kUsers =
    "list user { key \"name type\"; leaf name { type string; } leaf type { type string; }"
    " leaf uid { type uint16; } }";

constexpr const char *kServers =
    "list server { key name; unique \"at/ip at/port\"; leaf name { type string; }"
    "  container at { leaf ip { type string; } leaf port { type uint16; default 80; } } }";

static std::string Server(const std::string &name, const std::string &at)
{
    return "<server><name>" + name + "</name><at>" + at + "</at></server>";
}

TEST(List, HasAllItsKeysInEachEntry)
{
    Schema schema(kUsers);
    EXPECT_THAT(schema.Check("<user><name>fred</name></user>"),
                ElementsAre("missing-element /user[1]/type: key \"type\" is missing"));
}

TEST(List, HasNoTwoEntriesWithTheSameKeys)
{
    Schema schema(kUsers);
    EXPECT_THAT(schema.Check("<user><name>a</name><type>bc</type></user>"
                             "<user><name>ab</name><type>c</type></user>"),
                IsEmpty());
    EXPECT_THAT(
        schema.Check("<user><name>a</name><type>b</type></user>"
                     "<user><name>a</name><type>b</type></user>"),
        ElementsAre(
            "bad-element /user[name='a'][type='b']: an entry with these keys stands here before"));
}

TEST(List, IsWarnedOfKeysBehindOtherNodes)
{
    Schema schema(kUsers);
    EXPECT_THAT(schema.Check("<user><name>a</name><uid>1</uid><type>b</type></user>"), IsEmpty());
    EXPECT_THAT(schema.warnings(), ElementsAre("bad-element /user[name='a'][type='b']/type: "
                                               "key \"type\" stands behind what is no key"));
}

TEST(List, IsWarnedOfKeysInAnotherOrderThanTheListNamesThem)
{
    Schema schema("list user { key \"type name\"; leaf name { type string; }"
                  " leaf type { type string; } }");
    EXPECT_THAT(schema.Check("<user><type>b</type><name>a</name></user>"), IsEmpty());
    EXPECT_THAT(schema.warnings(), IsEmpty());
    EXPECT_THAT(schema.Check("<user><name>a</name><type>b</type></user>"), IsEmpty());
    EXPECT_THAT(schema.warnings(), ElementsAre("bad-element /user[type='b'][name='a']/type: "
                                               "key \"type\" stands behind key \"name\""));
}

TEST(List, HasEntriesWithDifferentUniqueLeafs)
{
    Schema schema(kServers);
    EXPECT_THAT(schema.Check(Server("a", "<ip>1</ip>") + Server("b", "<ip>1</ip><port>81</port>")),
                IsEmpty());
    EXPECT_THAT(schema.Check(Server("a", "<ip>1</ip>") + Server("b", "<ip>1</ip><port>80</port>")),
                ElementsAre("operation-failed[data-not-unique] /server[name='b']: "
                            "another entry has the same \"ip\", \"port\""))
        << "a default in use counts";
}

TEST(List, LeavesEntriesOutOfUniqueThatLackALeaf)
{
    Schema schema(kServers);
    EXPECT_THAT(schema.Check(Server("a", "<port>80</port>") + Server("b", "<port>80</port>")),
                IsEmpty());
}

TEST(List, HasTheUniquesThatDeviationsAdd)
{
    Schema schema("list l { key k; leaf k { type string; } leaf b { type string; } }");
    schema.Add("d", "import m { prefix m; } deviation /m:l { deviate add { unique m:b; } }");
    EXPECT_THAT(schema.Check("<l><k>1</k><b>x</b></l><l><k>2</k><b>y</b></l>"), IsEmpty());
    EXPECT_THAT(schema.Check("<l><k>1</k><b>x</b></l><l><k>2</k><b>x</b></l>"),
                ElementsAre("operation-failed[data-not-unique] /l[k='2']: "
                            "another entry has the same \"b\""));
}

TEST(List, TellsTheLineOfEachFault)
{
    Schema schema(kUsers);
    EXPECT_THAT(
        schema.Check("\n<user>\n<name>a</name>\n</user>\n<nothing/>"),
        ElementsAre("missing-element /user[1]/type: key \"type\" is missing",
                    "unknown-element /nothing: element \"nothing\" is not in the schema here"));
    EXPECT_THAT(schema.lines(), ElementsAre(2, 5));
}

TEST(List, ComparesKeysInTheirCanonicalForm)
{
    Schema schema("list l { key \"a b\"; leaf a { type int8; }"
                  "  leaf b { type bits { bit x; bit y; } } }");
    EXPECT_THAT(schema.Check("<l><a>1</a><b>x</b></l><l><a>1</a><b>x y</b></l>"), IsEmpty());
    EXPECT_THAT(schema.Check("<l><a>1</a><b>x y</b></l><l><a>+01</a><b>y x</b></l>"),
                ElementsAre(StartsWith("bad-element /l[a='1'][b='x y']: ")));
}

TEST(List, OfStateNeedsNoKeys)
{
    Schema schema("list l { config false; leaf a { type int8; } }"
                  " list k { config false; key a; leaf a { type int8; } }");
    EXPECT_THAT(schema.Check("<l><a>1</a></l><l><a>1</a></l><l/>", ZR_DATA_CONFIG_AND_STATE),
                IsEmpty());
    EXPECT_THAT(schema.Check("<k><a>1</a></k><k><a>1</a></k>", ZR_DATA_CONFIG_AND_STATE),
                ElementsAre(StartsWith("bad-element /k[a='1']: ")));
    EXPECT_THAT(schema.Check("<k/>", ZR_DATA_CONFIG_AND_STATE),
                ElementsAre("missing-element /k[1]/a: key \"a\" is missing"));
}

TEST(List, HasItsKeysAlsoInParameters)
{
    Schema schema("rpc r { input { list l { key a; leaf a { type int8; } leaf b { type int8; } }"
                  "  list f { leaf b { type int8; } } } }");
    auto request = [&](const std::string &input) {
        return schema.CheckMessage("<r xmlns=\"urn:m\">" + input + "</r>", ZR_DATA_REQUEST);
    };
    EXPECT_THAT(request("<l><a>1</a></l><l><a>2</a></l><f><b>1</b></f><f><b>1</b></f>"), IsEmpty());
    EXPECT_THAT(request("<l><b>1</b></l>"),
                ElementsAre("missing-element /r/l[1]/a: key \"a\" is missing"));
    EXPECT_THAT(request("<l><a>1</a></l><l><a>1</a></l>"),
                ElementsAre(StartsWith("bad-element /r/l[a='1']: ")));
}

TEST(List, HasSeveralUniqueStatements)
{
    Schema schema(
        "list l { key k; unique a; unique \"a b\"; unique c; leaf k { type int8; }"
        "  leaf a { type int8; } leaf b { type int8; } leaf c { type int8; default 7; } }");
    EXPECT_THAT(
        schema.Check("<l><k>1</k><a>1</a><b>1</b></l><l><k>2</k><a>2</a><b>1</b><c>1</c></l>"),
        IsEmpty());
    EXPECT_THAT(
        schema.Check("<l><k>1</k><a>1</a><b>1</b></l><l><k>2</k><a>1</a><b>2</b><c>7</c></l>"),
        UnorderedElementsAre(
            "operation-failed[data-not-unique] /l[k='2']: another entry has the same \"a\"",
            "operation-failed[data-not-unique] /l[k='2']: another entry has the same \"c\""));
}

TEST(List, IsUniqueAmongTheEntriesOfOneParent)
{
    Schema schema("list o { key k; leaf k { type int8; } list l { key k; unique a;"
                  "  leaf k { type int8; } leaf a { type int8; } } }");
    EXPECT_THAT(schema.Check("<o><k>1</k><l><k>1</k><a>1</a></l></o>"
                             "<o><k>2</k><l><k>1</k><a>1</a></l></o>"),
                IsEmpty());
    EXPECT_THAT(schema.Check("<o><k>1</k><l><k>1</k><a>1</a></l><l><k>2</k><a>1</a></l></o>"),
                ElementsAre(StartsWith("operation-failed[data-not-unique] /o[k='1']/l[k='2']: ")));
}

TEST(List, OfStateHasItsUniqueLeafsToo)
{
    Schema schema("list l { config false; unique a; leaf a { type int8; } }");
    EXPECT_THAT(schema.Check("<l><a>1</a></l><l><a>2</a></l><l/><l/>", ZR_DATA_CONFIG_AND_STATE),
                IsEmpty());
    EXPECT_THAT(schema.Check("<l><a>1</a></l><l><a>1</a></l>", ZR_DATA_CONFIG_AND_STATE),
                ElementsAre(StartsWith("operation-failed[data-not-unique] /l[2]: ")));
}

TEST(List, HasItsEntriesInTheOrderOfTheUser)
{
    Schema schema("list l { key k; ordered-by user; leaf k { type int8; } } leaf b { type int8; }");
    EXPECT_EQ(schema.Write(Wrap("<l><k>3</k></l><b>9</b><l><k>1</k></l>"),
                           {ZR_DATA_XML, ZR_DATA_EXPLICIT, 0}),
              Wrap("<l><k>3</k></l><l><k>1</k></l><b>9</b>"));
}

TEST(List, HasNumbersOfEntriesLikeALeafList)
{
    Schema schema("list l { key k; min-elements 1; max-elements 2; leaf k { type int8; } }");
    EXPECT_THAT(schema.Check("<l><k>1</k></l><l><k>2</k></l>"), IsEmpty());
    EXPECT_THAT(schema.Check(""),
                ElementsAre(StartsWith("operation-failed[too-few-elements] /l: ")));
    EXPECT_THAT(schema.Check("<l><k>1</k></l><l><k>2</k></l><l><k>3</k></l>"),
                ElementsAre(StartsWith("operation-failed[too-many-elements] /l: ")));
}

} // namespace datatest
