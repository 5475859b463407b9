// SPDX-License-Identifier: Apache-2.0
#include "instance/tree/element.h"

#include <libxml/parserInternals.h>

#include <cstddef>

#include "instance/base/text.h"

namespace zr::data {

Tree::Tree(Arena &anArena, const Plan &plan, std::pmr::memory_resource *memory)
    : arena(anArena), elements(memory), members(memory), states_(memory)
{
    doc.type = XML_DOCUMENT_NODE;
    doc.doc = &doc;
    root.plan = &plan.root;
    root.firsts = arena.NewArray<Element *>(plan.root.slotCount);
}

Element *Tree::Add(Element &parent, const PlanNode &plan, const xmlNode *source, uint32_t order)
{
    auto *element = arena.NewArray<Element>(1);
    if (plan.Is(PlanNode::kWatched))
        elements.push_back(element);
    if (!plan.Is(PlanNode::kConfig) && parent.plan->Is(PlanNode::kConfig)) {
        ShowState(true);
        states_.push_back(element);
    }
    element->plan = &plan;
    element->source = source;
    element->order = order;
    element->parent = &parent;
    element->operation = parent.operation;
    element->isContext = parent.isContext;
    if (plan.slotCount != 0)
        element->firsts = arena.NewArray<Element *>(plan.slotCount);

    xmlNode &node = element->node;
    node.type = XML_ELEMENT_NODE;
    node.name = XmlText(plan.name);
    node.ns = const_cast<xmlNs *>(&plan.module->xml); // only read
    node.doc = &doc;
    // A document has its children where other nodes have theirs.
    node.parent = &parent == &root ? reinterpret_cast<xmlNode *>(&doc) : &parent.node;
    Link(node, node.parent->last);

    Element *&same = parent.firsts[plan.slot];
    if (same == nullptr)
        same = element;
    else
        same->lastSame->nextSame = element;
    same->lastSame = element;
    return element;
}

void Tree::SetValue(Element &leaf, std::string_view value, const Type *type)
{
    leaf.value = value;
    leaf.type = type;
    if (hasTexts_)
        AddText(leaf);
}

void Tree::AddText(Element &leaf)
{
    leaf.node.children = leaf.node.last = nullptr;
    if (leaf.value.empty())
        return;
    auto *text = arena.NewArray<xmlNode>(1);
    text->type = XML_TEXT_NODE;
    text->name = xmlStringText;
    text->doc = &doc;
    text->parent = &leaf.node;
    text->content = const_cast<xmlChar *>(XmlText(leaf.value.data()));
    leaf.node.children = leaf.node.last = text;
}

void Tree::RemoveLast(Element &child)
{
    Unlink(child.node);
    child.parent->firsts[child.plan->slot] = nullptr; // it was absent before
    if (!elements.empty() && elements.back() == &child)
        elements.pop_back();
    if (!states_.empty() && states_.back() == &child)
        states_.pop_back();
}

// Puts a node behind another one; as the first for null.
void Tree::Link(xmlNode &node, xmlNode *before)
{
    xmlNode *&forward = before != nullptr ? before->next : node.parent->children;
    node.prev = before;
    node.next = forward;
    (node.next != nullptr ? node.next->prev : node.parent->last) = &node;
    forward = &node;
}

// The node keeps what it stands behind.
void Tree::Unlink(xmlNode &node)
{
    (node.prev != nullptr ? node.prev->next : node.parent->children) = node.next;
    (node.next != nullptr ? node.next->prev : node.parent->last) = node.prev;
}

// Taken out from the last to the first, each stands behind one that is still there when they are
// put back from the first to the last.
void Tree::ShowState(bool isShown)
{
    if (isShown == isStateShown_)
        return;
    isStateShown_ = isShown;
    if (isShown)
        for (Element *element : states_)
            Link(element->node, element->node.prev);
    else
        for (auto element = states_.rbegin(); element != states_.rend(); ++element)
            Unlink((*element)->node);
}

// Calls `work` with each node in document order; a text that it adds is passed over.
template <typename Work> void Tree::ForEachNode(Work work)
{
    bool wasShown = isStateShown_;
    ShowState(true);
    xmlNode *at = doc.children;
    while (at != nullptr) {
        if (at->type == XML_ELEMENT_NODE)
            work(*ElementOf(at));
        if (at->children != nullptr) {
            at = at->children;
            continue;
        }
        while (at->next == nullptr && at->parent != reinterpret_cast<xmlNode *>(&doc))
            at = at->parent;
        at = at->next;
    }
    ShowState(wasShown);
}

void Tree::MakeTexts()
{
    hasTexts_ = true;
    ForEachNode([&](Element &element) {
        if (element.plan->IsLeaf())
            AddText(element);
    });
}

void Tree::Number()
{
    isNumbered_ = true;
    ptrdiff_t number = 0;
    ForEachNode([&](Element &element) { // where libxml2 itself keeps it
        element.node.content = reinterpret_cast<xmlChar *>(-++number);
    });
}

} // namespace zr::data
