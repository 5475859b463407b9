// SPDX-License-Identifier: Apache-2.0
#include "yang/types/intervals.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace zr::yang {

namespace {

constexpr uint64_t kSign = uint64_t{1} << 63;
constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trim(std::string_view text)
{
    size_t start = std::min(text.find_first_not_of(kBlanks), text.size());
    text.remove_prefix(start);
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// The digits of a number as an ordinal, with their sign.
bool MakeOrdinal(bool isNegative, uint64_t digits, const NumberForm &form, uint64_t &ordinalOut)
{
    if (!form.isSigned) {
        ordinalOut = digits;
        return !isNegative || digits == 0;
    }
    if (digits > kSign - (isNegative ? 0 : 1))
        return false;
    ordinalOut = isNegative ? kSign - digits : kSign + digits;
    return true;
}

bool ReadDigits(std::string_view text, int base, uint64_t &value)
{
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    return error == std::errc() && end == text.data() + text.size();
}

bool Multiply(uint64_t &value, uint32_t tens)
{
    for (; tens > 0; --tens) {
        if (value > std::numeric_limits<uint64_t>::max() / 10)
            return false;
        value *= 10;
    }
    return true;
}

bool TakeSign(std::string_view &text)
{
    bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    return isNegative;
}

bool IsInOne(const Intervals &intervals, const Interval &part)
{
    auto at = std::upper_bound(intervals.begin(), intervals.end(), part.low,
                               [](uint64_t low, const Interval &one) { return low < one.low; });
    return at != intervals.begin() && part.high <= std::prev(at)->high;
}

// Intervals without a number between them are one.
void Append(Intervals &out, const Interval &part)
{
    if (!out.empty() && out.back().high + 1 == part.low)
        out.back().high = part.high;
    else
        out.push_back(part);
}

} // namespace

bool ReadNumber(std::string_view text, const NumberForm &form, uint64_t &ordinalOut)
{
    bool isNegative = TakeSign(text);
    size_t point = text.find('.');
    uint64_t whole = 0, fraction = 0;
    if (!ReadDigits(text.substr(0, point), 10, whole))
        return false;
    if (point != std::string_view::npos) {
        std::string_view digits = text.substr(point + 1);
        while (digits.size() > 1 && digits.ends_with('0'))
            digits.remove_suffix(1);
        if (digits == "0" && form.fractionDigits > 0)
            digits = {};
        if (digits.size() > form.fractionDigits || form.fractionDigits == 0 ||
            (!digits.empty() && !ReadDigits(digits, 10, fraction)) ||
            !Multiply(fraction, form.fractionDigits - static_cast<uint32_t>(digits.size())) ||
            text.size() == point + 1)
            return false;
    }
    if (!Multiply(whole, form.fractionDigits) ||
        whole > std::numeric_limits<uint64_t>::max() - fraction)
        return false;
    return MakeOrdinal(isNegative, whole + fraction, form, ordinalOut);
}

bool ReadIntegerValue(std::string_view text, const NumberForm &form, uint64_t &ordinalOut)
{
    bool isNegative = TakeSign(text);
    int base = text.starts_with("0x") || text.starts_with("0X") ? 16
               : text.starts_with('0')                          ? 8
                                                                : 10;
    if (base == 16)
        text.remove_prefix(2);
    uint64_t digits = 0;
    return ReadDigits(text, base, digits) && MakeOrdinal(isNegative, digits, form, ordinalOut);
}

const char *ReadIntervals(std::string_view text, const NumberForm &form, const Intervals &base,
                          Intervals &out)
{
    if (base.empty())
        return "nothing is left of its base type";
    auto readBound = [&](std::string_view bound, uint64_t &ordinal) {
        if (bound == "min")
            ordinal = base.front().low;
        else if (bound == "max")
            ordinal = base.back().high;
        else
            return ReadNumber(bound, form, ordinal);
        return true;
    };
    bool isFirst = true;
    uint64_t previous = 0;
    for (size_t start = 0; start <= text.size();) {
        size_t end = std::min(text.find('|', start), text.size());
        std::string_view part = text.substr(start, end - start);
        start = end + 1;
        size_t dots = part.find("..");
        Interval interval;
        if (!readBound(Trim(part.substr(0, dots)), interval.low))
            return "it is malformed";
        interval.high = interval.low;
        if (dots != std::string_view::npos &&
            !readBound(Trim(part.substr(dots + 2)), interval.high))
            return "it is malformed";
        if (interval.low > interval.high || (!isFirst && interval.low <= previous))
            return "its parts are not in ascending order";
        if (!IsInOne(base, interval))
            return "it goes beyond its base type";
        Append(out, interval);
        previous = interval.high;
        isFirst = false;
    }
    return nullptr;
}

bool Contains(const Intervals &intervals, uint64_t ordinal)
{
    return IsInOne(intervals, {ordinal, ordinal});
}

} // namespace zr::yang
