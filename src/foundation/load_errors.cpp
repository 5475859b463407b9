#include "foundation/load_errors.h"

#include <cstddef>

#include "foundation/context_record.h"
#include "platform/memory.h"
#include "platform/secure.h"
#include "platform/text.h"

namespace {

constexpr size_t kMessageSize = 512;
constexpr uint32_t kCouplingStage = 1;

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

// A lock for which waiting writers come first: applications that read the errors all the time would
// otherwise keep loading waiting without end. POSIX leaves the order open, glibc's default prefers
// readers.
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
    auto *store = zr::AllocRecord<ZrErrMng>();
    if (store == nullptr)
        return ZR_ERR_NO_MEMORY;
    int result = InitLock(&store->lock);
    if (result != 0) {
        zr::Free(store);
        return static_cast<uint32_t>(result);
    }
    PAL_AVL3_Init(&store->tree);
    store->ctx = ctx;
    ctx->errMng = store;
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
    ZR_CTX_ClearModErrByLoadStage(store, moduleName, kCouplingStage);
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
