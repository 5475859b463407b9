// SPDX-License-Identifier: Apache-2.0
#include "foundation/search_dirs.h"

#include "foundation/context_record.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "platform/system.h"

namespace {

void ClearAllSearchDirs(ZrCtx *ctx)
{
    for (uint32_t i = 0; i < ctx->searchDirCount; ++i)
        zr::Release(&ctx->dict, ctx->searchDirs[i]);
    ctx->searchDirCount = 0;
}

} // namespace

uint32_t ZR_CTX_SetSearchDir(ZrCtx *ctx, const char *directory)
{
    if (ctx == nullptr || directory == nullptr)
        return ZR_ERR_INVALID;
    return ZR_CTX_UpdateSearchDirAgainstTbl(ctx, directory, 0);
}

uint32_t ZR_CTX_UnSetSearchDir(ZrCtx *ctx, const char *directory)
{
    if (ctx == nullptr)
        return ZR_OK;
    if (directory != nullptr)
        return ZR_CTX_UpdateSearchDirAgainstTbl(ctx, directory, 1);
    ClearAllSearchDirs(ctx);
    return ZR_OK;
}

char *ZR_CTX_FormatInputPath(const char *path)
{
    if (path == nullptr || path[0] != '/')
        return nullptr;
    char *copy = ZR_UTL_StrDup(path);
    if (copy == nullptr)
        return nullptr;
    for (size_t length = PAL_StrLen(copy); length > 1 && copy[length - 1] == '/'; --length)
        copy[length - 1] = '\0';
    return copy;
}

// A directory must exist to be removed, too: one that has vanished stays until all are removed.
uint32_t ZR_CTX_UpdateSearchDirAgainstTbl(ZrCtx *ctx, const char *directory, uint32_t remove)
{
    if (ctx == nullptr)
        return ZR_ERR_INVALID;
    zr::Owned<char> path(ZR_CTX_FormatInputPath(directory));
    if (!path || PAL_VFS_IsDirExist(path.get()) != 1)
        return ZR_ERR_BAD_DIR;
    int32_t position = ZR_CTX_FindSearchDirInTbl(ctx, path.get());
    bool listed = position >= 0;
    if (remove == 0 && !listed)
        return ZR_CTX_AppendSearchDirToTbl(ctx, path.get());
    if (remove != 0 && listed)
        ZR_CTX_ClearSearchDirAtPos(ctx, static_cast<uint32_t>(position));
    return ZR_OK;
}

int32_t ZR_CTX_FindSearchDirInTbl(const ZrCtx *ctx, const char *directory)
{
    if (ctx == nullptr || directory == nullptr)
        return -1;
    for (uint32_t i = 0; i < ctx->searchDirCount; ++i) {
        if (PAL_StrCmp(ctx->searchDirs[i], directory) == 0)
            return static_cast<int32_t>(i);
    }
    return -1;
}

void ZR_CTX_ClearSearchDirAtPos(ZrCtx *ctx, uint32_t position)
{
    if (ctx == nullptr || position >= ctx->searchDirCount)
        return;
    ZR_DICT_Remove(&ctx->dict, ctx->searchDirs[position]);
    for (uint32_t i = position; i + 1 < ctx->searchDirCount; ++i)
        ctx->searchDirs[i] = ctx->searchDirs[i + 1];
    ctx->searchDirs[--ctx->searchDirCount] = nullptr;
}

uint32_t ZR_CTX_AllocSearchDirBufferIfNeed(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return ZR_ERR_INVALID;
    if (ctx->searchDirCount < ctx->searchDirCapacity)
        return ZR_OK;
    size_t size = (static_cast<size_t>(ctx->searchDirCapacity) + 1) * sizeof(const char *);
    void *dirs = ctx->searchDirs == nullptr
                     ? g_zrMemMallocFunc(size)
                     : g_zrMemReAllocFunc(static_cast<void *>(ctx->searchDirs), size);
    if (dirs == nullptr)
        return ZR_ERR_NO_MEMORY;
    ctx->searchDirs = static_cast<const char **>(dirs);
    ctx->searchDirs[ctx->searchDirCapacity++] = nullptr;
    return ZR_OK;
}

uint32_t ZR_CTX_AppendSearchDirToTbl(ZrCtx *ctx, const char *directory)
{
    uint32_t status = ZR_CTX_AllocSearchDirBufferIfNeed(ctx);
    if (status != ZR_OK)
        return status;
    const char **slot = &ctx->searchDirs[ctx->searchDirCount];
    if (*slot != nullptr)
        return ZR_ERR_INVALID;
    *slot = ZR_DICT_Insert(&ctx->dict, directory);
    if (*slot == nullptr)
        return ZR_ERR_INVALID;
    ++ctx->searchDirCount;
    return ZR_OK;
}

void ZR_CTX_SetCurYinFile(ZrCtx *ctx, const char *path)
{
    ZR_CTX_ClearCurYinFile(ctx);
    if (ctx == nullptr || path == nullptr)
        return;
    const char *slash = PAL_StrRChr(path, '/');
    // A base name that does not fit leaves the buffer empty.
    strcpy_s(ctx->curYinFile, sizeof(ctx->curYinFile), slash != nullptr ? slash + 1 : path);
}

void ZR_CTX_ClearCurYinFile(ZrCtx *ctx)
{
    if (ctx != nullptr)
        ctx->curYinFile[0] = '\0';
}

const char *ZR_CTX_GetCurYinFile(const ZrCtx *ctx)
{
    return ctx != nullptr ? ctx->curYinFile : nullptr;
}
