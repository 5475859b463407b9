// SPDX-License-Identifier: Apache-2.0
// Unloading over many sets of modules that augment and deviate each other.
#include "loader/module_sets.h"
#include "loader/unload_fixture.h"

using namespace zrtest;

namespace {

constexpr uint32_t kSets = 600;

} // namespace

// After an unload, the remaining modules are what loading them alone gives.
TEST(UnloadEqualsNeverLoaded, ForEveryModuleOfEverySet)
{
    for (uint32_t seed = 0; seed < kSets; ++seed) {
        ModuleSet set = MakeModuleSet(seed);
        TempDir dir;
        for (const auto &[name, text] : set.texts)
            dir.Write(name + ".yin", text);
        Random random(seed);
        std::vector<std::string> order = set.names;
        random.Shuffle(order);
        TestContext ctx(kKeepAll);
        ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, dir.path().c_str()), ZR_OK);
        for (const std::string &name : order)
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK);
        // One after the other, until none is left.
        while (!order.empty()) {
            size_t gone = random.Below(static_cast<uint32_t>(order.size()));
            std::string name = order[gone];
            order.erase(order.begin() + static_cast<std::ptrdiff_t>(gone));
            ASSERT_EQ(ZR_CTX_UnloadModule(ctx, name.c_str()), ZR_OK) << "seed " << seed;
            TestContext fresh(kKeepAll);
            ASSERT_EQ(ZR_CTX_SetSearchDir(fresh, dir.path().c_str()), ZR_OK);
            random.Shuffle(order);
            for (const std::string &other : order)
                ASSERT_EQ(ZR_CTX_LoadModule(fresh, other.c_str()), ZR_OK);
            ASSERT_EQ(DumpContext(ctx), DumpContext(fresh))
                << "seed " << seed << " without " << name;
            ASSERT_EQ(ctx.Messages(), fresh.Messages()) << "seed " << seed << " without " << name;
        }
    }
}

TEST(UnloadEqualsNeverLoaded, AlsoWhenTheModuleIsLoadedAgain)
{
    for (uint32_t seed = 0; seed < kSets; ++seed) {
        ModuleSet set = MakeModuleSet(seed);
        TempDir dir;
        for (const auto &[name, text] : set.texts)
            dir.Write(name + ".yin", text);
        TestContext ctx(kKeepAll);
        ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, dir.path().c_str()), ZR_OK);
        for (const std::string &name : set.names)
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK);
        std::string before = DumpContext(ctx);
        std::vector<std::string> messages = ctx.Messages();
        for (const std::string &name : set.names) {
            ASSERT_EQ(ZR_CTX_UnloadModule(ctx, name.c_str()), ZR_OK) << "seed " << seed;
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK) << "seed " << seed;
            ASSERT_EQ(DumpContext(ctx), before) << "seed " << seed << " with " << name;
            ASSERT_EQ(ctx.Messages(), messages) << "seed " << seed << " with " << name;
        }
    }
}
