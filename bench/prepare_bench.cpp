// SPDX-License-Identifier: Apache-2.0
// Preparing the published modules from their sources: processor time against reading what comes out
// with libxml2, and memory held against the size of the sources.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <malloc.h>
#include <zryang/zryang.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "ratios.h"

namespace fs = std::filesystem;

namespace {

// The sources stand beside the prepared modules, in a folder whose name begins with "yang-".
std::string SourceDir()
{
    fs::path prepared = ZR_CORPUS_DIR;
    return prepared.empty()
               ? ""
               : (prepared.parent_path() / ("yang-" + prepared.filename().string())).string();
}

struct Memory {
    size_t live = 0, peak = 0;

    static void *Allocate(size_t size, void *user)
    {
        auto &self = *static_cast<Memory *>(user);
        void *block = std::malloc(size);
        self.live += malloc_usable_size(block);
        self.peak = std::max(self.peak, self.live);
        return block;
    }
    static void Release(void *block, void *user)
    {
        static_cast<Memory *>(user)->live -= malloc_usable_size(block);
        std::free(block);
    }
};

int KeepName(const char *name, void *user)
{
    static_cast<std::vector<std::string> *>(user)->push_back(name);
    return 0;
}

std::vector<std::string> PrepareEach(Memory &memory)
{
    ZrYangMemory hooks = {Memory::Allocate, Memory::Release, &memory};
    ZrYang *yang = ZR_YANG_Create(&hooks);
    ZR_YANG_AddDirectory(yang, SourceDir().c_str());
    std::vector<std::string> names, texts;
    ZR_YANG_ScanModules(yang, KeepName, &names);
    for (const std::string &name : names) {
        char *text = nullptr;
        size_t length = 0;
        if (ZR_YANG_PrepareToText(yang, name.c_str(), &text, &length) == ZR_YANG_OK)
            texts.emplace_back(text, length);
        ZR_YANG_FreeText(yang, text);
    }
    ZR_YANG_Delete(yang);
    return texts;
}

size_t g_peak = 0; // the most memory that was held at once

void PrepareCorpus(benchmark::State &state)
{
    for (auto _ : state) {
        Memory memory;
        if (PrepareEach(memory).empty())
            state.SkipWithError("nothing was prepared");
        g_peak = memory.peak;
    }
}

void ParsePreparedCorpus(benchmark::State &state)
{
    Memory memory;
    std::vector<std::string> texts = PrepareEach(memory);
    for (auto _ : state)
        for (const std::string &text : texts)
            xmlFreeDoc(xmlParseMemory(text.data(), static_cast<int>(text.size())));
}

std::optional<double> HeldPerByte()
{
    uintmax_t size = 0;
    for (const fs::directory_entry &entry : fs::directory_iterator(SourceDir()))
        size += entry.file_size();
    if (g_peak == 0 || size == 0)
        return std::nullopt;
    return static_cast<double>(g_peak) / static_cast<double>(size);
}

const bool g_registered = [] {
    if (!fs::is_directory(SourceDir()))
        return true;
    benchmark::RegisterBenchmark("PrepareCorpus", PrepareCorpus);
    benchmark::RegisterBenchmark("ParsePreparedCorpus", ParsePreparedCorpus);
    bench::AddTimeRatio("preparing the published modules / parsing what comes out", 2,
                        "PrepareCorpus", "ParsePreparedCorpus");
    bench::AddRatio("memory held while preparing / bytes of the sources", 30, HeldPerByte);
    return true;
}();

} // namespace
