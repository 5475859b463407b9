// SPDX-License-Identifier: Apache-2.0
// Deviations, one by one and all of a module.
#include "schema/deviation/deviation.h"

#include <zrschema/context.h>

#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "foundation/statement_ids.h"
#include "model/context.h"
#include "model/navigation.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "schema/deviation/deviation_steps.h"
#include "schema/lookup/lookup.h"
#include "types/real_type.h"

namespace {

bool NeedsModuleNames(const ZrNode *target, const ZrsDeviate *deviate)
{
    if (deviate->defaultCount == 0 || (deviate->flags & ZRS_DEVIATE_DEFAULTS_QUALIFIED) != 0 ||
        (target->kind != ZR_NODE_LEAF && target->kind != ZR_NODE_LEAF_LIST))
        return false;
    const ZrtRealType *type =
        deviate->type != nullptr ? deviate->type : ZRS_NODE_GetLeafSchemaRealType(target);
    return ZRT_TYPE_IsTypeWithIdentref(type) != 0;
}

// The text with the names of modules in place of prefixes, interned in `copy`.
uint32_t QualifyDefault(const ZrMod *module, const char *&copy, const char *text)
{
    zr::Owned<char> qualified(ZRS_MOD_ConvertPrefixValToJsonFormat(module, text));
    return qualified && zr::Intern(&module->ctx->dict, copy, qualified.get()) ? ZR_OK
                                                                              : ZR_ERR_INVALID;
}

// Applies one deviate of a run.
uint32_t ApplyDeviate(ZrMod *module, const ZrsDeviation *deviation, ZrsDeviate *deviate,
                      ZrNode *target, ZrNode *augment, zr::DeviationRun *run)
{
    uint32_t status = ZRS_MOD_RefreshDeviateDefaults(module, target, deviate);
    if (status != ZR_OK)
        return status;
    switch (deviate->kind) {
    case ZRS_DEVIATE_ADD:
        return ZRS_MOD_CoupleDevAdd(module, deviate, target);
    case ZRS_DEVIATE_DELETE:
        return ZRS_MOD_CoupleDevDel(module, deviate, target);
    case ZRS_DEVIATE_NOT_SUPPORTED:
        return zr::RemoveTarget(module, deviation, target, augment, run);
    case ZRS_DEVIATE_REPLACE:
        return ZRS_MOD_CoupleDevRepl(module, deviate, target);
    default:
        return ZR_ERR_FAILED;
    }
}

uint32_t ApplyDeviates(ZrMod *module, const ZrsDeviation *deviation, ZrNode *target,
                       ZrNode *augment, zr::DeviationRun *run)
{
    for (uint32_t i = 0; i < deviation->deviateCount; ++i) {
        ZrsDeviate *deviate = &deviation->deviates[i];
        uint32_t status = ApplyDeviate(module, deviation, deviate, target, augment, run);
        if (status != ZR_OK)
            return status;
        if (deviate->kind == ZRS_DEVIATE_NOT_SUPPORTED)
            return ZR_OK; // the target is gone; there is nothing for further deviates to change
    }
    return ZR_OK;
}

// Records which module the deviation changes, so that its loading and unloading are told.
uint32_t RecordRelation(ZrMod *module, const ZrsDeviation *deviation)
{
    zr::ModuleNameText target;
    if (!zr::LastNamedModule(deviation->targetPath, target) || zr::TextEquals(target, module->name))
        return ZR_OK;
    return ZR_CTX_AddTwoModRelation(module->ctx, target, module->name, ZR_RELATION_DEVIATED_BY);
}

// Applies a deviation of a run that is not applied yet, if its target is there.
uint32_t ApplyDeviation(ZrMod *module, ZrsDeviation *deviation, zr::DeviationRun *run)
{
    ZrNode *augment = nullptr;
    ZrNode *target = zr::FindTarget(module->ctx, deviation->targetPath, &augment, &run->children);
    // Tried again when the target is there. What it inherits has to come before what a deviation
    // changes, so that it is not there yet while it hangs in an augment.
    if (target == nullptr || !zr::StandsInSchema(target))
        return ZR_OK;
    ZR_CTX_SetLoadStage(module->ctx, ZRS_STAGE_DEVIATION);
    uint32_t status = ApplyDeviates(module, deviation, target, augment, run);
    deviation->flags =
        status == ZR_OK ? uint16_t{ZRS_DEVIATION_COUPLED} : uint16_t{ZRS_DEVIATION_FAILED};
    ZR_CTX_SetLoadStage(module->ctx, ZRS_STAGE_LOADING);
    return status;
}

} // namespace

uint32_t ZRS_MOD_RefreshDeviateDefaults(ZrMod *module, const ZrNode *target, ZrsDeviate *deviate)
{
    if (module == nullptr || target == nullptr || deviate == nullptr)
        return ZR_ERR_INVALID;
    if (!NeedsModuleNames(target, deviate))
        return ZR_OK;
    ZrDict *dict = &module->ctx->dict;
    const char **texts = zr::CopyRecords(
        const_cast<const char *const *>(deviate->defaults), deviate->defaultCount,
        [module](const char **copy, const char *const *from) {
            return QualifyDefault(module, *copy, *from);
        },
        [dict](const char **text) { zr::Release(dict, *text); });
    if (texts == nullptr)
        return ZR_ERR_INVALID;
    zr::FreeTexts(dict, deviate->defaults, deviate->defaultCount);
    deviate->defaults = texts;
    deviate->flags |= ZRS_DEVIATE_DEFAULTS_QUALIFIED;
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDeviate(ZrMod *module, ZrsDeviation *deviation, ZrsDeviate *deviate,
                               ZrNode *target, ZrNode *augment)
{
    if (module == nullptr || deviation == nullptr || deviate == nullptr || target == nullptr)
        return ZR_ERR_INVALID;
    zr::DeviationRun run;
    return ApplyDeviate(module, deviation, deviate, target, augment, &run);
}

uint32_t ZRS_MOD_CoupleDeviation(ZrMod *module, ZrsDeviation *deviation)
{
    if (module == nullptr || deviation == nullptr)
        return ZR_ERR_INVALID;
    if ((deviation->flags & ZRS_DEVIATION_COUPLED) != 0)
        return ZR_OK;
    zr::DeviationRun run;
    return ApplyDeviation(module, deviation, &run);
}

uint32_t zr::CoupleModuleDeviations(ZrMod *module)
{
    uint32_t result = ZR_OK;
    DeviationRun run;
    ScopedLoadStage stage(module->ctx, ZR_CTX_GetLoadStage(module->ctx));
    for (uint32_t i = 0; i < module->deviationCount; ++i) {
        ZrsDeviation *deviation = &module->deviations[i];
        if (deviation->flags != 0)
            continue;
        uint32_t status = RecordRelation(module, deviation);
        if (status == ZR_OK)
            status = ApplyDeviation(module, deviation, &run);
        if (result == ZR_OK)
            result = status;
    }
    return result;
}

void zr::RetryModuleDeviations(ZrMod *module)
{
    if (CoupleModuleDeviations(module) == ZR_OK)
        return;
    // Most failures record what is wrong themselves; the others would be lost, as nobody takes a
    // status here.
    ZrCtx *ctx = module->ctx;
    const ZrErrModNode *recorded = ZR_CTX_GetErrNodeByModName(ctx, module->name);
    if (recorded != nullptr && recorded->entryCount != 0)
        return;
    ScopedLoadStage stage(ctx, ZRS_STAGE_DEVIATION);
    ZR_CTX_AddModError(ctx, module->name, "Failed to couple deviation statements.");
}
