// SPDX-License-Identifier: Apache-2.0
// The instance tree: the data as the checks and libxml2's XPath see it. Its nodes are libxml2's by
// shape alone: they stand in an arena, are never given to a function of libxml2 that changes or
// frees them, and hold canonical values.
#pragma once

#include <libxml/tree.h>

#include <memory_resource>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "instance/base/memory.h"
#include "instance/plan/plan.h"

namespace zr::data {

// What an edit wants of a node (RFC 6241, section 7.2).
enum class Operation : uint8_t {
    None, // it is none of an edit, or as the edit's default says
    Merge,
    Replace,
    Create,
    Delete,
    Remove
};

struct Element {
    xmlNode node; // the first member: an xmlNode of an instance tree is the beginning of an Element
    const PlanNode *plan;
    const xmlNode *source;  // in the caller's tree; null for a default
    Element *parent;        // the tree's root for a top-level node; null for the root
    Element *nextSame;      // the next instance of the same schema node in the same parent
    Element *lastSame;      // of the first such instance: the last one
    Element **firsts;       // the first instance of each of the plan's dataChildren
    std::string_view value; // of a leaf: canonical; NUL-terminated
    const Type *type;       // of a leaf: the member of a union that took the value, or the leaf's
    uint32_t order;      // among the elements of the data; what defaults stand in has it, for them
    Operation operation; // its own, or that of the element it stands in
    bool isDefault;
    bool isTagged; // stands in the data, which says that it is a default (RFC 6243, section 6)
    // Its value is none of its type, or a key is missing: not to be looked into again.
    bool isFaulty;
    // Conditions see it, but it is not judged: it is of the datastore that a message is held
    // against, or leads to the message.
    bool isContext;

    bool IsDeleted() const
    {
        return operation == Operation::Delete || operation == Operation::Remove;
    }
};

inline Element *ElementOf(xmlNode *node)
{
    return reinterpret_cast<Element *>(node);
}

class Tree {
public:
    Tree(Arena &arena, const Plan &plan, std::pmr::memory_resource *memory);

    // Appends a child. Leafs have their value set by SetValue(), which is not copied.
    Element *Add(Element &parent, const PlanNode &plan, const xmlNode *source, uint32_t order);
    void SetValue(Element &leaf, std::string_view value, const Type *type);
    // The member of a union with references that took the value of a leaf; `given` is the text of a
    // default, as the schema has it.
    struct Member {
        uint32_t number;
        std::string_view given;
    };
    void SetMember(const Element &leaf, uint32_t number, std::string_view given)
    {
        if (leaf.plan->type->hasReferences)
            members.insert_or_assign(&leaf, Member{number, given});
    }
    // Takes out the child that was added last.
    void RemoveLast(Element &child);
    // Whether conditions see what is no configuration: those of configuration do not (RFC 7950,
    // section 6.4.1). Each change costs as much as there is of it.
    void ShowState(bool isShown);
    bool HasState() const { return !states_.empty(); }
    bool IsVisible(const PlanNode &plan) const
    {
        return isStateShown_ || plan.Is(PlanNode::kConfig);
    }

    // Makes ready for XPath what is made when the first condition comes alone: the texts of leafs,
    // and the places of nodes in document order, which make libxml2 fast at sorting them.
    void Prepare()
    {
        if (!hasTexts_)
            MakeTexts();
        if (isWhole_ && !isNumbered_)
            Number();
    }
    // Takes nodes out of what conditions see, until they are put back in the order of a stack.
    void Hide(Element &element)
    {
        if (IsVisible(*element.plan) || !element.parent->plan->Is(PlanNode::kConfig))
            Unlink(element.node);
    }
    void Unhide(Element &element)
    {
        if (IsVisible(*element.plan) || !element.parent->plan->Is(PlanNode::kConfig))
            Link(element.node, element.node.prev);
    }
    // From here on nothing is added that stays.
    void Complete() { isWhole_ = true; }

    Element *First(const Element &parent, const PlanNode &child) const
    {
        return parent.firsts == nullptr ? nullptr : parent.firsts[child.slot];
    }

    Arena &arena;
    xmlDoc doc = {};
    Element root = {};
    // Those of which something is asked, in document order, defaults behind their time of adding.
    std::pmr::vector<Element *> elements;
    std::pmr::unordered_map<const Element *, Member> members;

private:
    void MakeTexts();
    void AddText(Element &leaf);
    void Number();
    template <typename Work> void ForEachNode(Work work);
    void Link(xmlNode &node, xmlNode *before);
    void Unlink(xmlNode &node);

    std::pmr::vector<Element *> states_; // those in configuration, in their order of adding
    bool isStateShown_ = true;
    bool hasTexts_ = false, isWhole_ = false, isNumbered_ = false;
};

} // namespace zr::data
