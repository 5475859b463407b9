// SPDX-License-Identifier: Apache-2.0
// Validating a request of many list entries against parsing its text and against RELAX NG.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/relaxng.h>
#include <libxml/tree.h>
#include <zrpatterns/zrpatterns.h>
#include <zrschema/zrschema.h>

#include <filesystem>
#include <iterator>
#include <map>
#include <string>

#include "ratios.h"

namespace {

// Ten leaves an entry; the conditions are put in on request.
std::string ModuleText(bool conditions)
{
    std::string when = conditions ? "<when condition=\"../kind = 'fast'\"/>" : "";
    std::string must = conditions ? "<must condition=\"../size &lt;= 100000\"/>" : "";
    return "<module name='b' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:b='urn:b'>"
           "<namespace uri='urn:b'/><prefix value='b'/>"
           "<identity name='color'/><identity name='red'><base name='color'/></identity>"
           "<container name='names'><leaf name='name'><type name='string'/></leaf></container>"
           "<rpc name='store'><input><list name='entry'><key value='name'/>"
           "<leaf name='name'><type name='string'><length value='1..64'/></type></leaf>"
           "<leaf name='size'>" +
           must +
           "<type name='uint32'/></leaf>"
           "<leaf name='offset'><type name='int64'><range value='-1000000..1000000'/></type></leaf>"
           "<leaf name='kind'><type name='enumeration'><enum name='slow'/><enum "
           "name='fast'/></type>"
           "</leaf>"
           "<leaf name='boost'>" +
           when +
           "<type name='uint8'/></leaf>"
           "<leaf name='text'><type name='string'/></leaf>"
           "<leaf name='either'><type name='union'><type name='uint16'/><type "
           "name='boolean'/></type>"
           "</leaf>"
           "<leaf name='other'><type name='leafref'><path value='/b:names/b:name'/></type></leaf>"
           "<leaf name='color'><type name='identityref'><base name='color'/></type></leaf>"
           "<leaf name='weight'><type name='uint8'/><default value='1'/></leaf>"
           "</list></input></rpc></module>";
}

// The same as a grammar, by the mapping of RFC 6110.
const char *const kGrammar =
    "<grammar xmlns='http://relaxng.org/ns/structure/1.0' ns='urn:b'"
    " datatypeLibrary='http://www.w3.org/2001/XMLSchema-datatypes'><start><element name='store'>"
    "<zeroOrMore><element name='entry'>"
    "<element name='name'><data type='string'><param name='minLength'>1</param>"
    "<param name='maxLength'>64</param></data></element>"
    "<optional><element name='size'><data type='unsignedInt'/></element></optional>"
    "<optional><element name='offset'><data type='long'><param name='minInclusive'>-1000000</param>"
    "<param name='maxInclusive'>1000000</param></data></element></optional>"
    "<optional><element "
    "name='kind'><choice><value>slow</value><value>fast</value></choice></element>"
    "</optional>"
    "<optional><element name='boost'><data type='unsignedByte'/></element></optional>"
    "<optional><element name='text'><data type='string'/></element></optional>"
    "<optional><element name='either'><choice><data type='unsignedShort'/><data type='boolean'/>"
    "</choice></element></optional>"
    "<optional><element name='other'><data type='string'/></element></optional>"
    "<optional><element name='color'><choice><value>b:red</value><value>b:color</value></choice>"
    "</element></optional>"
    "<optional><element name='weight'><data type='unsignedByte'/></element></optional>"
    "</element></zeroOrMore></element></start></grammar>";

const std::string &Request(int64_t entries)
{
    static std::map<int64_t, std::string> requests;
    std::string &text = requests[entries];
    if (!text.empty())
        return text;
    text = "<store xmlns=\"urn:b\" xmlns:b=\"urn:b\">";
    for (int64_t i = 0; i < entries; ++i) {
        std::string number = std::to_string(i);
        text += "<entry><name>entry-" + number + "</name><size>" + std::to_string(i % 100000) +
                "</size><offset>-" + std::to_string(i % 1000) +
                "</offset><kind>fast</kind><boost>" + std::to_string(i % 256) +
                "</boost><text>the text of entry " + number + "</text><either>" +
                (i % 2 == 0 ? "true" : "17") + "</either><other>entry-" + number +
                "</other><color>b:red</color></entry>";
    }
    text += "</store>";
    return text;
}

xmlDoc *Parse(const std::string &text)
{
    xmlKeepBlanksDefault(0);
    return xmlParseMemory(text.data(), static_cast<int>(text.size()));
}

void ParseRequest(benchmark::State &state)
{
    const std::string &text = Request(state.range(0));
    for (auto _ : state) {
        xmlDoc *document = Parse(text);
        benchmark::DoNotOptimize(document);
        xmlFreeDoc(document);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

// Each run validates a freshly parsed tree, since the run before completed its defaults.
void ValidateEach(benchmark::State &state, ZrCtx *ctx, const std::string &text)
{
    for (auto _ : state) {
        state.PauseTiming();
        xmlDoc *document = Parse(text);
        state.ResumeTiming();
        ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(
            ctx, ZR_VALUE_XML, xmlDocGetRootElement(document), nullptr, nullptr);
        state.PauseTiming();
        xmlFreeDoc(document);
        if (error != nullptr) {
            state.SkipWithError(ZR_GetErrorMessage(error));
            ZR_FreeErrNode(error);
            break;
        }
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void ValidateRequest(benchmark::State &state)
{
    ZrCtx *ctx = ZR_CTX_Create(0);
    ZR_CTX_LoadMemory(ctx, ModuleText(state.range(1) != 0).c_str());
    ValidateEach(state, ctx, Request(state.range(0)));
    ZR_CTX_Delete(ctx);
}

void ValidateRelaxNg(benchmark::State &state)
{
    const std::string &text = Request(state.range(0));
    std::string grammarText = kGrammar;
    xmlRelaxNGParserCtxt *parser =
        xmlRelaxNGNewMemParserCtxt(grammarText.data(), static_cast<int>(grammarText.size()));
    xmlRelaxNG *grammar = xmlRelaxNGParse(parser);
    xmlDoc *document = Parse(text);
    for (auto _ : state) {
        xmlRelaxNGValidCtxt *validation = xmlRelaxNGNewValidCtxt(grammar);
        if (xmlRelaxNGValidateDoc(validation, document) != 0)
            state.SkipWithError("the grammar refuses the request");
        xmlRelaxNGFreeValidCtxt(validation);
    }
    xmlFreeDoc(document);
    xmlRelaxNGFree(grammar);
    xmlRelaxNGFreeParserCtxt(parser);
}

const char *const kHosts =
    "<module name='h' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:h='urn:h'>"
    "<namespace uri='urn:h'/><prefix value='h'/>"
    "<import module='ietf-inet-types'><prefix value='inet'/></import>"
    "<rpc name='announce'><input><list name='host'><key value='name'/>"
    "<leaf name='name'><type name='inet:domain-name'/></leaf>"
    "<leaf name='address'><type name='inet:ip-address'/></leaf></list></input></rpc></module>";

std::string HostsRequest(int64_t entries)
{
    std::string text = "<announce xmlns=\"urn:h\">";
    for (int64_t i = 0; i < entries; ++i) {
        std::string number = std::to_string(i);
        std::string address = i % 2 == 0 ? "192.0.2." + std::to_string(i % 256)
                                         : "2001:db8::" + std::to_string(i % 10000);
        text += "<host><name>host-" + number + ".example.com</name><address>" + address +
                "</address></host>";
    }
    return text + "</announce>";
}

void ParseHosts(benchmark::State &state)
{
    std::string text = HostsRequest(state.range(0));
    for (auto _ : state)
        xmlFreeDoc(Parse(text));
}

// Names and addresses, each matched against the patterns of its type. The second argument is the
// context's options, the third 1 for the matcher of libzrpatterns.
void ValidateHosts(benchmark::State &state)
{
    ZrCtx *ctx = ZR_CTX_Create(static_cast<uint32_t>(state.range(1)));
    ZR_CTX_SetPatternMatcher(ctx, state.range(2) != 0 ? ZR_PATTERNS_GetMatcher() : nullptr);
    ZR_CTX_SetSearchDir(ctx, ZR_CORPUS_DIR);
    ZR_CTX_LoadModule(ctx, "ietf-inet-types");
    ZR_CTX_LoadMemory(ctx, kHosts);
    ValidateEach(state, ctx, HostsRequest(state.range(0)));
    ZR_CTX_Delete(ctx);
}

// Conditions on each entry that ask for what stands behind all of them, or for what is nowhere.
struct Shape {
    const char *name;
    const char *onEntry;
    const char *onLeaf;
};

constexpr Shape kShapes[] = {
    {"a leaf behind the entries", "../mode = 'x'", "../k"},
    {"an absent sibling", "not(../z)", "../k"},
    {"an absent node of the parent", "k", "not(../../z)"},
};

std::string ShapeModule(const Shape &shape)
{
    std::string body =
        std::string("<list name='entry'><key value='k'/><leaf name='k'><type name='string'/>"
                    "<must condition=\"") +
        shape.onLeaf + "\"/></leaf><must condition=\"" + shape.onEntry +
        "\"/></list><leaf name='mode'><type name='string'/></leaf>";
    return "<module name='s' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:s='urn:s'>"
           "<namespace uri='urn:s'/><prefix value='s'/><rpc name='set'><input>" +
           body + "</input></rpc><notification name='event'>" + body +
           "</notification><container name='system'><action name='set'><input>" + body +
           "</input></action></container></module>";
}

std::string Element(const std::string &name, const std::string &attributes,
                    const std::string &content)
{
    return "<" + name + attributes + ">" + content + "</" + name + ">";
}

const std::string kNamespace = " xmlns=\"urn:s\"";

std::string ShapeData(int64_t entries)
{
    std::string text;
    for (int64_t i = 0; i < entries; ++i)
        text += "<entry><k>" + std::to_string(i) + "</k></entry>";
    return text + "<mode>x</mode>";
}

// The second argument is a row of kShapes.
void ValidateShape(benchmark::State &state, const std::string &request)
{
    ZrCtx *ctx = ZR_CTX_Create(0);
    ZR_CTX_LoadMemory(ctx, ShapeModule(kShapes[state.range(1)]).c_str());
    ValidateEach(state, ctx, request);
    ZR_CTX_Delete(ctx);
}

void RpcShape(benchmark::State &state)
{
    ValidateShape(state, Element("set", kNamespace, ShapeData(state.range(0))));
}

void ActionShape(benchmark::State &state)
{
    ValidateShape(state,
                  Element("system", kNamespace, Element("set", "", ShapeData(state.range(0)))));
}

// With the parsing of its text and the writing of the document.
void NotifyShape(benchmark::State &state)
{
    ZrCtx *ctx = ZR_CTX_Create(0);
    ZR_CTX_LoadMemory(ctx, ShapeModule(kShapes[state.range(1)]).c_str());
    std::string text = Element("event", kNamespace, ShapeData(state.range(0)));
    for (auto _ : state) {
        if (ZR_CTX_ValidateNotifDataTree(ctx, text.c_str(), nullptr, nullptr) != ZR_OK)
            state.SkipWithError("the notification is refused");
    }
    ZR_CTX_Delete(ctx);
}

std::string Name(const char *name, int64_t entries)
{
    return name + ("/" + std::to_string(entries));
}

// Of one entry among so many to one among 1,000.
std::optional<double> CostPerEntry(const char *name, int64_t entries, const std::string &row)
{
    auto one = bench::CpuTime(Name(name, 1000) + row);
    auto many = bench::CpuTime(Name(name, entries) + row);
    if (!one || !many)
        return std::nullopt;
    return *many / static_cast<double>(entries) / (*one / 1000);
}

void RegisterHosts(int64_t entries)
{
    constexpr int64_t kKeep = ZR_CTX_KEEP_PATTERNS;
    benchmark::RegisterBenchmark("ParseHosts", ParseHosts)
        ->Arg(entries)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("ValidateHosts", ValidateHosts)
        ->Args({entries, 0, 0})
        ->Args({entries, kKeep, 0})
        ->Args({entries, 0, 1})
        ->Unit(benchmark::kMillisecond);
    std::string parse = Name("ParseHosts", entries);
    std::string compiled = Name("ValidateHosts", entries) + "/0/0";
    std::string kept = Name("ValidateHosts", entries) + "/" + std::to_string(kKeep) + "/0";
    std::string linear = Name("ValidateHosts", entries) + "/0/1";
    std::string size = " (" + std::to_string(entries) + " entries)";
    bench::AddTimeRatio("addresses and names, a pattern compiled for each value / parse" + size, 0,
                        compiled, parse);
    bench::AddTimeRatio("addresses and names, compiled patterns kept / parse" + size, 0, kept,
                        parse);
    bench::AddTimeRatio("addresses and names, patterns kept / compiled for each value" + size, 1.0,
                        kept, compiled);
    bench::AddTimeRatio("addresses and names, the matcher of libzrpatterns / parse" + size, 1.5,
                        linear, parse);
}

void RegisterShapes(int64_t entries)
{
    const struct {
        const char *name;
        const char *shown;
        void (*run)(benchmark::State &state);
    } kinds[] = {
        {"RpcShape", "rpc", RpcShape},
        {"ActionShape", "action", ActionShape},
        {"NotifyShape", "notification", NotifyShape},
    };
    for (const auto &kind : kinds) {
        for (size_t i = 0; i < std::size(kShapes); ++i) {
            for (int64_t count : {int64_t{1000}, entries})
                benchmark::RegisterBenchmark(kind.name, kind.run)
                    ->Args({count, static_cast<int64_t>(i)})
                    ->Unit(benchmark::kMillisecond);
            bench::AddRatio(std::string(kind.shown) + ", " + kShapes[i].name +
                                ": one entry among " + std::to_string(entries) + " / among 1000",
                            1.2, [=, name = kind.name] {
                                return CostPerEntry(name, entries, "/" + std::to_string(i));
                            });
        }
    }
}

const bool g_registered = [] {
    for (int64_t entries : {1000, 10000, 100000}) {
        benchmark::RegisterBenchmark("ParseRequest", ParseRequest)
            ->Arg(entries)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("ValidateRequest", ValidateRequest)
            ->Args({entries, 0})
            ->Args({entries, 1})
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("ValidateRelaxNg", ValidateRelaxNg)
            ->Arg(entries)
            ->Unit(benchmark::kMillisecond);
        std::string size = " (" + std::to_string(entries) + " entries)";
        bench::AddTimeRatio("validation with conditions / parse" + size, 0.8,
                            Name("ValidateRequest", entries) + "/1", Name("ParseRequest", entries));
        bench::AddTimeRatio("validation without conditions / parse" + size, 0.45,
                            Name("ValidateRequest", entries) + "/0", Name("ParseRequest", entries));
        bench::AddTimeRatio("validation without conditions / RELAX NG" + size, 1.0,
                            Name("ValidateRequest", entries) + "/0",
                            Name("ValidateRelaxNg", entries));
        bench::AddTimeRatio("RELAX NG / parse" + size, 0, Name("ValidateRelaxNg", entries),
                            Name("ParseRequest", entries));
    }
    for (int64_t entries : {10000, 100000})
        for (const char *conditions : {"/0", "/1"})
            bench::AddRatio("cost of one entry among " + std::to_string(entries) + " / among 1000" +
                                (conditions[1] == '1' ? ", with conditions" : ""),
                            1.2,
                            [=] { return CostPerEntry("ValidateRequest", entries, conditions); });
    RegisterShapes(100000);
    if (std::filesystem::is_directory(ZR_CORPUS_DIR))
        RegisterHosts(10000);
    return true;
}();

} // namespace
