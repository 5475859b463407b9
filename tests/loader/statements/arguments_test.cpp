// SPDX-License-Identifier: Apache-2.0
// What may stand as a name: identifiers, in every statement that gives one.
#include "loader/statements/arguments.h"

#include <string>

#include "loader/loader_fixture.h"
#include "schema/members/condition_records.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::TempDir;
using zrtest::TestContext;

const char *const kNoIdentifiers[] = {
    "1a",   "-a",  ".a",         "a b",        " a",        "a:b",     "a/b",
    "../a", "st*", "&lt;x/&gt;", "a&quot; b=", "a\xC3\xA9", "a&#10;b", "{urn:x}name"};

std::string Unescaped(std::string text)
{
    const std::pair<const char *, const char *> references[] = {
        {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&#10;", "\n"}};
    for (const auto &[reference, character] : references)
        if (size_t at; (at = text.find(reference)) != std::string::npos)
            text.replace(at, std::string(reference).size(), character);
    return text;
}

// A statement that gives a name, around it what it needs; "%" stands for the name.
struct Statement {
    const char *keyword, *xml;
};

const Statement kStatements[] = {
    {"container", "<container name='%'/>"},
    {"leaf", "<leaf name='%'><type name='string'/></leaf>"},
    {"leaf-list", "<leaf-list name='%'><type name='string'/></leaf-list>"},
    {"list", "<list name='%'/>"},
    {"choice", "<choice name='%'/>"},
    {"case", "<choice name='c'><case name='%'/></choice>"},
    {"anydata", "<anydata name='%'/>"},
    {"anyxml", "<anyxml name='%'/>"},
    {"rpc", "<rpc name='%'/>"},
    {"action", "<container name='c'><action name='%'/></container>"},
    {"notification", "<notification name='%'/>"},
    {"typedef", "<typedef name='%'><type name='string'/></typedef>"},
    {"feature", "<feature name='%'/>"},
    {"identity", "<identity name='%'/>"},
    {"extension", "<extension name='%'/>"},
};

std::string With(std::string xml, const std::string &name)
{
    return xml.replace(xml.find('%'), 1, name);
}

TEST(Name, IsAnIdentifierOfAnyLength)
{
    for (const Statement &row : kStatements)
        for (const std::string &name :
             {std::string("a"), std::string("_A-9.z"), std::string(64, 'n')}) {
            TestContext ctx;
            EXPECT_EQ(ctx.LoadBody("m", With(row.xml, name)), ZR_OK) << row.keyword << " " << name;
            EXPECT_THAT(ctx.Messages(), IsEmpty());
        }
}

TEST(Name, IsRefusedWhenItIsNoIdentifier)
{
    for (const Statement &row : kStatements)
        for (const char *name : kNoIdentifiers) {
            TestContext ctx;
            EXPECT_EQ(ctx.LoadBody("m", With(row.xml, name)), ZR_ERR_FAILED)
                << row.keyword << " " << name;
            std::vector<std::string> messages = ctx.Messages();
            ASSERT_FALSE(messages.empty());
            EXPECT_EQ(messages[0], "Failed to parse value \"" + Unescaped(name) +
                                       "\" of statement \"" + row.keyword + "\".");
            EXPECT_EQ(ctx.Module("m"), nullptr);
        }
}

TEST(Name, HasStatus22WhenItIsNoIdentifier)
{
    const struct {
        ZrsParser *parse;
        const char *xml;
    } rows[] = {
        {ZRS_LOADER_ParseContainer, "<container name='1'/>"},
        {ZRS_LOADER_ParseLeaf, "<leaf name='1'><type name='int8'/></leaf>"},
        {ZRS_LOADER_ParseRpc, "<rpc name='1'/>"},
        {ZRS_LOADER_ParseFeature, "<feature name='1'/>"},
        {ZRS_LOADER_ParseIdentity, "<identity name='1'/>"},
        {ZRS_LOADER_ParseExtension, "<extension name='1'/>"},
    };
    for (const auto &row : rows) {
        ModuleUnderTest module;
        char destination[256] = {};
        EXPECT_EQ(Parse(module, row.parse, row.xml, destination), ZR_ERR_INVALID) << row.xml;
        EXPECT_EQ(module.Messages().size(), 1u);
    }
}

std::string ModuleCalled(const std::string &name)
{
    return "<module name='" + name + "' xmlns='" + zrtest::kYinNs +
           "'><namespace uri='urn:m'/><prefix value='m'/></module>";
}

TEST(Name, OfAModuleIsAnIdentifier)
{
    for (const char *name : kNoIdentifiers) {
        TestContext ctx;
        EXPECT_EQ(ctx.Load(ModuleCalled(name)), ZR_ERR_FAILED) << name;
        EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to parse value \"" + Unescaped(name) +
                                                "\" of statement \"module\"."));
        EXPECT_EQ(ctx.Module(Unescaped(name).c_str()), nullptr);
    }
    TempDir dir;
    TestContext ctx;
    dir.Write("a b.yin", ModuleCalled("a b"));
    ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
    EXPECT_EQ(ZR_CTX_LoadModule(ctx, "a b"), ZR_ERR_INVALID);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Failed to parse value \"a b\" of statement \"module\".",
                            "Failed to parse module \"a b\" from the yin file."));
}

TEST(Name, OfAnInstanceOrReferenceIsNotWhatThisIsAbout)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<leaf name='l'><type name='enumeration'><enum name='1 2'/>"
                                "</type></leaf><leaf name='k'><type name='string'/>"
                                "<default value='&lt;x/&gt;'/></leaf>"),
              ZR_OK);
}

const std::string kName64(64, 'n');
const std::string kName65(65, 'n');

struct Reference {
    const char *keyword;
    ZrsParseFunc parse;
};

const Reference kReferences[] = {{"if-feature", ZRS_LOADER_ParseIfFeature},
                                 {"base", ZRS_LOADER_ParseIdentBase}};

union ReferenceRecord {
    ZrsIfFeature ifFeature;
    ZrsIdentBase base;
};

std::string ReferenceXml(const Reference &row, const std::string &argument)
{
    return "<" + std::string(row.keyword) + " name='" + argument + "'/>";
}

TEST(Reference, ThatIsMalformedFails)
{
    for (const Reference &row : kReferences)
        for (const std::string &text :
             {std::string("a and b"), std::string("not a"), std::string(""), std::string(":a"),
              std::string("x:"), std::string("x:a:b"), std::string(" a"), std::string("a "),
              kName65, kName65 + ":a", "x:" + kName65}) {
            ModuleUnderTest module;
            ReferenceRecord record = {};
            EXPECT_EQ(Parse(module, row.parse, ReferenceXml(row, text), &record), ZR_ERR_INVALID)
                << text;
            EXPECT_THAT(module.Messages(), ElementsAre("Failed to parse xpath \"" + text + "\"."));
        }
}

TEST(Reference, TakesNamesOf64Characters)
{
    ModuleUnderTest module;
    ZrsIdentBase base = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentBase, "<base name='x:" + kName64 + "'/>", &base),
              ZR_OK);
    EXPECT_EQ(base.identityName, kName64);
    ZRS_MDL_ClearIdentBase(module.dict(), &base);
}

TEST(Reference, WithAnUnknownPrefixFails)
{
    for (const Reference &row : kReferences) {
        ModuleUnderTest module;
        ReferenceRecord record = {};
        EXPECT_EQ(Parse(module, row.parse, ReferenceXml(row, "q:a"), &record), ZR_ERR_INVALID);
        EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\"."));
    }
}

TEST(Reference, WithoutAnArgumentFails)
{
    for (const Reference &row : kReferences) {
        ModuleUnderTest module;
        ReferenceRecord record = {};
        EXPECT_EQ(Parse(module, row.parse, "<" + std::string(row.keyword) + "/>", &record),
                  ZR_ERR_INVALID);
        EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"" +
                                                   std::string(row.keyword) + "\"."));
    }
}

TEST(Reference, FailsWith12WhenItsNamesCannotBeKept)
{
    for (const Reference &row : kReferences) {
        ModuleUnderTest module;
        zrtest::AllocGuard guard;
        ReferenceRecord record = {};
        guard.FailAt(0);
        EXPECT_EQ(Parse(module, row.parse, ReferenceXml(row, "new-name"), &record),
                  ZR_ERR_NO_MEMORY);
        guard.Stop();
        EXPECT_THAT(module.Messages(),
                    ElementsAre("Failed to parse value \"new-name\" of statement \"" +
                                std::string(row.keyword) + "\"."));
    }
}

} // namespace
