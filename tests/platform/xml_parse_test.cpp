#include "platform/xml.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <cstring>
#include <string>

#include "support/alloc.h"

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
    zrtest::XmlAllocGuard guard;
    for (bool all : {false, true})
        zrtest::FailEachAllocation(
            guard,
            [&](zrtest::FailPoint &memory) {
                std::string parsed = memory.Run([&] { return Parsed(text); });
                EXPECT_TRUE(parsed == whole || (memory.Failed() && parsed == "nothing"))
                    << parsed.substr(0, 100);
            },
            all);
}

// ---- what the process is set to, and what a text asks for

// Sets every default that libxml2 gives its parsers, each to what it is not; sets them back.
class EveryDefault {
public:
    EveryDefault()
    {
        entities_ = xmlSubstituteEntitiesDefault(1);
        lines_ = xmlLineNumbersDefault(1);
        pedantic_ = xmlPedanticParserDefault(1);
        loadDtd_ = xmlLoadExtDtdDefaultValue;
        xmlLoadExtDtdDefaultValue = XML_DETECT_IDS | XML_COMPLETE_ATTRS;
        validate_ = xmlDoValidityCheckingDefaultValue;
        xmlDoValidityCheckingDefaultValue = 1;
        depth_ = xmlParserMaxDepth;
        xmlParserMaxDepth = 100000;
        loader_ = xmlGetExternalEntityLoader();
        xmlSetExternalEntityLoader(Load);
        loads = 0;
        xmlKeepBlanksDefault(1);
    }
    ~EveryDefault()
    {
        xmlSubstituteEntitiesDefault(entities_);
        xmlLineNumbersDefault(lines_);
        xmlPedanticParserDefault(pedantic_);
        xmlLoadExtDtdDefaultValue = loadDtd_;
        xmlDoValidityCheckingDefaultValue = validate_;
        xmlParserMaxDepth = depth_;
        xmlSetExternalEntityLoader(loader_);
    }
    static int loads; // entities that were asked for

private:
    static xmlParserInput *Load(const char *, const char *, xmlParserCtxt *)
    {
        ++loads;
        return nullptr;
    }
    int entities_, lines_, pedantic_, loadDtd_, validate_;
    unsigned int depth_;
    xmlExternalEntityLoader loader_;
};

int EveryDefault::loads = 0;

std::string Nested(uint32_t depth)
{
    std::string text;
    for (uint32_t i = 0; i < depth; ++i)
        text += "<a>";
    for (uint32_t i = 0; i < depth; ++i)
        text += "</a>";
    return text;
}

TEST(ParseXmlText, TakesNoOptionFromTheDefaultsOfTheProcess)
{
    const std::string text = "<a xmlns='urn:a'>\n <b c='&lt;1'>a&amp;b</b>\n<![CDATA[<]]></a>";
    const std::string plain = Parsed(text);
    EveryDefault defaults;
    EXPECT_EQ(Parsed(text), plain);
    EXPECT_NE(Parsed(Nested(257)), "nothing");
    EXPECT_EQ(Parsed(Nested(258)), "nothing");
    xmlDoc *document = zr::ParseXmlText(text.c_str(), text.size());
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(xmlDocGetRootElement(document)->line, 0);
    xmlFreeDoc(document);
}

TEST(ParseXmlText, SwitchesTheKeepBlanksDefaultOffAndLeavesItSo)
{
    for (const char *text : {"<a/>", "<!DOCTYPE a><a/>", ""}) {
        xmlKeepBlanksDefault(1);
        Parsed(text);
        EXPECT_EQ(xmlKeepBlanksDefault(0), 0) << text;
    }
}

TEST(ParseXmlText, RefusesADocumentTypeWhateverTheDefaultsAre)
{
    const char *const texts[] = {
        "<!DOCTYPE a><a/>",
        "<!DOCTYPE a SYSTEM 'file:///nowhere.dtd'><a/>",
        "<!DOCTYPE a [<!ENTITY e 'text'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///nowhere'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY % e SYSTEM 'file:///nowhere'> %e;]><a/>",
    };
    for (const char *text : texts)
        EXPECT_EQ(Parsed(text), "nothing") << text;
    EveryDefault defaults;
    for (const char *text : texts)
        EXPECT_EQ(Parsed(text), "nothing") << text;
    EXPECT_EQ(EveryDefault::loads, 0);
}

TEST(ParseXmlText, RefusesEveryEntityThatXmlDoesNotDefineItself)
{
    EveryDefault defaults;
    EXPECT_EQ(Parsed("<a>&e;</a>"), "nothing");
    EXPECT_EQ(Parsed("<a b='&e;'/>"), "nothing");
    EXPECT_EQ(Parsed("<a>&lt;&gt;&amp;&quot;&apos;&#65;</a>"), "<a ns=(none)><text '<>&\"'A'>");
}

TEST(ParseXmlText, RefusesMoreAttributesInOneTagThanThereMayBe)
{
    std::string attributes;
    for (int i = 0; i < 1025; ++i)
        attributes += " a" + std::to_string(i) + "=''";
    EXPECT_EQ(Parsed("<a" + attributes + "/>"), "nothing");
    EXPECT_NE(Parsed("<a" + attributes.substr(std::strlen(" a0=''")) + "/>"), "nothing");
}

TEST(ParseXmlText, RefusesANulInside)
{
    EXPECT_EQ(Parsed(std::string("<a/>\0", 5)), "nothing");
    EXPECT_EQ(Parsed(std::string("<a>\0</a>", 8)), "nothing");
    EXPECT_EQ(Parsed(std::string("<a/>\0<b/>", 9)), "nothing");
}

TEST(ParseXmlText, ReadsTheEncodingsThatItKnows)
{
    auto text = [](const std::string &encoding, const std::string &content) {
        return "<?xml version='1.0' encoding='" + encoding + "'?><a>" + content + "</a>";
    };
    EXPECT_EQ(Parsed(text("UTF-8", "\xC3\xA9")), "<a ns=(none)><text '\xC3\xA9'>");
    EXPECT_EQ(Parsed(text("ISO-8859-1", "\xE9")), "<a ns=(none)><text '\xC3\xA9'>");
    EXPECT_EQ(Parsed(text("windows-1252", "\x80")), "<a ns=(none)><text '\xE2\x82\xAC'>");
    EXPECT_EQ(Parsed(text("US-ASCII", "e")), "<a ns=(none)><text 'e'>");
    EXPECT_EQ(Parsed(text("US-ASCII", "\xE9")), "nothing");
    EXPECT_EQ(Parsed(text("ISO-8859-99", "e")), "nothing");
    EXPECT_EQ(Parsed(text("UTF-7", "e")), "nothing");
    EXPECT_EQ(Parsed("\xEF\xBB\xBF<a>\xC3\xA9</a>"), "<a ns=(none)><text '\xC3\xA9'>");
}

} // namespace
