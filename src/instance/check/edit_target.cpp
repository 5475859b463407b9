// SPDX-License-Identifier: Apache-2.0
#include "instance/check/edit_target.h"

#include <algorithm>

namespace zr::data {

namespace {

class TargetChecker {
public:
    TargetChecker(Run &run, Run &store) : run_(run), store_(store), found_(run.memory) {}

    // Walks the edit, which may be of any depth, and beside it the datastore.
    void Check()
    {
        std::pmr::vector<Element *> parents({&store_.tree.root}, run_.memory);
        Element *at = ElementOf(run_.tree.doc.children);
        while (at != nullptr) {
            Element *target = nullptr;
            if (Visit(*at, parents.back(), target) && at->node.children != nullptr) {
                parents.push_back(target);
                at = ElementOf(at->node.children);
                continue;
            }
            while (at->node.next == nullptr && at->parent != &run_.tree.root) {
                at = at->parent;
                parents.pop_back();
            }
            at = ElementOf(at->node.next);
        }
    }

    // Entries stand before or after one that is there, also by this edit.
    void CheckAnchors()
    {
        for (const EditAnchor &anchor : run_.anchors) {
            if (IsThere(anchor))
                continue;
            Fault fault = FaultAt(*anchor.entry, ZR_ERROR_TAG_BAD_ATTRIBUTE);
            fault.appTag = "missing-instance";
            fault.badAttribute = anchor.attribute;
            run_.faults.Add(
                fault, {"the entry that attribute \"", anchor.attribute, "\" names is not there"});
        }
    }

private:
    // Whether what stands in an element is to be looked at: not in what goes away or replaces all.
    bool Visit(Element &element, Element *parent, Element *&target)
    {
        const PlanNode &plan = *element.plan;
        if (plan.Is(PlanNode::kKey)) // it comes and goes with its entry
            return false;
        target = parent == nullptr ? nullptr : FindLike(*parent, element);
        // Containers without presence are always there, unless they are to be deleted.
        bool isAlways = plan.kind == ZR_NODE_CONTAINER && !plan.Is(PlanNode::kPresence);
        bool isAsked = element.operation == Operation::Delete ||
                       (element.operation == Operation::None && !isAlways);
        if (target != nullptr && element.operation == Operation::Create) {
            run_.faults.Add(FaultAt(element, ZR_ERROR_TAG_DATA_EXISTS),
                            {"\"", plan.name, "\" is there and cannot be created"});
            return false;
        }
        if (target == nullptr && isAsked) {
            run_.faults.Add(FaultAt(element, ZR_ERROR_TAG_DATA_MISSING),
                            {"\"", plan.name, "\" is not there"});
            return false;
        }
        return !element.IsDeleted() && element.operation != Operation::Replace && !plan.IsLeaf() &&
               !plan.IsAny();
    }

    bool IsThere(const EditAnchor &anchor)
    {
        const Element &entry = *anchor.entry;
        const Element *other = Find(run_, *entry.parent, *entry.plan, anchor.values);
        if (other != nullptr)
            return other != &entry;
        Element *parent = FindTarget(*entry.parent);
        return parent != nullptr && Find(store_, *parent, *entry.plan, anchor.values) != nullptr;
    }

    Element *FindTarget(const Element &element)
    {
        std::pmr::vector<const Element *> way(run_.memory);
        for (const Element *at = &element; at->parent != nullptr; at = at->parent)
            way.push_back(at);
        Element *target = &store_.tree.root;
        for (auto step = way.rbegin(); step != way.rend() && target != nullptr; ++step)
            target = FindLike(*target, **step);
        return target;
    }

    // The node of the datastore that an element of the edit means.
    Element *FindLike(Element &parent, const Element &element)
    {
        const PlanNode &plan = *element.plan;
        if (!plan.IsRepeated())
            return store_.tree.First(parent, plan);
        std::pmr::vector<std::string_view> values(run_.memory);
        if (plan.kind == ZR_NODE_LEAF_LIST)
            values.push_back(element.value);
        for (const PlanNode *key : plan.keys) {
            const Element *leaf = run_.tree.First(element, *key);
            if (leaf == nullptr)
                return nullptr;
            values.push_back(leaf->value);
        }
        return Find(store_, parent, plan, values);
    }

    // An entry by its keys or its value, which is not deleted.
    Element *Find(Run &in, Element &parent, const PlanNode &plan,
                  std::span<const std::string_view> values)
    {
        found_.clear();
        if (plan.kind == ZR_NODE_LEAF_LIST) {
            in.references.FindValues(parent, plan, values[0], found_);
        } else {
            std::pmr::vector<References::Wanted> wanted(run_.memory);
            for (size_t i = 0; i < values.size(); ++i)
                wanted.push_back({plan.keys[i], values.subspan(i, 1)});
            in.references.FindEntries(parent, plan, wanted, found_);
        }
        auto found = std::find_if(found_.begin(), found_.end(),
                                  [](const Element *at) { return !at->IsDeleted(); });
        return found == found_.end() ? nullptr : *found;
    }

    Run &run_, &store_;
    std::pmr::vector<Element *> found_;
};

} // namespace

void CheckTargets(Run &run)
{
    if (run.options.datastore == nullptr)
        return;
    ZrDataOptions options = run.options;
    options.kind = ZR_DATA_CONFIG_AND_STATE;
    Run store(run.plan, options, run.memory);
    ReadDatastore(store, run.warnings);
    store.references.Settle();
    run.references.Settle();
    TargetChecker checker(run, store);
    checker.Check();
    checker.CheckAnchors();
}

} // namespace zr::data
