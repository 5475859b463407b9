// SPDX-License-Identifier: Apache-2.0
#include "platform/memory.h"

#include <cstdlib>
#include <cstring>

ZrMallocFunc g_zrMemMallocFunc = std::malloc;
ZrReallocFunc g_zrMemReAllocFunc = std::realloc;
ZrFreeFunc g_zrMemFreeFunc = std::free;
pthread_mutex_t g_zrMemMutex = PTHREAD_MUTEX_INITIALIZER;
uint32_t g_zrMemRegistered = 0;

uint32_t ZR_MemRegisterCallBack(ZrMallocFunc mallocFunc, ZrReallocFunc reallocFunc,
                                ZrFreeFunc freeFunc)
{
    if (mallocFunc == nullptr || reallocFunc == nullptr || freeFunc == nullptr)
        return ZR_ERR_INVALID;
    if (pthread_mutex_lock(&g_zrMemMutex) != 0)
        return ZR_ERR_LOCK;
    uint32_t status = ZR_MemRegisterHandleInner(mallocFunc, reallocFunc, freeFunc);
    pthread_mutex_unlock(&g_zrMemMutex);
    return status;
}

// There is no way back and no second registration: blocks of the first hooks may be live.
uint32_t ZR_MemRegisterHandleInner(ZrMallocFunc mallocFunc, ZrReallocFunc reallocFunc,
                                   ZrFreeFunc freeFunc)
{
    if (g_zrMemRegistered != 0)
        return ZR_ERR_REGISTERED;
    g_zrMemMallocFunc = mallocFunc;
    g_zrMemReAllocFunc = reallocFunc;
    g_zrMemFreeFunc = freeFunc;
    g_zrMemRegistered = 1;
    return ZR_OK;
}

namespace zr {

void *AllocZeroed(size_t size)
{
    void *block = g_zrMemMallocFunc(size);
    if (block != nullptr)
        std::memset(block, 0, size);
    return block;
}

void Free(void *block)
{
    if (block != nullptr)
        g_zrMemFreeFunc(block);
}

} // namespace zr
