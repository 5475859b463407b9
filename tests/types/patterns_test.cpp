// SPDX-License-Identifier: Apache-2.0
#include "support/alloc.h"
#include "support/matcher.h"
#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using namespace zrtest;

// What is accepted and refused does not depend on whether compiled patterns are kept.
class Pattern : public testing::TestWithParam<uint32_t> {
protected:
    // The status of the second check of a value, which must be that of the first.
    static uint32_t Check(const Leaf &leaf, const char *value)
    {
        uint32_t first = leaf.Check(value);
        EXPECT_EQ(leaf.Check(value), first);
        return first;
    }
    static Leaf WithFlags(const std::string &type, const std::string &definitions = "")
    {
        return Leaf(type, definitions, GetParam());
    }
};
INSTANTIATE_TEST_SUITE_P(Options, Pattern, testing::Values(0u, uint32_t{ZR_CTX_KEEP_PATTERNS}),
                         [](const auto &flags) {
                             return flags.param == 0 ? "Default" : "KeepPatterns";
                         });

std::string String(const std::string &patterns)
{
    return zrtest::yin::Type("string", patterns);
}

TEST_P(Pattern, MatchesTheWholeValue)
{
    Leaf leaf = WithFlags(String("<pattern value=\"[a-z]+\"/>"));
    EXPECT_EQ(Check(leaf, "abc"), ZR_OK);
    for (const char *bad : {"", "abc1", "1abc", "ABC", " abc", "abc\n"})
        EXPECT_EQ(Check(leaf, bad), ZR_ERR_VALUE_PATTERN) << bad;
}

TEST_P(Pattern, OfSeveralAllHaveToMatch)
{
    Leaf leaf = WithFlags(String("<pattern value=\"a.*\"/><pattern value=\".*z\"/>"));
    EXPECT_EQ(Check(leaf, "a-z"), ZR_OK);
    EXPECT_EQ(Check(leaf, "a-y"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(Check(leaf, "b-z"), ZR_ERR_VALUE_PATTERN);
}

TEST_P(Pattern, WithInvertMatchMustNotMatch)
{
    Leaf leaf =
        WithFlags(String("<pattern value=\"[xX][mM][lL].*\"><modifier value=\"invert-match\"/>"
                         "</pattern><pattern value=\"[a-zA-Z]*\"/>"));
    EXPECT_EQ(Check(leaf, "abc"), ZR_OK);
    EXPECT_EQ(Check(leaf, "xmlabc"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(Check(leaf, "abc1"), ZR_ERR_VALUE_PATTERN);
}

TEST_P(Pattern, ThatDoesNotCompileRefusesEverything)
{
    Leaf leaf = WithFlags(String("<pattern value=\"[a-\"/>"));
    EXPECT_EQ(Check(leaf, "a"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(Check(leaf, ""), ZR_ERR_VALUE_PATTERN);
}

TEST_P(Pattern, ThatDoesNotCompileAcceptsEverythingWhenInverted)
{
    Leaf leaf =
        WithFlags(String("<pattern value=\"[a-\"><modifier value=\"invert-match\"/></pattern>"));
    EXPECT_EQ(Check(leaf, "a"), ZR_OK);
    EXPECT_EQ(Check(leaf, ""), ZR_OK);
}

TEST_P(Pattern, RefusesANullValueEvenWhenInverted)
{
    EXPECT_EQ(Check(WithFlags(String("<pattern value=\".*\"/>")), nullptr), ZR_ERR_VALUE_PATTERN);
    Leaf inverted =
        WithFlags(String("<pattern value=\"a\"><modifier value=\"invert-match\"/></pattern>"));
    EXPECT_EQ(Check(inverted, nullptr), ZR_ERR_VALUE_PATTERN);
}

// The matcher tries the ways to part such a text between two "+" until it gives up.
const std::string kHardPattern = "(x+x+)+y|(x+x+)+x";
const std::string kHardText(30, 'x');

TEST_P(Pattern, ThatIsNotDecidedRefusesTheValueInvertedOrNot)
{
    for (const char *modifier : {"", "<modifier value=\"invert-match\"/>"}) {
        Leaf leaf =
            WithFlags(String("<pattern value=\"" + kHardPattern + "\">" + modifier + "</pattern>"));
        EXPECT_EQ(leaf.Check(kHardText.c_str()), ZR_ERR_VALUE_PATTERN) << modifier;
        EXPECT_EQ(Check(leaf, "z"), *modifier != '\0' ? ZR_OK : ZR_ERR_VALUE_PATTERN) << modifier;
    }
}

TEST_P(Pattern, OfTypedefsAllHaveToMatch)
{
    Leaf leaf =
        WithFlags("<type name=\"t\"><pattern value=\".{3}\"/></type>",
                  "<typedef name=\"t\">" + String("<pattern value=\"[a-z]*\"/>") + "</typedef>");
    EXPECT_EQ(Check(leaf, "abc"), ZR_OK);
    EXPECT_EQ(Check(leaf, "ab"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(Check(leaf, "ab1"), ZR_ERR_VALUE_PATTERN);
}

TEST_P(Pattern, IsCheckedOnEveryBaseType)
{
    Leaf leaf = WithFlags("<type name=\"int32\"><pattern value=\"[0-9]{2}\"/></type>");
    EXPECT_EQ(Check(leaf, "12"), ZR_OK);
    EXPECT_EQ(Check(leaf, "123"), ZR_ERR_VALUE_PATTERN);
}

TEST(PatternBody, OfNoPatternsTakesEverything)
{
    ZrtConsPattern body = {};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(
        ZRT_CONS_ValidateValueNodeAgainstDataPattern(&body, ZR_VALUE_STRING, "x", &validation),
        ZR_OK);
}

TEST(PatternCopy, MatchesNormallyWhereTheSourceIsInverted)
{
    Leaf leaf(String("<pattern value=\"a+\"><modifier value=\"invert-match\"/></pattern>"));
    EXPECT_EQ(leaf.Check("aa"), ZR_ERR_VALUE_PATTERN);
    ZrtRealType *copy = ZRT_TYPE_CopyZrtRealType(leaf.context(), leaf.type());
    ASSERT_NE(copy, nullptr);
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(copy, ZR_VALUE_STRING, "aa", &validation),
              ZR_OK);
    validation = {};
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(copy, ZR_VALUE_STRING, "b", &validation),
              ZR_ERR_VALUE_PATTERN);
    ZRT_TYPE_DestroyZrtRealType(leaf.context(), copy);
}

uint64_t AllocationsOfOneCheck(const Leaf &leaf, const char *value)
{
    XmlAllocGuard allocations;
    EXPECT_EQ(leaf.Check(value), ZR_OK);
    return allocations.Count();
}

TEST(KeptPattern, IsCompiledByTheFirstValueAlone)
{
    Leaf leaf(String("<pattern value=\"[a-z]+\"/>"), "", ZR_CTX_KEEP_PATTERNS);
    EXPECT_GT(AllocationsOfOneCheck(leaf, "abc"), 0u);
    EXPECT_EQ(AllocationsOfOneCheck(leaf, "xyz"), 0u);
}

TEST(KeptPattern, IsNotWhatAContextDoesByDefault)
{
    Leaf leaf(String("<pattern value=\"[a-z]+\"/>"));
    uint64_t first = AllocationsOfOneCheck(leaf, "abc");
    EXPECT_GT(first, 0u);
    EXPECT_EQ(AllocationsOfOneCheck(leaf, "xyz"), first);
}

TEST(KeptPattern, CostsOneBlockOfPointersForItsType)
{
    AllocGuard alloc;
    TestContext ctx(ZR_CTX_KEEP_PATTERNS);
    ASSERT_EQ(ctx.LoadBody("m", "<leaf name=\"v\">" +
                                    String("<pattern value=\"[a-z]+\"/><pattern value=\".*\"/>") +
                                    "</leaf>"),
              ZR_OK);
    ZrNode *node = ctx.Node("/m:v");
    int64_t blocks = alloc.LiveBlocks();
    for (const char *value : {"abc", "1", "xyz"})
        ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, value);
    EXPECT_EQ(alloc.LiveBlocks(), blocks + 1);
}

TEST(KeptPattern, GoesWithItsType)
{
    AllocGuard alloc;
    TestContext ctx(ZR_CTX_KEEP_PATTERNS);
    ASSERT_EQ(ctx.LoadBody("n", ""), ZR_OK); // what a first module brings about
    ASSERT_EQ(ZR_CTX_UnloadModule(ctx, "n"), ZR_OK);
    int64_t blocks = alloc.LiveBlocks();
    std::string body = "<leaf name=\"v\">" + String("<pattern value=\"[a-z]+\"/>") + "</leaf>";
    ASSERT_EQ(ctx.LoadBody("m", body), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(ctx.Node("/m:v"), ZR_VALUE_STRING, "abc"), ZR_OK);
    ASSERT_EQ(ZR_CTX_UnloadModule(ctx, "m"), ZR_OK);
    EXPECT_EQ(alloc.LiveBlocks(), blocks);
}

TEST(KeptPattern, ThatCannotBeKeptForWantOfMemoryIsCompiledForTheValue)
{
    AllocGuard alloc;
    Leaf leaf(String("<pattern value=\"[a-z]+\"/>"), "", ZR_CTX_KEEP_PATTERNS);
    alloc.FailAt(0, true);
    EXPECT_EQ(leaf.Check("abc"), ZR_OK);
    EXPECT_EQ(leaf.Check("1"), ZR_ERR_VALUE_PATTERN);
    alloc.Stop();
    EXPECT_EQ(leaf.Check("abc"), ZR_OK);
}

TEST(KeptPattern, IsNotTakenOverByACopyOfItsType)
{
    Leaf leaf(String("<pattern value=\"[a-z]+\"/>"), "", ZR_CTX_KEEP_PATTERNS);
    EXPECT_EQ(leaf.Check("abc"), ZR_OK);
    ZrtRealType *copy = ZRT_TYPE_CopyZrtRealType(leaf.context(), leaf.type());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(static_cast<const ZrtConsPattern *>(copy->constraints[0].body)->compiled, nullptr);
    ZRT_TYPE_DestroyZrtRealType(leaf.context(), copy);
}

// The last allocation only makes the compiled form smaller: libxml2 goes on without it.
TEST(PatternWithoutMemory, IsTakenForNoMatchEvenWhenInverted)
{
    for (const char *modifier : {"", "<modifier value=\"invert-match\"/>"}) {
        Leaf leaf(String(std::string("<pattern value=\"[a-z]+\">") + modifier + "</pattern>"));
        const char *good = *modifier == '\0' ? "abc" : "1";
        uint64_t allocations = AllocationsOfOneCheck(leaf, good);
        XmlAllocGuard memory;
        memory.FailAt(allocations - 1);
        EXPECT_EQ(leaf.Check(good), ZR_ERR_VALUE_PATTERN) << modifier;
        EXPECT_TRUE(memory.Stop());
    }
}

TEST(KeptPattern, ThatDoesNotCompileIsTriedOnceForAValueAsByDefault)
{
    const std::string type = String("<pattern value=\"[a-\"><modifier value=\"invert-match\"/>"
                                    "</pattern>");
    EXPECT_EQ(AllocationsOfOneCheck(Leaf(type, "", ZR_CTX_KEEP_PATTERNS), "a"),
              AllocationsOfOneCheck(Leaf(type), "a"));
}

TEST(KeptPattern, ThatLibxml2LacksMemoryForIsCompiledAgainForTheValue)
{
    Leaf leaf(String("<pattern value=\"[a-z]+\"/>"), "", ZR_CTX_KEEP_PATTERNS);
    uint64_t allocations =
        AllocationsOfOneCheck(Leaf(String("<pattern value=\"[a-z]+\"/>")), "abc");
    {
        XmlAllocGuard memory;
        memory.FailAt(allocations - 1);
        EXPECT_EQ(leaf.Check("abc"), ZR_OK);
        EXPECT_GT(memory.Count(), allocations);
        EXPECT_TRUE(memory.Stop());
        EXPECT_EQ(leaf.Check("abc"), ZR_OK);
    }
    EXPECT_EQ(AllocationsOfOneCheck(leaf, "abc"), 0u);
}

TEST(KeptPattern, AcceptsNothingWhenMatchingRunsOutOfMemory)
{
    // With more than one way through them, so that matching has to remember where it was.
    Leaf leaf(String("<pattern value=\"(a|ab)(c|bcd)*\"/><pattern value=\"(x|xy)(z|yz)*\">"
                     "<modifier value=\"invert-match\"/></pattern>"),
              "", ZR_CTX_KEEP_PATTERNS);
    ASSERT_EQ(leaf.Check("abcd"), ZR_OK);
    XmlAllocGuard guard;
    uint64_t points = zrtest::FailEachAllocation(
        guard,
        [&](zrtest::FailPoint &memory) {
            uint32_t status = memory.Run([&] { return leaf.Check("abcd"); });
            EXPECT_EQ(status, memory.Failed() ? ZR_ERR_VALUE_PATTERN : ZR_OK);
        },
        true);
    EXPECT_GT(points, 0u);
}

// A leaf of patterns in a context with a matcher from outside, with and without the option.
class OutsideMatcher : public testing::TestWithParam<uint32_t> {
protected:
    OutsideMatcher() : ctx_(GetParam())
    {
        ZrPatternMatcher record = matcher_;
        EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx_, &record), ZR_OK);
        record = {}; // it was copied
    }
    void Load(const std::string &patterns)
    {
        ASSERT_EQ(ctx_.LoadBody("m", "<leaf name=\"v\">" + String(patterns) + "</leaf>"), ZR_OK);
    }
    uint32_t Check(const char *value)
    {
        return ZR_NODE_ValidateValue(ctx_.Node("/m:v"), ZR_VALUE_STRING, value);
    }

    EqualityMatcher matcher_;
    TestContext ctx_;
};
INSTANTIATE_TEST_SUITE_P(Options, OutsideMatcher,
                         testing::Values(0u, uint32_t{ZR_CTX_KEEP_PATTERNS}),
                         [](const auto &flags) {
                             return flags.param == 0 ? "Default" : "KeepPatterns";
                         });

TEST_P(OutsideMatcher, DecidesInPlaceOfTheBuiltInOne)
{
    Load("<pattern value=\"[a-z]+\"/>");
    EXPECT_EQ(Check("[a-z]+"), ZR_OK);
    EXPECT_EQ(Check("abc"), ZR_ERR_VALUE_PATTERN);
}

TEST_P(OutsideMatcher, CompilesAPatternOnceForAllValues)
{
    Load("<pattern value=\"a\"/><pattern value=\"a\"/>");
    EXPECT_EQ(matcher_.asked(), 0) << "loading compiles nothing";
    for (int time = 0; time < 3; ++time)
        EXPECT_EQ(Check("a"), ZR_OK);
    EXPECT_EQ(matcher_.compiled(), 2);
    EXPECT_EQ(matcher_.matched(), 6);
}

TEST_P(OutsideMatcher, LeavesInversionToTheType)
{
    Load("<pattern value=\"a\"><modifier value=\"invert-match\"/></pattern>");
    EXPECT_EQ(Check("a"), ZR_ERR_VALUE_PATTERN);
    EXPECT_EQ(Check("b"), ZR_OK);
}

TEST_P(OutsideMatcher, LeavesWhatItRefusesToTheBuiltInOne)
{
    Load("<pattern value=\"refuse[0-9]\"/><pattern value=\"refuse7\"/>");
    for (int time = 0; time < 3; ++time) {
        EXPECT_EQ(Check("refuse7"), ZR_OK);
        EXPECT_EQ(Check("refuse8"), ZR_ERR_VALUE_PATTERN);
    }
    EXPECT_EQ(matcher_.asked(), 2) << "it is not asked again";
    EXPECT_EQ(matcher_.matched(), 0);
}

TEST_P(OutsideMatcher, RefusesWhatIsNotDecidedInvertedOrNot)
{
    for (const char *modifier : {"", "<modifier value=\"invert-match\"/>"}) {
        for (const char *pattern : {"open", "short"}) {
            SCOPED_TRACE(std::string(pattern) + modifier);
            Load("<pattern value=\"" + std::string(pattern) + "\">" + modifier + "</pattern>");
            EXPECT_EQ(Check(pattern), ZR_ERR_VALUE_PATTERN);
            EXPECT_EQ(Check("x"), ZR_ERR_VALUE_PATTERN);
            ASSERT_EQ(ZR_CTX_UnloadModule(ctx_, "m"), ZR_OK);
        }
    }
}

TEST_P(OutsideMatcher, IsAskedAgainAfterMemoryRanOut)
{
    Load("<pattern value=\"short\"/>");
    for (int time = 1; time <= 3; ++time) {
        Check("short");
        EXPECT_EQ(matcher_.asked(), time);
    }
}

TEST_P(OutsideMatcher, RefusesAValueWhenThereIsNoMemoryForItsForms)
{
    AllocGuard alloc;
    Load("<pattern value=\"a\"/>");
    alloc.FailAt(0, true);
    EXPECT_EQ(Check("a"), ZR_ERR_VALUE_PATTERN);
    alloc.Stop();
    EXPECT_EQ(Check("a"), ZR_OK);
}

TEST_P(OutsideMatcher, GetsItsFormsBackWithTheirType)
{
    Load("<pattern value=\"a\"/><pattern value=\"refuse\"/>");
    Check("a");
    EXPECT_EQ(matcher_.live(), 1);
    ASSERT_EQ(ZR_CTX_UnloadModule(ctx_, "m"), ZR_OK);
    EXPECT_EQ(matcher_.live(), 0);
}

TEST_P(OutsideMatcher, CompilesForACopyAnew)
{
    Load("<pattern value=\"a\"/>");
    EXPECT_EQ(Check("a"), ZR_OK);
    ZrNode *leaf = ctx_.Node("/m:v");
    ZrtRealType *copy = ZRT_TYPE_CopyZrtRealType(ctx_, ZR_NODE_GetRealType(leaf));
    ASSERT_NE(copy, nullptr);
    ZrtValidateCtx validation = {};
    validation.ctx = ctx_;
    EXPECT_EQ(ZRT_TYPE_ValidateValueNodeAgainstRealType(copy, ZR_VALUE_STRING, "a", &validation),
              ZR_OK);
    EXPECT_EQ(matcher_.live(), 2);
    ZRT_TYPE_DestroyZrtRealType(ctx_, copy);
    EXPECT_EQ(matcher_.live(), 1);
}

TEST(ContextWithoutMatcher, HoldsNothingForOne)
{
    AllocGuard alloc;
    TestContext ctx;
    int64_t blocks = alloc.LiveBlocks();
    EqualityMatcher matcher;
    ZrPatternMatcher record = matcher;
    ASSERT_EQ(ZR_CTX_SetPatternMatcher(ctx, &record), ZR_OK);
    EXPECT_EQ(alloc.LiveBlocks(), blocks + 1);
    ASSERT_EQ(ZR_CTX_SetPatternMatcher(ctx, nullptr), ZR_OK);
    EXPECT_EQ(alloc.LiveBlocks(), blocks);
}

} // namespace
