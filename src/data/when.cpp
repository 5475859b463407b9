#include "data/when.h"

#include <zrschema/node.h>

#include "data/data_tree.h"
#include "data/default_list.h"
#include "data/error_record.h"
#include "data/must.h"
#include "data/schema_query.h"
#include "platform/xml.h"
#include "xpath/evaluate.h"

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

uint32_t ZRD_PAS_EvalDataTreeWhenMust(ZrdCheckAux *check, xmlNode *element)
{
    if (element == nullptr || zr::SchemaOf(element) == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = ZRD_PAS_EvalDataTreeWhen(check, element);
    return status == ZR_OK ? ZRD_PAS_EvalDataTreeMust(check, element) : status;
}

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

uint32_t ZRD_PAS_EvalDataNodeWhenCond(ZrdCheckAux *check, xmlNode *element, uint32_t *pass)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    *pass = 0;
    if (!ZRD_MDL_IsNeedCheckWhenCond(schemaNode)) {
        *pass = 1;
        return ZR_OK;
    }
    // Choices and cases have no element of their own: their conditions look from its parent.
    xmlNode *contextNode = element;
    do {
        const char *condition = ZR_NODE_GetWhenCond(schemaNode);
        if (condition != nullptr) {
            uint32_t holds = 0;
            uint32_t status =
                ZRD_PAS_EvalDataNodeOneWhenCond(check, contextNode, condition, &holds);
            if (status != ZR_OK || holds == 0)
                return status;
        }
        schemaNode = ZR_NODE_GetParentNode(schemaNode);
        contextNode = element->parent;
    } while (ZRD_MDL_IsChoiceOrCaseNode(schemaNode));
    *pass = 1;
    return ZR_OK;
}

uint32_t ZRD_PAS_EvalDataNodeOneWhenCond(ZrdCheckAux *check, xmlNode *contextNode,
                                         const char *condition, uint32_t *pass)
{
    *pass = 0;
    uint32_t status = ZR_XPATH_EvalCondition(check->root, contextNode, condition);
    if (status == ZR_XPATH_RESULT_FALSE)
        return ZR_OK;
    if (status == ZR_OK)
        *pass = 1;
    else
        zr::RecordFault(check, zr::Fault::WhenNotEvaluated, contextNode, zr::NameOf(contextNode),
                        zr::NameOf(contextNode));
    return status;
}

uint32_t ZRD_PAS_ProcDataNodeWhenCondNoPass(ZrdCheckAux *check, const xmlNode *top, xmlNode **node,
                                            uint32_t *direction)
{
    return (check->mode & ZRD_MODE_NOTIF) != 0
               ? ZRD_PAS_ProcWhenCondNoPassForNotif(top, node, direction)
               : ZRD_PAS_ProcWhenCondNoPassForRpc(check, top, node, direction);
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
    zr::RecordFault(check, zr::Fault::WhenFalse, element, zr::NameOf(element), zr::NameOf(element));
}
