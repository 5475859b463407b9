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

void CheckWhen(Run &run, const PlanNode &owner, Element &context, Element &element)
{
    if (Holds(run, owner, *owner.when, context, FaultAt(element, 0)))
        return;
    element.isFaulty = true;
    run.faults.Add(FaultAt(element, ZR_ERROR_TAG_UNKNOWN_ELEMENT),
                   {"\"", element.plan->name, "\" has no place here: its condition \"",
                    owner.when->source, "\" is false"});
}

void CheckWhensOf(Run &run, Element &element)
{
    if (element.plan->when != nullptr)
        CheckWhen(run, *element.plan, element, element);
    for (const PlanNode *at = element.plan->schemaParent; at->IsChoiceOrCase() && !element.isFaulty;
         at = at->schemaParent)
        if (at->when != nullptr)
            CheckWhen(run, *at, *element.parent, element);
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
            if (!element->isContext && !element->isDefault &&
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
