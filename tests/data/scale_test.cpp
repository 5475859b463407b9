// Very many siblings and very deep trees: loops, not recursion, and work in proportion to the
// number of elements. The tests are sized so that a square would not end in reasonable time.
#include <gtest/gtest.h>

#include "data/schema.h"
#include "support/run.h"

namespace {

using namespace zrtest;

constexpr int kMany = 100000;

std::string Repeat(const std::string &text, int count)
{
    std::string result;
    result.reserve(text.size() * static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

const std::string kEntry = Leaf("k", "string") + Leaf("d", "string", Default("x"));
const std::string kCaseOf = "<choice name=\"way\"><case name=\"one\">" + Leaf("first", "string") +
                            List("l", "k", kEntry) + List("l2", "k", Leaf("k", "string")) +
                            "</case><case name=\"two\">" + Leaf("other", "string") +
                            "</case></choice>";
const std::string kBody =
    Rpc("in-case", kCaseOf + Leaf("last", "string")) +
    Rpc("in-container", Container("c", kCaseOf)) +
    Rpc("plain", List("l", "k", Leaf("k", "string")) + Leaf("single", "string") +
                     "<anydata name=\"any\"/>" + Leaf("text", "string")) +
    Rpc("false-defaults",
        List("l", "k", Leaf("k", "string") + Leaf("d", "string", When("../no") + Default("x")))) +
    Notification("event", "<anydata name=\"any\"/>" + Leaf("text", "string"));

// Entries whose conditions ask for what stands behind all of them, and for what is nowhere.
const std::string kConditions =
    List("l", "k",
         Leaf("k", "string", Must("../../mode = 'x' and not(../../z)")) +
             Leaf("d", "string", When("../../mode = 'x'")) + Must("../mode = 'x'") +
             Must("not(../z)")) +
    "<choice name=\"way\"><case name=\"one\">" + When("not(z) and mode") +
    List("c", "k", Leaf("k", "string")) + "</case></choice>" + Leaf("mode", "string") +
    Leaf("z", "string");
const std::string kRemoved =
    List("l", "k", Leaf("k", "string") + Leaf("d", "string") + When("../last = 'x'")) +
    List("r", "k", Leaf("k", "string") + Must("../r/k = '1' and ../last = 'y'")) +
    Leaf("last", "string");

class ScaleTest : public ::testing::Test {
protected:
    // A tree <OPERATION><FIRST>...<x> nested `depth` times below.
    Document Deep(const char *operation, const char *first, const char *text, int depth)
    {
        xmlDoc *doc = xmlNewDoc(nullptr);
        xmlNode *top = xmlNewNode(nullptr, reinterpret_cast<const xmlChar *>(operation));
        xmlDocSetRootElement(doc, top);
        xmlSetNs(top, xmlNewNs(top, reinterpret_cast<const xmlChar *>("urn:m"), nullptr));
        xmlNode *node = xmlNewChild(top, nullptr, reinterpret_cast<const xmlChar *>(first),
                                    reinterpret_cast<const xmlChar *>(text));
        for (int i = 0; i < depth; ++i)
            node = xmlNewChild(node, nullptr, reinterpret_cast<const xmlChar *>("x"), nullptr);
        return Document(doc);
    }

    Record Validate(const std::string &text, std::string *documentOut = nullptr)
    {
        Document document(text);
        Record record =
            TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, 2, document.top(), nullptr, nullptr));
        if (documentOut != nullptr)
            *documentOut = document.Dump();
        return record;
    }

    Schema schema_{kBody};
};

TEST(ScaleOfConditions, AsksForWhatStandsBehindAllEntriesOrNowhere)
{
    Schema schema(Rpc("op", kConditions) + Notification("event", kConditions));
    ASSERT_EQ(schema.status, ZR_OK);
    const std::string content = Repeat("<l><k>1</k><d/></l>", kMany / 2) +
                                Repeat("<c><k>1</k></c>", kMany / 2) + "<mode>x</mode>";
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema, 1, Data("op", content).data(), nullptr,
                                                    nullptr)),
              Valid());
    NotifOutcome outcome = ValidateNotif(schema, Data("event", content));
    EXPECT_EQ(outcome.status, ZR_OK);
    EXPECT_NE(outcome.document.find("<c>"), std::string::npos);
}

// Each entry that is removed was the first of its name.
TEST(ScaleOfConditions, RemovesAllEntriesOfANotification)
{
    Schema schema(Notification("event", kRemoved));
    ASSERT_EQ(schema.status, ZR_OK);
    const std::string content =
        Repeat("<l><k>1</k></l>", kMany) + Repeat("<r><k>1</k></r>", kMany) + "<last>y</last>";
    NotifOutcome outcome = ValidateNotif(schema, Data("event", content));
    EXPECT_EQ(outcome.status, ZR_OK);
    EXPECT_EQ(outcome.document.find("<l>"), std::string::npos);
    EXPECT_NE(outcome.document.find("<r>"), std::string::npos);
    NotifOutcome without =
        ValidateNotif(schema, Data("event", Repeat("<l><k>1</k></l>", kMany) + "<last>x</last>" +
                                                Repeat("<r><k>1</k></r>", kMany)));
    EXPECT_EQ(without.status, ZR_OK);
    EXPECT_NE(without.document.find("<l>"), std::string::npos);
    EXPECT_EQ(without.document.find("<r>"), std::string::npos);
}

TEST_F(ScaleTest, TakesManyEntriesInsideACase)
{
    std::string entries = Repeat("<l><k>1</k></l>", kMany) + Repeat("<l2><k/></l2>", kMany);
    for (const char *operation : {"in-case", "in-container"}) {
        bool inContainer = operation[3] == 'c' && operation[4] == 'o';
        std::string content = inContainer ? "<c><first/>" + entries + "</c>" : "<first/>" + entries;
        EXPECT_EQ(Validate(Data(operation, content)), Valid()) << operation;
        std::string path = std::string("/m:") + operation + (inContainer ? "/c" : "") + "/other";
        content.insert(content.size() - (inContainer ? 4 : 0), "<other/>");
        EXPECT_EQ(Validate(Data(operation, content)),
                  Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", path,
                        "Data for more than one case branch of a choice is present.", "other"))
            << operation;
    }
}

TEST_F(ScaleTest, FindsARepeatedNodeAmongManyEntries)
{
    std::string entries = Repeat("<l><k/></l>", kMany);
    EXPECT_EQ(Validate(Data("plain", entries + "<single/><single/>")),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:plain/single",
                    "Unexpected element: single.", "single"));
    EXPECT_EQ(Validate(Data("plain", entries + "<single/>" + "<l><k/></l>")),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:plain/l",
                    "Invalid element order between l and single.", "l"));
}

TEST_F(ScaleTest, TakesBackManyDefaults)
{
    std::string after;
    EXPECT_EQ(Validate(Data("false-defaults", Repeat("<l><k/></l>", kMany)), &after), Valid());
    EXPECT_EQ(after.find("<d>"), std::string::npos);
}

TEST_F(ScaleTest, TakesTwoListsOfTwoModulesInTurn)
{
    ASSERT_EQ(schema_.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                    "<augment target-node=\"/m:in-container/m:input/m:c\">" +
                                        List("nl", "k", Leaf("k", "string")) + "</augment>"),
              ZR_OK);
    EXPECT_EQ(Validate(Data("in-container",
                            "<c>" + Repeat("<l><k/></l><nl xmlns=\"urn:n\"><k/></nl>", kMany / 2) +
                                "</c>")),
              Valid());
}

TEST_F(ScaleTest, WalksATreeOf100000LevelsBelowAnydata)
{
    Document document = Deep("plain", "any", nullptr, kMany);
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, 2, document.top(), nullptr, nullptr)),
              Valid());
    EXPECT_EQ(document.top()->children->children->children->_private, nullptr);
}

TEST_F(ScaleTest, RefusesATreeOf100000LevelsBehindTheTextOfALeaf)
{
    Document document = Deep("plain", "text", "value", kMany);
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, 2, document.top(), nullptr, nullptr)),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:plain/text", "Unexpected element: text.",
                    "text"));
}

TEST_F(ScaleTest, RefusesATreeOf100000UnexpectedLevels)
{
    Document document = Deep("plain", "x", nullptr, kMany);
    EXPECT_EQ(
        TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, 2, document.top(), nullptr, nullptr)),
        Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:plain/x", "Unexpected element: x.", "x"));
    Document first = Deep("x", "x", nullptr, kMany);
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, 2, first.top(), nullptr, nullptr)),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:x", "Unexpected element: x.", "x"));
}

} // namespace
