// SPDX-License-Identifier: Apache-2.0
// What a module's author must get right beyond names and types (RFC 7950): conditions, values, and
// what the schema nodes are when groupings are expanded.
#pragma once

#include "yang/expand/expander.h"
#include "yang/types/type.h"

namespace zr::yang {

class Checker {
public:
    Checker(Scopes &scopes, Reports &reports, const NodeIndex &index,
            std::pmr::memory_resource *memory)
        : scopes_(scopes), reports_(reports), index_(index), memory_(memory), ends_(memory)
    {
    }

    // Looks at an expanded module: at its statements, its nodes, its augments and deviations.
    void Check(Module &module, Expander &expander, const std::pmr::vector<Node *> &unusedGroupings);

private:
    // Statements (statements.cpp).
    void CheckStatements(Unit &unit);
    void CheckStatus(const Statement &statement, Status status);
    bool CheckCondition(const Statement &statement);
    void CheckTypedefDefault(const Statement &statement);
    // Values (values.cpp). Reports a default that is no value of the type.
    void CheckValue(const Type &type, const Statement &value);
    void CheckConditionalNames(const Type &type, const Statement &value);
    void CheckInheritedDefault(const Statement &statement, const Type &type);
    // Nodes, and the keys of lists (nodes.cpp).
    void CheckTree(const Node &root);
    void CheckNode(const Node &node);
    void CheckConfig(const Node &node);
    void CheckLeaf(const Node &node);
    void CheckElementCounts(const Node &node);
    void CheckChoice(const Node &node);
    void CheckPlace(const Node &node);
    void CheckKey(const Node &list);
    void CheckKeyLeaf(const Node &list, const Node &leaf, const Statement &key);
    void CheckUnique(const Node &list, const Statement &unique);
    // Leafrefs (leafrefs.cpp).
    struct PathEnd {
        const Node *node;         // null when the path leads to nothing
        std::string_view missing; // the step that is not there, "" when nobody can know
    };
    bool CheckPath(const Statement &path);
    void CheckLeafref(const Node &leaf, const Type &type);
    const Type *EndOfLeafrefs(const Node &leaf, const Type &type);
    void ReportLeafrefCircle(const std::pmr::vector<const Node *> &chain, const Node &start);
    PathEnd FollowPath(const Node &leaf, const Statement &path);
    const Node *FindPathStep(const Node *at, const Node &leaf, std::string_view step,
                             const Statement &path);
    // Deviations (deviations.cpp).
    struct Change {
        const Node *target;
        Keyword property; // Deviate: the node as a whole
        bool operator==(const Change &) const = default;
    };
    struct ChangeHash {
        size_t operator()(const Change &change) const
        {
            return std::hash<const void *>()(change.target) * 31u +
                   static_cast<size_t>(change.property);
        }
    };
    // The last statement of a module that changes something.
    using Changes = std::pmr::unordered_map<Change, const Statement *, ChangeHash>;
    void CheckDeviation(const Statement &deviation, Expander &expander, Changes &changes);
    void CheckDeviate(const Statement &deviate, const Node &target, Changes &changes);

    void Error(const Statement &where, uint32_t code,
               std::initializer_list<std::string_view> pieces)
    {
        reports_.Error(where.place(), code, pieces);
    }

    Scopes &scopes_;
    Reports &reports_;
    const NodeIndex &index_;
    std::pmr::memory_resource *memory_;
    // What the chain of leafrefs that begins at a leaf ends with; null when it does not end.
    std::pmr::unordered_map<const Node *, const Type *> ends_;
};

} // namespace zr::yang
