// SPDX-License-Identifier: Apache-2.0
// Memory of the libraries beside the engine: a standard memory resource over the caller's two
// functions, and what lives as long as its owner.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory_resource>
#include <new>
#include <string_view>

namespace zr {

// Every block comes from the hooks, a record with allocate(), release() and user; one that cannot
// be had throws std::bad_alloc, which ends at the boundary of the library.
template <typename Hooks> class HookResource final : public std::pmr::memory_resource {
public:
    explicit HookResource(const Hooks &hooks) : hooks_(hooks) {}

    const Hooks &hooks() const { return hooks_; }

private:
    void *do_allocate(size_t size, size_t) override
    {
        void *block = hooks_.allocate(size, hooks_.user);
        if (block == nullptr)
            throw std::bad_alloc();
        return block;
    }
    void do_deallocate(void *block, size_t, size_t) override { hooks_.release(block, hooks_.user); }
    bool do_is_equal(const std::pmr::memory_resource &other) const noexcept override
    {
        return this == &other;
    }

    Hooks hooks_;
};

// The C library's allocator as hooks.
template <typename Hooks> constexpr Hooks MallocHooks()
{
    return {[](size_t size, void *) { return std::malloc(size); },
            [](void *block, void *) { std::free(block); }, nullptr};
}

// What lives as long as the owner is made in one arena and never given back by itself. Records
// made here are not destroyed, so that they may hold nothing but other memory of the arena.
class Arena {
public:
    explicit Arena(std::pmr::memory_resource *upstream, size_t firstBlock = kFirstBlock)
        : pool_(firstBlock, upstream)
    {
    }

    std::pmr::memory_resource *resource() { return &pool_; }

    template <typename T, typename... Arguments> T *New(Arguments &&...arguments)
    {
        void *place = pool_.allocate(sizeof(T), alignof(T));
        return new (place) T{static_cast<Arguments &&>(arguments)...};
    }
    // Zero-filled records.
    template <typename T> T *NewArray(size_t count)
    {
        if (count > static_cast<size_t>(-1) / sizeof(T))
            throw std::bad_alloc();
        void *place = pool_.allocate(count * sizeof(T), alignof(T));
        std::memset(place, 0, count * sizeof(T));
        return static_cast<T *>(place);
    }

    std::string_view Copy(std::string_view text);
    // With a NUL behind it, also when it is empty.
    const char *CopyText(std::string_view text);

private:
    static constexpr size_t kFirstBlock = 16 * 1024;
    std::pmr::monotonic_buffer_resource pool_;
};

} // namespace zr
