// SPDX-License-Identifier: Apache-2.0
#include "schema/module/module.h"

#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "schema/coupling_fixture.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ChangeEvents, EveryKindAndEventHasItsHandler)
{
    struct Row {
        uint32_t kind;
        uint32_t event;
        ZrsCoupleEventFunc handler;
    };
    const Row rows[] = {
        {0, 0, ZRS_MOD_CoupleAugmentFromDepMods},
        {0, 1, ZRS_MOD_UnCoupleAugmentFromDepMods},
        {1, 0, ZRS_MOD_CoupleDeviationFromDepMods},
        {1, 1, ZRS_MOD_UnCoupleDeviationFromDepMods},
        {2, 0, nullptr},
        {0, 2, nullptr},
        {UINT32_MAX, UINT32_MAX, nullptr},
    };
    for (const Row &row : rows)
        EXPECT_EQ(ZRS_MOD_GetCoupleEvtProcFunc(row.kind, row.event), row.handler);
}

TEST(ChangeEvents, HandlersOfUnknownDependentModulesFail)
{
    TestContext ctx;
    EXPECT_EQ(ZRS_MOD_CoupleAugmentFromDepMods(ctx, "m", "none", nullptr), ZR_ERR_FAILED);
    EXPECT_EQ(ZRS_MOD_UnCoupleAugmentFromDepMods(ctx, "m", "none", nullptr), ZR_ERR_FAILED);
    EXPECT_EQ(ZRS_MOD_CoupleDeviationFromDepMods(ctx, "m", "none", nullptr), ZR_ERR_FAILED);
    EXPECT_EQ(ZRS_MOD_UnCoupleDeviationFromDepMods(ctx, "m", "none", nullptr), ZR_ERR_FAILED);
}

TEST(ChangeEvents, AModuleWithoutRelationsHasNobodyToTell)
{
    TestContext ctx;
    EXPECT_EQ(ZRS_MOD_NotifyModuleChangeEvent(ctx, "m", ZRS_MODULE_LOADED, nullptr), ZR_OK);
    EXPECT_EQ(ZRS_MOD_NotifyModuleChangeEvent(ctx, nullptr, ZRS_MODULE_LOADED, nullptr), ZR_OK);
    EXPECT_EQ(ZRS_MOD_NotifyModuleChangeEvent(nullptr, "m", ZRS_MODULE_LOADED, nullptr), ZR_OK);
}

TEST(ChangeEvents, ARelationOfAnUnknownKindIsSkipped)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ASSERT_EQ(ZR_CTX_AddTwoModRelation(ctx, "m", "a", 7), ZR_OK);
    EXPECT_EQ(ZRS_MOD_NotifyModuleChangeEvent(ctx, "m", ZRS_MODULE_UNLOADING, nullptr), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), IsEmpty()) << "the augment's relation was told";
    EXPECT_EQ(ZRS_MOD_NotifyModuleChangeEvent(ctx, "m", 9, nullptr), ZR_OK);
}

TEST(ChangeEvents, UncouplingConcernsOnlyAugmentsIntoTheChangedModule)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("n", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Import("n") + Augment("/m:c", Container("p")) +
                                    Augment("/n:c", Leaf("q")) + Augment("/m:c/a:p", Leaf("r"))),
              ZR_OK);
    EXPECT_EQ(ZRS_MOD_UnCoupleAugmentFromDepMods(ctx, "m", "a", nullptr), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), IsEmpty());
    EXPECT_THAT(ChildNames(ctx.Node("/n:c")), ElementsAre("q"));
    EXPECT_NE(ctx.Module("a")->augments->next->next->flags & ZRS_FLAG_COUPLED, 0u)
        << "its own node is the target";
    EXPECT_EQ(ZRS_MOD_CoupleAugmentFromDepMods(ctx, "m", "a", nullptr), ZR_OK);
    EXPECT_NE(ctx.Node("/m:c/a:p/r"), nullptr);
}

TEST(ChangeEvents, TheAugmentMessageGoesOnceNoAugmentIsLeftUncoupled)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Import("n") + Augment("/m:c", Leaf("p")) +
                                    Augment("/n:c", Leaf("q"))),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    EXPECT_THAT(ctx.Messages("a"), ElementsAre("Failed to couple augment statements."));
    ASSERT_EQ(ctx.LoadBody("n", Container("c")), ZR_OK);
    EXPECT_THAT(ctx.Messages("a"), IsEmpty());
}

TEST(ChangeEvents, OtherMessagesStayWhenTheAugmentMessageGoes)
{
    TestContext ctx;
    ZR_CTX_AddModError(ctx, "a", "Something else.");
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    EXPECT_EQ(ctx.Messages("a").size(), 2u);
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    EXPECT_THAT(ctx.Messages("a"), ElementsAre("Something else."));
}

TEST(ChangeEvents, UncouplingDeviationsForgetsTheirMessagesAndLetsThemBeAppliedAgain)
{
    Deviated schema(Leaf("x", "string", Default("v")) + Container("c"),
                    Deviation("/m:x", "add", Default("w")) + Deviation("/m:c", "add", Must("a")) +
                        Deviation("/e:c", "add", Must("a")));
    ASSERT_EQ(schema.Messages().size(), 2u);
    EXPECT_EQ(ZRS_MOD_UnCoupleDeviationFromDepMods(schema.ctx, "m", "d", nullptr), ZR_OK);
    EXPECT_THAT(schema.Messages(), IsEmpty());
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(schema.ctx.Module("d")->deviations[i].flags, 0) << i;
    EXPECT_THAT(schema.MustsOf("/m:c"), ElementsAre("a")) << "nothing is reverted";
}

TEST(ChangeEvents, UncouplingDeviationsConcernsOnlyThoseOfTheChangedModule)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("n", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Import("n") + Deviation("/m:c", "add", Must("a")) +
                                    Deviation("/n:c", "add", Must("a"))),
              ZR_OK);
    EXPECT_EQ(ZRS_MOD_UnCoupleDeviationFromDepMods(ctx, "n", "d", nullptr), ZR_OK);
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, ZRS_DEVIATION_COUPLED);
    EXPECT_EQ(ctx.Module("d")->deviations[1].flags, 0);
}
