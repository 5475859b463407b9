// SPDX-License-Identifier: Apache-2.0
// if-feature expressions (RFC 7950, section 7.20.2): reading them, and what they come to when it is
// known which features are on.
#pragma once

#include <memory_resource>
#include <unordered_map>

#include "yang/names/scopes.h"

namespace zr::yang {

// One expression as a tree of records of the arena. The names are those of the source.
struct FeatureExpression {
    enum class Kind : uint8_t { Feature, Not, And, Or };
    Kind kind;
    Definition *feature = nullptr; // of Feature; null when it is not known, which is reported
    std::string_view name;         // as it was written
    FeatureExpression *left = nullptr, *right = nullptr; // Not has a left one alone
};

// Reads the expression of an if-feature statement; null when it is none, which is reported.
FeatureExpression *ReadFeatureExpression(const Statement &statement, Scopes &scopes,
                                         Reports &reports, Arena &arena);

enum class Truth : uint8_t { False, True, Open };

// Which features are said to be on or off.
class FeatureStates {
public:
    FeatureStates(Arena &arena, std::pmr::memory_resource *memory) : arena_(arena), states_(memory)
    {
    }

    // "*" stands for every module, and for every feature, of which nothing else is said.
    void Set(std::string_view module, std::string_view feature, bool isOn);
    Truth StateOf(std::string_view module, std::string_view feature) const;
    Truth Evaluate(const FeatureExpression &expression) const;

private:
    Arena &arena_;
    std::pmr::unordered_map<std::string_view, std::pmr::unordered_map<std::string_view, bool>>
        states_;
};

} // namespace zr::yang
