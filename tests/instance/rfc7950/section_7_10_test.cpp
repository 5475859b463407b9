// RFC 7950, sections 7.10 and 7.11: the anydata and anyxml statements.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char *kAny = "container c { presence p; anydata a { mandatory true; }"
                             "  anyxml x { must '../a'; } }";

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

TEST(Anyxml, HoldsAnything)
{
    Schema schema(kAny);
    EXPECT_THAT(schema.Check("<c><a/><x>text <b xmlns=\"\"/> more</x></c>"), IsEmpty());
}

TEST(Anyxml, HasItsOwnConditions)
{
    Schema schema("container c { anyxml x { must '../v'; } leaf v { type int8; } }");
    EXPECT_THAT(schema.Check("<c><x/></c>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /c/x: ")));
}

} // namespace datatest
