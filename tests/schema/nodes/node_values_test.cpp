// SPDX-License-Identifier: Apache-2.0
#include <libxml/parser.h>

#include "schema/record_fixture.h"
#include "support/context.h"
#include "types/real_type.h"

namespace {

using zrtest::TestContext;

const char *Text(const char *text)
{
    return text != nullptr ? text : "(none)";
}

constexpr const char *kTypes = R"(
  <typedef name="plain"><type name="int8"/></typedef>
  <typedef name="percent"><type name="plain"/><units name="percent"/><default value="50"/></typedef>
  <typedef name="share"><type name="percent"/></typedef>
  <container name="top">
    <leaf name="own"><type name="share"/><units name="own units"/><default value="1"/></leaf>
    <leaf name="inherited"><type name="share"/></leaf>
    <leaf name="needed"><type name="share"/><mandatory value="true"/></leaf>
    <leaf name="optional"><type name="share"/><mandatory value="false"/></leaf>
    <leaf name="bare"><type name="plain"/></leaf>
    <leaf name="built-in"><type name="string"/></leaf>
    <leaf-list name="many"><type name="share"/><default value="3"/></leaf-list>
    <leaf-list name="many-own"><type name="share"/><units name="list units"/></leaf-list>
    <leaf name="union"><type name="union"><type name="int8"/><type name="string"/></type></leaf>
  </container>)";

class NodeValues : public ::testing::Test {
protected:
    NodeValues() : ctx_(ZR_CTX_KEEP_UNITS)
    {
        EXPECT_EQ(ctx_.LoadBody("m", kTypes), ZR_OK) << ::testing::PrintToString(ctx_.Messages());
    }
    ZrNode *Node(const std::string &name) { return ctx_.Node(("/m:top/" + name).c_str()); }

    TestContext ctx_;
};

struct TextCase {
    const char *node;
    const char *defaultValue;
    const char *units;
};

const TextCase kTexts[] = {
    {"own", "1", "own units"},       {"inherited", "50", "percent"},
    {"needed", "(none)", "percent"}, {"optional", "50", "percent"},
    {"bare", "(none)", "(none)"},    {"built-in", "(none)", "(none)"},
    {"many", "(none)", "percent"},   {"many-own", "(none)", "list units"},
};

TEST_F(NodeValues, DefaultsAndUnitsComeFromTheNodeOrTheFirstTypedefThatHasThem)
{
    for (const TextCase &row : kTexts) {
        SCOPED_TRACE(row.node);
        ASSERT_NE(Node(row.node), nullptr);
        EXPECT_STREQ(Text(ZR_NODE_GetDefaultValueStr(Node(row.node))), row.defaultValue);
        EXPECT_STREQ(Text(ZR_NODE_GetUnitsValueStr(Node(row.node))), row.units);
    }
    ZrNode *top = ctx_.Node("/m:top");
    EXPECT_EQ(ZR_NODE_GetDefaultValueStr(top), nullptr);
    EXPECT_EQ(ZR_NODE_GetUnitsValueStr(top), nullptr);
}

TEST_F(NodeValues, WhatTheTypedefsSayCanBeAskedApartFromWhatTheNodeSays)
{
    for (const char *name : {"own", "inherited", "needed", "optional", "many", "many-own"}) {
        SCOPED_TRACE(name);
        EXPECT_STREQ(Text(ZR_NODE_GetTypedefDefaultStr(Node(name))), "50");
        EXPECT_STREQ(Text(ZR_NODE_GetTypedefUnitsStr(Node(name))), "percent");
    }
    for (const ZrNode *node : {Node("bare"), Node("built-in"), Node("union"), ctx_.Node("/m:top"),
                               static_cast<ZrNode *>(nullptr)}) {
        EXPECT_EQ(ZR_NODE_GetTypedefDefaultStr(node), nullptr);
        EXPECT_EQ(ZR_NODE_GetTypedefUnitsStr(node), nullptr);
    }
}

TEST_F(NodeValues, OnlyLeafsAndLeafListsHaveAType)
{
    ASSERT_NE(ZR_NODE_GetRealType(Node("built-in")), nullptr);
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(ZR_NODE_GetRealType(Node("built-in"))), ZRT_TYPE_STRING);
    EXPECT_EQ(ZRS_NODE_GetLeafSchemaRealType(Node("many")), ZR_NODE_GetRealType(Node("many")));
    EXPECT_NE(ZR_NODE_GetRealType(Node("many")), nullptr);
    EXPECT_EQ(ZR_NODE_GetRealType(ctx_.Node("/m:top")), nullptr);
    EXPECT_EQ(ZR_NODE_GetRealType(nullptr), nullptr);
}

uint32_t AppendName(const char *moduleName, const char *typedefName, const ZrtRealType *type,
                    void *userData)
{
    *static_cast<std::string *>(userData) += std::string(Text(moduleName)) + ":" +
                                             Text(typedefName) + "=" +
                                             std::to_string(ZR_TYPE_GetBuiltInBaseType(type)) + " ";
    return 0;
}

TEST_F(NodeValues, TheChainOfTypedefsCanBeScanned)
{
    std::string names;
    EXPECT_EQ(ZR_NODE_ScanDerivedType(Node("own"), AppendName, &names), ZR_OK);
    EXPECT_EQ(names, "m:share=0 m:percent=0 m:plain=9 ");
    names.clear();
    EXPECT_EQ(ZR_NODE_ScanDerivedType(Node("built-in"), AppendName, &names), ZR_OK);
    EXPECT_EQ(names, "(none):(none)=14 ");
}

TEST_F(NodeValues, AScanOfTypedefsNeedsATypeAndACallback)
{
    std::string names;
    EXPECT_EQ(ZR_NODE_ScanDerivedType(nullptr, AppendName, &names), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanDerivedType(ctx_.Node("/m:top"), AppendName, &names), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanDerivedType(Node("own"), nullptr, &names), ZR_ERR_INVALID);
    EXPECT_EQ(names, "");
}

TEST_F(NodeValues, AValueIsCheckedAsAString)
{
    EXPECT_EQ(ZR_NODE_ValidateValue(Node("own"), ZR_VALUE_STRING, "127"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(Node("own"), ZR_VALUE_STRING, "128"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(ZR_NODE_ValidateValue(Node("many"), ZR_VALUE_STRING, "x"), ZR_ERR_VALUE_RANGE);
}

TEST_F(NodeValues, AValueIsCheckedAsAnElement)
{
    xmlDocPtr doc = xmlParseDoc(reinterpret_cast<const xmlChar *>("<own>12</own>"));
    ASSERT_NE(doc, nullptr);
    xmlNodePtr root = xmlDocGetRootElement(doc);
    EXPECT_EQ(ZR_NODE_ValidateValue(Node("own"), ZR_VALUE_XML, root), ZR_OK);
    EXPECT_EQ(ZR_NODE_FindRealTypeMatchedValue(Node("built-in"), ZR_VALUE_XML, root),
              ZR_NODE_GetRealType(Node("built-in")));
    xmlFreeDoc(doc);
}

TEST_F(NodeValues, ACheckNeedsANodeWithAType)
{
    EXPECT_EQ(ZR_NODE_ValidateValue(nullptr, ZR_VALUE_STRING, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ValidateValue(ctx_.Node("/m:top"), ZR_VALUE_STRING, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_FindRealTypeMatchedValue(nullptr, ZR_VALUE_STRING, "1"), nullptr);
    ZrNode *leaf = Node("own");
    ZrMod *module = leaf->module;
    leaf->module = nullptr;
    EXPECT_EQ(ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanDerivedType(leaf, AppendName, nullptr), ZR_ERR_INVALID);
    leaf->module = module;
    module->ctx = nullptr;
    EXPECT_EQ(ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanDerivedType(leaf, AppendName, nullptr), ZR_ERR_INVALID);
    module->ctx = ctx_;
    EXPECT_EQ(ZR_NODE_FindRealTypeMatchedValue(ctx_.Node("/m:top"), ZR_VALUE_STRING, "1"), nullptr);
}

TEST_F(NodeValues, TheMatchedTypeIsTheMemberTheTypedefsTypeOrTheNodesOwn)
{
    const ZrtRealType *member =
        ZR_NODE_FindRealTypeMatchedValue(Node("union"), ZR_VALUE_STRING, "300");
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(member), ZRT_TYPE_STRING);
    member = ZR_NODE_FindRealTypeMatchedValue(Node("union"), ZR_VALUE_STRING, "3");
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(member), ZRT_TYPE_INT8);
    EXPECT_EQ(ZR_NODE_FindRealTypeMatchedValue(Node("built-in"), ZR_VALUE_STRING, "x"),
              ZR_NODE_GetRealType(Node("built-in")));
    EXPECT_EQ(ZR_NODE_FindRealTypeMatchedValue(Node("bare"), ZR_VALUE_STRING, "1"),
              ZR_MOD_GetRealTypeByTypDefName(ctx_.Module("m"), "plain"));
    EXPECT_EQ(ZR_NODE_FindRealTypeMatchedValue(Node("bare"), ZR_VALUE_STRING, "x"), nullptr);
}

TEST(NodeValueChains, DefaultsAreFoundAtTheEndOfAChainOf128TypedefsAndBeyondTheBoundNotAnyMore)
{
    // t0 is the last link, which has the default; leaf "cN" starts N links above it.
    std::string body = R"(<typedef name="t0"><type name="int8"/><default value="7"/></typedef>)";
    for (int i = 1; i <= 129; ++i)
        body += "<typedef name=\"t" + std::to_string(i) + "\"><type name=\"t" +
                std::to_string(i - 1) + "\"/></typedef>";
    for (int i : {127, 128, 129})
        body += "<leaf name=\"c" + std::to_string(i) + "\"><type name=\"t" + std::to_string(i) +
                "\"/></leaf>";
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", body), ZR_OK);
    EXPECT_STREQ(Text(ZR_NODE_GetDefaultValueStr(ctx.Node("/m:c127"))), "7");
    EXPECT_STREQ(Text(ZR_NODE_GetDefaultValueStr(ctx.Node("/m:c128"))), "7");
    EXPECT_STREQ(Text(ZR_NODE_GetDefaultValueStr(ctx.Node("/m:c129"))), "(none)");
}

TEST(NodeValueChains, TypedefsThatNameEachOtherAreNotWalkedForEver)
{
    TestContext ctx(ZR_CTX_KEEP_UNITS);
    ctx.LoadBody("m", R"(
      <typedef name="a"><type name="b"/></typedef>
      <typedef name="b"><type name="a"/></typedef>
      <leaf name="leaf"><type name="a"/></leaf>)");
    ZrNode *leaf = ctx.Node("/m:leaf");
    ASSERT_NE(leaf, nullptr);
    EXPECT_EQ(ZR_NODE_GetDefaultValueStr(leaf), nullptr);
    EXPECT_EQ(ZR_NODE_GetUnitsValueStr(leaf), nullptr);
    EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(leaf, 1), nullptr);
}

TEST(NodeValueChains, ATypedefThatIsNotLoadedEndsTheWalk)
{
    TestContext ctx;
    ctx.LoadBody("m", R"(
      <import module="far"><prefix value="far"/></import>
      <leaf name="leaf"><type name="far:t"/></leaf>)");
    ZrNode *leaf = ctx.Node("/m:leaf");
    ASSERT_NE(leaf, nullptr);
    EXPECT_EQ(ZR_NODE_GetDefaultValueStr(leaf), nullptr);
    EXPECT_EQ(ZR_NODE_GetUnitsValueStr(leaf), nullptr);
    EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(leaf, 0), nullptr);
}

constexpr const char *kLeafrefs = R"(
  <typedef name="ref"><type name="leafref"><path value="/top/name"/></type></typedef>
  <typedef name="ref-again"><type name="ref"/></typedef>
  <container name="top">
    <leaf name="name"><type name="string"/></leaf>
    <leaf name="direct"><type name="leafref"><path value="../name"/></type></leaf>
    <leaf name="indirect"><type name="leafref"><path value="../direct"/></type></leaf>
    <leaf name="by-typedef"><type name="ref-again"/></leaf>
    <leaf-list name="many"><type name="leafref"><path value="/top/direct"/></type></leaf-list>
    <leaf name="lost"><type name="leafref"><path value="../nothing"/></type></leaf>
    <leaf name="to-lost"><type name="leafref"><path value="../lost"/></type></leaf>
    <leaf name="one"><type name="leafref"><path value="../two"/></type></leaf>
    <leaf name="two"><type name="leafref"><path value="../one"/></type></leaf>
    <leaf name="self"><type name="leafref"><path value="../self"/></type></leaf>
  </container>)";

class Leafrefs : public ::testing::Test {
protected:
    Leafrefs() { EXPECT_EQ(ctx_.LoadBody("m", kLeafrefs), ZR_OK); }
    ZrNode *Node(const std::string &name) { return ctx_.Node(("/m:top/" + name).c_str()); }
    std::string Target(const char *name, uint32_t follow)
    {
        return Text(ZR_NODE_GetNodeName(ZR_NODE_GetLeafrefTargetNode(Node(name), follow)));
    }

    TestContext ctx_;
};

TEST_F(Leafrefs, PointToTheNodeOfTheirPath)
{
    EXPECT_EQ(Target("direct", 0), "name");
    EXPECT_EQ(Target("indirect", 0), "direct");
    EXPECT_EQ(Target("many", 0), "direct");
    EXPECT_EQ(Target("by-typedef", 0), "name");
}

TEST_F(Leafrefs, AreFollowedToTheirEnd)
{
    EXPECT_EQ(Target("direct", 1), "name");
    EXPECT_EQ(Target("indirect", 1), "name");
    EXPECT_EQ(Target("many", 1), "name");
    EXPECT_EQ(Target("by-typedef", 7), "name");
}

TEST_F(Leafrefs, LeadNowhereWhenANodeIsMissing)
{
    EXPECT_EQ(Target("lost", 0), "(none)");
    EXPECT_EQ(Target("lost", 1), "(none)");
    EXPECT_EQ(Target("to-lost", 0), "lost");
    EXPECT_EQ(Target("to-lost", 1), "(none)");
}

TEST_F(Leafrefs, InACycleLeadNowhereWhenFollowed)
{
    EXPECT_EQ(Target("one", 0), "two");
    EXPECT_EQ(Target("one", 1), "(none)");
    EXPECT_EQ(Target("self", 0), "self");
    EXPECT_EQ(Target("self", 1), "(none)");
}

TEST_F(Leafrefs, AreOnlyWhatHasALeafrefType)
{
    EXPECT_EQ(Target("name", 1), "(none)");
    EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(ctx_.Node("/m:top"), 0), nullptr);
    EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(nullptr, 0), nullptr);
}

// The first path along the typedefs counts, whatever it restricts there; values are checked against
// the leaf that the query names.
TEST(LeafrefChains, TheFirstPathAlongTheTypedefsIsTakenByQueriesAndValueChecks)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", R"(
      <typedef name="far"><type name="leafref"><path value="/number"/></type></typedef>
      <typedef name="near"><type name="far"><path value="/flag"/></type></typedef>
      <typedef name="text"><type name="string"><path value="/flag"/></type></typedef>
      <leaf name="number"><type name="int8"/></leaf>
      <leaf name="flag"><type name="boolean"/></leaf>
      <leaf name="a"><type name="near"/></leaf>
      <leaf name="b"><type name="text"/></leaf>
      <leaf name="to-a"><type name="leafref"><path value="/a"/></type></leaf>
      <leaf name="to-b"><type name="leafref"><path value="/b"/></type></leaf>)"),
              ZR_OK);
    for (const char *path : {"/m:a", "/m:b", "/m:to-a", "/m:to-b"})
        EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(ctx.Node(path), 1), ctx.Node("/m:flag")) << path;
    for (const char *path : {"/m:to-a", "/m:to-b"}) {
        EXPECT_EQ(ZR_NODE_ValidateValue(ctx.Node(path), ZR_VALUE_STRING, "true"), ZR_OK) << path;
        EXPECT_EQ(ZR_NODE_ValidateValue(ctx.Node(path), ZR_VALUE_STRING, "5"), ZR_ERR_VALUE_BOOLEAN)
            << path;
    }
}

TEST(LeafrefChains, OneOf129StepsIsFollowedAndALongerOneIsNot)
{
    // r0 is a string; leaf rN points to rN-1, N steps from the end.
    std::string body = R"(<container name="top"><leaf name="r0"><type name="string"/></leaf>)";
    for (int i = 1; i <= 130; ++i)
        body += "<leaf name=\"r" + std::to_string(i) +
                "\"><type name=\"leafref\"><path value=\"../r" + std::to_string(i - 1) +
                "\"/></type></leaf>";
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", body + "</container>"), ZR_OK);
    EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(ctx.Node("/m:top/r129"), 1), ctx.Node("/m:top/r0"));
    EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(ctx.Node("/m:top/r130"), 1), nullptr);
    EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(ctx.Node("/m:top/r130"), 0), ctx.Node("/m:top/r129"));
}

class LeafListDefaults : public zrtest::RecordTest {
protected:
    LeafListDefaults()
        : node_(AddData(NewModule("m"), ZR_NODE_LEAF_LIST, "many")),
          info_(static_cast<ZrsLeafListInfo *>(node_->info))
    {
    }
    uint32_t Append(const std::vector<const char *> &values)
    {
        return ZRS_NODE_AppendLeaflistDefaults(dict_, info_, values.data(),
                                               static_cast<uint32_t>(values.size()));
    }
    std::string Defaults() const
    {
        std::string text;
        for (uint32_t i = 0; i < info_->defaultCount; ++i)
            text += info_->defaults[i];
        return text;
    }

    ZrNode *node_;
    ZrsLeafListInfo *info_;
};

TEST_F(LeafListDefaults, AreAppendedInOrder)
{
    EXPECT_EQ(Append({"a", "b"}), ZR_OK);
    EXPECT_EQ(Append({"c", "a"}), ZR_OK);
    EXPECT_EQ(Defaults(), "abca");
    EXPECT_EQ(Append({}), ZR_OK);
    EXPECT_EQ(info_->defaultCount, 4);
}

TEST_F(LeafListDefaults, AppendingNothingToNothingSucceeds)
{
    EXPECT_EQ(Append({}), ZR_OK);
    EXPECT_EQ(info_->defaults, nullptr);
}

TEST_F(LeafListDefaults, AreAppendedAllOrNoneWhenMemoryRunsOut)
{
    for (bool filled : {false, true}) {
        if (filled) {
            ASSERT_EQ(Append({"old"}), ZR_OK);
        }
        FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
            uint32_t status = memory.Run([&] {
                return Append({"a new text", "another text", "a third one"});
            });
            EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
            std::string before = filled ? "old" : "";
            EXPECT_EQ(Defaults(),
                      memory.Failed() ? before : before + "a new textanother texta third one");
            if (memory.Failed()) {
                EXPECT_EQ(info_->defaults == nullptr, !filled);
                return;
            }
            for (uint32_t i = filled ? 1 : 0; i < info_->defaultCount; ++i)
                zr::Release(dict_, info_->defaults[i]);
            ASSERT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, filled ? 1 : 0), ZR_OK);
        });
    }
}

TEST_F(LeafListDefaults, MoreThanACounterHoldsAreRefused)
{
    std::vector<const char *> values(65535, "x");
    ASSERT_EQ(Append(values), ZR_OK);
    EXPECT_EQ(info_->defaultCount, 65535);
    EXPECT_EQ(Append({"y"}), ZR_ERR_INVALID);
    EXPECT_EQ(info_->defaultCount, 65535);
    for (uint32_t i = 1; i < info_->defaultCount; ++i)
        zr::Release(dict_, info_->defaults[i]);
    ASSERT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 1), ZR_OK);
    values.pop_back();
    EXPECT_EQ(Append(values), ZR_OK);
    EXPECT_EQ(info_->defaultCount, 65535);
}

TEST_F(LeafListDefaults, TheGapsOfReleasedOnesAreClosed)
{
    ASSERT_EQ(Append({"a", "b", "c", "b"}), ZR_OK);
    zr::Release(dict_, info_->defaults[1]);
    zr::Release(dict_, info_->defaults[3]);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 2), ZR_OK);
    EXPECT_EQ(Defaults(), "ac");
    EXPECT_EQ(Append({"d"}), ZR_OK);
    EXPECT_EQ(Defaults(), "acd");
}

TEST_F(LeafListDefaults, NothingIsLeftWhenAllAreReleased)
{
    ASSERT_EQ(Append({"a", "b"}), ZR_OK);
    zr::Release(dict_, info_->defaults[0]);
    zr::Release(dict_, info_->defaults[1]);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 0), ZR_OK);
    EXPECT_EQ(info_->defaults, nullptr);
    EXPECT_EQ(info_->defaultCount, 0);
}

TEST_F(LeafListDefaults, AWrongCountChangesNothing)
{
    ASSERT_EQ(Append({"a", "b", "c"}), ZR_OK);
    zr::Release(dict_, info_->defaults[1]);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 3), ZR_ERR_INVALID);
    EXPECT_EQ(info_->defaultCount, 3);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, info_, 2), ZR_OK);
    EXPECT_EQ(Defaults(), "ac");
}

TEST_F(LeafListDefaults, NullArgumentsAreRefused)
{
    const char *const values[] = {"a"};
    EXPECT_EQ(ZRS_NODE_AppendLeaflistDefaults(nullptr, info_, values, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AppendLeaflistDefaults(dict_, nullptr, values, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AppendLeaflistDefaults(dict_, info_, nullptr, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(nullptr, info_, 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_SubtractLeaflistDefaults(dict_, nullptr, 0), ZR_ERR_INVALID);
    EXPECT_EQ(info_->defaultCount, 0);
}

} // namespace
