// SPDX-License-Identifier: Apache-2.0
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

bool Accepts(const std::string &text)
{
    return zr::LookAtXml(text).accepted;
}

std::string Attributes(uint32_t count, const std::string &name = "a")
{
    std::string text;
    for (uint32_t i = 0; i < count; ++i)
        text += " " + name + std::to_string(i) + "='1'";
    return text;
}

const uint32_t kTooMany = zr::kMaxAttributes + 1;

TEST(LookAtXml, AcceptsATagWithAsManyAttributesAsMayBe)
{
    EXPECT_TRUE(Accepts("<r" + Attributes(zr::kMaxAttributes) + "/>"));
    EXPECT_TRUE(Accepts("<r><a" + Attributes(zr::kMaxAttributes) + ">x</a></r>"));
    EXPECT_FALSE(Accepts("<r" + Attributes(kTooMany) + "/>"));
    EXPECT_FALSE(Accepts("<r><a" + Attributes(kTooMany) + ">x</a></r>"));
}

TEST(LookAtXml, CountsNamespaceDeclarationsAsAttributes)
{
    EXPECT_FALSE(Accepts("<r" + Attributes(1000, "xmlns:n") + Attributes(25) + "/>"));
    EXPECT_TRUE(Accepts("<r" + Attributes(1000, "xmlns:n") + Attributes(24) + "/>"));
}

TEST(LookAtXml, CountsTheAttributesOfEachTagAlone)
{
    std::string tags;
    for (int i = 0; i < 10; ++i)
        tags += "<a" + Attributes(zr::kMaxAttributes) + "></a><b" + Attributes(1) + "/>";
    EXPECT_TRUE(Accepts("<r>" + tags + "</r>"));
}

TEST(LookAtXml, BoundsTheAttributesOfAllOpenElements)
{
    auto nested = [](uint32_t count, uint32_t last) {
        std::string text = "<r>";
        for (uint32_t i = 0; i < count; ++i)
            text += "<a" + Attributes(zr::kMaxAttributes, "xmlns:n") + ">";
        text += "<b" + Attributes(last) + "></b>";
        for (uint32_t i = 0; i < count; ++i)
            text += "</a>";
        return text + "</r>";
    };
    EXPECT_TRUE(Accepts(nested(4, 0)));
    EXPECT_FALSE(Accepts(nested(4, 1)));
    EXPECT_FALSE(Accepts(nested(5, 0)));
}

TEST(LookAtXml, BoundsTheDepthOfElements)
{
    auto nested = [](uint32_t depth) {
        std::string text;
        for (uint32_t i = 0; i < depth; ++i)
            text += "<a>";
        for (uint32_t i = 0; i < depth; ++i)
            text += "</a>";
        return text;
    };
    EXPECT_TRUE(Accepts(nested(zr::kMaxDepth)));
    EXPECT_FALSE(Accepts(nested(zr::kMaxDepth + 1)));
}

TEST(LookAtXml, CountsNoAttributesWhereThereIsNoTag)
{
    const std::string many = "<a" + Attributes(kTooMany) + ">";
    const std::string rows[] = {
        "<r><!--" + many + "--></r>",
        "<!--" + many + "--><r/><!--" + many + "-->",
        "<r><![CDATA[" + many + "]]></r>",
        "<r><?p " + many + "?></r>",
        "<?p " + many + "?><r/>",
        "<r>" + Attributes(kTooMany) + "</r>",
        "<r a=\"" + Attributes(kTooMany) + "\"/>",
        "<r a=\">" + Attributes(kTooMany) + "\" b='/>'/>",
        "<r>it's a > b</r>",
        "<r><!-- it's -- --><!----><![CDATA[<]]><![CDATA[]]></r>",
    };
    for (const std::string &text : rows)
        EXPECT_TRUE(Accepts(text)) << text.substr(0, 60);
}

TEST(LookAtXml, IsNotLedAstrayByTextsThatAreNotWellFormed)
{
    const std::string many = "<a" + Attributes(kTooMany) + "/>";
    const std::string rows[] = {
        "<r x='" + many + "'/>", // no "<" stands in a value
        "<r x=\"'\"><b y='" + many + "'/></r>",
        "<r 'x>" + many + "</r>",           // the value has no end
        "<r><!-- \x01 " + many + "--></r>", // the comment breaks off
        "<r><!-- \xED\xA0\x80 " + many + "--></r>",
        "<r><!-- \xFF " + many + "--></r>",
        "<r><!-- \xEF\xBF\xBF " + many + "--></r>",
        "<r><? " + many + "?></r>", // no target
        "<r><?1 " + many + "?></r>",
        "<?xml version='1.0' > " + many + " ?>",
        "<r><?" + std::string(60000, 'p') + " " + many + "?></r>",
        "<r><!-- " + std::string(10000001, 'c') + many + "--></r>",
        "<r><!" + many + "></r>",
        "<r><!--->" + many + "</r>",
        "<r></r></r>" + many,
        "x" + many,
        "<r",
        "<r><!-- ",
        "<r><![CDATA[ ]]",
        "<r><?p ",
    };
    for (const std::string &text : rows)
        EXPECT_FALSE(Accepts(text)) << text.substr(0, 60);
}

TEST(LookAtXml, RefusesADocumentTypeDeclaration)
{
    for (const char *text : {"<!DOCTYPE r><r/>", "<!DOCTYPE r SYSTEM 'file:///x'><r/>",
                             "<?xml version='1.0'?> <!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>",
                             "<!-- c --><!DOCTYPE r><r/>", "<!doctype r><r/>"})
        EXPECT_FALSE(Accepts(text)) << text;
    EXPECT_TRUE(Accepts("<r><!-- <!DOCTYPE r> --><![CDATA[<!DOCTYPE r>]]></r>"));
}

TEST(LookAtXml, AcceptsTheCharactersOfXmlAndNoOthers)
{
    for (const char *good :
         {"\t\n\r ", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(Accepts("<r>" + std::string(good) + "</r>")) << good;
    for (const char *bad :
         {"\x01", "\x1B", "\x1F", "\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2<",
          "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF", "\xEF\xBF\xBE", "\xEF\xBF\xBF",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"})
        EXPECT_FALSE(Accepts("<r>" + std::string(bad) + "</r>")) << bad;
    EXPECT_FALSE(Accepts("<r>\xC2")) << "cut off";
    EXPECT_FALSE(Accepts(std::string("<r>\0</r>", 8)));
    EXPECT_FALSE(Accepts(std::string("<r/>\0", 5)));
    EXPECT_FALSE(Accepts(""));
    EXPECT_FALSE(Accepts(" \n"));
}

TEST(LookAtXml, LooksAtEachCharacterWhereverItStands)
{
    const char *const good[] = {"\t", "\n", "\r", " ", "~", "\x7F", "\xC3\xA9", "\xF0\x9F\x98\x80"};
    const char *const bad[] = {"\x01", "\x09\x0B", "\n\x1F", "\x80", "\xC3", "\xED\xA0\x80"};
    for (size_t before = 0; before < 20; ++before) {
        auto text = [before](const char *piece) {
            return "<r>" + std::string(before, 'x') + piece + std::string(20 - before, 'x') +
                   "</r>";
        };
        for (const char *piece : good)
            EXPECT_TRUE(Accepts(text(piece))) << piece << " behind " << before;
        for (const char *piece : bad)
            EXPECT_FALSE(Accepts(text(piece))) << piece << " behind " << before;
    }
}

TEST(LookAtXml, FindsTheEndOfAValueByItsOwnQuote)
{
    EXPECT_TRUE(Accepts("<r a='\"' b=\"'>'/>\" c=''><s d=\"/\"/></r>"));
    EXPECT_FALSE(Accepts("<r a='\"/>"));
    EXPECT_FALSE(Accepts("<r a=\"<\"/>"));
    EXPECT_FALSE(Accepts("<r a='x"));
}

TEST(LookAtXml, TellsTheEncodingOfTheText)
{
    auto encoding = [](const std::string &declaration) {
        zr::XmlLook look = zr::LookAtXml("<?xml version='1.0'" + declaration + "?><r>\xC3\xA9</r>");
        return look.accepted ? std::string(look.encoding) : "refused";
    };
    EXPECT_EQ(encoding(""), "");
    EXPECT_EQ(encoding(" encoding='UTF-8'"), "");
    EXPECT_EQ(encoding(" encoding = \"utf-8\" standalone='yes'"), "");
    EXPECT_EQ(encoding(" encoding='iso-8859-1'"), "iso-8859-1");
    EXPECT_EQ(encoding(" encoding='utf8'"), "");
    EXPECT_EQ(encoding(" encoding='Windows-1252'"), "Windows-1252");
    EXPECT_EQ(encoding(" encoding='EUC-JP'"), "EUC-JP");
    for (const char *other : {"UTF-7", "UTF-16", "UTF-16LE", "IBM037", "ISO-2022-JP", "HZ", "GBK",
                              "Shift_JIS", "UTF-8859", "ISO-8859-1-and-much-more-than-that"})
        EXPECT_EQ(encoding(std::string(" encoding='") + other + "'"), "refused") << other;
}

TEST(LookAtXml, TakesAByteOrderMarkForThatOfUtf8)
{
    EXPECT_TRUE(Accepts("\xEF\xBB\xBF<r>\xC3\xA9</r>"));
    EXPECT_FALSE(Accepts("\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE9</r>"));
    EXPECT_FALSE(Accepts("\xFE\xFF<r/>"));
    EXPECT_FALSE(Accepts("\x4C\x6F\xA7\x94")) << "the beginning of an EBCDIC text";
}

} // namespace
