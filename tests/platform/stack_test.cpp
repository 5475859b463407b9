// SPDX-License-Identifier: Apache-2.0
#include "platform/stack.h"

#include <gtest/gtest.h>
#include <zrschema/types.h>

#include "support/alloc.h"

namespace {

TEST(Stack, GivesItemsBackInReverseOrder)
{
    PalStack *stack = PAL_CreateStack(3);
    int a = 0, b = 0, c = 0;
    EXPECT_EQ(PAL_Push(stack, &a), ZR_OK);
    EXPECT_EQ(PAL_Push(stack, &b), ZR_OK);
    EXPECT_EQ(PAL_Push(stack, &c), ZR_OK);
    EXPECT_EQ(PAL_GetSize(stack), 3u);
    EXPECT_EQ(PAL_Pop(stack), &c);
    EXPECT_EQ(PAL_Pop(stack), &b);
    EXPECT_EQ(PAL_Pop(stack), &a);
    EXPECT_EQ(PAL_GetSize(stack), 0u);
    PAL_DeleteStack(stack);
}

TEST(Stack, PeepLeavesTheTopWhereItIs)
{
    PalStack *stack = PAL_CreateStack(1);
    int item = 0;
    PAL_Push(stack, &item);
    EXPECT_EQ(PAL_Peep(stack), &item);
    EXPECT_EQ(PAL_GetSize(stack), 1u);
    PAL_DeleteStack(stack);
}

TEST(Stack, PushOnAFullStackIs12AndChangesNothing)
{
    PalStack *stack = PAL_CreateStack(1);
    int first = 0, second = 0;
    EXPECT_EQ(PAL_Push(stack, &first), ZR_OK);
    EXPECT_EQ(PAL_Push(stack, &second), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(PAL_GetSize(stack), 1u);
    EXPECT_EQ(PAL_Peep(stack), &first);
    PAL_DeleteStack(stack);
}

TEST(Stack, PopAndPeepOnAnEmptyStackAreNull)
{
    PalStack *stack = PAL_CreateStack(2);
    EXPECT_EQ(PAL_Pop(stack), nullptr);
    EXPECT_EQ(PAL_Peep(stack), nullptr);
    EXPECT_EQ(PAL_GetSize(stack), 0u);
    PAL_DeleteStack(stack);
}

TEST(Stack, WithCapacityZeroExistsAndIsFull)
{
    PalStack *stack = PAL_CreateStack(0);
    ASSERT_NE(stack, nullptr);
    int item = 0;
    EXPECT_EQ(PAL_Push(stack, &item), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(PAL_Pop(stack), nullptr);
    PAL_DeleteStack(stack);
}

TEST(Stack, ANullStackIsAccepted)
{
    int item = 0;
    EXPECT_EQ(PAL_Push(nullptr, &item), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(PAL_Pop(nullptr), nullptr);
    EXPECT_EQ(PAL_Peep(nullptr), nullptr);
    EXPECT_EQ(PAL_GetSize(nullptr), 0u);
    PAL_DeleteStack(nullptr);
}

TEST(Stack, CreateGivesNullWhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(PAL_CreateStack(4), nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

// The allocations fail here for sizes that are too large to be tried.
TEST(Stack, CreateGivesNullForMoreItemsThanMemoryCanHold)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0, true);
    EXPECT_EQ(PAL_CreateStack(UINT32_MAX), nullptr);
}

TEST(Stack, DeleteGivesEveryBlockBack)
{
    zrtest::AllocGuard guard;
    PalStack *stack = PAL_CreateStack(4);
    EXPECT_GT(guard.LiveBlocks(), 0);
    PAL_DeleteStack(stack);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

} // namespace
