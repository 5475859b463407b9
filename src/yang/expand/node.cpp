// SPDX-License-Identifier: Apache-2.0
#include "yang/expand/node.h"

namespace zr::yang {

namespace {

constexpr size_t kFirstSize = 256; // sizes are powers of two

} // namespace

Node *DataParentOf(const Node &node)
{
    Node *at = node.parent;
    while (at != nullptr && at->IsChoiceOrCase())
        at = at->parent;
    return at;
}

const Statement *PropertyOf(const Node &node, Keyword keyword)
{
    const Statement *refined = nullptr;
    for (const Added *added = node.added; added != nullptr; added = added->next)
        if (!added->isInherited && added->statement->keyword == keyword)
            refined = added->statement; // the outermost refine comes last
    if (refined != nullptr || node.isImplicit)
        return refined;
    return SubStatement(*node.statement, keyword);
}

bool HasProperty(const Node &node, Keyword keyword, std::string_view value)
{
    const Statement *property = PropertyOf(node, keyword);
    return property != nullptr && property->argument == value;
}

// A grouping that nothing uses has not been told yet what it will be part of; nor has the content
// of an extension instance.
NodeUse UseOf(const Node &node)
{
    for (const Node *at = &node; at != nullptr; at = at->parent) {
        switch (at->keyword) {
        case Keyword::Rpc:
        case Keyword::Action:
        case Keyword::Notification:
        case Keyword::Grouping:
        case Keyword::Unknown:
            return NodeUse::Message;
        case Keyword::Module:
            return NodeUse::Config;
        default:
            break;
        }
        if (HasProperty(*at, Keyword::Config, "false"))
            return NodeUse::State;
    }
    return NodeUse::Config;
}

// What an augment adds stands in the augment and has the target for its parent, so that the way
// back up is found through the depth of the nodes.
Node *NextNode(const Node &root, Node &node, bool enter)
{
    if (enter && node.first != nullptr)
        return node.first;
    Node *at = &node;
    while (at != &root && at->next == nullptr) {
        Node *up = at->parent;
        if (up == nullptr || up->depth < root.depth || at->depth <= root.depth + 1)
            return nullptr;
        at = up;
    }
    return at != &root ? at->next : nullptr;
}

NodeIndex::Key NodeIndex::KeyOf(const Node &node, bool isData)
{
    return {isData ? DataParentOf(node) : node.parent, node.module, node.name()};
}

// The slot of the node with that key, or the empty one where it would stand.
Node **NodeIndex::Place(Slots &slots, const Key &key, bool isData)
{
    size_t hash = std::hash<std::string_view>()(key.name) ^
                  (std::hash<const void *>()(key.parent) >> 4) * 0x9E3779B1u;
    for (size_t at = hash;; ++at) {
        Node *&slot = slots[at & (slots.size() - 1)];
        if (slot == nullptr)
            return &slot;
        Key there = KeyOf(*slot, isData);
        if (there.parent == key.parent && there.module == key.module && there.name == key.name)
            return &slot;
    }
}

Node *NodeIndex::Find(const Table &table, const Key &key, bool isData)
{
    return table.slots.empty() ? nullptr : *Place(const_cast<Slots &>(table.slots), key, isData);
}

Node *NodeIndex::InsertInto(Table &table, Node &node, bool isData)
{
    if (table.count * 4 >= table.slots.size() * 3) {
        Slots larger(table.slots.empty() ? kFirstSize : table.slots.size() * 2, nullptr,
                     table.slots.get_allocator());
        for (Node *old : table.slots)
            if (old != nullptr)
                *Place(larger, KeyOf(*old, isData), isData) = old;
        table.slots.swap(larger);
    }
    Node **place = Place(table.slots, KeyOf(node, isData), isData);
    if (*place != nullptr)
        return *place;
    *place = &node;
    ++table.count;
    return nullptr;
}

Node *NodeIndex::Insert(Node &node)
{
    Node *other = InsertInto(schema_, node, false);
    if (other != nullptr || !node.IsData())
        return other;
    const Node &around = *DataParentOf(node);
    if (&around == node.parent)
        return Find(data_, KeyOf(node, true), true);
    Node *beside = FindChild(around, node.module, node.name());
    other = InsertInto(data_, node, true);
    return beside != nullptr && beside->IsData() ? beside : other;
}

Node *NodeIndex::FindChild(const Node &parent, const Module *module, std::string_view name) const
{
    return Find(schema_, {&parent, module, name}, false);
}

Node *NodeIndex::FindDataChild(const Node &parent, const Module *module,
                               std::string_view name) const
{
    Node *child = FindChild(parent, module, name);
    if (child != nullptr && !child->IsChoiceOrCase())
        return child;
    return Find(data_, {&parent, module, name}, true);
}

} // namespace zr::yang
