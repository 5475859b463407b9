// SPDX-License-Identifier: Apache-2.0
// Birth, copies and death of schema nodes, and the per-kind information that comes and goes with
// them.
#include <iterator>

#include "foundation/array.h"
#include "foundation/statement_ids.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "schema/members/condition_records.h"
#include "schema/members/entry_rules.h"
#include "schema/members/ext_inst.h"
#include "schema/nodes/node.h"
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
    zr::FreeTexts(&ctx->dict, leafList->defaults, leafList->defaultCount);
    zr::Release(&ctx->dict, leafList->units);
}

void DestroyChoiceInfo(ZrCtx *ctx, void *info)
{
    zr::Release(&ctx->dict, static_cast<ZrsChoiceInfo *>(info)->defaultCase);
}

// The copied type's typedefs are now looked for in the module that the copy belongs to.
uint32_t CopyType(ZrMod *module, ZrtRealType *destination, const ZrtRealType *source)
{
    uint32_t status = ZRT_TYPE_CopyZrtRealTypeInner(module->ctx, destination, source);
    return status == ZR_OK ? ZRT_TYPE_UpdateRealTypeDerivedFrom(destination, module) : status;
}

uint32_t CopyLeafInfo(ZrMod *module, void *destination, const void *source)
{
    auto *to = static_cast<ZrsLeafInfo *>(destination);
    const auto *from = static_cast<const ZrsLeafInfo *>(source);
    if (!zr::Intern(&module->ctx->dict, to->defaultValue, from->defaultValue) ||
        !zr::Intern(&module->ctx->dict, to->units, from->units))
        return ZR_ERR_NO_MEMORY;
    return CopyType(module, &to->realType, &from->realType);
}

uint32_t CopyLeafListInfo(ZrMod *module, void *destination, const void *source)
{
    auto *to = static_cast<ZrsLeafListInfo *>(destination);
    const auto *from = static_cast<const ZrsLeafListInfo *>(source);
    uint32_t status =
        ZRS_NODE_AppendLeaflistDefaults(&module->ctx->dict, to, from->defaults, from->defaultCount);
    if (status != ZR_OK)
        return status;
    if (!zr::Intern(&module->ctx->dict, to->units, from->units))
        return ZR_ERR_NO_MEMORY;
    return CopyType(module, &to->realType, &from->realType);
}

uint32_t CopyChoiceInfo(ZrMod *module, void *destination, const void *source)
{
    auto *to = static_cast<ZrsChoiceInfo *>(destination);
    const auto *from = static_cast<const ZrsChoiceInfo *>(source);
    return zr::Intern(&module->ctx->dict, to->defaultCase, from->defaultCase) ? ZR_OK
                                                                              : ZR_ERR_NO_MEMORY;
}

struct KindRow {
    ZrNodeKind kind;
    ZrsStatement statement; // that makes nodes of the kind
    uint32_t infoSize;      // bytes of the per-kind information, 0 when the kind has none
    void (*destroyInfo)(ZrCtx *ctx, void *info);
    uint32_t (*copyInfo)(ZrMod *module, void *destination, const void *source);
};

// clang-format off
constexpr KindRow kKinds[] = {
    // kind                 statement               information              its destructor       its copier
    {ZR_NODE_UNKNOWN,      ZRS_STMT_UNKNOWN,      0,                       nullptr,             nullptr},
    {ZR_NODE_CONTAINER,    ZRS_STMT_CONTAINER,    0,                       nullptr,             nullptr},
    {ZR_NODE_LEAF,         ZRS_STMT_LEAF,         sizeof(ZrsLeafInfo),     DestroyLeafInfo,     CopyLeafInfo},
    {ZR_NODE_LEAF_LIST,    ZRS_STMT_LEAF_LIST,    sizeof(ZrsLeafListInfo), DestroyLeafListInfo, CopyLeafListInfo},
    {ZR_NODE_LIST,         ZRS_STMT_LIST,         0,                       nullptr,             nullptr},
    {ZR_NODE_CHOICE,       ZRS_STMT_CHOICE,       sizeof(ZrsChoiceInfo),   DestroyChoiceInfo,   CopyChoiceInfo},
    {ZR_NODE_CASE,         ZRS_STMT_CASE,         0,                       nullptr,             nullptr},
    {ZR_NODE_ANYDATA,      ZRS_STMT_ANYDATA,      0,                       nullptr,             nullptr},
    {ZR_NODE_ANYXML,       ZRS_STMT_ANYXML,       0,                       nullptr,             nullptr},
    {ZR_NODE_ACTION,       ZRS_STMT_ACTION,       0,                       nullptr,             nullptr},
    {ZR_NODE_RPC,          ZRS_STMT_RPC,          0,                       nullptr,             nullptr},
    {ZR_NODE_NOTIFICATION, ZRS_STMT_NOTIFICATION, 0,                       nullptr,             nullptr},
    {ZR_NODE_INPUT,        ZRS_STMT_INPUT,        0,                       nullptr,             nullptr},
    {ZR_NODE_OUTPUT,       ZRS_STMT_OUTPUT,       0,                       nullptr,             nullptr},
    {ZR_NODE_AUGMENT,      ZRS_STMT_AUGMENT,      0,                       nullptr,             nullptr},
};
// clang-format on

static_assert(zr::RowsInOrder(kKinds, &KindRow::kind, ZR_NODE_UNKNOWN, ZR_NODE_AUGMENT + 1));

constexpr bool IsKind(uint32_t kind)
{
    return kind < std::size(kKinds);
}

} // namespace

uint32_t ZRS_NODE_GetStmtByNodeType(uint32_t kind)
{
    return IsKind(kind) ? kKinds[kind].statement : ZRS_STMT_UNKNOWN;
}

uint32_t ZRS_NODE_GetInfoSize(uint32_t kind)
{
    return IsKind(kind) ? kKinds[kind].infoSize : 0;
}

ZrNode *ZRS_NODE_New(uint32_t kind)
{
    if (!IsKind(kind))
        return nullptr;
    zr::Owned<ZrNode> node(zr::New<ZrNode>());
    if (!node)
        return nullptr;
    node->kind = kind;
    if (uint32_t infoSize = kKinds[kind].infoSize; infoSize != 0) {
        node->info = zr::AllocZeroed(infoSize);
        if (node->info == nullptr)
            return nullptr;
    }
    return node.release();
}

void ZRS_NODE_DestroySchemaInfo(ZrNode *node)
{
    ZrCtx *ctx = zr::ContextOf(node);
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
    ZrCtx *ctx = zr::ContextOf(node);
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
    if (zr::HasEntries(node->kind))
        zr::DropEntryRules(ctx, node);
    for (ZrNode *child = node->firstChild; child != nullptr;) {
        ZrNode *next = child->next;
        ZRS_NODE_Free(child);
        child = next;
    }
    zr::Free(node);
}

// Copies into another module.

namespace {

bool CopyMembers(ZrNode *node, const ZrNode *source)
{
    ZrDict *dict = &node->module->ctx->dict;
    if (!zr::Intern(dict, node->name, source->name) ||
        !zr::Intern(dict, node->description, source->description))
        return false;
    if (source->extInstCount != 0) {
        node->extInsts = ZRS_EXT_CopyExtInsts(dict, source->extInsts, source->extInstCount);
        if (node->extInsts == nullptr)
            return false;
        node->extInstCount = source->extInstCount;
    }
    if (source->kind == ZR_NODE_LIST)
        node->keyCount = source->keyCount;
    const ZrsEntryRules *rules = zr::EntryRulesOf(zr::ContextOf(source), source);
    return zr::CopyEntryRules(node->module->ctx, node, rules) == ZR_OK &&
           ZRS_NODE_CopySchemaByType(node, source) == ZR_OK;
}

struct TreeCopy {
    ZrMod *target;
    zr::Owned<ZrNode, ZRS_NODE_Free> root;
    ZrNode *current; // the copy of the node that the walk visited last
};

uint32_t CopyVisitedNode(ZrNode *source, uint32_t arrival, void *userData)
{
    auto *copy = static_cast<TreeCopy *>(userData);
    if (arrival == ZR_ARRIVAL_PARENT) {
        copy->current = copy->current->parent;
        return 0;
    }
    ZrNode *node = ZRS_NODE_CopyOneNodeToModule(source, copy->target);
    if (node == nullptr)
        return ZR_ERR_NO_MEMORY;
    if (arrival == ZR_ARRIVAL_ROOT)
        copy->root.reset(node);
    else
        ZRS_NODE_AddChild(arrival == ZR_ARRIVAL_CHILD ? copy->current : copy->current->parent,
                          node);
    copy->current = node;
    return 0;
}

} // namespace

uint32_t ZRS_NODE_CopySchemaByType(ZrNode *destination, const ZrNode *source)
{
    if (destination == nullptr || source == nullptr || destination->kind != source->kind ||
        destination->module == nullptr || destination->module->ctx == nullptr)
        return ZR_ERR_INVALID;
    auto copyInfo = IsKind(source->kind) ? kKinds[source->kind].copyInfo : nullptr;
    if (copyInfo == nullptr)
        return ZR_OK;
    if (destination->info == nullptr || source->info == nullptr)
        return ZR_ERR_INVALID;
    return copyInfo(destination->module, destination->info, source->info);
}

ZrNode *ZRS_NODE_CopyOneNodeToModule(const ZrNode *source, ZrMod *target)
{
    if (source == nullptr || target == nullptr || target->ctx == nullptr)
        return nullptr;
    zr::Owned<ZrNode, ZRS_NODE_Free> node(ZRS_NODE_New(source->kind));
    if (!node)
        return nullptr;
    node->module = target;
    return CopyMembers(node.get(), source) ? node.release() : nullptr;
}

ZrNode *ZRS_NODE_CopyNodeTreeToModule(ZrNode *root, ZrMod *target)
{
    TreeCopy copy = {target, {}, nullptr};
    return ZR_NODE_TreeScanAllNode(root, CopyVisitedNode, &copy) == ZR_OK ? copy.root.release()
                                                                          : nullptr;
}
