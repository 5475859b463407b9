// SPDX-License-Identifier: Apache-2.0
#include "schema/lookup/lookup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zrschema/node.h>

#include "platform/memory.h"
#include "schema/augment/augment.h"
#include "schema/members/condition_records.h"
#include "schema/members/members.h"
#include "schema/nodes/node.h"
#include "schema/record_fixture.h"
#include "support/context.h"

namespace {

using testing::ElementsAre;
using zrtest::TestContext;
using Texts = std::vector<std::string>;

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

std::string OrDash(const char *text)
{
    return text != nullptr ? text : "-";
}

uint32_t CollectMust(const char *condition, const char *message, const char *appTag, void *out)
{
    static_cast<Texts *>(out)->push_back(OrDash(condition) + "|" + OrDash(message) + "|" +
                                         OrDash(appTag));
    return 0;
}

uint32_t CollectIfFeature(const char *moduleName, const char *featureName, void *out)
{
    static_cast<Texts *>(out)->push_back(std::string(moduleName) + ":" + featureName);
    return 0;
}

uint32_t CollectText(const char *text, void *out)
{
    static_cast<Texts *>(out)->emplace_back(text);
    return 0;
}

uint32_t Stop(const char *, void *)
{
    return 7;
}

class NodeLists : public testing::Test {
protected:
    NodeLists()
    {
        ctx.LoadBody("m", R"(
            <feature name="f"/><feature name="g"/>
            <container name="c">
              <must condition="a"><error-message><value>why</value></error-message></must>
              <must condition="b"><error-app-tag value="tag"/></must>
              <leaf name="l"><if-feature name="f"/><if-feature name="m:g"/>
                <type name="string"/><default value="x"/></leaf>
              <leaf name="plain"><type name="string"/></leaf>
              <leaf-list name="ll"><type name="string"/><default value="1"/><default value="2"/>
              </leaf-list>
              <choice name="ch"><default value="k"/><case name="k"/></choice>
            </container>)");
    }
    Texts Defaults(const char *path)
    {
        Texts texts;
        EXPECT_EQ(ZR_NODE_ScanAllDefaults(ctx.Node(path), CollectText, &texts), ZR_OK);
        return texts;
    }
    TestContext ctx;
};

TEST_F(NodeLists, MustsAreScannedInTheirOrder)
{
    Texts texts;
    EXPECT_EQ(ZR_NODE_ScanAllMusts(ctx.Node("/m:c"), CollectMust, &texts), ZR_OK);
    EXPECT_THAT(texts, ElementsAre("a|why|-", "b|-|tag"));
    EXPECT_EQ(ZR_NODE_ScanAllMusts(nullptr, CollectMust, &texts), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllMusts(ctx.Node("/m:c"), nullptr, &texts), ZR_ERR_INVALID);
}

TEST_F(NodeLists, IfFeaturesAreScannedWithTheirModules)
{
    Texts texts;
    EXPECT_EQ(ZR_NODE_ScanAllIfFeatures(ctx.Node("/m:c/l"), CollectIfFeature, &texts), ZR_OK);
    EXPECT_THAT(texts, ElementsAre("m:f", "m:g"));
    EXPECT_EQ(ZR_NODE_ScanAllIfFeatures(nullptr, CollectIfFeature, &texts), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllIfFeatures(ctx.Node("/m:c/l"), nullptr, &texts), ZR_ERR_INVALID);
}

TEST_F(NodeLists, DefaultsOfLeafLeafListAndChoiceAreScanned)
{
    EXPECT_THAT(Defaults("/m:c/l"), ElementsAre("x"));
    EXPECT_THAT(Defaults("/m:c/ll"), ElementsAre("1", "2"));
    EXPECT_THAT(Defaults("/m:c/ch"), ElementsAre("k"));
    EXPECT_THAT(Defaults("/m:c/plain"), ElementsAre());
    EXPECT_THAT(Defaults("/m:c"), ElementsAre());
    EXPECT_EQ(ZR_NODE_ScanAllDefaults(nullptr, CollectText, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllDefaults(ctx.Node("/m:c/l"), nullptr, nullptr), ZR_ERR_INVALID);
}

TEST_F(NodeLists, AScanStopsAtTheFirstResultThatIsNotZero)
{
    EXPECT_EQ(ZR_NODE_ScanAllDefaults(ctx.Node("/m:c/ll"), Stop, nullptr), 7u);
}

TEST_F(NodeLists, ThePathOfANodeFitsOrIsRefused)
{
    char path[64];
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c/ch/k"), path, sizeof(path)), ZR_OK);
    EXPECT_STREQ(path, "/m:c/ch/k");
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c/ch/k"), path, 10), ZR_OK) << "with its NUL";
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c/ch/k"), path, 9), ZR_ERR_NO_MEMORY);
    EXPECT_STREQ(path, "");
    EXPECT_EQ(ZR_NODE_GetNodePath(nullptr, path, sizeof(path)), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c"), nullptr, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c"), path, 0), ZR_ERR_INVALID);
}

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
