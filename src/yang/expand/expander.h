// SPDX-License-Identifier: Apache-2.0
// Expansion: from the statements of a module to its schema nodes, with every "uses" replaced by the
// nodes of its grouping, refined and augmented (RFC 7950, section 7.13), and the module's augments
// put in their places (section 7.17).
#pragma once

#include "yang/expand/node.h"
#include "yang/names/features.h"

namespace zr::yang {

class Expander {
public:
    Expander(Scopes &scopes, Reports &reports, Arena &arena, const FeatureStates &features,
             NodeIndex &index)
        : scopes_(scopes), reports_(reports), arena_(arena), features_(features), index_(index)
    {
    }

    uint64_t nodeLimit = 1000000; // of one module

    // Makes the module's tree, augments and extension instances. The modules that it imports have
    // theirs. Groupings that nothing uses become trees of their own, to be checked and not written.
    void Expand(Module &module, std::pmr::vector<Node *> &unusedGroupings);

    // The node that a path of schema nodes leads to; null when a step is not there.
    Node *FindTarget(Node *from, std::string_view path, const Statement &where);

private:
    // Where nodes are being added: `holder` is what they are written in.
    struct Site {
        Node &holder, &parent;
        uint32_t uses; // how many groupings are open around it
    };

    Node *NewNode(const Site &site, const Statement &statement, Keyword keyword);
    void Append(Node &holder, Node &node);
    void AddBody(const Site &site, const Statement &body);
    void AddStatement(const Site &site, const Statement &statement);
    void AddNode(const Site &site, const Statement &statement);
    void AddImplicitOperations(const Site &site);
    void AddUses(const Site &site, const Statement &uses);
    void AddInherited(Node &node, const Statement &around);
    void AddTo(Node &node, const Statement &statement, bool isInherited);
    void Refine(Node &parent, const Statement &refine);
    void AugmentUses(const Site &site, const Statement &augment);
    void CheckRefine(const Node &target, const Statement &property);
    void AddInstance(Module &module, const Statement &instance);
    void Couple(Module &module);
    void CoupleOne(Module &module, Node &augment);
    void CheckAugment(const Module &module, const Node &augment, const Node &target);
    void Decide(Node &node, const Statement &ifFeature);
    bool IsOverLimit(const Statement &statement);

    Scopes &scopes_;
    Reports &reports_;
    Arena &arena_;
    const FeatureStates &features_;
    NodeIndex &index_;
    Module *module_ = nullptr; // that is being expanded
    uint64_t nodes_ = 0;       // of it
    bool isStopped_ = false;   // over the limit
};

// Calls func with each part of an expression that is joined with "and"; only a single feature can
// be written in a prepared module.
template <typename Func> void ForEachConjunct(const FeatureExpression &expression, Func func)
{
    if (expression.kind != FeatureExpression::Kind::And)
        return func(expression);
    ForEachConjunct(*expression.left, func);
    ForEachConjunct(*expression.right, func);
}

} // namespace zr::yang
