// Checking whole configurations by RFC 7950 against parsing their text, and making the plan of the
// real modules against loading them.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <zrdata/zrdata.h>
#include <zrschema/zrschema.h>

#include <filesystem>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "ratios.h"

namespace fs = std::filesystem;

namespace {

// What the list of ten leaves asks besides, and the largest cost of a check over a parse.
struct Schema {
    const char *name;
    bool hasReferences; // a second key, a unique, two leafrefs
    bool hasConditions; // two on each entry
    double aim;
};
constexpr Schema kSchemas[] = {
    {"without conditions", false, false, 1.5},
    {"with keys, unique and leafrefs", true, false, 2.5},
    {"with conditions besides", true, true, 4.0},
};
constexpr int64_t kFew = 1000, kSome = 10000, kMany = 100000;

std::string Leaf(const std::string &name, const std::string &type, const std::string &rest = "")
{
    return "<leaf name='" + name + "'>" + rest + type + "</leaf>";
}

std::string ModuleText(const Schema &schema)
{
    bool references = schema.hasReferences;
    std::string when = schema.hasConditions ? "<when condition=\"../kind = 'fast'\"/>" : "";
    std::string must = schema.hasConditions ? "<must condition=\"../size &lt;= 100000\"/>" : "";
    std::string string = "<type name='string'/>";
    std::string reference =
        references ? "<type name='leafref'><path value='/b:entry/b:name'/></type>" : string;
    return "<module name='b' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:b='urn:b'>"
           "<namespace uri='urn:b'/><prefix value='b'/>"
           "<identity name='color'/><identity name='red'><base name='color'/></identity>"
           "<list name='entry'><key value='" +
           std::string(references ? "name size" : "name") + "'/>" +
           (references ? "<unique tag='offset text'/>" : "") +
           Leaf("name", "<type name='string'><length value='1..64'/></type>") +
           Leaf("size", "<type name='uint32'/>", must) +
           Leaf("offset", "<type name='int64'><range value='-1000000..1000000'/></type>") +
           Leaf("kind", "<type name='enumeration'><enum name='slow'/><enum name='fast'/></type>") +
           Leaf("boost", "<type name='uint8'/>", when) + Leaf("text", string) +
           Leaf("either", "<type name='union'><type name='uint16'/><type name='boolean'/></type>") +
           Leaf("other", reference) + Leaf("next", reference) +
           Leaf("color", "<type name='identityref'><base name='color'/></type>") +
           "</list></module>";
}

const std::string &Configuration(int64_t entries)
{
    static std::map<int64_t, std::string> texts;
    std::string &text = texts[entries];
    if (!text.empty())
        return text;
    text = "<config xmlns=\"urn:b\" xmlns:b=\"urn:b\">";
    for (int64_t i = 0; i < entries; ++i) {
        std::string number = std::to_string(i);
        text += "<entry><name>entry-" + number + "</name><size>" + std::to_string(i % 100000) +
                "</size><offset>-" + std::to_string(i % 1000) +
                "</offset><kind>fast</kind><boost>" + std::to_string(i % 256) +
                "</boost><text>the text of entry " + number + "</text><either>" +
                (i % 2 == 0 ? "true" : "17") + "</either><other>entry-" + number +
                "</other><next>entry-" + std::to_string((i + 1) % entries) +
                "</next><color>b:red</color></entry>";
    }
    text += "</config>";
    return text;
}

xmlDoc *Parse(const std::string &text)
{
    return xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                         XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_HUGE);
}

void ParseConfiguration(benchmark::State &state)
{
    const std::string &text = Configuration(state.range(0));
    for (auto _ : state)
        xmlFreeDoc(Parse(text));
}

// The second argument is a row of kSchemas.
void CheckConfiguration(benchmark::State &state)
{
    const std::string &text = Configuration(state.range(0));
    ZrCtx *ctx = ZR_CTX_Create(ZR_CTX_STANDARD);
    ZrDataPlan *plan = nullptr;
    if (ZR_CTX_LoadMemory(ctx, ModuleText(kSchemas[state.range(1)]).c_str()) != ZR_OK ||
        ZR_DATA_CreatePlan(ctx, nullptr, &plan) != ZR_DATA_OK)
        state.SkipWithError("the module does not load");
    xmlDoc *document = Parse(text);
    ZrDataOptions options = {};
    options.kind = ZR_DATA_CONFIG;
    for (auto _ : state) {
        ZrDataResult *result = nullptr;
        if (ZR_DATA_CheckTree(plan, &options, xmlDocGetRootElement(document), &result) !=
            ZR_DATA_OK) {
            state.SkipWithError("the configuration is refused");
            ZR_DATA_DeleteResult(result);
            break;
        }
        ZR_DATA_DeleteResult(result);
    }
    xmlFreeDoc(document);
    ZR_DATA_DeletePlan(plan);
    ZR_CTX_Delete(ctx);
}

ZrCtx *LoadRealModules()
{
    ZrCtx *ctx = ZR_CTX_Create(ZR_CTX_STANDARD | ZR_CTX_LOAD_IMPORTS);
    ZR_CTX_SetSearchDir(ctx, ZR_CORPUS_DIR);
    for (const fs::directory_entry &entry : fs::directory_iterator(ZR_CORPUS_DIR))
        if (entry.path().extension() == ".yin")
            ZR_CTX_LoadModule(ctx, entry.path().stem().c_str());
    return ctx;
}

void LoadForPlan(benchmark::State &state)
{
    for (auto _ : state) {
        ZrCtx *ctx = LoadRealModules();
        state.PauseTiming();
        ZR_CTX_Delete(ctx);
        state.ResumeTiming();
    }
}

void MakePlan(benchmark::State &state)
{
    ZrCtx *ctx = LoadRealModules();
    for (auto _ : state) {
        ZrDataPlan *plan = nullptr;
        if (ZR_DATA_CreatePlan(ctx, nullptr, &plan) != ZR_DATA_OK)
            state.SkipWithError("no plan can be made");
        ZR_DATA_DeletePlan(plan);
    }
    ZR_CTX_Delete(ctx);
}

std::string Name(int64_t entries, size_t schema)
{
    return "CheckConfiguration/" + std::to_string(entries) + "/" + std::to_string(schema);
}

std::optional<double> GrowthOf(size_t schema)
{
    auto many = bench::CpuTime(Name(kMany, schema)), few = bench::CpuTime(Name(kFew, schema));
    if (!many || !few)
        return std::nullopt;
    return *many / static_cast<double>(kMany) / (*few / static_cast<double>(kFew));
}

const bool g_registered = [] {
    for (int64_t entries : {kFew, kSome, kMany}) {
        benchmark::RegisterBenchmark("ParseConfiguration", ParseConfiguration)
            ->Arg(entries)
            ->Unit(benchmark::kMillisecond);
        for (size_t i = 0; i < std::size(kSchemas); ++i) {
            benchmark::RegisterBenchmark("CheckConfiguration", CheckConfiguration)
                ->Args({entries, static_cast<int64_t>(i)})
                ->Unit(benchmark::kMillisecond);
            bench::AddTimeRatio(std::string("configuration ") + kSchemas[i].name + " / parse (" +
                                    std::to_string(entries) + " entries)",
                                kSchemas[i].aim, Name(entries, i),
                                "ParseConfiguration/" + std::to_string(entries));
        }
    }
    for (size_t i = 0; i < std::size(kSchemas); ++i)
        bench::AddRatio("one entry among " + std::to_string(kMany) + " / among " +
                            std::to_string(kFew) + ", configuration " + kSchemas[i].name,
                        1.2, [i] { return GrowthOf(i); });
    if (!fs::is_directory(ZR_CORPUS_DIR))
        return true;
    benchmark::RegisterBenchmark("LoadForPlan", LoadForPlan)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("MakePlan", MakePlan)->Unit(benchmark::kMillisecond);
    bench::AddTimeRatio("making the plan of the real modules / loading them", 0.5, "MakePlan",
                        "LoadForPlan");
    return true;
}();

} // namespace
