// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include "loader/loader_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::OwnedText;

namespace {

// ---- yang-version

TEST(YangVersion, IsZeroForOneAndOneForOneDotOne)
{
    ModuleUnderTest module;
    uint32_t version = 7;
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseYangVersion, "<yang-version value='1'/>", &version),
              ZR_OK);
    EXPECT_EQ(version, ZRS_YANG_VERSION_1);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseYangVersion, "<yang-version value='1.1'/>", &version),
              ZR_OK);
    EXPECT_EQ(version, ZRS_YANG_VERSION_1_1);
}

TEST(YangVersion, OfAnyOtherValueFailsWithAllOnes)
{
    for (const char *value : {"1.0", "2", "1.1 ", ""}) {
        ModuleUnderTest module;
        uint32_t version = 7;
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseYangVersion,
                        "<yang-version value='" + std::string(value) + "'/>", &version),
                  UINT32_MAX);
        EXPECT_EQ(version, 7u);
        EXPECT_THAT(module.Messages(), ElementsAre("Failed to parse value \"" + std::string(value) +
                                                   "\" of statement \"yang-version\"."));
    }
}

TEST(YangVersion, WithoutAnArgumentFails)
{
    ModuleUnderTest module;
    uint32_t version = 7;
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseYangVersion, "<yang-version/>", &version),
              ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(),
                ElementsAre("Failed to get value of statement \"yang-version\"."));
}

// ---- statements that keep their argument

struct ArgumentStatement {
    const char *keyword;
    ZrsParseFunc parse;
};

const ArgumentStatement kArgumentStatements[] = {
    {"namespace", ZRS_LOADER_ParseNamespace}, {"prefix", ZRS_LOADER_ParsePrefix},
    {"revision", ZRS_LOADER_ParseRevision},   {"units", ZRS_LOADER_ParseUnits},
    {"default", ZRS_LOADER_ParseDefault},     {"error-app-tag", ZRS_LOADER_ParseErrorAppTag},
};

TEST(ArgumentStatement, KeepsTheArgumentInterned)
{
    for (const ArgumentStatement &row : kArgumentStatements) {
        ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
        OwnedText text(module);
        std::string xml = "<" + std::string(row.keyword) + " value='a &lt; b'/>";
        EXPECT_EQ(Parse(module, row.parse, xml, text.slot()), ZR_OK) << row.keyword;
        EXPECT_STREQ(text.get(), "a < b");
        const char *again = module.Text("a < b");
        EXPECT_EQ(text.get(), again);
        ZR_DICT_Remove(module.dict(), again);
        EXPECT_THAT(module.Messages(), IsEmpty());
    }
}

TEST(ArgumentStatement, KeepsAnEmptyArgument)
{
    ModuleUnderTest module;
    OwnedText text(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseDefault, "<default value=''/>", text.slot()), ZR_OK);
    EXPECT_STREQ(text.get(), "");
}

TEST(ArgumentStatement, WithoutAnArgumentFails)
{
    for (const ArgumentStatement &row : kArgumentStatements) {
        ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
        OwnedText text(module);
        EXPECT_EQ(Parse(module, row.parse, "<" + std::string(row.keyword) + "/>", text.slot()),
                  ZR_ERR_INVALID);
        EXPECT_EQ(text.get(), nullptr);
        EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"" +
                                                   std::string(row.keyword) + "\"."));
    }
}

TEST(ArgumentStatement, FailsWith12WhenTheTextCannotBeKept)
{
    for (const ArgumentStatement &row : kArgumentStatements) {
        ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
        zrtest::AllocGuard guard;
        OwnedText text(module);
        guard.FailAt(0, true);
        EXPECT_EQ(Parse(module, row.parse, "<" + std::string(row.keyword) + " value='new'/>",
                        text.slot()),
                  ZR_ERR_NO_MEMORY);
        guard.Stop();
        EXPECT_EQ(text.get(), nullptr);
    }
}

TEST(Revision, TheFirstOneIsKept)
{
    ModuleUnderTest module;
    OwnedText revision(module);
    EXPECT_EQ(
        Parse(module, ZRS_LOADER_ParseRevision, "<revision date='2021-01-01'/>", revision.slot()),
        ZR_OK);
    EXPECT_EQ(
        Parse(module, ZRS_LOADER_ParseRevision, "<revision date='2022-02-02'/>", revision.slot()),
        ZR_OK);
    EXPECT_STREQ(revision.get(), "2021-01-01");
}

TEST(Revision, ALaterOneIsNotEvenLookedAt)
{
    ModuleUnderTest module;
    OwnedText revision(module);
    EXPECT_EQ(
        Parse(module, ZRS_LOADER_ParseRevision, "<revision date='2021-01-01'/>", revision.slot()),
        ZR_OK);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseRevision, "<revision/>", revision.slot()), ZR_OK);
    EXPECT_THAT(module.Messages(), IsEmpty());
}

TEST(Units, AreNotKeptUnlessTheContextAsksForThem)
{
    ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS | 0x4);
    OwnedText units(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseUnits, "<units name='seconds'/>", units.slot()), ZR_OK);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseUnits, "<units/>", units.slot()), ZR_OK);
    EXPECT_EQ(units.get(), nullptr);
    EXPECT_THAT(module.Messages(), IsEmpty());
}

// ---- statements whose text is a child element

struct ChildText {
    const char *keyword;
    const char *child;
    ZrsParseFunc parse;
};

const ChildText kChildTexts[] = {
    {"organization", "text", ZRS_LOADER_ParseOrganization},
    {"description", "text", ZRS_LOADER_ParseDescription},
    {"error-message", "value", ZRS_LOADER_ParseErrorMessage},
};

std::string Element(const std::string &name, const std::string &content)
{
    return "<" + name + ">" + content + "</" + name + ">";
}

TEST(TextStatement, KeepsTheContentOfItsChild)
{
    for (const ChildText &row : kChildTexts) {
        ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
        OwnedText text(module);
        std::string xml = Element(row.keyword, Element(row.child, " two\nlines "));
        EXPECT_EQ(Parse(module, row.parse, xml, text.slot()), ZR_OK);
        EXPECT_STREQ(text.get(), " two\nlines ") << row.keyword;
        EXPECT_THAT(module.Messages(), IsEmpty());
    }
}

TEST(TextStatement, IsEmptyWhenNoTextStandsFirstInTheChild)
{
    for (const ChildText &row : kChildTexts)
        for (const char *content :
             {"", "<![CDATA[text]]>", "<!-- c -->text", "<?pi?>text", "<b>text</b>"}) {
            ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
            OwnedText text(module);
            std::string xml = Element(row.keyword, Element(row.child, content));
            EXPECT_EQ(Parse(module, row.parse, xml, text.slot()), ZR_OK) << xml;
            EXPECT_STREQ(text.get(), "") << xml;
        }
}

TEST(TextStatement, EndsWhereSomethingElseThanTextBegins)
{
    ModuleUnderTest module;
    OwnedText text(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseOrganization,
                    "<organization><text>before<!-- c -->behind</text></organization>",
                    text.slot()),
              ZR_OK);
    EXPECT_STREQ(text.get(), "before");
}

TEST(TextStatement, ReadsPredefinedEntities)
{
    ModuleUnderTest module;
    OwnedText text(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseOrganization,
                    "<organization><text>&lt;a&gt; &amp; &#65;</text></organization>", text.slot()),
              ZR_OK);
    EXPECT_STREQ(text.get(), "<a> & A");
}

TEST(TextStatement, WithoutItsChildFails)
{
    for (const ChildText &row : kChildTexts)
        for (const std::string &content :
             {std::string(), std::string("text"), Element("x:" + std::string(row.child), "text"),
              "<" + std::string(row.child) + " xmlns=''>text</" + row.child + ">"}) {
            ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
            OwnedText text(module);
            EXPECT_EQ(Parse(module, row.parse, Element(row.keyword, content), text.slot()),
                      ZR_ERR_INVALID);
            EXPECT_EQ(text.get(), nullptr);
            EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"" +
                                                       std::string(row.keyword) + "\"."));
        }
}

TEST(TextStatement, WithTwoChildrenFails)
{
    for (const ChildText &row : kChildTexts) {
        ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
        OwnedText text(module);
        std::string child = Element(row.child, "a");
        EXPECT_EQ(Parse(module, row.parse, Element(row.keyword, child + child), text.slot()),
                  ZR_ERR_FAILED);
        EXPECT_THAT(module.Messages(),
                    ElementsAre("Statement \"" + std::string(row.child) + "\" under statement \"" +
                                row.keyword + "\" has repeated."));
    }
}

TEST(TextStatement, FailsWith12WhenTheTextCannotBeKept)
{
    for (const ChildText &row : kChildTexts) {
        ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
        zrtest::AllocGuard guard;
        OwnedText text(module);
        guard.FailAt(0, true);
        EXPECT_EQ(
            Parse(module, row.parse, Element(row.keyword, Element(row.child, "new")), text.slot()),
            ZR_ERR_NO_MEMORY);
        guard.Stop();
        EXPECT_EQ(text.get(), nullptr);
    }
}

TEST(Description, IsNotKeptUnlessTheContextAsksForIt)
{
    ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
    OwnedText text(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseDescription,
                    "<description><text>a</text></description>", text.slot()),
              ZR_OK);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseDescription, "<description/>", text.slot()), ZR_OK);
    EXPECT_EQ(text.get(), nullptr);
    EXPECT_THAT(module.Messages(), IsEmpty());
}

TEST(Text, TakesThePlaceOfTheOneThatStandsThere)
{
    ModuleUnderTest module;
    OwnedText text(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseText, "<text>one</text>", text.slot()), ZR_OK);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseValue, "<value>two</value>", text.slot()), ZR_OK);
    EXPECT_STREQ(text.get(), "two");
}

} // namespace
