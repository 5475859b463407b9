// SPDX-License-Identifier: Apache-2.0
#include "schema/deviation/deviation_steps.h"

#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "schema/members/entry_rules.h"
#include "schema/nodes/node.h"

uint32_t zr::RunDeviateSteps(std::span<const DeviateStep> steps, ZrMod *module, ZrsDeviate *deviate,
                             ZrNode *target)
{
    if (module == nullptr || deviate == nullptr || target == nullptr)
        return ZR_ERR_INVALID;
    for (const DeviateStep &step : steps) {
        if (!step.wanted(*deviate))
            continue;
        uint32_t status = step.run(module, deviate, target);
        if (status != ZR_OK) {
            ZR_CTX_AddModError(module->ctx, module->name, step.summary, target->name);
            return status;
        }
    }
    return ZR_OK;
}

uint32_t zr::RunByKind(const DefaultsByKind &table, ZrMod *module, ZrsDeviate *deviate,
                       ZrNode *target)
{
    switch (target->kind) {
    case ZR_NODE_CHOICE:
        return table.choice(module, deviate, target);
    case ZR_NODE_LEAF:
        return table.leaf(module, deviate, target);
    case ZR_NODE_LEAF_LIST:
        return table.leafList(module, deviate, target);
    default:
        return ZR_ERR_FAILED;
    }
}

bool zr::IsNacmInstance(const ZrsExtInst *instance)
{
    return TextEquals(instance->moduleName, "ietf-netconf-acm");
}

uint32_t zr::RefuseDeviate(ZrMod *module, const ZrNode *target, const char *message)
{
    ZR_CTX_AddModError(module->ctx, module->name, message, target->name);
    return ZR_ERR_FAILED;
}

ZrsLeafListInfo *zr::LeafListOf(ZrNode *target)
{
    return static_cast<ZrsLeafListInfo *>(target->info);
}

const char **zr::DefaultSlot(ZrNode *target)
{
    return target->kind == ZR_NODE_CHOICE ? &static_cast<ZrsChoiceInfo *>(target->info)->defaultCase
                                          : &static_cast<ZrsLeafInfo *>(target->info)->defaultValue;
}

const char **zr::UnitsSlot(ZrNode *target)
{
    switch (target->kind) {
    case ZR_NODE_LEAF:
        return &static_cast<ZrsLeafInfo *>(target->info)->units;
    case ZR_NODE_LEAF_LIST:
        return &LeafListOf(target)->units;
    default:
        return nullptr;
    }
}

ZrtRealType *zr::RealTypeSlot(ZrNode *target)
{
    switch (target->kind) {
    case ZR_NODE_LEAF:
        return &static_cast<ZrsLeafInfo *>(target->info)->realType;
    case ZR_NODE_LEAF_LIST:
        return &LeafListOf(target)->realType;
    default:
        return nullptr;
    }
}

uint32_t zr::ChangeEntryRules(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target,
                              uint32_t (*change)(ZrMod *module, const ZrNode *target,
                                                 const EntryRulesChange &rules))
{
    ZrCtx *ctx = module->ctx;
    const ZrsEntryRules *wanted = EntryRulesOf(ctx, deviate);
    if (wanted == nullptr)
        return ZR_OK;
    if (target->kind != ZR_NODE_LIST &&
        (target->kind != ZR_NODE_LEAF_LIST || wanted->uniqueCount != 0))
        return ZR_ERR_FAILED;
    ZrsEntryRules *rules = NeedEntryRules(ctx, target);
    return rules != nullptr ? change(module, target, {&ctx->dict, wanted, rules})
                            : uint32_t{ZR_ERR_NO_MEMORY};
}

uint32_t zr::ReplaceText(ZrMod *module, const char *&slot, const char *text)
{
    ZrDict *dict = &module->ctx->dict;
    const char *interned = ZR_DICT_Insert(dict, text);
    if (interned == nullptr)
        return ZR_ERR_NO_MEMORY;
    ZR_DICT_Remove(dict, slot);
    slot = interned;
    return ZR_OK;
}

void ZRS_NODE_NotifyBeforeExtInstsChange(ZrNode *node)
{
    ZrCtx *ctx = zr::ContextOf(node);
    if (ctx != nullptr && ctx->beforeDeviateExtInstFunc != nullptr)
        ctx->beforeDeviateExtInstFunc(ctx, node, ctx);
}
