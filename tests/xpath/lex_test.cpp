// SPDX-License-Identifier: Apache-2.0
#include "xpath/lex.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "foundation/array.h"
#include "support/alloc.h"

namespace {

using Token = std::pair<uint32_t, std::string>;
using Tokens = std::vector<Token>;

// The tokens of an expression as (type, text); one token of type 99 when it is refused.
Tokens TokensOf(const std::string &expression)
{
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize(expression.c_str());
    if (lex == nullptr)
        return {{99, ""}};
    Tokens tokens;
    for (uint32_t i = 0; i < ZR_XPATH_GetTokenNumber(lex); ++i) {
        uint32_t type = 0;
        uint32_t length = 0;
        const char *text = ZR_XPATH_GetTokenExprByPos(lex, i, &type, &length);
        tokens.emplace_back(type, std::string(text, length));
    }
    ZR_XPATH_FreeXpathLex(lex);
    return tokens;
}

bool IsRefused(const std::string &expression)
{
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize(expression.c_str());
    ZR_XPATH_FreeXpathLex(lex);
    return lex == nullptr;
}

// The tokens of an expression that may have axes; one of type 99 when it is refused.
Tokens TokensWithAxes(const std::string &expression)
{
    ZrXpathLex *lex = nullptr;
    if (zr::Tokenize(expression.c_str(), &lex, zr::XpathAxes::kTaken) != ZR_OK)
        return {{99, ""}};
    Tokens tokens;
    for (uint32_t i = 0; i < lex->count; ++i)
        tokens.emplace_back(lex->tokens[i].type,
                            expression.substr(lex->tokens[i].start, lex->tokens[i].length));
    ZR_XPATH_FreeXpathLex(lex);
    return tokens;
}

TEST(TokenizeWithAxes, MakesTwoTokensOfAnAxis)
{
    const Tokens axis = {{ZR_XPATH_TOKEN_NAME, "ancestor"}, {ZR_XPATH_TOKEN_AT, "::"}};
    auto with = [axis](Tokens rest) {
        rest.insert(rest.begin(), axis.begin(), axis.end());
        return rest;
    };
    EXPECT_EQ(TokensWithAxes("ancestor::p:x"), with({{ZR_XPATH_TOKEN_NAME, "p:x"}}));
    EXPECT_EQ(TokensWithAxes("ancestor :: x"), with({{ZR_XPATH_TOKEN_NAME, "x"}}));
    EXPECT_EQ(TokensWithAxes("ancestor::*"), with({{ZR_XPATH_TOKEN_NAME, "*"}}));
    EXPECT_EQ(TokensWithAxes("ancestor::node()"), with({{ZR_XPATH_TOKEN_FUNCNAME, "node"},
                                                        {ZR_XPATH_TOKEN_LPAREN, "("},
                                                        {ZR_XPATH_TOKEN_RPAREN, ")"}}));
}

TEST(TokenizeWithAxes, LeavesEverythingElseAsItIs)
{
    for (const char *expression :
         {"p:a/../b[c = 'x::y']", "a and b", "a * 2 div 3", "p:*", "@a", "not(a) or .", "", " "})
        EXPECT_EQ(TokensWithAxes(expression), TokensOf(expression)) << expression;
    for (const char *expression : {"a b::c", "a:::b", "'x", "a #"})
        EXPECT_EQ(TokensWithAxes(expression), (Tokens{{99, ""}})) << expression;
    EXPECT_TRUE(IsRefused("ancestor::x")) << "without axes";
}

TEST(ExprTokenize, RefusesNull)
{
    EXPECT_EQ(ZR_XPATH_ExprTokenize(nullptr), nullptr);
}

TEST(ExprTokenize, GivesNoTokensForAnEmptyOrBlankExpression)
{
    EXPECT_EQ(TokensOf(""), Tokens{});
    EXPECT_EQ(TokensOf(" \t\r\n "), Tokens{});
}

TEST(ExprTokenize, PassesOverTheFourWhiteSpaceCharactersOnly)
{
    EXPECT_EQ(TokensOf(" a\t=\n\r1 "), (Tokens{{ZR_XPATH_TOKEN_NAME, "a"},
                                               {ZR_XPATH_TOKEN_EQUALITY, "="},
                                               {ZR_XPATH_TOKEN_NUMBER, "1"}}));
    EXPECT_TRUE(IsRefused("a\v= 1"));
    EXPECT_TRUE(IsRefused("a\f= 1"));
    EXPECT_TRUE(IsRefused("a \xC2\xA0= 1"));
}

TEST(ExprTokenize, ReadsEverySymbol)
{
    const std::pair<const char *, uint32_t> symbols[] = {
        {"(", 0},  {")", 1},   {"[", 2},   {"]", 3},  {".", 4},   {"..", 5}, {"@", 6},
        {",", 7},  {"/", 13},  {"//", 13}, {"|", 14}, {"+", 16},  {"-", 16}, {"<", 17},
        {">", 17}, {"<=", 17}, {">=", 17}, {"=", 18}, {"!=", 18},
    };
    for (const auto &[symbol, type] : symbols)
        EXPECT_EQ(TokensOf(symbol), (Tokens{{type, symbol}})) << symbol;
}

TEST(ExprTokenize, ReadsTwoSymbolsThatStandTogether)
{
    EXPECT_EQ(TokensOf("<=>="),
              (Tokens{{ZR_XPATH_TOKEN_RELATIONAL, "<="}, {ZR_XPATH_TOKEN_RELATIONAL, ">="}}));
    EXPECT_EQ(TokensOf("=!="),
              (Tokens{{ZR_XPATH_TOKEN_EQUALITY, "="}, {ZR_XPATH_TOKEN_EQUALITY, "!="}}));
    EXPECT_EQ(TokensOf("///"),
              (Tokens{{ZR_XPATH_TOKEN_PATHOP, "//"}, {ZR_XPATH_TOKEN_PATHOP, "/"}}));
    EXPECT_EQ(TokensOf("..."), (Tokens{{ZR_XPATH_TOKEN_DOTDOT, ".."}, {ZR_XPATH_TOKEN_DOT, "."}}));
    EXPECT_EQ(TokensOf("==<"), (Tokens{{ZR_XPATH_TOKEN_EQUALITY, "="},
                                       {ZR_XPATH_TOKEN_EQUALITY, "="},
                                       {ZR_XPATH_TOKEN_RELATIONAL, "<"}}));
}

TEST(ExprTokenize, TakesAHyphenIntoAName)
{
    EXPECT_EQ(TokensOf("a-b"), (Tokens{{ZR_XPATH_TOKEN_NAME, "a-b"}}));
    EXPECT_EQ(TokensOf("a - b"), (Tokens{{ZR_XPATH_TOKEN_NAME, "a"},
                                         {ZR_XPATH_TOKEN_ADDITIVE, "-"},
                                         {ZR_XPATH_TOKEN_NAME, "b"}}));
    EXPECT_EQ(TokensOf("a -b"), (Tokens{{ZR_XPATH_TOKEN_NAME, "a"},
                                        {ZR_XPATH_TOKEN_ADDITIVE, "-"},
                                        {ZR_XPATH_TOKEN_NAME, "b"}}));
}

TEST(ExprTokenize, ReadsAStarByItsPlace)
{
    EXPECT_EQ(TokensOf("* * *"), (Tokens{{ZR_XPATH_TOKEN_NAME, "*"},
                                         {ZR_XPATH_TOKEN_MULTIPLY, "*"},
                                         {ZR_XPATH_TOKEN_NAME, "*"}}));
    EXPECT_EQ(TokensOf("count(*)"), (Tokens{{ZR_XPATH_TOKEN_FUNCNAME, "count"},
                                            {ZR_XPATH_TOKEN_LPAREN, "("},
                                            {ZR_XPATH_TOKEN_NAME, "*"},
                                            {ZR_XPATH_TOKEN_RPAREN, ")"}}));
    EXPECT_EQ(TokensOf("a/*"), (Tokens{{ZR_XPATH_TOKEN_NAME, "a"},
                                       {ZR_XPATH_TOKEN_PATHOP, "/"},
                                       {ZR_XPATH_TOKEN_NAME, "*"}}));
    EXPECT_EQ(TokensOf("a[*]*@*"), (Tokens{{ZR_XPATH_TOKEN_NAME, "a"},
                                           {ZR_XPATH_TOKEN_LBRACKET, "["},
                                           {ZR_XPATH_TOKEN_NAME, "*"},
                                           {ZR_XPATH_TOKEN_RBRACKET, "]"},
                                           {ZR_XPATH_TOKEN_MULTIPLY, "*"},
                                           {ZR_XPATH_TOKEN_AT, "@"},
                                           {ZR_XPATH_TOKEN_NAME, "*"}}));
}

TEST(ExprTokenize, ReadsAnAttributeSign)
{
    EXPECT_EQ(TokensOf("@x"), (Tokens{{ZR_XPATH_TOKEN_AT, "@"}, {ZR_XPATH_TOKEN_NAME, "x"}}));
}

TEST(ExprTokenize, ReadsDots)
{
    EXPECT_EQ(TokensOf("../a"), (Tokens{{ZR_XPATH_TOKEN_DOTDOT, ".."},
                                        {ZR_XPATH_TOKEN_PATHOP, "/"},
                                        {ZR_XPATH_TOKEN_NAME, "a"}}));
    EXPECT_EQ(TokensOf("."), (Tokens{{ZR_XPATH_TOKEN_DOT, "."}}));
    EXPECT_EQ(TokensOf("./.5"), (Tokens{{ZR_XPATH_TOKEN_DOT, "."},
                                        {ZR_XPATH_TOKEN_PATHOP, "/"},
                                        {ZR_XPATH_TOKEN_NUMBER, ".5"}}));
}

TEST(ExprTokenize, ReadsAQualifiedName)
{
    EXPECT_EQ(TokensOf("p:a/q:*"), (Tokens{{ZR_XPATH_TOKEN_NAME, "p:a"},
                                           {ZR_XPATH_TOKEN_PATHOP, "/"},
                                           {ZR_XPATH_TOKEN_NAME, "q:*"}}));
    EXPECT_EQ(TokensOf("_x.1-y"), (Tokens{{ZR_XPATH_TOKEN_NAME, "_x.1-y"}}));
}

TEST(ExprTokenize, ReadsAWordAsAnOperatorOnlyAfterAnOperand)
{
    EXPECT_EQ(TokensOf("x and y"), (Tokens{{ZR_XPATH_TOKEN_NAME, "x"},
                                           {ZR_XPATH_TOKEN_AND, "and"},
                                           {ZR_XPATH_TOKEN_NAME, "y"}}));
    EXPECT_EQ(TokensOf("and"), (Tokens{{ZR_XPATH_TOKEN_NAME, "and"}}));
    EXPECT_EQ(TokensOf("or or or"), (Tokens{{ZR_XPATH_TOKEN_NAME, "or"},
                                            {ZR_XPATH_TOKEN_OR, "or"},
                                            {ZR_XPATH_TOKEN_NAME, "or"}}));
    EXPECT_EQ(TokensOf("div div mod mod mod"), (Tokens{{ZR_XPATH_TOKEN_NAME, "div"},
                                                       {ZR_XPATH_TOKEN_MULTIPLY, "div"},
                                                       {ZR_XPATH_TOKEN_NAME, "mod"},
                                                       {ZR_XPATH_TOKEN_MULTIPLY, "mod"},
                                                       {ZR_XPATH_TOKEN_NAME, "mod"}}));
    EXPECT_EQ(TokensOf("/and"),
              (Tokens{{ZR_XPATH_TOKEN_PATHOP, "/"}, {ZR_XPATH_TOKEN_NAME, "and"}}));
}

TEST(ExprTokenize, ReadsTheBeginningOfAWordAsAnOperator)
{
    EXPECT_EQ(TokensOf("x andy"), (Tokens{{ZR_XPATH_TOKEN_NAME, "x"},
                                          {ZR_XPATH_TOKEN_AND, "and"},
                                          {ZR_XPATH_TOKEN_NAME, "y"}}));
    EXPECT_EQ(TokensOf("1 andx"), (Tokens{{ZR_XPATH_TOKEN_NUMBER, "1"},
                                          {ZR_XPATH_TOKEN_AND, "and"},
                                          {ZR_XPATH_TOKEN_NAME, "x"}}));
    EXPECT_EQ(TokensOf("1 order"), (Tokens{{ZR_XPATH_TOKEN_NUMBER, "1"},
                                           {ZR_XPATH_TOKEN_OR, "or"},
                                           {ZR_XPATH_TOKEN_NAME, "der"}}));
}

TEST(ExprTokenize, RefusesAnotherWordWhereAnOperatorIsDue)
{
    EXPECT_TRUE(IsRefused("a b"));
    EXPECT_TRUE(IsRefused("1 x"));
    EXPECT_TRUE(IsRefused("'a' an"));
}

TEST(ExprTokenize, ReadsTheNameBeforeAParenthesisAsAFunction)
{
    EXPECT_EQ(TokensOf("not(a)"), (Tokens{{ZR_XPATH_TOKEN_FUNCNAME, "not"},
                                          {ZR_XPATH_TOKEN_LPAREN, "("},
                                          {ZR_XPATH_TOKEN_NAME, "a"},
                                          {ZR_XPATH_TOKEN_RPAREN, ")"}}));
    EXPECT_EQ(TokensOf("f ("),
              (Tokens{{ZR_XPATH_TOKEN_FUNCNAME, "f"}, {ZR_XPATH_TOKEN_LPAREN, "("}}));
    EXPECT_EQ(TokensOf("*("),
              (Tokens{{ZR_XPATH_TOKEN_FUNCNAME, "*"}, {ZR_XPATH_TOKEN_LPAREN, "("}}));
    EXPECT_EQ(TokensOf("1("), (Tokens{{ZR_XPATH_TOKEN_NUMBER, "1"}, {ZR_XPATH_TOKEN_LPAREN, "("}}));
}

TEST(ExprTokenize, ReadsLiteralsWithTheirQuotes)
{
    EXPECT_EQ(TokensOf("'it''s'"),
              (Tokens{{ZR_XPATH_TOKEN_LITERAL, "'it'"}, {ZR_XPATH_TOKEN_LITERAL, "'s'"}}));
    EXPECT_EQ(TokensOf("''\"\""),
              (Tokens{{ZR_XPATH_TOKEN_LITERAL, "''"}, {ZR_XPATH_TOKEN_LITERAL, "\"\""}}));
    EXPECT_EQ(TokensOf("\"it's\""), (Tokens{{ZR_XPATH_TOKEN_LITERAL, "\"it's\""}}));
    EXPECT_EQ(TokensOf("'\xC3\xA4 $'"), (Tokens{{ZR_XPATH_TOKEN_LITERAL, "'\xC3\xA4 $'"}}));
}

TEST(ExprTokenize, RefusesALiteralWithoutItsEnd)
{
    EXPECT_TRUE(IsRefused("'abc"));
    EXPECT_TRUE(IsRefused("\"abc'"));
    EXPECT_TRUE(IsRefused("a = '"));
}

TEST(ExprTokenize, ReadsNumbers)
{
    EXPECT_EQ(TokensOf("7"), (Tokens{{ZR_XPATH_TOKEN_NUMBER, "7"}}));
    EXPECT_EQ(TokensOf("12.50"), (Tokens{{ZR_XPATH_TOKEN_NUMBER, "12.50"}}));
    EXPECT_EQ(TokensOf(".5"), (Tokens{{ZR_XPATH_TOKEN_NUMBER, ".5"}}));
    EXPECT_EQ(TokensOf("1."), (Tokens{{ZR_XPATH_TOKEN_NUMBER, "1."}}));
    EXPECT_EQ(TokensOf("1 2"),
              (Tokens{{ZR_XPATH_TOKEN_NUMBER, "1"}, {ZR_XPATH_TOKEN_NUMBER, "2"}}));
}

TEST(ExprTokenize, CountsTheDotsOfANumberAfterItsFirstCharacter)
{
    EXPECT_EQ(TokensOf(".5.3"), (Tokens{{ZR_XPATH_TOKEN_NUMBER, ".5.3"}}));
    EXPECT_TRUE(IsRefused("1.2.3"));
    EXPECT_TRUE(IsRefused("1.."));
    EXPECT_TRUE(IsRefused(".5.3."));
}

TEST(ExprTokenize, RefusesAxesVariablesAndOtherCharacters)
{
    for (const char *expression :
         {"child::x", "$v", ":", "a!", "!", "#", "%",    "&",    "{",    "}",
          "a;b",      "\\", "^", "`",  "~", "?", "\x80", "\xFF", "\x01", "a = \xC3\xA4"})
        EXPECT_TRUE(IsRefused(expression)) << expression;
}

TEST(ExprTokenize, KeepsTheStartOfEveryTokenAndTheCallersText)
{
    const char *expression = "  a  =  'b'";
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize(expression);
    ASSERT_NE(lex, nullptr);
    EXPECT_EQ(lex->expression, expression);
    ASSERT_EQ(lex->count, 3u);
    EXPECT_EQ(lex->tokens[0].start, 2u);
    EXPECT_EQ(lex->tokens[1].start, 5u);
    EXPECT_EQ(lex->tokens[2].start, 8u);
    EXPECT_EQ(ZR_XPATH_GetTokenExprByPos(lex, 2, nullptr, nullptr), expression + 8);
    ZR_XPATH_FreeXpathLex(lex);
}

TEST(ExprTokenize, GrowsTheListByTenAtTheEleventhToken)
{
    ZrXpathLex *ten = ZR_XPATH_ExprTokenize("1 1 1 1 1 1 1 1 1 1");
    ASSERT_NE(ten, nullptr);
    EXPECT_EQ(ten->count, 10u);
    EXPECT_EQ(ten->capacity, 10u);
    ZR_XPATH_FreeXpathLex(ten);
    ZrXpathLex *eleven = ZR_XPATH_ExprTokenize("1 2 3 4 5 6 7 8 9 10 11");
    ASSERT_NE(eleven, nullptr);
    EXPECT_EQ(eleven->count, 11u);
    EXPECT_EQ(eleven->capacity, 20u);
    EXPECT_EQ(std::string(ZR_XPATH_GetTokenExprByPos(eleven, 0, nullptr, nullptr), 1), "1");
    EXPECT_EQ(std::string(ZR_XPATH_GetTokenExprByPos(eleven, 10, nullptr, nullptr), 2), "11");
    ZR_XPATH_FreeXpathLex(eleven);
}

TEST(ExprTokenize, FreesThePartialListWhenAnAllocationFails)
{
    const std::string expression = "a or b or c or d or e or f or g or h or i or j or k or l";
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrXpathLex *lex = memory.Run([&] { return ZR_XPATH_ExprTokenize(expression.c_str()); });
        EXPECT_EQ(lex == nullptr, memory.Failed());
        EXPECT_EQ(ZR_XPATH_GetTokenNumber(lex), memory.Failed() ? 0u : 23u);
        ZR_XPATH_FreeXpathLex(lex);
    });
    EXPECT_GE(points, 4u);
}

TEST(ExprTokenize, FreesThePartialListWhenAScanFails)
{
    zrtest::AllocGuard guard;
    EXPECT_EQ(ZR_XPATH_ExprTokenize("a or b or c or d or e or f or $"), nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(FreeXpathLex, AcceptsNullAndAListWithoutTokens)
{
    ZR_XPATH_FreeXpathLex(nullptr);
    zrtest::AllocGuard guard;
    ZR_XPATH_FreeXpathLex(ZR_XPATH_ExprTokenize(""));
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(GetTokenNumber, IsNoneForNull)
{
    EXPECT_EQ(ZR_XPATH_GetTokenNumber(nullptr), 0u);
}

TEST(GetTokenExprByPos, IsNullForNullAndPastTheEnd)
{
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize("a");
    uint32_t type = 77;
    uint32_t length = 78;
    EXPECT_EQ(ZR_XPATH_GetTokenExprByPos(nullptr, 0, &type, &length), nullptr);
    EXPECT_EQ(ZR_XPATH_GetTokenExprByPos(lex, 1, &type, &length), nullptr);
    EXPECT_EQ(type, 77u);
    EXPECT_EQ(length, 78u);
    EXPECT_NE(ZR_XPATH_GetTokenExprByPos(lex, 0, nullptr, &length), nullptr);
    EXPECT_EQ(length, 1u);
    ZR_XPATH_FreeXpathLex(lex);
}

TEST(IsCurTokenOperator, HoldsForPathOperatorsAndAllBinaryOperators)
{
    for (uint32_t type = 0; type <= 22; ++type)
        EXPECT_EQ(ZR_XPATH_IsCurTokenOperator(type), type >= 13 && type <= 20 ? 1u : 0u) << type;
}

TEST(IsNextTokenOperator, HoldsAfterWhatEndsAnOperand)
{
    const uint32_t expected[] = {
        0, 1, 0, 1, 1, 1, 0, 0, // ( ) [ ] . .. @ ,
        1, 1, 1, 1, 1,          // name, reserved, function, literal, number
        0, 0, 0, 0, 0, 0, 0, 0, // operators
        0                       // nothing
    };
    for (uint32_t type = 0; type < std::size(expected); ++type)
        EXPECT_EQ(ZR_XPATH_IsNextTokenOperator(type), expected[type]) << type;
}

TEST(GetTokenExprType, GivesTheClassOfEveryTokenType)
{
    for (uint32_t type = 0; type <= 13; ++type)
        EXPECT_EQ(ZR_XPATH_GetTokenExprType(type), ZR_XPATH_CLASS_NONE) << type;
    const std::pair<uint32_t, uint32_t> classes[] = {{14, 7}, {15, 5},        {16, 4}, {17, 3},
                                                     {18, 2}, {19, 1},        {20, 0}, {21, 8},
                                                     {22, 8}, {UINT32_MAX, 8}};
    for (const auto &[type, operatorClass] : classes)
        EXPECT_EQ(ZR_XPATH_GetTokenExprType(type), operatorClass) << type;
}

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
