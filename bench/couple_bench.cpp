// SPDX-License-Identifier: Apache-2.0
// Coupling and unloading at two sizes each: the cost must grow with the nodes, not with their
// square.
#include <benchmark/benchmark.h>
#include <zrschema/zrschema.h>

#include <map>
#include <string>
#include <vector>

#include "module_folder.h"
#include "ratios.h"

namespace {

std::string ModuleText(const std::string &name, const std::string &body)
{
    return "<module name='" + name +
           "' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><namespace uri='urn:" + name +
           "'/><prefix value='" + name + "'/>" + body + "</module>";
}

const std::string kImportTarget = "<import module='t'><prefix value='t'/></import>";

std::string Augment(const std::string &target, const std::string &leaf)
{
    return "<augment target-node='" + target + "'><leaf name='" + leaf +
           "'><type name='string'/></leaf></augment>";
}

// A module with `count` containers and one with as many augments, each of one container.
void CoupleAugments(benchmark::State &state)
{
    std::string containers, augments = kImportTarget;
    for (int64_t i = 0; i < state.range(0); ++i) {
        std::string name = "c" + std::to_string(i);
        containers += "<container name='" + name + "'/>";
        augments += Augment("/t:top/t:" + name, "a");
    }
    std::string target = ModuleText("t", "<container name='top'>" + containers + "</container>");
    std::string augmenting = ModuleText("a", augments);
    for (auto _ : state) {
        state.PauseTiming();
        ZrCtx *ctx = ZR_CTX_Create(0);
        ZR_CTX_LoadMemory(ctx, target.c_str());
        state.ResumeTiming();
        ZR_CTX_LoadMemory(ctx, augmenting.c_str());
        state.PauseTiming();
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
}

// `count` augments of one and the same container.
void CoupleOneTarget(benchmark::State &state)
{
    std::string augments = kImportTarget;
    for (int64_t i = 0; i < state.range(0); ++i)
        augments += Augment("/t:top", "a" + std::to_string(i));
    std::string target = ModuleText("t", "<container name='top'/>");
    std::string augmenting = ModuleText("a", augments);
    for (auto _ : state) {
        state.PauseTiming();
        ZrCtx *ctx = ZR_CTX_Create(0);
        ZR_CTX_LoadMemory(ctx, target.c_str());
        state.ResumeTiming();
        ZR_CTX_LoadMemory(ctx, augmenting.c_str());
        state.PauseTiming();
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
}

std::string NotSupported(const std::string &target)
{
    return "<deviation target-node='" + target + "'><deviate value='not-supported'/></deviation>";
}

// A module whose `count` augments stand beside as many "not-supported" deviations of another one,
// which take other nodes, nodes that the augments add, and targets of augments; the deviations come
// before or after the augments.
void CoupleBesideRemovals(benchmark::State &state, bool deviationsFirst)
{
    const std::string import = "<import module='a'><prefix value='a'/></import>";
    std::string containers, tops, augments = kImportTarget, deviations = kImportTarget + import;
    for (int64_t i = 0; i < state.range(0) / 4; ++i) {
        std::string n = std::to_string(i);
        containers += "<container name='c" + n + "'/><container name='d" + n +
                      "'/><container name='x" + n + "'/>";
        tops += "<container name='t" + n + "'/><container name='u" + n + "'/>";
        augments += Augment("/t:top/t:c" + n, "a") + Augment("/t:top", "y" + n) +
                    Augment("/t:top/t:d" + n, "a") + Augment("/t:t" + n, "a");
        deviations += NotSupported("/t:top/t:x" + n) + NotSupported("/t:top/a:y" + n) +
                      NotSupported("/t:top/t:d" + n) + NotSupported("/t:u" + n);
    }
    std::string target =
        ModuleText("t", "<container name='top'>" + containers + "</container>" + tops);
    std::string first = ModuleText("a", augments), second = ModuleText("d", deviations);
    if (deviationsFirst)
        first.swap(second);
    for (auto _ : state) {
        state.PauseTiming();
        ZrCtx *ctx = ZR_CTX_Create(0);
        ZR_CTX_LoadMemory(ctx, target.c_str());
        state.ResumeTiming();
        ZR_CTX_LoadMemory(ctx, first.c_str());
        ZR_CTX_LoadMemory(ctx, second.c_str());
        state.PauseTiming();
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
}
void CoupleThenRemove(benchmark::State &state)
{
    CoupleBesideRemovals(state, false);
}
void RemoveThenCouple(benchmark::State &state)
{
    CoupleBesideRemovals(state, true);
}

// Files of a target and of `count` modules that augment it.
class Dependents {
public:
    explicit Dependents(int64_t count)
    {
        Write("t", "<container name='top'/>");
        for (int64_t i = 0; i < count; ++i) {
            names.push_back("m" + std::to_string(i));
            Write(names.back(), kImportTarget + Augment("/t:top", "a" + std::to_string(i)));
        }
    }
    ZrCtx *NewContext() const
    {
        ZrCtx *ctx = ZR_CTX_Create(0);
        ZR_CTX_SetSearchDir(ctx, folder_.path().c_str());
        return ctx;
    }
    void LoadAll(ZrCtx *ctx) const
    {
        ZR_CTX_LoadModule(ctx, "t");
        for (const std::string &name : names)
            ZR_CTX_LoadModule(ctx, name.c_str());
    }
    std::vector<std::string> names;

private:
    void Write(const std::string &name, const std::string &body)
    {
        folder_.Add(name, ModuleText(name, body));
    }
    bench::ModuleFolder folder_;
};

const Dependents &DependentsOf(int64_t count)
{
    static std::map<int64_t, Dependents> sets;
    return sets.try_emplace(count, count).first->second;
}

void LoadDependents(benchmark::State &state)
{
    const Dependents &modules = DependentsOf(state.range(0));
    for (auto _ : state) {
        ZrCtx *ctx = modules.NewContext();
        modules.LoadAll(ctx);
        state.PauseTiming();
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
}

void UnloadTarget(benchmark::State &state)
{
    const Dependents &modules = DependentsOf(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        ZrCtx *ctx = modules.NewContext();
        modules.LoadAll(ctx);
        state.ResumeTiming();
        ZR_CTX_UnloadModule(ctx, "t");
        state.PauseTiming();
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
}

// Registers a benchmark at a size and at twice the size.
void Register(const char *name, void (*function)(benchmark::State &), int size, const char *what)
{
    std::string one = name + ("/" + std::to_string(size)),
                two = name + ("/" + std::to_string(2 * size));
    benchmark::RegisterBenchmark(name, function)
        ->Arg(size)
        ->Arg(2 * size)
        ->Unit(benchmark::kMillisecond);
    bench::AddRatio(std::string(what) + ": cost at 2 n / 2 x cost at n", 1.3,
                    [one, two]() -> std::optional<double> {
                        auto small = bench::CpuTime(one), large = bench::CpuTime(two);
                        if (!small || !large)
                            return std::nullopt;
                        return *large / *small / 2;
                    });
}

const bool g_registered = [] {
    Register("CoupleAugments", CoupleAugments, 1000, "coupling a module of 1,000 augments");
    Register("CoupleOneTarget", CoupleOneTarget, 1000, "coupling 1,000 augments of one container");
    Register("CoupleThenRemove", CoupleThenRemove, 1000,
             "1,000 augments, then 1,000 not-supported deviations");
    Register("RemoveThenCouple", RemoveThenCouple, 1000,
             "1,000 not-supported deviations, then 1,000 augments");
    Register("LoadDependents", LoadDependents, 200, "loading 200 modules that augment one");
    Register("UnloadTarget", UnloadTarget, 100, "unloading one module that 100 depend on");
    return true;
}();

} // namespace
