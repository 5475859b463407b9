// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.17: the augment statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Augment, WithAConditionHasItsNodesWhereItIsTrueAlone)
{
    Schema schema("list l { key k; leaf k { type int8; } leaf type { type string; } }");
    schema.Add("n", "import m { prefix m; } augment /m:l { when \"m:type = 'x'\";"
                    "  leaf a { type int8; mandatory true; } }");
    EXPECT_THAT(schema.Check("<l><k>1</k><type>y</type></l>"), IsEmpty());
    EXPECT_THAT(schema.Check("<l><k>1</k><type>x</type></l>"),
                ElementsAre("missing-element /l[k='1']/n:a: \"a\" is missing"));
    EXPECT_THAT(schema.Check("<l><k>1</k><type>y</type><a xmlns=\"urn:n\">1</a></l>"),
                ElementsAre(StartsWith("unknown-element /l[k='1']/n:a: ")));
}

TEST(Augment, AddsACaseToAChoice)
{
    Schema schema("container c { choice x { leaf a { type empty; } } }");
    schema.Add("n",
               "import m { prefix m; } augment /m:c/m:x { case b { leaf b { type empty; } } }");
    EXPECT_THAT(schema.Check("<c><b xmlns=\"urn:n\"/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a/><b xmlns=\"urn:n\"/></c>"),
                ElementsAre(StartsWith("bad-element /c/n:b: ")));
}

TEST(Augment, AddsParametersToOperationsAndNotifications)
{
    Schema schema("rpc r { input { leaf a { type int8; } } output { leaf o { type int8; } } }"
                  " notification e;");
    schema.Add("n", "import m { prefix m; } augment /m:r/m:input { leaf b { type int8;"
                    "   must '../m:a'; } }"
                    " augment /m:r/m:output { leaf b { type string; } }"
                    " augment /m:e { leaf b { type boolean; } }");
    auto request = [&](const std::string &input) {
        return schema.CheckMessage("<r xmlns=\"urn:m\">" + input + "</r>", ZR_DATA_REQUEST);
    };
    EXPECT_THAT(request("<a>1</a><b xmlns=\"urn:n\">1</b>"), IsEmpty());
    EXPECT_THAT(request("<b xmlns=\"urn:n\">1</b>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /r/n:b: ")));
    EXPECT_THAT(
        schema.CheckMessage("<x><b xmlns=\"urn:n\">any text</b></x>", ZR_DATA_REPLY, "", "m:r"),
        IsEmpty());
    EXPECT_THAT(schema.CheckMessage("<e xmlns=\"urn:m\"><b xmlns=\"urn:n\">x</b></e>",
                                    ZR_DATA_NOTIFICATION),
                ElementsAre(StartsWith("invalid-value /e/n:b: ")));
}

TEST(Augment, AddsNodesInItsOwnNamespace)
{
    Schema schema("container c { leaf a { type string; } }");
    schema.Add(
        "n",
        "import m { prefix m; } augment \"/m:c\" { leaf b { type string; must \"../m:a = .\"; } }");
    EXPECT_THAT(schema.Check("<c><a>1</a><b xmlns=\"urn:n\">1</b></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a>1</a><b>1</b></c>"),
                ElementsAre("unknown-element /c/b: element \"b\" is not in the schema here"));
    EXPECT_EQ(schema.Check("<c><a>1</a><b xmlns=\"urn:n\">2</b></c>").size(), 1u);
}

TEST(Augment, AddsCasesAndMandatoryNodesWhereItsConditionIsTrue)
{
    Schema schema("container c { leaf on { type empty; } container i; }");
    schema.Add("n", "import m { prefix m; } augment /m:c/m:i { when '../m:on';"
                    "  leaf-list a { type int8; min-elements 1; }"
                    "  choice o { mandatory true; leaf x { type empty; } } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<c><on/><i><a xmlns=\"urn:n\">1</a><x xmlns=\"urn:n\"/></i></c>"),
                IsEmpty());
    EXPECT_THAT(
        schema.Check("<c><on/></c>"),
        testing::UnorderedElementsAre(StartsWith("operation-failed[too-few-elements] /c/i/n:a: "),
                                      StartsWith("data-missing[missing-choice] /c/i: ")));
}

TEST(Augment, JoinsItsConditionWithThoseOfItsNodes)
{
    Schema schema("container c { leaf type { type string; } leaf v { type int8; } container none { "
                  "presence x; } choice o; }");
    schema.Add("n", "import m { prefix m; }"
                    " augment /m:c { when \"m:type = 'x' and not(m:none)\";"
                    "  choice p { when 'm:v < 5'; leaf a { type int8; } } leaf b { when '../m:v > "
                    "5'; type int8; } }"
                    " augment /m:c/m:o { when \"m:type = 'y'\"; case q { when 'm:v'; leaf d { type "
                    "int8; } } }");
    auto check = [&](const char *type, const char *v, const char *leaf) {
        return schema
            .Check(std::string("<c><type>") + type + "</type><v>" + v + "</v><" + leaf +
                   " xmlns=\"urn:n\">1</" + leaf + "></c>")
            .size();
    };
    EXPECT_EQ(check("x", "1", "a"), 0u);
    EXPECT_EQ(check("x", "6", "a"), 1u);
    EXPECT_EQ(check("y", "1", "a"), 1u);
    EXPECT_EQ(check("x", "6", "b"), 0u);
    EXPECT_EQ(check("y", "6", "b"), 1u);
    EXPECT_EQ(check("y", "1", "d"), 0u);
    EXPECT_EQ(check("x", "1", "d"), 1u);
}

TEST(Augment, OfAnAugmentedNodeHasItsOwnNamespaceToo)
{
    Schema schema("container c;");
    schema.Add("n",
               "import m { prefix m; } augment /m:c { container i { leaf a { type int8; } } }");
    schema.Add("o", "import m { prefix m; } import n { prefix n; }"
                    " augment /m:c/n:i { leaf a { type int8; must '../n:a = .'; } }");
    auto check = [&](const char *value) {
        return schema.Check(std::string("<c><i xmlns=\"urn:n\"><a xmlns=\"urn:o\">") + value +
                            "</a><a>1</a></i></c>");
    };
    EXPECT_THAT(check("1"), IsEmpty()) << "two leafs of one name, in any order";
    EXPECT_THAT(check("2"),
                ElementsAre(StartsWith("operation-failed[must-violation] /c/n:i/o:a: ")));
}

} // namespace datatest
