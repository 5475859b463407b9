#include "instance/tree/element.h"

#include <libxml/parserInternals.h>

#include <cstddef>

#include "instance/base/text.h"

namespace zr::data {

Tree::Tree(Arena &anArena, const Plan &plan, std::pmr::memory_resource *memory)
    : arena(anArena), elements(memory)
{
    doc.type = XML_DOCUMENT_NODE;
    doc.doc = &doc;
    root.plan = &plan.root;
    root.firsts = arena.NewArray<Element *>(plan.root.slotCount);
}

Element *Tree::Add(Element &parent, const PlanNode &plan, const xmlNode *source, uint32_t order)
{
    auto *element = arena.NewArray<Element>(1);
    elements.push_back(element);
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
    bool isTop = &parent == &root;
    node.parent = isTop ? reinterpret_cast<xmlNode *>(&doc) : &parent.node;
    xmlNode *&first = isTop ? doc.children : parent.node.children;
    xmlNode *&last = isTop ? doc.last : parent.node.last;
    node.prev = last;
    (last != nullptr ? last->next : first) = &node;
    last = &node;

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
    leaf.value = {arena.CopyText(value), value.size()};
    leaf.type = type;
    if (value.empty())
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
    Element &parent = *child.parent;
    bool isTop = &parent == &root;
    xmlNode *&first = isTop ? doc.children : parent.node.children;
    xmlNode *&last = isTop ? doc.last : parent.node.last;
    last = child.node.prev;
    (last != nullptr ? last->next : first) = nullptr;
    parent.firsts[child.plan->slot] = nullptr; // it was absent before
    elements.pop_back();
}

void Tree::Number()
{
    ptrdiff_t number = 0;
    xmlNode *at = doc.children;
    while (at != nullptr) {
        if (at->type == XML_ELEMENT_NODE) // where libxml2 itself keeps it
            at->content = reinterpret_cast<xmlChar *>(-++number);
        if (at->children != nullptr) {
            at = at->children;
            continue;
        }
        while (at->next == nullptr && at->parent != reinterpret_cast<xmlNode *>(&doc))
            at = at->parent;
        at = at->next;
    }
}

} // namespace zr::data
