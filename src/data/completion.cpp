#include "data/completion.h"

#include <zrschema/node.h>

#include <iterator>

#include "data/data_tree.h"
#include "data/schema_query.h"
#include "data/structure.h"
#include "model/node_record.h"
#include "platform/memory.h"

namespace {

using CompleteFunc = uint32_t (*)(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                  uint32_t *added);

// An rpc's or action's output is not completed: what it will hold is not the request's business.
// clang-format off
constexpr CompleteFunc kComplete[] = {
    nullptr,                              //  0 unknown
    ZRD_PAS_CompleteDataTreeForContainer, //  1 container
    ZRD_PAS_CompleteDataTreeForLeaf,      //  2 leaf
    ZRD_PAS_CompleteDataTreeForLeaflist,  //  3 leaf-list
    ZRD_PAS_CompleteDataTreeForList,      //  4 list
    ZRD_PAS_CompleteDataTreeForChoice,    //  5 choice
    ZRD_PAS_CompleteDataTreeForCase,      //  6 case
    nullptr,                              //  7 anydata
    nullptr,                              //  8 anyxml
    ZRD_PAS_CompleteDataTreeForRpc,       //  9 action
    ZRD_PAS_CompleteDataTreeForRpc,       // 10 rpc
    nullptr,                              // 11 notification
    ZRD_PAS_CompleteDataTreeForInput,     // 12 input
    nullptr,                              // 13 output
    nullptr,                              // 14 augment
};
// clang-format on
static_assert(std::size(kComplete) == ZR_NODE_AUGMENT + 1);

uint32_t CompleteChildren(ZrdCheckAux *check, xmlNode *element, const ZrNode *schemaNode,
                          uint32_t *added)
{
    uint32_t status = ZR_OK;
    for (ZrNode *child = schemaNode->firstChild; child != nullptr && status == ZR_OK;
         child = child->next)
        status = ZRD_PAS_CompleteSubTree(check, element, child, added);
    return status;
}

// False where no default can be found: neither an own one nor a typedef that may have one.
bool MayHaveDefault(const ZrsLeafInfo *info)
{
    return info->defaultValue != nullptr || info->realType.baseType == ZRT_TYPE_DERIVED;
}

// An empty non-presence container never stays: it is there only to hold defaults.
uint32_t CompleteAbsentContainer(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                 uint32_t *added)
{
    xmlNode *container = ZRD_NODE_CreateNewChildNode(parent, schemaNode);
    if (container == nullptr)
        return ZR_ERR_NO_MEMORY;
    zr::MarkAsDefault(container);
    uint32_t addedInside = 0;
    uint32_t status = CompleteChildren(check, container, schemaNode, &addedInside);
    if (status == ZR_OK && addedInside != 0)
        status = ZRD_PAS_AddDefaultNodeToList(&check->defaults, container);
    if (status != ZR_OK || addedInside == 0) {
        zr::RemoveNode(container);
        return status;
    }
    *added = 1;
    return ZR_OK;
}

} // namespace

uint32_t ZRD_PAS_CompleteTree(ZrdCheckAux *check, xmlNode *element, uint32_t mode)
{
    if ((mode & ZRD_MODE_RPC) == 0)
        return ZR_OK;
    ZrNode *schemaNode = element != nullptr ? zr::SchemaOf(element) : nullptr;
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    if (kind != ZR_NODE_RPC && kind != ZR_NODE_ACTION)
        return ZR_ERR_INVALID;
    uint32_t added = 0;
    return ZRD_PAS_CompleteSubTree(check, element, schemaNode, &added);
}

uint32_t ZRD_PAS_CompleteSubTree(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                 uint32_t *added)
{
    if (parent == nullptr || schemaNode == nullptr || schemaNode->kind >= std::size(kComplete))
        return ZR_ERR_INVALID;
    CompleteFunc complete = kComplete[schemaNode->kind];
    if (complete == nullptr || !ZR_NODE_IsEnabled(schemaNode))
        return ZR_OK;
    return complete(check, parent, schemaNode, added);
}

uint32_t ZRD_PAS_CompleteDataTreeForContainer(ZrdCheckAux *check, xmlNode *parent,
                                              ZrNode *schemaNode, uint32_t *added)
{
    if (xmlNode *present = ZRD_NODE_GetChildNodeWithSpecifyMdl(parent, schemaNode))
        return CompleteChildren(check, present, schemaNode, added);
    // Something else of that name, another module's container or a text node, is not touched and
    // keeps the container out, as it keeps a leaf out.
    if (ZR_NODE_IsPresenceContainer(schemaNode) ||
        ZRD_PAS_FindChildDataNode(parent, schemaNode->name) != nullptr)
        return ZR_OK;
    return CompleteAbsentContainer(check, parent, schemaNode, added);
}

uint32_t ZRD_PAS_CompleteDataTreeForLeaf(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                         uint32_t *added)
{
    if (schemaNode->info == nullptr)
        return ZR_ERR_INVALID;
    // Most leaves have no default or are there: what is quick to see is asked first.
    if (!MayHaveDefault(static_cast<const ZrsLeafInfo *>(schemaNode->info)) ||
        ZRD_NODE_GetChildNodeWithSpecifyMdl(parent, schemaNode) != nullptr)
        return ZR_OK;
    const char *value = ZR_NODE_GetDefaultValueStr(schemaNode);
    if (value == nullptr || ZRD_PAS_FindChildDataNode(parent, schemaNode->name) != nullptr)
        return ZR_OK;
    xmlNode *leaf = ZRD_PAS_AddNewChildNodeWithValue(parent, schemaNode, value);
    if (leaf == nullptr)
        return ZR_ERR_NO_MEMORY;
    zr::MarkAsDefault(leaf);
    uint32_t status = ZRD_PAS_AddDefaultNodeToList(&check->defaults, leaf);
    if (status != ZR_OK) {
        zr::RemoveNode(leaf);
        return status;
    }
    *added = 1;
    return ZR_OK;
}

// Defaults of leaf-lists are never added.
uint32_t ZRD_PAS_CompleteDataTreeForLeaflist(ZrdCheckAux *, xmlNode *, ZrNode *, uint32_t *)
{
    return ZR_OK;
}

uint32_t ZRD_PAS_CompleteDataTreeForList(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                         uint32_t *added)
{
    uint32_t status = ZR_OK;
    for (xmlNode *child = parent->children; child != nullptr && status == ZR_OK;
         child = child->next) {
        if (zr::SchemaOf(child) == schemaNode)
            status = CompleteChildren(check, child, schemaNode, added);
    }
    return status;
}

uint32_t ZRD_PAS_CompleteDataTreeForChoice(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                           uint32_t *added)
{
    ZrNode *branch = ZRD_NODE_GetChoiceInstanceCaseBranch(parent, schemaNode);
    if (branch == nullptr)
        branch = ZRD_MDL_GetChoiceDefaultChildNode(schemaNode);
    if (branch == nullptr)
        return ZR_OK;
    return ZRD_PAS_CompleteSubTree(check, parent, branch, added);
}

uint32_t ZRD_PAS_CompleteDataTreeForCase(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                         uint32_t *added)
{
    return CompleteChildren(check, parent, schemaNode, added);
}

uint32_t ZRD_PAS_CompleteDataTreeForRpc(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                        uint32_t *added)
{
    return CompleteChildren(check, parent, schemaNode, added);
}

uint32_t ZRD_PAS_CompleteDataTreeForInput(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                          uint32_t *added)
{
    return CompleteChildren(check, parent, schemaNode, added);
}

namespace zr {

namespace {

// The first sibling that an element added behind it should stand before, or the element itself.
xmlNode *PlaceOf(xmlNode *element)
{
    xmlNode *sibling = ElementFrom(element->parent->children);
    while (sibling != element) {
        const ZrNode *schemaNode = SchemaOf(sibling); // null below a mount point
        if (schemaNode != nullptr && ComesBefore(SchemaOf(element), schemaNode))
            break;
        sibling = ElementFrom(sibling->next);
    }
    return sibling;
}

} // namespace

void PlaceDefaults(const ZrdCheckAux *check)
{
    for (const ZrListLink *link = check->defaults.next; link != &check->defaults;
         link = link->next) {
        xmlNode *element = reinterpret_cast<const ZrdDefaultNodeEntry *>(link)->node;
        xmlNode *place = PlaceOf(element);
        if (place != element)
            xmlAddPrevSibling(place, element);
    }
}

} // namespace zr

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
    auto *entry = zr::New<ZrdDefaultNodeEntry>();
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
