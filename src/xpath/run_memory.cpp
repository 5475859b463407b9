// SPDX-License-Identifier: Apache-2.0
#include "xpath/run_memory.h"

namespace {

void Clear(zr::KeptExpression &kept)
{
    ZR_XPATH_FreeXpathLex(kept.lex);
    ZR_XPATH_DestroyEvalCtx(&kept.stacks);
    kept = {};
}

} // namespace

namespace zr {

ExpressionMemory::~ExpressionMemory()
{
    for (KeptExpression &kept : kept_)
        Clear(kept);
}

KeptExpression *ExpressionMemory::Find(const char *expression)
{
    // Blocks begin at multiples of 16: their lowest bits say nothing.
    auto address = reinterpret_cast<uintptr_t>(expression);
    KeptExpression &kept = kept_[((address >> 4) ^ (address >> 12)) % kPlaces];
    if (kept.lex == nullptr || kept.lex->expression != expression) {
        Clear(kept);
        kept.lex = ZR_XPATH_ExprTokenize(expression);
    }
    return &kept;
}

} // namespace zr
