// SPDX-License-Identifier: Apache-2.0
#include "loader/pending.h"

#include "loader/unload_fixture.h"

namespace {

using namespace zrtest;
using testing::ElementsAre;

TEST(PendingFeatures, AreNotedOnce)
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

} // namespace
