// SPDX-License-Identifier: Apache-2.0
// What must be there (RFC 7950, sections 7.6.5, 7.7.5 and 7.9.4), and the cases of a choice, of
// which one may be there (section 7.9).
#include "instance/check/conditions.h"

namespace zr::data {

namespace {

class Asker {
public:
    // Asks for configuration, or for the rest.
    Asker(Run &run, bool isConfig) : run_(run), isConfig_(isConfig) {}

    void Ask(Element &parent, const PlanNode &schemaNode)
    {
        for (const PlanNode *child : schemaNode.children)
            AskOne(parent, *child);
    }

private:
    void AskOne(Element &parent, const PlanNode &node)
    {
        if (!run_.Holds(node))
            return;
        if (node.kind == ZR_NODE_CHOICE)
            AskChoice(parent, node);
        else if (node.Is(PlanNode::kConfig) != isConfig_ ||
                 run_.IsEdit()) // the datastore may have what is not there
            return;
        else if (node.minElements != 0)
            AskEntries(parent, node);
        else if (node.Is(PlanNode::kMandatory) && run_.tree.First(parent, node) == nullptr &&
                 IsAllowed(run_, parent, node))
            run_.faults.Add(FaultBelow(parent, node, ZR_ERROR_TAG_MISSING_ELEMENT),
                            {"\"", node.name, "\" is missing"});
    }
    void AskEntries(Element &parent, const PlanNode &list)
    {
        uint32_t count = 0;
        for (const Element *at = run_.tree.First(parent, list);
             at != nullptr && count < list.minElements; at = at->nextSame)
            ++count;
        if (count == list.minElements || (count == 0 && !IsAllowed(run_, parent, list)))
            return;
        Fault fault = FaultBelow(parent, list, ZR_ERROR_TAG_OPERATION_FAILED);
        fault.appTag = "too-few-elements";
        run_.faults.Add(fault, {"\"", list.name, "\" has too few entries"});
    }
    void AskChoice(Element &parent, const PlanNode &choice)
    {
        const PlanNode *chosen = FindCase(run_, parent, choice);
        if (choice.Is(PlanNode::kConfig) == isConfig_)
            JudgeChoice(parent, choice, chosen);
        if (chosen == nullptr)
            return;
        if (chosen->kind == ZR_NODE_CASE)
            Ask(parent, *chosen);
        else
            AskOne(parent, *chosen);
    }
    void JudgeChoice(Element &parent, const PlanNode &choice, const PlanNode *chosen)
    {
        if (chosen == nullptr) {
            if (choice.Is(PlanNode::kMandatory) && !run_.IsEdit() &&
                IsAllowed(run_, parent, choice))
                MissChoice(parent, choice);
            return;
        }
        for (const PlanNode *other : choice.children)
            if (other != chosen && IsPresent(run_, parent, *other))
                run_.faults.Add(FaultAt(*FirstOf(run_, parent, *other), ZR_ERROR_TAG_BAD_ELEMENT),
                                {"\"", other->name, "\" and \"", chosen->name, "\" of choice \"",
                                 choice.name, "\" exclude each other"});
    }
    // The path leads to the node that lacks it (RFC 7950, section 15.6).
    void MissChoice(Element &parent, const PlanNode &choice)
    {
        Fault fault = FaultBelow(parent, choice, ZR_ERROR_TAG_DATA_MISSING);
        fault.child = {};
        fault.appTag = "missing-choice";
        fault.missingChoice = choice.name;
        run_.faults.Add(fault, {"nothing of choice \"", choice.name, "\" is there"});
    }

    Run &run_;
    bool isConfig_;
};

} // namespace

void CheckMandatory(Run &run)
{
    ForEachView(run, [&](bool isConfig) {
        Asker asker(run, isConfig);
        if (!run.tree.root.isContext)
            asker.Ask(run.tree.root, run.plan.root);
        for (size_t i = 0; i < run.tree.elements.size(); ++i) { // placeholders come and go
            Element &element = *run.tree.elements[i];
            if (element.plan->Is(PlanNode::kAsks) && !element.isContext)
                asker.Ask(element, *element.plan);
        }
    });
}

} // namespace zr::data
