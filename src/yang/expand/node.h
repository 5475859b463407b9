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

// The nodes in a tree, parents before their children: a walk as NextInWalk().
Node *NextNode(const Node &root, Node &node, bool enter = true);

} // namespace zr::yang
