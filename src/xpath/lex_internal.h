// The tokenizer's scanners and the table of symbols.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "xpath/lex.h"

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

inline bool IsXpathDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

} // namespace zr

extern "C" {
// Scans the token at the cursor and appends it to the list. 0, 12 when the list cannot grow, or 22.
ZR_API uint32_t ZR_XPATH_ParseCurTokenFromExpr(ZrXpathLex *lex, uint32_t cursor,
                                               ZrXpathToken *token);

// The scanners: each sets the type and the length of the token that begins at the cursor. 0, or 22
// with the type ZR_XPATH_TOKEN_NONE.
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
