// The token list: building it, reading it, and what a token's type says about it.
#include <cstddef>
#include <iterator>

#include "foundation/array.h"
#include "platform/memory.h"
#include "platform/text.h"
#include "xpath/lex.h"
#include "xpath/lex_internal.h"

namespace {

constexpr uint32_t kTokenGrowth = 10; // slots of a new list, and of each growth

bool IsSpace(char ch)
{
    return ch == ' ' || ch == '\t' || ch == '\n' || ch == '\r';
}

ZrXpathLex *NewLex(const char *expression)
{
    auto *lex = zr::AllocRecord<ZrXpathLex>();
    if (lex == nullptr)
        return nullptr;
    lex->expression = expression;
    lex->capacity = kTokenGrowth;
    if (zr::NewArray(&lex->tokens, lex->capacity) != ZR_OK) {
        zr::Free(lex);
        return nullptr;
    }
    return lex;
}

} // namespace

uint32_t zr::Tokenize(const char *expression, ZrXpathLex **lexOut)
{
    *lexOut = nullptr;
    if (expression == nullptr)
        return ZR_ERR_INVALID;
    size_t length = PAL_StrLen(expression);
    if (static_cast<uint32_t>(length) != length)
        return ZR_ERR_INVALID; // offsets are 32 bits wide
    ZrXpathLex *lex = NewLex(expression);
    if (lex == nullptr)
        return ZR_ERR_NO_MEMORY;
    for (uint32_t cursor = 0; expression[cursor] != '\0';) {
        if (IsSpace(expression[cursor])) {
            ++cursor;
            continue;
        }
        ZrXpathToken token;
        uint32_t status = ZR_XPATH_ParseCurTokenFromExpr(lex, cursor, &token);
        if (status != ZR_OK) {
            ZR_XPATH_FreeXpathLex(lex);
            return status;
        }
        cursor += token.length;
    }
    *lexOut = lex;
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
    // clang-format off
    // by token type, from ZR_XPATH_TOKEN_UNION on
    static constexpr uint32_t kClasses[] = {
        ZR_XPATH_CLASS_UNION,          // |
        ZR_XPATH_CLASS_MULTIPLICATIVE, // * div mod
        ZR_XPATH_CLASS_ADDITIVE,       // + -
        ZR_XPATH_CLASS_RELATIONAL,     // < > <= >=
        ZR_XPATH_CLASS_EQUALITY,       // = !=
        ZR_XPATH_CLASS_AND,            // and
        ZR_XPATH_CLASS_OR,             // or
    };
    // clang-format on
    static_assert(std::size(kClasses) == ZR_XPATH_TOKEN_OR - ZR_XPATH_TOKEN_UNION + 1);
    if (type < ZR_XPATH_TOKEN_UNION || type > ZR_XPATH_TOKEN_OR)
        return ZR_XPATH_CLASS_NONE;
    return kClasses[type - ZR_XPATH_TOKEN_UNION];
}

namespace zr {

uint32_t LastTokenType(const ZrXpathLex *lex)
{
    return lex->count != 0 ? lex->tokens[lex->count - 1].type : uint32_t{ZR_XPATH_TOKEN_NONE};
}

} // namespace zr

namespace {

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

bool IsNameStart(char ch)
{
    return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || ch == '_';
}

} // namespace

uint32_t ZR_XPATH_ParseCurTokenFromExpr(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token)
{
    *token = ZrXpathToken{};
    char ch = lex->expression[cursor];
    uint32_t status;
    if (zr::IsXpathDigit(ch))
        status = ZR_XPATH_GetTokenStartWithDigit(lex, cursor, token);
    else if (IsNameStart(ch))
        status = ZR_XPATH_GetTokenStartWithNameStart(lex, cursor, token);
    else
        status = ZR_XPATH_GetTokenStartWithOtherCh(lex, cursor, token);
    if (status != ZR_OK || token->type == ZR_XPATH_TOKEN_NONE)
        return ZR_ERR_INVALID;
    token->start = cursor;
    return Store(lex, *token);
}
