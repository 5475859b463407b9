#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "foundation/text.h"

namespace {

TEST(ConsumeIdentName, CountsLeadingIdentifierCharacters)
{
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("if:name"), 2u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("aZ09_-."), 7u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("9lives"), 6u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("-x"), 2u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort(""), 0u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort("/a"), 0u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort(" a"), 0u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort(nullptr), 0u);
}

TEST(ConsumeIdentName, KnowsExactlyTheAsciiLettersDigitsAndThreeSigns)
{
    std::string known = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    for (int ch = 1; ch < 256; ++ch) {
        const char text[] = {static_cast<char>(ch), '\0'};
        bool expected = known.find(text[0]) != std::string::npos;
        EXPECT_EQ(ZR_UTL_ConsumeIdentNameBestEffort(text), expected ? 1u : 0u) << ch;
    }
}

TEST(IsIdentifier, BeginsWithALetterOrUnderscore)
{
    for (const char *good : {"a", "Z", "_", "a1", "_-.", "xml", "if-name.x_9"})
        EXPECT_TRUE(zr::IsIdentifier(good)) << good;
    EXPECT_TRUE(zr::IsIdentifier(std::string(1000, 'a').c_str()));
    for (const char *bad : {"", "1a", "-a", ".a", "a b", "a:b", "a/b", "<x/>", "a\n", "\xC3\xA9"})
        EXPECT_FALSE(zr::IsIdentifier(bad)) << bad;
}

TEST(ConsumeIdentNameFromTail, FindsTheIdentifierThatEndsAtTheLength)
{
    const char *text = "/if:interface='x'";
    const char *stop = nullptr;
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 13, &stop), 9u);
    EXPECT_EQ(stop, text + 3);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 3, &stop), 2u);
    EXPECT_EQ(stop, text);
}

TEST(ConsumeIdentNameFromTail, StopsBeforeTheTextWhenAllOfItIsAnIdentifier)
{
    const char *text = "/name" + 1;
    const char *stop = nullptr;
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 4, &stop), 4u);
    EXPECT_EQ(stop, text - 1);
}

TEST(ConsumeIdentNameFromTail, ConsumesNothingWithoutAnIdentifier)
{
    const char *text = "/a/";
    const char *stop = nullptr;
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 3, &stop), 0u);
    EXPECT_EQ(stop, text + 2);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(text, 0, nullptr), 0u);
    EXPECT_EQ(ZR_UTL_ConsumeIdentNameFromTail(nullptr, 3, &stop), 0u);
    EXPECT_EQ(stop, nullptr);
}

TEST(ConsumeAllSpaceChar, PassesSpacesTabsAndLineFeedsOnly)
{
    EXPECT_STREQ(ZR_UTL_ConsumeAllSpaceChar(" \t\n x "), "x ");
    EXPECT_STREQ(ZR_UTL_ConsumeAllSpaceChar("\rx"), "\rx");
    EXPECT_STREQ(ZR_UTL_ConsumeAllSpaceChar("x"), "x");
    EXPECT_STREQ(ZR_UTL_ConsumeAllSpaceChar(""), "");
    EXPECT_EQ(ZR_UTL_ConsumeAllSpaceChar(nullptr), nullptr);
}

class PathStep : public testing::Test {
protected:
    PathStep()
    {
        std::memset(prefix_, 'x', sizeof(prefix_));
        std::memset(name_, 'x', sizeof(name_));
    }
    char prefix_[8];
    char name_[10];
};

struct NameRow {
    const char *source;
    uint32_t status;
    const char *name;
};

TEST_F(PathStep, NextNodeNameReadsOneNameUpToASlashOrTheEnd)
{
    const NameRow rows[] = {
        {"name", ZR_OK, "name"},
        {"name/rest", ZR_OK, "name"},
        {"", ZR_ERR_FAILED, ""},
        {"/name", ZR_ERR_FAILED, ""},
        {"name[1]", ZR_ERR_INVALID, ""},
        {"name:x", ZR_ERR_INVALID, ""},
        {"name x", ZR_ERR_INVALID, ""},
        {"123456789", ZR_OK, "123456789"},
        {"1234567890", ZR_ERR_OVERFLOW, ""},
    };
    for (const NameRow &row : rows) {
        EXPECT_EQ(ZR_UTL_GetXPathNextNodeName(row.source, name_, sizeof(name_)), row.status)
            << row.source;
        EXPECT_STREQ(name_, row.name) << row.source;
    }
    EXPECT_EQ(ZR_UTL_GetXPathNextNodeName(nullptr, name_, sizeof(name_)), ZR_ERR_FAILED);
}

struct PrefixRow {
    const char *source;
    uint32_t status;
    const char *prefix;
    const char *name;
};

TEST_F(PathStep, NextPrefixAndNodeReadsANameWithOrWithoutAPrefix)
{
    const PrefixRow rows[] = {
        {"a:b/c", ZR_OK, "a", "b"},
        {"b", ZR_OK, "", "b"},
        {"b/c", ZR_OK, "", "b"},
        {"a:b", ZR_OK, "a", "b"},
        {"a:b c", ZR_ERR_INVALID, "", ""},
        {"", ZR_ERR_FAILED, "", ""},
        {":b", ZR_ERR_FAILED, "", ""},
        {"/b", ZR_ERR_FAILED, "", ""},
        {"a:", ZR_ERR_FAILED, "", ""},
        {"a:/b", ZR_ERR_FAILED, "", ""},
        {"a:b:c", ZR_ERR_INVALID, "", ""},
        {"a[1]", ZR_ERR_INVALID, "", ""},
        {"a b", ZR_ERR_INVALID, "", ""},
        {"1234567:n", ZR_OK, "1234567", "n"},
        {"12345678:n", ZR_ERR_INVALID, "", ""},    // the prefix does not fit
        {"1234567890", ZR_ERR_INVALID, "", ""},    // the name does not fit
        {"p:1234567890", ZR_ERR_OVERFLOW, "", ""}, // the name after a prefix does not fit
        {"p:123456789", ZR_OK, "p", "123456789"},
    };
    for (const PrefixRow &row : rows) {
        EXPECT_EQ(ZR_UTL_GetXPathNextPrefixAndNode(row.source, prefix_, sizeof(prefix_), name_,
                                                   sizeof(name_)),
                  row.status)
            << row.source;
        EXPECT_STREQ(prefix_, row.prefix) << row.source;
        EXPECT_STREQ(name_, row.name) << row.source;
    }
}

struct RestRow {
    const char *source;
    const char *rest; // null for an error
};

TEST_F(PathStep, SkipPredicatesPassesAnyRunOfThem)
{
    const RestRow rows[] = {
        {"", ""},
        {"/b", "/b"},
        {"x", nullptr},
        {" ", nullptr},
        {"[a]", ""},
        {"[a]/b", "/b"},
        {"[a][b][c]/d", "/d"},
        {"[]", ""},
        {"[a]y", nullptr},
        {"[a", nullptr},
        {"[", nullptr},
        {"[a][b", nullptr},
        {"[a[b]]", nullptr},    // predicates do not nest
        {"[x=']']/b", nullptr}, // the first bracket closes, also inside a literal
        {"[x='/']/b", "/b"},
    };
    for (const RestRow &row : rows) {
        const char *rest = ZR_UTL_SkipPredicateParis(row.source);
        if (row.rest != nullptr) {
            EXPECT_STREQ(rest, row.rest) << row.source;
        } else {
            EXPECT_EQ(rest, nullptr) << row.source;
        }
    }
    EXPECT_EQ(ZR_UTL_SkipPredicateParis(nullptr), nullptr);
}

struct StepRow {
    const char *source;
    const char *rest; // null for an error
    const char *prefix;
    const char *name;
};

TEST_F(PathStep, PredicatedStepReadsNamesAndPassesPredicates)
{
    const StepRow rows[] = {
        {"if:interface[name='x']/if:mtu", "/if:mtu", "if", "interface"},
        {"interface", "", "", "interface"},
        {"if:mtu", "", "if", "mtu"},
        {"a/b", "/b", "", "a"},
        {"a[1][2]", "", "", "a"},
        {"x[a]y", nullptr, "", "x"},
        {"", nullptr, "", ""},
        {"/a", nullptr, "", ""},
        {"a b", nullptr, "", ""},
        {"p:", nullptr, "p", ""},
        {"p:a:b", nullptr, "p", ""},
        {"12345678:a", nullptr, "", ""},   // the prefix does not fit
        {"p:1234567890", nullptr, "", ""}, // the name does not fit
        {"1234567890", nullptr, "", ""},
        {"p:123456789/x", "/x", "p", "123456789"},
    };
    for (const StepRow &row : rows) {
        const char *rest = ZR_UTL_GetXPathNextPredicatedPrefixNode(
            row.source, prefix_, sizeof(prefix_), name_, sizeof(name_));
        if (row.rest != nullptr) {
            EXPECT_STREQ(rest, row.rest) << row.source;
        } else {
            EXPECT_EQ(rest, nullptr) << row.source;
        }
        EXPECT_STREQ(prefix_, row.prefix) << row.source;
        EXPECT_STREQ(name_, row.name) << row.source;
    }
    EXPECT_EQ(ZR_UTL_GetXPathNextPredicatedPrefixNode(nullptr, prefix_, sizeof(prefix_), name_,
                                                      sizeof(name_)),
              nullptr);
}

TEST_F(PathStep, APathIsWalkedStepByStep)
{
    const char *rest = "/m:a/b[k='1'][l='2']/n:c";
    std::string steps;
    while (*rest == '/') {
        rest = ZR_UTL_GetXPathNextPredicatedPrefixNode(rest + 1, prefix_, sizeof(prefix_), name_,
                                                       sizeof(name_));
        ASSERT_NE(rest, nullptr);
        steps += std::string(prefix_) + "|" + name_ + ";";
    }
    EXPECT_STREQ(rest, "");
    EXPECT_EQ(steps, "m|a;|b;n|c;");
}

TEST_F(PathStep, ABufferOfNoBytesIsNotTouched)
{
    EXPECT_EQ(ZR_UTL_GetXPathNextNodeName("a", nullptr, 0), ZR_ERR_OVERFLOW);
    EXPECT_EQ(ZR_UTL_GetXPathNextPrefixAndNode("a", nullptr, 0, nullptr, 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_GetXPathNextPredicatedPrefixNode("a", nullptr, 0, nullptr, 0), nullptr);
}

} // namespace
