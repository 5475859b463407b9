// SPDX-License-Identifier: Apache-2.0
// Values: whether a type takes a text, and the canonical form of what it takes (RFC 7950, sections
// 9.1 to 9.13).
#pragma once

#include <libxml/tree.h>

#include <memory_resource>
#include <string>
#include <string_view>

#include "instance/plan/plan.h"

namespace zr::data {

// Where a value stands, which decides what its prefixes mean.
struct ValueScope {
    const Plan &plan;
    const PlanNode &leaf;
    // The element whose namespaces are in scope; null for a default of the schema, whose prefixes
    // are names of modules, and which may be written in other ways (RFC 7950, section 9.2.1).
    const xmlNode *element;
    bool isQuoted = false; // it stands in a string of JSON, whatever its type
};

struct ValueResult {
    const char *fault = nullptr; // null: the type takes the value
    const Type *type = nullptr;  // the member of a union, or what a leafref points to
    uint32_t member = 0;         // the number of the member
    // What the schema says of the fault, when a range, length or pattern refuses the value; else
    // null.
    const Refusal *refusal = nullptr;
};

// Reads a text as a value; the canonical form goes into `canonical`, which is undefined after a
// fault.
ValueResult ReadValue(const ValueScope &scope, const Type &type, std::string_view text,
                      std::pmr::string &canonical);
// The same for a union, whose members are tried from the given one on.
ValueResult ReadMember(const ValueScope &scope, const Type &type, uint32_t first,
                       std::string_view text, std::pmr::string &canonical);

// The module that a prefix means; null when there is none.
const PlanModule *FindPrefix(const ValueScope &scope, std::string_view prefix);
// Whether a canonical value is one that the schema gives a leaf by default.
bool IsDefaultValue(const Plan &plan, const PlanNode &leaf, std::string_view canonical);

// The identity that a text means; null when there is none.
const Identity *FindIdentity(const ValueScope &scope, std::string_view text);

// Whether a pattern matches the whole of a text. The text is NUL-terminated.
bool Matches(const Pattern &pattern, const char *text);

// Patterns of expressions, each compiled once.
class PatternCache {
public:
    PatternCache(Arena &arena, std::pmr::memory_resource *memory) : arena_(arena), patterns_(memory)
    {
    }
    ~PatternCache();
    PatternCache(const PatternCache &) = delete;
    PatternCache &operator=(const PatternCache &) = delete;

    const Pattern &Get(std::string_view text);

private:
    Arena &arena_;
    std::pmr::unordered_map<std::string_view, Pattern *> patterns_;
};

} // namespace zr::data
