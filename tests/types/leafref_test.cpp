#include "model/node_record.h"
#include "support/alloc.h"
#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;

std::string LeafrefTo(const std::string &path)
{
    return "<type name=\"leafref\"><path value=\"" + path + "\"/></type>";
}

std::string LeafText(const std::string &name, const std::string &type)
{
    return "<leaf name=\"" + name + "\">" + type + "</leaf>";
}

TEST(Leafref, RefusesWithTheTargetsCode)
{
    Leaf leaf(LeafrefTo("/m:number"), LeafText("number", "<type name=\"int8\"/>"));
    EXPECT_EQ(leaf.Check("100"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, WithARelativePathStartsAtTheLeaf)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<container name=\"top\"><container name=\"box\">" +
                                    LeafText("v", LeafrefTo("../../number")) +
                                    "</container><choice name=\"c\"><case name=\"d\">" +
                                    LeafText("number", "<type name=\"int8\"/>") +
                                    "</case></choice></container>"),
              ZR_OK);
    ZrNode *node = ctx.Node("/m:top/box/v");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "5"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "200"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, ThatClimbsAboveTheTopIsRefusedWithItsOwnCode)
{
    Leaf leaf(LeafrefTo("../number"), LeafText("number", "<type name=\"int8\"/>"));
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, MatchesTheTypeOfItsTarget)
{
    Leaf leaf(LeafrefTo("/m:number"), LeafText("number", "<type name=\"int8\"/>"));
    EXPECT_EQ(leaf.Matched("5"), ZR_NODE_GetRealType(leaf.context().Node("/m:number")));
}

TEST(Leafref, WithoutATargetIsRefusedWithItsOwnCode)
{
    Leaf leaf(LeafrefTo("/m:missing"));
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, IntoAModuleThatIsNotLoadedIsRefusedWithItsOwnCode)
{
    Leaf leaf(LeafrefTo("/o:top/o:leaf"),
              "<import module=\"other\"><prefix value=\"o\"/></import>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, ToAContainerIsRefusedWithItsOwnCode)
{
    Leaf leaf(LeafrefTo("/m:box"), "<container name=\"box\"/>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, RefusesANullValueWithItsOwnCode)
{
    Leaf leaf(LeafrefTo("/m:any"), LeafText("any", "<type name=\"empty\"/>"));
    EXPECT_EQ(leaf.Check(nullptr), ZR_ERR_VALUE_LEAFREF);
    EXPECT_EQ(leaf.Check(""), ZR_OK);
}

TEST(Leafref, ToALeafrefToAUnionIsCheckedAgainstTheUnion)
{
    Leaf leaf(LeafrefTo("/m:second"),
              LeafText("second", LeafrefTo("/m:third")) +
                  LeafText("third", "<type name=\"union\"><type name=\"int8\"/>"
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
    Leaf leaf("<type name=\"union\">" + LeafrefTo("/m:number") + LeafrefTo("/m:flag") + "</type>",
              LeafText("number", "<type name=\"int8\"/>") +
                  LeafText("flag", "<type name=\"boolean\"/>"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("true"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_UNION);
    EXPECT_EQ(leaf.Matched("true"), ZR_NODE_GetRealType(leaf.context().Node("/m:flag")));
}

TEST(Leafref, BehindATypedefStartsAtTheLeaf)
{
    Leaf leaf("<type name=\"ref\"/>", "<typedef name=\"ref\">" + LeafrefTo("/m:number") +
                                          "</typedef>" +
                                          LeafText("number", "<type name=\"int8\"/>"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, FollowsATargetThatIsALeafrefBehindATypedef)
{
    Leaf leaf(LeafrefTo("/m:second"), "<typedef name=\"ref\">" + LeafrefTo("/m:number") +
                                          "</typedef>" +
                                          LeafText("second", "<type name=\"ref\"/>") +
                                          LeafText("number", "<type name=\"int8\"/>"));
    EXPECT_EQ(leaf.Matched("5"), ZR_NODE_GetRealType(leaf.context().Node("/m:number")));
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(Leafref, InACircleIsRefusedWithItsOwnCode)
{
    Leaf leaf(LeafrefTo("/m:a"),
              LeafText("a", LeafrefTo("/m:b")) + LeafText("b", LeafrefTo("/m:a")));
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, ToItselfIsRefusedWithItsOwnCode)
{
    Leaf leaf(LeafrefTo("/m:v"));
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, InAUnionToItsOwnLeafEnds)
{
    Leaf leaf("<type name=\"union\">" + LeafrefTo("/m:v") + LeafrefTo("/m:v") + "</type>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_UNION);
}

TEST(Leafref, InAUnionToItsOwnLeafFailsAlone)
{
    Leaf leaf("<type name=\"union\">" + LeafrefTo("/m:v") + "<type name=\"int8\"/></type>");
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
    Leaf leaf("<type name=\"union\">" + LeafrefTo("/m:a") + "<type name=\"int8\"/></type>",
              LeafText("a", "<type name=\"union\"><type name=\"ref\"/>" + LeafrefTo("/m:a") +
                                "<type name=\"boolean\"/></type>") +
                  LeafText("b", LeafrefTo("/m:v")) + "<typedef name=\"ref\">" + LeafrefTo("/m:b") +
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
    Leaf leaf("<type name=\"union\">" + LeafrefTo("/m:flag") + "<type name=\"both\"/></type>",
              "<typedef name=\"both\"><type name=\"union\">" + LeafrefTo("/m:number") +
                  LeafrefTo("/m:flag") + "</type></typedef>" +
                  LeafText("number", "<type name=\"int8\"/>") +
                  LeafText("flag", "<type name=\"boolean\"/>"));
    EXPECT_EQ(leaf.Check("true"), ZR_OK);
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_UNION);
}

// Leaves r1 to rN, each a leafref to the next, the last an int8; the leaf "v" refers to r1.
std::string Row(int length)
{
    std::string text;
    for (int i = 1; i <= length; ++i)
        text +=
            LeafText("r" + std::to_string(i), i < length ? LeafrefTo("/m:r" + std::to_string(i + 1))
                                                         : "<type name=\"int8\"/>");
    return text;
}

TEST(Leafref, IsFollowedThrough129Resolutions)
{
    Leaf last(LeafrefTo("/m:r1"), Row(129));
    EXPECT_EQ(last.Check("5"), ZR_OK);
    EXPECT_EQ(last.Check("200"), ZR_ERR_VALUE_RANGE);
    Leaf beyond(LeafrefTo("/m:r1"), Row(130));
    EXPECT_EQ(beyond.Check("5"), ZR_ERR_VALUE_LEAFREF);
}

TEST(Leafref, DoesNotAskForAnInstance)
{
    Leaf leaf("<type name=\"leafref\"><path value=\"/m:number\"/>"
              "<require-instance value=\"true\"/></type>",
              LeafText("number", "<type name=\"int8\"/>"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
}

TEST(Leafref, IsCheckedAgainstAnotherLeafsLeafList)
{
    Leaf leaf(LeafrefTo("/m:numbers"),
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
    zrtest::AllocGuard guard;
    ZrtConsPath body = {"/m:a", 1};
    for (uint64_t n = 0; n < 3; ++n) { // the body, and two blocks for the path
        guard.FailAt(n);
        EXPECT_EQ(ZRT_CONS_CopyConsDataBodyWithPath(ctx, &body), nullptr) << n;
        EXPECT_EQ(guard.LiveBlocks(), 0) << n;
    }
}

} // namespace
