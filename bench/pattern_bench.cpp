// SPDX-License-Identifier: Apache-2.0
// The value of 100,000 characters that takes the longest with a published pattern.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <zrpatterns/zrpatterns.h>

#include <ctime>
#include <filesystem>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "ratios.h"

namespace {

constexpr size_t kLength = 100000;
constexpr double kMillisecond = 1e6; // in nanoseconds

std::set<std::string> PublishedPatterns()
{
    std::set<std::string> patterns;
    for (const auto &file : std::filesystem::directory_iterator(ZR_CORPUS_DIR)) {
        xmlDoc *document = xmlReadFile(file.path().c_str(), nullptr, 0);
        xmlXPathContext *context = xmlXPathNewContext(document);
        xmlXPathObject *found = xmlXPathEval(
            reinterpret_cast<const xmlChar *>("//*[local-name()='pattern']/@value"), context);
        for (int i = 0; i < xmlXPathNodeSetGetLength(found->nodesetval); ++i) {
            xmlChar *value = xmlNodeGetContent(xmlXPathNodeSetItem(found->nodesetval, i));
            patterns.insert(reinterpret_cast<const char *>(value));
            xmlFree(value);
        }
        xmlXPathFreeObject(found);
        xmlXPathFreeContext(context);
        xmlFreeDoc(document);
    }
    return patterns;
}

// Short texts over and over, which fill what a pattern repeats, and texts without order, which give
// it many states.
std::vector<std::string> HostileValues()
{
    constexpr std::string_view kCharacters = "0123456789abcdefzZ:.-/%@$ ";
    std::mt19937 random(1);
    std::vector<std::string> values;
    for (size_t length = 1; length <= 4; ++length) {
        for (size_t i = 0; i < kCharacters.size(); ++i) {
            std::string part(1, kCharacters[i]), value;
            while (part.size() < length)
                part += kCharacters[random() % kCharacters.size()];
            while (value.size() < kLength)
                value += part;
            values.push_back(value);
        }
    }
    for (size_t alphabet : {12, 16, 17, 18, 20, 26}) {
        std::string value;
        while (value.size() < kLength)
            value += kCharacters[random() % alphabet];
        values.push_back(value);
    }
    return values;
}

using Pattern = std::unique_ptr<ZrPattern, decltype(&ZR_PATTERNS_Free)>;

Pattern Compile(const std::string &text)
{
    ZrPattern *compiled = nullptr;
    ZR_PATTERNS_Compile(text.c_str(), &compiled);
    return {compiled, ZR_PATTERNS_Free};
}

double ProcessorTime()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

struct Pair {
    std::string pattern, value;
};

Pair FindSlowest()
{
    Pair slowest;
    double most = 0;
    const std::vector<std::string> values = HostileValues();
    for (const std::string &text : PublishedPatterns()) {
        for (const std::string &value : values) {
            Pattern pattern = Compile(text);
            double start = ProcessorTime();
            benchmark::DoNotOptimize(ZR_PATTERNS_Match(pattern.get(), value.c_str()));
            double time = ProcessorTime() - start;
            if (time > most) {
                most = time;
                slowest = {text, value};
            }
        }
    }
    return slowest;
}

// Each time with a pattern that has met no value yet, which costs most.
void MatchSlowest(benchmark::State &state)
{
    static const Pair slowest = FindSlowest();
    state.SetLabel(slowest.pattern.substr(0, 40));
    for (auto _ : state) {
        state.PauseTiming();
        Pattern pattern = Compile(slowest.pattern);
        state.ResumeTiming();
        benchmark::DoNotOptimize(ZR_PATTERNS_Match(pattern.get(), slowest.value.c_str()));
    }
}

[[maybe_unused]] const bool g_registered = [] {
    if (!std::filesystem::is_directory(ZR_CORPUS_DIR))
        return false;
    benchmark::RegisterBenchmark("MatchSlowest", MatchSlowest)->Unit(benchmark::kMillisecond);
    bench::AddRatio("milliseconds for the slowest 100,000 characters with a published pattern", 10,
                    []() -> std::optional<double> {
                        auto time = bench::CpuTime("MatchSlowest");
                        return time ? std::optional(*time / kMillisecond) : std::nullopt;
                    });
    return true;
}();

} // namespace
