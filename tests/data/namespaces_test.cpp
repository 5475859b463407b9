// The namespaces of added elements, in the tree and in its text.
#include "data/tree_changes.h"

#include <gtest/gtest.h>

#include "data/schema.h"
#include "support/run.h"

namespace {

using namespace zrtest;

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
