// SPDX-License-Identifier: Apache-2.0
// Writing data: its order, its values, namespaces and escapes.
#include "support/schema.h"

namespace datatest {

using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr ZrDataWriteOptions kXml = {ZR_DATA_XML, ZR_DATA_EXPLICIT, 0};
constexpr ZrDataWriteOptions kJson = {ZR_DATA_JSON, ZR_DATA_EXPLICIT, 0};

} // namespace

TEST(WriteXml, IsInTheSchemasOrderWithKeysFirst)
{
    Schema schema("list l { key k; leaf a { type string; } leaf k { type string; } }"
                  "leaf x { type string; } leaf-list v { type string; ordered-by user; }");
    EXPECT_EQ(schema.Write("<c xmlns='urn:m'><v>2</v><x>y</x><v>1</v>"
                           "<l><a>b</a><k>1</k></l><l><k>0</k></l></c>",
                           kXml),
              "<c xmlns=\"urn:m\"><l><k>1</k><a>b</a></l><l><k>0</k></l><x>y</x>"
              "<v>2</v><v>1</v></c>");
}

TEST(WriteXml, ValuesAreCanonicalAndNamespacesDeclaredWhereTheyChange)
{
    Schema schema("identity base; container c { leaf a { type int8; } leaf b { type bits {"
                  " bit x; bit y; } } leaf e { type empty; } container d; }");
    schema.Add("n", "import m { prefix m; } identity far { base m:base; }"
                    "augment /m:c { leaf i { type identityref { base m:base; } } "
                    "               leaf p { type instance-identifier; } }");
    EXPECT_EQ(schema.Write("<w><p:c xmlns:p='urn:m' xmlns:q='urn:n'><p:a>+07</p:a><p:b>y x</p:b>"
                           "<p:e/><p:d/><q:i>q:far</q:i><q:p>/p:c/q:i</q:p></p:c></w>",
                           kXml),
              "<w><c xmlns=\"urn:m\"><a>7</a><b>x y</b><e/><d/>"
              "<i xmlns=\"urn:n\" xmlns:n=\"urn:n\">n:far</i>"
              "<p xmlns=\"urn:n\" xmlns:m=\"urn:m\" xmlns:n=\"urn:n\">/m:c/n:i</p></c></w>");
}

TEST(WriteXml, EscapesWhatWouldBeMarkup)
{
    Schema schema("leaf a { type string; } anydata d;");
    EXPECT_EQ(schema.Write("{\"m:a\": \"<&>\\\"'\\r\\n\\t]]>\"}", kXml),
              "<data xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><a xmlns=\"urn:m\">"
              "&lt;&amp;&gt;\"'&#13;\n\t]]&gt;</a></data>");
    EXPECT_EQ(schema.Write(Wrap("<d><x y='&lt;&quot;&#10;&#9;'/></d>"), kXml),
              Wrap("<d><x y=\"&lt;&quot;&#10;&#9;\"/></d>"));
}

TEST(WriteXml, IndentsElementsAndLeavesValuesAlone)
{
    Schema schema("container c { leaf a { type string; } anydata d; container e; }");
    EXPECT_EQ(schema.Write(Wrap("<c><a> x </a><d> <x> <y/></x></d><e/></c>"),
                           {ZR_DATA_XML, ZR_DATA_EXPLICIT, 2}),
              "<config xmlns=\"urn:m\">\n"
              "  <c>\n"
              "    <a> x </a>\n"
              "    <d> <x> <y/></x></d>\n"
              "    <e/>\n"
              "  </c>\n"
              "</config>\n");
}

TEST(WriteXml, AnydataKeepsItsNamespacesAndThePrefixesInScope)
{
    Schema schema("container c { anydata d; }");
    EXPECT_EQ(schema.Write("<w xmlns:o='urn:o'><p:c xmlns:p='urn:m'><p:d><x><!-- gone --><p:y"
                           " xmlns:i='urn:i' o:z='1'>i:v</p:y><![CDATA[<]]></x></p:d></p:c></w>",
                           kXml),
              "<w><c xmlns=\"urn:m\"><d xmlns:p=\"urn:m\" xmlns:o=\"urn:o\"><x xmlns=\"\">"
              "<y xmlns=\"urn:m\" xmlns:i=\"urn:i\" o:z=\"1\">i:v</y>&lt;</x></d></c></w>");
}

TEST(WriteXml, AnnotationsInAnydataOfJsonAreAttributes)
{
    Schema schema("anydata d;");
    EXPECT_THAT(schema.Write(R"({"m:d": {"a": 1, "@a": {"m:x": "<", "ietf-netconf:y": 2}}})", kXml),
                HasSubstr("<a xmlns:m=\"urn:m\" m:x=\"&lt;\" xmlns:ietf-netconf=\"urn:ietf:params:"
                          "xml:ns:netconf:base:1.0\" ietf-netconf:y=\"2\">1</a>"));
}

TEST(WriteJson, QualifiesNamesWhereTheModuleChanges)
{
    Schema schema(
        "container c { leaf a { type string; } container d { leaf e { type string; } } }");
    schema.Add("n",
               "import m { prefix m; } augment /m:c { container b { leaf f { type string; } } }");
    EXPECT_EQ(schema.Write("<w><c xmlns='urn:m'><b xmlns='urn:n'><f>1</f></b><a>2</a><d><e/></d>"
                           "</c></w>",
                           kJson),
              R"({"m:c":{"a":"2","d":{"e":""},"n:b":{"f":"1"}}})");
}

TEST(WriteJson, EachTypeHasItsKindOfValue)
{
    Schema schema("leaf i { type int32; } leaf l { type int64; } leaf d { type decimal64 {"
                  " fraction-digits 2; } } leaf b { type boolean; } leaf e { type empty; }"
                  "leaf r { type leafref { path '/m:i'; } } leaf-list u { type union { type int8;"
                  " type string; } } identity base; leaf y { type identityref { base base; } }"
                  "identity own { base base; }");
    EXPECT_EQ(schema.Write(Wrap("<i>+5</i><l>5</l><d>+1.50</d><b>true</b><e/><r>05</r><u>7</u>"
                                "<u>x</u><y>own</y>"),
                           kJson),
              R"({"m:i":5,"m:l":"5","m:d":"1.5","m:b":true,"m:e":[null],"m:r":5,"m:u":[7,"x"],)"
              R"("m:y":"m:own"})");
}

TEST(WriteJson, InstanceIdentifiersNameAModuleWhereItChanges)
{
    Schema schema("container c { list l { key k; leaf k { type string; } } }"
                  "leaf i { type instance-identifier { require-instance false; } }");
    schema.Add("n", "import m { prefix m; } augment /m:c/m:l { leaf-list b { type string; } }");
    const std::string json =
        R"({"m:c":{"l":[{"k":"m:x","n:b":["y"]}]},"m:i":"/m:c/l[k='m:x']/n:b[.='y']"})";
    EXPECT_EQ(schema.Write(json, kJson), json);
    EXPECT_THAT(schema.Write(json, kXml), HasSubstr(">/m:c/m:l[m:k='m:x']/n:b[.='y']</i>"));
}

TEST(WriteJson, EscapesAndIndents)
{
    Schema schema("leaf a { type string; } leaf-list v { type int8; } container c; anydata d;");
    EXPECT_EQ(schema.Write("{\"m:a\": \"\\u00e9\\\"\\\\\\n\\t\\r/\\u007f\", \"m:v\": [1, 2],"
                           "\"m:c\": {}, \"m:d\": {\"x\": [{}]}}",
                           {ZR_DATA_JSON, ZR_DATA_EXPLICIT, 2}),
              "{\n"
              "  \"m:a\": \"\xc3\xa9\\\"\\\\\\n\\t\\r/\x7f\",\n"
              "  \"m:v\": [\n"
              "    1,\n"
              "    2\n"
              "  ],\n"
              "  \"m:c\": {},\n"
              "  \"m:d\": {\n"
              "    \"x\": [\n"
              "      {}\n"
              "    ]\n"
              "  }\n"
              "}\n");
}

TEST(WriteJson, AnydataOfXmlBecomesObjectsArraysAndStrings)
{
    Schema schema("anydata d; anyxml x;");
    schema.Add("n", "");
    EXPECT_EQ(schema.Write(Wrap("<d><a>1</a><b xmlns='urn:n'><c/></b><a>2</a><e><f>x</f></e></d>"
                                "<x>text</x>"),
                           kJson),
              R"({"m:d":{"a":["1","2"],"n:b":{"c":""},"e":{"f":"x"}},"m:x":"text"})");
    EXPECT_EQ(schema.Write(Wrap("<d/>"), kJson), R"({"m:d":{}})");
}

TEST(WriteJson, AnydataAndAnyxmlOfJsonStayAsTheyAre)
{
    Schema schema("anydata d; anyxml x;");
    for (const char *text :
         {R"({"m:d":{"a":[1,"2",true],"n:b":{"c":[null]},"l":[{},{"e":1.50}],"o":[]}})",
          R"({"m:x":[true,null,true]})", R"({"m:x":[[1],[],[[null]]]})", R"({"m:x":null})",
          R"({"m:x":"x"})", R"({"m:x":{"y":[[{}]]}})"})
        EXPECT_EQ(schema.Write(text, kJson), text);
    EXPECT_THAT(schema.Write(R"({"m:x":[true,null,true]})", kXml),
                HasSubstr("<x xmlns=\"urn:m\"><x>true</x><x/><x>true</x></x>"));
}

TEST(Write, FollowsDataOfAnyDepth)
{
    Schema schema("anydata d; anyxml x;");
    std::string open, close;
    for (int i = 0; i < 100000; ++i) {
        open += "<a>";
        close += "</a>";
    }
    const std::string xml = Wrap("<d>" + open + "x" + close + "</d>");
    EXPECT_EQ(schema.Write(xml, kXml), xml);
    EXPECT_THAT(schema.Write(xml, kJson), HasSubstr("\"a\":\"x\"}}"));
    const std::string arrays =
        "{\"m:x\":" + std::string(100000, '[') + std::string(100000, ']') + "}";
    EXPECT_EQ(schema.Write(arrays, kJson), arrays);
    EXPECT_THAT(schema.Write(arrays, kXml), HasSubstr("<x><x><x/></x></x>"));
}

} // namespace datatest
