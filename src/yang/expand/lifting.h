// Typedefs inside other statements move to the top of their prepared module.
#pragma once

#include "yang/names/module.h"

namespace zr::yang {

// Gives each of them a name that is free there: its own behind that of the statement around it, and
// of those around that as far as it takes; then a number.
void LiftTypedefs(Module &module, Arena &arena);

inline bool IsLifted(const Definition &definition)
{
    const Statement *scope = definition.statement->parent;
    return scope != nullptr && scope->parent != nullptr;
}

} // namespace zr::yang
