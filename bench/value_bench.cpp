// SPDX-License-Identifier: Apache-2.0
// Value checks of each kind of type, as values a second and against reading the value from its XML
// element.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <zrschema/zrschema.h>

#include <filesystem>
#include <string>

#include "ratios.h"

namespace {

struct Case {
    const char *name;
    const char *leaf;
    const char *value;
};

constexpr Case kCases[] = {
    {"integer with a range", "integer", "4711"},
    {"enumeration of 300 names", "enumeration", "name-299"},
    {"string with a length", "string", "a text of thirty-two characters."},
    {"decimal64", "decimal", "3.14159"},
    {"bits of 32 names", "bits", "bit-0 bit-15 bit-31"},
    {"union of four", "union", "name-2"},
    {"identityref three levels deep", "identity", "b:leaf-identity"},
    {"leafref", "reference", "4711"},
};

std::string Repeat(int count, const char *before, const char *after)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += before + std::to_string(i) + after;
    return text;
}

std::string Leaf(const char *name, const std::string &type)
{
    return "<leaf name='" + std::string(name) + "'>" + type + "</leaf>";
}

std::string ModuleText()
{
    std::string integer = "<type name='int32'><range value='1..100 | 1000..5000'/></type>";
    std::string few =
        "<type name='enumeration'>" + Repeat(3, "<enum name='name-", "'/>") + "</type>";
    return "<module name='b' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:b='urn:b'>"
           "<namespace uri='urn:b'/><prefix value='b'/>"
           "<identity name='root'/><identity name='middle'><base name='root'/></identity>"
           "<identity name='lower'><base name='middle'/></identity>"
           "<identity name='leaf-identity'><base name='lower'/></identity>"
           "<container name='c'>" +
           Leaf("integer", integer) +
           Leaf("enumeration",
                "<type name='enumeration'>" + Repeat(300, "<enum name='name-", "'/>") + "</type>") +
           Leaf("string", "<type name='string'><length value='1..64'/></type>") +
           Leaf("decimal", "<type name='decimal64'><fraction-digits value='6'/>"
                           "<range value='-10.0..10.0'/></type>") +
           Leaf("bits", "<type name='bits'>" + Repeat(32, "<bit name='bit-", "'/>") + "</type>") +
           Leaf("union", "<type name='union'>" + integer +
                             "<type name='boolean'/>"
                             "<type name='decimal64'><fraction-digits value='2'/></type>" +
                             few + "</type>") +
           Leaf("identity", "<type name='identityref'><base name='root'/></type>") +
           Leaf("reference", "<type name='leafref'><path value='/b:c/b:integer'/></type>") +
           "</container></module>";
}

ZrCtx *BenchContext()
{
    static ZrCtx *ctx = [] {
        ZrCtx *made = ZR_CTX_Create(0);
        ZR_CTX_LoadMemory(made, ModuleText().c_str());
        std::string corpus = ZR_CORPUS_DIR;
        if (!corpus.empty() && ZR_CTX_SetSearchDir(made, corpus.c_str()) == ZR_OK) {
            ZR_CTX_LoadModule(made, "ietf-inet-types");
            ZR_CTX_LoadMemory(made,
                              "<module name='i' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>"
                              "<namespace uri='urn:i'/><prefix value='i'/>"
                              "<import module='ietf-inet-types'><prefix value='inet'/></import>"
                              "<leaf name='ip'><type name='inet:ip-address'/></leaf></module>");
        }
        return made;
    }();
    return ctx;
}

// An element <e xmlns="urn:b" xmlns:b="urn:b">value</e>.
xmlNode *NewElement(const char *value)
{
    std::string text =
        "<e xmlns='urn:b' xmlns:b='urn:b'>" + std::string(value) + "</e>"; // freed with the process
    return xmlDocGetRootElement(xmlParseMemory(text.c_str(), static_cast<int>(text.size())));
}

void ReadValue(benchmark::State &state, const char *value)
{
    xmlNode *element = NewElement(value);
    for (auto _ : state) {
        xmlChar *content = xmlNodeGetContent(element);
        benchmark::DoNotOptimize(content);
        xmlFree(content);
    }
    state.SetItemsProcessed(state.iterations());
}

void CheckValue(benchmark::State &state, const char *path, const char *value)
{
    ZrNode *leaf = ZR_CTX_GetTargetNode(BenchContext(), path, nullptr);
    xmlNode *element = NewElement(value);
    if (leaf == nullptr || ZR_NODE_ValidateValue(leaf, ZR_VALUE_XML, element) != ZR_OK)
        state.SkipWithError("no such leaf, or the value is refused");
    for (auto _ : state)
        benchmark::DoNotOptimize(ZR_NODE_ValidateValue(leaf, ZR_VALUE_XML, element));
    state.SetItemsProcessed(state.iterations());
}

void Register(const std::string &name, const std::string &path, const char *value)
{
    benchmark::RegisterBenchmark(("ReadValue/" + name).c_str(), ReadValue, value);
    benchmark::RegisterBenchmark(
        ("CheckValue/" + name).c_str(),
        [path, value](benchmark::State &state) { CheckValue(state, path.c_str(), value); });
    bench::AddTimeRatio("value check / reading it: " + name, 0, "CheckValue/" + name,
                        "ReadValue/" + name);
}

const bool g_registered = [] {
    for (const Case &one : kCases)
        Register(one.name, std::string("/b:c/") + one.leaf, one.value);
    if (std::filesystem::is_directory(ZR_CORPUS_DIR))
        Register("inet:ip-address", "/i:ip", "2001:db8::1");
    return true;
}();

} // namespace
