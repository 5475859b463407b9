// SPDX-License-Identifier: Apache-2.0
// The XPath evaluator for "when" and "must" (RFC 7950, sections 7.21.5 and 7.5.3).
//
// It decides conditions of a small subset of XPath 1.0: a node is one node, not a set; a step goes
// to a child, to the parent or stays; predicates are skipped; the operators are "or", "and" and the
// comparisons; the functions are those of functions.cpp.
#pragma once

#include <zrschema/types.h>

#include <libxml/tree.h>

#include <cstdint>

#include "platform/stack.h"
#include "xpath/lex.h"
#include "xpath/object.h"

extern "C" {
// Whether a condition holds on `contextNode`: ZR_OK when it does, ZR_XPATH_RESULT_FALSE when it
// does not. Another ZrXpathStatus, ZR_ERR_INVALID or ZR_ERR_NO_MEMORY says why it cannot be
// evaluated; ZR_ERR_INVALID also for a null argument. "/" starts at `root`, the node above the
// instance data, to which ".." never climbs. Every element carries its schema node in _private, or
// null. Nothing is changed and nothing is kept: conditions may be evaluated side by side as long as
// tree and schema stay as they are.
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalCondition(xmlNode *root, xmlNode *contextNode, const char *expression);
}

namespace zr {
struct RunMemory;
// The same for a condition of a validation run: it sees one operation alone, the child of `root` in
// which `contextNode` stands. `root` itself and what is beside the operation are not read. `memory`
// is the run's, or null.
uint32_t EvalConditionInRun(xmlNode *root, xmlNode *contextNode, const char *expression,
                            RunMemory *memory);
} // namespace zr

// One evaluation: its context and its two stacks.
//
// Operands are pushed on the object stack as they are met, operators wait on the operator stack
// until one that binds less tightly, the end of their sub-expression or the end of the expression
// comes; then they take the two topmost objects and leave their result. A sub-expression begins
// with a marker on the operator stack, which its operators cannot pass.

struct ZrXpathEvalCtx {
    xmlNode *contextNode; // relative paths start here
    xmlNode *rootNode;    // "/" starts here, ".." never climbs to it
    PalStack *operators;  // of ZrXpathOperatorEntry
    PalStack *objects;    // of ZrXpathObject
};

struct ZrXpathOperatorEntry {
    uint32_t operatorClass; // ZrXpathOperatorClass
    uint32_t position;      // of its token
};

// Why an expression ends.
enum ZrXpathEndMode : uint32_t {
    ZR_XPATH_END_OF_LIST = 0, // the tokens are used up
    ZR_XPATH_END_CLOSE = 1    // at ")" or ","
};

extern "C" {
// Makes both stacks, which hold as many entries as the expression has tokens: ZR_OK or
// ZR_ERR_NO_MEMORY.
ZR_API uint32_t ZR_XPATH_InitEvalCtx(ZrXpathEvalCtx *ctx, xmlNode *rootNode, xmlNode *contextNode,
                                     uint32_t tokenCount);
// Frees the stacks with everything that is left on them.
ZR_API void ZR_XPATH_DestroyEvalCtx(ZrXpathEvalCtx *ctx);
// The one object that is left, as a boolean: ZR_OK for true, ZR_XPATH_RESULT_FALSE for false;
// ZR_ERR_INVALID when none or several are left.
ZR_API uint32_t ZR_XPATH_GetEvalResult(ZrXpathEvalCtx *ctx);

// Object stack: ZR_OK or ZR_ERR_NO_MEMORY. A string is copied, `length` bytes of it.
ZR_API uint32_t ZR_XPATH_PushBooleanToObjStack(ZrXpathEvalCtx *ctx, uint32_t value);
ZR_API uint32_t ZR_XPATH_PushStringToObjStack(ZrXpathEvalCtx *ctx, const char *text,
                                              uint32_t length);
ZR_API uint32_t ZR_XPATH_PushNumberToObjStack(ZrXpathEvalCtx *ctx, double value);
ZR_API uint32_t ZR_XPATH_PushNodeToObjStack(ZrXpathEvalCtx *ctx, xmlNode *node);
// Puts another node into the object on top; ZR_ERR_INVALID when that is no node object.
ZR_API uint32_t ZR_XPATH_ReplaceNodeToTopElemInObjStack(ZrXpathEvalCtx *ctx, xmlNode *node);
// The node of the node object on top, or null.
ZR_API xmlNode *ZR_XPATH_GetStackTopObjNode(const ZrXpathEvalCtx *ctx);

// Operator stack: pushes an operator or the marker of a sub-expression: ZR_OK or ZR_ERR_NO_MEMORY.
ZR_API uint32_t ZR_XPATH_PushExprTypeToStack(ZrXpathEvalCtx *ctx, uint32_t operatorClass,
                                             uint32_t position);
// The same after applying the operators that bind at least as tightly, so that equal ones
// associate to the left.
ZR_API uint32_t ZR_XPATH_PushExprTypeToStackByPriority(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                       uint32_t operatorClass, uint32_t position);
// The first half of that.
ZR_API uint32_t ZR_XPATH_CalculateHighPriorityExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                   uint32_t operatorClass);
// Applies what is left down to the marker, which it takes off, or to the bottom of the stack.
// ZR_XPATH_ERR_PAREN when the end of the list meets a marker, or a close meets none.
ZR_API uint32_t ZR_XPATH_CalculateRemainExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                             uint32_t mode);
// Applies one operator, which is off the stack already, to the two objects on top.
ZR_API uint32_t ZR_XPATH_CalculateOneExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                          const ZrXpathOperatorEntry *entry);
}

namespace zr {
// Frees what is left on the stacks, which stay.
void EmptyStacks(ZrXpathEvalCtx *ctx);

// The type of a token, ZR_XPATH_TOKEN_NONE past the end.
inline uint32_t TokenTypeAt(const ZrXpathLex *lex, uint32_t position)
{
    uint32_t type = ZR_XPATH_TOKEN_NONE;
    ZR_XPATH_GetTokenExprByPos(lex, position, &type, nullptr);
    return type;
}
} // namespace zr

// Expressions, sub-expressions and function calls (XPath 1.0, sections 3.1 to 3.4): entries of one
// loop, which sees all that stands below the root node.
//
// Each function is given the token list and the cursor, the position of a token, which it moves
// past what it has evaluated. The value is left on the object stack.

extern "C" {
// An expression up to the end of the list, or to the ")" or "," that closes it, where the cursor
// stays. Sub-expressions inside it cost no call stack, however deep they are nested.
ZR_API uint32_t ZR_XPATH_EvalExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// A sub-expression: from "(" or "," to the next ")" or ",", where the cursor stays;
// ZR_XPATH_ERR_SUBEXPR_START where none begins.
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalSubExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// One operand, a primary expression or a location path, with everything between its parentheses;
// ZR_ERR_INVALID where none begins.
ZR_API uint32_t ZR_XPATH_EvalPathExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// The same for a primary expression alone; ZR_XPATH_ERR_BAD_PRIMARY where none begins.
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalPrimaryExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                         uint32_t *cursor);
// A literal or a number; a number that is none is NaN.
ZR_API uint32_t ZR_XPATH_EvalLiteral(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
ZR_API uint32_t ZR_XPATH_EvalNumber(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// A call, from the name of the function to past the ")".
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalFunctionCall(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                          uint32_t *cursor);
// The arguments of one, from the "(" to past the ")", without the function.
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalFunctionCallArguments(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                   uint32_t *cursor);
}

// Location paths of single nodes (XPath 1.0, section 2).
//
// Each function is given the token list and the cursor, the position of a token, which it moves
// past what it has evaluated. The node object on top of the object stack is where the path stands.
// They see all that stands below the root node.

extern "C" {
// A path from its "/" on; ZR_XPATH_ERR_ROOT_STEP for "//".
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalAbsoluteLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                  uint32_t *cursor);
// A path from its first step on; without a node it starts at the context node.
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalRelativeLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                  uint32_t *cursor);
// One step; a step by name takes its predicate along. ZR_XPATH_ERR_BAD_STEP for another token.
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalStep(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// The first child of that local name, of any kind of node; the prefix is not compared.
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalNameTest(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// The step "."; the node stays.
ZR_API uint32_t ZR_XPATH_EvalDot(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// The parent, unless that is the root node: then the node stays.
// For callers outside the library.
ZR_API uint32_t ZR_XPATH_EvalDDot(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// Passes over one predicate, if there is one; the first "]" closes it.
ZR_API uint32_t ZR_XPATH_SkipPredicate(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                       uint32_t *cursor);
}

namespace zr {
class ChildMemory;

// What the paths of an evaluation see.
struct XpathView {
    // Of what stands below the root node, only the child in which the context node stands: one
    // operation. The root node itself and what stands beside the operation may be anybody's: they
    // are neither followed nor read.
    bool operationAlone;
    ChildMemory *memory; // null: every name is looked for anew
};

// All that stands below the root node, as the functions above see it.
constexpr XpathView kWholeTree = {false, nullptr};

// Whether a token of that type begins a step.
bool StartsStep(uint32_t tokenType);
// A location path, absolute or relative; ZR_ERR_INVALID where none begins. The node object is
// pushed.
uint32_t EvalLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                          const XpathView &view);
} // namespace zr

// The binary operators: their codes and what they do (XPath 1.0, section 3.4).

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
// 1 for "=" and "!=", else 0.
ZR_API uint32_t ZR_XPATH_IsEqualityOperator(uint32_t operation);
// 1 for ">", "<", ">=" and "<=", else 0.
ZR_API uint32_t ZR_XPATH_IsRelationalOperator(uint32_t operation);

// Each converts the two operands in place, which stay the caller's, and pushes a boolean. ZR_OK,
// ZR_ERR_NO_MEMORY, or ZR_ERR_INVALID for an operation of another class.
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

// The functions of conditions, called on the object stack, where their arguments lie in order. They
// do not count them: what lies on top is taken.

extern "C" {
// not(): negates the object on top, as a boolean (XPath 1.0, section 4.3); ZR_ERR_INVALID when
// there is none.
ZR_API uint32_t ZR_XPATH_FuncNot(ZrXpathEvalCtx *ctx);
// derived-from() and derived-from-or-self() (RFC 7950, section 10.4): a node whose type is
// identityref, and the name of an identity.
ZR_API uint32_t ZR_XPATH_FuncDerivedFrom(ZrXpathEvalCtx *ctx);
ZR_API uint32_t ZR_XPATH_FuncDerivedFromOfSelf(ZrXpathEvalCtx *ctx);
}

namespace zr {

struct XpathFunction {
    const char *name;
    uint32_t (*run)(ZrXpathEvalCtx *ctx);
};

// The function of that name, `length` bytes at `text`, or null.
const XpathFunction *FindXpathFunction(const char *text, uint32_t length);

} // namespace zr
