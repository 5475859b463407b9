// SPDX-License-Identifier: Apache-2.0
// The store of load errors and warnings, keyed by module name.
//
// The store is the one part of a context with a lock of its own. Each operation takes it for its
// own length, the scan for reading and every other one for writing; none may be called from inside
// a scan's callback. A null store is accepted everywhere: the store of a context is destroyed
// before its modules are, and one that could not be made records nothing.
#pragma once

#include <pthread.h>

#include <cstdarg>
#include <cstdint>
#include <zrschema/context.h>

#include "platform/avl.h"

// One error or warning.
struct ZrErrInfo {
    char *yinFile;      // owned, or null when no file was being loaded
    char *message;      // owned
    uint32_t kind;      // ZrLoadErrorKind
    uint32_t time;      // seconds since 1970-01-01 UTC
    uint32_t loadStage; // ZrsLoadStage
};

// The entries of one module.
struct ZrErrModNode {
    PalAvlNode treeNode;
    const char *moduleName; // interned
    uint32_t entryCount;
    uint32_t entryCapacity;
    ZrErrInfo *entries;
};

// The store.
struct ZrErrMng {
    PalAvlTree tree;
    pthread_rwlock_t lock;
    ZrCtx *ctx;
};

extern "C" {
// Makes the context's store: ZR_OK, ZR_ERR_INVALID for a null context, ZR_ERR_NO_MEMORY, or what
// the lock's initialisation gave.
ZR_API uint32_t ZR_CTX_InitErrMng(ZrCtx *ctx);
// Releases the store with all its entries; the context is then without one.
ZR_API void ZR_CTX_DestroyErrMng(ZrErrMng *store);
// Empties the store.
ZR_API void ZR_CTX_DestoryErrMngTree(ZrErrMng *store);
// Orders two module names byte by byte.
ZR_API int32_t ZR_CTX_CompareModuleName(const void *keyA, const void *keyB);

// Record an error or a warning against a module's name, with the context's current file and load
// stage. The text is cut to 511 bytes; a module's third entry and later ones are dropped. ZR_OK, a
// negative result when the text cannot be formatted, else the status of what failed.
ZR_API int32_t ZR_CTX_AddModError(ZrCtx *ctx, const char *moduleName, const char *format, ...)
    __attribute__((format(printf, 3, 4)));
ZR_API int32_t ZR_CTX_AddModWarning(ZrCtx *ctx, const char *moduleName, const char *format, ...)
    __attribute__((format(printf, 3, 4)));
ZR_API int32_t ZR_CTX_ImplAddModError(ZrCtx *ctx, const char *moduleName, uint32_t kind,
                                      const char *format, va_list args)
    __attribute__((format(printf, 4, 0)));
// The same with a finished text: ZR_OK, ZR_ERR_INVALID for a null argument, ZR_ERR_NO_MEMORY, or
// ZR_ERR_LOCK when the lock cannot be taken.
ZR_API uint32_t ZR_CTX_AddErrorMsgToMod(ZrErrMng *store, const char *moduleName, uint32_t kind,
                                        const char *message);

// The node of a module for which something has been recorded, or null.
ZR_API ZrErrModNode *ZR_CTX_GetErrNodeByModName(ZrCtx *ctx, const char *moduleName);
// Forgets what was recorded for a module.
ZR_API void ZR_CTX_DeleteErrNodeByModName(ZrErrMng *store, const char *moduleName);
// Forgets a module's entries of one load stage; the second one does so for ZRS_STAGE_DEVIATION.
ZR_API void ZR_CTX_ClearModErrByLoadStage(ZrErrMng *store, const char *moduleName, uint32_t stage);
ZR_API void ZR_CTX_ClearModCoupleErr(ZrErrMng *store, const char *moduleName);

// A module's node and its entries, under the caller's lock.

// A node without entries that stands in no tree, or null when memory runs out.
ZR_API ZrErrModNode *ZRS_MOD_CreateErrNode(ZrCtx *ctx, const char *moduleName);
// Fills the node's next entry; a full node drops the message. ZR_OK, ZR_ERR_INVALID for a null
// argument, or ZR_ERR_NO_MEMORY.
ZR_API uint32_t ZRS_MOD_RecordErrorInfo(ZrCtx *ctx, ZrErrModNode *node, uint32_t kind,
                                        const char *message);
// Fills an entry with copies of the message and of the current file's name: ZR_OK, ZR_ERR_INVALID
// for a null argument, or ZR_ERR_NO_MEMORY, and then the entry is zero.
ZR_API uint32_t ZRS_MOD_SetErrInfoNode(ZrCtx *ctx, ZrErrInfo *entry, uint32_t kind,
                                       const char *message);
// Releases an entry's texts and zeroes it.
ZR_API void ZRS_MOD_ClearErrInfoNode(ZrErrInfo *entry);
// Releases a node with its entries.
ZR_API void ZRS_MOD_FreeErrModNode(ZrCtx *ctx, ZrErrModNode *node);
// Removes the entries of one load stage; the others keep their order.
ZR_API void ZR_MOD_ClearErrByLoadStage(ZrErrModNode *node, uint32_t stage);
// Calls back for each entry in the order of recording: ZR_OK, or the first result that is not.
ZR_API uint32_t ZRS_MOD_ScanModAllLoadFail(const ZrErrModNode *node, ZrLoadFailScanFunc callback,
                                           void *userData);
}
