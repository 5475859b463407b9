// SPDX-License-Identifier: Apache-2.0
// One check: what its phases work on, and the phases in their order.
#pragma once

#include "instance/errors/faults.h"
#include "instance/xpath/evaluator.h"
#include "instance/xpath/references.h"

namespace zr::data {

// An entry of an edit that is put before or after another one: the keys of that, in the order of
// the list's, or its value.
struct EditAnchor {
    const Element *entry;
    std::span<const std::string_view> values;
    const char *attribute; // that names it
};

struct Run {
    static constexpr uint32_t kErrorLimit = 100;
    static constexpr uint64_t kStepLimit = 10'000'000;

    Run(const Plan &aPlan, const ZrDataOptions &someOptions, std::pmr::memory_resource *aMemory)
        : plan(aPlan), options(someOptions), memory(aMemory), arena(memory),
          faults(arena, memory, Limit()), warnings(arena, memory, Limit()),
          tree(arena, aPlan, memory), anchors(memory), references(aPlan, tree, memory),
          evaluator(aPlan, tree, references,
                    someOptions.stepLimit != 0 ? someOptions.stepLimit : kStepLimit, memory)
    {
    }

    bool IsEdit() const { return options.kind == ZR_DATA_EDIT; }
    // Whether data of this kind holds instances of a node.
    bool Holds(const PlanNode &node) const
    {
        return (options.kind != ZR_DATA_CONFIG && !IsEdit()) || node.Is(PlanNode::kConfig);
    }

    const Plan &plan;
    const ZrDataOptions &options;
    std::pmr::memory_resource *memory;
    Arena arena;
    Faults faults, warnings;
    Tree tree;
    std::pmr::vector<EditAnchor> anchors;
    References references;
    Evaluator evaluator;

private:
    uint32_t Limit() const { return options.errorLimit != 0 ? options.errorLimit : kErrorLimit; }
};

// Readers of the document, one a kind: they make the instance tree.
void ReadData(Run &run, const xmlNode &root);
void ReadEdit(Run &run, const xmlNode &root);
void ReadRequest(Run &run, const xmlNode &root);
void ReadReply(Run &run, const xmlNode &root);
void ReadNotification(Run &run, const xmlNode &root);

// Reads the datastore that a message or an edit is held against into the tree. What is wrong with
// it is not theirs: it is one of the warnings.
void ReadDatastore(Run &run, Faults &warnings);

// What follows, on all elements.
void AddDefaults(Run &run);
void SettleUnions(Run &run);
void CheckWhens(Run &run);
void CheckLists(Run &run);
void CheckMandatory(Run &run);
void CheckReferences(Run &run);
void CheckMusts(Run &run);

// Reads the document and runs the phases that its kind has.
void CheckDocument(Run &run, const xmlNode &root);

bool IsKnownKind(uint32_t kind);

} // namespace zr::data
