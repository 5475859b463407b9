// SPDX-License-Identifier: Apache-2.0
#include "shared/xpath_tokens.h"

#include <algorithm>
#include <iterator>

#include "shared/names.h"

namespace zr {

namespace {

using K = XPathKind;

struct Symbol {
    std::string_view text;
    XPathKind kind;
};
// Longer ones before those that they begin with.
constexpr Symbol kSymbols[] = {
    {"//", K::Slash},       {"/", K::Slash},     {"..", K::DotDot},  {".", K::Dot},
    {"@", K::At},           {"(", K::Open},      {")", K::Close},    {"[", K::OpenBracket},
    {"]", K::CloseBracket}, {",", K::Comma},     {"::", K::Axes},    {"!=", K::Operator},
    {"<=", K::Operator},    {">=", K::Operator}, {"=", K::Operator}, {"<", K::Operator},
    {">", K::Operator},     {"+", K::Operator},  {"-", K::Operator}, {"|", K::Operator},
};
constexpr std::string_view kOperatorNames[] = {"and", "or", "mod", "div"};
constexpr std::string_view kNodeTypes[] = {"comment", "text", "processing-instruction", "node"};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

template <size_t kSize> bool IsIn(const std::string_view (&names)[kSize], std::string_view name)
{
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

} // namespace

size_t XPathTokens::SkipBlanks(size_t from) const
{
    return std::min(text_.find_first_not_of(" \t\r\n", from), text_.size());
}

void XPathTokens::Take(XPathKind kind, size_t length)
{
    token_ = {kind, at_, text_.substr(at_, length)};
    isFirst_ = false;
    at_ += length;
}

void XPathTokens::TakeLiteral()
{
    size_t end = text_.find(text_[at_], at_ + 1);
    if (end == std::string_view::npos)
        return Take(K::Bad, text_.size() - at_);
    Take(K::Literal, end + 1 - at_);
}

void XPathTokens::TakeNumber()
{
    size_t length = 0;
    while (IsDigit(Peek(length)))
        ++length;
    if (Peek(length) == '.')
        ++length;
    while (IsDigit(Peek(length)))
        ++length;
    Take(K::Number, length);
}

// Behind an operand, a name and "*" are operators (XPath 1.0, section 3.7).
bool XPathTokens::IsOperatorExpected() const
{
    switch (token_.kind) {
    case K::At:
    case K::Axes:
    case K::Open:
    case K::OpenBracket:
    case K::Comma:
    case K::Operator:
    case K::Slash:
        return false;
    default:
        return !isFirst_;
    }
}

void XPathTokens::TakeName()
{
    bool isOperator = IsOperatorExpected();
    size_t length = 0;
    while (IsIdentifierChar(Peek(length)))
        ++length;
    std::string_view name = text_.substr(at_, length);
    if (isOperator && IsIn(kOperatorNames, name))
        return Take(K::Operator, length);
    if (Peek(length) == ':' && Peek(length + 1) == '*') {
        length += 2;
    } else if (Peek(length) == ':' && IsIdentifierStart(Peek(length + 1))) {
        ++length;
        while (IsIdentifierChar(Peek(length)))
            ++length;
    }
    size_t behind = SkipBlanks(at_ + length);
    std::string_view rest = text_.substr(behind);
    if (rest.starts_with('('))
        return Take(IsIn(kNodeTypes, name) ? K::NodeType : K::Function, length);
    Take(rest.starts_with("::") ? K::Axis : K::Name, length);
}

void XPathTokens::Advance()
{
    at_ = SkipBlanks(at_);
    char c = Peek(0);
    if (at_ >= text_.size()) {
        Take(K::End, 0);
    } else if (c == '"' || c == '\'') {
        TakeLiteral();
    } else if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) {
        TakeNumber();
    } else if (IsIdentifierStart(c)) {
        TakeName();
    } else if (c == '*') {
        Take(IsOperatorExpected() ? K::Operator : K::Name, 1);
    } else if (c == '$' && IsIdentifierStart(Peek(1))) {
        size_t start = at_++;
        TakeName();
        token_ = {K::Variable, start, text_.substr(start, at_ - start)};
    } else {
        for (const Symbol &symbol : kSymbols)
            if (text_.substr(at_).starts_with(symbol.text))
                return Take(symbol.kind, symbol.text.size());
        Take(K::Bad, 1);
    }
}

} // namespace zr
