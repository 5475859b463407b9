// SPDX-License-Identifier: Apache-2.0
// The stack that a schema needs that was made to be as deep as can be loaded. The guide says how
// much; a program that gives less to its threads ends here in the test's child process.
#include <gtest/gtest.h>
#include <pthread.h>
#include <zrschema/zrschema.h>

#include <cstdlib>
#include <functional>
#include <string>

#include "support/deep_schema.h"

namespace {

using zrtest::Chain;
using zrtest::DeepestModule;
using zrtest::Request;

// What the guide tells for builds with optimisation, and enough for those without.
#if (defined(NDEBUG) || defined(__i386__)) && !defined(__SANITIZE_ADDRESS__)
constexpr size_t kStack = size_t{1} << 20;
#else
constexpr size_t kStack = size_t{16} << 20;
#endif

// Runs `work` on a thread with that stack, then ends the process with 0 if it gave 0.
[[noreturn]] void RunAndExit(const std::function<uint32_t()> &work)
{
    struct Run {
        const std::function<uint32_t()> &work;
        uint32_t result;
    } run = {work, 1};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStack);
    pthread_t thread;
    auto start = [](void *at) -> void * {
        auto *self = static_cast<Run *>(at);
        self->result = self->work();
        return nullptr;
    };
    if (pthread_create(&thread, &attributes, start, &run) != 0)
        std::_Exit(2);
    pthread_join(thread, nullptr);
    std::_Exit(run.result == 0 ? 0 : 1);
}

uint32_t AddLength(const char *, uint32_t length, void *total)
{
    *static_cast<uint32_t *>(total) += length;
    return 0;
}

uint32_t LoadAndPrint()
{
    uint32_t levels = 0;
    ZrCtx *ctx = ZR_CTX_Create(0);
    uint32_t status = ZR_CTX_LoadMemory(ctx, DeepestModule("", &levels).c_str());
    uint32_t length = 0;
    if (status == ZR_OK)
        status = ZR_MOD_PrintModelTree(ZR_CTX_GetModuleByModName(ctx, "m"), AddLength, &length);
    if (levels < 1500 || length < levels)
        status = ZR_ERR_FAILED;
    if (status == ZR_OK)
        status = ZR_CTX_UnloadModule(ctx, "m");
    ZR_CTX_Delete(ctx);
    return status;
}

uint32_t Validate()
{
    constexpr uint32_t kChained = 1000; // each is two types; a value is handed on 2,048 times
    uint32_t levels = 0;
    ZrCtx *ctx = ZR_CTX_Create(0);
    uint32_t status = ZR_CTX_LoadMemory(ctx, DeepestModule(Chain(kChained), &levels).c_str());
    xmlNode *request = Request(levels, ("l" + std::to_string(kChained - 1)).c_str());
    ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_XML, request, nullptr, nullptr);
    if (error != nullptr)
        status = ZR_ERR_INVALID;
    ZR_FreeErrNode(error);
    xmlFreeDoc(request->doc);
    ZR_CTX_Delete(ctx);
    return status;
}

} // namespace

TEST(StackDeathTest, OfOneMebibyteLoadsPrintsAndUnloadsTheDeepestSchema)
{
    EXPECT_EXIT(RunAndExit(LoadAndPrint), testing::ExitedWithCode(0), "");
}

TEST(StackDeathTest, OfOneMebibyteValidatesTheDeepestRequestWithTheLongestChainOfTypes)
{
    EXPECT_EXIT(RunAndExit(Validate), testing::ExitedWithCode(0), "");
}
