// The bits of a bits type and the check of its values (RFC 7950, section 9.7).
#include <cstring>

#include "foundation/text.h"
#include "types/constraint_body.h"
#include "types/constraints.h"
#include "types/real_type.h"

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
            return zr::CopyText(owner, to.name, from.name);
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
    zr::ScopedBlock<uint8_t> seen(static_cast<uint8_t *>(zr::AllocZeroed(bits->count)));
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
