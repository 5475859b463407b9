#include "support/alloc.h"

#include <cstdlib>
#include <unordered_map>

#include "platform/memory.h"

namespace {

struct State {
    uint64_t count = 0;
    uint64_t failAt = UINT64_MAX;
    bool failAll = false;
    int64_t blocks = 0;
    int64_t bytes = 0;
    std::unordered_map<void *, size_t> sizes; // as they were asked for
} g_state;

bool Refuses()
{
    uint64_t n = g_state.count++;
    return n == g_state.failAt || (g_state.failAll && n > g_state.failAt);
}

void *Track(void *block, size_t size)
{
    if (block != nullptr) {
        ++g_state.blocks;
        g_state.bytes += static_cast<int64_t>(size);
        g_state.sizes[block] = size;
    }
    return block;
}

void Untrack(void *block)
{
    if (block == nullptr)
        return;
    --g_state.blocks;
    auto found = g_state.sizes.find(block);
    if (found == g_state.sizes.end())
        return; // from before the guard
    g_state.bytes -= static_cast<int64_t>(found->second);
    g_state.sizes.erase(found);
}

void *TestMalloc(size_t size)
{
    return Refuses() ? nullptr : Track(std::malloc(size), size);
}

void *TestRealloc(void *block, size_t size)
{
    if (Refuses())
        return nullptr;
    Untrack(block);
    return Track(std::realloc(block, size), size);
}

void TestFree(void *block)
{
    Untrack(block);
    std::free(block);
}

} // namespace

namespace zrtest {

AllocGuard::AllocGuard()
{
    g_state = State();
    g_zrMemMallocFunc = TestMalloc;
    g_zrMemReAllocFunc = TestRealloc;
    g_zrMemFreeFunc = TestFree;
}

AllocGuard::~AllocGuard()
{
    g_zrMemMallocFunc = std::malloc;
    g_zrMemReAllocFunc = std::realloc;
    g_zrMemFreeFunc = std::free;
}

void AllocGuard::FailAt(uint64_t n, bool all)
{
    g_state.count = 0;
    g_state.failAt = n;
    g_state.failAll = all;
}

void AllocGuard::FailNone()
{
    FailAt(UINT64_MAX);
}
uint64_t AllocGuard::Count() const
{
    return g_state.count;
}
int64_t AllocGuard::LiveBlocks() const
{
    return g_state.blocks;
}
int64_t AllocGuard::LiveBytes() const
{
    return g_state.bytes;
}

} // namespace zrtest
