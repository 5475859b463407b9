#include "data/phases.h"

#include <gtest/gtest.h>

#include "data/schema.h"
#include "data/tree_changes.h"
#include "model/node_record.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;
using Names = std::vector<std::string>;

// The document without its XML declaration, the one below <op>.
std::string Content(const Outcome &outcome)
{
    size_t from = outcome.document.find("<op xmlns=\"urn:m\"");
    size_t open = outcome.document.find('>', from);
    size_t close = outcome.document.rfind("</op>");
    if (close == std::string::npos)
        return "";
    return outcome.document.substr(open + 1, close - open - 1);
}

struct Row {
    const char *name;
    std::string input; // of the rpc "op"
    std::string content;
    std::string completed;
    Names defaults;
};

const std::string kD = Leaf("d", "string", Default("x"));

const Row kRows[] = {
    {"a leaf left out", kD, "", "<d>x</d>", {"d=x"}},
    {"a leaf that is there", kD, "<d>y</d>", "<d>y</d>", {}},
    {"a leaf without a default", Leaf("a", "string"), "", "", {}},
    {"an empty default", Leaf("d", "string", Default("")), "", "<d/>", {"d"}},
    {"a mandatory leaf takes no default of its type",
     Leaf("a", "string") + Leaf("m", "with-default", Mandatory()),
     "<m>1</m>",
     "<m>1</m>",
     {}},
    {"a default of the typedef", Leaf("t", "with-default"), "", "<t>7</t>", {"t=7"}},
    {"a default along a typedef chain", Leaf("t", "chained"), "", "<t>7</t>", {"t=7"}},
    {"a leaf-list with a default",
     "<leaf-list name=\"ll\"><type name=\"string\"/><default value=\"x\"/></leaf-list>",
     "",
     "",
     {}},
    {"newest first",
     Leaf("d1", "string", Default("1")) + Leaf("d2", "string", Default("2")),
     "",
     "<d1>1</d1><d2>2</d2>",
     {"d2=2", "d1=1"}},
    {"an absent container with a default inside, reported once",
     Container("c", kD),
     "",
     "<c><d>x</d></c>",
     {"c"}},
    {"containers in containers",
     Container("c", Container("e", kD) + Container("f", "")),
     "",
     "<c><e><d>x</d></e></c>",
     {"c"}},
    {"an absent container without defaults", Container("c", Leaf("a", "string")), "", "", {}},
    {"an absent presence container",
     "<container name=\"c\"><presence value=\"p\"/>" + kD + "</container>",
     "",
     "",
     {}},
    {"a present presence container",
     "<container name=\"c\"><presence value=\"p\"/>" + kD + "</container>",
     "<c/>",
     "<c><d>x</d></c>",
     {"d=x"}},
    {"a present container",
     Container("c", kD + Leaf("a", "string")),
     "<c><a/></c>",
     "<c><a/><d>x</d></c>",
     {"d=x"}},
    {"every entry of a list",
     List("l", "k", Leaf("k", "string") + kD),
     "<l><k>1</k></l><l><k>2</k><d>y</d></l><l><k>3</k></l>",
     "<l><k>1</k><d>x</d></l><l><k>2</k><d>y</d></l><l><k>3</k><d>x</d></l>",
     {"d=x", "d=x"}},
    {"a list without entries", List("l", "k", Leaf("k", "string") + kD), "", "", {}},
    {"the case in the data",
     "<choice name=\"w\"><default value=\"two\"/><case name=\"one\">" + Leaf("a", "string") + kD +
         "</case><case name=\"two\">" + Leaf("e", "string", Default("e")) + "</case></choice>",
     "<a/>",
     "<a/><d>x</d>",
     {"d=x"}},
    {"the default case",
     "<choice name=\"w\"><default value=\"two\"/><case name=\"one\">" + Leaf("a", "string") + kD +
         "</case><case name=\"two\">" + Leaf("e", "string", Default("e")) + "</case></choice>",
     "",
     "<e>e</e>",
     {"e=e"}},
    {"a choice without default and data",
     "<choice name=\"w\"><case name=\"one\">" + kD + "</case></choice>",
     "",
     "",
     {}},
    {"a shorthand default case",
     "<choice name=\"w\"><default value=\"d\"/>" + kD + "</choice>",
     "",
     "<d>x</d>",
     {"d=x"}},
    {"a choice in a case",
     "<choice name=\"w\"><default value=\"one\"/><case name=\"one\"><choice name=\"v\">"
     "<default value=\"in\"/><case name=\"in\">" +
         kD + "</case></choice></case></choice>",
     "",
     "<d>x</d>",
     {"d=x"}},
    {"a disabled leaf", Leaf("d", "string", "<if-feature name=\"f\"/>" + Default("x")), "", "", {}},
    {"a disabled container",
     "<container name=\"c\"><if-feature name=\"f\"/>" + kD + "</container>",
     "",
     "",
     {}},
    {"anydata and anyxml", "<anydata name=\"a\"/><anyxml name=\"b\"/>", "", "", {}},
    {"markup in a default",
     Leaf("d", "string", Default("a &amp; &lt;b&gt;")),
     "",
     "<d>a &amp; &lt;b&gt;</d>",
     {"d=a & <b>"}},
    {"a default leaf whose when is false",
     Leaf("d", "string", When("../a = 'z'") + Default("x")) + Leaf("a", "string"),
     "<a>b</a>",
     "<a>b</a>",
     {}},
};

TEST(Completion, AddsWhatTheDataLeavesOut)
{
    for (const Row &row : kRows) {
        Schema schema("<feature name=\"f\"/><typedef name=\"with-default\"><type name=\"uint8\"/>"
                      "<default value=\"7\"/></typedef><typedef name=\"chained\">"
                      "<type name=\"with-default\"/></typedef>" +
                      Rpc("op", Input(row.input)));
        ASSERT_EQ(schema.status, ZR_OK) << row.name;
        Outcome outcome = ValidateRpc(schema, Data("op", row.content));
        EXPECT_EQ(outcome.record, Valid()) << row.name;
        EXPECT_EQ(Content(outcome), row.completed) << row.name;
        EXPECT_EQ(outcome.defaults, row.defaults) << row.name;
    }
}

TEST(Completion, LooksForTheLeafsNameAmongNodesOfAnyType)
{
    Schema schema(Rpc("op", Input(Leaf("text", "string", Default("x")) +
                                  Leaf("comment", "string", Default("y")))));
    ASSERT_EQ(schema.status, ZR_OK);
    Outcome outcome = ValidateRpc(schema, Data("op", "some text"));
    EXPECT_EQ(Content(outcome), "some text<comment>y</comment>");
    outcome = ValidateRpc(schema, Data("op", "<!--c-->"));
    EXPECT_EQ(Content(outcome), "<!--c--><text>x</text>");
}

TEST(Completion, DoesNotTouchAnotherModulesContainerOfThatName)
{
    Schema schema(Rpc("op", Input(Leaf("a", "string") + Container("c", kD))));
    ASSERT_EQ(schema.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                   "<augment target-node=\"/m:op/m:input\">" +
                                       Container("c", Leaf("z", "string")) + "</augment>"),
              ZR_OK);
    Outcome outcome = ValidateRpc(schema, Data("op", "<a/><c xmlns=\"urn:n\"><z/></c>"));
    EXPECT_EQ(outcome.record, Valid());
    EXPECT_EQ(Content(outcome), "<a/><c xmlns=\"urn:n\"><z/></c>");
}

TEST(Completion, DeclaresTheNamespaceOfAnotherModulesDefault)
{
    Schema schema(Rpc("op", Input(Leaf("a", "string"))));
    ASSERT_EQ(schema.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                   "<augment target-node=\"/m:op/m:input\">" +
                                       Container("c", kD) + "</augment>"),
              ZR_OK);
    Outcome outcome = ValidateRpc(schema, Data("op", "<a/>"));
    EXPECT_EQ(Content(outcome), "<a/><c xmlns=\"urn:n\"><d>x</d></c>");
    // What was completed is valid data of its own.
    EXPECT_EQ(ValidateRpc(schema, outcome.document).defaults, Names{});
}

TEST(Completion, LeavesAnRpcsOutputAlone)
{
    Schema schema("<rpc name=\"op\"><output>" + kD + "</output></rpc>");
    ASSERT_EQ(schema.status, ZR_OK);
    Outcome outcome = ValidateRpc(schema, Data("op", ""));
    EXPECT_EQ(outcome.record, Valid());
    EXPECT_EQ(outcome.defaults, Names{});
}

TEST(Completion, GoesBelowTheActionElementOnly)
{
    Schema schema(
        Container("state", kD + "<action name=\"act\"><input>" + kD + "</input></action>"));
    ASSERT_EQ(schema.status, ZR_OK);
    Outcome outcome = ValidateRpc(schema, Data("state", "<act/>"));
    EXPECT_EQ(outcome.record, Valid());
    EXPECT_NE(outcome.document.find("<state xmlns=\"urn:m\"><act><d>x</d></act></state>"),
              std::string::npos)
        << outcome.document;
}

TEST(Completion, IsNotDoneInNotifications)
{
    Schema schema(Notification("event", kD));
    ASSERT_EQ(schema.status, ZR_OK);
    NotifOutcome outcome = ValidateNotif(schema, Data("event"));
    EXPECT_EQ(outcome.status, ZR_OK);
    EXPECT_EQ(outcome.document.find("<d>"), std::string::npos);
}

TEST(Completion, OfAFailedRunLeavesNothingBehind)
{
    Schema schema(Rpc("op", Input(kD + Container("c", kD) + Leaf("m", "string", Mandatory()))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op")),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op", "Missing element: m.", "m"));
}

class CompleteTest : public ::testing::Test {
protected:
    Schema schema_{Rpc("op", Input(kD + Container("c", kD))) + Container("state", kD)};
    Document document_{Data("op")};
    CheckRun run_{schema_, ZRD_MODE_RPC};
    uint32_t added_ = 0;
};

TEST_F(CompleteTest, TreeWantsAnRpcOrActionInAnRpcRunAndDoesNothingElse)
{
    EXPECT_EQ(ZRD_PAS_CompleteTree(run_, document_.top(), ZRD_MODE_NOTIF), ZR_OK);
    EXPECT_EQ(ZRD_PAS_CompleteTree(run_, nullptr, ZRD_MODE_RPC), ZR_ERR_INVALID);
    EXPECT_EQ(ZRD_PAS_CompleteTree(run_, document_.top(), ZRD_MODE_RPC),
              ZR_ERR_INVALID); // not matched
    document_.top()->_private = schema_.Node("/m:state");
    EXPECT_EQ(ZRD_PAS_CompleteTree(run_, document_.top(), ZRD_MODE_RPC), ZR_ERR_INVALID);
    document_.top()->_private = schema_.Node("/m:op");
    EXPECT_EQ(ZRD_PAS_CompleteTree(run_, document_.top(), ZRD_MODE_RPC), ZR_OK);
    EXPECT_EQ(xmlChildElementCount(document_.top()), 2u);
}

TEST_F(CompleteTest, SubTreeRefusesNullAndUnknownKinds)
{
    ZrNode *op = schema_.Node("/m:op");
    EXPECT_EQ(ZRD_PAS_CompleteSubTree(run_, nullptr, op, &added_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRD_PAS_CompleteSubTree(run_, document_.top(), nullptr, &added_), ZR_ERR_INVALID);
    ZrNode node = {};
    node.module = schema_.Module("m");
    node.kind = 15;
    EXPECT_EQ(ZRD_PAS_CompleteSubTree(run_, document_.top(), &node, &added_), ZR_ERR_INVALID);
    for (uint32_t kind : {0u, 3u, 7u, 8u, 11u, 13u, 14u}) {
        node.kind = kind;
        EXPECT_EQ(ZRD_PAS_CompleteSubTree(run_, document_.top(), &node, &added_), ZR_OK) << kind;
    }
    node.kind = ZR_NODE_LEAF; // without schema info
    EXPECT_EQ(ZRD_PAS_CompleteSubTree(run_, document_.top(), &node, &added_), ZR_ERR_INVALID);
    EXPECT_EQ(added_, 0u);
}

TEST_F(CompleteTest, SubTreeSetsTheFlagWhenItAddedSomething)
{
    ZrNode *op = schema_.Node("/m:op");
    document_.top()->_private = op;
    EXPECT_EQ(ZRD_PAS_CompleteSubTree(run_, document_.top(), op, &added_), ZR_OK);
    EXPECT_EQ(added_, 1u);
    added_ = 0;
    EXPECT_EQ(ZRD_PAS_CompleteSubTree(run_, document_.top(), op, &added_), ZR_OK);
    EXPECT_EQ(added_, 0u);
}

TEST_F(CompleteTest, TakesBackWhatItCannotEnterIntoTheList)
{
    ZrNode *op = schema_.Node("/m:op");
    document_.top()->_private = op;
    AllocGuard guard;
    for (uint64_t n : {UINT64_C(0), UINT64_C(1)}) { // the leaf's entry, the container's
        guard.FailAt(n);
        EXPECT_EQ(ZRD_PAS_CompleteSubTree(run_, document_.top(), op, &added_), ZR_ERR_NO_MEMORY);
        EXPECT_EQ(xmlChildElementCount(document_.top()), n);
        ZRD_PAS_ClearDefaultNodeList(run_, 0);
        EXPECT_EQ(xmlChildElementCount(document_.top()), 0u);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

} // namespace
