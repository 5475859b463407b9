// SPDX-License-Identifier: Apache-2.0
// Conditions and what stands in choices, as several phases ask for them.
#pragma once

#include "instance/check/run.h"

namespace zr::data {

// Evaluates a condition. What cannot be told is a fault, and given as true so that nothing else is
// said of it. `owner` is the node whose condition it is, `fault` that fault but for tag and
// message.
bool Holds(Run &run, const PlanNode &owner, const Expression &expression, Element &context,
           Fault fault);

// Calls `work` for each element: first for configuration, which does not see what is none, then for
// the rest, so that the view changes once. `work` may add elements.
template <typename Work> void ForEachView(Run &run, Work work)
{
    for (bool isConfig : {true, false}) {
        if (!isConfig && !run.tree.HasState() && run.options.kind == ZR_DATA_CONFIG)
            break;
        run.tree.ShowState(!isConfig);
        work(isConfig);
    }
    run.tree.ShowState(true);
}

// Whether a node that is not in the data could be, by its own "when" (RFC 7950, section 7.21.5): it
// is put into the data for as long as the condition is evaluated.
bool IsAllowed(Run &run, Element &parent, const PlanNode &absent);

// The first element of a node, choice or case that is there and is not to be deleted.
const Element *FirstOf(const Run &run, const Element &parent, const PlanNode &node);
bool IsPresent(const Run &run, const Element &parent, const PlanNode &node);

// The first case of a choice that something is there of; null when there is none.
const PlanNode *FindCase(const Run &run, const Element &parent, const PlanNode &choice);

} // namespace zr::data
