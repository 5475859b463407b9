// SPDX-License-Identifier: Apache-2.0
#include "foundation/pattern.h"

#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include <string>
#include <thread>

namespace {

struct PatternRow {
    const char *text;
    const char *pattern;
    uint32_t status;
};

TEST(MatchStrWithPattern, MatchesTheWholeText)
{
    const PatternRow rows[] = {
        {"abc", "abc", ZR_OK},
        {"abc", "ab", ZR_ERR_INVALID},
        {"xabc", "abc", ZR_ERR_INVALID},
        {"", "", ZR_OK},
        {"", "a*", ZR_OK},
        {"a", "", ZR_ERR_INVALID},
        {"192.0.2.1", "[0-9]+(\\.[0-9]+){3}", ZR_OK},
        {"192.0.2", "[0-9]+(\\.[0-9]+){3}", ZR_ERR_INVALID},
        {"a^b$", "a^b$", ZR_OK}, // no anchors in this dialect
        {"\xc3\xa9", "\\p{L}", ZR_OK},
        {"\xc3\xa9", ".", ZR_OK},
        {"_x", "\\i\\c*", ZR_OK},
        {"5", "\\d", ZR_OK},
    };
    for (const PatternRow &row : rows)
        EXPECT_EQ(ZR_UTL_MatchStrWithPattern(row.text, row.pattern), row.status)
            << row.text << " " << row.pattern;
}

TEST(MatchStrWithPattern, Is22ForAPatternThatDoesNotCompile)
{
    for (const char *pattern : {"(", ")", "[a", "a{2,1}", "*", "\\", "[z-a]", "\\p{No_Such}"})
        EXPECT_EQ(ZR_UTL_MatchStrWithPattern("a", pattern), ZR_ERR_INVALID) << pattern;
}

TEST(MatchStrWithPattern, Is22WhereTheMatcherGivesUp)
{
    const char *pattern = "(x+x+)+y|(x+x+)+x";
    const std::string text(30, 'x');
    EXPECT_EQ(zr::MatchPattern(text.c_str(), pattern), zr::Match::Undecided);
    EXPECT_EQ(ZR_UTL_MatchStrWithPattern(text.c_str(), pattern), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_MatchStrWithPattern("xxx", pattern), ZR_OK);
}

TEST(MatchStrWithPattern, HasClassesInsideClassesUpToABoundThatKeepsTheStack)
{
    auto nested = [](uint32_t count) {
        std::string open;
        for (uint32_t i = 1; i < count; ++i)
            open += "[a-z-";
        return open + "[a]" + std::string(count - 1, ']');
    };
    EXPECT_EQ(ZR_UTL_MatchStrWithPattern("b", nested(2).c_str()), ZR_OK) << "[a-z-[a]]";
    EXPECT_EQ(ZR_UTL_MatchStrWithPattern("a", nested(2).c_str()), ZR_ERR_INVALID) << "[a-z-[a]]";
    bool outOfMemory = false;
    xmlRegexp *deepest = zr::CompilePattern(nested(64).c_str(), &outOfMemory);
    EXPECT_NE(deepest, nullptr);
    xmlRegFreeRegexp(deepest);
    for (uint32_t count : {65u, 1'000'000u}) {
        outOfMemory = true;
        EXPECT_EQ(zr::CompilePattern(nested(count).c_str(), &outOfMemory), nullptr) << count;
        EXPECT_FALSE(outOfMemory);
        EXPECT_EQ(ZR_UTL_MatchStrWithPattern("b", nested(count).c_str()), ZR_ERR_INVALID) << count;
    }
    std::string many;
    for (uint32_t i = 0; i < 200; ++i)
        many += "[a]\\[";
    std::string text;
    for (uint32_t i = 0; i < 200; ++i)
        text += "a[";
    EXPECT_EQ(ZR_UTL_MatchStrWithPattern(text.c_str(), many.c_str()), ZR_OK)
        << "beside each other, and escaped";
}

TEST(MatchStrWithPattern, Is22ForNull)
{
    EXPECT_EQ(ZR_UTL_MatchStrWithPattern(nullptr, "a"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_UTL_MatchStrWithPattern("a", nullptr), ZR_ERR_INVALID);
}

TEST(MatchStrWithPattern, PrintsNothingForABadPattern)
{
    testing::internal::CaptureStderr();
    ZR_UTL_MatchStrWithPattern("a", "(");
    std::thread([] { ZR_UTL_MatchStrWithPattern("a", "["); }).join();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

template <typename Error> void CountError(void *count, Error)
{
    ++*static_cast<int *>(count);
}

TEST(MatchStrWithPattern, LeavesTheApplicationsErrorHandlerInPlaceAndUncalled)
{
    int errors = 0;
    xmlSetStructuredErrorFunc(&errors, CountError);
    xmlStructuredErrorFunc handler = xmlStructuredError;
    ZR_UTL_MatchStrWithPattern("a", "(");
    EXPECT_EQ(xmlStructuredError, handler);
    EXPECT_EQ(xmlStructuredErrorContext, &errors);
    EXPECT_EQ(errors, 0);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

} // namespace
