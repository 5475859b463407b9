// SPDX-License-Identifier: Apache-2.0
// Coupling and uncoupling of one augment, and the "input" and "output" nodes that it may need.
#include "schema/augment/augment.h"

#include <cstring>
#include <string_view>

#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "foundation/statement_ids.h"
#include "foundation/text.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "schema/nodes/node.h"

namespace {

ZrNode *TakeLink(ZrNode *&link)
{
    ZrNode *node = link;
    link = nullptr;
    return node;
}

// The target of a coupled augment, as far as its nodes tell: null when it has none.
ZrNode *TargetOfNodes(const ZrNode *augment)
{
    return augment->firstChild != nullptr ? augment->firstChild->parent : nullptr;
}

// What may be augmented (RFC 7950, section 7.17).
bool TakesAugments(uint32_t kind)
{
    switch (kind) {
    case ZR_NODE_CONTAINER:
    case ZR_NODE_LIST:
    case ZR_NODE_CHOICE:
    case ZR_NODE_CASE:
    case ZR_NODE_INPUT:
    case ZR_NODE_OUTPUT:
    case ZR_NODE_NOTIFICATION:
        return true;
    default:
        return false;
    }
}

// Moves the nodes from `first` up to `last` from the target back under the augment.
uint32_t MoveBack(ZrNode *augment, ZrNode *first, const ZrNode *last)
{
    ZrNode *next = first;
    ZrNode *node = nullptr;
    do {
        node = next;
        if (node == nullptr)
            return ZR_ERR_INVALID;
        next = node->next;
        ZRS_NODE_Unlink(node);
        ZRS_NODE_AddChild(augment, node);
    } while (node != last);
    return ZR_OK;
}

} // namespace

void ZRS_NODE_NotifyAugmentFirstChildNodeRelink(ZrNode *node)
{
    ZrCtx *ctx = zr::ContextOf(node);
    if (ctx != nullptr && ctx->firstAugChildRelinkFunc != nullptr)
        ctx->firstAugChildRelinkFunc(ctx, node, ctx);
}

uint32_t ZRS_NODE_CoupleAugmentNodeAndTargetNode(ZrNode *augment, ZrNode *target)
{
    if (augment == nullptr || target == nullptr)
        return ZR_ERR_INVALID;
    ZrNode *next = nullptr;
    for (ZrNode *node = augment->firstChild; node != nullptr; node = next) {
        next = node->next;
        ZRS_NODE_AddChild(target, node);
        ZRS_NODE_UpdateConfigFlag(node);
        ZRS_NODE_UpdateNacmFlag(node);
    }
    return ZR_OK;
}

uint32_t ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(ZrNode *augment, ZrNode *target)
{
    if (augment == nullptr || target == nullptr)
        return ZR_ERR_INVALID;
    if (augment->firstChild == nullptr && augment->lastChild == nullptr)
        return ZR_OK;
    // A child knows its parent, so that no chain needs to be searched for it.
    if (augment->firstChild == nullptr || augment->lastChild == nullptr ||
        augment->firstChild->parent != target)
        return ZR_ERR_INVALID;
    ZrNode *first = TakeLink(augment->firstChild);
    const ZrNode *last = TakeLink(augment->lastChild);
    ZRS_NODE_NotifyAugmentFirstChildNodeRelink(first);
    return MoveBack(augment, first, last);
}

uint32_t ZRS_NODE_CoupleAugmentNode(ZrNode *augment)
{
    if (augment == nullptr || augment->module == nullptr)
        return ZR_ERR_INVALID;
    if (zr::IsCoupled(augment))
        return ZR_OK;
    return zr::CoupleAugment(augment,
                             ZR_CTX_GetTargetNode(augment->module->ctx, augment->name, nullptr));
}

uint32_t zr::CoupleAugment(ZrNode *augment, ZrNode *target)
{
    if (target == nullptr) {
        target = ZRS_NODE_UpdateTargetPathWithInputOutput(augment->module->ctx, augment->name);
        if (target == nullptr)
            return ZR_ERR_INVALID;
        augment->flags |= ZRS_FLAG_MADE_TARGET;
    }
    if (!TakesAugments(target->kind))
        return ZR_ERR_INVALID;
    ZRS_NODE_CoupleAugmentNodeAndTargetNode(augment, target);
    ZRS_NODE_NotifyAugmentFirstChildNodeRelink(augment->firstChild);
    augment->flags |= ZRS_FLAG_COUPLED;
    return ZR_OK;
}

uint32_t ZRS_NODE_UnCoupleAugmentNode(ZrNode *augment)
{
    if (augment == nullptr || !zr::IsCoupled(augment))
        return ZR_ERR_INVALID;
    // The target is where the nodes are; looking the path up again would need memory, which must
    // not stand between a context and its end.
    ZrNode *target = TargetOfNodes(augment);
    if (target == nullptr) { // none of its nodes is left, so that there is nothing to take back
        augment->flags &= ~ZRS_FLAG_COUPLED;
        target = ZR_CTX_GetTargetNode(augment->module->ctx, augment->name, nullptr);
    }
    uint32_t status = ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(augment, target);
    if (status == ZR_OK)
        augment->flags &= ~ZRS_FLAG_COUPLED;
    return status;
}

void zr::TakeBackAugmentNodes(ZrNode *augment)
{
    if (!zr::IsCoupled(augment))
        return;
    augment->flags &= ~ZRS_FLAG_COUPLED;
    ZrNode *first = TakeLink(augment->firstChild);
    const ZrNode *last = TakeLink(augment->lastChild);
    if (first != nullptr)
        MoveBack(augment, first, last);
}

void ZRS_NODE_RemoveCoupledAugmentNodeChildLink(ZrNode *augment, const ZrNode *node)
{
    if (augment == nullptr || node == nullptr || !zr::IsCoupled(augment) ||
        augment->firstChild == nullptr || node->parent != augment->firstChild->parent)
        return;
    bool isFirst = node == augment->firstChild;
    bool isLast = node == augment->lastChild;
    if (isFirst)
        augment->firstChild = isLast ? nullptr : node->next;
    if (isLast)
        augment->lastChild = isFirst ? nullptr : node->prev;
}

bool zr::SettleModuleAugments(ZrMod *module)
{
    for (const ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        if (!IsCoupled(augment))
            return false;
    }
    ZR_CTX_ClearModErrByLoadStage(module->ctx->errMng, module->name, ZRS_STAGE_AUGMENT);
    return true;
}

ZrNode *ZR_NODE_GetAugmentTargetNode(const ZrNode *node)
{
    if (node == nullptr || node->kind != ZR_NODE_AUGMENT || node->module == nullptr)
        return nullptr;
    return ZR_CTX_GetTargetNode(node->module->ctx, node->name, nullptr);
}

// The "input" and "output" nodes that an rpc or action has without saying so (RFC 7950, section
// 7.14).

namespace {

ZrNode *NewInputOutput(ZrNode *rpc, const char *name, uint32_t kind)
{
    zr::Owned<ZrNode, ZRS_NODE_Free> node(ZRS_NODE_New(kind));
    if (!node)
        return nullptr;
    node->module = rpc->module;
    if (!zr::Intern(&rpc->module->ctx->dict, node->name, name))
        return nullptr;
    if (kind == ZR_NODE_INPUT)
        ZRS_NODE_AddAsFirstChild(rpc, node.get());
    else
        ZRS_NODE_AddChild(rpc, node.get());
    // Like one that was declared, whenever it comes.
    ZRS_NODE_UpdateConfigFlag(node.get());
    ZRS_NODE_UpdateNacmFlag(node.get());
    return node.release();
}

} // namespace

ZrNode *ZRS_NODE_GetAugRpcParentNodeAndChildType(ZrCtx *ctx, const char *headPath,
                                                 const char *lastStep, uint32_t *kindOut)
{
    if (ctx == nullptr || headPath == nullptr || lastStep == nullptr || kindOut == nullptr)
        return nullptr;
    std::string_view step(lastStep);
    if (step != "input" && step != "output")
        return nullptr;
    ZrNode *rpc = ZR_CTX_GetTargetNode(ctx, headPath, nullptr);
    if (rpc == nullptr || (rpc->kind != ZR_NODE_RPC && rpc->kind != ZR_NODE_ACTION))
        return nullptr;
    *kindOut = step == "input" ? ZR_NODE_INPUT : ZR_NODE_OUTPUT;
    return rpc;
}

ZrNode *ZRS_NODE_ConstructInputOutputNodeIfMatch(ZrCtx *ctx, const char *headPath,
                                                 const char *lastStep)
{
    uint32_t kind = ZR_NODE_UNKNOWN;
    ZrNode *rpc = ZRS_NODE_GetAugRpcParentNodeAndChildType(ctx, headPath, lastStep, &kind);
    return rpc != nullptr ? NewInputOutput(rpc, lastStep, kind) : nullptr;
}

ZrNode *ZRS_NODE_UpdateTargetPathWithInputOutput(ZrCtx *ctx, const char *targetPath)
{
    zr::Owned<char> head(targetPath != nullptr ? ZR_UTL_StrDup(targetPath) : nullptr);
    char *slash = head ? std::strrchr(head.get(), '/') : nullptr;
    if (slash == nullptr)
        return nullptr;
    *slash = '\0';
    return ZRS_NODE_ConstructInputOutputNodeIfMatch(ctx, head.get(), slash + 1);
}
