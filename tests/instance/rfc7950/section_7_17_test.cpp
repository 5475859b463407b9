// RFC 7950, sections 7.17 and 7.18: the augment and identity statements.
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

TEST(Identity, OfAnotherModuleIsNamedByItsPrefixInTheData)
{
    Schema schema("identity base; leaf v { type identityref { base base; } }");
    schema.Add("n", "import m { prefix m; } identity one { base m:base; }");
    EXPECT_THAT(schema.Check("<v xmlns:q=\"urn:n\">q:one</v>"), IsEmpty());
    EXPECT_THAT(schema.Check("<v xmlns:q=\"urn:m\">q:one</v>"),
                ElementsAre(StartsWith("invalid-value /v: ")));
    EXPECT_THAT(schema.Check("<v xmlns:q=\"urn:m\">q:base</v>"),
                ElementsAre(StartsWith("invalid-value /v: ")))
        << "the base itself is not derived from it";
}

} // namespace datatest
