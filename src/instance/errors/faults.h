// SPDX-License-Identifier: Apache-2.0
// Faults: what is wrong with the data, as values that are collected and put in document order at
// the end.
#pragma once

#include <zrschema/types.h>

#include <initializer_list>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "instance/tree/element.h"

namespace zr::data {

struct Fault {
    const Element *at = nullptr; // what the path names; null for the data as a whole
    // What stands behind the path of `at`: a child that is not in the tree.
    const PlanModule *childModule = nullptr;
    std::string_view child;
    const xmlNode *source = nullptr; // for the line; that of `at` when null
    uint32_t order = 0;              // of the element in the data
    uint32_t number = 0;             // among all, for those of one element
    uint32_t tag = 0;                // a ZrErrorTag
    const char *appTag = nullptr;
    const char *badElement = nullptr;
    const char *badAttribute = nullptr;
    bool isOfEnvelope = false;            // of what carries the data: its error-type is "rpc"
    std::span<const Element *> notUnique; // what a "unique" does not take
    const char *missingChoice = nullptr;  // the name of the choice
    const char *message = nullptr;
    uint32_t line = 0; // when it has no element
};

class Faults {
public:
    // Texts are copied into the arena. At most `limit` are kept: the first in document order.
    Faults(Arena &arena, std::pmr::memory_resource *memory, uint32_t limit)
        : arena_(arena), kept_(memory), limit_(limit)
    {
    }

    // The message is what the pieces make together.
    void Add(Fault fault, std::initializer_list<std::string_view> pieces);

    size_t found() const { return found_; }
    // In document order.
    std::pmr::vector<Fault> &Sorted();

private:
    Arena &arena_;
    std::pmr::vector<Fault> kept_; // a heap, the last in document order at its front
    uint32_t limit_;
    uint32_t found_ = 0;
};

// A fault of an element.
Fault FaultAt(const Element &element, uint32_t tag);
// A fault of what an element lacks.
Fault FaultBelow(const Element &parent, const PlanNode &child, uint32_t tag);

} // namespace zr::data
