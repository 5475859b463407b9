// SPDX-License-Identifier: Apache-2.0
#include "yang/names/links.h"

#include <string>

namespace zr::yang {

namespace {

// The definition whose own content a statement is: the innermost typedef, grouping, identity or
// feature around it. Null when nothing of the kind of `needed` is.
Definition *OwnerOf(const Statement &statement, DefinitionKind kind)
{
    for (const Statement *at = statement.parent; at != nullptr; at = at->parent) {
        bool isDefinition = at->keyword == Keyword::Typedef || at->keyword == Keyword::Grouping ||
                            at->keyword == Keyword::Identity || at->keyword == Keyword::Feature;
        if (!isDefinition)
            continue;
        auto *definition = static_cast<Definition *>(at->meaning);
        return definition != nullptr && definition->kind == kind ? definition : nullptr;
    }
    return nullptr;
}

} // namespace

void Links::AddNeed(const Statement &statement, Definition *needed)
{
    if (needed == nullptr)
        return;
    Definition *owner = OwnerOf(statement, needed->kind);
    if (owner != nullptr)
        owner->needs = arena_.New<Need>(needed, &statement, owner->needs);
}

void Links::LinkType(Statement &statement)
{
    auto *use = arena_.New<TypeUse>();
    statement.meaning = use;
    if (FindBuiltin(statement.argument) == Builtin::None) {
        use->definition = scopes_.Find(DefinitionKind::Typedef, statement.argument, statement);
        AddNeed(statement, use->definition);
        use->isLinked = use->definition != nullptr;
    } else {
        use->isLinked = true;
    }
}

void Links::LinkReference(Statement &statement, DefinitionKind kind)
{
    Definition *found = scopes_.Find(kind, statement.argument, statement);
    statement.meaning = found;
    AddNeed(statement, found);
}

void Links::LinkExtension(Statement &statement)
{
    if (statement.isFaulty)
        return;
    Definition *extension = scopes_.Find(DefinitionKind::Extension, statement.word, statement);
    statement.meaning = extension;
    if (extension == nullptr)
        return;
    bool needsArgument = SubStatement(*extension->statement, Keyword::Argument) != nullptr;
    if (needsArgument != statement.hasArgument)
        reports_.Error(statement.place(), ZR_YANG_CODE_ARGUMENT,
                       {"extension \"", statement.word,
                        needsArgument ? "\" needs an argument" : "\" takes no argument"});
}

void Links::AddNeeds(const Statement &statement, const FeatureExpression &expression)
{
    // A chain leans to the left.
    for (const FeatureExpression *at = &expression; at != nullptr; at = at->left) {
        AddNeed(statement, at->feature);
        if (at->right != nullptr)
            AddNeeds(statement, *at->right);
    }
}

void Links::LinkFeatures(Statement &statement)
{
    FeatureExpression *expression = ReadFeatureExpression(statement, scopes_, reports_, arena_);
    statement.meaning = expression;
    if (expression != nullptr)
        AddNeeds(statement, *expression);
}

void Links::LinkStatement(Statement &statement)
{
    switch (statement.keyword) {
    case Keyword::Type:
        return LinkType(statement);
    case Keyword::Uses:
        return LinkReference(statement, DefinitionKind::Grouping);
    case Keyword::Base:
        return LinkReference(statement, DefinitionKind::Identity);
    case Keyword::IfFeature:
        return LinkFeatures(statement);
    case Keyword::Unknown:
        return LinkExtension(statement);
    default:
        return;
    }
}

void Links::Link(Module &module)
{
    for (Unit *unit : module.units)
        for (Statement *at = unit->root; at != nullptr; at = NextInWalk(*unit->root, *at))
            LinkStatement(*at);
    FindCircles(module);
}

void Links::ReportCircle(const std::pmr::vector<Need *> &path, Definition *start)
{
    std::pmr::string names(memory_);
    size_t from = path.size();
    while (from > 0 && path[from - 1]->definition != start)
        --from;
    for (size_t i = from > 0 ? from - 1 : 0; i < path.size(); ++i) {
        (names += path[i]->definition->name()) += ", ";
        path[i]->definition->isInCircle = true;
    }
    start->isInCircle = true;
    std::string_view first = from == 0 ? start->name() : std::string_view();
    reports_.Error(start->statement->place(), ZR_YANG_CODE_CIRCLE,
                   {NameOf(start->kind), " \"", start->name(), "\" needs itself: ", first,
                    first.empty() ? "" : ", ", names, start->name()});
}

// A walk in depth with a stack of its own, over what the module's definitions need. What another
// module defines cannot need this one.
void Links::FindCircles(Module &module)
{
    std::pmr::unordered_map<Definition *, bool> isOpen(memory_);
    std::pmr::vector<Need *> path(memory_), rest(memory_);
    for (Definition *root : module.ordered) {
        if (!isOpen.try_emplace(root, true).second)
            continue;
        path.clear();
        rest.assign(1, root->needs);
        while (!rest.empty()) {
            Need *need = rest.back();
            if (need == nullptr) {
                rest.pop_back();
                isOpen[path.empty() ? root : path.back()->definition] = false;
                if (!path.empty())
                    path.pop_back();
                continue;
            }
            rest.back() = need->next;
            if (need->definition->module != &module)
                continue;
            auto [found, isNew] = isOpen.try_emplace(need->definition, true);
            if (isNew) {
                path.push_back(need);
                rest.push_back(need->definition->needs);
            } else if (found->second) {
                ReportCircle(path, need->definition);
            }
        }
    }
}

} // namespace zr::yang
