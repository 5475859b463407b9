// SPDX-License-Identifier: Apache-2.0
#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;
using zrtest::ValueElement;
using zrtest::yin::Identity;

constexpr char kRef[] = "<type name=\"identityref\"><base name=\"root\"/></type>";

// Identities i1 to iN, each on the one before, the first on "root".
std::string Line(int length)
{
    std::string text = Identity("root");
    for (int i = 1; i <= length; ++i)
        text += Identity("i" + std::to_string(i), {i == 1 ? "root" : "i" + std::to_string(i - 1)});
    return text;
}

TEST(Identityref, TakesTheBaseItself)
{
    Leaf leaf(kRef, Identity("root"));
    EXPECT_EQ(leaf.Check("m:root"), ZR_OK);
    EXPECT_EQ(leaf.Check("root"), ZR_ERR_VALUE_IDENTITY);
    EXPECT_EQ(leaf.CheckElement("root"), ZR_OK);
}

TEST(Identityref, TakesDerivationsUpTo128Levels)
{
    Leaf leaf(kRef, Line(129));
    EXPECT_EQ(leaf.Check("m:i1"), ZR_OK);
    EXPECT_EQ(leaf.Check("m:i127"), ZR_OK);
    EXPECT_EQ(leaf.Check("m:i128"), ZR_OK);
    EXPECT_EQ(leaf.CheckElement("i128"), ZR_OK);
    EXPECT_EQ(leaf.Check("m:i129"), ZR_ERR_VALUE_IDENTITY);
    EXPECT_EQ(leaf.CheckElement("i129"), ZR_ERR_VALUE_IDENTITY);
}

TEST(Identityref, SearchesEveryBaseOfAnIdentity)
{
    Leaf leaf(kRef, Identity("root") + Identity("other") + Identity("left", {"other"}) +
                        Identity("right", {"root"}) + Identity("both", {"left", "right"}) +
                        Identity("neither", {"left", "other"}));
    EXPECT_EQ(leaf.Check("m:both"), ZR_OK);
    EXPECT_EQ(leaf.Check("m:neither"), ZR_ERR_VALUE_IDENTITY);
}

TEST(Identityref, TakesAnIdentityOfAnyOfItsBases)
{
    Leaf leaf("<type name=\"identityref\"><base name=\"a\"/><base name=\"b\"/></type>",
              Identity("a") + Identity("b") + Identity("c") + Identity("ax", {"a"}) +
                  Identity("bx", {"b"}) + Identity("cx", {"c"}));
    EXPECT_EQ(leaf.Check("m:ax"), ZR_OK);
    EXPECT_EQ(leaf.Check("m:bx"), ZR_OK);
    EXPECT_EQ(leaf.Check("m:b"), ZR_OK);
    EXPECT_EQ(leaf.Check("m:cx"), ZR_ERR_VALUE_IDENTITY);
}

TEST(Identityref, SearchOfIdentitiesInACircleEnds)
{
    Leaf leaf(kRef, Identity("root") + Identity("a", {"b", "c"}) + Identity("b", {"c", "a"}) +
                        Identity("c", {"a", "b"}) + Identity("self", {"self"}));
    EXPECT_EQ(leaf.Check("m:a"), ZR_ERR_VALUE_IDENTITY);
    EXPECT_EQ(leaf.Check("m:self"), ZR_ERR_VALUE_IDENTITY);
}

TEST(Identityref, WithAnUnknownBaseRefusesEverything)
{
    Leaf leaf(kRef, Identity("a", {"missing"}));
    EXPECT_EQ(leaf.Check("m:a"), ZR_ERR_VALUE_IDENTITY);
    EXPECT_EQ(leaf.Check("m:root"), ZR_ERR_VALUE_IDENTITY);
}

class IdentityrefElement : public testing::Test {
protected:
    // Module "m" with the base, and module "far" with an identity on it.
    IdentityrefElement() : leaf_(kRef, Identity("root") + Identity("near", {"root"}))
    {
        loaded_ =
            leaf_.context().Load("<module name=\"far\" xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\">"
                                 "<namespace uri=\"urn:far\"/><prefix value=\"far\"/>"
                                 "<import module=\"m\"><prefix value=\"mm\"/></import>" +
                                 Identity("distant", {"mm:root"}) + "</module>");
    }
    uint32_t Check(const ValueElement &element) const
    {
        return ZR_NODE_ValidateValue(leaf_.node(), ZR_VALUE_XML, element.get());
    }
    Leaf leaf_;
    uint32_t loaded_;
};

TEST_F(IdentityrefElement, ResolvesAPrefixInTheDocument)
{
    ASSERT_EQ(loaded_, ZR_OK);
    ValueElement element("x:distant");
    element.Declare("x", "urn:far");
    EXPECT_EQ(Check(element), ZR_OK);
    EXPECT_EQ(leaf_.Check("far:distant"), ZR_OK);
}

TEST_F(IdentityrefElement, TakesAPrefixForTheLeafsOwnModule)
{
    ValueElement element("q:near");
    element.Declare("q", "urn:m");
    EXPECT_EQ(Check(element), ZR_OK);
}

TEST_F(IdentityrefElement, WithoutAPrefixIsOfTheElementsNamespace)
{
    EXPECT_EQ(Check(ValueElement("near", "urn:m")), ZR_OK);
    EXPECT_EQ(Check(ValueElement("distant", "urn:m")), ZR_ERR_VALUE_IDENTITY);
    EXPECT_EQ(Check(ValueElement("distant", "urn:far")), ZR_OK);
    EXPECT_EQ(Check(ValueElement("near", nullptr)), ZR_ERR_VALUE_IDENTITY);
}

TEST_F(IdentityrefElement, WithoutAPrefixTakesThePrefixedElementsNamespace)
{
    const char text[] = "<a:v xmlns:a=\"urn:m\" xmlns=\"urn:far\">near</a:v>";
    xmlDoc *doc = xmlParseMemory(text, sizeof text - 1);
    EXPECT_EQ(ZR_NODE_ValidateValue(leaf_.node(), ZR_VALUE_XML, xmlDocGetRootElement(doc)), ZR_OK);
    xmlFreeDoc(doc);
}

TEST_F(IdentityrefElement, WithAnUnknownPrefixIsRefused)
{
    EXPECT_EQ(Check(ValueElement("y:near")), ZR_ERR_VALUE_IDENTITY);
}

TEST_F(IdentityrefElement, WithAPrefixOfAnUnknownNamespaceIsRefused)
{
    ValueElement element("x:near");
    element.Declare("x", "urn:nobody");
    EXPECT_EQ(Check(element), ZR_ERR_VALUE_IDENTITY);
}

TEST_F(IdentityrefElement, TakesAPrefixOf1024Characters)
{
    std::string prefix(1024, 'p');
    ValueElement element((prefix + ":near").c_str());
    element.Declare(prefix.c_str(), "urn:m");
    EXPECT_EQ(Check(element), ZR_OK);
    std::string longer(1025, 'p');
    ValueElement refused((longer + ":near").c_str());
    refused.Declare(longer.c_str(), "urn:m");
    EXPECT_EQ(Check(refused), ZR_ERR_VALUE_IDENTITY);
}

TEST(IdentityrefString, TakesAModuleNameOf64Characters)
{
    std::string name(64, 'n');
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody(name, Identity("root") + "<leaf name=\"v\">" + kRef + "</leaf>"), ZR_OK);
    ZrNode *node = ctx.Node(("/" + name + ":v").c_str());
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, (name + ":root").c_str()), ZR_OK);
}

TEST(IdentityrefCheck, WithoutAContextRefuses)
{
    ZrsIdentBase item = {"m", "root"};
    ZrtConsBase body = {1, &item};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataBase(&body, ZR_VALUE_STRING, "m:root", &validation),
        ZR_ERR_VALUE_IDENTITY);
}

} // namespace
