// SPDX-License-Identifier: Apache-2.0
#include "types/range.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/alloc.h"
#include "types/constraints.h"
#include "types/default_checks.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;
using zrtest::yin::Length;
using zrtest::yin::Range;
using zrtest::yin::Type;
using zrtest::yin::TypeDef;
using Pairs = std::vector<std::pair<uint64_t, uint64_t>>;

TEST(RangeCheck, TakesValuesOfAnySegment)
{
    Leaf leaf(Type("int8", Range("-5..5|10|20..max")));
    for (const char *good : {"-5", "0", "5", "10", "20", "127"})
        EXPECT_EQ(leaf.Check(good), ZR_OK) << good;
    for (const char *bad : {"-128", "-6", "6", "9", "11", "19", "128"})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_RANGE) << bad;
}

TEST(RangeCheck, OfASingleNumberTakesThatNumber)
{
    Leaf leaf(Type("uint16", Range("5")));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("4"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(leaf.Check("6"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, StopsAtTheFirstSegmentAboveTheValue)
{
    Leaf leaf(Type("int8", Range("10..20 | 1..5")));
    EXPECT_EQ(leaf.Check("15"), ZR_OK);
    EXPECT_EQ(leaf.Check("3"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, OfUint8UsesTheCutBounds)
{
    Leaf leaf(Type("uint8", Range("0..300")));
    EXPECT_EQ(leaf.Check("44"), ZR_OK);
    EXPECT_EQ(leaf.Check("45"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(leaf.Check("256"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, ComparesEveryWidthAtItsLimits)
{
    struct Row {
        const char *type;
        const char *range;
        const char *good;
        const char *bad;
    };
    const Row rows[] = {
        {"int8", "-128..-127", "-128", "-126"},
        {"int16", "-32768..-32767", "-32767", "-32766"},
        {"int32", "-2147483648..-1", "-2147483648", "0"},
        {"int64", "-9223372036854775808..-9223372036854775807", "-9223372036854775808",
         "-9223372036854775806"},
        {"uint8", "254..255", "255", "253"},
        {"uint16", "65534..65535", "65535", "65533"},
        {"uint32", "4294967294..max", "4294967295", "4294967293"},
        {"uint64", "18446744073709551614..max", "18446744073709551615", "18446744073709551613"},
    };
    for (const Row &row : rows) {
        Leaf leaf(Type(row.type, Range(row.range)));
        EXPECT_EQ(leaf.Check(row.good), ZR_OK) << row.type;
        EXPECT_EQ(leaf.Check(row.bad), ZR_ERR_VALUE_RANGE) << row.type;
    }
}

TEST(RangeCheck, OfADecimal64ComparesScaledValues)
{
    Leaf leaf(Type("decimal64", "<fraction-digits value=\"2\"/>" + Range("-1.5..3.14 | 10")));
    for (const char *good : {"-1.5", "-1.50", "0", "3.14", "10", "10.00"})
        EXPECT_EQ(leaf.Check(good), ZR_OK) << good;
    for (const char *bad : {"-1.51", "3.15", "9.99", "10.01", "3.141"})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_RANGE) << bad;
}

TEST(RangeCheck, ResolvesMaxOfADerivedTypeAgainstItsParent)
{
    Leaf leaf(Type("t", Range("10..max")), TypeDef("t", Type("int32", Range("0..100"))));
    EXPECT_EQ(leaf.Check("100"), ZR_OK);
    EXPECT_EQ(leaf.Check("10"), ZR_OK);
    EXPECT_EQ(leaf.Check("101"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(leaf.Check("9"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, ResolvesMinOfADerivedTypeAgainstItsParent)
{
    Leaf leaf(Type("t", Range("min..-1 | max")), TypeDef("t", Type("int8", Range("-10..20"))));
    for (const char *good : {"-10", "-1", "20"})
        EXPECT_EQ(leaf.Check(good), ZR_OK) << good;
    for (const char *bad : {"-11", "0", "19", "21"})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_RANGE) << bad;
}

TEST(RangeCheck, ResolvesAgainstTheBaseTypeWhenNoTypedefHasARange)
{
    Leaf leaf(Type("t", Range("min..-100 | 100..max")), TypeDef("t", Type("int8")));
    for (const char *good : {"-128", "-100", "100", "127"})
        EXPECT_EQ(leaf.Check(good), ZR_OK) << good;
    for (const char *bad : {"-129", "-99", "0", "99", "128"})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_RANGE) << bad;
}

TEST(RangeCheck, ResolvesAgainstAPlainDecimal64)
{
    Leaf leaf(Type("t", Range("min..max")),
              TypeDef("t", Type("decimal64", "<fraction-digits value=\"2\"/>")));
    for (const char *good : {"0", "-92233720368547758.08", "92233720368547758.07"})
        EXPECT_EQ(leaf.Check(good), ZR_OK) << good;
    EXPECT_EQ(leaf.Check("92233720368547758.08"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, ResolvesThroughSeveralRelativeTypes)
{
    Leaf leaf(Type("b", Range("20..max")), TypeDef("a", Type("int16", Range("0..1000"))) +
                                               TypeDef("b", Type("a", Range("min..500"))));
    for (const char *good : {"20", "500"})
        EXPECT_EQ(leaf.Check(good), ZR_OK) << good;
    for (const char *bad : {"19", "501", "1000"})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_RANGE) << bad;
}

TEST(RangeCheck, ResolvesThroughTypedefsWithoutARange)
{
    Leaf leaf(Type("c", Range("5..max")), TypeDef("a", Type("uint64", Range("0..9"))) +
                                              TypeDef("b", Type("a")) + TypeDef("c", Type("b")));
    EXPECT_EQ(leaf.Check("9"), ZR_OK);
    EXPECT_EQ(leaf.Check("4"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(leaf.Check("10"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, TakesTheParentsFirstStartAndLastEnd)
{
    Leaf leaf(Type("t", Range("min..max")), TypeDef("t", Type("int8", Range("1..2|5..6"))));
    EXPECT_EQ(leaf.Check("1"), ZR_OK);
    EXPECT_EQ(leaf.Check("6"), ZR_OK);
    EXPECT_EQ(leaf.Check("3"), ZR_ERR_VALUE_RANGE); // the parent itself refuses it
}

TEST(RangeCheck, OfASelfContainedRangeReplacesThoseOfItsAncestors)
{
    Leaf leaf(Type("t", Range("0..1000")), TypeDef("t", Type("int16", Range("0..10"))));
    EXPECT_EQ(leaf.Check("500"), ZR_OK);
    EXPECT_EQ(leaf.Check("1001"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(leaf.Check("40000"), ZR_ERR_VALUE_RANGE); // the built-in type still counts
}

TEST(RangeCheck, OfAnAncestorCountsUnderATypeWithoutARange)
{
    Leaf leaf(Type("b"), TypeDef("a", Type("int16", Range("0..10"))) + TypeDef("b", Type("a")));
    EXPECT_EQ(leaf.Check("10"), ZR_OK);
    EXPECT_EQ(leaf.Check("11"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, UnderARelativeTypeTheNearestSelfContainedRangeCounts)
{
    Leaf leaf(Type("b", Range("min..max")), TypeDef("a", Type("int16", Range("0..10"))) +
                                                TypeDef("b", Type("a", Range("0..1000"))));
    EXPECT_EQ(leaf.Check("1000"), ZR_OK);
    EXPECT_EQ(leaf.Check("1001"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, OfADerivedTypeRefusesNegativeValuesOfAnUnsignedSegment)
{
    Leaf leaf(Type("t", Range("0..10")), TypeDef("t", Type("int8")));
    EXPECT_EQ(leaf.Check("5"), ZR_OK);
    EXPECT_EQ(leaf.Check("-1"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, OfADerivedTypeComparesLargeUnsignedValues)
{
    Leaf leaf(Type("t", Range("1..18446744073709551614")), TypeDef("t", Type("uint64")));
    EXPECT_EQ(leaf.Check("18446744073709551614"), ZR_OK);
    EXPECT_EQ(leaf.Check("18446744073709551615"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(leaf.Check("0"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, OfATypeThatIsNoNumberRefusesEveryValue)
{
    Leaf leaf(Type("t", Range("1..2")), TypeDef("t", Type("string")));
    EXPECT_EQ(leaf.Check("1"), ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, OfANullValueRefuses)
{
    Leaf leaf(Type("int8", Range("1..2")));
    EXPECT_EQ(leaf.Check(nullptr), ZR_ERR_VALUE_RANGE);
}

// A range body of the given width and one zeroed segment.
struct RangeBody {
    explicit RangeBody(uint16_t size) { range = {1, size, memory}; }
    ZrtConsRange range;
    alignas(8) unsigned char memory[64] = {};
};

TEST(RangeCheck, OfAWidthThatDoesNotFitTheTypeIs22)
{
    ZrtRealType type = {ZRT_TYPE_INT8, 0, 0, nullptr};
    for (uint16_t size : {uint16_t{4}, uint16_t{8}, uint16_t{20}}) {
        RangeBody body(size);
        ZrtValidateCtx validation = {};
        validation.baseType = ZRT_TYPE_INT8;
        validation.current = &type;
        EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataRange(&body.range, ZR_VALUE_STRING, "0",
                                                             &validation),
                  ZR_ERR_INVALID);
    }
}

TEST(RangeCheck, OfANullValueRefusesByItself)
{
    RangeBody body(20);
    ZrtValidateCtx validation = {};
    validation.baseType = ZRT_TYPE_INT8;
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataRange(&body.range, ZR_VALUE_STRING, nullptr,
                                                         &validation),
              ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, OfADecimal64ReadsANumberThatNobodyElseHasRead)
{
    ZrtGenericSeg segment = {150, 250, ZRT_SEG_SIGNED};
    ZrtConsRange range = {1, sizeof segment, &segment};
    for (auto [text, expected] : {std::pair("1.4", ZR_ERR_VALUE_RANGE),
                                  {"1.5", ZR_OK},
                                  {"2.5", ZR_OK},
                                  {"2.51", ZR_ERR_VALUE_RANGE},
                                  {"x", ZR_ERR_VALUE_RANGE}}) {
        ZrtValidateCtx validation = {};
        validation.baseType = ZRT_TYPE_DECIMAL64;
        validation.fractionDigits = 2;
        EXPECT_EQ(
            ZRT_CONS_ValidateValueNodeAgainstDataRange(&range, ZR_VALUE_STRING, text, &validation),
            uint32_t{expected})
            << text;
    }
}

TEST(RangeCheck, BeforeABuiltInTypeIsReachedRefuses)
{
    RangeBody body(20);
    ZrtValidateCtx validation = {};
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataRange(&body.range, ZR_VALUE_STRING, "0", &validation),
        ZR_ERR_VALUE_RANGE);
}

TEST(RangeCheck, IsSkippedUnderAMoreDerivedSelfContainedRange)
{
    RangeBody body(20);
    ZrtValidateCtx validation = {};
    validation.explicitBounds = 2;
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataRange(&body.range, ZR_VALUE_STRING, "x", &validation),
        ZR_OK);
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataLength(&body.range, ZR_VALUE_STRING, "x", &validation),
        ZR_OK);
}

TEST(RangeCheck, OfASegmentWithoutASignRefuses)
{
    RangeBody body(20);
    ZrtRealType type = {};
    ZrtValidateCtx validation = {};
    validation.baseType = ZRT_TYPE_INT8;
    validation.current = &type;
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataRange(&body.range, ZR_VALUE_STRING, "0", &validation),
        ZR_ERR_VALUE_RANGE);
}

TEST(LengthCheck, CountsBytesNotCharacters)
{
    Leaf leaf(Type("string", Length("2")));
    EXPECT_EQ(leaf.Check("ab"), ZR_OK);
    EXPECT_EQ(leaf.Check("\xC3\xBC"), ZR_OK);
    EXPECT_EQ(leaf.Check("\xC3\xBC\xC3\xBC"), ZR_ERR_VALUE_LENGTH);
    EXPECT_EQ(leaf.Check("a"), ZR_ERR_VALUE_LENGTH);
}

TEST(LengthCheck, TakesAnySegmentWhateverItsOrder)
{
    Leaf leaf(Type("string", Length("5..6 | 1..2")));
    for (const char *good : {"a", "ab", "abcde", "abcdef"})
        EXPECT_EQ(leaf.Check(good), ZR_OK) << good;
    for (const char *bad : {"", "abc", "abcd", "abcdefg"})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_LENGTH) << bad;
}

TEST(LengthCheck, OfANullValueMeasuresZero)
{
    EXPECT_EQ(Leaf(Type("string", Length("1..max"))).Check(nullptr), ZR_ERR_VALUE_LENGTH);
    EXPECT_EQ(Leaf(Type("string", Length("0..5"))).Check(nullptr), ZR_OK);
    EXPECT_EQ(Leaf(Type("string", Length("0..5"))).CheckElement(""), ZR_OK);
}

TEST(LengthCheck, OfBinaryCountsDecodedOctets)
{
    Leaf leaf(Type("binary", Length("2..3")));
    EXPECT_EQ(leaf.Check("QUJD"), ZR_OK);
    EXPECT_EQ(leaf.Check("QUI="), ZR_OK);
    EXPECT_EQ(leaf.Check(" QUI=\n"), ZR_OK);
    EXPECT_EQ(leaf.Check("QQ=="), ZR_ERR_VALUE_LENGTH);
    EXPECT_EQ(leaf.Check("QUJDRA=="), ZR_ERR_VALUE_LENGTH);
    EXPECT_EQ(leaf.Check(""), ZR_ERR_VALUE_LENGTH);
    EXPECT_EQ(leaf.Check("QUJ"), ZR_ERR_VALUE_BINARY);
}

TEST(LengthCheck, OfADerivedBinaryCountsDecodedOctets)
{
    Leaf leaf(Type("t", Length("2..max")), TypeDef("t", Type("binary")));
    EXPECT_EQ(leaf.Check("QUI="), ZR_OK);
    EXPECT_EQ(leaf.Check("QQ=="), ZR_ERR_VALUE_LENGTH);
}

TEST(LengthCheck, OfAnIntegerMeasuresItsText)
{
    Leaf leaf(Type("int32", Length("2")));
    EXPECT_EQ(leaf.Check("12"), ZR_OK);
    EXPECT_EQ(leaf.Check("1"), ZR_ERR_VALUE_LENGTH);
    EXPECT_EQ(leaf.Check("123"), ZR_ERR_VALUE_LENGTH);
}

TEST(LengthCheck, ResolvesMaxAgainstTheParentsLength)
{
    Leaf leaf(Type("t", Length("2..max")), TypeDef("t", Type("string", Length("1..4"))));
    EXPECT_EQ(leaf.Check("ab"), ZR_OK);
    EXPECT_EQ(leaf.Check("abcd"), ZR_OK);
    EXPECT_EQ(leaf.Check("a"), ZR_ERR_VALUE_LENGTH);
    EXPECT_EQ(leaf.Check("abcde"), ZR_ERR_VALUE_LENGTH);
}

TEST(LengthCheck, ResolvesMaxAgainstAPlainString)
{
    Leaf leaf(Type("t", Length("min..1 | 3..max")), TypeDef("t", Type("string")));
    EXPECT_EQ(leaf.Check(""), ZR_OK);
    EXPECT_EQ(leaf.Check(std::string(100000, 'x').c_str()), ZR_OK);
    EXPECT_EQ(leaf.Check("ab"), ZR_ERR_VALUE_LENGTH);
}

TEST(LengthCheck, OfASelfContainedLengthReplacesThatOfItsAncestors)
{
    Leaf leaf(Type("t", Length("0..10")), TypeDef("t", Type("string", Length("2"))));
    EXPECT_EQ(leaf.Check("abcde"), ZR_OK);
    EXPECT_EQ(leaf.Check("abcdefghijk"), ZR_ERR_VALUE_LENGTH);
}

TEST(LengthCheck, OfAnotherWidthIs22)
{
    RangeBody body(4);
    ZrtValidateCtx validation = {};
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataLength(&body.range, ZR_VALUE_STRING, "x", &validation),
        ZR_ERR_INVALID);
}

TEST(DefaultIntegerCheck, LeavesTheTypesBoundsForDerivedTypes)
{
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_CONS_CheckValStrAgainstDefRestrictRange(ZRT_TYPE_INT8, ZR_VALUE_STRING, "5",
                                                          &validation),
              ZR_OK);
    EXPECT_EQ(uint32_t{validation.bounds.flags}, 0u);
    validation.parentBounds = 1;
    EXPECT_EQ(ZRT_CONS_CheckValStrAgainstDefRestrictRange(ZRT_TYPE_INT8, ZR_VALUE_STRING, "5",
                                                          &validation),
              ZR_OK);
    EXPECT_EQ(static_cast<int64_t>(validation.bounds.start), -128);
    EXPECT_EQ(static_cast<int64_t>(validation.bounds.end), 127);
    EXPECT_EQ(uint32_t{validation.bounds.flags}, uint32_t{ZRT_SEG_SIGNED});
}

TEST(DefaultIntegerCheck, OfATypeThatIsNoIntegerRefuses)
{
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_CONS_CheckValStrAgainstDefRestrictRange(ZRT_TYPE_STRING, ZR_VALUE_STRING, "5",
                                                          &validation),
              ZR_ERR_VALUE_RANGE);
}

TEST(DefaultLengthCheck, LeavesTheFullLengthForDerivedTypes)
{
    ZrtValidateCtx validation = {};
    validation.parentBounds = 1;
    EXPECT_EQ(ZRT_CONS_CheckValStrAgainstDefRestrictLength(ZRT_TYPE_STRING, ZR_VALUE_STRING,
                                                           nullptr, &validation),
              ZR_OK);
    EXPECT_EQ(uint64_t{validation.bounds.start}, 0u);
    EXPECT_EQ(uint64_t{validation.bounds.end}, 4294967295u);
    EXPECT_EQ(uint32_t{validation.bounds.flags}, uint32_t{ZRT_SEG_UNSIGNED});
}

uint32_t Add(uint64_t start, uint64_t end, void *userData)
{
    auto *pairs = static_cast<Pairs *>(userData);
    pairs->emplace_back(start, end);
    return pairs->size() == 3 ? 33 : 0;
}

TEST(RangeBody, IsCreatedWithoutSegments)
{
    zrtest::AllocGuard guard;
    auto *body = static_cast<ZrtConsRange *>(ZRT_CONS_CreateConsDataBodyWithRange(5));
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->segCount, 0);
    EXPECT_EQ(body->segSize, 0);
    EXPECT_EQ(body->segments, nullptr);
    ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, body);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(RangeBody, IsCopiedWithItsSegments)
{
    zrtest::AllocGuard guard;
    ZrtNarrowSeg<uint16_t> segments[] = {{1, 2}, {3, 4}};
    ZrtConsRange body = {2, 4, segments};
    auto *copy = static_cast<ZrtConsRange *>(ZRT_CONS_CopyConsDataBodyWithRange(nullptr, &body));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->segCount, 2);
    EXPECT_EQ(copy->segSize, 4);
    EXPECT_EQ(uint64_t{zr::ReadSegment(copy, 1, ZRT_TYPE_UINT16).end}, 4u);
    ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, copy);
    zrtest::FailEachAllocation(guard, [&](zrtest::FailPoint &memory) {
        void *again =
            memory.Run([&] { return ZRT_CONS_CopyConsDataBodyWithRange(nullptr, &body); });
        EXPECT_EQ(again == nullptr, memory.Failed());
        ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, again);
    });
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(RangeBody, IsCopiedWhenItHasNoSegments)
{
    ZrtConsRange body = {};
    auto *copy = static_cast<ZrtConsRange *>(ZRT_CONS_CopyConsDataBodyWithRange(nullptr, &body));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->segments, nullptr);
    ZRT_CONS_DestroyConsDataBodyWithRange(nullptr, copy);
}

TEST(RangeScan, ExtendsTheSignOfEveryWidth)
{
    ZrtNarrowSeg<int8_t> int8Seg = {-1, 1};
    ZrtNarrowSeg<int16_t> int16Seg = {-1, 1};
    ZrtNarrowSeg<int32_t> int32Seg = {-1, 1};
    struct Row {
        uint32_t type;
        uint16_t size;
        void *segment;
    };
    for (const Row &row : {Row{ZRT_TYPE_INT8, 2, &int8Seg}, Row{ZRT_TYPE_INT16, 4, &int16Seg},
                           Row{ZRT_TYPE_INT32, 8, &int32Seg}}) {
        ZrtConsRange body = {1, row.size, row.segment};
        Pairs pairs;
        EXPECT_EQ(ZRT_CONS_ScanStartEndPairsWithRange(&body, row.type, Add, &pairs), ZR_OK);
        EXPECT_EQ(pairs, (Pairs{{UINT64_MAX, 1}})) << row.type;
    }
}

TEST(RangeScan, KeepsUnsignedWidths)
{
    ZrtNarrowSeg<uint8_t> segments[] = {{254, 255}, {1, 2}};
    ZrtConsRange body = {2, 2, segments};
    Pairs pairs;
    EXPECT_EQ(ZRT_CONS_ScanStartEndPairsWithRange(&body, ZRT_TYPE_UINT8, Add, &pairs), ZR_OK);
    EXPECT_EQ(pairs, (Pairs{{254, 255}, {1, 2}}));
}

TEST(RangeScan, ReadsGenericSegmentsAndStopsAtANonZeroResult)
{
    ZrtGenericSeg segments[] = {{1, 2, ZRT_SEG_UNSIGNED},
                                {3, UINT64_MAX, ZRT_SEG_UNSIGNED},
                                {5, 6, ZRT_SEG_UNSIGNED},
                                {7, 8, ZRT_SEG_UNSIGNED}};
    ZrtConsRange body = {4, 20, segments};
    Pairs pairs;
    EXPECT_EQ(ZRT_CONS_ScanStartEndPairsWithRange(&body, ZRT_TYPE_UINT64, Add, &pairs), 33u);
    EXPECT_EQ(pairs, (Pairs{{1, 2}, {3, UINT64_MAX}, {5, 6}}));
}

TEST(LengthScan, ReadsNarrowSegmentsAsUnsignedWhateverTheType)
{
    ZrtNarrowSeg<uint32_t> segments[] = {{1, 4294967295}};
    ZrtConsRange body = {1, 8, segments};
    for (uint32_t type : {ZRT_TYPE_STRING, ZRT_TYPE_DERIVED, ZRT_TYPE_INT32, ZRT_TYPE_BINARY}) {
        Pairs pairs;
        EXPECT_EQ(ZRT_CONS_ScanStartEndPairsWithLength(&body, type, Add, &pairs), ZR_OK);
        EXPECT_EQ(pairs, (Pairs{{1, 4294967295}})) << type;
    }
}

} // namespace
