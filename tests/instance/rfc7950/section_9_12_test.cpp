// RFC 7950, section 9.12: the union type.
#include "support/value.h"

namespace datatest {

TEST(Union, TakesTheFirstMemberThatFits)
{
    EXPECT_TRUE(Reads("union { type int8; type string; }", "+5", "5"));
    EXPECT_TRUE(Reads("union { type int8; type string; }", "+500", "+500"));
    EXPECT_FALSE(Takes("union { type int8; type boolean; }", "500"));
}

TEST(Union, KeepsTheRangesOfItsMembers)
{
    const std::string base = "typedef t { type int8 { range \"-5..5\"; } }"
                             " typedef s { type string { length \"2..4\"; } }";
    const std::string type = "union { type t { range \"0..max\"; } type s { length \"3..max\"; } }";
    EXPECT_TRUE(Takes(type, "0", base));
    EXPECT_TRUE(Takes(type, "5", base));
    EXPECT_TRUE(Takes(type, "abcd", base));
    for (const char *bad : {"6", "-1", "ab", "abcde"})
        EXPECT_FALSE(Takes(type, bad, base)) << bad;
}

} // namespace datatest
