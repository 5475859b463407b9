// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "platform/memory.h"
#include "support/alloc.h"
#include "xpath/evaluate.h"
#include "xpath/evaluation.h"

namespace {

using zrtest::DataTree;
using zrtest::Evaluation;

TEST(EvalCtx, HoldsBothNodesAndTwoStacksOfTheTokenCount)
{
    DataTree tree("<r><a/></r>");
    ZrXpathEvalCtx ctx;
    ASSERT_EQ(ZR_XPATH_InitEvalCtx(&ctx, tree.Root(), tree.Top(), 2), ZR_OK);
    EXPECT_EQ(ctx.rootNode, tree.Root());
    EXPECT_EQ(ctx.contextNode, tree.Top());
    EXPECT_EQ(ZR_XPATH_PushBooleanToObjStack(&ctx, 1), ZR_OK);
    EXPECT_EQ(ZR_XPATH_PushStringToObjStack(&ctx, "abc", 3), ZR_OK);
    EXPECT_EQ(ZR_XPATH_PushNumberToObjStack(&ctx, 1), ZR_ERR_NO_MEMORY); // full
    EXPECT_EQ(ZR_XPATH_PushExprTypeToStack(&ctx, 2, 0), ZR_OK);
    EXPECT_EQ(ZR_XPATH_PushExprTypeToStack(&ctx, 9, 1), ZR_OK);
    EXPECT_EQ(ZR_XPATH_PushExprTypeToStack(&ctx, 9, 1), ZR_ERR_NO_MEMORY);
    ZR_XPATH_DestroyEvalCtx(&ctx);
}

TEST(EvalCtx, FreesWhatIsLeftOnTheStacks)
{
    DataTree tree("<r/>");
    zrtest::AllocGuard guard;
    ZrXpathEvalCtx ctx;
    ASSERT_EQ(ZR_XPATH_InitEvalCtx(&ctx, tree.Root(), tree.Top(), 4), ZR_OK);
    ZR_XPATH_PushStringToObjStack(&ctx, "abc", 2);
    ZR_XPATH_PushStringToObjStack(&ctx, "", 0);
    ZR_XPATH_PushNodeToObjStack(&ctx, tree.Top());
    ZR_XPATH_PushExprTypeToStack(&ctx, 0, 0);
    ZR_XPATH_PushExprTypeToStack(&ctx, 9, 1);
    ZR_XPATH_DestroyEvalCtx(&ctx);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(EvalCtx, FailsWithoutMemoryForEitherStack)
{
    DataTree tree("<r/>");
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrXpathEvalCtx ctx;
        uint32_t status =
            memory.Run([&] { return ZR_XPATH_InitEvalCtx(&ctx, tree.Root(), tree.Top(), 4); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        ZR_XPATH_DestroyEvalCtx(&ctx);
    });
    EXPECT_EQ(points, 2u);
}

TEST(ObjectStack, KeepsObjectsOfEveryKind)
{
    DataTree tree("<r/>");
    Evaluation eval(tree, "1");
    EXPECT_EQ(ZR_XPATH_PushBooleanToObjStack(eval.Ctx(), 5), ZR_OK);
    EXPECT_EQ(eval.Top()->kind, ZR_XPATH_OBJ_BOOLEAN);
    EXPECT_EQ(eval.Top()->value.boolean, 1u);
    EXPECT_EQ(ZR_XPATH_PushStringToObjStack(eval.Ctx(), "abc", 2), ZR_OK);
    EXPECT_EQ(eval.Top()->kind, ZR_XPATH_OBJ_STRING);
    EXPECT_STREQ(eval.Top()->value.string, "ab");
    EXPECT_EQ(ZR_XPATH_PushStringToObjStack(eval.Ctx(), "abc", 0), ZR_OK);
    EXPECT_STREQ(eval.Top()->value.string, "");
    EXPECT_EQ(ZR_XPATH_PushNodeToObjStack(eval.Ctx(), tree.Top()), ZR_OK);
    EXPECT_EQ(eval.Top()->kind, ZR_XPATH_OBJ_NODE);
    EXPECT_EQ(eval.Top()->value.node, tree.Top());
    EXPECT_EQ(ZR_XPATH_PushNumberToObjStack(eval.Ctx(), 2.5), ZR_OK);
    EXPECT_EQ(eval.Top()->kind, ZR_XPATH_OBJ_NUMBER);
    EXPECT_EQ(eval.Top()->value.number, 2.5);
    EXPECT_EQ(eval.Objects(), 5u);
}

TEST(ObjectStack, LosesNothingWhenMemoryRunsOut)
{
    DataTree tree("<r/>");
    Evaluation eval(tree, "1");
    for (uint64_t n = 0; n < 2; ++n) {
        zrtest::AllocGuard guard;
        guard.FailAt(n);
        EXPECT_EQ(ZR_XPATH_PushStringToObjStack(eval.Ctx(), "abc", 3), ZR_ERR_NO_MEMORY) << n;
        EXPECT_EQ(guard.LiveBlocks(), 0) << n;
        guard.FailAt(n);
        EXPECT_EQ(ZR_XPATH_PushStringToObjStack(eval.Ctx(), "", 0), ZR_ERR_NO_MEMORY) << n;
        EXPECT_EQ(guard.LiveBlocks(), 0) << n;
    }
    zrtest::AllocGuard guard;
    guard.FailAt(0, true);
    EXPECT_EQ(ZR_XPATH_PushBooleanToObjStack(eval.Ctx(), 1), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(ZR_XPATH_PushNumberToObjStack(eval.Ctx(), 1), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(ZR_XPATH_PushNodeToObjStack(eval.Ctx(), nullptr), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(ZR_XPATH_PushExprTypeToStack(eval.Ctx(), 0, 0), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(eval.Objects(), 0u);
    EXPECT_EQ(eval.Operators(), 0u);
}

TEST(ObjectStack, ReplacesTheNodeOfANodeObjectOnly)
{
    DataTree tree("<r><a/></r>");
    Evaluation eval(tree, "1");
    EXPECT_EQ(ZR_XPATH_ReplaceNodeToTopElemInObjStack(eval.Ctx(), tree.Top()),
              ZR_ERR_INVALID); // empty
    EXPECT_EQ(ZR_XPATH_GetStackTopObjNode(eval.Ctx()), nullptr);
    ZR_XPATH_PushNodeToObjStack(eval.Ctx(), nullptr);
    EXPECT_EQ(ZR_XPATH_GetStackTopObjNode(eval.Ctx()), nullptr);
    EXPECT_EQ(ZR_XPATH_ReplaceNodeToTopElemInObjStack(eval.Ctx(), tree.Top()), ZR_OK);
    EXPECT_EQ(ZR_XPATH_GetStackTopObjNode(eval.Ctx()), tree.Top());
    ZR_XPATH_PushNumberToObjStack(eval.Ctx(), 1);
    EXPECT_EQ(ZR_XPATH_ReplaceNodeToTopElemInObjStack(eval.Ctx(), tree.Top()), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_XPATH_GetStackTopObjNode(eval.Ctx()), nullptr);
}

TEST(EvalResult, IsTheOneObjectThatIsLeft)
{
    DataTree tree("<r/>");
    Evaluation eval(tree, "1");
    EXPECT_EQ(ZR_XPATH_GetEvalResult(eval.Ctx()), ZR_ERR_INVALID);
    ZR_XPATH_PushStringToObjStack(eval.Ctx(), "false", 5);
    EXPECT_EQ(ZR_XPATH_GetEvalResult(eval.Ctx()), ZR_OK);
    ZR_XPATH_PushBooleanToObjStack(eval.Ctx(), 0);
    EXPECT_EQ(ZR_XPATH_GetEvalResult(eval.Ctx()), ZR_ERR_INVALID);
    Evaluation none(tree, "1");
    ZR_XPATH_PushNodeToObjStack(none.Ctx(), nullptr);
    EXPECT_EQ(ZR_XPATH_GetEvalResult(none.Ctx()), ZR_XPATH_RESULT_FALSE);
}

TEST(EvalResult, IsNoObjectOfAnUnknownKind)
{
    DataTree tree("<r/>");
    Evaluation eval(tree, "1");
    ZR_XPATH_PushNumberToObjStack(eval.Ctx(), 1);
    static_cast<ZrXpathObject *>(PAL_Peep(eval.Ctx()->objects))->kind = ZR_XPATH_OBJ_KIND_COUNT;
    EXPECT_EQ(ZR_XPATH_GetEvalResult(eval.Ctx()), ZR_ERR_INVALID);
}

// Tokens of "1 or 1 and 1 = 1 > 1": operators at 1, 3, 5 and 7.
class OperatorStack : public testing::Test {
protected:
    void PushOperands(uint32_t count)
    {
        for (uint32_t i = 0; i < count; ++i)
            ASSERT_EQ(ZR_XPATH_PushNumberToObjStack(eval_.Ctx(), 1), ZR_OK);
    }
    uint32_t Push(uint32_t operatorClass, uint32_t position)
    {
        return ZR_XPATH_PushExprTypeToStackByPriority(eval_.Ctx(), eval_.Lex(), operatorClass,
                                                      position);
    }

    DataTree tree_{"<r/>"};
    Evaluation eval_{tree_, "1 or 1 and 1 = 1 > 1"};
};

TEST_F(OperatorStack, KeepsOperatorsThatBindTighter)
{
    EXPECT_EQ(Push(0, 1), ZR_OK);
    EXPECT_EQ(Push(1, 3), ZR_OK);
    EXPECT_EQ(Push(2, 5), ZR_OK);
    EXPECT_EQ(Push(3, 7), ZR_OK);
    EXPECT_EQ(eval_.Operators(), 4u);
}

TEST_F(OperatorStack, AppliesOperatorsThatBindAtLeastAsTightlyFirst)
{
    PushOperands(4);
    EXPECT_EQ(Push(0, 1), ZR_OK);
    EXPECT_EQ(Push(2, 5), ZR_OK);
    EXPECT_EQ(Push(3, 7), ZR_OK);
    EXPECT_EQ(Push(2, 5), ZR_OK); // takes the relational and the equality operator along
    EXPECT_EQ(eval_.Operators(), 2u);
    EXPECT_EQ(eval_.Objects(), 2u);
    EXPECT_EQ(Push(1, 3), ZR_OK); // takes the equality operator along
    EXPECT_EQ(eval_.Operators(), 2u);
    EXPECT_EQ(eval_.Objects(), 1u);
}

TEST_F(OperatorStack, StopsAtAMarker)
{
    PushOperands(2);
    EXPECT_EQ(Push(3, 7), ZR_OK);
    EXPECT_EQ(ZR_XPATH_PushExprTypeToStack(eval_.Ctx(), ZR_XPATH_MARKER_CLASS, 0), ZR_OK);
    EXPECT_EQ(ZR_XPATH_CalculateHighPriorityExpr(eval_.Ctx(), eval_.Lex(), 0), ZR_OK);
    EXPECT_EQ(eval_.Operators(), 2u);
    EXPECT_EQ(eval_.Objects(), 2u);
}

TEST_F(OperatorStack, FailsWhenAnOperandIsMissing)
{
    PushOperands(1);
    EXPECT_EQ(Push(3, 7), ZR_OK);
    EXPECT_EQ(Push(2, 5), ZR_ERR_INVALID);
    EXPECT_EQ(eval_.Objects(), 1u);
}

TEST_F(OperatorStack, EndsAtTheBottomWhenTheTokensAreUsedUp)
{
    PushOperands(3);
    Push(0, 1);
    Push(1, 3);
    EXPECT_EQ(ZR_XPATH_CalculateRemainExpr(eval_.Ctx(), eval_.Lex(), ZR_XPATH_END_OF_LIST), ZR_OK);
    EXPECT_EQ(eval_.Operators(), 0u);
    EXPECT_EQ(eval_.Objects(), 1u);
}

TEST_F(OperatorStack, RefusesTheEndOfTheTokensInsideASubExpression)
{
    ZR_XPATH_PushExprTypeToStack(eval_.Ctx(), ZR_XPATH_MARKER_CLASS, 0);
    EXPECT_EQ(ZR_XPATH_CalculateRemainExpr(eval_.Ctx(), eval_.Lex(), ZR_XPATH_END_OF_LIST),
              ZR_XPATH_ERR_PAREN);
    EXPECT_EQ(eval_.Operators(), 0u);
}

TEST_F(OperatorStack, EndsASubExpressionAtItsMarker)
{
    PushOperands(2);
    Push(0, 1);
    ZR_XPATH_PushExprTypeToStack(eval_.Ctx(), ZR_XPATH_MARKER_CLASS, 0);
    Push(1, 3);
    EXPECT_EQ(ZR_XPATH_CalculateRemainExpr(eval_.Ctx(), eval_.Lex(), ZR_XPATH_END_CLOSE), ZR_OK);
    EXPECT_EQ(eval_.Operators(), 1u);
    EXPECT_EQ(eval_.Objects(), 1u);
}

TEST_F(OperatorStack, RefusesACloseWithoutASubExpression)
{
    PushOperands(2);
    Push(0, 1);
    EXPECT_EQ(ZR_XPATH_CalculateRemainExpr(eval_.Ctx(), eval_.Lex(), ZR_XPATH_END_CLOSE),
              ZR_XPATH_ERR_PAREN);
}

TEST_F(OperatorStack, AppliesOneOperatorToTheTwoTopmostObjects)
{
    zrtest::AllocGuard guard;
    PushOperands(3);
    ZrXpathOperatorEntry entry{2, 5};
    EXPECT_EQ(ZR_XPATH_CalculateOneExpr(eval_.Ctx(), eval_.Lex(), &entry), ZR_OK);
    EXPECT_EQ(eval_.Objects(), 2u);
    EXPECT_EQ(eval_.Top()->kind, ZR_XPATH_OBJ_BOOLEAN);
    EXPECT_EQ(eval_.Top()->value.boolean, 1u);
    EXPECT_EQ(guard.LiveBlocks(), 2);
    ZR_XPATH_FreeObject(static_cast<ZrXpathObject *>(PAL_Pop(eval_.Ctx()->objects)));
    ZR_XPATH_FreeObject(static_cast<ZrXpathObject *>(PAL_Pop(eval_.Ctx()->objects)));
}

TEST_F(OperatorStack, RefusesFewerThanTwoObjects)
{
    ZrXpathOperatorEntry entry{2, 5};
    EXPECT_EQ(ZR_XPATH_CalculateOneExpr(eval_.Ctx(), eval_.Lex(), &entry), ZR_ERR_INVALID);
    PushOperands(1);
    EXPECT_EQ(ZR_XPATH_CalculateOneExpr(eval_.Ctx(), eval_.Lex(), &entry), ZR_ERR_INVALID);
    EXPECT_EQ(eval_.Objects(), 1u);
}

TEST_F(OperatorStack, RefusesClassesWithoutAFunctionAndFreesTheOperands)
{
    for (uint32_t operatorClass : {4u, 5u, 6u, 7u, 8u, 9u, 10u}) {
        PushOperands(2);
        ZrXpathOperatorEntry entry{operatorClass, 5};
        EXPECT_EQ(ZR_XPATH_CalculateOneExpr(eval_.Ctx(), eval_.Lex(), &entry),
                  ZR_XPATH_ERR_UNSUPPORTED_OPERATOR)
            << operatorClass;
        EXPECT_EQ(eval_.Objects(), 0u);
    }
}

TEST_F(OperatorStack, RefusesATokenThatIsNoOperatorAndFreesTheOperands)
{
    PushOperands(2);
    ZrXpathOperatorEntry number{2, 0};
    EXPECT_EQ(ZR_XPATH_CalculateOneExpr(eval_.Ctx(), eval_.Lex(), &number),
              ZR_XPATH_ERR_BAD_OPERATION);
    EXPECT_EQ(eval_.Objects(), 0u);
    PushOperands(2);
    ZrXpathOperatorEntry pastTheEnd{0, 99};
    EXPECT_EQ(ZR_XPATH_CalculateOneExpr(eval_.Ctx(), eval_.Lex(), &pastTheEnd),
              ZR_XPATH_ERR_BAD_OPERATION);
}

} // namespace
