#include "yang/check/checker.h"

#include <utility>

namespace zr::yang {

namespace {

using K = Keyword;

} // namespace

// A grouping that nothing uses has not been told yet what it will be part of; nor has the content
// of an extension instance.
NodeUse UseOf(const Node &node)
{
    for (const Node *at = &node; at != nullptr; at = at->parent) {
        switch (at->keyword) {
        case K::Rpc:
        case K::Action:
        case K::Notification:
        case K::Grouping:
        case K::Unknown:
            return NodeUse::Message;
        case K::Module:
            return NodeUse::Config;
        default:
            break;
        }
        if (HasProperty(*at, K::Config, "false"))
            return NodeUse::State;
    }
    return NodeUse::Config;
}

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
    for (Unit *unit : module.units)
        for (const Statement &child : SubStatements(*unit->root))
            if (child.keyword == K::Deviation)
                CheckDeviation(child, expander);
}

} // namespace zr::yang
