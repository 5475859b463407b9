// SPDX-License-Identifier: Apache-2.0
// Requests and notifications of RFCs against the real modules: each as published, and broken in
// several ways with the record that a reader of the schema expects.
//
// The examples are files of tests/data/rfc. A file begins with "modules NAME...", then holds
//
//   === rpc TITLE           or "=== notification TITLE"; then the document
//   --- NAME                a variant of it
//   - TEXT                  takes out the first place of the text ...
//   + TEXT                  ... and puts this there; alone, before the end of the document
//   = valid                 what comes of it, or "= TAG | APP-TAG | PATH | MESSAGE | BAD ELEMENT"
//   ~ TEXT                  the document afterwards holds the text
//   ! TEXT                  the document afterwards does not hold it
//
// Lines that begin with "#" are remarks.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <zrschema/zrschema.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "data/phases.h"
#include "support/context.h"

namespace {

using Words = std::vector<std::string>;

struct Variant {
    std::string name;
    std::vector<std::pair<std::string, std::string>> edits;
    std::string expected;
    Words present;
    Words absent;
};

struct Example {
    bool isRpc = true;
    std::string title;
    std::string document;
    std::vector<Variant> variants;
};

struct ExampleFile {
    Words modules;
    std::vector<Example> examples;
};

bool TakePrefix(std::string &line, const std::string &prefix)
{
    if (line.compare(0, prefix.size(), prefix) != 0)
        return false;
    line.erase(0, prefix.size());
    return true;
}

void ReadVariantLine(Variant &variant, std::string line)
{
    if (TakePrefix(line, "- "))
        variant.edits.emplace_back(line, "");
    else if (TakePrefix(line, "+ ")) {
        if (variant.edits.empty() || !variant.edits.back().second.empty())
            variant.edits.emplace_back("", "");
        variant.edits.back().second = line;
    } else if (TakePrefix(line, "= "))
        variant.expected = line;
    else if (TakePrefix(line, "~ "))
        variant.present.push_back(line);
    else if (TakePrefix(line, "! "))
        variant.absent.push_back(line);
    else
        EXPECT_EQ(line, "") << "a line of no kind";
}

ExampleFile ReadFile(const std::string &path)
{
    ExampleFile file;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        if (TakePrefix(line, "modules ")) {
            std::istringstream words(line);
            for (std::string word; words >> word;)
                file.modules.push_back(word);
        } else if (TakePrefix(line, "=== ")) {
            Example example;
            example.isRpc = TakePrefix(line, "rpc ");
            if (!example.isRpc)
                TakePrefix(line, "notification ");
            example.title = line;
            file.examples.push_back(example);
        } else if (TakePrefix(line, "--- ")) {
            file.examples.back().variants.emplace_back().name = line;
        } else if (file.examples.back().variants.empty()) {
            file.examples.back().document += line + "\n";
        } else {
            ReadVariantLine(file.examples.back().variants.back(), line);
        }
    }
    return file;
}

std::string Apply(const Variant &variant, std::string document)
{
    for (const auto &[from, to] : variant.edits) {
        size_t at = from.empty() ? document.rfind("</") : document.find(from);
        if (at == std::string::npos) {
            ADD_FAILURE() << variant.name << ": not in the document: " << from;
            continue;
        }
        document.replace(at, from.size(), to);
    }
    return document;
}

std::string Text(const char *text)
{
    return text != nullptr ? text : "-";
}

std::string TakeRecord(ZrdErrNode *error)
{
    if (error == nullptr)
        return "valid";
    EXPECT_EQ(ZR_GetErrorType(error), ZR_ERROR_TYPE_APPLICATION);
    EXPECT_EQ(ZR_GetErrorSeverity(error), ZR_ERROR_SEVERITY_ERROR);
    EXPECT_EQ(ZR_GetBadAttribute(error), nullptr);
    std::string record = std::to_string(ZR_GetErrorTag(error)) + " | " +
                         Text(ZR_GetErrorAppTag(error)) + " | " + Text(ZR_GetErrorPath(error)) +
                         " | " + Text(ZR_GetErrorMessage(error)) + " | " +
                         Text(ZR_GetBadElement(error));
    ZR_FreeErrNode(error);
    return record;
}

std::string Dump(xmlDoc *doc)
{
    xmlChar *text = nullptr;
    int size = 0;
    xmlDocDumpMemory(doc, &text, &size);
    std::string result(reinterpret_cast<const char *>(text), static_cast<size_t>(size));
    xmlFree(text);
    return result;
}

struct Result {
    std::string record;
    std::string document;
};

// Through the public function, and that one's refusal of a tree leaves the tree as it was.
Result RunRpc(ZrCtx *ctx, std::string text)
{
    Result result;
    result.record =
        TakeRecord(ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, text.data(), nullptr, nullptr));
    xmlDoc *doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    std::string before = Dump(doc);
    std::string second = TakeRecord(
        ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_XML, xmlDocGetRootElement(doc), nullptr, nullptr));
    EXPECT_EQ(second, result.record);
    result.document = Dump(doc);
    if (result.record != "valid") {
        EXPECT_EQ(result.document, before);
    }
    xmlFreeDoc(doc);
    return result;
}

// The public function discards the record, so it is taken from a run of the same phases.
Result RunNotification(ZrCtx *ctx, const std::string &text)
{
    Result result;
    uint32_t status = ZR_CTX_ValidateNotifDataTree(
        ctx, text.c_str(),
        [](const char *document, void *userData) {
            *static_cast<std::string *>(userData) = document;
            return uint32_t{0};
        },
        &result.document);
    ZrdCheckAux check;
    ZRD_PAS_InitCheckAux(&check, ctx, ZRD_MODE_NOTIF, nullptr, nullptr);
    xmlDoc *doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NOBLANKS);
    uint32_t runStatus = ZRD_PAS_ValidateDataTree(&check, xmlDocGetRootElement(doc));
    EXPECT_EQ(status, runStatus != ZR_OK ? ZR_ERR_INVALID : ZR_OK);
    result.record = TakeRecord(check.error);
    if (runStatus != ZR_OK && result.record == "valid")
        result.record = "failed without a record";
    xmlFreeDoc(doc);
    return result;
}

void EnableAllFeatures(ZrCtx *ctx)
{
    for (const auto &entry : std::filesystem::directory_iterator(zrtest::CorpusDir())) {
        std::string name = entry.path().stem().string();
        if (ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name.c_str()))
            ZR_MOD_EnableFeature(module, "*");
    }
}

Words FileNames()
{
    Words names;
    for (const auto &entry : std::filesystem::directory_iterator(ZR_TEST_DATA_DIR "/rfc"))
        names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class RfcExamples : public ::testing::TestWithParam<std::string> {};

TEST_P(RfcExamples, AreTakenAsPublishedAndRefusedWhenBroken)
{
    if (zrtest::CorpusDir().empty())
        GTEST_SKIP() << "the folder of real modules is not there";
    ExampleFile file = ReadFile(std::string(ZR_TEST_DATA_DIR "/rfc/") + GetParam() + ".txt");
    ASSERT_FALSE(file.examples.empty());
    zrtest::TestContext ctx(ZR_CTX_LOAD_IMPORTS);
    ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, zrtest::CorpusDir().c_str()), ZR_OK);
    for (const std::string &module : file.modules)
        ASSERT_EQ(ZR_CTX_LoadModule(ctx, module.c_str()), ZR_OK) << module;
    ASSERT_EQ(ctx.Messages(), Words{});
    EnableAllFeatures(ctx);

    for (const Example &example : file.examples) {
        EXPECT_GE(example.variants.size(), 5u) << example.title;
        for (const Variant &variant : example.variants) {
            std::string where = example.title + ", " + variant.name;
            std::string text = Apply(variant, example.document);
            Result result = example.isRpc ? RunRpc(ctx, text) : RunNotification(ctx, text);
            EXPECT_EQ(result.record, variant.expected) << where;
            for (const std::string &part : variant.present)
                EXPECT_NE(result.document.find(part), std::string::npos) << where << "\n"
                                                                         << result.document;
            for (const std::string &part : variant.absent)
                EXPECT_EQ(result.document.find(part), std::string::npos) << where << "\n"
                                                                         << result.document;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rfc, RfcExamples, ::testing::ValuesIn(FileNames()),
                         [](const auto &param) { return param.param; });

} // namespace
