// SPDX-License-Identifier: Apache-2.0
// Modules, the files that they are made of, and what is defined in them.
#pragma once

#include <functional>
#include <memory_resource>
#include <unordered_map>
#include <vector>

#include "yang/base/reports.h"
#include "yang/syntax/grammar.h"
#include "yang/syntax/statement.h"

namespace zr::yang {

struct Module;
struct Node;

// What has a name of its own beside the schema nodes. Each kind is a name space.
enum class DefinitionKind : uint8_t { Typedef, Grouping, Feature, Identity, Extension };

struct Definition;

// From the best to the worst (RFC 7950, section 7.21.2).
enum class Status : uint8_t { Current, Deprecated, Obsolete };
Status StatusOf(const Statement &statement);

// That one definition needs another: a typedef its base, a grouping those that it uses.
struct Need {
    Definition *definition;
    const Statement *where;
    Need *next;
};

struct Definition {
    Statement *statement = nullptr; // whose `meaning` is the definition
    Module *module = nullptr;
    DefinitionKind kind = DefinitionKind::Typedef;
    Status status = Status::Current;
    bool isInCircle = false;      // it needs itself: reported, and not to be followed
    bool isUsed = false;          // a grouping that some tree was expanded from
    std::string_view writtenName; // of a typedef in its prepared module
    Need *needs = nullptr;

    std::string_view name() const { return statement->argument; }
    // Whether it stands in another statement, and not at the top of a module.
    bool IsInner() const
    {
        return statement->parent != nullptr && statement->parent->parent != nullptr;
    }
};

struct Import {
    Statement *statement;
    std::string_view prefix;
    Module *module; // null when it cannot be had, which is reported
};

// One file: a module or a submodule.
struct Unit : Source {
    explicit Unit(std::pmr::memory_resource *memory)
        : imports(memory), prefixes(memory), includes(memory)
    {
    }

    Statement *root = nullptr; // null when the file could not be read
    Module *module = nullptr;  // that it is, or is a part of
    Version version = Version::Yang1;
    bool isSubmodule = false;
    std::string_view prefix;   // for its module
    std::string_view revision; // the newest, "" without one
    std::pmr::vector<Import> imports;
    // The modules that prefixes stand for; null for an import that cannot be had.
    std::pmr::unordered_map<std::string_view, Module *> prefixes;
    std::pmr::vector<Unit *> includes;
};

inline Unit &UnitOf(const Statement &statement)
{
    return static_cast<Unit &>(*statement.source);
}

// A definition is found by the statement that it stands in (null at the top of a module or
// submodule), its kind and its name.
struct DefinitionKey {
    const Statement *scope;
    DefinitionKind kind;
    std::string_view name;
    bool operator==(const DefinitionKey &) const = default;
};
struct DefinitionHash {
    size_t operator()(const DefinitionKey &key) const
    {
        return std::hash<std::string_view>()(key.name) * 31u +
               std::hash<const void *>()(key.scope) * 7u + static_cast<size_t>(key.kind);
    }
};

// How far a module has been worked through.
enum class Stage : uint8_t { Found, Linked, Checked };

struct Module {
    explicit Module(std::pmr::memory_resource *memory)
        : units(memory), definitions(memory), ordered(memory), augments(memory), instances(memory)
    {
    }

    std::string_view name, nameSpace;
    Unit *unit = nullptr;           // the module's own file
    std::pmr::vector<Unit *> units; // that file and its submodules', in the order of inclusion
    std::pmr::unordered_map<DefinitionKey, Definition *, DefinitionHash> definitions;
    std::pmr::vector<Definition *> ordered; // as they stand in the sources
    Stage stage = Stage::Found;
    Node *tree = nullptr;               // whose children are the module's own top-level nodes
    std::pmr::vector<Node *> augments;  // one for each augment of the module
    std::pmr::vector<Node *> instances; // extension instances with nodes in them
    Module *nextInOrder = nullptr;

    uint32_t Errors() const
    {
        uint32_t errors = 0;
        for (const Unit *one : units)
            errors += one->errors;
        return errors;
    }
};

} // namespace zr::yang
