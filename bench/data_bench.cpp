// SPDX-License-Identifier: Apache-2.0
// Checking configuration with libzrdata against parsing the same text, at three sizes, and making a
// plan of the published modules against loading them.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <zrdata/zrdata.h>
#include <zrschema/zrschema.h>
#include <zryang/zryang.h>

#include <filesystem>
#include <string>
#include <vector>

#include "ratios.h"

namespace fs = std::filesystem;

namespace {

// What the entries ask for; each level has what those before it have.
enum Level { kPlain = 0, kReferences = 1, kConditions = 2 };

struct LevelRow {
    Level level;
    const char *name;
    const char *what;
    double aim;
};
constexpr LevelRow kLevels[] = {
    {kPlain, "Plain", "configuration", 1.5},
    {kReferences, "References", "with unique and two leafrefs", 2.5},
    {kConditions, "Conditions", "with two conditions an entry besides", 4},
};
constexpr int kSizes[] = {1000, 10000, 100000};

std::string ModuleText(Level level)
{
    auto from = [&](Level least, const char *text) { return level >= least ? text : ""; };
    auto leafref = [&](const std::string &path) {
        return level >= kReferences ? "leafref { path '" + path + "'; }" : std::string("string;");
    };
    return std::string("module m { yang-version 1.1; namespace urn:m; prefix m;"
                       " list peer { key name; leaf name { type string; }"
                       "  leaf kind { type string; default a; } }"
                       " container top { list entry { key name;") +
           from(kReferences, "unique \"address port\";") +
           from(kConditions, "must \"/peer[name = current()/peer]/kind = 'a'\";") +
           "leaf name { type string; } leaf address { type string; } leaf port { type uint16; }"
           "leaf enabled { type boolean; default true; } leaf peer { type " +
           leafref("/m:peer/m:name") + " } leaf other { type " + leafref("../../entry/name") +
           " } leaf mtu { type uint32 { range 68..9000; }" +
           from(kConditions, "when \"../enabled = 'true'\";") +
           "} leaf speed { type decimal64 { fraction-digits 2; } }"
           "leaf mode { type enumeration { enum auto; enum fixed; } }"
           "leaf note { type string { length 0..64; } } } } }";
}

std::string DataText(int entries)
{
    std::string text = "<config xmlns=\"urn:m\">\n";
    for (int i = 0; i < entries / 10; ++i)
        text += "<peer><name>p" + std::to_string(i) + "</name></peer>\n";
    text += "<top>\n";
    for (int i = 0; i < entries; ++i) {
        std::string number = std::to_string(i);
        text += "  <entry>\n    <name>e" + number + "</name>\n    <address>10.0.0." + number +
                "</address>\n    <port>" + std::to_string(i % 60000) +
                "</port>\n    <enabled>true</enabled>\n    <peer>p" +
                std::to_string(i % (entries / 10)) + "</peer>\n    <other>e" +
                std::to_string(i / 2) +
                "</other>\n    <mtu>1500</mtu>\n    <speed>1.25</speed>\n"
                "    <mode>auto</mode>\n    <note>a note on it</note>\n  </entry>\n";
    }
    return text + "</top>\n</config>\n";
}

ZrCtx *LoadSource(const std::string &source)
{
    ZrYang *yang = ZR_YANG_Create(nullptr);
    ZR_YANG_AddText(yang, "m", source.data(), source.size());
    char *prepared = nullptr;
    ZR_YANG_PrepareToText(yang, "m", &prepared, nullptr);
    ZrCtx *ctx = ZR_CTX_Create(ZR_CTX_STANDARD);
    if (prepared != nullptr)
        ZR_CTX_LoadMemory(ctx, prepared);
    ZR_YANG_FreeText(yang, prepared);
    ZR_YANG_Delete(yang);
    return ctx;
}

void CheckData(benchmark::State &state, Level level, int entries)
{
    std::string text = DataText(entries);
    ZrCtx *ctx = LoadSource(ModuleText(level));
    ZrDataPlan *plan = nullptr;
    ZR_DATA_CreatePlan(ctx, nullptr, &plan);
    ZrDataOptions options = {};
    options.kind = ZR_DATA_CONFIG;
    for (auto _ : state) {
        ZrDataResult *result = nullptr;
        if (ZR_DATA_CheckText(plan, &options, text.data(), text.size(), &result) != ZR_DATA_OK)
            state.SkipWithError("the data has faults");
        ZR_DATA_DeleteResult(result);
    }
    ZR_DATA_DeletePlan(plan);
    ZR_CTX_Delete(ctx);
}

void ParseData(benchmark::State &state, int entries)
{
    std::string text = DataText(entries);
    for (auto _ : state)
        xmlFreeDoc(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                 XML_PARSE_NONET | XML_PARSE_HUGE));
}

// ---- plans

ZrCtx *LoadPublished()
{
    ZrCtx *ctx = ZR_CTX_Create(ZR_CTX_STANDARD | ZR_CTX_LOAD_IMPORTS);
    ZR_CTX_SetSearchDir(ctx, ZR_CORPUS_DIR);
    for (const fs::directory_entry &entry : fs::directory_iterator(ZR_CORPUS_DIR))
        ZR_CTX_LoadModule(ctx, entry.path().stem().c_str());
    return ctx;
}

void LoadForPlan(benchmark::State &state)
{
    for (auto _ : state)
        ZR_CTX_Delete(LoadPublished());
}

void MakePlan(benchmark::State &state)
{
    ZrCtx *ctx = LoadPublished();
    for (auto _ : state) {
        ZrDataPlan *plan = nullptr;
        ZR_DATA_CreatePlan(ctx, nullptr, &plan);
        ZR_DATA_DeletePlan(plan);
    }
    ZR_CTX_Delete(ctx);
}

std::string NameOf(const char *what, int entries)
{
    return std::string(what) + "/" + std::to_string(entries);
}

void RegisterLevel(const LevelRow &row)
{
    std::string check = std::string("CheckData") + row.name;
    for (int entries : kSizes) {
        benchmark::RegisterBenchmark(
            NameOf(check.c_str(), entries).c_str(),
            [&row, entries](benchmark::State &state) { CheckData(state, row.level, entries); });
        bench::AddTimeRatio(std::string("checking data / parsing it: ") + row.what + " (" +
                                std::to_string(entries) + " entries)",
                            row.aim, NameOf(check.c_str(), entries), NameOf("ParseData", entries));
    }
    bench::AddRatio(std::string("cost of one entry among 100000 / among 1000: ") + row.what, 1.2,
                    [check]() -> std::optional<double> {
                        auto many = bench::CpuTime(NameOf(check.c_str(), 100000));
                        auto few = bench::CpuTime(NameOf(check.c_str(), 1000));
                        if (!many || !few)
                            return std::nullopt;
                        return *many / 100 / *few;
                    });
}

const bool g_registered = [] {
    for (int entries : kSizes)
        benchmark::RegisterBenchmark(
            NameOf("ParseData", entries).c_str(),
            [entries](benchmark::State &state) { ParseData(state, entries); });
    for (const LevelRow &row : kLevels)
        RegisterLevel(row);
    if (fs::is_directory(ZR_CORPUS_DIR)) {
        benchmark::RegisterBenchmark("LoadForPlan", LoadForPlan);
        benchmark::RegisterBenchmark("MakePlan", MakePlan);
        bench::AddTimeRatio("making a plan of the published modules / loading them", 0.5,
                            "MakePlan", "LoadForPlan");
    }
    return true;
}();

} // namespace
