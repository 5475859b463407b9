#include "yang/expand/lifting.h"

#include <charconv>
#include <string>
#include <unordered_set>

namespace zr::yang {

namespace {

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

void LiftTypedefs(Module &module, Arena &arena)
{
    Names taken(arena.resource());
    for (const Definition *definition : module.ordered)
        if (definition->kind == DefinitionKind::Typedef && !IsLifted(*definition))
            taken.insert(definition->name());
    for (Definition *definition : module.ordered) {
        if (definition->kind != DefinitionKind::Typedef || !IsLifted(*definition))
            continue;
        definition->writtenName = FindFreeName(*definition, taken, arena);
        taken.insert(definition->writtenName);
    }
}

} // namespace zr::yang
