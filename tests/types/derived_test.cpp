#include <cstring>
#include <vector>

#include "schema/members/members.h"
#include "schema/module/module.h"
#include "support/alloc.h"
#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;

// Typedefs t1 to tN, each on the next, the last on int8; the leaf's type is t1, N references away.
std::string Chain(int length)
{
    std::string text;
    for (int i = 1; i <= length; ++i)
        text += zrtest::yin::TypeDef("t" + std::to_string(i),
                                     i < length ? "t" + std::to_string(i + 1) : "int8");
    return text;
}

struct Walk {
    std::vector<std::string> names;
    const ZrtRealType *last = nullptr;
    uint32_t result = 0;
};

uint32_t Remember(const char *moduleName, const char *typedefName, const ZrtRealType *type,
                  void *userData)
{
    auto *walk = static_cast<Walk *>(userData);
    walk->names.push_back(std::string(moduleName != nullptr ? moduleName : "-") + ":" +
                          (typedefName != nullptr ? typedefName : "-"));
    walk->last = type;
    return walk->result;
}

TEST(DerivedChain, Of128ReferencesValidates)
{
    Leaf leaf("<type name=\"t1\"/>", Chain(128));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.CheckElement("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(DerivedChain, Of129ReferencesValidates)
{
    Leaf leaf("<type name=\"t1\"/>", Chain(129));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.CheckElement("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(DerivedChain, Of130ReferencesIsRefused)
{
    Leaf leaf("<type name=\"t1\"/>", Chain(130));
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_DERIVED);
    EXPECT_EQ(leaf.CheckElement("5"), ZR_ERR_VALUE_DERIVED);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_DERIVED);
}

TEST(DerivedChain, WalkReportsEveryLinkOf128)
{
    Leaf leaf("<type name=\"t1\"/>", Chain(128));
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), ZR_OK);
    ASSERT_EQ(walk.names.size(), 128u);
    EXPECT_EQ(walk.names.front(), "m:t1");
    EXPECT_EQ(walk.names.back(), "m:t128");
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(walk.last), ZRT_TYPE_INT8);
}

TEST(DerivedChain, WalkReturns22AtThe129thLinkEvenWhenThatIsBuiltIn)
{
    Leaf leaf("<type name=\"t1\"/>", Chain(129));
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    EXPECT_EQ(walk.names.size(), 129u);
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(walk.last), ZRT_TYPE_INT8);
}

TEST(DerivedChain, WalkReportsAtMost129Links)
{
    Leaf leaf("<type name=\"t1\"/>", Chain(130));
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    ASSERT_EQ(walk.names.size(), 129u);
    EXPECT_EQ(walk.names.back(), "m:t129");
}

TEST(DerivedChain, WalkOfTypedefsThatNameEachOtherEnds)
{
    Leaf leaf("<type name=\"unknown\"/>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_DERIVED);
}

TEST(DerivedChain, InACircleIsRefusedAndWalkedToTheBound)
{
    Leaf leaf("<type name=\"a\"/>", "<typedef name=\"a\"><type name=\"b\"/></typedef>"
                                    "<typedef name=\"b\"><type name=\"a\"/></typedef>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_DERIVED);
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    EXPECT_EQ(walk.names.size(), 129u);
}

TEST(DerivedChain, WalkReportsABuiltInTypeOnceWithoutNames)
{
    Leaf leaf("<type name=\"int8\"/>");
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), ZR_OK);
    EXPECT_EQ(walk.names, std::vector<std::string>{"-:-"});
    EXPECT_EQ(walk.last, leaf.type());
    walk.result = 7;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), 7u);
}

TEST(DerivedChain, WalkReportsATypedefThatIsNotLoadedWithANullTypeAndEnds)
{
    Leaf leaf("<type name=\"unknown\"/>");
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), ZR_OK);
    EXPECT_EQ(walk.names, std::vector<std::string>{"m:unknown"});
    EXPECT_EQ(walk.last, nullptr);
}

TEST(DerivedChain, WalkStopsAtTheFirstNonZeroResult)
{
    Leaf leaf("<type name=\"t1\"/>", Chain(5));
    Walk walk;
    walk.result = 9;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), 9u);
    EXPECT_EQ(walk.names.size(), 1u);
}

TEST(DerivedChain, WalkReturns22ForNullArgumentsAndForATypeWithoutReference)
{
    Leaf leaf("<type name=\"int8\"/>");
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(nullptr, leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), nullptr, &walk),
              ZR_ERR_INVALID);
    ZrtRealType empty = {};
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(&empty, leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    EXPECT_TRUE(walk.names.empty());
}

TEST(DerivedType, IsFoundInAnotherModuleByNameAtEachValidation)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.Load("<module name=\"user\" xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\">"
                       "<namespace uri=\"urn:user\"/><prefix value=\"u\"/>"
                       "<import module=\"types\"><prefix value=\"t\"/></import>"
                       "<leaf name=\"v\"><type name=\"t:small\"/></leaf></module>"),
              ZR_OK);
    ZrNode *node = ctx.Node("/user:v");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "5"), ZR_ERR_VALUE_DERIVED);
    ASSERT_EQ(ctx.LoadBody("types", "<typedef name=\"small\"><type name=\"int8\">"
                                    "<range value=\"0..9\"/></type></typedef>"),
              ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "5"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "10"), ZR_ERR_VALUE_RANGE);
    const char *moduleName = nullptr;
    EXPECT_STREQ(ZRT_TYPE_GetInheritedTypDefName(ZR_NODE_GetRealType(node), &moduleName), "small");
    EXPECT_STREQ(moduleName, "types");
}

TEST(DerivedType, MatchesTheTypedefAtTheEndOfItsChain)
{
    Leaf leaf("<type name=\"t1\"/>", Chain(3));
    const ZrtRealType *last = ZR_MOD_GetRealTypeByTypDefName(leaf.context().Module("m"), "t3");
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(leaf.Matched("5"), last);
    EXPECT_EQ(leaf.Matched("500"), nullptr);
}

// A body of the derived kind with the two names, in a context.
struct DerivedBody {
    explicit DerivedBody(ZrCtx *owner, const char *moduleName, const char *typedefName)
        : ctx(owner), body(static_cast<ZrtConsDerived *>(ZRT_CONS_CreateConsDataBodyWithDerived(1)))
    {
        body->moduleName = ZR_DICT_Insert(&ctx->dict, moduleName);
        body->typedefName = ZR_DICT_Insert(&ctx->dict, typedefName);
    }
    ~DerivedBody() { ZRT_CONS_DestroyConsDataBodyWithDerived(ctx, body); }
    ZrCtx *ctx;
    ZrtConsDerived *body;
};

TEST(DerivedUpdate, ResolvesATypedefOfTheModule)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Chain(1)), ZR_OK);
    DerivedBody derived(ctx, "m", "t1");
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, ctx.Module("m")), ZR_OK);
    EXPECT_EQ(derived.body->resolved, ZR_MOD_GetRealTypeByTypDefName(ctx.Module("m"), "t1"));
}

TEST(DerivedUpdate, LeavesAReferenceIntoAnotherModuleAlone)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Chain(1)), ZR_OK);
    DerivedBody derived(ctx, "other", "t1");
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, ctx.Module("m")), ZR_OK);
    EXPECT_EQ(derived.body->resolved, nullptr);
}

TEST(DerivedUpdate, Returns22ForATypedefThatTheModuleDoesNotHave)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Chain(1)), ZR_OK);
    DerivedBody derived(ctx, "m", "unknown");
    EXPECT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, ctx.Module("m")),
              ZR_ERR_INVALID);
    EXPECT_EQ(derived.body->resolved, nullptr);
}

TEST(DerivedUpdate, FollowsATypedefThatMovedWhenTheModuleGotMore)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Chain(1)), ZR_OK);
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

TEST(DerivedCopy, HasTheNamesAndIsNotResolved)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Chain(1)), ZR_OK);
    DerivedBody derived(ctx, "m", "t1");
    ASSERT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, ctx.Module("m")), ZR_OK);
    auto *copy =
        static_cast<ZrtConsDerived *>(ZRT_CONS_CopyConsDataBodyWithDerived(ctx, derived.body));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->moduleName, derived.body->moduleName); // interned: the same text
    EXPECT_EQ(copy->typedefName, derived.body->typedefName);
    EXPECT_EQ(copy->resolved, nullptr);
    ZRT_CONS_DestroyConsDataBodyWithDerived(ctx, copy);
}

TEST(DerivedCopy, IntoAnotherContextIsNullWhicheverAllocationFails)
{
    zrtest::TestContext ctx;
    ZrtConsDerived body = {"m", "t1", nullptr};
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        void *copy = memory.Run([&] { return ZRT_CONS_CopyConsDataBodyWithDerived(ctx, &body); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        ZRT_CONS_DestroyConsDataBodyWithDerived(ctx, copy);
    });
    EXPECT_EQ(points, 5u); // the body, and two blocks for each name
}

TEST(DerivedCheck, RefusesATypedefThatIsNotResolvedWithoutAContextToLookItUpIn)
{
    ZrtConsDerived body = {"m", "t1", nullptr};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataDerived(&body, ZR_VALUE_STRING, "5", &validation),
        ZR_ERR_VALUE_DERIVED);
}

TEST(DerivedCheck, LooksTheTypedefUpWhenItIsNotResolved)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Chain(1)), ZR_OK);
    DerivedBody derived(ctx, "m", "t1");
    ZrtValidateCtx validation = {};
    validation.ctx = ctx;
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataDerived(derived.body, ZR_VALUE_STRING, "5",
                                                           &validation),
              ZR_OK);
    EXPECT_EQ(validation.derivedDepth, 1);
    EXPECT_EQ(validation.matched, ZR_MOD_GetRealTypeByTypDefName(ctx.Module("m"), "t1"));
}

TEST(DerivedCheck, RefusesADepthAbove128)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Chain(1)), ZR_OK);
    DerivedBody derived(ctx, "m", "t1");
    ZrtValidateCtx validation = {};
    validation.ctx = ctx;
    validation.derivedDepth = 128;
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataDerived(derived.body, ZR_VALUE_STRING, "5",
                                                           &validation),
              ZR_OK);
    EXPECT_EQ(validation.derivedDepth, 129);
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataDerived(derived.body, ZR_VALUE_STRING, "5",
                                                           &validation),
              ZR_ERR_VALUE_DERIVED);
}

TEST(DerivedName, IsReadFromTheBodyAndNullWithoutOne)
{
    zrtest::TestContext ctx;
    DerivedBody derived(ctx, "m", "t1");
    const char *moduleName = "?";
    EXPECT_STREQ(ZRT_CONS_GetConsDataInheritedTypDefName(derived.body, &moduleName), "t1");
    EXPECT_STREQ(moduleName, "m");
    EXPECT_EQ(ZRT_CONS_GetConsDataInheritedTypDefName(nullptr, &moduleName), nullptr);
    EXPECT_EQ(moduleName, nullptr);
    EXPECT_STREQ(ZRT_CONS_GetConsDataInheritedTypDefName(derived.body, nullptr), "t1");
}

} // namespace
