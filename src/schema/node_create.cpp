// Birth and death of schema nodes, and the per-kind information that comes and goes with them.
#include <iterator>

#include "model/module_record.h"
#include "platform/memory.h"
#include "schema/conditions.h"
#include "schema/ext_inst.h"
#include "schema/node.h"
#include "types/real_type.h"

namespace {

void DestroyLeafInfo(ZrCtx *ctx, void *info)
{
    auto *leaf = static_cast<ZrsLeafInfo *>(info);
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, &leaf->realType);
    zr::Release(&ctx->dict, leaf->defaultValue);
    zr::Release(&ctx->dict, leaf->units);
}

void DestroyLeafListInfo(ZrCtx *ctx, void *info)
{
    auto *leafList = static_cast<ZrsLeafListInfo *>(info);
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, &leafList->realType);
    for (uint32_t i = 0; i < leafList->defaultCount; ++i)
        zr::Release(&ctx->dict, leafList->defaults[i]);
    zr::Free(leafList->defaults);
    zr::Release(&ctx->dict, leafList->units);
}

void DestroyChoiceInfo(ZrCtx *ctx, void *info)
{
    zr::Release(&ctx->dict, static_cast<ZrsChoiceInfo *>(info)->defaultCase);
}

struct KindRow {
    uint32_t statement; // id of the keyword table
    uint32_t infoSize;  // bytes of the per-kind information, 0 when the kind has none
    void (*destroyInfo)(ZrCtx *ctx, void *info);
};

// clang-format off
// Indexed by node kind.
constexpr KindRow kKinds[] = {
    // statement  information              its destructor
    {  0,         0,                       nullptr             }, // unknown
    { 13,         0,                       nullptr             }, // container
    { 31,         sizeof(ZrsLeafInfo),     DestroyLeafInfo     }, // leaf
    { 32,         sizeof(ZrsLeafListInfo), DestroyLeafListInfo }, // leaf-list
    { 34,         0,                       nullptr             }, // list
    { 10,         sizeof(ZrsChoiceInfo),   DestroyChoiceInfo   }, // choice
    {  9,         0,                       nullptr             }, // case
    {  2,         0,                       nullptr             }, // anydata
    {  3,         0,                       nullptr             }, // anyxml
    {  1,         0,                       nullptr             }, // action
    { 57,         0,                       nullptr             }, // rpc
    { 42,         0,                       nullptr             }, // notification
    { 29,         0,                       nullptr             }, // input
    { 45,         0,                       nullptr             }, // output
    {  5,         0,                       nullptr             }, // augment
};
// clang-format on
static_assert(std::size(kKinds) == ZR_NODE_AUGMENT + 1);

constexpr bool IsKind(uint32_t kind)
{
    return kind < std::size(kKinds);
}

ZrCtx *ContextOf(const ZrNode *node)
{
    return node != nullptr && node->module != nullptr ? node->module->ctx : nullptr;
}

} // namespace

uint32_t ZRS_NODE_GetStmtByNodeType(uint32_t kind)
{
    return IsKind(kind) ? kKinds[kind].statement : 0;
}

uint32_t ZRS_NODE_GetInfoSize(uint32_t kind)
{
    return IsKind(kind) ? kKinds[kind].infoSize : 0;
}

ZrNode *ZRS_NODE_New(uint32_t kind)
{
    if (!IsKind(kind))
        return nullptr;
    zr::ScopedBlock<ZrNode> node(zr::AllocRecord<ZrNode>());
    if (!node)
        return nullptr;
    node.get()->kind = kind;
    if (uint32_t infoSize = kKinds[kind].infoSize; infoSize != 0) {
        node.get()->info = zr::AllocZeroed(infoSize);
        if (node.get()->info == nullptr)
            return nullptr;
    }
    return node.release();
}

void ZRS_NODE_DestroySchemaInfo(ZrNode *node)
{
    ZrCtx *ctx = ContextOf(node);
    if (ctx == nullptr || node->info == nullptr)
        return;
    if (IsKind(node->kind) && kKinds[node->kind].destroyInfo != nullptr)
        kKinds[node->kind].destroyInfo(ctx, node->info);
    zr::Free(node->info);
    node->info = nullptr;
}

void ZRS_NODE_DestroyPrivateData(ZrCtx *ctx, ZrNode *node)
{
    if (node == nullptr)
        return;
    if (ctx != nullptr && ctx->pridataFreeFunc != nullptr && node->privateData != nullptr)
        ctx->pridataFreeFunc(node, node->privateData);
    node->privateData = nullptr;
}

void ZRS_NODE_Free(ZrNode *node)
{
    ZrCtx *ctx = ContextOf(node);
    // The children of a coupled augment stand in its target, so freeing them here would leave the
    // target with links into freed nodes.
    if (ctx == nullptr || (node->flags & ZRS_FLAG_COUPLED) != 0)
        return;
    ZrDict *dict = &ctx->dict;
    ZRS_NODE_DestroyPrivateData(ctx, node);
    zr::Release(dict, node->name);
    zr::Release(dict, node->description);
    zr::Release(dict, node->when);
    ZRS_NODE_FreeIfFeatures(dict, node->ifFeatures, node->ifFeatureCount);
    ZRS_NODE_FreeMusts(dict, node->musts, node->mustCount);
    ZRS_EXT_FreeExtInsts(dict, node->extInsts, node->extInstCount);
    node->extInstCount = 0;
    node->extInsts = nullptr;
    ZRS_NODE_DestroySchemaInfo(node);
    for (ZrNode *child = node->firstChild; child != nullptr;) {
        ZrNode *next = child->next;
        ZRS_NODE_Free(child);
        child = next;
    }
    zr::Free(node);
}
