// SPDX-License-Identifier: Apache-2.0
// "when" and "must" (RFC 7950, sections 7.21.5 and 7.5.3).
#include "instance/check/conditions.h"

#include <algorithm>

namespace zr::data {

bool Holds(Run &run, const PlanNode &owner, const Expression &expression, Element &context,
           Fault fault)
{
    run.tree.ShowState(!owner.Is(PlanNode::kConfig));
    Truth truth = run.evaluator.Evaluate(expression, context);
    if (truth == Truth::Exceeded) {
        fault.tag = ZR_ERROR_TAG_RESOURCE_DENIED;
        run.faults.Add(fault, {"the condition \"", expression.source, "\" takes too many steps"});
    } else if (truth == Truth::Failed) {
        fault.tag = ZR_ERROR_TAG_OPERATION_FAILED;
        run.faults.Add(fault, {"the condition \"", expression.source,
                               "\" cannot be used: ", run.evaluator.reason()});
    }
    return truth != Truth::False;
}

bool IsAllowed(Run &run, Element &parent, const PlanNode &absent)
{
    if (absent.when == nullptr)
        return true;
    Fault fault = FaultBelow(parent, absent, 0);
    if (absent.IsChoiceOrCase())
        return Holds(run, absent, *absent.when, parent, fault);
    Element *placeholder = run.tree.Add(parent, absent, nullptr, parent.order);
    bool holds = Holds(run, absent, *absent.when, *placeholder, fault);
    run.tree.RemoveLast(*placeholder);
    return holds;
}

const Element *FirstOf(const Run &run, const Element &parent, const PlanNode &node)
{
    if (!node.IsChoiceOrCase()) {
        const Element *at = run.tree.First(parent, node);
        while (at != nullptr && at->IsDeleted())
            at = at->nextSame;
        return at;
    }
    for (const PlanNode *child : node.children)
        if (const Element *found = FirstOf(run, parent, *child))
            return found;
    return nullptr;
}

bool IsPresent(const Run &run, const Element &parent, const PlanNode &node)
{
    return FirstOf(run, parent, node) != nullptr;
}

const PlanNode *FindCase(const Run &run, const Element &parent, const PlanNode &choice)
{
    auto found =
        std::find_if(choice.children.begin(), choice.children.end(),
                     [&](const PlanNode *child) { return IsPresent(run, parent, *child); });
    return found == choice.children.end() ? nullptr : *found;
}

namespace {

// While one of these lives, conditions do not see some of the nodes: those of a choice or case, or
// all instances of a node but the first, which looks empty (RFC 7950, section 7.21.5).
class Hidden {
public:
    Hidden(Run &run, const PlanNode &owner, Element &first)
        : tree_(run.tree), first_(first.node), hidden_(run.memory)
    {
        tree_.ShowState(!owner.Is(PlanNode::kConfig));
        tree_.Prepare(); // which goes through the nodes that are seen, and adds to them
        children_ = first_.children;
        last_ = first_.last;
        if (owner.IsChoiceOrCase()) {
            HideAll(*first.parent, owner);
        } else {
            HideRow(first.nextSame);
            first_.children = first_.last = nullptr;
        }
    }
    ~Hidden()
    {
        for (auto element = hidden_.rbegin(); element != hidden_.rend(); ++element)
            tree_.Unhide(**element);
        first_.children = children_;
        first_.last = last_;
    }
    Hidden(const Hidden &) = delete;
    Hidden &operator=(const Hidden &) = delete;

private:
    void HideRow(Element *first)
    {
        for (Element *at = first; at != nullptr; at = at->nextSame) {
            hidden_.push_back(at);
            tree_.Hide(*at);
        }
    }
    void HideAll(Element &parent, const PlanNode &schemaNode)
    {
        for (const PlanNode *child : schemaNode.children) {
            if (child->IsChoiceOrCase())
                HideAll(parent, *child);
            else
                HideRow(tree_.First(parent, *child));
        }
    }

    Tree &tree_;
    xmlNode &first_;
    std::pmr::vector<Element *> hidden_;
    xmlNode *children_ = nullptr, *last_ = nullptr; // of the first
};

// Whether the condition of a node, choice or case leaves a place for the instances of a node.
bool HasPlace(Run &run, const PlanNode &owner, Element &first)
{
    if (owner.when == nullptr)
        return true;
    Hidden hidden(run, owner, first);
    Element &context = owner.IsChoiceOrCase() ? *first.parent : first;
    return Holds(run, owner, *owner.when, context, FaultAt(first, 0));
}

void Refuse(Run &run, const PlanNode &owner, Element &first)
{
    for (Element *at = &first; at != nullptr; at = at->nextSame) {
        at->isFaulty = true;
        run.faults.Add(FaultAt(*at, ZR_ERROR_TAG_UNKNOWN_ELEMENT),
                       {"\"", at->plan->name, "\" has no place here: its condition \"",
                        owner.when->source, "\" is false"});
    }
}

// All instances in one parent have or have not a place together.
void CheckWhensOf(Run &run, Element &first)
{
    const PlanNode *owner = first.plan;
    do {
        if (!HasPlace(run, *owner, first)) {
            Refuse(run, *owner, first);
            return;
        }
        owner = owner->schemaParent;
    } while (owner->IsChoiceOrCase());
}

void CheckMustsOf(Run &run, Element &element)
{
    for (const Condition &must : element.plan->musts) {
        Fault fault = FaultAt(element, ZR_ERROR_TAG_OPERATION_FAILED);
        fault.badElement = nullptr;
        if (Holds(run, *element.plan, *must.expression, element, fault))
            continue;
        fault.appTag = must.appTag != nullptr ? must.appTag : "must-violation";
        if (must.message != nullptr)
            run.faults.Add(fault, {must.message});
        else
            run.faults.Add(fault, {"the condition \"", must.expression->source, "\" is false"});
    }
}

} // namespace

void CheckWhens(Run &run)
{
    ForEachView(run, [&](bool isConfig) {
        for (Element *element : run.tree.elements)
            // Those of defaults were looked at before they were added.
            if (!element->isContext && !element->isDefault && element->lastSame != nullptr &&
                element->plan->Is(PlanNode::kConfig) == isConfig)
                CheckWhensOf(run, *element);
    });
}

void CheckMusts(Run &run)
{
    ForEachView(run, [&](bool isConfig) {
        for (Element *element : run.tree.elements)
            if (!element->isContext && !element->isFaulty &&
                element->plan->Is(PlanNode::kConfig) == isConfig)
                CheckMustsOf(run, *element);
    });
}

} // namespace zr::data
