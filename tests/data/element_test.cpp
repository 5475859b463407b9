#include "data/element.h"

#include <gtest/gtest.h>
#include <zrschema/node.h>

#include "data/data_tree.h"
#include "data/phases.h"
#include "data/schema.h"
#include "model/node_record.h"
#include "support/run.h"
#include "xpath/value_text.h"

namespace {

using namespace zrtest;

TEST(SchemaQuery, AnswersNullLikeANodeThatHasNothing)
{
    ZrNode *branch = nullptr;
    EXPECT_EQ(ZRD_MDL_IsSchemaNodeDefineWithMountPoint(nullptr), 0u);
    EXPECT_EQ(ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(nullptr), 0u);
    EXPECT_EQ(ZRD_MDL_IsChoiceOrCaseNode(nullptr), 0u);
    EXPECT_EQ(ZRD_MDL_IsIdentityref(nullptr), 0u);
    EXPECT_EQ(ZRD_MDL_GetChoiceCaseParentNode(nullptr, &branch), nullptr);
    EXPECT_EQ(branch, nullptr);
    EXPECT_EQ(ZRD_MDL_GetClosestAncestorNodeNotChoiceCase(nullptr), nullptr);
    EXPECT_EQ(ZRD_MDL_GetNextDataNodeInSameMod(nullptr, nullptr), nullptr);
    EXPECT_EQ(ZRD_MDL_GetChoiceDefaultChildNode(nullptr), nullptr);
}

TEST(SchemaQuery, EvaluatesWhensOfAllKindsButNineToThirteen)
{
    for (uint32_t kind = ZR_NODE_UNKNOWN; kind <= ZR_NODE_AUGMENT; ++kind) {
        ZrNode node = {};
        node.kind = kind;
        EXPECT_EQ(ZRD_MDL_IsNeedCheckWhenCond(&node), kind < 9 || kind > 13 ? 1u : 0u) << kind;
    }
}

TEST(SchemaQuery, TellsChoicesAndCases)
{
    for (uint32_t kind = ZR_NODE_UNKNOWN; kind <= ZR_NODE_AUGMENT; ++kind) {
        ZrNode node = {};
        node.kind = kind;
        bool expected = kind == ZR_NODE_CHOICE || kind == ZR_NODE_CASE;
        EXPECT_EQ(ZRD_MDL_IsChoiceOrCaseNode(&node), expected ? 1u : 0u) << kind;
    }
}

TEST(SchemaQuery, TellsMountPointsOfContainersAndListsByModuleAndName)
{
    struct {
        uint32_t kind;
        const char *moduleName;
        const char *extensionName;
        uint32_t expected;
    } rows[] = {
        {ZR_NODE_CONTAINER, "ietf-yang-schema-mount", "mount-point", 1},
        {ZR_NODE_LIST, "ietf-yang-schema-mount", "mount-point", 1},
        {ZR_NODE_LEAF, "ietf-yang-schema-mount", "mount-point", 0},
        {ZR_NODE_CONTAINER, "other", "mount-point", 0},
        {ZR_NODE_CONTAINER, "ietf-yang-schema-mount", "other", 0},
        {ZR_NODE_CONTAINER, "ietf-yang-schema-mount", nullptr, 0}, // removed
    };
    for (const auto &row : rows) {
        ZrsExtInst instances[2] = {{"other", "first", nullptr, 0, nullptr},
                                   {row.moduleName, row.extensionName, nullptr, 0, nullptr}};
        ZrNode node = {};
        node.kind = row.kind;
        node.extInsts = instances;
        node.extInstCount = 2;
        EXPECT_EQ(ZRD_MDL_IsSchemaNodeDefineWithMountPoint(&node), row.expected);
        EXPECT_EQ(ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(&node), row.expected);
    }
    for (uint32_t kind : {ZR_NODE_ANYDATA, ZR_NODE_ANYXML}) {
        ZrNode node = {};
        node.kind = kind;
        EXPECT_EQ(ZRD_MDL_IsSchemaNodeDefineWithMountPoint(&node), 0u);
        EXPECT_EQ(ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(&node), 1u);
    }
}

const std::string kIdentityref = "<type name=\"identityref\"><base name=\"b\"/></type>";

std::string NestedUnion(const std::string &member)
{
    return "<type name=\"union\"><type name=\"string\"/><type name=\"union\">"
           "<type name=\"int8\"/>" +
           member + "</type></type>";
}

TEST(SchemaQuery, TellsIdentityrefsThroughTypedefsAndUnions)
{
    Schema schema("<identity name=\"b\"/><typedef name=\"direct\">" + kIdentityref +
                  "</typedef><typedef name=\"again\"><type name=\"direct\"/></typedef>"
                  "<typedef name=\"other\"><type name=\"string\"/></typedef>" +
                  Container("top", "<leaf name=\"plain\">" + kIdentityref + "</leaf>" +
                                       Leaf("twice", "again") + Leaf("text", "other") +
                                       "<leaf name=\"member\">" +
                                       NestedUnion("<type name=\"again\"/>") +
                                       "</leaf><leaf name=\"no-member\">" +
                                       NestedUnion("<type name=\"other\"/>") +
                                       "</leaf><leaf-list name=\"entries\">" + kIdentityref +
                                       "</leaf-list>" + Container("box", "")));
    ASSERT_EQ(schema.status, ZR_OK);
    struct {
        const char *path;
        uint32_t expected;
    } rows[] = {{"/m:top/plain", 1},  {"/m:top/twice", 1},     {"/m:top/text", 0},
                {"/m:top/member", 1}, {"/m:top/no-member", 0}, {"/m:top/entries", 1},
                {"/m:top/box", 0}};
    for (const auto &row : rows) {
        ASSERT_NE(schema.Node(row.path), nullptr) << row.path;
        EXPECT_EQ(ZRD_MDL_IsIdentityref(schema.Node(row.path)), row.expected) << row.path;
    }
}

TEST(SchemaQuery, TellsNoIdentityrefOfATypeThatLeadsNowhere)
{
    Schema schema("<typedef name=\"a\"><type name=\"b\"/></typedef>"
                  "<typedef name=\"b\"><type name=\"a\"/></typedef>" +
                  Leaf("circle", "a") + Leaf("gone", "unknown"));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(ZRD_MDL_IsIdentityref(schema.Node("/m:circle")), 0u);
    EXPECT_EQ(ZRD_MDL_IsIdentityref(schema.Node("/m:gone")), 0u);
    ZrsLeafInfo withoutType = {};
    ZrNode leaf = {};
    leaf.kind = ZR_NODE_LEAF;
    leaf.module = schema.Module("m");
    leaf.info = &withoutType;
    EXPECT_EQ(ZRD_MDL_IsIdentityref(&leaf), 0u);
}

class ChoiceTest : public ::testing::Test {
protected:
    Schema schema_{"<feature name=\"f\"/>" +
                   Container("top", Leaf("a", "string") +
                                        "<choice name=\"way\"><default value=\"two\"/>"
                                        "<case name=\"one\">" +
                                        Leaf("x", "string") +
                                        "<choice name=\"inner\"><case name=\"i\">" +
                                        Leaf("y", "string") + "</case></choice></case>" +
                                        Leaf("two", "string", "<if-feature name=\"f\"/>") +
                                        "</choice>" + Leaf("z", "string"))};
    ZrNode *Node(const char *path) { return schema_.Node(path); }
};

TEST_F(ChoiceTest, GivesTheChoiceAndBranchOfANode)
{
    ZrNode *branch = nullptr;
    EXPECT_EQ(ZRD_MDL_GetChoiceCaseParentNode(Node("/m:top/way/one/x"), &branch),
              Node("/m:top/way"));
    EXPECT_EQ(branch, Node("/m:top/way/one"));
    EXPECT_EQ(ZRD_MDL_GetChoiceCaseParentNode(Node("/m:top/way/two"), &branch), Node("/m:top/way"));
    EXPECT_EQ(branch, Node("/m:top/way/two"));
    EXPECT_EQ(ZRD_MDL_GetChoiceCaseParentNode(Node("/m:top/a"), &branch), nullptr);
    EXPECT_EQ(branch, nullptr);
}

TEST_F(ChoiceTest, GivesTheClosestAncestorThatIsNoChoiceOrCase)
{
    EXPECT_EQ(ZRD_MDL_GetClosestAncestorNodeNotChoiceCase(Node("/m:top/way/one/inner/i/y")),
              Node("/m:top"));
    EXPECT_EQ(ZRD_MDL_GetClosestAncestorNodeNotChoiceCase(Node("/m:top")), nullptr);
}

TEST_F(ChoiceTest, WalksTheEnabledDataNodesOfTheModule)
{
    const ZrNode *top = Node("/m:top");
    ZrNode *node = ZRD_MDL_GetNextDataNodeInSameMod(Node("/m:top/a"), top);
    EXPECT_EQ(node, Node("/m:top/way/one/x"));
    node = ZRD_MDL_GetNextDataNodeInSameMod(node, top);
    EXPECT_EQ(node, Node("/m:top/way/one/inner/i/y"));
    EXPECT_EQ(ZRD_MDL_GetNextDataNodeInSameMod(node, top), Node("/m:top/z"));
    ZR_MOD_EnableFeature(schema_.Module("m"), "f");
    EXPECT_EQ(ZRD_MDL_GetNextDataNodeInSameMod(node, top), Node("/m:top/way/two"));
    EXPECT_EQ(ZRD_MDL_GetNextDataNodeInSameMod(Node("/m:top/z"), top), nullptr);
}

TEST_F(ChoiceTest, FindsTheDefaultBranchByItsName)
{
    EXPECT_EQ(ZRD_MDL_GetChoiceDefaultChildNode(Node("/m:top/way")), Node("/m:top/way/two"));
    EXPECT_EQ(ZRD_MDL_GetChoiceDefaultChildNode(Node("/m:top/way/one/inner")), nullptr);
    EXPECT_EQ(ZRD_MDL_GetChoiceDefaultChildNode(Node("/m:top")), nullptr);
}

class ElementTest : public DataTree {};

TEST_F(ElementTest, FindsAChildOfAnyNodeTypeByName)
{
    Document document(Data("top", "text<!--c--><?target x?><a/><a id='2'/>"));
    const xmlNode *top = document.top();
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "text"), top->children);
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "comment"), top->children->next);
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "target"), top->children->next->next);
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "a"), document.Find("a"));
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "b"), nullptr);
}

TEST_F(ElementTest, FindsTheFirstChildOfASchemaNode)
{
    Document document(Data("top", "<l><k/></l><l><k/></l>"));
    Match(document);
    EXPECT_EQ(ZRD_NODE_GetChildNodeWithSpecifyMdl(document.top(), schema_.Node("/m:top/l")),
              document.Find("l"));
    EXPECT_EQ(ZRD_NODE_GetChildNodeWithSpecifyMdl(document.top(), schema_.Node("/m:top/a")),
              nullptr);
    EXPECT_EQ(ZRD_NODE_GetChildNodeWithSpecifyMdl(document.top(), nullptr), nullptr);
}

TEST_F(ElementTest, FindsTheCaseThatHoldsData)
{
    const ZrNode *way = schema_.Node("/m:top/way");
    struct {
        const char *content;
        const char *branch;
    } rows[] = {
        {"<a/>", nullptr},
        {"<t/>", "/m:top/way/two"},
        {"<a/><deep/>", "/m:top/way/one"},
        {"<in/>", "/m:top/way/one"}, // through the inner choice
        {"<t/><deep/>", "/m:top/way/two"},
    };
    for (const auto &row : rows) {
        Document document(Data("top", row.content));
        Match(document);
        const ZrNode *expected = row.branch != nullptr ? schema_.Node(row.branch) : nullptr;
        EXPECT_EQ(ZRD_NODE_GetChoiceInstanceCaseBranch(document.top(), way), expected)
            << row.content;
    }
}

TEST(ShorthandCase, IsTheNodeItself)
{
    Schema schema(Container("top", "<choice name=\"way\">" + Leaf("a", "string") + "</choice>"));
    Document document(Data("top", "<a/>"));
    CheckRun run(schema, ZRD_MODE_RPC);
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    EXPECT_EQ(ZRD_NODE_GetChoiceInstanceCaseBranch(document.top(), schema.Node("/m:top/way")),
              schema.Node("/m:top/way/a"));
}

TEST_F(ElementTest, TellsKeyLeaves)
{
    Document document(Data("top", "<a/><l><k/><v/></l>"));
    Match(document);
    EXPECT_EQ(ZRD_NODE_IsKeyLeafNode(document.Find("k")), 1u);
    EXPECT_EQ(ZRD_NODE_IsKeyLeafNode(document.Find("v")), 0u);
    EXPECT_EQ(ZRD_NODE_IsKeyLeafNode(document.Find("l")), 0u);
    EXPECT_EQ(ZRD_NODE_IsKeyLeafNode(document.Find("a")), 0u);
}

TEST_F(ElementTest, WalksElementsInDocumentOrderWithinTheSubtree)
{
    Document document(Data("top", "<a/>text<box>x<x/><!--c--></box><l><k/></l>"));
    std::string names;
    for (xmlNode *node = document.top(); node != nullptr;
         node = zr::NextElement(document.top(), node))
        names += reinterpret_cast<const char *>(node->name) + std::string(" ");
    EXPECT_EQ(names, "top a box x l k ");
    const xmlNode *box = document.Find("box");
    EXPECT_EQ(zr::NextElement(box, document.Find("x")), nullptr);
}

TEST(NextElement, DoesNotFollowEntityReferencesIntoTheDocumentType)
{
    Document document("<!DOCTYPE top [<!ENTITY e \"<inside/>\">]><top>&e;<a/></top>");
    ASSERT_EQ(document.top()->children->type, XML_ENTITY_REF_NODE);
    EXPECT_EQ(zr::NextElement(document.top(), document.top()), document.Find("a"));
}

} // namespace
