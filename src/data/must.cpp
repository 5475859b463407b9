#include "data/must.h"

#include <zrschema/node.h>

#include "data/check_run.h"
#include "data/data_tree.h"
#include "data/error_record.h"
#include "data/mandatory.h"
#include "data/schema_query.h"
#include "model/node_record.h"
#include "xpath/evaluate.h"

// Only matched elements are gone into, one function call a level, so the schema bounds the depth.

namespace {

// A false must goes up as a failed run.
uint32_t AsFault(uint32_t status)
{
    return status == ZR_XPATH_RESULT_FALSE ? uint32_t{ZR_ERR_INVALID} : status;
}

uint32_t EvalMust(ZrdCheckAux *check, xmlNode *element, const ZrsMust &must)
{
    if (must.condition == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status =
        zr::EvalConditionInRun(check->root, element, must.condition, zr::MemoryOf(check));
    if (status == ZR_OK)
        return ZR_OK;
    if (status != ZR_XPATH_RESULT_FALSE)
        zr::RecordFault(check, zr::Fault::MustNotEvaluated, element, zr::NameOf(element),
                        zr::NameOf(element));
    else if ((check->mode & ZRD_MODE_NOTIF) == 0)
        zr::RecordFaultWithTexts(check, zr::Fault::MustFalse, element, must.errorAppTag,
                                 must.errorMessage);
    return status;
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

ZrNode *ZRD_PAS_GetRpcSubTreeInputMdl(const xmlNode *element)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    return schemaNode != nullptr ? zr::InputOf(schemaNode) : nullptr;
}
