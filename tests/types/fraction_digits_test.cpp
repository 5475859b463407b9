#include <gtest/gtest.h>

#include "types/constraints.h"

namespace {

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
