// SPDX-License-Identifier: Apache-2.0
// The pass over the "when" conditions.
#include "data/element.h"
#include "data/element_conditions.h"
#include "data/error_record.h"
#include "data/phases.h"
#include "data/tree_changes.h"
#include "platform/xml.h"

namespace {

bool IsOnlyElementChild(const xmlNode *element)
{
    return zr::ElementUpTo(element->prev) == nullptr && zr::ElementFrom(element->next) == nullptr;
}

// The topmost added element that holds nothing but this added one: it goes with it.
xmlNode *TopOfAddedBranch(xmlNode *element)
{
    while (ZRD_PAS_IsDefaultAddNode(element->parent) && IsOnlyElementChild(element))
        element = element->parent;
    return element;
}

} // namespace

uint32_t ZRD_PAS_EvalDataTreeWhen(ZrdCheckAux *check, xmlNode *element)
{
    uint32_t direction = ZR_XML_TO_CHILD;
    xmlNode *node = element;
    while (node != nullptr) {
        if (direction == ZR_XML_TO_PARENT || node->type != XML_ELEMENT_NODE) {
            node = ZR_XML_GetXmlDomSibOrParent(element, node, &direction);
            continue;
        }
        uint32_t pass = 0;
        uint32_t status = ZRD_PAS_EvalDataNodeWhenCond(check, node, &pass);
        if (status == ZR_OK && pass == 0)
            status = ZRD_PAS_ProcDataNodeWhenCondNoPass(check, element, &node, &direction);
        else if (zr::HasMatchedChildren(zr::SchemaOf(node)))
            node = ZR_XML_GetXmlDomNextNode(element, node, &direction);
        else
            node = ZR_XML_GetXmlDomSibOrParent(element, node, &direction);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRD_PAS_ProcDataNodeWhenCondNoPass(ZrdCheckAux *check, const xmlNode *top, xmlNode **node,
                                            uint32_t *direction)
{
    if ((check->mode & ZRD_MODE_NOTIF) == 0)
        return ZRD_PAS_ProcWhenCondNoPassForRpc(check, top, node, direction);
    zr::NoteRemoval(check, *node);
    return ZRD_PAS_ProcWhenCondNoPassForNotif(top, node, direction);
}

uint32_t ZRD_PAS_ProcWhenCondNoPassForRpc(ZrdCheckAux *check, const xmlNode *top, xmlNode **node,
                                          uint32_t *direction)
{
    if (!ZRD_PAS_IsDefaultAddNode(*node)) {
        ZRD_PAS_SetWhenCondNoPassErrorInfo(check, *node);
        return ZR_XPATH_RESULT_FALSE;
    }
    xmlNode *branch = TopOfAddedBranch(*node);
    *node = ZR_XML_GetXmlDomSibOrParent(top, branch, direction);
    zr::NoteRemoval(check, branch);
    ZRD_PAS_DeleteDefaultAddNode(check, branch);
    return ZR_OK;
}

uint32_t ZRD_PAS_ProcWhenCondNoPassForNotif(const xmlNode *top, xmlNode **node, uint32_t *direction)
{
    xmlNode *element = *node;
    *node = ZR_XML_GetXmlDomSibOrParent(top, element, direction);
    zr::RemoveNode(element);
    return ZR_OK;
}

void ZRD_PAS_SetWhenCondNoPassErrorInfo(ZrdCheckAux *check, const xmlNode *element)
{
    zr::RecordFaultOf(check, zr::Fault::WhenFalse, element);
}
