// SPDX-License-Identifier: Apache-2.0
// Loading the real modules: processor time against parsing alone, and memory held against the size
// of the text.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <zrschema/zrschema.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "bytes_held.h"
#include "module_folder.h"
#include "ratios.h"

namespace fs = std::filesystem;

namespace {

struct File {
    std::string name;
    std::string text;
};

std::string ReadFile(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<File> ReadCorpus()
{
    std::vector<File> files;
    std::string dir = ZR_CORPUS_DIR;
    if (dir.empty() || !fs::is_directory(dir))
        return files;
    for (const fs::directory_entry &entry : fs::directory_iterator(dir))
        if (entry.path().extension() == ".yin")
            files.push_back({entry.path().stem().string(), ReadFile(entry.path())});
    std::sort(files.begin(), files.end(),
              [](const File &a, const File &b) { return a.name < b.name; });
    return files;
}

// The module under another name and namespace, importing modules that are renamed alike.
File Renamed(const File &file, int copy)
{
    std::string suffix = "-" + std::to_string(copy);
    static const std::regex name("(<module [^>]*name=\")([^\"]*)\"");
    static const std::regex uri("(<namespace uri=\")([^\"]*)\"");
    static const std::regex import("(<import module=\")([^\"]*)\"");
    std::string text = std::regex_replace(file.text, name, "$1$2" + suffix + "\"",
                                          std::regex_constants::format_first_only);
    text = std::regex_replace(text, uri, "$1$2" + suffix + "\"");
    text = std::regex_replace(text, import, "$1$2" + suffix + "\"");
    return {file.name + suffix, text};
}

// The corpus `copies` times, each copy under names of its own, as files of a folder.
class FileSet {
public:
    explicit FileSet(int copies)
    {
        static const std::vector<File> corpus = ReadCorpus();
        for (int copy = 0; copy < copies; ++copy)
            for (const File &file : corpus)
                files.push_back(copies == 1 ? file : Renamed(file, copy));
        for (const File &file : files) {
            folder.Add(file.name, file.text);
            bytes += file.text.size();
        }
    }
    bench::ModuleFolder folder;
    std::vector<File> files;
    size_t bytes = 0;
};

const FileSet &Files(int copies)
{
    static std::map<int, FileSet> sets;
    return sets.try_emplace(copies, copies).first->second;
}

std::map<std::pair<int, uint32_t>, double> g_heldPerByte;

ZrCtx *LoadAll(const FileSet &set, uint32_t flags)
{
    ZrCtx *ctx = ZR_CTX_Create(flags);
    ZR_CTX_SetSearchDir(ctx, set.folder.path().c_str());
    for (const File &file : set.files)
        ZR_CTX_LoadModule(ctx, file.name.c_str());
    return ctx;
}

void ParseAlone(benchmark::State &state)
{
    const FileSet &set = Files(static_cast<int>(state.range(0)));
    if (set.files.empty())
        state.SkipWithError("the folder of real modules is absent: skipped");
    xmlKeepBlanksDefault(0);
    for (auto _ : state)
        for (const File &file : set.files)
            xmlFreeDoc(xmlParseMemory(file.text.data(), static_cast<int>(file.text.size())));
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(set.bytes));
}

void Load(benchmark::State &state)
{
    const FileSet &set = Files(static_cast<int>(state.range(0)));
    auto flags = static_cast<uint32_t>(state.range(1));
    if (set.files.empty())
        state.SkipWithError("the folder of real modules is absent: skipped");
    for (auto _ : state) {
        size_t before = bench::BytesHeld();
        ZrCtx *ctx = LoadAll(set, flags);
        g_heldPerByte[{static_cast<int>(state.range(0)), flags}] =
            static_cast<double>(bench::BytesHeld() - before) / static_cast<double>(set.bytes);
        state.PauseTiming(); // deleting is not loading
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(set.bytes));
}

std::optional<double> Held(int copies, uint32_t flags)
{
    auto found = g_heldPerByte.find({copies, flags});
    if (found == g_heldPerByte.end())
        return std::nullopt;
    return found->second;
}

std::string Name(const char *benchmark, int copies)
{
    return benchmark + ("/" + std::to_string(copies));
}

// The cost of one module among `copies` times as many, against its cost among one set.
std::optional<double> CostPerModule(int copies)
{
    auto many = bench::CpuTime(Name("Load", copies) + "/0"), one = bench::CpuTime("Load/1/0");
    if (!many || !one)
        return std::nullopt;
    return *many / copies / *one;
}

const bool g_registered = [] {
    for (int copies : {1, 4, 16}) {
        benchmark::RegisterBenchmark("ParseAlone", ParseAlone)
            ->Arg(copies)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("Load", Load)
            ->Args({copies, 0})
            ->Unit(benchmark::kMillisecond);
        std::string times = " (modules " + std::to_string(copies) + " times)";
        bench::AddTimeRatio("load / parse, no descriptions" + times, 2.0,
                            Name("Load", copies) + "/0", Name("ParseAlone", copies));
        bench::AddRatio("bytes held / bytes of YIN, no descriptions" + times, 1.0,
                        [copies] { return Held(copies, 0); });
    }
    constexpr uint32_t texts = ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS;
    benchmark::RegisterBenchmark("Load", Load)->Args({1, texts})->Unit(benchmark::kMillisecond);
    bench::AddTimeRatio("load / parse, with descriptions and units", 2.5,
                        "Load/1/" + std::to_string(texts), "ParseAlone/1");
    bench::AddRatio("bytes held / bytes of YIN, with descriptions and units", 0,
                    [] { return Held(1, ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS); });
    for (int copies : {4, 16})
        bench::AddRatio("cost of one module, " + std::to_string(copies) + " times as many loaded",
                        1.3, [copies] { return CostPerModule(copies); });
    return true;
}();

} // namespace
