// The functions of conditions, called on the object stack, where their arguments lie in order. They
// do not count them: what lies on top is taken.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "xpath/eval.h"

extern "C" {
// not(): negates the object on top, as a boolean (XPath 1.0, section 4.3); 22 when there is none.
ZR_API uint32_t ZR_XPATH_FuncNot(ZrXpathEvalCtx *ctx);
// derived-from() and derived-from-or-self() (RFC 7950, section 10.4): a node whose type is
// identityref, and the name of an identity.
ZR_API uint32_t ZR_XPATH_FuncDerivedFrom(ZrXpathEvalCtx *ctx);
ZR_API uint32_t ZR_XPATH_FuncDerivedFromOfSelf(ZrXpathEvalCtx *ctx);
}

namespace zr {

struct XpathFunction {
    const char *name;
    uint32_t (*run)(ZrXpathEvalCtx *ctx);
};

// The function of that name, `length` bytes at `text`, or null.
const XpathFunction *FindXpathFunction(const char *text, uint32_t length);

} // namespace zr
