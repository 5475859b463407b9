#include "data/when.h"

#include <zrschema/node.h>

#include "data/check_run.h"
#include "data/completion.h"
#include "data/data_tree.h"
#include "data/error_record.h"
#include "data/must.h"
#include "data/schema_query.h"
#include "model/node_record.h"
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

// The kinds of condition that the schema of an element's tree has. The schema is mostly small
// beside the data, so one look at it spares a walk over all elements that would evaluate nothing.
struct Conditions {
    bool when = false;
    bool must = false;
};

uint32_t NoteConditions(ZrNode *schemaNode, uint32_t, void *userData)
{
    auto *found = static_cast<Conditions *>(userData);
    found->when = found->when || schemaNode->when != nullptr;
    found->must = found->must || schemaNode->mustCount != 0;
    return found->when && found->must ? uint32_t{ZR_ERR_FAILED} : uint32_t{ZR_OK}; // to stop
}

Conditions ConditionsFor(ZrNode *schemaNode)
{
    Conditions found;
    ZR_NODE_TreeScanAllNode(schemaNode, NoteConditions, &found);
    // The element's own choice and case apply to it too.
    for (ZrNode *above = schemaNode->parent; ZRD_MDL_IsChoiceOrCaseNode(above) != 0;
         above = above->parent)
        NoteConditions(above, ZR_ARRIVAL_PARENT, &found);
    return found;
}

} // namespace

uint32_t ZRD_PAS_EvalDataTreeWhenMust(ZrdCheckAux *check, xmlNode *element)
{
    ZrNode *schemaNode = element != nullptr ? zr::SchemaOf(element) : nullptr;
    if (schemaNode == nullptr)
        return ZR_ERR_INVALID;
    Conditions conditions = ConditionsFor(schemaNode);
    uint32_t status = conditions.when ? ZRD_PAS_EvalDataTreeWhen(check, element) : uint32_t{ZR_OK};
    if (status == ZR_OK && conditions.must)
        status = ZRD_PAS_EvalDataTreeMust(check, element);
    return status;
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
    uint32_t status =
        zr::EvalConditionInRun(check->root, contextNode, condition, zr::MemoryOf(check));
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
    zr::RecordFault(check, zr::Fault::WhenFalse, element, zr::NameOf(element), zr::NameOf(element));
}
