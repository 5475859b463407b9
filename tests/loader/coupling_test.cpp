// SPDX-License-Identifier: Apache-2.0
#include "loader/coupling.h"

#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "foundation/statement_ids.h"
#include "loader/pipeline.h"
#include "schema/coupling_fixture.h"

namespace {

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

bool HasRelation(TestContext &ctx, const char *target, uint32_t kind, const char *other)
{
    return ZR_CTX_FindModRelationItem(ZR_CTX_FindModRelationTbl(ctx, target), kind,
                                      ctx.Module(other)->name) != nullptr;
}

const ZrtConsDerived *DerivedOf(const ZrNode *leaf)
{
    const auto *info = static_cast<const ZrsLeafInfo *>(leaf->info);
    return static_cast<const ZrtConsDerived *>(info->realType.constraints[0].body);
}

TEST(CouplingRelations, AreRecordedWhetherOrNotTheTargetIsThere)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Import("n") + Augment("/m:c", Leaf("p")) +
                                    Deviation("/n:c", "add", "<must condition=\"x\"/>")),
              ZR_OK);
    EXPECT_TRUE(HasRelation(ctx, "m", ZR_RELATION_AUGMENTED_BY, "a"));
    EXPECT_TRUE(HasRelation(ctx, "n", ZR_RELATION_DEVIATED_BY, "a"));
    EXPECT_FALSE(HasRelation(ctx, "m", ZR_RELATION_DEVIATED_BY, "a"));
}

TEST(CouplingRelations, StandUnderTheLastNamedModule)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Import("a") + Augment("/m:c/a:p/a:q", Leaf("x"))),
              ZR_OK);
    EXPECT_TRUE(HasRelation(ctx, "a", ZR_RELATION_AUGMENTED_BY, "b"));
    EXPECT_FALSE(HasRelation(ctx, "m", ZR_RELATION_AUGMENTED_BY, "b"));
}

TEST(CouplingRelations, AreNotRecordedWithTheModuleItself)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c") + Augment("/m:c", Leaf("p")) +
                                    Deviation("/m:c", "add", "<must condition=\"x\"/>")),
              ZR_OK);
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx, "m"), nullptr);
}

TEST(CoupleAugmentAndGenRelation, TellsOfWhatIsLeftUncoupled)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CoupleAugmentAndGenRelation(ctx, ctx.Module("a")), ZR_ERR_INVALID);
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CoupleAugmentAndGenRelation(ctx, ctx.Module("a")), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CoupleAugmentAndGenRelation(nullptr, ctx.Module("a")), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_LOADER_CoupleAugmentAndGenRelation(ctx, nullptr), ZR_ERR_INVALID);
}

TEST(CoupleAugmentAndGenRelation, WithoutMemoryForTheRelationNothingIsCoupled)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ZrNode *augment = ctx.Module("a")->augments;
    ASSERT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_OK);
    ZR_CTX_DelTwoModRelation(ctx, "m", "a", ZR_RELATION_AUGMENTED_BY);
    {
        AllocGuard guard;
        guard.FailAt(0);
        EXPECT_EQ(ZRS_LOADER_CoupleAugmentAndGenRelation(ctx, ctx.Module("a")), ZR_ERR_NO_MEMORY);
    }
    EXPECT_EQ(augment->flags & ZRS_FLAG_COUPLED, 0u);
    EXPECT_EQ(ZRS_LOADER_CoupleAugmentAndGenRelation(ctx, ctx.Module("a")), ZR_OK);
}

TEST(CouplingMessages, AreRecordedAlsoWhenAnAugmentOfTheModuleMadeAnInput)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<rpc name=\"r\"/>" + Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:r/input", Leaf("p")) +
                                    Deviation("/m:c", "replace", "<type name=\"string\"/>")),
              ZR_OK);
    EXPECT_THAT(ctx.Messages("a"), ElementsAre("Failed to replace type of node \"c\".",
                                               "Failed to couple deviation statements."));
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Augment("/m:r/output", Leaf("p")) +
                                    Augment("/m:none", Leaf("p")) +
                                    Deviation("/m:c", "replace", "<type name=\"string\"/>")),
              ZR_OK);
    EXPECT_THAT(ctx.Messages("b"), ElementsAre("Failed to couple augment statements.",
                                               "Failed to replace type of node \"c\"."));
}

TEST(CouplingMessages, OfAugmentsAreNotRecordedAgainWhileTheEntryStands)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    EXPECT_THAT(ctx.Messages("a"), ElementsAre("Failed to couple augment statements."));
    ASSERT_EQ(ZRS_LOADER_AppendModuleToCtx(ctx, ctx.Module("a"), nullptr), ZR_OK);
    EXPECT_THAT(ctx.Messages("a"), ElementsAre("Failed to couple augment statements."));
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    EXPECT_THAT(ctx.Messages("a"), IsEmpty());
}

TEST(CouplingMessages, OfAugmentsAreRecordedBesideAnApplicationsEntryOfThatStage)
{
    TestContext ctx;
    ZR_CTX_SetLoadStage(ctx, ZRS_STAGE_AUGMENT);
    ZR_CTX_AddModError(ctx, "a", "The application's.");
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    EXPECT_THAT(ctx.Messages("a"),
                ElementsAre("The application's.", "Failed to couple augment statements."));
}

TEST(CoupleDeviationAndGenRelation, TellsTheFirstFailingStatusAndTriesAll)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Leaf("x", "string", "<default value=\"v\"/>") + Container("c")),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Deviation("/m:x", "add", "<default value=\"w\"/>") +
                                    Deviation("/m:c", "add", "<must condition=\"x\"/>")),
              ZR_OK);
    EXPECT_EQ(ctx.Node("/m:c")->mustCount, 1);
    EXPECT_EQ(ZRS_LOADER_CoupleDeviationAndGenRelation(ctx, nullptr), ZR_ERR_INVALID);
    ctx.Module("d")->deviations[0].flags = 0;
    EXPECT_EQ(ZRS_LOADER_CoupleDeviationAndGenRelation(ctx, ctx.Module("d")), ZR_ERR_FAILED);
}

TEST(UpdateGlobalTypDefDerivedFrom, ResolvesReferencesToTheModulesOwnTypedefs)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("n", "<typedef name=\"t\"><type name=\"int8\"/></typedef>"), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("m", Import("n") +
                                    "<typedef name=\"u\"><type name=\"t\"/></typedef>"
                                    "<typedef name=\"t\"><type name=\"uint8\"/></typedef>" +
                                    Leaf("x", "t") + Leaf("y", "n:t") + "<rpc name=\"r\"><input>" +
                                    Leaf("i", "u") + "</input></rpc><notification name=\"e\">" +
                                    Leaf("k", "u") + "</notification>" +
                                    Augment("/n:none", Container("p", Leaf("q", "u")))),
              ZR_OK);
    const ZrMod *m = ctx.Module("m");
    EXPECT_EQ(DerivedOf(ctx.Node("/m:x"))->resolved, &m->typedefs[1].realType);
    EXPECT_EQ(DerivedOf(ctx.Node("/m:y"))->resolved, nullptr) << "looked up at each validation";
    EXPECT_EQ(DerivedOf(ctx.Node("/m:r/input/i"))->resolved, &m->typedefs[0].realType);
    EXPECT_EQ(DerivedOf(ctx.Node("/m:e/k"))->resolved, &m->typedefs[0].realType);
    EXPECT_EQ(DerivedOf(m->augments->firstChild->firstChild)->resolved, &m->typedefs[0].realType);
}

TEST(UpdateGlobalTypDefDerivedFrom, ATypedefThatCannotBeResolvedIsRecorded)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<typedef name=\"t\"><type name=\"none\"/></typedef>"
                                "<typedef name=\"u\"><type name=\"v\"/></typedef>"
                                "<typedef name=\"v\"><type name=\"int8\"/></typedef>"),
              ZR_OK);
    EXPECT_THAT(ctx.Messages("m"), ElementsAre("Failed to update typedef statements."));
    EXPECT_EQ(ZRS_LOADER_UpdateGlobalTypDefDerivedFrom(ctx.Module("m")), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_LOADER_UpdateGlobalTypDefDerivedFrom(nullptr), ZR_ERR_INVALID);
    const auto *body = static_cast<const ZrtConsDerived *>(
        ctx.Module("m")->typedefs[1].realType.constraints[0].body);
    EXPECT_EQ(body->resolved, &ctx.Module("m")->typedefs[2].realType) << "the others are resolved";
}

TEST(UpdateGlobalTypDefDerivedFrom, ALeafThatCannotBeResolvedIsNoFailure)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Leaf("x", "none")), ZR_OK);
    EXPECT_THAT(ctx.Messages("m"), IsEmpty());
}

TEST(UpdateGlobalTypDefDerivedFrom, OtherModulesNodesAreLeftAlone)
{
    TestContext ctx;
    ASSERT_EQ(
        ctx.LoadBody("m", "<typedef name=\"t\"><type name=\"int8\"/></typedef>" + Container("c")),
        ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p", "m:t"))), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_UpdateGlobalTypDefDerivedFrom(ctx.Module("m")), ZR_OK);
    EXPECT_EQ(DerivedOf(ctx.Node("/m:c/a:p"))->resolved, nullptr);
}

TEST(CoupleModPendTblAndCurMod, TellsEveryLoadedModuleInOrderAndThenTheFirst)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("n", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("b", Import("n") + Augment("/n:c", Leaf("q"))), ZR_OK);
    ZRS_NODE_UnCoupleAugmentNode(ctx.Module("a")->augments);
    ZRS_NODE_UnCoupleAugmentNode(ctx.Module("b")->augments);
    ZrsPendTbl table;
    zr::InitPendTable(&table);
    ASSERT_EQ(zr::AppendPending(&table, "none"), ZR_OK);
    ASSERT_EQ(zr::AppendPending(&table, "m"), ZR_OK);
    ZRS_LOADER_CoupleModPendTblAndCurMod(ctx, &table, "n");
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("p"));
    EXPECT_THAT(ChildNames(ctx.Node("/n:c")), ElementsAre("q"));
    zr::FreePendTable(&table);
    ZRS_LOADER_CoupleModPendTblAndCurMod(nullptr, &table, "n");
    ZRS_LOADER_CoupleModPendTblAndCurMod(ctx, nullptr, "n");
}

TEST(CoupleModPendTblAndCurMod, HappensAlsoWhenAnImportCannotBeLoaded)
{
    TempDir dir;
    dir.Write("m.yin", ModuleText("m", Container("c")));
    dir.Write("a.yin", ModuleText("a", Import("m") + Import("gone") + Augment("/m:c", Leaf("p"))));
    TestContext ctx(ZR_CTX_LOAD_IMPORTS);
    ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, dir.path().c_str()), ZR_OK);
    EXPECT_EQ(ZR_CTX_LoadModule(ctx, "a"), ZR_ERR_NOT_FOUND);
    EXPECT_NE(ctx.Node("/m:c/a:p"), nullptr);
    EXPECT_THAT(ctx.Messages("a"), IsEmpty());
}

} // namespace
