// SPDX-License-Identifier: Apache-2.0
// A whole module: its tree, extension instances with nodes in them, and its augments.
#include <algorithm>
#include <iterator>

#include "yang/expand/expander.h"
#include "yang/syntax/arguments.h"

namespace zr::yang {

namespace {

using K = Keyword;

// What may be the target of an augment (RFC 7950, section 7.17), and what it may take there.
constexpr KeywordSet kAugmentTargets = {K::Container, K::List,   K::Choice,      K::Case,
                                        K::Input,     K::Output, K::Notification};
constexpr KeywordSet kHoldsActions = {K::Container, K::List};

bool HoldsNodes(const Statement &instance)
{
    for (const Statement &child : SubStatements(instance))
        if (IsNodeKeyword(child.keyword) || child.keyword == K::Uses)
            return true;
    return false;
}

size_t StepsOf(const Node &augment)
{
    std::string_view path = augment.statement->argument;
    return static_cast<size_t>(std::count(path.begin(), path.end(), '/'));
}

// Whether a node must be there in every configuration (RFC 7950, section 3, "mandatory node").
bool IsMandatory(const Node &node)
{
    if (HasProperty(node, K::Mandatory, "true"))
        return true;
    const Statement *least = PropertyOf(node, K::MinElements);
    if (least != nullptr && least->argument != "0")
        return true;
    if (node.keyword != K::Container || PropertyOf(node, K::Presence) != nullptr)
        return false;
    for (const Node *child = node.first; child != nullptr; child = child->next)
        if (IsMandatory(*child))
            return true;
    return false;
}

// Whether it is no configuration: state, or a part of an operation or notification.
bool IsState(const Node &node)
{
    for (const Node *at = &node; at != nullptr; at = at->parent)
        if (HasProperty(*at, K::Config, "false") || at->keyword == K::Input ||
            at->keyword == K::Output || at->keyword == K::Notification)
            return true;
    return false;
}

} // namespace

void Expander::CheckAugment(const Module &module, const Node &augment, const Node &target)
{
    const Statement &statement = *augment.statement;
    if (!kAugmentTargets.Has(target.keyword))
        return reports_.Error(statement.place(), ZR_YANG_CODE_PATH,
                              {"\"", statement.argument, "\" is a ", NameOf(target.keyword),
                               ", which cannot be augmented"});
    for (const Node *node = augment.first; node != nullptr; node = node->next) {
        bool isOperation = node->keyword == K::Action || node->keyword == K::Notification;
        if ((node->keyword == K::Case && !node->isImplicit && target.keyword != K::Choice) ||
            (isOperation && !kHoldsActions.Has(target.keyword)))
            reports_.Error(
                node->statement->place(), ZR_YANG_CODE_PATH,
                {"a ", NameOf(node->keyword), " cannot be added to a ", NameOf(target.keyword)});
        // Clients that do not know the augment must not fail for want of its nodes (section 7.17).
        bool isForeign = target.module != &module && !target.IsChoiceOrCase();
        bool isConditional = SubStatement(statement, K::When) != nullptr;
        ForEachProperty(*node, K::When, [&](const Statement &, bool) { isConditional = true; });
        if (isForeign && !isConditional && IsMandatory(*node) && !IsState(*node))
            reports_.Error(node->statement->place(), ZR_YANG_CODE_NODE,
                           {"mandatory node \"", node->name(),
                            "\" is added to another module by "
                            "an augment without \"when\""});
    }
}

void Expander::CoupleOne(Module &module, Node &augment)
{
    const Statement &statement = *augment.statement;
    Node *target = FindTarget(nullptr, statement.argument, statement);
    augment.isLost = target == nullptr;
    if (target == nullptr)
        return;
    augment.parent = target;
    augment.depth = target->depth;
    augment.isPruned |= target->isPruned;
    AddBody({augment, *target, 0}, statement);
    if (augment.isPruned)
        for (Node *node = augment.first; node != nullptr; node = NextNode(augment, *node))
            node->isPruned = true;
    CheckAugment(module, augment, *target);
}

// An augment of nodes that another one adds has the longer path, so that the short ones come first.
void Expander::Couple(Module &module)
{
    for (Unit *unit : module.units)
        for (const Statement &child : SubStatements(*unit->root)) {
            if (child.keyword != K::Augment)
                continue;
            auto *augment = arena_.New<Node>();
            augment->statement = &child;
            augment->module = &module;
            augment->keyword = K::Augment;
            for (const Statement &property : SubStatements(child))
                if (property.keyword == K::IfFeature)
                    Decide(*augment, property);
            module.augments.push_back(augment);
        }
    std::pmr::vector<Node *> order(module.augments, module.augments.get_allocator());
    std::stable_sort(order.begin(), order.end(),
                     [](const Node *a, const Node *b) { return StepsOf(*a) < StepsOf(*b); });
    for (Node *augment : order)
        CoupleOne(module, *augment);
}

// An extension instance may hold nodes of its own, as those of "yang-data" do (RFC 8040).
void Expander::AddInstance(Module &module, const Statement &instance)
{
    auto *node = arena_.New<Node>();
    node->statement = &instance;
    node->module = &module;
    module.instances.push_back(node);
    AddBody({*node, *node, 0}, instance);
}

void Expander::Expand(Module &module, std::pmr::vector<Node *> &unusedGroupings)
{
    module_ = &module;
    nodes_ = 0;
    isStopped_ = false;
    module.tree = arena_.New<Node>();
    module.tree->statement = module.unit->root;
    module.tree->module = &module;
    module.tree->keyword = K::Module;
    // The module itself, which is the first unit, comes last: as when it is loaded with its
    // submodules.
    for (size_t i = 1; i <= module.units.size(); ++i) {
        Unit *unit = module.units[i % module.units.size()];
        AddBody({*module.tree, *module.tree, 0}, *unit->root);
        for (const Statement &child : SubStatements(*unit->root))
            if (child.IsExtension() && HoldsNodes(child))
                AddInstance(module, child);
    }
    Couple(module);
    LiftTypedefs(module, arena_);
    for (Definition *definition : module.ordered) {
        if (definition->kind != DefinitionKind::Grouping || definition->isUsed ||
            definition->isInCircle)
            continue;
        auto *root = arena_.New<Node>();
        root->statement = definition->statement;
        root->module = &module;
        root->keyword = K::Grouping;
        unusedGroupings.push_back(root);
        AddBody({*root, *root, 0}, *definition->statement);
    }
}

} // namespace zr::yang
