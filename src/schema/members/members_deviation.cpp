// SPDX-License-Identifier: Apache-2.0
// The deviations of a module and their deviates (RFC 7950, section 7.20.3).
#include "foundation/array.h"
#include "schema/members/condition_records.h"
#include "schema/members/entry_rules.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "types/real_type.h"

namespace {

// Copies one array of the deviate; false when it holds something and the copy fails.
template <typename Record, typename Copy>
bool CopyPart(Record *&array, uint16_t &count, uint16_t sourceCount, Copy copy)
{
    if (sourceCount == 0)
        return true;
    array = copy();
    count = array == nullptr ? uint16_t{0} : sourceCount;
    return array != nullptr;
}

} // namespace

uint32_t ZRS_MOD_FillDeviationTargetNode(ZrDict *dict, ZrsDeviation *record, const char *targetPath)
{
    if (dict == nullptr || record == nullptr || targetPath == nullptr)
        return ZR_ERR_INVALID;
    return zr::Intern(dict, record->targetPath, targetPath) ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneDeviation(ZrMod *module, const char *targetPath)
{
    if (module == nullptr || targetPath == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->deviations, &module->deviationCount, [=](ZrsDeviation *record) {
        return ZRS_MOD_FillDeviationTargetNode(&module->ctx->dict, record, targetPath);
    });
}

ZrsDeviation *ZRS_MOD_CheckSameDeviationExist(ZrsDeviation *array, uint32_t count,
                                              const ZrsDeviation *record)
{
    return zr::FindFirst(array, count, [record](const ZrsDeviation &other) {
        return ZRS_MOD_CheckTwoDeviationSame(&other, record) != 0;
    });
}

void ZRS_MOD_ClearDeviation(ZrCtx *ctx, ZrsDeviation *record)
{
    if (ctx == nullptr || record == nullptr)
        return;
    zr::Release(&ctx->dict, record->targetPath);
    ZRS_MOD_FreeDeviate(ctx, record->deviates, record->deviateCount);
    record->deviates = nullptr;
    record->deviateCount = 0;
}

void ZRS_MOD_FreeDeviation(ZrCtx *ctx, ZrsDeviation *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [ctx](ZrsDeviation *record) { ZRS_MOD_ClearDeviation(ctx, record); });
}

// Deviations are applied one by one, so none stands for another: merging modules keeps them all.
uint32_t ZRS_MOD_CheckTwoDeviationSame(const ZrsDeviation *, const ZrsDeviation *)
{
    return 0;
}

uint32_t ZRS_MOD_CheckTwoDeviateSame(const ZrsDeviate *, const ZrsDeviate *)
{
    return 0;
}

uint32_t ZRS_MOD_FillDeviate(ZrCtx *ctx, ZrsDeviate *record, const ZrsDeviate *source)
{
    if (ctx == nullptr || record == nullptr || source == nullptr)
        return ZR_ERR_INVALID;
    ZrDict *dict = &ctx->dict;
    *record = ZrsDeviate();
    record->kind = source->kind;
    record->flags = source->flags;
    bool done =
        CopyPart(record->musts, record->mustCount, source->mustCount,
                 [=] { return ZRS_NODE_CopyMustsArray(dict, source->musts, source->mustCount); }) &&
        CopyPart(record->defaults, record->defaultCount, source->defaultCount,
                 [=] { return zr::CopyTexts(dict, source->defaults, source->defaultCount); }) &&
        CopyPart(record->extInsts, record->extInstCount, source->extInstCount, [=] {
            return ZRS_EXT_CopyExtInsts(dict, source->extInsts, source->extInstCount);
        });
    if (done && source->type != nullptr) {
        record->type = ZRT_TYPE_CopyZrtRealType(ctx, source->type);
        done = record->type != nullptr;
    }
    if (done && zr::Intern(dict, record->units, source->units) &&
        zr::CopyEntryRules(ctx, record, zr::EntryRulesOf(ctx, source)) == ZR_OK)
        return ZR_OK;
    ZRS_MOD_ClearDeviate(ctx, record);
    return ZR_ERR_NO_MEMORY;
}

ZrsDeviate *ZRS_MOD_CopyDeviateArray(ZrCtx *ctx, const ZrsDeviate *array, uint32_t count)
{
    return zr::CopyRecords(
        array, count,
        [ctx](ZrsDeviate *copy, const ZrsDeviate *from) {
            return ZRS_MOD_FillDeviate(ctx, copy, from);
        },
        [ctx](ZrsDeviate *record) { ZRS_MOD_ClearDeviate(ctx, record); });
}

void ZRS_MOD_ClearDeviate(ZrCtx *ctx, ZrsDeviate *record)
{
    if (ctx == nullptr || record == nullptr)
        return;
    ZrDict *dict = &ctx->dict;
    ZRS_NODE_FreeMusts(dict, record->musts, record->mustCount);
    zr::FreeTexts(dict, record->defaults, record->defaultCount);
    ZRT_TYPE_DestroyZrtRealType(ctx, record->type);
    zr::Release(dict, record->units);
    ZRS_EXT_FreeExtInsts(dict, record->extInsts, record->extInstCount);
    zr::DropEntryRules(ctx, record);
    *record = ZrsDeviate();
}

void ZRS_MOD_FreeDeviate(ZrCtx *ctx, ZrsDeviate *array, uint32_t count)
{
    zr::FreeRecords(array, count, [ctx](ZrsDeviate *record) { ZRS_MOD_ClearDeviate(ctx, record); });
}
