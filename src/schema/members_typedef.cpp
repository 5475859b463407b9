// The typedefs of a module (RFC 7950, section 7.3).
#include "foundation/record_arrays.h"
#include "schema/members.h"
#include "types/real_type.h"

uint32_t ZRS_MOD_FillTypeDef(ZrCtx *ctx, ZrsTypDef *record, const char *name,
                             const ZrtRealType *realType, const char *defaultValue)
{
    if (ctx == nullptr || record == nullptr || name == nullptr || realType == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsTypDef();
    uint32_t status = ZR_ERR_NO_MEMORY;
    if (zr::Intern(&ctx->dict, record->name, name) &&
        zr::Intern(&ctx->dict, record->defaultValue, defaultValue))
        status = ZRT_TYPE_CopyZrtRealTypeInner(ctx, &record->realType, realType) == ZR_OK
                     ? ZR_OK
                     : ZR_ERR_INVALID; // kept: a type that cannot be copied is an invalid type
    if (status != ZR_OK) {
        zr::Release(&ctx->dict, record->name);
        zr::Release(&ctx->dict, record->defaultValue);
    }
    return status;
}

uint32_t ZRS_MOD_AppendOneTypeDef(ZrMod *module, const char *name, const ZrtRealType *realType,
                                  const char *defaultValue)
{
    if (module == nullptr || name == nullptr || realType == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->typedefs, &module->typedefCount, [=](ZrsTypDef *record) {
        return ZRS_MOD_FillTypeDef(module->ctx, record, name, realType, defaultValue);
    });
}

void ZRS_TYPE_DestroyTypDefInner(ZrCtx *ctx, ZrsTypDef *record)
{
    if (ctx == nullptr || record == nullptr)
        return;
    zr::Release(&ctx->dict, record->name);
    zr::Release(&ctx->dict, record->defaultValue);
    zr::Release(&ctx->dict, record->units);
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, &record->realType);
}

void ZRS_TYPE_FreeTypDefArray(ZrCtx *ctx, ZrsTypDef *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [ctx](ZrsTypDef *record) { ZRS_TYPE_DestroyTypDefInner(ctx, record); });
}
