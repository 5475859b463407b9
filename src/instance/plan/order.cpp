// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/order.h"

#include <algorithm>

#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

// Conditions that name each other in a circle, or seem to because names are compared alone, end
// here.
constexpr uint32_t kMostRanks = 4;

// What may come into use, or holds what may.
bool Fills(const PlanNode &node)
{
    return !node.defaults.empty() || node.IsChoiceOrCase() ||
           (node.kind == ZR_NODE_CONTAINER && !node.Is(PlanNode::kPresence));
}

} // namespace

void Orderer::Add(PlanNode &top)
{
    tops_.push_back(&top);
    Collect(top);
}

void Orderer::Collect(PlanNode &parent)
{
    for (PlanNode *child : parent.children) {
        if (child->when != nullptr)
            above_.push_back(child->when);
        if (!above_.empty() && Fills(*child)) {
            places_.push_back({child, conditions_.size(), above_.size()});
            conditions_.insert(conditions_.end(), above_.begin(), above_.end());
            byName_.emplace(child->name, child);
            child->rank = 1;
        }
        Collect(*child);
        if (child->when != nullptr)
            above_.pop_back();
    }
}

uint32_t Orderer::RankOf(const Place &place) const
{
    uint32_t rank = 0;
    for (size_t i = 0; i < place.count; ++i)
        for (XPathTokens tokens(conditions_[place.first + i]->source);
             tokens.at().kind != XPathKind::End && tokens.at().kind != XPathKind::Bad;
             tokens.Advance()) {
            if (tokens.at().kind != XPathKind::Name)
                continue;
            auto [at, end] = byName_.equal_range(SplitName(tokens.at().text).name);
            for (; at != end; ++at)
                if (at->second != place.node)
                    rank = std::max(rank, at->second->rank);
        }
    // What it stands in comes into use no later.
    return std::max(std::min(rank + 1, kMostRanks), place.node->schemaParent->rank);
}

// Each of the parent's ranks is the last one that anything directly in it has.
void Orderer::SetLasts(PlanNode &parent)
{
    for (PlanNode *child : parent.children) {
        SetLasts(*child);
        uint32_t rank = child->IsChoiceOrCase() ? child->lastRank : child->rank;
        parent.lastRank = std::max(parent.lastRank, rank);
    }
    plan_.lastRank = std::max(plan_.lastRank, parent.lastRank);
}

void Orderer::Run()
{
    for (bool isChanged = true; isChanged;) {
        isChanged = false;
        for (const Place &place : places_) {
            uint32_t rank = RankOf(place);
            isChanged |= rank > place.node->rank;
            place.node->rank = std::max(place.node->rank, rank);
        }
    }
    for (PlanNode *top : tops_)
        SetLasts(*top);
}

} // namespace zr::data
