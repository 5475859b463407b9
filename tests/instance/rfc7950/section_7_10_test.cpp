// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.10: the anydata statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char *kAny = "container c { presence p; anydata a { mandatory true; } }";

TEST(Anydata, HoldsNodesThatNoModuleDefines)
{
    Schema schema(kAny);
    EXPECT_THAT(schema.Check("<c><a><b xmlns=\"urn:unknown\"><c/></b></a></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a/></c>"), IsEmpty());
}

TEST(Anydata, StandsOnceAndIsMissedWhereItIsMandatory)
{
    Schema schema(kAny);
    EXPECT_THAT(schema.Check("<c/>"), ElementsAre("missing-element /c/a: \"a\" is missing"));
    EXPECT_THAT(schema.Check("<c><a/><a/></c>"), ElementsAre(StartsWith("bad-element /c/a: ")));
}

TEST(Anydata, HasItsOwnConditions)
{
    Schema schema(
        "container c { anydata a { when '../v'; must '../v = 1'; } leaf v { type int8; } }");
    EXPECT_THAT(schema.Check("<c><v>1</v><a><x/></a></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><v>2</v><a/></c>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /c/a: ")));
    EXPECT_THAT(schema.Check("<c><a/></c>"), ElementsAre(StartsWith("unknown-element /c/a: ")));
}

TEST(Anydata, StandsInMessagesAndEditsToo)
{
    Schema schema("rpc r { input { anydata a { mandatory true; } } } container c { anydata a; }");
    EXPECT_THAT(schema.CheckMessage("<r xmlns=\"urn:m\"><a><b><c/></b></a></r>", ZR_DATA_REQUEST),
                IsEmpty());
    EXPECT_THAT(schema.CheckMessage("<r xmlns=\"urn:m\"/>", ZR_DATA_REQUEST),
                ElementsAre("missing-element /r/a: \"a\" is missing"));
    EXPECT_THAT(schema.CheckMessage("<config><c xmlns=\"urn:m\"><a xmlns:nc="
                                    "\"urn:ietf:params:xml:ns:netconf:base:1.0\" "
                                    "nc:operation=\"replace\"><x/></a></c></config>",
                                    ZR_DATA_EDIT),
                IsEmpty());
}

} // namespace datatest
