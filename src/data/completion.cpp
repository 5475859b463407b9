// SPDX-License-Identifier: Apache-2.0
// Default completion, by kind of schema node.
#include <zrschema/node.h>

#include <iterator>

#include "data/element.h"
#include "data/phases.h"
#include "data/tree_changes.h"
#include "foundation/array.h"
#include "model/node_record.h"

namespace {

using CompleteFunc = uint32_t (*)(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                  uint32_t *added);

struct CompleteRow {
    ZrNodeKind kind;
    CompleteFunc complete;
};

// An rpc's or action's output is not completed: what it will hold is not the request's business.
constexpr CompleteRow kComplete[] = {
    {ZR_NODE_UNKNOWN, nullptr},
    {ZR_NODE_CONTAINER, ZRD_PAS_CompleteDataTreeForContainer},
    {ZR_NODE_LEAF, ZRD_PAS_CompleteDataTreeForLeaf},
    {ZR_NODE_LEAF_LIST, ZRD_PAS_CompleteDataTreeForLeaflist},
    {ZR_NODE_LIST, ZRD_PAS_CompleteDataTreeForList},
    {ZR_NODE_CHOICE, ZRD_PAS_CompleteDataTreeForChoice},
    {ZR_NODE_CASE, ZRD_PAS_CompleteDataTreeForCase},
    {ZR_NODE_ANYDATA, nullptr},
    {ZR_NODE_ANYXML, nullptr},
    {ZR_NODE_ACTION, ZRD_PAS_CompleteDataTreeForRpc},
    {ZR_NODE_RPC, ZRD_PAS_CompleteDataTreeForRpc},
    {ZR_NODE_NOTIFICATION, nullptr},
    {ZR_NODE_INPUT, ZRD_PAS_CompleteDataTreeForInput},
    {ZR_NODE_OUTPUT, nullptr},
    {ZR_NODE_AUGMENT, nullptr},
};
static_assert(std::size(kComplete) == ZR_NODE_AUGMENT + 1);
static_assert(zr::RowsInOrder(kComplete, &CompleteRow::kind));

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
    zr::OwnedElement container(ZRD_NODE_CreateNewChildNode(parent, schemaNode));
    if (!container)
        return ZR_ERR_NO_MEMORY;
    zr::MarkAsDefault(container.get());
    uint32_t addedInside = 0;
    uint32_t status = CompleteChildren(check, container.get(), schemaNode, &addedInside);
    if (status == ZR_OK && addedInside != 0)
        status = ZRD_PAS_AddDefaultNodeToList(&check->defaults, container.get());
    if (status != ZR_OK || addedInside == 0)
        return status;
    static_cast<void>(container.release());
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
    CompleteFunc complete = kComplete[schemaNode->kind].complete;
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
    zr::OwnedElement leaf(ZRD_PAS_AddNewChildNodeWithValue(parent, schemaNode, value));
    if (!leaf)
        return ZR_ERR_NO_MEMORY;
    zr::MarkAsDefault(leaf.get());
    uint32_t status = ZRD_PAS_AddDefaultNodeToList(&check->defaults, leaf.get());
    if (status != ZR_OK)
        return status;
    static_cast<void>(leaf.release());
    *added = 1;
    return ZR_OK;
}

// Defaults of leaf-lists are never added (docs/oddities.md).
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
