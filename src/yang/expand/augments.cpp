// Refine, and the augments of a module.
#include <algorithm>
#include <iterator>

#include "yang/expand/expander.h"
#include "yang/syntax/arguments.h"

namespace zr::yang {

namespace {

using K = Keyword;

constexpr uint64_t Bit(Keyword keyword)
{
    return uint64_t{1} << static_cast<unsigned>(keyword);
}
constexpr uint64_t kLists = Bit(K::List) | Bit(K::LeafList);
constexpr uint64_t kAnything = Bit(K::Anydata) | Bit(K::Anyxml);
constexpr uint64_t kDataNodes = kLists | kAnything | Bit(K::Container) | Bit(K::Leaf);
constexpr uint64_t kBranches = kDataNodes | Bit(K::Choice) | Bit(K::Case);
constexpr uint64_t kAll = ~uint64_t{0};

// What may be refined where (RFC 7950, section 7.13.2).
struct RefineRow {
    Keyword property;
    uint64_t targets;
};
constexpr RefineRow kRefineRows[] = {
    {K::Default, Bit(K::Leaf) | Bit(K::LeafList) | Bit(K::Choice)},
    {K::Description, kAll},
    {K::Reference, kAll},
    {K::Config, kBranches & ~Bit(K::Case)},
    {K::Mandatory, kAnything | Bit(K::Leaf) | Bit(K::Choice)},
    {K::Presence, Bit(K::Container)},
    {K::Must, kDataNodes},
    {K::MinElements, kLists},
    {K::MaxElements, kLists},
    {K::IfFeature, kBranches},
};

// What may be the target of an augment (RFC 7950, section 7.17), and what it may take there.
constexpr uint64_t kAugmentTargets = Bit(K::Container) | Bit(K::List) | Bit(K::Choice) |
                                     Bit(K::Case) | Bit(K::Input) | Bit(K::Output) |
                                     Bit(K::Notification);
constexpr uint64_t kHoldsActions = Bit(K::Container) | Bit(K::List);

bool IsIn(uint64_t set, Keyword keyword)
{
    return static_cast<unsigned>(keyword) < 64 && (set & Bit(keyword)) != 0;
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

void Expander::CheckRefine(const Node &target, const Statement &property)
{
    const auto *row =
        std::find_if(std::begin(kRefineRows), std::end(kRefineRows),
                     [&](const RefineRow &r) { return r.property == property.keyword; });
    bool isOld = UnitOf(property).version == Version::Yang1;
    bool isAllowed = row == std::end(kRefineRows) || IsIn(row->targets, target.keyword);
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

void Expander::CheckAugment(const Module &module, const Node &augment, const Node &target)
{
    const Statement &statement = *augment.statement;
    if (!IsIn(kAugmentTargets, target.keyword))
        return reports_.Error(statement.place(), ZR_YANG_CODE_PATH,
                              {"\"", statement.argument, "\" is a ", NameOf(target.keyword),
                               ", which cannot be augmented"});
    for (const Node *node = augment.first; node != nullptr; node = node->next) {
        bool isOperation = node->keyword == K::Action || node->keyword == K::Notification;
        if ((node->keyword == K::Case && !node->isImplicit && target.keyword != K::Choice) ||
            (isOperation && !IsIn(kHoldsActions, target.keyword)))
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

} // namespace zr::yang
