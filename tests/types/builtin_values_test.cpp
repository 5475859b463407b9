// SPDX-License-Identifier: Apache-2.0
// For every built-in type a table of values with the exact status, through both kinds of input.
#include <algorithm>
#include <vector>

#include "types/leaf.h"

namespace {

using zrtest::Leaf;

constexpr uint32_t kSameAsString = UINT32_MAX;

struct Case {
    std::string value;
    uint32_t status;
    // The status of an element that holds the value, where it differs: an empty value is no text at
    // all there.
    uint32_t elementStatus = kSameAsString;
};

void CheckAll(const Leaf &leaf, const std::vector<Case> &cases)
{
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_GE(cases.size(), 20u);
    for (const Case &one : cases) {
        EXPECT_EQ(leaf.Check(one.value.c_str()), one.status) << "string \"" << one.value << '"';
        uint32_t expected = one.elementStatus == kSameAsString ? one.status : one.elementStatus;
        EXPECT_EQ(leaf.CheckElement(one.value.c_str()), expected)
            << "element \"" << one.value << '"';
    }
}

// The values that every integer type treats alike, and its own limits.
std::vector<Case> IntegerCases(const std::string &min, const std::string &belowMin,
                               const std::string &max, const std::string &aboveMax)
{
    bool isSigned = min != "0";
    uint32_t negative = isSigned ? ZR_OK : ZR_ERR_VALUE_RANGE;
    return {
        {min, ZR_OK},
        {max, ZR_OK},
        {belowMin, ZR_ERR_VALUE_RANGE},
        {aboveMax, ZR_ERR_VALUE_RANGE},
        {"0", ZR_OK},
        {"7", ZR_OK},
        {"+7", ZR_OK},
        {"-7", negative},
        {"-0", negative},
        {"", ZR_ERR_VALUE_RANGE},
        {" ", ZR_ERR_VALUE_RANGE},
        {" 7", ZR_OK},
        {"7 ", ZR_OK},
        {"\t7\n", ZR_OK},
        {"7 7", ZR_ERR_VALUE_RANGE},
        {"007", ZR_OK},
        {std::string(200, '0') + "7", ZR_OK},
        {"0x7", ZR_ERR_VALUE_RANGE},
        {"7a", ZR_ERR_VALUE_RANGE},
        {"a", ZR_ERR_VALUE_RANGE},
        {"7.0", ZR_ERR_VALUE_RANGE},
        {"1e1", ZR_ERR_VALUE_RANGE},
        {"--7", ZR_ERR_VALUE_RANGE},
        {"+", ZR_ERR_VALUE_RANGE},
        {"-", ZR_ERR_VALUE_RANGE},
        {std::string(200, '9'), ZR_ERR_VALUE_RANGE},
        {"\xD9\xA7", ZR_ERR_VALUE_RANGE}, // an Arabic seven
    };
}

struct IntegerType {
    const char *name;
    const char *min;
    const char *belowMin;
    const char *max;
    const char *aboveMax;
};

class IntegerValues : public testing::TestWithParam<IntegerType> {};

// clang-format off
const IntegerType g_integerTypes[] = {
//   name      min                     below min               max                     above max
    {"int8",   "-128",                 "-129",                 "127",                  "128"},
    {"int16",  "-32768",               "-32769",               "32767",                "32768"},
    {"int32",  "-2147483648",          "-2147483649",          "2147483647",           "2147483648"},
    {"int64",  "-9223372036854775808", "-9223372036854775809", "9223372036854775807",  "9223372036854775808"},
    {"uint8",  "0",                    "-1",                   "255",                  "256"},
    {"uint16", "0",                    "-1",                   "65535",                "65536"},
    {"uint32", "0",                    "-1",                   "4294967295",           "4294967296"},
    {"uint64", "0",                    "-1",                   "18446744073709551615", "18446744073709551616"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(EveryWidth, IntegerValues, testing::ValuesIn(g_integerTypes),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_P(IntegerValues, AreTakenWithinTheTypesLimits)
{
    const IntegerType &type = GetParam();
    Leaf leaf(std::string("<type name=\"") + type.name + "\"/>");
    CheckAll(leaf, IntegerCases(type.min, type.belowMin, type.max, type.aboveMax));
}

TEST(BinaryValues, AreBase64)
{
    Leaf leaf("<type name=\"binary\"/>");
    CheckAll(leaf, {
                       {"", ZR_OK, ZR_ERR_VALUE_BINARY},
                       {"QUJD", ZR_OK},
                       {"QUI=", ZR_OK},
                       {"QQ==", ZR_OK},
                       {"QUJDREVG", ZR_OK},
                       {"+/+/", ZR_OK},
                       {" QUJD", ZR_OK},
                       {"QUJD ", ZR_OK},
                       {"\t\nQUJD\n\t ", ZR_OK},
                       {"   ", ZR_OK},
                       {"Q", ZR_ERR_VALUE_BINARY},
                       {"QU", ZR_ERR_VALUE_BINARY},
                       {"QUJ", ZR_ERR_VALUE_BINARY},
                       {"QUJDR", ZR_ERR_VALUE_BINARY},
                       {"QU=I", ZR_ERR_VALUE_BINARY},
                       {"=QUI", ZR_ERR_VALUE_BINARY},
                       {"Q===", ZR_ERR_VALUE_BINARY},
                       {"====", ZR_ERR_VALUE_BINARY},
                       {"QUI=QUI=", ZR_ERR_VALUE_BINARY},
                       {"QU D", ZR_OK}, // a blank within counts as a character
                       {"QUJ\xFF", ZR_OK},
                       {"!!!!", ZR_OK},
                       {"!!==", ZR_OK},
                       {"=!=!", ZR_OK},
                       {"QUJD QUJD", ZR_ERR_VALUE_BINARY},
                       {std::string(100000, 'A'), ZR_OK},
                       {std::string(100001, 'A'), ZR_ERR_VALUE_BINARY},
                   });
}

TEST(BitsValues, AreListsOfDifferentNames)
{
    Leaf leaf("<type name=\"bits\"><bit name=\"a\"/><bit name=\"b\"/><bit name=\"long-name.1\"/>"
              "</type>");
    CheckAll(leaf, {
                       {"", ZR_OK, ZR_ERR_VALUE_BITS},
                       {"a", ZR_OK},
                       {"b", ZR_OK},
                       {"a b", ZR_OK},
                       {"b a", ZR_OK},
                       {"long-name.1 b a", ZR_OK},
                       {"a\tb", ZR_OK},
                       {"a\nb", ZR_OK},
                       {"a   b", ZR_OK},
                       {"a ", ZR_OK},
                       {"a \t\n", ZR_OK},
                       {" a", ZR_ERR_VALUE_BITS},
                       {" ", ZR_ERR_VALUE_BITS},
                       {"\na", ZR_ERR_VALUE_BITS},
                       {"a a", ZR_ERR_VALUE_BITS},
                       {"a b a", ZR_ERR_VALUE_BITS},
                       {"a c", ZR_ERR_VALUE_BITS},
                       {"c", ZR_ERR_VALUE_BITS},
                       {"A", ZR_ERR_VALUE_BITS},
                       {"ab", ZR_ERR_VALUE_BITS},
                       {"long-name", ZR_ERR_VALUE_BITS},
                       {"long-name.12", ZR_ERR_VALUE_BITS},
                       {"a,b", ZR_ERR_VALUE_BITS},
                       {"a\rb", ZR_ERR_VALUE_BITS},
                       {"0", ZR_ERR_VALUE_BITS},
                       {std::string(65, 'a'), ZR_ERR_VALUE_BITS},
                       {"a b long-name.1 a", ZR_ERR_VALUE_BITS},
                   });
}

TEST(BooleanValues, AreTrueAndFalse)
{
    Leaf leaf("<type name=\"boolean\"/>");
    std::vector<Case> cases = {{"true", ZR_OK}, {"false", ZR_OK}};
    for (const char *other :
         {"",       "True",  "TRUE",   "tRUE",       "False",    "FALSE",     " true", "true ",
          "\ttrue", "t",     "f",      "0",          "1",        "yes",       "no",    "on",
          "tru",    "truee", "falsee", "true false", "\"true\"", "truefalse", "-true"})
        cases.push_back({other, ZR_ERR_VALUE_BOOLEAN});
    CheckAll(leaf, cases);
}

TEST(Decimal64Values, HaveAtMostTheTypesFractionDigits)
{
    Leaf leaf("<type name=\"decimal64\"><fraction-digits value=\"2\"/></type>");
    std::vector<Case> cases;
    for (const char *good :
         {"1.5", "-0.05", "007.10", "0", "-0", "+0", "1.", ".5", "-.5", "+1.25", " 1.5", "1.5 ",
          "\t-1.5\n", "92233720368547758.07", "-92233720368547758.08", "12345678901234567",
          "0000000000000000000000000000000000000001.25"})
        cases.push_back({good, ZR_OK});
    for (const char *bad : {"",
                            " ",
                            "-",
                            "+",
                            ".",
                            "-.",
                            "1.234",
                            "1.500",
                            "123456789012345678.5",
                            "123456789012345678",
                            "92233720368547758.08",
                            "-92233720368547758.09",
                            "1,5",
                            "1.5.1",
                            "1..5",
                            "--1",
                            "+-1",
                            "1e2",
                            "a",
                            "1a",
                            "1.5a",
                            "1 5",
                            "0x1"})
        cases.push_back({bad, ZR_ERR_VALUE_RANGE});
    cases.push_back({std::string(100, '9'), ZR_ERR_VALUE_RANGE});
    CheckAll(leaf, cases);
}

TEST(EmptyValues, AreAbsentOrEmpty)
{
    Leaf leaf("<type name=\"empty\"/>");
    std::vector<Case> cases = {{"", ZR_OK}};
    for (const char *other :
         {" ",  "\t",   "\n",    "  ", "a", "0",    "1",  "true",   "false", "x ",
          " x", "null", "empty", "-",  "+", "\"\"", "''", "[null]", ".",     "\xC2\xA0"})
        cases.push_back({other, ZR_ERR_VALUE_EMPTY});
    cases.push_back({std::string(10000, ' '), ZR_ERR_VALUE_EMPTY});
    CheckAll(leaf, cases);
    EXPECT_EQ(leaf.Check(nullptr), ZR_OK);
}

TEST(EnumerationValues, AreExactlyOneOfTheNames)
{
    Leaf leaf("<type name=\"enumeration\"><enum name=\"red\"/><enum name=\"dark red\"/>"
              "<enum name=\" edge \"/><enum name=\"10\"/><enum name=\"gr\xC3\xBCn\"/></type>");
    std::vector<Case> cases;
    for (const char *good : {"red", "dark red", " edge ", "10", "gr\xC3\xBCn"})
        cases.push_back({good, ZR_OK});
    for (const char *bad :
         {"",     " ",         "Red",        "RED",          " red",  "red ", "re",
          "redd", "dark  red", "dark",       "edge",         " edge", "010",  "1",
          "0",    "grun",      "gr\xC3\xBC", "red dark red", "red\n", "\tred"})
        cases.push_back({bad, ZR_ERR_VALUE_ENUM});
    cases.push_back({std::string(10000, 'r'), ZR_ERR_VALUE_ENUM});
    CheckAll(leaf, cases);
}

TEST(InstanceIdentifierValues, AreNotLookedAt)
{
    Leaf leaf("<type name=\"instance-identifier\"/>");
    std::vector<Case> cases;
    for (const char *any : {"",   "/m:v", "/m:a/m:b", "/m:a[m:k='1']", "/m:a[1]", "m:v", "v", ".",
                            "..", "/",    " ",        "/ m",           "[",       "]",   "'", "1",
                            "-1", "true", "//",       "/m:",           ":",       "\xFF"})
        cases.push_back({any, ZR_OK});
    cases.push_back({std::string(10000, '/'), ZR_OK});
    CheckAll(leaf, cases);
}

TEST(StringValues, AreAnyText)
{
    Leaf leaf("<type name=\"string\"/>");
    std::vector<Case> cases;
    for (const char *any :
         {"",   " ",  "\t", "\n", "a", "A",   "0",        "-1",           "true", "a b",  " a",
          "a ", "\"", "'",  "<",  "&", "]]>", "\xC3\xBC", "\xE2\x82\xAC", "\xFF", "a\nb", "\x01"})
        cases.push_back({any, ZR_OK});
    cases.push_back({std::string(1000000, 'x'), ZR_OK});
    CheckAll(leaf, cases);
    EXPECT_EQ(leaf.Check(nullptr), ZR_OK);
}

TEST(LeafrefValues, AreThoseOfTheTarget)
{
    Leaf leaf("<type name=\"leafref\"><path value=\"/m:target\"/></type>",
              "<leaf name=\"target\"><type name=\"int8\"/></leaf>");
    CheckAll(leaf, {
                       {"0", ZR_OK},
                       {"1", ZR_OK},
                       {"-1", ZR_OK},
                       {"127", ZR_OK},
                       {"-128", ZR_OK},
                       {"+5", ZR_OK},
                       {" 5", ZR_OK},
                       {"5 ", ZR_OK},
                       {"005", ZR_OK},
                       {"\n5\t", ZR_OK},
                       {"", ZR_ERR_VALUE_RANGE, ZR_ERR_VALUE_LEAFREF},
                       {" ", ZR_ERR_VALUE_RANGE},
                       {"128", ZR_ERR_VALUE_RANGE},
                       {"200", ZR_ERR_VALUE_RANGE},
                       {"-129", ZR_ERR_VALUE_RANGE},
                       {"a", ZR_ERR_VALUE_RANGE},
                       {"5a", ZR_ERR_VALUE_RANGE},
                       {"5.0", ZR_ERR_VALUE_RANGE},
                       {"0x5", ZR_ERR_VALUE_RANGE},
                       {"5 5", ZR_ERR_VALUE_RANGE},
                       {"/m:target", ZR_ERR_VALUE_RANGE},
                       {std::string(100, '1'), ZR_ERR_VALUE_RANGE},
                   });
    EXPECT_EQ(leaf.Check(nullptr), ZR_ERR_VALUE_LEAFREF);
}

TEST(IdentityrefValues, InTheStringFormNameTheModule)
{
    Leaf leaf("<type name=\"identityref\"><base name=\"animal\"/></type>",
              "<identity name=\"animal\"/><identity name=\"bird\"><base name=\"animal\"/>"
              "</identity><identity name=\"stone\"/>");
    struct Row {
        std::string value;
        uint32_t string;
        uint32_t element; // in the element's namespace, urn:m, without a prefix for it
    };
    constexpr uint32_t kNo = ZR_ERR_VALUE_IDENTITY;
    const Row rows[] = {
        {"m:animal", ZR_OK, kNo},
        {"m:bird", ZR_OK, kNo},
        {"animal", kNo, ZR_OK},
        {"bird", kNo, ZR_OK},
        {"m:stone", kNo, kNo},
        {"stone", kNo, kNo},
        {"m:unknown", kNo, kNo},
        {"unknown", kNo, kNo},
        {"n:bird", kNo, kNo},
        {"", kNo, kNo},
        {":", kNo, kNo},
        {"m:", kNo, kNo},
        {":bird", kNo, kNo},
        {"M:bird", kNo, kNo},
        {"m:Bird", kNo, kNo},
        {" m:bird", kNo, kNo},
        {"m:bird ", kNo, kNo},
        {"m: bird", kNo, kNo},
        {"m:m:bird", kNo, kNo},
        {"m/bird", kNo, kNo},
        {"urn:m:bird", kNo, kNo},
        {" bird", kNo, kNo},
        {std::string(64, 'x') + ":bird", kNo, kNo},
        {std::string(65, 'x') + ":bird", kNo, kNo},
        {std::string(1024, 'x') + ":bird", kNo, kNo},
        {std::string(1025, 'x') + ":bird", kNo, kNo},
        {"m:" + std::string(10000, 'x'), kNo, kNo},
    };
    ASSERT_NE(leaf.node(), nullptr);
    for (const Row &row : rows) {
        EXPECT_EQ(leaf.Check(row.value.c_str()), row.string) << row.value;
        EXPECT_EQ(leaf.CheckElement(row.value.c_str()), row.element) << row.value;
    }
    EXPECT_EQ(leaf.Check(nullptr), kNo);
}

TEST(UnionValues, AreThoseOfAnyMember)
{
    Leaf leaf("<type name=\"union\"><type name=\"int8\"/><type name=\"boolean\"/>"
              "<type name=\"enumeration\"><enum name=\"any\"/></type></type>");
    std::vector<Case> cases;
    for (const char *good : {"0", "127", "-128", " 5 ", "true", "false", "any", "+5", "005"})
        cases.push_back({good, ZR_OK});
    for (const char *bad : {"", " ", "128", "-129", "True", " true", "Any", "any ", "none", "5a",
                            "1.5", "0x1", "truefalse", "5 true", "any any"})
        cases.push_back({bad, ZR_ERR_VALUE_UNION});
    cases.push_back({std::string(10000, '1'), ZR_ERR_VALUE_UNION});
    CheckAll(leaf, cases);
}

TEST(Values, OfAnUnknownInputKindAreNoValue)
{
    Leaf number("<type name=\"int8\"/>");
    EXPECT_EQ(ZR_NODE_ValidateValue(number.node(), 0, "5"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(ZR_NODE_ValidateValue(number.node(), 3, "5"), ZR_ERR_VALUE_RANGE);
    Leaf nothing("<type name=\"empty\"/>");
    EXPECT_EQ(ZR_NODE_ValidateValue(nothing.node(), 3, "text"), ZR_OK);
}

} // namespace
