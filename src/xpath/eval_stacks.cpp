// SPDX-License-Identifier: Apache-2.0
// The evaluation context and the moves on its two stacks.
#include "foundation/text.h"
#include "platform/memory.h"
#include "xpath/evaluate.h"

namespace {

ZrXpathObject *TopObject(const ZrXpathEvalCtx *ctx)
{
    return static_cast<ZrXpathObject *>(PAL_Peep(ctx->objects));
}

// Pushes a copy; its string stays the caller's when that fails.
uint32_t PushObject(ZrXpathEvalCtx *ctx, const ZrXpathObject &source)
{
    zr::Owned<ZrXpathObject> object(zr::New<ZrXpathObject>());
    if (!object)
        return ZR_ERR_NO_MEMORY;
    *object = source;
    uint32_t status = PAL_Push(ctx->objects, object.get());
    if (status == ZR_OK)
        static_cast<void>(object.release());
    return status;
}

} // namespace

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

void zr::EmptyStacks(ZrXpathEvalCtx *ctx)
{
    while (void *entry = PAL_Pop(ctx->operators))
        zr::Free(entry);
    while (void *object = PAL_Pop(ctx->objects))
        ZR_XPATH_FreeObject(static_cast<ZrXpathObject *>(object));
}

void ZR_XPATH_DestroyEvalCtx(ZrXpathEvalCtx *ctx)
{
    zr::EmptyStacks(ctx);
    PAL_DeleteStack(ctx->operators);
    PAL_DeleteStack(ctx->objects);
    ctx->operators = nullptr;
    ctx->objects = nullptr;
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
        static_cast<void>(copy.release());
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
    zr::Owned<ZrXpathOperatorEntry> entry(zr::New<ZrXpathOperatorEntry>());
    if (!entry)
        return ZR_ERR_NO_MEMORY;
    *entry = ZrXpathOperatorEntry{operatorClass, position};
    uint32_t status = PAL_Push(ctx->operators, entry.get());
    if (status == ZR_OK)
        static_cast<void>(entry.release());
    return status;
}
