#include "loader/files/module_content.h"

#include <string>

#include "loader/loader_fixture.h"
#include "model/module_records.h"
#include "schema/members/ext_inst.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::TestContext;

namespace {

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

} // namespace
