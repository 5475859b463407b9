#include "foundation/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/memory.h"
#include "support/alloc.h"

namespace {

// Takes a new string, gives it back to the hook and returns its text; "(null)" for null.
std::string Taken(char *str)
{
    zr::Owned<char> block(str);
    return str != nullptr ? str : "(null)";
}

TEST(StrDup, CopiesTheText)
{
    const char *source = "interface";
    char *copy = ZR_UTL_StrDup(source);
    EXPECT_NE(copy, source);
    EXPECT_STREQ(copy, "interface");
    zr::Free(copy);
    EXPECT_EQ(Taken(ZR_UTL_StrDup("")), "");
    EXPECT_EQ(ZR_UTL_StrDup(nullptr), nullptr);
}

TEST(StrDupWithSpecifyLength, CopiesTheFirstCharacters)
{
    EXPECT_EQ(Taken(ZR_UTL_StrDupWithSpecifyLength("interface", 5)), "inter");
    EXPECT_EQ(Taken(ZR_UTL_StrDupWithSpecifyLength("interface", 9)), "interface");
}

TEST(StrDupWithSpecifyLength, IsNullForNullForLengthZeroAndBeyondTheEnd)
{
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength(nullptr, 1), nullptr);
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength("abc", 0), nullptr);
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength("abc", 4), nullptr);
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength("", 1), nullptr);
}

TEST(StringCopies, AreNullWhenMemoryRunsOutAndLeaveNothing)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZR_UTL_StrDup("a"), nullptr);
    guard.FailAt(0);
    EXPECT_EQ(ZR_UTL_StrDupWithSpecifyLength("a", 1), nullptr);
    guard.FailAt(0);
    EXPECT_EQ(ZR_UTL_CreateEmptyString(), nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(CreateEmptyString, IsAnEmptyString)
{
    EXPECT_EQ(Taken(ZR_UTL_CreateEmptyString()), "");
}

TEST(Strnchr, SearchesOnePositionMoreThanTheLimit)
{
    const char *text = "abc";
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'c', 1), nullptr);
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'c', 2), text + 2);
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'b', 0), nullptr);
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'b', 1), text + 1);
}

TEST(Strnchr, AlwaysLooksAtTheFirstPosition)
{
    const char *text = "abc";
    const char *empty = "";
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'a', 0), text);
    EXPECT_EQ(ZR_UTL_Strnchr(empty, '\0', 0), empty);
    EXPECT_EQ(ZR_UTL_Strnchr(empty, 'a', 5), nullptr);
}

TEST(Strnchr, StopsAtTheEndOfTheText)
{
    const char text[] = "ab\0c";
    EXPECT_EQ(ZR_UTL_Strnchr(text, 'c', 10), nullptr);
    EXPECT_EQ(ZR_UTL_Strnchr(text, '\0', 10), nullptr);
    EXPECT_EQ(ZR_UTL_Strnchr(nullptr, 'a', 10), nullptr);
}

TEST(Strnchr, FindsTheFirstOfSeveral)
{
    const char *text = "a/b/c";
    EXPECT_EQ(ZR_UTL_Strnchr(text, '/', 4), text + 1);
}

TEST(CountCharNumber, CountsOccurrences)
{
    EXPECT_EQ(ZR_UTL_CountCharNumber("a|b|c", '|'), 2u);
    EXPECT_EQ(ZR_UTL_CountCharNumber("||", '|'), 2u);
    EXPECT_EQ(ZR_UTL_CountCharNumber("abc", '|'), 0u);
    EXPECT_EQ(ZR_UTL_CountCharNumber("", '|'), 0u);
    EXPECT_EQ(ZR_UTL_CountCharNumber("abc", '\0'), 0u);
    EXPECT_EQ(ZR_UTL_CountCharNumber(nullptr, '|'), 0u);
}

TEST(IsNulStringEqual, TakesNullAsEqualToNullOnly)
{
    EXPECT_EQ(ZR_UTL_IsNulStringEqual(nullptr, nullptr), 1u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual(nullptr, ""), 0u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual("", nullptr), 0u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual("", ""), 1u);
}

TEST(IsNulStringEqual, ComparesByteForByte)
{
    std::string a = "abc";
    EXPECT_EQ(ZR_UTL_IsNulStringEqual(a.c_str(), "abc"), 1u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual("abc", "abC"), 0u);
    EXPECT_EQ(ZR_UTL_IsNulStringEqual("abc", "abcd"), 0u);
}

} // namespace
