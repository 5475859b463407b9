#include <gtest/gtest.h>

#include <array>
#include <string>

#include "foundation/array.h"
#include "support/alloc.h"
#include "xpath/lex.h"

namespace {

// A list over an expression whose stored tokens have the given types.
class Scan {
public:
    explicit Scan(const char *expression, uint32_t previousType = ZR_XPATH_TOKEN_NONE)
    {
        slots_[0] = ZrXpathToken{previousType, 1, 0};
        uint32_t count = previousType == ZR_XPATH_TOKEN_NONE ? 0 : 1;
        lex_ = ZrXpathLex{slots_.data(), expression, count, static_cast<uint32_t>(slots_.size())};
    }
    uint32_t Run(uint32_t (*scanner)(ZrXpathLex *, uint32_t, ZrXpathToken *), uint32_t cursor = 0)
    {
        token_ = ZrXpathToken{};
        return scanner(&lex_, cursor, &token_);
    }
    uint32_t Type() const { return token_.type; }
    uint32_t Length() const { return token_.length; }
    ZrXpathLex &Lex() { return lex_; }

private:
    std::array<ZrXpathToken, 10> slots_{};
    ZrXpathLex lex_{};
    ZrXpathToken token_{};
};

TEST(SymbolTable, GivesEverySymbolItsTokenTheLongerOneFirst)
{
    const std::pair<std::string, uint32_t> symbols[] = {
        {")", ZR_XPATH_TOKEN_RPAREN},      {"[", ZR_XPATH_TOKEN_LBRACKET},
        {"]", ZR_XPATH_TOKEN_RBRACKET},    {"@", ZR_XPATH_TOKEN_AT},
        {",", ZR_XPATH_TOKEN_COMMA},       {"|", ZR_XPATH_TOKEN_UNION},
        {"+", ZR_XPATH_TOKEN_ADDITIVE},    {"-", ZR_XPATH_TOKEN_ADDITIVE},
        {"=", ZR_XPATH_TOKEN_EQUALITY},    {"!=", ZR_XPATH_TOKEN_EQUALITY},
        {">=", ZR_XPATH_TOKEN_RELATIONAL}, {"<=", ZR_XPATH_TOKEN_RELATIONAL},
        {">", ZR_XPATH_TOKEN_RELATIONAL},  {"<", ZR_XPATH_TOKEN_RELATIONAL},
        {"..", ZR_XPATH_TOKEN_DOTDOT},     {"//", ZR_XPATH_TOKEN_PATHOP},
        {"/", ZR_XPATH_TOKEN_PATHOP},
    };
    EXPECT_EQ(zr::kXpathSymbolCount, std::size(symbols));
    for (const auto &[text, type] : symbols) {
        std::string expression = text + "a";
        Scan scan(expression.c_str());
        EXPECT_EQ(scan.Run(ZR_XPATH_GetTokenStartWithOtherCh), ZR_OK) << text;
        EXPECT_EQ(scan.Type(), type) << text;
        EXPECT_EQ(scan.Length(), text.size()) << text;
    }
}

TEST(SymbolTable, GivesTheRowCountForWhatItDoesNotHold)
{
    for (const char *text : {"(", "*", ".", "'", "\"", "!", "a", "1", "$", ""}) {
        Scan scan(text);
        EXPECT_EQ(ZR_XPATH_GetTgtTokenFromSymbolTbl(&scan.Lex(), 0), zr::kXpathSymbolCount) << text;
    }
}

TEST(SymbolTable, IsSearchedAtTheCursor)
{
    Scan scan("a<=");
    EXPECT_EQ(ZR_XPATH_GetTgtTokenFromSymbolTbl(&scan.Lex(), 1), 11u);
    EXPECT_EQ(ZR_XPATH_GetTgtTokenFromSymbolTbl(&scan.Lex(), 2), 8u);
}

TEST(NumberScanner, StopsAtTheFirstCharacterThatIsNoDigitOrDot)
{
    const std::pair<const char *, uint32_t> numbers[] = {
        {"1", 1}, {"12a", 2}, {"1.", 2}, {"1.5)", 3}, {".5.3", 4}, {"1 2", 1}, {"1e5", 1}};
    for (const auto &[text, length] : numbers) {
        Scan scan(text);
        EXPECT_EQ(scan.Run(ZR_XPATH_GetTokenStartWithDigit), ZR_OK) << text;
        EXPECT_EQ(scan.Type(), ZR_XPATH_TOKEN_NUMBER) << text;
        EXPECT_EQ(scan.Length(), length) << text;
    }
}

TEST(NumberScanner, FailsAtASecondDot)
{
    for (const char *text : {"1.2.3", "1..", ".5.3.1"}) {
        Scan scan(text);
        EXPECT_EQ(scan.Run(ZR_XPATH_GetTokenStartWithDigit), ZR_ERR_INVALID) << text;
        EXPECT_EQ(scan.Type(), ZR_XPATH_TOKEN_NONE) << text;
    }
}

TEST(NameScanner, ReadsNamesWithAndWithoutAPrefix)
{
    const std::pair<const char *, uint32_t> names[] = {
        {"a", 1},    {"a-b.c_1/x", 7}, {"p:a=1", 3}, {"p:*", 3},   {"a:", 2},
        {"a:/b", 2}, {"a::b", 2},      {"p:1-x", 5}, {"p:a:b", 3}, {"p:**", 3}};
    for (const auto &[text, length] : names) {
        Scan scan(text);
        EXPECT_EQ(scan.Run(ZR_XPATH_GetTokenStartWithNameStart), ZR_OK) << text;
        EXPECT_EQ(scan.Type(), ZR_XPATH_TOKEN_NAME) << text;
        EXPECT_EQ(scan.Length(), length) << text;
    }
}

TEST(NameScanner, ReadsAnOperatorAfterAnOperand)
{
    Scan scan("and", ZR_XPATH_TOKEN_NAME);
    EXPECT_EQ(scan.Run(ZR_XPATH_GetTokenStartWithNameStart), ZR_OK);
    EXPECT_EQ(scan.Type(), ZR_XPATH_TOKEN_AND);
    Scan name("and", ZR_XPATH_TOKEN_PATHOP);
    EXPECT_EQ(name.Run(ZR_XPATH_GetTokenStartWithNameStart), ZR_OK);
    EXPECT_EQ(name.Type(), ZR_XPATH_TOKEN_NAME);
}

TEST(OperatorNames, AreComparedByTheirLength)
{
    struct Row {
        const char *text;
        uint32_t type;
        uint32_t length;
    };
    for (const Row &row :
         {Row{"and", ZR_XPATH_TOKEN_AND, 3}, Row{"or", ZR_XPATH_TOKEN_OR, 2},
          Row{"div", ZR_XPATH_TOKEN_MULTIPLY, 3}, Row{"mod", ZR_XPATH_TOKEN_MULTIPLY, 3},
          Row{"andx", ZR_XPATH_TOKEN_AND, 3}, Row{"orange", ZR_XPATH_TOKEN_OR, 2},
          Row{"divide", ZR_XPATH_TOKEN_MULTIPLY, 3}, Row{"model", ZR_XPATH_TOKEN_MULTIPLY, 3}}) {
        Scan scan(row.text);
        EXPECT_EQ(scan.Run(ZR_XPATH_GetOperatorType), ZR_OK) << row.text;
        EXPECT_EQ(scan.Type(), row.type) << row.text;
        EXPECT_EQ(scan.Length(), row.length) << row.text;
    }
    for (const char *text : {"an", "o", "di", "mo", "AND", "xor", ""}) {
        Scan scan(text);
        EXPECT_EQ(scan.Run(ZR_XPATH_GetOperatorType), ZR_ERR_INVALID) << text;
        EXPECT_EQ(scan.Type(), ZR_XPATH_TOKEN_NONE) << text;
    }
}

TEST(SpecialSymbols, RetypeTheNameBeforeAParenthesis)
{
    Scan name("(", ZR_XPATH_TOKEN_NAME);
    EXPECT_EQ(name.Run(ZR_XPATH_ParseSpecialSymbol), ZR_OK);
    EXPECT_EQ(name.Type(), ZR_XPATH_TOKEN_LPAREN);
    EXPECT_EQ(name.Lex().tokens[0].type, ZR_XPATH_TOKEN_FUNCNAME);
    Scan number("(", ZR_XPATH_TOKEN_NUMBER);
    EXPECT_EQ(number.Run(ZR_XPATH_ParseSpecialSymbol), ZR_OK);
    EXPECT_EQ(number.Lex().tokens[0].type, ZR_XPATH_TOKEN_NUMBER);
    Scan first("(");
    EXPECT_EQ(first.Run(ZR_XPATH_ParseSpecialSymbol), ZR_OK);
    EXPECT_EQ(first.Length(), 1u);
}

TEST(SpecialSymbols, ReadStarsDotsAndQuotes)
{
    struct Row {
        const char *text;
        uint32_t previous;
        uint32_t type;
        uint32_t length;
    };
    for (const Row &row : {Row{"*", ZR_XPATH_TOKEN_NONE, ZR_XPATH_TOKEN_NAME, 1},
                           Row{"*", ZR_XPATH_TOKEN_NAME, ZR_XPATH_TOKEN_MULTIPLY, 1},
                           Row{"*", ZR_XPATH_TOKEN_PATHOP, ZR_XPATH_TOKEN_NAME, 1},
                           Row{".", ZR_XPATH_TOKEN_NONE, ZR_XPATH_TOKEN_DOT, 1},
                           Row{".5", ZR_XPATH_TOKEN_NONE, ZR_XPATH_TOKEN_NUMBER, 2},
                           Row{".a", ZR_XPATH_TOKEN_NONE, ZR_XPATH_TOKEN_DOT, 1},
                           Row{"'a'b", ZR_XPATH_TOKEN_NONE, ZR_XPATH_TOKEN_LITERAL, 3},
                           Row{"\"\"", ZR_XPATH_TOKEN_NAME, ZR_XPATH_TOKEN_LITERAL, 2}}) {
        Scan scan(row.text, row.previous);
        EXPECT_EQ(scan.Run(ZR_XPATH_ParseSpecialSymbol), ZR_OK) << row.text;
        EXPECT_EQ(scan.Type(), row.type) << row.text;
        EXPECT_EQ(scan.Length(), row.length) << row.text;
    }
}

TEST(SpecialSymbols, FailOnEverythingElse)
{
    for (int ch = 1; ch < 256; ++ch) {
        std::string text(1, static_cast<char>(ch));
        if (std::string("(*.").find(text) != std::string::npos)
            continue;
        Scan scan(text.c_str());
        EXPECT_EQ(scan.Run(ZR_XPATH_ParseSpecialSymbol), ZR_ERR_INVALID) << ch;
        EXPECT_EQ(scan.Type(), ZR_XPATH_TOKEN_NONE) << ch;
    }
}

TEST(LiteralScanner, EndsAtTheSameQuote)
{
    Scan literal("'a\"b' c'");
    EXPECT_EQ(literal.Run(ZR_XPATH_ParseLiteralToken), ZR_OK);
    EXPECT_EQ(literal.Type(), ZR_XPATH_TOKEN_LITERAL);
    EXPECT_EQ(literal.Length(), 5u);
    Scan open("'abc\"");
    EXPECT_EQ(open.Run(ZR_XPATH_ParseLiteralToken), ZR_ERR_INVALID);
    EXPECT_EQ(open.Type(), ZR_XPATH_TOKEN_NONE);
}

TEST(Dispatcher, StoresTheTokenAtTheCursor)
{
    Scan scan("  abc");
    EXPECT_EQ(scan.Run(ZR_XPATH_ParseCurTokenFromExpr, 2), ZR_OK);
    ASSERT_EQ(scan.Lex().count, 1u);
    EXPECT_EQ(scan.Lex().tokens[0].type, ZR_XPATH_TOKEN_NAME);
    EXPECT_EQ(scan.Lex().tokens[0].length, 3u);
    EXPECT_EQ(scan.Lex().tokens[0].start, 2u);
}

// A full list of `count` tokens, to which one more is appended.
uint32_t AppendTo(uint32_t count)
{
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize("");
    EXPECT_EQ(zr::ExpandArray(&lex->tokens, lex->capacity, count - lex->capacity), ZR_OK);
    lex->count = lex->capacity = count;
    lex->expression = "a";
    ZrXpathToken token;
    uint32_t status = ZR_XPATH_ParseCurTokenFromExpr(lex, 0, &token);
    EXPECT_EQ(lex->count, status == ZR_OK ? count + 1 : count);
    EXPECT_EQ(lex->capacity, status == ZR_OK ? count + 10 : count);
    ZR_XPATH_FreeXpathLex(lex);
    return status;
}

TEST(Dispatcher, GrowsTheListByTenAndNotBeyondWhatTheGrowthCanCount)
{
    EXPECT_EQ(AppendTo(10), ZR_OK);
    EXPECT_EQ(AppendTo(65530), ZR_OK);
    EXPECT_EQ(AppendTo(65540), ZR_ERR_INVALID);
}

TEST(Dispatcher, GivesTheStatusOfAFailedGrowth)
{
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize("1 1 1 1 1 1 1 1 1 1");
    ASSERT_EQ(lex->count, 10u);
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    ZrXpathToken token;
    EXPECT_EQ(ZR_XPATH_ParseCurTokenFromExpr(lex, 0, &token), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(lex->count, 10u);
    EXPECT_EQ(lex->capacity, 10u);
    guard.Stop();
    ZR_XPATH_FreeXpathLex(lex);
}

TEST(Dispatcher, StoresNothingWhenTheScanFails)
{
    Scan scan("$");
    EXPECT_EQ(scan.Run(ZR_XPATH_ParseCurTokenFromExpr), ZR_ERR_INVALID);
    EXPECT_EQ(scan.Lex().count, 0u);
}

} // namespace
