// SPDX-License-Identifier: Apache-2.0
// The order in which defaults come into use. A condition sees the defaults of what it looks at
// (RFC 7950, section 6.4.1), so that a default with a condition waits for those that the condition
// names, and these for theirs.
#pragma once

#include "instance/plan/plan.h"

namespace zr::data {

// Gives nodes their ranks: what has no condition over it is of rank 0 and comes first.
class Orderer {
public:
    explicit Orderer(Plan &plan)
        : plan_(plan), tops_(&plan.memory), above_(&plan.memory), conditions_(&plan.memory),
          places_(&plan.memory), byName_(&plan.memory)
    {
    }

    // What is below is ordered together with what is below all others.
    void Add(PlanNode &top);
    void Run();

private:
    // Where something may come into use, and all conditions that decide about it.
    struct Place {
        PlanNode *node;
        size_t first, count; // among conditions_
    };
    void Collect(PlanNode &parent);
    uint32_t RankOf(const Place &place) const;
    void SetLasts(PlanNode &parent);

    Plan &plan_;
    std::pmr::vector<PlanNode *> tops_;
    std::pmr::vector<const Expression *> above_, conditions_;
    std::pmr::vector<Place> places_;
    std::pmr::unordered_multimap<std::string_view, const PlanNode *> byName_;
};

} // namespace zr::data
