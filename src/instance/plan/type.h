// SPDX-License-Identifier: Apache-2.0
// Types as data needs them: what a type's whole chain of typedefs asks of a value, compiled from
// the public queries (RFC 7950, section 9).
#pragma once

#include <libxml/xmlregexp.h>
#include <zrschema/zrschema.h>

#include <atomic>
#include <memory_resource>
#include <span>
#include <string_view>
#include <vector>

namespace zr::data {

struct PlanModule;
struct PlanNode;

// One segment of a range or length: signed numbers where the base type is signed or decimal64.
struct Interval {
    uint64_t start, end;
};

// What the schema says of a value that a constraint refuses; null where it says nothing.
struct Refusal {
    const char *message;
    const char *appTag;
};

// The range or length of one link of a chain of typedefs: the value must be in one interval.
struct Restriction {
    std::span<Interval> intervals;
    Refusal refusal;
};

// A pattern is compiled when the first value meets it; who is second throws its own away.
struct Pattern {
    std::string_view text; // NUL-terminated
    mutable std::atomic<xmlRegexp *> compiled{nullptr};
};

struct PatternUse {
    const Pattern *pattern;
    bool inverted;
    Refusal refusal;
};

// An enum with its value, or a bit with its position.
struct NamedValue {
    std::string_view name;
    int64_t value;
    bool isEnabled; // the features that it depends on are on
};

struct Identity {
    const ZrsIdentity *source;
    const PlanModule *module;
    std::string_view name;
    std::string_view qualified;            // MODULE:NAME
    std::span<const Identity *> ancestors; // what it is derived from, over any number of steps
};

// A predicate of a leafref's path, [leaf = current()/../x/y]: with the values of what stands so
// many levels above the leafref, and from there down these nodes.
struct PathPredicate {
    const PlanNode *leaf; // of the list
    uint32_t upward;
    std::span<const PlanNode *> downward;
};

// A step of a leafref's path that has predicates.
struct PathStep {
    const PlanNode *list;
    std::span<PathPredicate> predicates;
};

struct Type {
    const ZrtRealType *source = nullptr; // as it stands at the node or in the union
    uint32_t base = ZRT_TYPE_NONE;       // a ZrtBuiltInType at the end of the chain
    uint32_t fractionDigits = 0;
    std::span<Restriction> restrictions; // of each link of the chain that restricts
    std::span<PatternUse> patterns;
    std::span<NamedValue> names;
    std::span<const Identity *> identityBases;
    // Of a union: those of a union among them stand in its place.
    std::span<const Type *> members;
    // Of a leafref: what it points to, null when nothing is there; how many levels its path goes up
    // before it goes down, or kFromRoot.
    static constexpr uint32_t kFromRoot = ~0u;
    const PlanNode *target = nullptr;
    uint32_t upward = 0;
    std::span<PathStep> steps; // that have predicates, from the highest to the lowest
    // Of a leafref or instance-identifier, or of any member of a union.
    bool requiresInstance = false;

    // Whether its values refer to instances.
    bool IsReference() const
    {
        return base == ZRT_TYPE_LEAFREF || base == ZRT_TYPE_INSTANCE_IDENTIFIER;
    }
    // Whether any member of the union does so.
    bool hasReferences = false;
};

} // namespace zr::data
