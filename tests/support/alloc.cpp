// SPDX-License-Identifier: Apache-2.0
#include "support/alloc.h"

#include <libxml/globals.h>
#include <libxml/xmlmemory.h>

#include <cstdlib>
#include <cstring>

#include "platform/memory.h"

namespace zrtest {

void Allocations::FailAt(uint64_t n, bool all)
{
    count_ = 0;
    failAt_ = n;
    all_ = all;
}

bool Allocations::Stop()
{
    bool failed = count_ > failAt_;
    FailAt(UINT64_MAX);
    return failed;
}

bool Allocations::Refuses()
{
    uint64_t n = count_++;
    return n == failAt_ || (all_ && n > failAt_);
}

// The guards that live now, which the hooks find here.
static AllocGuard *g_guard = nullptr;
static XmlAllocGuard *g_xmlGuard = nullptr;

AllocGuard::AllocGuard()
{
    EXPECT_EQ(g_guard, nullptr) << "one guard at a time";
    g_guard = this;
    g_zrMemMallocFunc = [](size_t size) { return g_guard->Malloc(size); };
    g_zrMemReAllocFunc = [](void *block, size_t size) { return g_guard->Realloc(block, size); };
    g_zrMemFreeFunc = [](void *block) { g_guard->Free(block); };
}

AllocGuard::~AllocGuard()
{
    g_zrMemMallocFunc = std::malloc;
    g_zrMemReAllocFunc = std::realloc;
    g_zrMemFreeFunc = std::free;
    g_guard = nullptr;
}

void *AllocGuard::Malloc(size_t size)
{
    return Refuses() ? nullptr : Track(std::malloc(size), size);
}

void *AllocGuard::Realloc(void *block, size_t size)
{
    if (Refuses())
        return nullptr;
    Untrack(block);
    return Track(std::realloc(block, size), size);
}

void AllocGuard::Free(void *block)
{
    Untrack(block);
    std::free(block);
}

void *AllocGuard::Track(void *block, size_t size)
{
    if (block != nullptr) {
        ++blocks_;
        bytes_ += static_cast<int64_t>(size);
        sizes_[block] = size;
    }
    return block;
}

void AllocGuard::Untrack(void *block)
{
    if (block == nullptr)
        return;
    --blocks_;
    auto found = sizes_.find(block);
    if (found == sizes_.end())
        return; // from before the guard
    bytes_ -= static_cast<int64_t>(found->second);
    sizes_.erase(found);
}

static void CountXmlMessage(void *, const char *, ...)
{
    g_xmlGuard->CountMessage();
}

XmlAllocGuard::XmlAllocGuard()
{
    EXPECT_EQ(g_xmlGuard, nullptr) << "one guard at a time";
    g_xmlGuard = this;
    xmlMemSetup(
        std::free, [](size_t size) { return g_xmlGuard->Malloc(size); },
        [](void *block, size_t size) { return g_xmlGuard->Realloc(block, size); },
        [](const char *text) { return g_xmlGuard->Strdup(text); });
    xmlSetGenericErrorFunc(nullptr, CountXmlMessage);
}

XmlAllocGuard::~XmlAllocGuard()
{
    xmlSetGenericErrorFunc(nullptr, nullptr);
    xmlMemSetup(std::free, std::malloc, std::realloc, strdup);
    g_xmlGuard = nullptr;
}

XmlAllocGuard::Pause::Pause()
{
    if (g_xmlGuard != nullptr)
        ++g_xmlGuard->pauses_;
}

XmlAllocGuard::Pause::~Pause()
{
    if (g_xmlGuard != nullptr)
        --g_xmlGuard->pauses_;
}

void *XmlAllocGuard::Malloc(size_t size)
{
    return Fails() ? nullptr : std::malloc(size);
}

void *XmlAllocGuard::Realloc(void *block, size_t size)
{
    return Fails() ? nullptr : std::realloc(block, size);
}

char *XmlAllocGuard::Strdup(const char *text)
{
    return Fails() ? nullptr : strdup(text);
}

} // namespace zrtest
