// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/expression.h"

#include <algorithm>
#include <iterator>

#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

// Brackets and parentheses in each other; libxml2 calls itself for each.
constexpr uint32_t kMaxDepth = 100;

// The functions of XPath 1.0 (section 4) and of YANG (RFC 7950, section 10). What else is called is
// told here, because libxml2 would write of it to the standard error.
constexpr std::string_view kFunctions[] = {
    "last",
    "position",
    "count",
    "id",
    "local-name",
    "namespace-uri",
    "name",
    "string",
    "concat",
    "starts-with",
    "contains",
    "substring-before",
    "substring",
    "string-length",
    "substring-after",
    "normalize-space",
    "translate",
    "boolean",
    "not",
    "true",
    "false",
    "lang",
    "number",
    "sum",
    "floor",
    "ceiling",
    "round",
    "current",
    "re-match",
    "deref",
    "derived-from",
    "derived-from-or-self",
    "enum-value",
    "bit-is-set",
};

// A name after "@" or "attribute::" is an attribute's: data has none that is in the schema.
bool IsAttributeAxis(const XPathToken &token)
{
    return token.kind == XPathKind::At ||
           (token.kind == XPathKind::Axis && token.text == "attribute");
}

const char *AppendName(const Plan &plan, const PlanModule &module, std::string_view name,
                       std::pmr::string &out)
{
    QName parts = SplitName(name);
    if (name == "*" || !parts.prefix.empty()) {
        if (!parts.prefix.empty() && plan.FindModule(parts.prefix) == nullptr)
            return "it names a module that is not loaded";
        out += name;
        return nullptr;
    }
    ((out += module.name) += ':') += name;
    return nullptr;
}

} // namespace

std::span<const std::string_view> FunctionNames()
{
    return kFunctions;
}

const char *RewriteExpression(const Plan &plan, const PlanModule &module, std::string_view source,
                              std::pmr::string &out)
{
    size_t copied = 0;
    uint32_t depth = 0;
    bool isAttribute = false;
    for (XPathTokens tokens(source); tokens.at().kind != XPathKind::End; tokens.Advance()) {
        const XPathToken &token = tokens.at();
        switch (token.kind) {
        case XPathKind::Bad:
            return "it is no XPath 1.0 expression";
        case XPathKind::Variable:
            return "it has a variable, and there are none";
        case XPathKind::Function:
            if (std::find(std::begin(kFunctions), std::end(kFunctions), token.text) ==
                std::end(kFunctions))
                return "it calls a function that is not known";
            break;
        case XPathKind::Open:
        case XPathKind::OpenBracket:
            if (++depth > kMaxDepth)
                return "brackets stand too deep in it";
            break;
        case XPathKind::Close:
        case XPathKind::CloseBracket:
            depth -= depth != 0;
            break;
        case XPathKind::Name:
            out += source.substr(copied, token.offset - copied);
            copied = token.offset + token.text.size();
            if (isAttribute)
                out += token.text;
            else if (const char *fault = AppendName(plan, module, token.text, out))
                return fault;
            break;
        default:
            break;
        }
        if (token.kind != XPathKind::Axes)
            isAttribute = IsAttributeAxis(token);
    }
    out += source.substr(copied);
    return nullptr;
}

} // namespace zr::data
