#include "schema/merge/merge.h"

#include "schema/merge_fixture.h"

namespace {

using MergeTypes = zrtest::MergeTest;

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
