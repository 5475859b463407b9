// SPDX-License-Identifier: Apache-2.0
// Expressions in the form in which a prepared module holds them: with that module's prefixes, and
// for another context node where they were inherited from a statement around their nodes.
#pragma once

#include <memory_resource>
#include <string>
#include <string_view>

namespace zr::yang {

// How the names of an expression are written in the prepared module.
class PrefixMap {
public:
    virtual ~PrefixMap() = default;
    // The prefix for what has `prefix` in the source, "" for a name without one.
    virtual std::string_view Written(std::string_view prefix) = 0;
    // Whether the source knows the prefix.
    virtual bool IsKnown(std::string_view prefix) = 0;
    // The prefix that a name without one of the source needs to mean the same in the prepared
    // module; "" when it needs none.
    virtual std::string_view OfUnprefixedName() = 0;
};

// The condition of a "must" or "when". `climbs`: it is evaluated at a child of the node that it was
// written for, so that every path that begins at the context node goes up one step first.
void RewriteCondition(std::string_view condition, bool climbs, PrefixMap &prefixes,
                      std::pmr::string &out);

// The path of a leafref, with a prefix on each step outside of brackets: `own` for those that have
// none.
void RewriteLeafrefPath(std::string_view path, std::string_view own, PrefixMap &prefixes,
                        std::pmr::string &out);

} // namespace zr::yang
