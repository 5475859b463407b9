// Whole runs with the n-th allocation failing, for every n: a record or a result, nothing leaked,
// the caller's tree as it was.
#include <gtest/gtest.h>

#include "data/schema.h"
#include "support/alloc.h"
#include "support/run.h"
#include "support/xml_alloc.h"

namespace {

using namespace zrtest;

const std::string kInput =
    Leaf("mode", "string") + Leaf("d", "string", When("../mode = 'on'") + Default("x")) +
    Container("c", Leaf("e", "string", Default("y")) +
                       Leaf("f", "string", Default("z") + Must("../../mode"))) +
    List("l", "k",
         Leaf("k", "string") +
             "<leaf name=\"t\"><type name=\"identityref\"><base name=\"b\"/></type></leaf>" +
             Leaf("g", "string", When("derived-from-or-self(../t, 'm:b')") + kMandatory)) +
    Leaf("m", "string",
         kMandatory + Must(". = 'yes'", "<error-message><value>Say yes.</value>"
                                        "</error-message>"));
const std::string kBody =
    "<identity name=\"b\"/>" + Rpc("op", kInput) + Notification("event", kInput);

const char *const kContents[] = {
    "<mode>on</mode><l><k>1</k><t>b</t><g/></l><m>yes</m>", // valid
    "<mode>off</mode><m>yes</m>",                           // valid, with a default taken back
    "<mode>on</mode><l><k>1</k><t>b</t></l><m>yes</m>",     // a mandatory node is missing
    "<mode>on</mode><m>no</m>",                             // a false must
    "<l><k>1</k><k>2</k></l>",                              // a repeated node
    "<m>yes</m><mode/>",                                    // a wrong order
};

void Ignore(void *, void *) {}

uint32_t KeepText(const char *text, void *kept)
{
    *static_cast<std::string *>(kept) = text;
    return 0;
}

class FailingMemory : public ::testing::TestWithParam<const char *> {
protected:
    Schema schema_{kBody};
};

TEST_P(FailingMemory, NeverMakesAFailedRequestLookValidNorLeaksNorTouchesTheTree)
{
    ASSERT_EQ(schema_.status, ZR_OK);
    Document document(std::string(3, '\n') + Data("op", GetParam()));
    bool valid = RpcRecord(schema_, Data("op", GetParam())) == Valid();
    document.top()->line = 256; // the guard of caller's lines allocates too
    std::string before = document.Dump();
    AllocGuard guard;
    uint64_t n = 0;
    for (bool all : {false, true}) {
        for (n = 0; n < 10000; ++n) {
            Document copy(xmlCopyDoc(document.get(), 1));
            copy.top()->line = 256;
            guard.FailAt(n, all);
            ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(schema_, 2, copy.top(), Ignore, nullptr);
            bool reached = guard.Count() > n;
            guard.FailNone();
            EXPECT_EQ(copy.top()->line, 256);
            if (error != nullptr) {
                EXPECT_EQ(ZR_GetErrorType(error), ZR_ERROR_TYPE_APPLICATION);
                EXPECT_EQ(ZR_GetErrorSeverity(error), ZR_ERROR_SEVERITY_ERROR);
                EXPECT_EQ(copy.Dump(), before);
            }
            // Short of memory a run may fail that would not, never the other way round.
            EXPECT_TRUE(valid || error != nullptr) << "allocation " << n;
            ZR_FreeErrNode(error);
            EXPECT_EQ(guard.LiveBlocks(), 0) << "allocation " << n;
            if (!reached)
                break;
        }
        EXPECT_GT(n, 3u);
        EXPECT_LT(n, 10000u);
    }
}

TEST_P(FailingMemory, OfANotificationLeaksNothing)
{
    AllocGuard guard;
    std::string text = Data("event", GetParam());
    for (uint64_t n = 0; n < 10000; ++n) {
        guard.FailAt(n);
        uint32_t status = ZR_CTX_ValidateNotifDataTree(schema_, text.c_str(), nullptr, nullptr);
        bool reached = guard.Count() > n;
        guard.FailNone();
        EXPECT_TRUE(status == ZR_OK || status == ZR_ERR_INVALID) << status;
        EXPECT_EQ(guard.LiveBlocks(), 0) << "allocation " << n;
        if (!reached)
            break;
    }
}

TEST_P(FailingMemory, OfATextGivesARecordOrADocumentAndLeaksNothing)
{
    AllocGuard guard;
    for (bool notification : {false, true}) {
        auto run =
            notification ? ZR_CTX_ValidateNotifDataTreeWithError : ZR_CTX_CompleteRpcDataTree;
        std::string text = Data(notification ? "event" : "op", GetParam());
        uint64_t n = 0;
        for (bool reached = true; reached && n < 10000; ++n) {
            std::string document;
            ZrdErrNode *error = nullptr;
            guard.FailAt(n);
            uint32_t status = run(schema_, text.c_str(), KeepText, &document, &error);
            reached = guard.Count() > n;
            guard.FailNone();
            EXPECT_EQ(status, error != nullptr ? ZR_ERR_INVALID : ZR_OK) << n;
            EXPECT_EQ(document.empty(), error != nullptr) << n;
            ZR_FreeErrNode(error);
            EXPECT_EQ(guard.LiveBlocks(), 0) << "allocation " << n;
        }
        EXPECT_LT(n, 10000u);
    }
}

INSTANTIATE_TEST_SUITE_P(Requests, FailingMemory, ::testing::ValuesIn(kContents));

TEST_P(FailingMemory, OfLibxml2LeavesTheTreeAndNeverMakesAFailedRequestLookValid)
{
    ASSERT_EQ(schema_.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                    "<augment target-node=\"/m:op/m:input\">" +
                                        Container("c", Leaf("d", "string", Default("x"))) +
                                        "</augment>"),
              ZR_OK);
    Document document(Data("op", GetParam()));
    bool valid = RpcRecord(schema_, Data("op", GetParam())) == Valid();
    std::string before = document.Dump();
    XmlAllocGuard memory;
    uint64_t n = 0;
    for (bool reached = true; reached && n < 1000; ++n) {
        Document copy(xmlCopyDoc(document.get(), 1));
        memory.FailAt(n);
        ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(schema_, 2, copy.top(), Ignore, nullptr);
        reached = memory.Stop();
        EXPECT_TRUE(valid || error != nullptr) << "allocation " << n;
        EXPECT_TRUE(error != nullptr || !reached) << "allocation " << n;
        if (error != nullptr) {
            EXPECT_EQ(copy.Dump(), before) << "allocation " << n;
        }
        ZR_FreeErrNode(error);
    }
    EXPECT_LT(n, 1000u);
    EXPECT_EQ(memory.Messages(), 0u);
}

TEST(FailingXmlMemory, LoadsAModuleWholeOrNotAtAll)
{
    std::string yin = ModuleText("m", kBody);
    XmlAllocGuard memory;
    bool failed = true;
    uint64_t n = 0;
    for (; failed; ++n) {
        TestContext ctx;
        memory.FailAt(n);
        uint32_t status = ctx.Load(yin);
        failed = memory.Stop();
        EXPECT_EQ(status, failed ? ZR_ERR_INVALID : ZR_OK) << n;
        EXPECT_EQ(ctx.Node("/m:op/input/l/g") == nullptr, failed) << n;
    }
    EXPECT_GT(n, 100u);
    EXPECT_EQ(memory.Messages(), 0u);
}

using TextFunc = uint32_t (*)(ZrCtx *ctx, const char *text, std::string *document);

uint32_t Notify(ZrCtx *ctx, const char *text, std::string *document)
{
    return ZR_CTX_ValidateNotifDataTree(ctx, text, KeepText, document);
}

uint32_t Complete(ZrCtx *ctx, const char *text, std::string *document)
{
    return ZR_CTX_CompleteRpcDataTree(ctx, text, KeepText, document, nullptr);
}

void ExpectAllOrNothing(TextFunc run, ZrCtx *ctx, const std::string &text)
{
    XmlAllocGuard memory;
    std::string document;
    auto validate = [&](uint64_t failAt) {
        document.clear();
        memory.FailAt(failAt);
        return run(ctx, text.c_str(), &document);
    };
    ASSERT_EQ(validate(UINT64_MAX), ZR_OK); // what a first document brings about
    ASSERT_EQ(validate(UINT64_MAX), ZR_OK);
    const std::string whole = document;
    EXPECT_NE(whole, "");
    bool failed = true;
    for (uint64_t n = 0; failed; ++n) {
        uint32_t status = validate(n);
        failed = memory.Stop();
        EXPECT_EQ(status, failed ? ZR_ERR_INVALID : ZR_OK) << n;
        EXPECT_EQ(document, failed ? "" : whole) << n;
    }
    EXPECT_EQ(memory.Messages(), 0u);
}

TEST(FailingXmlMemory, HandsOutNoNotificationThatWasNotReadAndWrittenWhole)
{
    Schema schema(kBody);
    ExpectAllOrNothing(Notify, schema, Data("event", kContents[0]));
}

TEST(FailingXmlMemory, HandsOutNoRequestThatWasNotReadCompletedAndWrittenWhole)
{
    Schema schema(kBody);
    ASSERT_EQ(schema.LoadBody("base", "<identity name=\"b\"/>"), ZR_OK);
    ASSERT_EQ(schema.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                   "<import module=\"base\"><prefix value=\"b\"/></import>"
                                   "<augment target-node=\"/m:op/m:input\"><leaf name=\"id\">"
                                   "<type name=\"identityref\"><base name=\"b:b\"/></type>" +
                                       Default("b:b") + "</leaf></augment>"),
              ZR_OK);
    ExpectAllOrNothing(Complete, schema, Data("op", kContents[0]));
    // Where the prefix of the value is the one of the element's name.
    ExpectAllOrNothing(
        Complete, schema,
        "<base:op xmlns:base=\"urn:m\"><base:mode>on</base:mode><base:m>yes</base:m></base:op>");
}

} // namespace
