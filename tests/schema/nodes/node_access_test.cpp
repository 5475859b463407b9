#include "schema/lookup/lookup.h"
#include "schema/members/condition_records.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class NodeAccess : public zrtest::RecordTest {
protected:
    NodeAccess() : module_(NewModule("m")), top_(AddData(module_, ZR_NODE_CONTAINER, "top")) {}

    void Require(ZrNode *node, const char *moduleName, const char *feature)
    {
        ASSERT_EQ(ZRS_NODE_AppendOneIfFeat(dict_, &node->ifFeatures, &node->ifFeatureCount,
                                           moduleName, feature),
                  ZR_OK);
    }

    ZrMod *module_;
    ZrNode *top_;
};

TEST_F(NodeAccess, ANullNodeYieldsNothing)
{
    EXPECT_EQ(ZR_NODE_GetNodeName(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetDescription(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetWhenCond(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetModule(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetNodeType(nullptr), ZR_NODE_UNKNOWN);
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(nullptr), 0u);
    EXPECT_EQ(ZR_NODE_GetPrivate(nullptr), nullptr);
    ZR_NODE_SetPrivate(nullptr, top_);
    EXPECT_EQ(ZR_NODE_GetParentNode(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetNonChoiceCaseParent(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetAugmentTargetNode(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetRealType(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetDefaultValueStr(nullptr), nullptr);
    EXPECT_EQ(ZR_NODE_GetUnitsValueStr(nullptr), nullptr);
    for (auto *predicate :
         {ZR_NODE_IsKey, ZR_NODE_IsRwConfig, ZR_NODE_IsMandatory, ZR_NODE_IsOrderedByNode,
          ZR_NODE_IsPresenceContainer, ZR_NODE_IsDeprecatedNode, ZR_NODE_IsObsoleteNode,
          ZR_NODE_IsNacmDefaultDenyAll, ZR_NODE_IsNacmDefaultDenyWrite, ZR_NODE_IsEnabled})
        EXPECT_EQ(predicate(nullptr), 0u);
}

TEST_F(NodeAccess, FieldsAreReturned)
{
    top_->description = ZR_DICT_Insert(dict_, "text");
    top_->when = ZR_DICT_Insert(dict_, "../x");
    top_->keyCount = 3;
    EXPECT_STREQ(ZR_NODE_GetNodeName(top_), "top");
    EXPECT_STREQ(ZR_NODE_GetDescription(top_), "text");
    EXPECT_STREQ(ZR_NODE_GetWhenCond(top_), "../x");
    EXPECT_EQ(ZR_NODE_GetModule(top_), module_);
    EXPECT_EQ(ZR_NODE_GetNodeType(top_), ZR_NODE_CONTAINER);
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(top_), 3u);
    EXPECT_EQ(ZR_NODE_GetPrivate(top_), nullptr);
    ZR_NODE_SetPrivate(top_, module_);
    EXPECT_EQ(ZR_NODE_GetPrivate(top_), module_);
}

TEST_F(NodeAccess, TheParentOfANodeInAnAugmentIsTheTargetOnceCoupled)
{
    ZrNode *augment = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/m:top");
    ZrNode *leaf = AddChild(augment, ZR_NODE_LEAF, "leaf");
    EXPECT_EQ(ZR_NODE_GetParentNode(leaf), nullptr);
    augment->firstChild = augment->lastChild = nullptr;
    ZRS_NODE_AddChild(top_, leaf);
    EXPECT_EQ(ZR_NODE_GetParentNode(leaf), top_);
    EXPECT_EQ(ZR_NODE_GetParentNode(top_), nullptr);
}

TEST_F(NodeAccess, ChoicesAndCasesAreNoParentsForData)
{
    ZrNode *choice = AddChild(top_, ZR_NODE_CHOICE, "choice");
    ZrNode *first = AddChild(choice, ZR_NODE_CASE, "first");
    ZrNode *leaf = AddChild(first, ZR_NODE_LEAF, "leaf");
    EXPECT_EQ(ZR_NODE_GetNonChoiceCaseParent(leaf), top_);
    EXPECT_EQ(ZR_NODE_GetNonChoiceCaseParent(first), top_);
    EXPECT_EQ(ZR_NODE_GetNonChoiceCaseParent(choice), top_);
    EXPECT_EQ(ZR_NODE_GetNonChoiceCaseParent(top_), nullptr);
    EXPECT_EQ(ZR_NODE_GetParentNode(leaf), first);
}

TEST_F(NodeAccess, AnRpcsInputIsAParent)
{
    ZrNode *rpc = AddTop(module_, module_->rpcs, ZR_NODE_RPC, "rpc");
    ZrNode *input = AddChild(rpc, ZR_NODE_INPUT, "input");
    ZrNode *leaf = AddChild(input, ZR_NODE_LEAF, "leaf");
    EXPECT_EQ(ZR_NODE_GetNonChoiceCaseParent(leaf), input);
    EXPECT_EQ(ZR_NODE_GetParentNode(leaf), input);
}

TEST_F(NodeAccess, AnAugmentKnowsItsTarget)
{
    ZrNode *augment = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/m:top");
    ZrNode *lost = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/n:top");
    EXPECT_EQ(ZR_NODE_GetAugmentTargetNode(augment), top_);
    EXPECT_EQ(ZR_NODE_GetAugmentTargetNode(lost), nullptr);
    EXPECT_EQ(ZR_NODE_GetAugmentTargetNode(top_), nullptr);
    augment->module = nullptr;
    EXPECT_EQ(ZR_NODE_GetAugmentTargetNode(augment), nullptr);
    augment->module = module_;
}

TEST_F(NodeAccess, AKeyIsAMarkedLeafDirectlyBelowAList)
{
    ZrNode *list = AddChild(top_, ZR_NODE_LIST, "list");
    ZrNode *key = AddChild(list, ZR_NODE_LEAF, "key");
    ZrNode *plain = AddChild(list, ZR_NODE_LEAF, "plain");
    ZrNode *many = AddChild(list, ZR_NODE_LEAF_LIST, "many");
    ZrNode *outside = AddChild(top_, ZR_NODE_LEAF, "outside");
    ZrNode *alone = AddData(module_, ZR_NODE_LEAF, "alone");
    for (ZrNode *node : {key, many, outside, alone})
        node->flags |= ZRS_FLAG_KEY;
    EXPECT_EQ(ZR_NODE_IsKey(key), 1u);
    for (ZrNode *node : {plain, many, outside, alone, list})
        EXPECT_EQ(ZR_NODE_IsKey(node), 0u) << node->name;
}

TEST_F(NodeAccess, ConfigDefaultsToTrue)
{
    EXPECT_EQ(ZR_NODE_IsRwConfig(top_), 1u);
    top_->flags = ZRS_FLAG_CONFIG_TRUE;
    EXPECT_EQ(ZR_NODE_IsRwConfig(top_), 1u);
    top_->flags = ZRS_FLAG_CONFIG_FALSE;
    EXPECT_EQ(ZR_NODE_IsRwConfig(top_), 0u);
    top_->flags = ZRS_FLAGS_CONFIG;
    EXPECT_EQ(ZR_NODE_IsRwConfig(top_), 1u);
}

struct FlagCase {
    uint32_t (*predicate)(const ZrNode *node);
    uint32_t flag;
};

const FlagCase kFlags[] = {
    {ZR_NODE_IsMandatory, 0x10},
    {ZR_NODE_IsOrderedByNode, 0x80},
    {ZR_NODE_IsPresenceContainer, 0x800},
    {ZR_NODE_IsDeprecatedNode, 0x200},
    {ZR_NODE_IsObsoleteNode, 0x400},
    {ZR_NODE_IsNacmDefaultDenyAll, 0x2000},
    {ZR_NODE_IsNacmDefaultDenyWrite, 0x1000},
};

TEST_F(NodeAccess, EveryPredicateReadsItsOwnFlag)
{
    for (const FlagCase &row : kFlags) {
        SCOPED_TRACE(row.flag);
        top_->flags = row.flag;
        EXPECT_EQ(row.predicate(top_), 1u);
        top_->flags = ~row.flag;
        EXPECT_EQ(row.predicate(top_), 0u);
    }
    top_->flags = 0; // the coupled flag would keep the node from being freed
}

TEST_F(NodeAccess, OnlyAContainerHasPresence)
{
    ZrNode *list = AddChild(top_, ZR_NODE_LIST, "list");
    list->flags = ZRS_FLAG_PRESENCE;
    EXPECT_EQ(ZR_NODE_IsPresenceContainer(list), 0u);
}

TEST_F(NodeAccess, ANodeIsEnabledWithoutIfFeaturesAndWhenAllItsFeaturesAreOn)
{
    ASSERT_EQ(ZRS_MOD_AppendOneFeature(module_, "one"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneFeature(module_, "two"), ZR_OK);
    EXPECT_EQ(ZR_NODE_IsEnabled(top_), 1u);
    Require(top_, "m", "one");
    Require(top_, "m", "two");
    EXPECT_EQ(ZR_NODE_IsEnabled(top_), 0u);
    ASSERT_EQ(ZR_MOD_EnableFeature(module_, "one"), ZR_OK);
    EXPECT_EQ(ZR_NODE_IsEnabled(top_), 0u);
    ASSERT_EQ(ZR_MOD_EnableFeature(module_, "two"), ZR_OK);
    EXPECT_EQ(ZR_NODE_IsEnabled(top_), 1u);
    ASSERT_EQ(ZR_MOD_DisableFeature(module_, "one"), ZR_OK);
    EXPECT_EQ(ZR_NODE_IsEnabled(top_), 0u);
}

TEST_F(NodeAccess, AnUnknownFeatureOrModuleDisablesTheNode)
{
    Require(top_, "m", "unknown");
    EXPECT_EQ(ZR_NODE_IsEnabled(top_), 0u);
    ZrNode *other = AddChild(top_, ZR_NODE_LEAF, "other");
    EXPECT_EQ(ZR_NODE_IsEnabled(other), 1u); // ancestors do not count
    Require(other, "unknown", "one");
    EXPECT_EQ(ZR_NODE_IsEnabled(other), 0u);
}

TEST_F(NodeAccess, ANodeWithoutModuleIsNotEnabled)
{
    top_->module = nullptr;
    EXPECT_EQ(ZR_NODE_IsEnabled(top_), 0u);
    top_->module = module_;
}

TEST_F(NodeAccess, WithoutAContextAFeatureCannotBeOn)
{
    Require(top_, "m", "one");
    module_->ctx = nullptr;
    EXPECT_EQ(ZR_NODE_IsEnabled(top_), 0u);
    module_->ctx = ctx_;
}

} // namespace
