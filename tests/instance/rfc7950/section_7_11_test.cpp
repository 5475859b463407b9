// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.11: the anyxml statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Anyxml, HoldsAnything)
{
    Schema schema("container c { anyxml x; }");
    EXPECT_THAT(schema.Check("<c><x>text <b xmlns=\"\"/> more</x></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><x/></c>"), IsEmpty());
}

TEST(Anyxml, StandsOnceAndIsMissedWhereItIsMandatory)
{
    Schema schema("container c { presence p; anyxml x { mandatory true; } }");
    EXPECT_THAT(schema.Check("<c/>"), ElementsAre("missing-element /c/x: \"x\" is missing"));
    EXPECT_THAT(schema.Check("<c><x/><x/></c>"), ElementsAre(StartsWith("bad-element /c/x: ")));
}

TEST(Anyxml, HasItsOwnConditions)
{
    Schema schema("container c { anyxml x { must '../v'; } leaf v { type int8; } }");
    EXPECT_THAT(schema.Check("<c><x/></c>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /c/x: ")));
}

} // namespace datatest
