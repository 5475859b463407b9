// SPDX-License-Identifier: Apache-2.0
#include "platform/memory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "support/alloc.h"

namespace {

int g_mallocCalls = 0;
int g_freeCalls = 0;

void *CountingMalloc(size_t size)
{
    ++g_mallocCalls;
    void *block = std::malloc(size);
    std::memset(block, 0x5a, size);
    return block;
}

void *OtherMalloc(size_t size)
{
    return std::malloc(size);
}

void *CountingRealloc(void *block, size_t size)
{
    return std::realloc(block, size);
}

void CountingFree(void *block)
{
    ++g_freeCalls;
    std::free(block);
}

// Registration is once in a process; these tests put the state before it back.
class MemRegister : public testing::Test {
protected:
    MemRegister() { Reset(); }
    ~MemRegister() override { Reset(); }

    static void Reset()
    {
        g_zrMemMallocFunc = std::malloc;
        g_zrMemReAllocFunc = std::realloc;
        g_zrMemFreeFunc = std::free;
        g_zrMemRegistered = 0;
        g_mallocCalls = 0;
        g_freeCalls = 0;
    }
    static bool DefaultsAreInForce()
    {
        return g_zrMemMallocFunc == std::malloc && g_zrMemReAllocFunc == std::realloc &&
               g_zrMemFreeFunc == std::free && g_zrMemRegistered == 0;
    }
};

TEST_F(MemRegister, TheHooksAreTheCLibrarysAtFirst)
{
    EXPECT_TRUE(DefaultsAreInForce());
}

TEST_F(MemRegister, PutsTheThreeHooksInForce)
{
    EXPECT_EQ(ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree), ZR_OK);
    EXPECT_EQ(g_zrMemMallocFunc, CountingMalloc);
    EXPECT_EQ(g_zrMemReAllocFunc, CountingRealloc);
    EXPECT_EQ(g_zrMemFreeFunc, CountingFree);
    EXPECT_EQ(g_zrMemRegistered, 1u);
}

TEST_F(MemRegister, ASecondRegistrationIs17EvenWithTheSameFunctions)
{
    EXPECT_EQ(ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree), ZR_OK);
    EXPECT_EQ(ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree),
              ZR_ERR_REGISTERED);
    EXPECT_EQ(ZR_MemRegisterCallBack(OtherMalloc, CountingRealloc, CountingFree),
              ZR_ERR_REGISTERED);
    EXPECT_EQ(ZR_MemRegisterHandleInner(OtherMalloc, CountingRealloc, CountingFree),
              ZR_ERR_REGISTERED);
    EXPECT_EQ(g_zrMemMallocFunc, CountingMalloc);
}

TEST_F(MemRegister, ANullFunctionIs22AndLeavesTheDefaultsInForce)
{
    EXPECT_EQ(ZR_MemRegisterCallBack(nullptr, CountingRealloc, CountingFree), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MemRegisterCallBack(CountingMalloc, nullptr, CountingFree), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, nullptr), ZR_ERR_INVALID);
    EXPECT_TRUE(DefaultsAreInForce());
}

TEST_F(MemRegister, ANullFunctionIs22AlsoAfterARegistration)
{
    ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree);
    EXPECT_EQ(ZR_MemRegisterCallBack(nullptr, nullptr, nullptr), ZR_ERR_INVALID);
}

TEST_F(MemRegister, LeavesTheMutexUnlocked)
{
    ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree);
    ASSERT_EQ(pthread_mutex_trylock(&g_zrMemMutex), 0);
    pthread_mutex_unlock(&g_zrMemMutex);
}

TEST_F(MemRegister, Is37AndLeavesTheDefaultsInForceWhenTheMutexCannotBeTaken)
{
    pthread_mutexattr_t attributes; // of a mutex that refuses its owner instead of waiting for it
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
    pthread_mutex_init(&g_zrMemMutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    pthread_mutex_lock(&g_zrMemMutex);
    EXPECT_EQ(ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree), ZR_ERR_LOCK);
    EXPECT_TRUE(DefaultsAreInForce());
    pthread_mutex_unlock(&g_zrMemMutex);
    pthread_mutex_destroy(&g_zrMemMutex);
    pthread_mutex_init(&g_zrMemMutex, nullptr);
}

TEST_F(MemRegister, OneOfManyThreadsWins)
{
    constexpr int kThreads = 8;
    std::vector<uint32_t> results(kThreads);
    std::vector<std::thread> threads;
    for (uint32_t &result : results)
        threads.emplace_back([&result] {
            result = ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree);
        });
    for (std::thread &thread : threads)
        thread.join();
    int won = 0;
    for (uint32_t result : results) {
        EXPECT_TRUE(result == ZR_OK || result == ZR_ERR_REGISTERED);
        won += result == ZR_OK ? 1 : 0;
    }
    EXPECT_EQ(won, 1);
}

TEST_F(MemRegister, BlocksComeThroughTheHooksAndAreZeroFilled)
{
    ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree);
    auto *block = static_cast<unsigned char *>(zr::AllocZeroed(64));
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(block[i], 0);
    zr::Free(block);
    EXPECT_EQ(g_mallocCalls, 1);
    EXPECT_EQ(g_freeCalls, 1);
}

TEST_F(MemRegister, TheFreeHookIsNotCalledForNull)
{
    ZR_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree);
    zr::Free(nullptr);
    EXPECT_EQ(g_freeCalls, 0);
}

TEST(AllocZeroed, IsNullWhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(zr::AllocZeroed(8), nullptr);
    guard.FailAt(0);
    EXPECT_EQ(zr::New<uint64_t>(), nullptr);
}

TEST(Owned, ReleasesItsBlockAtTheEndOfTheScope)
{
    zrtest::AllocGuard guard;
    {
        zr::Owned<int> block(zr::New<int>());
        ASSERT_TRUE(block);
        EXPECT_EQ(*block.get(), 0);
        EXPECT_EQ(guard.LiveBlocks(), 1);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(Owned, GivesItsBlockAwayOnRelease)
{
    zrtest::AllocGuard guard;
    int *kept;
    {
        zr::Owned<int> block(zr::New<int>());
        kept = block.release();
        EXPECT_FALSE(block);
    }
    EXPECT_EQ(guard.LiveBlocks(), 1);
    zr::Free(kept);
}

struct Counted {
    int *destroyed;
};

void DestroyCounted(Counted *counted)
{
    ++*counted->destroyed;
}

TEST(Owned, CallsTheFunctionThatItIsTold)
{
    int destroyed = 0;
    Counted first = {&destroyed};
    Counted second = {&destroyed};
    {
        zr::Owned<Counted, DestroyCounted> owner(&first);
        owner.reset(&second);
        EXPECT_EQ(destroyed, 1);
    }
    EXPECT_EQ(destroyed, 2);
    {
        zr::Owned<Counted, DestroyCounted> empty;
    }
    EXPECT_EQ(destroyed, 2);
}

TEST(Owned, ReleasesABlockThroughAPointerToConst)
{
    zrtest::AllocGuard guard;
    {
        zr::Owned<const int> block(zr::New<int>());
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(New, GivesZeroFilledItemsInOneBlock)
{
    zrtest::AllocGuard guard;
    zr::Owned<uint32_t> items(zr::New<uint32_t>(3));
    ASSERT_TRUE(items);
    EXPECT_EQ(guard.LiveBlocks(), 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(items.get()[i], 0u);
}

TEST(New, IsNullForMoreThanTheAddressSpaceHolds)
{
    zrtest::AllocGuard guard;
    EXPECT_EQ(zr::New<uint64_t>(SIZE_MAX / sizeof(uint64_t) + 1), nullptr);
    EXPECT_EQ(guard.Count(), 0u);
}

TEST(NewWithTail, GivesAZeroFilledHeadAndBytesBehindIt)
{
    zrtest::AllocGuard guard;
    zr::Owned<uint32_t> head(zr::NewWithTail<uint32_t>(5));
    ASSERT_TRUE(head);
    EXPECT_EQ(guard.LiveBlocks(), 1);
    EXPECT_EQ(guard.LiveBytes(), 9);
    EXPECT_EQ(*head, 0u);
    EXPECT_EQ(zr::NewWithTail<uint32_t>(SIZE_MAX), nullptr);
}

uint32_t MakeInt(int value, int **out)
{
    *out = zr::New<int>();
    if (*out != nullptr)
        **out = value;
    return *out != nullptr ? ZR_OK : ZR_ERR_NO_MEMORY;
}

TEST(Out, GivesTheOwnerWhatAFunctionStores)
{
    zrtest::AllocGuard guard;
    {
        zr::Owned<int> owner;
        EXPECT_EQ(MakeInt(7, zr::Out(owner)), ZR_OK);
        EXPECT_EQ(*owner.get(), 7);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(Out, ReleasesWhatTheOwnerHadBefore)
{
    zrtest::AllocGuard guard;
    zr::Owned<int> owner;
    EXPECT_EQ(MakeInt(1, zr::Out(owner)), ZR_OK);
    EXPECT_EQ(MakeInt(2, zr::Out(owner)), ZR_OK);
    EXPECT_EQ(*owner.get(), 2);
    EXPECT_EQ(guard.LiveBlocks(), 1);
}

TEST(Out, LeavesTheOwnerEmptyWhenNothingIsStored)
{
    zrtest::AllocGuard guard;
    zr::Owned<int> owner;
    guard.FailAt(0);
    EXPECT_EQ(MakeInt(1, zr::Out(owner)), ZR_ERR_NO_MEMORY);
    EXPECT_FALSE(owner);
}

} // namespace
