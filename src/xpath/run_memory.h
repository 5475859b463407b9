// What the conditions of one run share: the tokens of each expression, and what was found among the
// many children of an element.
//
// A condition on a list stands once in the schema and is evaluated for every entry.
#pragma once

#include "xpath/child_memory.h"
#include "xpath/lex.h"

namespace zr {

// The token lists of expressions that live longer than this: an expression is known by its address.
// One that has no place, because another has it, or that does not last, is tokenized again.
class TokenMemory {
public:
    TokenMemory() = default;
    ~TokenMemory();
    TokenMemory(const TokenMemory &) = delete;
    TokenMemory &operator=(const TokenMemory &) = delete;

    // As ZR_XPATH_ExprTokenize(); the list stays this memory's, until the next call.
    const ZrXpathLex *Tokenize(const char *expression);

private:
    static constexpr uint32_t kPlaces = 64; // conditions of one operation

    ZrXpathLex *kept_[kPlaces] = {};
};

struct RunMemory {
    ChildMemory children;
    TokenMemory expressions;
};

} // namespace zr
