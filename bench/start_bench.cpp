// SPDX-License-Identifier: Apache-2.0
// What a server does when it starts: a context, four hundred modules from a search directory, and
// the first look at each of them. tools/profile_start tells what of it takes how long.
#include <benchmark/benchmark.h>
#include <zrschema/zrschema.h>

#include "generated_modules.h"
#include "module_folder.h"

namespace {

void StartServer(benchmark::State &state)
{
    bench::ModuleFolder folder;
    std::vector<bench::GeneratedModule> modules =
        bench::GenerateModules(static_cast<uint32_t>(state.range(0)));
    for (const bench::GeneratedModule &module : modules)
        folder.Add(module.name, module.text);
    for (auto _ : state) {
        ZrCtx *ctx = ZR_CTX_Create(0);
        ZR_CTX_SetSearchDir(ctx, folder.path().c_str());
        for (const bench::GeneratedModule &module : modules)
            if (ZR_CTX_LoadModule(ctx, module.name.c_str()) != ZR_OK ||
                ZR_CTX_GetTargetNode(ctx, module.paths.front().c_str(), nullptr) == nullptr)
                state.SkipWithError("a generated module does not load");
        state.PauseTiming();
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bench::BytesOf(modules)));
}

BENCHMARK(StartServer)->Arg(400)->Unit(benchmark::kMillisecond);

} // namespace
