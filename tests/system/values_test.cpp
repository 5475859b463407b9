// SPDX-License-Identifier: Apache-2.0
// Values: what a leaf takes, which rule refuses the rest, and which type it was that took a value.
#include <libxml/parser.h>

#include <cstring>

#include "application.h"

namespace {

class Values : public Application {
protected:
    void SetUp() override { Start(); }
};

TEST_F(Values, AreRefusedWithTheStatusOfTheRuleThatTheyBreak)
{
    Have("box", R"(
        <identity name='wood'/>
        <identity name='oak'><base name='wood'/></identity>
        <leaf name='size'><type name='uint8'><range value='1..100'/></type></leaf>
        <leaf name='label'><type name='string'><length value='1..5'/><pattern value='[a-z]*'/></type></leaf>
        <leaf name='state'><type name='enumeration'><enum name='open'/><enum name='shut'/></type></leaf>
        <leaf name='marks'><type name='bits'><bit name='up'/><bit name='wet'/></type></leaf>
        <leaf name='lid'><type name='boolean'/></leaf>
        <leaf name='picture'><type name='binary'/></leaf>
        <leaf name='rope'><type name='empty'/></leaf>
        <leaf name='price'><type name='decimal64'><fraction-digits value='2'/></type></leaf>
        <leaf name='wood'><type name='identityref'><base name='wood'/></type></leaf>
        <leaf name='either'><type name='union'><type name='uint8'/><type name='boolean'/></type></leaf>
        <leaf name='same'><type name='leafref'><path value='/box:size'/></type></leaf>)");
    const struct {
        const char *leaf, *good, *bad;
        ZrStatus status;
    } rows[] = {
        {"size", "100", "101", ZR_ERR_VALUE_RANGE},
        {"size", "+7", "seven", ZR_ERR_VALUE_RANGE},
        {"label", "abc", "abcdef", ZR_ERR_VALUE_LENGTH},
        {"label", "abc", "ABC", ZR_ERR_VALUE_PATTERN},
        {"state", "open", "ajar", ZR_ERR_VALUE_ENUM},
        {"marks", "wet up", "dry", ZR_ERR_VALUE_BITS},
        {"lid", "true", "yes", ZR_ERR_VALUE_BOOLEAN},
        {"picture", "AAEC", "!", ZR_ERR_VALUE_BINARY},
        {"rope", "", "knot", ZR_ERR_VALUE_EMPTY},
        {"price", "9.99", "9.999", ZR_ERR_VALUE_RANGE},
        {"wood", "box:oak", "box:steel", ZR_ERR_VALUE_IDENTITY},
        {"either", "true", "maybe", ZR_ERR_VALUE_UNION},
        {"same", "100", "101", ZR_ERR_VALUE_RANGE}, // as its target
    };
    for (const auto &row : rows) {
        EXPECT_EQ(Check(std::string("/box:") + row.leaf, row.good), ZR_OK) << row.leaf;
        EXPECT_EQ(Check(std::string("/box:") + row.leaf, row.bad), row.status) << row.bad;
    }
}

TEST_F(Values, OfANodeWithoutATypeAreInvalid)
{
    Have("box", "<container name='box'/>");
    EXPECT_EQ(Check("/box:box", "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ValidateValue(nullptr, ZR_VALUE_STRING, "1"), ZR_ERR_INVALID);
}

TEST_F(Values, AreHeldAgainstEveryTypedefOfTheChain)
{
    Have("box", R"(
        <typedef name='size'><type name='uint8'><range value='1..100'/></type></typedef>
        <typedef name='even'><type name='size'><range value='min..50'/></type></typedef>
        <leaf name='size'><type name='even'/></leaf>)");
    EXPECT_EQ(Check("/box:size", "50"), ZR_OK);
    EXPECT_EQ(Check("/box:size", "51"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(Check("/box:size", "0"), ZR_ERR_VALUE_RANGE) << "\"min\" is the typedef's";
}

TEST_F(Values, OfAUnionLeadToTheMemberThatTookThem)
{
    Have("box", R"(
        <leaf name='either'><type name='union'><type name='uint8'/><type name='string'/></type></leaf>)");
    ZrNode *either = Node("/box:either");
    auto taker = [&](const char *value) {
        return ZR_TYPE_GetBuiltInBaseType(
            ZR_NODE_FindRealTypeMatchedValue(either, ZR_VALUE_STRING, value));
    };
    EXPECT_EQ(taker("255"), ZRT_TYPE_UINT8);
    EXPECT_EQ(taker("256"), ZRT_TYPE_STRING);
}

TEST_F(Values, OfAnElementFindTheirModulesByTheElementsNamespaces)
{
    Have("wood", "<identity name='wood'/><identity name='oak'><base name='wood'/></identity>");
    Have("box", R"(
        <import module='wood'><prefix value='w'/></import>
        <leaf name='wood'><type name='identityref'><base name='w:wood'/></type></leaf>)");
    auto check = [&](const char *xml) {
        xmlDoc *document = xmlParseDoc(reinterpret_cast<const xmlChar *>(xml));
        uint32_t status =
            ZR_NODE_ValidateValue(Node("/box:wood"), ZR_VALUE_XML, xmlDocGetRootElement(document));
        xmlFreeDoc(document);
        return status;
    };
    EXPECT_EQ(check("<wood xmlns='urn:box' xmlns:any='urn:wood'>any:oak</wood>"), ZR_OK);
    EXPECT_EQ(check("<wood xmlns='urn:box' xmlns:any='urn:box'>any:oak</wood>"),
              ZR_ERR_VALUE_IDENTITY);
    EXPECT_EQ(Check("/box:wood", "wood:oak"), ZR_OK) << "a string names the module";
}

TEST_F(Values, AreTakenAndRefusedAlikeWherePatternsAreKept)
{
    ZR_CTX_Delete(ctx_);
    Start(ZR_CTX_KEEP_PATTERNS);
    Have("box", "<leaf name='label'><type name='string'><pattern value='[a-z]+'/></type></leaf>");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Check("/box:label", "abc"), ZR_OK);
        EXPECT_EQ(Check("/box:label", "ABC"), ZR_ERR_VALUE_PATTERN);
    }
}

// A matcher for which a pattern is the first letters of a value; it compiles nothing but "abc".
uint32_t TakeAbc(const char *pattern, void *, void **formOut)
{
    if (std::strcmp(pattern, "abc") != 0)
        return ZR_ERR_INVALID;
    *formOut = const_cast<char *>(pattern);
    return ZR_OK;
}

uint32_t StartsWith(const void *form, const char *value, void *)
{
    const char *start = static_cast<const char *>(form);
    return std::strncmp(value, start, std::strlen(start)) == 0 ? ZR_PATTERN_MATCH
                                                               : ZR_PATTERN_NO_MATCH;
}

void CountRelease(void *, void *userData)
{
    ++*static_cast<int *>(userData);
}

TEST_F(Values, AreMatchedByTheApplicationsMatcherWhereItTakesThePattern)
{
    int released = 0;
    const ZrPatternMatcher matcher = {TakeAbc, StartsWith, CountRelease, &released};
    ASSERT_EQ(ZR_CTX_SetPatternMatcher(ctx_, &matcher), ZR_OK);
    Have("box", "<leaf name='label'><type name='string'><pattern value='abc'/></type></leaf>"
                "<leaf name='size'><type name='string'><pattern value='[0-9]+'/></type></leaf>");
    EXPECT_EQ(Check("/box:label", "abcdef"), ZR_OK);
    EXPECT_EQ(Check("/box:label", "ab"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(Check("/box:size", "42"), ZR_OK);
    EXPECT_EQ(Check("/box:size", "large"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx_, nullptr), ZR_ERR_INVALID) << "a module is loaded";
    ASSERT_EQ(Unload("box"), ZR_OK);
    EXPECT_EQ(released, 1);
}

} // namespace
