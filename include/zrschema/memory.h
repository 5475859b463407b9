/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file memory.h
 * The process-wide allocation hooks.
 *
 * Every block of the library, of whatever context, is had and given back through three hooks. They
 * are the C library's malloc(), realloc() and free() until an application registers its own. What
 * libxml2 and the C library allocate for themselves does not go through them.
 */
#ifndef ZRSCHEMA_MEMORY_H
#define ZRSCHEMA_MEMORY_H
#include <zrschema/types.h>
#ifdef __cplusplus
extern "C" {
#endif

/**
 * Registers the allocation hooks of the process.
 *
 * This succeeds once in the life of a process: there is no way to unregister or to register again,
 * since blocks of the first hooks may be live. Register before the first context is created;
 * blocks that were allocated before would be given back to a function that does not know them.
 *
 * @param mallocFunc   returns a block of so many bytes, aligned for any type, or null; need not
 *                     zero it; null gives #ZR_ERR_INVALID
 * @param reallocFunc  changes a block's size and keeps its content, or returns null and leaves the
 *                     block alone; null gives #ZR_ERR_INVALID
 * @param freeFunc     takes a block back; never called with null; null gives #ZR_ERR_INVALID
 * @retval ZR_OK              the hooks are in force
 * @retval ZR_ERR_REGISTERED  hooks are registered already; nothing changed, even when they are the
 *                            same
 * @retval ZR_ERR_INVALID     a null argument; nothing changed
 * @retval ZR_ERR_LOCK        the lock around the registration could not be taken; nothing changed
 * @note Threads may call this at the same time, and one of them wins. The hooks themselves are read
 *       without a lock: not to be called while another thread is inside the library. They must
 *       allow calls from as many threads as use the library.
 */
ZR_API uint32_t ZR_MemRegisterCallBack(ZrMallocFunc mallocFunc, ZrReallocFunc reallocFunc,
                                       ZrFreeFunc freeFunc);

#ifdef __cplusplus
}
#endif
#endif
