// SPDX-License-Identifier: Apache-2.0
#include "yang/expand/expander.h"

#include <algorithm>
#include <iterator>

#include "yang/syntax/arguments.h"
#include "yang/syntax/parser.h"

namespace zr::yang {

namespace {

using K = Keyword;

constexpr uint32_t kUsesLimit = 200; // of groupings in groupings

constexpr KeywordSet kLists = {K::List, K::LeafList};
constexpr KeywordSet kAnything = {K::Anydata, K::Anyxml};
constexpr KeywordSet kDataNodes = kLists | kAnything | KeywordSet{K::Container, K::Leaf};

// What may be refined where (RFC 7950, section 7.13.2); a description everywhere.
struct RefineRow {
    Keyword property;
    KeywordSet targets;
};
constexpr RefineRow kRefineRows[] = {
    {K::Default, {K::Leaf, K::LeafList, K::Choice}},
    {K::Config, kDataNodes | KeywordSet{K::Choice}},
    {K::Mandatory, kAnything | KeywordSet{K::Leaf, K::Choice}},
    {K::Presence, {K::Container}},
    {K::Must, kDataNodes},
    {K::MinElements, kLists},
    {K::MaxElements, kLists},
    {K::IfFeature, kDataNodes | KeywordSet{K::Choice, K::Case}},
};

} // namespace

bool Expander::IsOverLimit(const Statement &statement)
{
    if (!isStopped_ && ++nodes_ > nodeLimit) {
        isStopped_ = true;
        reports_.Error(statement.place(), ZR_YANG_CODE_LIMIT,
                       {"module \"", module_->name, "\" expands to more nodes than are allowed"});
    }
    return isStopped_;
}

void Expander::Append(Node &holder, Node &node)
{
    (holder.last != nullptr ? holder.last->next : holder.first) = &node;
    holder.last = &node;
}

// An if-feature that prepared YIN cannot express is decided here, or stays open.
void Expander::Decide(Node &node, const Statement &ifFeature)
{
    const auto *expression = static_cast<const FeatureExpression *>(ifFeature.meaning);
    if (expression == nullptr)
        return;
    ForEachConjunct(*expression, [&](const FeatureExpression &part) {
        if (part.kind == FeatureExpression::Kind::Feature)
            return;
        Truth truth = features_.Evaluate(part);
        node.isPruned |= truth == Truth::False;
        if (truth == Truth::Open)
            reports_.Warning(ifFeature.place(), ZR_YANG_CODE_FEATURE,
                             {"\"", ifFeature.argument,
                              "\" cannot be expressed and is not decided: taken as true"});
    });
}

Node *Expander::NewNode(const Site &site, const Statement &statement, Keyword keyword)
{
    if (IsOverLimit(statement))
        return nullptr;
    if (site.parent.depth >= kDepthLimit) {
        reports_.Error(statement.place(), ZR_YANG_CODE_LIMIT,
                       {"nodes stand more than 200 deep in each other"});
        return nullptr;
    }
    auto *node = arena_.New<Node>();
    node->statement = &statement;
    node->module = module_;
    node->parent = &site.parent;
    node->keyword = keyword;
    node->depth = static_cast<uint16_t>(site.parent.depth + 1);
    node->isPruned = site.parent.isPruned;
    Append(site.holder, *node);
    return node;
}

void Expander::AddBody(const Site &site, const Statement &body)
{
    for (const Statement &child : SubStatements(body))
        AddStatement(site, child);
}

void Expander::AddStatement(const Site &site, const Statement &statement)
{
    if (isStopped_)
        return;
    if (statement.keyword == K::Uses)
        AddUses(site, statement);
    else if (IsNodeKeyword(statement.keyword))
        AddNode(site, statement);
}

void Expander::AddNode(const Site &site, const Statement &statement)
{
    // A case that is not written out stands around its only node (RFC 7950, section 7.9.2).
    if (site.parent.keyword == K::Choice && statement.keyword != K::Case) {
        Node *implicit = NewNode(site, statement, K::Case);
        if (implicit == nullptr)
            return;
        implicit->isImplicit = true;
        index_.Insert(*implicit);
        return AddNode({*implicit, *implicit, site.uses}, statement);
    }
    Node *node = NewNode(site, statement, statement.keyword);
    if (node == nullptr)
        return;
    if (index_.Insert(*node) != nullptr)
        reports_.Error(
            statement.place(), ZR_YANG_CODE_DUPLICATE,
            {statement.word, " \"", node->name(), "\" has the name of another node here"});
    for (const Statement *at = SubStatement(statement, K::IfFeature); at != nullptr;
         at = NextSubStatement(*at, K::IfFeature))
        Decide(*node, *at);
    Site inner = {*node, *node, site.uses};
    AddBody(inner, statement);
    if (statement.keyword == K::Rpc || statement.keyword == K::Action)
        AddImplicitOperations(inner);
}

// Every operation has an input and an output, which augments may have for targets.
void Expander::AddImplicitOperations(const Site &site)
{
    for (Keyword keyword : {K::Input, K::Output}) {
        if (SubStatement(*site.parent.statement, keyword) != nullptr)
            continue;
        Node *node = NewNode(site, *site.parent.statement, keyword);
        if (node == nullptr)
            return;
        node->isImplicit = true;
        index_.Insert(*node);
    }
}

void Expander::AddTo(Node &node, const Statement &statement, bool isInherited)
{
    auto *added = arena_.New<Added>(&statement, isInherited, nullptr);
    (node.lastAdded != nullptr ? node.lastAdded->next : node.added) = added;
    node.lastAdded = added;
    if (statement.keyword == K::IfFeature)
        Decide(node, statement);
}

// What a "uses" or "augment" says of all its nodes.
void Expander::AddInherited(Node &node, const Statement &around)
{
    for (const Statement &child : SubStatements(around))
        if (child.keyword == K::IfFeature || child.keyword == K::When)
            AddTo(node, child, true);
}

void Expander::AddUses(const Site &site, const Statement &uses)
{
    auto *grouping = static_cast<Definition *>(uses.meaning);
    if (grouping == nullptr || grouping->isInCircle)
        return;
    if (site.uses >= kUsesLimit) {
        reports_.Error(uses.place(), ZR_YANG_CODE_LIMIT,
                       {"groupings use each other more than 200 deep"});
        return;
    }
    if (IsOverLimit(uses)) // a grouping without nodes costs something too
        return;
    grouping->isUsed = true;
    Node *before = site.holder.last;
    AddBody({site.holder, site.parent, site.uses + 1}, *grouping->statement);
    Node *first = before != nullptr ? before->next : site.holder.first;
    for (Node *node = first; node != nullptr; node = node->next)
        AddInherited(*node, uses);
    // Extension instances in the grouping come to stand where its nodes do.
    if (&site.holder == &site.parent && IsNodeKeyword(site.parent.keyword))
        for (const Statement &child : SubStatements(*grouping->statement))
            if (child.IsExtension())
                AddTo(site.parent, child, false);
    for (const Statement &child : SubStatements(uses)) {
        if (child.keyword == K::Refine)
            Refine(site.parent, child);
        else if (child.keyword == K::Augment)
            AugmentUses(site, child);
    }
}

Node *Expander::FindTarget(Node *from, std::string_view path, const Statement &where)
{
    Node *at = from;
    while (!path.empty()) {
        QName step = SplitName(TakeStep(path));
        Module *module = scopes_.FindModule(step.prefix, where);
        if (module == nullptr)
            return nullptr;
        // What a grouping defines is in the name space of the module that uses it.
        if (module == UnitOf(where).module)
            module = module_;
        if (at == nullptr)
            at = module->tree;
        at = at != nullptr ? index_.FindChild(*at, module, step.name) : nullptr;
        if (at == nullptr) {
            reports_.Error(
                where.place(), ZR_YANG_CODE_PATH,
                {"\"", where.argument, "\" leads to nothing: there is no \"", step.name, "\""});
            return nullptr;
        }
    }
    return at;
}

void Expander::CheckRefine(const Node &target, const Statement &property)
{
    const auto *row =
        std::find_if(std::begin(kRefineRows), std::end(kRefineRows),
                     [&](const RefineRow &r) { return r.property == property.keyword; });
    bool isOld = UnitOf(property).version == Version::Yang1;
    bool isAllowed = row == std::end(kRefineRows) || row->targets.Has(target.keyword);
    if (isOld && property.keyword == K::Default && target.keyword == K::LeafList)
        isAllowed = false;
    if (!isAllowed)
        reports_.Error(property.place(), ZR_YANG_CODE_REFINE,
                       {"\"", property.word, "\" cannot be refined in ", NameOf(target.keyword),
                        " \"", target.name(), "\""});
}

void Expander::Refine(Node &parent, const Statement &refine)
{
    Node *target = FindTarget(&parent, refine.argument, refine);
    if (target == nullptr)
        return;
    for (const Statement &property : SubStatements(refine)) {
        CheckRefine(*target, property);
        AddTo(*target, property, false);
    }
}

void Expander::AugmentUses(const Site &site, const Statement &augment)
{
    Node *target = FindTarget(&site.parent, augment.argument, augment);
    if (target == nullptr)
        return;
    Node *before = target->last;
    AddBody({*target, *target, site.uses}, augment);
    for (Node *node = before != nullptr ? before->next : target->first; node != nullptr;
         node = node->next)
        AddInherited(*node, augment);
}

} // namespace zr::yang
