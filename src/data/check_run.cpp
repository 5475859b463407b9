// SPDX-License-Identifier: Apache-2.0
// The road of a run: match, complete, when, must, mandatory.
#include <zrschema/node.h>

#include "data/element.h"
#include "data/phases.h"
#include "model/node_record.h"

void ZRD_PAS_InitCheckAux(ZrdCheckAux *check, ZrCtx *ctx, uint32_t mode, ZrDefaultNodeFunc callback,
                          void *userData)
{
    *check = ZrdCheckAux{};
    check->ctx = ctx;
    check->mode = mode;
    zr::InitList(&check->defaults);
    check->callback = callback;
    check->userData = userData;
}

namespace {

// The phases after the matching.
uint32_t ValidateMatched(ZrdCheckAux *check, xmlNode *element)
{
    uint32_t status = ZRD_PAS_CompleteTree(check, element, check->mode);
    if (status == ZR_OK)
        status = ZRD_PAS_EvalDataTreeWhenMust(check, element);
    if (status == ZR_OK)
        status = ZR_PAS_CheckTreeMandatory(check, element);
    return status;
}

} // namespace

uint32_t ZRD_PAS_ValidateDataTree(ZrdCheckAux *check, xmlNode *top)
{
    if (top == nullptr)
        return ZR_ERR_INVALID;
    check->root = top->parent;
    uint32_t status = ZRD_PAS_FlushTreeWithSchema(check, top);
    if (status != ZR_OK)
        return status;
    if ((check->mode & ZRD_MODE_ACTION) == 0)
        return ValidateMatched(check, top);
    // Where the schema of a mount point is not known, the action may stand below it.
    if ((check->mode & ZRD_MODE_MOUNT_POINT) != 0)
        return ZR_OK;
    // What stands around the action only leads to it; the phases begin at the action itself.
    status = ZRD_PAS_CheckActionNodeExist(check);
    return status == ZR_OK ? ValidateMatched(check, check->actionElement) : status;
}

namespace {

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
