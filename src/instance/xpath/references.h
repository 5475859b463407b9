// SPDX-License-Identifier: Apache-2.0
// What leafrefs and instance-identifiers refer to (RFC 7950, sections 9.9 and 9.13), and entries by
// the values of their leafs, from an index: the values of all instances of a leaf below one element
// are collected once.
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

    // Whether a leafref with a target means any instance that has a value. The type is the leaf's,
    // or a member of it.
    bool Exists(Element &leaf, const Type &leafref, std::string_view value);
    // All that it means by its own value, in document order below each place that the predicates of
    // its path name.
    void Find(Element &leaf, const Type &leafref, std::pmr::vector<Element *> &out);
    // The entries of a list below a parent that have one of some values in each of some leafs, in
    // document order for each value of the first leaf.
    struct Wanted {
        const PlanNode *leaf; // null for one that is not in the schema: no entry has it
        std::span<const std::string_view> values;
    };
    void FindEntries(Element &parent, const PlanNode &list, std::span<const Wanted> wanted,
                     std::pmr::vector<Element *> &out);
    // The entries of a leaf-list below a parent that have a value.
    void FindValues(Element &parent, const PlanNode &leafList, std::string_view value,
                    std::pmr::vector<Element *> &out);
    // What the canonical form of an instance-identifier leads to; null when it is not there.
    Element *FindPath(std::string_view path);
    // The node of the schema that it names, which may be in the message that the leaf stands in.
    const PlanNode *NodeOf(std::string_view path, const PlanNode &leaf) const;

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
    // An instance with some value, and the next one in document order.
    struct Hit {
        Element *leaf;
        const Hit *next;
    };
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
    static const Hit *HitOf(const Index &index, std::string_view text)
    {
        auto found = index.find(text);
        return found == index.end() ? nullptr : found->second;
    }
    template <typename Work>
    void EachAt(Element &from, std::span<const PlanNode *const> way, Work work) const;
    template <typename Take>
    void EachInstance(Element &leaf, const Type &leafref, std::string_view value, Take take);
    template <typename Take>
    bool EachBelow(Element &place, const PlanNode &target, std::string_view value, Take take);
    void FollowStep(Element &leaf, const PathStep &step, std::span<Element *const> places,
                    std::pmr::vector<Element *> &out);
    void CollectValues(Element &leaf, const PathPredicate &predicate,
                       std::pmr::vector<std::string_view> &out) const;
    Element *FirstInstance(const Element &parent, const PlanModule *module,
                           std::string_view name) const;
    Element *FindInstance(Element &first, std::span<const Predicate> predicates);
    std::string_view TextFor(const Element &leaf, const PlanNode *second);
    void AddHits(const Index &index, std::string_view text, std::span<const Wanted> rest,
                 std::pmr::vector<Element *> &out) const;
    bool HasValues(const Element &entry, std::span<const Wanted> wanted) const;
    void Collect(Element &anchor, const PlanNode &target, const PlanNode *second, Index &index);

    const Plan &plan_;
    Tree &tree_;
    std::pmr::memory_resource *memory_;
    std::pmr::unordered_map<Key, Index, KeyHash> indexes_;
    bool isSettled_ = false;
};

// The type by which a leaf refers to instances: its own, or that of its union's members that took
// the value; null when it refers to none.
const Type *ReferenceOf(const Tree &tree, const Element &leaf);

} // namespace zr::data
