// SPDX-License-Identifier: Apache-2.0
#include "types/range.h"

#include <cstring>

#include "foundation/array.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "types/real_type.h"

namespace {

constexpr uint32_t kMaxTokens = 255;
constexpr size_t kMaxDecimalLength = 31;
constexpr uint32_t kMaxFractionDigits = 18;

// One run over an expression: a number, "min", "max", ".." and "|" are a token each.
class ExpressionReader {
public:
    ExpressionReader(const char *text, ZrtRangePushFunc pushFunc, ZrtRangePush *push)
        : text_(text), pushFunc_(pushFunc), push_(push)
    {
    }

    uint32_t Run()
    {
        SkipBlanks();
        while (*text_ != '\0') {
            // One token above the limit is still read; the end refuses it.
            if (tokenCount_ > kMaxTokens)
                return ZR_ERR_INVALID;
            ++tokenCount_;
            uint32_t status = ReadToken();
            if (status != ZR_OK)
                return status;
            SkipBlanks();
        }
        uint32_t status = ClosePart();
        if (status == ZR_OK && tokenCount_ > kMaxTokens)
            return ZR_ERR_INVALID;
        return status;
    }

private:
    void SkipBlanks() { text_ = ZR_UTL_ConsumeAllSpaceChar(text_); }

    uint32_t ReadToken()
    {
        switch (*text_) {
        case 'm':
            return ReadMinOrMax();
        case '.':
            if (text_[1] != '.')
                return ZR_ERR_INVALID;
            text_ += 2;
            afterDots_ = true;
            return ZR_OK;
        case '|':
            ++text_;
            return ClosePart();
        default:
            return ReadNumber();
        }
    }

    uint32_t ReadNumber()
    {
        if (push_->baseType == ZRT_TYPE_DECIMAL64)
            return ReadDecimal(push_->fractionDigits);
        if (push_->takesDecimals == 0)
            return ReadInteger();
        uint32_t digits = CountFractionDigits();
        uint32_t status = digits != 0 ? ReadDecimal(digits) : ReadInteger();
        part_.flags |= ZRT_SEG_DECIMAL | digits << (afterDots_ ? ZRT_SEG_END_DIGITS_SHIFT
                                                               : ZRT_SEG_START_DIGITS_SHIFT);
        return status;
    }

    // Those of the number at the cursor, up to one more than there may be.
    uint32_t CountFractionDigits() const
    {
        const char *next = *text_ == '+' || *text_ == '-' ? text_ + 1 : text_;
        while (zr::IsDigit(*next))
            ++next;
        if (*next != '.' || next[1] == '.')
            return 0;
        uint32_t count = 0;
        while (count <= kMaxFractionDigits && zr::IsDigit(next[1 + count]))
            ++count;
        return count;
    }

    // Only the three letters count: what follows them is the next token.
    uint32_t ReadMinOrMax()
    {
        bool isMin = std::strncmp(text_, "min", 3) == 0;
        if (!isMin && std::strncmp(text_, "max", 3) != 0)
            return ZR_ERR_INVALID;
        text_ += 3;
        if (afterDots_)
            part_.flags |= isMin ? ZRT_SEG_END_MIN : ZRT_SEG_END_MAX;
        else
            part_.flags |= isMin ? ZRT_SEG_START_MIN : ZRT_SEG_START_MAX;
        push_->usesMinMax = 1;
        return ZR_OK;
    }

    uint32_t ReadInteger()
    {
        uint64_t value = 0;
        const char *end = nullptr;
        uint32_t status = ZR_OK;
        bool isSigned = *text_ == '-';
        if (isSigned) {
            int64_t signedValue = 0;
            status = ZR_UTL_ReadInputStrAsSignedInteger(text_, &end, 0, &signedValue);
            value = static_cast<uint64_t>(signedValue);
        } else {
            status = ZR_UTL_ReadInputStrAsUnsignedInteger(text_, &end, 0, &value);
        }
        if (status != ZR_OK || zr::IsDigit(*end))
            return ZR_ERR_INVALID;
        text_ = end;
        StoreNumber(value, isSigned);
        return ZR_OK;
    }

    uint32_t ReadDecimal(uint32_t fractionDigits)
    {
        char buffer[kMaxDecimalLength + 1];
        size_t length = 0;
        const char *next = text_;
        if (*next == '+' || *next == '-')
            buffer[length++] = *next++;
        // Two dots are the range operator, not part of a number.
        while (zr::IsDigit(*next) || (*next == '.' && next[1] != '.')) {
            if (length == kMaxDecimalLength)
                return ZR_ERR_INVALID;
            buffer[length++] = *next++;
        }
        buffer[length] = '\0';
        int64_t value = 0;
        if (ZRT_CONS_ConvertValStrToDecimal64PowerInteger(buffer, fractionDigits, &value) != ZR_OK)
            return ZR_ERR_INVALID;
        text_ = next;
        StoreNumber(static_cast<uint64_t>(value), true);
        return ZR_OK;
    }

    void StoreNumber(uint64_t value, bool isSigned)
    {
        uint32_t sign = isSigned ? ZRT_SEG_SIGNED : ZRT_SEG_UNSIGNED;
        if (!afterDots_) {
            part_.start = value;
            part_.flags |= sign;
            return;
        }
        part_.end = value;
        if ((part_.flags & (ZRT_SEG_SIGNED | ZRT_SEG_UNSIGNED)) == 0)
            part_.flags |= sign;
    }

    // Hands over the part that ends here and starts the next.
    uint32_t ClosePart()
    {
        if (part_.flags == 0)
            return ZR_ERR_INVALID;
        if (!afterDots_) {
            if ((part_.flags & ZRT_SEG_START_MIN) != 0)
                part_.flags |= ZRT_SEG_END_MIN;
            if ((part_.flags & ZRT_SEG_START_MAX) != 0)
                part_.flags |= ZRT_SEG_END_MAX;
            part_.end = part_.start;
        }
        uint32_t status = pushFunc_(push_, &part_);
        part_ = {};
        afterDots_ = false;
        return status;
    }

    const char *text_;
    ZrtRangePushFunc pushFunc_;
    ZrtRangePush *push_;
    ZrtGenericSeg part_ = {};
    uint32_t tokenCount_ = 0;
    bool afterDots_ = false;
};

// Allocates the segments for as many parts as the expression can have and parses it.
uint32_t ParseInto(ZrtRangePush *push, uint32_t segSize, ZrtRangePushFunc pushFunc,
                   const char *expression)
{
    if (pushFunc == nullptr)
        return ZR_ERR_INVALID;
    uint32_t capacity = ZR_UTL_CountCharNumber(expression, '|') + 1;
    if (capacity > UINT16_MAX)
        return ZR_ERR_INVALID;
    ZrtConsRange *body = push->body;
    uint32_t status = ZR_UTL_NewArray(&body->segments, capacity, segSize);
    if (status != ZR_OK)
        return status;
    body->segSize = static_cast<uint16_t>(segSize);
    push->capacity = capacity;
    return ZRT_LOADER_ScanParseRangeExprWithCb(expression, pushFunc, push);
}

// Bounds that use "min" or "max" of a typedef depend on the typedef's own.
void SetBoundsFlags(ZrtRealType *type, bool usesMinMax)
{
    bool relative = type->baseType == ZRT_TYPE_DERIVED && usesMinMax;
    uint32_t kind = relative ? ZRT_BOUNDS_RELATIVE : ZRT_BOUNDS_EXPLICIT;
    type->flags = static_cast<uint16_t>(type->flags | ZRT_BOUNDS_GIVEN | kind);
}

} // namespace

uint32_t ZRT_LOADER_ScanParseRangeExprWithCb(const char *expression, ZrtRangePushFunc pushFunc,
                                             ZrtRangePush *push)
{
    if (expression == nullptr || pushFunc == nullptr || push == nullptr)
        return ZR_ERR_INVALID;
    return ExpressionReader(expression, pushFunc, push).Run();
}

namespace zr {

uint32_t ParseRangeInto(ZrtRealType *type, ZrtConsRange *body, const char *expression,
                        bool derivedTakesDecimals)
{
    ZrtRangePush push = {body, 0, type->baseType, ZRT_TYPE_GetTypeConsDataFractionVal(type), 0};
    push.takesDecimals = type->baseType == ZRT_TYPE_DERIVED && derivedTakesDecimals ? 1 : 0;
    uint32_t status = ParseInto(&push, ZRT_CONS_GetZrtSegIntegerSize(type->baseType),
                                ZRT_LOADER_GetRangeSplitFillFunc(type->baseType), expression);
    if (status == ZR_OK)
        SetBoundsFlags(type, push.usesMinMax != 0);
    return status;
}

uint32_t ParseLengthInto(ZrtRealType *type, ZrtConsRange *body, const char *expression)
{
    // Any "m" counts as a use of "min" or "max": a valid expression has no other.
    bool usesMinMax = std::strchr(expression, 'm') != nullptr;
    bool symbolic = type->baseType == ZRT_TYPE_DERIVED && usesMinMax;
    uint32_t segSize = symbolic ? sizeof(ZrtGenericSeg) : sizeof(ZrtNarrowSeg<uint32_t>);
    // Lengths are whole numbers, whatever the type is that they restrict.
    ZrtRangePush push = {body, 0, ZRT_TYPE_UINT32, 0, 0};
    uint32_t status =
        ParseInto(&push, segSize, ZRT_LOADER_GetLengthSplitFillFunc(segSize), expression);
    if (status == ZR_OK)
        SetBoundsFlags(type, usesMinMax);
    return status;
}

} // namespace zr
