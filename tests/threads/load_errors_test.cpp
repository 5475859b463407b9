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

TEST(LoadErrors, AreReadWhileAThreadLoadsModulesThatFail)
{
    TestContext ctx;
    std::atomic<bool> done = false;
    InParallel([&](int number) {
        if (number != 0) {
            while (!done)
                ReadAll(ctx);
            return;
        }
        for (int round = 0; round < 200; ++round) {
            std::string name = "m" + std::to_string(round % 7);
            EXPECT_EQ(ctx.LoadBody(name, "<leaf name='l'/>"), ZR_ERR_FAILED);
            EXPECT_EQ(ctx.LoadBody("w", "<augment target-node='/w:none'/>"), ZR_OK);
            ZR_CTX_UnloadModule(ctx, "w");
            ZR_CTX_UnloadModule(ctx, name.c_str());
        }
        done = true;
    });
    EXPECT_EQ(ReadAll(ctx), 0u);
}

TEST(LoadErrors, AreRecordedReadAndDeletedByManyThreads)
{
    TestContext ctx;
    InParallel([&](int number) {
        std::string name = "m" + std::to_string(number % 3);
        for (int round = 0; round < 200; ++round) {
            if (number < 4) {
                ZR_CTX_AddModError(ctx, name.c_str(), "Error %d of %d.", round, number);
                ZR_CTX_AddModWarning(ctx, name.c_str(), "Warning %d of %d.", round, number);
            } else if (number < 6) {
                ReadAll(ctx);
            } else if (number == 6) {
                ZR_CTX_DeleteErrNodeByModName(ctx.get()->errMng, name.c_str());
            } else {
                ZR_CTX_ClearModErrByLoadStage(ctx.get()->errMng, name.c_str(), 0);
            }
        }
    });
    ZR_CTX_AddModError(ctx, "last", "The last error.");
    EXPECT_GT(ReadAll(ctx), 0u);
}

} // namespace
