#include "model/node_record.h"
#include "support/alloc.h"
#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;
using zrtest::yin::Leafref;
namespace yin = zrtest::yin;

TEST(Leafref, RefusesWithTheTargetsCode)
{
    Leaf leaf(Leafref("/m:number"), yin::Leaf("number", "int8"));
    EXPECT_EQ(leaf.Check("100"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, WithARelativePathStartsAtTheLeaf)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<container name=\"top\"><container name=\"box\">" +
                                    yin::Leaf("v", Leafref("../../number")) +
                                    "</container><choice name=\"c\"><case name=\"d\">" +
                                    yin::Leaf("number", "int8") + "</case></choice></container>"),
              ZR_OK);
    ZrNode *node = ctx.Node("/m:top/box/v");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "5"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "200"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, ThatClimbsAboveTheTopIsRefusedWithItsOwnCode)
{
    Leaf leaf(Leafref("../number"), yin::Leaf("number", "int8"));
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, MatchesTheTypeOfItsTarget)
{
    Leaf leaf(Leafref("/m:number"), yin::Leaf("number", "int8"));
    EXPECT_EQ(leaf.Matched("5"), ZR_NODE_GetRealType(leaf.context().Node("/m:number")));
}

TEST(Leafref, WithoutATargetIsRefusedWithItsOwnCode)
{
    Leaf leaf(Leafref("/m:missing"));
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, IntoAModuleThatIsNotLoadedIsRefusedWithItsOwnCode)
{
    Leaf leaf(Leafref("/o:top/o:leaf"), "<import module=\"other\"><prefix value=\"o\"/></import>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, ToAContainerIsRefusedWithItsOwnCode)
{
    Leaf leaf(Leafref("/m:box"), "<container name=\"box\"/>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, RefusesANullValueWithItsOwnCode)
{
    Leaf leaf(Leafref("/m:any"), yin::Leaf("any", "<type name=\"empty\"/>"));
    EXPECT_EQ(leaf.Check(nullptr), ZR_ERR_VALUE_LEAFREF);
    EXPECT_EQ(leaf.Check(""), ZR_OK);
}

TEST(Leafref, ToALeafrefToAUnionIsCheckedAgainstTheUnion)
{
    Leaf leaf(Leafref("/m:second"),
              yin::Leaf("second", Leafref("/m:third")) +
                  yin::Leaf("third", "<type name=\"union\"><type name=\"int8\"/>"
                                     "<type name=\"boolean\"/></type>"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("true"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_UNION);
    uint16_t count = 0;
    const ZrtRealType *members = ZRT_CONS_GetConsUnionSubTypeData(
        ZRT_TYPE_GetTypeConsDataByConsType(ZR_NODE_GetRealType(leaf.context().Node("/m:third")),
                                           ZRT_CONS_UNION),
        &count);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(leaf.Matched("true"), &members[1]);
}

TEST(Leafref, InsideAUnionFollowsItsOwnPath)
{
    Leaf leaf("<type name=\"union\">" + Leafref("/m:number") + Leafref("/m:flag") + "</type>",
              yin::Leaf("number", "int8") + yin::Leaf("flag", "<type name=\"boolean\"/>"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("true"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_UNION);
    EXPECT_EQ(leaf.Matched("true"), ZR_NODE_GetRealType(leaf.context().Node("/m:flag")));
}

TEST(Leafref, BehindATypedefStartsAtTheLeaf)
{
    Leaf leaf("<type name=\"ref\"/>", "<typedef name=\"ref\">" + Leafref("/m:number") +
                                          "</typedef>" + yin::Leaf("number", "int8"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, FollowsATargetThatIsALeafrefBehindATypedef)
{
    Leaf leaf(Leafref("/m:second"), "<typedef name=\"ref\">" + Leafref("/m:number") + "</typedef>" +
                                        yin::Leaf("second", "<type name=\"ref\"/>") +
                                        yin::Leaf("number", "int8"));
    EXPECT_EQ(leaf.Matched("5"), ZR_NODE_GetRealType(leaf.context().Node("/m:number")));
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, InACircleIsRefusedWithItsOwnCode)
{
    Leaf leaf(Leafref("/m:a"), yin::Leaf("a", Leafref("/m:b")) + yin::Leaf("b", Leafref("/m:a")));
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, ToItselfIsRefusedWithItsOwnCode)
{
    Leaf leaf(Leafref("/m:v"));
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, InAUnionToItsOwnLeafEnds)
{
    Leaf leaf("<type name=\"union\">" + Leafref("/m:v") + Leafref("/m:v") + "</type>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_UNION);
}

TEST(Leafref, InAUnionToItsOwnLeafFailsAlone)
{
    Leaf leaf("<type name=\"union\">" + Leafref("/m:v") + "<type name=\"int8\"/></type>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_UNION);
    uint16_t count = 0;
    const ZrtRealType *members = ZRT_CONS_GetConsUnionSubTypeData(
        ZRT_TYPE_GetTypeConsDataByConsType(leaf.type(), ZRT_CONS_UNION), &count);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(leaf.Matched("5"), &members[1]);
}

// The leaves ask each other; each falls back on its own int8 or boolean.
TEST(Leafref, InAUnionThatLeadsBackThroughOtherLeavesFailsAlone)
{
    Leaf leaf("<type name=\"union\">" + Leafref("/m:a") + "<type name=\"int8\"/></type>",
              yin::Leaf("a", "<type name=\"union\"><type name=\"ref\"/>" + Leafref("/m:a") +
                                 "<type name=\"boolean\"/></type>") +
                  yin::Leaf("b", Leafref("/m:v")) + "<typedef name=\"ref\">" + Leafref("/m:b") +
                  "</typedef>");
    ASSERT_NE(leaf.node(), nullptr);
    for (const char *name : {"/m:v", "/m:a", "/m:b"}) {
        const ZrNode *node = leaf.context().Node(name);
        EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "5"), ZR_OK) << name;
        EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "true"), ZR_OK) << name;
        EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "x"), ZR_ERR_VALUE_UNION) << name;
    }
    EXPECT_EQ(leaf.Matched("true"),
              &ZRT_CONS_GetConsUnionSubTypeData(
                  ZRT_TYPE_GetTypeConsDataByConsType(
                      ZR_NODE_GetRealType(leaf.context().Node("/m:a")), ZRT_CONS_UNION),
                  nullptr)[2]);
}

// Two members that lead to one leaf, one after the other: the second asks it anew.
TEST(Leafref, ToALeafThatWasAskedBeforeIsFollowed)
{
    Leaf leaf("<type name=\"union\">" + Leafref("/m:flag") + "<type name=\"both\"/></type>",
              "<typedef name=\"both\"><type name=\"union\">" + Leafref("/m:number") +
                  Leafref("/m:flag") + "</type></typedef>" + yin::Leaf("number", "int8") +
                  yin::Leaf("flag", "<type name=\"boolean\"/>"));
    EXPECT_EQ(leaf.Check("true"), ZR_OK);
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_UNION);
}

// Leaves r1 to rN, each a leafref to the next, the last an int8; the leaf "v" refers to r1.
std::string Row(int length)
{
    std::string text;
    for (int i = 1; i <= length; ++i)
        text += yin::Leaf("r" + std::to_string(i),
                          i < length ? Leafref("/m:r" + std::to_string(i + 1)) : "int8");
    return text;
}

TEST(Leafref, IsFollowedThrough129Resolutions)
{
    Leaf last(Leafref("/m:r1"), Row(129));
    EXPECT_EQ(last.Check("5"), ZR_OK);
    EXPECT_EQ(last.Check("200"), ZR_ERR_VALUE_RANGE);
    Leaf beyond(Leafref("/m:r1"), Row(130));
    EXPECT_EQ(beyond.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, DoesNotAskForAnInstance)
{
    Leaf leaf("<type name=\"leafref\"><path value=\"/m:number\"/>"
              "<require-instance value=\"true\"/></type>",
              yin::Leaf("number", "int8"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
}

TEST(Leafref, IsCheckedAgainstAnotherLeafsLeafList)
{
    Leaf leaf(Leafref("/m:numbers"),
              "<leaf-list name=\"numbers\"><type name=\"uint8\"/></leaf-list>");
    EXPECT_EQ(leaf.Check("255"), ZR_OK);
    EXPECT_EQ(leaf.Check("256"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, OfANodeInNoModuleIsRefusedWithItsOwnCode)
{
    ZrNode node = {};
    ZrtConsPath body = {"/m:a", 1};
    ZrtValidateCtx validation = {};
    validation.node = &node;
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataPath(&body, ZR_VALUE_STRING, "5", &validation),
              ZR_ERR_VALUE_LEAFREF);
}

TEST(LeafrefPath, IsReadFromTheBody)
{
    ZrtConsPath body = {"/m:a", 1};
    EXPECT_STREQ(ZRT_CONS_GetConsDataLeafrefPath(&body), "/m:a");
    EXPECT_EQ(ZRT_CONS_GetConsDataLeafrefPath(nullptr), nullptr);
}

TEST(LeafrefCopy, HasThePathAndRequireInstance)
{
    zrtest::TestContext ctx;
    ZrtConsPath body = {"/m:a", 1};
    auto *copy = static_cast<ZrtConsPath *>(ZRT_CONS_CopyConsDataBodyWithPath(ctx, &body));
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->path, "/m:a");
    EXPECT_NE(copy->path, body.path);
    EXPECT_EQ(copy->requireInstance, 1u);
    ZRT_CONS_DestroyConsDataBodyWithPath(ctx, copy);
}

TEST(LeafrefCopy, IsNullWhicheverAllocationFails)
{
    zrtest::TestContext ctx;
    ZrtConsPath body = {"/m:a", 1};
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        void *copy = memory.Run([&] { return ZRT_CONS_CopyConsDataBodyWithPath(ctx, &body); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        ZRT_CONS_DestroyConsDataBodyWithPath(ctx, copy);
    });
    EXPECT_EQ(points, 3u); // the body, and two blocks for the path
}

} // namespace
