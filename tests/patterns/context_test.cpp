// SPDX-License-Identifier: Apache-2.0
// A context of the engine with this library's matcher.
#include <gtest/gtest.h>
#include <zrpatterns/zrpatterns.h>
#include <zrschema/zrschema.h>

#include <memory>
#include <string>

namespace {

// A context with a module "m" whose leaf "v" is a string of some patterns.
class Leaf {
public:
    explicit Leaf(const std::string &patterns, bool withMatcher = true)
    {
        const ZrPatternMatcher *matcher = withMatcher ? ZR_PATTERNS_GetMatcher() : nullptr;
        EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx_.get(), matcher), ZR_OK);
        std::string text = "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1' "
                           "xmlns:m='urn:m'><namespace uri='urn:m'/><prefix value='m'/>"
                           "<leaf name='v'><type name='string'>" +
                           patterns + "</type></leaf></module>";
        EXPECT_EQ(ZR_CTX_LoadMemory(ctx_.get(), text.c_str()), ZR_OK);
        node_ = ZR_CTX_GetTargetNode(ctx_.get(), "/m:v", nullptr);
    }
    uint32_t Check(const std::string &value) const
    {
        return ZR_NODE_ValidateValue(node_, ZR_VALUE_STRING, value.c_str());
    }

private:
    std::unique_ptr<ZrCtx, decltype(&ZR_CTX_Delete)> ctx_{ZR_CTX_Create(0), ZR_CTX_Delete};
    ZrNode *node_ = nullptr;
};

const std::string kInverted = "<modifier value='invert-match'/>";

TEST(ContextWithPatterns, TakesAndRefusesValuesByThem)
{
    Leaf leaf("<pattern value='[a-z]+'/><pattern value='x.*'>" + kInverted + "</pattern>");
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(leaf.Check("abc"), ZR_OK);
        EXPECT_EQ(leaf.Check("xyz"), ZR_ERR_VALUE_PATTERN);
        EXPECT_EQ(leaf.Check("ABC"), ZR_ERR_VALUE_PATTERN);
    }
}

TEST(ContextWithPatterns, LeavesToTheBuiltInMatcherWhatIsNoPatternOrTooLarge)
{
    for (bool withMatcher : {true, false}) {
        EXPECT_EQ(Leaf("<pattern value='[a-'/>", withMatcher).Check("a"), ZR_ERR_VALUE_PATTERN);
        EXPECT_EQ(Leaf("<pattern value='[a-'>" + kInverted + "</pattern>", withMatcher).Check("a"),
                  ZR_OK);
        Leaf counted("<pattern value='a{1500}'/>", withMatcher);
        EXPECT_EQ(counted.Check(std::string(1500, 'a')), ZR_OK);
        EXPECT_EQ(counted.Check(std::string(1499, 'a')), ZR_ERR_VALUE_PATTERN);
    }
}

TEST(ContextWithPatterns, RefusesWhatIsNoTextInvertedOrNotAsTheBuiltInMatcherDoes)
{
    for (bool withMatcher : {true, false}) {
        for (const char *value : {"a\xC3", "a\x01", "a\xED\xA0\x80", "a\xFF"}) {
            EXPECT_EQ(Leaf("<pattern value='a.*'/>", withMatcher).Check(value),
                      ZR_ERR_VALUE_PATTERN);
            EXPECT_EQ(
                Leaf("<pattern value='a.*b'>" + kInverted + "</pattern>", withMatcher).Check(value),
                ZR_ERR_VALUE_PATTERN);
        }
    }
}

// The built-in matcher gives up on such a value and refuses it.
TEST(ContextWithPatterns, DecidesWhatTheBuiltInMatcherDoesNot)
{
    const std::string pattern = "<pattern value='(x+x+)+y|(x+x+)+x'/>";
    EXPECT_EQ(Leaf(pattern).Check(std::string(30, 'x')), ZR_OK);
    EXPECT_EQ(Leaf(pattern, false).Check(std::string(30, 'x')), ZR_ERR_VALUE_PATTERN);
}

} // namespace
