// SPDX-License-Identifier: Apache-2.0
// Linkage: from files to modules, with the submodules that they include and what they import.
#pragma once

#include "yang/names/catalog.h"

namespace zr::yang {

class Linkage {
public:
    Linkage(Catalog &catalog, Reports &reports, Arena &arena, std::pmr::memory_resource *memory);

    // Loads a module with all that it imports; null when it is not there. `orderOut` receives them,
    // imported modules before those that import them.
    Module *Load(std::string_view name, std::string_view revision,
                 std::pmr::vector<Module *> &orderOut);

private:
    Module *ModuleOf(Unit *unit, const Place &where);
    void Include(Module &module);
    void IncludeIn(Module &module, Unit &unit);
    void CheckIncluded(const Module &module, const Unit &unit, const Statement &include);
    void CheckIncludeCircle(Unit &unit, std::pmr::vector<Unit *> &path);
    void ReadImports(Module &module, Unit &unit);
    void CheckHead(const Unit &unit);
    void Order(Module &root, std::pmr::vector<Module *> &orderOut);

    Catalog &catalog_;
    Reports &reports_;
    Arena &arena_;
    std::pmr::memory_resource *memory_;
};

} // namespace zr::yang
