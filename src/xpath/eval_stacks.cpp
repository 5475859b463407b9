// The evaluation context and the moves on its two stacks.
#include "foundation/text.h"
#include "platform/memory.h"
#include "xpath/evaluate.h"

uint32_t ZR_XPATH_InitEvalCtx(ZrXpathEvalCtx *ctx, xmlNode *rootNode, xmlNode *contextNode,
                              uint32_t tokenCount)
{
    *ctx = ZrXpathEvalCtx{contextNode, rootNode, nullptr, nullptr};
    ctx->operators = PAL_CreateStack(tokenCount);
    ctx->objects = PAL_CreateStack(tokenCount);
    if (ctx->operators != nullptr && ctx->objects != nullptr)
        return ZR_OK;
    ZR_XPATH_DestroyEvalCtx(ctx);
    return ZR_ERR_NO_MEMORY;
}

namespace {

ZrXpathOperatorEntry *PopOperator(ZrXpathEvalCtx *ctx)
{
    return static_cast<ZrXpathOperatorEntry *>(PAL_Pop(ctx->operators));
}

ZrXpathObject *PopObject(ZrXpathEvalCtx *ctx)
{
    return static_cast<ZrXpathObject *>(PAL_Pop(ctx->objects));
}

ZrXpathObject *TopObject(const ZrXpathEvalCtx *ctx)
{
    return static_cast<ZrXpathObject *>(PAL_Peep(ctx->objects));
}

} // namespace

void ZR_XPATH_DestroyEvalCtx(ZrXpathEvalCtx *ctx)
{
    if (ctx->operators != nullptr) {
        while (ZrXpathOperatorEntry *entry = PopOperator(ctx))
            zr::Free(entry);
        PAL_DeleteStack(ctx->operators);
        ctx->operators = nullptr;
    }
    if (ctx->objects != nullptr) {
        while (ZrXpathObject *object = PopObject(ctx))
            ZR_XPATH_FreeObject(object);
        PAL_DeleteStack(ctx->objects);
        ctx->objects = nullptr;
    }
}

uint32_t ZR_XPATH_GetEvalResult(ZrXpathEvalCtx *ctx)
{
    if (PAL_GetSize(ctx->objects) != 1)
        return ZR_ERR_INVALID;
    ZrXpathObject *result = TopObject(ctx);
    uint32_t status = ZR_XPATH_FuncBooleanInner(result);
    if (status != ZR_OK)
        return status;
    return result->value.boolean != 0 ? uint32_t{ZR_OK} : uint32_t{ZR_XPATH_RESULT_FALSE};
}

namespace {

// Pushes a copy; its string stays the caller's when that fails.
uint32_t PushObject(ZrXpathEvalCtx *ctx, const ZrXpathObject &source)
{
    auto *object = zr::New<ZrXpathObject>();
    if (object == nullptr)
        return ZR_ERR_NO_MEMORY;
    *object = source;
    uint32_t status = PAL_Push(ctx->objects, object);
    if (status != ZR_OK)
        zr::Free(object);
    return status;
}

} // namespace

uint32_t ZR_XPATH_PushBooleanToObjStack(ZrXpathEvalCtx *ctx, uint32_t value)
{
    return PushObject(ctx, {ZR_XPATH_OBJ_BOOLEAN, {.boolean = value != 0 ? 1u : 0u}});
}

uint32_t ZR_XPATH_PushStringToObjStack(ZrXpathEvalCtx *ctx, const char *text, uint32_t length)
{
    zr::Owned<char> copy(length != 0 ? ZR_UTL_StrDupWithSpecifyLength(text, length)
                                     : ZR_UTL_CreateEmptyString());
    if (!copy)
        return ZR_ERR_NO_MEMORY;
    uint32_t status = PushObject(ctx, {ZR_XPATH_OBJ_STRING, {.string = copy.get()}});
    if (status == ZR_OK)
        copy.release();
    return status;
}

uint32_t ZR_XPATH_PushNumberToObjStack(ZrXpathEvalCtx *ctx, double value)
{
    return PushObject(ctx, {ZR_XPATH_OBJ_NUMBER, {.number = value}});
}

uint32_t ZR_XPATH_PushNodeToObjStack(ZrXpathEvalCtx *ctx, xmlNode *node)
{
    return PushObject(ctx, {ZR_XPATH_OBJ_NODE, {.node = node}});
}

uint32_t ZR_XPATH_ReplaceNodeToTopElemInObjStack(ZrXpathEvalCtx *ctx, xmlNode *node)
{
    ZrXpathObject *object = TopObject(ctx);
    if (object == nullptr || object->kind != ZR_XPATH_OBJ_NODE)
        return ZR_ERR_INVALID;
    object->value.node = node;
    return ZR_OK;
}

xmlNode *ZR_XPATH_GetStackTopObjNode(const ZrXpathEvalCtx *ctx)
{
    const ZrXpathObject *object = TopObject(ctx);
    if (object == nullptr || object->kind != ZR_XPATH_OBJ_NODE)
        return nullptr;
    return object->value.node;
}

uint32_t ZR_XPATH_PushExprTypeToStack(ZrXpathEvalCtx *ctx, uint32_t operatorClass,
                                      uint32_t position)
{
    auto *entry = zr::New<ZrXpathOperatorEntry>();
    if (entry == nullptr)
        return ZR_ERR_NO_MEMORY;
    *entry = ZrXpathOperatorEntry{operatorClass, position};
    uint32_t status = PAL_Push(ctx->operators, entry);
    if (status != ZR_OK)
        zr::Free(entry);
    return status;
}

uint32_t ZR_XPATH_PushExprTypeToStackByPriority(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                                uint32_t operatorClass, uint32_t position)
{
    uint32_t status = ZR_XPATH_CalculateHighPriorityExpr(ctx, lex, operatorClass);
    if (status != ZR_OK)
        return status;
    return ZR_XPATH_PushExprTypeToStack(ctx, operatorClass, position);
}

uint32_t ZR_XPATH_CalculateHighPriorityExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                            uint32_t operatorClass)
{
    for (;;) {
        const auto *top = static_cast<const ZrXpathOperatorEntry *>(PAL_Peep(ctx->operators));
        if (top == nullptr || top->operatorClass == ZR_XPATH_MARKER_CLASS ||
            top->operatorClass < operatorClass)
            return ZR_OK;
        zr::Owned<ZrXpathOperatorEntry> entry(PopOperator(ctx));
        uint32_t status = ZR_XPATH_CalculateOneExpr(ctx, lex, entry.get());
        if (status != ZR_OK)
            return status;
    }
}

uint32_t ZR_XPATH_CalculateRemainExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex, uint32_t mode)
{
    for (;;) {
        zr::Owned<ZrXpathOperatorEntry> entry(PopOperator(ctx));
        bool open = entry && entry.get()->operatorClass == ZR_XPATH_MARKER_CLASS;
        if (!entry || open)
            return open == (mode == ZR_XPATH_END_CLOSE) ? uint32_t{ZR_OK}
                                                        : uint32_t{ZR_XPATH_ERR_PAREN};
        uint32_t status = ZR_XPATH_CalculateOneExpr(ctx, lex, entry.get());
        if (status != ZR_OK)
            return status;
    }
}

uint32_t ZR_XPATH_CalculateOneExpr(ZrXpathEvalCtx *ctx, const ZrXpathLex *lex,
                                   const ZrXpathOperatorEntry *entry)
{
    if (PAL_GetSize(ctx->objects) < 2)
        return ZR_ERR_INVALID;
    zr::ScopedObject right(PopObject(ctx));
    zr::ScopedObject left(PopObject(ctx));
    zr::XpathOperatorFunc evaluate = zr::OperatorFunction(entry->operatorClass);
    if (evaluate == nullptr)
        return ZR_XPATH_ERR_UNSUPPORTED_OPERATOR;
    uint32_t operation = ZR_XPATH_GetTokenOperationType(lex, entry->position);
    if (operation == ZR_XPATH_OP_NONE)
        return ZR_XPATH_ERR_BAD_OPERATION;
    return evaluate(ctx, left.get(), right.get(), operation);
}
