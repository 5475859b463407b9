// SPDX-License-Identifier: Apache-2.0
// The allocation hooks: every block of the library is the application's.
#include <atomic>
#include <cstdlib>

#include "application.h"

namespace {

std::atomic<int64_t> g_blocks{0};

void *Malloc(size_t size)
{
    ++g_blocks;
    return std::malloc(size);
}

void *Realloc(void *block, size_t size)
{
    g_blocks += block == nullptr;
    return std::realloc(block, size);
}

void Free(void *block)
{
    --g_blocks;
    std::free(block);
}

class MemoryHooks : public Application {};

TEST_F(MemoryHooks, AreRegisteredOnceAndGetEveryBlockBack)
{
    EXPECT_EQ(ZR_MemRegisterCallBack(nullptr, Realloc, Free), ZR_ERR_INVALID);
    ASSERT_EQ(ZR_MemRegisterCallBack(Malloc, Realloc, Free), ZR_OK);
    EXPECT_EQ(ZR_MemRegisterCallBack(Malloc, Realloc, Free), ZR_ERR_REGISTERED);
    Start(ZR_CTX_KEEP_DESCRIPTIONS);
    Have("box", "<container name='box'><leaf name='size'><type name='uint8'/></leaf></container>");
    EXPECT_GT(g_blocks, 10);
    ZR_CTX_Delete(ctx_);
    ctx_ = nullptr;
    EXPECT_EQ(g_blocks, 0);
}

} // namespace
