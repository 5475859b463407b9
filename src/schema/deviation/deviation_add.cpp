// SPDX-License-Identifier: Apache-2.0
// "deviate add": properties that the target does not have yet.
#include "foundation/array.h"
#include "schema/deviation/deviation_steps.h"
#include "schema/members/condition_records.h"
#include "schema/members/entry_rules.h"
#include "schema/members/ext_inst.h"
#include "schema/nodes/node.h"

namespace {

// Nothing that the target has already is added: either all is new, or nothing changes.
uint32_t AddToEntryRules(ZrMod *module, const ZrNode *target, const zr::EntryRulesChange &change)
{
    const ZrsEntryRules *wanted = change.wanted;
    if ((wanted->given & change.rules->given) != 0)
        return zr::RefuseDeviate(
            module, target,
            "Failed to add min-elements or max-elements to node \"%s\", because "
            "it already has that statement.");
    for (uint32_t i = 0; i < wanted->uniqueCount; ++i) {
        if (zr::FindUnique(change.rules, wanted->uniques[i]) != change.rules->uniqueCount)
            return zr::RefuseDeviate(
                module, target, "Failed to add unique to node \"%s\", because it already exists.");
    }
    uint32_t status =
        zr::AppendUniques(change.dict, change.rules, wanted->uniques, wanted->uniqueCount);
    if (status == ZR_OK)
        zr::TakeElementNumbers(wanted, change.rules);
    return status;
}

uint32_t AddEntryRules(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::ChangeEntryRules(module, deviate, target, AddToEntryRules);
}

// clang-format off
constexpr zr::DeviateStep kAddSteps[] = {
    // property             step                          summary of a failure
    {zr::CarriesFlags,      ZRS_MOD_CoupleDevAddFlag,     "Failed to add config or mandatory to node \"%s\"."},
    {zr::CarriesDefaults,   ZRS_MOD_CoupleDevAddDefaults, "Failed to add default statements to node \"%s\"."},
    {zr::CarriesMusts,      ZRS_MOD_CoupleDevAddMusts,    "Failed to add must statements to node \"%s\"."},
    {zr::CarriesUnits,      ZRS_MOD_CoupleDevAddUnits,    "Failed to add units statement to node \"%s\"."},
    {zr::CarriesExtInsts,   ZRS_MOD_CoupleDevAddExtInsts, "Failed to deviate-add extension-instance to node \"%s\"."},
    {zr::CarriesEntryRules, AddEntryRules,                "Failed to add min-elements, max-elements or unique to node \"%s\"."},
};
// clang-format on

constexpr zr::DefaultsByKind kAddDefaults = {ZRS_MOD_AddChoiceDefault, ZRS_MOD_AddLeafDefault,
                                             ZRS_MOD_AddLeaflistDefaults};

uint32_t AddSingleDefault(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target,
                          const zr::SingleDefaultMessages &messages)
{
    return zr::ChangeSingleDefault(
        module, deviate, target, false, messages,
        [=](const char *&slot) { return zr::ReplaceText(module, slot, deviate->defaults[0]); });
}

uint32_t AddConfig(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target)
{
    if ((target->flags & ZRS_FLAG_CONFIG_GIVEN) != 0)
        return zr::RefuseDeviate(
            module, target,
            "Failed to add config to node \"%s\", because it had been set config statement.");
    zr::SetDeviatedConfig(target, deviate->flags);
    return ZR_OK;
}

bool HasDefault(const ZrsLeafListInfo *info, const char *value)
{
    return zr::FindFirst(info->defaults, info->defaultCount, [value](const char *other) {
               return zr::TextEquals(other, value);
           }) != nullptr;
}

} // namespace

uint32_t ZRS_MOD_CoupleDevAdd(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::RunDeviateSteps(kAddSteps, module, deviate, target);
}

uint32_t ZRS_MOD_CoupleDevAddFlag(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    uint32_t status = ZR_OK;
    if ((deviate->flags & ZRS_FLAGS_CONFIG) != 0)
        status = AddConfig(module, deviate, target);
    if (status == ZR_OK && (deviate->flags & ZRS_FLAGS_MANDATORY) != 0)
        status = ZRS_MOD_AddNodeMandatory(module, deviate, target);
    return status;
}

uint32_t ZRS_MOD_AddNodeMandatory(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    if ((target->flags & ZRS_FLAGS_MANDATORY) != 0)
        return zr::RefuseDeviate(module, target, "Failed to add mandatory flag to node \"%s\".");
    target->flags |= deviate->flags & ZRS_FLAGS_MANDATORY;
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevAddDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::RunByKind(kAddDefaults, module, deviate, target);
}

uint32_t ZRS_MOD_AddChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return AddSingleDefault(
        module, deviate, target,
        {"Failed to add default to choice node \"%s\", because the number of default to be added > "
         "1.",
         "Failed to add default to choice node \"%s\", because it had been set default "
         "statement."});
}

uint32_t ZRS_MOD_AddLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    // The two blanks of the first text: docs/oddities.md.
    return AddSingleDefault(
        module, deviate, target,
        {"Failed to add default to leaf node \"%s\",  because the number of default to be added > "
         "1.",
         "Failed to add default to leaf node \"%s\", because it had been set default statement."});
}

uint32_t ZRS_MOD_AddLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    ZrsLeafListInfo *info = zr::LeafListOf(target);
    for (uint32_t i = 0; i < deviate->defaultCount; ++i) {
        if (HasDefault(info, deviate->defaults[i]))
            return zr::RefuseDeviate(
                module, target,
                "Failed to add default to node \"%s\", because this value already exists.");
    }
    return ZRS_NODE_AppendLeaflistDefaults(&module->ctx->dict, info, deviate->defaults,
                                           deviate->defaultCount);
}

uint32_t ZRS_MOD_CoupleDevAddMusts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    for (uint32_t i = 0; i < deviate->mustCount; ++i) {
        uint32_t status = ZRS_NODE_AppendOneMust(&module->ctx->dict, &target->musts,
                                                 &target->mustCount, &deviate->musts[i]);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevAddUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    const char **units = zr::UnitsSlot(target);
    if (units == nullptr)
        return ZR_ERR_FAILED;
    if (*units != nullptr)
        return zr::RefuseDeviate(
            module, target, "Failed to add units to node \"%s\", because it already has units.");
    return zr::ReplaceText(module, *units, deviate->units);
}

uint32_t ZRS_MOD_CoupleDevAddExtInsts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    uint32_t status = ZR_OK;
    bool told = false;
    bool nacm = false;
    for (uint32_t i = 0; i < deviate->extInstCount && status == ZR_OK; ++i) {
        const ZrsExtInst *instance = &deviate->extInsts[i];
        if (ZRS_EXT_FindSameExtInstInArray(target->extInsts, target->extInstCount, instance) !=
            nullptr)
            continue;
        if (!told)
            ZRS_NODE_NotifyBeforeExtInstsChange(target);
        told = true;
        status = ZRS_EXT_MergeOneExtInstToArray(&module->ctx->dict, &target->extInsts,
                                                &target->extInstCount, instance);
        if (status == ZR_OK && zr::IsNacmInstance(instance)) {
            zr::AddDeviatedNacm(target, instance->moduleName, instance->extensionName);
            nacm = true;
        }
    }
    if (nacm)
        ZRS_NODE_UpdateFlag(target);
    return status;
}
