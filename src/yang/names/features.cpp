// SPDX-License-Identifier: Apache-2.0
#include "yang/names/features.h"

#include "yang/syntax/arguments.h"

namespace zr::yang {

namespace {

using Kind = FeatureExpression::Kind;

constexpr uint32_t kDepthLimit = 100; // of parentheses and "not"
constexpr uint32_t kNameLimit = 1000; // who goes down a chain may call himself for each
constexpr std::string_view kBlanks = " \t\r\n";

class Reader {
public:
    Reader(const Statement &statement, Scopes &scopes, Reports &reports, Arena &arena)
        : statement_(statement), scopes_(scopes), reports_(reports), arena_(arena),
          rest_(statement.argument)
    {
        Advance();
    }

    FeatureExpression *Run()
    {
        // YANG 1 knows no expressions, but single names alone.
        bool isNew = UnitOf(statement_).version == Version::Yang11;
        FeatureExpression *expression = isNew ? ReadChain(Kind::Or, 0) : ReadName();
        if (expression != nullptr && !word_.empty())
            expression = nullptr;
        if (names_ > kNameLimit)
            reports_.Error(statement_.place(), ZR_YANG_CODE_LIMIT,
                           {"an expression of more than 1,000 features"});
        else if (expression == nullptr)
            reports_.Error(statement_.place(), ZR_YANG_CODE_ARGUMENT,
                           {"\"", statement_.argument, "\" is no expression of features"});
        return expression;
    }

private:
    void Advance()
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
        size_t length = rest_.starts_with('(') || rest_.starts_with(')')
                            ? 1
                            : std::min(rest_.find_first_of(" \t\r\n()"), rest_.size());
        word_ = rest_.substr(0, length);
        rest_.remove_prefix(length);
    }

    FeatureExpression *Make(Kind kind, FeatureExpression *left, FeatureExpression *right)
    {
        return arena_.New<FeatureExpression>(kind, nullptr, std::string_view(), left, right);
    }

    // Terms joined with "or", or factors joined with "and", which bind closer.
    FeatureExpression *ReadChain(Kind kind, uint32_t depth)
    {
        auto readPart = [&] {
            return kind == Kind::Or ? ReadChain(Kind::And, depth) : ReadFactor(depth);
        };
        FeatureExpression *left = readPart();
        while (left != nullptr && word_ == (kind == Kind::Or ? "or" : "and")) {
            Advance();
            FeatureExpression *right = readPart();
            left = right != nullptr ? Make(kind, left, right) : nullptr;
        }
        return left;
    }

    FeatureExpression *ReadFactor(uint32_t depth)
    {
        if (depth > kDepthLimit)
            return nullptr;
        if (word_ == "not") {
            Advance();
            FeatureExpression *negated = ReadFactor(depth + 1);
            return negated != nullptr ? Make(Kind::Not, negated, nullptr) : nullptr;
        }
        if (word_ != "(")
            return ReadName();
        Advance();
        FeatureExpression *inner = ReadChain(Kind::Or, depth + 1);
        if (word_ != ")")
            return nullptr;
        Advance();
        return inner;
    }

    FeatureExpression *ReadName()
    {
        if (!IsReference(word_) || word_ == "and" || word_ == "or" || word_ == "not" ||
            ++names_ > kNameLimit)
            return nullptr;
        FeatureExpression *expression = Make(Kind::Feature, nullptr, nullptr);
        expression->name = word_;
        expression->feature = scopes_.Find(DefinitionKind::Feature, word_, statement_);
        Advance();
        return expression;
    }

    const Statement &statement_;
    Scopes &scopes_;
    Reports &reports_;
    Arena &arena_;
    std::string_view rest_, word_;
    uint32_t names_ = 0;
};

Truth Negate(Truth truth)
{
    return truth == Truth::Open ? truth : truth == Truth::True ? Truth::False : Truth::True;
}

} // namespace

FeatureExpression *ReadFeatureExpression(const Statement &statement, Scopes &scopes,
                                         Reports &reports, Arena &arena)
{
    return Reader(statement, scopes, reports, arena).Run();
}

void FeatureStates::Set(std::string_view module, std::string_view feature, bool isOn)
{
    auto found = states_.find(module);
    if (found == states_.end())
        found = states_.try_emplace(arena_.Copy(module)).first;
    auto state = found->second.find(feature);
    if (state == found->second.end())
        state = found->second.try_emplace(arena_.Copy(feature)).first;
    state->second = isOn;
}

Truth FeatureStates::StateOf(std::string_view module, std::string_view feature) const
{
    for (std::string_view key : {module, std::string_view("*")}) {
        auto found = states_.find(key);
        if (found == states_.end())
            continue;
        for (std::string_view name : {feature, std::string_view("*")}) {
            auto state = found->second.find(name);
            if (state != found->second.end())
                return state->second ? Truth::True : Truth::False;
        }
    }
    return Truth::Open;
}

// Calls itself along the left side of long chains too; their length is bounded by the reader's
// statement, and their depth by folding them here.
Truth FeatureStates::Evaluate(const FeatureExpression &expression) const
{
    const FeatureExpression *at = &expression;
    Truth right = Truth::Open;
    switch (at->kind) {
    case Kind::Feature:
        return at->feature != nullptr ? StateOf(at->feature->module->name, at->feature->name())
                                      : Truth::Open;
    case Kind::Not:
        return Negate(Evaluate(*at->left));
    case Kind::And:
    case Kind::Or:
        break;
    }
    // Chains lean to the left: a loop goes down them.
    Truth decisive = at->kind == Kind::And ? Truth::False : Truth::True;
    Truth result = Negate(decisive);
    for (Kind kind = at->kind; at != nullptr; at = at->kind == kind ? at->left : nullptr) {
        right = Evaluate(at->kind == kind ? *at->right : *at);
        if (right == decisive)
            return decisive;
        if (right == Truth::Open)
            result = Truth::Open;
    }
    return result;
}

} // namespace zr::yang
