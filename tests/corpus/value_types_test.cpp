// SPDX-License-Identifier: Apache-2.0
// Every typedef of ietf-inet-types and ietf-yang-types (RFC 9911) with good and bad values.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "model/module_records.h"
#include "support/context.h"

namespace {

using Values = std::vector<std::string>;

struct Row {
    const char *typeDef;
    uint32_t refusal; // the status of the bad values
    Values good;
    Values bad;
};

constexpr uint32_t kEnum = ZR_ERR_VALUE_ENUM;
constexpr uint32_t kLength = ZR_ERR_VALUE_LENGTH;
constexpr uint32_t kPattern = ZR_ERR_VALUE_PATTERN;
constexpr uint32_t kRange = ZR_ERR_VALUE_RANGE;
constexpr uint32_t kUnion = ZR_ERR_VALUE_UNION;

const Values g_int32 = {"0", "1", "-1", "2147483647", "-2147483648"};
const Values g_noInt32 = {"2147483648", "-2147483649", "", "1.5", "one", "1h"};
const Values g_int64 = {"0", "1", "-1", "9223372036854775807", "-9223372036854775808"};
const Values g_noInt64 = {"9223372036854775808", "-9223372036854775809", "", "1.5", "one"};
const Values g_uint32 = {"0", "1", "42", "65536", "4294967295"};
const Values g_noUint32 = {"4294967296", "-1", "", "1.5", "ten", "0x1"};
const Values g_uint64 = {"0", "1", "4294967296", "9223372036854775808", "18446744073709551615"};
const Values g_noUint64 = {"18446744073709551616", "-1", "", "1.5", "ten"};
const Values g_ipv4 = {"0.0.0.0", "255.255.255.255", "192.0.2.1", "10.1.2.3", "198.51.100.249"};
const Values g_noIpv4 = {"",           "192.0.2", "192.0.2.1.5", "256.0.0.1",
                         "192.0.2.01", "a.b.c.d", "192.0.2.1/24"};
const Values g_ipv6 = {
    "::", "::1", "2001:db8::1", "fe80:0:0:0:0:0:0:1", "::ffff:192.0.2.1", "2001:DB8:1:2:3:4:5:6"};
const Values g_noIpv6 = {
    "", ":", "2001:db8", "2001:db8:1:2:3:4:5:6:7", "2001:db8::g", "12345::", "2001:db8::1/64"};
const Values g_hex = {"", "00", "ab:cd", "AB:cd:01", "01:23:45:67:89:ab:cd:ef"};
const Values g_noHex = {"0", "abc", "ab:", ":ab", "ab-cd", "gg"};
const Values g_zones = {"Z", "+00:00", "-13:59", "+14:00", ""};
const Values g_noZones = {"z", "+15:00", "+14:01", "+1:00", " Z", "+00:60"};

Values Join(const Values &a, const Values &b)
{
    Values joined = a;
    joined.insert(joined.end(), b.begin(), b.end());
    return joined;
}

Values WithTail(const std::string &head, const Values &tails)
{
    Values values;
    for (const std::string &tail : tails)
        values.push_back(head + tail);
    return values;
}

const std::vector<Row> g_inetTypes = {
    {"ip-version", kEnum, {"unknown", "ipv4", "ipv6"}, {"", "IPv4", "ipv5", "4", "ipv4 "}},
    {"dscp", kRange, {"0", "1", "10", "46", "63"}, {"64", "-1", "256", "", "AF11"}},
    {"ipv6-flow-label",
     kRange,
     {"0", "1", "1048575", "65536", "99999"},
     {"1048576", "-1", "4294967296", "", "label"}},
    {"port-number", kRange, {"0", "22", "830", "8080", "65535"}, {"65536", "-1", "", "ssh", "80a"}},
    {"protocol-number", kRange, {"0", "1", "6", "17", "255"}, {"256", "-1", "", "tcp", "6.0"}},
    {"upper-layer-protocol-number",
     kRange,
     {"0", "1", "6", "17", "255"},
     {"256", "-1", "", "tcp", "6.0"}},
    {"as-number", kRange, g_uint32, g_noUint32},
    {"ip-address", kUnion, Join(g_ipv4, g_ipv6), {"", "192.0.2", "256.0.0.1", "2001:db8", "host"}},
    {"ipv4-address", kPattern, Join(g_ipv4, {"192.0.2.1%eth0", "169.254.1.1%1"}), g_noIpv4},
    {"ipv6-address", kPattern, Join(g_ipv6, {"fe80::1%eth0", "fe80::1%2"}), g_noIpv6},
    {"ip-address-no-zone",
     kUnion,
     Join(g_ipv4, g_ipv6),
     {"", "192.0.2.1%eth0", "fe80::1%eth0", "256.0.0.1", "host"}},
    {"ipv4-address-no-zone", kPattern, g_ipv4, Join(g_noIpv4, {"192.0.2.1%eth0"})},
    {"ipv6-address-no-zone", kPattern, g_ipv6, Join(g_noIpv6, {"fe80::1%eth0"})},
    {"ip-address-link-local",
     kUnion,
     {"169.254.0.1", "169.254.255.254", "fe80::1", "fe80::1%eth0", "FEBF::1"},
     {"", "192.0.2.1", "170.254.0.1", "2001:db8::1", "fec0::1"}},
    {"ipv4-address-link-local",
     kPattern,
     {"169.254.0.0", "169.254.0.1", "169.254.1.2", "169.254.255.255", "169.254.9.9%eth0"},
     {"", "169.255.0.1", "192.0.2.1", "168.254.0.1", "169.254.256.1"}},
    {"ipv6-address-link-local",
     kPattern,
     {"fe80::1", "fe80::", "FE80::ab", "febf::1", "fe9a:0:0:0:0:0:0:1", "fe80::1%eth0"},
     {"", "fec0::1", "2001:db8::1", "::1", "fe8::1"}},
    {"ip-prefix",
     kUnion,
     {"0.0.0.0/0", "192.0.2.0/24", "10.0.0.0/8", "::/0", "2001:db8::/32"},
     {"", "192.0.2.0", "192.0.2.0/33", "2001:db8::/129", "/24"}},
    {"ipv4-prefix",
     kPattern,
     {"0.0.0.0/0", "192.0.2.0/24", "10.0.0.0/8", "192.0.2.1/32", "172.16.0.0/9"},
     {"", "192.0.2.0", "192.0.2.0/", "192.0.2.0/33", "192.0.2/24", "192.0.2.0/024"}},
    {"ipv6-prefix",
     kPattern,
     {"::/0", "2001:db8::/32", "2001:db8:1:2::/64", "::1/128", "fe80::/10"},
     {"", "2001:db8::", "2001:db8::/", "2001:db8::/129", "2001:db8/32", "fe80::%eth0/64"}},
    {"ip-address-and-prefix",
     kUnion,
     {"192.0.2.1/24", "10.1.2.3/8", "0.0.0.0/0", "2001:db8::1/64", "::1/128"},
     {"", "192.0.2.1", "192.0.2.1/33", "2001:db8::1/129", "host/24"}},
    {"ipv4-address-and-prefix",
     kPattern,
     {"192.0.2.1/24", "10.1.2.3/8", "0.0.0.0/0", "192.0.2.1/32", "192.0.2.1/9"},
     {"", "192.0.2.1", "192.0.2.1/33", "192.0.2.1/", "192.0.2.256/24"}},
    {"ipv6-address-and-prefix",
     kPattern,
     {"2001:db8::1/64", "::/0", "::1/128", "fe80::1/10", "2001:db8:1:2:3:4:5:6/64"},
     {"", "2001:db8::1", "2001:db8::1/129", "2001:db8::1/", "2001:db8/64"}},
    {"domain-name",
     kPattern,
     {"example.com", ".", "example.com.", "a", "_dmarc.example.com", "x--1.example",
      std::string(63, 'a') + ".example"},
     {"-example.com", "example-.com", "exa mple.com", "example..com", std::string(64, 'a'),
      "b\xC3\xBC"
      "cher.example"}},
    {"host-name",
     kPattern,
     {"example.com", "aa", "www.example.com", "h-1.example", "10.example"},
     {"_dmarc.example.com", "-example.com", "exa mple", "example..com", "a_b"}},
    {"host",
     kUnion,
     {"192.0.2.1", "2001:db8::1", "example.com", "www.example.com.", "fe80::1%eth0"},
     {"", "-host", "a_b", "exa mple.com", "2001:db8::/32"}},
    {"uri",
     kPattern,
     {"http://example.com/", "urn:ietf:params:xml:ns:yang:yin:1", "mailto:a@example.com",
      "a:", "tel:+1-201-555-0123"},
     {"", "example.com", "HTTP://example.com", "1a:b", ":a", "/relative"}},
    {"email-address",
     kPattern,
     {"a@b", "user@example.com", "first.last@example.com", "a+b@example.com", "\"a b\"@example"},
     {"", "@", "user@", "@example.com", "example.com"}},
};

const std::vector<Row> g_yangTypes = {
    {"counter32", kRange, g_uint32, g_noUint32},
    {"zero-based-counter32", kRange, g_uint32, g_noUint32},
    {"counter64", kRange, g_uint64, g_noUint64},
    {"zero-based-counter64", kRange, g_uint64, g_noUint64},
    {"gauge32", kRange, g_uint32, g_noUint32},
    {"gauge64", kRange, g_uint64, g_noUint64},
    {"object-identifier",
     kPattern,
     {"1.3.6.1", "0.0", "1.39", "2.100.3", "2.999", "1.3.6.1.2.1.1.1.0"},
     {"", "1", "3.1", "1.40", "1.3.06", "1.3.", ".1.3"}},
    {"object-identifier-128",
     kPattern,
     {"1.3.6.1", "0.0", "1.39", "2.100.3", "1.3.6.1.2.1.1.1.0"},
     {"", "1", "3.1", "1.40", "1.3.06",
      "1.3.6.1" +
          [] {
              std::string more;
              for (int i = 0; i < 125; ++i)
                  more += ".1";
              return more;
          }()}},
    {"date-and-time", kPattern,
     Join({"1985-04-12T23:20:50.52Z", "1990-12-31T23:59:60Z"},
          WithTail("2024-02-29T00:00:00", g_zones)),
     Join({"", "2024-02-29", "2024-13-01T00:00:00Z", "2024-01-32T00:00:00Z", "2024-01-01T24:00:00Z",
           "2024-01-01t00:00:00Z", "2024-01-01T00:00:00.Z"},
          WithTail("2024-02-29T00:00:00", g_noZones))},
    {"date", kPattern, WithTail("2024-02-29", g_zones),
     Join({"", "2024-2-29", "2024-00-01", "2024-01-00", "24-01-01", "2024-01-01T00:00:00Z"},
          WithTail("2024-02-29", g_noZones))},
    {"date-no-zone",
     kPattern,
     {"2024-02-29", "0001-01-01", "9999-12-31", "1999-10-10", "2024-02-31"},
     {"", "2024-02-29Z", "2024-02-29+01:00", "2024-13-01", "2024-01-32", "2024-1-1"}},
    {"time", kPattern, Join({"23:59:60", "12:34:56.789"}, WithTail("00:00:00", g_zones)),
     Join({"", "24:00:00", "00:60:00", "00:00:61", "0:00:00", "00:00:00."},
          WithTail("00:00:00", g_noZones))},
    {"time-no-zone",
     kPattern,
     {"00:00:00", "23:59:59", "23:59:60", "12:34:56.7", "12:34:56.789012"},
     {"", "00:00:00Z", "00:00:00+01:00", "24:00:00", "00:00", "00:00:00."}},
    {"hours32", kRange, g_int32, g_noInt32},
    {"minutes32", kRange, g_int32, g_noInt32},
    {"seconds32", kRange, g_int32, g_noInt32},
    {"centiseconds32", kRange, g_int32, g_noInt32},
    {"milliseconds32", kRange, g_int32, g_noInt32},
    {"microseconds32", kRange, g_int32, g_noInt32},
    {"microseconds64", kRange, g_int64, g_noInt64},
    {"nanoseconds32", kRange, g_int32, g_noInt32},
    {"nanoseconds64", kRange, g_int64, g_noInt64},
    {"timeticks", kRange, g_uint32, g_noUint32},
    {"timestamp", kRange, g_uint32, g_noUint32},
    {"phys-address", kPattern, g_hex, g_noHex},
    {"mac-address",
     kPattern,
     {"00:00:00:00:00:00", "01:23:45:67:89:ab", "FF:FF:FF:FF:FF:FF", "aa:BB:cc:DD:ee:0F",
      "02:00:5e:10:00:00"},
     {"", "01:23:45:67:89", "01:23:45:67:89:ab:cd", "01-23-45-67-89-ab", "0123456789ab",
      "01:23:45:67:89:ag"}},
    {"xpath1.0", 0, {"", "/a/b", "..", "not(", "1 = 1"}, {}}, // any string
    {"hex-string", kPattern, g_hex, g_noHex},
    {"uuid",
     kPattern,
     {"f81d4fae-7dec-11d0-a765-00a0c91e6bf6", "F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6",
      "00000000-0000-0000-0000-000000000000", "ffffffff-ffff-ffff-ffff-ffffffffffff",
      "01234567-89ab-cdef-0123-456789abcdef"},
     {"", "f81d4fae7dec11d0a76500a0c91e6bf6", "f81d4fae-7dec-11d0-a765-00a0c91e6bf",
      "g81d4fae-7dec-11d0-a765-00a0c91e6bf6", "{f81d4fae-7dec-11d0-a765-00a0c91e6bf6}"}},
    {"dotted-quad", kPattern, g_ipv4, Join(g_noIpv4, {"192.0.2.1%eth0"})},
    {"language-tag", 0, {"", "en", "de-CH", "zh-Hant-TW", "x"}, {}}, // any string
    {"yang-identifier",
     kPattern,
     {"a", "_", "interface", "x-1.2", "xml", "A_b"},
     {"1a", "-a", ".a", "a b", "a:b", "\xC3\xBC"}},
};

// With patterns compiled for each value, and kept after the first.
class ValueTypes : public testing::TestWithParam<uint32_t> {
protected:
    void Load(const char *moduleName, const std::vector<Row> &rows)
    {
        std::string dir = zrtest::CorpusDir();
        if (dir.empty())
            GTEST_SKIP() << "the folder of real modules is not there";
        ASSERT_EQ(ZR_CTX_SetSearchDir(ctx_, dir.c_str()), ZR_OK);
        ASSERT_EQ(ZR_CTX_LoadModule(ctx_, moduleName), ZR_OK);
        ASSERT_EQ(ctx_.Messages(), Values{});
        std::string leaves;
        for (const Row &row : rows)
            leaves += std::string("<leaf name=\"") + row.typeDef +
                      "\"><type name=\"t:" + row.typeDef + "\"/></leaf>";
        ASSERT_EQ(ctx_.LoadBody("probe", std::string("<import module=\"") + moduleName +
                                             "\"><prefix value=\"t\"/></import>" + leaves),
                  ZR_OK);
        std::set<std::string> listed;
        for (const Row &row : rows)
            listed.insert(row.typeDef);
        const ZrMod *module = ctx_.Module(moduleName);
        for (uint32_t i = 0; i < module->typedefCount; ++i)
            EXPECT_EQ(listed.count(module->typedefs[i].name), 1u) << module->typedefs[i].name;
        EXPECT_EQ(listed.size(), module->typedefCount);
    }
    uint32_t Check(const Row &row, const std::string &value)
    {
        ZrNode *leaf = ctx_.Node((std::string("/probe:") + row.typeDef).c_str());
        EXPECT_NE(leaf, nullptr) << row.typeDef;
        return ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, value.c_str());
    }
    void CheckRows(const std::vector<Row> &rows)
    {
        for (const Row &row : rows) {
            for (const std::string &value : row.good)
                EXPECT_EQ(Check(row, value), ZR_OK) << row.typeDef << " \"" << value << '"';
            for (const std::string &value : row.bad)
                EXPECT_EQ(Check(row, value), row.refusal) << row.typeDef << " \"" << value << '"';
        }
    }
    zrtest::TestContext ctx_{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Options, ValueTypes, testing::Values(0u, uint32_t{ZR_CTX_KEEP_PATTERNS}),
                         [](const auto &flags) {
                             return flags.param == 0 ? "Default" : "KeepPatterns";
                         });

TEST_P(ValueTypes, OfInetTypesTakeTheirValues)
{
    Load("ietf-inet-types", g_inetTypes);
    if (!HasFatalFailure() && !IsSkipped())
        CheckRows(g_inetTypes);
}

TEST_P(ValueTypes, OfYangTypesTakeTheirValues)
{
    Load("ietf-yang-types", g_yangTypes);
    if (!HasFatalFailure() && !IsSkipped())
        CheckRows(g_yangTypes);
}

TEST_P(ValueTypes, MeasureTheLengthOfNames)
{
    Load("ietf-inet-types", g_inetTypes);
    if (HasFatalFailure() || IsSkipped())
        return;
    const Row domainName = {"domain-name", 0, {}, {}};
    std::string name;
    while (name.size() < 252)
        name += "a.";
    EXPECT_EQ(Check(domainName, name + "b"), ZR_OK); // 253 characters
    EXPECT_EQ(Check(domainName, name + "bc"), kLength);
    EXPECT_EQ(Check(domainName, ""), kLength);
    const Row hostName = {"host-name", 0, {}, {}};
    EXPECT_EQ(Check(hostName, name + "b"), ZR_OK);
    EXPECT_EQ(Check(hostName, name + "bc"), kLength); // of the typedef below it
    EXPECT_EQ(Check(hostName, "a"), kLength);
}

} // namespace
