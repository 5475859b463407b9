#include "data/default_list.h"

#include "data/data_tree.h"
#include "platform/memory.h"

// A marked element points back at its entry through `psvi`, a field that libxml2 uses in text nodes
// and in schema validation alone: taking one of 100,000 out of the list needs no search.

namespace {

ZrdDefaultNodeEntry *EntryOf(const xmlNode *element)
{
    return static_cast<ZrdDefaultNodeEntry *>(element->psvi);
}

void FreeEntry(ZrdDefaultNodeEntry *entry)
{
    entry->link.prev->next = entry->link.next;
    entry->link.next->prev = entry->link.prev;
    entry->node->psvi = nullptr;
    zr::Free(entry);
}

} // namespace

uint32_t ZRD_PAS_IsDefaultAddNode(const xmlNode *node)
{
    return node != nullptr && node->type == XML_ELEMENT_NODE && node->line == ZRD_DEFAULT_MARK;
}

void ZRD_PAS_ClearDefaultNodeTreeFlag(xmlNode *node)
{
    for (xmlNode *each = node; each != nullptr; each = zr::NextElement(node, each)) {
        each->line = 0;
        for (xmlNode *child = each->children; child != nullptr; child = child->next)
            child->line = 0;
    }
}

uint32_t ZRD_PAS_AddDefaultNodeToList(ZrListLink *list, xmlNode *element)
{
    if (!ZRD_PAS_IsDefaultAddNode(element) || ZRD_PAS_IsDefaultAddNode(element->parent))
        return ZR_OK;
    auto *entry = zr::AllocRecord<ZrdDefaultNodeEntry>();
    if (entry == nullptr)
        return ZR_ERR_NO_MEMORY;
    entry->node = element;
    entry->link.next = list->next;
    entry->link.prev = list;
    list->next->prev = &entry->link;
    list->next = &entry->link;
    element->psvi = entry;
    return ZR_OK;
}

void ZRD_PAS_RemoveDefaultNodeFromList(ZrListLink *, xmlNode *element)
{
    if (ZRD_PAS_IsDefaultAddNode(element) && EntryOf(element) != nullptr)
        FreeEntry(EntryOf(element));
}

void ZRD_PAS_DeleteDefaultAddNode(ZrdCheckAux *check, xmlNode *element)
{
    if (!ZRD_PAS_IsDefaultAddNode(element->parent))
        ZRD_PAS_RemoveDefaultNodeFromList(&check->defaults, element);
    zr::RemoveNode(element);
}

void ZRD_PAS_ClearDefaultNodeList(ZrdCheckAux *check, uint32_t keep)
{
    while (check->defaults.next != &check->defaults) {
        auto *entry = reinterpret_cast<ZrdDefaultNodeEntry *>(check->defaults.next);
        xmlNode *element = entry->node;
        FreeEntry(entry);
        if (keep != 1) {
            zr::RemoveNode(element);
            continue;
        }
        ZRD_PAS_ClearDefaultNodeTreeFlag(element);
        if (check->callback != nullptr)
            check->callback(element, check->userData);
    }
}
