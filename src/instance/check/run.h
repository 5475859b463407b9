// One check: what its phases work on, and the phases in their order.
#pragma once

#include "instance/errors/faults.h"
#include "instance/xpath/evaluator.h"
#include "instance/xpath/references.h"

namespace zr::data {

struct Run {
    static constexpr uint32_t kErrorLimit = 100;
    static constexpr uint64_t kStepLimit = 10'000'000;

    Run(const Plan &aPlan, const ZrDataOptions &someOptions, std::pmr::memory_resource *aMemory)
        : plan(aPlan), options(someOptions), memory(aMemory), arena(memory),
          faults(arena, memory, Limit()), warnings(arena, memory, Limit()),
          tree(arena, aPlan, memory), references(aPlan, tree, memory),
          evaluator(aPlan, tree, references,
                    someOptions.stepLimit != 0 ? someOptions.stepLimit : kStepLimit, memory)
    {
    }

    // Whether data of this kind holds instances of a node.
    bool Holds(const PlanNode &node) const
    {
        return options.kind != ZR_DATA_CONFIG || node.Is(PlanNode::kConfig);
    }

    const Plan &plan;
    const ZrDataOptions &options;
    std::pmr::memory_resource *memory;
    Arena arena;
    Faults faults, warnings;
    Tree tree;
    References references;
    Evaluator evaluator;

private:
    uint32_t Limit() const { return options.errorLimit != 0 ? options.errorLimit : kErrorLimit; }
};

// The phases.
void MatchElements(Run &run, const xmlNode &wrapper);
void AddDefaults(Run &run);
void CheckWhens(Run &run);
void CheckLists(Run &run);
void CheckMandatory(Run &run);
void CheckReferences(Run &run);
void CheckMusts(Run &run);

// Runs all of them.
void CheckData(Run &run, const xmlNode &wrapper);

} // namespace zr::data
