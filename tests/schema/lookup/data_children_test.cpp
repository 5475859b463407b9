#include <gtest/gtest.h>
#include <zrschema/zrschema.h>

#include <string>

#include "support/context.h"

namespace {

constexpr const char *kBase = R"(
  <feature name="off"/>
  <container name="top">
    <leaf name="plain"><type name="string"/></leaf>
    <choice name="way">
      <case name="by-air"><leaf name="flight"><type name="string"/></leaf></case>
      <container name="ship"/>
      <case name="by-land">
        <choice name="vehicle"><leaf name="train"><type name="string"/></leaf></choice>
      </case>
    </choice>
    <leaf name="hidden"><if-feature name="off"/><type name="string"/></leaf>
    <list name="entry"><config value="false"/>
      <action name="reset">
        <input><leaf name="value"><type name="int8"/></leaf></input>
        <output><leaf name="value"><type name="string"/></leaf></output>
      </action>
      <notification name="moved"><leaf name="place"><type name="string"/></leaf></notification>
    </list>
  </container>
  <choice name="outer">
    <case name="one"><choice name="inner"><leaf name="deep"><type name="string"/></leaf></choice></case>
  </choice>
  <rpc name="call">
    <input><leaf name="value"><type name="int8"/></leaf></input>
    <output><leaf name="value"><type name="string"/></leaf></output>
  </rpc>
  <rpc name="quiet"/>
  <notification name="event"><leaf name="what"><type name="string"/></leaf></notification>)";

constexpr const char *kMore = R"(
  <import module="m"><prefix value="m"/></import>
  <leaf name="own"><type name="string"/></leaf>
  <augment target-node="/m:top">
    <leaf name="plain"><type name="string"/></leaf>
    <leaf name="extra"><type name="string"/></leaf>
  </augment>
  <augment target-node="/m:top/m:way"><leaf name="bicycle"><type name="string"/></leaf></augment>
  <augment target-node="/m:outer/m:one/m:inner"><leaf name="added"><type name="string"/></leaf></augment>
  <augment target-node="/m:call/m:output"><leaf name="cost"><type name="string"/></leaf></augment>)";

class DataChildren : public ::testing::Test {
protected:
    DataChildren()
    {
        EXPECT_EQ(ctx_.LoadBody("m", kBase), ZR_OK) << ::testing::PrintToString(ctx_.Messages());
        EXPECT_EQ(ctx_.LoadBody("n", kMore), ZR_OK) << ::testing::PrintToString(ctx_.Messages());
    }
    ZrNode *Top(const char *moduleName, const char *name)
    {
        return ZR_CTX_FindTopDataNode(ctx_, moduleName, name);
    }
    // The path of the child that is found, "" when there is none.
    std::string Child(const ZrNode *node, const char *moduleName, const char *name)
    {
        return Path(ZR_NODE_FindDataChild(node, moduleName, name));
    }
    static std::string Path(const ZrNode *node)
    {
        char path[256] = "";
        ZR_NODE_GetNodePath(node, path, sizeof(path));
        return path;
    }
    zrtest::TestContext ctx_;
};

TEST_F(DataChildren, AreFoundThroughChoicesAndCases)
{
    ZrNode *top = ctx_.Node("/m:top");
    EXPECT_EQ(Child(top, "m", "plain"), "/m:top/plain");
    EXPECT_EQ(Child(top, "m", "flight"), "/m:top/way/by-air/flight");
    EXPECT_EQ(Child(top, "m", "ship"), "/m:top/way/ship");
    EXPECT_EQ(Child(top, "m", "train"), "/m:top/way/by-land/vehicle/train");
    EXPECT_EQ(Child(top, nullptr, "train"), "/m:top/way/by-land/vehicle/train");
    EXPECT_EQ(Child(top, "", "train"), "/m:top/way/by-land/vehicle/train");
}

TEST_F(DataChildren, AreNeverChoicesCasesOrGrandchildren)
{
    ZrNode *top = ctx_.Node("/m:top");
    EXPECT_EQ(Child(top, "m", "way"), "");
    EXPECT_EQ(Child(top, "m", "by-air"), "");
    EXPECT_EQ(Child(top, "m", "reset"), "");
    EXPECT_EQ(Child(top, "m", "nothing"), "");
    EXPECT_EQ(Child(ctx_.Node("/m:top/plain"), "m", "plain"), "");
}

TEST_F(DataChildren, AreKnownByTheModuleThatDefinesThem)
{
    ZrNode *top = ctx_.Node("/m:top");
    EXPECT_EQ(Child(top, "n", "plain"), "/m:top/n:plain");
    EXPECT_EQ(Child(top, "n", "extra"), "/m:top/n:extra");
    EXPECT_EQ(Child(top, "n", "bicycle"), "/m:top/way/n:bicycle");
    EXPECT_EQ(Child(top, "m", "extra"), "");
    EXPECT_EQ(Child(top, "x", "plain"), "");
}

TEST_F(DataChildren, CountWhetherOrNotTheirFeaturesAreOn)
{
    ZrNode *hidden = ZR_NODE_FindDataChild(ctx_.Node("/m:top"), "m", "hidden");
    ASSERT_NE(hidden, nullptr);
    EXPECT_EQ(ZR_NODE_IsEnabled(hidden), 0u);
}

TEST_F(DataChildren, OfAnOperationAreThoseOfItsInputAndOfItsOutputThoseOfAReply)
{
    ZrNode *call = Top("m", "call");
    EXPECT_EQ(Child(call, "m", "value"), "/m:call/input/value");
    EXPECT_EQ(Child(call, "n", "cost"), "");
    EXPECT_EQ(Child(ZR_NODE_GetInputNode(call), "m", "value"), "/m:call/input/value");
    EXPECT_EQ(Child(ZR_NODE_GetOutputNode(call), "m", "value"), "/m:call/output/value");
    EXPECT_EQ(Child(ZR_NODE_GetOutputNode(call), "n", "cost"), "/m:call/output/n:cost");

    ZrNode *entry = ZR_NODE_FindDataChild(ctx_.Node("/m:top"), "m", "entry");
    ZrNode *reset = ZR_NODE_FindDataChild(entry, "m", "reset");
    EXPECT_EQ(Path(reset), "/m:top/entry/reset");
    EXPECT_EQ(Child(reset, "m", "value"), "/m:top/entry/reset/input/value");
    EXPECT_EQ(Child(ZR_NODE_GetOutputNode(reset), "m", "value"), "/m:top/entry/reset/output/value");
    EXPECT_EQ(Child(ZR_NODE_FindDataChild(entry, "m", "moved"), "m", "place"),
              "/m:top/entry/moved/place");
}

TEST_F(DataChildren, OfWhatHasNoneAreNone)
{
    ZrNode *quiet = Top("m", "quiet");
    ASSERT_NE(quiet, nullptr);
    EXPECT_EQ(ZR_NODE_GetInputNode(quiet), nullptr);
    EXPECT_EQ(ZR_NODE_GetOutputNode(quiet), nullptr);
    EXPECT_EQ(ZR_NODE_FindDataChild(quiet, "m", "value"), nullptr);
    EXPECT_EQ(ZR_NODE_GetInputNode(ctx_.Node("/m:top")), nullptr);
    EXPECT_EQ(ZR_NODE_GetOutputNode(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetInputNode(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_FindDataChild(nullptr, "m", "value"), nullptr);
    EXPECT_EQ(ZR_NODE_FindDataChild(ctx_.Node("/m:top"), "m", nullptr), nullptr);
}

TEST_F(DataChildren, BeginAtTheTopWithDataRpcsAndNotifications)
{
    EXPECT_EQ(Path(Top("m", "top")), "/m:top");
    EXPECT_EQ(Path(Top("m", "call")), "/m:call");
    EXPECT_EQ(Path(Top("m", "event")), "/m:event");
    EXPECT_EQ(Path(Top("n", "own")), "/n:own");
    EXPECT_EQ(Top("n", "top"), nullptr);
    EXPECT_EQ(Top("x", "top"), nullptr);
    EXPECT_EQ(Top(nullptr, "top"), nullptr);
    EXPECT_EQ(Top("m", nullptr), nullptr);
    EXPECT_EQ(ZR_CTX_FindTopDataNode(nullptr, "m", "top"), nullptr);
}

TEST_F(DataChildren, AtTheTopAreFoundThroughChoicesAlsoThoseOfAnotherModule)
{
    EXPECT_EQ(Path(Top("m", "deep")), "/m:outer/one/inner/deep");
    EXPECT_EQ(Path(Top("n", "added")), "/m:outer/one/inner/n:added");
    EXPECT_EQ(Top("m", "outer"), nullptr);
    EXPECT_EQ(Top("n", "extra"), nullptr) << "it stands below a container";
    EXPECT_EQ(Top("n", "bicycle"), nullptr) << "its choice stands below a container";
    EXPECT_EQ(Top("n", "cost"), nullptr) << "it stands in an rpc";
}

TEST_F(DataChildren, OfAnAugmentWithoutItsTargetStandNowhere)
{
    zrtest::TestContext alone;
    ASSERT_EQ(alone.LoadBody("n", kMore), ZR_OK);
    EXPECT_EQ(ZR_CTX_FindTopDataNode(alone, "n", "added"), nullptr);
    EXPECT_NE(ZR_CTX_FindTopDataNode(alone, "n", "own"), nullptr);
}

} // namespace
