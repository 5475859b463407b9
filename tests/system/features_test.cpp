// SPDX-License-Identifier: Apache-2.0
// Features: what is optional in a schema, and how a server says which of it is there.
#include "application.h"

namespace {

using testing::ElementsAre;

class Features : public Application {
protected:
    void SetUp() override
    {
        Start();
        Have("box", R"(
            <feature name='lid'/>
            <feature name='lock'/>
            <container name='box'>
              <leaf name='size'><type name='uint8'/></leaf>
              <container name='lid'>
                <if-feature name='lid'/>
                <leaf name='lock'><if-feature name='lock'/><type name='string'/></leaf>
              </container>
            </container>)");
    }
};

TEST_F(Features, AreOffAfterLoadingAndTakeTheirNodesOutOfThePrintedTree)
{
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "box", "lid"), 0u);
    EXPECT_EQ(ZR_NODE_IsEnabled(Node("/box:box/lid")), 0u);
    EXPECT_EQ(Tree("box"), R"(
module: box
+--rw box
   +--rw size?   uint8
)");
}

TEST_F(Features, AreTurnedOnAndOffOneByOneOrAllAtOnce)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(Module("box"), "lid"), ZR_OK);
    EXPECT_EQ(ZR_NODE_IsEnabled(Node("/box:box/lid")), 1u);
    EXPECT_EQ(ZR_NODE_IsEnabled(Node("/box:box/lid/lock")), 0u);
    EXPECT_EQ(ZR_MOD_EnableFeature(Module("box"), "*"), ZR_OK);
    EXPECT_EQ(Tree("box"), R"(
module: box
+--rw box
   +--rw size?   uint8
   +--rw lid
      +--rw lock?   string
)");
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "box", "lock"), ZR_OK);
    EXPECT_EQ(ZR_MOD_DisableFeature(Module("box"), "lid"), ZR_OK);
    EXPECT_EQ(ZR_MOD_EnableFeature(Module("box"), "wheels"), ZR_ERR_INVALID) << "there is none";
}

TEST_F(Features, AreListedWithTheirState)
{
    ASSERT_EQ(ZR_MOD_EnableFeature(Module("box"), "lock"), ZR_OK);
    Texts seen;
    auto note = [](const char *name, uint32_t enabled, void *out) {
        static_cast<Texts *>(out)->push_back(std::string(name) + (enabled == 1 ? " on" : " off"));
        return 0u;
    };
    EXPECT_EQ(ZR_MOD_ScanAllFeatures(Module("box"), note, &seen), ZR_OK);
    EXPECT_THAT(seen, ElementsAre("lid off", "lock on"));
}

TEST_F(Features, OfANodeAreListedWithTheModulesThatDefineThem)
{
    Have("wheels", R"(
        <import module='box'><prefix value='b'/></import>
        <feature name='brake'/>
        <augment target-node='/b:box'>
          <if-feature name='b:lid'/>
          <leaf name='brake'><if-feature name='brake'/><type name='empty'/></leaf>
        </augment>)");
    Texts seen;
    auto note = [](const char *module, const char *feature, void *out) {
        static_cast<Texts *>(out)->push_back(std::string(module) + ":" + feature);
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanAllIfFeatures(Node("/box:box/wheels:brake"), note, &seen), ZR_OK);
    EXPECT_THAT(seen, ElementsAre("wheels:brake", "box:lid")) << "its own, and the augment's";
}

} // namespace
