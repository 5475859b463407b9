// SPDX-License-Identifier: Apache-2.0
// Parts that arrive one by one, over many sets of modules that augment and deviate each other: the
// schema is the one that all parts at once give.
#include "loader/part_sets.h"

#include <memory>
#include <set>

#include "loader/unload_fixture.h"
#include "schema/merge/merge.h"

using namespace zrtest;

namespace {

constexpr uint32_t kSets = 200;

std::set<std::string> DifferentMessages(TestContext &ctx)
{
    std::vector<std::string> messages = ctx.Messages();
    return {messages.begin(), messages.end()};
}

// A set of modules of which one comes in parts. Each part has a directory of its own, so that the
// order in which the parts are read is theirs.
class PartSet {
public:
    explicit PartSet(uint32_t seed) : random(seed), set_(MakeModuleSet(seed)), order(set_.names)
    {
        name = order[random.Below(static_cast<uint32_t>(order.size()))];
        random.Shuffle(order);
        parts_ = SplitIntoParts(set_.texts[name], 2 + random.Below(3), random);
        if (random.Chance(20))
            Spoil();
        for (size_t i = 0; i < parts_.size(); ++i)
            dirs_.push_back(std::make_unique<TempDir>());
        for (const std::string &other : order) {
            if (other != name)
                dirs_[0]->Write(other + ".yin", set_.texts[other]);
        }
    }
    void AddSearchDirs(ZrCtx *ctx) const
    {
        for (const auto &dir : dirs_)
            ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, dir->path().c_str()), ZR_OK);
    }
    bool AllWritten() const { return written_ == parts_.size(); }
    void WritePart()
    {
        dirs_[written_]->Write(name + "@@" + std::to_string(written_) + ".yin", parts_[written_]);
        ++written_;
    }
    // What loading all modules gives with the parts that are there.
    void ExpectLikeFresh(TestContext &ctx, const std::string &where)
    {
        TestContext fresh(kKeepAll);
        AddSearchDirs(fresh);
        for (const std::string &module : order)
            ASSERT_EQ(ZR_CTX_LoadModule(fresh, module.c_str()), ZR_OK);
        for (size_t i = 0; spoilt && i < parts_.size(); ++i) // a part that fails ends a load
            ASSERT_EQ(ZR_CTX_LoadModule(fresh, name.c_str()), ZR_OK);
        ASSERT_EQ(DumpContext(ctx), DumpContext(fresh)) << where;
        if (!spoilt) { // only two messages of a module are kept
            ASSERT_EQ(DifferentMessages(ctx), DifferentMessages(fresh)) << where;
        }
    }

    // A module that does not come in parts.
    std::string Another()
    {
        for (;;) {
            const std::string &other = order[random.Below(static_cast<uint32_t>(order.size()))];
            if (other != name)
                return other;
        }
    }

    Random random;
    bool spoilt = false;

private:
    // Lets the last part disagree with the others about their first common container, if any.
    void Spoil()
    {
        std::string &part = parts_.back();
        size_t at = part.find("<container ");
        if (at == std::string::npos)
            return;
        part.insert(part.find('>', at) + 1, "<presence value=\"p\"/>");
        spoilt = true;
    }

    ModuleSet set_;
    std::vector<std::string> parts_;
    std::vector<std::unique_ptr<TempDir>> dirs_;
    size_t written_ = 0;

public:
    std::vector<std::string> order;
    std::string name; // of the module in parts
};

} // namespace

TEST(PartsOneByOne, EqualAllPartsAtOnce)
{
    for (uint32_t seed = 0; seed < kSets; ++seed) {
        PartSet set(seed);
        TestContext ctx(kKeepAll);
        set.AddSearchDirs(ctx);
        set.WritePart();
        for (const std::string &module : set.order)
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, module.c_str()), ZR_OK);
        while (!set.AllWritten()) {
            set.WritePart();
            if (set.random.Chance(30) && !set.AllWritten())
                set.WritePart(); // two at a time
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, set.name.c_str()), ZR_OK);
            set.ExpectLikeFresh(ctx, "seed " + std::to_string(seed));
            if (HasFatalFailure())
                return;
        }
        ASSERT_EQ(ZR_CTX_LoadModule(ctx, set.name.c_str()), ZR_OK);
        set.ExpectLikeFresh(ctx, "loaded again, seed " + std::to_string(seed));
    }
}

TEST(PartsOneByOne, AlsoWhenModulesAreUnloadedAndLoadedAgainInBetween)
{
    for (uint32_t seed = 0; seed < kSets; ++seed) {
        PartSet set(seed);
        TestContext ctx(kKeepAll);
        set.AddSearchDirs(ctx);
        set.WritePart();
        for (const std::string &module : set.order)
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, module.c_str()), ZR_OK);
        while (!set.AllWritten()) {
            std::string other = set.Another();
            bool before = set.random.Chance(50);
            ASSERT_EQ(ZR_CTX_UnloadModule(ctx, other.c_str()), ZR_OK);
            if (before) {
                ASSERT_EQ(ZR_CTX_LoadModule(ctx, other.c_str()), ZR_OK);
            }
            set.WritePart();
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, set.name.c_str()), ZR_OK);
            if (!before) {
                ASSERT_EQ(ZR_CTX_LoadModule(ctx, other.c_str()), ZR_OK);
            }
            set.ExpectLikeFresh(ctx, "seed " + std::to_string(seed));
            if (HasFatalFailure())
                return;
        }
        ASSERT_EQ(ZR_CTX_UnloadModule(ctx, set.name.c_str()), ZR_OK);
        for (int i = 0; set.spoilt && i < 4; ++i)
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, set.name.c_str()), ZR_OK);
        set.ExpectLikeFresh(ctx, "built again, seed " + std::to_string(seed));
    }
}

TEST(PartsOneByOne, AreWorthTheName)
{
    int spoilt = 0;
    int disagreeing = 0;
    int deviated = 0;
    int augmenting = 0;
    for (uint32_t seed = 0; seed < kSets; ++seed) {
        PartSet set(seed);
        TestContext ctx(kKeepAll);
        set.AddSearchDirs(ctx);
        while (!set.AllWritten())
            set.WritePart();
        for (const std::string &module : set.order)
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, module.c_str()), ZR_OK);
        const ZrMod *module = ctx.Module(set.name.c_str());
        bool failed = DifferentMessages(ctx).count("Failed to merge schema tree.") != 0;
        spoilt += set.spoilt && failed;
        disagreeing += !set.spoilt && failed;
        augmenting += module->augments != nullptr;
        deviated += zr::MayDifferFromFiles(module);
    }
    EXPECT_GT(spoilt, 10);
    EXPECT_LT(disagreeing, 10);
    EXPECT_GT(augmenting, 50);
    EXPECT_GT(deviated, 50);
}
