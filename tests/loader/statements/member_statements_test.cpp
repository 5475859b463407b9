// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/loader_fixture.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::Yin;

// ---- feature

TEST(Feature, KeepsItsNameAndIfFeaturesAndStartsDisabled)
{
    ModuleUnderTest module;
    ZrsFeature feature = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseFeature,
                    "<feature name='f'><if-feature name='g'/><if-feature name='x:h'/>"
                    "<description/><status value='nonsense'/></feature>",
                    &feature),
              ZR_OK);
    EXPECT_STREQ(feature.name, "f");
    EXPECT_EQ(feature.flags, 0);
    ASSERT_EQ(feature.ifFeatureCount, 2);
    EXPECT_STREQ(feature.ifFeatures[0].moduleName, "t");
    EXPECT_STREQ(feature.ifFeatures[0].featureName, "g");
    EXPECT_STREQ(feature.ifFeatures[1].moduleName, "x-mod");
    EXPECT_STREQ(feature.ifFeatures[1].featureName, "h");
    EXPECT_THAT(module.Messages(), IsEmpty());
    ZRS_MDL_ClearFeature(module.dict(), &feature);
}

TEST(Feature, WithoutANameFails)
{
    ModuleUnderTest module;
    ZrsFeature feature = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseFeature, "<feature/>", &feature), ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"feature\"."));
}

TEST(Feature, IsClearedWhenAnIfFeatureFails)
{
    ModuleUnderTest module;
    ZrsFeature feature = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseFeature,
                    "<feature name='f'><if-feature name='g'/><if-feature name='q:h'/></feature>",
                    &feature),
              ZR_ERR_INVALID);
    EXPECT_EQ(feature.name, nullptr);
    EXPECT_EQ(feature.ifFeatures, nullptr);
    EXPECT_EQ(feature.ifFeatureCount, 0);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\".",
                                               "Failed to parse value \"f\" of statement "
                                               "\"feature\"."));
}

// ---- if-feature

TEST(IfFeature, NamesTheModuleOfItsPrefix)
{
    struct {
        const char *argument, *moduleName, *featureName;
    } const rows[] = {{"f", "t", "f"}, {"t:f", "t", "f"}, {"x:f-1.2_3", "x-mod", "f-1.2_3"}};
    for (const auto &row : rows) {
        ModuleUnderTest module;
        ZrsIfFeature entry = {};
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIfFeature,
                        "<if-feature name='" + std::string(row.argument) + "'/>", &entry),
                  ZR_OK);
        EXPECT_STREQ(entry.moduleName, row.moduleName);
        EXPECT_STREQ(entry.featureName, row.featureName);
        ZRS_NODE_ClearIfFeature(module.dict(), &entry);
    }
}

union ReferenceRecord {
    ZrsIfFeature ifFeature;
    ZrsIdentBase base;
};

// ---- identity

TEST(Identity, KeepsItsBasesIfFeaturesAndDescription)
{
    ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
    ZrsIdentity identity = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentity,
                    "<identity name='i'><base name='x:a'/><if-feature name='f'/><base name='b'/>"
                    "<description><text>d</text></description></identity>",
                    &identity),
              ZR_OK);
    EXPECT_STREQ(identity.name, "i");
    ASSERT_EQ(identity.baseCount, 2);
    EXPECT_STREQ(identity.bases[0].moduleName, "x-mod");
    EXPECT_STREQ(identity.bases[0].identityName, "a");
    EXPECT_STREQ(identity.bases[1].moduleName, "t");
    EXPECT_STREQ(identity.bases[1].identityName, "b");
    ASSERT_EQ(identity.ifFeatureCount, 1);
    EXPECT_STREQ(identity.ifFeatures[0].featureName, "f");
    EXPECT_STREQ(identity.description, "d");
    ZRS_MDL_ClearIdentity(module.dict(), &identity);
}

TEST(Identity, WithoutANameFails)
{
    ModuleUnderTest module;
    ZrsIdentity identity = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentity, "<identity/>", &identity), ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"identity\"."));
}

TEST(Identity, IsClearedWhenABaseFails)
{
    ModuleUnderTest module;
    ZrsIdentity identity = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentity,
                    "<identity name='i'><if-feature name='f'/><base name='q:a'/></identity>",
                    &identity),
              ZR_ERR_INVALID);
    EXPECT_EQ(identity.name, nullptr);
    EXPECT_EQ(identity.bases, nullptr);
    EXPECT_EQ(identity.ifFeatures, nullptr);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\"."));
}

TEST(Identity, TakesOneDescriptionOnly)
{
    ModuleUnderTest module;
    ZrsIdentity identity = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentity,
                    "<identity name='i'><description/><description/></identity>", &identity),
              ZR_ERR_FAILED);
    EXPECT_THAT(
        module.Messages(),
        ElementsAre("Statement \"description\" under statement \"identity\" has repeated."));
}

// ---- extension

TEST(Extension, KeepsItsNameItsArgumentAndWhereYinPutsIt)
{
    struct {
        const char *content, *argument;
        uint32_t yinElement;
    } const rows[] = {
        {"", nullptr, 0},
        {"<argument name='a'/>", "a", 0},
        {"<argument name='a'><yin-element value='false'/></argument>", "a", 0},
        {"<argument name='a'><yin-element value='true'/></argument>", "a", 1},
    };
    for (const auto &row : rows) {
        ModuleUnderTest module;
        ZrsExtension extension = {};
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtension,
                        "<extension name='e'>" + std::string(row.content) + "</extension>",
                        &extension),
                  ZR_OK);
        EXPECT_STREQ(extension.name, "e");
        EXPECT_STREQ(extension.argument, row.argument);
        EXPECT_EQ(extension.yinElement, row.yinElement);
        ZRS_MDL_ClearExtension(module.dict(), &extension);
    }
}

struct BadExtension {
    const char *xml;
    uint32_t status;
    const char *message;
};

const BadExtension kBadExtensions[] = {
    {"<extension/>", ZR_ERR_INVALID, "Failed to get value of statement \"extension\"."},
    {"<extension name='e'><argument/></extension>", ZR_ERR_INVALID,
     "Failed to get value of statement \"argument\"."},
    {"<extension name='e'><argument name='a'/><argument name='b'/></extension>", ZR_ERR_FAILED,
     "Statement \"argument\" under statement \"extension\" has repeated."},
    {"<extension name='e'><argument name='a'><yin-element/></argument></extension>", ZR_ERR_INVALID,
     "Failed to get value of statement \"yin-element\"."},
    {"<extension name='e'><argument name='a'><yin-element value='1'/></argument></extension>",
     ZR_ERR_INVALID, "Failed to parse value \"1\" of statement \"yin-element\"."},
    {"<extension name='e'><argument name='a'><yin-element value='true'/>"
     "<yin-element value='true'/></argument></extension>",
     ZR_ERR_FAILED, "Statement \"yin-element\" under statement \"argument\" has repeated."},
};

TEST(Extension, IsClearedWhenSomethingIsWrongWithIt)
{
    for (const BadExtension &row : kBadExtensions) {
        ModuleUnderTest module;
        ZrsExtension extension = {};
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtension, row.xml, &extension), row.status)
            << row.xml;
        EXPECT_EQ(extension.name, nullptr);
        EXPECT_EQ(extension.argument, nullptr);
        EXPECT_THAT(module.Messages(), ElementsAre(row.message));
    }
}

// ---- memory

TEST(Definitions, LeaveNothingBehindWhenAnyAllocationFails)
{
    ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrsFeature feature = {};
        ZrsIdentity identity = {};
        ZrsExtension extension = {};
        uint32_t status = memory.Run([&] {
            uint32_t first =
                Parse(module, ZRS_LOADER_ParseFeature,
                      "<feature name='f1'><if-feature name='f2'/></feature>", &feature);
            uint32_t second = Parse(module, ZRS_LOADER_ParseIdentity,
                                    "<identity name='i1'><base name='i2'/><if-feature name='f3'/>"
                                    "<description><text>d1</text></description></identity>",
                                    &identity);
            uint32_t third =
                Parse(module, ZRS_LOADER_ParseExtension,
                      "<extension name='e1'><argument name='a1'/></extension>", &extension);
            return std::max({first, second, third}); // one of them, or none, is short of memory
        });
        ZRS_MDL_ClearFeature(module.dict(), &feature);
        ZRS_MDL_ClearIdentity(module.dict(), &identity);
        ZRS_MDL_ClearExtension(module.dict(), &extension);
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        ZR_CTX_DeleteErrNodeByModName(module->ctx->errMng, "t");
    });
}

std::vector<std::string> *g_asked = nullptr;

uint32_t Filter(const char *moduleName, const char *extensionName)
{
    g_asked->push_back(std::string(moduleName) + ":" + extensionName);
    return std::string(extensionName) == "skip" ? 7 : 0;
}

// A node of the module, as its own parser makes it.
struct Container {
    explicit Container(ModuleUnderTest &module) : node(ZRS_NODE_New(ZR_NODE_CONTAINER))
    {
        node->module = module;
    }
    ~Container() { ZRS_NODE_Free(node); }
    ZrNode *operator->() { return node; }
    ZrNode *node;
};

uint32_t ParseUnderNode(ModuleUnderTest &module, Container &container, const std::string &xml)
{
    Yin yin(xml);
    uint16_t unused = 0, total = 0;
    ZrsSubElem rows[] = {{ZRS_STMT_EXTENSION_INSTANCE, container.node, &unused, &total,
                          sizeof(ZrsExtInst), ZRS_ROW_ARRAY}};
    return ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_CONTAINER, rows, 1);
}

TEST(ExtensionInstance, KeepsModuleNameExtensionNameAndArgument)
{
    ModuleUnderTest module;
    ZrsExtInst instance = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtInst, "<x:ext any='arg' other='no'/>", &instance),
              ZR_OK);
    EXPECT_STREQ(instance.moduleName, "x-mod");
    EXPECT_STREQ(instance.extensionName, "ext");
    EXPECT_STREQ(instance.argument, "arg");
    EXPECT_EQ(instance.childCount, 0);
    EXPECT_THAT(module.Messages(), IsEmpty());
    ZRS_EXT_ClearExtInst(module.dict(), &instance);
}

TEST(ExtensionInstance, MayHaveNoArgumentAndBeOfTheModuleItself)
{
    ModuleUnderTest module;
    ZrsExtInst instance = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtInst, "<t:ext xmlns:t='urn:t'/>", &instance), ZR_OK);
    EXPECT_STREQ(instance.moduleName, "t");
    EXPECT_EQ(instance.argument, nullptr);
    ZRS_EXT_ClearExtInst(module.dict(), &instance);
}

TEST(ExtensionInstance, KeepsTheInstancesInsideIt)
{
    ModuleUnderTest module;
    ZrsExtInst instance = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtInst,
                    "<x:a><leaf name='l'/>text<x:b n='1'><acm:c/></x:b><x:b n='2'/></x:a>",
                    &instance),
              ZR_OK);
    ASSERT_EQ(instance.childCount, 2);
    EXPECT_STREQ(instance.children[0].argument, "1");
    EXPECT_STREQ(instance.children[1].argument, "2");
    ASSERT_EQ(instance.children[0].childCount, 1);
    EXPECT_STREQ(instance.children[0].children[0].moduleName, "ietf-netconf-acm");
    ZRS_EXT_ClearExtInst(module.dict(), &instance);
}

TEST(ExtensionInstance, OfAnUnknownPrefixFails)
{
    ModuleUnderTest module;
    ZrsExtInst instance = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtInst, "<q:ext/>", &instance), ZR_ERR_INVALID);
    EXPECT_EQ(instance.extensionName, nullptr);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\"."));
}

TEST(ExtensionInstance, OfANamespaceWithoutAPrefixFails)
{
    ModuleUnderTest module;
    ZrsExtInst instance = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtInst, "<ext xmlns='urn:x'/>", &instance),
              ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"\"."));
}

TEST(ExtensionInstance, IsClearedWhenOneInsideItFails)
{
    ModuleUnderTest module;
    ZrsExtInst instance = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtInst, "<x:a n='1'><x:b/><q:c/></x:a>", &instance),
              ZR_ERR_INVALID);
    EXPECT_EQ(instance.extensionName, nullptr);
    EXPECT_EQ(instance.children, nullptr);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\".",
                                               "Failed to parse extension instance \"x-mod:a\""));
}

// ---- under a schema node

TEST(ExtensionInstanceOfANode, IsCountedByTheNode)
{
    ModuleUnderTest module;
    Container container(module);
    ASSERT_EQ(ParseUnderNode(module, container, "<x:a/><x:b n='1'><x:c/></x:b><x:a/>"), ZR_OK);
    ASSERT_EQ(container->extInstCount, 3);
    EXPECT_STREQ(container->extInsts[0].extensionName, "a");
    EXPECT_STREQ(container->extInsts[1].extensionName, "b");
    EXPECT_EQ(container->extInsts[1].childCount, 1);
    EXPECT_STREQ(container->extInsts[2].extensionName, "a");
}

TEST(ExtensionInstanceOfANode, MakesRoomForItselfWhenNobodyElseDid)
{
    ModuleUnderTest module;
    Container container(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtInst, "<x:a/>", container.node, ZRS_STMT_LEAF),
              ZR_OK);
    EXPECT_EQ(container->extInstCount, 1);
}

TEST(ExtensionInstanceOfANode, IsNotKeptWithoutMemoryForThatRoom)
{
    ModuleUnderTest module;
    Container container(module);
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtInst, "<x:a/>", container.node, ZRS_STMT_LEAF),
              ZR_ERR_NO_MEMORY);
    EXPECT_EQ(container->extInsts, nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(ExtensionInstanceOfANode, SetsTheNacmFlagsOfTheNode)
{
    struct {
        const char *xml;
        uint32_t flags;
    } const rows[] = {
        {"<acm:default-deny-write/>", 0x1000},
        {"<acm:default-deny-all/>", 0x2000},
        {"<acm:default-deny-all/><acm:default-deny-write/>", 0x3000},
        {"<acm:other/>", 0},
        {"<x:default-deny-all/>", 0},
        {"<x:outer><acm:default-deny-all/></x:outer>", 0},
    };
    for (const auto &row : rows) {
        ModuleUnderTest module;
        Container container(module);
        EXPECT_EQ(ParseUnderNode(module, container, row.xml), ZR_OK);
        EXPECT_EQ(container->flags, row.flags) << row.xml;
    }
}

TEST(ExtensionInstanceOfANode, ThatFailsTakesAllOfTheNodesInstancesWithIt)
{
    ModuleUnderTest module;
    Container container(module);
    EXPECT_EQ(ParseUnderNode(module, container, "<x:a><x:b/></x:a><x:c><q:d/></x:c><x:e/>"),
              ZR_ERR_INVALID);
    EXPECT_EQ(container->extInstCount, 0);
    EXPECT_EQ(container->extInsts, nullptr);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\".",
                                               "Failed to parse extension instance \"x-mod:c\""));
}

// ---- the filter

TEST(ExtensionInstanceFilter, IsAskedWithModuleNameAndExtensionName)
{
    ModuleUnderTest module;
    std::vector<std::string> asked;
    g_asked = &asked;
    ZR_CTX_SetExtInstFilterCbFunc(module.ctx, Filter);
    Container container(module);
    EXPECT_EQ(ParseUnderNode(module, container,
                             "<x:keep><x:skip/><acm:keep/></x:keep><acm:skip/><x:keep/>"),
              ZR_OK);
    EXPECT_THAT(asked, ElementsAre("x-mod:keep", "ietf-netconf-acm:skip", "x-mod:keep",
                                   "x-mod:skip", "ietf-netconf-acm:keep"));
    ASSERT_EQ(container->extInstCount, 2);
    ASSERT_EQ(container->extInsts[0].childCount, 1);
    EXPECT_STREQ(container->extInsts[0].children[0].moduleName, "ietf-netconf-acm");
}

TEST(ExtensionInstanceFilter, IsNotAskedAboutAnUnknownPrefix)
{
    ModuleUnderTest module;
    std::vector<std::string> asked;
    g_asked = &asked;
    ZR_CTX_SetExtInstFilterCbFunc(module.ctx, Filter);
    Yin yin("<q:skip/>");
    EXPECT_EQ(ZRS_LOADER_IsExtInstNeedParse(module, yin.first()), 1u);
    EXPECT_THAT(asked, IsEmpty());
}

TEST(ExtensionInstanceFilter, WithoutOneEveryInstanceIsKept)
{
    ModuleUnderTest module;
    Yin yin("<x:skip/>");
    EXPECT_EQ(ZRS_LOADER_IsExtInstNeedParse(module, yin.first()), 1u);
}

// Instances of the module itself are marked before the filter is asked.
TEST(ExtensionInstanceFilter, AlsoHoldsForTheModulesOwnInstances)
{
    std::vector<std::string> asked;
    g_asked = &asked;
    zrtest::TestContext ctx;
    ZR_CTX_SetExtInstFilterCbFunc(ctx, Filter);
    ASSERT_EQ(ctx.LoadBody("m", "<m:skip/><m:keep/><m:skip/>"), ZR_OK);
    ASSERT_EQ(ctx.Module("m")->extInstCount, 1);
    EXPECT_STREQ(ctx.Module("m")->extInsts[0].extensionName, "keep");
    EXPECT_THAT(asked, ElementsAre("m:skip", "m:keep", "m:skip"));
}

// ---- memory

TEST(ExtensionInstance, LeavesNothingBehindWhenAnyAllocationFails)
{
    ModuleUnderTest module;
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        {
            Container container(module);
            uint32_t status = memory.Run([&] {
                return ParseUnderNode(module, container, "<x:a n='1'><x:b n='2'/></x:a><x:c/>");
            });
            EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
            EXPECT_EQ(container->extInstCount, memory.Failed() ? 0 : 2);
        }
        ZR_CTX_DeleteErrNodeByModName(module->ctx->errMng, "t");
    });
}

} // namespace
