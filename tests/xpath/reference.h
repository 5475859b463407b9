// SPDX-License-Identifier: Apache-2.0
// A second opinion on conditions: the rules of the evaluator written down once more, as plainly as
// possible, over a tree of its own. It shares no code with the library.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "xpath/reference_tokens.h"

namespace zrtest::reference {

struct Node {
    std::string name;
    std::string text;       // of an element without children
    bool hasSchema = true;  // an element without a schema node has no value
    Node *parent = nullptr; // null for the root node
    std::vector<std::unique_ptr<Node>> children;
};

struct Value {
    enum Kind { kBoolean, kString, kNode, kNumber } kind;
    bool boolean = false;
    std::string string = "";
    const Node *node = nullptr;
    double number = 0;
};

// An XPath number: blanks, "-", digits with at most one ".", blanks.
inline double NumberOf(const std::string &text)
{
    size_t at = text.find_first_not_of(" \t\n\r");
    size_t end = text.find_last_not_of(" \t\n\r");
    if (at == std::string::npos)
        return std::numeric_limits<double>::quiet_NaN();
    std::string trimmed = text.substr(at, end + 1 - at);
    int digits = 0;
    int dots = 0;
    for (size_t i = trimmed[0] == '-' ? 1 : 0; i < trimmed.size(); ++i) {
        digits += IsDigit(trimmed[i]);
        dots += trimmed[i] == '.';
        if (!IsDigit(trimmed[i]) && trimmed[i] != '.')
            return std::numeric_limits<double>::quiet_NaN();
    }
    if (digits == 0 || dots > 1)
        return std::numeric_limits<double>::quiet_NaN();
    return std::strtod(trimmed.c_str(), nullptr);
}

// Evaluates one condition by recursion. A status other than 0 ends it by unwinding.
class Evaluator {
public:
    Evaluator(const Node *root, const Node *context) : root_(root), context_(context) {}

    uint32_t Eval(const std::string &text)
    {
        auto tokens = Tokenize(text);
        if (!tokens)
            return ZR_XPATH_ERR_TOKENIZE;
        tokens_ = *tokens;
        uint32_t status = Sequence(-1);
        if (status != ZR_OK)
            return status;
        if (at_ < tokens_.size())
            return ZR_XPATH_ERR_PAREN; // ")" or "," that nothing opened
        if (values_.size() != 1)
            return ZR_ERR_INVALID;
        if (!Boolean(values_[0]))
            return ZR_XPATH_RESULT_FALSE;
        return ZR_OK;
    }

    // Whether XPath 1.0 gives the same answer: false once a rule was used that departs from it.
    bool AgreesWithXPath() const { return agrees_; }

private:
    // Operands and the operators between them, as long as these bind tighter than `level`.
    uint32_t Sequence(int level)
    {
        while (at_ < tokens_.size() && !Is(")") && !Is(",")) {
            uint32_t status;
            if (tokens_[at_].kind == Token::kOperator) {
                std::string op = tokens_[at_].text;
                int binding = Binding(op);
                if (binding <= level)
                    return ZR_OK;
                ++at_;
                status = Sequence(binding);
                if (status == ZR_OK)
                    status = Apply(op);
            } else {
                status = Operand();
            }
            if (status != ZR_OK)
                return status;
        }
        return ZR_OK;
    }

    static int Binding(const std::string &op)
    {
        if (op == "or")
            return 0;
        if (op == "and")
            return 1;
        if (op == "=" || op == "!=")
            return 2;
        if (op[0] == '<' || op[0] == '>')
            return 3;
        if (op == "+" || op == "-")
            return 4;
        return op == "|" ? 7 : 5;
    }

    uint32_t Operand()
    {
        const Token token = tokens_[at_];
        switch (token.kind) {
        case Token::kLiteral:
            ++at_;
            Push({.kind = Value::kString, .string = token.text.substr(1, token.text.size() - 2)});
            return ZR_OK;
        case Token::kNumber:
            ++at_;
            Push({.kind = Value::kNumber, .number = NumberOf(token.text)});
            return ZR_OK;
        case Token::kFunction:
            return Call(token.text);
        case Token::kPath:
            if (token.text == "//")
                return ZR_XPATH_ERR_ROOT_STEP;
            ++at_;
            return StartsStep() ? Path(root_) : PushNode(root_);
        default:
            break;
        }
        if (Is("(")) {
            ++at_;
            uint32_t status = Sequence(-1);
            if (status != ZR_OK)
                return status;
            if (!Is(")"))
                return ZR_XPATH_ERR_PAREN;
            ++at_;
            return ZR_OK;
        }
        return StartsStep() ? Path(context_) : 22;
    }

    uint32_t Call(const std::string &name)
    {
        bool isNot = name == "not";
        if (!isNot && name != "derived-from" && name != "derived-from-or-self")
            return ZR_XPATH_ERR_UNKNOWN_FUNCTION;
        ++at_; // on "("
        size_t before = values_.size();
        do {
            ++at_;
            uint32_t status = Sequence(-1);
            if (status != ZR_OK)
                return status;
        } while (Is(","));
        if (!Is(")"))
            return ZR_XPATH_ERR_PAREN;
        ++at_;
        agrees_ = agrees_ && values_.size() == before + 1;
        return isNot ? Not() : DerivedFrom();
    }

    uint32_t Not()
    {
        if (values_.empty())
            return ZR_ERR_INVALID;
        bool value = Boolean(values_.back());
        values_.pop_back();
        Push({.kind = Value::kBoolean, .boolean = !value});
        return ZR_OK;
    }

    // The reference's trees have no identityrefs: only the faults are told apart.
    uint32_t DerivedFrom()
    {
        if (values_.empty() || values_.back().kind != Value::kString)
            return ZR_XPATH_ERR_BAD_ARGUMENT;
        std::string name = values_.back().string;
        values_.pop_back();
        if (values_.empty() || values_.back().kind != Value::kNode ||
            values_.back().node == nullptr || name.empty())
            return ZR_XPATH_ERR_BAD_ARGUMENT;
        if (!values_.back().node->hasSchema)
            return ZR_XPATH_ERR_NO_SCHEMA;
        return ZR_ERR_INVALID;
    }

    bool StartsStep() const
    {
        return at_ < tokens_.size() && (tokens_[at_].kind == Token::kName || Is(".") || Is(".."));
    }

    uint32_t Path(const Node *node)
    {
        while (StartsStep()) {
            std::string step = tokens_[at_++].text;
            if (step == "..") {
                agrees_ = agrees_ && (node == nullptr || node->parent != root_);
                if (node != nullptr && node->parent != root_)
                    node = node->parent;
            } else if (step != ".") {
                size_t colon = step.find(':');
                std::string prefix = colon != std::string::npos ? step.substr(0, colon) : "";
                std::string name = colon != std::string::npos ? step.substr(colon + 1) : step;
                agrees_ = agrees_ && name != "*";
                if (node != nullptr) {
                    if (name.empty() || name.size() > 64 || prefix.size() > 64)
                        return ZR_ERR_INVALID;
                    node = Child(node, name);
                }
                if (Is("[")) {
                    agrees_ = false;
                    while (at_ < tokens_.size() && !Is("]"))
                        ++at_;
                    if (at_ == tokens_.size())
                        return ZR_XPATH_ERR_PREDICATE;
                    ++at_;
                }
            }
            if (at_ == tokens_.size() || tokens_[at_].kind != Token::kPath)
                break;
            agrees_ = agrees_ && tokens_[at_].text == "/";
            ++at_;
            agrees_ = agrees_ && StartsStep();
        }
        return PushNode(node);
    }

    static const Node *Child(const Node *node, const std::string &name)
    {
        for (const auto &child : node->children) {
            if (child->name == name)
                return child.get();
        }
        return nullptr;
    }

    uint32_t Apply(const std::string &op)
    {
        if (values_.size() < 2)
            return ZR_ERR_INVALID;
        Value right = values_.back();
        values_.pop_back();
        Value left = values_.back();
        values_.pop_back();
        int binding = Binding(op);
        if (binding > 3)
            return ZR_XPATH_ERR_UNSUPPORTED_OPERATOR;
        bool result;
        if (op == "or")
            result = Boolean(left) || Boolean(right);
        else if (op == "and")
            result = Boolean(left) && Boolean(right);
        else if (binding == 2)
            result = Equal(left, right) == (op == "=");
        else
            result = Related(op, left, right);
        Push({.kind = Value::kBoolean, .boolean = result});
        return ZR_OK;
    }

    bool Related(const std::string &op, const Value &left, const Value &right)
    {
        // As below: XPath 1.0 takes a node that is related to a boolean as a boolean.
        auto isOneOf = [&](Value::Kind kind) { return left.kind == kind || right.kind == kind; };
        agrees_ = agrees_ && !(isOneOf(Value::kBoolean) && isOneOf(Value::kNode));
        double l = Number(Text(left));
        double r = Number(Text(right));
        if (op == "<")
            return l < r;
        if (op == ">")
            return l > r;
        return op == "<=" ? l <= r : l >= r;
    }

    bool Equal(const Value &left, const Value &right)
    {
        Value l = Text(left);
        Value r = Text(right);
        if (l.kind == Value::kBoolean || r.kind == Value::kBoolean) {
            // XPath 1.0 compares a boolean with whether there is a node, not with its text.
            if (left.kind == Value::kNode || right.kind == Value::kNode)
                agrees_ = agrees_ && l.string + r.string != "";
            return Boolean(l) == Boolean(r);
        }
        if (l.kind == Value::kNumber || r.kind == Value::kNumber)
            return std::fabs(Number(l) - Number(r)) < std::pow(2.0, -52);
        return l.string == r.string;
    }

    // A node becomes its text, everything else stays.
    Value Text(const Value &value)
    {
        if (value.kind != Value::kNode)
            return value;
        const Node *node = value.node;
        agrees_ = agrees_ && node != nullptr && node->hasSchema && node->children.empty() &&
                  node != root_;
        return {.kind = Value::kString,
                .string = node != nullptr && node->hasSchema ? node->text : ""};
    }

    static bool Boolean(const Value &value)
    {
        switch (value.kind) {
        case Value::kBoolean:
            return value.boolean;
        case Value::kString:
            return !value.string.empty();
        case Value::kNode:
            return value.node != nullptr;
        default:
            return std::fabs(value.number) >= std::pow(2.0, -52);
        }
    }

    static double Number(const Value &value)
    {
        switch (value.kind) {
        case Value::kBoolean:
            return value.boolean ? 1 : 0;
        case Value::kString:
            return NumberOf(value.string);
        default:
            return value.number;
        }
    }

    bool Is(const char *text) const
    {
        return at_ < tokens_.size() && tokens_[at_].kind == Token::kPunct &&
               tokens_[at_].text == text;
    }
    void Push(const Value &value) { values_.push_back(value); }
    uint32_t PushNode(const Node *node)
    {
        Push({.kind = Value::kNode, .node = node});
        return ZR_OK;
    }

    const Node *root_;
    const Node *context_;
    std::vector<Token> tokens_;
    size_t at_ = 0;
    std::vector<Value> values_;
    bool agrees_ = true;
};

} // namespace zrtest::reference
