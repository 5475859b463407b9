// The allocation hooks and the helpers through which every block is had and given back.
#pragma once

#include <pthread.h>

#include <cstddef>
#include <cstdint>
#include <zrschema/memory.h>

extern "C" {
// The three hooks in force: the C library's functions until the application registers its own.
// They are read without a lock.
ZR_API extern ZrMallocFunc g_zrMemMallocFunc;
ZR_API extern ZrReallocFunc g_zrMemReAllocFunc;
ZR_API extern ZrFreeFunc g_zrMemFreeFunc;
// Serialises the registration.
ZR_API extern pthread_mutex_t g_zrMemMutex;
// 1 once hooks are registered; never cleared.
ZR_API extern uint32_t g_zrMemRegistered;
// The registration itself, under the mutex: 0, or 17 when hooks are registered already.
ZR_API uint32_t ZR_MemRegisterHandleInner(ZrMallocFunc mallocFunc, ZrReallocFunc reallocFunc,
                                          ZrFreeFunc freeFunc);
}

namespace zr {

// A zero-filled block through the malloc hook, or null.
void *AllocZeroed(size_t size);
// Gives a block back through the free hook; null is accepted.
void Free(void *block);

// A zero-filled record, or null.
template <typename Record> Record *AllocRecord()
{
    return static_cast<Record *>(AllocZeroed(sizeof(Record)));
}

// Owns one block of the hooks for the length of a scope.
template <typename T> class ScopedBlock {
public:
    explicit ScopedBlock(T *block = nullptr) : block_(block) {}
    ScopedBlock(const ScopedBlock &) = delete;
    ScopedBlock &operator=(const ScopedBlock &) = delete;
    ~ScopedBlock() { zr::Free(const_cast<void *>(static_cast<const void *>(block_))); }
    T *get() const { return block_; }
    T *release()
    {
        T *block = block_;
        block_ = nullptr;
        return block;
    }
    T **slot() { return &block_; }
    explicit operator bool() const { return block_ != nullptr; }

private:
    T *block_;
};

} // namespace zr
