// SPDX-License-Identifier: Apache-2.0
#include "yang/types/intervals.h"

#include <gtest/gtest.h>

using namespace zr::yang;

namespace {

constexpr uint64_t kZero = uint64_t{1} << 63; // of signed numbers

} // namespace

TEST(Intervals, KeepTheOrderOfSignedNumbers)
{
    uint64_t low = 0, high = 0;
    NumberForm form = {true, 0};
    ASSERT_TRUE(ReadNumber("-9223372036854775808", form, low));
    ASSERT_TRUE(ReadNumber("9223372036854775807", form, high));
    EXPECT_EQ(low, 0u);
    EXPECT_EQ(high, UINT64_MAX);
    EXPECT_FALSE(ReadNumber("9223372036854775808", form, high));
    EXPECT_FALSE(ReadNumber("-9223372036854775809", form, high));
}

TEST(Intervals, ReadDecimals)
{
    uint64_t ordinal = 0;
    NumberForm form = {true, 2};
    ASSERT_TRUE(ReadNumber("-1.5", form, ordinal));
    EXPECT_EQ(ordinal, kZero - 150);
    ASSERT_TRUE(ReadNumber("1.250", form, ordinal));
    EXPECT_EQ(ordinal, kZero + 125);
    ASSERT_TRUE(ReadNumber("7", form, ordinal));
    EXPECT_EQ(ordinal, kZero + 700);
    for (const char *bad : {"1.", ".5", "1.234", "", "-", "1.2.3", "1e2", "92233720368547758.08"})
        EXPECT_FALSE(ReadNumber(bad, form, ordinal)) << bad;
    EXPECT_FALSE(ReadNumber("1.0", {true, 0}, ordinal));
}

TEST(Intervals, ReadIntegersInTheirThreeNotations)
{
    uint64_t ordinal = 0;
    NumberForm form = {true, 0};
    ASSERT_TRUE(ReadIntegerValue("0x1F", form, ordinal));
    EXPECT_EQ(ordinal, kZero + 31);
    ASSERT_TRUE(ReadIntegerValue("-017", form, ordinal));
    EXPECT_EQ(ordinal, kZero - 15);
    ASSERT_TRUE(ReadIntegerValue("+0", form, ordinal));
    EXPECT_EQ(ordinal, kZero);
    for (const char *bad : {"0x", "08", "1 ", "", "--1", "0xg"})
        EXPECT_FALSE(ReadIntegerValue(bad, form, ordinal)) << bad;
}

TEST(Intervals, ThatTouchAreOne)
{
    Intervals whole({{0, 255}}), joined, inner;
    ASSERT_EQ(ReadIntervals("1..4|5..9", {}, whole, joined), nullptr);
    ASSERT_EQ(joined.size(), 1u);
    EXPECT_EQ(ReadIntervals("2..7", {}, joined, inner), nullptr);
    EXPECT_TRUE(Contains(joined, 9));
    EXPECT_FALSE(Contains(joined, 10));
    EXPECT_FALSE(Contains(joined, 0));
}
