#include <string>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/loader_fixture.h"
#include "schema/members/ext_inst.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::Yin;

namespace {

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
