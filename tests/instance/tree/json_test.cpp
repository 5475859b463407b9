// SPDX-License-Identifier: Apache-2.0
// Reading JSON: what its members and values become, by RFC 7951 and, for annotations, RFC 7952.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Json, NamesOfMembersCarryTheirModule)
{
    Schema schema("container c { leaf a { type string; } }");
    schema.Add("n", "import m { prefix m; } augment /m:c { leaf b { type string; } }");
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"a": "x", "n:b": "y"}})"), IsEmpty());
    EXPECT_THAT(schema.warnings(), IsEmpty());
    EXPECT_THAT(
        schema.CheckJson(R"({"c": {}, "x:c": {}, "m:d": {}, "m:c": {"b": "y"}})"),
        ElementsAre("unknown-namespace /c: member \"c\" names no module",
                    "unknown-namespace /c: member \"x:c\" names a module that is not loaded",
                    "unknown-element /d: element \"d\" is not in the schema here",
                    "unknown-element /c/b: element \"b\" is not in the schema here"));
}

TEST(Json, ANeedlessModuleIsTakenAndWarnedOf)
{
    Schema schema("container c { leaf-list a { type string; } }");
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"m:a": ["x", "y"]}})"), IsEmpty());
    EXPECT_THAT(schema.warnings(),
                ElementsAre("bad-element /c/a: member \"m:a\" needs no name of a module here"));
}

TEST(Json, ListsAndLeafListsAreArrays)
{
    Schema schema("list l { key k; leaf k { type string; } } leaf-list v { type int8; }"
                  "container c; leaf a { type string; }");
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [{"k": "1"}, {"k": "2"}], "m:v": [1, 2]})"), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [], "m:v": []})"), IsEmpty());
    EXPECT_THAT(
        schema.CheckJson(R"({"m:l": {"k": "1"}, "m:v": 1, "m:c": [{}], "m:a": ["x"]})"),
        ElementsAre("invalid-value /l: the value of \"l\" does not fit: it must be an array "
                    "in JSON",
                    "invalid-value /v: the value of \"v\" does not fit: it must be an array "
                    "in JSON",
                    "invalid-value /c: the value of \"c\" does not fit: it must be no array "
                    "in JSON",
                    "invalid-value /a: the value of \"a\" does not fit: it must be no array "
                    "in JSON"));
    EXPECT_THAT(schema.CheckJson(R"({"m:l": ["x", []], "m:v": [[1], {}], "m:c": 1, "m:a": {}})"),
                ElementsAre(HasSubstr("its entries must be objects"),
                            HasSubstr("its entries must be objects"),
                            HasSubstr("it must be one value"), HasSubstr("it must be one value"),
                            HasSubstr("it must be an object"), HasSubstr("it must be one value")));
}

TEST(Json, KeysMayStandAnywhereInAnEntry)
{
    Schema schema("list l { key k; leaf a { type string; } leaf k { type string; } }");
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [{"a": "x", "k": "1"}]})"), IsEmpty());
    EXPECT_THAT(schema.warnings(), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [{"a": "x"}, {"k": "1"}, {"k": "1"}]})"),
                ElementsAre("missing-element /l[1]/k: key \"k\" is missing",
                            StartsWith("bad-element /l[k='1']: ")));
}

// RFC 7951, section 6.
TEST(Json, EachTypeHasItsKindOfValue)
{
    struct Row {
        const char *type, *good, *bad;
    };
    const Row rows[] = {
        {"int32;", "-5", R"("5")"},
        {"uint8;", "255", "256"},
        {"uint32;", "4294967295", "1.5"},
        {"int64;", R"("-9223372036854775808")", "5"},
        {"uint64;", R"("18446744073709551615")", "18446744073709551615"},
        {"decimal64 { fraction-digits 2; }", R"("1.50")", "1.5"},
        {"string;", R"("\u00e9\n")", "true"},
        {"boolean;", "true", R"("true")"},
        {"empty;", "[null]", "null"},
        {"enumeration { enum a; }", R"("a")", "1"},
        {"bits { bit a; bit b; }", R"("b a")", "3"},
        {"binary;", R"("aGk=")", R"("aGk")"},
    };
    for (const Row &row : rows) {
        Schema schema(std::string("leaf a { type ") + row.type + " }");
        EXPECT_THAT(schema.CheckJson(std::string("{\"m:a\": ") + row.good + "}"), IsEmpty())
            << row.type;
        EXPECT_THAT(schema.CheckJson(std::string("{\n\"m:a\":\n ") + row.bad + "\n}"),
                    ElementsAre(StartsWith("invalid-value /a: ")))
            << row.type;
        EXPECT_THAT(schema.lines(), ElementsAre(2));
    }
}

TEST(Json, AUnionTakesTheMemberThatTheKindOfValueFits)
{
    Schema schema("leaf-list u { type union { type int8; type boolean; type string; } }"
                  "leaf n { type int8; must 'not(/m:u = \"05\")'; }"
                  "leaf e { type union { type empty; type int8; } }");
    EXPECT_THAT(
        schema.CheckJson(R"({"m:u": [5, "05", true, "true"], "m:e": [null]})"),
        ElementsAre("bad-element /u[.='true']: the value \"true\" stands here a second time"));
    EXPECT_THAT(schema.CheckJson(R"({"m:u": [5, "05"], "m:n": 1})"),
                ElementsAre(StartsWith("operation-failed[must-violation] /n")));
    EXPECT_THAT(schema.CheckJson(R"({"m:e": "5"})"), ElementsAre(StartsWith("invalid-value /e: ")));
}

TEST(Json, IdentitiesAreNamedWithTheirModule)
{
    Schema schema("identity base; identity own { base base; }"
                  "leaf a { type identityref { base base; } }"
                  "container c { when '/m:a = \"n:far\"'; presence p; }");
    schema.Add("n", "import m { prefix m; } identity far { base m:base; }");
    EXPECT_THAT(schema.CheckJson(R"({"m:a": "n:far", "m:c": {}})"), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:a": "own"})"), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:a": "m:own"})"), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:a": "far"})"),
                ElementsAre(HasSubstr("there is no such identity")));
}

// RFC 7951, section 6.11.
TEST(Json, InstanceIdentifiersNameAModuleWhereItChanges)
{
    Schema schema("container c { list l { key k; leaf k { type string; } } }"
                  "leaf i { type instance-identifier; }");
    schema.Add("n", "import m { prefix m; } augment /m:c/m:l { leaf b { type string; } }");
    const char *const rest = R"(, "m:c": {"l": [{"k": "x", "n:b": "y"}]}})";
    EXPECT_THAT(schema.CheckJson(std::string(R"({"m:i": "/m:c/l[k='x']/n:b")") + rest), IsEmpty());
    EXPECT_THAT(schema.CheckJson(std::string(R"({"m:i": "/m:c/m:l[m:k='x']")") + rest), IsEmpty());
    EXPECT_THAT(schema.CheckJson(std::string(R"({"m:i": "/c/l[k='x']")") + rest),
                ElementsAre(HasSubstr("it is no instance-identifier")));
    EXPECT_THAT(schema.CheckJson(std::string(R"({"m:i": "/m:c/l[k='x']/b")") + rest),
                ElementsAre(HasSubstr("it leads to no node of the schema")));
}

TEST(Json, FaultsHaveTheLineOfTheMemberOrOfTheArraysValue)
{
    Schema schema("container c { leaf a { type int8; } leaf-list v { type int8; } leaf b {"
                  "  type string; mandatory true; } } list l { key k; leaf k { type int8; } }");
    schema.CheckJson("{\n\"m:c\":\n {\n  \"a\": 300\n,\n \"v\": [1\n,\n400\r\n]},\n"
                     "\"m:l\": [\n{\n\"k\":\"x\"}]}");
    EXPECT_THAT(schema.lines(), ElementsAre(2, 4, 8, 12));
}

TEST(Json, MembersThatStandTwiceAreTold)
{
    Schema schema("container c { leaf a { type int8; } leaf-list v { type int8; } anydata d; }");
    EXPECT_THAT(schema.CheckJson("{\"m:c\": {\"a\": 1, \"a\": 2,\n \"v\": [1], \"v\": [2]}}"),
                ElementsAre("bad-element /c/a: member \"a\" stands here a second time",
                            "bad-element /c/v: member \"v\" stands here a second time"));
    EXPECT_THAT(schema.lines(), ElementsAre(1, 2));
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"d": {"x": {"y": 1, "z": {"y": 1}, "y": 2}}}})"),
                ElementsAre("bad-element /c/d: member \"y\" stands here a second time"));
}

TEST(Json, TextThatIsNotWellFormedIsOneFaultWithLineAndColumn)
{
    Schema schema("leaf a { type string; }");
    EXPECT_THAT(schema.CheckJson("{\n  \"m:a\": \"x\",\n}"),
                ElementsAre("malformed-message /: the text is not well-formed JSON: column 1: "
                            "unexpected '}'; expected string literal"));
    EXPECT_THAT(schema.lines(), ElementsAre(3));
    EXPECT_THAT(schema.CheckJson("{\"m:a\": \"x\" \"m:a\""),
                ElementsAre(HasSubstr("column 17: unexpected string literal; expected '}'")));
    EXPECT_THAT(schema.CheckJson("{} {"), ElementsAre(HasSubstr("column 4: unexpected '{'")));
    EXPECT_THAT(schema.CheckJson("{\"m:a\": \"\xff\"}"), ElementsAre(HasSubstr("invalid string")));
    EXPECT_THAT(schema.CheckJson("{\"m:a\": 1e999}"), ElementsAre(HasSubstr("number overflow")));
    EXPECT_THAT(schema.CheckJson(""), ElementsAre(StartsWith("malformed-message /: ")));
    for (const char *text : {"[]", "1", "[[1]]"})
        EXPECT_THAT(schema.CheckJson(text),
                    ElementsAre("malformed-message /: the text is no JSON object"));
}

TEST(Json, CharactersThatDataCannotHoldAreInvalid)
{
    Schema schema("leaf a { type string; } anydata d;");
    EXPECT_THAT(schema.CheckJson(R"({"m:a": "x\u0000y"})"),
                ElementsAre(HasSubstr("it holds a control character")));
    EXPECT_THAT(schema.CheckJson(R"({"m:a": "\uffff"})"),
                ElementsAre(StartsWith("invalid-value /a: ")));
    EXPECT_THAT(schema.CheckJson(R"({"m:d": {"x": "\u0001"}})"),
                ElementsAre("invalid-value /d: member \"x\" holds characters that no data has"));
    EXPECT_THAT(schema.CheckJson(R"({"m:a\u0000": "x"})"),
                ElementsAre(StartsWith("malformed-message /: ")));
}

TEST(Json, AnydataHoldsWhatASchemaCouldDescribe)
{
    Schema schema("anydata d; anyxml x;");
    EXPECT_THAT(schema.CheckJson(R"({"m:d": {"a": {"b": [1, 2], "c": [null]}, "l": [{}, {}]}})"),
                IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:d": {"a b": 1, "c": null, "e": [[1]]}})"),
                ElementsAre("invalid-value /d: member \"a b\" has a name that no node has",
                            "invalid-value /d: member \"c\" is null, which stands as [null] alone",
                            "invalid-value /d: member \"e\" is an array in an array"));
    EXPECT_THAT(schema.CheckJson(R"({"m:d": 5})"), ElementsAre(HasSubstr("must be an object")));
    // RFC 7951, section 5.6.
    EXPECT_THAT(schema.CheckJson(R"({"m:x": [true, null, true]})"), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:x": [[1], {"a": null}]})"), IsEmpty());
}

TEST(Json, AnnotationsAreWhatAttributesAreInXml)
{
    Schema schema("container c { leaf a { type int8; default 1; } leaf-list v { type int8; } }");
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"@": {"x:y": 1}, "a": 2, "@a": {"x:z": "1"},
                                     "@v": [null, {"x:w": true}], "v": [1, 2]}})"),
                ElementsAre("unknown-attribute /c: attribute \"y\" is not known",
                            "unknown-attribute /c/a: attribute \"z\" is not known",
                            "unknown-attribute /c/v[.='2']: attribute \"w\" is not known"));
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"@b": {"x:y": 1}}})"),
                ElementsAre(StartsWith("unknown-element /c/@b: ")));
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"v": [1], "@v": [null, {"x:y": 1}]}})"),
                ElementsAre(StartsWith("unknown-element /c/@v: ")));
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"@": 5, "a": 1, "@a": "x", "v": [1], "@v": [true]}})"),
                ElementsAre(StartsWith("unknown-element /c/@: "),
                            StartsWith("unknown-element /c/@a: "),
                            StartsWith("unknown-element /c/@v: ")));
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"a": 1,
                                     "@a": {"ietf-netconf-with-defaults:default": true}}})"),
                IsEmpty());
}

TEST(Json, AnnotationsInAnydataAreOfModules)
{
    Schema schema("anydata d;");
    EXPECT_THAT(schema.CheckJson(R"({"m:d": {"a": 1, "@a": {"m:x": 1, "ietf-netconf:y": 2}}})"),
                IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:d": {"a": {"@": {"n:x": 1}}, "b": 1, "@b": {"m:x y": 1},
                                             "c": 1, "@c": {"m:x": 1, "m:x": 2}}})"),
                ElementsAre(StartsWith("unknown-attribute /d: member \"a\" "),
                            StartsWith("unknown-attribute /d: member \"b\" "),
                            StartsWith("unknown-attribute /d: member \"c\" ")));
}

// RFC 6243, section 4.5.2.
TEST(Json, ALeafThatIsTaggedAsDefaultHasTheSchemasValue)
{
    Schema schema("leaf a { type int8; default 1; }");
    EXPECT_THAT(
        schema.CheckJson(R"({"m:a": 2,
                                     "@m:a": {"ietf-netconf-with-defaults:default": true}})"),
        ElementsAre("invalid-value /a: \"2\" is tagged as the default of \"a\", which it is "
                    "not"));
    const std::string attribute =
        "<a xmlns:w=\"urn:ietf:params:xml:ns:netconf:default:1.0\" w:default=";
    EXPECT_THAT(schema.Check(attribute + "'true'>+1</a>"), IsEmpty());
    EXPECT_THAT(schema.Check(attribute + "'1'>2</a>"), ElementsAre(StartsWith("invalid-value ")));
    EXPECT_THAT(schema.Check(attribute + "'false'>2</a>"), IsEmpty());
    EXPECT_THAT(schema.Check(attribute + "'yes'>1</a>"), ElementsAre(StartsWith("bad-attribute ")));
}

// RFC 8040, section 3.1.
TEST(Json, ADatastoreOfRestconfIsTakenOut)
{
    Schema schema("leaf a { type int8; mandatory true; }");
    EXPECT_THAT(schema.CheckJson(R"({"ietf-restconf:data": {"m:a": 1}})"), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"ietf-restconf:data": {}})"),
                ElementsAre("missing-element /a: \"a\" is missing"));
}

TEST(Json, MayBeOfAnyDepth)
{
    Schema schema("anydata d; anyxml x; leaf a { type int8; }");
    std::string open(100000, '['), close(100000, ']'), objects;
    EXPECT_THAT(schema.CheckJson("{\"m:x\": " + open + close + "}"), IsEmpty());
    EXPECT_THAT(schema.CheckJson("{\"m:a\": " + open + close + "}"),
                ElementsAre(StartsWith("invalid-value /a: ")));
    EXPECT_THAT(schema.CheckJson(open), ElementsAre(StartsWith("malformed-message /: ")));
    for (int i = 0; i < 100000; ++i)
        objects += "{\"a\":";
    EXPECT_THAT(schema.CheckJson("{\"m:d\": " + objects + "1" + std::string(100001, '}')),
                IsEmpty());
}

TEST(Json, AMessageIsTheOneMemberOfTheObject)
{
    Schema schema("rpc r { input { leaf a { type int8; } } }"
                  "notification n { leaf b { type int8; mandatory true; } }");
    EXPECT_THAT(schema.CheckJson(R"({"m:r": {"a": 1}})", ZR_DATA_REQUEST), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:r": {"a": "x"}})", ZR_DATA_REQUEST),
                ElementsAre(StartsWith("invalid-value /r/a: ")));
    EXPECT_THAT(schema.CheckJson(R"({"m:n": {"b": 1}})", ZR_DATA_NOTIFICATION), IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:n": {}})", ZR_DATA_NOTIFICATION),
                ElementsAre(StartsWith("missing-element /n/b: ")));
}

TEST(Json, NoMessageAndMoreThanOneAreRefused)
{
    Schema schema("rpc r; rpc s;");
    for (const char *document : {"{}", R"({"m:r": {}, "m:s": {}})", R"({"m:r": [{}, {}]})"})
        EXPECT_THAT(schema.CheckJson(document, ZR_DATA_REQUEST),
                    ElementsAre("malformed-message /: a message is the one member of the object"))
            << document;
    schema.CheckJson("\n\n{}", ZR_DATA_REQUEST);
    EXPECT_THAT(schema.lines(), ElementsAre(3u));
    EXPECT_THAT(schema.CheckJson(R"({"m:t": {}})", ZR_DATA_REQUEST),
                ElementsAre("unknown-element /t: element \"t\" is not in the schema here"));
}

TEST(Json, ActionsAndNotificationsStandInTheNodesThatLeadToThem)
{
    Schema schema(
        "list l { key k; leaf k { type int8; } action r { input { leaf a { type int8; } } }"
        "notification n { leaf b { type int8; } } }");
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [{"k": 1, "r": {"a": 1}}]})", ZR_DATA_REQUEST),
                IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [{"k": 1, "r": {"a": "1"}}]})", ZR_DATA_REQUEST),
                ElementsAre(StartsWith("invalid-value /l[k='1']/r/a: ")));
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [{"r": {}}]})", ZR_DATA_REQUEST),
                ElementsAre(StartsWith("missing-element /l[1]/k: ")));
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [{"k": 1, "n": {"b": 1}}]})", ZR_DATA_NOTIFICATION),
                IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:l": [{"k": 1, "r": {}}]})", ZR_DATA_NOTIFICATION),
                ElementsAre(StartsWith("unknown-element /l[k='1']/r: ")));
}

TEST(Json, WhatLeadsToAMessageHasTheShapeOfItsNode)
{
    Schema schema("container c { list l { key k; leaf k { type int8; } action r; } } rpc s;");
    auto check = [&](const char *document) { return schema.CheckJson(document, ZR_DATA_REQUEST); };
    for (const char *document : {R"({"m:s": null})", R"({"m:s": ""})"})
        EXPECT_THAT(check(document), ElementsAre(HasSubstr("it must be an object in JSON")));
    EXPECT_THAT(check(R"({"m:s": [{}]})"), ElementsAre(HasSubstr("it must be no array in JSON")));
    EXPECT_THAT(check(R"({"m:c": [{"l": [{"k": 1, "r": {}}]}]})"),
                ElementsAre(HasSubstr("it must be no array in JSON")));
    EXPECT_THAT(check(R"({"m:c": {"l": {"k": 1, "r": {}}}})"),
                ElementsAre(HasSubstr("it must be an array in JSON")));
    EXPECT_THAT(check(R"({"m:c": {"l": [{"k": 1, "r": null}]}})"),
                ElementsAre(HasSubstr("it must be an object in JSON")));
    EXPECT_THAT(check(R"({"m:c": {"l": []}})"),
                testing::Contains(HasSubstr("no action stands in")));
}

TEST(Json, ANotificationMayStandInItsEnvelope)
{
    Schema schema("notification n { leaf b { type int8; } }");
    const std::string event = R"("m:n": {"b": 1})", time = R"("eventTime": "2026-01-02T03:04:05Z")";
    auto check = [&](const std::string &members) {
        return schema.CheckJson("{\"ietf-restconf:notification\": {" + members + "}}",
                                ZR_DATA_NOTIFICATION);
    };
    EXPECT_THAT(check(time + ", " + event), IsEmpty());
    EXPECT_THAT(check(event), ElementsAre(StartsWith("missing-element /ncEvent:notification: ")));
    EXPECT_THAT(check(time), ElementsAre(StartsWith("missing-element /ncEvent:notification: ")));
    EXPECT_THAT(check(R"("eventTime": 1, )" + event),
                ElementsAre(StartsWith("invalid-value /ncEvent:eventTime: ")));
}

TEST(Json, AnnotationsAreThoseThatAModuleDefines)
{
    Schema schema;
    schema.Add("ietf-yang-metadata", "extension annotation { argument name; }");
    schema.Add("m", "import ietf-yang-metadata { prefix md; } md:annotation seen { type string; }"
                    "leaf a { type int8; } leaf-list v { type int8; }");
    EXPECT_THAT(schema.CheckJson(R"({"m:a": 1, "@m:a": {"m:seen": "x"}, "m:v": [1, 2],
        "@m:v": [null, {"m:seen": "y"}]})"),
                IsEmpty());
    EXPECT_THAT(schema.Check("<a xmlns:m='urn:m' m:seen='x'>1</a>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a xmlns:m='urn:m' m:lost='x' seen='y'>1</a>"),
                ElementsAre(StartsWith("unknown-attribute /a: attribute \"lost\""),
                            StartsWith("unknown-attribute /a: attribute \"seen\"")));
}

TEST(Json, AnEditHasItsOperationsAsAnnotations)
{
    Schema schema("container c { leaf a { type int8; mandatory true; } } list l { key k; leaf k {"
                  "type int8; } }");
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"@": {"ietf-netconf:operation": "delete"}},
        "m:l": [{"@": {"ietf-netconf:operation": "create"}, "k": 1}]})",
                                 ZR_DATA_EDIT),
                IsEmpty());
    EXPECT_THAT(schema.CheckJson(R"({"m:c": {"@a": {"ietf-netconf:operation": "x"}, "a": 1}})",
                                 ZR_DATA_EDIT),
                ElementsAre(StartsWith("bad-attribute /c/a: ")));
}

} // namespace datatest
