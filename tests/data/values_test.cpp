// A value of every type, at and over its limits, as a leaf of a request. An empty element has no
// value, which is not the same as an empty text.
#include <gtest/gtest.h>

#include "data/schema.h"
#include "support/run.h"

namespace {

using namespace zrtest;

struct Row {
    std::string type;
    std::vector<std::string> good;
    std::vector<std::string> bad;
};

std::string Type(const std::string &name, const std::string &inside = "")
{
    return "<type name=\"" + name + "\">" + inside + "</type>";
}

const Row kRows[] = {
    {Type("binary"), {"TQ==", "TWFu"}, {"", "T", "TQ=", "=TQ="}},
    {Type("bits", "<bit name=\"one\"/><bit name=\"two\"/>"),
     {"one", "two one"},
     {"", "three", "one one", "onetwo"}},
    {Type("boolean"), {"true", "false"}, {"", "TRUE", "1", " true"}},
    {Type("decimal64", "<fraction-digits value=\"2\"/>"),
     {"92233720368547758.07", "-92233720368547758.08", "1", "1."},
     {"92233720368547758.08", "1.234", "", "1e2"}},
    {Type("empty"), {""}, {" ", "x"}},
    {Type("enumeration", "<enum name=\"one\"/><enum name=\"two words\"/>"),
     {"one", "two words"},
     {"", "One", "two"}},
    {Type("identityref", "<base name=\"b\"/>"), {"b", "red", "m:red"}, {"", "blue", "q:red"}},
    {Type("int8"), {"-128", "127", "+5", "007"}, {"-129", "128", "", "1.0", "x"}},
    {Type("int16"), {"-32768", "32767"}, {"-32769", "32768"}},
    {Type("int32"), {"-2147483648", "2147483647"}, {"-2147483649", "2147483648"}},
    {Type("int64"),
     {"-9223372036854775808", "9223372036854775807"},
     {"-9223372036854775809", "9223372036854775808"}},
    {Type("leafref", "<path value=\"../m:target\"/>"), {"1", "255"}, {"256", ""}},
    {Type("string", "<length value=\"2..3\"/><pattern value=\"[a-z]*\"/>"),
     {"ab", "abc"},
     {"a", "abcd", "AB", ""}},
    {Type("uint8"), {"0", "255"}, {"-1", "256"}},
    {Type("uint16"), {"0", "65535"}, {"65536"}},
    {Type("uint32"), {"0", "4294967295"}, {"4294967296"}},
    {Type("uint64"), {"0", "18446744073709551615"}, {"18446744073709551616"}},
    {Type("union", "<type name=\"uint8\"/><type name=\"boolean\"/>"),
     {"0", "255", "true"},
     {"256", "yes", ""}},
};

TEST(Values, AreTakenAtTheLimitsOfTheirTypesAndRefusedBeyond)
{
    for (const Row &row : kRows) {
        Schema schema("<identity name=\"b\"/><identity name=\"red\"><base name=\"b\"/></identity>" +
                      Rpc("op", Leaf("target", "uint8") + "<leaf name=\"v\">" + row.type +
                                    "</leaf><leaf-list name=\"w\">" + row.type + "</leaf-list>"));
        ASSERT_EQ(schema.status, ZR_OK) << row.type;
        for (const char *name : {"v", "w"}) {
            auto request = [&](const std::string &value) {
                return "<op xmlns=\"urn:m\" xmlns:m=\"urn:m\"><" + std::string(name) + ">" + value +
                       "</" + name + "></op>";
            };
            for (const std::string &value : row.good)
                EXPECT_EQ(RpcRecord(schema, request(value)), Valid()) << row.type << value;
            for (const std::string &value : row.bad) {
                Record record = RpcRecord(schema, request(value));
                record.path = record.path.substr(0, record.path.find('['));
                EXPECT_EQ(record,
                          Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", std::string("/m:op/") + name,
                                std::string(name) + " has invalid value " + value + ".", name))
                    << row.type << value;
            }
        }
    }
}

// The instance-identifier has no rules of its own.
TEST(Values, OfAnInstanceIdentifierAreNotLookedAt)
{
    Schema schema(Rpc("op", "<leaf name=\"v\"><type name=\"instance-identifier\"/></leaf>"));
    ASSERT_EQ(schema.status, ZR_OK);
    for (const char *value : {"/m:op/m:v", "x", ""})
        EXPECT_EQ(RpcRecord(schema, Data("op", std::string("<v>") + value + "</v>")), Valid());
}

} // namespace
