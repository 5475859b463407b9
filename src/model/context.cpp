// SPDX-License-Identifier: Apache-2.0
#include "model/context.h"

#include <cstddef>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "model/module_records.h"
#include "platform/avl.h"
#include "platform/memory.h"
#include "platform/strings.h"

namespace {

// Stores a callback; a null context is ignored.
template <typename Func> void SetCallback(ZrCtx *ctx, Func ZrCtx::*field, Func func)
{
    if (ctx != nullptr)
        ctx->*field = func;
}

ZrCtx *NewRecord(uint32_t flags)
{
    if ((flags & ZR_CTX_STANDARD) == 0)
        return zr::New<ZrCtx>();
    auto *ctx = zr::New<ZrStandardCtx>();
    if (ctx != nullptr)
        PAL_AVL3_Init(&ctx->entryRules);
    return ctx;
}

} // namespace

ZrCtx *ZR_CTX_Create(uint32_t flags)
{
    zr::Owned<ZrCtx, zr::DestroyContextParts> ctx(NewRecord(flags));
    if (!ctx)
        return nullptr;
    ctx->flags = flags;
    if (ZR_DICT_Init(&ctx->dict) != ZR_OK)
        return nullptr;
    ZR_CTX_InitModuleTree(ctx.get());
    ZR_CTX_InitModRelationTree(ctx.get());
    // A context without an error store works; it only records nothing.
    ZR_CTX_InitErrMng(ctx.get());
    return ctx.release();
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

uint32_t ZR_CTX_SetPatternMatcher(ZrCtx *ctx, const ZrPatternMatcher *matcher)
{
    if (ctx == nullptr || zr::FirstModule(ctx) != nullptr)
        return ZR_ERR_INVALID;
    ZrPatternMatcher *copy = nullptr;
    if (matcher != nullptr) {
        if (matcher->compile == nullptr || matcher->match == nullptr || matcher->release == nullptr)
            return ZR_ERR_INVALID;
        copy = zr::New<ZrPatternMatcher>();
        if (copy == nullptr)
            return ZR_ERR_NO_MEMORY;
        *copy = *matcher;
    }
    zr::Free(ctx->patternMatcher);
    ctx->patternMatcher = copy;
    return ZR_OK;
}

namespace zr {

void DestroyContextParts(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return;
    zr::Free(ctx->patternMatcher);
    ZR_CTX_DeInitModRelationTree(ctx);
    ZR_CTX_UnSetSearchDir(ctx, nullptr);
    zr::Free(ctx->searchDirs);
    ZR_DICT_Destroy(&ctx->dict);
    zr::Free(ctx);
}

} // namespace zr

// The two trees of modules.

namespace {

constexpr PalAvlInfo kByName = {ZR_CTX_ModTreeKeyCompare, offsetof(ZrMod, name),
                                offsetof(ZrMod, byNameLink)};
constexpr PalAvlInfo kByNamespace = {ZR_CTX_ModTreeKeyCompare, offsetof(ZrMod, ns),
                                     offsetof(ZrMod, byNamespaceLink)};

} // namespace

void ZR_CTX_InitModuleTree(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return;
    PAL_AVL3_Init(&ctx->modulesByName);
    PAL_AVL3_Init(&ctx->modulesByNamespace);
}

// A module without a namespace equals every other one, so that it never sorts apart from them.
int32_t ZR_CTX_ModTreeKeyCompare(const void *keyA, const void *keyB)
{
    if (keyA == nullptr || keyB == nullptr)
        return 0;
    return PAL_StrCmp(static_cast<const char *>(keyA), static_cast<const char *>(keyB));
}

uint32_t ZR_CTX_AddModuleNode(ZrCtx *ctx, ZrMod *module)
{
    if (ctx == nullptr || module == nullptr)
        return ZR_ERR_FAILED;
    if (PAL_AVL3_Insert_Or_Find(&ctx->modulesByName, module, &kByName) != nullptr)
        return ZR_ERR_FAILED;
    if (PAL_AVL3_Insert_Or_Find(&ctx->modulesByNamespace, module, &kByNamespace) != nullptr) {
        PAL_AVL3_Delete(&ctx->modulesByName, module, &kByName);
        return ZR_ERR_FAILED;
    }
    return ZR_OK;
}

ZrMod *ZR_CTX_GetModuleByModName(const ZrCtx *ctx, const char *name)
{
    if (ctx == nullptr || name == nullptr)
        return nullptr;
    return static_cast<ZrMod *>(PAL_AVL3_Find(&ctx->modulesByName, name, &kByName));
}

ZrMod *ZR_CTX_GetModuleByModNs(const ZrCtx *ctx, const char *ns)
{
    if (ctx == nullptr || ns == nullptr)
        return nullptr;
    return static_cast<ZrMod *>(PAL_AVL3_Find(&ctx->modulesByNamespace, ns, &kByNamespace));
}

uint32_t ZR_CTX_ScanAllModules(const ZrCtx *ctx, ZrModuleScanFunc callback, void *userData)
{
    if (ctx == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    for (ZrMod *module = zr::FirstModule(ctx); module != nullptr;
         module = zr::NextModule(ctx, module)) {
        if (uint32_t result = callback(module, userData); result != 0)
            return result;
    }
    return ZR_OK;
}

namespace zr {

void RemoveModuleNode(ZrCtx *ctx, ZrMod *module)
{
    if (ctx == nullptr || module == nullptr)
        return;
    PAL_AVL3_Delete(&ctx->modulesByName, module, &kByName);
    PAL_AVL3_Delete(&ctx->modulesByNamespace, module, &kByNamespace);
}

ZrMod *FirstModule(const ZrCtx *ctx)
{
    if (ctx == nullptr)
        return nullptr;
    return static_cast<ZrMod *>(PAL_AVL3_First(&ctx->modulesByName, &kByName));
}

ZrMod *NextModule(const ZrCtx *ctx, const ZrMod *module)
{
    if (ctx == nullptr || module == nullptr)
        return nullptr;
    return static_cast<ZrMod *>(PAL_AVL3_Next(&ctx->modulesByName, module, &kByName));
}

} // namespace zr
