// SPDX-License-Identifier: Apache-2.0
// The token list: building it, reading it, and what a token's type says about it.
#include "xpath/lex.h"

#include <cstddef>

#include "foundation/array.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/strings.h"

namespace {

constexpr uint32_t kTokenGrowth = 10; // slots of a new list, and of each growth

using OwnedLex = zr::Owned<ZrXpathLex, ZR_XPATH_FreeXpathLex>;

OwnedLex NewLex(const char *expression)
{
    OwnedLex lex(zr::New<ZrXpathLex>());
    if (!lex || zr::NewArray(&lex->tokens, kTokenGrowth) != ZR_OK)
        return nullptr;
    lex->expression = expression;
    lex->capacity = kTokenGrowth;
    return lex;
}

uint32_t Store(ZrXpathLex *lex, const ZrXpathToken &token)
{
    if (lex->count == lex->capacity) {
        // Arrays are grown by 16-bit counts: a list that has outgrown them is full.
        if (lex->count > UINT16_MAX)
            return ZR_ERR_INVALID;
        uint32_t status = zr::ExpandArray(&lex->tokens, lex->count, kTokenGrowth);
        if (status != ZR_OK)
            return status;
        lex->capacity += kTokenGrowth;
    }
    lex->tokens[lex->count++] = token;
    return ZR_OK;
}

bool IsAxisSeparator(const char *text)
{
    return text[0] == ':' && text[1] == ':';
}

// The token of an axis at the cursor, its name or the "::" behind it; of length 0 when there stands
// something else. A name that is followed by white space is a token like any other.
ZrXpathToken AxisTokenAt(const ZrXpathLex *lex, uint32_t cursor)
{
    const char *text = lex->expression + cursor;
    if (IsAxisSeparator(text))
        return {ZR_XPATH_TOKEN_AT, 2, cursor};
    uint32_t length = zr::IsLetter(*text) ? ZR_UTL_ConsumeIdentNameBestEffort(text) : 0;
    bool isAxis = length != 0 && IsAxisSeparator(text + length) &&
                  ZR_XPATH_IsNextTokenOperator(zr::LastTokenType(lex)) == 0;
    return {ZR_XPATH_TOKEN_NAME, isAxis ? length : 0, cursor};
}

uint32_t ReadToken(ZrXpathLex *lex, uint32_t cursor, zr::XpathAxes axes, ZrXpathToken *token)
{
    if (axes == zr::XpathAxes::kTaken) {
        *token = AxisTokenAt(lex, cursor);
        if (token->length != 0)
            return Store(lex, *token);
    }
    return ZR_XPATH_ParseCurTokenFromExpr(lex, cursor, token);
}

} // namespace

uint32_t zr::Tokenize(const char *expression, ZrXpathLex **lexOut, XpathAxes axes)
{
    *lexOut = nullptr;
    if (expression == nullptr)
        return ZR_ERR_INVALID;
    size_t length = PAL_StrLen(expression);
    if (static_cast<uint32_t>(length) != length)
        return ZR_ERR_INVALID; // offsets are 32 bits wide
    OwnedLex lex = NewLex(expression);
    if (!lex)
        return ZR_ERR_NO_MEMORY;
    for (uint32_t cursor = 0; expression[cursor] != '\0';) {
        if (zr::IsXmlSpace(expression[cursor])) {
            ++cursor;
            continue;
        }
        ZrXpathToken token;
        uint32_t status = ReadToken(lex.get(), cursor, axes, &token);
        if (status != ZR_OK)
            return status;
        cursor += token.length;
    }
    *lexOut = lex.release();
    return ZR_OK;
}

ZrXpathLex *ZR_XPATH_ExprTokenize(const char *expression)
{
    ZrXpathLex *lex = nullptr;
    zr::Tokenize(expression, &lex);
    return lex;
}

void ZR_XPATH_FreeXpathLex(ZrXpathLex *lex)
{
    if (lex == nullptr)
        return;
    zr::Free(lex->tokens);
    zr::Free(lex);
}

uint32_t ZR_XPATH_GetTokenNumber(const ZrXpathLex *lex)
{
    return lex != nullptr ? lex->count : 0;
}

const char *ZR_XPATH_GetTokenExprByPos(const ZrXpathLex *lex, uint32_t position, uint32_t *typeOut,
                                       uint32_t *lengthOut)
{
    if (lex == nullptr || position >= lex->count)
        return nullptr;
    const ZrXpathToken &token = lex->tokens[position];
    if (typeOut != nullptr)
        *typeOut = token.type;
    if (lengthOut != nullptr)
        *lengthOut = token.length;
    return lex->expression + token.start;
}

uint32_t ZR_XPATH_IsCurTokenOperator(uint32_t type)
{
    return type >= ZR_XPATH_TOKEN_PATHOP && type <= ZR_XPATH_TOKEN_OR ? 1 : 0;
}

uint32_t ZR_XPATH_IsNextTokenOperator(uint32_t previousType)
{
    switch (previousType) {
    case ZR_XPATH_TOKEN_LPAREN:
    case ZR_XPATH_TOKEN_LBRACKET:
    case ZR_XPATH_TOKEN_AT:
    case ZR_XPATH_TOKEN_COMMA:
    case ZR_XPATH_TOKEN_NONE:
        return 0;
    default:
        return ZR_XPATH_IsCurTokenOperator(previousType) != 0 ? 0 : 1;
    }
}

uint32_t ZR_XPATH_GetTokenExprType(uint32_t type)
{
    struct Row {
        ZrXpathTokenType type;
        ZrXpathOperatorClass operatorClass;
    };
    // clang-format off
    static constexpr Row kRows[] = {
        {ZR_XPATH_TOKEN_UNION,      ZR_XPATH_CLASS_UNION},
        {ZR_XPATH_TOKEN_MULTIPLY,   ZR_XPATH_CLASS_MULTIPLICATIVE},
        {ZR_XPATH_TOKEN_ADDITIVE,   ZR_XPATH_CLASS_ADDITIVE},
        {ZR_XPATH_TOKEN_RELATIONAL, ZR_XPATH_CLASS_RELATIONAL},
        {ZR_XPATH_TOKEN_EQUALITY,   ZR_XPATH_CLASS_EQUALITY},
        {ZR_XPATH_TOKEN_AND,        ZR_XPATH_CLASS_AND},
        {ZR_XPATH_TOKEN_OR,         ZR_XPATH_CLASS_OR},
    };
    // clang-format on
    static_assert(zr::RowsInOrder(kRows, &Row::type, ZR_XPATH_TOKEN_UNION, ZR_XPATH_TOKEN_OR + 1));
    if (type < ZR_XPATH_TOKEN_UNION || type > ZR_XPATH_TOKEN_OR)
        return ZR_XPATH_CLASS_NONE;
    return kRows[type - ZR_XPATH_TOKEN_UNION].operatorClass;
}

namespace zr {

uint32_t LastTokenType(const ZrXpathLex *lex)
{
    return lex->count != 0 ? lex->tokens[lex->count - 1].type : uint32_t{ZR_XPATH_TOKEN_NONE};
}

} // namespace zr

uint32_t ZR_XPATH_ParseCurTokenFromExpr(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    *token = ZrXpathToken{};
    char ch = lex->expression[cursor];
    uint32_t status;
    if (zr::IsDigit(ch))
        status = ZR_XPATH_GetTokenStartWithDigit(lex, cursor, token);
    else if (zr::IsLetter(ch) || ch == '_')
        status = ZR_XPATH_GetTokenStartWithNameStart(lex, cursor, token);
    else
        status = ZR_XPATH_GetTokenStartWithOtherCh(lex, cursor, token);
    if (status != ZR_OK || token->type == ZR_XPATH_TOKEN_NONE)
        return ZR_ERR_INVALID;
    token->start = cursor;
    return Store(lex, *token);
}

// The scanners: one token at the cursor, by its first character (XPath 1.0, section 3.7).

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

// The first character does not count as a dot: docs/oddities.md.
uint32_t ZR_XPATH_GetTokenStartWithDigit(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    const char *text = lex->expression + cursor;
    uint32_t length = 1;
    uint32_t dots = 0;
    for (; zr::IsDigit(text[length]) || text[length] == '.'; ++length) {
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

// Only the leading characters are compared: docs/oddities.md.
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
        if (zr::IsDigit(text[1]))
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
