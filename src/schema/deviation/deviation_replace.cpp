// SPDX-License-Identifier: Apache-2.0
// "deviate replace": other values for properties that the target has.
#include "foundation/array.h"
#include "schema/deviation/deviation_steps.h"
#include "schema/members/entry_rules.h"
#include "schema/nodes/node.h"
#include "types/real_type.h"

namespace {

// The numbers, whether the target has them or not: each has a value without a statement too.
uint32_t ReplaceNumbers(ZrMod *, const ZrNode *, const zr::EntryRulesChange &change)
{
    zr::TakeElementNumbers(change.wanted, change.rules);
    return ZR_OK;
}

uint32_t ReplaceEntryRules(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::ChangeEntryRules(module, deviate, target, ReplaceNumbers);
}

// clang-format off
constexpr zr::DeviateStep kReplaceSteps[] = {
    // property             step                          summary of a failure
    {zr::CarriesDefaults,   ZRS_MOD_CoupleDevReplDefault, "Failed to replace default of node \"%s\"."},
    {zr::CarriesType,       ZRS_MOD_CoupleDevReplType,    "Failed to replace type of node \"%s\"."},
    {zr::CarriesUnits,      ZRS_MOD_CoupleDevReplUnits,   "Failed to replace units of node \"%s\"."},
    {zr::CarriesEntryRules, ReplaceEntryRules,            "Failed to replace min-elements or max-elements of node \"%s\"."},
};
// clang-format on

constexpr zr::DefaultsByKind kReplaceDefaults = {ZRS_MOD_ReplChoiceDefault, ZRS_MOD_ReplLeafDefault,
                                                 ZRS_MOD_ReplLeaflistDefaults};

uint32_t ReplaceSingleDefault(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target,
                              const zr::SingleDefaultMessages &messages)
{
    return zr::ChangeSingleDefault(module, deviate, target, true, messages, [=](const char *&slot) {
        return zr::ReplaceText(module, slot, deviate->defaults[0]);
    });
}

} // namespace

uint32_t ZRS_MOD_CoupleDevRepl(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    if (module == nullptr || deviate == nullptr || target == nullptr)
        return ZR_ERR_INVALID;
    ZRS_MOD_CoupleDevReplFlag(deviate, target);
    return zr::RunDeviateSteps(kReplaceSteps, module, deviate, target);
}

void ZRS_MOD_CoupleDevReplFlag(const ZrsDeviate *deviate, ZrNode *target)
{
    ZRS_MOD_ReplNodeConfig(deviate, target);
    ZRS_MOD_ReplNodeMandatory(deviate, target);
}

void ZRS_MOD_ReplNodeConfig(const ZrsDeviate *deviate, ZrNode *target)
{
    uint32_t config = deviate->flags & ZRS_FLAGS_CONFIG;
    if (config == 0)
        return;
    // An equal one changes nothing now, but holds when another deviation changes the parent's.
    bool isEqual = config == (target->flags & ZRS_FLAGS_CONFIG);
    zr::SetDeviatedConfig(target, isEqual ? target->flags : deviate->flags);
}

void ZRS_MOD_ReplNodeMandatory(const ZrsDeviate *deviate, ZrNode *target)
{
    uint32_t mandatory = deviate->flags & ZRS_FLAGS_MANDATORY;
    if (mandatory != 0)
        target->flags = (target->flags & ~ZRS_FLAGS_MANDATORY) | mandatory;
}

uint32_t ZRS_MOD_CoupleDevReplDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::RunByKind(kReplaceDefaults, module, deviate, target);
}

uint32_t ZRS_MOD_ReplChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return ReplaceSingleDefault(
        module, deviate, target,
        {"Failed to replace default of choice node \"%s\", because default number > 1.",
         "Failed to replace default of choice node \"%s\" without default value."});
}

uint32_t ZRS_MOD_ReplLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return ReplaceSingleDefault(
        module, deviate, target,
        {"Failed to replace default of leaf node \"%s\", because the number of defaults to be "
         "deleted > 1.",
         "Failed to replace default of leaf node \"%s\" without default value."});
}

uint32_t ZRS_MOD_ReplLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    ZrDict *dict = &module->ctx->dict;
    ZrsLeafListInfo *info = zr::LeafListOf(target);
    if (info->defaultCount == 0)
        return zr::RefuseDeviate(module, target,
                                 "Failed to replace defaults of leaf-list node \"%s\".");
    // The new values first, so that the old ones stay when memory runs out.
    ZrsLeafListInfo fresh{};
    uint32_t status =
        ZRS_NODE_AppendLeaflistDefaults(dict, &fresh, deviate->defaults, deviate->defaultCount);
    if (status != ZR_OK)
        return status;
    zr::FreeTexts(dict, info->defaults, info->defaultCount);
    info->defaults = fresh.defaults;
    info->defaultCount = fresh.defaultCount;
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevReplType(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    ZrtRealType *type = zr::RealTypeSlot(target);
    if (type == nullptr)
        return ZR_ERR_FAILED;
    ZrtRealType copy{};
    uint32_t status = ZRT_TYPE_CopyZrtRealTypeInner(module->ctx, &copy, deviate->type);
    if (status != ZR_OK)
        return status;
    // A copy holds no pointer to a typedef: its reference is looked up by name at each validation,
    // so that nothing is left behind when the deviating module goes.
    ZRT_TYPE_DestroyZrtRealTypeInner(module->ctx, type);
    *type = copy;
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevReplUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    const char **units = zr::UnitsSlot(target);
    if (units == nullptr || *units == nullptr)
        return ZR_ERR_FAILED;
    return zr::ReplaceText(module, *units, deviate->units);
}
