// SPDX-License-Identifier: Apache-2.0
#include "schema/members/ext_inst.h"

#include "foundation/array.h"

namespace {

auto Clearer(ZrDict *dict)
{
    return [dict](ZrsExtInst *record) { ZRS_EXT_ClearExtInst(dict, record); };
}

// A copy of `source` with its children in `record`; a failure leaves the record empty.
uint32_t FillCopy(ZrDict *dict, ZrsExtInst *record, const ZrsExtInst *source)
{
    uint32_t status = ZRS_EXT_FillExtInst(dict, record, source->moduleName, source->extensionName,
                                          source->argument);
    if (status != ZR_OK)
        return status;
    status = ZRS_EXT_UpdateExtInstChildInsts(dict, record, source->children, source->childCount);
    if (status != ZR_OK)
        ZRS_EXT_ClearExtInst(dict, record);
    return status;
}

} // namespace

uint32_t ZRS_EXT_FillExtInst(ZrDict *dict, ZrsExtInst *record, const char *moduleName,
                             const char *extensionName, const char *argument)
{
    if (dict == nullptr || record == nullptr || moduleName == nullptr || extensionName == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsExtInst();
    if (zr::Intern(dict, record->moduleName, moduleName) &&
        zr::Intern(dict, record->extensionName, extensionName) &&
        zr::Intern(dict, record->argument, argument))
        return ZR_OK;
    ZRS_EXT_ClearExtInst(dict, record);
    return ZR_ERR_NO_MEMORY;
}

void ZRS_EXT_ClearExtInst(ZrDict *dict, ZrsExtInst *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->moduleName);
    zr::Release(dict, record->extensionName);
    zr::Release(dict, record->argument);
    ZRS_EXT_FreeExtInsts(dict, record->children, record->childCount);
    record->childCount = 0;
    record->children = nullptr;
}

void ZRS_EXT_FreeExtInsts(ZrDict *dict, ZrsExtInst *array, uint32_t count)
{
    zr::FreeRecords(array, count, Clearer(dict));
}

uint32_t ZRS_EXT_CheckTwoExtInstSame(const ZrsExtInst *a, const ZrsExtInst *b)
{
    return a != nullptr && b != nullptr && a->moduleName == b->moduleName &&
           a->extensionName == b->extensionName && a->argument == b->argument;
}

ZrsExtInst *ZRS_EXT_FindSameExtInstInArray(ZrsExtInst *array, uint32_t count,
                                           const ZrsExtInst *record)
{
    return zr::FindFirst(array, count, [record](const ZrsExtInst &other) {
        return ZRS_EXT_CheckTwoExtInstSame(&other, record) != 0;
    });
}

uint32_t ZRS_EXT_AppendOneExtInstToArray(ZrDict *dict, ZrsExtInst **array, uint16_t *count,
                                         const char *moduleName, const char *extensionName,
                                         const char *argument)
{
    if (moduleName == nullptr || extensionName == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(array, count, [=](ZrsExtInst *record) {
        return ZRS_EXT_FillExtInst(dict, record, moduleName, extensionName, argument);
    });
}

ZrsExtInst *ZRS_EXT_CopyExtInsts(ZrDict *dict, const ZrsExtInst *source, uint32_t count)
{
    return zr::CopyRecords(
        source, count,
        [dict](ZrsExtInst *copy, const ZrsExtInst *from) { return FillCopy(dict, copy, from); },
        Clearer(dict));
}

uint32_t ZRS_EXT_UpdateExtInstChildInsts(ZrDict *dict, ZrsExtInst *record,
                                         const ZrsExtInst *children, uint32_t childCount)
{
    if (childCount == 0)
        return ZR_OK;
    if (record == nullptr || childCount > UINT16_MAX)
        return ZR_ERR_INVALID;
    record->children = ZRS_EXT_CopyExtInsts(dict, children, childCount);
    record->childCount = record->children == nullptr ? uint16_t{0} : uint16_t(childCount);
    return record->children == nullptr ? ZR_ERR_NO_MEMORY : ZR_OK;
}

uint32_t ZRS_EXT_MergeOneExtInstToArray(ZrDict *dict, ZrsExtInst **array, uint16_t *count,
                                        const ZrsExtInst *source)
{
    if (source == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = ZRS_EXT_AppendOneExtInstToArray(dict, array, count, source->moduleName,
                                                      source->extensionName, source->argument);
    if (status != ZR_OK)
        return status;
    ZrsExtInst *record = &(*array)[*count - 1];
    status = ZRS_EXT_UpdateExtInstChildInsts(dict, record, source->children, source->childCount);
    if (status != ZR_OK)
        ZRS_EXT_ClearExtInst(dict, record); // an empty record counts as a removed one
    return status;
}

uint32_t ZRS_EXT_MergeExtInsts(ZrDict *dict, ZrsExtInst **array, uint16_t *count,
                               const ZrsExtInst *source, uint32_t sourceCount)
{
    if (array == nullptr || count == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; source != nullptr && i < sourceCount; ++i) {
        if (ZRS_EXT_FindSameExtInstInArray(*array, *count, &source[i]) != nullptr)
            continue;
        uint32_t status = ZRS_EXT_MergeOneExtInstToArray(dict, array, count, &source[i]);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_EXT_SubtractExtInstArray(ZrDict *dict, ZrsExtInst **array, uint32_t oldCount,
                                      uint32_t newCount)
{
    if (dict == nullptr || array == nullptr)
        return ZR_ERR_INVALID;
    ZrsExtInst *kept = nullptr;
    uint32_t keptCount = 0;
    uint32_t status = zr::NewArray(&kept, newCount);
    for (uint32_t i = 0; *array != nullptr && i < oldCount && status == ZR_OK; ++i) {
        const ZrsExtInst *record = &(*array)[i];
        if (record->extensionName == nullptr)
            continue;
        if (keptCount == newCount) { // nothing was removed, or the caller has miscounted
            ZRS_EXT_FreeExtInsts(dict, kept, keptCount);
            return ZR_OK;
        }
        status = FillCopy(dict, &kept[keptCount], record);
        if (status == ZR_OK)
            ++keptCount;
    }
    if (status != ZR_OK) {
        ZRS_EXT_FreeExtInsts(dict, kept, keptCount);
        return status;
    }
    ZRS_EXT_FreeExtInsts(dict, *array, oldCount);
    *array = kept;
    return ZR_OK;
}

namespace zr {

uint32_t ScanExtInsts(const ZrsExtInst *array, uint32_t count, ZrExtInstScanFunc callback,
                      void *userData)
{
    for (uint32_t i = 0; array != nullptr && i < count; ++i) {
        const ZrsExtInst *record = &array[i];
        if (record->extensionName == nullptr) // memory ran out while it was merged in
            continue;
        uint32_t result =
            callback(record, record->moduleName, record->extensionName, record->argument, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

} // namespace zr

uint32_t ZR_EXT_ScanAllChildExtInsts(const ZrsExtInst *instance, ZrExtInstScanFunc callback,
                                     void *userData)
{
    if (instance == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return zr::ScanExtInsts(instance->children, instance->childCount, callback, userData);
}
