// SPDX-License-Identifier: Apache-2.0
// One context that eight threads read at the same time: each gets what a single one gets.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>

#include "support/context.h"
#include "threads/parallel.h"

namespace {

using namespace zrtest;

constexpr int kRounds = 20;

const char *const kTypes = R"yin(
<import module="late"><prefix value="l"/></import><feature name="f"/>
<identity name="b"/><identity name="d"><base name="b"/></identity>
<leaf name="bits"><type name="bits"><bit name="one"/><bit name="two"/></type></leaf>
<leaf name="derived"><type name="l:t"><range value="min..50"/></type></leaf>
<leaf name="identity"><type name="identityref"><base name="b"/></type></leaf>
<leaf name="leafref"><type name="leafref"><path value="/m:derived"/></type></leaf>
<leaf name="string"><type name="string"><pattern value="[a-z]+"/></type></leaf>
<leaf name="union"><type name="union"><type name="l:t"/><type name="bits"><bit name="x"/></type>
  </type></leaf>
<rpc name="op"><input><leaf name="mode"><type name="string"/><default value="on"/></leaf>
  <leaf name="speed"><when condition="../mode = 'on'"/><type name="l:t"/><default value="7"/></leaf>
  <list name="entry"><key value="id"/><leaf name="id"><type name="string"/></leaf>
    <must condition="id != 'bad'"/></list>
  <leaf name="gated"><if-feature name="f"/><type name="string"/></leaf></input></rpc>
<notification name="event"><leaf name="mode"><type name="string"/></leaf>
  <leaf name="speed"><when condition="../mode = 'on'"/><type name="int8"/></leaf></notification>)yin";

// The bundled modules, and one whose typedefs come from a module that is loaded after it, so that
// its references are still by name.
class SharedContext : public testing::Test {
protected:
    SharedContext()
    {
        EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, ZR_EXAMPLE_MODULES), ZR_OK);
        for (const char *module : {"example-vendor", "example-routing", "example-services"})
            EXPECT_EQ(ZR_CTX_LoadModule(ctx_, module), ZR_OK) << module;
        EXPECT_EQ(ctx_.LoadBody("m", kTypes), ZR_OK);
        EXPECT_EQ(ctx_.LoadBody("late", "<typedef name=\"t\"><type name=\"int16\"><range "
                                        "value=\"1..100\"/></type></typedef>"),
                  ZR_OK);
    }

    // Every thread must give what `work` gives alone.
    void ExpectSame(const std::function<std::string()> &work)
    {
        std::string alone = work();
        EXPECT_FALSE(alone.empty());
        auto results = CollectInParallel<bool>([&](int) {
            bool same = true;
            for (int round = 0; round < kRounds; ++round)
                same = work() == alone && same;
            return same;
        });
        for (bool same : results)
            EXPECT_TRUE(same);
    }

    TestContext ctx_{ZR_CTX_LOAD_IMPORTS | ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS |
                     ZR_CTX_KEEP_PATTERNS};
};

const char *const kModules[] = {"example-router",
                                "example-routing",
                                "example-services",
                                "example-types",
                                "example-vendor",
                                "late",
                                "m",
                                "no-module-of-these"};

std::string Text(const char *text)
{
    return text != nullptr ? std::string(text) + ";" : "-;";
}

uint32_t AppendText(const char *text, void *out)
{
    *static_cast<std::string *>(out) += Text(text);
    return 0;
}

uint32_t AppendMust(const char *condition, const char *message, const char *tag, void *out)
{
    *static_cast<std::string *>(out) += Text(condition) + Text(message) + Text(tag);
    return 0;
}

uint32_t AppendLink(const char *module, const char *name, const ZrtRealType *, void *out)
{
    *static_cast<std::string *>(out) += Text(module) + Text(name);
    return 0;
}

uint32_t AppendNode(ZrNode *node, uint32_t arrival, void *out)
{
    if (arrival == ZR_ARRIVAL_PARENT)
        return 0;
    auto &text = *static_cast<std::string *>(out);
    char path[512];
    EXPECT_EQ(ZR_NODE_GetNodePath(node, path, sizeof path), ZR_OK);
    text += Text(path) + Text(ZR_NODE_GetDescription(node)) + Text(ZR_NODE_GetWhenCond(node)) +
            Text(ZR_NODE_GetDefaultValueStr(node)) + Text(ZR_NODE_GetUnitsValueStr(node)) +
            std::to_string(ZR_NODE_IsEnabled(node)) + std::to_string(ZR_NODE_IsRwConfig(node)) +
            Text(ZR_NODE_GetNodeName(ZR_NODE_GetLeafrefTargetNode(node, 1)));
    ZR_NODE_ScanAllMusts(node, AppendMust, out);
    ZR_NODE_ScanAllDefaults(node, AppendText, out);
    ZR_NODE_ScanDerivedType(node, AppendLink, out);
    return 0;
}

uint32_t AppendTree(ZrNode *root, uint32_t, void *out)
{
    return ZR_NODE_TreeScanAllNode(root, AppendNode, out);
}

std::string ScanAll(const ZrCtx *ctx)
{
    std::string text;
    for (const char *name : kModules) {
        const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name);
        EXPECT_EQ(ZR_MOD_IterScanTopmostNode(module, AppendTree, &text), ZR_OK);
        EXPECT_EQ(ZR_MOD_IterScanAugmentNode(module, AppendTree, &text), ZR_OK);
    }
    return text;
}

std::string PrintAll(const ZrCtx *ctx)
{
    std::string text;
    for (const char *name : kModules) {
        if (const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name))
            text += Tree(module);
    }
    return text;
}

std::string LookUpAll(const ZrCtx *ctx)
{
    std::string text;
    for (const char *name : kModules) {
        const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name);
        const char *ns = ZR_MOD_GetModuleNs(module);
        EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx, ns), module);
        text += Text(ns) + Text(ZR_MOD_GetRevision(module));
    }
    for (const char *path : {"/m:op/input/entry/id", "/example-router:router/interfaces/interface",
                             "/m:none", "/none:none"})
        text += Text(ZR_NODE_GetNodeName(ZR_CTX_GetTargetNode(ctx, path, nullptr)));
    text += std::to_string(ZR_CTX_IsModFeatureEnable(ctx, "m", "f"));
    return text;
}

std::string CheckValues(const ZrCtx *ctx)
{
    const char *const values[][2] = {
        {"/m:bits", "two one"}, {"/m:bits", "no"},       {"/m:derived", "50"}, {"/m:derived", "51"},
        {"/m:identity", "m:d"}, {"/m:identity", "m:no"}, {"/m:leafref", "50"}, {"/m:leafref", "51"},
        {"/m:string", "abc"},   {"/m:string", "1"},      {"/m:union", "100"},  {"/m:union", "y"},
    };
    std::string text;
    for (const auto &row : values) {
        const ZrNode *leaf = ZR_CTX_GetTargetNode(ctx, row[0], nullptr);
        text += std::to_string(ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, row[1])) + ";";
        text += ZR_NODE_FindRealTypeMatchedValue(leaf, ZR_VALUE_STRING, row[1]) != nullptr;
    }
    return text;
}

std::string Describe(ZrdErrNode *error)
{
    std::string text = "valid";
    if (error != nullptr)
        text = std::to_string(ZR_GetErrorTag(error)) + Text(ZR_GetErrorPath(error)) +
               Text(ZR_GetErrorMessage(error)) + Text(ZR_GetBadElement(error));
    ZR_FreeErrNode(error);
    return text + "\n";
}

void CountDefault(void *, void *count)
{
    ++*static_cast<int *>(count);
}

uint32_t TakeDocument(const char *text, void *out)
{
    *static_cast<std::string *>(out) += text;
    return 0;
}

// Requests that differ from thread to thread.
std::string Request(int number, const std::string &inside)
{
    std::string entries;
    for (int i = 0; i <= number; ++i)
        entries += "<entry><id>" + std::to_string(i) + "</id></entry>";
    return "<op xmlns='urn:m'>" + inside + entries + "</op>";
}

std::string Validate(ZrCtx *ctx, int number)
{
    std::string text;
    for (const char *inside : {"", "<mode>off</mode>", "<mode>on</mode><speed>101</speed>", "<no/>",
                               "<entry><id>bad</id></entry>", "<gated>g</gated>"}) {
        std::string request = Request(number, inside);
        int defaults = 0;
        text += Describe(ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, request.data(),
                                                    CountDefault, &defaults));
        xmlDoc *doc =
            xmlReadMemory(request.c_str(), static_cast<int>(request.size()), nullptr, nullptr, 0);
        text += Describe(ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_XML, xmlDocGetRootElement(doc),
                                                    CountDefault, &defaults));
        xmlFreeDoc(doc);
        text += std::to_string(defaults);
    }
    std::string event =
        "<event xmlns='urn:m'><mode>" + std::to_string(number) + "</mode><speed>1</speed></event>";
    text += std::to_string(ZR_CTX_ValidateNotifDataTree(ctx, event.c_str(), TakeDocument, &text));
    return text;
}

TEST_F(SharedContext, AnswersLookupsFromEightThreads)
{
    ExpectSame([this] { return LookUpAll(ctx_); });
}

TEST_F(SharedContext, IsScannedByEightThreads)
{
    EXPECT_GT(ScanAll(ctx_).size(), 1000u);
    ExpectSame([this] { return ScanAll(ctx_); });
}

TEST_F(SharedContext, IsPrintedByEightThreads)
{
    ExpectSame([this] { return PrintAll(ctx_); });
}

TEST_F(SharedContext, ChecksValuesForEightThreads)
{
    ExpectSame([this] { return CheckValues(ctx_); });
}

TEST_F(SharedContext, ValidatesADifferentTreeOnEachThread)
{
    std::array<std::string, kThreads> alone;
    for (int number = 0; number < kThreads; ++number)
        alone[static_cast<size_t>(number)] = Validate(ctx_, number);
    EXPECT_NE(alone[0], alone[1]);
    auto results = CollectInParallel<bool>([&](int number) {
        bool same = true;
        for (int round = 0; round < kRounds; ++round)
            same = Validate(ctx_, number) == alone[static_cast<size_t>(number)] && same;
        return same;
    });
    for (bool same : results)
        EXPECT_TRUE(same);
}

TEST_F(SharedContext, IsReadInEveryWayAtTheSameTime)
{
    const std::function<std::string()> ways[] = {
        [this] { return LookUpAll(ctx_); },   [this] { return ScanAll(ctx_); },
        [this] { return PrintAll(ctx_); },    [this] { return CheckValues(ctx_); },
        [this] { return Validate(ctx_, 1); },
    };
    std::vector<std::string> alone;
    for (const auto &way : ways)
        alone.push_back(way());
    auto results = CollectInParallel<bool>([&](int number) {
        bool same = true;
        for (int round = 0; round < kRounds; ++round) {
            auto way = static_cast<size_t>(number + round) % std::size(ways);
            same = ways[way]() == alone[way] && same;
        }
        return same;
    });
    for (bool same : results)
        EXPECT_TRUE(same);
}

} // namespace
