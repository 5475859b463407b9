// SPDX-License-Identifier: Apache-2.0
// Every scenario with its n-th allocation failing, for every n: that of the engine, alone and with
// all later ones, or that which libxml2 makes for it. Nothing may crash or leak, every operation
// gives one of its stated statuses, a failure does not go unsaid, and the context is as good as new
// afterwards.
#include <gtest/gtest.h>

#include <cstdio>

#include "foundation/context_record.h"
#include "memory/scenario.h"
#include "model/context.h"
#include "model/module_records.h"
#include "support/alloc.h"
#include "support/schema_dump.h"

namespace {

using namespace zrtest;

// How many allocation points were tried, of all scenarios.
class PointCount : public testing::Environment {
public:
    void TearDown() override
    {
        std::printf("%lu allocation points: each failed alone, and with every later one\n"
                    "%lu allocation points of libxml2: each failed alone\n",
                    points, libxml2sPoints);
    }
    static inline unsigned long points = 0, libxml2sPoints = 0;
};
[[maybe_unused]] testing::Environment *const g_pointCount =
    testing::AddGlobalTestEnvironment(new PointCount);

struct Outcome {
    std::vector<std::string> results;
    std::vector<std::string> messages;
    std::string schema;
    bool operator==(const Outcome &other) const = default;
};

uint32_t CollectMessage(const char *module, const char *, uint32_t, const char *message, uint32_t,
                        void *userData)
{
    static_cast<std::vector<std::string> *>(userData)->push_back(std::string(module) + ": " +
                                                                 message);
    return 0;
}

Outcome RunOnce(const Scenario &scenario, ZrCtx *ctx, const TempDir &folder)
{
    World world(ctx, folder);
    scenario.run(world);
    Outcome outcome{world.results(), {}, DumpContext(ctx)};
    ZR_CTX_ScanAllSchemaLoadFail(ctx, CollectMessage, &outcome.messages);
    return outcome;
}

// Takes everything out of the context again, without a search directory to bring it back from.
void Empty(ZrCtx *ctx, const std::vector<std::string> &messages)
{
    ZR_CTX_UnSetSearchDir(ctx, nullptr);
    while (const ZrMod *module = zr::FirstModule(ctx))
        ZR_CTX_UnloadModule(ctx, std::string(module->name).c_str());
    // Errors of modules that are not there are forgotten by name.
    std::vector<std::string> left = messages;
    ZR_CTX_ScanAllSchemaLoadFail(ctx, CollectMessage, &left);
    for (const std::string &message : left)
        ZR_CTX_UnloadModule(ctx, message.substr(0, message.find(": ")).c_str());
}

enum class Whose { Engines, Libxml2s };

class FailingAllocations : public testing::TestWithParam<std::tuple<Scenario, bool, Whose>> {
protected:
    FailingAllocations()
    {
        if (scenario().writeFiles != nullptr)
            scenario().writeFiles(folder_);
    }
    static const Scenario &scenario() { return std::get<0>(GetParam()); }
    static bool all() { return std::get<1>(GetParam()); }
    static bool isLibxml2s() { return std::get<2>(GetParam()) == Whose::Libxml2s; }
    Allocations &failing() { return isLibxml2s() ? static_cast<Allocations &>(xml_) : guard_; }

    // The scenario without a failure, in a fresh context.
    Outcome Expected() const
    {
        TestContext ctx(scenario().flags);
        return RunOnce(scenario(), ctx, folder_);
    }
    // One point: false when the scenario has fewer allocations.
    bool TryPoint(uint64_t n, const Outcome &expected);

    TempDir folder_;
    AllocGuard guard_;
    XmlAllocGuard xml_;
};

bool FailingAllocations::TryPoint(uint64_t n, const Outcome &expected)
{
    failing().FailAt(n, all());
    ZrCtx *ctx = ZR_CTX_Create(scenario().flags);
    if (ctx == nullptr) {
        failing().Stop();
        EXPECT_EQ(guard_.LiveBlocks(), 0) << "after a context that could not be made";
        return true;
    }
    Outcome failed = RunOnce(scenario(), ctx, folder_);
    bool reached = failing().Count() > n;
    failing().Stop();
    // A single failure shows in a result or in a recorded message, or has changed nothing.
    if (!all() && failed.results == expected.results && failed.messages == expected.messages) {
        EXPECT_EQ(failed.schema, expected.schema) << "a failure went unsaid";
    }

    Empty(ctx, failed.messages);
    Outcome again = RunOnce(scenario(), ctx, folder_);
    EXPECT_EQ(again.results, expected.results);
    EXPECT_EQ(again.schema, expected.schema);
    if (ctx->errMng != nullptr) { // else the store of errors itself could not be had
        EXPECT_EQ(again.messages, expected.messages);
    }
    ZR_CTX_Delete(ctx);
    EXPECT_EQ(guard_.LiveBlocks(), 0) << "after the context was deleted";
    return reached;
}

TEST_P(FailingAllocations, LeaveAUsableContextAndNoBlock)
{
    Outcome expected = Expected();
    ASSERT_EQ(guard_.LiveBlocks(), 0);
    uint64_t n = 0;
    for (bool reached = true; reached && !HasFailure(); n += reached) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        reached = TryPoint(n, expected);
    }
    if (!isLibxml2s()) { // which not every scenario needs
        EXPECT_GT(n, 3u);
    }
    if (!all())
        (isLibxml2s() ? PointCount::libxml2sPoints : PointCount::points) +=
            static_cast<unsigned long>(n);
    std::printf("%-24s %5lu points%s\n", scenario().name, static_cast<unsigned long>(n),
                isLibxml2s() ? " of libxml2" : "");
}

std::vector<Scenario> AllScenarios()
{
    std::vector<Scenario> all = LoadingScenarios();
    for (const auto *more : {&CouplingScenarios(), &DataScenarios()})
        all.insert(all.end(), more->begin(), more->end());
    return all;
}

std::string NameOf(const testing::TestParamInfo<FailingAllocations::ParamType> &instance)
{
    const auto &[scenario, all, whose] = instance.param;
    return scenario.name + std::string(whose == Whose::Libxml2s ? "InLibxml2" : "") +
           (all ? "AndAllLater" : "");
}

INSTANTIATE_TEST_SUITE_P(Scenarios, FailingAllocations,
                         testing::Combine(testing::ValuesIn(AllScenarios()), testing::Bool(),
                                          testing::Values(Whose::Engines)),
                         NameOf);

// Libxml2 asks for its memory piece by piece too, ten times as often.
INSTANTIATE_TEST_SUITE_P(ScenariosWithLibxml2, FailingAllocations,
                         testing::Combine(testing::ValuesIn(AllScenarios()), testing::Values(false),
                                          testing::Values(Whose::Libxml2s)),
                         NameOf);

} // namespace
