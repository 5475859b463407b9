// SPDX-License-Identifier: Apache-2.0
#include "schema/coupling_fixture.h"

#include "foundation/relations.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> AugmentTargets(const ZrMod *module)
{
    std::vector<std::string> targets;
    for (const ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
        targets.emplace_back(augment->name);
    return targets;
}

bool IsDeviatedBy(TestContext &ctx, const char *target, const char *other)
{
    const ZrMod *module = ctx.Module(other);
    return ZR_CTX_FindModRelationItem(ZR_CTX_FindModRelationTbl(ctx, target),
                                      ZR_RELATION_DEVIATED_BY, module->name) != nullptr;
}

std::vector<std::string> g_removed;

void NoteRemoved(ZrCtx *, ZrNode *node, ZrCtx *)
{
    g_removed.emplace_back(node->name);
}

// Loads the texts in every order and expects the same schema, without a message of coupling.
void ExpectSameInEveryOrder(std::vector<std::string> texts)
{
    std::sort(texts.begin(), texts.end());
    std::string first;
    do {
        TestContext ctx;
        for (const std::string &text : texts)
            ASSERT_EQ(ctx.Load(text), ZR_OK);
        EXPECT_THAT(ctx.Messages(), IsEmpty());
        std::string dump = DumpContext(ctx);
        if (first.empty())
            first = dump;
        EXPECT_EQ(dump, first);
    } while (std::next_permutation(texts.begin(), texts.end()));
}

} // namespace

TEST(NotSupported, TheNodeGoesWithItsSubtreeAfterTheCallback)
{
    g_removed.clear();
    TestContext ctx;
    ZR_CTX_SetBeforeDeviateNotSupportFunc(ctx, NoteRemoved);
    ASSERT_EQ(ctx.LoadBody("m", Container("c", Container("k", Leaf("x")) + Leaf("y"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Deviation("/m:c/m:k", "not-supported")), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("y"));
    EXPECT_THAT(g_removed, ElementsAre("k"));
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, ZRS_DEVIATION_COUPLED);
}

TEST(NotSupported, TopLevelNodesOfEveryListGo)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c") + Leaf("x") +
                                    "<rpc name=\"r\"/>"
                                    "<notification name=\"n\"/>"),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Deviation("/m:c", "not-supported") +
                                    Deviation("/m:r", "not-supported") +
                                    Deviation("/m:n", "not-supported")),
              ZR_OK);
    EXPECT_STREQ(ctx.Module("m")->dataNodes->name, "x");
    EXPECT_EQ(ctx.Module("m")->rpcs, nullptr);
    EXPECT_EQ(ctx.Module("m")->notifications, nullptr);
}

TEST(NotSupported, AugmentsAtAndBelowTheNodeAreDroppedAndNoOthers)
{
    TestContext ctx;
    ASSERT_EQ(
        ctx.LoadBody("m", Container("c", Container("k")) + Container("c-x") + Container("other")),
        ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Container("p")) +
                                    Augment("/m:c/m:k", Leaf("q")) + Augment("/m:c-x", Leaf("r")) +
                                    Augment("/m:other", Leaf("s"))),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Import("a") + Augment("/m:c/a:p", Leaf("t"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Deviation("/m:c", "not-supported")), ZR_OK);
    EXPECT_THAT(AugmentTargets(ctx.Module("a")), ElementsAre("/m:c-x", "/m:other"));
    EXPECT_THAT(AugmentTargets(ctx.Module("b")), IsEmpty());
    EXPECT_TRUE(IsDeviatedBy(ctx, "a", "d"));
    EXPECT_TRUE(IsDeviatedBy(ctx, "b", "d"));
    EXPECT_NE(ctx.Node("/m:c-x/a:r"), nullptr);
}

TEST(NotSupported, AugmentsOfTheTargetsOwnModuleAndOfTheDeviatingModuleAreDroppedToo)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c") + Augment("/m:c", Leaf("own"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Augment("/m:c", Leaf("p")) +
                                    Deviation("/m:c", "not-supported")),
              ZR_OK);
    EXPECT_THAT(AugmentTargets(ctx.Module("m")), IsEmpty());
    EXPECT_THAT(AugmentTargets(ctx.Module("d")), IsEmpty());
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx, "d"), nullptr) << "no relation with itself";
}

TEST(NotSupported, TheFirstOrLastNodeOfAnAugmentMayGo)
{
    for (const char *gone : {"p", "q", "r"}) {
        TestContext ctx;
        ASSERT_EQ(ctx.LoadBody("m", Container("c", Leaf("x"))), ZR_OK);
        ASSERT_EQ(
            ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p") + Leaf("q") + Leaf("r"))),
            ZR_OK);
        ASSERT_EQ(ctx.LoadBody("b", Import("m") + Augment("/m:c", Leaf("z"))), ZR_OK);
        ASSERT_EQ(ctx.LoadBody("d", Import("m") + Import("a") +
                                        Deviation(std::string("/m:c/a:") + gone, "not-supported")),
                  ZR_OK);
        std::vector<std::string> left = {"p", "q", "r"};
        left.erase(std::find(left.begin(), left.end(), gone));
        ZrNode *augment = ctx.Module("a")->augments;
        EXPECT_EQ(ChildNames(augment), left);
        EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_OK);
        EXPECT_EQ(ChildNames(augment), left);
        EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("x", "z"));
    }
}

TEST(NotSupported, TheOnlyNodeOfAnAugmentMayGo)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Import("a") + Deviation("/m:c/a:p", "not-supported")),
              ZR_OK);
    ZrNode *augment = ctx.Module("a")->augments;
    EXPECT_EQ(augment->firstChild, nullptr);
    EXPECT_EQ(augment->lastChild, nullptr);
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_OK);
}

TEST(NotSupported, AnAugmentOfTheNodesOwnModuleKeepsItsStretchToo)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c") + Augment("/m:c", Leaf("p") + Leaf("q")) +
                                    Augment("/m:c", Leaf("r"))),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Deviation("/m:c/m:q", "not-supported") +
                                    Deviation("/m:c/m:r", "not-supported")),
              ZR_OK);
    ZrNode *augment = ctx.Module("m")->augments;
    EXPECT_THAT(ChildNames(augment), ElementsAre("p"));
    EXPECT_EQ(augment->next->firstChild, nullptr);
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_OK);
    EXPECT_THAT(ChildNames(augment), ElementsAre("p"));
}

TEST(NotSupported, ANodeThatAnAugmentAddedToAnAugmentedNodeKeepsBothStretches)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Container("p")) +
                                    Augment("/m:c/a:p", Leaf("q") + Leaf("r"))),
              ZR_OK);
    ASSERT_EQ(
        ctx.LoadBody("d", Import("m") + Import("a") + Deviation("/m:c/a:p/a:q", "not-supported")),
        ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Module("a")->augments), ElementsAre("p"));
    EXPECT_THAT(ChildNames(ctx.Module("a")->augments->next), ElementsAre("r"));
}

TEST(NotSupported, NothingIsLeftForDeviatesAfterIt)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c", Leaf("x"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") +
                                    "<deviation target-node=\"/m:c/m:x\">"
                                    "<deviate value=\"not-supported\"/><deviate value=\"add\">" +
                                    Default("v") + "</deviate></deviation>"),
              ZR_OK);
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, ZRS_DEVIATION_COUPLED);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(NotSupported, ADeviationOfARemovedNodeIsLeftUnapplied)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c", Leaf("x"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Deviation("/m:c", "not-supported")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d2", Import("m") + Deviation("/m:c/m:x", "add", Default("v"))), ZR_OK);
    EXPECT_EQ(ctx.Module("d2")->deviations[0].flags, 0);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(NotSupported, GivesTheSameSchemaInEveryOrder)
{
    ExpectSameInEveryOrder(
        {ModuleText("m", Container("c", Container("k")) + Container("other")),
         ModuleText("a", Import("m") + Augment("/m:c", Container("p")) +
                             Augment("/m:other", Leaf("s")) + Augment("/m:c/a:p", Leaf("u"))),
         ModuleText("b", Import("m") + Import("a") + Augment("/m:c/a:p", Leaf("t"))),
         ModuleText("d", Import("m") + Deviation("/m:c", "not-supported"))});
}

TEST(NotSupported, OfAnInputThatIsMadeOnlyForAnAugmentGivesTheSameSchemaInEveryOrder)
{
    ExpectSameInEveryOrder(
        {ModuleText("m", "<rpc name=\"r\"/>"),
         ModuleText("a", Import("m") + Augment("/m:r/m:input", Leaf("p"))),
         ModuleText("b", Import("m") + Augment("/m:r/m:input", Leaf("q"))),
         ModuleText("d", Import("m") + Deviation("/m:r/m:input", "not-supported"))});
}

TEST(NotSupported, OtherDeviationsOfAMadeInputAreAppliedInEveryOrder)
{
    ExpectSameInEveryOrder(
        {ModuleText("m", "<rpc name=\"r\"/>"),
         ModuleText("a", Import("m") + Augment("/m:r/m:input", Leaf("p"))),
         ModuleText("d", Import("m") + Deviation("/m:r/m:input", "add", Must("p")))});
}

TEST(NotSupported, ANodeReachedByAnotherSpellingLeavesNoPointerBehind)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Container("p"))), ZR_OK);
    // The step without a module name of its own matches the node that "a" added.
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Augment("/m:c/m:p", Leaf("q"))), ZR_OK);
    ASSERT_NE(ctx.Node("/m:c/a:p/q"), nullptr);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Import("a") + Deviation("/m:c/a:p", "not-supported")),
              ZR_OK);
    EXPECT_THAT(AugmentTargets(ctx.Module("b")), IsEmpty());
    EXPECT_TRUE(IsDeviatedBy(ctx, "b", "d"));
}

// More of each than are looked for one by one.
TEST(NotSupported, OfManyNodesBesideManyAugmentsGivesTheSameSchemaInEveryOrder)
{
    std::string nodes, tops, augments, deviations;
    for (int i = 0; i < 100; ++i) {
        std::string n = std::to_string(i);
        nodes += Container("c" + n) + Container("x" + n);
        tops += Container("t" + n) + Container("u" + n);
        augments += Augment("/m:top/m:c" + n, Leaf("l")) + Augment("/m:top", Leaf("y" + n)) +
                    Augment("/m:t" + n, Leaf("l")) +
                    Augment("/m:top/m:c" + n + "/m:none", Leaf("l"));
        if (i % 2 == 0)
            deviations += Deviation("/m:top/m:x" + n, "not-supported") +
                          Deviation("/m:u" + n, "not-supported") +
                          Deviation("/m:top/a:y" + n, "not-supported");
        if (i % 3 == 0)
            deviations += Deviation("/m:t" + n + "/a:l", "not-supported");
        // With these go all augments that have no target.
        deviations += Deviation("/m:top/m:c" + n, "not-supported");
    }
    ExpectSameInEveryOrder({ModuleText("m", Container("top", nodes) + tops),
                            ModuleText("a", Import("m") + augments),
                            ModuleText("d", Import("m") + Import("a") + deviations)});
}

TEST(NotSupported, TheRemovalOfAugmentsRefusesNullArguments)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", ""), ZR_OK);
    ZrMod *module = ctx.Module("m");
    EXPECT_EQ(ZRS_MOD_RemoveAllModAugmentStartsWithDeviationPath(nullptr, "d", "/m:c"),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_RemoveAllModAugmentStartsWithDeviationPath(module, nullptr, "/m:c"),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(module, "d", nullptr),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_CoupleDevNotSup(module, nullptr, nullptr, nullptr), ZR_ERR_INVALID);
    ZRS_NODE_NotifyBeforeDeviateNotSupport(nullptr);
}

TEST(NotSupported, AugmentsOfOneOrOfAllModulesCanBeDroppedByPath)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Augment("/m:c", Leaf("q"))), ZR_OK);
    EXPECT_EQ(ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(ctx.Module("a"), "m", "/m:no"),
              ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("p", "q"));
    EXPECT_EQ(ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(ctx.Module("a"), "m", "/m:c"),
              ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("q"));
    EXPECT_TRUE(IsDeviatedBy(ctx, "a", "m"));
    EXPECT_EQ(ZRS_MOD_RemoveAllModAugmentStartsWithDeviationPath(ctx.Module("m"), "m", "/m:c"),
              ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), IsEmpty());
}

TEST(NotSupported, WithoutMemoryForARelationTheAugmentsOfOneModuleStay)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c") + Container("k")), ZR_OK);
    ASSERT_EQ(
        ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p")) + Augment("/m:k", Leaf("q"))),
        ZR_OK);
    {
        AllocGuard guard;
        guard.FailAt(0);
        EXPECT_EQ(ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(ctx.Module("a"), "m", "/m:c"),
                  ZR_ERR_NO_MEMORY);
    }
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("p"));
    // The one that was spared is not dropped along with the next.
    EXPECT_EQ(ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(ctx.Module("a"), "m", "/m:k"),
              ZR_OK);
    EXPECT_THAT(AugmentTargets(ctx.Module("a")), ElementsAre("/m:c"));
}

TEST(NotSupported, WithoutMemoryForARelationNothingIsRemoved)
{
    std::string m = ModuleText("m", Container("c"));
    std::string a = ModuleText("a", Import("m") + Augment("/m:c", Leaf("p")));
    std::string b = ModuleText("b", Import("m") + Augment("/m:c", Leaf("q")));
    std::string d = ModuleText("d", Import("m") + Deviation("/m:c", "not-supported"));
    FailEachAllocation([&](FailPoint &memory) {
        TestContext ctx;
        for (const std::string &text : {m, a, b})
            ASSERT_EQ(ctx.Load(text), ZR_OK);
        memory.RunStatus([&] { return ctx.Load(d); });
        bool gone = ctx.Node("/m:c") == nullptr;
        EXPECT_EQ(AugmentTargets(ctx.Module("a")).empty(), gone);
        EXPECT_EQ(AugmentTargets(ctx.Module("b")).empty(), gone);
        EXPECT_TRUE(gone || ctx.Node("/m:c/b:q") != nullptr);
        EXPECT_TRUE(gone || memory.Failed());
    });
}
