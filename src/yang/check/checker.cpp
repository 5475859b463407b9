// SPDX-License-Identifier: Apache-2.0
#include "yang/check/checker.h"

#include <utility>

namespace zr::yang {

namespace {

using K = Keyword;

} // namespace

void Checker::CheckTree(const Node &root)
{
    auto &first = const_cast<Node &>(root);
    for (Node *node = &first; node != nullptr; node = NextNode(first, *node, !node->isPruned))
        if (node != &first && !node->isPruned)
            CheckNode(*node);
}

void Checker::Check(Module &module, Expander &expander,
                    const std::pmr::vector<Node *> &unusedGroupings)
{
    for (Unit *unit : module.units)
        CheckStatements(*unit);
    CheckTree(*module.tree);
    for (const std::pmr::vector<Node *> *roots :
         {&std::as_const(module.augments), &std::as_const(module.instances), &unusedGroupings})
        for (const Node *root : *roots)
            CheckTree(*root);
    Changes changes(memory_);
    for (Unit *unit : module.units)
        for (const Statement &child : SubStatements(*unit->root))
            if (child.keyword == K::Deviation)
                CheckDeviation(child, expander, changes);
}

} // namespace zr::yang
