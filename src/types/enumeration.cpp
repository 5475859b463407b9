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

bool HasName(const ZrtConsEnum *enums, const char *text)
{
    for (uint32_t i = 0; i < enums->count; ++i) {
        if (std::strcmp(enums->items[i].name, text) == 0)
            return true;
    }
    return false;
}

// Among many names it is cheaper to find the text's shared copy, which the names are, and to
// compare pointers; a text that no name equals mostly has none.
constexpr uint32_t kManyNames = 16;

bool HasSharedName(const ZrtConsEnum *enums, const char *shared)
{
    for (uint32_t i = 0; shared != nullptr && i < enums->count; ++i) {
        if (enums->items[i].name == shared)
            return true;
    }
    return false;
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
                                                   const void *value, ZrtValidateCtx *validation)
{
    const auto *enums = static_cast<const ZrtConsEnum *>(body);
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    if (text == nullptr)
        return ZR_ERR_VALUE_ENUM;
    const ZrCtx *ctx = validation != nullptr ? validation->ctx : nullptr;
    bool found = ctx != nullptr && enums->count > kManyNames
                     ? HasSharedName(enums, zr::FindInterned(&ctx->dict, text))
                     : HasName(enums, text);
    return found ? uint32_t{ZR_OK} : uint32_t{ZR_ERR_VALUE_ENUM};
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
