// SPDX-License-Identifier: Apache-2.0
// Modules and documents together: sources are prepared and loaded, documents checked, completed,
// written in every way and read again.
//
// Input: parts that begin with a line "=== NAME". "=== module" is a YANG source; "=== config" and
// "=== data" are documents, JSON where they begin with "{", else XML; "=== edit", "=== request" and
// "=== notification" are held against the last of these in XML before them. Each is also checked
// with an allocation failing that its text decides.
#include "support.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <zrdata/write.h>
#include <zryang/zryang.h>

#include <memory>

namespace {

using namespace zrfuzz;

Goal g_xml("a document in XML is valid");
Goal g_json("a document in JSON is valid");
Goal g_faulty("a document has faults");
Goal g_malformed("a text is neither XML nor JSON");
Goal g_warned("a valid document has a warning");
Goal g_any("content that no schema describes is written");
Goal g_edited("an edit is valid for a datastore");
Goal g_notEdited("an edit does not fit a datastore");
Goal g_sent("a message is valid");
Goal g_completed("a default is written");
Goal g_trimmed("a default is left out");
Goal g_tagged("a default is tagged");
Goal g_crossed("a document is followed from one encoding into the other");
Goal g_noMemory("memory runs out");
Goal g_stopped("a callback stops the writing");

constexpr uint64_t kNodeLimit = 2000;
constexpr size_t kMaxModules = 3;
constexpr size_t kMaxDocuments = 4;
constexpr uint32_t kMaxAllocations = 200;
// What a condition may cost: libxml2 takes a second for a hundred times as many.
constexpr uint64_t kStepLimit = 100000;
constexpr int kStop = 7;

struct Input {
    std::vector<std::string> modules;
    std::vector<Part> documents;
};

Input ReadInput(std::string_view bytes)
{
    Input input;
    for (Part &part : ReadParts(bytes)) {
        if (part.name == "module" && input.modules.size() < kMaxModules)
            input.modules.push_back(part.text);
        else if (part.name != "module" && input.documents.size() < kMaxDocuments)
            input.documents.push_back(part);
    }
    return input;
}

// The name that a source begins with, as far as it can be told without reading it.
std::string NameOf(const std::string &source)
{
    std::string_view rest = source;
    size_t start = rest.find("module ");
    if (start == rest.npos)
        return "m";
    rest.remove_prefix(start + 7);
    return std::string(rest.substr(0, rest.find_first_of(" {")));
}

void Load(ZrCtx *ctx, const Input &input)
{
    ZrYang *yang = ZR_YANG_Create(nullptr);
    Check(yang != nullptr, "there is memory for a workspace");
    ZR_YANG_SetOption(yang, ZR_YANG_OPTION_NODE_LIMIT, kNodeLimit);
    for (const std::string &source : input.modules)
        ZR_YANG_AddText(yang, NameOf(source).c_str(), source.data(), source.size());
    for (const std::string &source : input.modules) {
        char *prepared = nullptr;
        if (ZR_YANG_PrepareToText(yang, NameOf(source).c_str(), &prepared, nullptr) == ZR_YANG_OK)
            ZR_CTX_LoadMemory(ctx, prepared);
        ZR_YANG_FreeText(yang, prepared);
    }
    ZR_YANG_Delete(yang);
}

struct Kind {
    std::string_view name;
    uint32_t kind;
};
constexpr Kind kMessages[] = {
    {"edit", ZR_DATA_EDIT},
    {"request", ZR_DATA_REQUEST},
    {"notification", ZR_DATA_NOTIFICATION},
};

// 0 for a document of data.
uint32_t MessageKind(std::string_view name)
{
    for (const Kind &row : kMessages)
        if (row.name == name)
            return row.kind;
    return 0;
}

// A document that was read, or a message that was checked, and what was found.
struct Reading {
    Reading(const ZrDataPlan *plan, const std::string &kind, const std::string &text,
            xmlDoc *datastore = nullptr)
    {
        ZrDataOptions options = {};
        options.kind = MessageKind(kind);
        options.stepLimit = kStepLimit;
        options.datastore = xmlDocGetRootElement(datastore);
        bool isJson = text.starts_with('{');
        if (options.kind != 0) {
            auto *check = isJson ? ZR_DATA_CheckJson : ZR_DATA_CheckText;
            status = check(plan, &options, text.data(), text.size(), &result);
        } else {
            options.kind = kind == "config" ? ZR_DATA_CONFIG : ZR_DATA_CONFIG_AND_STATE;
            auto *read = isJson ? ZR_DATA_ReadJson : ZR_DATA_ReadXml;
            status = read(plan, &options, text.data(), text.size(), &document, &result);
            Check((status == ZR_DATA_OK) == (document != nullptr), "valid data is a document");
        }
        Check((status == ZR_DATA_ERR_NO_MEMORY) == (result == nullptr), "a check has a result");
    }
    ~Reading()
    {
        ZR_DATA_DeleteDocument(document);
        ZR_DATA_DeleteResult(result);
    }
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;

    uint32_t status;
    ZrDataDocument *document = nullptr;
    ZrDataResult *result = nullptr;
};

void LookAtResult(const Reading &reading)
{
    size_t count = ZR_DATA_GetErrorCount(reading.result, nullptr);
    Check((count == 0) == (reading.status == ZR_DATA_OK), "data without faults is valid");
    for (size_t i = 0; i < count; ++i) {
        const ZrDataError &error = *ZR_DATA_GetError(reading.result, i);
        Check(ZR_DATA_GetTagName(error.tag) != nullptr, "a fault has a tag");
        Check(error.path[0] == '/' && error.message[0] != '\0', "a fault has a path and a message");
        Check(ZR_DATA_GetErrorXml(reading.result, i) != nullptr, "a fault has its XML");
        g_malformed.MeetIf(error.tag == ZR_ERROR_TAG_MALFORMED_MESSAGE);
    }
    g_faulty.MeetIf(count != 0);
    g_warned.MeetIf(count == 0 && ZR_DATA_GetWarningCount(reading.result, nullptr) != 0);
}

int Append(const char *text, size_t length, void *user)
{
    static_cast<std::string *>(user)->append(text, length);
    return 0;
}

std::string Write(const ZrDataDocument *document, uint32_t format, uint32_t defaults,
                  uint32_t indent = 0)
{
    ZrDataWriteOptions how = {format, defaults, indent};
    std::string text;
    Check(ZR_DATA_WriteText(document, &how, Append, &text) == ZR_DATA_OK, "a document is written");
    auto stop = [](const char *, size_t, void *) { return kStop; };
    g_stopped.MeetIf(ZR_DATA_WriteText(document, &how, stop, nullptr) == uint32_t{kStop});
    return text;
}

// Conditions may look at the order of nodes, or at what a mode leaves out; a union may take a value
// of one encoding for another one in the other, and so may content that no schema describes.
bool Has(const Input &input, std::initializer_list<const char *> words)
{
    for (const std::string &source : input.modules)
        for (const char *word : words)
            if (source.find(word) != std::string::npos)
                return true;
    return false;
}

void FollowDocument(const Input &input, const ZrDataPlan *plan, const std::string &kind,
                    const Reading &reading, uint32_t format)
{
    const std::string whole = Write(reading.document, ZR_DATA_JSON, ZR_DATA_REPORT_ALL);
    const std::string given = Write(reading.document, ZR_DATA_JSON, ZR_DATA_EXPLICIT);
    bool isPlain = !Has(input, {"must", "when", "union"});
    bool crosses = isPlain && !Has(input, {"any"});
    g_any.MeetIf(Has(input, {"any"}) && given.find("any\":{\"") != std::string::npos);
    g_completed.MeetIf(whole != given);
    g_trimmed.MeetIf(Write(reading.document, ZR_DATA_JSON, ZR_DATA_TRIM) != given);
    for (uint32_t mode = 0; mode <= ZR_DATA_REPORT_ALL_TAGGED; ++mode) {
        for (uint32_t to : {ZR_DATA_XML, ZR_DATA_JSON}) {
            std::string text = Write(reading.document, to, mode, mode);
            g_tagged.MeetIf(text.find(":default=\"true\"") != std::string::npos);
            Reading again(plan, kind, text);
            Check(again.status != ZR_DATA_ERR_NO_MEMORY, "there is memory");
            if (to == format ? !isPlain : !crosses)
                continue;
            Check(again.status == ZR_DATA_OK, "what was written is valid");
            Check(Write(again.document, ZR_DATA_JSON, ZR_DATA_REPORT_ALL) == whole,
                  "the same is in use in what was written");
            g_crossed.MeetIf(to != format);
        }
        void *tree = nullptr;
        Check(ZR_DATA_WriteTree(reading.document, mode, &tree) == ZR_DATA_OK, "a tree is made");
        xmlFreeDoc(static_cast<xmlDoc *>(tree));
    }
}

void ReadShortOfMemory(const ZrDataPlan *plan, Memory &memory, const Part &document, xmlDoc *store)
{
    size_t before = memory.live;
    memory.failAt = memory.count + 1 + PickBy(document.text, kMaxAllocations);
    {
        Reading reading(plan, document.name, document.text, store);
        g_noMemory.MeetIf(reading.status == ZR_DATA_ERR_NO_MEMORY);
    }
    memory.failAt = 0;
    Check(memory.live == before, "a check gives every block back");
}

xmlDoc *ParseXml(const std::string &text)
{
    return xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                         XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
}

void FollowAll(const Input &input, const ZrCtx *ctx, Memory &memory)
{
    ZrDataMemory hooks = {Memory::Allocate, Memory::Release, &memory};
    ZrDataPlan *plan = nullptr;
    Check(ZR_DATA_CreatePlan(ctx, &hooks, &plan) == ZR_DATA_OK, "a plan is made");
    auto hear = [](const char *, const char *, const char *message, void *) {
        Check(message[0] != '\0', "a problem says something");
        return 0;
    };
    ZR_DATA_ScanPlanProblems(plan, hear, nullptr);
    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> store(nullptr, xmlFreeDoc);
    for (const Part &document : input.documents) {
        ReadShortOfMemory(plan, memory, document, store.get());
        bool isJson = document.text.starts_with('{');
        Reading reading(plan, document.name, document.text, store.get());
        Check(reading.status == ZR_DATA_OK || reading.status == ZR_DATA_ERR_FAULTY,
              "a check has a stated status");
        LookAtResult(reading);
        uint32_t message = MessageKind(document.name);
        bool isOfStore = message == ZR_DATA_EDIT && store != nullptr;
        g_edited.MeetIf(isOfStore && reading.status == ZR_DATA_OK);
        g_notEdited.MeetIf(isOfStore && reading.status == ZR_DATA_ERR_FAULTY);
        g_sent.MeetIf(message > ZR_DATA_EDIT && reading.status == ZR_DATA_OK);
        if (message == 0 && !isJson)
            store.reset(ParseXml(document.text));
        if (message != 0 || reading.status != ZR_DATA_OK)
            continue;
        (isJson ? g_json : g_xml).MeetIf(true);
        FollowDocument(input, plan, document.name, reading, isJson ? ZR_DATA_JSON : ZR_DATA_XML);
    }
    ZR_DATA_DeletePlan(plan);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    Input input = ReadInput({reinterpret_cast<const char *>(data), size});
    if (input.modules.empty() || input.documents.empty())
        return 0;
    Context ctx(ZR_CTX_STANDARD);
    Load(ctx, input);
    Memory memory;
    FollowAll(input, ctx, memory);
    Check(memory.live == 0, "every block is given back");
    return 0;
}
