// "deviate delete": properties that the target must have, with the very values given.
#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "platform/memory.h"
#include "platform/text.h"
#include "schema/deviation/deviation_steps.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/nodes/node.h"

namespace {

// clang-format off
constexpr zr::DeviateStep kDeleteSteps[] = {
    // property            step                          summary of a failure
    {zr::CarriesDefaults,  ZRS_MOD_CoupleDevDelDefaults, "Failed to delete default from node \"%s\"."},
    {zr::CarriesMusts,     ZRS_MOD_CoupleDevDelMusts,    "Failed to delete must from node \"%s\"."},
    {zr::CarriesUnits,     ZRS_MOD_CoupleDevDelUnits,    "Failed to delete units from node \"%s\"."},
    {zr::CarriesExtInsts,  ZRS_MOD_CoupleDevDelExtInsts, "Failed to delete extension-instance to node \"%s\"."},
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

template <typename Record, typename IsLive>
uint32_t CountLive(const Record *array, uint32_t count, IsLive isLive)
{
    uint32_t live = 0;
    for (uint32_t i = 0; i < count; ++i)
        live += isLive(array[i]) ? 1 : 0;
    return live;
}

// Moves the musts that are left to the front, so that the array is in order even when no memory is
// left to make it shorter.
uint32_t CloseUpMusts(ZrsMust *musts, uint32_t count)
{
    uint32_t kept = 0;
    for (uint32_t i = 0; i < count; ++i) {
        if (musts[i].condition == nullptr)
            continue;
        if (i != kept)
            ZRS_NODE_AssignMoveMust(&musts[kept], &musts[i]);
        ++kept;
    }
    return kept;
}

uint32_t CloseUpExtInsts(ZrsExtInst *instances, uint32_t count)
{
    uint32_t kept = 0;
    for (uint32_t i = 0; i < count; ++i) {
        if (instances[i].extensionName == nullptr)
            continue;
        if (i != kept) {
            instances[kept] = instances[i];
            instances[i] = ZrsExtInst();
        }
        ++kept;
    }
    return kept;
}

uint32_t ShrinkMusts(ZrDict *dict, ZrNode *target)
{
    uint32_t oldCount = target->mustCount;
    uint32_t kept = CloseUpMusts(target->musts, oldCount);
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
    uint32_t kept = CloseUpExtInsts(target->extInsts, oldCount);
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
    uint32_t left = CountLive(info->defaults, info->defaultCount,
                              [](const char *value) { return value != nullptr; });
    return ZRS_NODE_SubtractLeaflistDefaults(dict, info, left);
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
