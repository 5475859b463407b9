// SPDX-License-Identifier: Apache-2.0
// Schema nodes: what statements become where they are used, with groupings expanded.
#pragma once

#include "yang/names/module.h"

namespace zr::yang {

// A statement that a node has from a "refine" or from a "uses" or "augment" around it.
struct Added {
    const Statement *statement;
    bool isInherited; // from around it: a condition there is one of the node's parent
    Added *next;
};

// A record of the arena. The statement and what stands in it are shared by all nodes that a
// grouping is expanded to; what differs between them is kept here.
struct Node {
    const Statement *statement = nullptr; // of an implicit case: its child's
    Module *module = nullptr;             // whose name space it is in
    Node *parent = nullptr;               // in the schema; of what an augment adds: the target
    Node *first = nullptr, *last = nullptr, *next = nullptr; // the nodes as they are written
    Added *added = nullptr, *lastAdded = nullptr;
    Keyword keyword = Keyword::Unknown; // Module, Grouping, Augment and Unknown are no nodes, but
                                        // hold some
    bool isImplicit = false;            // nothing in the source says that it is there
    bool isPruned = false;              // an if-feature of it is decided, and false
    bool isLost = false;                // an augment without a target
    uint16_t depth = 0;

    std::string_view name() const
    {
        return statement->hasArgument && keyword != Keyword::Input && keyword != Keyword::Output
                   ? statement->argument
                   : NameOf(keyword);
    }
    bool IsData() const { return IsDataKeyword(keyword); }
    bool IsChoiceOrCase() const { return keyword == Keyword::Choice || keyword == Keyword::Case; }
};

// The nearest node above that is no choice or case; what holds the tree when there is none.
Node *DataParentOf(const Node &node);

// What a node has as a property: refined, or else written in its statement; null without one.
const Statement *PropertyOf(const Node &node, Keyword keyword);
// Whether the node has a property of that value.
bool HasProperty(const Node &node, Keyword keyword, std::string_view value);
// Calls func(statement, isInherited) with every statement of that keyword that the node has.
template <typename Func> void ForEachProperty(const Node &node, Keyword keyword, Func func)
{
    for (const Added *added = node.added; added != nullptr; added = added->next)
        if (added->statement->keyword == keyword)
            func(*added->statement, added->isInherited);
    if (node.isImplicit)
        return;
    for (const Statement &own : SubStatements(*node.statement))
        if (own.keyword == keyword)
            func(own, false);
}

// What a node is: configuration, state, or neither as the content of operations and notifications.
enum class NodeUse : uint8_t { Config, State, Message };
NodeUse UseOf(const Node &node);

// The nodes in a tree, parents before their children: a walk as NextInWalk().
Node *NextNode(const Node &root, Node &node, bool enter = true);

// The index of all schema nodes by parent, module and name.
//
// Open addressing over pointers to the nodes themselves: a node costs 16 to 32 bytes here.
class NodeIndex {
public:
    explicit NodeIndex(std::pmr::memory_resource *memory)
        : schema_{Slots(memory), 0}, data_{Slots(memory), 0}
    {
    }

    // Enters a node under its parent, and a data node inside a choice under the node around that
    // too. Returns a node that has its name there already, or null.
    Node *Insert(Node &node);

    // A child in the schema tree, where choices, cases, input and output are steps.
    Node *FindChild(const Node &parent, const Module *module, std::string_view name) const;
    // A child in the data tree, where choices and cases are looked through.
    Node *FindDataChild(const Node &parent, const Module *module, std::string_view name) const;

private:
    using Slots = std::pmr::vector<Node *>;
    struct Table {
        Slots slots;
        size_t count;
    };
    struct Key {
        const Node *parent;
        const Module *module;
        std::string_view name;
    };

    static Key KeyOf(const Node &node, bool isData);
    static Node **Place(Slots &slots, const Key &key, bool isData);
    static Node *Find(const Table &table, const Key &key, bool isData);
    static Node *InsertInto(Table &table, Node &node, bool isData);

    Table schema_; // a case may have the name of a data node that stands beside its choice
    Table data_;   // data nodes inside choices, by the node around
};

} // namespace zr::yang
