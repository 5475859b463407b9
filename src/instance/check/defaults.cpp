// SPDX-License-Identifier: Apache-2.0
// Defaults that are in use (RFC 7950, sections 7.6.1 and 7.7.2), and the non-presence containers
// that conditions see (section 6.4.1), become part of the instance tree.
#include "instance/check/conditions.h"
#include "instance/tree/value.h"

namespace zr::data {

namespace {

class Filler {
public:
    // Adds configuration, or the rest, of one rank.
    Filler(Run &run, bool isConfig, uint32_t rank)
        : run_(run), isConfig_(isConfig), rank_(rank), value_(run.memory)
    {
    }

    void Fill(Element &parent, const PlanNode &schemaNode)
    {
        if (schemaNode.lastRank < rank_)
            return;
        for (const PlanNode *child : schemaNode.children)
            FillOne(parent, *child);
    }

private:
    void FillOne(Element &parent, const PlanNode &node)
    {
        if (!run_.Holds(node))
            return;
        if (node.kind == ZR_NODE_CHOICE)
            FillChoice(parent, node);
        else if (node.Is(PlanNode::kConfig) != isConfig_ || node.rank != rank_ ||
                 run_.tree.First(parent, node) != nullptr)
            return;
        else if (node.kind == ZR_NODE_CONTAINER && !node.Is(PlanNode::kPresence))
            AddContainer(parent, node);
        else if (!node.defaults.empty() && IsAllowed(run_, parent, node))
            AddValues(parent, node);
    }
    void FillChoice(Element &parent, const PlanNode &choice)
    {
        if (choice.rank > rank_ || choice.lastRank < rank_)
            return;
        const PlanNode *chosen = FindCase(run_, parent, choice);
        if (chosen == nullptr)
            chosen = choice.defaultCase;
        if (chosen == nullptr || !IsAllowed(run_, parent, choice))
            return;
        if (chosen->kind != ZR_NODE_CASE) // it stands in the choice without one
            FillOne(parent, *chosen);
        else if (chosen->rank <= rank_ && IsAllowed(run_, parent, *chosen))
            Fill(parent, *chosen);
    }
    // Its own turn comes when the walk over the elements reaches it.
    void AddContainer(Element &parent, const PlanNode &node)
    {
        if (!IsAllowed(run_, parent, node))
            return;
        run_.tree.Add(parent, node, nullptr, parent.order)->isDefault = true;
    }
    void AddValues(Element &parent, const PlanNode &leaf)
    {
        for (std::string_view text : leaf.defaults) {
            ValueResult result = ReadValue({run_.plan, leaf, nullptr}, *leaf.type, text, value_);
            Element *element = run_.tree.Add(parent, leaf, nullptr, parent.order);
            element->isDefault = true;
            element->isFaulty = result.fault != nullptr;
            std::string_view value = element->isFaulty ? text : value_;
            run_.tree.SetValue(*element, run_.arena.CopyText(value), result.type);
            run_.tree.SetMember(*element, result.member, text);
        }
    }

    Run &run_;
    bool isConfig_;
    uint32_t rank_;
    std::pmr::string value_;
};

} // namespace

void AddDefaults(Run &run)
{
    ForEachView(run, [&](bool isConfig) {
        for (uint32_t rank = 0; rank <= run.plan.lastRank; ++rank) {
            Filler filler(run, isConfig, rank);
            filler.Fill(run.tree.root, run.plan.root);
            for (size_t i = 0; i < run.tree.elements.size(); ++i) // grows meanwhile
                if (run.tree.elements[i]->plan->Is(PlanNode::kFills))
                    filler.Fill(*run.tree.elements[i], *run.tree.elements[i]->plan);
        }
    });
}

} // namespace zr::data
