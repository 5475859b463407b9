#include <string>
#include <vector>

#include "foundation/load_errors.h"
#include "loader/loader_fixture.h"
#include "model/module_records.h"
#include "model/node_record.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::TestContext;

namespace {

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

} // namespace
