// One evaluation: its context and its two stacks.
//
// Operands are pushed on the object stack as they are met, operators wait on the operator stack
// until one that binds less tightly, the end of their sub-expression or the end of the expression
// comes; then they take the two topmost objects and leave their result. A sub-expression begins
// with a marker on the operator stack, which its operators cannot pass.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "platform/stack.h"
#include "xpath/lex.h"
#include "xpath/object.h"

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
// Makes both stacks, which hold as many entries as the expression has tokens. 0 or 12.
ZR_API uint32_t ZR_XPATH_InitEvalCtx(ZrXpathEvalCtx *ctx, xmlNode *rootNode, xmlNode *contextNode,
                                     uint32_t tokenCount);
// Frees the stacks with everything that is left on them.
ZR_API void ZR_XPATH_DestroyEvalCtx(ZrXpathEvalCtx *ctx);
// The one object that is left, as a boolean: 0 for true, ZR_XPATH_RESULT_FALSE for false; 22 when
// none or several are left.
ZR_API uint32_t ZR_XPATH_GetEvalResult(ZrXpathEvalCtx *ctx);

// Object stack: 0 or 12. A string is copied, `length` bytes of it.
ZR_API uint32_t ZR_XPATH_PushBooleanToObjStack(ZrXpathEvalCtx *ctx, uint32_t value);
ZR_API uint32_t ZR_XPATH_PushStringToObjStack(ZrXpathEvalCtx *ctx, const char *text,
                                              uint32_t length);
ZR_API uint32_t ZR_XPATH_PushNumberToObjStack(ZrXpathEvalCtx *ctx, double value);
ZR_API uint32_t ZR_XPATH_PushNodeToObjStack(ZrXpathEvalCtx *ctx, xmlNode *node);
// Puts another node into the object on top; 22 when that is no node object.
ZR_API uint32_t ZR_XPATH_ReplaceNodeToTopElemInObjStack(ZrXpathEvalCtx *ctx, xmlNode *node);
// The node of the node object on top, or null.
ZR_API xmlNode *ZR_XPATH_GetStackTopObjNode(const ZrXpathEvalCtx *ctx);

// Operator stack: pushes an operator or the marker of a sub-expression. 0 or 12.
ZR_API uint32_t ZR_XPATH_PushExprTypeToStack(ZrXpathEvalCtx *ctx, uint32_t operatorClass,
                                             uint32_t position);
// The same after applying the operators that bind at least as tightly, so that equal ones
// associate to the left.
ZR_API uint32_t ZR_XPATH_PushExprTypeToStackByPriority(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                       uint32_t operatorClass, uint32_t position);
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
// The type of a token, ZR_XPATH_TOKEN_NONE past the end.
inline uint32_t TokenTypeAt(const ZrXpathLex *lex, uint32_t position)
{
    uint32_t type = ZR_XPATH_TOKEN_NONE;
    ZR_XPATH_GetTokenExprByPos(lex, position, &type, nullptr);
    return type;
}
} // namespace zr
