// SPDX-License-Identifier: Apache-2.0
// On the real modules: the path printed for a node finds that node again.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "model/context.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "schema/nodes/node.h"
#include "support/context.h"

namespace {

// The names of the modules that have a file in the folder, in alphabetical order.
std::vector<std::string> ModuleNames(const std::string &folder)
{
    std::set<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".yin") {
            std::string stem = entry.path().stem().string();
            names.insert(stem.substr(0, stem.find('@')));
        }
    }
    return {names.begin(), names.end()};
}

struct Checked {
    ZrCtx *ctx;
    size_t count = 0;
    std::vector<std::string> wrong = {};
};

uint32_t CheckNode(ZrNode *node, uint32_t arrival, void *userData)
{
    if (arrival == ZR_ARRIVAL_PARENT || ZR_NODE_GetNodeType(node) == ZR_NODE_AUGMENT)
        return 0;
    auto *checked = static_cast<Checked *>(userData);
    ++checked->count;
    zr::Owned<char> path(ZRS_NODE_PrintPath(node));
    if (!path)
        checked->wrong.emplace_back(std::string("no path: ") + ZR_NODE_GetNodeName(node));
    else if (ZR_CTX_GetTargetNode(checked->ctx, path.get(), nullptr) != node)
        checked->wrong.emplace_back(path.get());
    return 0;
}

uint32_t CheckTree(ZrNode *top, uint32_t, void *userData)
{
    return ZR_NODE_TreeScanAllNode(top, CheckNode, userData);
}

// Every node of every loaded module, those of augments too.
void CheckAllModules(Checked *checked)
{
    for (ZrMod *module = zr::FirstModule(checked->ctx); module != nullptr;
         module = zr::NextModule(checked->ctx, module)) {
        for (ZrNode *head :
             {module->dataNodes, module->rpcs, module->notifications, module->augments}) {
            if (head != nullptr) {
                EXPECT_EQ(ZR_NODE_IterScanSiblingNode(head, CheckTree, checked), ZR_OK);
            }
        }
    }
}

class PrintedPaths : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder_ = zrtest::CorpusDir();
        if (folder_.empty())
            GTEST_SKIP() << "the folder of the real modules is not there";
        ASSERT_EQ(ZR_CTX_SetSearchDir(ctx_, folder_.c_str()), ZR_OK);
    }

    std::string folder_;
    zrtest::TestContext ctx_;
};

TEST_F(PrintedPaths, LeadBackToTheirNodesWithAllModulesInOneContext)
{
    size_t loaded = 0;
    for (const std::string &name : ModuleNames(folder_))
        loaded += ZR_CTX_LoadModule(ctx_, name.c_str()) == ZR_OK ? 1 : 0;
    EXPECT_GE(loaded, 78u);
    Checked checked{ctx_};
    CheckAllModules(&checked);
    EXPECT_EQ(checked.wrong, std::vector<std::string>());
    EXPECT_GT(checked.count, 1000u);
}

// Without the modules that they augment, augments are not coupled.
TEST_F(PrintedPaths, LeadBackToTheirNodesWithEachModuleAlone)
{
    for (const std::string &name : ModuleNames(folder_)) {
        SCOPED_TRACE(name);
        zrtest::TestContext ctx;
        ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, folder_.c_str()), ZR_OK);
        ZR_CTX_LoadModule(ctx, name.c_str());
        Checked checked{ctx};
        CheckAllModules(&checked);
        EXPECT_EQ(checked.wrong, std::vector<std::string>());
    }
}

} // namespace
