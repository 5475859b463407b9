// SPDX-License-Identifier: Apache-2.0
// Thousands of random types and values against the plain reference of random_reference.h.
#include <set>

#include "types/leaf.h"
#include "types/random_reference.h"

namespace {

using namespace zrref;
using zrtest::Leaf;

// A chain of typedefs t0 (on the built-in type) to tN-1, and the type of the leaf as the last
// level.
struct Chain {
    std::vector<Level> levels;
    std::vector<std::string> restrictions; // a level each
    bool valid = true;                     // every part can be stored

    std::string TypeText(size_t level, const std::string &builtIn, const std::string &always) const
    {
        std::string name = level == 0 ? builtIn : "t" + std::to_string(level - 1);
        return "<type name=\"" + name + "\">" + (level == 0 ? always : "") + restrictions[level] +
               "</type>";
    }
    Leaf Load(const std::string &builtIn, const std::string &always = "") const
    {
        std::string definitions;
        for (size_t i = 0; i + 1 < levels.size(); ++i)
            definitions += "<typedef name=\"t" + std::to_string(i) + "\">" +
                           TypeText(i, builtIn, always) + "</typedef>";
        return Leaf(TypeText(levels.size() - 1, builtIn, always), definitions);
    }
};

std::string Describe(const Chain &chain, const std::string &builtIn)
{
    std::string text = builtIn;
    for (const std::string &restriction : chain.restrictions)
        text += " > " + (restriction.empty() ? "-" : restriction);
    return text;
}

End RandomEnd(Dice &dice, const std::vector<Number> &numbers)
{
    End end;
    if (dice.OneIn(5))
        end.kind = dice.OneIn(2) ? End::kMin : End::kMax;
    else
        end.number = dice.Pick(numbers);
    return end;
}

Expression RandomExpression(Dice &dice, const std::vector<Number> &numbers)
{
    Expression expression;
    uint32_t parts = 1 + dice.Below(4);
    for (uint32_t i = 0; i < parts; ++i) {
        Part part;
        part.start = RandomEnd(dice, numbers);
        if (!dice.OneIn(4))
            part.end = RandomEnd(dice, numbers);
        expression.push_back(part);
    }
    return expression;
}

// Checks the value as a string or as an element, by turns; an element without text has no value.
uint32_t CheckEither(const Leaf &leaf, const std::string &value, Dice &dice)
{
    bool asElement = !value.empty() && dice.OneIn(2);
    return asElement ? leaf.CheckElement(value.c_str()) : leaf.Check(value.c_str());
}

std::string Decorate(const std::string &text, Dice &dice)
{
    switch (dice.Below(12)) {
    case 0:
        return " " + text;
    case 1:
        return text + " \n";
    case 2:
        return "\t" + text + "\t";
    case 3:
        return text[0] != '-' ? "+" + text : text;
    case 4:
        return text[0] != '-' ? "000" + text : "-000" + text.substr(1);
    case 5:
        return text + (dice.OneIn(2) ? "x" : " 1");
    case 6:
        return dice.OneIn(4) ? "" : text;
    default:
        return text;
    }
}

struct IntegerType {
    const char *name;
    Width width;
};

const std::vector<IntegerType> g_integerTypes = {
    {"int8", {8, true}},     {"int16", {16, true}},   {"int32", {32, true}},
    {"int64", {64, true}},   {"uint8", {8, false}},   {"uint16", {16, false}},
    {"uint32", {32, false}}, {"uint64", {64, false}},
};

// Numbers around the limits of the width, around zero, and anywhere.
std::vector<Number> IntegerNumbers(Dice &dice, Width width)
{
    std::vector<Number> numbers;
    for (int64_t value : {-3, -1, 0, 1, 2, 3, 5, 7, 10, 20, 44, 100})
        numbers.push_back(FromSigned(value));
    for (uint64_t step : {uint64_t{0}, uint64_t{1}, uint64_t{5}}) {
        numbers.push_back(FromUnsigned(width.Max() - step));
        if (width.isSigned)
            numbers.push_back(FromSigned(static_cast<int64_t>(width.Min() + step)));
        if (width.bits < 64)
            numbers.push_back(FromUnsigned(width.Max() + 1 + step));
    }
    uint64_t any = dice.Bits() >> dice.Below(64);
    numbers.push_back(FromUnsigned(any));
    numbers.push_back(FromSigned(static_cast<int64_t>(any)));
    return numbers;
}

Chain RandomIntegerChain(Dice &dice, Width width, const std::vector<Number> &numbers)
{
    Chain chain;
    uint32_t levels = 1 + dice.Below(4);
    for (uint32_t i = 0; i < levels; ++i) {
        Level level;
        std::string restriction;
        if (!dice.OneIn(3)) {
            Expression expression = RandomExpression(dice, numbers);
            restriction = "<range value=\"" + TextOf(expression, dice) + "\"/>";
            level.hasBounds = true;
            level.relative = i > 0 && UsesMinMax(expression);
            for (const Part &part : expression) {
                std::optional<Segment> segment = i == 0 ? Stored(part, width) : Written(part);
                chain.valid = chain.valid && segment;
                level.segments.push_back(segment.value_or(Segment{}));
            }
        }
        chain.levels.push_back(level);
        chain.restrictions.push_back(restriction);
    }
    return chain;
}

Segment WholeOf(Width width)
{
    Segment whole;
    whole.start = width.Min();
    whole.end = width.Max();
    whole.isSigned = width.isSigned;
    whole.isUnsigned = !width.isSigned;
    return whole;
}

TEST(RandomTypes, OfIntegersTakeWhatTheRulesTake)
{
    Dice dice(20240501);
    uint32_t taken = 0;
    uint32_t refused = 0;
    for (int round = 0; round < 6000; ++round) {
        const IntegerType &type = dice.Pick(g_integerTypes);
        std::vector<Number> numbers = IntegerNumbers(dice, type.width);
        Chain chain = RandomIntegerChain(dice, type.width, numbers);
        Leaf leaf = chain.Load(type.name);
        ASSERT_EQ(leaf.status() == ZR_OK, chain.valid) << Describe(chain, type.name);
        if (!chain.valid)
            continue;
        for (int i = 0; i < 12; ++i) {
            std::string value = Decorate(dice.Pick(numbers).text, dice);
            std::optional<uint64_t> bits = IntegerValue(value, type.width.isSigned);
            Segment whole = WholeOf(type.width);
            bool good =
                bits && Compare(whole, *bits) == 0 && Takes(chain.levels, *bits, whole, true);
            ASSERT_EQ(CheckEither(leaf, value, dice), good ? 0u : uint32_t{ZR_ERR_VALUE_RANGE})
                << Describe(chain, type.name) << " value \"" << value << '"';
            ++(good ? taken : refused);
        }
    }
    EXPECT_GT(taken, 5000u);
    EXPECT_GT(refused, 5000u);
}

TEST(RandomTypes, OfDecimal64TakeWhatTheRulesTake)
{
    Dice dice(20240502);
    const Width wide = {64, true};
    uint32_t taken = 0;
    for (int round = 0; round < 3000; ++round) {
        uint32_t digits = 1 + dice.Below(18);
        std::vector<Number> numbers;
        for (int64_t value : {INT64_MIN, INT64_MIN + 1, INT64_C(-150), INT64_C(-1), INT64_C(0),
                              INT64_C(1), INT64_C(5), INT64_C(100), INT64_C(314), INT64_MAX - 1,
                              INT64_MAX, static_cast<int64_t>(dice.Bits() >> dice.Below(64))}) {
            // Every decimal64 bound is signed.
            numbers.push_back(
                {static_cast<uint64_t>(value), true, DecimalText(value, digits, dice.OneIn(2))});
        }
        Chain chain;
        Level base;
        std::string restriction;
        if (dice.OneIn(2)) {
            Expression expression = RandomExpression(dice, numbers);
            restriction = "<range value=\"" + TextOf(expression, dice) + "\"/>";
            base.hasBounds = true;
            for (const Part &part : expression)
                base.segments.push_back(*Stored(part, wide));
        }
        chain.levels.push_back(base);
        chain.restrictions.push_back(restriction);
        if (dice.OneIn(2)) {
            // A derived type knows no fraction digits: its bounds are whole, unscaled numbers.
            std::vector<Number> whole = IntegerNumbers(dice, wide);
            Expression expression = RandomExpression(dice, whole);
            Level level;
            level.hasBounds = true;
            level.relative = UsesMinMax(expression);
            for (const Part &part : expression)
                level.segments.push_back(Written(part));
            chain.levels.push_back(level);
            chain.restrictions.push_back("<range value=\"" + TextOf(expression, dice) + "\"/>");
        }
        Leaf leaf =
            chain.Load("decimal64", "<fraction-digits value=\"" + std::to_string(digits) + "\"/>");
        ASSERT_EQ(leaf.status(), ZR_OK) << Describe(chain, "decimal64");
        for (int i = 0; i < 12; ++i) {
            std::string value = Decorate(dice.Pick(numbers).text, dice);
            if (dice.OneIn(8))
                value = std::to_string(dice.Bits()) + "." + std::to_string(dice.Below(1000));
            std::optional<uint64_t> bits = DecimalValue(value, digits);
            bool good = bits && Takes(chain.levels, *bits, WholeOf(wide), true);
            ASSERT_EQ(CheckEither(leaf, value, dice), good ? 0u : uint32_t{ZR_ERR_VALUE_RANGE})
                << Describe(chain, "decimal64") << " digits " << digits << " value \"" << value
                << '"';
            taken += good;
        }
    }
    EXPECT_GT(taken, 3000u);
}

TEST(RandomTypes, OfLengthsTakeWhatTheRulesTake)
{
    Dice dice(20240503);
    const Width narrow = {32, false};
    const std::vector<std::string> letters = {"a", "b", " ", "\xC3\xBC", "\xE2\x82\xAC"};
    uint32_t taken = 0;
    uint32_t refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::vector<Number> numbers;
        for (uint64_t value : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 8u, 10u})
            numbers.push_back(FromUnsigned(value));
        numbers.push_back(FromUnsigned(UINT32_MAX));
        numbers.push_back(FromUnsigned(uint64_t{UINT32_MAX} + 4)); // cut to 3
        if (dice.OneIn(4))
            numbers.push_back(FromSigned(-1));
        Chain chain;
        uint32_t levels = 1 + dice.Below(4);
        for (uint32_t i = 0; i < levels; ++i) {
            Level level;
            std::string restriction;
            if (!dice.OneIn(3)) {
                Expression expression = RandomExpression(dice, numbers);
                restriction = "<length value=\"" + TextOf(expression, dice) + "\"/>";
                level.hasBounds = true;
                level.relative = i > 0 && UsesMinMax(expression);
                for (const Part &part : expression) {
                    std::optional<Segment> segment =
                        level.relative ? Written(part) : Stored(part, narrow);
                    chain.valid = chain.valid && segment;
                    level.segments.push_back(segment.value_or(Segment{}));
                }
            }
            chain.levels.push_back(level);
            chain.restrictions.push_back(restriction);
        }
        Leaf leaf = chain.Load("string");
        ASSERT_EQ(leaf.status() == ZR_OK, chain.valid) << Describe(chain, "string");
        if (!chain.valid)
            continue;
        for (int i = 0; i < 12; ++i) {
            std::string value;
            for (uint32_t count = dice.Below(9); count > 0; --count)
                value += dice.Pick(letters);
            bool good = Takes(chain.levels, value.size(), WholeOf(narrow), false);
            ASSERT_EQ(CheckEither(leaf, value, dice), good ? 0u : uint32_t{ZR_ERR_VALUE_LENGTH})
                << Describe(chain, "string") << " value \"" << value << '"';
            ++(good ? taken : refused);
        }
    }
    EXPECT_GT(taken, 2000u);
    EXPECT_GT(refused, 2000u);
}

struct NamedValue {
    std::string name;
    int64_t value;
    bool operator==(const NamedValue &) const = default;
};

uint32_t Collect(const char *name, const char *, int64_t value, void *userData)
{
    static_cast<std::vector<NamedValue> *>(userData)->push_back({name, value});
    return 0;
}

TEST(RandomTypes, OfEnumerationsTakeTheirNamesAndNumberThem)
{
    Dice dice(20240504);
    const std::vector<int64_t> interesting = {-2147483648, -2147483647, -5,        -1, 0, 1, 3, 10,
                                              2147483646,  2147483647,  4294967296};
    const std::vector<std::string> letters = {"a", "b", "-", "1", " ", "\xC3\xA9"};
    uint32_t loaded = 0;
    for (int round = 0; round < 2000; ++round) {
        std::vector<NamedValue> expected;
        std::string statements;
        bool valid = true;
        int64_t next = 0;
        for (uint32_t i = 0, count = 1 + dice.Below(8); i < count; ++i) {
            std::string name;
            for (uint32_t length = 1 + dice.Below(4); length > 0; --length)
                name += dice.Pick(letters);
            statements += "<enum name=\"" + name + "\">";
            int64_t value = next;
            if (dice.OneIn(3)) {
                value = dice.Pick(interesting);
                valid = valid && value >= -2147483647 && value <= 2147483646;
                statements += "<value value=\"" + std::to_string(value) + "\"/>";
            }
            valid = valid && value <= 2147483647;
            statements += "</enum>";
            next = std::max(next, value + 1);
            expected.push_back({name, value});
        }
        Leaf leaf("<type name=\"enumeration\">" + statements + "</type>");
        ASSERT_EQ(leaf.status() == ZR_OK, valid) << statements;
        if (!valid)
            continue;
        ++loaded;
        std::vector<NamedValue> actual;
        ASSERT_EQ(ZR_TYPE_ScanNameValuePair(leaf.type(), Collect, &actual), ZR_OK);
        ASSERT_EQ(actual, expected) << statements;
        std::set<std::string> names;
        for (const NamedValue &one : expected)
            names.insert(one.name);
        for (int i = 0; i < 12; ++i) {
            std::string value = dice.Pick(expected).name;
            if (dice.OneIn(2))
                value += dice.Pick(letters);
            else if (dice.OneIn(3))
                value.pop_back();
            uint32_t status =
                names.count(value) != 0 ? uint32_t{ZR_OK} : uint32_t{ZR_ERR_VALUE_ENUM};
            ASSERT_EQ(CheckEither(leaf, value, dice), status)
                << statements << " value \"" << value << '"';
        }
    }
    EXPECT_GT(loaded, 500u);
}

} // namespace
