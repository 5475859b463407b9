#include "xpath/run_memory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/alloc.h"

namespace {

using zr::ExpressionMemory;
using zr::KeptExpression;

constexpr size_t kMany = 500; // more than have a place

std::vector<std::string> ManyExpressions()
{
    std::vector<std::string> expressions;
    for (size_t i = 0; i < kMany; ++i)
        expressions.push_back("../some-leaf-" + std::to_string(i) + " = 'a value of some length'");
    return expressions;
}

TEST(ExpressionMemory, TokenizesAnExpressionOnce)
{
    zrtest::AllocGuard guard;
    {
        ExpressionMemory memory;
        const char *expression = "../a = 'b'";
        const ZrXpathLex *first = memory.Find(expression)->lex;
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(ZR_XPATH_GetTokenNumber(first), 5u);
        uint64_t allocations = guard.Count();
        EXPECT_EQ(memory.Find(expression)->lex, first);
        EXPECT_EQ(guard.Count(), allocations);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(ExpressionMemory, GivesEachOfManyExpressionsItsOwnTokens)
{
    zrtest::AllocGuard guard;
    {
        ExpressionMemory memory;
        std::vector<std::string> expressions = ManyExpressions();
        for (int round = 0; round < 2; ++round)
            for (const std::string &expression : expressions) {
                const ZrXpathLex *lex = memory.Find(expression.c_str())->lex;
                ASSERT_NE(lex, nullptr);
                EXPECT_EQ(lex->expression, expression.c_str());
                EXPECT_EQ(ZR_XPATH_GetTokenNumber(lex), 5u);
            }
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(ExpressionMemory, GivesNothingForWhatIsNoExpressionHoweverOftenItIsAsked)
{
    ExpressionMemory memory;
    const char *expression = "../a = 'b";
    EXPECT_EQ(memory.Find(expression)->lex, nullptr);
    EXPECT_EQ(memory.Find(expression)->lex, nullptr);
}

TEST(ExpressionMemory, TriesAgainAfterMemoryWasShort)
{
    const char *expression = "../a = 'b'";
    uint64_t failures = zrtest::FailEachAllocation([&](zrtest::FailPoint &point) {
        ExpressionMemory memory;
        const ZrXpathLex *lex = point.Run([&] { return memory.Find(expression)->lex; });
        EXPECT_EQ(lex == nullptr, point.Failed());
        EXPECT_NE(memory.Find(expression)->lex, nullptr);
    });
    EXPECT_GE(failures, 2u);
}

} // namespace
