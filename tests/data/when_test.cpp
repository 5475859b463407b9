#include "data/phases.h"

#include <gtest/gtest.h>

#include "data/element_conditions.h"
#include "data/schema.h"
#include "model/node_record.h"
#include "support/run.h"

namespace {

using namespace zrtest;

Record WhenFalse(const std::string &path, const std::string &name)
{
    return Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", path,
                 name + " is not satisfied when condition.", name);
}

const std::string kMode = Leaf("mode", "string");
const std::string kOn = When("../mode = 'on'");

struct Row {
    const char *name;
    std::string body; // of the rpc's input and of the notification
    std::string content;
    Record record;        // of the rpc
    std::string survivor; // what the notification's document holds
};

const Row kRows[] = {
    {"true", kMode + Leaf("a", "string", kOn), "<mode>on</mode><a>1</a>", Valid(),
     "<mode>on</mode><a>1</a>"},
    {"false", kMode + Leaf("a", "string", kOn), "<mode>off</mode><a>1</a>",
     WhenFalse("/m:op/a", "a"), "<mode>off</mode>"},
    {"false without the node asked for", kMode + Leaf("a", "string", kOn), "<a>1</a>",
     WhenFalse("/m:op/a", "a"), ""},
    {"on the element itself", Leaf("a", "string", When(". = '1'")), "<a>2</a>",
     WhenFalse("/m:op/a", "a"), ""},
    {"with its subtree", kMode + Container("c", Leaf("x", "string")).replace(20, 0, kOn),
     "<mode>off</mode><c><x>1</x></c>", WhenFalse("/m:op/c", "c"), "<mode>off</mode>"},
    {"in an entry of a list",
     List("l", "k", Leaf("k", "string") + Leaf("a", "string", When("../k = '1'"))),
     "<l><k>1</k><a/></l><l><k>2</k><a/></l>", WhenFalse("/m:op/l[k='2']/a", "a"),
     "<l><k>1</k><a/></l><l><k>2</k></l>"},
    {"of the case, with the parent as context",
     kMode + "<choice name=\"w\"><case name=\"one\">" + When("mode = 'on'") + Leaf("a", "string") +
         "</case></choice>",
     "<mode>off</mode><a/>", WhenFalse("/m:op/a", "a"), "<mode>off</mode>"},
    {"of the case, true",
     kMode + "<choice name=\"w\"><case name=\"one\">" + When("mode = 'on'") + Leaf("a", "string") +
         "</case></choice>",
     "<mode>on</mode><a/>", Valid(), "<mode>on</mode><a/>"},
    {"of the choice around the case",
     kMode + "<choice name=\"w\">" + When("mode = 'on'") + "<case name=\"one\">" +
         Leaf("a", "string") + "</case></choice>",
     "<mode>off</mode><a/>", WhenFalse("/m:op/a", "a"), "<mode>off</mode>"},
    {"of the outermost choice",
     kMode + "<choice name=\"w\">" + When("mode = 'on'") +
         "<case name=\"one\"><choice name=\"v\"><case name=\"in\">" + Leaf("a", "string") +
         "</case></choice></case></choice>",
     "<mode>off</mode><a/>", WhenFalse("/m:op/a", "a"), "<mode>off</mode>"},
    {"below anydata, not asked", "<anydata name=\"any\"/>" + Leaf("a", "string", kOn),
     "<any><a/></any>", Valid(), "<any>"},
    {"of the anydata itself", "<anydata name=\"any\">" + When("../mode") + "</anydata>",
     "<any><a/></any>", WhenFalse("/m:op/any", "any"), ""},
};

// The inside of <event>, without blanks between the elements.
std::string Inside(const std::string &document)
{
    size_t open = document.find('>', document.find("<event "));
    size_t close = document.rfind("</event>");
    if (close == std::string::npos)
        return "";
    std::string inside = document.substr(open + 1, close - open - 1);
    for (size_t at = inside.find("\n"); at != std::string::npos; at = inside.find("\n"))
        inside.erase(at, inside.find_first_not_of(" \n", at) - at);
    return inside;
}

TEST(When, IsAFaultInARequestAndTakesTheElementOutOfANotification)
{
    for (const Row &row : kRows) {
        Schema schema(Rpc("op", Input(row.body)) + Notification("event", row.body));
        ASSERT_EQ(schema.status, ZR_OK) << row.name;
        EXPECT_EQ(RpcRecord(schema, Data("op", row.content)), row.record) << row.name;
        NotifOutcome outcome = ValidateNotif(schema, Data("event", row.content));
        EXPECT_EQ(outcome.status, ZR_OK) << row.name;
        std::string inside = Inside(outcome.document);
        EXPECT_EQ(inside.substr(0, row.survivor.size()), row.survivor) << row.name;
        EXPECT_EQ(inside.empty(), row.survivor.empty()) << row.name;
    }
}

TEST(When, TakesBackADefaultWithTheContainersAddedForIt)
{
    Schema schema(
        Rpc("op", Input(kMode +
                        Container("c", Container("e", Leaf("d", "string",
                                                           When("../../../mode") + Default("x")))) +
                        Leaf("stays", "string", Default("y")))));
    ASSERT_EQ(schema.status, ZR_OK);
    Outcome outcome = ValidateRpc(schema, Data("op"));
    EXPECT_EQ(outcome.record, Valid());
    EXPECT_EQ(outcome.defaults, std::vector<std::string>{"stays=y"});
    EXPECT_EQ(outcome.document.find("<c>"), std::string::npos) << outcome.document;
    outcome = ValidateRpc(schema, Data("op", "<mode>1</mode>"));
    EXPECT_EQ(outcome.defaults, (std::vector<std::string>{"stays=y", "c"}));
}

TEST(When, TakesBackADefaultAndLeavesWhatElseWasAdded)
{
    Schema schema(Rpc(
        "op", Input(kMode + Container("c", Leaf("d", "string", When("../../mode") + Default("x")) +
                                               Leaf("e", "string", Default("y"))))));
    ASSERT_EQ(schema.status, ZR_OK);
    Outcome outcome = ValidateRpc(schema, Data("op"));
    EXPECT_EQ(outcome.defaults, std::vector<std::string>{"c"});
    EXPECT_NE(outcome.document.find("<c><e>y</e></c>"), std::string::npos) << outcome.document;
}

TEST(When, TakesBackADefaultAndLeavesTheCallersContainer)
{
    Schema schema(
        Rpc("op",
            Input(kMode + Container("c", Leaf("d", "string", When("../../mode") + Default("x"))))));
    ASSERT_EQ(schema.status, ZR_OK);
    Outcome outcome = ValidateRpc(schema, Data("op", "<c/>"));
    EXPECT_EQ(outcome.record, Valid());
    EXPECT_NE(outcome.document.find("<c/>"), std::string::npos) << outcome.document;
}

TEST(When, OfAnAddedContainerTakesItBackWhole)
{
    Schema schema(Rpc("op", Input(kMode + "<container name=\"c\">" + When("../mode") +
                                  Leaf("d", "string", Default("x")) + "</container>" +
                                  Leaf("e", "string", Default("y")))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(ValidateRpc(schema, Data("op")).defaults, std::vector<std::string>{"e=y"});
}

TEST(When, ThatCannotBeEvaluatedNamesTheElementOrTheParentOfItsCase)
{
    Schema schema(Rpc("op", Input(Leaf("a", "string", When("count(x) &gt; 1")) +
                                  "<choice name=\"w\"><case name=\"one\">" + When("1 + 2") +
                                  Leaf("b", "string") + "</case></choice>")));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<a/>")),
              Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:op/a",
                    "Failed to check when condition of a.", "a"));
    EXPECT_EQ(RpcRecord(schema, Data("op", "<b/>")),
              Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:op",
                    "Failed to check when condition of op.", "op"));
}

// Every way in which the evaluator refuses a condition.
struct {
    std::string condition;
    uint32_t status;
} const kBroken[] = {
    {"", ZR_ERR_INVALID},
    {" ", ZR_ERR_INVALID},
    {"1 2", ZR_ERR_INVALID},
    {"-1 = 1", ZR_ERR_INVALID},
    {"a b", ZR_XPATH_ERR_TOKENIZE},
    {"'open", ZR_XPATH_ERR_TOKENIZE},
    {"(a", ZR_XPATH_ERR_PAREN},
    {"a)", ZR_XPATH_ERR_PAREN},
    {"1 + 2", ZR_XPATH_ERR_UNSUPPORTED_OPERATOR},
    {"a | b", ZR_XPATH_ERR_UNSUPPORTED_OPERATOR},
    {"//a", ZR_XPATH_ERR_ROOT_STEP},
    {"a/@b", ZR_ERR_INVALID},
    {"count(x)", ZR_XPATH_ERR_UNKNOWN_FUNCTION},
    {"derived-from(a)", ZR_XPATH_ERR_BAD_ARGUMENT},
    {"a[b", ZR_XPATH_ERR_PREDICATE},
    {std::string(3095, 'a') + " b", ZR_XPATH_ERR_TOKENIZE},
};

TEST(When, GivesTheEvaluatorsStatusToTheRunAndARecordToTheCaller)
{
    Schema schema(Rpc("op", Input(Leaf("a", "string"))));
    ASSERT_EQ(schema.status, ZR_OK);
    ZrNode *leaf = schema.Node("/m:op/input/a");
    for (const auto &row : kBroken) {
        Document document(Data("op", "<a/>"));
        CheckRun run(schema, ZRD_MODE_RPC);
        run->root = document.top()->parent;
        uint32_t pass = 2;
        EXPECT_EQ(
            ZRD_PAS_EvalDataNodeOneWhenCond(run, document.top(), row.condition.c_str(), &pass),
            row.status)
            << row.condition;
        EXPECT_EQ(pass, 0u);
        leaf->when = row.condition.c_str(); // the loader refuses some of them
        EXPECT_EQ(RpcRecord(schema, Data("op", "<a/>")),
                  Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:op/a",
                        "Failed to check when condition of a.", "a"))
            << row.condition;
        leaf->when = nullptr;
    }
}

TEST(When, MayBeVeryLong)
{
    Schema schema(Rpc("op", Input(Leaf("a", "string"))));
    ZrNode *leaf = schema.Node("/m:op/input/a");
    for (size_t terms : {10u, 700u, 5000u}) {
        std::string condition;
        for (size_t i = 0; i < terms; ++i)
            condition += "../b or ";
        std::string holds = condition + "../a";
        leaf->when = holds.c_str();
        EXPECT_EQ(RpcRecord(schema, Data("op", "<a/>")), Valid()) << terms;
        condition += "../b";
        leaf->when = condition.c_str();
        EXPECT_EQ(RpcRecord(schema, Data("op", "<a/>")), WhenFalse("/m:op/a", "a")) << terms;
        leaf->when = nullptr;
    }
}

TEST(When, PassWantsAMatchedElement)
{
    Document document(Data("op"));
    CheckRun run(nullptr, ZRD_MODE_RPC);
    EXPECT_EQ(ZRD_PAS_EvalDataTreeWhenMust(run, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRD_PAS_EvalDataTreeWhenMust(run, document.top()), ZR_ERR_INVALID);
}

TEST(When, OfTheChoiceAppliesToTheElementThatThePassBeginsWith)
{
    Schema schema(
        Rpc("op", Input(kMode + "<choice name=\"w\">" + When("mode = 'on'") +
                        "<case name=\"one\">" + Leaf("a", "string") + "</case></choice>")));
    ASSERT_EQ(schema.status, ZR_OK);
    for (const auto &[mode, status] :
         {std::pair{"on", uint32_t{ZR_OK}}, std::pair{"off", uint32_t{ZR_XPATH_RESULT_FALSE}}}) {
        Document document(Data("op", "<mode>" + std::string(mode) + "</mode><a/>"));
        CheckRun run(schema, ZRD_MODE_RPC);
        run->root = document.top()->parent;
        ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
        EXPECT_EQ(ZRD_PAS_EvalDataTreeWhenMust(run, document.Find("a")), status) << mode;
    }
}

TEST(When, WalkGoesOnBehindARemovedElement)
{
    Schema schema(Notification(
        "event", List("l", "k", Leaf("k", "string") + Leaf("a", "string", When("../k = '1'"))) +
                     Leaf("last", "string", When("../l"))));
    ASSERT_EQ(schema.status, ZR_OK);
    NotifOutcome outcome = ValidateNotif(
        schema, Data("event", "<l><a/><k>2</k></l><l><k>2</k><a/></l><l><k>1</k><a/></l><last/>"));
    EXPECT_EQ(Inside(outcome.document), "<l><k>2</k></l><l><k>2</k></l><l><k>1</k><a/></l><last/>");
}

TEST(When, WalkDoesNotFollowEntityReferences)
{
    Schema schema(Rpc("op", Input(Container("c", Leaf("a", "string", When("false"))))));
    ASSERT_EQ(schema.status, ZR_OK);
    Document tree("<!DOCTYPE op [<!ENTITY e \"<a/>\">]>" + Data("op", "<c>&e;</c>"));
    EXPECT_EQ(
        TakeRecord(ZR_CTX_ValidateRpcDataTree(schema, ZR_VALUE_XML, tree.top(), nullptr, nullptr)),
        Valid());
}

} // namespace
