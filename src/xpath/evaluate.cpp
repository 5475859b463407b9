// SPDX-License-Identifier: Apache-2.0
// The evaluator: the loop over operands and operators, and its entries.
#include "xpath/evaluate.h"

#include <limits>

#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "xpath/run_memory.h"

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

uint32_t RunNothing(ZrXpathEvalCtx *)
{
    return ZR_OK;
}

// What a "(" may belong to beside a function: a plain group, which has no commas, or a list of
// arguments alone.
constexpr zr::XpathFunction kGroup = {"", nullptr};
constexpr zr::XpathFunction kArgumentsAlone = {"", RunNothing};

// One run over the tokens. It calls nothing that calls it back: the author of a condition chooses
// how deep it nests, and the thread that evaluates it may have a small stack. So what the nested
// calls of a recursive descent would hold is kept in a list: for each "(" that is open around the
// cursor the function that waits for its arguments, or kGroup.
class Evaluation {
public:
    Evaluation(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor,
               const zr::XpathView &view)
        : ctx_(ctx), lex_(lex), cursor_(cursor), view_(view)
    {
    }
    Evaluation(const Evaluation &) = delete;
    Evaluation &operator=(const Evaluation &) = delete;

    // An expression up to the end of the list, or to the ")" or "," that closes it.
    uint32_t Expression()
    {
        uint32_t status = ZR_OK;
        while (status == ZR_OK) {
            uint32_t type = TokenType();
            if (type == ZR_XPATH_TOKEN_NONE)
                return ZR_XPATH_CalculateRemainExpr(ctx_, lex_, ZR_XPATH_END_OF_LIST);
            if (ClosesSubExpr(type) && NothingIsOpen())
                return ZR_XPATH_CalculateRemainExpr(ctx_, lex_, ZR_XPATH_END_CLOSE);
            status = Step(type);
        }
        return status;
    }

    // One operand, whole.
    uint32_t Operand() { return Complete(BeginOperand(TokenType())); }

    // One call, whatever the token's type is.
    uint32_t Call() { return Complete(OpenCall()); }

    // From the "(" of a call to past its ")".
    uint32_t Arguments()
    {
        uint32_t type = TokenType();
        if (type == ZR_XPATH_TOKEN_NONE)
            return ZR_XPATH_ERR_PAREN;
        if (type == ZR_XPATH_TOKEN_RPAREN) {
            ++*cursor_;
            return ZR_OK;
        }
        return Complete(Open(&kArgumentsAlone));
    }

private:
    uint32_t TokenType() const { return zr::TokenTypeAt(lex_, *cursor_); }
    bool NothingIsOpen() const { return PAL_GetSize(open_.get()) == 0; }

    // Goes on until what is open is closed. The end of the list does not come unnoticed: it meets
    // the marker of the sub-expression that is open.
    uint32_t Complete(uint32_t status)
    {
        while (status == ZR_OK && !NothingIsOpen())
            status = Step(TokenType());
        return status;
    }

    uint32_t Step(uint32_t type)
    {
        if (type == ZR_XPATH_TOKEN_NONE)
            return ZR_XPATH_CalculateRemainExpr(ctx_, lex_, ZR_XPATH_END_OF_LIST);
        if (ClosesSubExpr(type))
            return Close(type);
        uint32_t operatorClass = ZR_XPATH_GetTokenExprType(type);
        if (operatorClass == ZR_XPATH_CLASS_NONE)
            return BeginOperand(type);
        uint32_t status =
            ZR_XPATH_PushExprTypeToStackByPriority(ctx_, lex_, operatorClass, *cursor_);
        ++*cursor_;
        return status;
    }

    // Evaluates an operand, or goes into its first sub-expression.
    uint32_t BeginOperand(uint32_t type)
    {
        switch (type) {
        case ZR_XPATH_TOKEN_LPAREN:
            return Open(&kGroup);
        case ZR_XPATH_TOKEN_FUNCNAME:
            return OpenCall();
        case ZR_XPATH_TOKEN_LITERAL:
            return ZR_XPATH_EvalLiteral(ctx_, lex_, cursor_);
        case ZR_XPATH_TOKEN_NUMBER:
            return ZR_XPATH_EvalNumber(ctx_, lex_, cursor_);
        default:
            return zr::EvalLocationPath(ctx_, lex_, cursor_, view_);
        }
    }

    uint32_t OpenCall()
    {
        uint32_t length = 0;
        const char *name = ZR_XPATH_GetTokenExprByPos(lex_, *cursor_, nullptr, &length);
        const zr::XpathFunction *function = zr::FindXpathFunction(name, length);
        if (function == nullptr)
            return ZR_XPATH_ERR_UNKNOWN_FUNCTION;
        ++*cursor_;
        return TokenType() == ZR_XPATH_TOKEN_LPAREN ? Open(function) : uint32_t{ZR_XPATH_ERR_PAREN};
    }

    uint32_t Open(const zr::XpathFunction *function)
    {
        if (!open_)
            open_.reset(PAL_CreateStack(ZR_XPATH_GetTokenNumber(lex_)));
        uint32_t status = PAL_Push(open_.get(), const_cast<zr::XpathFunction *>(function));
        return status != ZR_OK ? status : BeginSubExpr(ctx_, lex_, cursor_);
    }

    // At the ")" or "," that ends a sub-expression: goes on to the next argument, or past the ")"
    // and calls the function.
    uint32_t Close(uint32_t type)
    {
        uint32_t status = ZR_XPATH_CalculateRemainExpr(ctx_, lex_, ZR_XPATH_END_CLOSE);
        if (status != ZR_OK)
            return status;
        const auto *function = static_cast<const zr::XpathFunction *>(PAL_Peep(open_.get()));
        bool isCall = function->run != nullptr;
        if (type == ZR_XPATH_TOKEN_COMMA)
            return isCall ? BeginSubExpr(ctx_, lex_, cursor_) : uint32_t{ZR_XPATH_ERR_PAREN};
        PAL_Pop(open_.get());
        ++*cursor_;
        return isCall ? function->run(ctx_) : uint32_t{ZR_OK};
    }

    ZrXpathEvalCtx *ctx_;
    const ZrXpathLex *lex_;
    uint32_t *cursor_;
    const zr::XpathView &view_;
    zr::Owned<PalStack, PAL_DeleteStack> open_; // made with the first "("
};

uint32_t Decide(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, const zr::XpathView &view)
{
    uint32_t cursor = 0;
    uint32_t status = Evaluation(ctx, lex, &cursor, view).Expression();
    return status != ZR_OK ? status : ZR_XPATH_GetEvalResult(ctx);
}

uint32_t DecideOnce(xmlNode *root, xmlNode *contextNode, const char *expression,
                    const zr::XpathView &view)
{
    if (root == nullptr || contextNode == nullptr || expression == nullptr)
        return ZR_ERR_INVALID;
    zr::Owned<ZrXpathLex, ZR_XPATH_FreeXpathLex> lex(ZR_XPATH_ExprTokenize(expression));
    if (!lex)
        return ZR_XPATH_ERR_TOKENIZE;
    ZrXpathEvalCtx ctx;
    uint32_t status =
        ZR_XPATH_InitEvalCtx(&ctx, root, contextNode, ZR_XPATH_GetTokenNumber(lex.get()));
    if (status != ZR_OK)
        return status;
    zr::Owned<ZrXpathEvalCtx, ZR_XPATH_DestroyEvalCtx> stacks(&ctx);
    return Decide(&ctx, lex.get(), view);
}

uint32_t DecideKept(zr::KeptExpression *kept, xmlNode *root, xmlNode *contextNode,
                    const zr::XpathView &view)
{
    if (kept->lex == nullptr)
        return ZR_XPATH_ERR_TOKENIZE;
    ZrXpathEvalCtx *ctx = &kept->stacks;
    uint32_t status = ZR_OK;
    if (ctx->operators == nullptr)
        status = ZR_XPATH_InitEvalCtx(ctx, root, contextNode, ZR_XPATH_GetTokenNumber(kept->lex));
    if (status != ZR_OK)
        return status;
    ctx->rootNode = root;
    ctx->contextNode = contextNode;
    zr::Owned<ZrXpathEvalCtx, zr::EmptyStacks> entries(ctx);
    return Decide(ctx, kept->lex, view);
}

} // namespace

uint32_t ZR_XPATH_EvalCondition(xmlNode *root, xmlNode *contextNode, const char *expression)
{
    return DecideOnce(root, contextNode, expression, zr::kWholeTree);
}

uint32_t zr::EvalConditionInRun(xmlNode *root, xmlNode *contextNode, const char *expression,
                                RunMemory *memory)
{
    if (memory == nullptr || root == nullptr || contextNode == nullptr || expression == nullptr)
        return DecideOnce(root, contextNode, expression, {true, nullptr});
    return DecideKept(memory->expressions.Find(expression), root, contextNode,
                      {true, &memory->children});
}

uint32_t ZR_XPATH_EvalExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    return Evaluation(ctx, lex, cursor, zr::kWholeTree).Expression();
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
    return Evaluation(ctx, lex, cursor, zr::kWholeTree).Operand();
}

uint32_t ZR_XPATH_EvalPrimaryExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    return StartsPrimary(zr::TokenTypeAt(lex, *cursor)) ? ZR_XPATH_EvalPathExpr(ctx, lex, cursor)
                                                        : uint32_t{ZR_XPATH_ERR_BAD_PRIMARY};
}

uint32_t ZR_XPATH_EvalFunctionCall(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t *cursor)
{
    return Evaluation(ctx, lex, cursor, zr::kWholeTree).Call();
}

uint32_t ZR_XPATH_EvalFunctionCallArguments(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                            uint32_t *cursor)
{
    return Evaluation(ctx, lex, cursor, zr::kWholeTree).Arguments();
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
