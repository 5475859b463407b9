// SPDX-License-Identifier: Apache-2.0
#include "schema/coupling_fixture.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *kNoDefault = "Failed to delete default from node \"%s\".";

uint32_t g_calls;

void CountCalls(ZrCtx *, ZrNode *, ZrCtx *)
{
    ++g_calls;
}

std::string Summary(const char *format, const char *name)
{
    char text[256];
    std::snprintf(text, sizeof(text), format, name);
    return text;
}

} // namespace

TEST(DeviateDelete, AChoiceLosesItsDefaultCase)
{
    Deviated schema(ChoiceOfTwo("ch", Default("one")),
                    Deviation("/m:ch", "delete", Default("one")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_EQ(schema.ChoiceDefault("/m:ch"), nullptr);
}

TEST(DeviateDelete, TwoDefaultsOfAChoiceAreRecordedButCountAsApplied)
{
    Deviated schema(ChoiceOfTwo("ch", Default("one")),
                    Deviation("/m:ch", "delete", Default("one") + Default("two")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_STREQ(schema.ChoiceDefault("/m:ch"), "one");
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to delete default from choice node \"ch\", "
                                               "because default number > 1."));
}

TEST(DeviateDelete, ADefaultOfAChoiceWithoutOneFails)
{
    Deviated schema(ChoiceOfTwo("ch"), Deviation("/m:ch", "delete", Default("one")));
    EXPECT_TRUE(schema.HasFailed());
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to delete default from choice node \"ch\" without default "
                            "value.",
                            Summary(kNoDefault, "ch")));
}

TEST(DeviateDelete, AnotherDefaultOfAChoiceFails)
{
    Deviated schema(ChoiceOfTwo("ch", Default("one")),
                    Deviation("/m:ch", "delete", Default("two")));
    EXPECT_STREQ(schema.ChoiceDefault("/m:ch"), "one");
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to find default value to be deleted in choice node \"ch\".",
                            Summary(kNoDefault, "ch")));
}

TEST(DeviateDelete, ALeafLosesItsDefault)
{
    Deviated schema(Leaf("x", "string", Default("v")), Deviation("/m:x", "delete", Default("v")));
    EXPECT_EQ(schema.LeafOf("/m:x")->defaultValue, nullptr);
}

TEST(DeviateDelete, TwoDefaultsOfALeafAreRecordedButCountAsApplied)
{
    Deviated schema(Leaf("x", "string", Default("v")),
                    Deviation("/m:x", "delete", Default("v") + Default("w")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "v");
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to delete default from leaf node \"x\", "
                                               "because the number of defaults to be deleted > "
                                               "1."));
}

TEST(DeviateDelete, ADefaultOfALeafWithoutOneFails)
{
    Deviated schema(Leaf("x"), Deviation("/m:x", "delete", Default("v")));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to delete default from leaf node \"x\" without default value.",
                            Summary(kNoDefault, "x")));
}

TEST(DeviateDelete, AnotherDefaultOfALeafFails)
{
    Deviated schema(Leaf("x", "string", Default("v")), Deviation("/m:x", "delete", Default("w")));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to find default value to be deleted in leaf node \"x\".",
                            Summary(kNoDefault, "x")));
}

TEST(DeviateDelete, ALeafListDefaultThatOccursTwiceGoesTwice)
{
    Deviated schema(
        LeafList("l", "string", Default("a") + Default("b") + Default("a") + Default("c")),
        Deviation("/m:l", "delete", Default("a")));
    EXPECT_THAT(schema.DefaultsOf("/m:l"), ElementsAre("b", "c"));
}

TEST(DeviateDelete, ALeafListWithoutDefaultsLeftHasNoArray)
{
    Deviated schema(LeafList("l", "string", Default("a") + Default("b")),
                    Deviation("/m:l", "delete", Default("b") + Default("a")));
    EXPECT_EQ(schema.LeafListOf("/m:l")->defaultCount, 0);
    EXPECT_EQ(schema.LeafListOf("/m:l")->defaults, nullptr);
}

TEST(DeviateDelete, AnUnknownLeafListDefaultFailsAndDeletesNone)
{
    Deviated schema(LeafList("l", "string", Default("a") + Default("b")),
                    Deviation("/m:l", "delete", Default("a") + Default("z")));
    EXPECT_THAT(schema.DefaultsOf("/m:l"), ElementsAre("a", "b"));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to find default value to be deleted in leaf-list node \"l\".",
                            Summary(kNoDefault, "l")));
}

TEST(DeviateDelete, MoreLeafListDefaultsThanThereAreFail)
{
    Deviated schema(LeafList("l", "string", Default("a")),
                    Deviation("/m:l", "delete", Default("a") + Default("a")));
    EXPECT_THAT(schema.DefaultsOf("/m:l"), ElementsAre("a"));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to delete default value from leaf-list node \"l\".",
                            Summary(kNoDefault, "l")));
}

TEST(DeviateDelete, AValueListedTwiceAmongOthersGoesOnce)
{
    Deviated schema(LeafList("l", "string", Default("a") + Default("b")),
                    Deviation("/m:l", "delete", Default("a") + Default("a")));
    EXPECT_THAT(schema.DefaultsOf("/m:l"), ElementsAre("b"));
}

TEST(DeviateDelete, ADefaultOfAnotherKindOfNodeFails)
{
    Deviated schema(Container("c"), Deviation("/m:c", "delete", Default("v")));
    EXPECT_THAT(schema.Messages(),
                ElementsAre(Summary(kNoDefault, "c"), "Failed to couple deviation statements."));
}

TEST(DeviateDelete, EveryMustOfTheConditionGoes)
{
    Deviated schema(Container("c", Must("a") + Must("b") + Must("a")),
                    Deviation("/m:c", "delete", Must("a")));
    EXPECT_THAT(schema.MustsOf("/m:c"), ElementsAre("b"));
}

TEST(DeviateDelete, ANodeWithoutMustsLeftHasNoArray)
{
    Deviated schema(Container("c", Must("a") + Must("b")),
                    Deviation("/m:c", "delete", Must("b") + Must("a")));
    EXPECT_EQ(schema.Node("/m:c")->mustCount, 0);
    EXPECT_EQ(schema.Node("/m:c")->musts, nullptr);
}

TEST(DeviateDelete, AnUnknownMustFailsAndDeletesNone)
{
    Deviated schema(Container("c", Must("a")), Deviation("/m:c", "delete", Must("a") + Must("z")));
    EXPECT_THAT(schema.MustsOf("/m:c"), ElementsAre("a"));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to find must condition to be deleted in target node \"c\".",
                            "Failed to delete must from node \"c\"."));
}

TEST(DeviateDelete, MoreMustsThanThereAreFail)
{
    Deviated schema(Container("c", Must("a")), Deviation("/m:c", "delete", Must("a") + Must("a")));
    EXPECT_THAT(schema.MustsOf("/m:c"), ElementsAre("a"));
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to delete musts from node \"c\".",
                                               "Failed to delete must from node \"c\"."));
}

TEST(DeviateDelete, EqualUnitsGo)
{
    Deviated schema(Leaf("x", "string", Units("s")) + LeafList("l", "string", Units("m")),
                    Deviation("/m:x", "delete", Units("s")) +
                        Deviation("/m:l", "delete", Units("m")));
    EXPECT_EQ(schema.LeafOf("/m:x")->units, nullptr);
    EXPECT_EQ(schema.LeafListOf("/m:l")->units, nullptr);
}

TEST(DeviateDelete, OtherOrMissingUnitsFail)
{
    for (const std::string &units : {Units("m"), std::string()}) {
        Deviated schema(Leaf("x", "string", units), Deviation("/m:x", "delete", Units("s")));
        EXPECT_THAT(schema.Messages(),
                    ElementsAre("Failed to delete units from node \"x\", because it doesn't have "
                                "units or the target units.",
                                "Failed to delete units from node \"x\"."));
    }
}

TEST(DeviateDelete, UnitsOfAnotherKindOfNodeFail)
{
    Deviated schema(Container("c"), Deviation("/m:c", "delete", Units("s")));
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to delete units from node \"c\".",
                                               "Failed to couple deviation statements."));
}

TEST(DeviateDelete, EqualExtensionInstancesGo)
{
    Deviated schema(Import("e") + Container("c", Ext("one") + Ext("two") + Ext("three")),
                    Deviation("/m:c", "delete", Ext("two") + Ext("four")));
    EXPECT_THAT(schema.ExtensionsOf("/m:c"), ElementsAre("one", "three"));
    EXPECT_THAT(schema.Messages(), IsEmpty());
}

TEST(DeviateDelete, ANodeWithoutExtensionInstancesLeftHasNoArray)
{
    Deviated schema(Import("e") + Container("c", Ext("one")),
                    Deviation("/m:c", "delete", Ext("one")));
    EXPECT_EQ(schema.Node("/m:c")->extInstCount, 0);
    EXPECT_EQ(schema.Node("/m:c")->extInsts, nullptr);
}

TEST(DeviateDelete, AccessControlIsKeptAndRecorded)
{
    Deviated schema(Import("e") + Import("ietf-netconf-acm") +
                        Container("c", Nacm("default-deny-all") + Ext("one")),
                    Deviation("/m:c", "delete", Nacm("default-deny-all") + Ext("one")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_THAT(schema.ExtensionsOf("/m:c"), ElementsAre("default-deny-all"));
    EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(schema.Node("/m:c")), 1u);
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Deleting extension-instance \"ietf-netconf-acm:default-deny-all\" "
                            "from node \"c\" is not supported."));
}

TEST(DeviateDelete, WithoutMemoryForTheShorterArrayTheDeletionIsReportedButDone)
{
    Deviated schema(Import("e") + Container("c", Ext("one")) +
                        Container("k", Ext("one") + Ext("two") + Ext("three")),
                    Deviation("/m:c", "delete", Ext("one")));
    {
        AllocGuard guard;
        guard.FailAt(0);
        EXPECT_EQ(ZRS_MOD_CoupleDevDel(schema.ctx.Module("d"), schema.First().deviates,
                                       schema.Node("/m:k")),
                  ZR_ERR_NO_MEMORY);
    }
    EXPECT_THAT(schema.ExtensionsOf("/m:k"), ElementsAre("two", "three"));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to delete extension-instance to node \"k\"."));
}

// Texts of a schema are interned, so that copying them needs no memory; one of these is not.
TEST(DeviateDelete, MustsThatCannotBeCopiedToTheShorterArrayAreGoneAndUncounted)
{
    Deviated schema(Container("c", Must("a")) + Container("k", Must("a") + Must("b")),
                    Deviation("/m:c", "delete", Must("a")));
    ZrNode *node = schema.Node("/m:k");
    node->musts[1].errorMessage = "not interned";
    AllocGuard guard;
    guard.FailAt(1); // the array is made, the dictionary refuses
    EXPECT_EQ(ZRS_MOD_CoupleDevDelMusts(schema.ctx.Module("d"), schema.First().deviates, node),
              ZR_ERR_NO_MEMORY);
    EXPECT_EQ(node->mustCount, 0);
    EXPECT_EQ(node->musts, nullptr);
}

TEST(DeviateDelete, TheExtensionCallbackComesOnceAndOnlyBeforeAChange)
{
    g_calls = 0;
    TestContext ctx;
    ZR_CTX_SetBeforeDeviateExtInstFunc(ctx, CountCalls);
    ASSERT_EQ(ctx.LoadBody("m", Import("e") + Container("c", Ext("one") + Ext("two"))), ZR_OK);
    ASSERT_EQ(
        ctx.LoadBody("d", Import("m") + Import("e") + Deviation("/m:c", "delete", Ext("none"))),
        ZR_OK);
    EXPECT_EQ(g_calls, 0u);
    ASSERT_EQ(ctx.LoadBody("d2", Import("m") + Import("e") +
                                     Deviation("/m:c", "delete", Ext("one") + Ext("two"))),
              ZR_OK);
    EXPECT_EQ(g_calls, 1u);
}

TEST(DeviateDelete, EveryFailingAllocationIsAStatusAndLeavesArraysInOrder)
{
    std::string m = ModuleText("m", Import("e") + LeafList("l", "string",
                                                           Default("a") + Default("b") + Must("a") +
                                                               Must("b") + Must("c") + Units("s") +
                                                               Ext("one") + Ext("two")));
    std::string d = ModuleText(
        "d", Import("m") + Import("e") +
                 Deviation("/m:l", "delete", Default("a") + Must("b") + Units("s") + Ext("one")));
    FailEachAllocation([&](FailPoint &memory) {
        TestContext ctx(ZR_CTX_KEEP_UNITS);
        ASSERT_EQ(ctx.Load(m), ZR_OK);
        memory.RunStatus([&] { return ctx.Load(d); });
        const ZrNode *node = ctx.Node("/m:l");
        for (int i = 0; i < node->mustCount; ++i)
            EXPECT_NE(node->musts[i].condition, nullptr);
        for (int i = 0; i < node->extInstCount; ++i)
            EXPECT_NE(node->extInsts[i].extensionName, nullptr);
    });
}
