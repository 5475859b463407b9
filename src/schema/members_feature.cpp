// The features of a module (RFC 7950, section 7.20.1).
#include "foundation/record_arrays.h"
#include "schema/conditions.h"
#include "schema/members.h"

uint32_t ZRS_MOD_FillFeature(ZrDict *dict, ZrsFeature *record, const char *name)
{
    if (dict == nullptr || record == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::Intern(dict, record->name, name) ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneFeature(ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->features, &module->featureCount, [=](ZrsFeature *record) {
        return ZRS_MOD_FillFeature(&module->ctx->dict, record, name);
    });
}

void ZRS_MDL_ClearFeature(ZrDict *dict, ZrsFeature *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->name);
    ZRS_NODE_FreeIfFeatures(dict, record->ifFeatures, record->ifFeatureCount);
    record->ifFeatures = nullptr;
    record->ifFeatureCount = 0;
}

void ZRS_MOD_FreeFeatures(ZrDict *dict, ZrsFeature *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [dict](ZrsFeature *record) { ZRS_MDL_ClearFeature(dict, record); });
}

uint32_t ZRS_MOD_CheckTwoFeatureSame(const ZrsFeature *a, const ZrsFeature *b)
{
    return a != nullptr && b != nullptr && a->name == b->name &&
           ZRS_NODE_CheckTwoIfFeatureArraySame(a->ifFeatures, a->ifFeatureCount, b->ifFeatures,
                                               b->ifFeatureCount) != 0;
}
