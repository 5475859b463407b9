// SPDX-License-Identifier: Apache-2.0
// Unloading: afterwards the schema is as if the module had never been there; what depends on it is
// loaded again.
#include "application.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Texts g_events;

void OnUnload(ZrCtx *ctx, const char *moduleName)
{
    EXPECT_NE(ZR_CTX_GetModuleByModName(ctx, moduleName), nullptr);
    g_events.push_back(moduleName);
}

class Unloading : public Application {
protected:
    void SetUp() override
    {
        g_events.clear();
        Write("box",
              "<container name='box'><leaf name='size'><type name='uint8'/></leaf></container>");
        Write("wheels", R"(
            <import module='box'><prefix value='b'/></import>
            <feature name='brake'/>
            <augment target-node='/b:box'><leaf name='wheels'><type name='uint8'/></leaf></augment>)");
        Write("user", "<import module='box'><prefix value='b'/></import>");
    }
    void LoadAll(std::initializer_list<const char *> names)
    {
        for (const char *name : names)
            ASSERT_EQ(Load(name), ZR_OK);
    }
};

TEST_F(Unloading, TakesAModuleWithItsNodesAndItsErrors)
{
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_EQ(Unload("box"), ZR_OK);
    EXPECT_THAT(Loaded(), IsEmpty());
    EXPECT_EQ(Node("/box:box"), nullptr);
    EXPECT_EQ(Unload("box"), ZR_OK) << "gone already";
}

TEST_F(Unloading, ReplacesTheModulesThatReachIntoTheModule)
{
    Start();
    LoadAll({"box", "wheels", "user"});
    ZR_MOD_SetPrivate(Module("user"), this);
    ZR_MOD_SetPrivate(Module("wheels"), this);
    ASSERT_EQ(ZR_MOD_EnableFeature(Module("wheels"), "brake"), ZR_OK);
    ZR_CTX_SetReloadModuleCbFunc(ctx_, OnUnload);
    EXPECT_EQ(Unload("box"), ZR_OK);
    EXPECT_THAT(g_events, ElementsAre("box", "wheels"));
    EXPECT_THAT(Loaded(), ElementsAre("user", "wheels"));
    EXPECT_EQ(ZR_MOD_GetPrivate(Module("user")), this) << "it merely imports the module";
    EXPECT_EQ(ZR_MOD_GetPrivate(Module("wheels")), nullptr) << "a new module";
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "wheels", "brake"), 1u) << "as it was";
}

TEST_F(Unloading, OfAnAugmentingModuleLeavesItsTargetAsItIs)
{
    Start();
    LoadAll({"box", "wheels"});
    ZR_MOD_SetPrivate(Module("box"), this);
    EXPECT_EQ(Unload("wheels"), ZR_OK);
    EXPECT_EQ(ZR_MOD_GetPrivate(Module("box")), this);
    EXPECT_EQ(Node("/box:box/wheels:wheels"), nullptr);
}

TEST_F(Unloading, OfADeviatingModuleGivesTheNodesBackAsTheyWere)
{
    Write("cheap", R"(
        <import module='box'><prefix value='b'/></import>
        <deviation target-node='/b:box/b:size'><deviate value='not-supported'/></deviation>)");
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    std::string before = Tree("box");
    ASSERT_EQ(Load("cheap"), ZR_OK);
    EXPECT_EQ(Node("/box:box/size"), nullptr);
    EXPECT_EQ(Unload("cheap"), ZR_OK);
    EXPECT_EQ(Tree("box"), before);
}

TEST_F(Unloading, BringsAModuleBackThatOneLoadedAgainImports)
{
    Start(ZR_CTX_LOAD_IMPORTS);
    ASSERT_EQ(Load("wheels"), ZR_OK);
    ZR_MOD_SetPrivate(Module("box"), this);
    EXPECT_EQ(Unload("box"), ZR_OK);
    EXPECT_THAT(Loaded(), ElementsAre("box", "wheels"));
    EXPECT_EQ(ZR_MOD_GetPrivate(Module("box")), nullptr) << "a new module";
    EXPECT_NE(Node("/box:box/wheels:wheels"), nullptr);
}

TEST_F(Unloading, DoesNotBringAModuleFromMemoryBack)
{
    Start();
    ASSERT_EQ(Load("box"), ZR_OK);
    ASSERT_EQ(ZR_CTX_LoadMemory(ctx_, zrtest::ModuleText("mine", R"(
        <import module='box'><prefix value='b'/></import>
        <augment target-node='/b:box'><leaf name='x'><type name='string'/></leaf></augment>)")
                                          .c_str()),
              ZR_OK);
    EXPECT_NE(Unload("box"), ZR_OK) << "a module could not be loaded again";
    EXPECT_THAT(Loaded(), IsEmpty());
}

} // namespace
