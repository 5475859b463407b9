// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "model/node_record.h"
#include "types/constraints.h"
#include "types/derived_body.h"
#include "types/leaf.h"

namespace {

using zrtest::DerivedBody;
using zrtest::Leaf;
using zrtest::Member;
using zrtest::Typedefs;
using zrtest::ValueElement;
using zrtest::yin::Leafref;
namespace yin = zrtest::yin;

TEST(Validate, OfASlotWithoutABodyIs0x7000)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        ZrtConsSlot slot = {kind, nullptr};
        ZrtRealType type = {ZRT_TYPE_STRING, 0, 1, &slot};
        ZrtValidateCtx validation = {};
        EXPECT_EQ(
            ZRT_TYPE_ValidateValueNodeAgainstRealType(&type, ZR_VALUE_STRING, "x", &validation),
            ZR_ERR_VALUE_NO_BODY)
            << kind;
    }
}

TEST(Validate, PassesOverASlotOfAnUnknownKind)
{
    ZrtConsSlot slot = {10, nullptr};
    ZrtRealType type = {ZRT_TYPE_STRING, 0, 1, &slot};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(&type, ZR_VALUE_STRING, "x", &validation),
              ZR_OK);
}

TEST(Validate, OfNullArgumentsIs22)
{
    ZrtRealType type = {ZRT_TYPE_STRING, 0, 0, nullptr};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(nullptr, 1, "x", &validation),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(&type, 1, "x", nullptr), ZR_ERR_INVALID);
}

TEST(Validate, RestoresTheContextAfterSuccess)
{
    ZrtRealType outer = {};
    ZrtRealType type = {ZRT_TYPE_INT8, 0x3, 0, nullptr};
    ZrtValidateCtx validation = {};
    validation.current = &outer;
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(&type, ZR_VALUE_STRING, "5", &validation),
              ZR_OK);
    EXPECT_EQ(validation.current, &outer);
    EXPECT_EQ(validation.explicitBounds, 0u);
    EXPECT_EQ(validation.baseType, uint32_t{ZRT_TYPE_INT8});
    EXPECT_EQ(validation.matched, nullptr);
}

TEST(Validate, LeavesTheContextAsItIsAfterAFailure)
{
    ZrtRealType outer = {};
    ZrtRealType type = {ZRT_TYPE_INT8, 0x3, 0, nullptr};
    ZrtValidateCtx validation = {};
    validation.current = &outer;
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(&type, ZR_VALUE_STRING, "x", &validation),
              ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(validation.current, &type);
    EXPECT_EQ(validation.explicitBounds, 1u);
}

TEST(Validate, MarksRelativeBoundsOnlyOutsideOfSelfContainedOnes)
{
    ZrtRealType type = {ZRT_TYPE_STRING, 0x5, 0, nullptr};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(&type, ZR_VALUE_STRING, "", &validation),
              ZR_OK);
    EXPECT_EQ(validation.parentBounds, 1u);
    validation = {};
    validation.explicitBounds = 1;
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(&type, ZR_VALUE_STRING, "", &validation),
              ZR_OK);
    EXPECT_EQ(validation.parentBounds, 0u);
    EXPECT_EQ(validation.explicitBounds, 1u);
}

TEST(Validate, KeepsTheFractionDigitsOfABuiltInType)
{
    Leaf leaf("<type name=\"decimal64\"><fraction-digits value=\"4\"/></type>");
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(leaf.type(), ZR_VALUE_STRING, "1.2345",
                                                        &validation),
              ZR_OK);
    EXPECT_EQ(validation.fractionDigits, 4);
}

TEST(Validate, ChecksTheBaseTypeBeforeItsRestrictions)
{
    Leaf leaf("<type name=\"int8\"><pattern value=\"[a-z]\"/></type>");
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_PATTERN);
}

TEST(Validate, ChecksTheTypedefBeforeTheTypesOwnRestrictions)
{
    Leaf leaf("<type name=\"t\"><length value=\"2\"/></type>",
              "<typedef name=\"t\"><type name=\"string\"><pattern value=\"[a-z]*\"/></type>"
              "</typedef>");
    EXPECT_EQ(leaf.Check("123"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(leaf.Check("abc"), ZR_ERR_VALUE_LENGTH);
    EXPECT_EQ(leaf.Check("ab"), ZR_OK);
}

TEST(Validate, ReachesEveryCodeThroughTheSchema)
{
    struct Row {
        uint32_t code;
        std::string type;
        const char *value;
    };
    const Row rows[] = {
        {0x7001, "<type name=\"unknown\"/>", "x"},
        {0x7002, "<type name=\"identityref\"><base name=\"b\"/></type>", "m:x"},
        {0x7003, "<type name=\"bits\"><bit name=\"a\"/></type>", "x"},
        {0x7004, "<type name=\"enumeration\"><enum name=\"a\"/></type>", "x"},
        {0x7005, "<type name=\"string\"><length value=\"2\"/></type>", "x"},
        {0x7006, "<type name=\"leafref\"><path value=\"/m:x\"/></type>", "x"},
        {0x7007, "<type name=\"string\"><pattern value=\"a\"/></type>", "x"},
        {0x7008, "<type name=\"int8\"/>", "x"},
        {0x7009, "<type name=\"union\"><type name=\"int8\"/></type>", "x"},
        {0x700A, "<type name=\"boolean\"/>", "x"},
        {0x700B, "<type name=\"binary\"/>", "x"},
        {0x700C, "<type name=\"empty\"/>", "x"},
    };
    for (const Row &row : rows) {
        Leaf leaf(row.type);
        ASSERT_NE(leaf.node(), nullptr) << row.type;
        EXPECT_EQ(leaf.Check(row.value), row.code) << row.type;
        EXPECT_EQ(leaf.CheckElement(row.value), row.code) << row.type;
    }
}

TEST(BaseTypeCheck, OfATypeWithoutOnePasses)
{
    ZrtValidateCtx validation = {};
    for (uint32_t type :
         {ZRT_TYPE_DERIVED, ZRT_TYPE_BITS, ZRT_TYPE_ENUMERATION, ZRT_TYPE_IDENTITYREF,
          ZRT_TYPE_INSTANCE_IDENTIFIER, ZRT_TYPE_LEAFREF, ZRT_TYPE_UNION, ZRT_TYPE_NONE})
        EXPECT_EQ(ZRT_TYPE_CheckBaseTypeSystemRestriction(type, ZR_VALUE_STRING, "?", &validation),
                  ZR_OK)
            << type;
    EXPECT_EQ(ZRT_TYPE_CheckBaseTypeSystemRestriction(ZRT_TYPE_BOOLEAN, ZR_VALUE_STRING, "?",
                                                      &validation),
              ZR_ERR_VALUE_BOOLEAN);
}

TEST(InputValue, IsTheStringOrTheElementsText)
{
    EXPECT_STREQ(ZRT_TYPE_GetInputValueAsSimpleStr(1, "text"), "text");
    EXPECT_EQ(ZRT_TYPE_GetInputValueAsSimpleStr(1, nullptr), nullptr);
    ValueElement element("text");
    EXPECT_STREQ(ZRT_TYPE_GetInputValueAsSimpleStr(2, element.get()), "text");
    ValueElement empty("");
    EXPECT_EQ(ZRT_TYPE_GetInputValueAsSimpleStr(2, empty.get()), nullptr);
    EXPECT_EQ(ZRT_TYPE_GetInputValueAsSimpleStr(2, nullptr), nullptr);
}

TEST(InputValue, OfAnyOtherKindIsNull)
{
    for (uint32_t kind : {0u, 3u, 4u, UINT32_MAX})
        EXPECT_EQ(ZRT_TYPE_GetInputValueAsSimpleStr(kind, "text"), nullptr);
}

TEST(MatchedType, IsTheFirstThatIsSet)
{
    ZrtRealType first = {};
    ZrtRealType second = {};
    ZrtValidateCtx validation = {};
    ZRT_TYPE_SetMatchRealType(&validation, &first);
    ZRT_TYPE_SetMatchRealType(&validation, &second);
    EXPECT_EQ(validation.matched, &first);
    ZRT_TYPE_SetMatchRealType(nullptr, &first);
}

TEST(MatchedType, OfAPlainTypeIsTheLeafsOwn)
{
    Leaf leaf("<type name=\"int8\"/>");
    EXPECT_EQ(leaf.Matched("5"), leaf.type());
    EXPECT_EQ(leaf.Matched("x"), nullptr);
}

TEST(ValidateNode, WithoutARealTypeIs22)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<container name=\"c\"/>"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(ctx.Node("/m:c"), ZR_VALUE_STRING, "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ValidateValue(nullptr, ZR_VALUE_STRING, "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_FindRealTypeMatchedValue(nullptr, ZR_VALUE_STRING, "x"), nullptr);
}

TEST(Nesting, HasABoundAndSaysWhenItIsReached)
{
    ZrtRealType type = {ZRT_TYPE_STRING, 0, 0, nullptr};
    ZrtValidateCtx outer = {};
    const ZrtRealType *matched = nullptr;
    outer.nesting = 2047;
    EXPECT_EQ(zr::ValidateNested(&type, ZR_VALUE_STRING, "x", &outer, nullptr, &matched), ZR_OK);
    EXPECT_EQ(outer.tooDeep, 0u);
    outer.nesting = 2048;
    EXPECT_EQ(zr::ValidateNested(&type, ZR_VALUE_STRING, "x", &outer, nullptr, &matched),
              ZR_ERR_VALUE_DERIVED);
    EXPECT_EQ(outer.tooDeep, 1u);
}

// Each typedef is a union that tries the one before it twice, so that a value that none takes is
// held against twice as many types with every level.
std::string Doubling(int levels)
{
    std::string typedefs = "<typedef name=\"t0\"><type name=\"int8\"/></typedef>";
    for (int i = 1; i <= levels; ++i) {
        std::string member = "<type name=\"t" + std::to_string(i - 1) + "\"/>";
        typedefs += "<typedef name=\"t" + std::to_string(i) + "\"><type name=\"union\">" + member +
                    member + "</type></typedef>";
    }
    return typedefs;
}

TEST(Nesting, OfUnionsThatMultiplyEndsAfterABoundedNumberOfTypes)
{
    for (const auto &[levels, status] :
         {std::pair{5, uint32_t{ZR_OK}}, std::pair{12, uint32_t{ZR_OK}},
          std::pair{40, uint32_t{ZR_ERR_VALUE_UNION}}}) {
        Leaf leaf("<type name=\"union\"><type name=\"t" + std::to_string(levels) +
                      "\"/><type name=\"boolean\"/></type>",
                  Doubling(levels));
        EXPECT_EQ(leaf.Check("7"), ZR_OK) << levels;
        EXPECT_EQ(leaf.Check("true"), status) << levels; // the last type that is tried
    }
}

TEST(DerivedChain, Of128ReferencesValidates)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(128, "int8"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.CheckElement("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(DerivedChain, Of129ReferencesValidates)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(129, "int8"));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.CheckElement("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_RANGE);
}

TEST(DerivedChain, Of130ReferencesIsRefused)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(130, "int8"));
    EXPECT_EQ(leaf.Check("5"), ZR_ERR_VALUE_DERIVED);
    EXPECT_EQ(leaf.CheckElement("5"), ZR_ERR_VALUE_DERIVED);
    EXPECT_EQ(leaf.Check("200"), ZR_ERR_VALUE_DERIVED);
}

TEST(DerivedChain, WalkOfTypedefsThatNameEachOtherEnds)
{
    Leaf leaf("<type name=\"unknown\"/>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_DERIVED);
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
    Leaf leaf("<type name=\"t1\"/>", Typedefs(3, "int8"));
    const ZrtRealType *last = ZR_MOD_GetRealTypeByTypDefName(leaf.context().Module("m"), "t3");
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(leaf.Matched("5"), last);
    EXPECT_EQ(leaf.Matched("500"), nullptr);
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
    ASSERT_EQ(ctx.LoadBody("m", Typedefs(1, "int8")), ZR_OK);
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
    ASSERT_EQ(ctx.LoadBody("m", Typedefs(1, "int8")), ZR_OK);
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
    EXPECT_EQ(leaf.Matched("true"),
              Member(ZR_NODE_GetRealType(leaf.context().Node("/m:third")), 1));
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
    EXPECT_EQ(leaf.Matched("5"), Member(leaf.type(), 1));
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
    EXPECT_EQ(leaf.Matched("true"), Member(ZR_NODE_GetRealType(leaf.context().Node("/m:a")), 2));
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

} // namespace
