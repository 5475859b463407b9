// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.3: the decimal64 type.
#include "support/value.h"

namespace datatest {

TEST(Decimal64, IsWrittenWithOneDigitAtLeastBehindThePoint)
{
    const std::string type = "decimal64 { fraction-digits 2; range \"-1..9.5\"; }";
    EXPECT_TRUE(Reads(type, "+1", "1.0"));
    EXPECT_TRUE(Reads(type, "01.50", "1.5"));
    EXPECT_TRUE(Reads(type, "-0.00", "0.0"));
    for (const char *bad : {"", "1.234", ".5", "1.", "9.51", "-1.01", "1e1"})
        EXPECT_FALSE(Takes(type, bad)) << bad;
}

TEST(Decimal64, KeepsTheRangesOfItsTypedefs)
{
    const std::string base = "typedef t { type decimal64 { fraction-digits 2; range \"-3..9\"; } }";
    const std::string type = "t { range \"min..-1 | 1.5..2 | 7..max\"; }";
    for (const char *good : {"-3", "-1.00", "1.5", "1.50", "2.0", "7", "9.00"})
        EXPECT_TRUE(Takes(type, good, base)) << good;
    for (const char *bad : {"-3.01", "-0.99", "1.49", "2.01", "6.99", "9.01"})
        EXPECT_FALSE(Takes(type, bad, base)) << bad;
}

TEST(Decimal64, HasTheLimitsOfItsFractionDigits)
{
    struct Row {
        const char *digits, *least, *below, *greatest, *above;
    };
    const Row rows[] = {
        {"1", "-922337203685477580.8", "-922337203685477580.9", "922337203685477580.7",
         "922337203685477580.8"},
        {"9", "-9223372036.854775808", "-9223372036.854775809", "9223372036.854775807",
         "9223372036.854775808"},
        {"18", "-9.223372036854775808", "-9.223372036854775809", "9.223372036854775807",
         "9.223372036854775808"},
    };
    for (const Row &row : rows) {
        const std::string type = std::string("decimal64 { fraction-digits ") + row.digits + "; }";
        EXPECT_TRUE(Reads(type, row.least, row.least)) << row.digits;
        EXPECT_TRUE(Reads(type, row.greatest, row.greatest)) << row.digits;
        EXPECT_FALSE(Takes(type, row.below)) << row.digits;
        EXPECT_FALSE(Takes(type, row.above)) << row.digits;
    }
}

TEST(Decimal64, HasNoZerosAroundItsDigitsInItsCanonicalForm)
{
    const std::string type = "decimal64 { fraction-digits 3; }";
    EXPECT_TRUE(Reads(type, "+00012.340", "12.34"));
    EXPECT_TRUE(Reads(type, "0.500", "0.5"));
    EXPECT_TRUE(Reads(type, "-12", "-12.0"));
    EXPECT_TRUE(Reads(type, "1.2340000", "1.234")) << "zeros that say nothing";
    for (const char *bad :
         {"-", "+", ".", "1.2.3", "1,5", "--1", "1.-5", " 1.5", "0x1", "INF", "NaN"})
        EXPECT_FALSE(Takes(type, bad)) << bad;
}

TEST(Decimal64, HasTheRangeOfItsType)
{
    const std::string type = "decimal64 { fraction-digits 2; range \"1 .. 3.14 | 10 | 20..max\"; }";
    for (const char *good : {"1", "3.14", "10.00", "20", "92233720368547758.07"})
        EXPECT_TRUE(Takes(type, good)) << good;
    for (const char *bad : {"0.99", "3.15", "9.99", "10.01", "19.99"})
        EXPECT_FALSE(Takes(type, bad)) << bad;
}

} // namespace datatest
