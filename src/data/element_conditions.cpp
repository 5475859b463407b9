// SPDX-License-Identifier: Apache-2.0
#include "data/element_conditions.h"

#include <zrschema/node.h>

#include "data/element.h"
#include "data/error_record.h"
#include "xpath/evaluate.h"

namespace {

uint32_t Evaluate(ZrdCheckAux *check, xmlNode *contextNode, const char *condition)
{
    return zr::EvalConditionInRun(check->root, contextNode, condition, zr::MemoryOf(check));
}

uint32_t EvalMust(ZrdCheckAux *check, xmlNode *element, const ZrsMust &must)
{
    if (must.condition == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = Evaluate(check, element, must.condition);
    if (status == ZR_OK)
        return ZR_OK;
    if (status != ZR_XPATH_RESULT_FALSE)
        zr::RecordFaultOf(check, zr::Fault::MustNotEvaluated, element);
    else if ((check->mode & ZRD_MODE_NOTIF) == 0)
        zr::RecordFaultWithTexts(check, zr::Fault::MustFalse, element, must.errorAppTag,
                                 must.errorMessage);
    return status;
}

} // namespace

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
    uint32_t status = Evaluate(check, contextNode, condition);
    if (status == ZR_XPATH_RESULT_FALSE)
        return ZR_OK;
    if (status == ZR_OK)
        *pass = 1;
    else
        zr::RecordFaultOf(check, zr::Fault::WhenNotEvaluated, contextNode);
    return status;
}

uint32_t ZRD_PAS_EvalDataNodeMustCond(ZrdCheckAux *check, xmlNode *element,
                                      const ZrNode *schemaNode)
{
    if (schemaNode == nullptr || schemaNode->musts == nullptr)
        return ZR_OK;
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; i < schemaNode->mustCount && status == ZR_OK; ++i)
        status = EvalMust(check, element, schemaNode->musts[i]);
    return status;
}
