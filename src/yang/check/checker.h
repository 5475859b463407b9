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
        : scopes_(scopes), reports_(reports), index_(index), memory_(memory)
    {
    }

    // Looks at an expanded module: at its statements, its nodes, its augments and deviations.
    void Check(Module &module, Expander &expander, const std::pmr::vector<Node *> &unusedGroupings);

private:
    // Statements (statements.cpp).
    void CheckStatements(Unit &unit);
    void CheckCondition(const Statement &statement);
    void CheckTypedefDefault(const Statement &statement);
    // Values (values.cpp). Reports a default that is no value of the type.
    void CheckValue(const Type &type, const Statement &value);
    void CheckInheritedDefault(const Statement &statement, const Type &type);
    // Nodes (nodes.cpp).
    void CheckTree(const Node &root);
    void CheckNode(const Node &node);
    void CheckConfig(const Node &node);
    void CheckLeaf(const Node &node);
    void CheckElementCounts(const Node &node);
    void CheckChoice(const Node &node);
    void CheckPlace(const Node &node);
    // Lists (lists.cpp).
    void CheckKey(const Node &list);
    void CheckKeyLeaf(const Node &list, const Node &leaf, const Statement &key);
    void CheckUnique(const Node &list, const Statement &unique);
    // Leafrefs (leafrefs.cpp).
    void CheckLeafref(const Node &leaf, const Type &type);
    const Node *FindPathStep(const Node *at, const Node &leaf, std::string_view step,
                             const Statement &path);
    // Deviations (deviations.cpp).
    void CheckDeviation(const Statement &deviation, Expander &expander);
    void CheckDeviate(const Statement &deviate, const Node &target);

    void Error(const Statement &where, uint32_t code,
               std::initializer_list<std::string_view> pieces)
    {
        reports_.Error(where.place(), code, pieces);
    }

    Scopes &scopes_;
    Reports &reports_;
    const NodeIndex &index_;
    std::pmr::memory_resource *memory_;
};

// What a node is: configuration, state, or neither as the content of operations and notifications.
enum class NodeUse : uint8_t { Config, State, Message };
NodeUse UseOf(const Node &node);

} // namespace zr::yang
