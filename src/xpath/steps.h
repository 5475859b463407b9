// Location paths of single nodes (XPath 1.0, section 2).
//
// Each function is given the token list and the cursor, the position of a token, which it moves
// past what it has evaluated. The node object on top of the object stack is where the path stands.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "xpath/eval.h"

extern "C" {
ZR_API uint32_t ZR_XPATH_EvalAbsoluteLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                  uint32_t *cursor);
ZR_API uint32_t ZR_XPATH_EvalRelativeLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                  uint32_t *cursor);
// One step; a step by name takes its predicate along.
ZR_API uint32_t ZR_XPATH_EvalStep(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// The first child of that local name, of any kind of node; the prefix is not compared.
ZR_API uint32_t ZR_XPATH_EvalNameTest(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
ZR_API uint32_t ZR_XPATH_EvalDot(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor);
// The parent, unless that is the root node: then the node stays.
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
// A location path, absolute or relative; 22 where none begins. The node object is pushed.
uint32_t EvalLocationPath(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                          const XpathView &view);
} // namespace zr
