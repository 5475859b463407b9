// The identities of a module and their bases (RFC 7950, section 7.18).
#include "foundation/record_arrays.h"
#include "schema/conditions.h"
#include "schema/members.h"

namespace {

auto BaseClearer(ZrDict *dict)
{
    return [dict](ZrsIdentBase *record) { ZRS_MDL_ClearIdentBase(dict, record); };
}

} // namespace

uint32_t ZRS_MOD_FillIdentity(ZrDict *dict, ZrsIdentity *record, const char *name)
{
    if (dict == nullptr || record == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::Intern(dict, record->name, name) ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneIdentity(ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->identities, &module->identityCount, [=](ZrsIdentity *record) {
        return ZRS_MOD_FillIdentity(&module->ctx->dict, record, name);
    });
}

void ZRS_MDL_ClearIdentity(ZrDict *dict, ZrsIdentity *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->name);
    ZRS_MDL_FreeIdentBases(dict, record->bases, record->baseCount);
    record->bases = nullptr;
    record->baseCount = 0;
    ZRS_NODE_FreeIfFeatures(dict, record->ifFeatures, record->ifFeatureCount);
    record->ifFeatures = nullptr;
    record->ifFeatureCount = 0;
    zr::Release(dict, record->description);
}

void ZRS_MOD_FreeIdentities(ZrDict *dict, ZrsIdentity *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [dict](ZrsIdentity *record) { ZRS_MDL_ClearIdentity(dict, record); });
}

uint32_t ZRS_MOD_CheckTwoIdentitySame(const ZrsIdentity *a, const ZrsIdentity *b)
{
    return a != nullptr && b != nullptr && a->name == b->name &&
           zr::RecordsSame(a->bases, a->baseCount, b->bases, b->baseCount,
                           ZRS_MOD_CheckTwoIdentBaseSame) &&
           ZRS_NODE_CheckTwoIfFeatureArraySame(a->ifFeatures, a->ifFeatureCount, b->ifFeatures,
                                               b->ifFeatureCount) != 0;
}

uint32_t ZRS_MOD_FillIdentBase(ZrDict *dict, ZrsIdentBase *record, const char *moduleName,
                               const char *identityName)
{
    if (dict == nullptr || record == nullptr || moduleName == nullptr || identityName == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsIdentBase();
    if (zr::Intern(dict, record->moduleName, moduleName) &&
        zr::Intern(dict, record->identityName, identityName))
        return ZR_OK;
    ZRS_MDL_ClearIdentBase(dict, record);
    return ZR_ERR_NO_MEMORY;
}

ZrsIdentBase *ZRS_MOD_CopyIdentBaseArray(ZrDict *dict, const ZrsIdentBase *array, uint32_t count)
{
    return zr::CopyRecords(
        array, count,
        [dict](ZrsIdentBase *copy, const ZrsIdentBase *from) {
            return ZRS_MOD_FillIdentBase(dict, copy, from->moduleName, from->identityName);
        },
        BaseClearer(dict));
}

void ZRS_MDL_ClearIdentBase(ZrDict *dict, ZrsIdentBase *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->moduleName);
    zr::Release(dict, record->identityName);
}

void ZRS_MDL_FreeIdentBases(ZrDict *dict, ZrsIdentBase *array, uint32_t count)
{
    zr::FreeRecords(array, count, BaseClearer(dict));
}

uint32_t ZRS_MOD_CheckTwoIdentBaseSame(const ZrsIdentBase *a, const ZrsIdentBase *b)
{
    return a != nullptr && b != nullptr && a->moduleName == b->moduleName &&
           a->identityName == b->identityName;
}
