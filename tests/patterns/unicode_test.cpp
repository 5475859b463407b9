// SPDX-License-Identifier: Apache-2.0
#include "patterns/unicode.h"

#include <gtest/gtest.h>
#include <libxml/chvalid.h>

namespace {

using namespace zr::patterns;

// libxml2 has the tables of the same edition of XML.
TEST(NameCharacters, AreThoseOfXml)
{
    CodeSet starts(NameStartChars()), all(NameChars());
    for (unsigned code = 0; code <= kLastCode; ++code) {
        bool starting =
            code == '_' || code == ':' || xmlIsBaseCharQ(code) || xmlIsIdeographicQ(code);
        bool following = code == '.' || code == '-' || xmlIsDigitQ(code) || xmlIsCombiningQ(code) ||
                         xmlIsExtenderQ(code);
        ASSERT_EQ(starts.Contains(code), starting) << code;
        ASSERT_EQ(all.Contains(code), starting || following) << code;
    }
}

TEST(Categories, AreKnownByTheirNames)
{
    for (std::string_view name : {"L", "Lu", "Nd", "C", "Cn", "Zs"})
        EXPECT_EQ(FindCategory(name), name);
    for (std::string_view name : {"", "X", "Cs", "lu", "Luu"}) // a surrogate is no character
        EXPECT_EQ(FindCategory(name), "") << name;
}

TEST(Blocks, AreKnownByTheirNames)
{
    EXPECT_EQ(FindBlock("BasicLatin"), (std::vector<CodeRange>{{0, 0x7F}}));
    EXPECT_EQ(FindBlock("Gothic"), (std::vector<CodeRange>{{0x10330, 0x1034F}}));
    EXPECT_EQ(FindBlock("PrivateUse").size(), 3u);
    EXPECT_EQ(FindBlock("Specials").size(), 2u);
    EXPECT_TRUE(FindBlock("Emoticons").empty()) << "of a later Unicode";
    EXPECT_TRUE(FindBlock("").empty());
}

} // namespace
