// SPDX-License-Identifier: Apache-2.0
#include "schema/coupling_fixture.h"

#include "platform/memory.h"

using namespace zrtest;
using testing::ElementsAre;

namespace {

std::string ParentCond(const char *condition)
{
    zr::Owned<char> text(ZRS_NODE_GetParentCond(condition));
    return text ? text.get() : "(nothing)";
}

struct ConditionRow {
    const char *condition;
    const char *rewritten;
};

// clang-format off
const ConditionRow kConditions[] = {
    {"x",                             "../x"},
    {"x = 5",                         "../x = 5"},
    {"5 = x",                         "5 = ../x"},
    {".",                             ".."},
    {". = 'a'",                       ".. = 'a'"},
    {"..",                            "../.."},
    {"../m:y = 'a'",                  "../../m:y = 'a'"},
    {"m:a/m:b/m:c",                   "../m:a/m:b/m:c"},
    {"/m:top/m:a = 1",                "/m:top/m:a = 1"},
    {"//a",                           "//a"},
    {"a and b or c",                  "../a and ../b or ../c"},
    {"a|b",                           "../a|../b"},
    {"a + b - c",                     "../a + ../b - ../c"},
    {"a * b div c mod d",             "../a * ../b div ../c mod ../d"},
    {"a < b",                         "../a < ../b"},
    {"a != b",                        "../a != ../b"},
    {"not(a)",                        "not(../a)"},
    {"not(a) and b",                  "not(../a) and ../b"},
    {"derived-from(m:t, 'm:i')",      "derived-from(../m:t, 'm:i')"},
    {"current()/x = 1",               "current()/../x = 1"},
    {"current()//x",                  "current()/..//x"},
    {"current ( ) / x",               "current ( ) /../ x"},
    {"a = current()/x",               "../a = current()/../x"},
    {"current() = 1",                 "current() = 1"},
    {"currents()/x",                  "currents()/x"},
    {"a[b = 'x']/c",                  "../a[b = 'x']/c"},
    {"a[b = c]/d",                    "../a[b = ../c]/d"},
    {"a[k = current()/y]/d",          "../a[k = current()/../y]/d"},
    {"@id",                           "@../id"},
    {"*",                             "../*"},
    {"  x  =  'a  b'  ",              "  ../x  =  'a  b'"},
    {"x\t=\n1",                       "../x\t=\n1"},
    {"",                              ""},
    {"   ",                           ""},
    {"1 = 1",                         "1 = 1"},
    {"a and",                         "../a and"},
};
// clang-format on

} // namespace

TEST(GetParentCond, ClimbsOneLevelAtTheStartOfEveryRelativePath)
{
    for (const ConditionRow &row : kConditions)
        EXPECT_EQ(ParentCond(row.condition), row.rewritten) << row.condition;
}

TEST(GetParentCond, GivesNothingForWhatCannotBeTokenized)
{
    EXPECT_EQ(ParentCond("a ="), "../a =") << "an operand may be missing, the tokens are fine";
    EXPECT_EQ(ParentCond("$a"), "(nothing)");
    EXPECT_EQ(ParentCond("'open"), "(nothing)");
    EXPECT_EQ(ZRS_NODE_GetParentCond(nullptr), nullptr);
}

TEST(GetParentCond, FitsConditionsOfNothingButShortNames)
{
    std::string condition = "a";
    std::string rewritten = "../a";
    for (int i = 0; i < 2000; ++i) {
        condition += "|a";
        rewritten += "|../a";
    }
    EXPECT_EQ(ParentCond(condition.c_str()), rewritten);
}

TEST(GetParentCond, LeaksNothingWhenMemoryRunsOut)
{
    uint64_t points = FailEachAllocation([&](FailPoint &memory) {
        char *text = memory.Run(
            [&] { return ZRS_NODE_GetParentCond("a and b or c = current()/d and e/f/g"); });
        EXPECT_EQ(text == nullptr, memory.Failed());
        zr::Free(text);
    });
    EXPECT_GE(points, 3u);
}

TEST(CombineTwoWhenCondition, JoinsBothInBrackets)
{
    zr::Owned<char> text(ZRS_NODE_CombineTwoWhenCondition("a = 1", "b"));
    EXPECT_STREQ(text.get(), "(a = 1) and (b)");
}

TEST(CombineTwoWhenCondition, GivesNothingForANullText)
{
    EXPECT_EQ(ZRS_NODE_CombineTwoWhenCondition(nullptr, "b"), nullptr);
    EXPECT_EQ(ZRS_NODE_CombineTwoWhenCondition("a", nullptr), nullptr);
}

TEST(CombineTwoWhenCondition, GivesNothingWithoutMemory)
{
    AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZRS_NODE_CombineTwoWhenCondition("a", "b"), nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(AugmentConditions, ABareNameBecomesTheChildsConditionOrGoesBeforeItsOwn)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c", Leaf("x"))), ZR_OK);
    ASSERT_EQ(
        ctx.LoadBody("a", Import("m") +
                              Augment("/m:c", "<when condition=\"x\"/>" + Leaf("p") +
                                                  Leaf("q", "string", "<when condition=\"y\"/>"))),
        ZR_OK);
    EXPECT_STREQ(ctx.Node("/m:c/a:p")->when, "../x");
    EXPECT_STREQ(ctx.Node("/m:c/a:q")->when, "(../x) and (y)");
}

TEST(AugmentConditions, ActionsAndNotificationsKeepTheirOwn)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(
        ctx.LoadBody("a", Import("m") + "<feature name=\"f\"/>" +
                              Augment("/m:c", "<when condition=\"x\"/><if-feature name=\"f\"/>"
                                              "<action name=\"act\"/>"
                                              "<notification name=\"n\"/>" +
                                                  Leaf("p"))),
        ZR_OK);
    for (const char *path : {"/m:c/a:act", "/m:c/a:n"}) {
        EXPECT_EQ(ctx.Node(path)->when, nullptr) << path;
        EXPECT_EQ(ctx.Node(path)->ifFeatureCount, 0) << path;
    }
    EXPECT_STREQ(ctx.Node("/m:c/a:p")->when, "../x");
    EXPECT_EQ(ctx.Node("/m:c/a:p")->ifFeatureCount, 1);
}

TEST(AugmentConditions, IfFeaturesAreAppendedInOrderAndOnce)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(
        ctx.LoadBody("a", Import("m") +
                              "<feature name=\"f\"/><feature name=\"g\"/><feature name=\"h\"/>" +
                              Augment("/m:c", "<if-feature name=\"f\"/><if-feature name=\"g\"/>" +
                                                  Leaf("p", "string",
                                                       "<if-feature name=\"g\"/>"
                                                       "<if-feature name=\"h\"/>"))),
        ZR_OK);
    const ZrNode *leaf = ctx.Node("/m:c/a:p");
    std::vector<std::string> features;
    for (int i = 0; i < leaf->ifFeatureCount; ++i)
        features.emplace_back(leaf->ifFeatures[i].featureName);
    EXPECT_THAT(features, ElementsAre("g", "h", "f"));
}

TEST(AugmentConditions, AreNotPassedDownToGrandchildren)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", "<when condition=\"x\"/>" +
                                                                  Container("p", Leaf("q")))),
              ZR_OK);
    EXPECT_STREQ(ctx.Node("/m:c/a:p")->when, "../x");
    EXPECT_EQ(ctx.Node("/m:c/a:p/q")->when, nullptr);
}

namespace {

class AugmentByHand : public testing::Test {
protected:
    AugmentByHand()
    {
        EXPECT_EQ(ctx_.LoadBody("m", ""), ZR_OK);
        augment_ = New(ZR_NODE_AUGMENT, "/x:c");
    }
    ~AugmentByHand() override { ZRS_NODE_Free(augment_); }

    ZrNode *New(uint32_t kind, const char *name)
    {
        ZrNode *node = ZRS_NODE_New(kind);
        node->module = ctx_.Module("m");
        node->name = ZR_DICT_Insert(dict(), name);
        return node;
    }
    ZrDict *dict() { return &ctx_.get()->dict; }

    AllocGuard guard_;
    TestContext ctx_;
    ZrNode *augment_;
};

TEST_F(AugmentByHand, AConditionWithoutChildrenIsPassedToNobody)
{
    augment_->when = ZR_DICT_Insert(dict(), "x");
    EXPECT_EQ(ZRS_NODE_InheritAugNodeEvalToAllChildNode(dict(), augment_), ZR_OK);
}

TEST_F(AugmentByHand, AConditionThatCannotBeRewrittenIsLeftOutButIfFeaturesAreNot)
{
    augment_->when = ZR_DICT_Insert(dict(), "$x");
    ASSERT_EQ(ZRS_NODE_AppendOneIfFeat(dict(), &augment_->ifFeatures, &augment_->ifFeatureCount,
                                       "m", "f"),
              ZR_OK);
    ZrNode *leaf = New(ZR_NODE_LEAF, "l");
    ZRS_NODE_AddChild(augment_, leaf);
    EXPECT_EQ(ZRS_NODE_InheritAugNodeEvalToAllChildNode(dict(), augment_), ZR_OK);
    EXPECT_EQ(leaf->when, nullptr);
    EXPECT_EQ(leaf->ifFeatureCount, 1);
}

TEST_F(AugmentByHand, NullArgumentsAreRefused)
{
    EXPECT_EQ(ZRS_NODE_InheritAugNodeEvalToAllChildNode(dict(), nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_InheritAugNodeEvalToAllChildNode(nullptr, augment_), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_InheritAugNodeWhenCondToChildNode(dict(), nullptr, "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_InheritAugNodeIfFeatArrayToChildNode(dict(), augment_, nullptr),
              ZR_ERR_INVALID);
}

TEST_F(AugmentByHand, AFailedInheritanceIsReportedAndLeaksNothing)
{
    augment_->when = ZR_DICT_Insert(dict(), "some/condition = 1");
    ASSERT_EQ(ZRS_NODE_AppendOneIfFeat(dict(), &augment_->ifFeatures, &augment_->ifFeatureCount,
                                       "m", "f"),
              ZR_OK);
    ZrNode *leaf = New(ZR_NODE_LEAF, "l");
    leaf->when = ZR_DICT_Insert(dict(), "y");
    ZRS_NODE_AddChild(augment_, leaf);
    // The first three allocations are the rewriting's, whose failure goes unreported.
    guard_.FailAt(3, true);
    EXPECT_EQ(ZRS_NODE_InheritAugNodeEvalToAllChildNode(dict(), augment_), ZR_ERR_INVALID);
    EXPECT_STREQ(leaf->when, "y");
    guard_.FailAt(0, true);
    EXPECT_EQ(ZRS_NODE_InheritAugNodeIfFeatArrayToChildNode(dict(), augment_, leaf),
              ZR_ERR_NO_MEMORY);
    EXPECT_EQ(leaf->ifFeatureCount, 0);
    guard_.Stop();
    EXPECT_EQ(ZRS_NODE_InheritAugNodeEvalToAllChildNode(dict(), augment_), ZR_OK);
    EXPECT_STREQ(leaf->when, "(../some/condition = 1) and (y)");
}

} // namespace
