// What stands around the operation in the caller's tree: elements, nodes and private pointers of
// the application's. None of it is followed, read or changed.
#include <gtest/gtest.h>
#include <libxml/parser.h>

#include "data/schema.h"
#include "support/run.h"

namespace {

using namespace zrtest;

// To read what it points at would end the test.
void *const kForeign = reinterpret_cast<void *>(8);

const std::string kMode = Leaf("mode", "string");

std::string Op(const std::string &content)
{
    return Data("op", content);
}

// The operations <op> of a tree, each with the node above it and everything beside it made foreign.
class ForeignTree {
public:
    explicit ForeignTree(const std::string &text) : document_(text) {}

    xmlNode *Child(int index) const
    {
        xmlNode *node = document_.top()->children;
        while (index-- > 0)
            node = node->next;
        return node;
    }
    // Validates one child of the top element; everything outside it must stay as it is.
    Record Validate(ZrCtx *ctx, int index)
    {
        Mark(document_.top(), Child(index), kForeign);
        Record record =
            TakeRecord(ZR_CTX_ValidateRpcDataTree(ctx, 2, Child(index), nullptr, nullptr));
        EXPECT_EQ(CountMarked(document_.top(), Child(index)), marked_);
        EXPECT_EQ(document_.get()->_private, kForeign);
        return record;
    }

private:
    template <typename Visit> static void Walk(xmlNode *node, const xmlNode *without, Visit visit)
    {
        for (; node != nullptr; node = node->next) {
            if (node == without)
                continue;
            visit(node);
            if (node->type == XML_ELEMENT_NODE)
                Walk(node->children, without, visit);
        }
    }
    void Mark(xmlNode *top, const xmlNode *without, void *pointer)
    {
        marked_ = 0;
        document_.get()->_private = pointer;
        Walk(top, without, [&](xmlNode *node) {
            node->_private = pointer;
            ++marked_;
        });
    }
    static int CountMarked(xmlNode *top, const xmlNode *without)
    {
        int count = 0;
        Walk(top, without, [&](const xmlNode *node) { count += node->_private == kForeign; });
        return count;
    }

    Document document_;
    int marked_ = 0;
};

std::string WithMust(const std::string &condition)
{
    return Rpc("op", kMode + Leaf("a", "string", Must(condition)));
}

struct Row {
    const char *condition;
    bool holds;
};

const Row kRows[] = {
    {"/op/mode = 'on'", true},
    {"/m:op/m:mode = 'on'", true},
    {"../../op/mode = 'on'", false}, // ".." does not leave the operation
    {"../../mode = 'on'", true},
    {"/other", false},
    {"/other/mode = 'off'", false},
    {"/comment", false},
    {"/text", false},
    {"/target", false}, // a processing instruction
    {"/", true},
    {"/ = ''", true},
    {"/. = ''", true},
    {"/ = 'text of the application'", false},
    {"/..", false},
    {"/../rpc", false},
    {"/../../rpc/other", false},
    {"not(/../rpc/op)", true},
};

TEST(ForeignData, IsNotSeenByTheConditionsOfARequest)
{
    const std::string around = "<mode>off</mode><x/></other>";
    for (const Row &row : kRows) {
        Schema schema(WithMust(row.condition) + Rpc("other", kMode));
        ASSERT_EQ(schema.status, ZR_OK) << row.condition;
        ForeignTree tree("<rpc xmlns=\"urn:m\" message-id=\"1\">text of the application<!-- c -->"
                         "<?target?><op><mode>off</mode></op><other>" +
                         around + Op("<mode>on</mode><a/>") + "<other>" + around + "</rpc>");
        EXPECT_EQ(tree.Validate(schema, 5) == Valid(), row.holds) << row.condition;
    }
}

// The first is valid by itself, the second by itself is not; a third stands between them.
TEST(ForeignData, OfTheSameNameIsNotTakenForTheOperation)
{
    Schema schema(WithMust("/op/mode = 'on'"));
    ForeignTree tree("<rpc>" + Op("<mode>on</mode><a/>") + Op("") + Op("<mode>off</mode><a/>") +
                     Op("<mode>on</mode><a/>") + "</rpc>");
    Record fault = Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:op/a",
                         "a is not satisfied must condition.", "a");
    EXPECT_EQ(tree.Validate(schema, 0), Valid());
    EXPECT_EQ(tree.Validate(schema, 1), Valid());
    EXPECT_EQ(tree.Validate(schema, 2), fault);
    EXPECT_EQ(tree.Validate(schema, 3), Valid());
}

TEST(ForeignData, HasNoIdentity)
{
    Schema schema("<identity name=\"b\"/>" + WithMust("derived-from-or-self(/, 'm:b')"));
    ForeignTree tree("<rpc>b" + Op("<a/>") + "</rpc>");
    EXPECT_EQ(tree.Validate(schema, 1), Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:op/a",
                                              "Failed to check must condition of a.", "a"));
}

TEST(ForeignData, IsNotSeenByWhensAndMissingNodes)
{
    Schema schema(Rpc("op", kMode + Leaf("w", "string", When("/op/mode = 'on'") + Default("d")) +
                                Leaf("need", "string", When("/other/mode") + kMandatory)));
    ForeignTree tree("<rpc xmlns=\"urn:m\">" + Op("<mode>off</mode>") +
                     "<other><mode>on</mode></other>" + Op("<mode>on</mode>") + "</rpc>");
    EXPECT_EQ(tree.Validate(schema, 0), Valid());
    EXPECT_EQ(tree.Child(0)->last->children->type, XML_TEXT_NODE);
    EXPECT_STREQ(reinterpret_cast<const char *>(tree.Child(0)->last->name), "mode");
    EXPECT_EQ(tree.Validate(schema, 2), Valid());
    EXPECT_STREQ(reinterpret_cast<const char *>(tree.Child(2)->last->name), "w");
}

// The data that leads to an action is part of the operation.
TEST(ForeignData, IsNotSeenByTheConditionsOfAnAction)
{
    Schema schema(Container("top", kMode + "<action name=\"act\"><input>" +
                                       Leaf("a", "string", Must("/top/mode = 'on'")) +
                                       "</input></action>"));
    const std::string act = "<act><a/></act>";
    ForeignTree tree("<action>" + Data("top", "<mode>on</mode>" + act) +
                     Data("top", "<mode>off</mode>" + act) + "</action>");
    EXPECT_EQ(tree.Validate(schema, 0), Valid());
    EXPECT_EQ(tree.Validate(schema, 1),
              Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:top/act/a",
                    "a is not satisfied must condition.", "a"));
}

// An instruction before the top element has its name, and is no data.
TEST(ForeignData, IsNotSeenByTheConditionsOfANotification)
{
    Schema schema(Notification("event", kMode + Leaf("a", "string", When("/event/mode = 'on'")) +
                                            Leaf("b", "string", Must("/event/mode = 'on'"))) +
                  WithMust("/op/mode = 'on'"));
    const std::string content = "<mode>on</mode><a>1</a><b>2</b>";
    NotifOutcome outcome = ValidateNotif(schema, "<?event x?>" + Data("event", content));
    EXPECT_EQ(outcome.status, ZR_OK);
    EXPECT_NE(outcome.document.find("<a>1</a>"), std::string::npos);
    EXPECT_NE(outcome.document.find("<b>2</b>"), std::string::npos);
    EXPECT_EQ(RpcRecord(schema, "<?op x?>" + Op("<mode>on</mode><a/>")), Valid());
}

// A reference to an entity is a node of the operation; what it stands for is the declaration's.
TEST(ForeignData, BehindAReferenceToAnEntityIsNotFollowed)
{
    Schema schema(Rpc("op", "<anydata name=\"any\"/>" + Leaf("a", "string", Must("../any/e/e/x"))));
    xmlDoc *doc =
        xmlReadDoc(reinterpret_cast<const xmlChar *>("<!DOCTYPE op [<!ENTITY e '<x>1</x>'>]>"
                                                     "<op xmlns='urn:m'><any>&e;</any><a/></op>"),
                   nullptr, nullptr, XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    ASSERT_NE(doc, nullptr);
    Document document(doc);
    xmlNode *reference = document.top()->children->children;
    ASSERT_EQ(reference->type, XML_ENTITY_REF_NODE);
    if (reference->children != nullptr && reference->children->children != nullptr)
        reference->children->children->_private = kForeign;
    EXPECT_EQ(TakeRecord(ZR_CTX_ValidateRpcDataTree(schema, 2, document.top(), nullptr, nullptr)),
              Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:op/a",
                    "a is not satisfied must condition.", "a"));
}

} // namespace
