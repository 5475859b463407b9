// SPDX-License-Identifier: Apache-2.0
// The search for mandatory nodes that are missing, by kind of schema node.
#include <zrschema/node.h>

#include <iterator>

#include "data/element.h"
#include "data/element_conditions.h"
#include "data/error_record.h"
#include "data/phases.h"
#include "data/tree_changes.h"
#include "foundation/array.h"
#include "model/node_record.h"

namespace {

using MandatoryFunc = uint32_t (*)(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode);

struct MandatoryRow {
    ZrNodeKind kind;
    MandatoryFunc check;
};

constexpr MandatoryRow kMandatory[] = {
    {ZR_NODE_UNKNOWN, nullptr},
    {ZR_NODE_CONTAINER, ZRD_PAS_CheckContainerMandatory},
    {ZR_NODE_LEAF, ZRD_PAS_CheckDataNodeWithMandatory},
    {ZR_NODE_LEAF_LIST, nullptr},
    {ZR_NODE_LIST, ZRD_PAS_CheckListMandatory},
    {ZR_NODE_CHOICE, ZRD_PAS_CheckChoiceMandatory},
    {ZR_NODE_CASE, ZRD_PAS_CheckCaseMandatory},
    {ZR_NODE_ANYDATA, ZRD_PAS_CheckDataNodeWithMandatory},
    {ZR_NODE_ANYXML, ZRD_PAS_CheckDataNodeWithMandatory},
    {ZR_NODE_ACTION, ZRD_PAS_CheckRpcMandatory},
    {ZR_NODE_RPC, ZRD_PAS_CheckRpcMandatory},
    {ZR_NODE_NOTIFICATION, ZRD_PAS_CheckNotifMandatory},
    {ZR_NODE_INPUT, ZRD_PAS_CheckInputMandatory},
    {ZR_NODE_OUTPUT, nullptr},
    {ZR_NODE_AUGMENT, nullptr},
};
static_assert(std::size(kMandatory) == ZR_NODE_AUGMENT + 1);
static_assert(zr::RowsInOrder(kMandatory, &MandatoryRow::kind));

// An element that stands for a missing node while its conditions are asked; it leaves the tree at
// the end of the scope.
class TemporaryElement {
public:
    TemporaryElement(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode)
        : check_(check), element_(ZRD_NODE_CreateNewChildNode(parent, schemaNode))
    {
        if (element_ != nullptr)
            zr::NoteAdded(check_, element_);
    }
    TemporaryElement(const TemporaryElement &) = delete;
    TemporaryElement &operator=(const TemporaryElement &) = delete;
    ~TemporaryElement()
    {
        if (element_ == nullptr)
            return;
        zr::NoteRemoval(check_, element_);
        zr::RemoveNode(element_);
    }
    xmlNode *get() const { return element_; }

private:
    ZrdCheckAux *check_;
    xmlNode *element_;
};

// Whether the node that is missing below the parent would have to be there: its conditions hold.
uint32_t WouldApply(ZrdCheckAux *check, const TemporaryElement &missing, uint32_t *applies)
{
    *applies = 0;
    if (missing.get() == nullptr)
        return ZR_ERR_INVALID;
    return ZRD_PAS_EvalDataNodeWhenCond(check, missing.get(), applies);
}

} // namespace

uint32_t ZR_PAS_CheckTreeMandatory(ZrdCheckAux *check, xmlNode *element)
{
    if (element == nullptr || (check->mode & (ZRD_MODE_RPC | ZRD_MODE_NOTIF)) == 0)
        return ZR_ERR_INVALID;
    return ZR_PAS_CheckSubtreeMandatory(check, element, zr::SchemaOf(element));
}

uint32_t ZR_PAS_CheckSubtreeMandatory(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode)
{
    if (element == nullptr || schemaNode == nullptr)
        return ZR_ERR_INVALID;
    MandatoryFunc checkKind =
        schemaNode->kind < std::size(kMandatory) ? kMandatory[schemaNode->kind].check : nullptr;
    if (checkKind == nullptr || !ZR_NODE_IsEnabled(schemaNode))
        return ZR_OK;
    return checkKind(check, element, schemaNode);
}

uint32_t ZRD_PAS_CheckAllSchemaChildMandatory(ZrdCheckAux *check, xmlNode *element,
                                              ZrNode *schemaNode)
{
    uint32_t status = ZR_OK;
    for (ZrNode *child = schemaNode->firstChild; child != nullptr && status == ZR_OK;
         child = child->next)
        status = ZR_PAS_CheckSubtreeMandatory(check, element, child);
    return status;
}

uint32_t ZRD_PAS_CheckDataNodeWithMandatory(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode)
{
    if (!ZR_NODE_IsMandatory(schemaNode) ||
        ZRD_NODE_GetChildNodeWithSpecifyMdl(parent, schemaNode) != nullptr)
        return ZR_OK;
    TemporaryElement missing(check, parent, schemaNode);
    uint32_t applies = 0;
    uint32_t status = WouldApply(check, missing, &applies);
    if (status != ZR_OK || applies == 0)
        return status;
    return zr::RecordFault(check, zr::Fault::MissingElement, parent, schemaNode->name,
                           schemaNode->name);
}

uint32_t ZRD_PAS_CheckContainerMandatory(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode)
{
    if (xmlNode *present = ZRD_NODE_GetChildNodeWithSpecifyMdl(parent, schemaNode))
        return ZRD_PAS_CheckAllSchemaChildMandatory(check, present, schemaNode);
    if (ZR_NODE_IsPresenceContainer(schemaNode))
        return ZR_OK;
    // A non-presence container is there in spirit: what is mandatory inside is missing.
    TemporaryElement missing(check, parent, schemaNode);
    uint32_t applies = 0;
    uint32_t status = WouldApply(check, missing, &applies);
    if (status != ZR_OK || applies == 0)
        return status;
    return ZRD_PAS_CheckAllSchemaChildMandatory(check, missing.get(), schemaNode);
}

uint32_t ZRD_PAS_CheckListMandatory(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode)
{
    uint32_t status = ZR_OK;
    for (xmlNode *child = parent->children; child != nullptr && status == ZR_OK;
         child = child->next) {
        if (zr::SchemaOf(child) == schemaNode)
            status = ZRD_PAS_CheckAllSchemaChildMandatory(check, child, schemaNode);
    }
    return status;
}

uint32_t ZRD_PAS_CheckChoiceMandatory(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode)
{
    ZrNode *branch = ZRD_NODE_GetChoiceInstanceCaseBranch(parent, schemaNode);
    if (branch == nullptr)
        branch = ZRD_MDL_GetChoiceDefaultChildNode(schemaNode);
    if (branch != nullptr)
        return ZR_PAS_CheckSubtreeMandatory(check, parent, branch);
    if (!ZR_NODE_IsMandatory(schemaNode))
        return ZR_OK;
    return zr::RecordFault(check, zr::Fault::MissingChoice, parent, zr::NameOf(parent),
                           schemaNode->name);
}

uint32_t ZRD_PAS_CheckCaseMandatory(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode)
{
    return ZRD_PAS_CheckAllSchemaChildMandatory(check, parent, schemaNode);
}

uint32_t ZRD_PAS_CheckRpcMandatory(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode)
{
    ZrNode *input = zr::InputOf(schemaNode);
    if (input == nullptr)
        return ZR_OK;
    return ZR_PAS_CheckSubtreeMandatory(check, element, input);
}

uint32_t ZRD_PAS_CheckNotifMandatory(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode)
{
    return ZRD_PAS_CheckAllSchemaChildMandatory(check, element, schemaNode);
}

uint32_t ZRD_PAS_CheckInputMandatory(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode)
{
    return ZRD_PAS_CheckAllSchemaChildMandatory(check, element, schemaNode);
}
