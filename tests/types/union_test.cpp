#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;

const ZrtRealType *Member(const ZrtRealType *type, uint32_t index)
{
    uint16_t count = 0;
    const ZrtRealType *members = ZRT_CONS_GetConsUnionSubTypeData(
        ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_UNION), &count);
    return index < count ? &members[index] : nullptr;
}

TEST(Union, TakesAValueThroughTheFirstMemberThatAcceptsIt)
{
    Leaf leaf("<type name=\"union\"><type name=\"int8\"/><type name=\"string\"/></type>");
    EXPECT_EQ(leaf.Check("300"), ZR_OK);
    EXPECT_EQ(leaf.Matched("300"), Member(leaf.type(), 1));
    EXPECT_EQ(leaf.Matched("30"), Member(leaf.type(), 0));
}

TEST(Union, RefusesWhatNoMemberAccepts)
{
    Leaf leaf("<type name=\"union\"><type name=\"int8\"/><type name=\"boolean\"/></type>");
    EXPECT_EQ(leaf.Check("300"), ZR_ERR_VALUE_UNION);
    EXPECT_EQ(leaf.Matched("300"), nullptr);
}

TEST(Union, WithoutMembersRefusesEverything)
{
    Leaf leaf("<type name=\"union\"/>");
    // A union without member types has no slot that could refuse a value.
    EXPECT_EQ(leaf.Check("x"), ZR_OK);
    ZrtConsUnion body = {};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataUnion(&body, ZR_VALUE_STRING, "x", &validation),
              ZR_ERR_VALUE_UNION);
}

TEST(Union, OffersANullValueToItsMembers)
{
    Leaf takes("<type name=\"union\"><type name=\"int8\"/><type name=\"empty\"/></type>");
    EXPECT_EQ(takes.Check(nullptr), ZR_OK);
    Leaf refuses("<type name=\"union\"><type name=\"int8\"/><type name=\"boolean\"/></type>");
    EXPECT_EQ(refuses.Check(nullptr), ZR_ERR_VALUE_UNION);
}

TEST(Union, InAUnionMatchesTheInnermostMember)
{
    Leaf leaf("<type name=\"union\"><type name=\"boolean\"/><type name=\"union\">"
              "<type name=\"int8\"/><type name=\"union\"><type name=\"enumeration\">"
              "<enum name=\"deep\"/></type></type></type></type>");
    const ZrtRealType *inner = Member(leaf.type(), 1);
    ASSERT_NE(inner, nullptr);
    const ZrtRealType *innermost = Member(inner, 1);
    ASSERT_NE(innermost, nullptr);
    EXPECT_EQ(leaf.Matched("true"), Member(leaf.type(), 0));
    EXPECT_EQ(leaf.Matched("5"), Member(inner, 0));
    EXPECT_EQ(leaf.Matched("deep"), Member(innermost, 0));
    EXPECT_EQ(leaf.Check("other"), ZR_ERR_VALUE_UNION);
}

TEST(Union, NestsDeeply)
{
    std::string type;
    for (int i = 0; i < 100; ++i)
        type += "<type name=\"union\">";
    type += "<type name=\"int8\"/>";
    for (int i = 0; i < 100; ++i)
        type += "</type>";
    Leaf leaf(type);
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("500"), ZR_ERR_VALUE_UNION);
}

TEST(Union, MatchesTheTypedefOfADerivedMember)
{
    Leaf leaf("<type name=\"union\"><type name=\"boolean\"/><type name=\"small\"/></type>",
              "<typedef name=\"small\"><type name=\"int8\"/></typedef>");
    EXPECT_EQ(leaf.Matched("5"),
              ZR_MOD_GetRealTypeByTypDefName(leaf.context().Module("m"), "small"));
}

TEST(Union, BehindATypedefMatchesItsMember)
{
    Leaf leaf("<type name=\"either\"/>",
              "<typedef name=\"either\"><type name=\"union\"><type name=\"int8\"/>"
              "<type name=\"boolean\"/></type></typedef>");
    const ZrtRealType *either =
        ZR_MOD_GetRealTypeByTypDefName(leaf.context().Module("m"), "either");
    EXPECT_EQ(leaf.Matched("5"), Member(either, 0));
    EXPECT_EQ(leaf.Matched("true"), Member(either, 1));
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_UNION);
}

TEST(Union, StartsEachMemberWithFreshBounds)
{
    // The first member's own range must not put that of the second member's typedef out of force.
    Leaf leaf("<type name=\"union\"><type name=\"int8\"><range value=\"0..1\"/></type>"
              "<type name=\"small\"/></type>",
              "<typedef name=\"small\"><type name=\"int8\"><range value=\"10..20\"/></type>"
              "</typedef>");
    EXPECT_EQ(leaf.Check("1"), ZR_OK);
    EXPECT_EQ(leaf.Check("15"), ZR_OK);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_UNION);
    EXPECT_EQ(leaf.Check("21"), ZR_ERR_VALUE_UNION);
}

TEST(Union, StartsEachMemberWithAFreshChain)
{
    std::string chain;
    for (int i = 1; i <= 129; ++i)
        chain += "<typedef name=\"t" + std::to_string(i) + "\"><type name=\"" +
                 (i < 129 ? "t" + std::to_string(i + 1) : std::string("int8")) + "\"/></typedef>";
    Leaf leaf("<type name=\"union\"><type name=\"t1\"/><type name=\"t1\"/></type>", chain);
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("500"), ZR_ERR_VALUE_UNION);
}

TEST(Union, ThatContainsItselfEnds)
{
    Leaf leaf("<type name=\"a\"/>",
              "<typedef name=\"a\"><type name=\"union\"><type name=\"a\"/><type name=\"a\"/>"
              "</type></typedef>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_UNION);
}

TEST(UnionUpdate, ResolvesEveryMember)
{
    Leaf leaf("<type name=\"union\"><type name=\"small\"/><type name=\"union\">"
              "<type name=\"small\"/></type></type>",
              "<typedef name=\"small\"><type name=\"int8\"/></typedef>");
    ZrMod *module = leaf.context().Module("m");
    auto *type = const_cast<ZrtRealType *>(leaf.type());
    EXPECT_EQ(ZRT_TYPE_UpdateRealTypeDerivedFrom(type, module), ZR_OK);
    const ZrtRealType *small = ZR_MOD_GetRealTypeByTypDefName(module, "small");
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataDerived(Member(type, 0))->resolved, small);
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataDerived(Member(Member(type, 1), 0))->resolved, small);
}

TEST(UnionUpdate, ReturnsTheFirstFailureOfAMember)
{
    Leaf leaf("<type name=\"union\"><type name=\"int8\"/><type name=\"unknown\"/></type>");
    auto *type = const_cast<ZrtRealType *>(leaf.type());
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(ZRT_TYPE_UpdateRealTypeDerivedFrom(type, leaf.context().Module("m")), ZR_ERR_INVALID);
}

TEST(UnionUpdate, OfNoBodyIs22)
{
    Leaf leaf("<type name=\"int8\"/>");
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithUnion(nullptr, leaf.context().Module("m")),
              ZR_ERR_INVALID);
}

TEST(UnionMembers, OfNoBodyAreNone)
{
    uint16_t count = 7;
    EXPECT_EQ(ZRT_CONS_GetConsUnionSubTypeData(nullptr, &count), nullptr);
    EXPECT_EQ(count, 0);
}

} // namespace
