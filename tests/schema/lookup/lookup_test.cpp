// SPDX-License-Identifier: Apache-2.0
#include "schema/lookup/lookup.h"

#include <gtest/gtest.h>
#include <zrschema/zrschema.h>

#include <string>

#include "schema/augment/augment.h"
#include "schema/record_fixture.h"
#include "support/context.h"

namespace {

// a: top (own (deep), choice (case (leaf))), rpc (input (arg)), notification
// b: augments /a:top with x (y), and /a:top/b:x with z
class Lookup : public zrtest::RecordTest {
protected:
    Lookup() : a_(NewModule("a")), b_(NewModule("b"))
    {
        top_ = AddData(a_, ZR_NODE_CONTAINER, "top");
        own_ = AddChild(top_, ZR_NODE_CONTAINER, "own");
        deep_ = AddChild(own_, ZR_NODE_LEAF, "deep");
        ZrNode *choice = AddChild(top_, ZR_NODE_CHOICE, "choice");
        leaf_ = AddChild(AddChild(choice, ZR_NODE_CASE, "case"), ZR_NODE_LEAF, "leaf");
        ZrNode *rpc = AddTop(a_, a_->rpcs, ZR_NODE_RPC, "rpc");
        arg_ = AddChild(AddChild(rpc, ZR_NODE_INPUT, "input"), ZR_NODE_LEAF, "arg");
        notification_ = AddTop(a_, a_->notifications, ZR_NODE_NOTIFICATION, "notification");
        first_ = AddTop(b_, b_->augments, ZR_NODE_AUGMENT, "/a:top");
        x_ = AddChild(first_, ZR_NODE_CONTAINER, "x");
        y_ = AddChild(x_, ZR_NODE_LEAF, "y");
        second_ = AddTop(b_, b_->augments, ZR_NODE_AUGMENT, "/a:top/b:x");
        z_ = AddChild(second_, ZR_NODE_LEAF, "z");
    }
    void TearDown() override
    {
        for (ZrNode *augment : {second_, first_}) {
            if ((augment->flags & ZRS_FLAG_COUPLED) != 0) {
                EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_OK);
            }
        }
        RecordTest::TearDown();
    }
    ZrNode *Target(const char *path) { return ZR_CTX_GetTargetNode(ctx_, path, nullptr); }
    void Couple()
    {
        ASSERT_EQ(ZRS_NODE_CoupleAugmentNode(first_), ZR_OK);
        ASSERT_EQ(ZRS_NODE_CoupleAugmentNode(second_), ZR_OK);
    }

    ZrMod *a_, *b_;
    ZrNode *top_, *own_, *deep_, *leaf_, *arg_, *notification_, *first_, *x_, *y_, *second_, *z_;
};

TEST_F(Lookup, FindsEveryNodeOfAModuleByItsPath)
{
    EXPECT_EQ(Target("/a:top"), top_);
    EXPECT_EQ(Target("/a:top/own/deep"), deep_);
    EXPECT_EQ(Target("/a:top/choice/case/leaf"), leaf_);
    EXPECT_EQ(Target("/a:rpc/input/arg"), arg_);
    EXPECT_EQ(Target("/a:notification"), notification_);
}

TEST_F(Lookup, ChoicesAndCasesAreStepsOfTheirOwn)
{
    EXPECT_EQ(Target("/a:top/leaf"), nullptr);
    EXPECT_EQ(Target("/a:rpc/arg"), nullptr);
}

TEST_F(Lookup, WhatIsNotThereIsNotFound)
{
    for (const char *path : {"", "/", "a", "top", "/top", "/a:", "/a:top/", "/a:top//own", "/:top",
                             "/c:top", "/a:nothing", "/a:top/nothing", "/a:top/own/deep/deeper",
                             "/a:to p", "/a:top/b:q", "/a:top/c:x", "/a:own", "/a:/a:top"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(Target(path), nullptr);
    }
    EXPECT_EQ(ZR_CTX_GetTargetNode(nullptr, "/a:top", nullptr), nullptr);
    EXPECT_EQ(Target(nullptr), nullptr);
}

TEST_F(Lookup, NamesLongerThan64CharactersFail)
{
    std::string name(64, 'n');
    ZrNode *node = AddChild(top_, ZR_NODE_LEAF, name.c_str());
    EXPECT_EQ(Target(("/a:top/" + name).c_str()), node);
    name += 'n';
    AddChild(top_, ZR_NODE_LEAF, name.c_str());
    EXPECT_EQ(Target(("/a:top/" + name).c_str()), nullptr);
    EXPECT_EQ(Target(("/" + name + ":top").c_str()), nullptr);
}

TEST_F(Lookup, PredicatesAreSkippedInASchemaNodeIdentifier)
{
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, nullptr, "/a:top[x='1']/own[y][z]/deep"), deep_);
}

TEST_F(Lookup, AStepOfAnotherModuleIsFoundThroughThatModulesAugment)
{
    ZrNode *augment = top_;
    EXPECT_EQ(ZR_CTX_GetTargetNode(ctx_, "/a:top/b:x", &augment), x_);
    EXPECT_EQ(augment, first_);
    EXPECT_EQ(ZR_CTX_GetTargetNode(ctx_, "/a:top/b:x/y", &augment), y_);
    EXPECT_EQ(augment, first_);
}

TEST_F(Lookup, CoupledAugmentsAnswerLikeUncoupledOnes)
{
    Couple();
    ZrNode *augment = nullptr;
    EXPECT_EQ(ZR_CTX_GetTargetNode(ctx_, "/a:top/b:x/y", &augment), y_);
    EXPECT_EQ(augment, first_);
    EXPECT_EQ(ZR_CTX_GetTargetNode(ctx_, "/a:top/b:x/z", &augment), z_);
    EXPECT_EQ(augment, first_);
    EXPECT_EQ(Target("/a:top/own/deep"), deep_);
}

TEST_F(Lookup, TheAugmentIsClearedWhenThereIsNone)
{
    ZrNode *augment = top_;
    EXPECT_EQ(ZR_CTX_GetTargetNode(ctx_, "/a:top/own", &augment), own_);
    EXPECT_EQ(augment, nullptr);
    augment = top_;
    EXPECT_EQ(ZR_CTX_GetTargetNode(ctx_, "/a:top/b:nothing", &augment), nullptr);
    EXPECT_EQ(augment, nullptr);
    augment = top_;
    EXPECT_EQ(ZR_CTX_GetTargetNode(ctx_, nullptr, &augment), nullptr);
    EXPECT_EQ(augment, nullptr);
}

TEST_F(Lookup, OfSeveralAugmentsOfOneTargetTheFirstThatHoldsThePathWins)
{
    ZrNode *third = AddTop(b_, b_->augments, ZR_NODE_AUGMENT, "/a:top");
    ZrNode *other = AddChild(third, ZR_NODE_LEAF, "other");
    AddChild(third, ZR_NODE_LEAF, "x");
    ZrNode *augment = nullptr;
    EXPECT_EQ(ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(b_, "/a:top", "/b:x", &augment), x_);
    EXPECT_EQ(augment, first_);
    EXPECT_EQ(ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(b_, "/a:top", "/b:other", &augment), other);
    EXPECT_EQ(augment, third);
}

TEST_F(Lookup, UnderAnAugmentTheTargetTextMustBeEqual)
{
    ZrNode *augment = top_;
    EXPECT_EQ(ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(b_, "/a:to", "/b:x", &augment), nullptr);
    EXPECT_EQ(augment, nullptr);
    EXPECT_EQ(ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(b_, "/a:top/", "/b:x", nullptr), nullptr);
    EXPECT_EQ(ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(b_, "/a:top", "/b:x", nullptr), x_);
}

TEST_F(Lookup, UnderAnAugmentNullArgumentsFindNothing)
{
    ZrNode *augment = top_;
    EXPECT_EQ(ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(nullptr, "/a:top", "/b:x", &augment),
              nullptr);
    EXPECT_EQ(augment, nullptr);
    EXPECT_EQ(ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(b_, nullptr, "/b:x", nullptr), nullptr);
    EXPECT_EQ(ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(b_, "/a:top", nullptr, nullptr), nullptr);
}

TEST_F(Lookup, ASchemaNodeIdentifierMayStartAtANode)
{
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, top_, "own/deep"), deep_);
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, top_, "/a:own/deep"), deep_);
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, top_, "b:own/deep"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, top_, ""), nullptr);
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, top_, "/"), nullptr);
}

TEST_F(Lookup, TheFirstStepsModuleNameIsNotComparedInsideAModule)
{
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, nullptr, "/any:top/own"), own_);
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, nullptr, "top/own"), own_);
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, nullptr, "/a:top/b:own"), nullptr);
}

TEST_F(Lookup, ASchemaNodeIdentifierNeedsAModuleAndAPath)
{
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(nullptr, top_, "own"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetNodeBySchemaNodeId(a_, top_, nullptr), nullptr);
}

TEST_F(Lookup, AnAugmentOfTheOwnModuleIsResolvedWithoutTheContext)
{
    ZrNode *augment = AddTop(a_, a_->augments, ZR_NODE_AUGMENT, "/a:top/own");
    ZrNode *found = nullptr;
    EXPECT_EQ(ZRS_MOD_FindAugNodeTargetInSelfMod(a_, augment, &found), ZR_OK);
    EXPECT_EQ(found, own_);
    // b's second augment targets what its first one adds
    EXPECT_EQ(ZRS_MOD_FindAugNodeTargetInSelfMod(b_, second_, &found), ZR_OK);
    EXPECT_EQ(found, x_);
}

TEST_F(Lookup, AnAugmentOfAnotherModuleIsLeftToTheContext)
{
    ZrNode *found = top_;
    EXPECT_EQ(ZRS_MOD_FindAugNodeTargetInSelfMod(b_, first_, &found), ZR_OK);
    EXPECT_EQ(found, nullptr);
}

TEST_F(Lookup, AnAugmentWhoseOwnTargetIsMissingYieldsNothing)
{
    ZrNode *augment = AddTop(a_, a_->augments, ZR_NODE_AUGMENT, "/a:nothing");
    ZrNode *found = top_;
    EXPECT_EQ(ZRS_MOD_FindAugNodeTargetInSelfMod(a_, augment, &found), ZR_OK);
    EXPECT_EQ(found, nullptr);
}

TEST_F(Lookup, AnAugmentPathThatCannotBeSplitLeavesTheResultAlone)
{
    ZrNode *augment = AddTop(a_, a_->augments, ZR_NODE_AUGMENT, "/top");
    ZrNode *found = top_;
    EXPECT_EQ(ZRS_MOD_FindAugNodeTargetInSelfMod(a_, augment, &found), ZR_ERR_INVALID);
    EXPECT_EQ(found, top_);
    EXPECT_EQ(ZRS_MOD_FindAugNodeTargetInSelfMod(nullptr, augment, &found), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FindAugNodeTargetInSelfMod(a_, nullptr, &found), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FindAugNodeTargetInSelfMod(a_, augment, nullptr), ZR_ERR_INVALID);
}

TEST_F(Lookup, WithoutMemoryNothingIsFoundAndNothingIsLost)
{
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrNode *node = memory.Run([&] { return Target("/a:top/b:x/y"); });
        EXPECT_EQ(node, memory.Failed() ? nullptr : y_);
    });
}

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
