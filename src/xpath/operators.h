// The binary operators: their codes and what they do (XPath 1.0, section 3.4).
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "xpath/eval.h"

enum ZrXpathOperation : uint32_t {
    ZR_XPATH_OP_OR = 0,
    ZR_XPATH_OP_AND = 1,
    ZR_XPATH_OP_EQUAL = 2,
    ZR_XPATH_OP_NOT_EQUAL = 3,
    ZR_XPATH_OP_GREATER = 4,
    ZR_XPATH_OP_LESS = 5,
    ZR_XPATH_OP_GREATER_OR_EQUAL = 6,
    ZR_XPATH_OP_LESS_OR_EQUAL = 7,
    ZR_XPATH_OP_NONE = 8
};

extern "C" {
// The ZrXpathOperation of the token at a position.
ZR_API uint32_t ZR_XPATH_GetTokenOperationType(const ZrXpathLex *lex, uint32_t position);
// 1 for "=" and "!="; 1 for ">", "<", ">=" and "<="; else 0.
ZR_API uint32_t ZR_XPATH_IsEqualityOperator(uint32_t operation);
ZR_API uint32_t ZR_XPATH_IsRelationalOperator(uint32_t operation);

// Each converts the two operands in place, which stay the caller's, and pushes a boolean. 0, 12, or
// 22 for an operation of another class.
ZR_API uint32_t ZR_XPATH_EvalOrExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                    uint32_t operation);
ZR_API uint32_t ZR_XPATH_EvalAndExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                     uint32_t operation);
ZR_API uint32_t ZR_XPATH_EvalEqualityExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left,
                                          ZrXpathObject *right, uint32_t operation);
ZR_API uint32_t ZR_XPATH_EvalRelationalExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left,
                                            ZrXpathObject *right, uint32_t operation);
// "or" and "and": both operands are evaluated already, nothing is cut short.
ZR_API uint32_t ZR_XPATH_EvalLogicExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left,
                                       ZrXpathObject *right, uint32_t operation);
// The comparisons: a node compares by its value text, a missing one as the empty string.
ZR_API uint32_t ZR_XPATH_EvalCompareExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left,
                                         ZrXpathObject *right, uint32_t operation);
}

namespace zr {
using XpathOperatorFunc = uint32_t (*)(ZrXpathEvalCtx *ctx, ZrXpathObject *left,
                                       ZrXpathObject *right, uint32_t operation);
// The function of an operator class, null for a class that is not evaluated.
XpathOperatorFunc OperatorFunction(uint32_t operatorClass);
} // namespace zr
