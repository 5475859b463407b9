// The entry points of the evaluator.
#include "xpath/evaluate.h"

#include <limits>

#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/text.h"
#include "xpath/lex.h"

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

// Expressions: the loop over operands and operators, and what an operand can be.

namespace {

bool ClosesSubExpr(uint32_t tokenType)
{
    return tokenType == ZR_XPATH_TOKEN_RPAREN || tokenType == ZR_XPATH_TOKEN_COMMA;
}

bool StartsPrimary(uint32_t tokenType)
{
    return tokenType == ZR_XPATH_TOKEN_LPAREN || tokenType == ZR_XPATH_TOKEN_FUNCNAME ||
           tokenType == ZR_XPATH_TOKEN_LITERAL || tokenType == ZR_XPATH_TOKEN_NUMBER;
}

// Sets the marker of a sub-expression and passes its "(" or ",".
uint32_t BeginSubExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    uint32_t type = zr::TokenTypeAt(lex, *cursor);
    if (type != ZR_XPATH_TOKEN_LPAREN && type != ZR_XPATH_TOKEN_COMMA)
        return ZR_XPATH_ERR_SUBEXPR_START;
    uint32_t status = ZR_XPATH_PushExprTypeToStack(ctx, ZR_XPATH_MARKER_CLASS, *cursor);
    if (status == ZR_OK)
        ++*cursor;
    return status;
}

// Looks the function up and passes its name; the cursor is then on the "(".
uint32_t BeginCall(const ZrXpathLex *lex, uint32_t *cursor, const zr::XpathFunction **functionOut)
{
    uint32_t length = 0;
    const char *name = ZR_XPATH_GetTokenExprByPos(lex, *cursor, nullptr, &length);
    const zr::XpathFunction *function = zr::FindXpathFunction(name, length);
    if (function == nullptr)
        return ZR_XPATH_ERR_UNKNOWN_FUNCTION;
    ++*cursor;
    if (zr::TokenTypeAt(lex, *cursor) != ZR_XPATH_TOKEN_LPAREN)
        return ZR_XPATH_ERR_PAREN;
    *functionOut = function;
    return ZR_OK;
}

// The parentheses that are open around the cursor, innermost on top: for those of a call the
// function that waits for its arguments, for plain ones kGroup.
//
// This is what the nested calls of a recursive descent would hold. The author of a condition
// chooses how deep it nests, and the thread that evaluates it may have a small stack.
class OpenParens {
public:
    OpenParens() = default;
    OpenParens(const OpenParens &) = delete;
    OpenParens &operator=(const OpenParens &) = delete;
    ~OpenParens() { PAL_DeleteStack(stack_); }

    bool Empty() const { return stack_ == nullptr || PAL_GetSize(stack_) == 0; }

    // At a "(" or a function's name: goes into the first sub-expression.
    uint32_t Open(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
    {
        const zr::XpathFunction *function = &kGroup;
        uint32_t status = ZR_OK;
        if (zr::TokenTypeAt(lex, *cursor) == ZR_XPATH_TOKEN_FUNCNAME)
            status = BeginCall(lex, cursor, &function);
        if (status == ZR_OK)
            status = Push(lex, function);
        return status != ZR_OK ? status : BeginSubExpr(ctx, lex, cursor);
    }

    // At the ")" or "," that has closed a sub-expression: goes on to the next argument, or past the
    // ")" and calls the function.
    uint32_t Close(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
    {
        const auto *function = static_cast<const zr::XpathFunction *>(PAL_Peep(stack_));
        bool isCall = function->run != nullptr;
        if (zr::TokenTypeAt(lex, *cursor) == ZR_XPATH_TOKEN_COMMA)
            return isCall ? BeginSubExpr(ctx, lex, cursor) : uint32_t{ZR_XPATH_ERR_PAREN};
        PAL_Pop(stack_);
        ++*cursor;
        return isCall ? function->run(ctx) : uint32_t{ZR_OK};
    }

private:
    static constexpr zr::XpathFunction kGroup{"", nullptr};

    uint32_t Push(const ZrXpathLex *lex, const zr::XpathFunction *function)
    {
        if (stack_ == nullptr)
            stack_ = PAL_CreateStack(ZR_XPATH_GetTokenNumber(lex));
        if (stack_ == nullptr)
            return ZR_ERR_NO_MEMORY;
        return PAL_Push(stack_, const_cast<zr::XpathFunction *>(function));
    }

    PalStack *stack_ = nullptr; // made with the first "("
};

uint32_t EvalOperand(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                     const zr::XpathView &view)
{
    return StartsPrimary(zr::TokenTypeAt(lex, *cursor))
               ? ZR_XPATH_EvalPrimaryExpr(ctx, lex, cursor)
               : zr::EvalLocationPath(ctx, lex, cursor, view);
}

} // namespace

uint32_t zr::EvalExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
                      const XpathView &view)
{
    OpenParens open;
    uint32_t status = ZR_OK;
    while (status == ZR_OK) {
        uint32_t type = zr::TokenTypeAt(lex, *cursor);
        uint32_t operatorClass = ZR_XPATH_GetTokenExprType(type);
        if (type == ZR_XPATH_TOKEN_NONE) {
            return ZR_XPATH_CalculateRemainExpr(ctx, lex, ZR_XPATH_END_OF_LIST);
        } else if (ClosesSubExpr(type)) {
            status = ZR_XPATH_CalculateRemainExpr(ctx, lex, ZR_XPATH_END_CLOSE);
            if (status != ZR_OK || open.Empty())
                return status;
            status = open.Close(ctx, lex, cursor);
        } else if (operatorClass != ZR_XPATH_CLASS_NONE) {
            status = ZR_XPATH_PushExprTypeToStackByPriority(ctx, lex, operatorClass, *cursor);
            ++*cursor;
        } else if (type == ZR_XPATH_TOKEN_LPAREN || type == ZR_XPATH_TOKEN_FUNCNAME) {
            status = open.Open(ctx, lex, cursor);
        } else {
            status = EvalOperand(ctx, lex, cursor, view);
        }
    }
    return status;
}

uint32_t ZR_XPATH_EvalExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    return zr::EvalExpr(ctx, lex, cursor, zr::kWholeTree);
}

uint32_t ZR_XPATH_EvalSubExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    uint32_t status = BeginSubExpr(ctx, lex, cursor);
    if (status == ZR_OK)
        status = ZR_XPATH_EvalExpr(ctx, lex, cursor);
    if (status != ZR_OK)
        return status;
    return ClosesSubExpr(zr::TokenTypeAt(lex, *cursor)) ? uint32_t{ZR_OK}
                                                        : uint32_t{ZR_XPATH_ERR_SUBEXPR_END};
}

uint32_t ZR_XPATH_EvalPathExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    return EvalOperand(ctx, lex, cursor, zr::kWholeTree);
}

uint32_t ZR_XPATH_EvalPrimaryExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    switch (zr::TokenTypeAt(lex, *cursor)) {
    case ZR_XPATH_TOKEN_LITERAL:
        return ZR_XPATH_EvalLiteral(ctx, lex, cursor);
    case ZR_XPATH_TOKEN_NUMBER:
        return ZR_XPATH_EvalNumber(ctx, lex, cursor);
    case ZR_XPATH_TOKEN_FUNCNAME:
        return ZR_XPATH_EvalFunctionCall(ctx, lex, cursor);
    case ZR_XPATH_TOKEN_LPAREN: {
        uint32_t status = ZR_XPATH_EvalSubExpr(ctx, lex, cursor);
        if (status != ZR_OK)
            return status;
        if (zr::TokenTypeAt(lex, *cursor) != ZR_XPATH_TOKEN_RPAREN)
            return ZR_XPATH_ERR_PAREN;
        ++*cursor;
        return ZR_OK;
    }
    default:
        return ZR_XPATH_ERR_BAD_PRIMARY;
    }
}

uint32_t ZR_XPATH_EvalLiteral(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    uint32_t length = 0;
    const char *text = ZR_XPATH_GetTokenExprByPos(lex, *cursor, nullptr, &length);
    uint32_t status = ZR_XPATH_PushStringToObjStack(ctx, text + 1, length - 2); // without quotes
    if (status == ZR_OK)
        ++*cursor;
    return status;
}

uint32_t ZR_XPATH_EvalNumber(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    uint32_t length = 0;
    const char *text = ZR_XPATH_GetTokenExprByPos(lex, *cursor, nullptr, &length);
    zr::Owned<char> digits(ZR_UTL_StrDupWithSpecifyLength(text, length));
    if (!digits)
        return ZR_ERR_NO_MEMORY;
    double value;
    if (PAL_StrToFloat(digits.get(), &value) != 0)
        value = std::numeric_limits<double>::quiet_NaN();
    uint32_t status = ZR_XPATH_PushNumberToObjStack(ctx, value);
    if (status == ZR_OK)
        ++*cursor;
    return status;
}

uint32_t ZR_XPATH_EvalFunctionCall(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    const zr::XpathFunction *function = nullptr;
    uint32_t status = BeginCall(lex, cursor, &function);
    if (status == ZR_OK)
        status = ZR_XPATH_EvalFunctionCallArguments(ctx, lex, cursor);
    return status != ZR_OK ? status : function->run(ctx);
}

uint32_t ZR_XPATH_EvalFunctionCallArguments(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                            uint32_t *cursor)
{
    uint32_t type = zr::TokenTypeAt(lex, *cursor);
    while (type != ZR_XPATH_TOKEN_NONE && type != ZR_XPATH_TOKEN_RPAREN) {
        uint32_t status = ZR_XPATH_EvalSubExpr(ctx, lex, cursor);
        if (status != ZR_OK)
            return status;
        type = zr::TokenTypeAt(lex, *cursor);
    }
    if (type != ZR_XPATH_TOKEN_RPAREN)
        return ZR_XPATH_ERR_PAREN;
    ++*cursor;
    return ZR_OK;
}
