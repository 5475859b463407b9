#include "xpath/evaluate.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <string>
#include <utility>

#include "support/alloc.h"
#include "xpath/data_tree.h"
#include "xpath/lex.h"

namespace {

using zrtest::DataTree;

constexpr uint32_t kTrue = 0;
constexpr uint32_t kFalse = ZR_XPATH_RESULT_FALSE;

TEST(EvalCondition, HasTheStatedCodes)
{
    EXPECT_EQ(ZR_XPATH_RESULT_FALSE, 0x7100u);
    EXPECT_EQ(ZR_XPATH_ERR_TOKENIZE, 0x7101u);
    EXPECT_EQ(ZR_XPATH_ERR_PAREN, 0x7102u);
    EXPECT_EQ(ZR_XPATH_ERR_UNSUPPORTED_OPERATOR, 0x7103u);
    EXPECT_EQ(ZR_XPATH_ERR_BAD_OPERATION, 0x7104u);
    EXPECT_EQ(ZR_XPATH_ERR_BAD_PRIMARY, 0x7105u);
    EXPECT_EQ(ZR_XPATH_ERR_ROOT_STEP, 0x7106u);
    EXPECT_EQ(ZR_XPATH_ERR_BAD_STEP, 0x7107u);
    EXPECT_EQ(ZR_XPATH_ERR_UNKNOWN_FUNCTION, 0x7108u);
    EXPECT_EQ(ZR_XPATH_ERR_BAD_ARGUMENT, 0x7109u);
    EXPECT_EQ(ZR_XPATH_ERR_NO_SCHEMA, 0x710Au);
    EXPECT_EQ(ZR_XPATH_ERR_SUBEXPR_START, 0x710Bu);
    EXPECT_EQ(ZR_XPATH_ERR_SUBEXPR_END, 0x710Cu);
    EXPECT_EQ(ZR_XPATH_ERR_PREDICATE, 0x710Du);
}

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
    for (const auto &[condition, result] : conditions) {
        zrtest::AllocGuard counting;
        ZR_XPATH_FreeXpathLex(ZR_XPATH_ExprTokenize(condition));
        uint64_t tokenizing = counting.Count(); // these fail as an expression that is no expression
        for (uint64_t n = 0;; ++n) {
            counting.FailAt(n);
            uint32_t status = tree.Eval(condition);
            EXPECT_EQ(counting.LiveBlocks(), 0) << condition << " " << n;
            if (counting.Count() <= n) {
                EXPECT_EQ(status, result) << condition;
                break;
            }
            EXPECT_EQ(status,
                      n < tokenizing ? uint32_t{ZR_XPATH_ERR_TOKENIZE} : uint32_t{ZR_ERR_NO_MEMORY})
                << condition << " " << n;
        }
    }
}

} // namespace
