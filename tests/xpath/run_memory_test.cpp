#include "xpath/run_memory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/alloc.h"

namespace {

using zr::TokenMemory;

constexpr size_t kMany = 500; // more than have a place

std::vector<std::string> ManyExpressions()
{
    std::vector<std::string> expressions;
    for (size_t i = 0; i < kMany; ++i)
        expressions.push_back("../some-leaf-" + std::to_string(i) + " = 'a value of some length'");
    return expressions;
}

TEST(TokenMemory, TokenizesAnExpressionOnce)
{
    zrtest::AllocGuard guard;
    {
        TokenMemory memory;
        const char *expression = "../a = 'b'";
        const ZrXpathLex *first = memory.Tokenize(expression);
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(ZR_XPATH_GetTokenNumber(first), 5u);
        uint64_t allocations = guard.Count();
        EXPECT_EQ(memory.Tokenize(expression), first);
        EXPECT_EQ(guard.Count(), allocations);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(TokenMemory, GivesEachOfManyExpressionsItsOwnTokens)
{
    zrtest::AllocGuard guard;
    {
        TokenMemory memory;
        std::vector<std::string> expressions = ManyExpressions();
        for (int round = 0; round < 2; ++round)
            for (const std::string &expression : expressions) {
                const ZrXpathLex *lex = memory.Tokenize(expression.c_str());
                ASSERT_NE(lex, nullptr);
                EXPECT_EQ(lex->expression, expression.c_str());
                EXPECT_EQ(ZR_XPATH_GetTokenNumber(lex), 5u);
            }
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(TokenMemory, GivesNothingForWhatIsNoExpressionHoweverOftenItIsAsked)
{
    TokenMemory memory;
    const char *expression = "../a = 'b";
    EXPECT_EQ(memory.Tokenize(expression), nullptr);
    EXPECT_EQ(memory.Tokenize(expression), nullptr);
}

TEST(TokenMemory, TriesAgainAfterMemoryWasShort)
{
    const char *expression = "../a = 'b'";
    uint64_t failures = zrtest::FailEachAllocation([&](zrtest::FailPoint &point) {
        TokenMemory memory;
        const ZrXpathLex *lex = point.Run([&] { return memory.Tokenize(expression); });
        EXPECT_EQ(lex == nullptr, point.Failed());
        EXPECT_NE(memory.Tokenize(expression), nullptr);
    });
    EXPECT_GE(failures, 2u);
}

} // namespace
