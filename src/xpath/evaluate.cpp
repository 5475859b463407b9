// The entry points of the evaluator.
#include "xpath/evaluate.h"

#include "xpath/eval.h"
#include "xpath/expression.h"
#include "xpath/lex.h"
#include "xpath/steps.h"

namespace {

uint32_t Evaluate(xmlNode *root, xmlNode *contextNode, const char *expression,
                  const zr::XpathView &view)
{
    if (root == nullptr || contextNode == nullptr || expression == nullptr)
        return ZR_ERR_INVALID;
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize(expression);
    if (lex == nullptr)
        return ZR_XPATH_ERR_TOKENIZE;
    ZrXpathEvalCtx ctx;
    uint32_t status = ZR_XPATH_InitEvalCtx(&ctx, root, contextNode, ZR_XPATH_GetTokenNumber(lex));
    uint32_t cursor = 0;
    if (status == ZR_OK)
        status = zr::EvalExpr(&ctx, lex, &cursor, view);
    if (status == ZR_OK)
        status = ZR_XPATH_GetEvalResult(&ctx);
    ZR_XPATH_DestroyEvalCtx(&ctx);
    ZR_XPATH_FreeXpathLex(lex);
    return status;
}

} // namespace

uint32_t ZR_XPATH_EvalCondition(xmlNode *root, xmlNode *contextNode, const char *expression)
{
    return Evaluate(root, contextNode, expression, zr::kWholeTree);
}

uint32_t zr::EvalConditionInRun(xmlNode *root, xmlNode *contextNode, const char *expression,
                                ChildMemory *memory)
{
    return Evaluate(root, contextNode, expression, {true, memory});
}
