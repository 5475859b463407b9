// SPDX-License-Identifier: Apache-2.0
#include "patterns/code_set.h"

#include <gtest/gtest.h>

#include <bitset>
#include <random>

namespace {

using zr::patterns::CodeRange;
using zr::patterns::CodeSet;
using zr::patterns::kLastCode;

TEST(CodeSet, JoinsRangesThatTouchOrOverlap)
{
    const CodeRange ranges[] = {{30, 40}, {10, 19}, {20, 25}, {35, 50}, {60, 60}};
    const CodeRange joined[] = {{10, 25}, {30, 50}, {60, 60}};
    CodeSet set(ranges);
    EXPECT_TRUE(
        std::equal(set.ranges().begin(), set.ranges().end(), std::begin(joined), std::end(joined)));
}

TEST(CodeSet, HasNothingAndEverythingForComplements)
{
    EXPECT_EQ(CodeSet().Complement(), CodeSet::Of(0, kLastCode));
    EXPECT_EQ(CodeSet::Of(0, kLastCode).Complement(), CodeSet());
}

// Small sets, held against bits.
TEST(CodeSet, ComputesLikeASetOfBits)
{
    using Bits = std::bitset<64>;
    std::mt19937 random(1);
    auto draw = [&](Bits &bits) {
        std::vector<CodeRange> ranges;
        for (size_t count = random() % 6; count > 0; --count) {
            auto first = static_cast<char32_t>(random() % 56);
            auto last = static_cast<char32_t>(first + random() % 8);
            ranges.push_back({first, last});
            for (; first <= last; ++first)
                bits.set(first);
        }
        return CodeSet(ranges);
    };
    for (int round = 0; round < 2000; ++round) {
        Bits bitsA, bitsB;
        CodeSet a = draw(bitsA), b = draw(bitsB);
        for (char32_t code = 0; code < 64; ++code) {
            ASSERT_EQ(a.Contains(code), bitsA[code]);
            ASSERT_EQ(a.Complement().Contains(code), !bitsA[code]);
            ASSERT_EQ(a.Union(b).Contains(code), bitsA[code] || bitsB[code]);
            ASSERT_EQ(a.Minus(b).Contains(code), bitsA[code] && !bitsB[code]);
        }
    }
}

} // namespace
