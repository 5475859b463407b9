// SPDX-License-Identifier: Apache-2.0
// Kept patterns that eight threads meet for the first time at the same moment.
#include <gtest/gtest.h>

#include "support/context.h"
#include "support/matcher.h"
#include "threads/parallel.h"

namespace {

using namespace zrtest;

const char *const kBody = R"yin(
<typedef name="octet"><type name="string"><pattern value="[0-9]{1,3}"/></type></typedef>
<leaf name="address"><type name="union">
  <type name="string"><pattern value="([0-9]{1,3}\.){3}[0-9]{1,3}"/>
    <pattern value="0.*"><modifier value="invert-match"/></pattern></type>
  <type name="string"><pattern value="([0-9a-f]{0,4}:){2,7}[0-9a-f]{0,4}"/></type></type></leaf>
<leaf name="octet"><type name="octet"><pattern value="1.*|2.*"/></type></leaf>
<leaf name="broken"><type name="string"><pattern value="[0-"/></type></leaf>)yin";

std::string CheckAll(const ZrCtx *ctx)
{
    std::string statuses;
    for (const char *path : {"/m:address", "/m:octet", "/m:broken"}) {
        const ZrNode *leaf = ZR_CTX_GetTargetNode(ctx, path, nullptr);
        for (const char *value : {"192.0.2.1", "0.0.0.0", "2001:db8::1", "192", "99", "x", ""})
            statuses += std::to_string(ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, value)) + " ";
    }
    return statuses;
}

TEST(KeptPatterns, GiveEightThreadsWhatPatternsCompiledForEachValueGive)
{
    TestContext plain;
    ASSERT_EQ(plain.LoadBody("m", kBody), ZR_OK);
    std::string expected = CheckAll(plain);
    for (int round = 0; round < 50; ++round) {
        TestContext ctx(ZR_CTX_KEEP_PATTERNS);
        ASSERT_EQ(ctx.LoadBody("m", kBody), ZR_OK);
        auto results = CollectInParallel<std::string>([&](int) { return CheckAll(ctx); });
        for (const std::string &result : results)
            EXPECT_EQ(result, expected);
    }
}

TEST(KeptPatterns, OfAMatcherFromOutsideAreMadeOncePerPatternThatIsHeld)
{
    std::string expected;
    for (int round = 0; round < 50; ++round) {
        EqualityMatcher matcher;
        const ZrPatternMatcher record = matcher;
        {
            TestContext ctx(round % 2 == 0 ? 0 : uint32_t{ZR_CTX_KEEP_PATTERNS});
            ASSERT_EQ(ZR_CTX_SetPatternMatcher(ctx, &record), ZR_OK);
            ASSERT_EQ(ctx.LoadBody("m", kBody), ZR_OK);
            auto results = CollectInParallel<std::string>([&](int) { return CheckAll(ctx); });
            if (expected.empty())
                expected = results[0];
            for (const std::string &result : results)
                EXPECT_EQ(result, expected);
            // What lost the race to be kept was released at once.
            EXPECT_LE(matcher.live(), 6);
        }
        EXPECT_EQ(matcher.live(), 0);
    }
}

} // namespace
