#include "loader/statements/statements.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/record_fixture.h"

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

} // namespace
