#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "foundation/text.h"

namespace {

struct SignedRow {
    const char *text;
    uint32_t status;
    int64_t value;
    const char *rest;
};

TEST(ReadSignedInteger, ReadsADecimalNumberAndTellsWhereItEnds)
{
    const SignedRow rows[] = {
        {"0", ZR_OK, 0, ""},
        {"42", ZR_OK, 42, ""},
        {"-42", ZR_OK, -42, ""},
        {"+42", ZR_OK, 42, ""},
        {"007", ZR_OK, 7, ""},
        {"-0", ZR_OK, 0, ""},
        {" \t\n5", ZR_OK, 5, ""},
        {" \r\v\f5", ZR_OK, 5, ""},
        {"5 ", ZR_OK, 5, " "},
        {"12abc", ZR_OK, 12, "abc"},
        {"0x10", ZR_OK, 0, "x10"},
        {"1..2", ZR_OK, 1, "..2"},
        {"9223372036854775807", ZR_OK, INT64_MAX, ""},
        {"-9223372036854775808", ZR_OK, INT64_MIN, ""},
        {"9223372036854775808", ZR_ERR_INVALID, 0, ""},
        {"-9223372036854775809", ZR_ERR_INVALID, 0, ""},
        {"99999999999999999999999999", ZR_ERR_INVALID, 0, ""},
        {"", ZR_ERR_INVALID, 0, ""},
        {" ", ZR_ERR_INVALID, 0, ""},
        {"-", ZR_ERR_INVALID, 0, ""},
        {"+", ZR_ERR_INVALID, 0, ""},
        {"+-5", ZR_ERR_INVALID, 0, ""},
        {"-+5", ZR_ERR_INVALID, 0, ""},
        {"--5", ZR_ERR_INVALID, 0, ""},
        {"- 5", ZR_ERR_INVALID, 0, ""},
        {"abc", ZR_ERR_INVALID, 0, ""},
        {".5", ZR_ERR_INVALID, 0, ""},
    };
    for (const SignedRow &row : rows) {
        int64_t value = -1;
        const char *end = nullptr;
        EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger(row.text, &end, 0, &value), row.status)
            << row.text;
        EXPECT_EQ(value, row.status == ZR_OK ? row.value : -1) << row.text;
        if (row.status == ZR_OK) {
            EXPECT_STREQ(end, row.rest) << row.text;
        } else {
            EXPECT_EQ(end, nullptr) << row.text;
        }
    }
}

struct UnsignedRow {
    const char *text;
    uint32_t status;
    uint64_t value;
    const char *rest;
};

TEST(ReadUnsignedInteger, ReadsADecimalNumberAndTellsWhereItEnds)
{
    const UnsignedRow rows[] = {
        {"0", ZR_OK, 0, ""},
        {"42", ZR_OK, 42, ""},
        {"+42", ZR_OK, 42, ""},
        {" \t\n\r5", ZR_OK, 5, ""},
        {"12abc", ZR_OK, 12, "abc"},
        {"0x10", ZR_OK, 0, "x10"},
        {"18446744073709551615", ZR_OK, UINT64_MAX, ""},
        {"18446744073709551616", ZR_ERR_INVALID, 0, ""},
        {"-1", ZR_ERR_INVALID, 0, ""},
        {" -1", ZR_ERR_INVALID, 0, ""},
        {"\r-1", ZR_ERR_INVALID, 0, ""},
        {"-0", ZR_ERR_INVALID, 0, ""},
        {"+-1", ZR_ERR_INVALID, 0, ""},
        {"", ZR_ERR_INVALID, 0, ""},
        {"x", ZR_ERR_INVALID, 0, ""},
    };
    for (const UnsignedRow &row : rows) {
        uint64_t value = 99;
        const char *end = nullptr;
        EXPECT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger(row.text, &end, 0, &value), row.status)
            << row.text;
        EXPECT_EQ(value, row.status == ZR_OK ? row.value : 99) << row.text;
        if (row.status == ZR_OK) {
            EXPECT_STREQ(end, row.rest) << row.text;
        }
    }
}

TEST(ReadInteger, TheEndIsOptional)
{
    int64_t signedValue = 0;
    uint64_t unsignedValue = 0;
    EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger("-7x", nullptr, 0, &signedValue), ZR_OK);
    EXPECT_EQ(signedValue, -7);
    EXPECT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger("7x", nullptr, 0, &unsignedValue), ZR_OK);
    EXPECT_EQ(unsignedValue, 7u);
}

TEST(ReadInteger, Is22ForNull)
{
    int64_t signedValue;
    uint64_t unsignedValue;
    EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger(nullptr, nullptr, 0, &signedValue),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger("1", nullptr, 0, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger(nullptr, nullptr, 0, &unsignedValue),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger("1", nullptr, 0, nullptr), ZR_ERR_INVALID);
}

TEST(ReadInteger, DoesNotReadTheReservedArgument)
{
    int64_t value = 0;
    EXPECT_EQ(ZR_UTL_ReadInputStrAsSignedInteger("0x10", nullptr, 16, &value), ZR_OK);
    EXPECT_EQ(value, 0);
}

TEST(ReadInteger, LeavesErrnoAlone)
{
    errno = 33;
    int64_t value = 0;
    ZR_UTL_ReadInputStrAsSignedInteger("99999999999999999999", nullptr, 0, &value);
    EXPECT_EQ(errno, 33);
    errno = 0;
}

// The C library's conversions are the witness.
TEST(ReadInteger, AgreesWithTheCLibraryOnRandomTexts)
{
    std::mt19937 random(7950);
    const char alphabet[] = "0123456789999-+ \t\n\r\va.";
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto length = random() % 23; length != 0; --length)
            text += alphabet[random() % (sizeof(alphabet) - 1)];
        const char *str = text.c_str();

        char *expectedEnd = nullptr;
        errno = 0;
        long long expected = std::strtoll(str, &expectedEnd, 10);
        bool fails = errno != 0 || expectedEnd == str;
        int64_t value = 0;
        const char *end = nullptr;
        ASSERT_EQ(ZR_UTL_ReadInputStrAsSignedInteger(str, &end, 0, &value),
                  fails ? ZR_ERR_INVALID : ZR_OK)
            << text;
        if (!fails) {
            ASSERT_EQ(value, expected) << text;
            ASSERT_EQ(end, expectedEnd) << text;
        }

        errno = 0;
        unsigned long long expectedUnsigned = std::strtoull(str, &expectedEnd, 10);
        fails = errno != 0 || expectedEnd == str || str[std::strspn(str, " \t\n\r\v")] == '-';
        uint64_t unsignedValue = 0;
        ASSERT_EQ(ZR_UTL_ReadInputStrAsUnsignedInteger(str, &end, 0, &unsignedValue),
                  fails ? ZR_ERR_INVALID : ZR_OK)
            << text;
        if (!fails) {
            ASSERT_EQ(unsignedValue, expectedUnsigned) << text;
            ASSERT_EQ(end, expectedEnd) << text;
        }
    }
    errno = 0;
}

} // namespace
