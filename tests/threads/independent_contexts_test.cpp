// SPDX-License-Identifier: Apache-2.0
// Contexts know nothing of each other: each thread has its own.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/memory.h"
#include "support/context.h"
#include "support/schema_dump.h"
#include "threads/parallel.h"

namespace {

using namespace zrtest;

// A life of a context: load, read, validate, unload, delete.
std::string Live(uint32_t flags)
{
    TestContext ctx(flags);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, ZR_EXAMPLE_MODULES), ZR_OK);
    for (const char *module : {"example-routing", "example-vendor", "example-services"})
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, module), ZR_OK);
    ZR_MOD_EnableFeature(ctx.Module("example-router"), "*");
    std::string text = DumpContext(ctx) + Tree(ctx.Module("example-router"));
    char request[] = "<ping xmlns='urn:example:router'><destination>192.0.2.1</destination>"
                     "<size>1501</size></ping>";
    ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, request, nullptr, nullptr);
    text += error != nullptr && ZR_GetErrorMessage(error) != nullptr ? ZR_GetErrorMessage(error)
                                                                     : "valid";
    ZR_FreeErrNode(error);
    EXPECT_EQ(ZR_CTX_UnloadModule(ctx, "example-vendor"), ZR_OK);
    EXPECT_EQ(ctx.LoadBody("broken", "<leaf name='l'/>"), ZR_ERR_FAILED);
    for (const std::string &message : ctx.Messages())
        text += message;
    return text + DumpContext(ctx);
}

TEST(IndependentContexts, LoadAtTheSameTime)
{
    std::string alone = Live(ZR_CTX_LOAD_IMPORTS);
    auto results = CollectInParallel<bool>([&](int) {
        bool same = true;
        for (int round = 0; round < 5; ++round)
            same = Live(ZR_CTX_LOAD_IMPORTS) == alone && same;
        return same;
    });
    for (bool same : results)
        EXPECT_TRUE(same);
}

TEST(Hooks, AreRegisteredByOneOfEightThreads)
{
    g_zrMemRegistered = 0; // as in a new process
    auto statuses = CollectInParallel<uint32_t>(
        [](int) { return ZR_MemRegisterCallBack(std::malloc, std::realloc, std::free); });
    int registered = 0;
    for (uint32_t status : statuses) {
        registered += status == ZR_OK;
        EXPECT_TRUE(status == ZR_OK || status == ZR_ERR_REGISTERED);
    }
    EXPECT_EQ(registered, 1);
}

} // namespace
