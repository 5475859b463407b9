#include <cstring>

#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;
using zrtest::ValueElement;

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

} // namespace
