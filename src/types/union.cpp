// The member types of a union and the check of its values (RFC 7950, section 9.12).
#include "types/constraint_body.h"
#include "types/constraints.h"
#include "types/nested.h"
#include "types/real_type.h"

void *ZRT_CONS_CreateConsDataBodyWithUnion(uint32_t count)
{
    return zr::CreateCountedBody<ZrtConsUnion>(count);
}

void ZRT_CONS_DestroyConsDataBodyWithUnion(ZrCtx *ctx, void *body)
{
    zr::DestroyCountedBody<ZrtConsUnion>(ctx, body, [](ZrCtx *owner, ZrtRealType &member) {
        ZRT_TYPE_DestroyZrtRealTypeInner(owner, &member);
    });
}

void *ZRT_CONS_CopyConsDataBodyWithUnion(ZrCtx *ctx, const void *body)
{
    return zr::CopyCountedBody<ZrtConsUnion>(
        ctx, body,
        [](ZrCtx *owner, ZrtRealType &to, const ZrtRealType &from) {
            return ZRT_TYPE_CopyZrtRealTypeInner(owner, &to, &from) == ZR_OK;
        },
        ZRT_CONS_DestroyConsDataBodyWithUnion);
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataUnion(const void *body, uint32_t inputKind,
                                                    const void *value, ZrtValidateCtx *validation)
{
    const auto *members = static_cast<const ZrtConsUnion *>(body);
    for (uint32_t i = 0; i < members->count; ++i) {
        const ZrtRealType *member = &members->items[i];
        const ZrtRealType *matched = nullptr;
        if (zr::ValidateNested(member, inputKind, value, validation, validation->node, &matched) ==
            ZR_OK) {
            ZRT_TYPE_SetMatchRealType(validation, matched != nullptr ? matched : member);
            return ZR_OK;
        }
        if (validation->tooDeep != 0)
            break;
    }
    return ZR_ERR_VALUE_UNION;
}

uint32_t ZRT_CONS_UpdateConsDataDerFromWithUnion(void *body, const ZrMod *module)
{
    auto *members = static_cast<ZrtConsUnion *>(body);
    if (members == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; i < members->count; ++i) {
        uint32_t status = ZRT_TYPE_UpdateRealTypeDerivedFrom(&members->items[i], module);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

ZrtRealType *ZRT_CONS_GetConsUnionSubTypeData(const void *body, uint16_t *countOut)
{
    const auto *members = static_cast<const ZrtConsUnion *>(body);
    if (countOut != nullptr)
        *countOut = members != nullptr ? members->count : 0;
    return members != nullptr ? members->items : nullptr;
}
