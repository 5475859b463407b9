// SPDX-License-Identifier: Apache-2.0
#include "yang/xpath/expression.h"

#include <algorithm>
#include <iterator>

namespace zr::yang {

namespace {

using K = XPathKind;

constexpr uint32_t kDepthLimit = 100; // of brackets, parentheses and signs

// The functions that there are and how many arguments they take (XPath 1.0, section 4; RFC 7950,
// section 10).
struct FunctionRow {
    std::string_view name;
    uint32_t least, most;
};
constexpr uint32_t kAny = UINT32_MAX;
constexpr FunctionRow kFunctions[] = {
    {"last", 0, 0},
    {"position", 0, 0},
    {"count", 1, 1},
    {"id", 1, 1},
    {"local-name", 0, 1},
    {"namespace-uri", 0, 1},
    {"name", 0, 1},
    {"string", 0, 1},
    {"concat", 2, kAny},
    {"starts-with", 2, 2},
    {"contains", 2, 2},
    {"substring-before", 2, 2},
    {"substring-after", 2, 2},
    {"substring", 2, 3},
    {"string-length", 0, 1},
    {"normalize-space", 0, 1},
    {"translate", 3, 3},
    {"boolean", 1, 1},
    {"not", 1, 1},
    {"true", 0, 0},
    {"false", 0, 0},
    {"lang", 1, 1},
    {"number", 0, 1},
    {"sum", 1, 1},
    {"floor", 1, 1},
    {"ceiling", 1, 1},
    {"round", 1, 1},
    {"current", 0, 0},
    {"re-match", 2, 2},
    {"deref", 1, 1},
    {"derived-from", 2, 2},
    {"derived-from-or-self", 2, 2},
    {"enum-value", 1, 1},
    {"bit-is-set", 2, 2},
};

constexpr std::string_view kAxes[] = {
    "ancestor",  "ancestor-or-self",  "attribute", "child",  "descendant", "descendant-or-self",
    "following", "following-sibling", "namespace", "parent", "preceding",  "preceding-sibling",
    "self",
};

class Reader {
public:
    Reader(std::string_view text, XPathVisitor &visitor) : tokens_(text), visitor_(visitor) {}

    XPathFault Run()
    {
        ReadExpression(0);
        if (fault_.what == nullptr && At().kind != K::End)
            Fail("unexpected");
        return fault_;
    }

private:
    const XPathToken &At() const { return tokens_.at(); }
    bool Is(K kind) const { return At().kind == kind && fault_.what == nullptr; }
    bool IsOperator(std::string_view text) const { return Is(K::Operator) && At().text == text; }

    void Fail(const char *what)
    {
        if (fault_.what != nullptr)
            return;
        fault_ = {At().offset, At().kind == K::End ? "unexpected end" : what, At().text};
    }

    void Expect(K kind)
    {
        if (!Is(kind))
            return Fail("unexpected");
        tokens_.Advance();
    }

    // Every binary operator stands between two operands; which binds closer changes nothing here.
    void ReadExpression(uint32_t depth)
    {
        if (depth > kDepthLimit)
            return Fail("too deep at");
        while (fault_.what == nullptr) {
            while (IsOperator("-"))
                tokens_.Advance();
            ReadOperand(depth);
            if (!Is(K::Operator))
                return;
            tokens_.Advance();
        }
    }

    void ReadOperand(uint32_t depth)
    {
        XPathToken token = At();
        switch (token.kind) {
        case K::Literal:
            visitor_.Literal(token, function_, argument_);
            tokens_.Advance();
            break;
        case K::Number:
            tokens_.Advance();
            break;
        case K::Variable:
            return Fail("there are no variables:");
        case K::Function:
            ReadCall(depth);
            break;
        case K::Open:
            tokens_.Advance();
            ReadInner(depth);
            Expect(K::Close);
            break;
        default:
            return ReadPath(depth);
        }
        ReadPredicates(depth); // a filter expression may go on as a path
        if (Is(K::Slash)) {
            tokens_.Advance();
            ReadSteps(depth);
        }
    }

    // An expression in parentheses or brackets is no argument of the function around it.
    void ReadInner(uint32_t depth)
    {
        std::string_view function = function_;
        function_ = {};
        ReadExpression(depth + 1);
        function_ = function;
    }

    void ReadCall(uint32_t depth)
    {
        XPathToken name = At();
        tokens_.Advance();
        Expect(K::Open);
        std::string_view outer = function_;
        uint32_t outerArgument = argument_, count = 0;
        function_ = name.text;
        while (!Is(K::Close) && fault_.what == nullptr) {
            if (count > 0)
                Expect(K::Comma);
            argument_ = count++;
            ReadExpression(depth + 1);
            function_ = name.text;
        }
        function_ = outer;
        argument_ = outerArgument;
        CheckCall(name, count);
        if (fault_.what == nullptr)
            visitor_.Call({name.text, count, At().offset, predicates_ > 0});
        Expect(K::Close);
    }

    void CheckCall(const XPathToken &name, uint32_t count)
    {
        if (fault_.what != nullptr)
            return;
        const auto *row = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                       [&](const FunctionRow &r) { return r.name == name.text; });
        if (row == std::end(kFunctions))
            fault_ = {name.offset, "unknown function", name.text};
        else if (count < row->least || count > row->most)
            fault_ = {name.offset, "wrong number of arguments of", name.text};
    }

    void ReadPredicates(uint32_t depth)
    {
        while (Is(K::OpenBracket)) {
            tokens_.Advance();
            ++predicates_;
            ReadInner(depth);
            --predicates_;
            Expect(K::CloseBracket);
        }
    }

    void ReadPath(uint32_t depth)
    {
        if (Is(K::Slash)) {
            bool isRootAlone = At().text == "/";
            tokens_.Advance();
            if (isRootAlone && !IsStep())
                return;
        } else if (!IsStep()) {
            return Fail("unexpected");
        } else if (predicates_ == 0) {
            visitor_.PathStart(At());
        }
        ReadSteps(depth);
    }

    bool IsStep() const
    {
        switch (At().kind) {
        case K::Name:
        case K::NodeType:
        case K::Axis:
        case K::At:
        case K::Dot:
        case K::DotDot:
            return true;
        default:
            return false;
        }
    }

    void ReadSteps(uint32_t depth)
    {
        while (fault_.what == nullptr) {
            ReadStep(depth);
            if (!Is(K::Slash))
                return;
            tokens_.Advance();
        }
    }

    void ReadStep(uint32_t depth)
    {
        if (Is(K::Dot) || Is(K::DotDot))
            return tokens_.Advance();
        if (Is(K::At)) {
            tokens_.Advance();
        } else if (Is(K::Axis)) {
            if (std::find(std::begin(kAxes), std::end(kAxes), At().text) == std::end(kAxes))
                return Fail("unknown axis");
            tokens_.Advance();
            Expect(K::Axes);
        }
        if (Is(K::NodeType)) {
            tokens_.Advance();
            Expect(K::Open);
            if (Is(K::Literal))
                tokens_.Advance();
            Expect(K::Close);
        } else if (Is(K::Name)) {
            visitor_.Name(At(), predicates_ > 0);
            tokens_.Advance();
        } else {
            return Fail("unexpected");
        }
        ReadPredicates(depth);
    }

    XPathTokens tokens_;
    XPathVisitor &visitor_;
    XPathFault fault_;
    uint32_t predicates_ = 0;   // that are open
    std::string_view function_; // whose argument is being read
    uint32_t argument_ = 0;
};

} // namespace

XPathFault ReadXPath(std::string_view text, XPathVisitor &visitor)
{
    return Reader(text, visitor).Run();
}

} // namespace zr::yang
