// SPDX-License-Identifier: Apache-2.0
// What the conditions of one run share: each expression, ready to be evaluated, and what was found
// among the many children of an element.
//
// A condition on a list stands once in the schema and is evaluated for every entry.
#pragma once

#include "xpath/child_memory.h"
#include "xpath/evaluate.h"
#include "xpath/lex.h"

namespace zr {

struct KeptExpression {
    ZrXpathLex *lex;       // null: the text is no expression, or memory ran out
    ZrXpathEvalCtx stacks; // empty; null before the first evaluation
};

// Expressions that live longer than this: one is known by its address. One that has no place,
// because another has it, or that is no expression, is tokenized again.
class ExpressionMemory {
public:
    ExpressionMemory() = default;
    ~ExpressionMemory();
    ExpressionMemory(const ExpressionMemory &) = delete;
    ExpressionMemory &operator=(const ExpressionMemory &) = delete;

    // Stays this memory's, until the next call.
    KeptExpression *Find(const char *expression);

private:
    static constexpr uint32_t kPlaces = 64; // conditions of one operation

    KeptExpression kept_[kPlaces] = {};
};

struct RunMemory {
    ChildMemory children;
    ExpressionMemory expressions;
};

} // namespace zr
