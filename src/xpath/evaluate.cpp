// The one entry point of the evaluator.
#include "xpath/evaluate.h"

#include "xpath/eval.h"
#include "xpath/expression.h"
#include "xpath/lex.h"

uint32_t ZR_XPATH_EvalCondition(xmlNode *root, xmlNode *contextNode, const char *expression)
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
        status = ZR_XPATH_EvalExpr(&ctx, lex, &cursor);
    if (status == ZR_OK)
        status = ZR_XPATH_GetEvalResult(&ctx);
    ZR_XPATH_DestroyEvalCtx(&ctx);
    ZR_XPATH_FreeXpathLex(lex);
    return status;
}
