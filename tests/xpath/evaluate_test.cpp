// SPDX-License-Identifier: Apache-2.0
#include "xpath/evaluate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <pthread.h>
#include <string>
#include <utility>

#include "support/alloc.h"
#include "xpath/data_tree.h"
#include "xpath/evaluation.h"
#include "xpath/lex.h"

namespace {

using zrtest::DataTree;
using zrtest::Evaluation;

constexpr uint32_t kTrue = 0;
constexpr uint32_t kFalse = ZR_XPATH_RESULT_FALSE;

TEST(EvalCondition, RefusesNull)
{
    DataTree tree("<r/>");
    EXPECT_EQ(ZR_XPATH_EvalCondition(nullptr, tree.Top(), "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_XPATH_EvalCondition(tree.Root(), nullptr, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_XPATH_EvalCondition(tree.Root(), tree.Top(), nullptr), ZR_ERR_INVALID);
}

TEST(EvalCondition, RefusesAnExpressionWithoutAValue)
{
    DataTree tree("<r/>");
    for (const char *expression : {"", "  \t\r\n", "()", "(())"})
        EXPECT_EQ(tree.Eval(expression), ZR_ERR_INVALID) << expression;
}

TEST(EvalCondition, RefusesWhatCannotBeTokenized)
{
    DataTree tree("<r/>");
    for (const char *expression : {"a b", "$x", "child::x", "'a", "1.2.3", "a = 'b", "#"})
        EXPECT_EQ(tree.Eval(expression), ZR_XPATH_ERR_TOKENIZE) << expression;
}

TEST(EvalCondition, RefusesTwoOperandsWithoutAnOperator)
{
    DataTree tree("<r><a/></r>");
    for (const char *expression :
         {"1 2", "'a' 'b'", "a/text 'b'", "(a) (b)", "a 1", "not(1, 2)", "(a)/b", "'a'/b"})
        EXPECT_EQ(tree.Eval(expression), ZR_ERR_INVALID) << expression;
}

TEST(EvalCondition, RefusesAnOperatorWithoutItsOperands)
{
    DataTree tree("<r><a>1</a></r>");
    for (const char *expression : {"-1", "- 1", "=", "= 1", "1 =", "a =", "1 or", "a and", "< 1",
                                   "1 = = 1", "() = 1", "1 = ()", "+", "|"})
        EXPECT_EQ(tree.Eval(expression), ZR_ERR_INVALID) << expression;
    EXPECT_EQ(tree.Eval("or"), kFalse); // a name
}

TEST(EvalCondition, TokenizesArithmeticAndUnionsButDoesNotEvaluateThem)
{
    DataTree tree("<r><a>1</a></r>");
    for (const char *expression : {"1 + 2 = 3", "1 - 2", "a * 2", "4 div 2 = 2", "4 mod 2", "a | b",
                                   "1 = 2 + 3", "(1 + 2)", "not(a | b)"})
        EXPECT_EQ(tree.Eval(expression), ZR_XPATH_ERR_UNSUPPORTED_OPERATOR) << expression;
}

TEST(EvalCondition, RefusesUnbalancedParentheses)
{
    DataTree tree("<r><a>1</a></r>");
    for (const char *expression : {"(", ")", ",", "(a", "a)", "(a))", "((a)", "not(", "not(a",
                                   "not(a,", "not a", "(a, a)", "a, a", "not((a)"})
        EXPECT_EQ(tree.Eval(expression), std::string(expression) == "not a" ? 0x7101u : 0x7102u)
            << expression;
}

TEST(EvalCondition, RefusesUnknownFunctions)
{
    DataTree tree("<r><x/></r>");
    for (const char *expression : {"count(x) > 1", "current()", "true()", "x/text()", "string(x)",
                                   "boolean(x)", "aaaaaaaaaaaaaaaaaaaaa(x)", "last()"})
        EXPECT_EQ(tree.Eval(expression), ZR_XPATH_ERR_UNKNOWN_FUNCTION) << expression;
}

TEST(EvalCondition, RefusesOperandsThatItDoesNotKnow)
{
    DataTree tree("<r><a/></r>");
    for (const char *expression : {"@a", "a/@b", "[1]", "]", "a[1][2]", "a[b[c]]", ".[1]", "/[1]"})
        EXPECT_EQ(tree.Eval(expression), ZR_ERR_INVALID) << expression;
}

TEST(EvalCondition, RefusesAPathThatStartsWithADoubleSlash)
{
    DataTree tree("<a/>");
    EXPECT_EQ(tree.Eval("//a"), ZR_XPATH_ERR_ROOT_STEP);
    EXPECT_EQ(tree.Eval("1 = //a"), ZR_XPATH_ERR_ROOT_STEP);
}

TEST(EvalCondition, RefusesAPredicateWithoutItsEnd)
{
    DataTree tree("<r><a/></r>");
    EXPECT_EQ(tree.Eval("a["), ZR_XPATH_ERR_PREDICATE);
    EXPECT_EQ(tree.Eval("a[b = 1"), ZR_XPATH_ERR_PREDICATE);
}

TEST(EvalCondition, ComparesASiblingsValue)
{
    DataTree tree("<r><x>on</x><y/></r>");
    EXPECT_EQ(tree.EvalAt("y", "../x = 'on'"), kTrue);
    EXPECT_EQ(tree.EvalAt("y", "../x = 'off'"), kFalse);
    EXPECT_EQ(tree.EvalAt("y", "../p:x = 'on'"), kTrue);
}

TEST(EvalCondition, IgnoresPredicatesAndTakesTheFirstNode)
{
    DataTree tree("<r><x><name>b</name><y>1</y></x><x><name>a</name><y>2</y></x></r>");
    EXPECT_EQ(tree.Eval("x[name='a']/y = 1"), kTrue);
    EXPECT_EQ(tree.Eval("x[name='a']/y = 2"), kFalse);
    EXPECT_EQ(tree.Eval("x[2]/name = 'b'"), kTrue);
    EXPECT_EQ(tree.Eval("x[name=current()/../z]/y = 1"), kTrue);
}

TEST(EvalCondition, NegatesTheExistenceOfANode)
{
    DataTree tree("<r><y/></r>");
    EXPECT_EQ(tree.Eval("not(x)"), kTrue);
    EXPECT_EQ(tree.Eval("not(y)"), kFalse);
    EXPECT_EQ(tree.Eval("not(not(y))"), kTrue);
    EXPECT_EQ(tree.Eval("not(x) and y"), kTrue);
}

TEST(EvalCondition, NegatesWhateverLiesOnTheStackForNotWithoutArgument)
{
    DataTree tree("<r><y/></r>");
    EXPECT_EQ(tree.Eval("not()"), ZR_ERR_INVALID);
    EXPECT_EQ(tree.Eval("y or not()"), ZR_ERR_INVALID); // negates y, then "or" lacks an operand
    EXPECT_EQ(tree.Eval("0 not()"), ZR_XPATH_ERR_TOKENIZE);
    EXPECT_EQ(tree.Eval("0 = not(1, not())"), kFalse); // 0 = not(not(1))
}

TEST(EvalCondition, ComparesNumbersByValue)
{
    DataTree tree("<r><x>1.0</x></r>");
    EXPECT_EQ(tree.Eval("x = 1"), kTrue);
    EXPECT_EQ(tree.Eval("x = '1'"), kFalse);
    EXPECT_EQ(tree.Eval("x = .5.3"), kFalse);
    EXPECT_EQ(tree.Eval("x != .5.3"), kTrue);
    EXPECT_EQ(tree.Eval("x > 0.5"), kTrue);
}

TEST(EvalCondition, TakesAMissingNodeAsTheEmptyStringInComparisons)
{
    DataTree tree("<r/>");
    EXPECT_EQ(tree.Eval("x = 'abc'"), kFalse);
    EXPECT_EQ(tree.Eval("x != 'abc'"), kTrue);
    EXPECT_EQ(tree.Eval("x = ''"), kTrue);
    EXPECT_EQ(tree.Eval("x < 1"), kFalse);
    EXPECT_EQ(tree.Eval("x >= 0"), kFalse);
}

TEST(EvalCondition, IsFalseForARelationWithWhatIsNoNumber)
{
    DataTree tree("<r><x>2</x></r>");
    EXPECT_EQ(tree.Eval("x > 'abc'"), kFalse);
    EXPECT_EQ(tree.Eval("x <= 'abc'"), kFalse);
    EXPECT_EQ(tree.Eval("'b' > 'a'"), kFalse);
}

TEST(EvalCondition, StartsAbsolutePathsAtTheRootNode)
{
    DataTree tree("<a><b>1</b></a>");
    EXPECT_EQ(tree.EvalAt("b", "/a"), kTrue);
    EXPECT_EQ(tree.EvalAt("b", "/b"), kFalse);
    EXPECT_EQ(tree.EvalAt("b", "/"), kTrue);
    EXPECT_EQ(tree.EvalAt("b", "/a/b = 1"), kTrue);
    EXPECT_EQ(ZR_XPATH_EvalCondition(tree.Top(), tree.Find("b"), "/b = 1"), kTrue);
}

TEST(EvalCondition, ReadsADoubleSlashInsideAPathAsASingleOne)
{
    DataTree tree("<r><a><b>1</b><c><d/></c></a></r>");
    EXPECT_EQ(tree.Eval("a//b = 1"), kTrue);
    EXPECT_EQ(tree.Eval("a//d"), kFalse);
    EXPECT_EQ(tree.Eval("/r//a/b = 1"), kTrue);
}

TEST(EvalCondition, BindsOperatorsByTheirClass)
{
    DataTree tree("<r/>");
    EXPECT_EQ(tree.Eval("1 or 0 and 0"), kTrue);
    EXPECT_EQ(tree.Eval("(1 or 0) and 0"), kFalse);
    EXPECT_EQ(tree.Eval("0 and 0 or 1"), kTrue);
    EXPECT_EQ(tree.Eval("1 = 2 < 3"), kTrue);   // 1 = (2 < 3)
    EXPECT_EQ(tree.Eval("(1 = 2) < 3"), kTrue); // 0 < 3
    EXPECT_EQ(tree.Eval("2 = 1 = 0"), kTrue);   // (2 = 1) = 0
    EXPECT_EQ(tree.Eval("2 = (1 = 0)"), kFalse);
    EXPECT_EQ(tree.Eval("3 > 2 > 1"), kFalse); // 1 > 1
    EXPECT_EQ(tree.Eval("1 or 1 = 2"), kTrue);
    EXPECT_EQ(tree.Eval("1 < 2 and 2 < 3"), kTrue);
}

TEST(EvalCondition, EvaluatesBothSidesOfOrAndAnd)
{
    DataTree tree("<r/>");
    EXPECT_EQ(tree.Eval("1 or unknown()"), ZR_XPATH_ERR_UNKNOWN_FUNCTION);
    EXPECT_EQ(tree.Eval("0 and 1 + 1"), ZR_XPATH_ERR_UNSUPPORTED_OPERATOR);
}

TEST(EvalCondition, TakesALoneOperandAsABoolean)
{
    DataTree tree("<r><a/></r>");
    EXPECT_EQ(tree.Eval("a"), kTrue);
    EXPECT_EQ(tree.Eval("b"), kFalse);
    EXPECT_EQ(tree.Eval("'false'"), kTrue);
    EXPECT_EQ(tree.Eval("''"), kFalse);
    EXPECT_EQ(tree.Eval("0"), kFalse);
    EXPECT_EQ(tree.Eval("2"), kTrue);
    EXPECT_EQ(tree.Eval("0.0000000000000001"), kFalse); // below the epsilon
    EXPECT_EQ(tree.Eval("."), kTrue);
    EXPECT_EQ(tree.Eval("*"), kFalse);
}

TEST(EvalCondition, ReadsTheFirstWordOfAnOperatorAsAName)
{
    DataTree tree("<r><and>1</and><or>1</or></r>");
    EXPECT_EQ(tree.Eval("and and or or mod"), kTrue);
    EXPECT_EQ(tree.Eval("and = or"), kTrue);
    EXPECT_EQ(tree.Eval("and andor"), kTrue); // "and", then the name "or"
}

TEST(EvalCondition, LeavesTheTreeAsItWas)
{
    DataTree tree("<r><a>1</a></r>");
    xmlNode *a = tree.Find("a");
    void *schemaNode = a->_private;
    EXPECT_EQ(tree.Eval("a = 1 and not(b) and ../a != 2"), kTrue);
    EXPECT_EQ(a->_private, schemaNode);
    EXPECT_EQ(tree.Top()->children, a);
    EXPECT_STREQ(reinterpret_cast<const char *>(a->children->content), "1");
}

TEST(EvalCondition, TakesVeryLongConditions)
{
    DataTree tree("<r><a>1</a></r>");
    std::string condition = "a = 1";
    while (condition.size() < 3200)
        condition += " and a = 1";
    EXPECT_EQ(tree.Eval(condition.c_str()), kTrue);
    EXPECT_EQ(tree.Eval(("'" + std::string(100000, 'x') + "'").c_str()), kTrue);
    EXPECT_EQ(tree.Eval((condition + " and").c_str()), ZR_ERR_INVALID);
    EXPECT_EQ(tree.Eval((std::string(5000, 'n') + " = 1").c_str()), ZR_ERR_INVALID); // no such name
    EXPECT_EQ(tree.Eval(("a = " + std::string(400, '9')).c_str()), kFalse);
}

// Runs `run` on a thread with a stack of 256 KB, the smallest that threads are commonly given.
void OnSmallStack(void *(*run)(void *), void *argument)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, run, argument), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(EvalCondition, NeedsNoCallStackForNestedParentheses)
{
    OnSmallStack(
        [](void *) -> void * {
            DataTree tree("<r><a>1</a></r>");
            for (size_t depth : {size_t{3000}, size_t{8000}}) {
                std::string open(depth, '(');
                std::string close(depth, ')');
                EXPECT_EQ(tree.Eval((open + "a = 1" + close).c_str()), kTrue);
                EXPECT_EQ(tree.Eval((open + "a = 2" + close).c_str()), kFalse);
                EXPECT_EQ(tree.Eval((open + "a").c_str()), ZR_XPATH_ERR_PAREN);
                std::string calls;
                for (size_t i = 0; i < depth; ++i)
                    calls += "not(";
                EXPECT_EQ(tree.Eval((calls + "a" + close).c_str()), kTrue); // an even number
                EXPECT_EQ(tree.Eval((calls + "a").c_str()), ZR_XPATH_ERR_PAREN);
            }
            return nullptr;
        },
        nullptr);
}

TEST(EvalCondition, FailsCleanlyWhenAnyAllocationFails)
{
    DataTree tree("<r><a>1</a><b>on</b></r>");
    const std::pair<const char *, uint32_t> conditions[] = {
        {"a = 1", kTrue},
        {"../b = 'on' and not(c) and (a >= 1 or b != '') and /r/a and 1 < 2", kTrue},
        {"'' = '' and b = a", kFalse},
        {"not((a = b), '')", ZR_ERR_INVALID},
        {"(a = 1 = 'true') = b", kTrue},
        {"a + 1", ZR_XPATH_ERR_UNSUPPORTED_OPERATOR},
        {"(a", ZR_XPATH_ERR_PAREN},
        {"derived-from(a, 'x')", ZR_ERR_INVALID},
        {"derived-from('a', 'x')", ZR_XPATH_ERR_BAD_ARGUMENT},
        {"unknown(a)", ZR_XPATH_ERR_UNKNOWN_FUNCTION},
        {"a[b", ZR_XPATH_ERR_PREDICATE},
    };
    for (const auto &row : conditions) {
        const char *condition = row.first;
        SCOPED_TRACE(condition);
        zrtest::AllocGuard guard;
        ZR_XPATH_FreeXpathLex(ZR_XPATH_ExprTokenize(condition));
        uint64_t tokenizing = guard.Count();
        zrtest::FailEachAllocation(guard, [&](zrtest::FailPoint &memory) {
            uint32_t status = memory.Run([&] { return tree.Eval(condition); });
            uint32_t expected = row.second;
            if (memory.Failed()) // the first ones as an expression that is none
                expected = memory.n() < tokenizing ? uint32_t{ZR_XPATH_ERR_TOKENIZE}
                                                   : uint32_t{ZR_ERR_NO_MEMORY};
            EXPECT_EQ(status, expected);
        });
    }
}

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
