// The memory of a workspace: a standard memory resource over the caller's two functions.
#pragma once

#include <cstddef>
#include <memory_resource>
#include <string_view>

#include <zryang/zryang.h>

namespace zr::yang {

// Every block comes from the hooks; one that cannot be had throws std::bad_alloc, which ends at the
// boundary of the library.
class HookResource final : public std::pmr::memory_resource {
public:
    explicit HookResource(const ZrYangMemory &hooks) : hooks_(hooks) {}

    const ZrYangMemory &hooks() const { return hooks_; }

private:
    void *do_allocate(size_t size, size_t alignment) override;
    void do_deallocate(void *block, size_t size, size_t alignment) override;
    bool do_is_equal(const std::pmr::memory_resource &other) const noexcept override
    {
        return this == &other;
    }

    ZrYangMemory hooks_;
};

// What lives as long as the workspace is made in one arena and never given back by itself. Records
// made here are not destroyed, so that they may hold nothing but other memory of the arena.
class Arena {
public:
    explicit Arena(std::pmr::memory_resource *upstream) : pool_(kFirstBlock, upstream) {}

    std::pmr::memory_resource *resource() { return &pool_; }

    template <typename T, typename... Arguments> T *New(Arguments &&...arguments)
    {
        void *place = pool_.allocate(sizeof(T), alignof(T));
        return new (place) T{static_cast<Arguments &&>(arguments)...};
    }

    std::string_view Copy(std::string_view text);

private:
    static constexpr size_t kFirstBlock = 16 * 1024;
    std::pmr::monotonic_buffer_resource pool_;
};

} // namespace zr::yang
