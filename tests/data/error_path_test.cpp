#include "data/error_record.h"

#include <gtest/gtest.h>

#include "data/element.h"
#include "data/phases.h"
#include "data/schema.h"
#include "platform/memory.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;

const std::string kBody =
    Container("top", List("entry", "name id",
                          Leaf("name", "string") + Leaf("id", "string") + Leaf("value", "string") +
                              Container("inner", Leaf("x", "string"))) +
                         "<leaf-list name=\"tag\"><type name=\"string\"/></leaf-list>");

class ErrorPathTest : public ::testing::Test {
protected:
    // The path of the first element called `name` in the matched document.
    std::string PathOf(const std::string &text, const char *name)
    {
        Document document(text);
        run_->root = document.top()->parent;
        EXPECT_EQ(ZRD_PAS_FlushTreeWithSchema(run_, document.top()), ZR_OK);
        zr::Owned<char> path(ZRD_ERR_GeneralErrorPath(run_, document.Find(name)));
        return path ? path.get() : "-";
    }

    Schema schema_{kBody};
    CheckRun run_{schema_, ZRD_MODE_RPC};
};

TEST_F(ErrorPathTest, ShowsTheKeysOfAListEntryAndTheModuleOnTheTopOnly)
{
    EXPECT_EQ(PathOf(Data("top", "<entry><name>a</name><id>1</id><value/></entry>"), "value"),
              "/m:top/entry[name='a'][id='1']/value");
}

TEST_F(ErrorPathTest, ShowsTheKeysInDocumentOrder)
{
    EXPECT_EQ(PathOf(Data("top", "<entry><id>1</id><name>a</name></entry>"), "entry"),
              "/m:top/entry[id='1'][name='a']");
}

TEST_F(ErrorPathTest, QuotesAnApostropheWithDoubleQuotes)
{
    EXPECT_EQ(PathOf(Data("top", "<entry><name>it's</name><id>1</id></entry>"), "entry"),
              "/m:top/entry[name=\"it's\"][id='1']");
}

TEST_F(ErrorPathTest, ShowsAMissingValueAsTheEmptyString)
{
    EXPECT_EQ(PathOf(Data("top", "<entry><name/><id>1</id></entry>"), "entry"),
              "/m:top/entry[name=''][id='1']");
}

TEST_F(ErrorPathTest, ShowsTheValueOfALeafListEntry)
{
    EXPECT_EQ(PathOf(Data("top", "<tag>x</tag>"), "tag"), "/m:top/tag[.='x']");
}

TEST_F(ErrorPathTest, OfAKeyLeafShowsItInTheEntryAndAsAStep)
{
    EXPECT_EQ(PathOf(Data("top", "<entry><name>a</name></entry>"), "name"),
              "/m:top/entry[name='a']/name");
}

TEST_F(ErrorPathTest, NamesTheModuleWhereItChanges)
{
    ASSERT_EQ(schema_.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                    "<augment target-node=\"/m:top\"><container name=\"extra\">"
                                    "<leaf name=\"y\"><type name=\"string\"/></leaf></container>"
                                    "</augment>"),
              ZR_OK);
    EXPECT_EQ(PathOf(Data("top", "<extra xmlns=\"urn:n\"><y/></extra>"), "y"), "/m:top/n:extra/y");
}

TEST_F(ErrorPathTest, OfTheRunsRootIsNull)
{
    Document document(Data("top"));
    run_->root = document.top();
    EXPECT_EQ(ZRD_ERR_GeneralErrorPath(run_, document.top()), nullptr);
}

TEST_F(ErrorPathTest, OfAnUnknownElementHasNoModule)
{
    Document document("<a xmlns=\"urn:none\"><b/></a>");
    run_->root = document.top()->parent;
    zr::Owned<char> path(ZRD_ERR_GeneralErrorPath(run_, document.Find("b")));
    EXPECT_STREQ(path.get(), "/a/b");
}

TEST_F(ErrorPathTest, StopsAtTheTopOfATreeWithoutADocument)
{
    Document document(Data("top", "<tag>x</tag>"));
    xmlNode *top = document.top();
    xmlUnlinkNode(top);
    run_->root = nullptr;
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run_, top), ZR_OK);
    zr::Owned<char> path(ZRD_ERR_GeneralErrorPath(run_, top->children));
    EXPECT_STREQ(path.get(), "/m:top/tag[.='x']");
    xmlFreeNode(top);
}

TEST_F(ErrorPathTest, TakesAtMost10239Characters)
{
    // "/m:top/tag[.='" and "']"
    size_t room = 10239 - 16;
    std::string fits(room, 'v');
    EXPECT_EQ(PathOf(Data("top", "<tag>" + fits + "</tag>"), "tag"),
              "/m:top/tag[.='" + fits + "']");
    std::string key = "<name>" + std::string(10240, 'v') + "</name>";
    EXPECT_EQ(PathOf(Data("top", "<entry>" + key + "</entry>"), "entry"), "-");
    EXPECT_EQ(PathOf(Data("top", "<tag>" + fits + "v</tag>"), "tag"), "-");
}

TEST_F(ErrorPathTest, SaysWhetherAStepOrAPredicateDidNotFit)
{
    char buffer[16] = {};
    uint32_t space = 5;
    EXPECT_EQ(ZRD_ERR_PrintXpathNode("m", "top", buffer, &space), ZR_ERR_INVALID);
    EXPECT_EQ(space, 5u);
    EXPECT_EQ(ZRD_ERR_PrintXpathNode(nullptr, "leaf", buffer, &space), ZR_OK);
    EXPECT_EQ(space, 0u);
    EXPECT_EQ(std::string(buffer, 5), "/leaf");

    Document document(Data("top", "<tag>long</tag>"));
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run_, document.top()), ZR_OK);
    space = 8;
    EXPECT_EQ(ZRD_ERR_PrintElementNodeAsPredicate(document.Find("tag"), buffer, &space),
              ZR_ERR_NO_MEMORY);
    EXPECT_EQ(ZRD_ERR_PrintElementNode(run_, document.Find("tag"), buffer, &space),
              ZR_ERR_NO_MEMORY);
    EXPECT_EQ(ZRD_ERR_PrintPath(run_, document.Find("tag"), buffer, &space), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(space, 8u);
    space = 10; // the predicate fits, the step does not
    EXPECT_EQ(ZRD_ERR_PrintElementNode(run_, document.Find("tag"), buffer, &space), ZR_ERR_INVALID);
}

TEST_F(ErrorPathTest, IsNullWhenMemoryRunsOut)
{
    Document document(Data("top", "<tag>x</tag>"));
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run_, document.top()), ZR_OK);
    run_->root = document.top()->parent;
    AllocGuard guard;
    for (uint64_t n : {UINT64_C(0), UINT64_C(2)}) { // the buffer, the result
        guard.FailAt(n);
        EXPECT_EQ(ZRD_ERR_GeneralErrorPath(run_, document.Find("tag")), nullptr);
        EXPECT_EQ(guard.LiveBlocks(), 0);
    }
    guard.FailAt(1); // the value
    zr::Owned<char> path(ZRD_ERR_GeneralErrorPath(run_, document.Find("tag")));
    EXPECT_STREQ(path.get(), "/m:top/tag[.='']");
}

TEST(IdentityPath, ShowsAnIdentityKeyWithItsModule)
{
    Schema schema(
        "<identity name=\"base\"/><identity name=\"red\"><base name=\"base\"/></identity>" +
        Rpc("op", Input(List("entry", "type",
                             "<leaf name=\"type\"><type name=\"identityref\">"
                             "<base name=\"base\"/></type></leaf>" +
                                 Leaf("n", "uint8")))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, "<op xmlns=\"urn:m\" xmlns:p=\"urn:m\"><entry><type>p:red</type>"
                                "<n>x</n></entry></op>"),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/entry[type='m:red']/n",
                    "n has invalid value x.", "n"));
}

TEST(ModuleName, OfAnElementComesFromItsSchemaNodeOrItsNamespace)
{
    Schema schema(Container("top", ""));
    Document document("<top xmlns=\"urn:m\"><a xmlns=\"urn:none\"/><b xmlns=\"\"/>text</top>");
    EXPECT_STREQ(ZRD_NODE_GetModuleName(schema, document.top()), "m");
    EXPECT_EQ(ZRD_NODE_GetModuleName(schema, document.Find("a")), nullptr);
    EXPECT_EQ(ZRD_NODE_GetModuleName(schema, document.Find("b")), nullptr);
    EXPECT_EQ(ZRD_NODE_GetModuleName(schema, document.top()->last), nullptr);
    EXPECT_EQ(ZRD_NODE_GetModuleName(schema, nullptr), nullptr);
    document.Find("a")->_private = schema.Node("/m:top");
    EXPECT_STREQ(ZRD_NODE_GetModuleName(schema, document.Find("a")), "m");
    document.Find("a")->_private = nullptr;
}

} // namespace
