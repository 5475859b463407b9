#include "data/phases.h"

#include <gtest/gtest.h>
#include <zrschema/node.h>

#include "data/element.h"
#include "data/schema.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;

const std::string kBody =
    Rpc("op",
        Input(Leaf("a", "string") + Leaf("n", "uint8") + Container("c", Leaf("x", "string")) +
              "<anydata name=\"any\"/><anyxml name=\"xml\"/>"
              "<choice name=\"way\"><case name=\"one\">" +
              Leaf("in-one", "string") + "</case><case name=\"two\">" + Leaf("in-two", "string") +
              "</case></choice>"
              "<leaf-list name=\"ll\"><type name=\"string\"/></leaf-list>")) +
    Notification("event", Leaf("n", "uint8") + Container("c", Leaf("x", "string"))) +
    Container("state", Leaf("n", "uint8")) + "<choice name=\"top-choice\"><case name=\"k\">" +
    Leaf("k-leaf", "string") + "</case></choice>";

class FlushTest : public ::testing::Test {
protected:
    uint32_t Flush(const std::string &text, uint32_t mode = ZRD_MODE_RPC)
    {
        Document document(text);
        CheckRun run(schema_, mode);
        run->root = document.top()->parent;
        uint32_t status = ZRD_PAS_FlushTreeWithSchema(run, document.top());
        record_ = run.record();
        mode_ = run->mode;
        return status;
    }

    Schema schema_{kBody};
    Record record_;
    uint32_t mode_ = 0;
};

TEST_F(FlushTest, GivesEveryElementItsSchemaNode)
{
    Document document(Data("op", "<a/><c><x/></c><in-one/>"));
    CheckRun run(schema_, ZRD_MODE_RPC);
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    EXPECT_EQ(zr::SchemaOf(document.top()), schema_.Node("/m:op"));
    EXPECT_EQ(zr::SchemaOf(document.Find("a")), schema_.Node("/m:op/input/a"));
    EXPECT_EQ(zr::SchemaOf(document.Find("x")), schema_.Node("/m:op/input/c/x"));
    EXPECT_EQ(zr::SchemaOf(document.Find("in-one")), schema_.Node("/m:op/input/way/one/in-one"));
}

TEST_F(FlushTest, MatchesASubtreeUnderAGivenSchemaNode)
{
    Document document(Data("op", "<c><x/></c><unknown/>"));
    CheckRun run(schema_, ZRD_MODE_RPC);
    run->root = document.top()->parent;
    document.top()->_private = schema_.Node("/m:op");
    EXPECT_EQ(ZRD_PAS_FlushSubTreeWithSchema(run, document.Find("c"), schema_.Node("/m:op")),
              ZR_OK);
    EXPECT_EQ(zr::SchemaOf(document.Find("c")), schema_.Node("/m:op/input/c"));
    EXPECT_EQ(zr::SchemaOf(document.Find("x")), schema_.Node("/m:op/input/c/x"));
    EXPECT_EQ(ZRD_PAS_FlushSubTreeWithSchema(run, document.Find("unknown"), schema_.Node("/m:op")),
              ZR_ERR_INVALID);
    EXPECT_EQ(zr::SchemaOf(document.Find("unknown")), nullptr);
    EXPECT_EQ(run.record().badElement, "unknown");
}

TEST_F(FlushTest, SkipsAnElementThatHasASchemaNode)
{
    Document document(Data("op", "<unknown/>"));
    CheckRun run(schema_, ZRD_MODE_RPC);
    ZrNode *op = schema_.Node("/m:op");
    document.top()->_private = op;
    EXPECT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    document.Find("unknown")->_private = op;
    EXPECT_EQ(ZRD_PAS_FlushSubTreeWithSchema(run, document.Find("unknown"), op), ZR_OK);
    EXPECT_EQ(ZRD_PAS_FlushAllElementChildNodeWithSchema(run, document.top(), op), ZR_OK);
}

TEST_F(FlushTest, RefusesANodeThatIsNoElementAndAnElementWithoutNamespaceWithoutARecord)
{
    Document document("<op/>");
    CheckRun run(schema_, ZRD_MODE_RPC);
    EXPECT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_ERR_INVALID);
    EXPECT_EQ(ZRD_PAS_FlushTreeWithSchema(run, reinterpret_cast<xmlNode *>(document.get())),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRD_PAS_FlushTreeWithSchema(run, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRD_PAS_FlushSubTreeWithSchema(run, document.top(), nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRD_PAS_FlushSubTreeWithSchema(run, nullptr, schema_.Node("/m:op")), ZR_ERR_INVALID);
    EXPECT_EQ(run.record(), Record{});
}

TEST_F(FlushTest, NamesTheNamespaceOfNoModule)
{
    EXPECT_EQ(Flush("<p:op xmlns:p=\"urn:x\"/>"), ZR_ERR_INVALID);
    EXPECT_EQ(record_, Fault(ZR_ERROR_TAG_UNKNOWN_NAMESPACE, "-", "/op",
                             "op has invalid namespace: urn:x.", "op"));
}

TEST_F(FlushTest, FindsNoTopElementForATopLevelChoice)
{
    EXPECT_EQ(Flush(Data("top-choice", "<k-leaf/>")), ZR_ERR_INVALID);
    EXPECT_EQ(record_, Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:top-choice",
                             "Unexpected element: top-choice.", "top-choice"));
}

TEST_F(FlushTest, RefusesElementsBelowTheTopInAnUnknownNamespaceOrNone)
{
    EXPECT_EQ(Flush(Data("op", "<a xmlns=\"urn:x\"/>")), ZR_ERR_INVALID);
    EXPECT_EQ(record_,
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/a", "Unexpected element: a.", "a"));
    EXPECT_EQ(Flush(Data("op", "<c><x xmlns=\"\"/></c>")), ZR_ERR_INVALID);
    EXPECT_EQ(record_,
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/c/x", "Unexpected element: x.", "x"));
}

TEST_F(FlushTest, NamesElementsByTheirLocalNames)
{
    EXPECT_EQ(Flush("<p:op xmlns:p=\"urn:m\"><p:z/></p:op>"), ZR_ERR_INVALID);
    EXPECT_EQ(record_,
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/z", "Unexpected element: z.", "z"));
}

TEST_F(FlushTest, DoesNotFindACaseByItsName)
{
    EXPECT_EQ(Flush(Data("op", "<one/>")), ZR_ERR_INVALID);
    EXPECT_EQ(record_, Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/one",
                             "Unexpected element: one.", "one"));
}

TEST_F(FlushTest, PassesOverWhatIsNoElement)
{
    EXPECT_EQ(Flush(Data("op", "text<!-- c --><?pi x?><![CDATA[z]]><a/>")), ZR_OK);
}

TEST_F(FlushTest, SettlesTheKindOfRunByTheTopElement)
{
    EXPECT_EQ(Flush(Data("op")), ZR_OK);
    EXPECT_EQ(mode_, ZRD_MODE_RPC);
    EXPECT_EQ(Flush(Data("state")), ZR_OK);
    EXPECT_EQ(mode_, ZRD_MODE_RPC | ZRD_MODE_ACTION);
    EXPECT_EQ(Flush(Data("event")), ZR_OK);
    EXPECT_EQ(mode_, ZRD_MODE_RPC | ZRD_MODE_ACTION);
    EXPECT_EQ(Flush(Data("event"), ZRD_MODE_NOTIF), ZR_OK);
    EXPECT_EQ(mode_, ZRD_MODE_NOTIF);
    EXPECT_EQ(Flush(Data("state"), ZRD_MODE_NOTIF), ZR_ERR_INVALID);
    EXPECT_EQ(record_, Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:state",
                             "Unexpected element: state.", "state"));
}

TEST_F(FlushTest, DoesNotCheckValuesInNotifications)
{
    EXPECT_EQ(Flush(Data("event", "<n>no number</n>"), ZRD_MODE_NOTIF), ZR_OK);
    EXPECT_EQ(Flush(Data("state", "<n>no number</n>")), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(record_, Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:state/n",
                             "n has invalid value no number.", "n"));
}

TEST_F(FlushTest, RefusesALeafThatHoldsAnythingButText)
{
    const char *const contents[] = {
        "<b/>",           "<!--c-->", "<?p i?>",          "<![CDATA[4]]>", "<!--c-->4",
        "4<!-- c -->",    "4<b/>",    "4<!-- c -->abc",   "4<x>5</x>6",    "4<?p i?>abc",
        "<![CDATA[4]]>4", "<b/>4",    "4<![CDATA[abc]]>", "4<![CDATA[]]>", "4<!--c--><!--c-->",
    };
    for (const char *content : contents) {
        for (const std::string name : {"a", "ll"}) {
            Record unexpected = Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/" + name,
                                      "Unexpected element: " + name + ".", name);
            if (name == "ll") // an entry shows its value, which is its first text
                unexpected.path += content[0] == '4' ? "[.='4']" : "[.='']";
            std::string element = "<" + name + ">" + content + "</" + name + ">";
            EXPECT_EQ(Flush(Data("op", element)), ZR_ERR_INVALID) << element;
            EXPECT_EQ(record_, unexpected) << element;
        }
        std::string leaf = std::string("<n>") + content + "</n>";
        EXPECT_EQ(Flush(Data("event", leaf), ZRD_MODE_NOTIF), ZR_ERR_INVALID) << leaf;
        EXPECT_EQ(record_, Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:event/n",
                                 "Unexpected element: n.", "n"))
            << leaf;
    }
    for (const char *content : {"", "x", "x&amp;y&#122;", " "})
        EXPECT_EQ(Flush(Data("op", std::string("<a>") + content + "</a>")), ZR_OK) << content;
}

TEST_F(FlushTest, LooksAtTheContentOfALeafAfterAllOtherChecks)
{
    EXPECT_EQ(Flush(Data("op", "<n>x<!--c--></n>")), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(record_,
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/n", "n has invalid value x.", "n"));
    EXPECT_EQ(Flush(Data("op", "<n>4</n><a>x<!--c--></a>")), ZR_ERR_INVALID);
    EXPECT_EQ(record_, Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/a",
                             "Invalid element order between a and n.", "a"));
    EXPECT_EQ(Flush(Data("op", "<in-one/><in-two>x<!--c--></in-two>")), ZR_ERR_INVALID);
    EXPECT_EQ(record_,
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/in-two",
                    "Data for more than one case branch of a choice is present.", "in-two"));
    EXPECT_EQ(Flush(Data("op", "<n>4<!--c--></n>")), ZR_ERR_INVALID);
    EXPECT_EQ(record_,
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/n", "Unexpected element: n.", "n"));
}

TEST_F(FlushTest, ChecksTheValueBeforeTheContentOfALeaf)
{
    EXPECT_EQ(Flush(Data("op", "<n><b/></n>")), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(record_,
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/n", "n has invalid value .", "n"));
}

TEST_F(FlushTest, DoesNotLookBelowAnydataAndAnyxml)
{
    EXPECT_EQ(Flush(Data("op", "<any><a><b xmlns=\"urn:x\"/></a></any><xml>t<a/><a/></xml>")),
              ZR_OK);
}

TEST_F(FlushTest, MatchesChildrenInAnyOrder)
{
    for (const char *content :
         {"<c/><n>1</n><a/>", "<in-one/><c/><a/>", "<xml/><any/><c/><n>2</n>"}) {
        Document document("<event/>");
        EXPECT_EQ(Flush(Data("op", content), 0), ZR_OK) << content;
    }
}

TEST(FlushNames, TakeTheInputsNodeBeforeTheOutputsOfTheSameName)
{
    Schema schema("<rpc name=\"op\"><input>" + Leaf("a", "string") + Leaf("x", "uint8") +
                  "</input><output>" + Leaf("x", "string") + Leaf("only-out", "string") +
                  "</output></rpc>");
    ASSERT_EQ(schema.status, ZR_OK);
    Document document(Data("op", "<only-out/><x>1</x>"));
    CheckRun run(schema, ZRD_MODE_RPC);
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    EXPECT_EQ(zr::SchemaOf(document.Find("x")), schema.Node("/m:op/input/x"));
}

TEST(FlushNamespaces, MatchAugmentedElementsByTheirModule)
{
    Schema schema(Rpc("op", Input(Container("c", Leaf("a", "string") + Leaf("b", "string")))));
    ASSERT_EQ(schema.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                   "<augment target-node=\"/m:op/m:input/m:c\">" +
                                       Leaf("a", "uint8") + Leaf("z", "string") + "</augment>"),
              ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<c><a>x</a><a xmlns=\"urn:n\">1</a><b/></c>")),
              Valid());
    EXPECT_EQ(RpcRecord(schema, Data("op", "<c><a>x</a><a xmlns=\"urn:n\">y</a></c>")),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/c/n:a", "a has invalid value y.", "a"));
    EXPECT_EQ(RpcRecord(schema, Data("op", "<c><z/></c>")),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/c/z", "Unexpected element: z.", "z"));
    EXPECT_EQ(RpcRecord(schema, Data("op", "<c><z xmlns=\"urn:n\"/><b/><a/></c>")),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/c/a",
                    "Invalid element order between a and b.", "a"));
    // Each element may declare the namespace for itself.
    EXPECT_EQ(RpcRecord(schema, Data("op", "<c xmlns=\"urn:m\"><a xmlns=\"urn:m\"/>"
                                           "<b xmlns=\"urn:m\"/></c>")),
              Valid());
}

const std::string kMountBody =
    "<import module=\"ietf-yang-schema-mount\"><prefix value=\"yangmnt\"/></import>" +
    Container("top", Container("mounted",
                               "<yangmnt:mount-point xmlns:yangmnt=\"urn:ietf:params:xml:ns:yang:"
                               "ietf-yang-schema-mount\" label=\"root\"/>") +
                         "<action name=\"act\"/>") +
    Rpc("op", Input(Leaf("a", "string") +
                    Container("mounted", "<yangmnt:mount-point xmlns:yangmnt=\"urn:ietf:params:xml:"
                                         "ns:yang:ietf-yang-schema-mount\" label=\"root\"/>")));

TEST(MountPoint, IsNotLookedInto)
{
    TestContext ctx;
    std::string module = ModuleText("m", kMountBody);
    ASSERT_EQ(ctx.Load(module), ZR_OK);
    CheckRun run(ctx, ZRD_MODE_RPC);
    Document document(Data("top", "<mounted><any xmlns=\"urn:other\"/></mounted>"));
    EXPECT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    EXPECT_EQ(run->mode, ZRD_MODE_RPC | ZRD_MODE_ACTION | ZRD_MODE_MOUNT_POINT);
    EXPECT_EQ(document.Find("any")->_private, nullptr);
}

TEST(MountPoint, EndsTheRunOfActionDataWithSuccess)
{
    TestContext ctx;
    ASSERT_EQ(ctx.Load(ModuleText("m", kMountBody)), ZR_OK);
    EXPECT_EQ(RpcRecord(ctx, Data("top", "<mounted><any xmlns=\"urn:other\"/></mounted>")),
              Valid());
    // Without the mount point the action is missed, and in an rpc the run goes on.
    EXPECT_EQ(RpcRecord(ctx, Data("top")), Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/",
                                                 "Unexpected element: action.", "action"));
    EXPECT_EQ(RpcRecord(ctx, Data("op", "<mounted><z/></mounted><a/>")),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/a",
                    "Invalid element order between a and mounted.", "a"));
}

const std::string kLeaves = Leaf("a", "string") + Leaf("b", "string") + Leaf("c", "string");
const std::string kChoice = "<choice name=\"way\"><case name=\"one\">" + Leaf("one-a", "string") +
                            List("one-list", "k", Leaf("k", "string")) + "</case>" +
                            Leaf("two", "string") + "</choice>";
const std::string kAll = kLeaves + List("l", "k", Leaf("k", "string") + kLeaves) +
                         "<leaf-list name=\"ll\"><type name=\"string\"/></leaf-list>" +
                         Container("box", kLeaves) + kChoice;
const std::string kEverywhere = Rpc("op", Input(kAll)) + Notification("event", kAll) +
                                Container("state", kAll + "<action name=\"act\"><input>" + kAll +
                                                       "</input></action><action name=\"other\"/>");

class StructureTest : public ::testing::Test {
protected:
    Record Rpc(const std::string &content) { return RpcRecord(schema_, Data("op", content)); }
    Record State(const std::string &content) { return RpcRecord(schema_, Data("state", content)); }
    uint32_t Event(const std::string &content)
    {
        return ValidateNotif(schema_, Data("event", content)).status;
    }

    Schema schema_{kEverywhere};
};

// Order

TEST_F(StructureTest, TakesElementsInSchemaOrderWithGaps)
{
    EXPECT_EQ(Rpc("<a/><c/><l><k>1</k><b/></l><l><k>2</k></l><ll/><ll/><box/><one-a/>"), Valid());
}

TEST_F(StructureTest, RefusesAnotherOrderInAnRpcAndTakesItInANotification)
{
    EXPECT_EQ(Rpc("<b/><a/>"), Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/a",
                                     "Invalid element order between a and b.", "a"));
    EXPECT_EQ(Event("<b/><a/>"), ZR_OK);
}

TEST_F(StructureTest, ComparesWithThePrecedingSiblingAlone)
{
    EXPECT_EQ(Rpc("<l><k/></l><c/>"), Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/c",
                                            "Invalid element order between c and l.", "c"));
    EXPECT_EQ(Rpc("<l><k/></l><ll/><l><k/></l>"),
              // Its keys are not matched yet, so the path does not show them.
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/l",
                    "Invalid element order between l and ll.", "l"));
}

TEST_F(StructureTest, ChecksTheOrderBelowContainersAndListEntriesToo)
{
    EXPECT_EQ(Rpc("<box><c/><b/></box>"), Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/box/b",
                                                "Invalid element order between b and c.", "b"));
    EXPECT_EQ(Rpc("<l><a/><k>1</k></l>"),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/l[k='1']/k",
                    "Invalid element order between k and a.", "k"));
}

TEST_F(StructureTest, ChecksTheOrderThroughCases)
{
    EXPECT_EQ(Rpc("<one-a/><box/>"), Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/box",
                                           "Invalid element order between box and one-a.", "box"));
    EXPECT_EQ(Rpc("<one-list><k>1</k></one-list><one-a/>"),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/one-a",
                    "Invalid element order between one-a and one-list.", "one-a"));
}

TEST_F(StructureTest, IsNotMisledByBlanksAndCommentsBetweenElements)
{
    EXPECT_EQ(Rpc("\n  <b/>\n  <!-- c -->\n  <a/>\n"),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/a",
                    "Invalid element order between a and b.", "a"));
}

TEST_F(StructureTest, ChecksOrderAndCasesInsideTheActionOnly)
{
    EXPECT_EQ(State("<b/><a/><two/><one-a/><act/>"), Valid());
    EXPECT_EQ(State("<act><b/><a/></act>"),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:state/act/a",
                    "Invalid element order between a and b.", "a"));
    EXPECT_EQ(State("<act><one-a/><two/></act>"),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:state/act/two",
                    "Data for more than one case branch of a choice is present.", "two"));
    // The action element is behind: what follows is data around it again.
    EXPECT_EQ(State("<act/><box><b/><a/></box>"), Valid());
}

TEST_F(StructureTest, DoesNotCheckTheOrderOfDifferentModules)
{
    ASSERT_EQ(schema_.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                    "<augment target-node=\"/m:op/m:input\">" +
                                        Leaf("x", "string") + "</augment>"),
              ZR_OK);
    EXPECT_EQ(Rpc("<x xmlns=\"urn:n\"/><a/>"), Valid());
    // The element of the other module parts the two.
    EXPECT_EQ(Rpc("<b/><x xmlns=\"urn:n\"/><a/>"), Valid());
}

TEST_F(StructureTest, PassesOverDisabledNodesInTheOrder)
{
    Schema schema("<feature name=\"f\"/>" +
                  zrtest::Rpc("op", Input(Leaf("a", "string") +
                                          Leaf("b", "string", "<if-feature name=\"f\"/>") +
                                          Leaf("c", "string"))));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<b/><a/>")), Valid());
    EXPECT_EQ(RpcRecord(schema, Data("op", "<c/><a/>")),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/a",
                    "Invalid element order between a and c.", "a"));
    ZR_MOD_EnableFeature(schema.Module("m"), "f");
    EXPECT_EQ(RpcRecord(schema, Data("op", "<b/><a/>")),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op/a",
                    "Invalid element order between a and b.", "a"));
}

// Instances

TEST_F(StructureTest, RefusesTheSecondInstanceOfASingleNode)
{
    EXPECT_EQ(Rpc("<a/><a/>"),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/a", "Unexpected element: a.", "a"));
    EXPECT_EQ(Rpc("<box/><box/>"), Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/box",
                                         "Unexpected element: box.", "box"));
    EXPECT_EQ(Rpc("<a/><b/><a/>"),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/a", "Unexpected element: a.", "a"));
    EXPECT_EQ(Rpc("<one-a/><one-a/>"), Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/one-a",
                                             "Unexpected element: one-a.", "one-a"));
    EXPECT_EQ(Event("<a/><a/>"), ZR_ERR_INVALID);
}

TEST_F(StructureTest, TakesManyEntriesOfListsAndLeafLists)
{
    EXPECT_EQ(Rpc("<l><k/></l><l><k/></l><ll/><ll/><one-list><k/></one-list>"
                  "<one-list><k/></one-list>"),
              Valid());
}

TEST_F(StructureTest, DoesNotCompareTopElements)
{
    Document document(Data("op"));
    xmlNode *second = xmlCopyNode(document.top(), 1);
    xmlAddSibling(document.top(), second);
    CheckRun run(schema_, ZRD_MODE_RPC);
    run->root = document.top()->parent;
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), ZR_OK);
    ASSERT_EQ(ZRD_PAS_FlushTreeWithSchema(run, second), ZR_OK);
    EXPECT_EQ(ZRD_PAS_CheckMultipleInstanceNode(run, second), ZR_OK);
}

TEST_F(StructureTest, ComparesWithAllSiblingsWhenAskedAlone)
{
    Document document(Data("op", "<a/><b/><a/>"));
    CheckRun run(schema_, ZRD_MODE_RPC);
    run->root = document.top()->parent;
    ZrNode *a = schema_.Node("/m:op/input/a");
    document.top()->children->_private = a;
    document.top()->last->_private = a;
    EXPECT_EQ(ZRD_PAS_CheckMultipleInstanceNode(run, document.top()->children), ZR_ERR_INVALID);
    // No parent schema node, so that the path shows the module of each step's namespace.
    EXPECT_EQ(run.record(),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/a", "Unexpected element: a.", "a"));
}

// Cases

TEST_F(StructureTest, RefusesDataOfTwoCasesInAnRpcAndTakesItInANotification)
{
    EXPECT_EQ(Rpc("<one-a/><two/>"),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/two",
                    "Data for more than one case branch of a choice is present.", "two"));
    EXPECT_EQ(Rpc("<one-list><k/></one-list><two/>"),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/two",
                    "Data for more than one case branch of a choice is present.", "two"));
    EXPECT_EQ(Event("<one-a/><two/>"), ZR_OK);
}

TEST_F(StructureTest, TakesSeveralNodesOfOneCase)
{
    EXPECT_EQ(Rpc("<one-a/><one-list><k/></one-list>"), Valid());
    EXPECT_EQ(Rpc("<two/>"), Valid());
}

TEST_F(StructureTest, ComparesCasesWithEverySiblingWhenAskedAlone)
{
    Document document(Data("op", "<two/><one-a/><one-list/>"));
    CheckRun run(schema_, ZRD_MODE_RPC);
    run->root = document.top()->parent;
    document.top()->_private = schema_.Node("/m:op");
    document.Find("two")->_private = schema_.Node("/m:op/input/way/two");
    document.Find("one-a")->_private = schema_.Node("/m:op/input/way/one/one-a");
    document.Find("one-list")->_private = schema_.Node("/m:op/input/way/one/one-list");
    EXPECT_EQ(ZRD_PAS_CheckMultiCases(run, document.Find("two")), ZR_OK);
    EXPECT_EQ(ZRD_PAS_CheckMultiCases(run, document.Find("one-list")), ZR_ERR_INVALID);
    EXPECT_EQ(run.record(),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/one-list",
                    "Data for more than one case branch of a choice is present.", "one-list"));
}

TEST_F(StructureTest, TellsTheChoicesOfOneLevelApart)
{
    Schema schema(zrtest::Rpc(
        "op", Input("<choice name=\"x\"><case name=\"x1\">" + Leaf("x1a", "string") +
                    "<choice name=\"y\"><case name=\"y1\">" + Leaf("y1a", "string") +
                    "</case><case name=\"y2\">" + Leaf("y2a", "string") + "</case></choice>" +
                    Leaf("x1b", "string") + "</case><case name=\"x2\">" + Leaf("x2a", "string") +
                    "</case></choice>")));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<x1a/><y1a/><x1b/>")), Valid());
    const char *kMessage = "Data for more than one case branch of a choice is present.";
    EXPECT_EQ(RpcRecord(schema, Data("op", "<y1a/><y2a/>")),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/y2a", kMessage, "y2a"));
    EXPECT_EQ(RpcRecord(schema, Data("op", "<x1a/><y1a/><x2a/>")),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/x2a", kMessage, "x2a"));
    // The innermost choice of each node counts.
    EXPECT_EQ(RpcRecord(schema, Data("op", "<y1a/><x2a/>")), Valid());
}

// Actions

TEST_F(StructureTest, TakesExactlyOneAction)
{
    EXPECT_EQ(State("<a/><act><a/></act>"), Valid());
    EXPECT_EQ(State("<a/>"), Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/",
                                   "Unexpected element: action.", "action"));
    EXPECT_EQ(State("<act/><other/>"), Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:state/other",
                                             "Unexpected element: other.", "other"));
}

TEST_F(StructureTest, RefusesAnActionOutsideOfActionDataWithoutARecord)
{
    Document document(Data("state", "<act/>"));
    CheckRun run(schema_, ZRD_MODE_RPC);
    document.Find("act")->_private = schema_.Node("/m:state/act");
    EXPECT_EQ(ZRD_PAS_CheckActionNodeRepeat(run, document.Find("act")), ZR_ERR_INVALID);
    EXPECT_EQ(run.record(), Record{});
    run->mode |= ZRD_MODE_ACTION;
    EXPECT_EQ(ZRD_PAS_CheckActionNodeExist(run), ZR_ERR_INVALID);
    EXPECT_EQ(run.record(), Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/",
                                  "Unexpected element: action.", "action"));
    EXPECT_EQ(ZRD_PAS_CheckActionNodeRepeat(run, document.Find("act")), ZR_OK);
    EXPECT_EQ(run->actionElement, document.Find("act"));
    EXPECT_EQ(ZRD_PAS_CheckActionNodeExist(run), ZR_OK);
}

// Values

TEST(InvalidValue, IsShownUpTo256CharactersAndCutBeyond)
{
    Schema schema(Rpc("op", Input("<leaf name=\"v\"><type name=\"string\"><length value=\"0..10\"/>"
                                  "</type></leaf>")));
    ASSERT_EQ(schema.status, ZR_OK);
    for (size_t length : {11u, 256u, 257u, 300u}) {
        std::string value(length, 'y');
        std::string shown = length <= 256 ? value : std::string(253, 'y') + "...";
        EXPECT_EQ(RpcRecord(schema, Data("op", "<v>" + value + "</v>")),
                  Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/v",
                        "v has invalid value " + shown + ".", "v"))
            << length;
    }
}

TEST(InvalidValue, IsTheStatusOfItsType)
{
    Schema schema(Rpc("op", Input(Leaf("n", "uint8") + Leaf("flag", "boolean"))));
    struct {
        const char *content;
        uint32_t status;
    } rows[] = {{"<n>256</n>", ZR_ERR_VALUE_RANGE},
                {"<n/>", ZR_ERR_VALUE_RANGE},
                {"<flag>yes</flag>", ZR_ERR_VALUE_BOOLEAN}};
    for (const auto &row : rows) {
        Document document(Data("op", row.content));
        CheckRun run(schema, ZRD_MODE_RPC);
        EXPECT_EQ(ZRD_PAS_FlushTreeWithSchema(run, document.top()), row.status) << row.content;
    }
}

} // namespace
