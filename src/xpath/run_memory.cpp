#include "xpath/run_memory.h"

namespace zr {

TokenMemory::~TokenMemory()
{
    for (ZrXpathLex *lex : kept_)
        ZR_XPATH_FreeXpathLex(lex);
}

const ZrXpathLex *TokenMemory::Tokenize(const char *expression)
{
    // Blocks begin at multiples of 16: their lowest bits say nothing.
    auto address = reinterpret_cast<uintptr_t>(expression);
    ZrXpathLex *&kept = kept_[((address >> 4) ^ (address >> 12)) % kPlaces];
    if (kept != nullptr && kept->expression == expression)
        return kept;
    ZR_XPATH_FreeXpathLex(kept);
    kept = ZR_XPATH_ExprTokenize(expression);
    return kept;
}

} // namespace zr
