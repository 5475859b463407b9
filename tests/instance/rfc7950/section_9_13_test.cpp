// RFC 7950, section 9.13: the instance-identifier type.
#include "support/value.h"

namespace datatest {

TEST(InstanceIdentifier, LeadsToANodeOfTheSchema)
{
    const std::string list = "list l { key k; leaf k { type string; } leaf a { type string; } }";
    EXPECT_TRUE(Takes("instance-identifier", "/m:l[ m:k = 'x' ]/m:a", list));
    for (const char *bad : {"", "l", "/l", "/m:none", "/m:l[m:k]", "/x:l", "/m:l/"})
        EXPECT_FALSE(Takes("instance-identifier", bad, list)) << bad;
}

} // namespace datatest
