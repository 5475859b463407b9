// SPDX-License-Identifier: Apache-2.0
// Links: what each name in the statements of a module means, and circles of definitions.
#pragma once

#include "yang/names/features.h"

namespace zr::yang {

struct Type;

// What a type statement means.
struct TypeUse {
    Definition *definition = nullptr; // the typedef, null for a built-in type
    bool isLinked = false;            // the type's name is known
    Type *type = nullptr;             // once it is worked out
};

// Fills in the meaning of the statements of a module whose definitions are collected:
//   type                -> TypeUse
//   uses                -> Definition of the grouping, or null
//   base                -> Definition of the identity, or null
//   if-feature          -> FeatureExpression, or null
//   extension instances -> Definition of the extension, or null
// Then reports definitions of it that need themselves.
class Links {
public:
    Links(Scopes &scopes, Reports &reports, Arena &arena, std::pmr::memory_resource *memory)
        : scopes_(scopes), reports_(reports), arena_(arena), memory_(memory)
    {
    }

    void Link(Module &module);

private:
    void LinkStatement(Statement &statement);
    void LinkType(Statement &statement);
    void LinkReference(Statement &statement, DefinitionKind kind);
    void LinkExtension(Statement &statement);
    void LinkFeatures(Statement &statement);
    void AddNeed(const Statement &statement, Definition *needed);
    void AddNeeds(const Statement &statement, const FeatureExpression &expression);
    void FindCircles(Module &module);
    void ReportCircle(const std::pmr::vector<Need *> &path, Definition *start);

    Scopes &scopes_;
    Reports &reports_;
    Arena &arena_;
    std::pmr::memory_resource *memory_;
};

} // namespace zr::yang
