// SPDX-License-Identifier: Apache-2.0
// The real modules in many orders: the schema that results is always the same.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "model/context.h"
#include "model/module_records.h"
#include "model/node_record.h"
#include "support/context.h"
#include "support/schema_dump.h"

using namespace zrtest;

namespace {

constexpr uint32_t kFlags = ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS;

// Its enumeration value 2147483647 is refused.
constexpr const char *kRefused = "ietf-syslog";

class CouplingOrders : public testing::Test {
protected:
    void SetUp() override
    {
        dir_ = CorpusDir();
        if (dir_.empty())
            GTEST_SKIP() << "there is no folder of real modules";
        for (const auto &entry : std::filesystem::directory_iterator(dir_)) {
            if (entry.path().extension() == ".yin")
                names_.push_back(entry.path().stem());
        }
        std::sort(names_.begin(), names_.end());
        ASSERT_GT(names_.size(), 70u);
    }

    void Load(TestContext *ctx, const std::vector<std::string> &order)
    {
        ASSERT_EQ(ZR_CTX_SetSearchDir(*ctx, dir_.c_str()), ZR_OK);
        for (const std::string &name : order)
            EXPECT_EQ(ZR_CTX_LoadModule(*ctx, name.c_str()),
                      name == kRefused ? ZR_ERR_INVALID : ZR_OK)
                << name;
    }

    // The schema in the order of the file names.
    const std::string &Expected()
    {
        if (expected_.empty()) {
            TestContext ctx(kFlags);
            Load(&ctx, names_);
            expected_ = DumpContext(ctx);
        }
        return expected_;
    }

    void ExpectSame(const std::vector<std::string> &order)
    {
        TestContext ctx(kFlags);
        Load(&ctx, order);
        ExpectAllCoupled(&ctx);
        // Compared as a whole: the difference of two such texts would not be read by anyone.
        EXPECT_TRUE(DumpContext(ctx) == Expected()) << "in the order " << order.front() << ", ...";
    }

    static bool IsAboutCoupling(const std::string &message)
    {
        return message.find("couple") != std::string::npos;
    }

    void ExpectNoCouplingMessage(TestContext *ctx)
    {
        for (const std::string &message : ctx->Messages())
            EXPECT_FALSE(IsAboutCoupling(message)) << message;
    }

    void ExpectAllCoupled(TestContext *ctx)
    {
        ExpectNoCouplingMessage(ctx);
        for (const ZrMod *module = zr::FirstModule(*ctx); module != nullptr;
             module = zr::NextModule(*ctx, module)) {
            for (const ZrNode *augment = module->augments; augment != nullptr;
                 augment = augment->next)
                EXPECT_NE(augment->flags & ZRS_FLAG_COUPLED, 0u)
                    << module->name << " " << augment->name;
            for (int i = 0; i < module->deviationCount; ++i)
                EXPECT_EQ(module->deviations[i].flags, ZRS_DEVIATION_COUPLED)
                    << module->name << " " << module->deviations[i].targetPath;
        }
    }

    // Every module after those that it imports.
    std::vector<std::string> DependencyOrder()
    {
        TestContext ctx(kFlags);
        Load(&ctx, names_);
        std::vector<std::string> order;
        std::set<std::string> seen;
        std::function<void(const std::string &)> visit = [&](const std::string &name) {
            const ZrMod *module = ctx.Module(name.c_str());
            if (module == nullptr || !seen.insert(name).second)
                return;
            for (int i = 0; i < module->importCount; ++i)
                visit(module->imports[i].moduleName);
            order.push_back(name);
        };
        for (const std::string &name : names_)
            visit(name);
        return order;
    }

    std::string dir_;
    std::vector<std::string> names_;
    std::string expected_;
};

} // namespace

TEST_F(CouplingOrders, InAlphabeticalOrderEverythingIsCoupled)
{
    TestContext ctx(kFlags);
    Load(&ctx, names_);
    ExpectAllCoupled(&ctx);
}

TEST_F(CouplingOrders, TheReverseOrderGivesTheSameSchema)
{
    ExpectSame({names_.rbegin(), names_.rend()});
}

TEST_F(CouplingOrders, TenShuffledOrdersGiveTheSameSchema)
{
    std::mt19937 random(1);
    std::vector<std::string> order = names_;
    for (int i = 0; i < 10; ++i) {
        for (size_t k = order.size(); k > 1; --k)
            std::swap(order[k - 1], order[random() % k]);
        ExpectSame(order);
    }
}

TEST_F(CouplingOrders, InDependencyOrderNoCouplingMessageIsEverRecorded)
{
    TestContext ctx(kFlags);
    ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, dir_.c_str()), ZR_OK);
    std::vector<std::string> order = DependencyOrder();
    EXPECT_EQ(order.size(), names_.size() - 1);
    for (const std::string &name : order) {
        ASSERT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK) << name;
        ExpectNoCouplingMessage(&ctx);
    }
    EXPECT_TRUE(DumpContext(ctx) == Expected());
}

TEST_F(CouplingOrders, UnloadingAndReloadingEachModuleInTurnGivesTheSameSchema)
{
    TestContext ctx(kFlags);
    Load(&ctx, names_);
    for (const std::string &name : names_) {
        if (name == kRefused)
            continue;
        ASSERT_EQ(ZR_CTX_UnloadModule(ctx, name.c_str()), ZR_OK) << name;
        EXPECT_EQ(ctx.Module(name.c_str()), nullptr) << name;
        ASSERT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK) << name;
        ASSERT_TRUE(DumpContext(ctx) == Expected()) << name;
    }
    ExpectAllCoupled(&ctx);
}
