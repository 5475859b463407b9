// SPDX-License-Identifier: Apache-2.0
// The binary operators: what they do, and when one that waits on the operator stack is applied.
#include "xpath/evaluate.h"

#include <cmath>
#include <iterator>

#include "foundation/array.h"
#include "platform/memory.h"
#include "platform/strings.h"

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

// The operator stack. What waits there is applied when an operator comes that binds less tightly,
// and at the end of the sub-expression.

namespace {

struct OperatorRow {
    ZrXpathOperatorClass operatorClass;
    zr::XpathOperatorFunc evaluate;
};

// clang-format off
// The classes behind these, arithmetic and unions, are not evaluated.
constexpr OperatorRow kOperators[] = {
    {ZR_XPATH_CLASS_OR,         ZR_XPATH_EvalOrExpr},
    {ZR_XPATH_CLASS_AND,        ZR_XPATH_EvalAndExpr},
    {ZR_XPATH_CLASS_EQUALITY,   ZR_XPATH_EvalEqualityExpr},
    {ZR_XPATH_CLASS_RELATIONAL, ZR_XPATH_EvalRelationalExpr},
};
// clang-format on
static_assert(zr::RowsInOrder(kOperators, &OperatorRow::operatorClass, ZR_XPATH_CLASS_OR,
                              ZR_XPATH_CLASS_ADDITIVE));

ZrXpathOperatorEntry *PopOperator(ZrXpathEvalCtx *ctx)
{
    return static_cast<ZrXpathOperatorEntry *>(PAL_Pop(ctx->operators));
}

ZrXpathObject *PopObject(ZrXpathEvalCtx *ctx)
{
    return static_cast<ZrXpathObject *>(PAL_Pop(ctx->objects));
}

} // namespace

zr::XpathOperatorFunc zr::OperatorFunction(uint32_t operatorClass)
{
    return operatorClass < std::size(kOperators) ? kOperators[operatorClass].evaluate : nullptr;
}

uint32_t ZR_XPATH_PushExprTypeToStackByPriority(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                uint32_t operatorClass, uint32_t position)
{
    uint32_t status = ZR_XPATH_CalculateHighPriorityExpr(ctx, lex, operatorClass);
    if (status != ZR_OK)
        return status;
    return ZR_XPATH_PushExprTypeToStack(ctx, operatorClass, position);
}

uint32_t ZR_XPATH_CalculateHighPriorityExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                            uint32_t operatorClass)
{
    for (;;) {
        const auto *top = static_cast<const ZrXpathOperatorEntry *>(PAL_Peep(ctx->operators));
        if (top == nullptr || top->operatorClass == ZR_XPATH_MARKER_CLASS ||
            top->operatorClass < operatorClass)
            return ZR_OK;
        zr::Owned<ZrXpathOperatorEntry> entry(PopOperator(ctx));
        uint32_t status = ZR_XPATH_CalculateOneExpr(ctx, lex, entry.get());
        if (status != ZR_OK)
            return status;
    }
}

uint32_t ZR_XPATH_CalculateRemainExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t mode)
{
    for (;;) {
        zr::Owned<ZrXpathOperatorEntry> entry(PopOperator(ctx));
        bool open = entry && entry->operatorClass == ZR_XPATH_MARKER_CLASS;
        if (!entry || open)
            return open == (mode == ZR_XPATH_END_CLOSE) ? uint32_t{ZR_OK}
                                                        : uint32_t{ZR_XPATH_ERR_PAREN};
        uint32_t status = ZR_XPATH_CalculateOneExpr(ctx, lex, entry.get());
        if (status != ZR_OK)
            return status;
    }
}

uint32_t ZR_XPATH_CalculateOneExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                   const ZrXpathOperatorEntry *entry)
{
    if (PAL_GetSize(ctx->objects) < 2)
        return ZR_ERR_INVALID;
    zr::OwnedObject right(PopObject(ctx));
    zr::OwnedObject left(PopObject(ctx));
    zr::XpathOperatorFunc evaluate = zr::OperatorFunction(entry->operatorClass);
    if (evaluate == nullptr)
        return ZR_XPATH_ERR_UNSUPPORTED_OPERATOR;
    uint32_t operation = ZR_XPATH_GetTokenOperationType(lex, entry->position);
    if (operation == ZR_XPATH_OP_NONE)
        return ZR_XPATH_ERR_BAD_OPERATION;
    return evaluate(ctx, left.get(), right.get(), operation);
}
