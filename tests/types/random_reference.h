// SPDX-License-Identifier: Apache-2.0
// A second witness for value checks: the rules of ranges, lengths and enumerations written down
// plainly, over types that are made at random. Nothing of the library is used here.
#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace zrref {

class Dice {
public:
    explicit Dice(uint32_t first) : engine_(first) {}
    uint64_t Bits() { return (uint64_t{engine_()} << 32) | engine_(); }
    uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(engine_() % limit); }
    bool OneIn(uint32_t n) { return Below(n) == 0; }
    template <typename T> const T &Pick(const std::vector<T> &from)
    {
        return from[Below(static_cast<uint32_t>(from.size()))];
    }

private:
    std::mt19937 engine_;
};

// A number as its 64 bits, and whether it is written with "-".
struct Number {
    uint64_t bits;
    bool negative;
    std::string text;
};

inline Number FromSigned(int64_t value)
{
    return {static_cast<uint64_t>(value), value < 0, std::to_string(value)};
}

inline Number FromUnsigned(uint64_t value)
{
    return {value, false, std::to_string(value)};
}

// One end of a part of an expression.
struct End {
    enum Kind { kNumber, kMin, kMax } kind = kNumber;
    Number number = {};
    std::string Text() const { return kind == kMin ? "min" : kind == kMax ? "max" : number.text; }
};

struct Part {
    End start;
    std::optional<End> end;
};

using Expression = std::vector<Part>;

inline bool UsesMinMax(const Expression &expression)
{
    for (const Part &part : expression) {
        if (part.start.kind != End::kNumber || (part.end && part.end->kind != End::kNumber))
            return true;
    }
    return false;
}

// The text of an expression, with blanks here and there.
inline std::string TextOf(const Expression &expression, Dice &dice)
{
    const std::vector<std::string> blanks = {"", "", "", " ", "  ", "\t", " \n "};
    std::string text;
    for (size_t i = 0; i < expression.size(); ++i) {
        if (i > 0)
            text += "|";
        text += dice.Pick(blanks) + expression[i].start.Text() + dice.Pick(blanks);
        if (expression[i].end)
            text += ".." + dice.Pick(blanks) + expression[i].end->Text() + dice.Pick(blanks);
    }
    return text;
}

// A bound or a value: 64 bits that are read as signed or as unsigned.
struct Segment {
    uint64_t start = 0;
    uint64_t end = 0;
    bool isSigned = false;
    bool isUnsigned = false;
    End::Kind startKind = End::kNumber; // other than a number: not resolved yet
    End::Kind endKind = End::kNumber;
};

struct Width {
    uint32_t bits;
    bool isSigned;

    uint64_t Cut(uint64_t value) const
    {
        if (bits == 64)
            return value;
        uint64_t mask = (uint64_t{1} << bits) - 1;
        value &= mask;
        bool minus = isSigned && (value >> (bits - 1)) != 0;
        return minus ? value | ~mask : value;
    }
    uint64_t Min() const { return isSigned ? ~uint64_t{0} << (bits - 1) : 0; }
    uint64_t Max() const
    {
        uint32_t digits = isSigned ? bits - 1 : bits;
        return digits == 64 ? ~uint64_t{0} : (uint64_t{1} << digits) - 1;
    }
};

// The part as it was written: its sign is that of its first number.
inline Segment Written(const Part &part)
{
    Segment segment;
    const End &end = part.end ? *part.end : part.start;
    const End *first = part.start.kind == End::kNumber ? &part.start
                       : end.kind == End::kNumber      ? &end
                                                       : nullptr;
    if (first != nullptr) {
        segment.isSigned = first->number.negative;
        segment.isUnsigned = !first->number.negative;
    }
    segment.start = part.start.kind == End::kNumber ? part.start.number.bits : 0;
    segment.end = end.kind == End::kNumber ? end.number.bits : 0;
    segment.startKind = part.start.kind;
    segment.endKind = end.kind;
    return segment;
}

// What a built-in type of the width stores for the part; nothing when it refuses it.
inline std::optional<Segment> Stored(const Part &part, Width width)
{
    Segment segment = Written(part);
    if (!width.isSigned && segment.isSigned)
        return std::nullopt;
    if (width.isSigned && !segment.isSigned &&
        (segment.start > width.Max() || segment.end > width.Max()))
        segment.start = segment.end = 0;
    segment.start = width.Cut(segment.start);
    segment.end = width.Cut(segment.end);
    if (segment.startKind != End::kNumber)
        segment.start = segment.startKind == End::kMin ? width.Min() : width.Max();
    if (segment.endKind != End::kNumber)
        segment.end = segment.endKind == End::kMin ? width.Min() : width.Max();
    segment.startKind = segment.endKind = End::kNumber;
    segment.isSigned = width.isSigned;
    segment.isUnsigned = !width.isSigned;
    return segment;
}

// The segment with "min" and "max" replaced by the parent's bounds.
inline Segment Resolved(Segment segment, const Segment &parent)
{
    if (segment.startKind == End::kNumber && segment.endKind == End::kNumber)
        return segment;
    if (segment.startKind != End::kNumber)
        segment.start = segment.startKind == End::kMin ? parent.start : parent.end;
    if (segment.endKind != End::kNumber)
        segment.end = segment.endKind == End::kMin ? parent.start : parent.end;
    segment.isSigned = segment.isSigned || parent.isSigned;
    segment.isUnsigned = segment.isUnsigned || parent.isUnsigned;
    segment.startKind = segment.endKind = End::kNumber;
    return segment;
}

// -1 the value lies below the segment, 0 inside, 1 above.
inline int Compare(const Segment &segment, uint64_t value)
{
    if (segment.isSigned) {
        auto number = static_cast<int64_t>(value);
        if (number < static_cast<int64_t>(segment.start))
            return -1;
        return number > static_cast<int64_t>(segment.end) ? 1 : 0;
    }
    if (!segment.isUnsigned || value < segment.start)
        return -1;
    return value > segment.end ? 1 : 0;
}

// One type of a chain: the segments of its range or length, if it has one.
struct Level {
    bool hasBounds = false;
    bool relative = false; // "min" or "max" of a derived type
    std::vector<Segment> segments;
};

// Does the chain take the value? Levels go from the built-in type outwards; `whole` is what the
// built-in type holds; `ordered` ends a walk at the first segment above the value.
inline bool Takes(const std::vector<Level> &levels, uint64_t value, const Segment &whole,
                  bool ordered)
{
    // The outermost type whose bounds stand for themselves puts those below it out of force.
    size_t lowest = 0;
    for (size_t i = levels.size(); i-- > 0;) {
        if (levels[i].hasBounds && !levels[i].relative) {
            lowest = i;
            break;
        }
    }
    Segment parent = whole;
    for (size_t i = lowest; i < levels.size(); ++i) {
        if (!levels[i].hasBounds)
            continue;
        bool found = false;
        for (const Segment &segment : levels[i].segments) {
            int side = Compare(Resolved(segment, parent), value);
            found = side == 0;
            if (found || (ordered && side < 0))
                break;
        }
        if (!found)
            return false;
        Segment first = Resolved(levels[i].segments.front(), parent);
        Segment last = Resolved(levels[i].segments.back(), parent);
        parent = {};
        parent.start = first.start;
        parent.end = last.end;
        parent.isSigned = first.isSigned || last.isSigned;
        parent.isUnsigned = first.isUnsigned || last.isUnsigned;
    }
    return true;
}

inline bool IsBlank(char ch)
{
    return ch == ' ' || ch == '\t' || ch == '\n';
}

// The text without the blanks around it.
inline std::string Trimmed(const std::string &text)
{
    size_t from = 0;
    size_t to = text.size();
    while (from < to && IsBlank(text[from]))
        ++from;
    while (to > from && IsBlank(text[to - 1]))
        --to;
    return text.substr(from, to - from);
}

// The magnitude of a run of digits; nothing when it is empty, has something else or is over 64
// bits.
inline std::optional<uint64_t> Magnitude(const std::string &digits)
{
    if (digits.empty())
        return std::nullopt;
    uint64_t value = 0;
    for (char ch : digits) {
        if (ch < '0' || ch > '9')
            return std::nullopt;
        uint64_t digit = static_cast<uint64_t>(ch - '0');
        if (value > (~uint64_t{0} - digit) / 10)
            return std::nullopt;
        value = value * 10 + digit;
    }
    return value;
}

inline std::optional<uint64_t> WithSign(uint64_t magnitude, bool minus)
{
    constexpr uint64_t kHalf = uint64_t{1} << 63;
    if (magnitude > kHalf || (magnitude == kHalf && !minus))
        return std::nullopt;
    return minus ? ~magnitude + 1 : magnitude;
}

// The bits of an integer value, or nothing.
inline std::optional<uint64_t> IntegerValue(const std::string &text, bool isSigned)
{
    std::string rest = Trimmed(text);
    bool minus = !rest.empty() && rest[0] == '-';
    if (minus && !isSigned)
        return std::nullopt;
    if (!rest.empty() && (rest[0] == '-' || rest[0] == '+'))
        rest.erase(0, 1);
    std::optional<uint64_t> magnitude = Magnitude(rest);
    if (!magnitude || !isSigned)
        return magnitude;
    return WithSign(*magnitude, minus);
}

// The bits of a decimal64 value scaled by its fraction digits, or nothing.
inline std::optional<uint64_t> DecimalValue(const std::string &text, uint32_t fractionDigits)
{
    std::string rest = Trimmed(text);
    bool minus = !rest.empty() && rest[0] == '-';
    if (!rest.empty() && (rest[0] == '-' || rest[0] == '+'))
        rest.erase(0, 1);
    size_t point = rest.find('.');
    std::string whole = rest.substr(0, point);
    std::string fraction = point != std::string::npos ? rest.substr(point + 1) : "";
    if (whole.empty() && fraction.empty())
        return std::nullopt;
    size_t zeros = whole.find_first_not_of('0');
    whole = zeros != std::string::npos ? whole.substr(zeros) : "";
    if (whole.size() > 19 - fractionDigits || fraction.size() > fractionDigits)
        return std::nullopt;
    fraction.resize(fractionDigits, '0');
    std::optional<uint64_t> magnitude = Magnitude(whole + fraction);
    return magnitude ? WithSign(*magnitude, minus) : std::nullopt;
}

// The text of a scaled decimal64, with its trailing zeros or without.
inline std::string DecimalText(int64_t scaled, uint32_t fractionDigits, bool trim)
{
    uint64_t magnitude = static_cast<uint64_t>(scaled);
    if (scaled < 0)
        magnitude = ~magnitude + 1;
    std::string digits = std::to_string(magnitude);
    if (digits.size() <= fractionDigits)
        digits.insert(0, fractionDigits + 1 - digits.size(), '0');
    digits.insert(digits.size() - fractionDigits, ".");
    while (trim && digits.back() == '0')
        digits.pop_back();
    if (trim && digits.back() == '.')
        digits.pop_back();
    return (scaled < 0 ? "-" : "") + digits;
}

} // namespace zrref
