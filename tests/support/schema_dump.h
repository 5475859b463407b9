// SPDX-License-Identifier: Apache-2.0
// The whole schema of a context as text, for comparing two contexts.
#pragma once

#include <zrschema/zrschema.h>

#include <string>

namespace zrtest {

// Everything about a type, without what depends on addresses.
std::string DumpType(const ZrtRealType *type);

// A node with all its properties and its subtree, indented. Children that different modules added
// to one parent are put in the order of the modules' names, since that order depends on loading;
// so are musts and extension instances, which several deviations may have added.
std::string DumpNode(const ZrNode *node, int indent = 0);

// A module: members, trees, augments (those that are not coupled with their nodes).
std::string DumpModule(const ZrMod *module);

// All modules in the order of their names.
std::string DumpContext(const ZrCtx *ctx);

} // namespace zrtest
