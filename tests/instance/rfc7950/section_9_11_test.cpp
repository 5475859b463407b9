// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.11: the empty type.
#include "support/value.h"

namespace datatest {

TEST(Empty, TakesNoText)
{
    EXPECT_TRUE(Takes("empty", ""));
    EXPECT_FALSE(Takes("empty", " "));
}

TEST(Empty, SaysItsNameAlone)
{
    Schema schema("container c { leaf enable-qos { type empty; } must 'enable-qos'; }");
    EXPECT_TRUE(schema.Check("<c><enable-qos/></c>").empty());
    EXPECT_TRUE(schema.Check("<c><enable-qos></enable-qos></c>").empty());
    EXPECT_FALSE(schema.Check("<c/>").empty());
    for (const char *bad : {"true", "0", "\n", "<x/>"})
        EXPECT_FALSE(Takes("empty", bad)) << bad;
}

} // namespace datatest
