#include "xpath/evaluate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "xpath/evaluation.h"

namespace {

using zrtest::DataTree;
using zrtest::Evaluation;

const char *const kXml = "<r><a>1</a><b>on</b></r>";

class Expression : public testing::Test {
protected:
    DataTree tree_{kXml};
};

TEST_F(Expression, EndsAtTheEndOfTheTokens)
{
    Evaluation eval(tree_, "1 = 1 or 2 < 1");
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalExpr), ZR_OK);
    EXPECT_EQ(eval.Cursor(), 7u);
    EXPECT_EQ(eval.Objects(), 1u);
    EXPECT_EQ(eval.Operators(), 0u);
}

TEST_F(Expression, StaysOnTheTokenThatClosesIt)
{
    for (const char *expression : {"1 = 1)", "1 = 1, 2"}) {
        Evaluation eval(tree_, expression);
        ZR_XPATH_PushExprTypeToStack(eval.Ctx(), ZR_XPATH_MARKER_CLASS, 0);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalExpr), ZR_OK) << expression;
        EXPECT_EQ(eval.Cursor(), 3u) << expression;
        EXPECT_EQ(eval.Operators(), 0u) << expression;
    }
}

TEST_F(Expression, RefusesACloseThatNothingOpened)
{
    for (const char *expression : {")", ",", "1)", "1, 2", "(1))", "1 = 1)"}) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalExpr), ZR_XPATH_ERR_PAREN) << expression;
    }
}

TEST_F(Expression, RefusesItsEndInsideASubExpression)
{
    for (const char *expression : {"(", "(1", "not(", "not(1", "not(1,", "((1)", "1 = (2"}) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalExpr), ZR_XPATH_ERR_PAREN) << expression;
    }
}

TEST_F(Expression, RefusesACommaInAPlainParenthesis)
{
    for (const char *expression : {"(1, 2)", "((1), 2)", "not((1, 2))"}) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalExpr), ZR_XPATH_ERR_PAREN) << expression;
    }
}

TEST_F(Expression, LeavesTheArgumentsOfACallInOrder)
{
    Evaluation eval(tree_, "not(1, 'b', 0)");
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalExpr), ZR_OK);
    EXPECT_EQ(eval.Objects(), 3u);
    EXPECT_EQ(eval.Top()->kind, ZR_XPATH_OBJ_BOOLEAN);
    EXPECT_EQ(eval.Top()->value.boolean, 1u);
}

TEST_F(Expression, GivesTheSameWhetherParenthesesAreOpenedByItOrByAnOperand)
{
    for (const char *expression : {"(1 = 1)",
                                   "(1)",
                                   "((a))",
                                   "not(a)",
                                   "not(not(1 = 2))",
                                   "not((a) and b, (0))",
                                   "()",
                                   "not()",
                                   "(1",
                                   "(1, 2)",
                                   "not(1",
                                   "none(1)",
                                   "not(1,)",
                                   "(1 + 2)",
                                   "(2 -)",
                                   "(1 2 = 3)",
                                   "derived-from(a, 'x')",
                                   "not(1))",
                                   "not(,)",
                                   "(,"}) {
        Evaluation whole(tree_, expression);
        Evaluation operand(tree_, expression);
        uint32_t status = operand.Run(ZR_XPATH_EvalPathExpr);
        if (status == ZR_OK && operand.Cursor() < ZR_XPATH_GetTokenNumber(operand.Lex()))
            status = operand.Run(ZR_XPATH_EvalExpr);
        EXPECT_EQ(whole.Run(ZR_XPATH_EvalExpr), status) << expression;
        if (status == ZR_OK) {
            EXPECT_EQ(whole.Objects(), operand.Objects()) << expression;
            EXPECT_EQ(whole.Cursor(), operand.Cursor()) << expression;
        }
    }
}

TEST_F(Expression, StartsASubExpressionOnlyAtAParenthesisOrComma)
{
    for (const char *expression : {"a", "1", ")", "/a", "[1]", "not(a)"}) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalSubExpr), ZR_XPATH_ERR_SUBEXPR_START) << expression;
        EXPECT_EQ(eval.Operators(), 0u);
    }
    Evaluation empty(tree_, "");
    EXPECT_EQ(empty.Run(ZR_XPATH_EvalSubExpr), ZR_XPATH_ERR_SUBEXPR_START);
}

TEST_F(Expression, EndsASubExpressionOnTheParenthesisOrComma)
{
    for (const char *expression : {"(1)", "(1,", ",1)", ",1,"}) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalSubExpr), ZR_OK) << expression;
        EXPECT_EQ(eval.Cursor(), 2u) << expression;
        EXPECT_EQ(eval.Objects(), 1u) << expression;
        EXPECT_EQ(eval.Operators(), 0u) << expression;
    }
}

// An expression only ends at a close or at the end of the tokens, which is an error of its own
// while a marker is open: ZR_XPATH_ERR_SUBEXPR_END guards against a change to that.
TEST_F(Expression, RefusesASubExpressionWithoutItsEndAsAnOpenParenthesis)
{
    for (const char *expression : {"(", "(1", ",", ",1 = 2"}) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalSubExpr), ZR_XPATH_ERR_PAREN) << expression;
    }
}

TEST_F(Expression, TakesPrimaryExpressionsAndPathsAsOperands)
{
    struct Row {
        const char *expression;
        uint32_t kind;
        uint32_t cursor;
    };
    for (const Row &row :
         {Row{"'x'", 1, 1}, Row{"1", 3, 1}, Row{"(1)", 3, 3}, Row{"not(1)", 0, 4}, Row{"/", 2, 1},
          Row{"/r/a", 2, 4}, Row{".", 2, 1}, Row{"..", 2, 1}, Row{"a/b", 2, 3}, Row{"*", 2, 1}}) {
        Evaluation eval(tree_, row.expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalPathExpr), ZR_OK) << row.expression;
        EXPECT_EQ(eval.Top()->kind, row.kind) << row.expression;
        EXPECT_EQ(eval.Cursor(), row.cursor) << row.expression;
        EXPECT_EQ(eval.Objects(), 1u) << row.expression;
    }
}

TEST_F(Expression, RefusesWhatStartsNoOperand)
{
    for (const char *expression : {"[1]", "]", "@a", ")", ","}) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalPathExpr), ZR_ERR_INVALID) << expression;
    }
    Evaluation reserved(tree_, "a");
    reserved.Lex()->tokens[0].type = ZR_XPATH_TOKEN_RESERVED9;
    EXPECT_EQ(reserved.Run(ZR_XPATH_EvalPathExpr), ZR_XPATH_ERR_BAD_STEP);
}

TEST_F(Expression, RefusesAnUnexpectedTokenAsAPrimaryExpression)
{
    for (const char *expression : {"a", ".", "..", "/", ")", "[", "]", "@", ",", "=", "+"}) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalPrimaryExpr), ZR_XPATH_ERR_BAD_PRIMARY) << expression;
    }
    Evaluation empty(tree_, "");
    EXPECT_EQ(empty.Run(ZR_XPATH_EvalPrimaryExpr), ZR_XPATH_ERR_BAD_PRIMARY);
}

TEST_F(Expression, PushesALiteralWithoutItsQuotes)
{
    const std::pair<const char *, const char *> literals[] = {
        {"'abc'", "abc"}, {"\"it's\"", "it's"}, {"''", ""}, {"' a '", " a "}};
    for (const auto &[expression, text] : literals) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalLiteral), ZR_OK) << expression;
        EXPECT_STREQ(eval.Top()->value.string, text);
        EXPECT_EQ(eval.Cursor(), 1u);
    }
}

TEST_F(Expression, PushesANumberAndNanForWhatIsNone)
{
    const std::pair<const char *, double> numbers[] = {{"1", 1},  {"12.5", 12.5}, {".5", .5},
                                                       {"7.", 7}, {"0", 0},       {"00012", 12}};
    for (const auto &[expression, value] : numbers) {
        Evaluation eval(tree_, expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalNumber), ZR_OK) << expression;
        EXPECT_EQ(eval.Top()->kind, ZR_XPATH_OBJ_NUMBER);
        EXPECT_EQ(eval.Top()->value.number, value) << expression;
        EXPECT_EQ(eval.Cursor(), 1u);
    }
    Evaluation eval(tree_, ".5.3");
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalNumber), ZR_OK);
    EXPECT_TRUE(std::isnan(eval.Top()->value.number));
}

TEST_F(Expression, RefusesACallOfAnUnknownFunction)
{
    for (const char *expression :
         {"count(a)", "current()", "Not(1)", "nott(1)", "p:not(1)", "derived-from-or-sel(1)",
          "derived-from-or-self1(1)", "a-function-of-21-charactersx(1)", "*(1)"}) {
        Evaluation call(tree_, expression);
        EXPECT_EQ(call.Run(ZR_XPATH_EvalFunctionCall), ZR_XPATH_ERR_UNKNOWN_FUNCTION) << expression;
        Evaluation whole(tree_, expression);
        EXPECT_EQ(whole.Run(ZR_XPATH_EvalExpr), ZR_XPATH_ERR_UNKNOWN_FUNCTION) << expression;
    }
}

TEST_F(Expression, RefusesAFunctionNameWithoutItsParenthesis)
{
    for (auto run : {ZR_XPATH_EvalFunctionCall, ZR_XPATH_EvalExpr}) {
        Evaluation eval(tree_, "not");
        eval.Lex()->tokens[0].type = ZR_XPATH_TOKEN_FUNCNAME;
        EXPECT_EQ(eval.Run(run), ZR_XPATH_ERR_PAREN);
    }
}

TEST_F(Expression, PassesTheArgumentsOfACall)
{
    struct Row {
        const char *expression;
        uint32_t objects;
    };
    for (const Row &row : {Row{"()", 0}, Row{"(1)", 1}, Row{"(1, 'b')", 2}, Row{"(1,)", 1},
                           Row{"(,1)", 1}, Row{"(1 = 1, (2), a)", 3}}) {
        Evaluation eval(tree_, row.expression);
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalFunctionCallArguments), ZR_OK) << row.expression;
        EXPECT_EQ(eval.Objects(), row.objects) << row.expression;
        EXPECT_EQ(eval.Cursor(), ZR_XPATH_GetTokenNumber(eval.Lex())) << row.expression;
    }
    Evaluation open(tree_, "(1, 2");
    EXPECT_EQ(open.Run(ZR_XPATH_EvalFunctionCallArguments), ZR_XPATH_ERR_PAREN);
    Evaluation empty(tree_, "");
    EXPECT_EQ(empty.Run(ZR_XPATH_EvalFunctionCallArguments), ZR_XPATH_ERR_PAREN);
    Evaluation other(tree_, "a");
    EXPECT_EQ(other.Run(ZR_XPATH_EvalFunctionCallArguments), ZR_XPATH_ERR_SUBEXPR_START);
}

} // namespace
