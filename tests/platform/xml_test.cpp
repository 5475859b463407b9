// SPDX-License-Identifier: Apache-2.0
#include "platform/xml.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

// A document that is freed at the end of the scope.
class Document {
public:
    explicit Document(const std::string &text)
        : doc_(xmlParseMemory(text.c_str(), static_cast<int>(text.size())))
    {
    }
    explicit Document(xmlDoc *doc) : doc_(doc) {}
    ~Document() { xmlFreeDoc(doc_); }
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;
    xmlNode *root() const { return xmlDocGetRootElement(doc_); }

private:
    xmlDoc *doc_;
};

const xmlChar *AsXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

std::string NameOf(const xmlNode *node)
{
    return reinterpret_cast<const char *>(node->name);
}

// The whole walk, each node with how it was reached: ">" child, "+" sibling, "<" back at a parent.
std::vector<std::string> Walk(xmlNode *root)
{
    constexpr const char *kArrival[] = {">", "+", "<"};
    std::vector<std::string> steps;
    uint32_t direction = ZR_XML_TO_CHILD;
    for (xmlNode *node = ZR_XML_GetXmlDomNextNode(root, root, &direction); node != nullptr;
         node = ZR_XML_GetXmlDomNextNode(root, node, &direction))
        steps.push_back(kArrival[direction] + NameOf(node));
    return steps;
}

TEST(FirstPropertyValue, IsTheFirstAttributeWhateverItsName)
{
    Document doc(R"(<leaf wrong="first" name="second"/>)");
    EXPECT_STREQ(ZR_XML_GetFirstPropertyValue(doc.root()), "first");
}

TEST(FirstPropertyValue, IsTheEmptyTextOfAnEmptyAttribute)
{
    EXPECT_STREQ(ZR_XML_GetFirstPropertyValue(Document(R"(<leaf name="" b="x"/>)").root()), "");
}

TEST(FirstPropertyValue, IsNullWithoutAnAttributeOrWithOneWithoutAValue)
{
    EXPECT_EQ(ZR_XML_GetFirstPropertyValue(Document("<leaf/>").root()), nullptr);
    EXPECT_EQ(ZR_XML_GetFirstPropertyValue(nullptr), nullptr);
    Document doc("<leaf/>");
    xmlNewProp(doc.root(), AsXml("name"), nullptr);
    xmlNewProp(doc.root(), AsXml("other"), AsXml("x"));
    EXPECT_EQ(ZR_XML_GetFirstPropertyValue(doc.root()), nullptr);
}

TEST(FirstPropertyValue, DoesNotCountNamespaceDeclarations)
{
    Document doc(R"(<leaf xmlns="urn:x" xmlns:y="urn:y" name="a"/>)");
    EXPECT_STREQ(ZR_XML_GetFirstPropertyValue(doc.root()), "a");
}

TEST(FirstPropertyValue, HasItsReferencesReplaced)
{
    Document doc(R"(<when condition="a &lt; b &amp;&#10;c"/>)");
    EXPECT_STREQ(ZR_XML_GetFirstPropertyValue(doc.root()), "a < b &\nc");
}

TEST(TargetPropertyValue, IsTheFirstAttributeOfThatNameWithAValue)
{
    Document doc(R"(<leaf a="1" name="x" xmlns:p="urn:p" p:name="y"/>)");
    EXPECT_STREQ(ZR_XML_GetTargetPropertyValue(doc.root(), "name"), "x");
    EXPECT_STREQ(ZR_XML_GetTargetPropertyValue(doc.root(), "a"), "1");
}

TEST(TargetPropertyValue, PassesOverAnAttributeWithoutAValue)
{
    Document doc(R"(<leaf xmlns:p="urn:p"/>)");
    xmlNewProp(doc.root(), AsXml("name"), nullptr);
    xmlNewNsProp(doc.root(), doc.root()->nsDef, AsXml("name"), AsXml("y"));
    EXPECT_STREQ(ZR_XML_GetTargetPropertyValue(doc.root(), "name"), "y");
}

TEST(TargetPropertyValue, IsNullWhenThereIsNone)
{
    Document doc(R"(<leaf name="a"/>)");
    EXPECT_EQ(ZR_XML_GetTargetPropertyValue(doc.root(), "other"), nullptr);
    EXPECT_EQ(ZR_XML_GetTargetPropertyValue(doc.root(), nullptr), nullptr);
    EXPECT_EQ(ZR_XML_GetTargetPropertyValue(nullptr, "name"), nullptr);
}

TEST(XmlNodeDefaultNs, IsTheNamespaceOfTheElement)
{
    Document doc(R"(<p:a xmlns="urn:d" xmlns:p="urn:p"><b/></p:a>)");
    EXPECT_STREQ(ZR_XML_GetXmlNodeDefaultNs(doc.root()), "urn:p");
    EXPECT_STREQ(ZR_XML_GetXmlNodeDefaultNs(doc.root()->children), "urn:d");
    EXPECT_EQ(ZR_XML_GetXmlNodeDefaultNs(Document("<a/>").root()), nullptr);
    EXPECT_EQ(ZR_XML_GetXmlNodeDefaultNs(nullptr), nullptr);
}

TEST(ElemNodeContent, IsTheFirstChildWhenItIsText)
{
    EXPECT_STREQ(ZR_XML_GetElemNodeContent(Document("<text>some</text>").root()), "some");
    EXPECT_STREQ(ZR_XML_GetElemNodeContent(Document("<text>a<b/>c</text>").root()), "a");
}

TEST(ElemNodeContent, IsNullWhenTheFirstChildIsNoText)
{
    for (const char *text : {"<text/>", "<text><b/>a</text>", "<text><!-- c -->a</text>",
                             "<text><![CDATA[a]]></text>", "<text><?p i?>a</text>"})
        EXPECT_EQ(ZR_XML_GetElemNodeContent(Document(text).root()), nullptr) << text;
    EXPECT_EQ(ZR_XML_GetElemNodeContent(nullptr), nullptr);
}

TEST(XmlReads, GiveNullForANodeThatIsNoElement)
{
    Document doc("<a>text</a>");
    const xmlNode *text = doc.root()->children;
    EXPECT_EQ(ZR_XML_GetFirstPropertyValue(text), nullptr);
    EXPECT_EQ(ZR_XML_GetTargetPropertyValue(text, "name"), nullptr);
    EXPECT_EQ(ZR_XML_GetXmlNodeDefaultNs(text), nullptr);
    EXPECT_EQ(ZR_XML_GetElemNodeContent(text), nullptr);
    EXPECT_EQ(ZR_XML_GetFirstChildNodeWithPriVal(text, 1), nullptr);
}

TEST(FirstChildNodeWithPriVal, IsTheFirstChildThatSharesABitWithTheMask)
{
    Document doc("<a>text<b/><c/><d/></a>");
    xmlNode *b = doc.root()->children->next;
    b->_private = reinterpret_cast<void *>(uintptr_t{0x04});
    b->next->_private = reinterpret_cast<void *>(uintptr_t{0x13});
    b->next->next->_private = reinterpret_cast<void *>(uintptr_t{0x10});
    EXPECT_EQ(ZR_XML_GetFirstChildNodeWithPriVal(doc.root(), 0x10), b->next);
    EXPECT_EQ(ZR_XML_GetFirstChildNodeWithPriVal(doc.root(), 0x06), b);
    EXPECT_EQ(ZR_XML_GetFirstChildNodeWithPriVal(doc.root(), 0x08), nullptr);
    EXPECT_EQ(ZR_XML_GetFirstChildNodeWithPriVal(doc.root(), 0), nullptr);
    EXPECT_EQ(ZR_XML_GetFirstChildNodeWithPriVal(nullptr, 1), nullptr);
}

TEST(XmlWalk, VisitsChildrenThenSiblingsThenComesBackToParents)
{
    Document doc("<r><a><b/><c/></a><d/></r>");
    EXPECT_THAT(Walk(doc.root()), ElementsAre(">a", ">b", "+c", "<a", "+d"));
}

TEST(XmlWalk, OfARootWithoutChildrenEndsAtOnceAlsoWhenItHasSiblings)
{
    Document doc("<r><a/><b/></r>");
    EXPECT_THAT(Walk(doc.root()->children), ElementsAre());
}

TEST(XmlWalk, StaysInsideTheSubtree)
{
    Document doc("<r><a><b><c/></b></a><d/></r>");
    EXPECT_THAT(Walk(doc.root()->children), ElementsAre(">b", ">c", "<b"));
}

TEST(XmlWalk, VisitsTextAndCommentsToo)
{
    Document doc("<r>x<!--y--><a/></r>");
    EXPECT_THAT(Walk(doc.root()), ElementsAre(">text", "+comment", "+a"));
}

TEST(XmlWalk, DoesNotEnterTheDeclarationOfAnUnexpandedEntity)
{
    Document doc("<!DOCTYPE r [<!ENTITY e '<x><y/></x>'><!ENTITY f 'g'>]><r><a>&e;</a><b/></r>");
    EXPECT_THAT(Walk(doc.root()), ElementsAre(">a", ">e", "<a", "+b"));
}

TEST(XmlWalk, SibOrParentLeavesTheSubtreeOut)
{
    Document doc("<r><a><b/></a><c/></r>");
    xmlNode *a = doc.root()->children;
    uint32_t direction = ZR_XML_TO_CHILD;
    xmlNode *next = ZR_XML_GetXmlDomSibOrParent(doc.root(), a, &direction);
    EXPECT_EQ(next, a->next);
    EXPECT_EQ(direction, uint32_t{ZR_XML_TO_SIBLING});
    EXPECT_EQ(ZR_XML_GetXmlDomSibOrParent(doc.root(), next, &direction), nullptr);
    next = ZR_XML_GetXmlDomSibOrParent(doc.root(), a->children, &direction);
    EXPECT_EQ(next, a);
    EXPECT_EQ(direction, uint32_t{ZR_XML_TO_PARENT});
}

TEST(XmlWalk, SibOrParentOfTheRootEndsTheWalk)
{
    Document doc("<r><a/><b/></r>");
    xmlNode *a = doc.root()->children;
    uint32_t direction = ZR_XML_TO_CHILD;
    EXPECT_EQ(ZR_XML_GetXmlDomSibOrParent(a, a, &direction), nullptr);
}

TEST(XmlWalk, ParentByTraverseIsTheParentWithItsDirection)
{
    Document doc("<r><a/></r>");
    uint32_t direction = ZR_XML_TO_CHILD;
    EXPECT_EQ(ZR_XML_GetParentNodeByTraverse(doc.root()->children, &direction), doc.root());
    EXPECT_EQ(direction, uint32_t{ZR_XML_TO_PARENT});
}

TEST(XmlWalk, AcceptsNull)
{
    uint32_t direction = ZR_XML_TO_CHILD;
    EXPECT_EQ(ZR_XML_GetXmlDomNextNode(nullptr, nullptr, &direction), nullptr);
    EXPECT_EQ(ZR_XML_GetXmlDomSibOrParent(nullptr, nullptr, &direction), nullptr);
    EXPECT_EQ(ZR_XML_GetParentNodeByTraverse(nullptr, &direction), nullptr);
}

TEST(XmlWalk, CopesWithAHundredThousandLevels)
{
    constexpr int kLevels = 100000;
    xmlDoc *raw = xmlNewDoc(nullptr);
    xmlNode *root = xmlNewNode(nullptr, AsXml("n"));
    xmlDocSetRootElement(raw, root);
    xmlNode *node = root;
    for (int i = 1; i < kLevels; ++i)
        node = xmlNewChild(node, nullptr, AsXml("n"), nullptr);
    Document doc(raw);
    int down = 0;
    int up = 0;
    uint32_t direction = ZR_XML_TO_CHILD;
    for (xmlNode *at = ZR_XML_GetXmlDomNextNode(root, root, &direction); at != nullptr;
         at = ZR_XML_GetXmlDomNextNode(root, at, &direction))
        ++(direction == ZR_XML_TO_PARENT ? up : down);
    EXPECT_EQ(down, kLevels - 1);
    EXPECT_EQ(up, kLevels - 2);
}

} // namespace
