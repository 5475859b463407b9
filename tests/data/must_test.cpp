#include "data/phases.h"

#include <gtest/gtest.h>

#include "data/element.h"
#include "data/schema.h"
#include "support/run.h"

namespace {

using namespace zrtest;

Record MustFalse(const std::string &path, const std::string &name)
{
    return Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", path,
                 name + " is not satisfied must condition.", name);
}

std::string Texts(const std::string &message, const std::string &appTag)
{
    return (message.empty() ? ""
                            : "<error-message><value>" + message + "</value></error-message>") +
           (appTag.empty() ? "" : "<error-app-tag value=\"" + appTag + "\"/>");
}

TEST(Must, OfARequestIsAFaultWithTheSchemasTexts)
{
    struct {
        std::string must;
        Record record;
    } rows[] = {
        {Must(". = 'yes'"), MustFalse("/m:op/a", "a")},
        {Must(". = 'yes'", Texts("Say yes.", "")),
         Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:op/a", "Say yes.", "a")},
        {Must(". = 'yes'", Texts("", "tag")), Fault(ZR_ERROR_TAG_OPERATION_FAILED, "tag", "/m:op/a",
                                                    "a is not satisfied must condition.", "a")},
        {Must(". = 'yes'", Texts("50% of %s", "tag")),
         Fault(ZR_ERROR_TAG_OPERATION_FAILED, "tag", "/m:op/a", "50% of %s", "a")},
        // A message that cannot be shown is not replaced.
        {Must(". = 'yes'", "<error-message><value/></error-message>"),
         Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:op/a", "-", "a")},
        {Must(". = 'yes'", Texts(std::string(10241, 'x'), "tag")),
         Fault(ZR_ERROR_TAG_OPERATION_FAILED, "tag", "/m:op/a", "-", "a")},
        {Must(". = 'yes'", Texts(std::string(10240, 'x'), "")),
         Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:op/a", std::string(10240, 'x'),
               "a")},
        {Must(". = 'no'"), Valid()},
        {Must(". = 'no'") + Must(". = 'x'", Texts("Second.", "")) +
             Must(". = 'y'", Texts("Third.", "")),
         Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:op/a", "Second.", "a")},
        {Must("count(.)"), Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:op/a",
                                 "Failed to check must condition of a.", "a")},
    };
    for (const auto &row : rows) {
        Schema schema(Rpc("op", Input(Leaf("a", "string", row.must))));
        ASSERT_EQ(schema.status, ZR_OK) << row.must;
        EXPECT_EQ(RpcRecord(schema, Data("op", "<a>no</a>")), row.record) << row.must;
    }
}

TEST(Must, OfAnInputIsEvaluatedOnTheRpcElement)
{
    Schema schema(Rpc("op", Input(Must("a or b", Texts("One of them.", "one")) +
                                  Leaf("a", "string") + Leaf("b", "string"))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<b/>")), Valid());
    EXPECT_EQ(RpcRecord(schema, Data("op")),
              Fault(ZR_ERROR_TAG_OPERATION_FAILED, "one", "/m:op", "One of them.", "op"));
}

TEST(Must, OfAnActionsInputIsEvaluatedOnTheActionElement)
{
    Schema schema(Container("state", Leaf("a", "string") + "<action name=\"act\"><input>" +
                                         Must("../a = 'x'") + Leaf("b", "string", Must("../../a")) +
                                         "</input></action>"));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("state", "<a>x</a><act><b/></act>")), Valid());
    EXPECT_EQ(RpcRecord(schema, Data("state", "<a>y</a><act/>")), MustFalse("/m:state/act", "act"));
}

TEST(Must, IsAskedInDocumentOrderDownToTheDeepestElement)
{
    Schema schema(
        Rpc("op", Input(List("l", "k",
                             Leaf("k", "string") +
                                 Container("c", Leaf("x", "string", Must(". != 'bad'")))))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<l><k>1</k><c><x>ok</x></c></l>"
                                           "<l><k>2</k><c><x>bad</x></c></l>")),
              MustFalse("/m:op/l[k='2']/c/x", "x"));
}

TEST(Must, SeesTheDefaultsThatWereAdded)
{
    Schema schema(Rpc(
        "op", Input(Leaf("d", "string", Default("x")) + Leaf("a", "string", Must("../d = 'x'")) +
                    Container("c", Leaf("e", "string", Default("z") + Must("../../a"))))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<a/>")), Valid());
    EXPECT_EQ(RpcRecord(schema, Data("op", "<d>y</d><a/>")), MustFalse("/m:op/a", "a"));
    EXPECT_EQ(RpcRecord(schema, Data("op")), MustFalse("/m:op/c/e", "e"));
}

TEST(Must, IsNotAskedBelowAnydata)
{
    Schema schema(Rpc("op", Input("<anydata name=\"any\"/>" + Leaf("a", "string", Must("false")))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<any><a/></any>")), Valid());
}

TEST(Must, OfANotificationTakesTheElementOut)
{
    Schema schema(Notification(
        "event", Leaf("a", "string", Must(". = 'yes'")) +
                     Container("c", Must("x") + Leaf("x", "string") + Leaf("y", "string")) +
                     Leaf("z", "string")));
    ASSERT_EQ(schema.status, ZR_OK);
    NotifOutcome outcome =
        ValidateNotif(schema, Data("event", "<a>no</a><c><y>gone</y></c><z>here</z>"));
    EXPECT_EQ(outcome.status, ZR_OK);
    EXPECT_EQ(outcome.document, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<event xmlns=\"urn:m\">\n  <z>here</z>\n</event>\n");
}

TEST(Must, OfTheNotificationItselfFailsTheRun)
{
    Schema schema(Notification("event", Must("a") + Leaf("a", "string")));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(ValidateNotif(schema, Data("event", "<a/>")).status, ZR_OK);
    EXPECT_EQ(ValidateNotif(schema, Data("event")).status, ZR_ERR_INVALID);
}

TEST(Must, OfANotificationThatCannotBeEvaluatedFailsTheRun)
{
    Schema schema(Notification("event", Leaf("a", "string", Must("count(.)"))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(ValidateNotif(schema, Data("event", "<a/>")).status, ZR_ERR_INVALID);
}

TEST(MustPass, WithoutAnInputEvaluatesNothing)
{
    Schema schema("<rpc name=\"bare\"/>" + Container("c", Leaf("a", "string", Must("false"))) +
                  Rpc("op", Input(Leaf("a", "string"))));
    ASSERT_EQ(schema.status, ZR_OK);
    CheckRun run(schema, ZRD_MODE_RPC);
    Document document(Data("c", "<a/>"));
    run->root = document.top()->parent;
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    EXPECT_EQ(ZRD_PAS_GetRpcSubTreeInputMdl(document.top()), nullptr);
    EXPECT_EQ(ZRD_PAS_EvalDataTreeMust(run, document.top()), ZR_OK);
    EXPECT_EQ(ZRD_PAS_EvalDataSubtreeMust(run, document.Find("a")), ZR_ERR_INVALID);
    EXPECT_EQ(run.record(), MustFalse("/m:c/a", "a"));
    EXPECT_EQ(ZRD_PAS_EvalDataTreeMust(run, nullptr), ZR_ERR_INVALID);
    document.top()->_private = nullptr;
    EXPECT_EQ(ZRD_PAS_GetRpcSubTreeInputMdl(document.top()), nullptr);
    EXPECT_EQ(ZRD_PAS_EvalDataTreeMust(run, document.top()), ZR_ERR_INVALID);
    document.top()->_private = schema.Node("/m:op");
    EXPECT_EQ(ZRD_PAS_GetRpcSubTreeInputMdl(document.top()), schema.Node("/m:op/input"));
}

} // namespace
