#include "data/check_run.h"

#include "data/completion.h"
#include "data/flush.h"
#include "data/mandatory.h"
#include "data/structure.h"
#include "data/when.h"

namespace {

// The phases after the flush.
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

void ZRD_PAS_InitCheckAux(ZrdCheckAux *check, ZrCtx *ctx, uint32_t mode, ZrDefaultNodeFunc callback,
                          void *userData)
{
    *check = ZrdCheckAux{};
    check->ctx = ctx;
    check->mode = mode;
    check->defaults.next = &check->defaults;
    check->defaults.prev = &check->defaults;
    check->callback = callback;
    check->userData = userData;
}

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
