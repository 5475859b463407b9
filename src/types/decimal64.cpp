// SPDX-License-Identifier: Apache-2.0
#include <charconv>
#include <cstddef>

#include "foundation/text.h"
#include "platform/strings.h"
#include "types/constraints.h"
#include "types/range.h"

namespace {

constexpr uint32_t kMaxFractionDigits = 18;
constexpr uint32_t kMaxDigits = 19; // of an int64

// The digits of the scaled integer, gathered from the text. The limits on the digits before and
// after the point keep them within the buffer.
class ScaledDigits {
public:
    void Put(char ch) { buffer_[length_++] = ch; }
    // Copies up to `limit` digits and returns how many there were.
    uint32_t CopyDigits(const char *&text, uint32_t limit)
    {
        uint32_t count = 0;
        for (; count < limit && zr::IsDigit(*text); ++count)
            Put(*text++);
        return count;
    }
    uint32_t Read(int64_t *valueOut) const
    {
        const char *end = buffer_ + length_;
        auto result = std::from_chars(buffer_, end, *valueOut);
        return result.ec == std::errc() && result.ptr == end ? ZR_OK : ZR_ERR_INVALID;
    }

private:
    char buffer_[1 + kMaxDigits + kMaxFractionDigits];
    size_t length_ = 0;
};

} // namespace

uint32_t ZRT_CONS_ConvertValStrToDecimal64PowerInteger(const char *text, uint32_t fractionDigits,
                                                       int64_t *valueOut)
{
    if (text == nullptr || valueOut == nullptr || fractionDigits > kMaxFractionDigits)
        return ZR_ERR_INVALID;
    ScaledDigits digits;
    text = ZR_UTL_ConsumeAllSpaceChar(text);
    if (*text == '-')
        digits.Put('-');
    if (*text == '-' || *text == '+')
        ++text;
    const char *mainStart = text;
    while (*text == '0')
        ++text;
    digits.CopyDigits(text, kMaxDigits - fractionDigits);
    bool anyDigit = text != mainStart;
    uint32_t fractionCount = 0;
    if (*text == '.') {
        ++text;
        fractionCount = digits.CopyDigits(text, fractionDigits);
    }
    // A digit that is left over here was one too many.
    if ((!anyDigit && fractionCount == 0) || *ZR_UTL_ConsumeAllSpaceChar(text) != '\0')
        return ZR_ERR_INVALID;
    for (; fractionCount < fractionDigits; ++fractionCount)
        digits.Put('0');
    return digits.Read(valueOut);
}

// The fraction digits of a decimal64 (RFC 7950, section 9.3.4).

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
