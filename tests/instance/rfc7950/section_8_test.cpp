// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 8: constraints; what an edit is held against when it is read (section 8.3.1).
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const std::string kBody =
    "feature f; identity food; identity fruit { base food; }"
    " container c { leaf a { type int8 { range 1..9; } } leaf off { if-feature f; type string; }"
    "  choice how { leaf x { type empty; } case two { leaf y { type empty; }"
    "   leaf z { type empty; } } } }"
    " list entry { key \"kind name\"; ordered-by user; leaf kind { type identityref { base food; } "
    "}"
    "  leaf name { type int8; } leaf-list v { type int8; ordered-by user; }"
    "  leaf-list s { type int8; } }"
    " list sorted { key name; leaf name { type string; } }";

Texts Edit(const std::string &data)
{
    Schema schema(kBody);
    return schema.CheckMessage(
        "<config xmlns=\"urn:m\" xmlns:m=\"urn:m\" xmlns:yang=\"urn:ietf:params:xml:ns:yang:1\" "
        "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" +
            data + "</config>",
        ZR_DATA_EDIT);
}

Texts Entry(const std::string &attributes, const std::string &inner = "")
{
    return Edit("<entry " + attributes + "><kind>fruit</kind><name>1</name>" + inner + "</entry>");
}

// What is wrong with a value of a leaf-list that the user orders.
Texts Value(const std::string &attributes)
{
    return Entry("", "<v " + attributes + ">1</v>");
}

} // namespace

TEST(Payload, HasValuesOfItsTypesAndKnownNames)
{
    EXPECT_THAT(Edit("<c><a>10</a></c>"), ElementsAre(StartsWith("invalid-value /c/a: ")));
    EXPECT_THAT(Edit("<c><off>x</off></c>"), ElementsAre(StartsWith("unknown-element /c/off: ")));
}

TEST(Payload, HasAllKeysOfEachEntry)
{
    EXPECT_THAT(Edit("<entry><name>1</name></entry>"),
                ElementsAre("missing-element /entry[1]/kind: key \"kind\" is missing"));
}

TEST(Payload, HasOneCaseOfAChoice)
{
    EXPECT_THAT(Edit("<c><y/><z/></c>"), IsEmpty());
    EXPECT_THAT(Edit("<c><x/><y/></c>"), ElementsAre(StartsWith("bad-element /c/y: ")));
    EXPECT_THAT(Edit("<c><x nc:operation=\"delete\"/><y/></c>"), IsEmpty())
        << "one takes the other's place";
}

TEST(Payload, InsertsWhereTheUserOrdersAlone)
{
    EXPECT_THAT(Entry("yang:insert=\"first\""), IsEmpty());
    EXPECT_THAT(Value("yang:insert=\"last\""), IsEmpty());
    EXPECT_THAT(Entry("yang:insert=\"middle\""), ElementsAre(StartsWith("bad-attribute /entry[")));
    EXPECT_THAT(Edit("<sorted yang:insert=\"first\"><name>a</name></sorted>"),
                ElementsAre(StartsWith("unknown-attribute /sorted[name='a']: ")));
    EXPECT_THAT(Entry("", "<s yang:insert=\"first\">1</s>"),
                ElementsAre(StartsWith("unknown-attribute /entry[")));
    EXPECT_THAT(Edit("<c yang:insert=\"first\"/>"),
                ElementsAre(StartsWith("unknown-attribute /c: ")));
}

TEST(Payload, NamesTheEntryBesideWhichItInserts)
{
    EXPECT_THAT(Entry("yang:insert=\"before\" yang:key=\"[m:kind='m:fruit'][m:name='7']\""),
                IsEmpty());
    EXPECT_THAT(
        Entry("yang:insert=\"after\" yang:key=\"[m:name = '7'] [m:kind = &quot;fruit&quot;]\""),
        IsEmpty());
    EXPECT_THAT(Entry("yang:insert=\"after\""),
                ElementsAre(StartsWith("missing-attribute /entry[")));
    for (const char *bad :
         {"", "7", "[m:name='7']", "[m:name='7'][m:name='7']", "[m:kind='m:fruit'][m:name='x']",
          "[m:kind='food'][name='7']", "[m:kind='m:fruit'][m:name='7'][m:v='1']",
          "[m:kind='m:fruit'][m:name='7'", "[m:kind='none'][m:name='7']"})
        EXPECT_THAT(Entry(std::string("yang:insert=\"after\" yang:key=\"") + bad + "\""),
                    ElementsAre(StartsWith("bad-attribute /entry[")))
            << bad;
    EXPECT_THAT(Entry("yang:insert=\"first\" yang:key=\"[m:kind='m:fruit'][m:name='7']\""),
                ElementsAre(StartsWith("unknown-attribute /entry[")))
        << "the first stands beside none";
    EXPECT_THAT(Entry("yang:insert=\"after\" yang:value=\"1\""),
                ElementsAre(StartsWith("unknown-attribute /entry["),
                            StartsWith("missing-attribute /entry[")));
}

TEST(Payload, NamesTheValueBesideWhichItInserts)
{
    EXPECT_THAT(Value("yang:insert=\"before\" yang:value=\"+7\""), IsEmpty());
    EXPECT_THAT(Value("yang:insert=\"before\" yang:value=\"x\""),
                ElementsAre(StartsWith("bad-attribute /entry[")));
    EXPECT_THAT(Value("yang:insert=\"before\""),
                ElementsAre(StartsWith("missing-attribute /entry[")));
    EXPECT_THAT(Value("yang:insert=\"before\" yang:key=\"[.='1']\""),
                ElementsAre(StartsWith("unknown-attribute /entry["),
                            StartsWith("missing-attribute /entry[")));
}

TEST(Payload, InsertsNothingThatItDeletes)
{
    EXPECT_THAT(Entry("yang:insert=\"first\" nc:operation=\"delete\""),
                ElementsAre(StartsWith("bad-attribute /entry[")));
}

TEST(Payload, IsRefusedAsTheConstraintSays)
{
    Schema schema(
        "typedef port { type uint16 { range \"1..1000\" { error-message \"No port.\"; } } }"
        " container c { leaf own { type port { range 1..9 { error-app-tag small; } } }"
        "  leaf name { type string { length 2..4 { error-message \"Not so long.\";"
        "    error-app-tag length; } pattern 'a.*' { error-app-tag first; } pattern '.*z';"
        "    pattern '[a-z]*' { error-message \"Small letters.\"; } } }"
        "  leaf octets { type binary { length 1 { error-app-tag one; } } }"
        "  leaf part { type decimal64 { fraction-digits 1; range 0..1 {"
        "    error-message \"No part.\"; } } }"
        "  leaf ref { type leafref { path \"../own\"; } }"
        "  leaf either { type union { type port; type string { length 2 {"
        "    error-message never; } } } } }");
    auto check = [&](const std::string &inner, uint32_t kind = ZR_DATA_CONFIG) {
        Texts found = schema.Check("<c>" + inner + "</c>", kind);
        return found.size() == 1 ? found[0] : "no single fault";
    };
    auto own = [&](const char *value) { return check(std::string("<own>") + value + "</own>"); };
    EXPECT_EQ(own("10"), "invalid-value[small] /c/own: \"10\" is no value of \"own\": it is out of "
                         "range");
    EXPECT_EQ(own("1001"), "invalid-value /c/own: No port.") << "the typedef refuses it first";
    EXPECT_EQ(own("x"), "invalid-value /c/own: \"x\" is no value of \"own\": it is no integer");
    EXPECT_EQ(own("65536"), "invalid-value /c/own: \"65536\" is no value of \"own\": it is out of "
                            "range")
        << "no restriction but the type";
    auto name = [&](const char *value) { return check(std::string("<name>") + value + "</name>"); };
    EXPECT_EQ(name("a"), "invalid-value[length] /c/name: Not so long.");
    EXPECT_EQ(name("bz"), "invalid-value[first] /c/name: \"bz\" is no value of \"name\": a pattern "
                          "refuses it");
    EXPECT_EQ(name("ab"), "invalid-value /c/name: \"ab\" is no value of \"name\": a pattern "
                          "refuses it");
    EXPECT_EQ(name("aBz"), "invalid-value /c/name: Small letters.");
    EXPECT_EQ(check("<octets>AAAA</octets>").substr(0, 30), "invalid-value[one] /c/octets: ");
    EXPECT_EQ(check("<part>1.1</part>"), "invalid-value /c/part: No part.");
    EXPECT_EQ(check("<own>1</own><ref>2000</ref>"), "invalid-value /c/ref: No port.")
        << "what the leafref leads to";
    EXPECT_EQ(check("<either>abc</either>"), "invalid-value /c/either: \"abc\" is no value of "
                                             "\"either\": no member of the union takes it");
    EXPECT_THAT(schema.CheckJson("{\"m:c\": {\"own\": 1001}}"),
                ElementsAre("invalid-value /c/own: No port."));
    EXPECT_THAT(schema.CheckMessage("<config><c xmlns=\"urn:m\"><own>1001</own></c></config>",
                                    ZR_DATA_EDIT),
                ElementsAre("invalid-value /c/own: No port."));
    EXPECT_THAT(schema.xml(), ElementsAre(testing::HasSubstr("No port.</error-message>")));
}

TEST(Payload, IsRefusedInTheLibrarysWordsWhereTheContextKeepsNoOthers)
{
    Schema schema("leaf a { type int8 { range 1 { error-message m; error-app-tag t; } } }", 0);
    EXPECT_THAT(schema.Check("<a>2</a>"),
                ElementsAre("invalid-value /a: \"2\" is no value of \"a\": it is out of range"));
}

TEST(Data, HasNodesOfItsModulesAlone)
{
    Schema schema("container c { leaf a { type int8; } } rpc r; notification n;");
    EXPECT_THAT(schema.Check("<c><a>1</a></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a>"), ElementsAre(StartsWith("unknown-element /a: ")));
    EXPECT_THAT(schema.Check("<c><c/></c>"), ElementsAre(StartsWith("unknown-element /c/c: ")));
    EXPECT_THAT(schema.Check("<c xmlns=\"urn:none\"/>"),
                ElementsAre(StartsWith("unknown-namespace /c: ")));
    EXPECT_THAT(schema.Check("<r/>"), ElementsAre(StartsWith("unknown-element /r: ")));
    EXPECT_THAT(schema.Check("<n/>"), ElementsAre(StartsWith("unknown-element /n: ")));
}

TEST(Data, IsHeldAgainstTheConstraintsOfItsKind)
{
    // One rule, of configuration, state, parameters and a notification.
    const std::string rule =
        "leaf a { type int8; must '. > 0'; } leaf b { type int8 { range 1..9; } }";
    Schema schema("container c { " + rule + " } container s { config false; " + rule +
                  " }"
                  " rpc r { input { " +
                  rule + " } output { " + rule + " } } notification n { " + rule + " }");
    const std::string good = "<a>1</a><b>1</b>", bad = "<a>0</a><b>0</b>";
    auto check = [&](const std::string &inner) {
        auto in = [&](const char *name) {
            return std::string("<") + name + " xmlns=\"urn:m\">" + inner + "</" + name + ">";
        };
        return std::vector<size_t>{schema.Check(in("c")).size(),
                                   schema.Check(in("s"), ZR_DATA_CONFIG_AND_STATE).size(),
                                   schema.CheckMessage(in("r"), ZR_DATA_REQUEST).size(),
                                   schema.CheckMessage(in("r"), ZR_DATA_REPLY, "", "m:r").size(),
                                   schema.CheckMessage(in("n"), ZR_DATA_NOTIFICATION).size()};
    };
    EXPECT_THAT(check(good), testing::Each(0u));
    EXPECT_THAT(check(bad), testing::Each(2u));
}

TEST(Data, IsAskedForNothingBelowWhatHasNoPlace)
{
    Schema schema("feature f; leaf on { type empty; }"
                  " container w { when '../on'; leaf a { type int8; mandatory true; }"
                  "  leaf-list l { type int8; min-elements 1; }"
                  "  choice o { mandatory true; leaf x { type empty; } } }"
                  " container i { if-feature f; leaf b { type int8; mandatory true; }"
                  "  list k { key n; min-elements 1; leaf n { type int8; } } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<on/>"), testing::SizeIs(3));
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_THAT(schema.Check(""), testing::SizeIs(2));
}

TEST(Payload, IsWellFormed)
{
    for (const char *bad : {"<c>", "<c><a>1</c></a>", "<c a=1/>", "&none;"})
        EXPECT_THAT(Edit(bad), ElementsAre(StartsWith("malformed-message "))) << bad;
}

TEST(Payload, HasTheHierarchyOfTheSchema)
{
    EXPECT_THAT(Edit("<c><a>1</a></c>"), IsEmpty());
    EXPECT_THAT(Edit("<a>1</a>"), ElementsAre(StartsWith("unknown-element /a: ")));
    EXPECT_THAT(Edit("<c>text</c>"), ElementsAre(StartsWith("bad-element /c: ")));
    EXPECT_THAT(Edit("<c><a>1</a><a>2</a></c>"), ElementsAre(StartsWith("bad-element /c/a: ")));
}

} // namespace datatest
