// SPDX-License-Identifier: Apache-2.0
// Coupling: augments and deviations of one module change the schema of another, whichever of the
// two is loaded first.
#include "application.h"

namespace {

using testing::ElementsAre;

class Coupling : public Application {
protected:
    void SetUp() override
    {
        Write("box", R"(
            <container name='box'>
              <leaf name='size'><type name='uint8'/><default value='1'/></leaf>
              <leaf name='colour'><type name='string'/></leaf>
            </container>)");
        Write("wheels", R"(
            <import module='box'><prefix value='b'/></import>
            <augment target-node='/b:box'>
              <when condition="b:size &gt; 10"/>
              <leaf name='wheels'><type name='uint8'/></leaf>
            </augment>)");
        Write("cheap", R"(
            <import module='box'><prefix value='b'/></import>
            <deviation target-node='/b:box/b:colour'><deviate value='not-supported'/></deviation>
            <deviation target-node='/b:box/b:size'>
              <deviate value='replace'>
                <type name='uint8'><range value='1..5'/></type>
                <default value='2'/>
              </deviate>
              <deviate value='add'><must condition='. != 3'/></deviate>
            </deviation>)");
        Start(ZR_CTX_KEEP_UNITS);
    }
};

TEST_F(Coupling, AnAugmentPutsItsNodesIntoTheOtherModulesTree)
{
    ASSERT_EQ(Load("box"), ZR_OK);
    ASSERT_EQ(Load("wheels"), ZR_OK);
    ZrNode *augment = nullptr;
    ZrNode *wheels = ZR_CTX_GetTargetNode(ctx_, "/box:box/wheels:wheels", &augment);
    ASSERT_NE(wheels, nullptr);
    EXPECT_EQ(ZR_NODE_GetParentNode(wheels), Node("/box:box"));
    EXPECT_EQ(ZR_NODE_GetModule(wheels), Module("wheels"));
    EXPECT_EQ(ZR_NODE_GetAugmentTargetNode(augment), Node("/box:box"));
    EXPECT_STREQ(ZR_NODE_GetWhenCond(wheels), "../box:size > 10")
        << "the augment's condition, as the leaf sees it";
    EXPECT_EQ(Tree("box"), R"(
module: box
+--rw box
   +--rw size?            uint8 <1>
   +--rw colour?          string
   +--rw wheels:wheels?   uint8
)");
}

TEST_F(Coupling, AnAugmentWaitsForItsTarget)
{
    ASSERT_EQ(Load("wheels"), ZR_OK);
    auto note = [](ZrNode *augment, uint32_t, void *out) {
        static_cast<Texts *>(out)->push_back(
            std::string(ZR_NODE_GetNodeName(augment)) +
            (ZR_NODE_GetAugmentTargetNode(augment) != nullptr ? " is there" : " is not there"));
        return 0u;
    };
    Texts seen;
    EXPECT_EQ(ZR_MOD_IterScanAugmentNode(Module("wheels"), note, &seen), ZR_OK);
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_EQ(ZR_MOD_IterScanAugmentNode(Module("wheels"), note, &seen), ZR_OK);
    EXPECT_THAT(seen, ElementsAre("/box:box is not there", "/box:box is there"));
    EXPECT_NE(Node("/box:box/wheels:wheels"), nullptr);
}

TEST_F(Coupling, ADeviationTakesNodesAwayAndChangesOthers)
{
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_EQ(Check("/box:box/size", "6"), ZR_OK);
    ASSERT_EQ(Load("cheap"), ZR_OK);
    EXPECT_EQ(Node("/box:box/colour"), nullptr);
    EXPECT_EQ(Check("/box:box/size", "6"), ZR_ERR_VALUE_RANGE);
    EXPECT_STREQ(ZR_NODE_GetDefaultValueStr(Node("/box:box/size")), "2");
    Texts musts;
    auto note = [](const char *condition, const char *, const char *, void *out) {
        static_cast<Texts *>(out)->push_back(condition);
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanAllMusts(Node("/box:box/size"), note, &musts), ZR_OK);
    EXPECT_THAT(musts, ElementsAre(". != 3"));
}

TEST_F(Coupling, TheSchemaIsTheSameInWhateverOrderModulesAreLoaded)
{
    Texts trees;
    for (const Texts &order : {Texts{"box", "wheels", "cheap"}, Texts{"cheap", "wheels", "box"},
                               Texts{"wheels", "box", "cheap"}, Texts{"cheap", "box", "wheels"}}) {
        ZR_CTX_Delete(ctx_);
        Start();
        for (const std::string &name : order)
            ASSERT_EQ(Load(name), ZR_OK);
        trees.push_back(Tree("box"));
    }
    EXPECT_THAT(trees, testing::Each(trees[0]));
    EXPECT_THAT(trees[0], testing::HasSubstr("wheels:wheels"));
    EXPECT_THAT(trees[0], testing::Not(testing::HasSubstr("colour")));
}

TEST_F(Coupling, DeviationsAreListedWithWhetherTheyAreApplied)
{
    Texts seen;
    auto note = [](const char *path, const char *module, uint32_t applied, void *out) {
        static_cast<Texts *>(out)->push_back(std::string(path) + " of " + module +
                                             (applied == 1 ? "" : " (pending)"));
        return 0u;
    };
    ASSERT_EQ(Load("cheap"), ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanAllDeviations(Module("cheap"), note, &seen), ZR_OK);
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanAllDeviations(Module("cheap"), note, &seen), ZR_OK);
    EXPECT_THAT(seen,
                ElementsAre("/box:box/colour of box (pending)", "/box:box/size of box (pending)",
                            "/box:box/colour of box", "/box:box/size of box"));
}

Texts g_moved;

TEST_F(Coupling, TheApplicationIsToldWhenTheNodesOfAnAugmentComeAndGo)
{
    g_moved.clear();
    ZR_CTX_SetFirstAugChildRelinkFunc(ctx_, [](ZrCtx *, ZrNode *node, ZrCtx *) {
        g_moved.push_back(std::string(ZR_NODE_GetNodeName(node)) + " below " +
                          ZR_NODE_GetNodeName(ZR_NODE_GetParentNode(node)));
    });
    ASSERT_EQ(Load("wheels"), ZR_OK);
    EXPECT_THAT(g_moved, ElementsAre());
    ASSERT_EQ(Load("box"), ZR_OK);
    EXPECT_THAT(g_moved, ElementsAre("wheels below box"));
    ZR_CTX_Delete(ctx_);
    ctx_ = nullptr;
    EXPECT_THAT(g_moved, ElementsAre("wheels below box", "wheels below box"));
}

std::string g_removed;

TEST_F(Coupling, TheApplicationIsToldBeforeADeviationRemovesANode)
{
    ZR_CTX_SetBeforeDeviateNotSupportFunc(ctx_, [](ZrCtx *, ZrNode *node, ZrCtx *) {
        char path[64];
        EXPECT_EQ(ZR_NODE_GetNodePath(node, path, sizeof(path)), ZR_OK);
        g_removed += path;
    });
    ASSERT_EQ(Load("box"), ZR_OK);
    ASSERT_EQ(Load("cheap"), ZR_OK);
    EXPECT_EQ(g_removed, "/box:box/colour");
}

} // namespace
