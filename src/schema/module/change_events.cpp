// SPDX-License-Identifier: Apache-2.0
// What the modules that augment or deviate a module do when it is loaded or about to go.
#include "foundation/list.h"
#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "schema/augment/augment.h"
#include "schema/deviation/deviation.h"
#include "schema/lookup/lookup.h"
#include "schema/module/module.h"

namespace {

struct HandlerRow {
    ZrRelationKind relation;
    ZrsModuleEvent event;
    ZrsCoupleEventFunc handler;
};

// clang-format off
constexpr HandlerRow kHandlers[] = {
    // relation to the other      it is             what the dependent module does
    {ZR_RELATION_AUGMENTED_BY, ZRS_MODULE_LOADED,    ZRS_MOD_CoupleAugmentFromDepMods},
    {ZR_RELATION_AUGMENTED_BY, ZRS_MODULE_UNLOADING, ZRS_MOD_UnCoupleAugmentFromDepMods},
    {ZR_RELATION_DEVIATED_BY,  ZRS_MODULE_LOADED,    ZRS_MOD_CoupleDeviationFromDepMods},
    {ZR_RELATION_DEVIATED_BY,  ZRS_MODULE_UNLOADING, ZRS_MOD_UnCoupleDeviationFromDepMods},
};
// clang-format on

} // namespace

ZrsCoupleEventFunc ZRS_MOD_GetCoupleEvtProcFunc(uint32_t relationKind, uint32_t event)
{
    for (const HandlerRow &row : kHandlers) {
        if (row.relation == relationKind && row.event == event)
            return row.handler;
    }
    return nullptr;
}

uint32_t ZRS_MOD_NotifyModuleChangeEvent(ZrCtx *ctx, const char *moduleName, uint32_t event,
                                         void *extra)
{
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (table == nullptr)
        return ZR_OK;
    // Handlers may add relations, which are put before the one at hand, but take none away.
    for (const ZrModRelItem &relation : zr::ItemsOf<ZrModRelItem>(&table->items)) {
        ZrsCoupleEventFunc handler = ZRS_MOD_GetCoupleEvtProcFunc(relation.kind, event);
        if (handler != nullptr)
            handler(ctx, moduleName, relation.otherName, extra);
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
        if (!zr::LeadsIntoModule(augment->name, changedModuleName))
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
        if (zr::LeadsIntoModule(deviation.targetPath, changedModuleName))
            deviation.flags = 0;
    }
    return ZR_OK;
}
