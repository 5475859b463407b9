// SPDX-License-Identifier: Apache-2.0
// The pass over the "must" conditions. Only matched elements are gone into, one function call a
// level, so the schema bounds the depth.
#include "data/element.h"
#include "data/element_conditions.h"
#include "data/phases.h"
#include "data/tree_changes.h"

namespace {

// A false must goes up as a failed run.
uint32_t AsFault(uint32_t status)
{
    return status == ZR_XPATH_RESULT_FALSE ? uint32_t{ZR_ERR_INVALID} : status;
}

} // namespace

uint32_t ZRD_PAS_EvalDataTreeMust(ZrdCheckAux *check, xmlNode *element)
{
    if (element == nullptr || zr::SchemaOf(element) == nullptr)
        return ZR_ERR_INVALID;
    const ZrNode *schemaNode = (check->mode & ZRD_MODE_NOTIF) != 0
                                   ? zr::SchemaOf(element)
                                   : ZRD_PAS_GetRpcSubTreeInputMdl(element);
    if (schemaNode == nullptr)
        return ZR_OK;
    return ZRD_PAS_EvalDataTreeMustWithTopMustMdl(check, element, schemaNode);
}

uint32_t ZRD_PAS_EvalDataTreeMustWithTopMustMdl(ZrdCheckAux *check, xmlNode *element,
                                                const ZrNode *schemaNode)
{
    uint32_t status = ZRD_PAS_EvalDataNodeMustCond(check, element, schemaNode);
    return status == ZR_OK ? ZRD_PAS_EvalAllChildDataNodeMust(check, element) : AsFault(status);
}

uint32_t ZRD_PAS_EvalAllChildDataNodeMust(ZrdCheckAux *check, xmlNode *element)
{
    xmlNode *next = nullptr;
    for (xmlNode *child = zr::ElementFrom(element->children); child != nullptr; child = next) {
        next = zr::ElementFrom(child->next); // the child may be removed
        uint32_t status = ZRD_PAS_EvalDataSubtreeMust(check, child);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRD_PAS_EvalDataSubtreeMust(ZrdCheckAux *check, xmlNode *element)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    uint32_t status = ZRD_PAS_EvalDataNodeMustCond(check, element, schemaNode);
    if (status == ZR_XPATH_RESULT_FALSE && (check->mode & ZRD_MODE_NOTIF) != 0) {
        zr::NoteRemoval(check, element);
        zr::RemoveNode(element);
        return ZR_OK;
    }
    if (status != ZR_OK || !zr::HasMatchedChildren(schemaNode))
        return AsFault(status);
    return ZRD_PAS_EvalAllChildDataNodeMust(check, element);
}
