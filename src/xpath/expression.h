// Expressions, sub-expressions and function calls (XPath 1.0, sections 3.1 to 3.4).
//
// Each function is given the token list and the cursor, the position of a token, which it moves
// past what it has evaluated. The value is left on the object stack.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "xpath/eval.h"

extern "C" {
// An expression up to the end of the list, or to the ")" or "," that closes it, where the cursor
// stays. Sub-expressions inside it cost no call stack, however deep they are nested.
ZR_API uint32_t ZR_XPATH_EvalExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// A sub-expression: from "(" or "," to the next ")" or ",", where the cursor stays.
ZR_API uint32_t ZR_XPATH_EvalSubExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// One operand: a primary expression or a location path.
ZR_API uint32_t ZR_XPATH_EvalPathExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
ZR_API uint32_t ZR_XPATH_EvalPrimaryExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                         uint32_t *cursor);
ZR_API uint32_t ZR_XPATH_EvalLiteral(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
ZR_API uint32_t ZR_XPATH_EvalNumber(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
ZR_API uint32_t ZR_XPATH_EvalFunctionCall(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                          uint32_t *cursor);
// The arguments, from the "(" to past the ")".
ZR_API uint32_t ZR_XPATH_EvalFunctionCallArguments(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                   uint32_t *cursor);
}

namespace zr {
struct XpathView;
// ZR_XPATH_EvalExpr() with a view of the tree of one's own.
uint32_t EvalExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                  const XpathView &view);
} // namespace zr
