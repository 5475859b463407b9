// libxml2's own allocations, which do not go through the hooks: counted, and the n-th made to fail.
#pragma once

#include <cstdint>

namespace zrtest {

// While one of these lives, libxml2 allocates through it.
class XmlAllocGuard {
public:
    XmlAllocGuard();
    ~XmlAllocGuard();
    XmlAllocGuard(const XmlAllocGuard &) = delete;
    XmlAllocGuard &operator=(const XmlAllocGuard &) = delete;

    // The n-th allocation from now on fails (0: the next one); with `all`, every later one too.
    void FailAt(uint64_t n, bool all = false);
    // No allocation fails any more; tells whether one has since FailAt.
    bool Stop();
    // Allocations asked for since the guard was made or FailAt was called.
    uint64_t Count() const;
    // Messages that libxml2 wanted to print since the guard was made.
    uint64_t Messages() const;
};

} // namespace zrtest
