// SPDX-License-Identifier: Apache-2.0
#include "loader/files/module_content.h"

#include <string>

#include "foundation/context_record.h"
#include "foundation/search_dirs.h"
#include "loader/loader_fixture.h"
#include "model/module_records.h"
#include "model/node_record.h"
#include "schema/members/ext_inst.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleText;
using zrtest::TempDir;
using zrtest::TestContext;
using zrtest::yin::Leaf;
using zrtest::yin::SubmoduleText;

// A module "m" with the given header and body.
std::string Module(const std::string &content)
{
    return "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:m='urn:m'>" + content +
           "</module>";
}

const char *const kNs = "<namespace uri='urn:m'/>";
const char *const kPrefix = "<prefix value='m'/>";
const char *const kVersion = "<yang-version value='1.1'/>";

TEST(HeadBit, IsOneForEachHeaderStatement)
{
    for (uint32_t statement = 0; statement < ZRS_STMT_COUNT + 1; ++statement)
        EXPECT_EQ(ZRS_LOADER_MapModuleHeadStmtToBit(statement),
                  statement == ZRS_STMT_YANG_VERSION ? 1u
                  : statement == ZRS_STMT_NAMESPACE  ? 2u
                  : statement == ZRS_STMT_PREFIX     ? 4u
                                                     : 0u);
}

TEST(ModuleHeader, IsReadIntoTheModule)
{
    TestContext ctx;
    ASSERT_EQ(ctx.Load(Module(std::string(kPrefix) + kVersion + "<leaf xmlns=''/>" + kNs)), ZR_OK);
    EXPECT_STREQ(ctx.Module("m")->ns, "urn:m");
    EXPECT_STREQ(ctx.Module("m")->prefix, "m");
    EXPECT_EQ(ctx.Module("m")->yangVersion, ZRS_YANG_VERSION_1_1);
}

TEST(ModuleHeader, MayBeEmpty)
{
    TestContext ctx;
    ASSERT_EQ(ctx.Load(Module("<leaf name='l'><type name='string'/></leaf>")), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->ns, nullptr);
    EXPECT_EQ(ctx.Module("m")->prefix, nullptr);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(ModuleHeader, RefusesARepeatedStatement)
{
    struct {
        const char *keyword, *element;
    } const rows[] = {{"namespace", kNs}, {"prefix", kPrefix}, {"yang-version", kVersion}};
    for (const auto &row : rows) {
        TestContext ctx;
        EXPECT_EQ(ctx.Load(Module(std::string(row.element) + row.element)), ZR_ERR_FAILED);
        EXPECT_THAT(ctx.Messages(), ElementsAre("Statement \"" + std::string(row.keyword) +
                                                "\" under statement \"module\" has repeated."));
    }
}

TEST(ModuleHeader, OfTwoNamespacesHasStatusOne)
{
    zrtest::ModuleUnderTest module;
    zrtest::Yin yin(std::string(kNs) + kNs);
    EXPECT_EQ(ZRS_LOADER_ParseModuleHeadStmts(module, yin.wrap()), ZR_ERR_FAILED);
}

TEST(ModuleHeader, IsNotReadBeyondTheThirdStatement)
{
    TestContext ctx;
    EXPECT_EQ(ctx.Load(Module(std::string(kNs) + kPrefix + kVersion + kNs + "<prefix/>")), ZR_OK);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(ModuleHeader, RecordsWhichStatementFailed)
{
    struct {
        const char *element, *message, *keyword;
    } const rows[] = {
        {"<namespace/>", "Failed to get value of statement \"namespace\".", "namespace"},
        {"<prefix/>", "Failed to get value of statement \"prefix\".", "prefix"},
        {"<yang-version/>", "Failed to get value of statement \"yang-version\".", "yang-version"},
        {"<yang-version value='1.0'/>",
         "Failed to parse value \"1.0\" of statement \"yang-version\".", "yang-version"},
    };
    for (const auto &row : rows) {
        TestContext ctx;
        EXPECT_EQ(ctx.Load(Module(row.element)), ZR_ERR_FAILED);
        EXPECT_THAT(ctx.Messages(), ElementsAre(row.message, "Failed to parse statement \"" +
                                                                 std::string(row.keyword) + "\"."));
    }
}

TEST(ModuleHeader, WithAWrongYangVersionHasTheStatusAllOnes)
{
    zrtest::ModuleUnderTest module;
    zrtest::Yin yin("<yang-version value='1.0'/>");
    EXPECT_EQ(ZRS_LOADER_ParseModuleContent(module, yin.wrap(), "t"), UINT32_MAX);
}

TEST(ModuleHeader, IgnoresStatementsOutsideTheYinNamespace)
{
    TestContext ctx;
    ASSERT_EQ(ctx.Load(Module("<namespace xmlns='' uri='urn:no'/><m:prefix value='no'/>" +
                              std::string(kNs) + kPrefix)),
              ZR_OK);
    EXPECT_STREQ(ctx.Module("m")->ns, "urn:m");
    EXPECT_STREQ(ctx.Module("m")->prefix, "m");
}

// ---- body

TEST(ModuleBody, KeepsEveryKindOfStatement)
{
    TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS);
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <revision date='2022-01-01'/> <revision date='2021-01-01'/>
        <description><text>d</text></description>
        <extension name='e1'/> <extension name='e2'/>
        <feature name='f1'/> <feature name='f2'/>
        <identity name='i1'/> <identity name='i2'/>
        <typedef name='t1'><type name='int8'/></typedef>
        <typedef name='t2'><type name='int16'/></typedef>
        <container name='n1'/>
        <leaf name='n2'><type name='t1'/></leaf>
        <leaf-list name='n3'><type name='t2'/></leaf-list>
        <list name='n4'/> <choice name='n5'/> <anydata name='n6'/> <anyxml name='n7'/>
        <augment target-node='/m:n1'/>
        <rpc name='r1'/> <rpc name='r2'/>
        <notification name='o1'/> <notification name='o2'/>
        <deviation target-node='/m:none'/>
        <m:x1/> <m:x2/>
        <organization><text>o</text></organization>
        <contact/> <reference/> <grouping name='g'><foo/></grouping> <uses name='g'/> <foo/>)"),
              ZR_OK);
    const ZrMod *m = ctx.Module("m");
    EXPECT_STREQ(m->revision, "2022-01-01");
    EXPECT_STREQ(m->description, "d");
    EXPECT_STREQ(m->organization, "o");
    ASSERT_EQ(m->extensionCount, 2);
    EXPECT_STREQ(m->extensions[1].name, "e2");
    ASSERT_EQ(m->featureCount, 2);
    EXPECT_STREQ(m->features[1].name, "f2");
    ASSERT_EQ(m->identityCount, 2);
    EXPECT_STREQ(m->identities[1].name, "i2");
    ASSERT_EQ(m->typedefCount, 2);
    EXPECT_STREQ(m->typedefs[1].name, "t2");
    ASSERT_EQ(m->deviationCount, 1);
    EXPECT_STREQ(m->deviations[0].targetPath, "/m:none");
    ASSERT_EQ(m->extInstCount, 2);
    EXPECT_STREQ(m->extInsts[1].extensionName, "x2");
    std::string names;
    for (const ZrNode *node : {m->dataNodes, m->rpcs, m->notifications, m->augments})
        for (; node != nullptr; node = node->next)
            names += node->name;
    EXPECT_EQ(names, "n1n2n3n4n5n6n7r1r2o1o2/m:n1");
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(ModuleBody, KeepsNoDescriptionUnlessTheContextAsksForIt)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <description><text>d</text></description>
        <identity name='i'><description><text>d</text></description></identity>
        <leaf name='l'><type name='string'/><description><text>d</text></description></leaf>)"),
              ZR_OK);
    EXPECT_EQ(ctx.Module("m")->description, nullptr);
    EXPECT_EQ(ctx.Module("m")->identities[0].description, nullptr);
    EXPECT_EQ(ctx.Module("m")->dataNodes->description, nullptr);
}

TEST(ModuleBody, TakesOneDescriptionAndOneOrganization)
{
    for (const std::string keyword : {"description", "organization"}) {
        TestContext ctx;
        std::string element = "<" + keyword + "><text>a</text></" + keyword + ">";
        EXPECT_EQ(ctx.LoadBody("m", element + element), ZR_ERR_FAILED);
        EXPECT_THAT(ctx.Messages(), ElementsAre("Statement \"" + keyword +
                                                "\" under statement \"module\" has repeated."));
    }
}

// A module that holds members already, as one does that a submodule has brought some.
struct Growing {
    Growing()
    {
        EXPECT_EQ(ZRS_MOD_AppendOneFeature(module, "old"), ZR_OK);
        rows[0] = zr::ArrayRow(ZRS_STMT_FEATURE, &module->features, &filled, &module->featureCount);
        rows[1] = zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &module->extInsts, &filledInstances,
                               &module->extInstCount);
    }
    uint32_t Count(xmlNode *root)
    {
        return ZRS_LOADER_CounterAndExpandBodyStmtArray(module, root, rows, 2);
    }
    zrtest::ModuleUnderTest module;
    uint16_t filled = 1;
    uint16_t filledInstances = 0;
    ZrsSubElem rows[2];
};

TEST(BodyArrays, GrowBehindWhatIsThere)
{
    Growing growing;
    zrtest::Yin yin("<feature name='a'/><x:e/><feature name='b'/>");
    ASSERT_EQ(growing.Count(yin.wrap()), ZR_OK);
    ASSERT_EQ(growing.module->featureCount, 3);
    EXPECT_STREQ(growing.module->features[0].name, "old");
    EXPECT_EQ(growing.module->features[1].name, nullptr);
    EXPECT_EQ(growing.module->extInstCount, 1);
    EXPECT_EQ(ZRS_LOADER_GetSubParseDest(&growing.rows[0], ZRS_STMT_MODULE),
              &growing.module->features[1]);
}

TEST(BodyArrays, StayAsTheyAreWhenMemoryRunsOut)
{
    Growing growing;
    zrtest::AllocGuard guard;
    zrtest::Yin yin("<feature name='a'/><x:e/>");
    guard.FailAt(0);
    EXPECT_EQ(growing.Count(yin.wrap()), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(growing.module->featureCount, 1);
    EXPECT_STREQ(growing.module->features[0].name, "old");
    EXPECT_EQ(growing.module->extInstCount, 0);
}

TEST(BodyArrays, RefuseMoreThan65535Items)
{
    TestContext ctx;
    std::string all, more;
    for (int i = 0; i < 65535; ++i)
        all += "<feature name='a'/>";
    EXPECT_EQ(ctx.LoadBody("m", all), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->featureCount, 65535);
    EXPECT_EQ(ctx.LoadBody("n", all + "<feature name='a'/>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages("n"),
                ElementsAre("Failed to parse statement \"feature\" under statement \"module\"."));
}

TEST(NodeArrays, RefuseMoreThan65535Items)
{
    TestContext ctx;
    std::string all;
    for (int i = 0; i < 65536; ++i)
        all += "<m:x/>";
    EXPECT_EQ(ctx.LoadBody("m", "<container name='c'>" + all + "</container>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages("m"),
                ElementsAre("Failed to parse statement \"extension-instance\" under statement "
                            "\"container\".",
                            "Failed to parse \"container\" statement \"c\"."));
}

TEST(ModuleBody, NamesTheStatementThatFailsWithoutAWord)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<leaf name='l'><type name='identityref'><base name='i'/></type>"
                                "<default value='q:i'/></leaf>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Failed to parse statement \"leaf\" under statement \"module\"."));
}

TEST(ModuleContent, LeavesNothingBehindWhenAnyAllocationFails)
{
    const std::string yin = zrtest::ModuleText("m", R"(
        <import module='a1'><prefix value='p1'/></import>
        <revision date='2022-01-01'/>
        <description><text>d1</text></description>
        <organization><text>o1</text></organization>
        <feature name='f1'/> <identity name='i1'/> <extension name='e1'/> <m:x1/>
        <typedef name='t1'><type name='int8'/></typedef>
        <leaf name='l1'><type name='t1'/></leaf>
        <augment target-node='/p1:c1'><leaf name='l2'><type name='string'/></leaf></augment>
        <deviation target-node='/p1:c1'><deviate value='not-supported'/></deviation>)");
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS);
        memory.RunStatus([&] { return ctx.Load(yin); });
    });
}

std::vector<std::string> g_files;

uint32_t CollectFile(const char *, const char *yinFile, uint32_t, const char *message, uint32_t,
                     void *)
{
    g_files.push_back(std::string(yinFile != nullptr ? yinFile : "-") + ": " + message);
    return 0;
}

class Submodule : public testing::Test {
protected:
    Submodule() { ZR_CTX_SetSearchDir(ctx, dir.path().c_str()); }
    // Writes a file and loads a module "m" (prefix "m") from memory.
    void Write(const std::string &file, const std::string &content) { dir.Write(file, content); }
    uint32_t Load(const std::string &body) { return ctx.LoadBody("m", body); }
    std::string TopNodes()
    {
        std::string names;
        for (const ZrNode *node = ctx.Module("m")->dataNodes; node != nullptr; node = node->next)
            names += std::string(names.empty() ? "" : " ") + node->name;
        return names;
    }
    std::string Imports()
    {
        std::string text;
        for (uint32_t i = 0; i < ctx.Module("m")->importCount; ++i)
            text += std::string(i != 0 ? " " : "") + ctx.Module("m")->imports[i].moduleName + "=" +
                    ctx.Module("m")->imports[i].prefix;
        return text;
    }
    TempDir dir;
    TestContext ctx{ZR_CTX_KEEP_DESCRIPTIONS};
};

TEST_F(Submodule, BringsItsStatementsIntoTheModuleThatIncludesIt)
{
    Write("s.yin", SubmoduleText("s", R"(
        <extension name='e1'/> <feature name='f1'/> <identity name='i1'/>
        <typedef name='t1'><type name='int8'/></typedef>
        <leaf name='n1'><type name='t1'/></leaf> <leaf name='n2'><type name='p:t1'/></leaf>
        <rpc name='r1'/> <notification name='o1'/> <p:x1/>
        <augment target-node='/p:n3'><leaf name='n4'><type name='string'/></leaf></augment>
        <deviation target-node='/p:n5'/>)"));
    ASSERT_EQ(Load("<include module='s'/><extension name='e2'/><feature name='f2'/>"
                   "<identity name='i2'/><typedef name='t2'><type name='t1'/></typedef>"
                   "<container name='n3'/><m:x2/><deviation target-node='/m:n6'/>"),
              ZR_OK);
    const ZrMod *m = ctx.Module("m");
    ASSERT_EQ(m->extensionCount, 2);
    EXPECT_STREQ(m->extensions[0].name, "e1");
    EXPECT_STREQ(m->extensions[1].name, "e2");
    ASSERT_EQ(m->featureCount, 2);
    EXPECT_STREQ(m->features[0].name, "f1");
    ASSERT_EQ(m->identityCount, 2);
    EXPECT_STREQ(m->identities[0].name, "i1");
    ASSERT_EQ(m->typedefCount, 2);
    EXPECT_STREQ(m->typedefs[0].name, "t1");
    ASSERT_EQ(m->deviationCount, 2);
    EXPECT_STREQ(m->deviations[0].targetPath, "/m:n5");
    ASSERT_EQ(m->extInstCount, 2);
    EXPECT_STREQ(m->extInsts[0].moduleName, "m");
    EXPECT_STREQ(m->extInsts[0].extensionName, "x1");
    EXPECT_EQ(TopNodes(), "n1 n2 n3");
    EXPECT_STREQ(m->rpcs->name, "r1");
    EXPECT_STREQ(m->notifications->name, "o1");
    EXPECT_STREQ(m->augments->name, "/m:n3");
    ASSERT_EQ(m->includeCount, 1);
    EXPECT_STREQ(m->includes[0].submoduleName, "s");
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST_F(Submodule, DoesNotReplaceWhatDescribesTheModule)
{
    Write("s.yin", SubmoduleText("s", R"(
        <yang-version value='9'/> <namespace uri='urn:s'/> <prefix value='s'/>
        <organization><text>s</text></organization>
        <description><text>s</text></description>
        <revision date='2099-01-01'/>)"));
    ASSERT_EQ(Load("<include module='s'/><revision date='2000-01-01'/>"
                   "<organization><text>m</text></organization>"),
              ZR_OK);
    const ZrMod *m = ctx.Module("m");
    EXPECT_STREQ(m->ns, "urn:m");
    EXPECT_STREQ(m->prefix, "m");
    EXPECT_EQ(m->yangVersion, ZRS_YANG_VERSION_1);
    EXPECT_STREQ(m->organization, "m");
    EXPECT_EQ(m->description, nullptr);
    EXPECT_STREQ(m->revision, "2000-01-01");
}

TEST_F(Submodule, IsRefusedWhenWhatDescribesItIsWrong)
{
    const struct {
        const char *content, *message;
    } rows[] = {
        {"<revision/>", "Failed to get value of statement \"revision\"."},
        {"<organization/>", "Failed to get value of statement \"organization\"."},
        {"<description/>", "Failed to get value of statement \"description\"."},
        {"<organization><text>a</text></organization><organization><text>b</text></organization>",
         "Statement \"organization\" under statement \"module\" has repeated."},
    };
    for (const auto &row : rows) {
        TestContext fresh{ZR_CTX_KEEP_DESCRIPTIONS};
        ZR_CTX_SetSearchDir(fresh, dir.path().c_str());
        Write("s.yin", SubmoduleText("s", row.content));
        EXPECT_EQ(fresh.LoadBody("m", "<include module='s'/>"), ZR_ERR_FAILED) << row.content;
        EXPECT_THAT(fresh.Messages(), ElementsAre(row.message, "Failed to load submodule \"s\"."));
    }
}

TEST_F(Submodule, TakesAnIdentifierForItsName)
{
    Write("a b.yin", SubmoduleText("a b", ""));
    EXPECT_EQ(Load("<include module='a b'/>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Failed to parse value \"a b\" of statement \"submodule\".",
                            "Failed to load submodule \"a b\"."));
}

TEST_F(Submodule, CanBeReadFromItsElement)
{
    ASSERT_EQ(Load(Leaf("n1")), ZR_OK);
    zrtest::Yin yin(SubmoduleText("s", Leaf("n2")));
    EXPECT_EQ(ZRS_LOADER_ParseSubmoduleContent(ctx.Module("m"), yin.first(), "s"), ZR_OK);
    EXPECT_EQ(TopNodes(), "n1 n2");
    EXPECT_EQ(ZRS_LOADER_ParseSubmoduleContent(ctx.Module("m"), yin.first(), "other"),
              ZR_ERR_INVALID);
    EXPECT_EQ(TopNodes(), "n1 n2");
}

// ---- prefixes

TEST_F(Submodule, CallsTheModuleByThePrefixOfItsBelongsTo)
{
    Write("s.yin", SubmoduleText("s", "<container name='c'><when condition=\"p:a = 'p:b'\"/>"
                                      "<if-feature name='p:f'/></container>"));
    ASSERT_EQ(Load("<include module='s'/><container name='d'><when condition='m:a'/></container>"),
              ZR_OK);
    EXPECT_STREQ(ctx.Node("/m:c")->when, "m:a = 'm:b'");
    EXPECT_STREQ(ctx.Node("/m:c")->ifFeatures[0].moduleName, "m");
    EXPECT_STREQ(ctx.Node("/m:d")->when, "m:a");
}

TEST_F(Submodule, KnowsThePrefixesOfTheModuleBehindItsOwn)
{
    Write("s.yin", SubmoduleText("s", "<import module='s-b'><prefix value='b'/></import>"
                                      "<container name='c'><when condition='a:x = b:y'/>"
                                      "<if-feature name='a:f'/><if-feature name='b:f'/>"
                                      "<if-feature name='m:f'/></container>"));
    const std::string a = "<import module='m-a'><prefix value='a'/></import>";
    const std::string b = "<import module='m-b'><prefix value='b'/></import>";
    const std::string include = "<include module='s'/>";
    for (const std::string &linkage : {a + b + include, include + b + a, a + include + b}) {
        TestContext fresh;
        ZR_CTX_SetSearchDir(fresh, dir.path().c_str());
        ASSERT_EQ(fresh.LoadBody("m", linkage), ZR_OK);
        const ZrNode *c = fresh.Node("/m:c");
        EXPECT_STREQ(c->when, "m-a:x = s-b:y");
        EXPECT_STREQ(c->ifFeatures[0].moduleName, "m-a");
        EXPECT_STREQ(c->ifFeatures[1].moduleName, "s-b");
        EXPECT_STREQ(c->ifFeatures[2].moduleName, "m");
    }
}

TEST_F(Submodule, TakesItsOwnPrefixBeforeAnImportOfTheModule)
{
    Write("s.yin", SubmoduleText("s", "<container name='c'><if-feature name='p:f'/></container>"));
    ASSERT_EQ(Load("<import module='a'><prefix value='p'/></import><include module='s'/>"), ZR_OK);
    EXPECT_STREQ(ctx.Node("/m:c")->ifFeatures[0].moduleName, "m");
}

TEST_F(Submodule, DoesNotKnowThePrefixesOfTheSubmoduleThatIncludesIt)
{
    Write("s1.yin", SubmoduleText("s1", "<import module='a'><prefix value='x'/></import>"
                                        "<include module='s2'/>"));
    Write("s2.yin",
          SubmoduleText("s2", "<container name='c'><if-feature name='x:f'/></container>"));
    EXPECT_EQ(Load("<include module='s1'/>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to find module by prefix \"x\".",
                                            "Failed to parse \"container\" statement \"c\"."));
    TestContext fresh;
    ZR_CTX_SetSearchDir(fresh, dir.path().c_str());
    ASSERT_EQ(fresh.LoadBody("m", "<import module='b'><prefix value='x'/></import>"
                                  "<include module='s1'/>"),
              ZR_OK);
    EXPECT_STREQ(fresh.Node("/m:c")->ifFeatures[0].moduleName, "b");
}

TEST_F(Submodule, AddsItsImportsBehindThoseOfTheModule)
{
    Write("s.yin", SubmoduleText("s", "<import module='b'><prefix value='x'/></import>"
                                      "<import module='a'><prefix value='x2'/></import>"
                                      "<import module='a'><prefix value='y'/></import>"
                                      "<container name='c'><if-feature name='x:f'/></container>"));
    // The prefix "x" means one thing here and another there, whatever stands first.
    ASSERT_EQ(Load("<include module='s'/><import module='a'><prefix value='x'/></import>"
                   "<import module='a'><prefix value='y'/></import>"
                   "<import module='c'><prefix value='z'/></import>"
                   "<container name='d'><if-feature name='x:f'/></container>"),
              ZR_OK);
    EXPECT_STREQ(ctx.Node("/m:c")->ifFeatures[0].moduleName, "b");
    EXPECT_STREQ(ctx.Node("/m:d")->ifFeatures[0].moduleName, "a");
    EXPECT_EQ(Imports(), "a=x a=y c=z b=x a=x2");
}

TEST_F(Submodule, DoesNotRepeatAnImportOfTheModule)
{
    Write("s.yin", SubmoduleText("s", "<import module='a'><prefix value='x'/></import>"));
    ASSERT_EQ(Load("<import module='a'><prefix value='x'/></import><include module='s'/>"), ZR_OK);
    EXPECT_EQ(Imports(), "a=x");
}

// ---- includes in submodules

TEST_F(Submodule, MayIncludeOthers)
{
    Write("s1.yin", SubmoduleText("s1", "<import module='a'><prefix value='x'/></import>"
                                        "<include module='s2'/>" +
                                            Leaf("n1")));
    Write("s2.yin",
          SubmoduleText("s2", "<import module='b'><prefix value='x'/></import>" + Leaf("n2")));
    ASSERT_EQ(Load("<include module='s1'/><include module='s2'/>" + Leaf("n3")), ZR_OK);
    EXPECT_EQ(TopNodes(), "n2 n1 n3");
    EXPECT_EQ(ctx.Module("m")->includeCount, 2);
    EXPECT_EQ(Imports(), "a=x b=x");
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST_F(Submodule, ThatIncludesItselfIsReadOnce)
{
    Write("s.yin", SubmoduleText("s", "<include module='s'/>" + Leaf("n")));
    ASSERT_EQ(Load("<include module='s'/>"), ZR_OK);
    EXPECT_EQ(TopNodes(), "n");
}

TEST_F(Submodule, ThatIsIncludedInACircleIsReadOnce)
{
    Write("s1.yin", SubmoduleText("s1", "<include module='s2'/>" + Leaf("n1")));
    Write("s2.yin", SubmoduleText("s2", "<include module='s1'/>" + Leaf("n2")));
    ASSERT_EQ(Load("<include module='s1'/>"), ZR_OK);
    EXPECT_EQ(TopNodes(), "n2 n1");
}

TEST_F(Submodule, MayBeIncluded128Deep)
{
    for (int i = 1; i <= 129; ++i)
        Write("s" + std::to_string(i) + ".yin",
              SubmoduleText("s" + std::to_string(i),
                            i != 129 ? "<include module='s" + std::to_string(i + 1) + "'/>" : ""));
    EXPECT_EQ(Load("<include module='s2'/>"), ZR_OK);
    EXPECT_EQ(ctx.Module("m")->includeCount, 128);
    TestContext fresh;
    ZR_CTX_SetSearchDir(fresh, dir.path().c_str());
    EXPECT_EQ(fresh.LoadBody("m", "<include module='s1'/>"), ZR_ERR_FAILED);
    EXPECT_THAT(fresh.Messages(), ElementsAre("Failed to load submodule \"s129\".",
                                              "Failed to parse statement \"include\"."));
}

// ---- files

TEST_F(Submodule, IsOneFileUnlessItHasSuffixedParts)
{
    Write("s@2020-01-01.yin", SubmoduleText("s", Leaf("n1")));
    ASSERT_EQ(Load("<include module='s'/>"), ZR_OK);
    EXPECT_EQ(TopNodes(), "n1");
}

TEST_F(Submodule, IsAllOfItsSuffixedParts)
{
    Write("s@@a.yin", SubmoduleText("s", Leaf("n1")));
    Write("s@@b.yin", SubmoduleText("s", Leaf("n2")));
    ASSERT_EQ(Load("<include module='s'/>"), ZR_OK);
    std::string nodes = TopNodes();
    EXPECT_TRUE(nodes == "n1 n2" || nodes == "n2 n1") << nodes; // in the directory's own order
}

TEST_F(Submodule, CannotBeLoadedAsAModule)
{
    Write("s.yin", SubmoduleText("s", ""));
    EXPECT_EQ(ZR_CTX_LoadModule(ctx, "s"), ZR_ERR_INVALID);
    EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to parse module \"s\" from the yin file."));
}

TEST_F(Submodule, LeavesTheNameOfTheIncludingFileInItsMessages)
{
    Write("m.yin", ModuleText("m", "<include module='s'/>"));
    Write("s.yin", SubmoduleText("s", "<leaf/>"));
    EXPECT_EQ(ZR_CTX_LoadModule(ctx, "m"), ZR_ERR_INVALID);
    g_files.clear();
    ZR_CTX_ScanAllSchemaLoadFail(ctx, CollectFile, nullptr);
    EXPECT_THAT(g_files, ElementsAre("s.yin: Failed to get value of statement \"leaf\".",
                                     "m.yin: Failed to load submodule \"s\"."));
    EXPECT_STREQ(ZR_CTX_GetCurYinFile(ctx), "");
}

TEST_F(Submodule, LeavesNoFileNameBehindForAModuleFromMemory)
{
    Write("s.yin", SubmoduleText("s", "<leaf/>"));
    EXPECT_EQ(Load("<include module='s'/>"), ZR_ERR_FAILED);
    g_files.clear();
    ZR_CTX_ScanAllSchemaLoadFail(ctx, CollectFile, nullptr);
    EXPECT_THAT(g_files, ElementsAre("s.yin: Failed to get value of statement \"leaf\".",
                                     "-: Failed to load submodule \"s\"."));
}

// ---- what is wrong with it

const std::string kLoadFailed = "Failed to load submodule \"s\".";
const std::string kIncludeFailed = "Failed to parse statement \"include\".";
const std::string kNoPrefix = "Failed to get value of statement \"prefix\".";

TEST_F(Submodule, ThatIsWrongFailsTheModule)
{
    const std::string yin = "xmlns='urn:ietf:params:xml:ns:yang:yin:1'";
    struct {
        std::string content, first, second;
    } const rows[] = {
        {"", "Failed to read content from the yin file.", kLoadFailed},
        {"<submodule", "Failed to read content from the yin file.", kLoadFailed},
        {ModuleText("s", ""), kLoadFailed, kIncludeFailed},
        {"<submodule " + yin + "/>", "Failed to get value of statement \"submodule\".",
         kLoadFailed},
        {"<submodule name='t' " + yin + "/>",
         "Failed to parse value \"t\" of statement \"submodule\".", kLoadFailed},
        {"<submodule name='s' " + yin + "/>", "Failed to get value of statement \"belongs-to\".",
         kLoadFailed},
        {"<submodule name='s' " + yin + "><belongs-to/></submodule>",
         "Failed to get value of statement \"belongs-to\".", kLoadFailed},
        {"<submodule name='s' " + yin +
             "><belongs-to module='n'><prefix value='n'/></belongs-to>"
             "</submodule>",
         "Failed to parse value \"n\" of statement \"belongs-to\".", kLoadFailed},
        {"<submodule name='s' " + yin + "><belongs-to module='m'/></submodule>", kNoPrefix,
         "Failed to parse value \"m\" of statement \"belongs-to\"."},
        {"<submodule name='s' " + yin +
             "><belongs-to module='m'><prefix/></belongs-to>"
             "</submodule>",
         kNoPrefix, "Failed to parse value \"m\" of statement \"belongs-to\"."},
        {SubmoduleText("s", "<import/>"), "Failed to get value of statement \"import\".",
         "Failed to parse statement \"import\"."},
        {SubmoduleText("s", "<include module='none'/>"), "Failed to load submodule \"none\".",
         "Failed to parse statement \"include\"."},
        {SubmoduleText("s", "<p:a/><container/>"),
         "Failed to get value of statement \"container\".", kLoadFailed},
    };
    for (const auto &row : rows) {
        TestContext fresh;
        ZR_CTX_SetSearchDir(fresh, dir.path().c_str());
        Write("s.yin", row.content);
        EXPECT_EQ(fresh.LoadBody("m", "<include module='s'/>"), ZR_ERR_FAILED) << row.content;
        EXPECT_THAT(fresh.Messages(), ElementsAre(row.first, row.second)) << row.content;
        EXPECT_EQ(fresh.Module("m"), nullptr);
        EXPECT_EQ(fresh.LoadBody("m", Leaf("a")), ZR_OK) << "the context stays usable";
    }
}

TEST_F(Submodule, HasTheStatusOfWhatIsWrong)
{
    zrtest::ModuleUnderTest module;
    ZR_CTX_SetSearchDir(module.ctx, dir.path().c_str());
    EXPECT_EQ(ZRS_LOADER_LoadSubModule(module, "s"), ZR_ERR_NOT_FOUND);
    Write("s.yin", "<x/>");
    EXPECT_EQ(ZRS_LOADER_LoadSubModule(module, "s"), ZR_ERR_INVALID);
    Write("s.yin", "<submodule name='s' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>"
                   "<belongs-to module='t'><prefix value='p'/></belongs-to>"
                   "<deviation target-node='/p:a'><deviate value='x'/></deviation></submodule>");
    EXPECT_EQ(ZRS_LOADER_LoadSubModule(module, "s"), UINT32_MAX);
    EXPECT_STREQ(module->prefix, "t");
    EXPECT_EQ(module->importCount, 2);
}

TEST_F(Submodule, LeavesNothingBehindWhenAnyAllocationFails)
{
    Write("s.yin", SubmoduleText("s", "<import module='a1'><prefix value='x1'/></import>"
                                      "<feature name='f1'/><leaf name='n1'><type name='int8'/>"
                                      "</leaf><p:e1/>"));
    const std::string text = ModuleText("m", "<include module='s'/><feature name='f2'/>");
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        TestContext fresh;
        ZR_CTX_SetSearchDir(fresh, dir.path().c_str());
        memory.RunStatus([&] { return fresh.Load(text); });
    });
}

} // namespace
