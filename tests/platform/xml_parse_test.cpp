#include "platform/xml_parse.h"

#include <gtest/gtest.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <cstring>
#include <string>

#include "support/xml_alloc.h"

namespace {

// A document's elements with their namespaces, attributes and texts.
void Describe(const xmlNode *node, std::string *out)
{
    for (; node != nullptr; node = node->next) {
        auto text = [](const xmlChar *chars) {
            return chars != nullptr ? reinterpret_cast<const char *>(chars) : "(none)";
        };
        *out += std::string("<") + text(node->name);
        if (node->type == XML_ELEMENT_NODE) {
            *out += std::string(" ns=") + (node->ns != nullptr ? text(node->ns->href) : "(none)");
            for (const xmlAttr *attr = node->properties; attr != nullptr; attr = attr->next) {
                *out += std::string(" ") + text(attr->name) + "=";
                Describe(attr->children, out);
            }
            *out += ">";
            Describe(node->children, out);
        } else {
            *out += std::string(" '") + text(node->content) + "'>";
        }
    }
}

std::string Parsed(const std::string &text)
{
    xmlDoc *document = zr::ParseXmlText(text.c_str(), text.size());
    if (document == nullptr)
        return "nothing";
    std::string description;
    Describe(document->children, &description);
    xmlFreeDoc(document);
    return description;
}

TEST(ParseXmlText, GivesTheDocumentWithoutBlankTexts)
{
    EXPECT_EQ(Parsed("<a xmlns='urn:a'>\n <b c='1'>text</b>\n</a>"),
              "<a ns=urn:a><b ns=urn:a c=<text '1'>><text 'text'>");
}

TEST(ParseXmlText, GivesNothingForATextThatIsNotWellFormed)
{
    for (const char *text : {"", "text", "<a>", "<a></b>", "<a/><b/>", "<a b='1' b='2'/>"})
        EXPECT_EQ(Parsed(text), "nothing") << text;
    EXPECT_EQ(zr::ParseXmlText(nullptr, 1), nullptr);
}

TEST(ParseXmlText, PrintsNothingAndLeavesTheApplicationsHandlerUncalled)
{
    int errors = 0;
    auto count = [](void *counter, auto) { ++*static_cast<int *>(counter); };
    xmlSetStructuredErrorFunc(&errors, count);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Parsed("<a>&unknown;</b>"), "nothing");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(errors, 0);
    EXPECT_EQ(xmlStructuredErrorContext, &errors);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

TEST(ParseXmlText, ShortOfMemoryGivesNothingRatherThanAPartOfTheDocument)
{
    const std::string text =
        "<?xml version='1.0' encoding='UTF-8'?>\n<!-- c --><m:a xmlns:m='urn:m' "
        "xmlns='urn:d' m:x='1' y='&lt;2'>" +
        std::string(5000, 't') + "<b/><c><m:d>text<![CDATA[more]]></m:d></c><?p i?></m:a>";
    std::string whole = Parsed(text);
    ASSERT_NE(whole, "nothing");
    zrtest::XmlAllocGuard memory;
    for (bool all : {false, true}) {
        bool failed = true;
        for (uint64_t n = 0; failed; ++n) {
            memory.FailAt(n, all);
            std::string parsed = Parsed(text);
            failed = memory.Stop();
            EXPECT_TRUE(parsed == whole || (failed && parsed == "nothing"))
                << "allocation " << n << " gave " << parsed.substr(0, 100);
        }
    }
}

} // namespace
