// What may stand as a name: identifiers, in every statement that gives one.
#include <string>

#include "loader/loader_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::TempDir;
using zrtest::TestContext;

namespace {

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

TEST(LoadModuleByName, FindsNothingOutsideTheSearchDirectoriesOrByAPattern)
{
    TempDir dir;
    TestContext ctx;
    dir.Write("private/secret.yin", ModuleCalled("../private/secret"));
    dir.Write("public/st1.yin", ModuleCalled("st*"));
    ZR_CTX_SetSearchDir(ctx, (dir.path() + "/public").c_str());
    for (const char *name : {"../private/secret", "st*", "st?", "st[1]"}) {
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, name), ZR_ERR_NOT_FOUND) << name;
        EXPECT_THAT(ctx.Messages(name), ElementsAre("Module \"" + std::string(name) +
                                                    "\" not found from search directories."));
    }
}

TEST(LoadModuleByName, FollowsNoImportOutOfTheSearchDirectories)
{
    TempDir dir;
    TestContext ctx(ZR_CTX_LOAD_IMPORTS);
    dir.Write("private/secret.yin", ModuleCalled("../private/secret"));
    dir.Write("public/m.yin", zrtest::ModuleText("m", "<import module='../private/secret'>"
                                                      "<prefix value='s'/></import>"));
    ZR_CTX_SetSearchDir(ctx, (dir.path() + "/public").c_str());
    EXPECT_EQ(ZR_CTX_LoadModule(ctx, "m"), ZR_ERR_NOT_FOUND);
    EXPECT_THAT(ctx.Messages("../private/secret"),
                ElementsAre("Module \"../private/secret\" not found from search directories."));
}

} // namespace
