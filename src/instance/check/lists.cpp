// SPDX-License-Identifier: Apache-2.0
// Lists and leaf-lists: keys, equal entries, "unique" and "max-elements" (RFC 7950, sections 7.7
// and 7.8). "min-elements" is asked for where other things that must be there are.
#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>

#include "instance/check/run.h"

namespace zr::data {

namespace {

class ListChecker {
public:
    explicit ListChecker(Run &run) : run_(run), joined_(run.memory), known_(run.memory) {}

    void Check(const Element &first)
    {
        const PlanNode &plan = *first.plan;
        if (plan.kind == ZR_NODE_LEAF_LIST) {
            // State may hold a value twice (RFC 7950, section 7.7).
            if (plan.Is(PlanNode::kConfig))
                CheckValues(first);
        } else if (!plan.keys.empty()) {
            CheckKeys(first);
        }
        if (run_.IsEdit()) // what it does not say is not known
            return;
        for (std::span<UniquePath> unique : plan.uniques)
            CheckUnique(first, unique);
        if (plan.maxElements != 0)
            CheckMaximum(first);
    }

private:
    void Start(const Element &first)
    {
        known_.clear();
        if (first.nextSame != nullptr)
            known_.reserve(64);
    }
    void CheckValues(const Element &first)
    {
        Start(first);
        for (const Element *at = &first; at != nullptr; at = at->nextSame)
            if (!known_.try_emplace(at->value, at).second)
                run_.faults.Add(FaultAt(*at, ZR_ERROR_TAG_BAD_ELEMENT),
                                {"the value \"", at->value, "\" stands here a second time"});
    }
    void CheckKeys(const Element &first)
    {
        Start(first);
        for (const Element *at = &first; at != nullptr; at = at->nextSame) {
            if (HasKeys(*at) && !known_.try_emplace(Join(*at), at).second)
                run_.faults.Add(FaultAt(*at, ZR_ERROR_TAG_BAD_ELEMENT),
                                {"an entry with these keys stands here before"});
        }
    }
    bool HasKeys(const Element &entry)
    {
        bool isWhole = true;
        for (const PlanNode *key : entry.plan->keys) {
            const Element *leaf = run_.tree.First(entry, *key);
            if (leaf == nullptr)
                run_.faults.Add(FaultBelow(entry, *key, ZR_ERROR_TAG_MISSING_ELEMENT),
                                {"key \"", key->name, "\" is missing"});
            isWhole &= leaf != nullptr && !leaf->isFaulty;
        }
        return isWhole;
    }
    std::string_view Join(const Element &entry)
    {
        std::span<const PlanNode *> keys = entry.plan->keys;
        if (keys.size() == 1)
            return run_.tree.First(entry, *keys[0])->value;
        joined_.clear();
        for (const PlanNode *key : keys)
            AppendPart(run_.tree.First(entry, *key)->value);
        return run_.arena.Copy(joined_);
    }
    // The length before each part keeps "a" "bc" and "ab" "c" apart.
    void AppendPart(std::string_view part)
    {
        std::array<char, 24> digits;
        joined_.append(
            digits.data(),
            std::to_chars(digits.data(), digits.data() + digits.size(), part.size()).ptr);
        (joined_ += ':') += part;
    }
    // Entries that lack one of the leafs are left out (RFC 7950, section 7.8.3).
    void CheckUnique(const Element &first, std::span<UniquePath> unique)
    {
        Start(first);
        for (const Element *entry = &first; entry != nullptr; entry = entry->nextSame) {
            joined_.clear();
            bool isWhole = std::all_of(unique.begin(), unique.end(), [&](const UniquePath &path) {
                const Element *leaf = Follow(*entry, path);
                if (leaf != nullptr)
                    AppendPart(leaf->value);
                return leaf != nullptr;
            });
            if (!isWhole)
                continue;
            auto [known, isNew] = known_.try_emplace(run_.arena.Copy(joined_), entry);
            if (isNew)
                continue;
            Fault fault = FaultAt(*entry, ZR_ERROR_TAG_OPERATION_FAILED);
            fault.appTag = "data-not-unique";
            fault.notUnique = LeafsOf(*known->second, *entry, unique);
            run_.faults.Add(fault, {"another entry has the same ", Names(unique)});
        }
    }
    const Element *Follow(const Element &entry, const UniquePath &path) const
    {
        const Element *at = &entry;
        for (const PlanNode *step : path)
            at = at == nullptr ? nullptr : run_.tree.First(*at, *step);
        return at;
    }
    std::span<const Element *> LeafsOf(const Element &one, const Element &other,
                                       std::span<UniquePath> unique)
    {
        auto *leafs = run_.arena.NewArray<const Element *>(2 * unique.size());
        for (size_t i = 0; i < unique.size(); ++i) {
            leafs[i] = Follow(one, unique[i]);
            leafs[unique.size() + i] = Follow(other, unique[i]);
        }
        return {leafs, 2 * unique.size()};
    }
    std::string_view Names(std::span<UniquePath> unique)
    {
        joined_.clear();
        for (const UniquePath &path : unique)
            (joined_ += joined_.empty() ? "\"" : "\", \"") += path.back()->name;
        return joined_ += '"';
    }
    void CheckMaximum(const Element &first)
    {
        uint32_t count = 0;
        for (const Element *at = &first; at != nullptr; at = at->nextSame)
            if (++count == first.plan->maxElements + 1) {
                Fault fault = FaultBelow(*at->parent, *at->plan, ZR_ERROR_TAG_OPERATION_FAILED);
                fault.order = at->order;
                fault.source = at->source;
                fault.appTag = "too-many-elements";
                run_.faults.Add(fault, {"\"", at->plan->name, "\" has too many entries"});
            }
    }

    Run &run_;
    std::pmr::string joined_;
    std::pmr::unordered_map<std::string_view, const Element *> known_;
};

} // namespace

void CheckLists(Run &run)
{
    ListChecker checker(run);
    for (const Element *element : run.tree.elements)
        if (element->plan->IsRepeated() && element->lastSame != nullptr && !element->isContext)
            checker.Check(*element);
}

} // namespace zr::data
