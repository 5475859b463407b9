// SPDX-License-Identifier: Apache-2.0
// The allocation hooks and the helpers through which every block is had and given back.
#pragma once

#include <pthread.h>
#include <zrschema/memory.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

extern "C" {
// The three hooks in force: the C library's functions until the application registers its own.
// They are read without a lock.
ZR_API extern ZrMallocFunc g_zrMemMallocFunc;
ZR_API extern ZrReallocFunc g_zrMemReAllocFunc;
ZR_API extern ZrFreeFunc g_zrMemFreeFunc;
// Serialises the registration.
ZR_API extern pthread_mutex_t g_zrMemMutex;
// 1 once hooks are registered, then for good.
ZR_API extern uint32_t g_zrMemRegistered;
// The registration itself, under the mutex: ZR_OK, or ZR_ERR_REGISTERED when hooks are registered
// already.
ZR_API uint32_t ZR_MemRegisterHandleInner(ZrMallocFunc mallocFunc, ZrReallocFunc reallocFunc,
                                          ZrFreeFunc freeFunc);
}

namespace zr {

// A zero-filled block through the malloc hook, or null.
void *AllocZeroed(size_t size);
// Gives a block back through the free hook; null is accepted.
void Free(void *block);

// `count` zero-filled items in one block; null without memory. The items may be pointers.
template <typename T> T *New(size_t count = 1)
{
    // NOLINTNEXTLINE(bugprone-sizeof-expression)
    constexpr size_t kSize = sizeof(T);
    return count > SIZE_MAX / kSize ? nullptr : static_cast<T *>(AllocZeroed(count * kSize));
}

// One zero-filled head with `tail` bytes behind it; null without memory.
template <typename T> T *NewWithTail(size_t tail)
{
    return tail > SIZE_MAX - sizeof(T) ? nullptr : static_cast<T *>(AllocZeroed(sizeof(T) + tail));
}

// Owns what `Destroy` gives back, for the length of a scope or until release(). A block of the
// hooks unless told otherwise.
template <auto Destroy> struct Destroyer {
    template <typename T> void operator()(T *object) const
    {
        Destroy(const_cast<std::remove_const_t<T> *>(object));
    }
};
template <typename T, auto Destroy = Free> using Owned = std::unique_ptr<T, Destroyer<Destroy>>;

// For a function that stores what it makes where an argument points: Out(owner) is that place. The
// owner has what was stored when the whole expression is done.
template <typename Owner> class Out {
public:
    explicit Out(Owner &owner) : owner_(owner) {}
    Out(const Out &) = delete;
    Out &operator=(const Out &) = delete;
    ~Out() { owner_.reset(made_); }
    operator typename Owner::pointer *() { return &made_; }

private:
    Owner &owner_;
    typename Owner::pointer made_ = nullptr;
};

} // namespace zr
