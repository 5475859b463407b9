#include "data/element.h"

#include <gtest/gtest.h>
#include <zrschema/node.h>

#include "data/phases.h"
#include "data/schema.h"
#include "data/tree_changes.h"
#include "support/run.h"

namespace {

using namespace zrtest;

const std::string kBody =
    Container("top", Leaf("a", "string") + Container("box", Leaf("x", "string")) +
                         List("l", "k", Leaf("k", "string") + Leaf("v", "string")) +
                         "<choice name=\"way\"><case name=\"one\"><container name=\"deep\">" +
                         Leaf("d", "string") +
                         "</container><choice name=\"inner\"><case "
                         "name=\"i\">" +
                         Leaf("in", "string") + "</case></choice></case><case name=\"two\">" +
                         Leaf("t", "string") + "</case></choice>");

class DataTreeTest : public ::testing::Test {
protected:
    void Match(Document &document)
    {
        CheckRun run(schema_, ZRD_MODE_RPC);
        ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    }

    Schema schema_{kBody};
};

TEST_F(DataTreeTest, FindsAChildOfAnyNodeTypeByName)
{
    Document document(Data("top", "text<!--c--><?target x?><a/><a id='2'/>"));
    const xmlNode *top = document.top();
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "text"), top->children);
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "comment"), top->children->next);
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "target"), top->children->next->next);
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "a"), document.Find("a"));
    EXPECT_EQ(ZRD_PAS_FindChildDataNode(top, "b"), nullptr);
}

TEST_F(DataTreeTest, FindsTheFirstChildOfASchemaNode)
{
    Document document(Data("top", "<l><k/></l><l><k/></l>"));
    Match(document);
    EXPECT_EQ(ZRD_NODE_GetChildNodeWithSpecifyMdl(document.top(), schema_.Node("/m:top/l")),
              document.Find("l"));
    EXPECT_EQ(ZRD_NODE_GetChildNodeWithSpecifyMdl(document.top(), schema_.Node("/m:top/a")),
              nullptr);
    EXPECT_EQ(ZRD_NODE_GetChildNodeWithSpecifyMdl(document.top(), nullptr), nullptr);
}

TEST_F(DataTreeTest, CreatesAChildInTheParentsNamespace)
{
    Document document("<p:top xmlns:p=\"urn:m\"><p:a/></p:top>");
    Match(document);
    xmlNode *child = ZRD_NODE_CreateNewChildNode(document.top(), schema_.Node("/m:top/box"));
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->_private, schema_.Node("/m:top/box"));
    EXPECT_EQ(document.top()->last, child);
    EXPECT_NE(document.Dump().find("<p:a/><p:box/></p:top>"), std::string::npos) << document.Dump();
}

TEST_F(DataTreeTest, DeclaresTheNamespaceOfAChildOfAnotherModule)
{
    ASSERT_EQ(schema_.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                    "<augment target-node=\"/m:top\">" +
                                        Leaf("y", "string") + "</augment>"),
              ZR_OK);
    Document document(Data("top"));
    Match(document);
    ASSERT_NE(ZRD_PAS_AddNewChildNodeWithValue(document.top(), schema_.Node("/m:top/n:y"), "v"),
              nullptr);
    EXPECT_NE(document.Dump().find("<top xmlns=\"urn:m\"><y xmlns=\"urn:n\">v</y></top>"),
              std::string::npos)
        << document.Dump();
}

TEST_F(DataTreeTest, SetsAValueAsPlainText)
{
    Document document(Data("top"));
    Match(document);
    ZrNode *a = schema_.Node("/m:top/a");
    ZRD_PAS_AddNewChildNodeWithValue(document.top(), a, "x & <y> &amp;");
    ZRD_PAS_AddNewChildNodeWithValue(document.top(), a, "");
    ZRD_PAS_AddNewChildNodeWithValue(document.top(), a, nullptr);
    EXPECT_NE(document.Dump().find("<a>x &amp; &lt;y&gt; &amp;amp;</a><a/><a/></top>"),
              std::string::npos)
        << document.Dump();
}

TEST_F(DataTreeTest, FindsTheCaseThatHoldsData)
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

TEST_F(DataTreeTest, TellsKeyLeaves)
{
    Document document(Data("top", "<a/><l><k/><v/></l>"));
    Match(document);
    EXPECT_EQ(ZRD_NODE_IsKeyLeafNode(document.Find("k")), 1u);
    EXPECT_EQ(ZRD_NODE_IsKeyLeafNode(document.Find("v")), 0u);
    EXPECT_EQ(ZRD_NODE_IsKeyLeafNode(document.Find("l")), 0u);
    EXPECT_EQ(ZRD_NODE_IsKeyLeafNode(document.Find("a")), 0u);
}

TEST_F(DataTreeTest, ClearsThePrivatePointersOfElementsAlone)
{
    Document document(Data("top", "text<a/><box><x/></box>"));
    Match(document);
    int own = 0;
    document.top()->children->_private = &own;
    ZRD_PAS_ClearXmlTreePrivate(document.top());
    for (const char *name : {"top", "a", "box", "x"})
        EXPECT_EQ(document.Find(name)->_private, nullptr) << name;
    EXPECT_EQ(document.top()->children->_private, &own);
    ZRD_PAS_ClearXmlTreePrivate(document.top()->children);
    EXPECT_EQ(document.top()->children->_private, &own);
    ZRD_PAS_ClearXmlTreePrivate(nullptr);
}

TEST_F(DataTreeTest, WalksElementsInDocumentOrderWithinTheSubtree)
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
