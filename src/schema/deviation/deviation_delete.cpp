// SPDX-License-Identifier: Apache-2.0
// "deviate delete": properties that the target must have, with the very values given.
#include <algorithm>
#include <utility>

#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "schema/deviation/deviation_steps.h"
#include "schema/members/condition_records.h"
#include "schema/members/entry_rules.h"
#include "schema/members/ext_inst.h"
#include "schema/nodes/node.h"

namespace {

uint32_t DeleteUniques(ZrMod *module, const ZrNode *target, const zr::EntryRulesChange &change)
{
    const ZrsEntryRules *wanted = change.wanted;
    for (uint32_t i = 0; i < wanted->uniqueCount; ++i) {
        if (zr::FindUnique(change.rules, wanted->uniques[i]) == change.rules->uniqueCount)
            return zr::RefuseDeviate(module, target,
                                     "Failed to find unique to be deleted in node \"%s\".");
    }
    for (uint32_t i = 0; i < wanted->uniqueCount; ++i) {
        uint32_t index = zr::FindUnique(change.rules, wanted->uniques[i]);
        if (index != change.rules->uniqueCount) // one that is listed twice has gone already
            zr::RemoveUnique(change.dict, change.rules, index);
    }
    return ZR_OK;
}

uint32_t DeleteEntryRules(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::ChangeEntryRules(module, deviate, target, DeleteUniques);
}

// clang-format off
constexpr zr::DeviateStep kDeleteSteps[] = {
    // property             step                          summary of a failure
    {zr::CarriesDefaults,   ZRS_MOD_CoupleDevDelDefaults, "Failed to delete default from node \"%s\"."},
    {zr::CarriesMusts,      ZRS_MOD_CoupleDevDelMusts,    "Failed to delete must from node \"%s\"."},
    {zr::CarriesUnits,      ZRS_MOD_CoupleDevDelUnits,    "Failed to delete units from node \"%s\"."},
    {zr::CarriesExtInsts,   ZRS_MOD_CoupleDevDelExtInsts, "Failed to delete extension-instance to node \"%s\"."},
    {zr::CarriesEntryRules, DeleteEntryRules,             "Failed to delete unique from node \"%s\"."},
};
// clang-format on

constexpr zr::DefaultsByKind kDeleteDefaults = {ZRS_MOD_DelChoiceDefault, ZRS_MOD_DelLeafDefault,
                                                ZRS_MOD_DelLeaflistDefaults};

uint32_t DeleteSingleDefault(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target,
                             const zr::SingleDefaultMessages &messages, const char *different)
{
    return zr::ChangeSingleDefault(module, deviate, target, true, messages, [=](const char *&slot) {
        if (!zr::TextEquals(slot, deviate->defaults[0]))
            return zr::RefuseDeviate(module, target, different);
        zr::Release(&module->ctx->dict, slot);
        return uint32_t{ZR_OK};
    });
}

// How many of the target's values the listed ones take away, a value listed twice counted twice.
struct Removal {
    bool allFound; // each listed value is among the target's
    uint32_t total;
};

template <typename Same> Removal CountRemoved(uint32_t listed, uint32_t present, Same same)
{
    Removal removal = {true, 0};
    for (uint32_t i = 0; i < listed; ++i) {
        uint32_t before = removal.total;
        for (uint32_t k = 0; k < present; ++k)
            removal.total += same(i, k) ? 1 : 0;
        removal.allFound = removal.allFound && removal.total != before;
    }
    return removal;
}

struct RemovalMessages {
    const char *notFound;
    const char *tooMany;
};

// Refuses before anything is changed.
uint32_t CheckRemoval(ZrMod *module, const ZrNode *target, const Removal &removal, uint32_t present,
                      const RemovalMessages &messages)
{
    if (!removal.allFound)
        return zr::RefuseDeviate(module, target, messages.notFound);
    if (removal.total > present)
        return zr::RefuseDeviate(module, target, messages.tooMany);
    return ZR_OK;
}

// Moves the records that are left, which have the text `name`, to the front, so that the array is
// in order even when no memory is left to make it shorter. Returns how many they are.
template <typename Record>
uint32_t CloseUp(Record *records, uint32_t count, const char *Record::*name)
{
    uint32_t kept = 0;
    for (uint32_t i = 0; i < count; ++i) {
        if (records[i].*name == nullptr)
            continue;
        if (i != kept)
            records[kept] = std::exchange(records[i], Record());
        ++kept;
    }
    return kept;
}

uint32_t ShrinkMusts(ZrDict *dict, ZrNode *target)
{
    uint32_t oldCount = target->mustCount;
    uint32_t kept = CloseUp(target->musts, oldCount, &ZrsMust::condition);
    target->mustCount = static_cast<uint16_t>(kept);
    if (kept == 0) {
        ZRS_NODE_FreeMusts(dict, target->musts, oldCount);
        target->musts = nullptr;
        return ZR_OK;
    }
    uint32_t status = ZRS_NODE_SubtractMustsArray(dict, &target->musts, oldCount, kept);
    if (target->musts == nullptr)
        target->mustCount = 0;
    return status;
}

uint32_t ShrinkExtInsts(ZrDict *dict, ZrNode *target)
{
    uint32_t oldCount = target->extInstCount;
    uint32_t kept = CloseUp(target->extInsts, oldCount, &ZrsExtInst::extensionName);
    target->extInstCount = static_cast<uint16_t>(kept);
    if (kept == 0) {
        ZRS_EXT_FreeExtInsts(dict, target->extInsts, oldCount);
        target->extInsts = nullptr;
        return ZR_OK;
    }
    return ZRS_EXT_SubtractExtInstArray(dict, &target->extInsts, oldCount, kept);
}

} // namespace

uint32_t ZRS_MOD_CoupleDevDel(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::RunDeviateSteps(kDeleteSteps, module, deviate, target);
}

uint32_t ZRS_MOD_CoupleDevDelDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::RunByKind(kDeleteDefaults, module, deviate, target);
}

uint32_t ZRS_MOD_DelChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return DeleteSingleDefault(
        module, deviate, target,
        {"Failed to delete default from choice node \"%s\", because default number > 1.",
         "Failed to delete default from choice node \"%s\" without default value."},
        "Failed to find default value to be deleted in choice node \"%s\".");
}

uint32_t ZRS_MOD_DelLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return DeleteSingleDefault(
        module, deviate, target,
        {"Failed to delete default from leaf node \"%s\", because the number of defaults to be "
         "deleted > 1.",
         "Failed to delete default from leaf node \"%s\" without default value."},
        "Failed to find default value to be deleted in leaf node \"%s\".");
}

uint32_t ZRS_MOD_DelLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    ZrsLeafListInfo *info = zr::LeafListOf(target);
    Removal removal =
        CountRemoved(deviate->defaultCount, info->defaultCount, [=](uint32_t i, uint32_t k) {
            return zr::TextEquals(deviate->defaults[i], info->defaults[k]);
        });
    uint32_t status =
        CheckRemoval(module, target, removal, info->defaultCount,
                     {"Failed to find default value to be deleted in leaf-list node \"%s\".",
                      "Failed to delete default value from leaf-list node \"%s\"."});
    if (status != ZR_OK)
        return status;
    ZrDict *dict = &module->ctx->dict;
    for (uint32_t k = 0; k < info->defaultCount; ++k) {
        for (uint32_t i = 0; i < deviate->defaultCount && info->defaults[k] != nullptr; ++i) {
            if (zr::TextEquals(deviate->defaults[i], info->defaults[k]))
                zr::Release(dict, info->defaults[k]);
        }
    }
    auto gone = std::count(info->defaults, info->defaults + info->defaultCount, nullptr);
    return ZRS_NODE_SubtractLeaflistDefaults(dict, info,
                                             info->defaultCount - static_cast<uint32_t>(gone));
}

uint32_t ZRS_MOD_CoupleDevDelMusts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    Removal removal =
        CountRemoved(deviate->mustCount, target->mustCount, [=](uint32_t i, uint32_t k) {
            return ZRS_NODE_CheckTwoMustSame(&deviate->musts[i], &target->musts[k]) != 0;
        });
    uint32_t status =
        CheckRemoval(module, target, removal, target->mustCount,
                     {"Failed to find must condition to be deleted in target node \"%s\".",
                      "Failed to delete musts from node \"%s\"."});
    if (status != ZR_OK)
        return status;
    ZrDict *dict = &module->ctx->dict;
    for (uint32_t i = 0; i < deviate->mustCount; ++i) {
        for (uint32_t k = 0; k < target->mustCount; ++k) {
            if (ZRS_NODE_CheckTwoMustSame(&deviate->musts[i], &target->musts[k]) != 0)
                ZRS_NODE_ClearMust(dict, &target->musts[k]);
        }
    }
    return ShrinkMusts(dict, target);
}

uint32_t ZRS_MOD_CoupleDevDelUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    const char **units = zr::UnitsSlot(target);
    if (units == nullptr)
        return ZR_ERR_FAILED;
    if (!zr::TextEquals(*units, deviate->units))
        return zr::RefuseDeviate(module, target,
                                 "Failed to delete units from node \"%s\", because it doesn't have "
                                 "units or the target units.");
    zr::Release(&module->ctx->dict, *units);
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevDelExtInsts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    ZrDict *dict = &module->ctx->dict;
    bool told = false;
    for (uint32_t i = 0; i < deviate->extInstCount; ++i) {
        const ZrsExtInst *instance = &deviate->extInsts[i];
        if (zr::IsNacmInstance(instance)) { // docs/oddities.md: recorded, and the deviate goes on
            ZR_CTX_AddModError(
                module->ctx, module->name,
                "Deleting extension-instance \"%s:%s\" from node \"%s\" is not supported.",
                instance->moduleName, instance->extensionName, target->name);
            continue;
        }
        while (ZrsExtInst *same = ZRS_EXT_FindSameExtInstInArray(target->extInsts,
                                                                 target->extInstCount, instance)) {
            if (!told)
                ZRS_NODE_NotifyBeforeExtInstsChange(target);
            told = true;
            ZRS_EXT_ClearExtInst(dict, same);
        }
    }
    return told ? ShrinkExtInsts(dict, target) : uint32_t{ZR_OK};
}
