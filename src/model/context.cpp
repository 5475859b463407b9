#include "model/context.h"

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "model/module_tree.h"
#include "platform/memory.h"

namespace {

// Stores a callback; a null context is ignored.
template <typename Func> void SetCallback(ZrCtx *ctx, Func ZrCtx::*field, Func func)
{
    if (ctx != nullptr)
        ctx->*field = func;
}

} // namespace

ZrCtx *ZR_CTX_Create(uint32_t flags)
{
    auto *ctx = zr::AllocRecord<ZrCtx>();
    if (ctx == nullptr)
        return nullptr;
    ctx->flags = flags;
    if (ZR_DICT_Init(&ctx->dict) != ZR_OK) {
        zr::DestroyContextParts(ctx);
        return nullptr;
    }
    ZR_CTX_InitModuleTree(ctx);
    ZR_CTX_InitModRelationTree(ctx);
    // A context without an error store works; it only records nothing.
    ZR_CTX_InitErrMng(ctx);
    return ctx;
}

void ZR_CTX_SetLoadStage(ZrCtx *ctx, uint32_t stage)
{
    if (ctx != nullptr)
        ctx->loadStage = stage;
}

uint32_t ZR_CTX_GetLoadStage(const ZrCtx *ctx)
{
    return ctx != nullptr ? ctx->loadStage : 0;
}

uint32_t ZT_CTX_IgnoreImportModError(const ZrCtx *ctx)
{
    return ctx != nullptr && (ctx->flags & ZR_CTX_IGNORE_IMPORT_ERRORS) != 0 ? 1 : 0;
}

void ZR_CTX_SetPridataFreeFunc(ZrCtx *ctx, ZrPridataFreeFunc func)
{
    SetCallback(ctx, &ZrCtx::pridataFreeFunc, func);
}

void ZR_CTX_SetFirstAugChildRelinkFunc(ZrCtx *ctx, ZrNodeChangeFunc func)
{
    SetCallback(ctx, &ZrCtx::firstAugChildRelinkFunc, func);
}

void ZR_CTX_SetBeforeDeviateNotSupportFunc(ZrCtx *ctx, ZrNodeChangeFunc func)
{
    SetCallback(ctx, &ZrCtx::beforeDeviateNotSupportFunc, func);
}

void ZR_CTX_SetBeforeDeviateExtInstFunc(ZrCtx *ctx, ZrNodeChangeFunc func)
{
    SetCallback(ctx, &ZrCtx::beforeDeviateExtInstFunc, func);
}

void ZR_CTX_SetReloadModuleCbFunc(ZrCtx *ctx, ZrReloadModuleFunc func)
{
    SetCallback(ctx, &ZrCtx::reloadModuleFunc, func);
}

void ZR_CTX_SetExtInstFilterCbFunc(ZrCtx *ctx, ZrExtInstFilterFunc func)
{
    SetCallback(ctx, &ZrCtx::extInstFilterFunc, func);
}

namespace zr {

void DestroyContextParts(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return;
    ZR_CTX_DeInitModRelationTree(ctx);
    ZR_CTX_UnSetSearchDir(ctx, nullptr);
    zr::Free(ctx->searchDirs);
    ZR_DICT_Destroy(&ctx->dict);
    zr::Free(ctx);
}

} // namespace zr
