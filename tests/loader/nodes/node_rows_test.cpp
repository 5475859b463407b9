// SPDX-License-Identifier: Apache-2.0
// Which statements may stand in a schema node, and how often: the tables of sub-statements of
// RFC 7950, sections 7.5 to 7.17, tried on modules that are loaded.
#include <gmock/gmock.h>

#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/context.h"
#include "support/schema_dump.h"

namespace {

using testing::Contains;
using testing::IsEmpty;
using zrtest::TestContext;

std::vector<std::string> Words(const std::string &text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// A node in its module, "%" stands for what is tried in it; the statements that its section lists
// as 0..1, and as 0..n.
struct Parent {
    const char *keyword, *body, *once, *many;
};

const Parent kParents[] = {
    {"container", "<container name='n'>%</container>", "config description presence status when",
     "action anydata anyxml choice container if-feature leaf leaf-list list must notification"},
    {"leaf", "<leaf name='n'><type name='string'/>%</leaf>",
     "config default description mandatory status units when", "if-feature must"},
    {"leaf-list", "<leaf-list name='n'><type name='string'/>%</leaf-list>",
     "config description ordered-by status units when", "default if-feature must"},
    {"list", "<list name='n'><leaf name='k'><type name='string'/></leaf>%</list>",
     "config description key ordered-by status when",
     "action anydata anyxml choice container if-feature leaf leaf-list list must notification"},
    {"choice", "<choice name='n'>%</choice>", "config default description mandatory status when",
     "anydata anyxml case choice container if-feature leaf leaf-list list"},
    {"case", "<choice name='c'><case name='n'>%</case></choice>", "description status when",
     "anydata anyxml choice container if-feature leaf leaf-list list"},
    {"anydata", "<anydata name='n'>%</anydata>", "config description mandatory status when",
     "if-feature must"},
    {"anyxml", "<anyxml name='n'>%</anyxml>", "config description mandatory status when",
     "if-feature must"},
    {"rpc", "<rpc name='n'>%</rpc>", "description input output status", "if-feature"},
    {"action", "<container name='c'><action name='n'>%</action></container>",
     "description input output status", "if-feature"},
    {"input", "<rpc name='n'><input>%</input></rpc>", "",
     "anydata anyxml choice container leaf leaf-list list must"},
    {"output", "<rpc name='n'><output>%</output></rpc>", "",
     "anydata anyxml choice container leaf leaf-list list must"},
    {"notification", "<notification name='n'>%</notification>", "description status",
     "anydata anyxml choice container if-feature leaf leaf-list list must"},
    {"augment", "<container name='t'/><augment target-node='/m:t'>%</augment>",
     "description status when",
     "action anydata anyxml case choice container if-feature leaf leaf-list list notification"},
};

// Each statement that stands in one of the tables; "#" tells the second from the first.
const std::map<std::string, std::string> kStatements = {
    {"action", "<action name='a#'/>"},
    {"anydata", "<anydata name='a#'/>"},
    {"anyxml", "<anyxml name='a#'/>"},
    {"case", "<case name='a#'/>"},
    {"choice", "<choice name='a#'/>"},
    {"config", "<config value='false'/>"},
    {"container", "<container name='a#'/>"},
    {"default", "<default value='a#'/>"},
    {"description", "<description><text>a#</text></description>"},
    {"if-feature", "<if-feature name='f#'/>"},
    {"input", "<input/>"},
    {"key", "<key value='k'/>"},
    {"leaf", "<leaf name='a#'><type name='string'/></leaf>"},
    {"leaf-list", "<leaf-list name='a#'><type name='string'/></leaf-list>"},
    {"list", "<list name='a#'/>"},
    {"mandatory", "<mandatory value='true'/>"},
    {"must", "<must condition='1 = #'/>"},
    {"notification", "<notification name='a#'/>"},
    {"ordered-by", "<ordered-by value='user'/>"},
    {"output", "<output/>"},
    {"presence", "<presence value='a#'/>"},
    {"status", "<status value='deprecated'/>"},
    {"units", "<units name='a#'/>"},
    {"when", "<when condition='1 = #'/>"},
};

// Those of the tables that prepared YIN has expanded, and those of which a schema keeps nothing.
const char *const kNotRead[] = {
    "<grouping name='g'><leaf name='x'/></grouping>",
    "<uses name='g'/>",
    "<typedef name='t'><type name='string'/></typedef>",
    "<reference><text>RFC 7950</text></reference>",
    "<min-elements value='1'/>",
    "<max-elements value='2'/>",
    "<unique tag='k'/>",
};

std::string Statement(const std::string &keyword, const std::string &number)
{
    std::string text = kStatements.at(keyword);
    if (size_t at = text.find('#'); at != std::string::npos)
        text.replace(at, 1, number);
    return text;
}

struct Loaded {
    uint32_t status;
    std::vector<std::string> messages;
    std::string schema;
};

Loaded Load(const Parent &parent, const std::string &statements)
{
    std::string body = parent.body;
    body.replace(body.find('%'), 1, statements);
    TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS);
    uint32_t status = ctx.LoadBody("m", "<feature name='f1'/><feature name='f2'/>" + body);
    return {status, ctx.Messages(), zrtest::DumpContext(ctx)};
}

TEST(SchemaNode, KeepsTheStatementsThatMayStandInItAndPassesOverTheOthers)
{
    for (const Parent &parent : kParents) {
        const std::string without = Load(parent, "").schema;
        std::vector<std::string> taken = Words(parent.once + std::string(" ") + parent.many);
        for (const auto &[keyword, text] : kStatements) {
            SCOPED_TRACE(keyword + " in " + parent.keyword);
            Loaded loaded = Load(parent, Statement(keyword, "1"));
            EXPECT_EQ(loaded.status, ZR_OK);
            EXPECT_THAT(loaded.messages, IsEmpty());
            bool takes = testing::Value(taken, Contains(keyword));
            EXPECT_EQ(loaded.schema != without, takes) << loaded.schema;
        }
    }
}

TEST(SchemaNode, RefusesASecondStatementWhereOneMayStand)
{
    for (const Parent &parent : kParents)
        for (const std::string &keyword : Words(parent.once)) {
            Loaded loaded = Load(parent, Statement(keyword, "1") + Statement(keyword, "2"));
            EXPECT_EQ(loaded.status, ZR_ERR_FAILED);
            EXPECT_THAT(loaded.messages,
                        Contains("Statement \"" + keyword + "\" under statement \"" +
                                 parent.keyword + "\" has repeated."));
            EXPECT_EQ(loaded.schema, "");
        }
}

TEST(SchemaNode, TakesOneTypeIfItIsALeafOrLeafList)
{
    for (const std::string keyword : {"leaf", "leaf-list"}) {
        const std::string body = "<" + keyword + " name='n'>%</" + keyword + ">";
        const Parent parent = {keyword.c_str(), body.c_str(), "", ""};
        const std::string type = "<type name='string'/>";
        EXPECT_EQ(Load(parent, type).status, ZR_OK);
        EXPECT_THAT(Load(parent, "").messages,
                    Contains(keyword + " \"n\" must define with type statement."));
        EXPECT_THAT(
            Load(parent, type + type).messages,
            Contains("Statement \"type\" under statement \"" + keyword + "\" has repeated."));
    }
    for (const Parent &parent : kParents)
        if (!std::string(parent.keyword).starts_with("leaf")) {
            EXPECT_EQ(Load(parent, "<type name='string'/>").schema, Load(parent, "").schema)
                << parent.keyword;
        }
}

TEST(SchemaNode, KeepsEachStatementWhereManyMayStand)
{
    for (const Parent &parent : kParents)
        for (const std::string &keyword : Words(parent.many)) {
            SCOPED_TRACE(keyword + " in " + parent.keyword);
            std::string one = Load(parent, Statement(keyword, "1")).schema;
            Loaded two = Load(parent, Statement(keyword, "1") + Statement(keyword, "2"));
            EXPECT_EQ(two.status, ZR_OK);
            EXPECT_THAT(two.messages, IsEmpty());
            EXPECT_GT(two.schema.size(), one.size()) << two.schema;
        }
}

TEST(SchemaNode, PassesOverWhatWasExpandedOrSaysNothingToASchema)
{
    for (const Parent &parent : kParents) {
        const std::string without = Load(parent, "").schema;
        for (const char *statement : kNotRead) {
            SCOPED_TRACE(std::string(statement) + " in " + parent.keyword);
            Loaded loaded = Load(parent, statement + std::string(statement));
            EXPECT_EQ(loaded.status, ZR_OK);
            EXPECT_THAT(loaded.messages, IsEmpty());
            EXPECT_EQ(loaded.schema, without);
        }
    }
}

TEST(SchemaNode, KeepsInstancesOfExtensionsUnlessItIsAnAugment)
{
    const std::string instance = "<m:tag xmlns:m='urn:m'/>";
    for (const Parent &parent : kParents) {
        SCOPED_TRACE(parent.keyword);
        std::string none = Load(parent, "").schema;
        Loaded two = Load(parent, instance + instance);
        EXPECT_EQ(two.status, ZR_OK);
        EXPECT_EQ(two.schema == none, parent.keyword == std::string("augment")) << two.schema;
    }
}

} // namespace
