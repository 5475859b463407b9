#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"
#include "support/context.h"
#include "types/real_type.h"

namespace {

uint32_t AppendNode(ZrNode *node, uint32_t arrival, void *userData)
{
    auto *text = static_cast<std::string *>(userData);
    if (arrival == ZR_ARRIVAL_PARENT)
        *text += ")";
    else
        *text += std::string(arrival == ZR_ARRIVAL_CHILD ? "(" : " ") + node->name + "/" +
                 std::to_string(node->kind);
    return 0;
}

// "name/kind(children...)" for a whole subtree.
std::string Describe(ZrNode *root)
{
    std::string text;
    ZR_NODE_TreeScanAllNode(root, AppendNode, &text);
    return text;
}

class NodeCopy : public zrtest::RecordTest {
protected:
    NodeCopy() : source_(NewModule("source")), target_(NewModule("target")) {}

    // A list with a key, a leaf-list, and a choice with a case.
    ZrNode *NewTree()
    {
        ZrNode *list = AddData(source_, ZR_NODE_LIST, "list");
        list->keyCount = 1;
        ZrNode *key = AddChild(list, ZR_NODE_LEAF, "key");
        static_cast<ZrsLeafInfo *>(key->info)->realType.baseType = ZRT_TYPE_STRING;
        ZrNode *many = AddChild(list, ZR_NODE_LEAF_LIST, "many");
        auto *info = static_cast<ZrsLeafListInfo *>(many->info);
        info->realType.baseType = ZRT_TYPE_INT8;
        info->units = ZR_DICT_Insert(dict_, "units");
        const char *const defaults[] = {"one", "two"};
        EXPECT_EQ(ZRS_NODE_AppendLeaflistDefaults(dict_, info, defaults, 2), ZR_OK);
        ZrNode *choice = AddChild(list, ZR_NODE_CHOICE, "choice");
        static_cast<ZrsChoiceInfo *>(choice->info)->defaultCase = ZR_DICT_Insert(dict_, "case");
        AddChild(AddChild(choice, ZR_NODE_CASE, "case"), ZR_NODE_ANYDATA, "any");
        return list;
    }

    ZrMod *source_;
    ZrMod *target_;
};

TEST_F(NodeCopy, CopiesWhatDescribesTheNodeAndNothingOfItsPlace)
{
    ZrNode *list = NewTree();
    list->description = ZR_DICT_Insert(dict_, "text");
    list->when = ZR_DICT_Insert(dict_, "../x");
    list->flags = ZRS_FLAG_ORDERED_BY_USER | ZRS_FLAG_CONFIG_FALSE;
    ZR_NODE_SetPrivate(list, this);
    ASSERT_EQ(ZR_NODE_AppendExtInst(list, "n", "ext", "argument"), ZR_OK);
    ASSERT_EQ(ZRS_NODE_AppendOneIfFeat(dict_, &list->ifFeatures, &list->ifFeatureCount, "m", "f"),
              ZR_OK);
    ZrsMust must = {"a", nullptr, nullptr};
    ASSERT_EQ(ZRS_NODE_AppendOneMust(dict_, &list->musts, &list->mustCount, &must), ZR_OK);

    ZrNode *copy = ZRS_NODE_CopyOneNodeToModule(list, target_);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->module, target_);
    EXPECT_EQ(copy->kind, ZR_NODE_LIST);
    EXPECT_STREQ(copy->name, "list");
    EXPECT_STREQ(copy->description, "text");
    EXPECT_EQ(copy->keyCount, 1);
    ASSERT_EQ(copy->extInstCount, 1);
    EXPECT_NE(copy->extInsts, list->extInsts);
    EXPECT_STREQ(copy->extInsts[0].argument, "argument");
    EXPECT_EQ(copy->flags, 0u);
    EXPECT_EQ(copy->when, nullptr);
    EXPECT_EQ(copy->ifFeatures, nullptr);
    EXPECT_EQ(copy->ifFeatureCount, 0);
    EXPECT_EQ(copy->musts, nullptr);
    EXPECT_EQ(copy->mustCount, 0);
    EXPECT_EQ(copy->privateData, nullptr);
    EXPECT_EQ(copy->parent, nullptr);
    EXPECT_EQ(copy->firstChild, nullptr);
    EXPECT_EQ(copy->next, nullptr);
    ZRS_NODE_Free(copy);
}

TEST_F(NodeCopy, OnlyAListHasAKeyCountToCopy)
{
    ZrNode *leaf = AddData(source_, ZR_NODE_CONTAINER, "a");
    leaf->keyCount = 3;
    ZrNode *copy = ZRS_NODE_CopyOneNodeToModule(leaf, target_);
    EXPECT_EQ(copy->keyCount, 0);
    ZRS_NODE_Free(copy);
}

TEST_F(NodeCopy, CopiesLeafInformationDeeply)
{
    ZrNode *leaf = AddData(source_, ZR_NODE_LEAF, "leaf");
    auto *info = static_cast<ZrsLeafInfo *>(leaf->info);
    info->realType.baseType = ZRT_TYPE_UINT16;
    info->defaultValue = ZR_DICT_Insert(dict_, "5");
    info->units = ZR_DICT_Insert(dict_, "meters");
    ZrNode *copy = ZRS_NODE_CopyOneNodeToModule(leaf, target_);
    ZRS_NODE_Unlink(leaf);
    ZRS_NODE_Free(leaf);
    const auto *copied = static_cast<const ZrsLeafInfo *>(copy->info);
    EXPECT_EQ(copied->realType.baseType, ZRT_TYPE_UINT16);
    EXPECT_STREQ(copied->defaultValue, "5");
    EXPECT_STREQ(copied->units, "meters");
    ZRS_NODE_Free(copy);
}

TEST_F(NodeCopy, CopiesLeafListAndChoiceInformation)
{
    ZrNode *tree = NewTree();
    ZrNode *many = ZRS_NODE_FindChildNodeByName(tree, nullptr, "many");
    ZrNode *copy = ZRS_NODE_CopyOneNodeToModule(many, target_);
    const auto *info = static_cast<const ZrsLeafListInfo *>(copy->info);
    ASSERT_EQ(info->defaultCount, 2);
    EXPECT_STREQ(info->defaults[0], "one");
    EXPECT_STREQ(info->defaults[1], "two");
    EXPECT_STREQ(info->units, "units");
    EXPECT_EQ(info->realType.baseType, ZRT_TYPE_INT8);
    ZRS_NODE_Free(copy);
    ZrNode *choice = ZRS_NODE_FindChildNodeByName(tree, nullptr, "choice");
    copy = ZRS_NODE_CopyOneNodeToModule(choice, target_);
    EXPECT_STREQ(static_cast<const ZrsChoiceInfo *>(copy->info)->defaultCase, "case");
    ZRS_NODE_Free(copy);
}

TEST_F(NodeCopy, CopiesASubtreeWithItsShape)
{
    ZrNode *tree = NewTree();
    ZrNode *copy = ZRS_NODE_CopyNodeTreeToModule(tree, target_);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Describe(copy), " list/4(key/2 many/3 choice/5(case/6(any/7)))");
    EXPECT_EQ(Describe(copy), Describe(tree));
    EXPECT_EQ(copy->lastChild->firstChild->firstChild->module, target_);
    EXPECT_EQ(copy->lastChild->parent, copy);
    ZRS_NODE_Free(copy);
}

TEST_F(NodeCopy, WithoutMemoryThereIsNoCopyAndNothingIsLeft)
{
    ZrNode *tree = NewTree();
    ASSERT_EQ(ZR_NODE_AppendExtInst(tree, "n", "ext", "argument"), ZR_OK);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrNode *copy = memory.Run([&] { return ZRS_NODE_CopyNodeTreeToModule(tree, target_); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        ZRS_NODE_Free(copy);
    });
}

TEST_F(NodeCopy, IntoAnotherContextIsWholeOrNothing)
{
    ZrNode *tree = NewTree();
    tree->description = ZR_DICT_Insert(dict_, "text");
    auto *key = static_cast<ZrsLeafInfo *>(tree->firstChild->info);
    key->defaultValue = ZR_DICT_Insert(dict_, "5");
    key->units = ZR_DICT_Insert(dict_, "meters");
    zrtest::TestContext other;
    ZrMod *target = zr::NewModule(other);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        ZrNode *copy = memory.Run([&] { return ZRS_NODE_CopyNodeTreeToModule(tree, target); });
        ASSERT_EQ(copy == nullptr, memory.Failed());
        if (copy != nullptr) {
            EXPECT_EQ(Describe(copy), Describe(tree));
            EXPECT_STREQ(copy->description, "text");
        }
        ZRS_NODE_Free(copy);
    });
    ZRS_MOD_Free(target);
}

TEST_F(NodeCopy, NeedsASourceAndATargetWithAContext)
{
    ZrNode *node = AddData(source_, ZR_NODE_CONTAINER, "a");
    EXPECT_EQ(ZRS_NODE_CopyOneNodeToModule(nullptr, target_), nullptr);
    EXPECT_EQ(ZRS_NODE_CopyOneNodeToModule(node, nullptr), nullptr);
    EXPECT_EQ(ZRS_NODE_CopyNodeTreeToModule(nullptr, target_), nullptr);
    EXPECT_EQ(ZRS_NODE_CopyNodeTreeToModule(node, nullptr), nullptr);
    target_->ctx = nullptr;
    EXPECT_EQ(ZRS_NODE_CopyOneNodeToModule(node, target_), nullptr);
    target_->ctx = ctx_;
}

TEST_F(NodeCopy, InformationIsCopiedBetweenNodesOfOneKindOnly)
{
    ZrNode *leaf = AddData(source_, ZR_NODE_LEAF, "leaf");
    ZrNode *choice = AddData(target_, ZR_NODE_CHOICE, "choice");
    ZrNode *box = AddData(target_, ZR_NODE_CONTAINER, "box");
    EXPECT_EQ(ZRS_NODE_CopySchemaByType(choice, leaf), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CopySchemaByType(nullptr, leaf), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CopySchemaByType(leaf, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CopySchemaByType(box, box), ZR_OK); // nothing to copy
}

TEST_F(NodeCopy, InformationIsNotCopiedFromOrIntoANodeWithoutAny)
{
    ZrNode *leaf = AddData(source_, ZR_NODE_LEAF, "leaf");
    ZrNode bare = {};
    bare.kind = ZR_NODE_LEAF;
    bare.module = source_;
    EXPECT_EQ(ZRS_NODE_CopySchemaByType(leaf, &bare), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CopySchemaByType(&bare, leaf), ZR_ERR_INVALID);
}

TEST(NodeCopyOfTypes, ATypedefIsLookedForInTheModuleOfTheCopy)
{
    zrtest::TestContext ctx;
    const char *body = R"(
      <typedef name="t"><type name="int8"/></typedef>
      <leaf name="leaf"><type name="t"/></leaf>)";

    ASSERT_EQ(ctx.LoadBody("a", body), ZR_OK);
    ZrMod *module = ctx.Module("a");
    ZrNode *leaf = module->dataNodes;
    ZrNode *copy = ZRS_NODE_CopyOneNodeToModule(leaf, module);
    ASSERT_NE(copy, nullptr);
    const ZrtConsDerived *derived = ZRT_TYPE_GetTypeConsDataDerived(ZR_NODE_GetRealType(copy));
    ASSERT_NE(derived, nullptr);
    EXPECT_STREQ(derived->typedefName, "t");
    EXPECT_EQ(derived->resolved, ZR_MOD_GetRealTypeByTypDefName(module, "t"));
    EXPECT_EQ(ZR_NODE_ValidateValue(copy, ZR_VALUE_STRING, "127"), ZR_OK);
    ZRS_NODE_Free(copy);
}

} // namespace
