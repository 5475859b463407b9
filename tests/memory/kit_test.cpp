// SPDX-License-Identifier: Apache-2.0
// What the other tests stand on: the failing-allocation loop, and the words of a failed comparison.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "platform/memory.h"
#include "support/alloc.h"
#include "support/names.h"

namespace {

using zrtest::AllocGuard;
using zrtest::FailEachAllocation;
using zrtest::FailPoint;

// Asks for three blocks and gives back those that it had.
uint32_t AskForThree(uint32_t *had)
{
    for (*had = 0; *had < 3; ++*had) {
        void *block = zr::AllocZeroed(8);
        if (block == nullptr)
            return ZR_ERR_NO_MEMORY;
        zr::Free(block);
    }
    return ZR_OK;
}

TEST(FailEachAllocation, RefusesEveryAllocationOnceAndThenNone)
{
    std::string seen;
    uint64_t points = FailEachAllocation([&](FailPoint &memory) {
        uint32_t had = 0;
        uint32_t status = memory.RunStatus([&] { return AskForThree(&had); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        seen += std::to_string(had) + " ";
    });
    EXPECT_EQ(points, 3u);
    EXPECT_EQ(seen, "0 1 2 3 ");
}

TEST(FailEachAllocation, FindsABlockThatIsLeft)
{
    static void *left = nullptr;
    EXPECT_NONFATAL_FAILURE(FailEachAllocation([](FailPoint &memory) {
                                left = memory.Run([] { return zr::AllocZeroed(8); });
                            }),
                            "blocks are left");
    zr::Free(left);
}

TEST(FailEachAllocation, FindsAnOperationThatFailsWithAllItsMemory)
{
    EXPECT_NONFATAL_FAILURE(FailEachAllocation([](FailPoint &memory) {
                                memory.RunStatus([] { return ZR_ERR_INVALID; });
                            }),
                            "ZR_ERR_INVALID (22)");
}

TEST(FailEachAllocation, FindsAnOperationWhoseAllocationsDoNotEnd)
{
    EXPECT_NONFATAL_FAILURE(FailEachAllocation([](FailPoint &memory) {
                                memory.Run([] {
                                    while (void *block = zr::AllocZeroed(8))
                                        zr::Free(block);
                                });
                            }),
                            "no end of allocations");
}

TEST(FailedComparison, NamesTheStatusThatCame)
{
    static uint32_t status = ZR_ERR_NOT_FOUND;
    EXPECT_NONFATAL_FAILURE(EXPECT_EQ(status, ZR_OK), "ZR_ERR_NOT_FOUND (2)");
    EXPECT_NONFATAL_FAILURE(EXPECT_EQ(status, ZR_ERR_INVALID), "ZR_ERR_INVALID (22)");
    EXPECT_NONFATAL_FAILURE(EXPECT_EQ(status, ZR_NODE_LIST), "leaf (2)");
}

} // namespace
