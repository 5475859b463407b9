// SPDX-License-Identifier: Apache-2.0
// One evaluation for tests: a token list and a context with its stacks over a data tree.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "xpath/data_tree.h"
#include "xpath/evaluate.h"

namespace zrtest {

class Evaluation {
public:
    explicit Evaluation(const DataTree &tree, const char *expression, const char *context = nullptr)
        : lex_(ZR_XPATH_ExprTokenize(expression))
    {
        EXPECT_NE(lex_, nullptr) << expression;
        EXPECT_EQ(ZR_XPATH_InitEvalCtx(&ctx_, tree.Root(),
                                       context != nullptr ? tree.Find(context) : tree.Top(), 64),
                  ZR_OK);
    }
    ~Evaluation()
    {
        ZR_XPATH_DestroyEvalCtx(&ctx_);
        ZR_XPATH_FreeXpathLex(lex_);
    }
    Evaluation(const Evaluation &) = delete;
    Evaluation &operator=(const Evaluation &) = delete;

    // Runs one of the functions that move the cursor.
    uint32_t Run(uint32_t (*function)(ZrXpathEvalCtx *, const ZrXpathLex *, uint32_t *))
    {
        return function(&ctx_, lex_, &cursor_);
    }
    uint32_t Cursor() const { return cursor_; }
    void MoveTo(uint32_t cursor) { cursor_ = cursor; }
    ZrXpathEvalCtx *Ctx() { return &ctx_; }
    ZrXpathLex *Lex() { return lex_; }
    uint32_t Objects() const { return PAL_GetSize(ctx_.objects); }
    uint32_t Operators() const { return PAL_GetSize(ctx_.operators); }
    const ZrXpathObject *Top() const
    {
        return static_cast<const ZrXpathObject *>(PAL_Peep(ctx_.objects));
    }

private:
    ZrXpathLex *lex_;
    ZrXpathEvalCtx ctx_{};
    uint32_t cursor_ = 0;
};

} // namespace zrtest
