// SPDX-License-Identifier: Apache-2.0
#include "xpath/evaluate.h"

#include <gtest/gtest.h>

#include <limits>

#include "foundation/text.h"
#include "platform/memory.h"
#include "support/alloc.h"
#include "xpath/evaluation.h"

namespace {

using zrtest::DataTree;
using zrtest::Evaluation;

TEST(OperationType, IsReadFromTheOperatorsToken)
{
    const std::pair<const char *, uint32_t> operators[] = {
        {"1 or 1", ZR_XPATH_OP_OR},
        {"1 and 1", ZR_XPATH_OP_AND},
        {"1 = 1", ZR_XPATH_OP_EQUAL},
        {"1 != 1", ZR_XPATH_OP_NOT_EQUAL},
        {"1 > 1", ZR_XPATH_OP_GREATER},
        {"1 < 1", ZR_XPATH_OP_LESS},
        {"1 >= 1", ZR_XPATH_OP_GREATER_OR_EQUAL},
        {"1 <= 1", ZR_XPATH_OP_LESS_OR_EQUAL},
        {"1 + 1", ZR_XPATH_OP_NONE},
        {"1 - 1", ZR_XPATH_OP_NONE},
        {"1 * 1", ZR_XPATH_OP_NONE},
        {"1 div 1", ZR_XPATH_OP_NONE},
        {"1 mod 1", ZR_XPATH_OP_NONE},
        {"1 | 1", ZR_XPATH_OP_NONE},
        {"1 / 1", ZR_XPATH_OP_NONE},
        {"1 1 1", ZR_XPATH_OP_NONE},
    };
    for (const auto &[expression, operation] : operators) {
        ZrXpathLex *lex = ZR_XPATH_ExprTokenize(expression);
        EXPECT_EQ(ZR_XPATH_GetTokenOperationType(lex, 1), operation) << expression;
        EXPECT_EQ(ZR_XPATH_GetTokenOperationType(lex, 3), ZR_XPATH_OP_NONE) << expression;
        ZR_XPATH_FreeXpathLex(lex);
    }
}

TEST(OperationType, KnowsEqualityAndRelationalOperators)
{
    for (uint32_t operation = ZR_XPATH_OP_OR; operation <= ZR_XPATH_OP_NONE; ++operation) {
        EXPECT_EQ(ZR_XPATH_IsEqualityOperator(operation),
                  operation == ZR_XPATH_OP_EQUAL || operation == ZR_XPATH_OP_NOT_EQUAL);
        EXPECT_EQ(ZR_XPATH_IsRelationalOperator(operation),
                  operation >= ZR_XPATH_OP_GREATER && operation <= ZR_XPATH_OP_LESS_OR_EQUAL);
    }
}

TEST(OperatorTable, HoldsAFunctionForTheFourEvaluatedClasses)
{
    EXPECT_EQ(zr::OperatorFunction(0), &ZR_XPATH_EvalOrExpr);
    EXPECT_EQ(zr::OperatorFunction(1), &ZR_XPATH_EvalAndExpr);
    EXPECT_EQ(zr::OperatorFunction(2), &ZR_XPATH_EvalEqualityExpr);
    EXPECT_EQ(zr::OperatorFunction(3), &ZR_XPATH_EvalRelationalExpr);
    for (uint32_t operatorClass : {4u, 5u, 6u, 7u, 8u, 9u, UINT32_MAX})
        EXPECT_EQ(zr::OperatorFunction(operatorClass), nullptr) << operatorClass;
}

// Applies one operator function to two operands of any kind.
class Operators : public testing::Test {
protected:
    static ZrXpathObject Bool(bool value)
    {
        return {ZR_XPATH_OBJ_BOOLEAN, {.boolean = value ? 1u : 0u}};
    }
    static ZrXpathObject Num(double value) { return {ZR_XPATH_OBJ_NUMBER, {.number = value}}; }
    static ZrXpathObject Str(const char *text)
    {
        return {ZR_XPATH_OBJ_STRING, {.string = ZR_UTL_StrDup(text)}};
    }
    ZrXpathObject Node(const char *name) const
    {
        return {ZR_XPATH_OBJ_NODE, {.node = tree_.Find(name)}};
    }

    uint32_t Run(zr::XpathOperatorFunc function, ZrXpathObject left, ZrXpathObject right,
                 uint32_t operation)
    {
        uint32_t status = function(eval_.Ctx(), &left, &right, operation);
        for (ZrXpathObject *object : {&left, &right}) {
            if (object->kind == ZR_XPATH_OBJ_STRING)
                zr::Free(object->value.string);
        }
        return status;
    }
    // 1 or 0, the boolean that was pushed.
    uint32_t Value(zr::XpathOperatorFunc function, ZrXpathObject left, ZrXpathObject right,
                   uint32_t operation)
    {
        uint32_t before = eval_.Objects();
        EXPECT_EQ(Run(function, left, right, operation), ZR_OK);
        EXPECT_EQ(eval_.Objects(), before + 1);
        EXPECT_EQ(eval_.Top()->kind, ZR_XPATH_OBJ_BOOLEAN);
        uint32_t value = eval_.Top()->value.boolean;
        ZR_XPATH_FreeObject(static_cast<ZrXpathObject *>(PAL_Pop(eval_.Ctx()->objects)));
        return value;
    }
    // "=" holds and "!=" does not, or the other way round.
    void ExpectEqual(bool equal, ZrXpathObject left, ZrXpathObject right, ZrXpathObject leftAgain,
                     ZrXpathObject rightAgain)
    {
        EXPECT_EQ(Value(ZR_XPATH_EvalEqualityExpr, left, right, 2), equal ? 1u : 0u);
        EXPECT_EQ(Value(ZR_XPATH_EvalEqualityExpr, leftAgain, rightAgain, 3), equal ? 0u : 1u);
    }

    DataTree tree_{"<r><a>1.0</a><b>on</b><c/></r>"};
    Evaluation eval_{tree_, "1"};
};

#define EXPECT_EQUALITY(equal, left, right) ExpectEqual(equal, left, right, left, right)

TEST_F(Operators, OrAndAndConvertBothOperandsToBooleans)
{
    for (uint32_t l : {0u, 1u}) {
        for (uint32_t r : {0u, 1u}) {
            EXPECT_EQ(Value(ZR_XPATH_EvalOrExpr, Num(l), Bool(r != 0), 0), l | r);
            EXPECT_EQ(Value(ZR_XPATH_EvalAndExpr, Num(l), Bool(r != 0), 1), l & r);
        }
    }
    EXPECT_EQ(Value(ZR_XPATH_EvalAndExpr, Str("false"), Node("c"), 1), 1u);
    EXPECT_EQ(Value(ZR_XPATH_EvalAndExpr, Str(""), Node("c"), 1), 0u);
    EXPECT_EQ(Value(ZR_XPATH_EvalOrExpr, Node("missing"), Str(""), 0), 0u);
}

TEST_F(Operators, LogicRefusesOtherOperations)
{
    for (uint32_t operation = 2; operation <= 8; ++operation)
        EXPECT_EQ(Run(ZR_XPATH_EvalLogicExpr, Bool(true), Bool(true), operation), ZR_ERR_INVALID);
    EXPECT_EQ(eval_.Objects(), 0u);
}

TEST_F(Operators, CompareRefusesOtherOperations)
{
    for (uint32_t operation : {0u, 1u, 8u, 9u})
        EXPECT_EQ(Run(ZR_XPATH_EvalCompareExpr, Num(1), Num(1), operation), ZR_ERR_INVALID);
    EXPECT_EQ(eval_.Objects(), 0u);
}

TEST_F(Operators, EqualityComparesBooleansWhenEitherIsOne)
{
    EXPECT_EQUALITY(true, Bool(true), Bool(true));
    EXPECT_EQUALITY(true, Bool(true), Num(7));
    EXPECT_EQUALITY(false, Bool(true), Num(0));
    EXPECT_EQUALITY(true, Str("false"), Bool(true));
    EXPECT_EQUALITY(true, Bool(false), Str(""));
    EXPECT_EQUALITY(true, Bool(true), Node("b"));
    EXPECT_EQUALITY(true, Bool(false), Node("missing"));
}

TEST_F(Operators, EqualityTakesANodeByItsTextBeforeABoolean)
{
    EXPECT_EQUALITY(false, Bool(true), Node("c")); // there, but empty
}

TEST_F(Operators, EqualityComparesNumbersWhenEitherIsOne)
{
    EXPECT_EQUALITY(true, Num(1), Str("1.0"));
    EXPECT_EQUALITY(true, Node("a"), Num(1));
    EXPECT_EQUALITY(false, Num(2), Str("1"));
    EXPECT_EQUALITY(false, Num(0), Node("missing")); // the empty string is no number
}

TEST_F(Operators, EqualityTakesNumbersNearerThanTheEpsilonAsEqual)
{
    EXPECT_EQUALITY(true, Num(0), Num(0x1p-53));
    EXPECT_EQUALITY(false, Num(0), Num(0x1p-52));
    EXPECT_EQUALITY(true, Num(1), Num(1 - 0x1p-53));
}

TEST_F(Operators, EqualityNeverHoldsForNan)
{
    double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQUALITY(false, Num(nan), Num(nan));
    EXPECT_EQUALITY(false, Num(1), Str("x"));
    EXPECT_EQUALITY(false, Node("b"), Num(0));
}

TEST_F(Operators, EqualityComparesStringsByteByByte)
{
    EXPECT_EQUALITY(true, Str("on"), Node("b"));
    EXPECT_EQUALITY(false, Str("On"), Node("b"));
    EXPECT_EQUALITY(false, Str("1"), Node("a")); // "1.0"
    EXPECT_EQUALITY(true, Node("missing"), Str(""));
    EXPECT_EQUALITY(true, Node("missing"), Node("c"));
    EXPECT_EQUALITY(true, Str("\xC3\xA4"), Str("\xC3\xA4"));
}

TEST_F(Operators, RelationalComparesNumbers)
{
    const double values[] = {-1, 0, 0.5, 1};
    for (double l : values) {
        for (double r : values) {
            EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Num(l), Num(r), 4), l > r);
            EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Num(l), Num(r), 5), l < r);
            EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Num(l), Num(r), 6), l >= r);
            EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Num(l), Num(r), 7), l <= r);
        }
    }
    EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Str("10"), Str("9"), 4), 1u);
    EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Bool(true), Bool(false), 4), 1u);
    EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Node("a"), Num(1), 6), 1u);
}

TEST_F(Operators, RelationalNeverHoldsForNan)
{
    for (uint32_t operation = 4; operation <= 7; ++operation) {
        EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Str("abc"), Num(1), operation), 0u);
        EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Num(1), Node("missing"), operation), 0u);
        EXPECT_EQ(Value(ZR_XPATH_EvalRelationalExpr, Node("c"), Node("c"), operation), 0u);
    }
}

TEST_F(Operators, RefuseAnObjectOfAnUnknownKindOnEitherSide)
{
    ZrXpathObject unknown = {ZR_XPATH_OBJ_KIND_COUNT, {.number = 1}};
    for (uint32_t operation : {0u, 1u}) {
        EXPECT_EQ(Run(ZR_XPATH_EvalLogicExpr, unknown, Bool(true), operation), ZR_ERR_INVALID);
        EXPECT_EQ(Run(ZR_XPATH_EvalLogicExpr, Bool(true), unknown, operation), ZR_ERR_INVALID);
    }
    for (uint32_t operation = 2; operation <= 7; ++operation) {
        EXPECT_EQ(Run(ZR_XPATH_EvalCompareExpr, unknown, Num(1), operation), ZR_ERR_INVALID);
        EXPECT_EQ(Run(ZR_XPATH_EvalCompareExpr, Num(1), unknown, operation), ZR_ERR_INVALID);
    }
    EXPECT_EQ(eval_.Objects(), 0u);
}

TEST_F(Operators, FailWithoutMemory)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0, true);
    EXPECT_EQ(Run(ZR_XPATH_EvalLogicExpr, Num(1), Num(1), 0), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(Run(ZR_XPATH_EvalCompareExpr, Num(1), Num(1), 2), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(Run(ZR_XPATH_EvalCompareExpr, Node("a"), Num(1), 4), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(Run(ZR_XPATH_EvalCompareExpr, Num(1), Node("a"), 4), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(eval_.Objects(), 0u);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

} // namespace
