// The scanners: one token at the cursor, by its first character (XPath 1.0, section 3.7).
#include <iterator>

#include "foundation/text.h"
#include "platform/text.h"
#include "xpath/lex_internal.h"

namespace zr {

// clang-format off
// Searched from the top: a symbol stands before those that it begins with. "(", "*", "." and the
// quotes depend on their context and are scanned by hand.
//    symbol   type                        length  start
const XpathSymbol kXpathSymbols[kXpathSymbolCount] = {
    { ")",  { ZR_XPATH_TOKEN_RPAREN,     1,      0 } },
    { "[",  { ZR_XPATH_TOKEN_LBRACKET,   1,      0 } },
    { "]",  { ZR_XPATH_TOKEN_RBRACKET,   1,      0 } },
    { "@",  { ZR_XPATH_TOKEN_AT,         1,      0 } },
    { ",",  { ZR_XPATH_TOKEN_COMMA,      1,      0 } },
    { "|",  { ZR_XPATH_TOKEN_UNION,      1,      0 } },
    { "+",  { ZR_XPATH_TOKEN_ADDITIVE,   1,      0 } },
    { "-",  { ZR_XPATH_TOKEN_ADDITIVE,   1,      0 } },
    { "=",  { ZR_XPATH_TOKEN_EQUALITY,   1,      0 } },
    { "!=", { ZR_XPATH_TOKEN_EQUALITY,   2,      0 } },
    { ">=", { ZR_XPATH_TOKEN_RELATIONAL, 2,      0 } },
    { "<=", { ZR_XPATH_TOKEN_RELATIONAL, 2,      0 } },
    { ">",  { ZR_XPATH_TOKEN_RELATIONAL, 1,      0 } },
    { "<",  { ZR_XPATH_TOKEN_RELATIONAL, 1,      0 } },
    { "..", { ZR_XPATH_TOKEN_DOTDOT,     2,      0 } },
    { "//", { ZR_XPATH_TOKEN_PATHOP,     2,      0 } },
    { "/",  { ZR_XPATH_TOKEN_PATHOP,     1,      0 } },
};
// clang-format on

} // namespace zr

namespace {

uint32_t Found(ZrXpathToken *token, uint32_t type, uint32_t length)
{
    token->type = type;
    token->length = length;
    return ZR_OK;
}

// A symbol has one character or two.
bool StartsWith(const char *text, const zr::XpathSymbol &symbol)
{
    return text[0] == symbol.text[0] && (symbol.token.length == 1 || text[1] == symbol.text[1]);
}

uint32_t Fail(ZrXpathToken *token)
{
    token->type = ZR_XPATH_TOKEN_NONE;
    return ZR_ERR_INVALID;
}

} // namespace

// Kept: the first character does not count as a dot, so that ".5.3" is one number while "1.2.3" is
// none. The evaluator takes what is no number for NaN.
uint32_t ZR_XPATH_GetTokenStartWithDigit(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    const char *text = lex->expression + cursor;
    uint32_t length = 1;
    uint32_t dots = 0;
    for (; zr::IsXpathDigit(text[length]) || text[length] == '.'; ++length) {
        if (text[length] == '.' && ++dots > 1)
            return Fail(token);
    }
    return Found(token, ZR_XPATH_TOKEN_NUMBER, length);
}

uint32_t ZR_XPATH_GetTokenStartWithNameStart(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    if (ZR_XPATH_IsNextTokenOperator(zr::LastTokenType(lex)) != 0)
        return ZR_XPATH_GetOperatorType(lex, cursor, token);
    const char *text = lex->expression + cursor;
    uint32_t length = ZR_UTL_ConsumeIdentNameBestEffort(text);
    if (text[length] != ':')
        return Found(token, ZR_XPATH_TOKEN_NAME, length);
    ++length;
    if (text[length] == '*')
        return Found(token, ZR_XPATH_TOKEN_NAME, length + 1);
    // Nothing after the colon ends the token there: the second colon of "child::x" then fails.
    return Found(token, ZR_XPATH_TOKEN_NAME,
                 length + ZR_UTL_ConsumeIdentNameBestEffort(text + length));
}

// Kept: only the leading characters are compared, so that "andx" is "and" and then "x".
uint32_t ZR_XPATH_GetOperatorType(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    struct OperatorName {
        const char *text;
        uint32_t type;
        uint32_t length;
    };
    // clang-format off
    //    name    type                      length
    static constexpr OperatorName kOperators[] = {
        { "and",  ZR_XPATH_TOKEN_AND,       3 },
        { "or",   ZR_XPATH_TOKEN_OR,        2 },
        { "div",  ZR_XPATH_TOKEN_MULTIPLY,  3 },
        { "mod",  ZR_XPATH_TOKEN_MULTIPLY,  3 },
    };
    // clang-format on
    const char *text = lex->expression + cursor;
    for (const OperatorName &row : kOperators) {
        if (PAL_StrNCmp(text, row.text, row.length) == 0)
            return Found(token, row.type, row.length);
    }
    return Fail(token);
}

uint32_t ZR_XPATH_GetTgtTokenFromSymbolTbl(const ZrXpathLex *lex, uint32_t cursor)
{
    const char *text = lex->expression + cursor;
    uint32_t row = 0;
    while (row < zr::kXpathSymbolCount && !StartsWith(text, zr::kXpathSymbols[row]))
        ++row;
    return row;
}

uint32_t ZR_XPATH_GetTokenStartWithOtherCh(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    uint32_t row = ZR_XPATH_GetTgtTokenFromSymbolTbl(lex, cursor);
    if (row == zr::kXpathSymbolCount)
        return ZR_XPATH_ParseSpecialSymbol(lex, cursor, token);
    *token = zr::kXpathSymbols[row].token;
    return ZR_OK;
}

uint32_t ZR_XPATH_ParseSpecialSymbol(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    const char *text = lex->expression + cursor;
    uint32_t previous = zr::LastTokenType(lex);
    switch (*text) {
    case '"':
    case '\'':
        return ZR_XPATH_ParseLiteralToken(lex, cursor, token);
    case '(':
        if (previous == ZR_XPATH_TOKEN_NAME)
            lex->tokens[lex->count - 1].type = ZR_XPATH_TOKEN_FUNCNAME;
        return Found(token, ZR_XPATH_TOKEN_LPAREN, 1);
    case '*':
        if (ZR_XPATH_IsNextTokenOperator(previous) != 0)
            return Found(token, ZR_XPATH_TOKEN_MULTIPLY, 1);
        return Found(token, ZR_XPATH_TOKEN_NAME, 1);
    case '.':
        if (zr::IsXpathDigit(text[1]))
            return ZR_XPATH_GetTokenStartWithDigit(lex, cursor, token);
        return Found(token, ZR_XPATH_TOKEN_DOT, 1);
    default:
        return Fail(token);
    }
}

uint32_t ZR_XPATH_ParseLiteralToken(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    const char *text = lex->expression + cursor;
    const char *end = PAL_StrChr(text + 1, *text);
    if (end == nullptr)
        return Fail(token);
    return Found(token, ZR_XPATH_TOKEN_LITERAL, static_cast<uint32_t>(end + 1 - text));
}
