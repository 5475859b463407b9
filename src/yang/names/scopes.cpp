// SPDX-License-Identifier: Apache-2.0
#include "yang/names/scopes.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string>
#include <unordered_set>

namespace zr::yang {

namespace {

// In the order of DefinitionKind; those of scopes may stand in other statements.
struct KindRow {
    Keyword keyword;
    bool hasScopes;
};
constexpr KindRow kKinds[] = {
    {Keyword::Typedef, true},   {Keyword::Grouping, true},   {Keyword::Feature, false},
    {Keyword::Identity, false}, {Keyword::Extension, false},
};

const KindRow &RowOf(DefinitionKind kind)
{
    return kKinds[static_cast<size_t>(kind)];
}

using Names = std::pmr::unordered_set<std::string_view>;

// The name of a statement as a part of another name; the target of an augment is none.
std::string_view NameIn(const Statement &scope)
{
    return IsIdentifier(scope.argument) ? scope.argument : scope.word;
}

std::string_view FindFreeName(const Definition &definition, const Names &taken, Arena &arena)
{
    std::pmr::string name(definition.name(), arena.resource());
    for (const Statement *scope = definition.statement->parent; scope->parent != nullptr;
         scope = scope->parent) {
        name.insert(0, 1, '-').insert(0, NameIn(*scope));
        if (!taken.contains(name))
            return arena.Copy(name);
    }
    size_t length = name.size();
    for (uint32_t number = 2;; ++number) {
        char digits[16];
        auto [end, error] = std::to_chars(digits, digits + sizeof(digits), number);
        name.resize(length);
        (name += '-').append(digits, end);
        if (!taken.contains(name))
            return arena.Copy(name);
    }
}

} // namespace

std::string_view NameOf(DefinitionKind kind)
{
    return NameOf(RowOf(kind).keyword);
}

Status StatusOf(const Statement &statement)
{
    std::string_view word = ArgumentOf(statement, Keyword::Status);
    return word == "obsolete"     ? Status::Obsolete
           : word == "deprecated" ? Status::Deprecated
                                  : Status::Current;
}

void Scopes::Enter(Module &module, Statement &statement, DefinitionKind kind)
{
    Statement *scope = statement.parent;
    bool isTop = scope == nullptr || scope->parent == nullptr;
    auto *definition = arena_.New<Definition>();
    definition->statement = &statement;
    definition->module = &module;
    definition->kind = kind;
    definition->status = StatusOf(statement);
    definition->writtenName = statement.argument;
    statement.meaning = definition;
    module.ordered.push_back(definition);
    if (kind == DefinitionKind::Typedef && FindBuiltin(statement.argument) != Builtin::None)
        reports_.Error(statement.place(), ZR_YANG_CODE_DUPLICATE,
                       {"\"", statement.argument, "\" is the name of a built-in type"});
    DefinitionKey key = {isTop ? nullptr : scope, kind, statement.argument};
    if (!module.definitions.try_emplace(key, definition).second)
        reports_.Error(statement.place(), ZR_YANG_CODE_DUPLICATE,
                       {NameOf(kind), " \"", statement.argument, "\" is defined twice"});
}

// What stands in an inner scope may not have the name of what stands around it.
void Scopes::CheckHidden(Module &module, const Definition &definition)
{
    const Statement &statement = *definition.statement;
    const Statement *scope = statement.parent;
    if (scope == nullptr || scope->parent == nullptr)
        return;
    for (scope = scope->parent; scope != nullptr; scope = scope->parent) {
        const Statement *key = scope->parent != nullptr ? scope : nullptr;
        if (!scope->hasDefinitions && key != nullptr)
            continue;
        auto found = module.definitions.find({key, definition.kind, statement.argument});
        if (found == module.definitions.end())
            continue;
        reports_.Error(
            statement.place(), ZR_YANG_CODE_DUPLICATE,
            {NameOf(definition.kind), " \"", statement.argument, "\" is defined around it too"});
        return;
    }
}

void Scopes::Collect(Module &module)
{
    for (Unit *unit : module.units)
        for (Statement *at = unit->root; at != nullptr; at = NextInWalk(*unit->root, *at)) {
            const auto *row =
                std::find_if(std::begin(kKinds), std::end(kKinds),
                             [&](const KindRow &r) { return r.keyword == at->keyword; });
            if (row != std::end(kKinds) && (row->hasScopes || at->parent == unit->root))
                Enter(module, *at, static_cast<DefinitionKind>(row - kKinds));
        }
    for (const Definition *definition : module.ordered)
        CheckHidden(module, *definition);
}

Module *Scopes::FindModule(std::string_view prefix, const Statement &where)
{
    Unit &unit = UnitOf(where);
    if (prefix.empty())
        return unit.module;
    auto found = unit.prefixes.find(prefix);
    if (found == unit.prefixes.end()) {
        reports_.Error(where.place(), ZR_YANG_CODE_NAME, {"unknown prefix \"", prefix, "\""});
        return nullptr;
    }
    return found->second;
}

Definition *Scopes::FindInScopes(Module &module, DefinitionKind kind, std::string_view name,
                                 const Statement &where)
{
    if (RowOf(kind).hasScopes && UnitOf(where).module == &module)
        for (const Statement *scope = where.parent; scope != nullptr; scope = scope->parent)
            if (scope->hasDefinitions && scope->parent != nullptr) {
                auto found = module.definitions.find({scope, kind, name});
                if (found != module.definitions.end())
                    return found->second;
            }
    auto found = module.definitions.find({nullptr, kind, name});
    return found != module.definitions.end() ? found->second : nullptr;
}

// In YANG 1 a file sees itself and what it includes; in YANG 1.1 all of its module (RFC 7950,
// section 12).
bool Scopes::IsVisible(const Definition &definition, const Unit &from) const
{
    const Unit &unit = UnitOf(*definition.statement);
    return &unit == &from || from.version == Version::Yang11 || unit.module != from.module ||
           std::find(from.includes.begin(), from.includes.end(), &unit) != from.includes.end();
}

Definition *Scopes::Look(DefinitionKind kind, std::string_view reference, const Statement &where)
{
    QName name = SplitName(reference);
    Unit &unit = UnitOf(where);
    auto found = unit.prefixes.find(name.prefix.empty() ? unit.prefix : name.prefix);
    bool isKnown = found != unit.prefixes.end() && found->second != nullptr;
    return isKnown ? FindInScopes(*found->second, kind, name.name, where) : nullptr;
}

Definition *Scopes::Find(DefinitionKind kind, std::string_view reference, const Statement &where)
{
    QName name = SplitName(reference);
    Module *module = FindModule(name.prefix, where);
    if (module == nullptr)
        return nullptr;
    Definition *found = FindInScopes(*module, kind, name.name, where);
    if (found == nullptr)
        reports_.Error(where.place(), ZR_YANG_CODE_NAME,
                       {"unknown ", NameOf(kind), " \"", reference, "\""});
    else if (!IsVisible(*found, UnitOf(where)))
        reports_.Error(where.place(), ZR_YANG_CODE_NAME,
                       {NameOf(kind), " \"", reference, "\" stands in a submodule that \"",
                        UnitOf(where).name, "\" does not include"});
    return found;
}

void LiftTypedefs(Module &module, Arena &arena)
{
    Names taken(arena.resource());
    for (const Definition *definition : module.ordered)
        if (definition->kind == DefinitionKind::Typedef && !definition->IsInner())
            taken.insert(definition->name());
    for (Definition *definition : module.ordered) {
        if (definition->kind != DefinitionKind::Typedef || !definition->IsInner())
            continue;
        definition->writtenName = FindFreeName(*definition, taken, arena);
        taken.insert(definition->writtenName);
    }
}

} // namespace zr::yang
