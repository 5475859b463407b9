// SPDX-License-Identifier: Apache-2.0
#include "types/default_checks.h"

#include <gtest/gtest.h>

namespace {

struct Binary {
    const char *text;
    uint32_t status;
    uint32_t length;
};

class BinaryText : public testing::TestWithParam<Binary> {};

const Binary g_binaries[] = {
    {"QUJD", ZR_OK, 3},
    {"QUI=", ZR_OK, 2},
    {"QQ==", ZR_OK, 1},
    {"", ZR_OK, 0},
    {" \t\n", ZR_OK, 0},
    {" QUJD\n", ZR_OK, 3},
    {"QUJDREVG", ZR_OK, 6},
    {"!!!!", ZR_OK, 3},
    {"QU=I", ZR_ERR_VALUE_BINARY, 0},
    {"QUJ", ZR_ERR_VALUE_BINARY, 0},
    {"Q===", ZR_ERR_VALUE_BINARY, 0},
    {nullptr, ZR_ERR_VALUE_BINARY, 0},
};

INSTANTIATE_TEST_SUITE_P(Each, BinaryText, testing::ValuesIn(g_binaries));

TEST_P(BinaryText, LeavesItsDecodedLength)
{
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_CONS_CheckValStrAgainstDefRestrictBinary(ZRT_TYPE_BINARY, ZR_VALUE_STRING,
                                                           GetParam().text, &validation),
              GetParam().status);
    EXPECT_EQ(validation.binaryLength, GetParam().length);
}

TEST(BinaryCheck, LeavesTheFullLengthAsParentBounds)
{
    for (const char *text : {"QUJD", ""}) {
        ZrtValidateCtx validation = {};
        validation.parentBounds = 1;
        EXPECT_EQ(ZRT_CONS_CheckValStrAgainstDefRestrictBinary(ZRT_TYPE_BINARY, ZR_VALUE_STRING,
                                                               text, &validation),
                  ZR_OK);
        EXPECT_EQ(uint64_t{validation.bounds.start}, 0u);
        EXPECT_EQ(uint64_t{validation.bounds.end}, 4294967295u);
    }
}

TEST(BooleanCheck, TakesTheTwoWordsExactly)
{
    auto check = [](const char *text) {
        ZrtValidateCtx validation = {};
        return ZRT_CONS_CheckValStrAgainstDefRestrictBoolean(ZRT_TYPE_BOOLEAN, ZR_VALUE_STRING,
                                                             text, &validation);
    };
    EXPECT_EQ(check("true"), ZR_OK);
    EXPECT_EQ(check("false"), ZR_OK);
    EXPECT_EQ(check("True"), ZR_ERR_VALUE_BOOLEAN);
    EXPECT_EQ(check(" true"), ZR_ERR_VALUE_BOOLEAN);
    EXPECT_EQ(check(""), ZR_ERR_VALUE_BOOLEAN);
    EXPECT_EQ(check(nullptr), ZR_ERR_VALUE_BOOLEAN);
}

TEST(Decimal64Check, RefusesATypeWithoutFractionDigits)
{
    ZrtValidateCtx validation = {};
    auto check = [&](const char *text) {
        return ZRT_CONS_CheckValStrAgainstDefRestrictDecimal64(ZRT_TYPE_DECIMAL64, ZR_VALUE_STRING,
                                                               text, &validation);
    };
    EXPECT_EQ(check("1"), ZR_ERR_VALUE_RANGE);
    validation.fractionDigits = 1;
    EXPECT_EQ(check("1"), ZR_OK);
    EXPECT_EQ(check(nullptr), ZR_ERR_VALUE_RANGE);
}

TEST(Decimal64Check, LeavesTheBoundsOf64BitsForDerivedTypes)
{
    ZrtValidateCtx validation = {};
    validation.fractionDigits = 2;
    validation.parentBounds = 1;
    EXPECT_EQ(ZRT_CONS_CheckValStrAgainstDefRestrictDecimal64(ZRT_TYPE_DECIMAL64, ZR_VALUE_STRING,
                                                              "1.5", &validation),
              ZR_OK);
    EXPECT_EQ(static_cast<int64_t>(validation.bounds.start), INT64_MIN);
    EXPECT_EQ(static_cast<int64_t>(validation.bounds.end), INT64_MAX);
    EXPECT_EQ(static_cast<int64_t>(validation.value.start), 150);
}

TEST(EmptyCheck, TakesNoValueAndAnEmptyOne)
{
    auto check = [](const char *text) {
        ZrtValidateCtx validation = {};
        return ZRT_CONS_CheckValStrAgainstDefRestrictEmpty(ZRT_TYPE_EMPTY, ZR_VALUE_STRING, text,
                                                           &validation);
    };
    EXPECT_EQ(check(nullptr), ZR_OK);
    EXPECT_EQ(check(""), ZR_OK);
    EXPECT_EQ(check(" "), ZR_ERR_VALUE_EMPTY);
}

} // namespace
