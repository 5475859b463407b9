// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.19: the extension statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Extension, ThatIsNotKnownHereChangesNothingOfTheData)
{
    Schema schema("extension note { argument text; }"
                  " container c { m:note \"of c\"; leaf a { m:note x { m:note y; } type int8;"
                  "  mandatory true; } }");
    EXPECT_THAT(schema.Check("<c><a>1</a></c>"), IsEmpty());
    EXPECT_THAT(schema.Check(""), ElementsAre("missing-element /c/a: \"a\" is missing"));
    EXPECT_THAT(schema.Check("<c><a>1</a><note/></c>"),
                ElementsAre(StartsWith("unknown-element /c/note: ")));
}

} // namespace datatest
