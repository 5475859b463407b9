// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 9.8: the binary type.
#include "support/value.h"

namespace datatest {

TEST(Binary, IsBase64WithALengthInOctets)
{
    EXPECT_TRUE(Reads("binary { length 3; }", "QU\nJD", "QUJD"));
    EXPECT_TRUE(Takes("binary { length 1; }", "QQ=="));
    for (const char *bad : {"QUI=", "QUJ", "Q===", "QU*D"})
        EXPECT_FALSE(Takes("binary { length 3; }", bad)) << bad;
}

TEST(Binary, IsPaddedToFourDigits)
{
    for (const char *good : {"", "QQ==", "QUI=", "QUJD", "QUJDRA==", "+/+/"})
        EXPECT_TRUE(Takes("binary", good)) << good;
    for (const char *bad : {"Q", "QQ", "QQ=", "QQ==QQ==", "=", "====", "QUJD=", "-_-_", "QU.D"})
        EXPECT_FALSE(Takes("binary", bad)) << bad;
}

TEST(Binary, HasTheLengthsOfAllItsTypedefs)
{
    const std::string base = "typedef t { type binary { length \"1..2 | 4\"; } }";
    EXPECT_TRUE(Takes("t { length \"2 | max\"; }", "QUI=", base));
    EXPECT_TRUE(Takes("t { length \"2 | max\"; }", "QUJDRA==", base));
    EXPECT_FALSE(Takes("t { length \"2 | max\"; }", "QQ==", base));
    EXPECT_FALSE(Takes("t { length \"2 | max\"; }", "QUJD", base));
}

} // namespace datatest
