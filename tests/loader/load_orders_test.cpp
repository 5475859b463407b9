// SPDX-License-Identifier: Apache-2.0
// Three modules in all six orders, loaded once and again: one schema.
#include <algorithm>
#include <functional>

#include "loader/module_sets.h"
#include "loader/unload_fixture.h"
#include "model/context.h"
#include "schema/coupling_fixture.h"
#include "schema/module/module.h"

namespace {

using namespace zrtest;

constexpr uint32_t kSets = 300;

// Calls `visit`(order) for every order of the names.
void ForEachOrder(std::vector<std::string> names,
                  const std::function<void(const std::vector<std::string> &)> &visit)
{
    std::sort(names.begin(), names.end());
    do {
        visit(names);
    } while (std::next_permutation(names.begin(), names.end()));
}

// The files of a set, and a context that reads them.
class SetOnDisk {
public:
    explicit SetOnDisk(const ModuleSet &set)
    {
        for (const auto &[name, text] : set.texts)
            dir_.Write(name + ".yin", text);
    }
    void Load(TestContext *ctx, const std::vector<std::string> &order) const
    {
        ASSERT_EQ(ZR_CTX_SetSearchDir(*ctx, dir_.path().c_str()), ZR_OK);
        for (const std::string &name : order)
            ASSERT_EQ(ZR_CTX_LoadModule(*ctx, name.c_str()), ZR_OK);
    }

private:
    TempDir dir_;
};

// What stands in the deviation of the one node that module b adds to module a, and in the node.
struct DeviateRow {
    const char *about;
    std::string node;
    std::string deviation;
};

const std::vector<DeviateRow> &DeviatesOfEveryKind()
{
    auto deviate = [](const std::string &kind, const std::string &inside = "") {
        return Deviation("/a:top/b:foo", kind, inside);
    };
    static const std::vector<DeviateRow> rows = {
        {"not-supported", "", deviate("not-supported")},
        {"add config true", "", deviate("add", Config("true"))},
        {"add config false", "", deviate("add", Config("false"))},
        {"replace config true", Config("false"), deviate("replace", Config("true"))},
        {"replace config false", Config("true"), deviate("replace", Config("false"))},
        {"add deny-all", "", deviate("add", Nacm("default-deny-all"))},
        {"add deny-write", Nacm("default-deny-all"), deviate("add", Nacm("default-deny-write"))},
        {"add must", Must("x"), deviate("add", Must("y"))},
        {"delete must", Must("x"), deviate("delete", Must("x"))},
        {"add default", "", deviate("add", Default("v"))},
        {"delete default", Default("v"), deviate("delete", Default("v"))},
        {"replace default", Default("v"), deviate("replace", Default("w"))},
        {"add units", "", deviate("add", Units("v"))},
        {"delete units", Units("v"), deviate("delete", Units("v"))},
        {"replace units", Units("v"), deviate("replace", Units("w"))},
        {"add mandatory", "", deviate("add", Mandatory("true"))},
        {"replace mandatory", Mandatory("true"), deviate("replace", Mandatory("false"))},
        {"add extension", "", deviate("add", Ext("tag"))},
        {"delete extension", Ext("tag"), deviate("delete", Ext("tag"))},
        {"replace type", "", deviate("replace", "<type name=\"uint8\"/>")},
    };
    return rows;
}

// Module a with a top-level container, module b that augments it, module v that deviates both.
ModuleSet AugmentedAndDeviated(const std::string &top, const DeviateRow &row,
                               const std::string &topDeviation)
{
    std::string imports = Import("a") + Import("b") + Import("e") + Import("ietf-netconf-acm");
    ModuleSet set;
    set.names = {"a", "b", "v"};
    set.texts["a"] = ModuleText("a", imports + Container("top", top));
    set.texts["b"] = ModuleText("b", imports + Augment("/a:top", Leaf("foo", "string", row.node)));
    set.texts["v"] = ModuleText("v", imports + row.deviation + topDeviation);
    return set;
}

TEST(LoadOrder, OfADeviationOfWhatAThirdModuleAddsDoesNotMatter)
{
    const std::vector<std::string> tops = {"", Config("true"), Config("false"),
                                           Nacm("default-deny-all"), Nacm("default-deny-write")};
    const std::vector<std::string> topDeviations = {
        "", Deviation("/a:top", "replace", Config("false")),
        Deviation("/a:top", "replace", Config("true")),
        Deviation("/a:top", "add", Nacm("default-deny-all"))};
    for (const DeviateRow &row : DeviatesOfEveryKind()) {
        for (const std::string &top : tops) {
            for (const std::string &topDeviation : topDeviations) {
                ModuleSet set = AugmentedAndDeviated(top, row, topDeviation);
                std::string first;
                ForEachOrder(set.names, [&](const std::vector<std::string> &order) {
                    TestContext ctx(kKeepAll);
                    for (const std::string &name : order)
                        ASSERT_EQ(ctx.Load(set.texts[name]), ZR_OK);
                    std::string dump = DumpContext(ctx);
                    if (first.empty())
                        first = dump;
                    ASSERT_EQ(dump, first) << row.about << testing::PrintToString(order);
                    ASSERT_TRUE(ctx.Messages().empty()) << row.about;
                    ASSERT_EQ(ctx.Module("v")->deviations[0].flags, ZRS_DEVIATION_COUPLED);
                });
            }
        }
    }
}

TEST(LoadOrder, OfADeviationBelowInheritedFlagsGivesWhatLoadingInDependencyOrderGives)
{
    ModuleSet set = AugmentedAndDeviated(
        Config("false") + Nacm("default-deny-all"),
        {"", "", Deviation("/a:top/b:foo", "add", Config("true") + Nacm("default-deny-write"))},
        "");
    ForEachOrder(set.names, [&](const std::vector<std::string> &order) {
        TestContext ctx;
        for (const std::string &name : order)
            ASSERT_EQ(ctx.Load(set.texts[name]), ZR_OK);
        const ZrNode *foo = ctx.Node("/a:top/b:foo");
        EXPECT_EQ(ZR_NODE_IsRwConfig(foo), 1u) << testing::PrintToString(order);
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(foo), 1u);
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyWrite(foo), 1u);
    });
}

TEST(LoadOrder, OfThreeModulesDoesNotChangeTheSchemaOrTheMessages)
{
    for (uint32_t seed = 0; seed < kSets; ++seed) {
        ModuleSet set = MakeModuleSet(seed, 3);
        std::string first;
        std::vector<std::string> messages;
        ForEachOrder(set.names, [&](const std::vector<std::string> &order) {
            TestContext ctx(kKeepAll);
            for (const std::string &name : order)
                ASSERT_EQ(ctx.Load(set.texts[name]), ZR_OK);
            std::string dump = DumpContext(ctx);
            if (first.empty()) {
                first = dump;
                messages = ctx.Messages();
            }
            ASSERT_EQ(dump, first) << "seed " << seed << ": " << testing::PrintToString(order);
            ASSERT_EQ(ctx.Messages(), messages) << "seed " << seed;
        });
    }
}

TEST(LoadOrder, OfThreeModulesDoesNotMatterWhenOneIsUnloadedAndLoadedAgain)
{
    for (uint32_t seed = 0; seed < kSets / 2; ++seed) {
        ModuleSet set = MakeModuleSet(seed, 3);
        SetOnDisk files(set);
        std::string first;
        ForEachOrder(set.names, [&](const std::vector<std::string> &order) {
            TestContext ctx(kKeepAll);
            files.Load(&ctx, order);
            if (first.empty())
                first = DumpContext(ctx);
            for (const std::string &name : order) {
                ASSERT_EQ(ZR_CTX_UnloadModule(ctx, name.c_str()), ZR_OK) << "seed " << seed;
                ASSERT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK) << "seed " << seed;
                ASSERT_EQ(DumpContext(ctx), first) << "seed " << seed << " with " << name;
            }
        });
    }
}

constexpr uint32_t kShuffledSets = 600;
constexpr uint32_t kFlags = ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS;

std::string LoadInOrder(const ModuleSet &set, const std::vector<std::string> &order)
{
    TestContext ctx(kFlags);
    for (const std::string &name : order)
        EXPECT_EQ(ctx.Load(set.texts.at(name)), ZR_OK) << name;
    return DumpContext(ctx);
}

std::vector<ZrNode *> AllAugments(const ZrCtx *ctx)
{
    std::vector<ZrNode *> augments;
    for (const ZrMod *module = zr::FirstModule(ctx); module != nullptr;
         module = zr::NextModule(ctx, module)) {
        for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
            augments.push_back(augment);
    }
    return augments;
}

void CoupleAllModules(const ZrCtx *ctx)
{
    for (ZrMod *module = zr::FirstModule(ctx); module != nullptr;
         module = zr::NextModule(ctx, module))
        zr::CoupleModuleAugments(module);
}

TEST(ModuleSets, HoldWhatTheyAreMadeFor)
{
    ModuleSet sum;
    for (uint32_t seed = 0; seed < kShuffledSets; ++seed) {
        ModuleSet set = MakeModuleSet(seed);
        sum.augmentsOnAugments += set.augmentsOnAugments;
        sum.deviationsOnAugmented += set.deviationsOnAugmented;
        sum.sharedNodes += set.sharedNodes;
        sum.madeInputs += set.madeInputs;
        sum.notSupported += set.notSupported;
        sum.changedConfig += set.changedConfig;
        sum.deniedByDeviation += set.deniedByDeviation;
    }
    EXPECT_GT(sum.augmentsOnAugments, 500);
    EXPECT_GT(sum.deviationsOnAugmented, 500);
    EXPECT_GT(sum.sharedNodes, 100);
    EXPECT_GT(sum.madeInputs, 200);
    EXPECT_GT(sum.notSupported, 200);
    EXPECT_GT(sum.changedConfig, 500);
    EXPECT_GT(sum.deniedByDeviation, 200);
}

TEST(LoadOrder, DoesNotChangeTheSchema)
{
    for (uint32_t seed = 0; seed < kShuffledSets; ++seed) {
        ModuleSet set = MakeModuleSet(seed);
        std::vector<std::string> order = set.names;
        std::string first = LoadInOrder(set, order);
        std::vector<std::string> reverse(order.rbegin(), order.rend());
        ASSERT_EQ(LoadInOrder(set, reverse), first) << "seed " << seed;
        Random random(seed);
        for (int i = 0; i < 2; ++i) {
            random.Shuffle(order);
            ASSERT_EQ(LoadInOrder(set, order), first)
                << "seed " << seed << ": " << testing::PrintToString(order);
        }
    }
}

TEST(LoadOrder, IsRestoredForTheNodesOfEveryAugmentThatIsUncoupledAndCoupledAgain)
{
    for (uint32_t seed = 0; seed < kShuffledSets; ++seed) {
        ModuleSet set = MakeModuleSet(seed);
        Random random(seed);
        TestContext ctx(kFlags);
        for (const std::string &name : set.names)
            ASSERT_EQ(ctx.Load(set.texts.at(name)), ZR_OK);
        std::vector<ZrNode *> augments = AllAugments(ctx);
        std::map<ZrNode *, std::vector<std::string>> names;
        std::vector<ZrNode *> coupled;
        for (ZrNode *augment : augments) {
            names[augment] = ChildNames(augment);
            if ((augment->flags & ZRS_FLAG_COUPLED) != 0)
                coupled.push_back(augment);
        }
        std::string before = DumpContext(ctx);
        random.Shuffle(coupled);
        for (ZrNode *augment : coupled) {
            uint32_t status = ZRS_NODE_UnCoupleAugmentNode(augment);
            // Without nodes, the target is looked for where it stood: it may be gone from there.
            ASSERT_TRUE(status == ZR_OK || names[augment].empty()) << seed;
            ASSERT_EQ(augment->flags & ZRS_FLAG_COUPLED, 0u) << seed;
        }
        for (ZrNode *augment : augments) {
            ASSERT_EQ(ChildNames(augment), names[augment]) << seed;
            for (const ZrNode *node = augment->firstChild; node != nullptr; node = node->next)
                ASSERT_EQ(node->parent, augment) << seed;
        }
        // One module's augments may wait for those of another.
        for (size_t i = 0; i < set.names.size(); ++i)
            CoupleAllModules(ctx);
        ASSERT_EQ(DumpContext(ctx), before) << seed;
        for (ZrNode *augment : augments)
            ASSERT_EQ(ChildNames(augment), names[augment]) << seed;
    }
}

} // namespace
