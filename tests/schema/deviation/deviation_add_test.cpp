// SPDX-License-Identifier: Apache-2.0
#include "schema/coupling_fixture.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

uint32_t g_calls;

void CountCalls(ZrCtx *ctx, ZrNode *, ZrCtx *sameCtx)
{
    EXPECT_EQ(ctx, sameCtx);
    ++g_calls;
}

} // namespace

TEST(DeviateAdd, ConfigReplacesWhatWasInheritedAndPassesDown)
{
    Deviated schema(Container("c", Container("k", Leaf("x"))),
                    Deviation("/m:c", "add", Config("false")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_EQ(schema.Node("/m:c")->flags & kConfigBits,
              ZRS_FLAG_CONFIG_FALSE | ZRS_FLAG_CONFIG_GIVEN)
        << "config false, of its own";
    EXPECT_EQ(schema.Node("/m:c/k")->flags & kConfigBits, ZRS_FLAG_CONFIG_FALSE);
    EXPECT_EQ(schema.Node("/m:c/k/x")->flags & kConfigBits, ZRS_FLAG_CONFIG_FALSE);
    EXPECT_THAT(schema.Messages(), IsEmpty());
}

TEST(DeviateAdd, ConfigOnANodeWithAConfigStatementFails)
{
    Deviated schema(Container("c", Config("true")), Deviation("/m:c", "add", Config("false")));
    EXPECT_TRUE(schema.HasFailed());
    EXPECT_EQ(schema.Node("/m:c")->flags & kConfigBits,
              ZRS_FLAG_CONFIG_TRUE | ZRS_FLAG_CONFIG_GIVEN);
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to add config to node \"c\", because it had been set config "
                            "statement.",
                            "Failed to add config or mandatory to node \"c\"."));
}

TEST(DeviateAdd, MandatoryIsSet)
{
    Deviated schema(Leaf("x"), Deviation("/m:x", "add", Mandatory("true")));
    EXPECT_EQ(ZR_NODE_IsMandatory(schema.Node("/m:x")), 1u);
}

TEST(DeviateAdd, MandatoryOnANodeThatHasItFails)
{
    Deviated schema(Leaf("x", "string", Mandatory("false")),
                    Deviation("/m:x", "add", Mandatory("true")));
    EXPECT_EQ(ZR_NODE_IsMandatory(schema.Node("/m:x")), 0u);
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to add mandatory flag to node \"x\".",
                                               "Failed to add config or mandatory to node \"x\"."));
}

TEST(DeviateAdd, ALeafGetsItsDefault)
{
    Deviated schema(Leaf("x"), Deviation("/m:x", "add", Default("v")));
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "v");
}

TEST(DeviateAdd, ADefaultOnALeafThatHasOneFails)
{
    Deviated schema(Leaf("x", "string", Default("v")), Deviation("/m:x", "add", Default("w")));
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "v");
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to add default to leaf node \"x\", because it had been set "
                            "default statement.",
                            "Failed to add default statements to node \"x\"."));
}

TEST(DeviateAdd, TwoDefaultsOnALeafAreRecordedButCountAsApplied)
{
    Deviated schema(Leaf("x"), Deviation("/m:x", "add", Default("v") + Default("w")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_EQ(schema.LeafOf("/m:x")->defaultValue, nullptr);
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to add default to leaf node \"x\",  because the number of "
                            "default to be added > 1."));
}

TEST(DeviateAdd, AChoiceGetsItsDefaultCase)
{
    Deviated schema(ChoiceOfTwo("ch"), Deviation("/m:ch", "add", Default("two")));
    EXPECT_STREQ(schema.ChoiceDefault("/m:ch"), "two");
}

TEST(DeviateAdd, ADefaultOnAChoiceThatHasOneFails)
{
    Deviated schema(ChoiceOfTwo("ch", Default("one")), Deviation("/m:ch", "add", Default("two")));
    EXPECT_STREQ(schema.ChoiceDefault("/m:ch"), "one");
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to add default to choice node \"ch\", because it had been set "
                            "default statement.",
                            "Failed to add default statements to node \"ch\"."));
}

TEST(DeviateAdd, TwoDefaultsOnAChoiceAreRecordedButCountAsApplied)
{
    Deviated schema(ChoiceOfTwo("ch"), Deviation("/m:ch", "add", Default("one") + Default("two")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_EQ(schema.ChoiceDefault("/m:ch"), nullptr);
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to add default to choice node \"ch\", because the number of "
                            "default to be added > 1."));
}

TEST(DeviateAdd, ALeafListGetsFurtherDefaultsInOrder)
{
    Deviated schema(LeafList("l", "string", Default("a")),
                    Deviation("/m:l", "add", Default("c") + Default("b")));
    EXPECT_THAT(schema.DefaultsOf("/m:l"), ElementsAre("a", "c", "b"));
}

TEST(DeviateAdd, ALeafListDefaultThatExistsFailsAndAddsNone)
{
    Deviated schema(LeafList("l", "string", Default("a")),
                    Deviation("/m:l", "add", Default("b") + Default("a")));
    EXPECT_THAT(schema.DefaultsOf("/m:l"), ElementsAre("a"));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to add default to node \"l\", because this value already "
                            "exists.",
                            "Failed to add default statements to node \"l\"."));
}

TEST(DeviateAdd, ADefaultOnAnotherKindOfNodeFails)
{
    Deviated schema(Container("c"), Deviation("/m:c", "add", Default("v")));
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to add default statements to node \"c\".",
                                               "Failed to couple deviation statements."));
}

TEST(DeviateAdd, MustsAreAppendedWithoutLookingForDuplicates)
{
    Deviated schema(Container("c", Must("a")),
                    Deviation("/m:c", "add",
                              "<must condition=\"b\"><error-message><value>no b</value>"
                              "</error-message><error-app-tag value=\"tag\"/></must>" +
                                  Must("a")));
    EXPECT_THAT(schema.MustsOf("/m:c"), ElementsAre("a", "b", "a"));
    EXPECT_STREQ(schema.Node("/m:c")->musts[1].errorMessage, "no b");
    EXPECT_STREQ(schema.Node("/m:c")->musts[1].errorAppTag, "tag");
}

TEST(DeviateAdd, MoreMustsThanCanBeCountedAreRefused)
{
    Deviated schema(Container("c"), Deviation("/m:c", "add", Must("a")));
    ZrNode *node = schema.Node("/m:c");
    node->mustCount = 65535; // more than that cannot be counted
    EXPECT_EQ(ZRS_MOD_CoupleDevAddMusts(schema.ctx.Module("d"), schema.First().deviates, node),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_CoupleDevAdd(schema.ctx.Module("d"), schema.First().deviates, node),
              ZR_ERR_INVALID);
    node->mustCount = 1;
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to add must statements to node \"c\"."));
}

TEST(DeviateAdd, UnitsAreSetOnLeafAndLeafList)
{
    Deviated schema(Leaf("x") + LeafList("l"),
                    Deviation("/m:x", "add", Units("s")) + Deviation("/m:l", "add", Units("m")));
    EXPECT_STREQ(schema.LeafOf("/m:x")->units, "s");
    EXPECT_STREQ(schema.LeafListOf("/m:l")->units, "m");
}

TEST(DeviateAdd, UnitsOnANodeThatHasThemFail)
{
    Deviated schema(Leaf("x", "string", Units("s")), Deviation("/m:x", "add", Units("m")));
    EXPECT_STREQ(schema.LeafOf("/m:x")->units, "s");
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to add units to node \"x\", because it already has units.",
                            "Failed to add units statement to node \"x\"."));
}

TEST(DeviateAdd, UnitsOnAnotherKindOfNodeFail)
{
    Deviated schema(Container("c"), Deviation("/m:c", "add", Units("s")));
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to add units statement to node \"c\".",
                                               "Failed to couple deviation statements."));
}

TEST(DeviateAdd, ExtensionInstancesThatAreNotThereAreMergedIn)
{
    Deviated schema(Import("e") + Container("c", Ext("one")),
                    Deviation("/m:c", "add", Ext("one") + Ext("two") + Ext("two")));
    EXPECT_THAT(schema.ExtensionsOf("/m:c"), ElementsAre("one", "two"));
}

TEST(DeviateAdd, MoreExtensionInstancesThanCanBeCountedAreRefused)
{
    Deviated schema(Container("c") + Container("k"), Deviation("/m:c", "add", Ext("one")));
    ZrNode *node = schema.Node("/m:k");
    node->extInstCount = 65535; // more than that cannot be counted
    EXPECT_EQ(ZRS_MOD_CoupleDevAdd(schema.ctx.Module("d"), schema.First().deviates, node),
              ZR_ERR_INVALID);
    node->extInstCount = 0;
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to deviate-add extension-instance to node \"k\"."));
}

TEST(DeviateAdd, TheExtensionCallbackComesOnceAndOnlyBeforeAChange)
{
    g_calls = 0;
    TestContext ctx;
    ZR_CTX_SetBeforeDeviateExtInstFunc(ctx, CountCalls);
    ASSERT_EQ(ctx.LoadBody("m", Import("e") + Container("c", Ext("one"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Import("e") + Deviation("/m:c", "add", Ext("one"))),
              ZR_OK);
    EXPECT_EQ(g_calls, 0u);
    ASSERT_EQ(ctx.LoadBody("d2", Import("m") + Import("e") +
                                     Deviation("/m:c", "add", Ext("two") + Ext("three"))),
              ZR_OK);
    EXPECT_EQ(g_calls, 1u);
}

TEST(DeviateAdd, AccessControlIsSetAndPassedDown)
{
    Deviated schema(Container("c", Container("k", Leaf("x"))),
                    Deviation("/m:c", "add", Nacm("default-deny-all")));
    for (const char *path : {"/m:c", "/m:c/k", "/m:c/k/x"})
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(schema.Node(path)), 1u) << path;
}

TEST(DeviateAdd, EveryFailingAllocationIsAStatusAndLeaksNothing)
{
    std::string m = ModuleText(
        "m", Import("e") + LeafList("l", "string", Default("a") + Must("a")) + Leaf("x"));
    std::string d = ModuleText(
        "d", Import("m") + Import("e") +
                 Deviation("/m:l", "add", Default("b") + Must("b") + Units("s") + Ext("one")) +
                 Deviation("/m:x", "add", Default("b")));
    FailEachAllocation([&](FailPoint &memory) {
        TestContext ctx(ZR_CTX_KEEP_UNITS);
        ASSERT_EQ(ctx.Load(m), ZR_OK);
        memory.RunStatus([&] { return ctx.Load(d); });
    });
}

TEST(DeviateAdd, NullArgumentsAreRefused)
{
    EXPECT_EQ(ZRS_MOD_CoupleDevAdd(nullptr, nullptr, nullptr), ZR_ERR_INVALID);
    ZRS_NODE_NotifyBeforeExtInstsChange(nullptr);
}

TEST(DeviateAdd, TheFirstFailingStepEndsTheDeviateAndKeepsWhatWasDone)
{
    Deviated schema(
        Leaf("x", "string", Units("s")),
        Deviation("/m:x", "add", Mandatory("true") + Default("v") + Must("a") + Units("m")));
    EXPECT_TRUE(schema.HasFailed());
    EXPECT_EQ(ZR_NODE_IsMandatory(schema.Node("/m:x")), 1u);
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "v");
    EXPECT_THAT(schema.MustsOf("/m:x"), ElementsAre("a"));
    EXPECT_STREQ(schema.LeafOf("/m:x")->units, "s");
}
