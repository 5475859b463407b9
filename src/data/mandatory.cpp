#include "data/mandatory.h"

#include <zrschema/node.h>

#include <iterator>

#include "data/check_run.h"
#include "data/data_tree.h"
#include "data/error_record.h"
#include "data/schema_query.h"
#include "data/when.h"
#include "model/node_record.h"

namespace {

using MandatoryFunc = uint32_t (*)(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode);

// clang-format off
constexpr MandatoryFunc kMandatory[] = {
    nullptr,                            //  0 unknown
    ZRD_PAS_CheckContainerMandatory,    //  1 container
    ZRD_PAS_CheckDataNodeWithMandatory, //  2 leaf
    nullptr,                            //  3 leaf-list
    ZRD_PAS_CheckListMandatory,         //  4 list
    ZRD_PAS_CheckChoiceMandatory,       //  5 choice
    ZRD_PAS_CheckCaseMandatory,         //  6 case
    ZRD_PAS_CheckDataNodeWithMandatory, //  7 anydata
    ZRD_PAS_CheckDataNodeWithMandatory, //  8 anyxml
    ZRD_PAS_CheckRpcMandatory,          //  9 action
    ZRD_PAS_CheckRpcMandatory,          // 10 rpc
    ZRD_PAS_CheckNotifMandatory,        // 11 notification
    ZRD_PAS_CheckInputMandatory,        // 12 input
    nullptr,                            // 13 output
    nullptr,                            // 14 augment
};
// clang-format on
static_assert(std::size(kMandatory) == ZR_NODE_AUGMENT + 1);

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
        schemaNode->kind < std::size(kMandatory) ? kMandatory[schemaNode->kind] : nullptr;
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

namespace zr {

ZrNode *InputOf(const ZrNode *operation)
{
    for (ZrNode *child = operation->firstChild; child != nullptr; child = child->next) {
        if (child->kind == ZR_NODE_INPUT)
            return child;
    }
    return nullptr;
}

} // namespace zr
