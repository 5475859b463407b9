#include "data/tree_changes.h"

#include <gtest/gtest.h>
#include <zrschema/node.h>

#include "data/data_tree.h"
#include "data/schema.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;

class DefaultListTest : public ::testing::Test {
protected:
    xmlNode *Add(xmlNode *parent, const char *name)
    {
        xmlNode *element =
            xmlNewChild(parent, nullptr, reinterpret_cast<const xmlChar *>(name), nullptr);
        zr::MarkAsDefault(element);
        return element;
    }
    std::string Listed()
    {
        std::string names;
        for (const ZrListLink *link = run_->defaults.next; link != &run_->defaults;
             link = link->next)
            names += NameOf(reinterpret_cast<const ZrdDefaultNodeEntry *>(link)->node);
        return names;
    }
    static std::string NameOf(const xmlNode *node)
    {
        return reinterpret_cast<const char *>(node->name);
    }
    static void Collect(void *element, void *userData)
    {
        *static_cast<std::string *>(userData) += NameOf(static_cast<xmlNode *>(element));
    }

    Document document_{"<top><own/></top>"};
    CheckRun run_{nullptr, ZRD_MODE_RPC};
};

TEST_F(DefaultListTest, TellsTheMarkAndNoOtherLine)
{
    xmlNode *element = Add(document_.top(), "a");
    EXPECT_EQ(element->line, 256);
    EXPECT_EQ(ZRD_PAS_IsDefaultAddNode(element), 1u);
    for (uint16_t line : std::initializer_list<uint16_t>{0, 1, 255, 257, 512, 65535}) {
        element->line = line;
        EXPECT_EQ(ZRD_PAS_IsDefaultAddNode(element), 0u) << line;
    }
    EXPECT_EQ(ZRD_PAS_IsDefaultAddNode(nullptr), 0u);
    EXPECT_EQ(ZRD_PAS_IsDefaultAddNode(reinterpret_cast<xmlNode *>(document_.get())), 0u);
}

TEST_F(DefaultListTest, ClearsTheMarksOfASubtree)
{
    xmlNode *a = Add(document_.top(), "a");
    xmlNode *b = Add(a, "b");
    xmlNode *next = Add(document_.top(), "c");
    ZRD_PAS_ClearDefaultNodeTreeFlag(a);
    EXPECT_EQ(a->line, 0);
    EXPECT_EQ(b->line, 0);
    EXPECT_EQ(next->line, 256);
    ZRD_PAS_ClearDefaultNodeTreeFlag(nullptr);
}

TEST_F(DefaultListTest, HoldsTheRootsOfAddedSubtreesNewestFirst)
{
    xmlNode *a = Add(document_.top(), "a");
    xmlNode *inside = Add(a, "inside");
    xmlNode *b = Add(document_.top(), "b");
    EXPECT_EQ(ZRD_PAS_AddDefaultNodeToList(&run_->defaults, document_.Find("own")), ZR_OK);
    for (xmlNode *element : {a, inside, b})
        EXPECT_EQ(ZRD_PAS_AddDefaultNodeToList(&run_->defaults, element), ZR_OK);
    EXPECT_EQ(Listed(), "ba");
}

TEST_F(DefaultListTest, SaysWhenThereIsNoMemoryForAnEntry)
{
    xmlNode *a = Add(document_.top(), "a");
    AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZRD_PAS_AddDefaultNodeToList(&run_->defaults, a), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(Listed(), "");
}

TEST_F(DefaultListTest, GivesUpTheEntryOfAnElement)
{
    xmlNode *elements[] = {Add(document_.top(), "a"), Add(document_.top(), "b"),
                           Add(document_.top(), "c")};
    for (xmlNode *element : elements)
        ZRD_PAS_AddDefaultNodeToList(&run_->defaults, element);
    ZRD_PAS_RemoveDefaultNodeFromList(&run_->defaults, elements[1]);
    EXPECT_EQ(Listed(), "ca");
    ZRD_PAS_RemoveDefaultNodeFromList(&run_->defaults, elements[1]);
    ZRD_PAS_RemoveDefaultNodeFromList(&run_->defaults, document_.Find("own"));
    EXPECT_EQ(Listed(), "ca");
}

TEST_F(DefaultListTest, DeletesAnAddedElementFromTreeAndList)
{
    xmlNode *a = Add(document_.top(), "a");
    xmlNode *inside = Add(a, "inside");
    Add(a, "other");
    ZRD_PAS_AddDefaultNodeToList(&run_->defaults, a);
    ZRD_PAS_DeleteDefaultAddNode(run_, inside);
    EXPECT_EQ(Listed(), "a");
    EXPECT_NE(document_.Dump().find("<top><own/><a><other/></a></top>"), std::string::npos);
    ZRD_PAS_DeleteDefaultAddNode(run_, a);
    EXPECT_EQ(Listed(), "");
    EXPECT_NE(document_.Dump().find("<top><own/></top>"), std::string::npos);
}

TEST_F(DefaultListTest, KeptElementsStayUnmarkedAndGoToTheCallbackNewestFirst)
{
    std::string seen;
    run_->callback = Collect;
    run_->userData = &seen;
    for (const char *name : {"a", "b"}) {
        xmlNode *element = Add(document_.top(), name);
        ZRD_PAS_AddDefaultNodeToList(&run_->defaults, element);
        ZRD_PAS_AddDefaultNodeToList(&run_->defaults, Add(element, "inside"));
    }
    ZRD_PAS_ClearDefaultNodeList(run_, 1);
    EXPECT_EQ(seen, "ba");
    EXPECT_EQ(Listed(), "");
    EXPECT_EQ(document_.Find("a")->line, 0);
    EXPECT_EQ(document_.Find("inside")->line, 0);
    EXPECT_EQ(document_.Find("a")->psvi, nullptr);
}

TEST_F(DefaultListTest, KeptElementsNeedNoCallback)
{
    ZRD_PAS_AddDefaultNodeToList(&run_->defaults, Add(document_.top(), "a"));
    ZRD_PAS_ClearDefaultNodeList(run_, 1);
    EXPECT_NE(document_.Find("a"), nullptr);
}

TEST_F(DefaultListTest, DiscardedElementsLeaveTheTree)
{
    std::string seen;
    run_->callback = Collect;
    run_->userData = &seen;
    for (const char *name : {"a", "b"})
        ZRD_PAS_AddDefaultNodeToList(&run_->defaults, Add(document_.top(), name));
    ZRD_PAS_ClearDefaultNodeList(run_, 2);
    EXPECT_EQ(Listed(), "");
    EXPECT_EQ(seen, "");
    EXPECT_NE(document_.Dump().find("<top><own/></top>"), std::string::npos);
}

class AddedElementTest : public DataTree {};

TEST_F(AddedElementTest, CreatesAChildInTheParentsNamespace)
{
    Document document("<p:top xmlns:p=\"urn:m\"><p:a/></p:top>");
    Match(document);
    xmlNode *child = ZRD_NODE_CreateNewChildNode(document.top(), schema_.Node("/m:top/box"));
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->_private, schema_.Node("/m:top/box"));
    EXPECT_EQ(document.top()->last, child);
    EXPECT_NE(document.Dump().find("<p:a/><p:box/></p:top>"), std::string::npos) << document.Dump();
}

TEST_F(AddedElementTest, DeclaresTheNamespaceOfAChildOfAnotherModule)
{
    ASSERT_EQ(schema_.LoadBody("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                                    "<augment target-node=\"/m:top\">" +
                                        Leaf("y", "string") + "</augment>"),
              ZR_OK);
    Document document(Data("top"));
    Match(document);
    ASSERT_NE(ZRD_PAS_AddNewChildNodeWithValue(document.top(), schema_.Node("/m:top/n:y"), "v"),
              nullptr);
    EXPECT_NE(document.Dump().find("<top xmlns=\"urn:m\"><y xmlns=\"urn:n\">v</y></top>"),
              std::string::npos)
        << document.Dump();
}

TEST_F(AddedElementTest, SetsAValueAsPlainText)
{
    Document document(Data("top"));
    Match(document);
    ZrNode *a = schema_.Node("/m:top/a");
    ZRD_PAS_AddNewChildNodeWithValue(document.top(), a, "x & <y> &amp;");
    ZRD_PAS_AddNewChildNodeWithValue(document.top(), a, "");
    ZRD_PAS_AddNewChildNodeWithValue(document.top(), a, nullptr);
    EXPECT_NE(document.Dump().find("<a>x &amp; &lt;y&gt; &amp;amp;</a><a/><a/></top>"),
              std::string::npos)
        << document.Dump();
}

TEST_F(AddedElementTest, ClearsThePrivatePointersOfElementsAlone)
{
    Document document(Data("top", "text<a/><box><x/></box>"));
    Match(document);
    int own = 0;
    document.top()->children->_private = &own;
    ZRD_PAS_ClearXmlTreePrivate(document.top());
    for (const char *name : {"top", "a", "box", "x"})
        EXPECT_EQ(document.Find(name)->_private, nullptr) << name;
    EXPECT_EQ(document.top()->children->_private, &own);
    ZRD_PAS_ClearXmlTreePrivate(document.top()->children);
    EXPECT_EQ(document.top()->children->_private, &own);
    ZRD_PAS_ClearXmlTreePrivate(nullptr);
}

// The namespaces of added elements, in the tree and in its text.

const std::string kImports = "<import module=\"m\"><prefix value=\"m\"/></import>"
                             "<import module=\"base\"><prefix value=\"b\"/></import>";
const std::string kBase = "<identity name=\"kind\"/><identity name=\"one\"><base name=\"kind\"/>"
                          "</identity>";

std::string NamespaceOf(const xmlNode *element)
{
    if (element == nullptr || element->ns == nullptr)
        return "-";
    return reinterpret_cast<const char *>(element->ns->href);
}

// A request completed in the caller's tree and validated again, as the tree and as its text.
class CompletedRequest {
public:
    CompletedRequest(ZrCtx *ctx, const std::string &text) : document_(text)
    {
        EXPECT_EQ(Validate(ctx, document_), Valid());
        EXPECT_EQ(Validate(ctx, document_), Valid()) << document_.Dump();
        Document again(document_.Dump());
        EXPECT_EQ(Validate(ctx, again), Valid()) << document_.Dump();
        EXPECT_EQ(again.Dump(), document_.Dump());
        again_ = document_.Dump();
    }
    // The same in the tree and in the tree that its text gives.
    std::string NamespaceOf(const char *name) const
    {
        Document again(again_);
        EXPECT_EQ(::NamespaceOf(again.Find(name)), ::NamespaceOf(document_.Find(name))) << again_;
        return ::NamespaceOf(document_.Find(name));
    }
    bool Holds(const std::string &text) const { return again_.find(text) != std::string::npos; }
    const std::string &text() const { return again_; }

private:
    static Record Validate(ZrCtx *ctx, Document &document)
    {
        return TakeRecord(
            ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_XML, document.top(), nullptr, nullptr));
    }
    Document document_;
    std::string again_;
};

class AugmentedDefaults : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(schema_.LoadBody("base", kBase), ZR_OK);
        std::string inside =
            Leaf("d", "string", Default("x")) + Leaf("id", Identityref("b:kind"), Default("b:one"));
        std::string added = Container("c", inside) + Leaf("lim", "uint8", Default("5"));
        ASSERT_EQ(schema_.LoadBody("au", kImports + "<augment target-node=\"/m:op/m:input\">" +
                                             added + "</augment>"),
                  ZR_OK);
    }
    Schema schema_{Rpc("op", Input(Leaf("a", "string")))};
};

TEST_F(AugmentedDefaults, BelongToTheirOwnModule)
{
    for (const char *request :
         {"<op xmlns=\"urn:m\"><a/></op>", "<nc:op xmlns:nc=\"urn:m\"><nc:a/></nc:op>"}) {
        CompletedRequest completed(schema_, request);
        for (const char *name : {"lim", "c", "d", "id"})
            EXPECT_EQ(completed.NamespaceOf(name), "urn:au") << request;
        EXPECT_TRUE(completed.Holds("<c xmlns=\"urn:au\"><d>x</d><id xmlns:base=\"urn:base\">"
                                    "base:one</id></c><lim xmlns=\"urn:au\">5</lim>"))
            << completed.text();
    }
}

TEST_F(AugmentedDefaults, InAnElementOfTheirModuleNeedNoDeclaration)
{
    CompletedRequest completed(schema_,
                               "<nc:op xmlns:nc=\"urn:m\"><x:c xmlns:x=\"urn:au\"/></nc:op>");
    EXPECT_EQ(completed.NamespaceOf("d"), "urn:au");
    EXPECT_TRUE(completed.Holds("<x:d>x</x:d>")) << completed.text();
}

class IdentityDefaults : public ::testing::Test {
protected:
    // Loads "m" with an rpc "op" of that input; the prefix "b" is the module "base".
    void Load(const std::string &input)
    {
        ASSERT_EQ(
            ctx_.LoadBody("base", kBase + "<typedef name=\"kind-type\"><type name=\"identityref\">"
                                          "<base name=\"kind\"/></type></typedef>"
                                          "<typedef name=\"with-default\"><type name=\""
                                          "kind-type\"/><default value=\"base:one\"/>"
                                          "</typedef>"),
            ZR_OK);
        ASSERT_EQ(ctx_.LoadBody("m", "<import module=\"base\"><prefix value=\"b\"/></import>" +
                                         Rpc("op", Input(input))),
                  ZR_OK);
    }
    TestContext ctx_;
};

TEST_F(IdentityDefaults, DeclareTheModuleThatTheyName)
{
    Load(Leaf("a", "string") + Leaf("id", Identityref("b:kind"), Default("b:one")));
    CompletedRequest completed(ctx_, Data("op", "<a/>"));
    EXPECT_TRUE(completed.Holds("<op xmlns=\"urn:m\"><a/>"
                                "<id xmlns:base=\"urn:base\">base:one</id></op>"))
        << completed.text();
    EXPECT_EQ(completed.NamespaceOf("id"), "urn:m");
}

TEST_F(IdentityDefaults, AreSeenByTheirOwnConditions)
{
    Load(
        Leaf("z", "string", When("derived-from(../id, 'b:kind')") + Mandatory()) +
        Leaf("id", Identityref("b:kind"),
             Must("derived-from-or-self(., 'b:one')") + Must(". = 'base:one'") + Default("b:one")));
    EXPECT_EQ(RpcRecord(ctx_, Data("op")),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op", "Missing element: z.", "z"));
    CompletedRequest completed(ctx_, Data("op", "<z/>"));
    EXPECT_TRUE(completed.Holds("base:one"));
}

TEST_F(IdentityDefaults, UseABindingOfThePrefixThatIsThere)
{
    Load(Leaf("a", "string") + Leaf("id", Identityref("b:kind"), Default("b:one")));
    CompletedRequest bound(ctx_, "<op xmlns=\"urn:m\" xmlns:base=\"urn:base\"><a/></op>");
    EXPECT_TRUE(bound.Holds("<a/><id>base:one</id></op>")) << bound.text();
    CompletedRequest other(ctx_, "<op xmlns=\"urn:m\" xmlns:base=\"urn:other\"><a/></op>");
    EXPECT_TRUE(other.Holds("<a/><id xmlns:base=\"urn:base\">base:one</id></op>")) << other.text();
}

TEST_F(IdentityDefaults, KeepTheirNameWhereTheRequestUsesThePrefixForIt)
{
    Load(Leaf("a", "string") + Leaf("id", Identityref("b:kind"), Default("b:one")));
    CompletedRequest completed(ctx_, "<base:op xmlns:base=\"urn:m\"><base:a/></base:op>");
    EXPECT_EQ(completed.NamespaceOf("id"), "urn:m");
    EXPECT_TRUE(
        completed.Holds("<base:a/><id xmlns=\"urn:m\" xmlns:base=\"urn:base\">base:one</id>"))
        << completed.text();
}

TEST_F(IdentityDefaults, DeclareAPrefixThatATypedefKept)
{
    Load(Leaf("a", "string") + Leaf("own", "b:kind-type", Default("b:one")) +
         Leaf("inherited", "b:with-default") +
         "<leaf name=\"either\"><type name=\"union\"><type name=\"b:kind-type\"/><type "
         "name=\"uint8\"/>"
         "</type><default value=\"b:one\"/></leaf>" +
         "<leaf name=\"ref\"><type name=\"leafref\"><path value=\"../own\"/></type>"
         "<default value=\"b:one\"/></leaf>");
    CompletedRequest completed(ctx_, Data("op", "<a/>"));
    EXPECT_TRUE(completed.Holds("<own xmlns:b=\"urn:base\">b:one</own>"
                                "<inherited xmlns:base=\"urn:base\">base:one</inherited>"
                                "<either xmlns:b=\"urn:base\">b:one</either>"
                                "<ref xmlns:b=\"urn:base\">b:one</ref>"))
        << completed.text();
}

TEST_F(IdentityDefaults, ThatNameNoIdentityDeclareNothing)
{
    Load(Leaf("a", "string") + Leaf("text", "string", Default("base:one")) +
         "<leaf name=\"either\"><type name=\"union\"><type name=\"b:kind-type\"/><type "
         "name=\"string\"/>"
         "</type><default value=\"base:two\"/></leaf>"
         "<leaf name=\"word\"><type name=\"union\"><type name=\"b:kind-type\"/><type "
         "name=\"string\"/>"
         "</type><default value=\"base: one\"/></leaf>");
    CompletedRequest completed(ctx_, Data("op", "<a/><text/><either/><word/>"));
    Outcome outcome = ValidateRpc(ctx_, Data("op", "<a/>"));
    EXPECT_EQ(outcome.record, Valid());
    EXPECT_NE(outcome.document.find("<a/><text>base:one</text><either>base:two</either>"
                                    "<word>base: one</word></op>"),
              std::string::npos)
        << outcome.document;
}

TEST(IdentityPrefix, IsNotDeclaredWhenXmlKeepsItForItself)
{
    TestContext ctx;
    ASSERT_EQ(
        ctx.LoadBody("xmlns", "<identity name=\"b\"/>" +
                                  Rpc("op", Input("<leaf name=\"id\"><type name=\"identityref\">"
                                                  "<base name=\"b\"/></type>" +
                                                  Default("b") + "</leaf>"))),
        ZR_OK);
    Outcome outcome = ValidateRpc(ctx, "<op xmlns=\"urn:xmlns\"/>");
    EXPECT_EQ(outcome.record, Valid());
    EXPECT_NE(outcome.document.find("<id>xmlns:b</id>"), std::string::npos) << outcome.document;
}

} // namespace
