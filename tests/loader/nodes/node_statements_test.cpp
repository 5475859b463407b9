// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/loader_fixture.h"
#include "model/module_records.h"
#include "model/node_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::TestContext;

struct NodeKindRow {
    const char *keyword;
    ZrsParseFunc parse;
    uint32_t kind;
    const char *start; // of the element, with its argument
    const char *content;
    const char *name;
};

const NodeKindRow kKinds[] = {
    {"container", ZRS_LOADER_ParseContainer, ZR_NODE_CONTAINER, "<container name='n'>", "", "n"},
    {"leaf", ZRS_LOADER_ParseLeaf, ZR_NODE_LEAF, "<leaf name='n'>", "<type name='string'/>", "n"},
    {"leaf-list", ZRS_LOADER_ParseLeafList, ZR_NODE_LEAF_LIST, "<leaf-list name='n'>",
     "<type name='string'/>", "n"},
    {"list", ZRS_LOADER_ParseList, ZR_NODE_LIST, "<list name='n'>", "", "n"},
    {"choice", ZRS_LOADER_ParseChoice, ZR_NODE_CHOICE, "<choice name='n'>", "", "n"},
    {"case", ZRS_LOADER_ParseCase, ZR_NODE_CASE, "<case name='n'>", "", "n"},
    {"anydata", ZRS_LOADER_ParseAnydata, ZR_NODE_ANYDATA, "<anydata name='n'>", "", "n"},
    {"anyxml", ZRS_LOADER_ParseAnyxml, ZR_NODE_ANYXML, "<anyxml name='n'>", "", "n"},
    {"action", ZRS_LOADER_ParseAction, ZR_NODE_ACTION, "<action name='n'>", "", "n"},
    {"rpc", ZRS_LOADER_ParseRpc, ZR_NODE_RPC, "<rpc name='n'>", "", "n"},
    {"notification", ZRS_LOADER_ParseNotif, ZR_NODE_NOTIFICATION, "<notification name='n'>", "",
     "n"},
    {"input", ZRS_LOADER_ParseInput, ZR_NODE_INPUT, "<input>", "", "input"},
    {"output", ZRS_LOADER_ParseOutput, ZR_NODE_OUTPUT, "<output>", "", "output"},
    {"augment", ZRS_LOADER_ParseAugment, ZR_NODE_AUGMENT, "<augment target-node='/x:a/x:b'>", "",
     "/x-mod:a/b"},
};

std::string Xml(const NodeKindRow &row, const std::string &more = "")
{
    return std::string(row.start) + row.content + more + "</" + row.keyword + ">";
}

// A parent node of the module.
struct Parent {
    explicit Parent(ModuleUnderTest &module) : node(ZRS_NODE_New(ZR_NODE_CONTAINER))
    {
        node->module = module;
    }
    ~Parent() { ZRS_NODE_Free(node); }
    ZrNode *node;
};

// ---- every kind

TEST(NodeParser, MakesANodeOfItsKindUnderTheParent)
{
    for (const NodeKindRow &row : kKinds) {
        ModuleUnderTest module;
        Parent parent(module);
        ASSERT_EQ(Parse(module, row.parse, Xml(row), parent.node, ZRS_STMT_CONTAINER), ZR_OK)
            << row.keyword;
        const ZrNode *node = parent.node->firstChild;
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->kind, row.kind);
        EXPECT_STREQ(node->name, row.name);
        EXPECT_EQ(node->module, module.get());
        EXPECT_EQ(node->parent, parent.node);
        EXPECT_THAT(module.Messages(), IsEmpty());
    }
}

TEST(NodeParser, PutsATopLevelNodeIntoTheModulesList)
{
    for (const NodeKindRow &row : kKinds) {
        ModuleUnderTest module;
        uint32_t status = Parse(module, row.parse, Xml(row), module.get(), ZRS_STMT_MODULE);
        ZrNode *const heads[] = {module->dataNodes, module->rpcs, module->notifications,
                                 module->augments};
        const ZrNode *expected = row.kind == ZR_NODE_RPC            ? module->rpcs
                                 : row.kind == ZR_NODE_NOTIFICATION ? module->notifications
                                 : row.kind == ZR_NODE_AUGMENT      ? module->augments
                                                                    : module->dataNodes;
        bool isTopLevel = row.kind != ZR_NODE_CASE && row.kind != ZR_NODE_ACTION &&
                          row.kind != ZR_NODE_INPUT && row.kind != ZR_NODE_OUTPUT;
        EXPECT_EQ(status, isTopLevel ? ZR_OK : ZR_ERR_INVALID) << row.keyword;
        EXPECT_EQ(expected != nullptr, isTopLevel) << row.keyword;
        size_t filled = 0;
        for (const ZrNode *head : heads)
            filled += head != nullptr;
        EXPECT_EQ(filled, isTopLevel ? 1u : 0u);
    }
}

TEST(NodeParser, WithoutANameFails)
{
    for (const NodeKindRow &row : kKinds) {
        if (row.kind == ZR_NODE_INPUT || row.kind == ZR_NODE_OUTPUT)
            continue;
        ModuleUnderTest module;
        Parent parent(module);
        EXPECT_EQ(Parse(module, row.parse, "<" + std::string(row.keyword) + "/>", parent.node,
                        ZRS_STMT_CONTAINER),
                  ZR_ERR_INVALID);
        EXPECT_EQ(parent.node->firstChild, nullptr);
        EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"" +
                                                   std::string(row.keyword) + "\"."));
    }
}

TEST(NodeParser, FreesTheNodeWhenAChildFails)
{
    const std::string bad = "<x:a/><q:unknown/>";
    const std::string badLeaf = "<leaf/>";
    for (const NodeKindRow &row : kKinds) {
        ModuleUnderTest module;
        Parent parent(module);
        bool isAugment = row.kind == ZR_NODE_AUGMENT;
        EXPECT_EQ(Parse(module, row.parse, Xml(row, isAugment ? badLeaf : bad), parent.node,
                        ZRS_STMT_CONTAINER),
                  ZR_ERR_INVALID);
        EXPECT_EQ(parent.node->firstChild, nullptr);
        EXPECT_THAT(module.Messages(),
                    ElementsAre(isAugment ? "Failed to get value of statement \"leaf\"."
                                          : "Failed to find module by prefix \"q\".",
                                "Failed to parse \"" + std::string(row.keyword) +
                                    "\" statement \"" + row.name + "\"."));
    }
}

TEST(NodeParser, FreesRoomForExtensionInstancesThatWereNotReached)
{
    ModuleUnderTest module;
    Parent parent(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseContainer,
                    "<container name='c'><config value='yes'/><x:a/><must condition='a'/>"
                    "<if-feature name='f'/></container>",
                    parent.node, ZRS_STMT_CONTAINER),
              ZR_ERR_INVALID);
    EXPECT_EQ(parent.node->firstChild, nullptr);
}

TEST(NodeParser, GivesANodeWithoutLinksToWhoeverAsksForOne)
{
    ModuleUnderTest module;
    for (const NodeKindRow &row : kKinds) {
        zrtest::Yin yin(Xml(row));
        ZrNode *node = ZRS_LOADER_ParseNodeCommon(module, yin.first(), row.kind);
        ASSERT_NE(node, nullptr);
        EXPECT_STREQ(node->name, row.name);
        EXPECT_EQ(node->module, module.get());
        EXPECT_EQ(node->parent, nullptr);
        ZRS_NODE_Free(node);
    }
    zrtest::Yin yin("<leaf/>");
    EXPECT_EQ(ZRS_LOADER_ParseNodeCommon(module, yin.first(), ZR_NODE_LEAF), nullptr);
}

// Which statements stand in the row tables is tested with those; here, that the ones that do not
// are passed over.
TEST(NodeParser, PassesOverWhatItsKindDoesNotTake)
{
    ModuleUnderTest module;
    Parent parent(module);
    ASSERT_EQ(Parse(module, ZRS_LOADER_ParseContainer,
                    "<container name='c'><reference/><typedef/><grouping/><uses/><unique/>"
                    "<min-elements/><max-elements/><case/><key/><mandatory/><rpc/><augment/><foo/>"
                    "<leaf xmlns=''/></container>",
                    parent.node, ZRS_STMT_CONTAINER),
              ZR_OK);
    EXPECT_EQ(parent.node->firstChild->firstChild, nullptr);
    ASSERT_EQ(Parse(module, ZRS_LOADER_ParseRpc, "<rpc name='r'><when/><must/><leaf/></rpc>",
                    parent.node, ZRS_STMT_CONTAINER),
              ZR_OK);
    ASSERT_EQ(Parse(module, ZRS_LOADER_ParseAugment,
                    "<augment target-node='/x:a'><q:ext/><must/><config/></augment>", parent.node,
                    ZRS_STMT_CONTAINER),
              ZR_OK);
    EXPECT_THAT(module.Messages(), IsEmpty());
}

// ---- extension instances on every kind that takes them

TEST(NodeParser, KeepsExtensionInstancesOnTheNode)
{
    for (const NodeKindRow &row : kKinds) {
        ModuleUnderTest module;
        Parent parent(module);
        ASSERT_EQ(Parse(module, row.parse, Xml(row, "<x:a/><x:b/><x:a/>"), parent.node,
                        ZRS_STMT_CONTAINER),
                  ZR_OK);
        EXPECT_EQ(parent.node->firstChild->extInstCount, row.kind == ZR_NODE_AUGMENT ? 0 : 3)
            << row.keyword;
    }
}

// ---- bad input

TEST(NodeParser, TakesADocumentAsDeepAsTheXmlParserAllows)
{
    for (size_t depth : {size_t{100}, size_t{250}, size_t{2000}}) {
        std::string open, close;
        for (size_t i = 0; i < depth; ++i) {
            open += "<container name='c'>";
            close += "</container>";
        }
        TestContext ctx;
        uint32_t status = ctx.LoadBody("m", open + close);
        EXPECT_EQ(status, depth < 2000 ? ZR_OK : ZR_ERR_INVALID) << depth;
    }
}

TEST(NodeParser, LeavesNothingBehindWhenAnyAllocationFails)
{
    ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS);
    const std::string xml = R"(
        <list name='l1'>
          <key value='k1'/> <if-feature name='f1'/> <must condition='c1'/>
          <description><text>d1</text></description> <x:e1 n='a1'/>
          <leaf name='k1'><type name='td1'/><units name='u1'/></leaf>
          <leaf-list name='ll1'><type name='int8'/><default value='5'/></leaf-list>
          <choice name='ch1'><default value='ca1'/><case name='ca1'/></choice>
          <action name='ac1'><input/><output/></action>
        </list>)";
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        {
            Parent parent(module);
            uint32_t status = memory.RunStatus([&] {
                return Parse(module, ZRS_LOADER_ParseList, xml, parent.node, ZRS_STMT_CONTAINER);
            });
            EXPECT_EQ(parent.node->firstChild != nullptr, status == ZR_OK);
        }
        ZR_CTX_DeleteErrNodeByModName(module->ctx->errMng, "t");
    });
}

// ---- container

TEST(Container, KeepsAllOfItsStatements)
{
    TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS);
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <container name='c'>
          <when condition='m:a'/> <if-feature name='f'/> <must condition='m:b'/>
          <presence value='p'/> <config value='false'/> <status value='deprecated'/>
          <description><text>d</text></description>
          <container name='c1'/>
          <leaf name='c2'><type name='string'/></leaf>
          <leaf-list name='c3'><type name='string'/></leaf-list>
          <list name='c4'/> <choice name='c5'/> <anydata name='c6'/> <anyxml name='c7'/>
          <action name='c8'/> <notification name='c9'/>
          <if-feature name='g'/> <must condition='m:c'/>
          <m:ext/>
        </container>)"),
              ZR_OK);
    const ZrNode *node = ctx.Module("m")->dataNodes;
    EXPECT_STREQ(node->when, "m:a");
    ASSERT_EQ(node->ifFeatureCount, 2);
    EXPECT_STREQ(node->ifFeatures[1].featureName, "g");
    ASSERT_EQ(node->mustCount, 2);
    EXPECT_STREQ(node->musts[1].condition, "m:c");
    EXPECT_EQ(node->flags, 0x800u | 0x8 | 0x4 | 0x200);
    EXPECT_STREQ(node->description, "d");
    EXPECT_EQ(node->extInstCount, 1);
    std::string children;
    for (const ZrNode *child = node->firstChild; child != nullptr; child = child->next)
        children += child->name;
    EXPECT_EQ(children, "c1c2c3c4c5c6c7c8c9");
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(Container, WithTwoConfigsFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<container name='c'><config value='true'/>"
                                "<config value='true'/></container>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Statement \"config\" under statement \"container\" has repeated.",
                            "Failed to parse \"container\" statement \"c\"."));
}

TEST(Container, WithAWrongConfigFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<container name='c'><config value='yes'/></container>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Failed to parse value \"yes\" of statement \"config\".",
                            "Failed to parse \"container\" statement \"c\"."));
}

TEST(Container, GivesItsConfigToWhatStandsInIt)
{
    TestContext ctx;
    // The config statement may stand behind the children.
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <container name='c'>
          <container name='d'><leaf name='l'><type name='string'/></leaf></container>
          <config value='false'/>
        </container>)"),
              ZR_OK);
    EXPECT_EQ(ctx.Node("/m:c/d/l")->flags, uint32_t{ZRS_FLAG_CONFIG_FALSE});
}

TEST(Container, GivesItsNacmFlagsToWhatStandsInIt)
{
    TestContext ctx;
    ASSERT_EQ(ctx.Load(R"(
        <module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:nacm='urn:nacm'>
          <namespace uri='urn:m'/> <prefix value='m'/>
          <import module='ietf-netconf-acm'><prefix value='nacm'/></import>
          <container name='c'>
            <container name='d'><leaf name='l'><type name='string'/></leaf></container>
            <nacm:default-deny-all/>
          </container>
        </module>)"),
              ZR_OK);
    EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(ctx.Node("/m:c/d/l")), 1u);
}

// ---- leaf and leaf-list

TEST(Leaf, KeepsAllOfItsStatements)
{
    TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS);
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <leaf name='l'>
          <units name='u'/> <default value='7'/> <type name='int8'/> <config value='true'/>
          <mandatory value='false'/> <status value='obsolete'/>
          <when condition='a'/> <must condition='b'/> <if-feature name='f'/> <m:ext/>
          <description><text>d</text></description>
        </leaf>)"),
              ZR_OK);
    const ZrNode *node = ctx.Node("/m:l");
    const auto *info = static_cast<const ZrsLeafInfo *>(node->info);
    EXPECT_EQ(info->realType.baseType, uint32_t{ZRT_TYPE_INT8});
    EXPECT_STREQ(info->defaultValue, "7");
    EXPECT_STREQ(info->units, "u");
    EXPECT_EQ(node->flags, 0x8u | 0x2 | 0x20 | 0x400);
    EXPECT_STREQ(node->when, "a");
    EXPECT_EQ(node->mustCount, 1);
    EXPECT_EQ(node->ifFeatureCount, 1);
    EXPECT_EQ(node->extInstCount, 1);
    EXPECT_STREQ(node->description, "d");
}

TEST(Leaf, WithoutATypeFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<container name='c'><leaf name='l'/></container>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(), ElementsAre("leaf \"l\" must define with type statement.",
                                            "Failed to parse \"container\" statement \"c\"."));
}

TEST(LeafList, WithoutATypeFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<leaf-list name='l'><default value='a'/></leaf-list>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(), ElementsAre("leaf-list \"l\" must define with type statement."));
}

TEST(LeafList, KeepsAllDefaultsInOrder)
{
    TestContext ctx(ZR_CTX_KEEP_UNITS);
    ASSERT_EQ(ctx.LoadBody("m", "<leaf-list name='l'><default value='b'/><type name='string'/>"
                                "<ordered-by value='user'/><default value='a'/><units name='u'/>"
                                "<default value='b'/></leaf-list>"),
              ZR_OK);
    const ZrNode *node = ctx.Node("/m:l");
    const auto *info = static_cast<const ZrsLeafListInfo *>(node->info);
    ASSERT_EQ(info->defaultCount, 3);
    EXPECT_STREQ(info->defaults[0], "b");
    EXPECT_STREQ(info->defaults[1], "a");
    EXPECT_STREQ(info->defaults[2], "b");
    EXPECT_STREQ(info->units, "u");
    EXPECT_EQ(node->flags, ZRS_FLAG_ORDERED_BY_USER);
}

TEST(Leaf, HasOneDefaultOnly)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<leaf name='l'><default value='b'/><type name='string'/>"
                                "<default value='b'/></leaf>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Statement \"default\" under statement \"leaf\" has repeated.",
                            "Failed to parse \"leaf\" statement \"l\"."));
}

TEST(LeafDefault, OfAnIdentityrefIsKeptInModuleNameForm)
{
    TestContext ctx;
    ASSERT_EQ(ctx.Load(R"(
        <module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>
          <namespace uri='urn:m'/> <prefix value='p'/>
          <leaf name='l'><default value='p:i'/><type name='identityref'><base name='i'/></type>
          </leaf>
          <leaf-list name='ll'><default value='j'/><type name='identityref'><base name='i'/></type>
          </leaf-list>
          <identity name='i'/>
        </module>)"),
              ZR_OK);
    const auto *leaf = static_cast<const ZrsLeafInfo *>(ctx.Node("/m:l")->info);
    EXPECT_STREQ(leaf->defaultValue, "m:i");
    const auto *leafList = static_cast<const ZrsLeafListInfo *>(ctx.Node("/m:ll")->info);
    EXPECT_STREQ(leafList->defaults[0], "m:j");
}

TEST(LeafDefault, OfAnIdentityrefWithAnUnknownPrefixFails)
{
    for (const char *keyword : {"leaf", "leaf-list"}) {
        TestContext ctx;
        EXPECT_EQ(ctx.LoadBody("m", "<" + std::string(keyword) +
                                        " name='l'><type name='identityref'><base name='i'/>"
                                        "</type><default value='q:i'/></" +
                                        keyword + ">"),
                  ZR_ERR_FAILED);
        EXPECT_THAT(ctx.Messages(),
                    ElementsAre("Failed to parse statement \"" + std::string(keyword) +
                                "\" under statement \"module\"."));
    }
}

// ---- list

TEST(List, MarksItsKeys)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <list name='l'>
          <key value='b  a'/> <ordered-by value='user'/>
          <leaf name='a'><type name='string'/></leaf>
          <leaf name='b'><type name='string'/></leaf>
          <leaf name='c'><type name='string'/></leaf>
        </list>)"),
              ZR_OK);
    EXPECT_EQ(ctx.Node("/m:l")->keyCount, 2);
    EXPECT_EQ(ctx.Node("/m:l")->flags, ZRS_FLAG_ORDERED_BY_USER);
    EXPECT_EQ(ZR_NODE_IsKey(ctx.Node("/m:l/a")), 1u);
    EXPECT_EQ(ZR_NODE_IsKey(ctx.Node("/m:l/b")), 1u);
    EXPECT_EQ(ZR_NODE_IsKey(ctx.Node("/m:l/c")), 0u);
}

TEST(List, MayHaveNoKey)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<list name='l'><config value='false'/></list>"), ZR_OK);
    EXPECT_EQ(ctx.Node("/m:l")->keyCount, 0);
}

TEST(List, WithAKeyThatIsNoLeafOfItFails)
{
    for (const char *content :
         {"", "<leaf name='b'><type name='string'/></leaf>",
          "<leaf-list name='a'><type name='string'/></leaf-list>", "<container name='a'/>"}) {
        TestContext ctx;
        EXPECT_EQ(
            ctx.LoadBody("m", "<list name='l'><key value='a'/>" + std::string(content) + "</list>"),
            ZR_ERR_FAILED)
            << content;
        EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to parse value \"a\" of statement \"key\".",
                                                "Failed to parse \"list\" statement \"l\"."));
    }
}

// ---- choice, rpc, augment

TEST(Choice, KeepsItsDefaultCase)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<choice name='c'><default value='b'/><mandatory value='true'/>"
                                "<case name='a'><leaf name='x'><type name='string'/></leaf></case>"
                                "<case name='b'/><container name='d'/></choice>"),
              ZR_OK);
    const ZrNode *choice = ctx.Module("m")->dataNodes;
    EXPECT_STREQ(static_cast<const ZrsChoiceInfo *>(choice->info)->defaultCase, "b");
    EXPECT_EQ(choice->flags, ZRS_FLAG_MANDATORY_TRUE);
    EXPECT_EQ(choice->firstChild->kind, uint32_t{ZR_NODE_CASE});
    EXPECT_EQ(choice->lastChild->kind, uint32_t{ZR_NODE_CONTAINER});
}

TEST(Rpc, HasOneInputAndOneOutput)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<rpc name='r'><output><leaf name='o'><type name='string'/></leaf>"
                                "</output><input><must condition='i'/></input></rpc>"),
              ZR_OK);
    const ZrNode *rpc = ctx.Module("m")->rpcs;
    EXPECT_STREQ(rpc->firstChild->name, "output");
    EXPECT_STREQ(rpc->lastChild->name, "input");
    EXPECT_EQ(rpc->lastChild->mustCount, 1);
    for (const char *keyword : {"input", "output"}) {
        std::string element = "<" + std::string(keyword) + "/>";
        EXPECT_EQ(ctx.LoadBody("n", "<rpc name='r'>" + element + element + "</rpc>"),
                  ZR_ERR_FAILED);
        EXPECT_EQ(ctx.Messages("n")[0], "Statement \"" + std::string(keyword) +
                                            "\" under statement \"rpc\" has repeated.");
        ZR_CTX_DeleteErrNodeByModName(ctx.get()->errMng, "n");
    }
}

TEST(Augment, PutsItsChildrenUnderItsConditions)
{
    ModuleUnderTest module;
    ASSERT_EQ(Parse(module, ZRS_LOADER_ParseAugment,
                    "<augment target-node='/x:a'><leaf name='l'><type name='string'/></leaf>"
                    "<when condition='x:b'/><if-feature name='f'/></augment>",
                    module.get(), ZRS_STMT_MODULE),
              ZR_OK);
    const ZrNode *augment = module->augments;
    EXPECT_STREQ(augment->when, "x-mod:b");
    EXPECT_STREQ(augment->firstChild->when, "../x-mod:b");
    ASSERT_EQ(augment->firstChild->ifFeatureCount, 1);
    EXPECT_STREQ(augment->firstChild->ifFeatures[0].featureName, "f");
}

TEST(Augment, WithoutAnAbsoluteTargetFails)
{
    for (const char *attribute : {"", "target-node=''", "target-node='x:a'"}) {
        TestContext ctx;
        EXPECT_EQ(ctx.LoadBody("m", "<augment " + std::string(attribute) + "/>"), ZR_ERR_FAILED);
        EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to get value of statement \"augment\"."));
    }
}

TEST(Augment, OfATargetWithAnUnknownPrefixFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<augment target-node='/q:a'/>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to parse \"augment\" statement \"/q:a\"."));
}

} // namespace
