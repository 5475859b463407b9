#include "platform/xml.h"

#include <gtest/gtest.h>

#include <string>

namespace {

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
