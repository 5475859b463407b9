// RFC 7950, section 9.9: the leafref type.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Leafref, TakesTheValuesOfItsTarget)
{
    Schema schema("list l { key k; leaf k { type int8; } }"
                  " leaf r { type leafref { path \"../l/k\"; } }"
                  " leaf loose { type leafref { path \"/m:l/m:k\"; require-instance false; } }");
    EXPECT_THAT(schema.Check("<l><k>1</k></l><r>+1</r><loose>7</loose>"), IsEmpty());
    EXPECT_THAT(
        schema.Check("<l><k>1</k></l><r>2</r>"),
        ElementsAre(
            "data-missing[instance-required] /r: \"r\" refers to \"2\", which is not there"));
    EXPECT_THAT(
        schema.Check("<loose>x</loose>"),
        ElementsAre("invalid-value /loose: \"x\" is no value of \"loose\": it is no integer"));
}

TEST(Leafref, LooksIntoItsOwnEntry)
{
    Schema schema("list l { key k; leaf k { type string; } leaf-list v { type string; }"
                  "  leaf r { type leafref { path \"../v\"; } } }");
    EXPECT_THAT(schema.Check("<l><k>1</k><v>a</v><r>a</r></l><l><k>2</k><v>b</v></l>"), IsEmpty());
    EXPECT_EQ(schema.Check("<l><k>1</k><v>a</v><r>b</r></l><l><k>2</k><v>b</v></l>").size(), 1u);
}

} // namespace datatest
