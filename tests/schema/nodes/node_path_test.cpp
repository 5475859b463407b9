#include "schema/nodes/node.h"

#include "platform/memory.h"
#include "schema/augment/augment.h"
#include "schema/record_fixture.h"

namespace {

class NodePath : public zrtest::RecordTest {
protected:
    NodePath() : module_(NewModule("m")), top_(AddData(module_, ZR_NODE_CONTAINER, "top")) {}
    static std::string Path(const ZrNode *node)
    {
        zr::Owned<char> path(ZRS_NODE_PrintPath(node));
        return path ? path.get() : "(none)";
    }
    // A chain of containers below `top_` whose path has exactly that many characters.
    ZrNode *NodeWithPathLength(size_t length)
    {
        ZrNode *node = top_;
        size_t have = std::string("/m:top").size();
        while (length - have > 66) {
            node = AddChild(node, ZR_NODE_CONTAINER, std::string(64, 'x').c_str());
            have += 65;
        }
        return AddChild(node, ZR_NODE_CONTAINER, std::string(length - have - 1, 'y').c_str());
    }

    ZrMod *module_;
    ZrNode *top_;
};

TEST_F(NodePath, QualifiesTheFirstStepAndEveryEntryIntoAnotherModule)
{
    ZrMod *other = NewModule("other");
    ZrNode *own = AddChild(top_, ZR_NODE_CONTAINER, "own");
    ZrNode *foreign = NewNode(other, ZR_NODE_CONTAINER, "foreign");
    ZRS_NODE_AddChild(own, foreign);
    ZrNode *below = AddChild(foreign, ZR_NODE_CONTAINER, "below");
    ZrNode *back = NewNode(module_, ZR_NODE_LEAF, "back");
    ZRS_NODE_AddChild(below, back);
    EXPECT_EQ(Path(top_), "/m:top");
    EXPECT_EQ(Path(own), "/m:top/own");
    EXPECT_EQ(Path(foreign), "/m:top/own/other:foreign");
    EXPECT_EQ(Path(below), "/m:top/own/other:foreign/below");
    EXPECT_EQ(Path(back), "/m:top/own/other:foreign/below/m:back");
}

TEST_F(NodePath, ChoiceAndCaseAreSteps)
{
    ZrNode *choice = AddChild(top_, ZR_NODE_CHOICE, "choice");
    ZrNode *leaf = AddChild(AddChild(choice, ZR_NODE_CASE, "case"), ZR_NODE_LEAF, "leaf");
    EXPECT_EQ(Path(leaf), "/m:top/choice/case/leaf");
}

TEST_F(NodePath, InputAndOutputAreStepsOfThoseNames)
{
    ZrNode *rpc = AddTop(module_, module_->rpcs, ZR_NODE_RPC, "rpc");
    ZrNode *input = AddChild(rpc, ZR_NODE_INPUT, "in"); // whatever they are called
    ZrNode *output = AddChild(rpc, ZR_NODE_OUTPUT, "out");
    EXPECT_EQ(Path(AddChild(input, ZR_NODE_LEAF, "a")), "/m:rpc/input/a");
    EXPECT_EQ(Path(AddChild(output, ZR_NODE_LEAF, "b")), "/m:rpc/output/b");
    EXPECT_EQ(Path(input), "/m:rpc/input");
}

TEST_F(NodePath, ANodeOfAnUncoupledAugmentIsFoundByItsPathToo)
{
    ZrNode *augment = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/far:top/near:x");
    ZrNode *box = AddChild(augment, ZR_NODE_CONTAINER, "box");
    ZrNode *leaf = AddChild(box, ZR_NODE_LEAF, "leaf");
    EXPECT_EQ(Path(augment), "/far:top/near:x");
    EXPECT_EQ(Path(box), "/far:top/near:x/m:box");
    EXPECT_EQ(Path(leaf), "/far:top/near:x/m:box/leaf");
    EXPECT_EQ(ZR_CTX_GetTargetNode(ctx_, "/far:top/near:x/m:box/leaf", nullptr), leaf);
}

TEST_F(NodePath, OfANodeThatIsNotThereIsNothing)
{
    EXPECT_EQ(ZRS_NODE_PrintPath(nullptr), nullptr);
}

TEST_F(NodePath, OfANodeWithoutNameOrModuleIsNothing)
{
    ZrNode *leaf = AddChild(top_, ZR_NODE_LEAF, "leaf");
    zr::Release(dict_, leaf->name);
    EXPECT_EQ(ZRS_NODE_PrintPath(leaf), nullptr);
    top_->module = nullptr;
    EXPECT_EQ(ZRS_NODE_PrintPath(top_), nullptr);
    top_->module = module_;
}

TEST_F(NodePath, MayBe3095CharactersLongAndNoLonger)
{
    ZrNode *fits = NodeWithPathLength(3095);
    ZrNode *tooLong = NodeWithPathLength(3096);
    EXPECT_EQ(Path(fits).size(), 3095u);
    EXPECT_EQ(ZRS_NODE_PrintPath(tooLong), nullptr);
}

TEST_F(NodePath, WithoutMemoryThereIsNone)
{
    ZrNode *leaf = AddChild(top_, ZR_NODE_LEAF, "leaf");
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        char *path = memory.Run([&] { return ZRS_NODE_PrintPath(leaf); });
        EXPECT_EQ(path == nullptr, memory.Failed());
        zr::Free(path);
    });
}

TEST_F(NodePath, IsWrittenBehindWhatTheBufferHolds)
{
    ZrNode *leaf = AddChild(top_, ZR_NODE_LEAF, "leaf");
    char buffer[64] = "at ";
    uint32_t length = 3;
    EXPECT_EQ(ZRS_NODE_PrintJsonPathRecursive(leaf, buffer, sizeof(buffer), &length), ZR_OK);
    EXPECT_STREQ(buffer, "at /m:top/leaf");
    EXPECT_EQ(length, 14u);
}

TEST_F(NodePath, AStepThatDoesNotFitFailsWith12)
{
    ZrNode *leaf = AddChild(top_, ZR_NODE_LEAF, "leaf");
    char buffer[12];
    uint32_t length = 0;
    EXPECT_EQ(ZRS_NODE_PrintJsonPathRecursive(leaf, buffer, 12, &length), ZR_OK);
    EXPECT_STREQ(buffer, "/m:top/leaf");
    for (uint32_t size = 0; size < 12; ++size) {
        length = 0;
        EXPECT_EQ(ZRS_NODE_PrintJsonPathRecursive(leaf, buffer, size, &length), ZR_ERR_NO_MEMORY)
            << size;
    }
}

TEST_F(NodePath, NullArgumentsFailWith22)
{
    char buffer[64];
    uint32_t length = 0;
    EXPECT_EQ(ZRS_NODE_PrintJsonPathRecursive(nullptr, buffer, sizeof(buffer), &length),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_PrintJsonPathRecursive(top_, nullptr, sizeof(buffer), &length),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_PrintJsonPathRecursive(top_, buffer, sizeof(buffer), nullptr),
              ZR_ERR_INVALID);
}

} // namespace
