// The binary operators.
#include "xpath/operators.h"

#include <cmath>
#include <iterator>

#include "platform/text.h"

namespace zr {

XpathOperatorFunc OperatorFunction(uint32_t operatorClass)
{
    // clang-format off
    static constexpr XpathOperatorFunc kFunctions[] = {
        ZR_XPATH_EvalOrExpr,         // 0 or
        ZR_XPATH_EvalAndExpr,        // 1 and
        ZR_XPATH_EvalEqualityExpr,   // 2 = !=
        ZR_XPATH_EvalRelationalExpr, // 3 > < >= <=
        nullptr,                     // 4 + -
        nullptr,                     // 5 * div mod
        nullptr,                     // 6 no operator has it
        nullptr,                     // 7 |
    };
    // clang-format on
    static_assert(std::size(kFunctions) == ZR_XPATH_CLASS_NONE);
    return operatorClass < std::size(kFunctions) ? kFunctions[operatorClass] : nullptr;
}

} // namespace zr

uint32_t ZR_XPATH_GetTokenOperationType(const ZrXpathLex *lex, uint32_t position)
{
    uint32_t type = ZR_XPATH_TOKEN_NONE;
    uint32_t length = 0;
    const char *text = ZR_XPATH_GetTokenExprByPos(lex, position, &type, &length);
    switch (type) {
    case ZR_XPATH_TOKEN_OR:
        return ZR_XPATH_OP_OR;
    case ZR_XPATH_TOKEN_AND:
        return ZR_XPATH_OP_AND;
    case ZR_XPATH_TOKEN_EQUALITY:
        return length == 1 ? ZR_XPATH_OP_EQUAL : ZR_XPATH_OP_NOT_EQUAL;
    case ZR_XPATH_TOKEN_RELATIONAL:
        if (length == 1)
            return *text == '>' ? ZR_XPATH_OP_GREATER : ZR_XPATH_OP_LESS;
        return *text == '>' ? ZR_XPATH_OP_GREATER_OR_EQUAL : ZR_XPATH_OP_LESS_OR_EQUAL;
    default:
        return ZR_XPATH_OP_NONE;
    }
}

uint32_t ZR_XPATH_IsEqualityOperator(uint32_t operation)
{
    return operation == ZR_XPATH_OP_EQUAL || operation == ZR_XPATH_OP_NOT_EQUAL ? 1 : 0;
}

uint32_t ZR_XPATH_IsRelationalOperator(uint32_t operation)
{
    return operation >= ZR_XPATH_OP_GREATER && operation <= ZR_XPATH_OP_LESS_OR_EQUAL ? 1 : 0;
}

uint32_t ZR_XPATH_EvalOrExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                             uint32_t operation)
{
    return ZR_XPATH_EvalLogicExpr(ctx, left, right, operation);
}

uint32_t ZR_XPATH_EvalAndExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                              uint32_t operation)
{
    return ZR_XPATH_EvalLogicExpr(ctx, left, right, operation);
}

uint32_t ZR_XPATH_EvalEqualityExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                   uint32_t operation)
{
    return ZR_XPATH_EvalCompareExpr(ctx, left, right, operation);
}

uint32_t ZR_XPATH_EvalRelationalExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                     uint32_t operation)
{
    return ZR_XPATH_EvalCompareExpr(ctx, left, right, operation);
}

namespace {

using Conversion = uint32_t (*)(ZrXpathObject *object);

uint32_t ConvertBoth(Conversion convert, ZrXpathObject *left, ZrXpathObject *right)
{
    uint32_t status = convert(left);
    return status != ZR_OK ? status : convert(right);
}

uint32_t NodeToString(ZrXpathObject *object)
{
    return object->kind == ZR_XPATH_OBJ_NODE ? ZR_XPATH_FuncStringInner(object) : uint32_t{ZR_OK};
}

// Booleans before numbers before strings (XPath 1.0, section 3.4); there are no nodes left.
uint32_t AreEqual(ZrXpathObject *left, ZrXpathObject *right, bool *equal)
{
    auto either = [&](uint32_t kind) { return left->kind == kind || right->kind == kind; };
    uint32_t status = ZR_OK;
    if (either(ZR_XPATH_OBJ_BOOLEAN)) {
        status = ConvertBoth(ZR_XPATH_FuncBooleanInner, left, right);
        *equal = status == ZR_OK && left->value.boolean == right->value.boolean;
    } else if (either(ZR_XPATH_OBJ_NUMBER)) {
        status = ConvertBoth(ZR_XPATH_FuncNumberInner, left, right);
        // NaN on either side makes the difference NaN, which is never below.
        *equal = status == ZR_OK &&
                 std::fabs(left->value.number - right->value.number) < zr::kXpathEpsilon;
    } else {
        *equal = PAL_StrCmp(left->value.string, right->value.string) == 0;
    }
    return status;
}

bool CompareNumbers(double left, double right, uint32_t operation)
{
    switch (operation) {
    case ZR_XPATH_OP_GREATER:
        return left > right;
    case ZR_XPATH_OP_LESS:
        return left < right;
    case ZR_XPATH_OP_GREATER_OR_EQUAL:
        return left >= right;
    default:
        return left <= right;
    }
}

} // namespace

uint32_t ZR_XPATH_EvalLogicExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                uint32_t operation)
{
    if (operation > ZR_XPATH_OP_AND)
        return ZR_ERR_INVALID;
    uint32_t status = ConvertBoth(ZR_XPATH_FuncBooleanInner, left, right);
    if (status != ZR_OK)
        return status;
    uint32_t l = left->value.boolean;
    uint32_t r = right->value.boolean;
    return ZR_XPATH_PushBooleanToObjStack(ctx, operation == ZR_XPATH_OP_OR ? l | r : l & r);
}

uint32_t ZR_XPATH_EvalCompareExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                  uint32_t operation)
{
    uint32_t equality = ZR_XPATH_IsEqualityOperator(operation);
    if (equality == 0 && ZR_XPATH_IsRelationalOperator(operation) == 0)
        return ZR_ERR_INVALID;
    uint32_t status = ConvertBoth(NodeToString, left, right);
    if (status != ZR_OK)
        return status;
    bool result;
    if (equality != 0) {
        status = AreEqual(left, right, &result);
        result = result == (operation == ZR_XPATH_OP_EQUAL);
    } else {
        status = ConvertBoth(ZR_XPATH_FuncNumberInner, left, right);
        result =
            status == ZR_OK && CompareNumbers(left->value.number, right->value.number, operation);
    }
    if (status != ZR_OK)
        return status;
    return ZR_XPATH_PushBooleanToObjStack(ctx, result ? 1 : 0);
}
