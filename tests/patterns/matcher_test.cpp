// SPDX-License-Identifier: Apache-2.0
// The public functions of libzrpatterns.
#include <gtest/gtest.h>
#include <zrpatterns/zrpatterns.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

namespace {

// The n-th allocation of the C++ heap from now on fails, and every later one; none when negative.
thread_local long g_allocationsLeft = -1;

void *Allocate(size_t size)
{
    if (g_allocationsLeft == 0)
        throw std::bad_alloc();
    if (g_allocationsLeft > 0)
        --g_allocationsLeft;
    if (void *block = std::malloc(size != 0 ? size : 1))
        return block;
    throw std::bad_alloc();
}

} // namespace

// Of the leak sanitizer, where there is one.
extern "C" void __lsan_disable() __attribute__((weak));
extern "C" void __lsan_enable() __attribute__((weak));

void *operator new(size_t size)
{
    return Allocate(size);
}
void *operator new[](size_t size)
{
    return Allocate(size);
}
void operator delete(void *block) noexcept
{
    std::free(block);
}
void operator delete[](void *block) noexcept
{
    std::free(block);
}
void operator delete(void *block, size_t) noexcept
{
    std::free(block);
}
void operator delete[](void *block, size_t) noexcept
{
    std::free(block);
}

namespace {

using Owned = std::unique_ptr<ZrPattern, decltype(&ZR_PATTERNS_Free)>;

Owned Compile(const std::string &pattern)
{
    ZrPattern *compiled = nullptr;
    EXPECT_EQ(ZR_PATTERNS_Compile(pattern.c_str(), &compiled), ZR_PATTERNS_OK) << pattern;
    return {compiled, ZR_PATTERNS_Free};
}

bool Matches(const std::string &pattern, const std::string &value)
{
    uint32_t match = ZR_PATTERNS_Match(Compile(pattern).get(), value.c_str());
    EXPECT_NE(match, ZR_PATTERN_UNDECIDED) << pattern << " on " << value;
    return match == ZR_PATTERN_MATCH;
}

struct Row {
    const char *pattern;
    std::vector<const char *> good, bad;
};

const Row kRows[] = {
    {"[a-z]+", {"a", "abc"}, {"", "abc1", "1abc", "ABC", " abc", "abc\n"}},
    {"", {""}, {"a"}},
    {"a|b|", {"a", "b", ""}, {"ab", "c"}},
    {"ab|cd", {"ab", "cd"}, {"abd", "acd"}},
    {"^a$", {"^a$"}, {"a"}},
    {"a.c", {"abc", "a\tc", "a\xC3\xA9\x63"}, {"a\nc", "a\rc", "ac"}},
    {"a{2}", {"aa"}, {"a", "aaa"}},
    {"a{2,}", {"aa", "aaaaa"}, {"a"}},
    {"a{2,3}", {"aa", "aaa"}, {"a", "aaaa"}},
    {"a{0}", {""}, {"a"}},
    {"\\d", {"7", "\xD9\xA3"}, {"x", "\xC2\xB2"}}, // a digit of Arabic, but no superscript
    {"\\s", {" ", "\t", "\n", "\r"}, {"\xC2\xA0", "x"}},
    {"\\w", {"x", "7", "\xC3\xA9", "$", "+"}, {"-", ".", " ", "_"}},
    {"\\W", {"-", ".", " ", "_"}, {"x", "7", "$"}},
    {"\\i\\c*", {"x", "_x.-:1", ":", "\xC3\xA9\xC2\xB7"}, {"1", "-", "x y", "\xC3\x97"}},
    {"\\I", {"1", "-", "\xC3\x97"}, {"x", "_"}},
    {"\\p{Lu}\\P{Lu}", {"Ab", "\xC3\x89 "}, {"AB", "ab"}},
    {"\\p{IsGreek}", {"\xCE\xB1"}, {"a"}},
    {"\\P{IsBasicLatin}", {"\xCE\xB1"}, {"a"}},
    {"[\\P{L}]", {"1"}, {"a"}},
    {"[^\\P{L}]", {"a"}, {"1"}},
    {"[a-z-[aeiou]]", {"b", "z"}, {"a", "u", "A"}},
    {"[^a-z-[0-9]]", {"A", "-"}, {"b", "5"}},
    {"[\\w-[\\d_]]", {"a", "$"}, {"5", "_"}},
    {"[\\-a]", {"-", "a"}, {"\\"}},
    {"[a-]", {"-", "a"}, {"b"}},
    {"[.*+?$(){}|]+", {".*+?$(){}|"}, {"a", "\\"}},
    {"[\\]\\[\\^\\\\]+", {"][^\\"}, {"a"}},
    {"\xF0\x9F\x98\x80", {"\xF0\x9F\x98\x80"}, {"\xF0\x9F\x98\x81"}},
};

TEST(Pattern, MatchesTheWholeOfAValueAsXmlSchemaSays)
{
    for (const Row &row : kRows) {
        for (const char *good : row.good)
            EXPECT_TRUE(Matches(row.pattern, good)) << row.pattern << " on " << good;
        for (const char *bad : row.bad)
            EXPECT_FALSE(Matches(row.pattern, bad)) << row.pattern << " on " << bad;
    }
}

TEST(Pattern, IsUndecidedForWhatIsNoTextOfXml)
{
    Owned any = Compile("[^x]*");
    for (const char *value : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xC0\x80", "\x01", "\xEF\xBF\xBF"})
        EXPECT_EQ(ZR_PATTERNS_Match(any.get(), value), ZR_PATTERN_UNDECIDED);
    EXPECT_EQ(ZR_PATTERNS_Match(nullptr, ""), ZR_PATTERN_UNDECIDED);
    EXPECT_EQ(ZR_PATTERNS_Match(any.get(), nullptr), ZR_PATTERN_UNDECIDED);
}

uint32_t StatusOf(const std::string &pattern)
{
    auto *compiled = reinterpret_cast<ZrPattern *>(1);
    uint32_t status = ZR_PATTERNS_Compile(pattern.c_str(), &compiled);
    EXPECT_EQ(compiled == nullptr, status != ZR_PATTERNS_OK) << pattern;
    if (status == ZR_PATTERNS_OK)
        ZR_PATTERNS_Free(compiled);
    return status;
}

TEST(Pattern, IsRefusedWithTheReason)
{
    ZrPattern *compiled = nullptr;
    EXPECT_EQ(ZR_PATTERNS_Compile(nullptr, &compiled), ZR_PATTERNS_ERR_INVALID);
    EXPECT_EQ(ZR_PATTERNS_Compile("a", nullptr), ZR_PATTERNS_ERR_INVALID);
    EXPECT_EQ(StatusOf("[a-"), ZR_PATTERNS_ERR_FAULTY);
    EXPECT_EQ(StatusOf("a**"), ZR_PATTERNS_ERR_FAULTY);
    EXPECT_EQ(StatusOf("a{1000}"), ZR_PATTERNS_OK);
    EXPECT_EQ(StatusOf("a{1001}"), ZR_PATTERNS_ERR_TOO_LARGE);
    EXPECT_EQ(StatusOf("(a{50}){50}"), ZR_PATTERNS_ERR_TOO_LARGE);
    EXPECT_EQ(StatusOf("\\w{1,200}"), ZR_PATTERNS_OK);
    EXPECT_EQ(StatusOf("\\p{L}{1,1000}"), ZR_PATTERNS_ERR_TOO_LARGE) << "by its instructions";
    ZR_PATTERNS_Free(nullptr);
}

// While one lives, so many allocations are there. RE2 does not give back what it had when memory
// ran out, which is not held against the library.
class ScarceMemory {
public:
    explicit ScarceMemory(long allocations)
    {
        if (__lsan_disable != nullptr)
            __lsan_disable();
        g_allocationsLeft = allocations;
    }
    ~ScarceMemory()
    {
        g_allocationsLeft = -1;
        if (__lsan_enable != nullptr)
            __lsan_enable();
    }
    ScarceMemory(const ScarceMemory &) = delete;
    ScarceMemory &operator=(const ScarceMemory &) = delete;
};

// Compiles with memory for 0, 1, 2 ... allocations, or for ever more of them, until it is enough.
void CompileWithTooLittleMemory(const char *pattern, long step)
{
    long allocations = 0;
    for (uint32_t status = ZR_PATTERNS_ERR_NO_MEMORY; status != ZR_PATTERNS_OK;
         allocations += 1 + allocations / step) {
        ZrPattern *compiled = nullptr;
        {
            ScarceMemory scarce(allocations);
            status = ZR_PATTERNS_Compile(pattern, &compiled);
        }
        ASSERT_TRUE(status == ZR_PATTERNS_OK || status == ZR_PATTERNS_ERR_NO_MEMORY) << status;
        ZR_PATTERNS_Free(compiled);
    }
    EXPECT_GT(allocations, 50);
}

TEST(Pattern, ComesToAnEndWhereverMemoryRunsOut)
{
    CompileWithTooLittleMemory("([a-z]{1,3}\\.)+[^b-]*|\\p{Sm}", 1000000);
    CompileWithTooLittleMemory("[\\p{P}-[-]]", 1); // each time it looks through all characters
}

TEST(Pattern, IsUndecidedWhereMemoryRunsOutAndDecidesAgainLater)
{
    // With more than one way through it, so that matching needs memory.
    Owned pattern = Compile("((ab|a|b)*\\.)+[0-9]*");
    const std::string value = "ab.a.b.abbbbaabababab.77";
    long undecided = 0;
    for (long allocations = 0; allocations < 60; ++allocations) {
        uint32_t match = ZR_PATTERN_NO_MATCH;
        {
            ScarceMemory scarce(allocations);
            match = ZR_PATTERNS_Match(pattern.get(), value.c_str());
        }
        EXPECT_NE(match, ZR_PATTERN_NO_MATCH);
        undecided += match == ZR_PATTERN_UNDECIDED;
        ASSERT_EQ(ZR_PATTERNS_Match(Compile("a.c").get(), "abc"), ZR_PATTERN_MATCH);
    }
    EXPECT_GT(undecided, 0);
    EXPECT_EQ(ZR_PATTERNS_Match(pattern.get(), value.c_str()), ZR_PATTERN_MATCH);
}

// libxml2's matcher would try the ways to part such a value for longer than anyone waits.
TEST(Pattern, DecidesWhatMakesOthersTryForever)
{
    std::string value(100000, 'x');
    EXPECT_FALSE(Matches("(x+x+)+y", value));
    EXPECT_TRUE(Matches("(x+x+)+y", value + "y"));
    EXPECT_FALSE(Matches("(x*)*y|(.*.*)*z", value));
}

TEST(Pattern, IsMatchedByAnyNumberOfThreads)
{
    Owned pattern = Compile("([a-z]+\\.)*[a-z]+");
    std::vector<std::thread> threads;
    for (int number = 0; number < 8; ++number)
        threads.emplace_back([&pattern, number] {
            for (int time = 0; time < 500; ++time) {
                std::string value(static_cast<size_t>(1 + time % 40),
                                  static_cast<char>('a' + number));
                value += ".com";
                EXPECT_EQ(ZR_PATTERNS_Match(pattern.get(), value.c_str()), ZR_PATTERN_MATCH);
                EXPECT_EQ(ZR_PATTERNS_Match(pattern.get(), ("." + value).c_str()),
                          ZR_PATTERN_NO_MATCH);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
}

TEST(Matcher, IsARecordOfTheSameFunctions)
{
    const ZrPatternMatcher *matcher = ZR_PATTERNS_GetMatcher();
    void *form = nullptr;
    ASSERT_EQ(matcher->compile("a+", matcher->userData, &form), ZR_OK);
    EXPECT_EQ(matcher->match(form, "aa", matcher->userData), ZR_PATTERN_MATCH);
    EXPECT_EQ(matcher->match(form, "b", matcher->userData), ZR_PATTERN_NO_MATCH);
    matcher->release(form, matcher->userData);
    EXPECT_EQ(matcher->compile("a**", matcher->userData, &form), ZR_PATTERNS_ERR_FAULTY);
    EXPECT_EQ(form, nullptr);
}

} // namespace
