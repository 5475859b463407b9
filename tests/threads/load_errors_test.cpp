// SPDX-License-Identifier: Apache-2.0
// The store of load errors has a lock of its own: it is read while errors are recorded.
#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "support/context.h"
#include "threads/parallel.h"

namespace {

using namespace zrtest;

// Reads every text of an entry, so that one that is released meanwhile would show.
uint32_t ReadEntry(const char *module, const char *file, uint32_t, const char *message, uint32_t,
                   void *userData)
{
    *static_cast<size_t *>(userData) += std::string(module).size() + std::string(message).size() +
                                        (file != nullptr ? std::string(file).size() : 0);
    return 0;
}

size_t ReadAll(ZrCtx *ctx)
{
    size_t size = 0;
    EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx, ReadEntry, &size), ZR_OK);
    return size;
}

// How often the threads go round: at least so often, and on, up to the limit, until every reader
// has read an entry.
constexpr int kRounds = 200;
constexpr int kMaxRounds = 100000;

TEST(LoadErrors, AreReadWhileAThreadLoadsModulesThatFail)
{
    TestContext ctx;
    std::atomic<bool> done = false;
    std::atomic<int> readers = 0; // that have read an entry
    auto sizes = CollectInParallel<size_t>([&](int number) {
        size_t size = 0;
        if (number != 0) {
            while (!done) {
                size_t more = ReadAll(ctx);
                readers += size == 0 && more != 0;
                size += more;
            }
            return size;
        }
        for (int round = 0; round < kRounds || (readers < kThreads - 1 && round < kMaxRounds);
             ++round) {
            std::string name = "m" + std::to_string(round % 7);
            EXPECT_EQ(ctx.LoadBody(name, "<leaf name='l'/>"), ZR_ERR_FAILED);
            EXPECT_EQ(ctx.LoadBody("w", "<augment target-node='/w:none'/>"), ZR_OK);
            ZR_CTX_UnloadModule(ctx, "w");
            ZR_CTX_UnloadModule(ctx, name.c_str());
        }
        done = true;
        return size;
    });
    for (int number = 1; number < kThreads; ++number)
        EXPECT_GT(sizes[static_cast<size_t>(number)], 0u) << "thread " << number;
    EXPECT_EQ(ReadAll(ctx), ZR_OK);
}

// What a reader reads while others write.
size_t KeepReading(ZrCtx *ctx)
{
    size_t size = 0;
    for (int round = 0; round < kRounds || (size == 0 && round < kMaxRounds); ++round)
        size += ReadAll(ctx);
    return size;
}

TEST(LoadErrors, AreRecordedReadAndDeletedByManyThreads)
{
    TestContext ctx;
    auto sizes = CollectInParallel<size_t>([&](int number) {
        if (number == 4 || number == 5)
            return KeepReading(ctx);
        std::string name = "m" + std::to_string(number % 3); // nobody deletes those of "m2"
        for (int round = 0; round < kRounds; ++round) {
            if (number < 4) {
                ZR_CTX_AddModError(ctx, name.c_str(), "Error %d of %d.", round, number);
                ZR_CTX_AddModWarning(ctx, name.c_str(), "Warning %d of %d.", round, number);
            } else if (number == 6) {
                ZR_CTX_DeleteErrNodeByModName(ctx.get()->errMng, name.c_str());
            } else {
                ZR_CTX_ClearModErrByLoadStage(ctx.get()->errMng, name.c_str(), 0);
            }
        }
        return size_t{0};
    });
    EXPECT_GT(sizes[4], 0u);
    EXPECT_GT(sizes[5], 0u);
    EXPECT_GT(ReadAll(ctx), 0u);
}

} // namespace
