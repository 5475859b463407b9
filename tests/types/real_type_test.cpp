// SPDX-License-Identifier: Apache-2.0
#include "types/real_type.h"

#include <cstring>

#include "foundation/array.h"
#include "platform/memory.h"
#include "schema/members/members.h"
#include "schema/module/module.h"
#include "support/alloc.h"
#include "types/constraints.h"
#include "types/derived_body.h"
#include "types/leaf.h"

namespace {

using zrtest::DerivedBody;
using zrtest::Leaf;
using zrtest::Member;
using zrtest::Typedefs;

// A type statement with a restriction of every kind.
constexpr char kEverything[] = R"(
<type name="everything">
  <base name="root"/><base name="root"/>
  <bit name="b0"/><bit name="b7"><position value="7"/></bit>
  <enum name="e0"><description><text>The first.</text></description></enum>
  <enum name="e1"/>
  <fraction-digits value="3"/>
  <length value="1..5|9"/>
  <path value="/m:other"/><require-instance value="false"/>
  <pattern value="a.*"/><pattern value="b"><modifier value="invert-match"/></pattern>
  <range value="1..max"/>
  <type name="int8"/>
  <type name="union"><type name="string"><length value="3"/></type></type>
</type>)";

constexpr char kDefinitions[] = R"(
<identity name="root"/>
<typedef name="everything"><type name="string"/></typedef>
<leaf name="other"><type name="int8"/></leaf>)";

// What the public scans tell of a type, as one text.
struct Describer {
    std::string text;

    void Describe(const ZrtRealType *type)
    {
        const char *moduleName = nullptr;
        const char *name = ZRT_TYPE_GetInheritedTypDefName(type, &moduleName);
        const char *path = ZR_TYPE_GetTypeConsDataLeafrefPath(type);
        text += std::to_string(type->baseType) + "/" + std::to_string(type->flags) + "/" +
                std::to_string(type->consCount) + (name != nullptr ? name : "") +
                (path != nullptr ? path : "") + std::to_string(ZR_TYPE_GetDecimal64Fraction(type)) +
                ";";
        ZR_TYPE_ScanNameValuePair(
            type,
            [](const char *item, const char *description, int64_t value, void *self) {
                static_cast<Describer *>(self)->text += std::string(item) + "=" +
                                                        std::to_string(value) +
                                                        (description ? description : "") + ";";
                return uint32_t{0};
            },
            this);
        ZR_TYPE_ScanStartEndPair(
            type,
            [](uint64_t start, uint64_t end, void *self) {
                static_cast<Describer *>(self)->text +=
                    std::to_string(start) + ".." + std::to_string(end) + ";";
                return uint32_t{0};
            },
            this);
        ZR_TYPE_ScanIdentRefBase(
            type,
            [](const char *module, const char *identity, void *self, const ZrsIdentBase *) {
                static_cast<Describer *>(self)->text += std::string(module) + ":" + identity + ";";
                return uint32_t{0};
            },
            this);
        ZR_TYPE_ScanPatternInvertMatch(
            type,
            [](const char *pattern, uint32_t, void *self, const ZrtPatternItem *) {
                static_cast<Describer *>(self)->text += std::string(pattern) + ";";
                return uint32_t{0};
            },
            this);
        ZR_TYPE_ScanUnionSubType(
            type,
            [](const char *, const char *, const ZrtRealType *member, void *self) {
                auto *describer = static_cast<Describer *>(self);
                describer->text += "(";
                describer->Describe(member);
                describer->text += ")";
                return uint32_t{0};
            },
            this);
    }
};

std::string Describe(const ZrtRealType *type)
{
    Describer describer;
    describer.Describe(type);
    return describer.text;
}

class FullType : public testing::Test {
protected:
    FullType() : ctx_(ZR_CTX_KEEP_DESCRIPTIONS)
    {
        status_ = ctx_.LoadBody("m", std::string(kDefinitions) + "<leaf name=\"v\">" + kEverything +
                                         "</leaf>");
    }
    void SetUp() override
    {
        ASSERT_EQ(status_, ZR_OK);
        type_ = ZR_NODE_GetRealType(ctx_.Node("/m:v"));
        ASSERT_NE(type_, nullptr);
    }
    zrtest::TestContext ctx_;
    uint32_t status_;
    const ZrtRealType *type_ = nullptr;
};

TEST_F(FullType, HasASlotPerKindInAscendingOrder)
{
    ASSERT_EQ(type_->consCount, ZRT_CONS_KIND_COUNT);
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        EXPECT_EQ(type_->constraints[kind].kind, kind);
        EXPECT_EQ(ZRT_TYPE_GetTypeConsDataByConsType(type_, kind), type_->constraints[kind].body);
    }
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataByConsType(type_, 10), nullptr);
}

TEST_F(FullType, IsDescribedByTheScans)
{
    EXPECT_EQ(Describe(type_),
              "0/7/10everything/m:other3;b0=0;b7=7;e0=0The first.;e1=1;1..5;9..9;1..0;m:root;"
              "m:root;a.*;b;(9/0/00;)(19/0/10;(14/3/10;3..3;))");
}

TEST_F(FullType, IsCopiedWhole)
{
    ZrtRealType *copy = ZRT_TYPE_CopyZrtRealType(ctx_, type_);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Describe(copy), Describe(type_));
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind)
        EXPECT_NE(copy->constraints[kind].body, type_->constraints[kind].body);
    ZRT_TYPE_DestroyZrtRealType(ctx_, copy);
}

TEST_F(FullType, IsCopiedWithoutInvertMatch)
{
    ZrtRealType *copy = ZRT_TYPE_CopyZrtRealType(ctx_, type_);
    ASSERT_NE(copy, nullptr);
    auto items = [](const ZrtRealType *type) {
        return static_cast<ZrtConsPattern *>(
                   ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_PATTERN))
            ->items;
    };
    EXPECT_EQ(items(type_)[1].invertMatch, 1u);
    EXPECT_EQ(items(copy)[1].invertMatch, 0u);
    ZRT_TYPE_DestroyZrtRealType(ctx_, copy);
}

TEST_F(FullType, IsCopiedIntoAnEmptyRecord)
{
    ZrtRealType destination = {};
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealTypeInner(ctx_, &destination, type_), ZR_OK);
    EXPECT_EQ(Describe(&destination), Describe(type_));
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx_, &destination);
    EXPECT_EQ(destination.baseType, ZRT_TYPE_DERIVED);
    EXPECT_EQ(destination.consCount, 0);
    EXPECT_EQ(destination.constraints, nullptr);
}

TEST_F(FullType, IsNotCopiedIntoARecordWithSlots)
{
    ZrtRealType destination = {};
    ASSERT_EQ(ZRT_TYPE_ExpandConstraintArray(&destination, 1), ZR_OK);
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealTypeInner(ctx_, &destination, type_), ZR_ERR_NO_MEMORY);
    ZRT_TYPE_DestroyTypeConstraintArray(ctx_, &destination);
}

TEST_F(FullType, CopyFailsCleanlyWhicheverAllocationFails)
{
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrtRealType destination = {};
        uint32_t status =
            memory.Run([&] { return ZRT_TYPE_CopyZrtRealTypeInner(ctx_, &destination, type_); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        if (memory.Failed()) {
            EXPECT_EQ(destination.constraints, nullptr);
            EXPECT_EQ(destination.consCount, 0);
        }
        ZRT_TYPE_DestroyZrtRealTypeInner(ctx_, &destination);
    });
    EXPECT_GT(points, 15u);
}

TEST_F(FullType, HeapCopyIsNullWhicheverAllocationFails)
{
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrtRealType *copy = memory.Run([&] { return ZRT_TYPE_CopyZrtRealType(ctx_, type_); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        ZRT_TYPE_DestroyZrtRealType(ctx_, copy);
    });
}

TEST(CopyType, WithoutSlotsCopiesTheBaseTypeAlone)
{
    zrtest::TestContext ctx;
    ZrtRealType source = {ZRT_TYPE_INT8, 0x3, 0, nullptr};
    ZrtRealType destination = {};
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealTypeInner(ctx, &destination, &source), ZR_OK);
    EXPECT_EQ(destination.baseType, uint32_t{ZRT_TYPE_INT8});
    EXPECT_EQ(destination.flags, 0);
    EXPECT_EQ(destination.consCount, 0);
    EXPECT_EQ(destination.constraints, nullptr);
}

TEST(CopyType, WithoutSlotsTakesOverRequireInstance)
{
    zrtest::TestContext ctx;
    ZrtRealType source = {ZRT_TYPE_INSTANCE_IDENTIFIER, ZRT_INSTANCE_OPTIONAL, 0, nullptr};
    ZrtRealType destination = {};
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealTypeInner(ctx, &destination, &source), ZR_OK);
    EXPECT_EQ(destination.flags, ZRT_INSTANCE_OPTIONAL);
}

TEST(CopyType, OfASlotWithoutABodyFailsAndLeavesTheDestinationEmpty)
{
    zrtest::TestContext ctx;
    ZrtRealType source = {};
    ASSERT_EQ(ZRT_TYPE_ExpandConstraintArray(&source, 2), ZR_OK);
    source.constraints[0] = {ZRT_CONS_FRACTION, ZRT_CONS_CreateConsDataBodyWithFraction(1)};
    source.constraints[1] = {ZRT_CONS_PATTERN, nullptr};
    source.consCount = 2;
    ZrtRealType destination = {};
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealTypeInner(ctx, &destination, &source), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(destination.consCount, 0);
    EXPECT_EQ(destination.constraints, nullptr);
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealType(ctx, &source), nullptr);
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, &source);
}

TEST(CopyType, OfNullOrWithoutAContextIsRefused)
{
    zrtest::TestContext ctx;
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealType(ctx, nullptr), nullptr);
    ZrtRealType type = {ZRT_TYPE_INT8, 0, 0, nullptr};
    ZrtRealType copy = {};
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealType(nullptr, &type), nullptr);
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealTypeInner(nullptr, &copy, &type), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealTypeInner(ctx, nullptr, &type), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(ZRT_TYPE_CopyZrtRealTypeInner(ctx, &copy, nullptr), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(copy.baseType, uint32_t{ZRT_TYPE_DERIVED});
}

TEST(ExpandConstraintArray, MakesZeroedSlotsOnce)
{
    ZrtRealType type = {};
    EXPECT_EQ(ZRT_TYPE_ExpandConstraintArray(&type, 3), ZR_OK);
    ASSERT_NE(type.constraints, nullptr);
    EXPECT_EQ(type.constraints[2].body, nullptr);
    EXPECT_EQ(type.consCount, 0);
    EXPECT_EQ(ZRT_TYPE_ExpandConstraintArray(&type, 3), ZR_ERR_INVALID);
    EXPECT_EQ(ZRT_TYPE_ExpandConstraintArray(nullptr, 3), ZR_ERR_INVALID);
    ZRT_TYPE_DestroyTypeConstraintArray(nullptr, &type);
    EXPECT_EQ(type.constraints, nullptr);
}

TEST(ExpandConstraintArray, Returns12WhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    ZrtRealType type = {};
    EXPECT_EQ(ZRT_TYPE_ExpandConstraintArray(&type, 3), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(type.constraints, nullptr);
}

TEST(DestroyType, AcceptsNullAndSlotsWithoutABody)
{
    zrtest::TestContext ctx;
    ZRT_TYPE_DestroyZrtRealType(ctx, nullptr);
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, nullptr);
    ZRT_TYPE_DestroyTypeConstraintArray(ctx, nullptr);
    ZrtRealType type = {};
    ASSERT_EQ(ZRT_TYPE_ExpandConstraintArray(&type, 2), ZR_OK);
    type.constraints[0].kind = ZRT_CONS_ENUM;
    type.constraints[1].kind = 12; // a kind without operations
    type.consCount = 2;
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, &type);
    EXPECT_EQ(type.consCount, 0);
}

TEST(TypeQueries, OfNullAndPlainTypes)
{
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataByConsType(nullptr, 0), nullptr);
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataDerived(nullptr), nullptr);
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataFractionVal(nullptr), 0u);
    EXPECT_EQ(ZRT_TYPE_IsTypeWithIdentref(nullptr), 0u);
    ZrtRealType type = {ZRT_TYPE_IDENTITYREF, 0, 0, nullptr};
    EXPECT_EQ(ZRT_TYPE_IsTypeWithIdentref(&type), 1u);
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataByConsType(&type, 0), nullptr);
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataDerived(&type), nullptr);
    const char *moduleName = "?";
    EXPECT_EQ(ZRT_TYPE_GetInheritedTypDefName(&type, &moduleName), nullptr);
    EXPECT_EQ(moduleName, nullptr);
    type.baseType = ZRT_TYPE_INT8;
    EXPECT_EQ(ZRT_TYPE_IsTypeWithIdentref(&type), 0u);
}

TEST(DerivedSlot, IsLookedForInTheFirstSlotAlone)
{
    ZrtConsDerived body = {};
    ZrtConsFraction fraction = {};
    ZrtConsSlot slots[] = {{ZRT_CONS_FRACTION, &fraction}, {ZRT_CONS_DERIVED, &body}};
    ZrtRealType type = {0, 0, 2, slots};
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataDerived(&type), nullptr);
    std::swap(slots[0], slots[1]);
    EXPECT_EQ(ZRT_TYPE_GetTypeConsDataDerived(&type), &body);
}

TEST(InvalidType, IsNullTypeTwentyOrDerivedWithoutSlots)
{
    EXPECT_EQ(ZRT_TYPE_IsInvalidType(nullptr), 1u);
    ZrtRealType type = {};
    EXPECT_EQ(ZRT_TYPE_IsInvalidType(&type), 1u);
    type.baseType = 20;
    EXPECT_EQ(ZRT_TYPE_IsInvalidType(&type), 1u);
    type.baseType = ZRT_TYPE_STRING;
    EXPECT_EQ(ZRT_TYPE_IsInvalidType(&type), 0u);
    ZrtConsSlot slot = {};
    type = {0, 0, 1, &slot};
    EXPECT_EQ(ZRT_TYPE_IsInvalidType(&type), 0u);
}

TEST(UpdateType, OfNullIs22AndOfAPlainTypeIsDone)
{
    Leaf leaf("<type name=\"int8\"/>");
    ZrMod *module = leaf.context().Module("m");
    ZrtRealType type = {ZRT_TYPE_INT8, 0, 0, nullptr};
    EXPECT_EQ(ZRT_TYPE_UpdateRealTypeDerivedFrom(nullptr, module), ZR_ERR_INVALID);
    EXPECT_EQ(ZRT_TYPE_UpdateRealTypeDerivedFrom(&type, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRT_TYPE_UpdateRealTypeDerivedFrom(&type, module), ZR_OK);
}

TEST(RecordLayout, IsTheSameInEveryBuild)
{
    EXPECT_EQ(sizeof(ZrtGenericSeg), 20u);
    EXPECT_EQ(sizeof(ZrtTypeSubElemCount), 22u);
    if (sizeof(void *) == 4) {
        EXPECT_EQ(sizeof(ZrtRealType), 12u);
        EXPECT_EQ(sizeof(ZrtConsSlot), 8u);
    }
}

TEST(DerivedUpdate, ResolvesATypedefOfTheModule)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Typedefs(1, "int8")), ZR_OK);
    DerivedBody derived(ctx, "m", "t1");
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, ctx.Module("m")), ZR_OK);
    EXPECT_EQ(derived.body->resolved, ZR_MOD_GetRealTypeByTypDefName(ctx.Module("m"), "t1"));
}

TEST(DerivedUpdate, LeavesAReferenceIntoAnotherModuleAlone)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Typedefs(1, "int8")), ZR_OK);
    DerivedBody derived(ctx, "other", "t1");
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, ctx.Module("m")), ZR_OK);
    EXPECT_EQ(derived.body->resolved, nullptr);
}

TEST(DerivedUpdate, Returns22ForATypedefThatTheModuleDoesNotHave)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Typedefs(1, "int8")), ZR_OK);
    DerivedBody derived(ctx, "m", "unknown");
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, ctx.Module("m")),
              ZR_ERR_INVALID);
    EXPECT_EQ(derived.body->resolved, nullptr);
}

TEST(DerivedUpdate, FollowsATypedefThatMovedWhenTheModuleGotMore)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Typedefs(1, "int8")), ZR_OK);
    ZrMod *module = ctx.Module("m");
    DerivedBody derived(ctx, "m", "t1");
    ASSERT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, module), ZR_OK);
    ZrtRealType type = {};
    type.baseType = ZRT_TYPE_STRING;
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module, "more", &type, nullptr), ZR_OK);
    ASSERT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, module), ZR_OK);
    EXPECT_EQ(derived.body->resolved, ZR_MOD_GetRealTypeByTypDefName(module, "t1"));
}

TEST(DerivedUpdate, Returns22WithoutABodyOrEitherName)
{
    Leaf leaf("<type name=\"int8\"/>");
    const ZrMod *module = leaf.context().Module("m");
    ZrtConsDerived noModule = {nullptr, "t1", nullptr};
    ZrtConsDerived noName = {"m", nullptr, nullptr};
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(nullptr, module), ZR_ERR_INVALID);
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(&noModule, module), ZR_ERR_INVALID);
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(&noName, module), ZR_ERR_INVALID);
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
