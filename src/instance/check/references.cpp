// SPDX-License-Identifier: Apache-2.0
// What values refer to: leafrefs and instance-identifiers with "require-instance", also as members
// of unions (RFC 7950, sections 9.9, 9.12 and 9.13).
#include "instance/base/text.h"
#include "instance/check/run.h"
#include "instance/tree/value.h"

namespace zr::data {

namespace {

// Whether a node is in data that the check was not given: outside a message without a datastore.
bool IsElsewhere(const Run &run, const PlanNode *target)
{
    if (!run.tree.root.isContext || run.options.datastore != nullptr)
        return false;
    while (target != nullptr && !target->IsMessage())
        target = target->parent;
    return target == nullptr;
}

// Whether what a value refers to is there; true where that cannot be known.
bool Exists(Run &run, Element &leaf, const Type &reference, std::string_view value)
{
    if (reference.base == ZRT_TYPE_LEAFREF)
        return reference.target == nullptr || IsElsewhere(run, reference.target) ||
               run.references.Exists(leaf, reference, value);
    // What configuration refers to is configuration (section 9.13).
    if (const Element *found = run.references.FindPath(value))
        return found->plan->Is(PlanNode::kConfig) || !leaf.plan->Is(PlanNode::kConfig);
    return IsElsewhere(run, run.references.NodeOf(value, *leaf.plan));
}

class UnionSettler {
public:
    explicit UnionSettler(Run &run)
        : run_(run), text_(run.memory), value_(run.memory), changes_(run.memory)
    {
    }

    void Look(Element &leaf)
    {
        const Type &type = *leaf.plan->type;
        auto known = run_.tree.members.find(&leaf);
        if (leaf.isFaulty || known == run_.tree.members.end())
            return;
        const Tree::Member &member = known->second;
        if (IsTaken(leaf, *type.members[member.number], leaf.value))
            return;
        text_ = member.given;
        if (leaf.source != nullptr)
            AppendText(text_, *leaf.source);
        ValueScope scope{run_.plan, *leaf.plan, leaf.source};
        ValueResult result;
        for (uint32_t next = member.number + 1; result.fault == nullptr; next = result.member + 1) {
            result = ReadMember(scope, type, next, text_, value_);
            if (result.fault == nullptr && IsTaken(leaf, *type.members[result.member], value_)) {
                std::string_view value{run_.arena.CopyText(value_), value_.size()};
                changes_.push_back({&leaf, result, value});
                return;
            }
        }
    }
    // All at once, so that it does not matter which value is looked at first.
    void Apply()
    {
        for (const Change &change : changes_) {
            run_.tree.members[change.leaf].number = change.result.member;
            run_.tree.SetValue(*change.leaf, change.value, change.result.type);
        }
        if (!changes_.empty())
            run_.references.Settle();
    }

private:
    struct Change {
        Element *leaf;
        ValueResult result;
        std::string_view value;
    };

    bool IsTaken(Element &leaf, const Type &member, std::string_view value)
    {
        return !member.IsReference() || !member.requiresInstance ||
               Exists(run_, leaf, member, value);
    }

    Run &run_;
    std::pmr::string text_, value_;
    std::pmr::vector<Change> changes_;
};

void AddFault(Run &run, const Element &leaf)
{
    if (leaf.plan->type->hasReferences) {
        run.faults.Add(FaultAt(leaf, ZR_ERROR_TAG_INVALID_VALUE),
                       {"\"", leaf.value, "\" is no value of \"", leaf.plan->name,
                        "\": no member of the union takes it, and what it could refer to is not "
                        "there"});
        return;
    }
    Fault fault = FaultAt(leaf, ZR_ERROR_TAG_DATA_MISSING);
    fault.appTag = "instance-required";
    run.faults.Add(
        fault, {"\"", leaf.plan->name, "\" refers to \"", leaf.value, "\", which is not there"});
}

} // namespace

// Until here the first member that takes the text has it.
void SettleUnions(Run &run)
{
    if (run.tree.members.empty())
        return;
    UnionSettler settler(run);
    for (Element *element : run.tree.elements)
        if (element->plan->type != nullptr && element->plan->type->hasReferences)
            settler.Look(*element);
    settler.Apply();
}

void CheckReferences(Run &run)
{
    for (Element *element : run.tree.elements) {
        const Type *type = element->plan->type;
        if (type == nullptr || !type->requiresInstance || element->isContext || element->isFaulty)
            continue;
        const Type *reference = ReferenceOf(run.tree, *element);
        if (reference != nullptr && reference->requiresInstance &&
            !Exists(run, *element, *reference, element->value))
            AddFault(run, *element);
    }
}

} // namespace zr::data
