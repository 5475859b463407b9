// SPDX-License-Identifier: Apache-2.0
#include "patterns/utf8.h"

#include <gtest/gtest.h>

namespace {

using namespace zr::patterns;

TEST(Utf8, ComesBackFromItsBytes)
{
    for (char32_t code = 0; code <= 0x10FFFF; ++code) {
        std::string text;
        Append(text, code);
        size_t length = 0;
        bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
        ASSERT_EQ(Decode(text, length), isSurrogate ? kNoCode : code);
        ASSERT_EQ(length, text.size());
    }
}

TEST(Utf8, IsRefusedWhereBytesAreMissingOrWrong)
{
    for (std::string_view bytes : {"\x80", "\xC3", "\xC3z", "\xE2\x82", "\xE2\x82z", "\xC0\x80",
                                   "\xE0\x80\x80", "\xF4\x90\x80\x80", "\xFF", "\xED\xA0\x80"}) {
        size_t length = 0;
        EXPECT_EQ(Decode(bytes, length), kNoCode) << bytes;
        EXPECT_FALSE(IsXmlText(std::string("a").append(bytes))) << bytes;
    }
}

TEST(XmlText, HasTheCharactersOfXml)
{
    for (std::string_view text :
         {"", "abc", "\t\r\n \x7F", "\xC3\xA9 \xE4\xB8\x80 \xF0\x9F\x98\x80"})
        EXPECT_TRUE(IsXmlText(text)) << text;
    for (std::string_view text : {"\x01", "a\x1F", "\xC3\xA9\x0B", "\xEF\xBF\xBE", "\xEF\xBF\xBF"})
        EXPECT_FALSE(IsXmlText(text)) << text;
}

} // namespace
