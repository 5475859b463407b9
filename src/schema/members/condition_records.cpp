// SPDX-License-Identifier: Apache-2.0
#include "schema/members/condition_records.h"

#include "foundation/array.h"

// If-features.

namespace {

auto IfFeatureClearer(ZrDict *dict)
{
    return [dict](ZrsIfFeature *entry) { ZRS_NODE_ClearIfFeature(dict, entry); };
}

} // namespace

uint32_t ZRS_NODE_FillIfFeature(ZrDict *dict, ZrsIfFeature *entry, const char *moduleName,
                                const char *featureName)
{
    if (dict == nullptr || entry == nullptr || moduleName == nullptr || featureName == nullptr)
        return ZR_ERR_INVALID;
    *entry = ZrsIfFeature();
    if (zr::Intern(dict, entry->moduleName, moduleName) &&
        zr::Intern(dict, entry->featureName, featureName))
        return ZR_OK;
    ZRS_NODE_ClearIfFeature(dict, entry);
    return ZR_ERR_NO_MEMORY;
}

void ZRS_NODE_ClearIfFeature(ZrDict *dict, ZrsIfFeature *entry)
{
    if (entry == nullptr)
        return;
    zr::Release(dict, entry->moduleName);
    zr::Release(dict, entry->featureName);
}

void ZRS_NODE_FreeIfFeatures(ZrDict *dict, ZrsIfFeature *array, uint32_t count)
{
    zr::FreeRecords(array, count, IfFeatureClearer(dict));
}

uint32_t ZRS_NODE_CheckTwoIfFeatureSame(const ZrsIfFeature *a, const ZrsIfFeature *b)
{
    return a != nullptr && b != nullptr && a->moduleName == b->moduleName &&
           a->featureName == b->featureName;
}

uint32_t ZRS_NODE_CheckTwoIfFeatureArraySame(const ZrsIfFeature *a, uint32_t countA,
                                             const ZrsIfFeature *b, uint32_t countB)
{
    return zr::RecordsSame(a, countA, b, countB, ZRS_NODE_CheckTwoIfFeatureSame);
}

ZrsIfFeature *ZRS_NODE_FindIfFeature(ZrsIfFeature *array, uint32_t count, const char *moduleName,
                                     const char *featureName)
{
    ZrsIfFeature wanted = {moduleName, featureName};
    return zr::FindFirst(array, count, [&wanted](const ZrsIfFeature &entry) {
        return ZRS_NODE_CheckTwoIfFeatureSame(&entry, &wanted) != 0;
    });
}

uint32_t ZRS_NODE_AppendOneIfFeat(ZrDict *dict, ZrsIfFeature **array, uint16_t *count,
                                  const char *moduleName, const char *featureName)
{
    return zr::AppendOne(array, count, [=](ZrsIfFeature *entry) {
        return ZRS_NODE_FillIfFeature(dict, entry, moduleName, featureName);
    });
}

ZrsIfFeature *ZRS_NODE_CopyIfFeaturesArray(ZrDict *dict, const ZrsIfFeature *array, uint32_t count)
{
    return zr::CopyRecords(
        array, count,
        [dict](ZrsIfFeature *copy, const ZrsIfFeature *from) {
            return ZRS_NODE_FillIfFeature(dict, copy, from->moduleName, from->featureName);
        },
        IfFeatureClearer(dict));
}

// Musts.

namespace {

auto MustClearer(ZrDict *dict)
{
    return [dict](ZrsMust *record) { ZRS_NODE_ClearMust(dict, record); };
}

uint32_t FillMustCopy(ZrDict *dict, ZrsMust *record, const ZrsMust *source)
{
    return ZRS_NODE_FillMust(dict, record, source->condition, source->errorMessage,
                             source->errorAppTag);
}

uint32_t CountConditions(const ZrsMust *array, uint32_t count)
{
    uint32_t conditions = 0;
    for (uint32_t i = 0; array != nullptr && i < count; ++i)
        conditions += array[i].condition != nullptr;
    return conditions;
}

} // namespace

uint32_t ZRS_NODE_FillMust(ZrDict *dict, ZrsMust *record, const char *condition,
                           const char *errorMessage, const char *errorAppTag)
{
    if (dict == nullptr || record == nullptr || condition == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsMust();
    if (zr::Intern(dict, record->condition, condition) &&
        zr::Intern(dict, record->errorMessage, errorMessage) &&
        zr::Intern(dict, record->errorAppTag, errorAppTag))
        return ZR_OK;
    ZRS_NODE_ClearMust(dict, record);
    return ZR_ERR_NO_MEMORY;
}

void ZRS_NODE_ClearMust(ZrDict *dict, ZrsMust *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->condition);
    zr::Release(dict, record->errorMessage);
    zr::Release(dict, record->errorAppTag);
}

void ZRS_NODE_FreeMusts(ZrDict *dict, ZrsMust *array, uint32_t count)
{
    zr::FreeRecords(array, count, MustClearer(dict));
}

void ZRS_NODE_AssignMoveMust(ZrsMust *destination, ZrsMust *source)
{
    if (destination == nullptr || source == nullptr || destination == source)
        return;
    *destination = *source;
    *source = ZrsMust();
}

uint32_t ZRS_NODE_CheckTwoMustSame(const ZrsMust *a, const ZrsMust *b)
{
    return a != nullptr && b != nullptr && a->condition == b->condition;
}

uint32_t ZRS_NODE_AppendOneMust(ZrDict *dict, ZrsMust **array, uint16_t *count,
                                const ZrsMust *source)
{
    if (dict == nullptr || source == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(array, count,
                         [=](ZrsMust *record) { return FillMustCopy(dict, record, source); });
}

ZrsMust *ZRS_NODE_CopyMustsArray(ZrDict *dict, const ZrsMust *array, uint32_t count)
{
    return zr::CopyRecords(
        array, count,
        [dict](ZrsMust *copy, const ZrsMust *from) { return FillMustCopy(dict, copy, from); },
        MustClearer(dict));
}

uint32_t ZRS_NODE_SubtractMustsArray(ZrDict *dict, ZrsMust **array, uint32_t oldCount,
                                     uint32_t newCount)
{
    if (dict == nullptr || array == nullptr || CountConditions(*array, oldCount) > newCount)
        return ZR_ERR_INVALID;
    ZrsMust *kept = nullptr;
    uint32_t keptCount = 0;
    uint32_t status = zr::NewArray(&kept, newCount);
    if (status != ZR_OK)
        return status;
    for (uint32_t i = 0; *array != nullptr && i < oldCount && status == ZR_OK; ++i) {
        const ZrsMust *record = &(*array)[i];
        if (record->condition == nullptr)
            continue;
        status = FillMustCopy(dict, &kept[keptCount], record);
        if (status == ZR_OK)
            ++keptCount;
    }
    if (status != ZR_OK) { // docs/oddities.md: the target loses all its musts
        ZRS_NODE_FreeMusts(dict, kept, keptCount);
        kept = nullptr;
    }
    ZRS_NODE_FreeMusts(dict, *array, oldCount);
    *array = kept;
    return status;
}
