// SPDX-License-Identifier: Apache-2.0
#include "foundation/load_errors.h"

#include <cstddef>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/search_dirs.h"
#include "foundation/statement_ids.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "platform/system.h"

namespace {

constexpr size_t kMessageSize = 512;
// The first failure of a module and the summary that follows are what matters.
constexpr uint32_t kEntryCapacity = 2;

constexpr PalAvlInfo kByModule = {ZR_CTX_CompareModuleName, offsetof(ZrErrModNode, moduleName),
                                  offsetof(ZrErrModNode, treeNode)};

// Holds the store's lock for the length of a scope; false when it could not be taken.
class ScopedLock {
public:
    ScopedLock(pthread_rwlock_t *lock, int (*take)(pthread_rwlock_t *))
        : lock_(take(lock) == 0 ? lock : nullptr)
    {
    }
    ~ScopedLock()
    {
        if (lock_ != nullptr)
            pthread_rwlock_unlock(lock_);
    }
    ScopedLock(const ScopedLock &) = delete;
    ScopedLock &operator=(const ScopedLock &) = delete;
    explicit operator bool() const { return lock_ != nullptr; }

private:
    pthread_rwlock_t *lock_;
};

ZrErrModNode *Find(const ZrErrMng *store, const char *moduleName)
{
    if (moduleName == nullptr)
        return nullptr;
    return static_cast<ZrErrModNode *>(PAL_AVL3_Find(&store->tree, moduleName, &kByModule));
}

void Delete(ZrErrMng *store, ZrErrModNode *node)
{
    PAL_AVL3_Delete(&store->tree, node, &kByModule);
    ZRS_MOD_FreeErrModNode(store->ctx, node);
}

// The first message of a module that has no node yet: the node goes into the tree only with the
// message in it, since a node says that something has been recorded.
uint32_t RecordFirst(ZrErrMng *store, const char *moduleName, uint32_t kind, const char *message)
{
    ZrErrModNode *node = ZRS_MOD_CreateErrNode(store->ctx, moduleName);
    if (node == nullptr)
        return ZR_ERR_NO_MEMORY;
    uint32_t status = ZRS_MOD_RecordErrorInfo(store->ctx, node, kind, message);
    if (status == ZR_OK)
        PAL_AVL3_Insert_Or_Find(&store->tree, node, &kByModule);
    else
        ZRS_MOD_FreeErrModNode(store->ctx, node);
    return status;
}

// A lock for which waiting writers come first: applications that read the errors all the time
// would otherwise keep loading waiting without end. POSIX leaves the order open, glibc's
// default prefers readers.
int InitLock(pthread_rwlock_t *lock)
{
#ifdef __GLIBC__
    pthread_rwlockattr_t attributes;
    pthread_rwlockattr_init(&attributes);
    pthread_rwlockattr_setkind_np(&attributes, PTHREAD_RWLOCK_PREFER_WRITER_NONRECURSIVE_NP);
    int result = pthread_rwlock_init(lock, &attributes);
    pthread_rwlockattr_destroy(&attributes);
    return result;
#else
    return pthread_rwlock_init(lock, nullptr);
#endif
}

} // namespace

uint32_t ZR_CTX_InitErrMng(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return ZR_ERR_INVALID;
    zr::Owned<ZrErrMng> store(zr::New<ZrErrMng>());
    if (!store)
        return ZR_ERR_NO_MEMORY;
    if (int result = InitLock(&store->lock); result != 0)
        return static_cast<uint32_t>(result);
    PAL_AVL3_Init(&store->tree);
    store->ctx = ctx;
    ctx->errMng = store.release();
    return ZR_OK;
}

void ZR_CTX_DestroyErrMng(ZrErrMng *store)
{
    if (store == nullptr)
        return;
    ZR_CTX_DestoryErrMngTree(store);
    pthread_rwlock_destroy(&store->lock);
    if (store->ctx->errMng == store)
        store->ctx->errMng = nullptr;
    zr::Free(store);
}

void ZR_CTX_DestoryErrMngTree(ZrErrMng *store)
{
    if (store == nullptr)
        return;
    ScopedLock lock(&store->lock, pthread_rwlock_wrlock);
    if (!lock)
        return;
    while (void *node = PAL_AVL3_First(&store->tree, &kByModule))
        Delete(store, static_cast<ZrErrModNode *>(node));
}

int32_t ZR_CTX_CompareModuleName(const void *keyA, const void *keyB)
{
    return PAL_StrCmp(static_cast<const char *>(keyA), static_cast<const char *>(keyB));
}

int32_t ZR_CTX_AddModError(ZrCtx *ctx, const char *moduleName, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    int32_t result = ZR_CTX_ImplAddModError(ctx, moduleName, ZR_LOAD_ERROR, format, args);
    va_end(args);
    return result;
}

int32_t ZR_CTX_AddModWarning(ZrCtx *ctx, const char *moduleName, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    int32_t result = ZR_CTX_ImplAddModError(ctx, moduleName, ZR_LOAD_WARNING, format, args);
    va_end(args);
    return result;
}

int32_t ZR_CTX_ImplAddModError(ZrCtx *ctx, const char *moduleName, uint32_t kind,
                               const char *format, va_list args)
{
    if (ctx == nullptr || moduleName == nullptr || format == nullptr || ctx->errMng == nullptr)
        return ZR_OK;
    char message[kMessageSize];
    int length = vsnprintf_truncated_s(message, sizeof(message), format, args);
    if (length < 0)
        return length;
    return static_cast<int32_t>(ZR_CTX_AddErrorMsgToMod(ctx->errMng, moduleName, kind, message));
}

uint32_t ZR_CTX_AddErrorMsgToMod(ZrErrMng *store, const char *moduleName, uint32_t kind,
                                 const char *message)
{
    if (store == nullptr || moduleName == nullptr || message == nullptr)
        return ZR_ERR_INVALID;
    ScopedLock lock(&store->lock, pthread_rwlock_wrlock);
    if (!lock)
        return ZR_ERR_LOCK;
    if (ZrErrModNode *node = Find(store, moduleName))
        return ZRS_MOD_RecordErrorInfo(store->ctx, node, kind, message);
    return RecordFirst(store, moduleName, kind, message);
}

ZrErrModNode *ZR_CTX_GetErrNodeByModName(ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr || ctx->errMng == nullptr)
        return nullptr;
    ScopedLock lock(&ctx->errMng->lock, pthread_rwlock_wrlock);
    return lock ? Find(ctx->errMng, moduleName) : nullptr;
}

void ZR_CTX_DeleteErrNodeByModName(ZrErrMng *store, const char *moduleName)
{
    if (store == nullptr)
        return;
    ScopedLock lock(&store->lock, pthread_rwlock_wrlock);
    if (!lock)
        return;
    if (ZrErrModNode *node = Find(store, moduleName))
        Delete(store, node);
}

void ZR_CTX_ClearModErrByLoadStage(ZrErrMng *store, const char *moduleName, uint32_t stage)
{
    if (store == nullptr)
        return;
    ScopedLock lock(&store->lock, pthread_rwlock_wrlock);
    if (lock)
        ZR_MOD_ClearErrByLoadStage(Find(store, moduleName), stage);
}

void ZR_CTX_ClearModCoupleErr(ZrErrMng *store, const char *moduleName)
{
    ZR_CTX_ClearModErrByLoadStage(store, moduleName, ZRS_STAGE_DEVIATION);
}

uint32_t ZR_CTX_ScanAllSchemaLoadFail(ZrCtx *ctx, ZrLoadFailScanFunc callback, void *userData)
{
    if (ctx == nullptr || ctx->errMng == nullptr || callback == nullptr)
        return ZR_OK;
    ZrErrMng *store = ctx->errMng;
    ScopedLock lock(&store->lock, pthread_rwlock_rdlock);
    if (!lock)
        return ZR_ERR_LOCK;
    uint32_t result = ZR_OK;
    void *node = PAL_AVL3_First(&store->tree, &kByModule);
    while (node != nullptr && result == ZR_OK) {
        result = ZRS_MOD_ScanModAllLoadFail(static_cast<ZrErrModNode *>(node), callback, userData);
        node = PAL_AVL3_Next(&store->tree, node, &kByModule);
    }
    return result;
}

// A module's node and its entries.

ZrErrModNode *ZRS_MOD_CreateErrNode(ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr)
        return nullptr;
    auto *node = zr::New<ZrErrModNode>();
    if (node == nullptr)
        return nullptr;
    PAL_AVL3_InitNode(&node->treeNode);
    node->moduleName = ZR_DICT_Insert(&ctx->dict, moduleName);
    if (node->moduleName == nullptr || zr::NewArray(&node->entries, kEntryCapacity) != ZR_OK) {
        ZRS_MOD_FreeErrModNode(ctx, node);
        return nullptr;
    }
    node->entryCapacity = kEntryCapacity;
    return node;
}

uint32_t ZRS_MOD_RecordErrorInfo(ZrCtx *ctx, ZrErrModNode *node, uint32_t kind, const char *message)
{
    if (node == nullptr)
        return ZR_ERR_INVALID;
    if (node->entryCount >= node->entryCapacity)
        return ZR_OK;
    uint32_t status = ZRS_MOD_SetErrInfoNode(ctx, &node->entries[node->entryCount], kind, message);
    if (status == ZR_OK)
        ++node->entryCount;
    return status;
}

uint32_t ZRS_MOD_SetErrInfoNode(ZrCtx *ctx, ZrErrInfo *entry, uint32_t kind, const char *message)
{
    if (ctx == nullptr || entry == nullptr || message == nullptr)
        return ZR_ERR_INVALID;
    const char *file = ZR_CTX_GetCurYinFile(ctx);
    *entry = ZrErrInfo{};
    entry->message = ZR_UTL_StrDup(message);
    entry->yinFile = *file != '\0' ? ZR_UTL_StrDup(file) : nullptr;
    if (entry->message == nullptr || (*file != '\0' && entry->yinFile == nullptr)) {
        ZRS_MOD_ClearErrInfoNode(entry);
        return ZR_ERR_NO_MEMORY;
    }
    entry->kind = kind;
    entry->time = PAL_SystimeGet();
    entry->loadStage = ctx->loadStage;
    return ZR_OK;
}

void ZRS_MOD_ClearErrInfoNode(ZrErrInfo *entry)
{
    if (entry == nullptr)
        return;
    zr::Free(entry->yinFile);
    zr::Free(entry->message);
    *entry = ZrErrInfo{};
}

void ZRS_MOD_FreeErrModNode(ZrCtx *ctx, ZrErrModNode *node)
{
    if (ctx == nullptr || node == nullptr)
        return;
    for (uint32_t i = 0; i < node->entryCount; ++i)
        ZRS_MOD_ClearErrInfoNode(&node->entries[i]);
    zr::Free(node->entries);
    ZR_DICT_Remove(&ctx->dict, node->moduleName);
    zr::Free(node);
}

void ZR_MOD_ClearErrByLoadStage(ZrErrModNode *node, uint32_t stage)
{
    if (node == nullptr)
        return;
    uint32_t kept = 0;
    for (uint32_t i = 0; i < node->entryCount; ++i) {
        if (node->entries[i].loadStage == stage)
            ZRS_MOD_ClearErrInfoNode(&node->entries[i]);
        else
            node->entries[kept++] = node->entries[i];
    }
    for (uint32_t i = kept; i < node->entryCount; ++i)
        node->entries[i] = ZrErrInfo{};
    node->entryCount = kept;
}

uint32_t ZRS_MOD_ScanModAllLoadFail(const ZrErrModNode *node, ZrLoadFailScanFunc callback,
                                    void *userData)
{
    if (node == nullptr || callback == nullptr)
        return ZR_OK;
    for (uint32_t i = 0; i < node->entryCount; ++i) {
        const ZrErrInfo *entry = &node->entries[i];
        uint32_t result = callback(node->moduleName, entry->yinFile, entry->kind, entry->message,
                                   entry->time, userData);
        if (result != 0)
            return result;
    }
    return ZR_OK;
}
