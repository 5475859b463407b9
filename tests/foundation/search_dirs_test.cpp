// SPDX-License-Identifier: Apache-2.0
#include "foundation/search_dirs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "bare_context.h"
#include "platform/memory.h"
#include "support/alloc.h"
#include "support/context.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Dirs(const ZrCtx *ctx)
{
    return {ctx->searchDirs, ctx->searchDirs + ctx->searchDirCount};
}

std::string Formatted(const char *path)
{
    zr::Owned<char> formatted(ZR_CTX_FormatInputPath(path));
    return formatted ? formatted.get() : "(null)";
}

class SearchDirs : public zrtest::BareContextTest {
protected:
    SearchDirs()
    {
        for (const char *name : {"a", "b", "c"})
            std::filesystem::create_directory(dir_.path() + "/" + name);
        a_ = dir_.path() + "/a";
        b_ = dir_.path() + "/b";
        c_ = dir_.path() + "/c";
    }
    void AddAll()
    {
        for (const std::string *dir : {&a_, &b_, &c_})
            ASSERT_EQ(ZR_CTX_SetSearchDir(ctx_, dir->c_str()), ZR_OK);
    }
    zrtest::TempDir dir_;
    std::string a_, b_, c_;
};

TEST(FormatInputPath, RemovesTheSlashesAtTheEndButALeadingOne)
{
    EXPECT_EQ(Formatted("/a/b///"), "/a/b");
    EXPECT_EQ(Formatted("/a/b"), "/a/b");
    EXPECT_EQ(Formatted("/tmp/"), "/tmp");
    EXPECT_EQ(Formatted("/"), "/");
    EXPECT_EQ(Formatted("///"), "/");
}

TEST(FormatInputPath, NormalisesNothingElse)
{
    EXPECT_EQ(Formatted("/a//b/./c/../d/"), "/a//b/./c/../d");
}

TEST(FormatInputPath, RefusesARelativePath)
{
    EXPECT_EQ(Formatted("relative/dir"), "(null)");
    EXPECT_EQ(Formatted("."), "(null)");
    EXPECT_EQ(Formatted(""), "(null)");
    EXPECT_EQ(Formatted(nullptr), "(null)");
}

TEST(FormatInputPath, IsNullWhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZR_CTX_FormatInputPath("/a"), nullptr);
}

TEST_F(SearchDirs, AreKeptInTheOrderInWhichTheyWereAdded)
{
    ASSERT_EQ(ZR_CTX_SetSearchDir(ctx_, b_.c_str()), ZR_OK);
    ASSERT_EQ(ZR_CTX_SetSearchDir(ctx_, a_.c_str()), ZR_OK);
    EXPECT_THAT(Dirs(ctx_), ElementsAre(b_, a_));
}

TEST_F(SearchDirs, AreStoredWithoutTheSlashAtTheEnd)
{
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, "/tmp/"), ZR_OK);
    EXPECT_THAT(Dirs(ctx_), ElementsAre("/tmp"));
}

TEST_F(SearchDirs, AreNotAddedTwiceAndKeepTheirPlace)
{
    AddAll();
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, a_.c_str()), ZR_OK);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, (a_ + "//").c_str()), ZR_OK);
    EXPECT_THAT(Dirs(ctx_), ElementsAre(a_, b_, c_));
}

TEST_F(SearchDirs, ARelativePathIs20)
{
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, "relative/dir"), ZR_ERR_BAD_DIR);
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, "relative/dir"), ZR_ERR_BAD_DIR);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, ""), ZR_ERR_BAD_DIR);
    EXPECT_THAT(Dirs(ctx_), IsEmpty());
}

TEST_F(SearchDirs, ADirectoryThatDoesNotExistIs20)
{
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, (dir_.path() + "/none").c_str()), ZR_ERR_BAD_DIR);
    std::string file = dir_.Write("file", "");
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, file.c_str()), ZR_ERR_BAD_DIR);
    EXPECT_THAT(Dirs(ctx_), IsEmpty());
}

TEST_F(SearchDirs, ANullArgumentIs22)
{
    EXPECT_EQ(ZR_CTX_SetSearchDir(nullptr, "/tmp"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_UpdateSearchDirAgainstTbl(nullptr, "/tmp", 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_UpdateSearchDirAgainstTbl(ctx_, nullptr, 0), ZR_ERR_BAD_DIR);
    EXPECT_EQ(ZR_CTX_AllocSearchDirBufferIfNeed(nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_AppendSearchDirToTbl(nullptr, "/tmp"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_AppendSearchDirToTbl(ctx_, nullptr), ZR_ERR_INVALID);
    EXPECT_THAT(Dirs(ctx_), IsEmpty());
}

TEST_F(SearchDirs, CloseRanksWhenOneIsRemoved)
{
    AddAll();
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, (a_ + "/").c_str()), ZR_OK);
    EXPECT_THAT(Dirs(ctx_), ElementsAre(b_, c_));
    EXPECT_EQ(ctx_->searchDirs[2], nullptr);
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, c_.c_str()), ZR_OK);
    EXPECT_THAT(Dirs(ctx_), ElementsAre(b_));
    EXPECT_EQ(ctx_->searchDirCapacity, 3u);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, a_.c_str()), ZR_OK);
    EXPECT_THAT(Dirs(ctx_), ElementsAre(b_, a_));
}

TEST_F(SearchDirs, RemovingOneThatIsNotInTheListIs0)
{
    AddAll();
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, "/tmp"), ZR_OK);
    EXPECT_THAT(Dirs(ctx_), ElementsAre(a_, b_, c_));
}

TEST_F(SearchDirs, OneThatVanishedFromDiskCannotBeRemovedAlone)
{
    AddAll();
    std::filesystem::remove(b_);
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, b_.c_str()), ZR_ERR_BAD_DIR);
    EXPECT_THAT(Dirs(ctx_), ElementsAre(a_, b_, c_));
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, nullptr), ZR_OK);
    EXPECT_THAT(Dirs(ctx_), IsEmpty());
}

TEST_F(SearchDirs, RemovingAllKeepsTheArrayAndItsCapacity)
{
    AddAll();
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, nullptr), ZR_OK);
    EXPECT_EQ(ctx_->searchDirCount, 0u);
    EXPECT_EQ(ctx_->searchDirCapacity, 3u);
    for (uint32_t i = 0; i < 3; ++i)
        EXPECT_EQ(ctx_->searchDirs[i], nullptr);
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(ctx_, nullptr), ZR_OK);
    AddAll();
    EXPECT_THAT(Dirs(ctx_), ElementsAre(a_, b_, c_));
}

TEST_F(SearchDirs, UnsettingInANullContextDoesNothing)
{
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(nullptr, "/tmp"), ZR_OK);
    EXPECT_EQ(ZR_CTX_UnSetSearchDir(nullptr, nullptr), ZR_OK);
}

TEST_F(SearchDirs, AreFoundByTheirExactText)
{
    AddAll();
    EXPECT_EQ(ZR_CTX_FindSearchDirInTbl(ctx_, a_.c_str()), 0);
    EXPECT_EQ(ZR_CTX_FindSearchDirInTbl(ctx_, c_.c_str()), 2);
    EXPECT_EQ(ZR_CTX_FindSearchDirInTbl(ctx_, (c_ + "/").c_str()), -1);
    EXPECT_EQ(ZR_CTX_FindSearchDirInTbl(ctx_, nullptr), -1);
    EXPECT_EQ(ZR_CTX_FindSearchDirInTbl(nullptr, "/tmp"), -1);
}

TEST_F(SearchDirs, ClearingAPositionBeyondTheListChangesNothing)
{
    AddAll();
    ZR_CTX_ClearSearchDirAtPos(ctx_, 3);
    ZR_CTX_ClearSearchDirAtPos(nullptr, 0);
    EXPECT_THAT(Dirs(ctx_), ElementsAre(a_, b_, c_));
}

TEST_F(SearchDirs, TheArrayGrowsByOneSlot)
{
    for (uint32_t count = 1; count <= 3; ++count) {
        EXPECT_EQ(ZR_CTX_AllocSearchDirBufferIfNeed(ctx_), ZR_OK);
        EXPECT_EQ(ZR_CTX_AllocSearchDirBufferIfNeed(ctx_), ZR_OK);
        EXPECT_EQ(ctx_->searchDirCapacity, count);
        EXPECT_EQ(ctx_->searchDirs[count - 1], nullptr);
        EXPECT_EQ(ZR_CTX_AppendSearchDirToTbl(ctx_, ("/" + std::to_string(count)).c_str()), ZR_OK);
    }
    EXPECT_THAT(Dirs(ctx_), ElementsAre("/1", "/2", "/3"));
}

int g_reallocCalls = 0;

void *CountingRealloc(void *block, size_t size)
{
    ++g_reallocCalls;
    return std::realloc(block, size);
}

TEST_F(SearchDirs, TheArrayGrowsThroughTheReallocHookFromTheSecondSlotOn)
{
    ZrReallocFunc saved = g_zrMemReAllocFunc;
    g_zrMemReAllocFunc = CountingRealloc;
    g_reallocCalls = 0;
    ZR_CTX_SetSearchDir(ctx_, a_.c_str());
    EXPECT_EQ(g_reallocCalls, 0);
    ZR_CTX_SetSearchDir(ctx_, b_.c_str());
    EXPECT_EQ(g_reallocCalls, 1);
    ZR_CTX_SetSearchDir(ctx_, c_.c_str());
    EXPECT_EQ(g_reallocCalls, 2);
    g_zrMemReAllocFunc = saved;
}

TEST_F(SearchDirs, AnEntryIsNotPutIntoASlotThatIsTaken)
{
    AddAll();
    ZR_CTX_UnSetSearchDir(ctx_, c_.c_str());
    const char *kept = ctx_->searchDirs[1];
    ctx_->searchDirs[2] = kept;
    EXPECT_EQ(ZR_CTX_AppendSearchDirToTbl(ctx_, c_.c_str()), ZR_ERR_INVALID);
    EXPECT_EQ(ctx_->searchDirCount, 2u);
    ctx_->searchDirs[2] = nullptr;
}

TEST(SearchDirsMemory, AddingFailsCleanlyWhenAnyAllocationFails)
{
    zrtest::AllocGuard guard;
    ZrCtx *ctx = ZR_CTX_Create(0);
    // The copy of the path, the slot, the dictionary's entry and its text.
    const uint32_t expected[] = {ZR_ERR_BAD_DIR, ZR_ERR_NO_MEMORY, ZR_ERR_INVALID, ZR_ERR_INVALID};
    for (uint64_t n = 0; n < 4; ++n) {
        guard.FailAt(n);
        EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, "/tmp"), expected[n]) << n;
        EXPECT_EQ(ctx->searchDirCount, 0u);
        // The slot that was had before the dictionary failed is kept, so have it anew.
        zr::Free(ctx->searchDirs);
        ctx->searchDirs = nullptr;
        ctx->searchDirCapacity = 0;
    }
    guard.Stop();
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, "/tmp"), ZR_OK);
    EXPECT_EQ(guard.Count(), 4u);
    guard.FailAt(1);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, "/"), ZR_ERR_NO_MEMORY) << "the array could not grow";
    EXPECT_THAT(Dirs(ctx), ElementsAre("/tmp"));
    guard.Stop();
    zrtest::DestroyBareContext(ctx);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

using CurYinFile = zrtest::BareContextTest;

TEST_F(CurYinFile, IsTheBaseNameOfThePath)
{
    ZR_CTX_SetCurYinFile(ctx_, "/a/b/m.yin");
    EXPECT_STREQ(ZR_CTX_GetCurYinFile(ctx_), "m.yin");
    ZR_CTX_SetCurYinFile(ctx_, "n.yin");
    EXPECT_STREQ(ZR_CTX_GetCurYinFile(ctx_), "n.yin");
    ZR_CTX_SetCurYinFile(ctx_, "/a/b/");
    EXPECT_STREQ(ZR_CTX_GetCurYinFile(ctx_), "");
}

TEST_F(CurYinFile, OfABaseNameOf256CharactersOrMoreIsEmpty)
{
    std::string longest(255, 'm');
    ZR_CTX_SetCurYinFile(ctx_, ("/a/" + longest).c_str());
    EXPECT_EQ(ZR_CTX_GetCurYinFile(ctx_), longest);
    ZR_CTX_SetCurYinFile(ctx_, ("/a/" + longest + "x").c_str());
    EXPECT_STREQ(ZR_CTX_GetCurYinFile(ctx_), "");
}

TEST_F(CurYinFile, IsEmptyAfterClearingAndAfterANullPath)
{
    ZR_CTX_SetCurYinFile(ctx_, "m.yin");
    ZR_CTX_ClearCurYinFile(ctx_);
    EXPECT_STREQ(ZR_CTX_GetCurYinFile(ctx_), "");
    ZR_CTX_SetCurYinFile(ctx_, "m.yin");
    ZR_CTX_SetCurYinFile(ctx_, nullptr);
    EXPECT_STREQ(ZR_CTX_GetCurYinFile(ctx_), "");
}

TEST_F(CurYinFile, OfANullContextIsNull)
{
    ZR_CTX_SetCurYinFile(nullptr, "m.yin");
    ZR_CTX_ClearCurYinFile(nullptr);
    EXPECT_EQ(ZR_CTX_GetCurYinFile(nullptr), nullptr);
}

} // namespace
