// SPDX-License-Identifier: Apache-2.0
// Allocations for tests: counted, and chosen ones made to fail.
#pragma once

#include <gtest/gtest.h>
#include <zrschema/types.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace zrtest {

// How many allocations were asked for, and which of them fails.
class Allocations {
public:
    // The n-th allocation from now on fails (0: the next one); with `all`, every later one too.
    void FailAt(uint64_t n, bool all = false);
    // No allocation fails any more; tells whether one has since FailAt.
    bool Stop();
    // Allocations asked for since the guard was made, or FailAt or Stop was called.
    uint64_t Count() const { return count_; }

protected:
    Allocations() = default;
    // Counts one more allocation and tells whether it is to fail.
    bool Refuses();

private:
    uint64_t count_ = 0;
    uint64_t failAt_ = UINT64_MAX;
    bool all_ = false;
};

// While one of these lives, every allocation and release of the library goes through it.
class AllocGuard : public Allocations {
public:
    AllocGuard();
    ~AllocGuard();
    AllocGuard(const AllocGuard &) = delete;
    AllocGuard &operator=(const AllocGuard &) = delete;

    // Blocks that are live now and were had under this guard.
    int64_t LiveBlocks() const { return blocks_; }
    int64_t LiveBytes() const { return bytes_; }

    // The hooks.
    void *Malloc(size_t size);
    void *Realloc(void *block, size_t size);
    void Free(void *block);

private:
    void *Track(void *block, size_t size);
    void Untrack(void *block);

    int64_t blocks_ = 0;
    int64_t bytes_ = 0;
    std::unordered_map<void *, size_t> sizes_; // as they were asked for
};

// While one of these lives, libxml2 allocates through it: what does not go through the hooks.
class XmlAllocGuard : public Allocations {
public:
    XmlAllocGuard();
    ~XmlAllocGuard();
    XmlAllocGuard(const XmlAllocGuard &) = delete;
    XmlAllocGuard &operator=(const XmlAllocGuard &) = delete;

    // While one of these lives, nothing fails: for what libxml2 does not survive.
    class Pause {
    public:
        Pause();
        ~Pause();
        Pause(const Pause &) = delete;
        Pause &operator=(const Pause &) = delete;
    };

    // Messages that libxml2 wanted to print since the guard was made.
    uint64_t Messages() const { return messages_; }

    // The hooks.
    void *Malloc(size_t size);
    void *Realloc(void *block, size_t size);
    char *Strdup(const char *text);
    void CountMessage() { ++messages_; }

private:
    bool Fails() { return pauses_ == 0 && Refuses(); }

    uint64_t messages_ = 0;
    uint32_t pauses_ = 0;
};

// One run of a scenario under FailEachAllocation().
class FailPoint {
public:
    FailPoint(Allocations &allocations, uint64_t n, bool all)
        : allocations_(allocations), n_(n), all_(all)
    {
    }
    // Gives the operation's result; its n-th allocation fails. Memory is there again afterwards.
    template <typename Operation> auto Run(Operation operation)
    {
        allocations_.FailAt(n_, all_);
        struct Stopping {
            FailPoint &point;
            ~Stopping() { point.failed_ = point.allocations_.Stop(); }
        } stopping{*this};
        return operation();
    }
    // The same for an operation whose result is a status: ZR_OK, unless memory was short.
    template <typename Operation> uint32_t RunStatus(Operation operation)
    {
        uint32_t status = Run(operation);
        if (!failed_) {
            EXPECT_EQ(status, ZR_OK);
        }
        return status;
    }
    // Whether the operation came as far as the allocation that fails.
    bool Failed() const { return failed_; }
    uint64_t n() const { return n_; }

private:
    Allocations &allocations_;
    uint64_t n_;
    bool all_;
    bool failed_ = false;
};

// Calls `scenario`(FailPoint &) with the first, the second, ... allocation of what it runs failing,
// until it is through without reaching one that fails; with `all`, every later one fails too. Each
// call leaves as many blocks as it found. Returns how many allocations were made to fail.
template <typename Guard, typename Scenario>
uint64_t FailEachAllocation(Guard &guard, Scenario scenario, bool all = false)
{
    constexpr uint64_t kMost = 2000;
    for (uint64_t n = 0; n < kMost; ++n) {
        SCOPED_TRACE(testing::Message() << "allocation " << n);
        FailPoint point(guard, n, all);
        if constexpr (requires { guard.LiveBlocks(); }) {
            int64_t blocks = guard.LiveBlocks();
            scenario(point);
            EXPECT_EQ(guard.LiveBlocks(), blocks) << "blocks are left";
        } else {
            scenario(point);
        }
        if (!point.Failed() || testing::Test::HasFatalFailure())
            return n;
    }
    ADD_FAILURE() << "no end of allocations";
    return kMost;
}

// The same for the library's own allocations, in a test that has no guard yet.
template <typename Scenario> uint64_t FailEachAllocation(Scenario scenario)
{
    AllocGuard guard;
    return FailEachAllocation(guard, scenario);
}

} // namespace zrtest
