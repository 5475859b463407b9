// The public entry points: input of both kinds, bad input, what is left behind.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <sys/stat.h>

#include "data/element.h"
#include "data/phases.h"
#include "data/schema.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;

const std::string kInput = Leaf("a", "string") + Leaf("d", "string", Default("x")) +
                           Container("c", Leaf("n", "uint8")) + "<anydata name=\"any\"/>";
const std::string kBody =
    Rpc("op", Input(kInput)) + Notification("event", kInput) + "<rpc name=\"bare\"/>" +
    Notification("strict",
                 Must("not(no)") + Leaf("must-be", "string", Mandatory()) + Leaf("no", "string"));

class EntryTest : public ::testing::Test {
protected:
    Schema schema_{kBody};
};

TEST_F(EntryTest, RefusesNullWithTheGeneralRecord)
{
    std::string text = Data("op");
    Document document(text);
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(nullptr, ZR_VALUE_STRING, text.data(), nullptr,
                                                    nullptr)),
              General());
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(nullptr, ZR_VALUE_XML, document.top(), nullptr,
                                                    nullptr)),
              General());
    for (uint32_t kind : {1u, 2u})
        EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, kind, nullptr, nullptr, nullptr)),
                  General());
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTree(nullptr, text.c_str(), nullptr, nullptr),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTree(schema_, nullptr, nullptr, nullptr), ZR_ERR_INVALID);
}

TEST_F(EntryTest, TakesEveryInputKindButTwoForText)
{
    std::string text = Data("op");
    for (uint32_t kind : {0u, 1u, 3u, 99u})
        EXPECT_EQ(ZR_CTX_ValidateRpcDataTree(schema_, kind, text.data(), nullptr, nullptr), nullptr)
            << kind;
}

TEST_F(EntryTest, NeedsNoCallbacks)
{
    std::string text = Data("op");
    Document document(text);
    EXPECT_EQ(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, document.top(), nullptr, nullptr),
              nullptr);
    EXPECT_NE(document.Dump().find("<d>x</d>"), std::string::npos);
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTree(schema_, Data("event").c_str(), nullptr, nullptr),
              ZR_OK);
}

TEST_F(EntryTest, TakesATreeWithoutADocumentNode)
{
    Document document(Data("op", "<c><n>300</n></c>"));
    xmlNode *top = document.top();
    xmlUnlinkNode(top);
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, top, nullptr, nullptr)),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/c/n", "n has invalid value 300.", "n"));
    xmlFreeNode(top);
}

TEST_F(EntryTest, TakesASubtreeOfALargerDocument)
{
    Document document("<rpc xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\" message-id=\"1\">" +
                      Data("op", "<c><n>300</n></c>") + "</rpc>");
    xmlNode *op = document.Find("op");
    document.top()->_private = op; // the application's own
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, op, nullptr, nullptr)),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/c/n", "n has invalid value 300.", "n"));
    EXPECT_EQ(document.top()->_private, op);
}

TEST_F(EntryTest, RefusesATreeThatIsNoElement)
{
    Document document(Data("op", "text"));
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, document.get(), nullptr,
                                                    nullptr)),
              General());
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, document.top()->children,
                                                    nullptr, nullptr)),
              General());
}

TEST_F(EntryTest, IgnoresPrivatePointersThatStandInTheTree)
{
    Document document(Data("op", "<c><n>300</n></c>"));
    int own = 0;
    document.top()->_private = &own;
    document.Find("n")->_private = &own;
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, document.top(), nullptr,
                                                    nullptr)),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/c/n", "n has invalid value 300.", "n"));
    EXPECT_EQ(document.top()->_private, nullptr);
    EXPECT_EQ(document.Find("n")->_private, nullptr);
}

TEST_F(EntryTest, TakesAnRpcWithoutInput)
{
    EXPECT_EQ(RpcRecord(schema_, Data("bare")), Valid());
    EXPECT_EQ(RpcRecord(schema_, Data("bare", "<a/>")),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:bare/a", "Unexpected element: a.", "a"));
}

TEST_F(EntryTest, RefusesTextThatIsNoXmlWithTheGeneralRecordAndWithoutAWord)
{
    std::string many;
    for (int i = 0; i < 300; ++i)
        many += "<a>";
    const std::string rows[] = {
        "",
        " ",
        "text",
        "<",
        "<op xmlns=\"urn:m\">",
        "<op xmlns=\"urn:m\"></oq>",
        "<op xmlns=\"urn:m\"/><op xmlns=\"urn:m\"/>",
        "<op xmlns=\"urn:m\">\xff\xfe</op>",
        "<op xmlns=\"urn:m\">\xc3\x28</op>",
        "<op xmlns=\"urn:m\"><a>&undefined;</a></op>",
        "<op xmlns=\"urn:m\" xmlns=\"urn:m\"/>",
        "<op xmlns=\"urn:m\"><a>&#0;</a></op>",
        many,
    };
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    for (const std::string &text : rows) {
        EXPECT_EQ(RpcRecord(schema_, text), General()) << text;
        EXPECT_EQ(ValidateNotif(schema_, text).status, ZR_ERR_INVALID) << text;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(EntryTest, TakesUndeclaredPrefixesForElementsWithoutANamespace)
{
    testing::internal::CaptureStderr();
    std::string text = "<q:op><a/></q:op>";
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(), nullptr,
                                                    nullptr)),
              General());
    text = Data("op", "<q:a/>");
    Record record = TakeRecord(
        ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(), nullptr, nullptr));
    EXPECT_EQ(record.tag, ZR_ERROR_TAG_UNKNOWN_ELEMENT);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(EntryTest, RefusesAnEntityBomb)
{
    std::string bomb = "<!DOCTYPE op [<!ENTITY a \"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\">";
    for (char name = 'b'; name <= 'z'; ++name) {
        std::string entity = std::string("&") + static_cast<char>(name - 1) + ";";
        bomb += std::string("<!ENTITY ") + name + " \"";
        for (int i = 0; i < 20; ++i)
            bomb += entity;
        bomb += "\">";
    }
    bomb += "]><op xmlns=\"urn:m\"><a>&z;</a></op>";
    testing::internal::CaptureStderr();
    Record record = TakeRecord(
        ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, bomb.data(), nullptr, nullptr));
    EXPECT_EQ(record, General());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(EntryTest, LoadsNoExternalEntity)
{
    TempDir dir;
    std::string path = dir.Write("entity.txt", "secret");
    for (const char *content : {"<a>&e;</a>", "<a>x&e;</a>", "&e;"}) {
        std::string text =
            "<!DOCTYPE op [<!ENTITY e SYSTEM \"file://" + path + "\">]>" + Data("op", content);
        NotifOutcome outcome =
            ValidateNotif(schema_, "<!DOCTYPE event [<!ENTITY e SYSTEM \"file://" + path + "\">]>" +
                                       Data("event", content));
        EXPECT_EQ(outcome.document.find("secret"), std::string::npos);
        ZR_FreeErrNode(
            ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(), nullptr, nullptr));
    }
}

TEST_F(EntryTest, RefusesATextWithADocumentTypeLikeOneThatIsNotWellFormed)
{
    for (const char *doctype : {"<!DOCTYPE op>", "<!DOCTYPE op [<!ENTITY e \"x\">]>",
                                "<!DOCTYPE op SYSTEM \"op.dtd\">"}) {
        std::string text = doctype + Data("op", "<a>x</a>");
        EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(),
                                                        nullptr, nullptr)),
                  General());
        EXPECT_EQ(ValidateNotif(schema_, doctype + Data("event", "<a>x</a>")).status,
                  ZR_ERR_INVALID);
    }
}

TEST_F(EntryTest, TakesAnEntityReferenceInATreeForNoValue)
{
    std::string doctype = "<!DOCTYPE op [<!ENTITY e \"x\">]>";
    Document leaf(doctype + Data("op", "<a>&e;</a>"));
    EXPECT_EQ(
        TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, leaf.top(), nullptr, nullptr)),
        Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/a", "Unexpected element: a.", "a"));
    Document any(doctype + Data("op", "&e;<any>&e;</any>"));
    EXPECT_EQ(
        TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, any.top(), nullptr, nullptr)),
        Valid());
}

TEST_F(EntryTest, OpensNothingWhateverTheDefaultsOfTheProcessAre)
{
    TempDir dir;
    std::string fifo = dir.path() + "/fifo"; // whoever opens it waits for ever
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string doctypes[] = {
        "<!DOCTYPE op SYSTEM \"file://" + fifo + "\">",
        "<!DOCTYPE op [<!ENTITY e SYSTEM \"file://" + fifo + "\">]>",
        "<!DOCTYPE op [<!ENTITY % e SYSTEM \"file://" + fifo + "\"> %e;]>",
        "<?oasis-xml-catalog catalog=\"file://" + fifo + "\"?><!DOCTYPE op PUBLIC \"p\" \"s\">",
    };
    int substitute = xmlSubstituteEntitiesDefault(1);
    xmlLoadExtDtdDefaultValue = 1;
    xmlDoValidityCheckingDefaultValue = 1;
    for (const std::string &doctype : doctypes)
        for (const char *content : {"", "<a>&e;</a>", "&e;"}) {
            std::string text = doctype + Data("op", content);
            EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(),
                                                            nullptr, nullptr)),
                      General());
            EXPECT_EQ(ValidateNotif(schema_, doctype + Data("event", content)).status,
                      ZR_ERR_INVALID);
            TestContext ctx;
            EXPECT_EQ(ctx.Load(doctype + ModuleText("x", "")), ZR_ERR_INVALID);
            dir.Write("x.yin", doctype + ModuleText("x", ""));
            ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
            EXPECT_EQ(ZR_CTX_LoadModule(ctx, "x"), ZR_ERR_INVALID);
        }
    std::string text = "<?oasis-xml-catalog catalog=\"file://" + fifo + "\"?>" + Data("op");
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(), nullptr,
                                                    nullptr)),
              Valid());
    xmlSubstituteEntitiesDefault(substitute);
    xmlLoadExtDtdDefaultValue = 0;
    xmlDoValidityCheckingDefaultValue = 0;
}

TEST_F(EntryTest, RefusesMoreThan1024AttributesInOneTag)
{
    auto withAttributes = [](int count) {
        std::string attributes;
        for (int i = 0; i < count; ++i)
            attributes += " x" + std::to_string(i) + "=\"\"";
        return "<any><x" + attributes + "/></any>";
    };
    std::string text = Data("op", withAttributes(1024));
    EXPECT_EQ(RpcRecord(schema_, text), Valid());
    text = Data("op", withAttributes(1025));
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(), nullptr,
                                                    nullptr)),
              General());
    EXPECT_EQ(ValidateNotif(schema_, Data("event", withAttributes(1024))).status, ZR_OK);
    EXPECT_EQ(ValidateNotif(schema_, Data("event", withAttributes(1025))).status, ZR_ERR_INVALID);
}

TEST_F(EntryTest, TakesInstructionsCommentsAndCdataBetweenElements)
{
    EXPECT_EQ(RpcRecord(schema_,
                        "<?pi?><!-- c --><op xmlns=\"urn:m\"><!-- c --><?pi?><a>x</a>"
                        "<![CDATA[ text ]]><c><?pi?><n>1</n><!-- c --></c></op><!-- c -->"),
              Valid());
}

TEST_F(EntryTest, TakesADocumentOf100Megabytes)
{
    std::string content;
    content.reserve(105000000);
    for (int i = 0; i < 20; ++i)
        content += "<x>" + std::string(5000000, 'x') + "</x>";
    std::string text = Data("op", "<any>" + content + "</any>");
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(), nullptr,
                                                    nullptr)),
              Valid());
    text = Data("op", "<any>" + content + "</any><z/>");
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(), nullptr,
                                                    nullptr)),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/z", "Unexpected element: z.", "z"));
}

TEST_F(EntryTest, SwitchesKeepBlanksOffAndLeavesItSo)
{
    xmlKeepBlanksDefault(1);
    std::string text = Data("op");
    EXPECT_EQ(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_STRING, text.data(), nullptr, nullptr),
              nullptr);
    EXPECT_EQ(xmlKeepBlanksDefault(1), 0);
    EXPECT_EQ(ValidateNotif(schema_, Data("event")).status, ZR_OK);
    EXPECT_EQ(xmlKeepBlanksDefault(1), 0);
    Document document(text); // a caller's tree needs no parsing
    EXPECT_EQ(ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, document.top(), nullptr, nullptr),
              nullptr);
    EXPECT_EQ(xmlKeepBlanksDefault(1), 1);
}

// Notifications

TEST_F(EntryTest, HandsTheNotificationOutAsFormattedUtf8)
{
    NotifOutcome outcome =
        ValidateNotif(schema_, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
                               "<event xmlns=\"urn:m\"><a>\xe4</a>  <c>\n<n>1</n></c></event>");
    EXPECT_EQ(outcome.status, ZR_OK);
    EXPECT_EQ(outcome.document, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<event xmlns=\"urn:m\">\n  <a>\xc3\xa4</a>\n  <c>\n"
                                "    <n>1</n>\n  </c>\n</event>\n");
}

TEST_F(EntryTest, GivesTheCallbacksResultForANotification)
{
    auto callback = [](const char *, void *userData) { return *static_cast<uint32_t *>(userData); };
    uint32_t result = 4711;
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTree(schema_, Data("event").c_str(), callback, &result),
              4711u);
    EXPECT_EQ(
        ZR_CTX_ValidateNotifDataTree(schema_, Data("event", "<z/>").c_str(), callback, &result),
        ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTree(schema_, Data("op").c_str(), callback, &result),
              ZR_ERR_INVALID);
}

TEST_F(EntryTest, DoesNotCheckValuesOfANotification)
{
    EXPECT_EQ(ValidateNotif(schema_, Data("event", "<c><n>no number</n></c>")).status, ZR_OK);
}

// With a record, and completed

uint32_t KeepDocument(const char *text, void *kept)
{
    *static_cast<std::string *>(kept) = text;
    return 4711;
}

// Status, document and record of one of the functions that give all three.
struct Result {
    uint32_t status;
    std::string document;
    Record record;
};

using TextFunc = uint32_t (*)(ZrCtx *ctx, const char *xmlText, ZrDocumentFunc callback,
                              void *userData, ZrdErrNode **errorOut);

Result RunOnText(TextFunc run, ZrCtx *ctx, const std::string &text)
{
    ZrdErrNode *error = reinterpret_cast<ZrdErrNode *>(1); // whatever stood there
    Result result = {};
    result.status = run(ctx, text.c_str(), KeepDocument, &result.document, &error);
    result.record = TakeRecord(error);
    return result;
}

TEST_F(EntryTest, TellsWhyANotificationIsRefused)
{
    auto run = ZR_CTX_ValidateNotifDataTreeWithError;
    struct {
        std::string text;
        Record record;
    } rows[] = {
        {Data("event", "<z/>"),
         Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:event/z", "Unexpected element: z.", "z")},
        {Data("event", "<a/><c><n>4<!-- c -->abc</n></c>"),
         Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:event/c/n", "Unexpected element: n.", "n")},
        {Data("event", "<a/><a/>"),
         Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:event/a", "Unexpected element: a.", "a")},
        {Data("op"),
         Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op", "Unexpected element: op.", "op")},
        {"<event xmlns=\"urn:x\"/>", Fault(ZR_ERROR_TAG_UNKNOWN_NAMESPACE, "-", "/event",
                                           "event has invalid namespace: urn:x.", "event")},
        {Data("strict"), Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:strict",
                               "Missing element: must-be.", "must-be")},
        {Data("strict", "<must-be/><no/>"), General()}, // its own must is false
        {"<event", General()},
        {"", General()},
    };
    for (const auto &row : rows) {
        Result result = RunOnText(run, schema_, row.text);
        EXPECT_EQ(result.status, ZR_ERR_INVALID) << row.text;
        EXPECT_EQ(result.record, row.record) << row.text;
        EXPECT_EQ(result.document, "") << row.text;
        EXPECT_EQ(ValidateNotif(schema_, row.text).status, ZR_ERR_INVALID) << row.text;
    }
}

TEST_F(EntryTest, HandsOutAValidNotificationWithoutARecord)
{
    std::string text = Data("event", "<a>x</a><c><n>no number</n></c>");
    Result result = RunOnText(ZR_CTX_ValidateNotifDataTreeWithError, schema_, text);
    EXPECT_EQ(result.status, 4711u);
    EXPECT_EQ(result.record, Valid());
    EXPECT_EQ(result.document, ValidateNotif(schema_, text).document);
    EXPECT_NE(result.document, "");
}

TEST_F(EntryTest, HandsOutTheCompletedRequest)
{
    Result result =
        RunOnText(ZR_CTX_CompleteRpcDataTree, schema_, Data("op", "<a>x</a>\n<c> <n>1</n></c>"));
    EXPECT_EQ(result.status, 4711u);
    EXPECT_EQ(result.record, Valid());
    EXPECT_EQ(result.document, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                               "<op xmlns=\"urn:m\">\n  <a>x</a>\n  <d>x</d>\n  <c>\n"
                               "    <n>1</n>\n  </c>\n</op>\n");
    result = RunOnText(ZR_CTX_CompleteRpcDataTree, schema_,
                       std::string(255, '\n') + Data("op", "<d>y</d>")); // a line like the mark's
    EXPECT_EQ(result.status, 4711u);
    EXPECT_NE(result.document.find("<d>y</d>\n</op>"), std::string::npos) << result.document;
}

TEST(CompletedText, HoldsDefaultsInTheSchemasOrderAndIsValidAgain)
{
    Schema schema(Rpc(
        "op",
        Input(Leaf("d1", "string", Default("1")) +
              "<choice name=\"way\"><default value=\"road\"/><case name=\"road\">" +
              Leaf("d2", "string", Default("2")) + "</case></choice>" + Leaf("a", "string") +
              Container("c", Leaf("d3", "string", Default("3")) + Leaf("x", "string")) +
              List("l", "k",
                   Leaf("k", "string") + Leaf("d4", "string", Default("4")) + Leaf("y", "string")) +
              Container("e", Leaf("d5", "string", Default("5"))) + Leaf("z", "string"))));
    ASSERT_EQ(schema.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                   "<augment target-node=\"/m:op/m:input\">" +
                                       Leaf("d6", "string", Default("6")) + Leaf("w", "string") +
                                       "</augment>"),
              ZR_OK);
    Result result = RunOnText(ZR_CTX_CompleteRpcDataTree, schema,
                              Data("op", "<w xmlns=\"urn:n\"/><a/><c><!--b--><x/></c>"
                                         "<l><k/><y/></l><l><k/></l><z/>"));
    EXPECT_EQ(result.record, Valid());
    Document document(result.document);
    std::string names;
    for (xmlNode *node = document.top(); node != nullptr;
         node = zr::NextElement(document.top(), node))
        names += reinterpret_cast<const char *>(node->name) + std::string(" ");
    EXPECT_EQ(names, "op d6 w d1 d2 a c d3 x l k d4 y l k d4 e d5 z ");
    Result again = RunOnText(ZR_CTX_CompleteRpcDataTree, schema, result.document);
    EXPECT_EQ(again.record, Valid());
    EXPECT_EQ(again.document, result.document);
}

TEST(CompletedText, LeavesWhatStandsBelowAMountPointAlone)
{
    Schema schema(
        "<import module=\"ietf-yang-schema-mount\"><prefix value=\"yangmnt\"/></import>" +
        Rpc("op", Input(Container("mounted",
                                  Leaf("d", "string", Default("x")) +
                                      "<yangmnt:mount-point xmlns:yangmnt=\"urn:ietf:params:xml:"
                                      "ns:yang:ietf-yang-schema-mount\" label=\"root\"/>"))));
    ASSERT_EQ(schema.status, ZR_OK);
    Result result = RunOnText(ZR_CTX_CompleteRpcDataTree, schema,
                              Data("op", "<mounted><any xmlns=\"urn:any\"/></mounted>"));
    EXPECT_EQ(result.record, Valid());
    EXPECT_NE(result.document.find("<any xmlns=\"urn:any\"/>\n    <d>x</d>"), std::string::npos)
        << result.document;
}

TEST(CompletedText, OfAnActionIsCompletedInsideTheAction)
{
    std::string d = Leaf("d", "string", Default("x"));
    Schema schema(Container("state", d + "<action name=\"act\"><input>" + d + Leaf("a", "string") +
                                         "</input></action>"));
    ASSERT_EQ(schema.status, ZR_OK);
    Result result =
        RunOnText(ZR_CTX_CompleteRpcDataTree, schema, Data("state", "<act><a>1</a></act>"));
    EXPECT_EQ(result.document, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                               "<state xmlns=\"urn:m\">\n  <act>\n    <d>x</d>\n"
                               "    <a>1</a>\n  </act>\n</state>\n");
}

TEST_F(EntryTest, HandsOutNothingOfARequestThatIsRefused)
{
    for (const std::string &text : {Data("op", "<c><n>300</n></c>"), Data("op", "<z/>"),
                                    Data("event"), std::string("<op"), std::string()}) {
        Result result = RunOnText(ZR_CTX_CompleteRpcDataTree, schema_, text);
        EXPECT_EQ(result.status, ZR_ERR_INVALID) << text;
        EXPECT_EQ(result.record, RpcRecord(schema_, text)) << text;
        EXPECT_NE(result.record, Valid()) << text;
        EXPECT_EQ(result.document, "") << text;
    }
}

TEST_F(EntryTest, GivesStatusAndRecordForNull)
{
    for (TextFunc run : {ZR_CTX_ValidateNotifDataTreeWithError, ZR_CTX_CompleteRpcDataTree}) {
        ZrdErrNode *error = nullptr;
        EXPECT_EQ(run(nullptr, Data("op").c_str(), nullptr, nullptr, &error), ZR_ERR_INVALID);
        EXPECT_EQ(TakeRecord(error), General());
        error = nullptr;
        EXPECT_EQ(run(schema_, nullptr, nullptr, nullptr, &error), ZR_ERR_INVALID);
        EXPECT_EQ(TakeRecord(error), General());
        EXPECT_EQ(run(schema_, nullptr, nullptr, nullptr, nullptr), ZR_ERR_INVALID);
        EXPECT_EQ(run(schema_, "<op", nullptr, nullptr, nullptr), ZR_ERR_INVALID);
    }
    EXPECT_EQ(ZR_CTX_CompleteRpcDataTree(schema_, Data("op").c_str(), nullptr, nullptr, nullptr),
              ZR_OK);
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTreeWithError(schema_, Data("event").c_str(), nullptr,
                                                    nullptr, nullptr),
              ZR_OK);
}

} // namespace
