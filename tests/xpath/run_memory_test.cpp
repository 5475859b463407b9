// SPDX-License-Identifier: Apache-2.0
#include "xpath/run_memory.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <memory>
#include <string>
#include <vector>

#include "support/alloc.h"

namespace {

using zr::ExpressionMemory;

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

class ConditionsOfARun : public testing::Test {
protected:
    uint32_t Once(const char *expression)
    {
        return ZR_XPATH_EvalCondition(document(), xmlDocGetRootElement(document_.get()),
                                      expression);
    }
    uint32_t InRun(const char *expression)
    {
        return zr::EvalConditionInRun(document(), xmlDocGetRootElement(document_.get()), expression,
                                      &memory_);
    }

private:
    xmlNode *document() { return reinterpret_cast<xmlNode *>(document_.get()); }

    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document_{
        xmlReadMemory("<r/>", 4, nullptr, nullptr, 0), xmlFreeDoc};
    zr::RunMemory memory_;
};

TEST_F(ConditionsOfARun, AreAnsweredAlikeEachTimeAlsoThoseThatBreakOff)
{
    for (const char *expression : {"1 = 1", "'a' = 'b'", "not('a' = 'b') and 2 > 1", "1 = (2 = 3",
                                   "'a' = 'a')", "nothing(1)", "1 +"})
        for (int time = 0; time < 3; ++time)
            EXPECT_EQ(InRun(expression), Once(expression)) << expression;
}

TEST_F(ConditionsOfARun, CostLessMemoryTheSecondTime)
{
    zrtest::AllocGuard guard;
    EXPECT_EQ(InRun("1 = 1"), ZR_OK);
    uint64_t first = guard.Count();
    EXPECT_EQ(InRun("1 = 1"), ZR_OK);
    EXPECT_LT(guard.Count() - first, first);
}

TEST_F(ConditionsOfARun, CanBeAskedAgainAfterMemoryWasShort)
{
    zrtest::FailEachAllocation([](zrtest::FailPoint &point) {
        xmlDoc *document = xmlReadMemory("<r/>", 4, nullptr, nullptr, 0);
        auto *root = reinterpret_cast<xmlNode *>(document);
        zr::RunMemory memory;
        auto ask = [&] {
            return zr::EvalConditionInRun(root, document->children, "'a' = 'a'", &memory);
        };
        uint32_t status = point.Run(ask);
        EXPECT_EQ(status != ZR_OK, point.Failed());
        EXPECT_EQ(ask(), ZR_OK);
        xmlFreeDoc(document);
    });
}

} // namespace
