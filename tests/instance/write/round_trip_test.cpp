// SPDX-License-Identifier: Apache-2.0
// What is written reads back to the same data: documents that are made by chance, in both
// encodings and all modes.
#include <random>

#include "support/schema.h"

namespace datatest {

namespace {

constexpr const char *kBody = R"(
identity base; identity x { base base; } identity y { base x; }
container top {
  leaf s { type string; } leaf i8 { type int8; default 5; } leaf i64 { type int64; default -7; }
  leaf d { type decimal64 { fraction-digits 3; } default 1.5; }
  leaf b { type boolean; default true; } leaf e { type empty; }
  leaf en { type enumeration { enum a; enum "b c"; } default a; }
  leaf bits { type bits { bit p; bit q; } default "p q"; }
  leaf id { type identityref { base base; } default x; }
  leaf bin { type binary; }
  leaf u { type union { type uint8; type boolean; type enumeration { enum none; }
                        type identityref { base base; } } default none; }
  leaf-list v { type int8; ordered-by user; default 1; default 2; }
  list l { key "k j"; leaf a { type int8; default 3; } leaf j { type string; }
           leaf k { type int16; } container n { leaf z { type string; default "zz"; } } }
  choice ch { default c1;
    case c1 { leaf c1a { type int8; default 1; } leaf c1b { type int8; } }
    case c2 { leaf c2a { type int8; default 1; } leaf c2b { type int8; default 2; }
              container c2c { leaf c2d { type int8; default 7; } } }
    leaf c3 { type int8; default 9; } }
  container p { presence "p"; leaf q { type int8; default 4; } }
  leaf ref { type instance-identifier { require-instance false; } }
  anydata any;
})";

class Generator {
public:
    explicit Generator(uint32_t seed) : random_(seed) {}

    std::string Document()
    {
        std::string out;
        Leaf(out, "s", {Text()});
        Leaf(out, "i8", {"5", "-128", "+05"});
        Leaf(out, "i64", {"-7", "9223372036854775807"});
        Leaf(out, "d", {"1.5", "1.50", "-0.001", "7"});
        Leaf(out, "b", {"true", "false"});
        Leaf(out, "e", {""});
        Leaf(out, "en", {"a", "b c"});
        Leaf(out, "bits", {"q p", "q", ""});
        Leaf(out, "id", {"x", "p:y"});
        Leaf(out, "bin", {"aGk=", "a G\nk=", ""});
        Leaf(out, "u", {"7", "none", "true", "p:y"});
        for (int i = 1; i <= 3; ++i)
            Leaf(out, "v", {std::to_string(i)});
        for (uint32_t i = Pick(4); i != 0; --i)
            Entry(out, i);
        Choice(out);
        if (Pick(2) != 0)
            out += Pick(2) != 0 ? "<p/>" : "<p><q>4</q></p>";
        Leaf(out, "ref", {"/p:top/p:l[p:k='1'][p:j=\"it's\"]/p:n", "/p:top/p:v[. = '3']"});
        if (Pick(2) != 0)
            out += "<any><f>" + Text() + "</f><g><h>1</h><h>2</h></g></any>";
        return "<w xmlns:p='urn:m'><top xmlns='urn:m'>" + out + "</top></w>";
    }

private:
    uint32_t Pick(uint32_t bound) { return static_cast<uint32_t>(random_() % bound); }
    std::string Text()
    {
        static const Texts kPieces = {
            "&lt;",   "&amp;", "&gt;", "\"",       "\\", "\n", "\t", " ",
            "]]&gt;", "&#13;", "a",    "\xc3\xa9", "'",  "/",  "{",  "\xf0\x9f\x98\x80"};
        std::string text = "t";
        for (uint32_t i = Pick(8); i != 0; --i)
            text += kPieces[Pick(static_cast<uint32_t>(kPieces.size()))];
        return text;
    }
    void Leaf(std::string &out, const std::string &name, const Texts &values)
    {
        if (Pick(2) != 0)
            out += "<" + name + ">" + values[Pick(static_cast<uint32_t>(values.size()))] + "</" +
                   name + ">";
    }
    void Entry(std::string &out, uint32_t number)
    {
        out += "<l><k>" + std::to_string(number) + "</k><j>" + Text() + "</j>";
        Leaf(out, "a", {"3", "4"});
        if (Pick(2) != 0)
            out += Pick(2) != 0 ? "<n/>" : "<n><z>zz</z></n>";
        out += "</l>";
    }
    void Choice(std::string &out)
    {
        switch (Pick(4)) {
        case 0:
            Leaf(out, "c1a", {"1", "2"});
            Leaf(out, "c1b", {"1"});
            break;
        case 1:
            Leaf(out, "c2a", {"1", "2"});
            Leaf(out, "c2b", {"2", "3"});
            if (Pick(2) != 0)
                out += Pick(2) != 0 ? "<c2c/>" : "<c2c><c2d>7</c2d></c2c>";
            break;
        case 2:
            Leaf(out, "c3", {"9", "8"});
            break;
        default:
            break;
        }
    }

    std::mt19937 random_;
};

} // namespace

TEST(RoundTrip, WhatIsWrittenReadsBackToTheSameData)
{
    Schema schema(kBody);
    const uint32_t modes[] = {ZR_DATA_EXPLICIT, ZR_DATA_TRIM, ZR_DATA_REPORT_ALL,
                              ZR_DATA_REPORT_ALL_TAGGED};
    const uint32_t formats[] = {ZR_DATA_XML, ZR_DATA_JSON};
    for (uint32_t seed = 1; seed <= 500 && !testing::Test::HasFailure(); ++seed) {
        const std::string given = Generator(seed).Document();
        SCOPED_TRACE(given);
        const std::string whole = schema.Write(given, {ZR_DATA_JSON, ZR_DATA_REPORT_ALL, 0});
        for (uint32_t mode : modes) {
            const std::string json = schema.Write(given, {ZR_DATA_JSON, mode, 0});
            const std::string xml = schema.Write(given, {ZR_DATA_XML, mode, 0});
            EXPECT_EQ(schema.Write(xml, {ZR_DATA_JSON, mode, 0}), json);
            EXPECT_EQ(schema.Write(json, {ZR_DATA_JSON, mode, 0}), json);
            EXPECT_EQ(schema.Write(xml, {ZR_DATA_XML, mode, 0}), xml);
            for (uint32_t format : formats) {
                // Whatever was left out, the same is in use.
                const std::string indented = schema.Write(given, {format, mode, 3});
                EXPECT_EQ(schema.Write(indented, {ZR_DATA_JSON, ZR_DATA_REPORT_ALL, 0}), whole);
            }
        }
    }
}

} // namespace datatest
