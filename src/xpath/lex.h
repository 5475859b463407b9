// SPDX-License-Identifier: Apache-2.0
// The XPath tokenizer: one expression becomes a flat array of tokens.
#pragma once

#include <zrschema/types.h>

#include <cstdint>

#include "foundation/context_record.h"

// The order matters: the operators stand together, from the path operators to "or".
enum ZrXpathTokenType : uint32_t {
    ZR_XPATH_TOKEN_LPAREN = 0,
    ZR_XPATH_TOKEN_RPAREN = 1,
    ZR_XPATH_TOKEN_LBRACKET = 2,
    ZR_XPATH_TOKEN_RBRACKET = 3,
    ZR_XPATH_TOKEN_DOT = 4,
    ZR_XPATH_TOKEN_DOTDOT = 5,
    ZR_XPATH_TOKEN_AT = 6,
    ZR_XPATH_TOKEN_COMMA = 7,
    ZR_XPATH_TOKEN_NAME = 8,      // name, prefix:name, prefix:* or a "*" that is no operator
    ZR_XPATH_TOKEN_RESERVED9 = 9, // never produced
    ZR_XPATH_TOKEN_FUNCNAME = 10, // a name with "(" after it
    ZR_XPATH_TOKEN_LITERAL = 11,  // with its quotes
    ZR_XPATH_TOKEN_NUMBER = 12,
    ZR_XPATH_TOKEN_PATHOP = 13, // "/" and "//"
    ZR_XPATH_TOKEN_UNION = 14,
    ZR_XPATH_TOKEN_MULTIPLY = 15, // "*", "div" and "mod"
    ZR_XPATH_TOKEN_ADDITIVE = 16,
    ZR_XPATH_TOKEN_RELATIONAL = 17,
    ZR_XPATH_TOKEN_EQUALITY = 18,
    ZR_XPATH_TOKEN_AND = 19,
    ZR_XPATH_TOKEN_OR = 20,
    ZR_XPATH_TOKEN_NONE = 21 // no token: a failed scan, or nothing before the cursor
};

// The classes of the binary operators, which are their priorities too: a higher one binds tighter.
enum ZrXpathOperatorClass : uint32_t {
    ZR_XPATH_CLASS_OR = 0,
    ZR_XPATH_CLASS_AND = 1,
    ZR_XPATH_CLASS_EQUALITY = 2,
    ZR_XPATH_CLASS_RELATIONAL = 3,
    ZR_XPATH_CLASS_ADDITIVE = 4,
    ZR_XPATH_CLASS_MULTIPLICATIVE = 5,
    ZR_XPATH_CLASS_UNION = 7,
    ZR_XPATH_CLASS_NONE = 8,
    ZR_XPATH_MARKER_CLASS = 9 // on the operator stack: an open sub-expression
};

// A token's text stands in the expression at `start`, not terminated.
struct ZrXpathToken {
    uint32_t type; // ZrXpathTokenType
    uint32_t length;
    uint32_t start; // offset in the expression
};

struct ZrXpathLex {
    ZrXpathToken *tokens;
    const char *expression; // the caller's, outlives the list
    uint32_t count;
    uint32_t capacity;
};
static_assert(sizeof(ZrXpathToken) == 12);

extern "C" {
// A new token list, freed with ZR_XPATH_FreeXpathLex(). Null when the expression is null, holds
// something outside the supported subset, has more tokens than a list holds (65,540), or memory
// runs out. A blank expression gives an empty list.
ZR_API ZrXpathLex *ZR_XPATH_ExprTokenize(const char *expression);
// Frees the list, not the expression; null is accepted.
ZR_API void ZR_XPATH_FreeXpathLex(ZrXpathLex *lex);
// The number of tokens, 0 for null.
ZR_API uint32_t ZR_XPATH_GetTokenNumber(const ZrXpathLex *lex);
// The text of one token, which is `*lengthOut` bytes long; null for a null list or a position past
// the end, which leave the out-arguments alone. Both out-arguments may be null.
ZR_API const char *ZR_XPATH_GetTokenExprByPos(const ZrXpathLex *lex, uint32_t position,
                                              uint32_t *typeOut, uint32_t *lengthOut);
// 1 for an operator, from ZR_XPATH_TOKEN_PATHOP to ZR_XPATH_TOKEN_OR, else 0.
ZR_API uint32_t ZR_XPATH_IsCurTokenOperator(uint32_t type);
// 1 when a "*" or a name after a token of that type is an operator (XPath 1.0, section 3.7).
ZR_API uint32_t ZR_XPATH_IsNextTokenOperator(uint32_t previousType);
// The ZrXpathOperatorClass of a token type, ZR_XPATH_CLASS_NONE for what is no binary operator.
ZR_API uint32_t ZR_XPATH_GetTokenExprType(uint32_t type);
}

namespace zr {

// Whether axes ("ancestor::x") are part of what is tokenized. An axis is then two tokens: its name,
// a ZR_XPATH_TOKEN_NAME, and "::", of the type of the axis that "@" abbreviates.
enum class XpathAxes { kRefused, kTaken };

// What a context takes in the conditions that it keeps.
inline XpathAxes AxesOf(const ZrCtx *ctx)
{
    return IsStandard(ctx) ? XpathAxes::kTaken : XpathAxes::kRefused;
}

// ZR_XPATH_ExprTokenize() with the reason of a failure: ZR_ERR_NO_MEMORY, else ZR_ERR_INVALID.
uint32_t Tokenize(const char *expression, ZrXpathLex **lexOut,
                  XpathAxes axes = XpathAxes::kRefused);

} // namespace zr

// The tokenizer's scanners and the table of symbols.

namespace zr {

// One symbol and the token that it makes; the token's start is set when it is stored.
struct XpathSymbol {
    const char *text;
    ZrXpathToken token;
};

constexpr uint32_t kXpathSymbolCount = 17;
extern const XpathSymbol kXpathSymbols[kXpathSymbolCount];

// The type of the last stored token, ZR_XPATH_TOKEN_NONE when there is none.
uint32_t LastTokenType(const ZrXpathLex *lex);

} // namespace zr

extern "C" {
// Scans the token at the cursor and appends it to the list: ZR_OK, ZR_ERR_NO_MEMORY when the list
// cannot grow, or ZR_ERR_INVALID.
ZR_API uint32_t ZR_XPATH_ParseCurTokenFromExpr(ZrXpathLex *lex, uint32_t cursor,
                                               ZrXpathToken *token);

// The scanners: each sets the type and the length of the token that begins at the cursor. ZR_OK, or
// ZR_ERR_INVALID with the type ZR_XPATH_TOKEN_NONE.
ZR_API uint32_t ZR_XPATH_GetTokenStartWithDigit(ZrXpathLex *lex, uint32_t cursor,
                                                ZrXpathToken *token);
ZR_API uint32_t ZR_XPATH_GetTokenStartWithNameStart(ZrXpathLex *lex, uint32_t cursor,
                                                    ZrXpathToken *token);
ZR_API uint32_t ZR_XPATH_GetTokenStartWithOtherCh(ZrXpathLex *lex, uint32_t cursor,
                                                  ZrXpathToken *token);
// "and", "or", "div" or "mod".
ZR_API uint32_t ZR_XPATH_GetOperatorType(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token);
// What is not in the table of symbols: literals, "(", "*" and ".".
ZR_API uint32_t ZR_XPATH_ParseSpecialSymbol(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token);
ZR_API uint32_t ZR_XPATH_ParseLiteralToken(ZrXpathLex *lex, uint32_t cursor, ZrXpathToken *token);

// The first row of the table of symbols that stands at the cursor, or the number of rows.
ZR_API uint32_t ZR_XPATH_GetTgtTokenFromSymbolTbl(const ZrXpathLex *lex, uint32_t cursor);
}
