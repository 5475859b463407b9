// SPDX-License-Identifier: Apache-2.0
// The real modules: each loads alone, with what it imports, and with all others.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/context.h"

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::TestContext;

namespace {

// Refused for an enumeration value at the largest 32-bit number.
constexpr const char *kRefused = "ietf-syslog";

// Coupling messages of a module that is loaded before its target.
bool IsCoupling(const std::string &message)
{
    return message == "Failed to couple augment statements." ||
           message == "Failed to couple deviation statements.";
}

std::string ReadFile(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

class Corpus : public testing::Test {
protected:
    void SetUp() override
    {
        dir = zrtest::CorpusDir();
        if (dir.empty())
            GTEST_SKIP() << "the folder of real modules is absent";
        for (const fs::directory_entry &entry : fs::directory_iterator(dir))
            if (entry.path().extension() == ".yin")
                names.push_back(entry.path().stem().string());
        std::sort(names.begin(), names.end());
    }
    std::vector<std::string> Problems(TestContext &ctx) const
    {
        std::vector<std::string> messages = ctx.Messages();
        std::erase_if(messages, IsCoupling);
        return messages;
    }
    std::string dir;
    std::vector<std::string> names;
};

} // namespace

TEST_F(Corpus, HoldsSeventyNineModules)
{
    EXPECT_EQ(names.size(), 79u);
}

TEST_F(Corpus, EveryModuleButOneLoadsAlone)
{
    for (const std::string &name : names) {
        TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS);
        ZR_CTX_SetSearchDir(ctx, dir.c_str());
        uint32_t status = ZR_CTX_LoadModule(ctx, name.c_str());
        EXPECT_EQ(status, name == kRefused ? ZR_ERR_INVALID : ZR_OK) << name;
        if (name != kRefused) {
            EXPECT_THAT(Problems(ctx), IsEmpty()) << name;
        }
    }
}

TEST_F(Corpus, EveryModuleButOneLoadsWithItsImports)
{
    for (const std::string &name : names) {
        TestContext ctx(ZR_CTX_LOAD_IMPORTS);
        ZR_CTX_SetSearchDir(ctx, dir.c_str());
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), name == kRefused ? ZR_ERR_INVALID : ZR_OK)
            << name;
        if (name != kRefused) {
            EXPECT_THAT(ctx.Messages(), IsEmpty()) << name;
        }
    }
}

TEST_F(Corpus, AllModulesLoadTogether)
{
    TestContext ctx;
    ZR_CTX_SetSearchDir(ctx, dir.c_str());
    for (const std::string &name : names)
        ZR_CTX_LoadModule(ctx, name.c_str());
    for (const std::string &name : names)
        EXPECT_EQ(ctx.Module(name.c_str()) != nullptr, name != kRefused) << name;
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Failed to parse value \"enumeration\" of statement \"type\".",
                            "Failed to parse value \"union\" of statement \"type\"."));
}

namespace {

// Finds what the paths of a "unique" lead to, from the list down.
uint32_t ExpectLeafs(const char *argument, void *list)
{
    std::istringstream paths(argument);
    for (std::string path; paths >> path;) {
        const auto *node = static_cast<const ZrNode *>(list);
        std::istringstream steps(path);
        for (std::string step; node != nullptr && std::getline(steps, step, '/');) {
            size_t colon = step.find(':');
            node = ZR_NODE_FindDataChild(node, step.substr(0, colon).c_str(),
                                         step.substr(colon + 1).c_str());
        }
        EXPECT_EQ(ZR_NODE_GetNodeType(node), uint32_t{ZR_NODE_LEAF}) << argument;
    }
    return 0;
}

struct EntryCounts {
    uint32_t limits = 0;
    uint32_t keys = 0;
};

uint32_t CountKey(ZrNode *, uint32_t, void *count)
{
    ++*static_cast<uint32_t *>(count);
    return 0;
}

uint32_t CountEntryRules(ZrNode *node, uint32_t arrival, void *userData)
{
    if (arrival == ZR_ARRIVAL_PARENT)
        return 0;
    auto *counts = static_cast<EntryCounts *>(userData);
    counts->limits += ZR_NODE_GetMinElements(node) != 0 || ZR_NODE_GetMaxElements(node) != 0;
    ZR_NODE_ScanAllUniques(node, ExpectLeafs, node);
    uint32_t keys = 0;
    ZR_NODE_ScanAllKeysInOrder(node, CountKey, &keys);
    EXPECT_EQ(keys, ZR_NODE_GetNodeKeyNum(node));
    counts->keys += keys;
    return 0;
}

} // namespace

TEST_F(Corpus, EveryModuleLoadsByTheStandard)
{
    TestContext ctx(ZR_CTX_STANDARD);
    ZR_CTX_SetSearchDir(ctx, dir.c_str());
    for (const std::string &name : names)
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK) << name;
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    EntryCounts counts;
    auto scan = [](ZrNode *top, uint32_t, void *out) {
        return ZR_NODE_TreeScanAllNode(top, CountEntryRules, out);
    };
    for (const std::string &name : names)
        ZR_MOD_IterScanTopmostNode(ctx.Module(name.c_str()), scan, &counts);
    EXPECT_GT(counts.limits, 10);
    EXPECT_GT(counts.keys, 400);
}

TEST_F(Corpus, TreesAreAsTheModulesSay)
{
    std::vector<std::string> compared;
    for (const fs::directory_entry &entry : fs::directory_iterator(ZR_TEST_DATA_DIR "/trees")) {
        std::string name = entry.path().stem().string();
        TestContext ctx(ZR_CTX_LOAD_IMPORTS);
        ZR_CTX_SetSearchDir(ctx, dir.c_str());
        ASSERT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK);
        ZR_MOD_EnableFeature(ctx.Module(name.c_str()), "*");
        EXPECT_EQ(zrtest::Tree(ctx.Module(name.c_str())), ReadFile(entry.path())) << name;
        compared.push_back(name);
    }
    EXPECT_GE(compared.size(), 6u);
}

TEST_F(Corpus, EveryTreePrintsWithAllFeaturesOn)
{
    TestContext ctx;
    ZR_CTX_SetSearchDir(ctx, dir.c_str());
    for (const std::string &name : names)
        ZR_CTX_LoadModule(ctx, name.c_str());
    for (const std::string &name : names)
        ZR_MOD_EnableFeature(ctx.Module(name.c_str()), "*");
    for (const std::string &name : names) {
        if (name == kRefused)
            continue;
        std::string tree = zrtest::Tree(ctx.Module(name.c_str()));
        EXPECT_THAT(tree, testing::StartsWith("module: " + name + "\n")) << name;
        EXPECT_EQ(tree.back(), '\n') << name;
    }
}
