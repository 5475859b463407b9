// SPDX-License-Identifier: Apache-2.0
// The bits of a bits type and the check of its values (RFC 7950, section 9.7).
#include <cstring>

#include "foundation/array.h"
#include "foundation/text.h"
#include "types/constraints.h"

namespace {

constexpr uint32_t kMaxNameLength = zr::kNameSize - 1;

// The index of the bit with that name, or the count of bits.
uint32_t FindBit(const ZrtConsBit *bits, const char *name, uint32_t length)
{
    uint32_t i = 0;
    while (i < bits->count && (std::strncmp(bits->items[i].name, name, length) != 0 ||
                               bits->items[i].name[length] != '\0'))
        ++i;
    return i;
}

// True when the text is a list of different names of bits. `seen` has one byte a bit.
bool IsListOfBits(const ZrtConsBit *bits, const char *text, uint8_t *seen)
{
    while (*text != '\0') {
        uint32_t length = ZR_UTL_ConsumeIdentNameBestEffort(text);
        if (length == 0 || length > kMaxNameLength)
            return false;
        uint32_t index = FindBit(bits, text, length);
        if (index == bits->count || seen[index] != 0)
            return false;
        seen[index] = 1;
        const char *next = ZR_UTL_ConsumeAllSpaceChar(text + length);
        if (next == text + length && *next != '\0')
            return false;
        text = next;
    }
    return true;
}

} // namespace

void *ZRT_CONS_CreateConsDataBodyWithBit(uint32_t count)
{
    return zr::CreateCountedBody<ZrtConsBit>(count);
}

void ZRT_CONS_DestroyConsDataBodyWithBit(ZrCtx *ctx, void *body)
{
    zr::DestroyCountedBody<ZrtConsBit>(
        ctx, body, [](ZrCtx *owner, ZrtBitItem &item) { zr::Release(&owner->dict, item.name); });
}

void *ZRT_CONS_CopyConsDataBodyWithBit(ZrCtx *ctx, const void *body)
{
    return zr::CopyCountedBody<ZrtConsBit>(
        ctx, body,
        [](ZrCtx *owner, ZrtBitItem &to, const ZrtBitItem &from) {
            to.position = from.position;
            return zr::Intern(&owner->dict, to.name, from.name);
        },
        ZRT_CONS_DestroyConsDataBodyWithBit);
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataBit(const void *body, uint32_t inputKind,
                                                  const void *value, ZrtValidateCtx *)
{
    const auto *bits = static_cast<const ZrtConsBit *>(body);
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    if (text == nullptr)
        return ZR_ERR_VALUE_BITS;
    if (*text == '\0')
        return ZR_OK;
    if (bits->count == 0)
        return ZR_ERR_VALUE_BITS;
    zr::Owned<uint8_t> seen(zr::New<uint8_t>(bits->count));
    return seen && IsListOfBits(bits, text, seen.get()) ? ZR_OK : ZR_ERR_VALUE_BITS;
}

uint32_t ZRT_CONS_ScanNameValuePairsWithBit(const void *body, ZrNameValueScanFunc callback,
                                            void *userData)
{
    const auto *bits = static_cast<const ZrtConsBit *>(body);
    for (uint32_t i = 0; i < bits->count; ++i) {
        uint32_t result = callback(bits->items[i].name, nullptr, bits->items[i].position, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

// The names of an enumeration and the check of its values (RFC 7950, section 9.6).

namespace {

bool CopyDescriptions(ZrCtx *ctx, ZrtConsEnum *to, const ZrtConsEnum *from)
{
    if (from->descriptions == nullptr)
        return true;
    to->descriptions = zr::New<const char *>(from->count);
    if (to->descriptions == nullptr)
        return false;
    for (uint32_t i = 0; i < from->count; ++i) {
        if (!zr::Intern(&ctx->dict, to->descriptions[i], from->descriptions[i]))
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
            return zr::Intern(&owner->dict, to.name, from.name);
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
