// SPDX-License-Identifier: Apache-2.0
// XPath expressions as "must" and "when" have them: their syntax, and what somebody who walks
// through one wants to hear of (XPath 1.0; RFC 7950, sections 6.4 and 10).
#pragma once

#include "shared/xpath_tokens.h"

namespace zr::yang {

// A call of a function, when its ")" is reached.
struct XPathCall {
    std::string_view name;
    uint32_t arguments;
    size_t closing; // offset of the ")"
    bool isInPredicate;
};

// Hears of the parts of an expression from the left to the right.
class XPathVisitor {
public:
    virtual ~XPathVisitor() = default;
    // A location path that begins at the node for which the expression is evaluated.
    virtual void PathStart(const XPathToken &) {}
    // A name test; `isInPredicate` when its path stands in brackets.
    virtual void Name(const XPathToken &, bool /*isInPredicate*/) {}
    // A literal; `function` is the function whose argument it is, and the number of that argument.
    virtual void Literal(const XPathToken &, std::string_view /*function*/, uint32_t /*argument*/)
    {
    }
    virtual void Call(const XPathCall &) {}
};

struct XPathFault {
    size_t offset = 0;
    const char *what = nullptr; // null: there is none
    std::string_view text;      // the token or the name of the function that is at fault
};

// Reads a whole expression.
XPathFault ReadXPath(std::string_view text, XPathVisitor &visitor);

} // namespace zr::yang
