// SPDX-License-Identifier: Apache-2.0
#include "yang/names/linkage.h"

#include <algorithm>
#include <string>
#include <unordered_set>

namespace zr::yang {

Linkage::Linkage(Catalog &catalog, Reports &reports, Arena &arena,
                 std::pmr::memory_resource *memory)
    : catalog_(catalog), reports_(reports), arena_(arena), memory_(memory)
{
}

Module *Linkage::ModuleOf(Unit *unit, const Place &where)
{
    if (unit == nullptr)
        return nullptr;
    if (unit->isSubmodule) {
        reports_.Error(where, ZR_YANG_CODE_LINKAGE, {"\"", unit->name, "\" is a submodule"});
        return nullptr;
    }
    if (unit->module == nullptr) {
        auto *module = arena_.New<Module>(arena_.resource());
        module->name = unit->name;
        module->unit = unit;
        module->nameSpace = ArgumentOf(*unit->root, Keyword::Namespace);
        unit->module = module;
    }
    return unit->module;
}

// Revisions are to be in the order of their dates, the newest first (RFC 7950, section 7.1.9).
void Linkage::CheckHead(const Unit &unit)
{
    const Statement *newer = nullptr;
    for (Statement &child : SubStatements(*unit.root)) {
        if (child.keyword != Keyword::Revision)
            continue;
        if (newer != nullptr && newer->argument == child.argument)
            reports_.Error(child.place(), ZR_YANG_CODE_LINKAGE,
                           {"revision ", child.argument, " stands here twice"});
        else if (newer != nullptr && newer->argument < child.argument)
            reports_.Warning(
                child.place(), ZR_YANG_CODE_LINKAGE,
                {"revision ", child.argument, " stands behind the older ", newer->argument});
        newer = &child;
    }
}

void Linkage::CheckIncluded(const Module &module, const Unit &unit, const Statement &include)
{
    if (!unit.isSubmodule) {
        reports_.Error(include.place(), ZR_YANG_CODE_LINKAGE,
                       {"\"", unit.name, "\" is no submodule"});
        return;
    }
    std::string_view owner = ArgumentOf(*unit.root, Keyword::BelongsTo);
    if (owner != module.name)
        reports_.Error(include.place(), ZR_YANG_CODE_LINKAGE,
                       {"submodule \"", unit.name, "\" belongs to \"", owner, "\", not to \"",
                        module.name, "\""});
    if (unit.version != module.unit->version)
        reports_.Error(include.place(), ZR_YANG_CODE_LINKAGE,
                       {"module and submodule \"", unit.name, "\" are of different YANG versions"});
    bool isDirect = include.source == module.unit;
    if (module.unit->version == Version::Yang11 && !isDirect &&
        std::find(module.unit->includes.begin(), module.unit->includes.end(), &unit) ==
            module.unit->includes.end())
        reports_.Error(include.place(), ZR_YANG_CODE_LINKAGE,
                       {"the module does not include \"", unit.name, "\" itself"});
}

void Linkage::IncludeIn(Module &module, Unit &unit)
{
    for (Statement &child : SubStatements(*unit.root)) {
        if (child.keyword != Keyword::Include)
            continue;
        Unit *included =
            catalog_.Find(child.argument, ArgumentOf(child, Keyword::RevisionDate), child.place());
        if (included == nullptr)
            continue;
        if (std::find(unit.includes.begin(), unit.includes.end(), included) != unit.includes.end())
            reports_.Error(child.place(), ZR_YANG_CODE_LINKAGE,
                           {"\"", child.argument, "\" is included twice"});
        CheckIncluded(module, *included, child);
        if (!included->isSubmodule)
            continue;
        unit.includes.push_back(included);
        if (included->module != nullptr)
            continue;
        included->module = &module;
        module.units.push_back(included);
    }
}

// The submodules of submodules belong to the module too; the list grows while it is walked.
void Linkage::Include(Module &module)
{
    module.units.push_back(module.unit);
    for (size_t i = 0; i < module.units.size(); ++i)
        IncludeIn(module, *module.units[i]);
    std::pmr::unordered_set<Unit *> done(memory_);
    for (Unit *unit : module.units) {
        std::pmr::vector<Unit *> path(memory_);
        if (done.insert(unit).second)
            CheckIncludeCircle(*unit, path);
    }
}

// Submodules may not include each other in a circle, though YANG 1.1 would not need them to.
void Linkage::CheckIncludeCircle(Unit &start, std::pmr::vector<Unit *> &reached)
{
    std::pmr::unordered_set<Unit *> seen(memory_);
    reached.push_back(&start);
    for (size_t i = 0; i < reached.size(); ++i)
        for (Unit *next : reached[i]->includes) {
            if (next == &start) {
                reports_.Error(
                    start.root->place(), ZR_YANG_CODE_CIRCLE,
                    {"\"", start.name, "\" includes itself through \"", reached[i]->name, "\""});
                return;
            }
            if (seen.insert(next).second)
                reached.push_back(next);
        }
}

void Linkage::ReadImports(Module &module, Unit &unit)
{
    unit.prefixes[unit.prefix] = &module;
    for (Statement &child : SubStatements(*unit.root)) {
        if (child.keyword != Keyword::Import)
            continue;
        Import import = {&child, ArgumentOf(child, Keyword::Prefix), nullptr};
        bool isNew = unit.prefixes.try_emplace(import.prefix, nullptr).second;
        if (!isNew && !import.prefix.empty())
            reports_.Error(child.place(), ZR_YANG_CODE_DUPLICATE,
                           {"prefix \"", import.prefix, "\" is in use"});
        std::string_view revision = ArgumentOf(child, Keyword::RevisionDate);
        Unit *imported = catalog_.Find(child.argument, revision, child.place());
        import.module = ModuleOf(imported, child.place());
        if (import.module == &module) {
            reports_.Error(child.place(), ZR_YANG_CODE_CIRCLE, {"the module imports itself"});
            import.module = nullptr;
        }
        unit.prefixes[import.prefix] = import.module;
        if (imported != nullptr && !revision.empty() && unit.version == Version::Yang1 &&
            imported->version == Version::Yang11)
            reports_.Error(child.place(), ZR_YANG_CODE_LINKAGE,
                           {"YANG 1 may not import a revision of a YANG 1.1 module"});
        unit.imports.push_back(import);
    }
}

Module *Linkage::Load(std::string_view name, std::string_view revision,
                      std::pmr::vector<Module *> &orderOut)
{
    Module *root = ModuleOf(catalog_.Find(name, revision, {}), {});
    if (root == nullptr)
        return nullptr;
    std::pmr::vector<Module *> waiting({root}, memory_);
    while (!waiting.empty()) {
        Module &module = *waiting.back();
        waiting.pop_back();
        if (!module.units.empty())
            continue; // it was loaded before, and what it imports
        Include(module);
        for (Unit *unit : module.units) {
            CheckHead(*unit);
            ReadImports(module, *unit);
            for (const Import &import : unit->imports)
                if (import.module != nullptr)
                    waiting.push_back(import.module);
        }
    }
    Order(*root, orderOut);
    return root;
}

// A walk in depth that keeps its own stack: a chain of imports may be long.
void Linkage::Order(Module &root, std::pmr::vector<Module *> &orderOut)
{
    struct Visit {
        Module *module;
        size_t unit = 0, import = 0; // that comes next
    };
    enum class Colour : uint8_t { Open, Done };
    std::pmr::unordered_map<Module *, Colour> colours(memory_);
    std::pmr::vector<Visit> stack({{&root}}, memory_);
    colours[&root] = Colour::Open;
    while (!stack.empty()) {
        Visit &visit = stack.back();
        if (visit.unit == visit.module->units.size()) {
            colours[visit.module] = Colour::Done;
            orderOut.push_back(visit.module);
            stack.pop_back();
            continue;
        }
        std::pmr::vector<Import> &imports = visit.module->units[visit.unit]->imports;
        if (visit.import == imports.size()) {
            ++visit.unit;
            visit.import = 0;
            continue;
        }
        Import &import = imports[visit.import++];
        if (import.module == nullptr)
            continue;
        auto [found, isNew] = colours.try_emplace(import.module, Colour::Open);
        if (isNew) {
            stack.push_back({import.module});
        } else if (found->second == Colour::Open) {
            std::pmr::string circle(memory_);
            auto from = std::find_if(stack.begin(), stack.end(),
                                     [&](const Visit &v) { return v.module == import.module; });
            for (; from != stack.end(); ++from)
                (circle += from->module->name) += ", ";
            reports_.Error(import.statement->place(), ZR_YANG_CODE_CIRCLE,
                           {"circle of imports: ", circle, import.module->name});
            import.module = nullptr;
            visit.module->units[visit.unit]->prefixes[import.prefix] = nullptr;
        }
    }
}

} // namespace zr::yang
