// SPDX-License-Identifier: Apache-2.0
// Many modules whose names differ, and one of very many nodes: what each costs, and whether a
// module among many costs more than among few.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <zrschema/zrschema.h>

#include <map>

#include "bytes_held.h"
#include "generated_modules.h"
#include "ratios.h"

namespace {

using Modules = std::vector<bench::GeneratedModule>;

constexpr uint32_t kFew = 100, kMany = 2000;
constexpr uint32_t kCounts[] = {kFew, 200, 500, 1000, kMany};

const Modules &ModulesOf(int64_t count)
{
    static std::map<int64_t, Modules> sets;
    auto found = sets.find(count);
    if (found == sets.end())
        found = sets.try_emplace(count, bench::GenerateModules(static_cast<uint32_t>(count))).first;
    return found->second;
}

const Modules &LargeModule(int64_t leafs)
{
    static std::map<int64_t, Modules> sets;
    auto found = sets.find(leafs);
    if (found == sets.end())
        found = sets.try_emplace(leafs, 1, bench::GenerateLargeModule(static_cast<uint32_t>(leafs)))
                    .first;
    return found->second;
}

using Source = const Modules &(*)(int64_t size);

void Parse(benchmark::State &state, Source source)
{
    const Modules &modules = source(state.range(0));
    for (auto _ : state)
        for (const bench::GeneratedModule &module : modules)
            xmlFreeDoc(xmlReadMemory(module.text.data(), static_cast<int>(module.text.size()),
                                     nullptr, nullptr,
                                     XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_HUGE));
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bench::BytesOf(modules)));
}

std::map<size_t, double> g_held; // bytes by the number of modules

ZrCtx *LoadAll(benchmark::State &state, const Modules &modules)
{
    size_t before = bench::BytesHeld();
    ZrCtx *ctx = ZR_CTX_Create(0);
    for (const bench::GeneratedModule &module : modules)
        if (ZR_CTX_LoadMemory(ctx, module.text.c_str()) != ZR_OK)
            state.SkipWithError("a generated module does not load");
    g_held[modules.size()] = static_cast<double>(bench::BytesHeld() - before);
    return ctx;
}

void Load(benchmark::State &state, Source source)
{
    const Modules &modules = source(state.range(0));
    for (auto _ : state) {
        ZrCtx *ctx = LoadAll(state, modules);
        state.PauseTiming(); // deleting is measured by itself
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bench::BytesOf(modules)));
}

// One module more, which augments each of them.
void Couple(benchmark::State &state, Source source)
{
    const Modules &modules = source(state.range(0));
    std::string augments = bench::GenerateAugments(modules);
    ZrCtx *ctx = LoadAll(state, modules);
    for (auto _ : state) {
        if (ZR_CTX_LoadMemory(ctx, augments.c_str()) != ZR_OK)
            state.SkipWithError("the augments do not load");
        state.PauseTiming();
        ZR_CTX_UnloadModule(ctx, "augments");
        state.ResumeTiming();
    }
    ZR_CTX_Delete(ctx);
}

void Delete(benchmark::State &state, Source source)
{
    const Modules &modules = source(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        ZrCtx *ctx = LoadAll(state, modules);
        state.ResumeTiming();
        ZR_CTX_Delete(ctx);
    }
}

void FindPaths(benchmark::State &state, Source source)
{
    const Modules &modules = source(state.range(0));
    ZrCtx *ctx = LoadAll(state, modules);
    for (auto _ : state)
        for (const bench::GeneratedModule &module : modules)
            for (const std::string &path : module.paths)
                if (ZR_CTX_GetTargetNode(ctx, path.c_str(), nullptr) == nullptr)
                    state.SkipWithError("a path leads to nothing");
    ZR_CTX_Delete(ctx);
}

uint32_t Ignore(const char *, uint32_t, void *)
{
    return 0;
}

void Print(benchmark::State &state, Source source)
{
    const Modules &modules = source(state.range(0));
    ZrCtx *ctx = LoadAll(state, modules);
    for (auto _ : state)
        for (const bench::GeneratedModule &module : modules)
            ZR_MOD_PrintModelTree(ZR_CTX_GetModuleByModName(ctx, module.name.c_str()), Ignore,
                                  nullptr);
    ZR_CTX_Delete(ctx);
}

struct Work {
    const char *name;
    void (*run)(benchmark::State &state, Source source);
    double growth; // the aim for one module among many over one among few
};
constexpr Work kWorks[] = {
    {"Parse", Parse, 0},     {"Load", Load, 1.2},           {"Couple", Couple, 1.2},
    {"Delete", Delete, 1.2}, {"FindPaths", FindPaths, 1.2}, {"Print", Print, 1.2},
};

std::string Name(const char *work, uint32_t size)
{
    return std::string(work) + "Generated/" + std::to_string(size);
}

std::optional<double> GrowthOf(const char *work)
{
    auto many = bench::CpuTime(Name(work, kMany)), few = bench::CpuTime(Name(work, kFew));
    if (!many || !few)
        return std::nullopt;
    return *many / kMany / (*few / kFew);
}

std::optional<double> GrowthOfBytesHeld()
{
    if (g_held.count(kMany) == 0 || g_held.count(kFew) == 0)
        return std::nullopt;
    return g_held[kMany] / kMany / (g_held[kFew] / kFew);
}

const bool g_registered = [] {
    for (const Work &work : kWorks) {
        for (uint32_t count : kCounts)
            benchmark::RegisterBenchmark((std::string(work.name) + "Generated").c_str(), work.run,
                                         ModulesOf)
                ->Arg(count)
                ->Unit(benchmark::kMillisecond);
        if (work.growth > 0)
            bench::AddRatio(std::string(work.name) + ": one of " + std::to_string(kMany) +
                                " modules / one of " + std::to_string(kFew),
                            work.growth, [&work] { return GrowthOf(work.name); });
    }
    bench::AddRatio("bytes held: one of " + std::to_string(kMany) + " modules / one of " +
                        std::to_string(kFew),
                    1.2, GrowthOfBytesHeld);
    for (uint32_t count : kCounts)
        bench::AddTimeRatio("load / parse, " + std::to_string(count) +
                                " modules of different names",
                            2.0, Name("Load", count), Name("Parse", count));
    for (const Work &work : {kWorks[0], kWorks[1]})
        benchmark::RegisterBenchmark((std::string(work.name) + "Large").c_str(), work.run,
                                     LargeModule)
            ->Arg(500000)
            ->Unit(benchmark::kMillisecond);
    bench::AddTimeRatio("load / parse, one module of 500000 leafs", 2.0, "LoadLarge/500000",
                        "ParseLarge/500000");
    return true;
}();

} // namespace
