// The index of all schema nodes by parent, module and name.
#pragma once

#include "yang/expand/node.h"

namespace zr::yang {

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
