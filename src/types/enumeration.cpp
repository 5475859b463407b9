// The names of an enumeration and the check of its values (RFC 7950, section 9.6).
#include <cstring>

#include "types/constraint_body.h"
#include "types/constraints.h"
#include "types/real_type.h"

namespace {

bool CopyDescriptions(ZrCtx *ctx, ZrtConsEnum *to, const ZrtConsEnum *from)
{
    if (from->descriptions == nullptr)
        return true;
    to->descriptions =
        static_cast<const char **>(zr::AllocZeroed(sizeof(const char *) * from->count));
    if (to->descriptions == nullptr)
        return false;
    for (uint32_t i = 0; i < from->count; ++i) {
        if (!zr::CopyText(ctx, to->descriptions[i], from->descriptions[i]))
            return false;
    }
    return true;
}

} // namespace

void *ZRT_CONS_CreateConsDataBodyWithEnum(uint32_t count)
{
    return zr::CreateCountedBody<ZrtConsEnum>(count);
}

void ZRT_CONS_DestroyConsDataBodyWithEnum(ZrCtx *ctx, void *body)
{
    auto *enums = static_cast<ZrtConsEnum *>(body);
    if (enums == nullptr)
        return;
    for (uint32_t i = 0; enums->descriptions != nullptr && i < enums->count; ++i)
        zr::Release(&ctx->dict, enums->descriptions[i]);
    zr::Free(enums->descriptions);
    zr::DestroyCountedBody<ZrtConsEnum>(
        ctx, enums, [](ZrCtx *owner, ZrtEnumItem &item) { zr::Release(&owner->dict, item.name); });
}

void *ZRT_CONS_CopyConsDataBodyWithEnum(ZrCtx *ctx, const void *body)
{
    auto *copy = zr::CopyCountedBody<ZrtConsEnum>(
        ctx, body,
        [](ZrCtx *owner, ZrtEnumItem &to, const ZrtEnumItem &from) {
            to.value = from.value;
            return zr::CopyText(owner, to.name, from.name);
        },
        ZRT_CONS_DestroyConsDataBodyWithEnum);
    if (copy != nullptr && !CopyDescriptions(ctx, copy, static_cast<const ZrtConsEnum *>(body))) {
        ZRT_CONS_DestroyConsDataBodyWithEnum(ctx, copy);
        return nullptr;
    }
    return copy;
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataEnum(const void *body, uint32_t inputKind,
                                                   const void *value, ZrtValidateCtx *)
{
    const auto *enums = static_cast<const ZrtConsEnum *>(body);
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    if (text == nullptr)
        return ZR_ERR_VALUE_ENUM;
    for (uint32_t i = 0; i < enums->count; ++i) {
        if (std::strcmp(enums->items[i].name, text) == 0)
            return ZR_OK;
    }
    return ZR_ERR_VALUE_ENUM;
}

uint32_t ZRT_CONS_ScanNameValuePairsWithEnum(const void *body, ZrNameValueScanFunc callback,
                                             void *userData)
{
    const auto *enums = static_cast<const ZrtConsEnum *>(body);
    for (uint32_t i = 0; i < enums->count; ++i) {
        const char *description = enums->descriptions != nullptr ? enums->descriptions[i] : nullptr;
        uint32_t result =
            callback(enums->items[i].name, description, enums->items[i].value, userData);
        if (result != 0)
            return result;
    }
    return 0;
}
