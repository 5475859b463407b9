#include "loader/unload_fixture.h"

#include "foundation/relations.h"

using namespace zrtest;
using testing::ElementsAre;

namespace {

std::vector<std::string> Names(const ZrsPendTbl *table)
{
    std::vector<std::string> names;
    for (const ZrListLink *link = table->nodes.next; link != &table->nodes; link = link->next)
        names.emplace_back(reinterpret_cast<const ZrsPendNode *>(link)->moduleName);
    return names;
}

} // namespace

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

TEST(UnloadCollecting, NotesAFeatureOnce)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<feature name=\"f\"/><feature name=\"g\"/>"), ZR_OK);
    ZR_MOD_EnableFeature(ctx.Module("m"), "*");
    Table table("m");
    EXPECT_EQ(ZRS_LOADER_SaveEnabledFeatureToPendNode(ctx.Module("m"), table.node()), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_SaveEnabledFeatureToPendNode(ctx.Module("m"), table.node()), ZR_OK);
    std::vector<std::string> names;
    for (ZrListLink *link = table.node()->features.next; link != &table.node()->features;
         link = link->next) {
        names.emplace_back(reinterpret_cast<ZrsPendFeature *>(link)->name);
        EXPECT_EQ(reinterpret_cast<ZrsPendFeature *>(link)->flags, uint32_t{ZRS_FEATURE_ENABLED});
    }
    EXPECT_THAT(names, ElementsAre("f", "g"));
    EXPECT_EQ(ZRS_LOADER_AddModFeatPend(table.node(), "f", 0), ZR_OK);
    EXPECT_EQ(reinterpret_cast<ZrsPendFeature *>(table.node()->features.next)->flags, 0u)
        << "what is noted last counts";
    EXPECT_EQ(ZRS_LOADER_SaveEnabledFeatureToPendNode(nullptr, table.node()), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_LOADER_AddModFeatPend(table.node(), nullptr, 0), ZR_ERR_INVALID);
}
