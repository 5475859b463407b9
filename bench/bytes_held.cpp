// SPDX-License-Identifier: Apache-2.0
#include "bytes_held.h"

#include <zrschema/memory.h>

#include <cstdlib>

namespace {

// The size of each block is counted in front of it.
size_t g_bytesHeld = 0;
constexpr size_t kHeader = 16;

void *CountingMalloc(size_t size)
{
    auto *block = static_cast<char *>(std::malloc(size + kHeader));
    if (block == nullptr)
        return nullptr;
    *reinterpret_cast<size_t *>(block) = size;
    g_bytesHeld += size;
    return block + kHeader;
}

void CountingFree(void *block)
{
    if (block == nullptr)
        return;
    char *start = static_cast<char *>(block) - kHeader;
    g_bytesHeld -= *reinterpret_cast<size_t *>(start);
    std::free(start);
}

void *CountingRealloc(void *block, size_t size)
{
    if (block == nullptr)
        return CountingMalloc(size);
    char *start = static_cast<char *>(block) - kHeader;
    g_bytesHeld += size - *reinterpret_cast<size_t *>(start);
    start = static_cast<char *>(std::realloc(start, size + kHeader));
    *reinterpret_cast<size_t *>(start) = size;
    return start + kHeader;
}

const bool g_registered = [] {
    ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree);
    return true;
}();

} // namespace

size_t bench::BytesHeld()
{
    return g_bytesHeld;
}
