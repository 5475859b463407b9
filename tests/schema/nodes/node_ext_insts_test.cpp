// SPDX-License-Identifier: Apache-2.0
// Extension instances of schema nodes.
#include "schema/members/ext_inst.h"
#include "schema/record_fixture.h"

namespace {

class NodeExtInst : public zrtest::RecordTest {
protected:
    void SetUp() override
    {
        module_ = NewModule("m");
        node_ = AddData(module_, ZR_NODE_CONTAINER, "c");
    }
    std::string Instances(const ZrNode *node)
    {
        std::string text;
        auto collect = [](const ZrsExtInst *, const char *moduleName, const char *extensionName,
                          const char *argument, void *userData) {
            *static_cast<std::string *>(userData) += std::string(moduleName) + ":" + extensionName +
                                                     "(" + (argument == nullptr ? "-" : argument) +
                                                     ")";
            return uint32_t{0};
        };
        EXPECT_EQ(ZR_NODE_ScanAllExtInsts(node, collect, &text), ZR_OK);
        return text;
    }
    ZrMod *module_ = nullptr;
    ZrNode *node_ = nullptr;
};

TEST_F(NodeExtInst, IsAppendedInOrder)
{
    EXPECT_EQ(Instances(node_), "");
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "n", "a", "x"), ZR_OK);
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "n", "b", nullptr), ZR_OK);
    EXPECT_EQ(Instances(node_), "n:a(x)n:b(-)");
}

TEST_F(NodeExtInst, AppendedTwiceStandsThereOnce)
{
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "n", "a", "x"), ZR_OK);
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "n", "a", "x"), ZR_OK);
    EXPECT_EQ(node_->extInstCount, 1);
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "n", "a", "y"), ZR_OK);
    EXPECT_EQ(Instances(node_), "n:a(x)n:a(y)");
}

TEST_F(NodeExtInst, NeedsNodeModuleContextAndNames)
{
    EXPECT_EQ(ZR_NODE_AppendExtInst(nullptr, "n", "a", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, nullptr, "a", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "n", nullptr, nullptr), ZR_ERR_INVALID);
    ZrNode homeless = {};
    EXPECT_EQ(ZR_NODE_AppendExtInst(&homeless, "n", "a", nullptr), ZR_ERR_INVALID);
    ZrMod withoutContext = {};
    homeless.module = &withoutContext;
    EXPECT_EQ(ZR_NODE_AppendExtInst(&homeless, "n", "a", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AppendOneExtInst(dict_, nullptr, "n", "a", nullptr), ZR_ERR_INVALID);
}

TEST_F(NodeExtInst, AppendWithoutMemoryAddsNothing)
{
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] { return ZR_NODE_AppendExtInst(node_, "new", "a", "x"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(Instances(node_), memory.Failed() ? "" : "new:a(x)");
        ZR_NODE_CleanExtInsts(node_);
    });
}

TEST_F(NodeExtInst, OfDefaultDenyAllMarksEverythingBelow)
{
    ZrNode *list = AddChild(node_, ZR_NODE_LIST, "l");
    ZrNode *leaf = AddChild(list, ZR_NODE_LEAF, "x");
    ZrNode *other = AddData(module_, ZR_NODE_CONTAINER, "other");
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "ietf-netconf-acm", "default-deny-all", nullptr), ZR_OK);
    for (const ZrNode *node : {node_, list, leaf}) {
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(node), 1u) << node->name;
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyWrite(node), 0u) << node->name;
    }
    EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(other), 0u);
}

TEST_F(NodeExtInst, OfDefaultDenyWriteMarksEverythingBelow)
{
    ZrNode *leaf = AddChild(node_, ZR_NODE_LEAF, "x");
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "ietf-netconf-acm", "default-deny-write", nullptr),
              ZR_OK);
    EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyWrite(node_), 1u);
    EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyWrite(leaf), 1u);
}

TEST_F(NodeExtInst, OfAnotherModuleMarksNothing)
{
    EXPECT_EQ(ZR_NODE_AppendExtInst(node_, "n", "default-deny-all", nullptr), ZR_OK);
    EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(node_), 0u);
}

TEST_F(NodeExtInst, IsReplacedByACopyOfAnotherNodes)
{
    ZrNode *source = AddData(module_, ZR_NODE_CONTAINER, "source");
    ASSERT_EQ(ZR_NODE_AppendExtInst(source, "n", "a", "x"), ZR_OK);
    ASSERT_EQ(ZRS_EXT_UpdateExtInstChildInsts(dict_, &source->extInsts[0], source->extInsts, 1),
              ZR_OK);
    ASSERT_EQ(ZR_NODE_AppendExtInst(node_, "n", "old", nullptr), ZR_OK);
    ASSERT_EQ(ZR_NODE_AppendExtInst(node_, "n", "older", nullptr), ZR_OK);
    EXPECT_EQ(ZR_NODE_ReplaceDstExtInst(node_, source), ZR_OK);
    EXPECT_EQ(Instances(node_), "n:a(x)");
    EXPECT_EQ(node_->extInsts[0].childCount, 1);
    EXPECT_EQ(Instances(source), "n:a(x)");
    EXPECT_EQ(ZR_NODE_ReplaceDstExtInst(node_, node_), ZR_OK); // by its own: the same again
    EXPECT_EQ(Instances(node_), "n:a(x)");
}

TEST_F(NodeExtInst, IsNotReplacedByNothing)
{
    ZrNode *source = AddData(module_, ZR_NODE_CONTAINER, "source");
    ASSERT_EQ(ZR_NODE_AppendExtInst(node_, "n", "a", "x"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ReplaceDstExtInst(node_, source), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ReplaceDstExtInst(node_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ReplaceDstExtInst(nullptr, node_), ZR_ERR_INVALID);
    ZrNode homeless = {};
    EXPECT_EQ(ZR_NODE_ReplaceDstExtInst(&homeless, node_), ZR_ERR_INVALID);
    EXPECT_EQ(Instances(node_), "n:a(x)");
}

TEST_F(NodeExtInst, StaysWhenTheReplacementCannotBeCopied)
{
    ZrNode *source = AddData(module_, ZR_NODE_CONTAINER, "source");
    ASSERT_EQ(ZR_NODE_AppendExtInst(source, "n", "b", nullptr), ZR_OK);
    ASSERT_EQ(ZR_NODE_AppendExtInst(node_, "n", "a", nullptr), ZR_OK);
    guard_.FailAt(0);
    EXPECT_EQ(ZR_NODE_ReplaceDstExtInst(node_, source), ZR_ERR_NO_MEMORY);
    guard_.Stop();
    EXPECT_EQ(Instances(node_), "n:a(-)");
}

TEST_F(NodeExtInst, AllAreCleaned)
{
    ASSERT_EQ(ZR_NODE_AppendExtInst(node_, "n", "a", nullptr), ZR_OK);
    ZR_NODE_CleanExtInsts(node_);
    EXPECT_EQ(node_->extInstCount, 0);
    EXPECT_EQ(node_->extInsts, nullptr);
    ZR_NODE_CleanExtInsts(node_);
    ZR_NODE_CleanExtInsts(nullptr);
}

TEST_F(NodeExtInst, ScanStopsAtANonZeroResult)
{
    ASSERT_EQ(ZR_NODE_AppendExtInst(node_, "n", "a", nullptr), ZR_OK);
    ASSERT_EQ(ZR_NODE_AppendExtInst(node_, "n", "b", nullptr), ZR_OK);
    int calls = 0;
    auto stop = [](const ZrsExtInst *, const char *, const char *, const char *, void *userData) {
        ++*static_cast<int *>(userData);
        return uint32_t{5};
    };
    EXPECT_EQ(ZR_NODE_ScanAllExtInsts(node_, stop, &calls), 5u);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(ZR_NODE_ScanAllExtInsts(nullptr, stop, &calls), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllExtInsts(node_, nullptr, &calls), ZR_ERR_INVALID);
}

} // namespace
