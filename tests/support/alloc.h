// Allocation hooks for tests: count the live blocks, and fail chosen allocations.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zrtest {

// While one of these lives, every allocation and release of the library goes through it.
class AllocGuard {
public:
    AllocGuard();
    ~AllocGuard();
    AllocGuard(const AllocGuard &) = delete;
    AllocGuard &operator=(const AllocGuard &) = delete;

    // The n-th allocation from now on fails (0: the next one); with `all`, every later one too.
    void FailAt(uint64_t n, bool all = false);
    void FailNone();
    // Allocations asked for since the guard was made or FailAt was called.
    uint64_t Count() const;
    // Blocks that are live now and were had under this guard.
    int64_t LiveBlocks() const;
    int64_t LiveBytes() const;
};

} // namespace zrtest
