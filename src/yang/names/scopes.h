// SPDX-License-Identifier: Apache-2.0
// Scopes: what is defined where, and finding what a name means at a place (RFC 7950, sections 5.5
// and 6.2.1).
#pragma once

#include "yang/names/module.h"

namespace zr::yang {

class Scopes {
public:
    Scopes(Reports &reports, Arena &arena) : reports_(reports), arena_(arena) {}

    // Enters all that a module defines; names that are used twice are reported.
    void Collect(Module &module);

    // The module that a prefix stands for in the file of `where`, "" for the file's own. Null when
    // there is none: an unknown prefix is reported, an import that failed was.
    Module *FindModule(std::string_view prefix, const Statement &where);

    // What PREFIX:NAME or NAME means at `where`; null when it is not there, which is reported.
    Definition *Find(DefinitionKind kind, std::string_view reference, const Statement &where);

    // The same without a report.
    Definition *Look(DefinitionKind kind, std::string_view reference, const Statement &where);

private:
    void Enter(Module &module, Statement &statement, DefinitionKind kind);
    void CheckHidden(Module &module, const Definition &definition);
    Definition *FindInScopes(Module &module, DefinitionKind kind, std::string_view name,
                             const Statement &where);
    bool IsVisible(const Definition &definition, const Unit &from) const;

    Reports &reports_;
    Arena &arena_;
};

// "typedef", "grouping", ...
std::string_view NameOf(DefinitionKind kind);

// Typedefs inside other statements move to the top of their prepared module.
//
// Gives each of them a name that is free there: its own behind that of the statement around it, and
// of those around that as far as it takes; then a number.
void LiftTypedefs(Module &module, Arena &arena);

} // namespace zr::yang
