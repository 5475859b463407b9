// SPDX-License-Identifier: Apache-2.0
#include "loader/statements/statements.h"

#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"
#include "support/context.h"
#include "types/real_type.h"

namespace {

class NodeCreate : public zrtest::RecordTest {};

TEST_F(NodeCreate, EveryKindHasItsStatementAndInformation)
{
    ZrMod *module = NewModule("m");
    for (uint32_t kind = ZR_NODE_CONTAINER; kind <= ZR_NODE_AUGMENT; ++kind) {
        SCOPED_TRACE(ZR_GetNodeKindName(kind));
        EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(ZRS_NODE_GetStmtByNodeType(kind)),
                     ZR_GetNodeKindName(kind));
        ZrNode *node = ZRS_NODE_New(kind);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->kind, kind);
        EXPECT_EQ(node->flags, 0u);
        EXPECT_EQ(node->parent, nullptr);
        EXPECT_EQ(node->name, nullptr);
        bool hasInformation =
            kind == ZR_NODE_LEAF || kind == ZR_NODE_LEAF_LIST || kind == ZR_NODE_CHOICE;
        EXPECT_EQ(node->info != nullptr, hasInformation);
        node->module = module;
        ZRS_NODE_Free(node);
    }
}

TEST_F(NodeCreate, InformationStartsZeroed)
{
    ZrMod *module = NewModule("m");
    ZrNode *leaf = NewNode(module, ZR_NODE_LEAF, "a");
    auto *info = static_cast<ZrsLeafInfo *>(leaf->info);
    EXPECT_EQ(info->realType.baseType, ZRT_TYPE_DERIVED);
    EXPECT_EQ(info->realType.consCount, 0u);
    EXPECT_EQ(info->realType.constraints, nullptr);
    EXPECT_EQ(info->defaultValue, nullptr);
    EXPECT_EQ(info->units, nullptr);
    ZRS_NODE_Free(leaf);
}

TEST_F(NodeCreate, KindsAboveFourteenAreRefused)
{
    for (uint32_t kind : {15u, 16u, UINT32_MAX}) {
        EXPECT_EQ(ZRS_NODE_New(kind), nullptr);
        EXPECT_EQ(ZRS_NODE_GetInfoSize(kind), 0u);
        EXPECT_EQ(ZRS_NODE_GetStmtByNodeType(kind), ZRS_STMT_UNKNOWN);
    }
}

TEST_F(NodeCreate, WithoutMemoryForTheInformationThereIsNoNode)
{
    ZrMod *module = NewModule("m");
    for (uint32_t kind : {ZR_NODE_CONTAINER, ZR_NODE_LEAF, ZR_NODE_LEAF_LIST, ZR_NODE_CHOICE}) {
        FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
            ZrNode *node = memory.Run([&] { return ZRS_NODE_New(kind); });
            EXPECT_EQ(node == nullptr, memory.Failed());
            if (node != nullptr) {
                node->module = module;
                ZRS_NODE_Free(node);
            }
        });
    }
}

// The fixture counts the blocks that are left after each test.
TEST_F(NodeCreate, FreeReleasesEverythingThatTheNodeOwns)
{
    ZrMod *module = NewModule("m");
    ZrNode *list = NewNode(module, ZR_NODE_LIST, "list");
    list->description = ZR_DICT_Insert(dict_, "about the list");
    list->when = ZR_DICT_Insert(dict_, "../x");
    ASSERT_EQ(
        ZRS_NODE_AppendOneIfFeat(dict_, &list->ifFeatures, &list->ifFeatureCount, "m", "feature"),
        ZR_OK);
    ZrsMust must = {"a = 1", "message", "tag"};
    ASSERT_EQ(ZRS_NODE_AppendOneMust(dict_, &list->musts, &list->mustCount, &must), ZR_OK);
    ASSERT_EQ(ZR_NODE_AppendExtInst(list, "m", "ext", "argument"), ZR_OK);
    ZrNode *leaf = AddChild(list, ZR_NODE_LEAF, "leaf");
    auto *leafInfo = static_cast<ZrsLeafInfo *>(leaf->info);
    leafInfo->realType.baseType = ZRT_TYPE_STRING;
    leafInfo->defaultValue = ZR_DICT_Insert(dict_, "1");
    leafInfo->units = ZR_DICT_Insert(dict_, "seconds");
    ZrNode *leafList = AddChild(list, ZR_NODE_LEAF_LIST, "leaf-list");
    const char *const defaults[] = {"x", "y", "x"};
    auto *leafListInfo = static_cast<ZrsLeafListInfo *>(leafList->info);
    ASSERT_EQ(ZRS_NODE_AppendLeaflistDefaults(dict_, leafListInfo, defaults, 3), ZR_OK);
    leafListInfo->units = ZR_DICT_Insert(dict_, "meters");
    ZrNode *choice = AddChild(list, ZR_NODE_CHOICE, "choice");
    static_cast<ZrsChoiceInfo *>(choice->info)->defaultCase = ZR_DICT_Insert(dict_, "case");
    AddChild(AddChild(choice, ZR_NODE_CASE, "case"), ZR_NODE_ANYXML, "anyxml");
    ZRS_NODE_Free(list);
}

TEST_F(NodeCreate, FreeLeavesNodesWithoutModuleOrContextAlone)
{
    ZRS_NODE_Free(nullptr);
    ZrMod *module = NewModule("m", false);
    ZrNode *node = NewNode(module, ZR_NODE_CONTAINER, "a");
    node->module = nullptr;
    ZRS_NODE_Free(node);
    EXPECT_STREQ(node->name, "a");
    node->module = module;
    module->ctx = nullptr;
    ZRS_NODE_Free(node);
    EXPECT_STREQ(node->name, "a");
    module->ctx = ctx_;
    ZRS_NODE_Free(node);
}

TEST_F(NodeCreate, FreeingACoupledAugmentDoesNothingUntilItIsUncoupled)
{
    ZrMod *module = NewModule("m");
    ZrNode *augment = NewNode(module, ZR_NODE_AUGMENT, "/m:top");
    AddChild(augment, ZR_NODE_LEAF, "a");
    augment->flags |= ZRS_FLAG_COUPLED;
    ZRS_NODE_Free(augment);
    EXPECT_STREQ(augment->name, "/m:top");
    EXPECT_STREQ(augment->firstChild->name, "a");
    augment->flags &= ~static_cast<uint32_t>(ZRS_FLAG_COUPLED);
    ZRS_NODE_Free(augment);
}

std::string g_freed; // filled by NoteFreed

void NoteFreed(ZrNode *node, void *privateData)
{
    EXPECT_EQ(ZR_NODE_GetPrivate(node), privateData);
    g_freed += std::string(node->name) + "=" + static_cast<const char *>(privateData) + " ";
}

TEST_F(NodeCreate, PrivateDataGoesToTheContextsCallbackParentsFirst)
{
    g_freed.clear();
    ZR_CTX_SetPridataFreeFunc(ctx_, NoteFreed);
    ZrMod *module = NewModule("m");
    ZrNode *top = NewNode(module, ZR_NODE_CONTAINER, "top");
    ZrNode *child = AddChild(top, ZR_NODE_CONTAINER, "child");
    AddChild(top, ZR_NODE_CONTAINER, "bare");
    char one[] = "one";
    char two[] = "two";
    ZR_NODE_SetPrivate(top, one);
    ZR_NODE_SetPrivate(child, two);
    ZRS_NODE_Free(top);
    EXPECT_EQ(g_freed, "top=one child=two ");
}

TEST_F(NodeCreate, DestroyingPrivateDataClearsThePointer)
{
    g_freed.clear();
    ZrMod *module = NewModule("m");
    ZrNode *node = NewNode(module, ZR_NODE_CONTAINER, "a");
    char data[] = "data";
    ZR_NODE_SetPrivate(node, data);
    ZRS_NODE_DestroyPrivateData(ctx_, node); // no callback is set
    EXPECT_EQ(node->privateData, nullptr);
    ZR_CTX_SetPridataFreeFunc(ctx_, NoteFreed);
    ZR_NODE_SetPrivate(node, data);
    ZRS_NODE_DestroyPrivateData(ctx_, node);
    ZRS_NODE_DestroyPrivateData(ctx_, node);
    EXPECT_EQ(node->privateData, nullptr);
    EXPECT_EQ(g_freed, "a=data ");
    ZRS_NODE_DestroyPrivateData(ctx_, nullptr);
    ZRS_NODE_Free(node);
}

TEST_F(NodeCreate, DestroyingTheInformationTwiceIsHarmless)
{
    ZrMod *module = NewModule("m");
    ZrNode *choice = NewNode(module, ZR_NODE_CHOICE, "a");
    static_cast<ZrsChoiceInfo *>(choice->info)->defaultCase = ZR_DICT_Insert(dict_, "b");
    ZRS_NODE_DestroySchemaInfo(choice);
    EXPECT_EQ(choice->info, nullptr);
    ZRS_NODE_DestroySchemaInfo(choice);
    ZRS_NODE_DestroySchemaInfo(nullptr);
    ZRS_NODE_Free(choice);
}

TEST_F(NodeCreate, FreesATreeTwoHundredAndFiftyLevelsDeep)
{
    ZrMod *module = NewModule("m");
    ZrNode *top = NewNode(module, ZR_NODE_CONTAINER, "a");
    ZrNode *node = top;
    for (int i = 0; i < 250; ++i)
        node = AddChild(node, ZR_NODE_CONTAINER, "a");
    ZRS_NODE_Free(top);
}

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
