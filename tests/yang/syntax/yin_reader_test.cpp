// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using yangtest::Folder;
using yangtest::ModuleText;
using yangtest::Preparation;

namespace {

std::string YinText(const std::string &body)
{
    return "<?xml version='1.0' encoding='UTF-8'?>\n<!-- made -->\n<module name='y' "
           "xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:y='urn:y'>\n"
           "<namespace uri='urn:y'/><prefix value='y'/>" +
           body + "</module>\n";
}

// A source that imports the prepared module "y" and uses all that it may offer.
constexpr const char *kUser =
    "import y { prefix y; }\n"
    "identity i { base y:base; } leaf a { type y:t; default '<7'; if-feature y:f; y:mark x; }\n"
    "leaf b { type leafref { path '/y:c/y:in'; } }\n"
    "augment /y:c { leaf more { type y:e; default 'one & two'; } }";
constexpr const char *kPrepared =
    "<extension name='mark'><argument name='text'/></extension><feature name='f'/>"
    "<identity name='base'/>"
    "<typedef name='t'><type name='string'><pattern value='&lt;[0-9&#x5d;'/></type></typedef>\n"
    "<typedef name='e'><type name='enumeration'><enum name='one &amp; two'/></type></typedef>"
    "<container name='c'><description><text><![CDATA[a < b]]></text></description>"
    "<leaf name='in'><type name='string'/><y:mark text='z'/></leaf></container>";

std::vector<std::string> ReportsOfPrepared(const std::string &text)
{
    Preparation preparation;
    preparation.AddModule("m", "import y { prefix y; }");
    preparation.Add("y.yin", text);
    preparation.Prepare("m");
    return preparation.reports();
}

} // namespace

TEST(PreparedImports, OfferWhatTheyDefine)
{
    Preparation preparation;
    preparation.AddModule("m", kUser);
    preparation.Add("y.yin", YinText(kPrepared));
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_OK);
    EXPECT_THAT(preparation.reports(), IsEmpty());
    EXPECT_THAT(preparation.text(), HasSubstr("xmlns:y=\"urn:y\""));
    EXPECT_THAT(preparation.text(), HasSubstr("<type name=\"y:t\"/>"));
    EXPECT_THAT(preparation.text(), HasSubstr("<augment target-node=\"/y:c\">"));
    EXPECT_THAT(preparation.text(), HasSubstr("<y:mark text=\"x\"/>"));
}

TEST(PreparedImports, LackWhatTheyDoNotDefine)
{
    Preparation preparation;
    preparation.AddModule("m", "import y { prefix y; }\nleaf a { type y:other; }\n"
                               "leaf b { type leafref { path '/y:c/y:other'; } }\n"
                               "leaf c { type y:e; default three; }");
    preparation.Add("y.yin", YinText(kPrepared));
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(preparation.reports(),
                ElementsAre("m.yang:2:10: error: unknown typedef \"y:other\"",
                            "m.yang:3:25: error: the path of leafref \"b\" leads to nothing: there "
                            "is no \"y:other\"",
                            "m.yang:4:20: error: default \"three\" is no value of type \"y:e\""));
}

TEST(PreparedImports, AreNotJudged)
{
    EXPECT_THAT(ReportsOfPrepared(YinText("<leaf name='a'><type name='none'/></leaf><what/>")),
                IsEmpty());
}

TEST(PreparedImports, ThatCannotBeReadAreReported)
{
    const std::pair<std::string, std::string> cases[] = {
        {"<module", "1:8: error: bad XML: Couldn't find end of Start Tag module line 1"},
        {"<module>", "1:9: error: bad XML: Premature end of data in tag module line 1"},
        {"<module></rpc>",
         "1:15: error: bad XML: Opening and ending tag mismatch: module line 1 and rpc"},
        {"<module/><module/>", "1:10: error: bad XML: Extra content at the end of the document"},
        {"<!DOCTYPE module>\n<module/>", "1:1: error: bad XML: a document type"},
        {"\x7F"
         "ELF\x01",
         "1:5: error: a character that no YANG module may hold"},
        {"<rpc/>", "1:1: error: the file holds no module"},
    };
    for (const auto &[text, report] : cases)
        EXPECT_THAT(ReportsOfPrepared(text), testing::Contains("y.yin:" + report)) << text;
    for (size_t depth : {220u, 100000u}) {
        std::string deep;
        for (size_t i = 0; i < depth; ++i)
            deep += "<container name='c'>";
        for (size_t i = 0; i < depth; ++i)
            deep += "</container>";
        EXPECT_THAT(
            ReportsOfPrepared(YinText(deep)),
            testing::Contains(HasSubstr(depth == 220 ? "bad XML: elements stand more than 200 deep"
                                                     : "bad XML: Excessive depth")));
    }
}

TEST(PreparedImports, StandInForSourcesThatAreNotThere)
{
    Folder folder;
    folder.Add("m.yang", ModuleText("m", "import y { prefix y; } leaf a { type y:s; }"));
    folder.Add("y.yin", YinText("<typedef name='t'><type name='int8'/></typedef>"));
    Preparation without;
    ZR_YANG_AddDirectory(without.get(), folder.path().c_str());
    EXPECT_EQ(without.Prepare("m"), ZR_YANG_ERR_FAULTY);
    folder.Add("y@2020-01-01.yang",
               ModuleText("y", "revision 2020-01-01; typedef s { type int8; }"));
    Preparation with;
    ZR_YANG_AddDirectory(with.get(), folder.path().c_str());
    EXPECT_EQ(with.Prepare("m"), ZR_YANG_OK) << with.reports().front();
}

TEST(PreparedImports, AreNotPreparedThemselves)
{
    Folder folder, out;
    folder.Add("y.yin", YinText(""));
    folder.Add("z@@a.yin", YinText(""));
    folder.Add("m.yang", ModuleText("m", "\nimport z { prefix z; }"));
    Preparation preparation;
    ZR_YANG_AddDirectory(preparation.get(), folder.path().c_str());
    EXPECT_EQ(preparation.Prepare("y"), ZR_YANG_ERR_NOT_FOUND);
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(preparation.reports(),
                ElementsAre(": error: \"y\" is there as prepared YIN alone: there is no source",
                            folder.path() + "/m.yang:2:1: error: no source of \"z\" in the "
                                            "directories, only parts of it in YIN"));
}
