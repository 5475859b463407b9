// What leafrefs point to (RFC 7950, section 9.9), and entries by the values of their leafs, from an
// index: the values of all instances of a leaf below one element are collected once. And
// instance-identifiers, step by step.
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
    // The entries of a list below a parent that have one of some values in each of some leafs, in
    // document order for each value of the first leaf.
    struct Wanted {
        const PlanNode *leaf; // null for one that is not in the schema: no entry has it
        std::span<const std::string_view> values;
    };
    void FindEntries(Element &parent, const PlanNode &list, std::span<const Wanted> wanted,
                     std::pmr::vector<Element *> &out);
    // The entries of a leaf-list below a parent with a value; null when there are none.
    const Hit *FindValue(Element &parent, const PlanNode &leafList, std::string_view value);
    // What the canonical form of an instance-identifier leads to (section 9.13); null when it is
    // not there.
    Element *FindPath(std::string_view path);

    // From here on nothing is added to the tree that a leafref may mean. Before, what may come into
    // use by default is collected each time anew, and keys once.
    void Settle()
    {
        indexes_.clear();
        isSettled_ = true;
    }

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
        const PlanNode *second; // another leaf of the same entry; null for one leaf alone
        bool operator==(const Key &) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key &key) const
        {
            std::hash<const void *> hash;
            return (hash(key.anchor) * 31 + hash(key.target)) * 31 + hash(key.second);
        }
    };
    const Index &IndexOf(Element &anchor, const PlanNode &target, const PlanNode *second = nullptr);
    std::string_view TextFor(const Element &leaf, const PlanNode *second);
    void AddHits(const Index &index, std::string_view text, std::span<const Wanted> rest,
                 std::pmr::vector<Element *> &out) const;
    bool HasValues(const Element &entry, std::span<const Wanted> wanted) const;
    bool Fits(const Element &element, std::span<const Predicate> predicates,
              uint32_t position) const;
    void Collect(Element &anchor, const PlanNode &target, const PlanNode *second, Index &index);

    const Plan &plan_;
    Tree &tree_;
    std::pmr::memory_resource *memory_;
    std::pmr::unordered_map<Key, Index, KeyHash> indexes_;
    bool isSettled_ = false;
};

} // namespace zr::data
