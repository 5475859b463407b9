// SPDX-License-Identifier: Apache-2.0
#include "schema/merge/merge.h"

#include "schema/members/ext_inst.h"
#include "schema/merge_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using MergeTypes = zrtest::MergeTest;

class MergeNodes : public zrtest::MergeTest {
protected:
    // Containers at the top of the module's data nodes.
    void Top(ZrMod *module, std::initializer_list<const char *> names)
    {
        for (const char *name : names)
            AddData(module, ZR_NODE_CONTAINER, name);
    }
    // Containers below a new one at the top.
    ZrNode *Below(ZrMod *module, const char *parent, std::initializer_list<const char *> names)
    {
        ZrNode *node = AddData(module, ZR_NODE_CONTAINER, parent);
        for (const char *name : names)
            AddChild(node, ZR_NODE_CONTAINER, name);
        return node;
    }
    uint32_t MergeTrees() { return ZRS_MOD_MergeTreeNodeData(destination_, source_); }
    std::string Data() { return Text(destination_->dataNodes); }
    std::string Left() { return Text(source_->dataNodes); }
    uint32_t AddInstance(ZrNode *node, const char *name)
    {
        return ZR_NODE_AppendExtInst(node, "n", name, nullptr);
    }
};

TEST_F(MergeNodes, OfNothingChangesNothing)
{
    Top(destination_, {"a"});
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a");
}

TEST_F(MergeNodes, IntoAnEmptyListMovesAll)
{
    Below(source_, "a", {"x", "y"});
    Top(source_, {"b", "c"});
    AddTop(source_, source_->rpcs, ZR_NODE_RPC, "call");
    AddTop(source_, source_->notifications, ZR_NODE_NOTIFICATION, "event");
    AddTop(source_, source_->augments, ZR_NODE_AUGMENT, "/n:a");
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a(x y) b c");
    EXPECT_EQ(Text(destination_->rpcs), "call");
    EXPECT_EQ(Text(destination_->notifications), "event");
    EXPECT_EQ(Text(destination_->augments), "/n:a");
    EXPECT_EQ(source_->dataNodes, nullptr);
    EXPECT_EQ(source_->rpcs, nullptr);
    EXPECT_EQ(source_->notifications, nullptr);
    EXPECT_EQ(source_->augments, nullptr);
    EXPECT_TRUE(AllBelongTo(destination_->dataNodes, destination_));
    EXPECT_TRUE(AllBelongTo(destination_->augments, destination_));
}

TEST_F(MergeNodes, ThatDifferInNameGoToTheEndWithAllThatFollow)
{
    Top(destination_, {"a", "b"});
    Top(source_, {"x", "y", "z"});
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a b x y z");
    EXPECT_EQ(source_->dataNodes, nullptr);
    EXPECT_TRUE(AllBelongTo(destination_->dataNodes, destination_));
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MergeNodes, ArePairedByPositionUntilANameDiffers)
{
    Below(destination_, "a", {"x"});
    Top(destination_, {"b"});
    Below(source_, "a", {"x", "y"});
    Top(source_, {"c"});
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a(x y) b c");
    EXPECT_EQ(Left(), "a(x)"); // the matched ones stay with the source
}

TEST_F(MergeNodes, OfALongerListBelowAParentAreAddedToIt)
{
    Below(destination_, "a", {"x"});
    Below(source_, "a", {"x", "y", "z"});
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a(x y z)");
    EXPECT_TRUE(AllBelongTo(destination_->dataNodes, destination_));
}

TEST_F(MergeNodes, BelowAParentWithoutChildrenAreAddedToIt)
{
    Below(destination_, "a", {});
    Below(source_, "a", {"x", "y"});
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a(x y)");
    EXPECT_EQ(Left(), "a");
}

TEST_F(MergeNodes, OfALongerListAtTheTopStayWithTheSource)
{
    Top(destination_, {"a"});
    Top(source_, {"a", "b"});
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a");
    EXPECT_EQ(Left(), "a b");
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MergeNodes, OfAShorterListLeaveTheRestAlone)
{
    Top(destination_, {"a", "b", "c"});
    Top(source_, {"a", "b"});
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a b c");
}

TEST_F(MergeNodes, AreMergedLevelByLevel)
{
    ZrNode *inner = AddChild(Below(destination_, "a", {}), ZR_NODE_CONTAINER, "b");
    AddChild(inner, ZR_NODE_CONTAINER, "c");
    inner = AddChild(Below(source_, "a", {}), ZR_NODE_CONTAINER, "b");
    AddChild(AddChild(inner, ZR_NODE_CONTAINER, "d"), ZR_NODE_LEAF, "e");
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a(b(c d(e)))");
}

TEST_F(MergeNodes, ThatComeBackUnderALaterNameAreRefusedAtTheTop)
{
    Top(destination_, {"a", "b"});
    Top(source_, {"x", "b"});
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_EQ(Data(), "a b");
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge node \"a\" with diff reason \"name\"."));
}

TEST_F(MergeNodes, ThatComeBackUnderTheCurrentNameAreRefusedBelowAParent)
{
    Below(destination_, "top", {"a", "b"});
    Below(source_, "top", {"x", "a"});
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_EQ(Data(), "top(a b)");
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge node \"a\" under \"top\" with diff reason "
                                        "\"name\"."));
}

TEST_F(MergeNodes, OfAnotherKindAreRefused)
{
    AddChild(Below(destination_, "top", {}), ZR_NODE_CONTAINER, "a");
    AddChild(Below(source_, "top", {}), ZR_NODE_LIST, "a");
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge node \"a\" under \"top\" with diff reason "
                                        "\"other\"."));
}

TEST_F(MergeNodes, WithOtherFlagsAreRefused)
{
    Top(destination_, {"a"});
    Top(source_, {"a"});
    source_->dataNodes->flags = ZRS_FLAG_CONFIG_FALSE;
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge node \"a\" with diff reason \"other\"."));
}

TEST_F(MergeNodes, WithExtensionInstancesGiveThemToANodeWithout)
{
    Top(destination_, {"a"});
    Top(source_, {"a"});
    ASSERT_EQ(AddInstance(source_->dataNodes, "e"), ZR_OK);
    EXPECT_EQ(MergeTrees(), ZR_OK);
    ASSERT_EQ(destination_->dataNodes->extInstCount, 1);
    EXPECT_STREQ(destination_->dataNodes->extInsts[0].extensionName, "e");
    EXPECT_EQ(source_->dataNodes->extInstCount, 1);
}

TEST_F(MergeNodes, WithExtensionInstancesThatCannotBeCopiedFail)
{
    Top(destination_, {"a"});
    Top(source_, {"a"});
    ASSERT_EQ(AddInstance(source_->dataNodes, "e"), ZR_OK);
    guard_.FailAt(0);
    EXPECT_EQ(MergeTrees(), ZR_ERR_NO_MEMORY);
    guard_.Stop();
    EXPECT_EQ(destination_->dataNodes->extInstCount, 0);
    EXPECT_THAT(Messages(),
                ElementsAre("Failed to merge node \"a\" with diff reason \"extension\"."));
}

TEST_F(MergeNodes, WithMoreExtensionInstancesThanTheDestinationAreRefused)
{
    Top(destination_, {"a"});
    Top(source_, {"a"});
    ASSERT_EQ(AddInstance(destination_->dataNodes, "e"), ZR_OK);
    ASSERT_EQ(AddInstance(source_->dataNodes, "e"), ZR_OK);
    EXPECT_EQ(MergeTrees(), ZR_OK); // as many: none is looked at
    ASSERT_EQ(AddInstance(source_->dataNodes, "f"), ZR_OK);
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge node \"a\" with diff reason \"other\"."));
}

TEST_F(MergeNodes, AreNotPairedWithNodesOfAnotherModule)
{
    ZrMod *other = NewModule("other");
    ZrNode *top = Below(destination_, "top", {});
    ZrNode *foreign = NewNode(other, ZR_NODE_CONTAINER, "a");
    ZRS_NODE_AddChild(top, foreign);
    Below(source_, "top", {"a"});
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge node \"a\" under \"top\" with diff reason "
                                        "\"none\"."));
}

TEST_F(MergeNodes, ResolveTheirTypesInTheDestination)
{
    AddTypedef(destination_, "t", "string");
    AddTypedef(source_, "t", "string");
    ZrNode *leaf = AddLeaf(Below(source_, "a", {}), "leaf", "t");
    ASSERT_EQ(ZRT_TYPE_UpdateRealTypeDerivedFrom(TypeOf(leaf), source_), ZR_OK);
    ASSERT_EQ(Resolved(*TypeOf(leaf)), &source_->typedefs[0].realType);
    EXPECT_EQ(MergeTrees(), ZR_OK);
    EXPECT_EQ(Data(), "a(leaf)");
    EXPECT_EQ(Resolved(*TypeOf(leaf)), &destination_->typedefs[0].realType);
    EXPECT_EQ(leaf->module, destination_);
}

TEST_F(MergeNodes, WithATypeThatIsNowhereFailAsExtraNodesBelowAParent)
{
    Below(destination_, "top", {});
    ZrNode *top = Below(source_, "top", {"a"});
    AddLeaf(top, "leaf", "nowhere");
    AddChild(top, ZR_NODE_LEAF, "last");
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge extra node list \"a\" under \"top\"."));
    EXPECT_EQ(Data(), "top(a leaf)");
    EXPECT_TRUE(AllBelongTo(destination_->dataNodes, destination_));
    EXPECT_EQ(Left(), "top(last)");
    EXPECT_TRUE(AllBelongTo(source_->dataNodes, source_));
}

TEST_F(MergeNodes, WithATypeThatIsNowhereFailAsExtraNodesAtTheTop)
{
    AddLeaf(Below(source_, "a", {}), "leaf", "nowhere");
    Top(source_, {"b"});
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge extra node list \"a\"."));
    EXPECT_EQ(Data(), "a(leaf)");
    EXPECT_EQ(Left(), "b");
}

TEST_F(MergeNodes, WithATypeThatIsNowhereFailAsNodesOfAnotherName)
{
    Top(destination_, {"a"});
    AddLeaf(Below(source_, "b", {}), "leaf", "nowhere");
    Top(source_, {"c"});
    EXPECT_EQ(MergeTrees(), ZR_ERR_INVALID);
    EXPECT_THAT(Messages(), ElementsAre("Failed to merge node \"a\" with diff reason \"name\"."));
    EXPECT_EQ(Data(), "a b(leaf)");
    EXPECT_EQ(Left(), "c");
}

TEST_F(MergeNodes, NameTheReasons)
{
    EXPECT_STREQ(ZRS_NODE_GetDiffReasonName(0), "none");
    EXPECT_STREQ(ZRS_NODE_GetDiffReasonName(1), "extension");
    EXPECT_STREQ(ZRS_NODE_GetDiffReasonName(2), "name");
    EXPECT_STREQ(ZRS_NODE_GetDiffReasonName(3), "unknown");
    EXPECT_STREQ(ZRS_NODE_GetDiffReasonName(4), "other");
    EXPECT_STREQ(ZRS_NODE_GetDiffReasonName(5), "unknown");
    EXPECT_STREQ(ZRS_NODE_GetDiffReasonName(UINT32_MAX), "unknown");
}

TEST_F(MergeNodes, AreComparedByNameBeforeEverythingElse)
{
    Top(destination_, {"a", "b"});
    AddData(source_, ZR_NODE_LIST, "a");
    ZrNode *a = destination_->dataNodes;
    EXPECT_EQ(ZRS_NODE_CompareTwoTreeNodeSelfData(a, a), uint32_t{ZRS_DIFF_NONE});
    EXPECT_EQ(ZRS_NODE_CompareTwoTreeNodeSelfData(a->next, source_->dataNodes),
              uint32_t{ZRS_DIFF_NAME});
    EXPECT_EQ(ZRS_NODE_CompareTwoTreeNodeSelfData(a, source_->dataNodes), uint32_t{ZRS_DIFF_OTHER});
    ASSERT_EQ(AddInstance(a, "e"), ZR_OK);
    source_->dataNodes->kind = ZR_NODE_CONTAINER;
    EXPECT_EQ(ZRS_NODE_CompareTwoTreeNodeSelfData(a, source_->dataNodes), uint32_t{ZRS_DIFF_NONE});
    EXPECT_EQ(ZRS_NODE_CompareTwoTreeNodeSelfData(source_->dataNodes, a),
              uint32_t{ZRS_DIFF_EXTENSION});
}

TEST_F(MergeNodes, DifferInNothingWhenOneIsAnAugmentThatIsCoupled)
{
    Top(destination_, {"a"});
    Top(source_, {"a"});
    ZrNode *node = destination_->dataNodes;
    node->flags |= ZRS_FLAGS_COUPLING;
    EXPECT_EQ(ZRS_NODE_CompareTwoTreeNodeSelfData(node, source_->dataNodes),
              uint32_t{ZRS_DIFF_NONE});
    node->flags &= ~ZRS_FLAGS_COUPLING; // a coupled node would not be freed
}

TEST_F(MergeNodes, RefuseAReasonThatIsNone)
{
    Top(destination_, {"a"});
    Top(source_, {"b"});
    for (uint32_t reason : {3u, 4u, 5u})
        EXPECT_EQ(ZRS_NODE_MergeNodeListWithDiffReason(destination_->dataNodes, source_->dataNodes,
                                                       &source_->dataNodes, reason, destination_),
                  ZR_ERR_INVALID);
    EXPECT_EQ(Left(), "b");
}

TEST_F(MergeNodes, GiveExtensionInstancesOnlyToANodeWithout)
{
    Top(destination_, {"a"});
    Top(source_, {"a"});
    ZrNode *to = destination_->dataNodes;
    ZrNode *from = source_->dataNodes;
    EXPECT_EQ(ZRS_NODE_MergeDstNodeWithMimExtInst(nullptr, from), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_MergeDstNodeWithMimExtInst(to, nullptr), ZR_ERR_INVALID);
    ASSERT_EQ(AddInstance(from, "e"), ZR_OK);
    EXPECT_EQ(ZRS_NODE_MergeDstNodeWithMimExtInst(to, from), ZR_OK);
    EXPECT_EQ(ZRS_NODE_MergeDstNodeWithMimExtInst(to, from), ZR_ERR_INVALID);
    EXPECT_EQ(to->extInstCount, 1);
}

TEST_F(MergeNodes, TakeNullArguments)
{
    Top(destination_, {"a"});
    ZrNode *node = destination_->dataNodes;
    ZrNode **list = &destination_->dataNodes;
    EXPECT_EQ(ZRS_NODE_MergeTreeNodeFromRootStart(nullptr, list, nullptr, destination_),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CompareAndMergeNodeList(list, nullptr, nullptr, destination_),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CompareAndMergeNodeList(list, list, nullptr, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_MergeNodeListWithDiffReason(nullptr, node, list, 0, destination_),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_MergeNodeListToTgtWithTravType(nullptr, node, 0, destination_),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_MergeNodeListToTgtWithTravType(node, node, 2, destination_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_MoveExtraNodeList(nullptr, node, nullptr, destination_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_RefreshNodeTreeToZrMod(nullptr, destination_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_RefreshNodeTreeToZrMod(node, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CheckPostSiblingNodeUnique(nullptr, node), ZR_OK);
    EXPECT_EQ(ZRS_NODE_CheckPostSiblingNodeUnique(node, nullptr), ZR_OK);
    EXPECT_EQ(ZRS_NODE_CheckPostSiblingNodeUnique(node, node), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CompareTwoTreeNodeSelfData(nullptr, node), uint32_t{ZRS_DIFF_OTHER});
    ZRS_NODE_RecordNodeListMergeError(nullptr, node, nullptr, 0);
    ZRS_NODE_RecordNodeListMergeError(destination_, nullptr, nullptr, 0);
    ZRS_NODE_RecordExtraNodeListMergeError(nullptr, node, nullptr);
    ZRS_NODE_RecordExtraNodeListMergeError(destination_, nullptr, nullptr);
    EXPECT_EQ(Data(), "a");
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MergeTypes, ResolvesAddedTypedefsInTheDestinationInAnyOrder)
{
    AddTypedef(destination_, "base", "string");
    AddTypedef(source_, "first", "second"); // stands before what it is derived from
    AddTypedef(source_, "second", "base");
    EXPECT_EQ(ZRS_MOD_MergeTwoModuleInSameCtx(destination_, source_), ZR_OK);
    ASSERT_EQ(destination_->typedefCount, 3);
    EXPECT_EQ(Resolved(destination_->typedefs[1].realType), &destination_->typedefs[2].realType);
    EXPECT_EQ(Resolved(destination_->typedefs[2].realType), &destination_->typedefs[0].realType);
}

// The destination's typedefs move when one is added. Nothing may lead to where they were, neither
// in its typedefs nor in its nodes, also where an augment has put these into another module.
TEST_F(MergeTypes, LeavesNoReferenceToWhereTheTypedefsWere)
{
    AddTypedef(destination_, "base", "string");
    AddTypedef(destination_, "derived", "base");
    ZrNode *top = AddData(destination_, ZR_NODE_CONTAINER, "top");
    ZrNode *leaf = AddLeaf(top, "leaf", "derived");
    ZrNode *inRpc =
        AddLeaf(AddTop(destination_, destination_->rpcs, ZR_NODE_RPC, "call"), "arg", "derived");
    ZrMod *other = NewModule("other");
    ZrNode *target = AddData(other, ZR_NODE_CONTAINER, "target");
    ZrNode *augment =
        AddTop(destination_, destination_->augments, ZR_NODE_AUGMENT, "/other:target");
    ZrNode *added = AddLeaf(augment, "added", "derived");
    ASSERT_EQ(ZRS_NODE_CoupleAugmentNodeAndTargetNode(augment, target), ZR_OK);
    augment->flags |= ZRS_FLAG_COUPLED;
    AddChild(target, ZR_NODE_LEAF, "after");
    ZrNode *leafs[] = {leaf, inRpc, added};
    for (uint32_t i = 0; i < 2; ++i)
        ASSERT_EQ(
            ZRT_TYPE_UpdateRealTypeDerivedFrom(&destination_->typedefs[i].realType, destination_),
            ZR_OK);
    for (ZrNode *node : leafs)
        ASSERT_EQ(ZRT_TYPE_UpdateRealTypeDerivedFrom(TypeOf(node), destination_), ZR_OK);

    AddTypedef(source_, "more", "string");
    ASSERT_EQ(ZRS_MOD_MergeNonNodeMemberTypeDef(destination_, source_), ZR_OK);
    EXPECT_EQ(Resolved(destination_->typedefs[1].realType), nullptr);
    for (ZrNode *node : leafs) {
        EXPECT_EQ(Resolved(*TypeOf(node)), nullptr) << node->name;
        // looked up by name, the value is still accepted
        EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "x"), ZR_OK) << node->name;
    }
}

TEST_F(MergeTypes, ForgetsTheTypedefsOfUnionMembersToo)
{
    AddTypedef(destination_, "base", "string");
    ZrtRealType type = UnionOf(destination_, {"base", "base"});
    ASSERT_EQ(ZRT_TYPE_UpdateRealTypeDerivedFrom(&type, destination_), ZR_OK);
    auto *members =
        static_cast<ZrtConsUnion *>(ZRT_TYPE_GetTypeConsDataByConsType(&type, ZRT_CONS_UNION));
    EXPECT_EQ(Resolved(members->items[1]), &destination_->typedefs[0].realType);
    zr::ForgetResolved(&type);
    EXPECT_EQ(Resolved(members->items[0]), nullptr);
    EXPECT_EQ(Resolved(members->items[1]), nullptr);
    EXPECT_EQ(zr::ResolveAgain(&type, destination_), ZR_OK);
    EXPECT_EQ(Resolved(members->items[1]), &destination_->typedefs[0].realType);
    zr::ForgetResolved(nullptr);
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx_, &type);
}

} // namespace
