// SPDX-License-Identifier: Apache-2.0
#include "types/range.h"

#include <gtest/gtest.h>

#include <string>

#include "types/constraints.h"

namespace {

struct Good {
    std::string text;
    uint32_t fractionDigits;
    int64_t value;
};

class Decimal64Text : public testing::TestWithParam<Good> {};

const Good g_good[] = {
    {"1.5", 2, 150},
    {"-0.05", 2, -5},
    {"007.10", 2, 710},
    {"0", 2, 0},
    {"-0", 2, 0},
    {"0.00", 2, 0},
    {"+3", 1, 30},
    {"1.", 2, 100},
    {".5", 2, 50},
    {"-.5", 1, -5},
    {" 1.5", 2, 150},
    {"\t\n1.5\n\t ", 2, 150},
    {"12345678901234567", 2, 1234567890123456700},
    {"92233720368547758.07", 2, INT64_MAX},
    {"-92233720368547758.08", 2, INT64_MIN},
    {"9.223372036854775807", 18, INT64_MAX},
    {"-9.223372036854775808", 18, INT64_MIN},
    {"0.000000000000000001", 18, 1},
    {"922337203685477580.7", 1, INT64_MAX},
    {"0000000000000000000000000000000000000000000000000012.3", 1, 123},
    {"5", 0, 5},
    {"5.", 0, 5},
    {"9223372036854775807", 0, INT64_MAX},
};

INSTANTIATE_TEST_SUITE_P(Good, Decimal64Text, testing::ValuesIn(g_good));

TEST_P(Decimal64Text, IsScaledByItsFractionDigits)
{
    int64_t value = 0;
    EXPECT_EQ(ZRT_CONS_ConvertValStrToDecimal64PowerInteger(GetParam().text.c_str(),
                                                            GetParam().fractionDigits, &value),
              ZR_OK)
        << GetParam().text;
    EXPECT_EQ(value, GetParam().value) << GetParam().text;
}

struct Bad {
    std::string text;
    uint32_t fractionDigits;
};

class BadDecimal64Text : public testing::TestWithParam<Bad> {};

const Bad g_bad[] = {
    {"", 2},
    {" ", 2},
    {"-", 2},
    {"+", 2},
    {".", 2},
    {"-.", 2},
    {"1.234", 2},
    {"1.500", 2},
    {"123456789012345678.5", 2}, // more than 17 digits before the point
    {"1234567890123456789", 1},
    {"12", 18},
    {"10", 18},
    {"9.223372036854775808", 18}, // beyond the 64 bits
    {"-9.223372036854775809", 18},
    {"92233720368547758.08", 2},
    {"1.5x", 2},
    {"x1.5", 2},
    {"1.5.5", 2},
    {"1..5", 2},
    {"1 .5", 2},
    {"1. 5", 2},
    {"- 1", 2},
    {"--1", 2},
    {"1e1", 2},
    {"1\r", 2},
    {"5.0", 0}, // no digit may follow the point
    {"0", 0},   // the zeros are skipped and nothing is left
    {"1", 19},
    {std::string(1000, '1'), 2},
};

INSTANTIATE_TEST_SUITE_P(Bad, BadDecimal64Text, testing::ValuesIn(g_bad));

TEST_P(BadDecimal64Text, IsRefused)
{
    int64_t value = 77;
    EXPECT_EQ(ZRT_CONS_ConvertValStrToDecimal64PowerInteger(GetParam().text.c_str(),
                                                            GetParam().fractionDigits, &value),
              ZR_ERR_INVALID)
        << GetParam().text;
}

TEST(Decimal64, OfANullTextIsRefused)
{
    int64_t value = 0;
    EXPECT_EQ(ZRT_CONS_ConvertValStrToDecimal64PowerInteger(nullptr, 2, &value), ZR_ERR_INVALID);
}

TEST(FractionDigits, RefuseNoValueByThemselves)
{
    ZrtConsFraction body = {2};
    ZrtValidateCtx validation = {};
    for (const char *text : {"1.234", "x", ""})
        EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataFraction(&body, ZR_VALUE_STRING, text,
                                                                &validation),
                  ZR_OK);
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataFraction(&body, ZR_VALUE_STRING, nullptr, &validation),
        ZR_OK);
}

TEST(FractionDigits, AreReadFromTheBody)
{
    ZrtConsFraction body = {18};
    EXPECT_EQ(ZRT_CONS_GetConsDataFractionVal(&body), 18u);
    EXPECT_EQ(ZRT_CONS_GetConsDataFractionVal(nullptr), 0u);
}

TEST(FractionDigits, AreCopied)
{
    ZrtConsFraction body = {18};
    void *copy = ZRT_CONS_CopyConsDataBodyWithFraction(nullptr, &body);
    EXPECT_EQ(ZRT_CONS_GetConsDataFractionVal(copy), 18u);
    ZRT_CONS_DestroyConsDataBodyWithNoDynamic(nullptr, copy);
}

} // namespace
