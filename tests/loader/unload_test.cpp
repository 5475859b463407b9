// SPDX-License-Identifier: Apache-2.0
#include "loader/unload_fixture.h"

#include <cstdio>
#include <filesystem>

#include "foundation/relations.h"

namespace {

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> g_told;

void NoteReload(ZrCtx *, const char *moduleName)
{
    g_told.emplace_back(moduleName);
}

bool HasRelation(TestContext &ctx, const char *target, uint32_t kind, const char *other)
{
    return ZR_CTX_FindModRelationItem(ZR_CTX_FindModRelationTbl(ctx, target), kind,
                                      ctx.Module(other)->name) != nullptr;
}

TEST(Unload, AModuleThatNothingDependsOnIsDestroyedOnly)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("n", Container("c"));
    g_told.clear();
    ZR_CTX_SetReloadModuleCbFunc(set.ctx, NoteReload);
    const ZrMod *other = set.ctx.Module("n");
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
    EXPECT_EQ(set.ctx.Module("m"), nullptr);
    EXPECT_EQ(set.ctx.Module("n"), other);
    EXPECT_THAT(g_told, ElementsAre("m"));
}

TEST(Unload, AModuleThatIsNotLoadedLosesItsErrorsOnly)
{
    Dir set;
    EXPECT_EQ(ZR_CTX_LoadModule(set.ctx, "m"), ZR_ERR_NOT_FOUND);
    ASSERT_THAT(set.ctx.Messages("m"),
                ElementsAre("Module \"m\" not found from search directories."));
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
    EXPECT_THAT(set.ctx.Messages(), IsEmpty());
}

TEST(Unload, NullArguments)
{
    TestContext ctx;
    EXPECT_EQ(ZR_CTX_UnloadModule(nullptr, "m"), ZR_OK);
    EXPECT_EQ(ZR_CTX_UnloadModule(ctx, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_LOADER_UnloadModuleProc(nullptr, "m"), ZR_ERR_INVALID);
}

TEST(Unload, AnAugmentingModuleTakesItsNodesAway)
{
    Dir set;
    set.Add("m", Container("c", Leaf("x")));
    set.Add("a", Import("m") + Augment("/m:c", Leaf("p")));
    const ZrMod *target = set.ctx.Module("m");
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "a"), ZR_OK);
    EXPECT_EQ(set.ctx.Module("m"), target) << "the target's module stays as it is";
    EXPECT_THAT(ChildNames(set.ctx.Node("/m:c")), ElementsAre("x"));
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(set.ctx, "m"), nullptr);
}

TEST(Unload, AnAugmentedModuleLeavesItsAugmentsUncoupled)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("a", Import("m") + Container("ca") + Augment("/m:c", Leaf("p")));
    g_told.clear();
    ZR_CTX_SetReloadModuleCbFunc(set.ctx, NoteReload);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
    EXPECT_THAT(g_told, ElementsAre("m", "a"));
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"a"}));
    EXPECT_THAT(ChildNames(set.ctx.Module("a")->augments), ElementsAre("p"));
    EXPECT_THAT(set.ctx.Messages("a"), ElementsAre("Failed to couple augment statements."));
    EXPECT_TRUE(HasRelation(set.ctx, "m", ZR_RELATION_AUGMENTED_BY, "a"));
    EXPECT_EQ(ZR_CTX_LoadModule(set.ctx, "m"), ZR_OK);
    EXPECT_NE(set.ctx.Node("/m:c/a:p"), nullptr);
}

TEST(Unload, ADeviatingModuleRebuildsWhatItDeviatedAndWhatDependsOnThat)
{
    Dir set;
    set.Add("m", Container("c", Leaf("x") + Container("k")));
    set.Add("a", Import("m") + Augment("/m:c", Leaf("p")));
    set.Add("b", Import("m") + Import("a") + Deviation("/m:c/a:p", "add", Must("b")));
    set.Add("d", Import("m") + Deviation("/m:c", "add", "<config value=\"false\"/>") +
                     Deviation("/m:c/m:x", "not-supported"));
    g_told.clear();
    ZR_CTX_SetReloadModuleCbFunc(set.ctx, NoteReload);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "d"), ZR_OK);
    EXPECT_THAT(g_told, ElementsAre("d", "m", "a", "b"));
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m", "a", "b"}));
    EXPECT_THAT(set.ctx.Messages(), IsEmpty());
}

TEST(Unload, AugmentsThatADeviationDroppedComeBackWithoutIt)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("a", Import("m") + Augment("/m:c", Container("p")));
    set.Add("b", Import("m") + Import("a") + Augment("/m:c/a:p", Leaf("q")));
    set.Add("d", Import("m") + Deviation("/m:c", "not-supported"));
    ASSERT_EQ(set.ctx.Module("b")->augments, nullptr);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "d"), ZR_OK);
    EXPECT_NE(set.ctx.Node("/m:c/a:p/b:q"), nullptr);
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m", "a", "b"}));
}

TEST(Unload, ADeviationThatOnlyDroppedAnAugmentIsNotConcernedByItsModule)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("a", Import("m") + Container("ca") + Augment("/m:c", Leaf("p")));
    set.Add("d", Import("m") + Deviation("/m:c", "not-supported"));
    EXPECT_EQ(ZRS_LOADER_IsAugAndRmvModShareSameDevaition(set.ctx, "a", "d"), 1u);
    EXPECT_EQ(ZRS_LOADER_IsAugAndRmvModShareSameDevaition(set.ctx, "m", "d"), 0u);
    EXPECT_EQ(ZRS_LOADER_IsAugAndRmvModShareSameDevaition(set.ctx, "a", "none"), 0u);
    EXPECT_EQ(ZRS_LOADER_IsAugAndRmvModShareSameDevaition(nullptr, "a", "d"), 0u);
    const ZrMod *target = set.ctx.Module("m");
    const ZrMod *deviating = set.ctx.Module("d");
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "a"), ZR_OK);
    EXPECT_EQ(set.ctx.Module("m"), target);
    EXPECT_EQ(set.ctx.Module("d"), deviating);
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m", "d"}));
}

TEST(Unload, ADeviationWithoutATargetChangedNothing)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("d", Import("m") + Deviation("/m:none", "add", Must("x")));
    const ZrMod *target = set.ctx.Module("m");
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "d"), ZR_OK);
    EXPECT_EQ(set.ctx.Module("m"), target);
}

TEST(Unload, ADeviationThatFailedPartOfTheWayIsUndone)
{
    Dir set;
    set.Add("m", Leaf("x", "string", "<default value=\"v\"/>"));
    set.Add("d", Import("m") +
                     Deviation("/m:x", "add", "<mandatory value=\"true\"/><default value=\"w\"/>"));
    ASSERT_EQ(ZR_NODE_IsMandatory(set.ctx.Node("/m:x")), 1u);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "d"), ZR_OK);
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m"}));
}

TEST(Unload, AMadeInputGoesWithTheModuleThatNeededIt)
{
    Dir set;
    set.Add("m", "<rpc name=\"r\"/>");
    set.Add("a", Import("m") + Augment("/m:r/m:input", Leaf("p")));
    set.Add("b", Import("m") + Augment("/m:r/m:input", Leaf("q")));
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "a"), ZR_OK);
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m", "b"}));
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "b"), ZR_OK);
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m"}));
}

TEST(Unload, ADeviationOfAMadeInputIsAppliedAgainWhenItIsMadeAgain)
{
    Dir set;
    set.Add("m", "<rpc name=\"r\"/>");
    set.Add("a", Import("m") + Augment("/m:r/m:input", Leaf("p")));
    set.Add("d", Import("m") + Deviation("/m:r/m:input", "add", Must("p")));
    ASSERT_EQ(set.ctx.Node("/m:r/input")->mustCount, 1);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "a"), ZR_OK);
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m", "d"}));
    EXPECT_EQ(ZR_CTX_LoadModule(set.ctx, "a"), ZR_OK);
    EXPECT_EQ(set.ctx.Node("/m:r/input")->mustCount, 1);
}

TEST(Unload, EnabledFeaturesAreEnabledAgainAfterTheReload)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("a", Import("m") + "<feature name=\"f\"/><feature name=\"g\"/><feature name=\"h\"/>" +
                     Augment("/m:c", Leaf("p")));
    ASSERT_EQ(ZR_MOD_EnableFeature(set.ctx.Module("a"), "f"), ZR_OK);
    ASSERT_EQ(ZR_MOD_EnableFeature(set.ctx.Module("a"), "h"), ZR_OK);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(set.ctx, "a", "f"), 1u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(set.ctx, "a", "g"), 0u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(set.ctx, "a", "h"), 1u);
}

// Turns a feature of "b" off and another one on when "a" is about to go.
void ChangeFeaturesOfLaterModule(ZrCtx *ctx, const char *moduleName)
{
    if (std::string(moduleName) != "a")
        return;
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx, "b", "f"), ZR_OK);
    EXPECT_EQ(ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(ctx, "b"), "g"), ZR_OK);
}

TEST(Unload, FeaturesAreNotedWhenTheirModulesTurnComes)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("b", Import("m") + "<feature name=\"f\"/><feature name=\"g\"/>" +
                     Augment("/m:c", Leaf("p")));
    set.Add("a", Import("m") + Augment("/m:c", Leaf("p"))); // stands before "b" in the table
    ASSERT_EQ(ZR_MOD_EnableFeature(set.ctx.Module("b"), "f"), ZR_OK);
    ZR_CTX_SetReloadModuleCbFunc(set.ctx, ChangeFeaturesOfLaterModule);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(set.ctx, "b", "f"), 0u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(set.ctx, "b", "g"), 1u);
}

TEST(Unload, AnEnabledFeatureThatTheFileHasNoMoreIsAStatus)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("a", Import("m") + "<feature name=\"f\"/>" + Augment("/m:c", Leaf("p")));
    ASSERT_EQ(ZR_MOD_EnableFeature(set.ctx.Module("a"), "f"), ZR_OK);
    set.dir.Write("a.yin", ModuleText("a", Import("m")));
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_ERR_INVALID);
    EXPECT_NE(set.ctx.Module("a"), nullptr);
}

TEST(Unload, PrivateDataOfReloadedModulesAndNodesStartsEmpty)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("a", Import("m") + Container("ca") + Augment("/m:c", Leaf("p")));
    int mine = 0;
    ZR_MOD_SetPrivate(set.ctx.Module("a"), &mine);
    ZR_NODE_SetPrivate(set.ctx.Node("/a:ca"), &mine);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
    EXPECT_EQ(ZR_MOD_GetPrivate(set.ctx.Module("a")), nullptr);
    EXPECT_EQ(ZR_NODE_GetPrivate(set.ctx.Node("/a:ca")), nullptr);
}

TEST(Unload, AModuleFromMemoryCannotComeBack)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    EXPECT_NE(ZR_CTX_UnloadModule(ctx, "m"), ZR_OK);
    EXPECT_EQ(ctx.Module("m"), nullptr);
    EXPECT_EQ(ctx.Module("a"), nullptr);
    EXPECT_THAT(ctx.Messages("a"), ElementsAre("Module \"a\" not found from search directories."));
}

TEST(Unload, AFileThatVanishedBetweenLoadAndUnloadIsAStatusAndTheOthersComeBack)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("a", Import("m") + Augment("/m:c", Container("p")));
    set.Add("b", Import("m") + Import("a") + Augment("/m:c/a:p", Leaf("q")));
    set.Add("d", Import("m") + Deviation("/m:c", "add", Must("x")));
    ASSERT_EQ(std::remove((set.dir.path() + "/a.yin").c_str()), 0);
    EXPECT_NE(ZR_CTX_UnloadModule(set.ctx, "d"), ZR_OK);
    EXPECT_EQ(set.ctx.Module("a"), nullptr);
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m", "b"}));
    EXPECT_THAT(set.ctx.Messages("a"),
                ElementsAre("Module \"a\" not found from search directories."));
    set.Add("a", Import("m") + Augment("/m:c", Container("p")));
    EXPECT_NE(set.ctx.Node("/m:c/a:p/b:q"), nullptr);
    EXPECT_THAT(set.ctx.Messages("b"), IsEmpty());
}

TEST(Unload, AModuleThatEverythingImportsComesBackWithImportsOnly)
{
    for (uint32_t flags : {0u, uint32_t{ZR_CTX_LOAD_IMPORTS}}) {
        Dir set(flags);
        set.dir.Write("m.yin", ModuleText("m", Container("c")));
        for (const char *name : {"a", "b"}) {
            set.dir.Write(std::string(name) + ".yin",
                          ModuleText(name, Import("m") + Augment("/m:c", Leaf("p"))));
            EXPECT_EQ(ZR_CTX_LoadModule(set.ctx, name), ZR_OK);
        }
        EXPECT_EQ(ZR_CTX_LoadModule(set.ctx, "m"), ZR_OK);
        EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
        EXPECT_NE(set.ctx.Module("a"), nullptr);
        EXPECT_NE(set.ctx.Module("b"), nullptr);
        // Loading "a" again loads what it imports when the context is asked to.
        EXPECT_EQ(set.ctx.Module("m") != nullptr, flags != 0);
    }
}

TEST(Unload, AModuleOfSuffixedFilesIsBuiltAgainFromTheFilesThatAreThere)
{
    Dir set;
    set.dir.Write("m@@one.yin", ModuleText("m", Container("c")));
    ASSERT_EQ(ZR_CTX_LoadModule(set.ctx, "m"), ZR_OK);
    ASSERT_EQ(set.ctx.Module("m")->mergeSourceCount, 1);
    set.dir.Write("m@@one.yin", ModuleText("m", Container("other")));
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
    EXPECT_EQ(set.ctx.Node("/m:c"), nullptr);
    EXPECT_NE(set.ctx.Node("/m:other"), nullptr);
    std::filesystem::remove(set.dir.path() + "/m@@one.yin");
    EXPECT_NE(ZR_CTX_UnloadModule(set.ctx, "m"), ZR_OK);
    EXPECT_EQ(set.ctx.Module("m"), nullptr);
}

TEST(Unload, AStepWithoutAModuleNameLeavesNoPointerBehind)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("a", Import("m") + Augment("/m:c", Container("p")));
    set.Add("b", Import("m") + Augment("/m:c/m:p", Leaf("q"))); // stands in a node of "a"
    ASSERT_NE(set.ctx.Node("/m:c/a:p/q"), nullptr);
    EXPECT_EQ(ZR_CTX_UnloadModule(set.ctx, "a"), ZR_OK);
    EXPECT_EQ(DumpContext(set.ctx), set.Fresh({"m", "b"}));
}

TEST(Unload, AReplacedTypeIsLookedUpNoMoreAfterItsModuleIsGone)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("t", "<typedef name=\"t\"><type name=\"int8\"/></typedef>"), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("m", Import("t") + "<leaf name=\"x\"><type name=\"t:t\"/></leaf>"),
              ZR_OK);
    ASSERT_EQ(ZR_NODE_ValidateValue(ctx.Node("/m:x"), ZR_VALUE_STRING, "5"), ZR_OK);
    EXPECT_EQ(ZR_CTX_UnloadModule(ctx, "t"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(ctx.Node("/m:x"), ZR_VALUE_STRING, "5"), ZR_ERR_VALUE_DERIVED);
}

TEST(UnloadReload, FeaturesOfAModuleThatIsNotLoadedCannotBeTurnedOn)
{
    TestContext ctx;
    Table table("gone");
    EXPECT_EQ(ZRS_LOADER_EnableReloadModFeature(ctx, table.node()), ZR_ERR_NOT_FOUND);
    EXPECT_NE(ZRS_LOADER_ReloadRelatedMod(ctx, table.get()), ZR_OK);
    table.node()->doNotReload = 1;
    EXPECT_EQ(ZRS_LOADER_ReloadRelatedMod(ctx, table.get()), ZR_OK);
}

TEST(UnloadSteps, UncoupleTheModuleAndDeleteItsRelations)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p")) +
                                    Deviation("/m:c", "add", Must("x"))),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Augment("/m:c", Leaf("q"))), ZR_OK);
    Table table("a");
    EXPECT_EQ(ZRS_LOADER_UnloadModUncoupleProc(ctx, table.get()), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("q"));
    EXPECT_FALSE(HasRelation(ctx, "m", ZR_RELATION_AUGMENTED_BY, "a"));
    EXPECT_FALSE(HasRelation(ctx, "m", ZR_RELATION_DEVIATED_BY, "a"));
    EXPECT_TRUE(HasRelation(ctx, "m", ZR_RELATION_AUGMENTED_BY, "b"));
    EXPECT_EQ(ZRS_LOADER_ProcModuleAugAndRelationUncouple(ctx, "none"), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_UnloadModRemoveProc(ctx, table.get()), ZR_OK);
    EXPECT_EQ(ctx.Module("a"), nullptr);
}

TEST(UnloadSteps, TheRemovalStopsWithoutMemoryForTheFeatures)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", "<feature name=\"f\"/>"), ZR_OK);
    ZR_MOD_EnableFeature(ctx.Module("a"), "f");
    Table table("a");
    {
        AllocGuard guard;
        guard.FailAt(0);
        EXPECT_EQ(ZRS_LOADER_UnloadModRemoveProc(ctx, table.get()), ZR_ERR_NO_MEMORY);
        guard.FailAt(1);
        EXPECT_EQ(ZRS_LOADER_UnloadModRemoveProc(ctx, table.get()), ZR_ERR_NO_MEMORY);
    }
    EXPECT_NE(ctx.Module("a"), nullptr);
}

TEST(Unload, EveryFailingAllocationEitherChangesNothingOrIsAStatusOfTheReload)
{
    TempDir dir;
    dir.Write("m.yin", ModuleText("m", Container("c") + "<rpc name=\"r\"/>"));
    dir.Write("a.yin", ModuleText("a", Import("m") + "<feature name=\"f\"/>" +
                                           Augment("/m:c", Container("p")) +
                                           Augment("/m:r/m:input", Leaf("i"))));
    dir.Write("b.yin", ModuleText("b", Import("m") + Import("a") + Augment("/m:c/a:p", Leaf("q"))));
    dir.Write("d.yin", ModuleText("d", Import("m") + Deviation("/m:c", "add", Must("x"))));
    uint64_t unchanged = 0;
    FailEachAllocation([&](FailPoint &memory) {
        TestContext ctx;
        ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, dir.path().c_str()), ZR_OK);
        for (const char *name : {"m", "a", "b", "d"})
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, name), ZR_OK);
        ZR_MOD_EnableFeature(ctx.Module("a"), "f");
        std::string before = DumpContext(ctx);
        uint32_t status = memory.RunStatus([&] { return ZR_CTX_UnloadModule(ctx, "d"); });
        if (ctx.Module("d") != nullptr) {
            EXPECT_EQ(status, ZR_ERR_NO_MEMORY);
            EXPECT_EQ(DumpContext(ctx), before);
            ++unchanged;
        }
    });
    EXPECT_GT(unchanged, 5u);
}

std::vector<std::string> Names(const ZrsPendTbl *table)
{
    std::vector<std::string> names;
    for (const ZrListLink *link = table->nodes.next; link != &table->nodes; link = link->next)
        names.emplace_back(reinterpret_cast<const ZrsPendNode *>(link)->moduleName);
    return names;
}

TEST(UnloadCollecting, FollowsAugmentsAndDeviationsInBothDirections)
{
    Dir set;
    set.Add("m", Container("c"));
    set.Add("n", Container("c"));
    set.Add("a", Import("m") + Augment("/m:c", Leaf("p")));
    set.Add("d", Import("m") + Import("n") + Deviation("/m:c", "add", Must("x")) +
                     Deviation("/n:c", "add", Must("x")));
    set.Add("e", Import("n") + Augment("/n:c", Leaf("p")));
    Table table("m");
    EXPECT_EQ(ZRS_LOADER_PropagateModuleRemove(set.ctx, "m", table.get()), ZR_OK);
    EXPECT_THAT(Names(table.get()), ElementsAre("m", "d", "a"));
    EXPECT_EQ(ZRS_LOADER_PropagateModuleRemove(set.ctx, "d", table.get()), ZR_OK);
    EXPECT_THAT(Names(table.get()), ElementsAre("m", "d", "a", "n"));
    EXPECT_EQ(ZRS_LOADER_PropagateModuleRemove(set.ctx, "n", table.get()), ZR_OK);
    EXPECT_THAT(Names(table.get()), ElementsAre("m", "d", "a", "n", "e"));
    EXPECT_EQ(
        ZRS_LOADER_CheckRelTblHaveDevByWithSameName(ZR_CTX_FindModRelationTbl(set.ctx, "n"), "d"),
        1u);
    EXPECT_EQ(
        ZRS_LOADER_CheckRelTblHaveDevByWithSameName(ZR_CTX_FindModRelationTbl(set.ctx, "n"), "e"),
        0u);
    EXPECT_EQ(ZRS_LOADER_CheckRelTblHaveDevByWithSameName(nullptr, "d"), 0u);
}

} // namespace
