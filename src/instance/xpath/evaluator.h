// SPDX-License-Identifier: Apache-2.0
// Evaluating the conditions of a plan on an instance tree, by libxml2's XPath with the functions of
// RFC 7950, section 10. One evaluator serves one check.
#pragma once

#include <libxml/xpath.h>

#include <memory_resource>
#include <vector>

#include "instance/plan/plan.h"
#include "instance/tree/element.h"
#include "instance/tree/value.h"
#include "instance/xpath/references.h"

namespace zr::data {

enum class Truth : uint8_t {
    False,
    True,
    Exceeded, // the bound on steps was met
    Failed    // the expression cannot be evaluated: see Evaluator::reason()
};

class Evaluator {
public:
    Evaluator(const Plan &plan, Tree &tree, References &references, uint64_t stepLimit,
              std::pmr::memory_resource *memory);
    ~Evaluator();
    Evaluator(const Evaluator &) = delete;
    Evaluator &operator=(const Evaluator &) = delete;

    // The truth of an expression for an element; for the tree's root, at the root of the data.
    Truth Evaluate(const Expression &expression, Element &context);
    // What was wrong with the expression that failed last.
    const char *reason() const { return reason_; }

    // What the functions of YANG work on.
    const Plan &plan;
    Tree &tree;
    References &references;
    PatternCache patterns;                  // of re-match()
    xmlNode *current = nullptr;             // what current() gives
    const Expression *expression = nullptr; // that is being evaluated
    bool isOutOfMemory = false;             // in a function

    std::pmr::memory_resource *memory() const { return memory_; }

private:
    void Prepare();
    Truth Explain();

    std::pmr::memory_resource *memory_;
    uint64_t stepLimit_;
    xmlXPathContext *context_ = nullptr;            // made when the first expression comes
    std::pmr::vector<xmlXPathCompExpr *> compiled_; // by the number of the expression
    const char *reason_ = "";
};

} // namespace zr::data
