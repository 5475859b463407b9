// SPDX-License-Identifier: Apache-2.0
// The prefixes of a prepared module: those of its own file, and such as what comes from other files
// needs besides.
#pragma once

#include "yang/names/module.h"
#include "yang/xpath/rewrite.h"

namespace zr::yang {

class Prefixes final : public PrefixMap {
public:
    Prefixes(Module &module, Arena &arena, std::pmr::memory_resource *memory);

    struct Entry {
        std::string_view prefix;
        Module *module; // null for an import that cannot be had
        std::string_view name;
    };
    // Every prefix of the module, its own first, imports in the order in which they came up.
    const std::pmr::vector<Entry> &entries() const { return entries_; }
    std::string_view own() const { return entries_.front().prefix; }
    const Module &module() const { return module_; }

    // The prefix for a module; one that is not imported yet is imported from now on, under `wish`
    // if that is free.
    std::string_view Of(Module &module, std::string_view wish);

    // Says which file the next names come from.
    void SetUnit(Unit &unit) { unit_ = &unit; }
    std::string_view Written(std::string_view prefix) override;
    bool IsKnown(std::string_view prefix) override;
    std::string_view OfUnprefixedName() override;

private:
    void Add(std::string_view prefix, Module *module, std::string_view name);

    Module &module_;
    Arena &arena_;
    Unit *unit_;
    std::pmr::vector<Entry> entries_;
    std::pmr::unordered_map<std::string_view, Module *> byPrefix_;
    std::pmr::unordered_map<Module *, std::string_view> byModule_;
};

} // namespace zr::yang
