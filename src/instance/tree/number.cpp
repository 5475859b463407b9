// SPDX-License-Identifier: Apache-2.0
#include "instance/tree/number.h"

#include <algorithm>
#include <charconv>

namespace zr::data {

namespace {

constexpr const char *kOutOfRange = "it is out of range";

// The bits of a number: of a signed one as two's complement.
bool IsBelow(uint64_t a, uint64_t b, bool isSigned)
{
    return isSigned ? static_cast<int64_t>(a) < static_cast<int64_t>(b) : a < b;
}

struct Digits {
    bool isNegative = false;
    std::string_view text; // without the sign
};

Digits SplitSign(std::string_view text)
{
    bool hasSign = text.starts_with('-') || text.starts_with('+');
    return {text.starts_with('-'), text.substr(hasSign)};
}

// The digits of a base in a text that holds nothing else.
bool ReadDigits(std::string_view text, int base, uint64_t &out)
{
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), out, base);
    return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

int BaseOf(std::string_view &digits, bool isDefault)
{
    if (!isDefault || digits.size() < 2 || digits[0] != '0')
        return 10;
    bool isHex = digits[1] == 'x' || digits[1] == 'X';
    digits.remove_prefix(isHex ? 2 : 1);
    return isHex ? 16 : 8;
}

struct Width {
    uint32_t type;
    int bits;
    bool isSigned;
};
constexpr Width kWidths[] = {
    {ZRT_TYPE_INT8, 8, true},     {ZRT_TYPE_INT16, 16, true},   {ZRT_TYPE_INT32, 32, true},
    {ZRT_TYPE_INT64, 64, true},   {ZRT_TYPE_UINT8, 8, false},   {ZRT_TYPE_UINT16, 16, false},
    {ZRT_TYPE_UINT32, 32, false}, {ZRT_TYPE_UINT64, 64, false},
};

void AppendNumber(Canonical &out, uint64_t magnitude, bool isNegative)
{
    std::array<char, 24> buffer;
    auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude).ptr;
    if (isNegative)
        out += '-';
    out.append(buffer.data(), end);
}

} // namespace

ValueFault CheckRanges(const Type &type, uint64_t number, bool isSigned, const char *fault)
{
    for (const Restriction &restriction : type.restrictions) {
        auto holds = [&](const Interval &interval) {
            return !IsBelow(number, interval.start, isSigned) &&
                   !IsBelow(interval.end, number, isSigned);
        };
        if (std::none_of(restriction.intervals.begin(), restriction.intervals.end(), holds))
            return {fault, &restriction.refusal};
    }
    return {};
}

ValueFault ReadInteger(const ValueScope &scope, const Type &type, std::string_view text,
                       Canonical &out)
{
    const Width &width = *std::find_if(std::begin(kWidths), std::end(kWidths),
                                       [&](const Width &row) { return row.type == type.base; });
    Digits digits = SplitSign(text);
    int base = BaseOf(digits.text, scope.element == nullptr);
    uint64_t magnitude = 0;
    if (digits.text.empty() ||
        digits.text.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos)
        return "it is no integer";
    bool isRead = ReadDigits(digits.text, base, magnitude);
    if (!isRead && base == 10 &&
        digits.text.find_first_not_of("0123456789") != std::string_view::npos)
        return "it is no integer";
    bool isNegative = digits.isNegative && magnitude != 0;
    uint64_t limit =
        width.isSigned ? uint64_t{1} << (width.bits - 1) : ~uint64_t{0} >> (64 - width.bits);
    if (width.isSigned && !isNegative)
        --limit;
    if (!isRead || magnitude > limit || (isNegative && !width.isSigned))
        return kOutOfRange;
    AppendNumber(out, magnitude, isNegative);
    uint64_t number = isNegative ? ~magnitude + 1 : magnitude;
    return CheckRanges(type, number, width.isSigned, kOutOfRange);
}

ValueFault ReadDecimal(const ValueScope &, const Type &type, std::string_view text, Canonical &out)
{
    Digits digits = SplitSign(text);
    size_t point = std::min(digits.text.find('.'), digits.text.size());
    std::string_view whole = digits.text.substr(0, point);
    std::string_view fraction = digits.text.substr(std::min(point + 1, digits.text.size()));
    auto isNumber = [](std::string_view part) {
        return !part.empty() && part.find_first_not_of("0123456789") == std::string_view::npos;
    };
    if (!isNumber(whole) || (point != digits.text.size() && !isNumber(fraction)))
        return "it is no decimal number";
    while (!fraction.empty() && fraction.back() == '0')
        fraction.remove_suffix(1);
    if (fraction.size() > type.fractionDigits)
        return "it has too many fraction digits";
    whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size() - 1));

    out += whole;
    out += fraction;
    out.append(type.fractionDigits - fraction.size(), '0');
    uint64_t magnitude = 0;
    uint64_t limit = (uint64_t{1} << 63) - !digits.isNegative;
    if (!ReadDigits(out, 10, magnitude) || magnitude > limit)
        return kOutOfRange;
    bool isNegative = digits.isNegative && magnitude != 0;
    out.clear();
    if (isNegative)
        out += '-';
    ((out += whole) += '.') += fraction.empty() ? std::string_view("0") : fraction;
    return CheckRanges(type, isNegative ? ~magnitude + 1 : magnitude, true, kOutOfRange);
}

} // namespace zr::data
