// SPDX-License-Identifier: Apache-2.0
// The tokens of XPath 1.0 (section 3.7).
#pragma once

#include <cstdint>
#include <string_view>

namespace zr {

enum class XPathKind : uint8_t {
    End,
    Bad,      // no token begins so
    Name,     // a name test: a, p:a, * or p:*
    NodeType, // comment, text, processing-instruction or node, before "("
    Function, // a name before "("
    Axis,     // a name before "::"
    Literal,  // with its quotes
    Number,
    Variable, // $a
    Operator, // and or mod div = != < <= > >= + - * |
    Slash,    // / or //
    Dot,
    DotDot,
    At,
    Open,
    Close,
    OpenBracket,
    CloseBracket,
    Comma,
    Axes // "::"
};

struct XPathToken {
    XPathKind kind = XPathKind::End;
    size_t offset = 0;
    std::string_view text;
};

class XPathTokens {
public:
    explicit XPathTokens(std::string_view text) : text_(text) { Advance(); }

    const XPathToken &at() const { return token_; }
    void Advance();

private:
    char Peek(size_t ahead) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }
    size_t SkipBlanks(size_t from) const;
    void Take(XPathKind kind, size_t length);
    void TakeLiteral();
    void TakeNumber();
    void TakeName();
    bool IsOperatorExpected() const;

    std::string_view text_;
    size_t at_ = 0;
    XPathToken token_;
    bool isFirst_ = true;
};

} // namespace zr
