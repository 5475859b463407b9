// SPDX-License-Identifier: Apache-2.0
// Compiling types (RFC 7950, section 9) from the public queries.
#pragma once

#include <memory_resource>
#include <unordered_map>
#include <vector>

#include "instance/plan/plan.h"

namespace zr::data {

class TypeMaker {
public:
    explicit TypeMaker(Plan &plan) : plan_(plan), links_(&plan.memory) {}

    // The type of a leaf or leaf-list; every node of the plan must be there, because leafrefs are
    // followed.
    const Type *Make(const PlanNode &leaf, const ZrtRealType *source);

private:
    struct Segment {
        ZrTypeBound start, end;
    };
    // What one link of a chain of typedefs says itself; shared by all types that go through it.
    struct Link {
        std::span<Segment> segments;
        Refusal refusal; // of values that are in no segment
        std::span<PatternUse> patterns;
        std::span<NamedValue> names;
        std::span<const Identity *> bases;
    };
    const Link &LinkOf(const ZrtRealType *source);
    void ReadLink(const ZrtRealType *source, Link &link);
    const Pattern *PatternOf(std::string_view text);
    void Restrict(const Type &type, const Link &link, std::pmr::vector<Restriction> &restrictions);
    void NarrowNames(Type &type, std::span<NamedValue> ofLink);

    Plan &plan_;
    std::pmr::unordered_map<const ZrtRealType *, Link> links_;
};

} // namespace zr::data
