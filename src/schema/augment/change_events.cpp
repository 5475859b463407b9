#include "schema/augment/change_events.h"

#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "schema/augment/augment.h"
#include "schema/deviation/deviation.h"
#include "schema/members/module.h"

namespace {

constexpr uint32_t kRelationKinds = 2;
constexpr uint32_t kEvents = 2;

// clang-format off
constexpr ZrsCoupleEventFunc kHandlers[kRelationKinds][kEvents] = {
    // relation         loaded                                unloading
    /* augmented by */ {ZRS_MOD_CoupleAugmentFromDepMods,     ZRS_MOD_UnCoupleAugmentFromDepMods},
    /* deviated by  */ {ZRS_MOD_CoupleDeviationFromDepMods,   ZRS_MOD_UnCoupleDeviationFromDepMods},
};
// clang-format on
static_assert(ZR_RELATION_AUGMENTED_BY == 0 && ZR_RELATION_DEVIATED_BY == 1);
static_assert(ZRS_MODULE_LOADED == 0 && ZRS_MODULE_UNLOADING == 1);

// Whether the path's last named module is the changed one.
bool EndsIn(const char *path, const char *moduleName)
{
    zr::ModuleNameText name;
    return zr::LastNamedModule(path, name) && zr::TextEquals(name, moduleName);
}

} // namespace

ZrsCoupleEventFunc ZRS_MOD_GetCoupleEvtProcFunc(uint32_t relationKind, uint32_t event)
{
    return relationKind < kRelationKinds && event < kEvents ? kHandlers[relationKind][event]
                                                            : nullptr;
}

uint32_t ZRS_MOD_NotifyModuleChangeEvent(ZrCtx *ctx, const char *moduleName, uint32_t event,
                                         void *extra)
{
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (table == nullptr)
        return ZR_OK;
    // Handlers may add relations, which are put before the one at hand, but take none away.
    for (const ZrListLink *link = table->items.next; link != &table->items; link = link->next) {
        const auto *item = reinterpret_cast<const ZrModRelItem *>(link);
        ZrsCoupleEventFunc handler = ZRS_MOD_GetCoupleEvtProcFunc(item->kind, event);
        if (handler != nullptr)
            handler(ctx, moduleName, item->otherName, extra);
    }
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleAugmentFromDepMods(ZrCtx *ctx, const char *, const char *dependentModuleName,
                                          void *)
{
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, dependentModuleName);
    if (module == nullptr)
        return ZR_ERR_FAILED;
    zr::RetryModuleAugments(module);
    return ZR_OK;
}

uint32_t ZRS_MOD_UnCoupleAugmentFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                            const char *dependentModuleName, void *)
{
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, dependentModuleName);
    if (module == nullptr)
        return ZR_ERR_FAILED;
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        if (!EndsIn(augment->name, changedModuleName))
            continue;
        ZRS_NODE_UnCoupleAugmentNode(augment);
        augment->flags &= ~ZRS_FLAG_MADE_TARGET; // a made target goes with its module
    }
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDeviationFromDepMods(ZrCtx *ctx, const char *,
                                            const char *dependentModuleName, void *)
{
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, dependentModuleName);
    if (module == nullptr)
        return ZR_ERR_FAILED;
    zr::RetryModuleDeviations(module);
    return ZR_OK;
}

uint32_t ZRS_MOD_UnCoupleDeviationFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                              const char *dependentModuleName, void *)
{
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, dependentModuleName);
    if (module == nullptr)
        return ZR_ERR_FAILED;
    ZR_CTX_ClearModCoupleErr(ctx->errMng, dependentModuleName);
    for (uint32_t i = 0; i < module->deviationCount; ++i) {
        ZrsDeviation &deviation = module->deviations[i];
        if (EndsIn(deviation.targetPath, changedModuleName))
            deviation.flags = 0;
    }
    return ZR_OK;
}
