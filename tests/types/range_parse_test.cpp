// SPDX-License-Identifier: Apache-2.0
#include "types/range.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/alloc.h"
#include "types/constraints.h"
#include "types/real_type.h"

namespace {

// What a push function was given, as text: "start..end flags".
struct Parts {
    std::vector<std::string> texts;
    uint32_t usesMinMax = 0;
    uint32_t status = 0;
};

std::vector<std::string> *g_parts;
uint32_t g_pushStatus;

uint32_t Collect(ZrtRangePush *, const ZrtGenericSeg *part)
{
    char text[80];
    std::snprintf(text, sizeof text, "%lld..%lld %x", static_cast<long long>(part->start),
                  static_cast<long long>(part->end), static_cast<unsigned>(part->flags));
    g_parts->push_back(text);
    return g_pushStatus;
}

Parts Parse(const std::string &expression, uint32_t baseType = ZRT_TYPE_INT32,
            uint32_t fractionDigits = 0)
{
    Parts parts;
    g_parts = &parts.texts;
    ZrtRangePush push = {nullptr, 0, baseType, fractionDigits, 0};
    parts.status = ZRT_LOADER_ScanParseRangeExprWithCb(expression.c_str(), Collect, &push);
    parts.usesMinMax = push.usesMinMax;
    return parts;
}

using Texts = std::vector<std::string>;

TEST(RangeExpression, OfOneNumberStartsAndEndsThere)
{
    EXPECT_EQ(Parse("5").texts, Texts{"5..5 2"});
    EXPECT_EQ(Parse("-5").texts, Texts{"-5..-5 1"});
    EXPECT_EQ(Parse("+5").texts, Texts{"5..5 2"});
}

TEST(RangeExpression, OfMinOrMaxAloneEndsWhereItStarts)
{
    EXPECT_EQ(Parse("min").texts, Texts{"0..0 14"});
    EXPECT_EQ(Parse("max").texts, Texts{"0..0 28"});
    EXPECT_EQ(Parse("min").usesMinMax, 1u);
    EXPECT_EQ(Parse("5").usesMinMax, 0u);
}

TEST(RangeExpression, SplitsAtBars)
{
    EXPECT_EQ(Parse("1..10|20|100..max").texts, (Texts{"1..10 2", "20..20 2", "100..0 22"}));
    EXPECT_EQ(Parse("min..max").texts, Texts{"0..0 24"});
    EXPECT_EQ(Parse("min..-1|1..max").texts, (Texts{"0..-1 5", "1..0 22"}));
}

TEST(RangeExpression, IgnoresBlanksAroundEveryToken)
{
    EXPECT_EQ(Parse("1 .. 10 | 20").texts, (Texts{"1..10 2", "20..20 2"}));
    EXPECT_EQ(Parse(" \t\n1\n..\t10 | 20 \n").texts, (Texts{"1..10 2", "20..20 2"}));
    EXPECT_EQ(Parse("min .. max ").texts, Texts{"0..0 24"});
}

TEST(RangeExpression, KeepsTheSignOfTheFirstNumberOfAPart)
{
    EXPECT_EQ(Parse("-1..5").texts, Texts{"-1..5 1"});
    EXPECT_EQ(Parse("1..-5").texts, Texts{"1..-5 2"});
    EXPECT_EQ(Parse("min..-5").texts, Texts{"0..-5 5"});
    EXPECT_EQ(Parse("min..5").texts, Texts{"0..5 6"});
}

TEST(RangeExpression, WithAnOpenEndEndsAtZero)
{
    // Only a part of which nothing was read is refused.
    EXPECT_EQ(Parse("5..").texts, Texts{"5..0 2"});
    EXPECT_EQ(Parse("..5").texts, Texts{"0..5 2"});
}

TEST(RangeExpression, ReadsEveryNumberOf64Bits)
{
    EXPECT_EQ(Parse("-9223372036854775808..9223372036854775807").texts,
              Texts{"-9223372036854775808..9223372036854775807 1"});
    EXPECT_EQ(Parse("18446744073709551615").texts, Texts{"-1..-1 2"});
}

TEST(RangeExpression, OfADecimal64IsScaled)
{
    EXPECT_EQ(Parse("1.5..10", ZRT_TYPE_DECIMAL64, 2).texts, Texts{"150..1000 1"});
    EXPECT_EQ(Parse("-.5 .. +2. | 3", ZRT_TYPE_DECIMAL64, 1).texts,
              (Texts{"-5..20 1", "30..30 1"}));
    EXPECT_EQ(Parse("1..2", ZRT_TYPE_DECIMAL64, 1).texts, Texts{"10..20 1"});
    EXPECT_EQ(Parse("min..1.25", ZRT_TYPE_DECIMAL64, 2).texts, Texts{"0..125 5"});
}

TEST(RangeExpression, OfADecimal64TakesNumbersOf31CharactersAtMost)
{
    std::string longest = std::string(29, '0') + "5."; // 31 characters
    EXPECT_EQ(Parse(longest, ZRT_TYPE_DECIMAL64, 1).texts, Texts{"50..50 1"});
    EXPECT_EQ(Parse("0" + longest, ZRT_TYPE_DECIMAL64, 1).status, ZR_ERR_INVALID);
}

class BadExpression : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(Each, BadExpression,
                         testing::Values("", " ", "|", "1|", "|1", "1..10||5", "1||2", "mix", "m",
                                         "mi", "ma", "minx", "maxx", "Min", "1.5", "1.", ".5", ".",
                                         "1...2", "1 . . 2", "a", "1a", "1..a", "-", "--1", "0x10",
                                         "1,2", "18446744073709551616", "-9223372036854775809",
                                         "99999999999999999999999", "1\r..2"));

TEST_P(BadExpression, IsRefusedWith22)
{
    EXPECT_EQ(Parse(GetParam()).status, ZR_ERR_INVALID) << GetParam();
}

TEST(RangeExpression, OfADecimal64RefusesMalformedNumbers)
{
    for (const char *text : {"1.234", "x", "-", "1.2.3", "99999999999999999999", "1..2x"})
        EXPECT_EQ(Parse(text, ZRT_TYPE_DECIMAL64, 2).status, ZR_ERR_INVALID) << text;
    EXPECT_EQ(Parse("1.5", ZRT_TYPE_DECIMAL64, 0).status, ZR_ERR_INVALID);
}

// An expression of the given number of tokens: numbers and bars by turns.
std::string Tokens(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += i % 2 == 0 ? "1" : "|";
    return text;
}

TEST(RangeExpression, HasAtMost255Tokens)
{
    EXPECT_EQ(Parse(Tokens(255)).status, ZR_OK);
    EXPECT_EQ(Parse(Tokens(255)).texts.size(), 128u);
    EXPECT_EQ(Parse(Tokens(257)).status, ZR_ERR_INVALID);
    // 256 tokens that would be well formed: the last part has a number more.
    EXPECT_EQ(Parse(Tokens(255) + " 1").status, ZR_ERR_INVALID);
    EXPECT_EQ(Parse(Tokens(255) + " 1").texts.size(), 128u);
    EXPECT_EQ(Parse(Tokens(254) + "1..2").status, ZR_ERR_INVALID);
    EXPECT_EQ(Parse(Tokens(252) + "1..2").status, ZR_OK); // exactly 255
}

TEST(RangeExpression, ReturnsTheFailureOfAPush)
{
    g_pushStatus = 104;
    Parts parts = Parse("1|2|3");
    g_pushStatus = 0;
    EXPECT_EQ(parts.status, ZR_ERR_COPY);
    EXPECT_EQ(parts.texts.size(), 1u);
}

TEST(RangeExpression, OfNullIs22)
{
    ZrtRangePush push = {};
    EXPECT_EQ(ZRT_LOADER_ScanParseRangeExprWithCb(nullptr, Collect, &push), ZR_ERR_INVALID);
    EXPECT_EQ(ZRT_LOADER_ScanParseRangeExprWithCb("1", nullptr, &push), ZR_ERR_INVALID);
}

// A type of the base with a range or length body that was parsed from the expression.
class Parsed {
public:
    Parsed(uint32_t baseType, const char *expression, bool isLength = false)
        : body_(static_cast<ZrtConsRange *>(ZRT_CONS_CreateConsDataBodyWithRange(0)))
    {
        type_.baseType = baseType;
        status = isLength ? zr::ParseLengthInto(&type_, body_, expression)
                          : zr::ParseRangeInto(&type_, body_, expression);
    }
    ~Parsed() { ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, body_); }
    Parsed(const Parsed &) = delete;
    Parsed &operator=(const Parsed &) = delete;

    uint32_t flags() const { return type_.flags; }
    const ZrtConsRange &body() const { return *body_; }
    std::string Segment(uint32_t index, uint32_t readAs) const
    {
        ZrtGenericSeg segment = zr::ReadSegment(body_, index, readAs);
        char text[80];
        std::snprintf(text, sizeof text, "%lld..%lld %x", static_cast<long long>(segment.start),
                      static_cast<long long>(segment.end), static_cast<unsigned>(segment.flags));
        return text;
    }
    uint32_t status;

private:
    ZrtRealType type_ = {};
    ZrtConsRange *body_;
};

TEST(ParseRange, OfADerivedTypeWithMinAndMaxIsRelative)
{
    Parsed range(ZRT_TYPE_DERIVED, "min..max");
    EXPECT_EQ(range.status, ZR_OK);
    EXPECT_EQ(range.body().segSize, 20);
    EXPECT_EQ(range.body().segCount, 1);
    EXPECT_EQ(range.Segment(0, ZRT_TYPE_DERIVED), "0..0 24");
    EXPECT_EQ(range.flags(), ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_RELATIVE);
}

TEST(ParseRange, OfADerivedTypeWithNumbersIsSelfContained)
{
    Parsed range(ZRT_TYPE_DERIVED, "1..5|-3");
    EXPECT_EQ(range.status, ZR_OK);
    EXPECT_EQ(range.Segment(0, ZRT_TYPE_DERIVED), "1..5 2");
    EXPECT_EQ(range.Segment(1, ZRT_TYPE_DERIVED), "-3..-3 1");
    EXPECT_EQ(range.flags(), ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_EXPLICIT);
}

TEST(ParseRange, OfInt8WithMinAndMaxIsSelfContained)
{
    Parsed range(ZRT_TYPE_INT8, "min..max");
    EXPECT_EQ(range.status, ZR_OK);
    EXPECT_EQ(range.body().segSize, 2);
    EXPECT_EQ(range.Segment(0, ZRT_TYPE_INT8), "-128..127 1");
    EXPECT_EQ(range.flags(), ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_EXPLICIT);
}

TEST(ParseRange, OfUint8CutsItsBounds)
{
    Parsed range(ZRT_TYPE_UINT8, "0..300");
    EXPECT_EQ(range.status, ZR_OK);
    EXPECT_EQ(range.Segment(0, ZRT_TYPE_UINT8), "0..44 2");
}

TEST(ParseRange, OfUint8RefusesNegativeBounds)
{
    EXPECT_EQ(Parsed(ZRT_TYPE_UINT8, "-1..5").status, ZR_ERR_INVALID);
    EXPECT_EQ(Parsed(ZRT_TYPE_UINT64, "min..-1").status, ZR_ERR_INVALID);
}

TEST(ParseRange, OfADecimal64LeavesMinAndMaxUnscaled)
{
    Parsed range(ZRT_TYPE_DECIMAL64, "min..max");
    EXPECT_EQ(range.status, ZR_OK);
    EXPECT_EQ(range.Segment(0, ZRT_TYPE_DECIMAL64), "-9223372036854775808..9223372036854775807 1");
}

TEST(ParseRange, IsRefusedOnTypesThatAreNoNumbers)
{
    for (uint32_t type : {ZRT_TYPE_BINARY, ZRT_TYPE_BITS, ZRT_TYPE_BOOLEAN, ZRT_TYPE_EMPTY,
                          ZRT_TYPE_ENUMERATION, ZRT_TYPE_IDENTITYREF, ZRT_TYPE_INSTANCE_IDENTIFIER,
                          ZRT_TYPE_LEAFREF, ZRT_TYPE_STRING, ZRT_TYPE_UNION, ZRT_TYPE_NONE})
        EXPECT_EQ(Parsed(type, "1..2").status, ZR_ERR_INVALID) << type;
}

TEST(ParseRange, SetsNoFlagsWhenItFails)
{
    EXPECT_EQ(Parsed(ZRT_TYPE_INT8, "1..x").flags(), 0u);
}

TEST(ParseRange, Returns12WhenTheSegmentsCannotBeHad)
{
    zrtest::AllocGuard guard;
    auto *body = static_cast<ZrtConsRange *>(ZRT_CONS_CreateConsDataBodyWithRange(0));
    ZrtRealType type = {};
    type.baseType = ZRT_TYPE_INT8;
    guard.FailAt(0);
    EXPECT_EQ(zr::ParseRangeInto(&type, body, "1..2"), ZR_ERR_NO_MEMORY);
    guard.Stop();
    ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, body);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(ParseRange, RefusesMoreSegmentsThanACountCanHold)
{
    EXPECT_EQ(Parsed(ZRT_TYPE_INT8, std::string(65535, '|').c_str()).status, ZR_ERR_INVALID);
    EXPECT_EQ(Parsed(ZRT_TYPE_INT8, std::string(70000, '|').c_str()).status, ZR_ERR_INVALID);
}

TEST(ParseLength, IsNarrowOnABuiltInType)
{
    for (const char *text : {"1..5", "min..max"}) {
        Parsed length(ZRT_TYPE_STRING, text, true);
        EXPECT_EQ(length.status, ZR_OK);
        EXPECT_EQ(length.body().segSize, 8);
        EXPECT_EQ(length.flags(), ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_EXPLICIT);
    }
    EXPECT_EQ(Parsed(ZRT_TYPE_STRING, "min..max", true).Segment(0, ZRT_TYPE_UINT32),
              "0..4294967295 2");
}

TEST(ParseLength, IsNarrowOnADerivedTypeWithoutMinOrMax)
{
    Parsed length(ZRT_TYPE_DERIVED, "1..5", true);
    EXPECT_EQ(length.status, ZR_OK);
    EXPECT_EQ(length.body().segSize, 8);
    EXPECT_EQ(length.flags(), ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_EXPLICIT);
}

TEST(ParseLength, IsGenericOnADerivedTypeWithMinOrMax)
{
    Parsed length(ZRT_TYPE_DERIVED, "2..max", true);
    EXPECT_EQ(length.status, ZR_OK);
    EXPECT_EQ(length.body().segSize, 20);
    EXPECT_EQ(length.Segment(0, ZRT_TYPE_DERIVED), "2..0 22");
    EXPECT_EQ(length.flags(), ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_RELATIVE);
}

TEST(ParseLength, ReadsWholeNumbersOnEveryType)
{
    for (uint32_t type = 1; type < ZRT_TYPE_NONE; ++type) {
        Parsed length(type, "2..4", true);
        EXPECT_EQ(length.status, ZR_OK) << type;
        EXPECT_EQ(length.Segment(0, ZRT_TYPE_UINT32), "2..4 2") << type;
        EXPECT_EQ(Parsed(type, "2.5", true).status, ZR_ERR_INVALID) << type;
    }
}

TEST(ParseLength, RefusesNegativeLengths)
{
    EXPECT_EQ(Parsed(ZRT_TYPE_STRING, "-1", true).status, ZR_ERR_INVALID);
    EXPECT_EQ(Parsed(ZRT_TYPE_DERIVED, "-1..5", true).status, ZR_ERR_INVALID);
}

TEST(ParseLength, CutsItsBoundsTo32Bits)
{
    Parsed length(ZRT_TYPE_STRING, "1..4294967298", true);
    EXPECT_EQ(length.status, ZR_OK);
    EXPECT_EQ(length.Segment(0, ZRT_TYPE_UINT32), "1..2 2");
}

} // namespace
