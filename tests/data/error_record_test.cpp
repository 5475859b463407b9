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

TEST(ErrorRecord, OfNullHasNothing)
{
    EXPECT_EQ(ZR_GetErrorType(nullptr), 0u);
    EXPECT_EQ(ZR_GetErrorSeverity(nullptr), 0u);
    EXPECT_EQ(ZR_GetErrorTag(nullptr), 0u);
    EXPECT_EQ(ZR_GetErrorAppTag(nullptr), nullptr);
    EXPECT_EQ(ZR_GetErrorMessage(nullptr), nullptr);
    EXPECT_EQ(ZR_GetErrorPath(nullptr), nullptr);
    EXPECT_EQ(ZR_GetBadElement(nullptr), nullptr);
    EXPECT_EQ(ZR_GetBadAttribute(nullptr), nullptr);
    ZR_FreeErrNode(nullptr);
}

TEST(ErrorRecord, GivesEachOfItsFields)
{
    char appTag[] = "a", path[] = "p", message[] = "m", element[] = "e", attribute[] = "t";
    ZrdErrNode record = {4, 1, 20, appTag, path, message, element, attribute};
    EXPECT_EQ(ZR_GetErrorType(&record), ZR_ERROR_TYPE_APPLICATION);
    EXPECT_EQ(ZR_GetErrorSeverity(&record), ZR_ERROR_SEVERITY_ERROR);
    EXPECT_EQ(ZR_GetErrorTag(&record), ZR_ERROR_TAG_MALFORMED_MESSAGE);
    EXPECT_STREQ(ZR_GetErrorAppTag(&record), "a");
    EXPECT_STREQ(ZR_GetErrorPath(&record), "p");
    EXPECT_STREQ(ZR_GetErrorMessage(&record), "m");
    EXPECT_STREQ(ZR_GetBadElement(&record), "e");
    EXPECT_STREQ(ZR_GetBadAttribute(&record), "t");
}

class RecordTest : public ::testing::Test {
protected:
    void SetUp() override { record_ = ZRD_ERR_NewErrNode(run_, 4, 1, 18, nullptr); }
    void TearDown() override
    {
        ZR_FreeErrNode(record_);
        EXPECT_EQ(guard_.LiveBlocks(), 0);
    }
    AllocGuard guard_;
    CheckRun run_{nullptr, ZRD_MODE_RPC};
    ZrdErrNode *record_ = nullptr;
};

TEST_F(RecordTest, WithoutADataNodeHasTheRootPath)
{
    EXPECT_STREQ(ZR_GetErrorPath(record_), "/");
    EXPECT_EQ(ZR_GetErrorType(record_), ZR_ERROR_TYPE_APPLICATION);
    EXPECT_EQ(ZR_GetErrorSeverity(record_), ZR_ERROR_SEVERITY_ERROR);
    EXPECT_EQ(ZR_GetErrorTag(record_), ZR_ERROR_TAG_OPERATION_FAILED);
    EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
    EXPECT_EQ(ZR_GetErrorAppTag(record_), nullptr);
    EXPECT_EQ(ZR_GetBadElement(record_), nullptr);
    EXPECT_EQ(ZR_GetBadAttribute(record_), nullptr);
}

TEST_F(RecordTest, KeepsTheFirstMessageAppTagAndBadElement)
{
    for (const char *text : {"first", "second"}) {
        ZRD_ERR_SetErrorMsg(record_, "%s %d", text, 1);
        ZRD_ERR_SetErrorAppTag(record_, text);
        ZRD_ERR_SetBadElement(record_, text);
    }
    EXPECT_STREQ(ZR_GetErrorMessage(record_), "first 1");
    EXPECT_STREQ(ZR_GetErrorAppTag(record_), "first");
    EXPECT_STREQ(ZR_GetBadElement(record_), "first");
}

TEST_F(RecordTest, SettersIgnoreNull)
{
    ZRD_ERR_SetErrorMsg(nullptr, "%s", "text");
    ZRD_ERR_SetErrorMsg(record_, nullptr);
    ZRD_ERR_SetErrorAppTag(nullptr, "text");
    ZRD_ERR_SetErrorAppTag(record_, nullptr);
    ZRD_ERR_SetBadElement(nullptr, "text");
    ZRD_ERR_SetBadElement(record_, nullptr);
    EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
    EXPECT_EQ(ZR_GetErrorAppTag(record_), nullptr);
    EXPECT_EQ(ZR_GetBadElement(record_), nullptr);
}

TEST_F(RecordTest, TakesAMessageOf10240CharactersAndNoLongerOne)
{
    ZRD_ERR_SetErrorMsg(record_, "%s", std::string(10241, 'x').c_str());
    EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
    ZRD_ERR_SetErrorMsg(record_, "%s", std::string(10240, 'x').c_str());
    EXPECT_EQ(ZR_GetErrorMessage(record_), std::string(10240, 'x'));
}

TEST_F(RecordTest, TakesNoEmptyMessage)
{
    ZRD_ERR_SetErrorMsg(record_, "%s", "");
    EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
}

TEST_F(RecordTest, LeavesAFieldNullWhenItCannotBeStored)
{
    uint64_t points = FailEachAllocation(guard_, [&](FailPoint &memory) {
        memory.Run([&] { ZRD_ERR_SetErrorMsg(record_, "text"); });
        EXPECT_EQ(ZR_GetErrorMessage(record_) == nullptr, memory.Failed());
        zr::Free(std::exchange(record_->message, nullptr));
    });
    EXPECT_EQ(points, 2u); // the scratch buffer, the copy
    guard_.FailAt(0);
    ZRD_ERR_SetErrorAppTag(record_, "text");
    guard_.FailAt(0);
    ZRD_ERR_SetBadElement(record_, "text");
    guard_.Stop();
    EXPECT_EQ(ZR_GetErrorAppTag(record_), nullptr);
    EXPECT_EQ(ZR_GetBadElement(record_), nullptr);
}

TEST_F(RecordTest, IsNullWhenMemoryRunsOut)
{
    guard_.FailAt(0);
    EXPECT_EQ(ZRD_ERR_NewErrNode(run_, 4, 1, 18, nullptr), nullptr);
    guard_.FailAt(1);
    ZrdErrNode *withoutPath = ZRD_ERR_NewErrNode(run_, 4, 1, 18, nullptr);
    ASSERT_NE(withoutPath, nullptr);
    EXPECT_EQ(ZR_GetErrorPath(withoutPath), nullptr);
    ZR_FreeErrNode(withoutPath);
}

TEST(RecordFault, KeepsTheFirstFaultOfTheRun)
{
    CheckRun run(nullptr, ZRD_MODE_RPC);
    EXPECT_EQ(zr::RecordFault(run, zr::Fault::MissingElement, nullptr, "a", "a"), ZR_ERR_INVALID);
    EXPECT_EQ(zr::RecordFault(run, zr::Fault::WhenFalse, nullptr, "b", "b"), ZR_ERR_INVALID);
    EXPECT_EQ(run.record(),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/", "Missing element: a.", "a"));
}

TEST(TakeFailure, GivesTheRunsRecordOrTheGeneralOne)
{
    CheckRun run(nullptr, ZRD_MODE_RPC);
    EXPECT_EQ(TakeRecord(zr::TakeFailure(run)), General());
    zr::RecordFault(run, zr::Fault::UnexpectedElement, nullptr, "x", "x");
    EXPECT_EQ(TakeRecord(zr::TakeFailure(run)),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/", "Unexpected element: x.", "x"));
    EXPECT_EQ(run->error, nullptr);
}

TEST(TakeFailure, GivesARecordEvenWithoutMemory)
{
    AllocGuard guard;
    guard.FailAt(0, true);
    CheckRun run(nullptr, ZRD_MODE_RPC);
    EXPECT_EQ(TakeRecord(zr::TakeFailure(run)), General());
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

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
