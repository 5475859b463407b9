// SPDX-License-Identifier: Apache-2.0
#include "yang/base/source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::ReportsOf;
using zr::yang::CountCharacters;
using zr::yang::FindTextFault;

TEST(Utf8, AcceptsEveryLengthOfCharacter)
{
    EXPECT_EQ(FindTextFault("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80").what, nullptr);
    EXPECT_EQ(CountCharacters("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), 4u);
}

TEST(Utf8, RefusesOverlongFormsSurrogatesAndLooseBytes)
{
    for (const char *bad : {"\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\x80", "\xF8\x88\x80\x80",
                            "\xC3", "\xE2\x82", "\xF5\x80\x80\x80"})
        EXPECT_NE(FindTextFault(bad).what, nullptr) << bad;
}

TEST(Utf8, RefusesControlCharactersWhereverTheyStand)
{
    for (size_t length = 0; length < 24; ++length) {
        std::string text(length, 'a');
        EXPECT_EQ(FindTextFault(text + "\t\r\n").what, nullptr);
        EXPECT_EQ(FindTextFault(text + "\x01" + "bbbbbbbb").offset, length);
        EXPECT_NE(FindTextFault(text + "\x1F" + "bbbbbbbb").what, nullptr);
        EXPECT_EQ(FindTextFault(text + "\x7F").what, nullptr);
    }
}

TEST(Utf8, RefusesNonCharacters)
{
    EXPECT_NE(FindTextFault("\xEF\xB7\x90").what, nullptr);     // U+FDD0
    EXPECT_NE(FindTextFault("\xEF\xBF\xBE").what, nullptr);     // U+FFFE
    EXPECT_NE(FindTextFault("\xF0\x9F\xBF\xBF").what, nullptr); // U+1FFFF
    EXPECT_EQ(FindTextFault("\xEF\xBF\xBD").what, nullptr);     // U+FFFD
}

TEST(Utf8, IsReportedWithItsPlace)
{
    EXPECT_THAT(ReportsOf("\nleaf a { description \"\xE9t\xE9\"; }"),
                ElementsAre("2:23: error: the file is not UTF-8"));
    EXPECT_THAT(ReportsOf(std::string("\n\0", 2)),
                ElementsAre("2:1: error: the file is not a text"));
    EXPECT_THAT(ReportsOf("\n  \x02"),
                ElementsAre("2:3: error: a character that no YANG module may hold"));
}

TEST(Utf8, ColumnsCountCharacters)
{
    EXPECT_THAT(ReportsOf("\n/* \xC3\xA9\xC3\xA9 */ foo;"),
                ElementsAre("2:10: error: unknown statement \"foo\""));
}

TEST(Utf8, AByteOrderMarkIsPassedOver)
{
    yangtest::Preparation preparation;
    preparation.Add("m.yang", "\xEF\xBB\xBF" + yangtest::ModuleText("m", ""));
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_OK);
    EXPECT_THAT(preparation.reports(), IsEmpty());
}
