// The fraction digits of a decimal64 (RFC 7950, section 9.3.4).
#include "types/constraint_body.h"
#include "types/constraints.h"

void *ZRT_CONS_CreateConsDataBodyWithFraction(uint32_t)
{
    return ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsFraction), 0, 0);
}

void ZRT_CONS_DestroyConsDataBodyWithNoDynamic(ZrCtx *, void *body)
{
    zr::Free(body);
}

void *ZRT_CONS_CopyConsDataBodyWithFraction(ZrCtx *, const void *body)
{
    if (body == nullptr)
        return nullptr;
    auto *copy = static_cast<ZrtConsFraction *>(ZRT_CONS_CreateConsDataBodyWithFraction(1));
    if (copy != nullptr)
        *copy = *static_cast<const ZrtConsFraction *>(body);
    return copy;
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataFraction(const void *, uint32_t, const void *,
                                                       ZrtValidateCtx *)
{
    // The digits take part in the check of decimal64 and of its ranges; by themselves they refuse
    // nothing.
    return ZR_OK;
}

uint32_t ZRT_CONS_GetConsDataFractionVal(const void *body)
{
    return body != nullptr ? static_cast<const ZrtConsFraction *>(body)->fractionDigits : 0;
}
