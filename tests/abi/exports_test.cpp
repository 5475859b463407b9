// SPDX-License-Identifier: Apache-2.0
// What the shared library gives to the dynamic linker, and what it asks of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Lines(const std::string &command)
{
    std::vector<std::string> lines;
    FILE *pipe = popen(command.c_str(), "r");
    char buffer[4096];
    while (pipe != nullptr && fgets(buffer, sizeof(buffer), pipe) != nullptr) {
        lines.emplace_back(buffer);
        lines.back().pop_back();
    }
    if (pipe != nullptr)
        pclose(pipe);
    return lines;
}

// What the dynamic linker loads with a library, as readelf's lines.
std::vector<std::string> Needed(const std::string &library)
{
    std::vector<std::string> lines = Lines("readelf -d '" + library + "'");
    std::erase_if(lines,
                  [](const std::string &line) { return line.find("(NEEDED)") == line.npos; });
    return lines;
}

} // namespace

TEST(Exports, AreTheNamesThatTheHeadersDeclare)
{
    const std::string tool = "NM=" ZR_NM " " ZR_PYTHON " '" ZR_SOURCE_DIR "/tools/exported_names'";
    EXPECT_GT(Lines(tool).size(), 800u);
    EXPECT_THAT(Lines(tool + " '" ZR_LIBRARY "' 2>&1 || echo they differ"), testing::IsEmpty());
    EXPECT_THAT(Lines(tool + " '" ZR_YANG_LIBRARY "' ZR_YANG_API 2>&1 || echo they differ"),
                testing::IsEmpty());
    EXPECT_THAT(Lines(tool + " '" ZR_PATTERNS_LIBRARY "' ZR_PATTERNS_API 2>&1 || echo they differ"),
                testing::IsEmpty());
    EXPECT_THAT(Lines(tool + " '" ZR_DATA_LIBRARY "' ZR_DATA_API 2>&1 || echo they differ"),
                testing::IsEmpty());
}

TEST(Exports, TheLibraryNeedsLibxml2AndTheCLibraryOnly)
{
    const auto isNeeded =
        testing::AnyOf(testing::HasSubstr("[libxml2.so"), testing::HasSubstr("[libc.so"),
                       testing::HasSubstr("[ld-linux"), testing::HasSubstr("[libm.so"),
                       testing::HasSubstr("[libgcc_s.so"));
    std::vector<std::string> needed = Needed(ZR_LIBRARY);
    EXPECT_THAT(needed, testing::Contains(testing::HasSubstr("[libxml2.so")));
    EXPECT_THAT(needed, testing::Each(isNeeded));
}

TEST(Exports, TheLibrariesDoWithoutEachOtherButThatDataNeedsTheEngine)
{
    const auto isOurs = testing::HasSubstr("libzr");
    for (const char *library : {ZR_LIBRARY, ZR_YANG_LIBRARY, ZR_PATTERNS_LIBRARY})
        EXPECT_THAT(Needed(library), testing::Each(testing::Not(isOurs)));
    std::vector<std::string> needed = Needed(ZR_DATA_LIBRARY);
    std::erase_if(needed, [&](const std::string &line) { return !testing::Value(line, isOurs); });
    EXPECT_THAT(needed, testing::ElementsAre(testing::HasSubstr("[libzrschema.so")));
}

TEST(Exports, TheLibraryDoesNotTouchTheCxxHeap)
{
    const std::vector<std::string> used = Lines(ZR_NM " -D --undefined-only -P '" ZR_LIBRARY "'");
    EXPECT_THAT(used, testing::Contains(testing::StartsWith("xmlFreeDoc")));
    EXPECT_THAT(used, testing::Each(testing::Not(testing::ContainsRegex("^_Z(nw|na|dl|da)"))));
}
