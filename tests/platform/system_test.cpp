// SPDX-License-Identifier: Apache-2.0
#include "platform/system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zrschema/types.h>

#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "support/alloc.h"
#include "support/context.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// The base names of all matches in the order of the search.
std::vector<std::string> FindAll(const std::string &pattern, size_t pathSize = 256)
{
    std::vector<std::string> names;
    std::string path(pathSize, '\0');
    PalFind *find = PAL_VFS_FindFirst(pattern.c_str(), path.data(), pathSize);
    if (find == nullptr)
        return names;
    do {
        std::string found = path.c_str();
        EXPECT_EQ(found.substr(0, found.rfind('/')), pattern.substr(0, pattern.rfind('/')));
        names.push_back(found.substr(found.rfind('/') + 1));
    } while (PAL_VFS_FindNext(find, path.data(), pathSize) == ZR_OK);
    EXPECT_EQ(PAL_VFS_FindNext(find, path.data(), pathSize), ZR_ERR_NOT_FOUND);
    PAL_VFS_FindClose(find);
    return names;
}

class Files : public testing::Test {
protected:
    std::string Path(const std::string &name) const { return dir_.path() + "/" + name; }
    zrtest::TempDir dir_;
};

TEST_F(Files, AWholeFileIsReadInTheWayTheLoaderReadsIt)
{
    std::string path = dir_.Write("m.yin", "<module/>\n");
    PalFile *file = PAL_VFS_FOpen(path.c_str(), "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(PAL_VFS_SetBufMode(file, 1), ZR_OK);
    EXPECT_EQ(PAL_VFS_FSeek(file, 0, SEEK_END), 0);
    EXPECT_EQ(PAL_VFS_FTell(file), 10);
    EXPECT_EQ(PAL_VFS_FSeek(file, 0, SEEK_SET), 0);
    char buffer[11] = {};
    EXPECT_EQ(PAL_VFS_FRead(buffer, 1, 10, file), 10u);
    EXPECT_STREQ(buffer, "<module/>\n");
    EXPECT_EQ(PAL_VFS_FTell(file), 10);
    PAL_VFS_FClose(file);
}

TEST_F(Files, FReadCountsWholeItemsAndStopsAtTheEnd)
{
    std::string path = dir_.Write("f", "abcdefg");
    PalFile *file = PAL_VFS_FOpen(path.c_str(), "rb");
    ASSERT_NE(file, nullptr);
    char buffer[16] = {};
    EXPECT_EQ(PAL_VFS_FRead(buffer, 3, 5, file), 2u);
    EXPECT_EQ(PAL_VFS_FRead(buffer, 1, 16, file), 0u);
    EXPECT_EQ(PAL_VFS_FSeek(file, 2, SEEK_SET), 0);
    EXPECT_EQ(PAL_VFS_FRead(buffer, 1, 2, file), 2u);
    EXPECT_EQ(std::string(buffer, 2), "cd");
    EXPECT_EQ(PAL_VFS_FRead(buffer, 0, 2, file), 0u);
    EXPECT_EQ(PAL_VFS_FRead(buffer, SIZE_MAX, 2, file), 0u);
    PAL_VFS_FClose(file);
}

TEST_F(Files, FSeekBeforeTheBeginningFails)
{
    std::string path = dir_.Write("f", "abc");
    PalFile *file = PAL_VFS_FOpen(path.c_str(), "r");
    EXPECT_EQ(PAL_VFS_FSeek(file, -1, SEEK_SET), -1);
    PAL_VFS_FClose(file);
}

TEST_F(Files, PositionsBeyondFourGigabytesAreTold)
{
    constexpr int64_t kSize = int64_t{5} << 30;
    std::string path = dir_.Write("f", "a");
    std::filesystem::resize_file(path, uintmax_t{kSize}); // it takes no room
    EXPECT_EQ(PAL_VFS_IsFileExist(path.c_str()), 1u);
    PalFile *file = PAL_VFS_FOpen(path.c_str(), "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(PAL_VFS_FSeek(file, 0, SEEK_END), 0);
    EXPECT_EQ(PAL_VFS_FTell(file), kSize);
    EXPECT_EQ(PAL_VFS_FSeek(file, kSize - 1, SEEK_SET), 0);
    char buffer[2] = "x";
    EXPECT_EQ(PAL_VFS_FRead(buffer, 1, 2, file), 1u);
    EXPECT_EQ(buffer[0], '\0');
    PAL_VFS_FClose(file);
}

TEST_F(Files, AFileMayBeWrittenAfterSecondsNeedMoreThan32Bits)
{
    constexpr int64_t kIn2112 = 4485024000;
    std::string path = dir_.Write("f", "a");
    const timespec times[2] = {{kIn2112, 0}, {kIn2112, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    EXPECT_EQ(PAL_VFS_IsFileExist(path.c_str()), 1u);
    PalFile *file = PAL_VFS_FOpen(path.c_str(), "r");
    EXPECT_NE(file, nullptr);
    PAL_VFS_FClose(file);
}

TEST_F(Files, OnlyTheUnbufferedModeIsOffered)
{
    std::string path = dir_.Write("f", "abc");
    PalFile *file = PAL_VFS_FOpen(path.c_str(), "r");
    EXPECT_EQ(PAL_VFS_SetBufMode(file, 1), ZR_OK);
    EXPECT_EQ(PAL_VFS_SetBufMode(file, 0), ZR_ERR_INVALID);
    EXPECT_EQ(PAL_VFS_SetBufMode(nullptr, 1), ZR_ERR_INVALID);
    PAL_VFS_FClose(file);
}

TEST_F(Files, FOpenRefusesWhatIsNoRegularFile)
{
    EXPECT_EQ(PAL_VFS_FOpen(Path("missing").c_str(), "r"), nullptr);
    EXPECT_EQ(PAL_VFS_FOpen(dir_.path().c_str(), "r"), nullptr);
    EXPECT_EQ(PAL_VFS_FOpen("", "r"), nullptr);
    EXPECT_EQ(PAL_VFS_FOpen(nullptr, "r"), nullptr);
    EXPECT_EQ(PAL_VFS_FOpen("/dev/null", "r"), nullptr);
}

TEST_F(Files, FOpenOfAPipeFailsWithoutWaitingForAWriter)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(PAL_VFS_FOpen(Path("pipe").c_str(), "r"), nullptr);
}

TEST_F(Files, FOpenOffersNoModeThatWrites)
{
    std::string path = dir_.Write("f", "abc");
    EXPECT_EQ(PAL_VFS_FOpen(path.c_str(), "w"), nullptr);
    EXPECT_EQ(PAL_VFS_FOpen(path.c_str(), "r+"), nullptr);
    EXPECT_EQ(PAL_VFS_FOpen(path.c_str(), nullptr), nullptr);
}

TEST_F(Files, FOpenOfAFileThatMayNotBeReadFails)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "the superuser may read every file";
    std::string path = dir_.Write("f", "abc");
    chmod(path.c_str(), 0);
    EXPECT_EQ(PAL_VFS_FOpen(path.c_str(), "r"), nullptr);
}

TEST_F(Files, NullFilesAreAccepted)
{
    char buffer[1];
    EXPECT_EQ(PAL_VFS_FSeek(nullptr, 0, SEEK_SET), -1);
    EXPECT_LT(PAL_VFS_FTell(nullptr), 0);
    EXPECT_EQ(PAL_VFS_FRead(buffer, 1, 1, nullptr), 0u);
    PAL_VFS_FClose(nullptr);
    PAL_VFS_FindClose(nullptr);
    EXPECT_EQ(PAL_VFS_FindNext(nullptr, buffer, 1), ZR_ERR_NOT_FOUND);
}

TEST_F(Files, FOpenGivesNullAndKeepsNothingOpenWhenMemoryRunsOut)
{
    std::string path = dir_.Write("f", "abc");
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(PAL_VFS_FOpen(path.c_str(), "r"), nullptr);
    guard.Stop();
    PalFile *file = PAL_VFS_FOpen(path.c_str(), "r");
    EXPECT_NE(file, nullptr);
    PAL_VFS_FClose(file);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST_F(Files, ExistenceTellsFilesFromDirectories)
{
    std::string path = dir_.Write("f", "abc");
    EXPECT_EQ(PAL_VFS_IsFileExist(path.c_str()), 1u);
    EXPECT_EQ(PAL_VFS_IsDirExist(path.c_str()), 0u);
    EXPECT_EQ(PAL_VFS_IsFileExist(dir_.path().c_str()), 0u);
    EXPECT_EQ(PAL_VFS_IsDirExist(dir_.path().c_str()), 1u);
    EXPECT_EQ(PAL_VFS_IsFileExist(Path("missing").c_str()), 0u);
    EXPECT_EQ(PAL_VFS_IsDirExist(Path("missing").c_str()), 0u);
    EXPECT_EQ(PAL_VFS_IsFileExist(nullptr), 0u);
    EXPECT_EQ(PAL_VFS_IsDirExist(nullptr), 0u);
}

TEST_F(Files, ExistenceFollowsLinks)
{
    std::string path = dir_.Write("f", "abc");
    ASSERT_EQ(symlink(path.c_str(), Path("link").c_str()), 0);
    ASSERT_EQ(symlink(dir_.path().c_str(), Path("dirlink").c_str()), 0);
    ASSERT_EQ(symlink(Path("missing").c_str(), Path("dangling").c_str()), 0);
    EXPECT_EQ(PAL_VFS_IsFileExist(Path("link").c_str()), 1u);
    EXPECT_EQ(PAL_VFS_IsDirExist(Path("dirlink").c_str()), 1u);
    EXPECT_EQ(PAL_VFS_IsFileExist(Path("dangling").c_str()), 0u);
}

TEST_F(Files, FindCollectsTheRevisionsAndPartsOfAModule)
{
    for (const char *name : {"m.yin", "m@2021-01-01.yin", "m@@ext.yin", "mm@2021-01-01.yin",
                             "m@2021-01-01.yang", "m@x.yin.bak"})
        dir_.Write(name, "");
    EXPECT_THAT(FindAll(Path("m@*.yin")), UnorderedElementsAre("m@2021-01-01.yin", "m@@ext.yin"));
}

struct GlobRow {
    const char *glob;
    const char *name;
    bool matches;
};

TEST_F(Files, FindMatchesTheGlobAgainstTheWholeName)
{
    const GlobRow rows[] = {
        {"abc", "abc", true},     {"abc", "abcd", false},     {"a?c", "abc", true},
        {"a?c", "ac", false},     {"*", "anything", true},    {"a*", "a", true},
        {"*a", "banana", true},   {"*an", "banana", false},   {"b*na*a", "banana", true},
        {"b**a", "banana", true}, {"a*b*c", "aXbYbZc", true}, {"a*b*c", "aXbYbZ", false},
        {"[a]", "a", false},      {"[a]", "[a]", true},       {"a\\*", "a\\x", true},
        {"?", "ab", false},       {"*?", "a", true},
    };
    for (const GlobRow &row : rows) {
        zrtest::TempDir dir;
        dir.Write(row.name, "");
        EXPECT_EQ(FindAll(dir.path() + "/" + row.glob).size(), row.matches ? 1u : 0u)
            << row.glob << " " << row.name;
    }
}

TEST_F(Files, FindPassesOverTheDirectoryItselfAndItsParent)
{
    EXPECT_THAT(FindAll(Path("*")), IsEmpty());
    dir_.Write(".hidden", "");
    EXPECT_THAT(FindAll(Path("*")), ElementsAre(".hidden"));
}

TEST_F(Files, FindReadsWildcardsInTheLastPartOnly)
{
    dir_.Write("sub/f", "");
    EXPECT_THAT(FindAll(Path("s*/f")), IsEmpty());
    EXPECT_THAT(FindAll(Path("sub/*")), ElementsAre("f"));
}

TEST_F(Files, FindPassesOverAPathThatDoesNotFit)
{
    dir_.Write("m@1.yin", "");
    dir_.Write("m@1234567890.yin", "");
    size_t room = Path("m@1.yin").size() + 1;
    EXPECT_THAT(FindAll(Path("m@*.yin"), room), ElementsAre("m@1.yin"));
    EXPECT_THAT(FindAll(Path("m@*.yin"), room - 1), IsEmpty());
}

TEST_F(Files, FindIsNullWithoutAMatchADirectoryOrArguments)
{
    char path[256];
    EXPECT_EQ(PAL_VFS_FindFirst(Path("none*").c_str(), path, sizeof(path)), nullptr);
    EXPECT_EQ(PAL_VFS_FindFirst(Path("missing/*").c_str(), path, sizeof(path)), nullptr);
    EXPECT_EQ(PAL_VFS_FindFirst("", path, sizeof(path)), nullptr);
    EXPECT_EQ(PAL_VFS_FindFirst(nullptr, path, sizeof(path)), nullptr);
    EXPECT_EQ(PAL_VFS_FindFirst(Path("*").c_str(), nullptr, 0), nullptr);
}

TEST_F(Files, FindWorksInTheRootDirectory)
{
    char path[256];
    PalFind *find = PAL_VFS_FindFirst("/bi?", path, sizeof(path));
    ASSERT_NE(find, nullptr);
    EXPECT_STREQ(path, "/bin");
    PAL_VFS_FindClose(find);
}

TEST_F(Files, FindGivesEveryBlockBackAlsoWhenMemoryRunsOut)
{
    dir_.Write("f", "");
    zrtest::AllocGuard guard;
    char path[256];
    guard.FailAt(0);
    EXPECT_EQ(PAL_VFS_FindFirst(Path("*").c_str(), path, sizeof(path)), nullptr);
    guard.Stop();
    PAL_VFS_FindClose(PAL_VFS_FindFirst(Path("*").c_str(), path, sizeof(path)));
    EXPECT_EQ(PAL_VFS_FindFirst(Path("x").c_str(), path, sizeof(path)), nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

struct NumberRow {
    const char *text;
    double value;
};

TEST(SystimeGet, CountsSecondsSince1970)
{
    auto before = static_cast<uint32_t>(std::time(nullptr));
    uint32_t now = PAL_SystimeGet();
    auto after = static_cast<uint32_t>(std::time(nullptr));
    EXPECT_GE(now, before);
    EXPECT_LE(now, after);
}

} // namespace
