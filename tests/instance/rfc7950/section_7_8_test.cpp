// RFC 7950, section 7.8: the list statement; 7.9: the choice statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(Choice, TakesOneCase)
{
    Schema schema("container food { choice snack { case sports { leaf pretzel { type empty; }"
                  "  leaf beer { type empty; } } leaf chocolate { type empty; } } }");
    EXPECT_THAT(schema.Check("<food><pretzel/><beer/></food>"), IsEmpty());
    EXPECT_THAT(schema.Check("<food><pretzel/><chocolate/></food>"),
                ElementsAre("bad-element /food/chocolate: \"chocolate\" and \"sports\" of choice "
                            "\"snack\" exclude each other"));
}

TEST(Choice, ThatIsMandatoryIsMissed)
{
    Schema schema("container c { presence p; choice how { mandatory true; leaf a { type empty; }"
                  "  leaf b { type empty; } } }");
    EXPECT_THAT(schema.Check("<c><a/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c/>"),
                ElementsAre("data-missing[missing-choice] /c: nothing of choice \"how\" is there"));
}

TEST(Choice, AsksForTheMandatoryNodesOfTheChosenCaseAlone)
{
    Schema schema("container c { choice how { case x { leaf a { type string; }"
                  "  leaf b { type string; mandatory true; } } leaf d { type string; } } }");
    EXPECT_THAT(schema.Check("<c/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><d>1</d></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a>1</a></c>"),
                ElementsAre("missing-element /c/b: \"b\" is missing"));
}

} // namespace datatest
