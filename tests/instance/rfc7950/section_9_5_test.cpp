// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.5: the boolean type.
#include "support/value.h"

namespace datatest {

TEST(Boolean, IsTrueOrFalse)
{
    EXPECT_TRUE(Takes("boolean", "true"));
    EXPECT_FALSE(Takes("boolean", "1"));
}

TEST(Boolean, IsWrittenInLowercase)
{
    EXPECT_TRUE(Reads("boolean", "true", "true"));
    EXPECT_TRUE(Reads("boolean", "false", "false"));
    for (const char *bad : {"", "True", "TRUE", "0", "yes", " true", "false "})
        EXPECT_FALSE(Takes("boolean", bad)) << bad;
}

} // namespace datatest
