// What leafrefs point to (RFC 7950, section 9.9), from an index: the values of all instances of a
// leaf below one element are collected once; and instance-identifiers, step by step.
#pragma once

#include <memory_resource>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "instance/tree/element.h"

namespace zr::data {

class References {
public:
    References(const Plan &plan, Tree &tree, std::pmr::memory_resource *memory)
        : plan_(plan), tree_(tree), memory_(memory), indexes_(memory)
    {
    }

    // The instances that a leafref with a target may mean and that have its value; null when there
    // are none. They come in document order.
    struct Hit {
        Element *leaf;
        const Hit *next;
    };
    const Hit *Find(Element &leaf, const Type &leafref);
    // What the canonical form of an instance-identifier leads to (section 9.13); null when it is
    // not there.
    Element *FindPath(std::string_view path);

    // Forgets what was collected: the tree has changed.
    void Clear() { indexes_.clear(); }

    // One condition of a step of a path: [m:key='value'], [.='value'] or [3].
    struct Predicate {
        std::string_view name; // "" for a position
        std::string_view value;
    };

private:
    using Index = std::pmr::unordered_map<std::string_view, Hit *>;
    struct Key {
        const Element *anchor;
        const PlanNode *target;
        bool operator==(const Key &) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key &key) const
        {
            return std::hash<const void *>()(key.anchor) * 31 +
                   std::hash<const void *>()(key.target);
        }
    };
    const Index &IndexOf(Element &anchor, const PlanNode &target);
    bool Fits(const Element &element, std::span<const Predicate> predicates,
              uint32_t position) const;
    void Collect(Element &anchor, const PlanNode &target, Index &index);

    const Plan &plan_;
    Tree &tree_;
    std::pmr::memory_resource *memory_;
    std::pmr::unordered_map<Key, Index, KeyHash> indexes_;
};

} // namespace zr::data
