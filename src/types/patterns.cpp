// The patterns of a type and the check of its values (RFC 7950, section 9.4.5).
#include "foundation/text.h"
#include "types/constraint_body.h"
#include "types/constraints.h"
#include "types/real_type.h"

void *ZRT_CONS_CreateConsDataBodyWithPattern(uint32_t count)
{
    return zr::CreateCountedBody<ZrtConsPattern>(count);
}

void ZRT_CONS_DestroyConsDataBodyWithPattern(ZrCtx *ctx, void *body)
{
    zr::DestroyCountedBody<ZrtConsPattern>(ctx, body, [](ZrCtx *owner, ZrtPatternItem &item) {
        zr::Release(&owner->dict, item.pattern);
    });
}

void *ZRT_CONS_CopyConsDataBodyWithPattern(ZrCtx *ctx, const void *body)
{
    // The copy's patterns all match normally. Kept: types that a merge, a deviation or a copied
    // node brings along have always lost invert-match, and callers rely on what such types accept.
    return zr::CopyCountedBody<ZrtConsPattern>(
        ctx, body,
        [](ZrCtx *owner, ZrtPatternItem &to, const ZrtPatternItem &from) {
            return zr::CopyText(owner, to.pattern, from.pattern);
        },
        ZRT_CONS_DestroyConsDataBodyWithPattern);
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataPattern(const void *body, uint32_t inputKind,
                                                      const void *value, ZrtValidateCtx *)
{
    const auto *patterns = static_cast<const ZrtConsPattern *>(body);
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    if (text == nullptr)
        return ZR_ERR_VALUE_PATTERN;
    for (uint32_t i = 0; i < patterns->count; ++i) {
        const ZrtPatternItem &item = patterns->items[i];
        // A pattern that does not compile matches nothing, so that inverted it accepts everything.
        bool matches = ZR_UTL_MatchStrWithPattern(text, item.pattern) == ZR_OK;
        if (matches == (item.invertMatch != 0))
            return ZR_ERR_VALUE_PATTERN;
    }
    return ZR_OK;
}
