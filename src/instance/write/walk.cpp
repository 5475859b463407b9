// SPDX-License-Identifier: Apache-2.0
#include "instance/write/walk.h"

#include <algorithm>
#include <vector>

#include "instance/tree/value.h"

namespace zr::data {

namespace {

class Selection {
public:
    Selection(const Plan &plan, uint32_t mode, std::pmr::memory_resource *memory)
        : plan_(plan), mode_(mode), value_(memory)
    {
    }

    // Whether an instance, and with it all of its schema node in the same parent, is written.
    bool Shows(const Element &first)
    {
        bool showsAll = mode_ == ZR_DATA_REPORT_ALL || mode_ == ZR_DATA_REPORT_ALL_TAGGED;
        if (showsAll)
            return !first.isDefault || first.plan->IsLeaf() || HoldsLeafs(first);
        if (first.isDefault)
            return false;
        return !first.plan->IsLeaf() || first.plan->Is(PlanNode::kKey) || !IsLeftOut(first) ||
               !IsInUseWithout(first);
    }
    bool Tags(const Element &leaf) const
    {
        return mode_ == ZR_DATA_REPORT_ALL_TAGGED && (leaf.isDefault || leaf.isTagged);
    }

private:
    // A container that is there by default says nothing when nothing is in it.
    static bool HoldsLeafs(const Element &container)
    {
        for (const PlanNode *child : container.plan->dataChildren)
            if (const Element *at = container.firsts[child->slot])
                if (!at->isDefault || child->IsLeaf() || HoldsLeafs(*at))
                    return true;
        return false;
    }
    bool IsLeftOut(const Element &first)
    {
        return mode_ == ZR_DATA_TRIM ? HasDefaults(first) : IsWhollyTagged(first);
    }
    static bool IsWhollyTagged(const Element &first)
    {
        for (const Element *at = &first; at != nullptr; at = at->nextSame)
            if (!at->isTagged)
                return false;
        return true;
    }
    // Whether the values are those that the schema gives, in its order.
    bool HasDefaults(const Element &first)
    {
        const Element *at = &first;
        for (std::string_view text : first.plan->defaults) {
            if (at == nullptr)
                return false;
            ValueScope scope{plan_, *first.plan, nullptr};
            if (ReadValue(scope, *first.plan->type, text, value_).fault != nullptr ||
                value_ != at->value)
                return false;
            at = at->nextSame;
        }
        return at == nullptr;
    }
    // A default is in use only when its case is selected, by something else in it or by default
    // (RFC 7950, section 7.6.1).
    bool IsInUseWithout(const Element &leaf)
    {
        const PlanNode *inner = leaf.plan;
        for (const PlanNode *at = inner->schemaParent; at->IsChoiceOrCase();
             at = at->schemaParent) {
            if (at->kind == ZR_NODE_CHOICE && at->defaultCase != inner &&
                !IsSelected(*leaf.parent, *inner))
                return false;
            inner = at;
        }
        return true;
    }
    // Whether something in a case is there that is not left out.
    bool IsSelected(const Element &parent, const PlanNode &node)
    {
        if (node.IsChoiceOrCase())
            return std::any_of(node.children.begin(), node.children.end(),
                               [&](const PlanNode *child) { return IsSelected(parent, *child); });
        const Element *first = parent.firsts[node.slot];
        return first != nullptr && !first->isDefault && (!node.IsLeaf() || !IsLeftOut(*first));
    }

    const Plan &plan_;
    uint32_t mode_;
    std::pmr::string value_;
};

struct Frame {
    const Element *element;
    size_t next;          // the child to look at next: keys, then the others
    const Element *first; // of the group that is open
    const Element *at;    // its next instance
};

// The children of an element, keys first. Returns the first instance of the next one that is there.
const Element *NextChild(Frame &frame)
{
    const PlanNode &plan = *frame.element->plan;
    size_t keys = plan.keys.size();
    while (frame.next < keys + plan.dataChildren.size()) {
        size_t number = frame.next++;
        const PlanNode *child =
            number < keys ? plan.keys[number] : plan.dataChildren[number - keys];
        bool isDone = number >= keys && child->Is(PlanNode::kKey);
        const Element *first = frame.element->firsts[child->slot];
        if (!isDone && first != nullptr)
            return first;
    }
    return nullptr;
}

} // namespace

void Walk(const Plan &plan, const Tree &tree, uint32_t defaults, std::pmr::memory_resource *memory,
          Listener &listener)
{
    Selection selection(plan, defaults, memory);
    std::pmr::vector<Frame> frames(memory);
    frames.push_back({&tree.root, 0, nullptr, nullptr});
    while (!frames.empty()) {
        Frame &frame = frames.back();
        if (const Element *at = frame.at) {
            frame.at = at->nextSame;
            if (at->plan->IsLeaf()) {
                listener.Leaf(*at, selection.Tags(*at));
            } else if (at->plan->IsAny()) {
                listener.Any(*at);
            } else {
                listener.Open(*at);
                frames.push_back({at, 0, nullptr, nullptr});
            }
            continue;
        }
        if (frame.first != nullptr && frame.first->plan->IsRepeated())
            listener.CloseGroup(*frame.first);
        do
            frame.first = NextChild(frame);
        while (frame.first != nullptr && !selection.Shows(*frame.first));
        frame.at = frame.first;
        if (frame.first == nullptr) {
            const Element *element = frame.element;
            frames.pop_back();
            if (!frames.empty())
                listener.Close(*element);
        } else if (frame.first->plan->IsRepeated()) {
            listener.OpenGroup(*frame.first);
        }
    }
}

} // namespace zr::data
