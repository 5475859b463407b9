// SPDX-License-Identifier: Apache-2.0
#include "foundation/load_errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <thread>
#include <vector>

#include "bare_context.h"
#include "foundation/context_record.h"
#include "foundation/search_dirs.h"
#include "support/alloc.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// One visited entry as "module|file|kind|message".
uint32_t CollectEntry(const char *moduleName, const char *yinFile, uint32_t kind,
                      const char *message, uint32_t, void *userData)
{
    static_cast<std::vector<std::string> *>(userData)->push_back(
        std::string(moduleName) + "|" + (yinFile != nullptr ? yinFile : "(null)") + "|" +
        std::to_string(kind) + "|" + message);
    return 0;
}

std::vector<std::string> Entries(ZrCtx *ctx)
{
    std::vector<std::string> entries;
    EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx, CollectEntry, &entries), ZR_OK);
    return entries;
}

using LoadErrors = zrtest::BareContextTest;

TEST_F(LoadErrors, AreFormattedAndKeptAgainstTheModulesName)
{
    EXPECT_EQ(ZR_CTX_AddModError(ctx_, "m", "Failed to load module \"%s\".", "m"), ZR_OK);
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|(null)|0|Failed to load module \"m\"."));
}

TEST_F(LoadErrors, TellErrorsFromWarnings)
{
    ZR_CTX_AddModWarning(ctx_, "m", "Module \"%s\" not found from search directories.", "m");
    ZR_CTX_AddModError(ctx_, "m", "number %d", 7);
    EXPECT_THAT(Entries(ctx_),
                ElementsAre("m|(null)|1|Module \"m\" not found from search directories.",
                            "m|(null)|0|number 7"));
}

TEST_F(LoadErrors, CarryTheFileThatIsBeingLoaded)
{
    ZR_CTX_SetCurYinFile(ctx_, "/a/m@@ext.yin");
    ZR_CTX_AddModError(ctx_, "m", "one");
    ZR_CTX_ClearCurYinFile(ctx_);
    ZR_CTX_AddModError(ctx_, "m", "two");
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|m@@ext.yin|0|one", "m|(null)|0|two"));
}

TEST_F(LoadErrors, CarryTheLoadStageAndTheTime)
{
    auto before = static_cast<uint32_t>(std::time(nullptr));
    ZR_CTX_SetLoadStage(ctx_, 2);
    ZR_CTX_AddModError(ctx_, "m", "one");
    auto after = static_cast<uint32_t>(std::time(nullptr));
    const ZrErrModNode *node = ZR_CTX_GetErrNodeByModName(ctx_, "m");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->entries[0].loadStage, 2u);
    EXPECT_GE(node->entries[0].time, before);
    EXPECT_LE(node->entries[0].time, after);
}

TEST_F(LoadErrors, OfOneModuleAreTheFirstTwo)
{
    for (const char *message : {"one", "two", "three"})
        EXPECT_EQ(ZR_CTX_AddModError(ctx_, "m", "%s", message), ZR_OK);
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|(null)|0|one", "m|(null)|0|two"));
    const ZrErrModNode *node = ZR_CTX_GetErrNodeByModName(ctx_, "m");
    EXPECT_EQ(node->entryCount, 2u);
    EXPECT_EQ(node->entryCapacity, 2u);
}

TEST_F(LoadErrors, AreCutTo511Characters)
{
    std::string text(600, 'x');
    ZR_CTX_AddModError(ctx_, "m", "%s", text.c_str());
    const ZrErrModNode *node = ZR_CTX_GetErrNodeByModName(ctx_, "m");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->entries[0].message, text.substr(0, 511));
}

TEST_F(LoadErrors, AreNotCutAt511Characters)
{
    std::string text(511, 'x');
    ZR_CTX_AddModError(ctx_, "m", "%s", text.c_str());
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx_, "m")->entries[0].message, text);
}

TEST_F(LoadErrors, AFormattingErrorGivesItsNegativeResultAndRecordsNothing)
{
    const wchar_t noCharacter[] = {static_cast<wchar_t>(0xD800), L'\0'};
    EXPECT_LT(ZR_CTX_AddModError(ctx_, "m", "%ls", noCharacter), 0);
    EXPECT_THAT(Entries(ctx_), IsEmpty());
}

int32_t AddWithNullFormat(ZrCtx *ctx, const char *format)
{
    return ZR_CTX_AddModError(ctx, "m", format, nullptr);
}

TEST_F(LoadErrors, NothingHappensForNullArguments)
{
    EXPECT_EQ(ZR_CTX_AddModError(nullptr, "m", "text"), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddModWarning(nullptr, "m", "text"), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddModError(ctx_, nullptr, "text"), ZR_OK);
    EXPECT_EQ(AddWithNullFormat(ctx_, nullptr), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddErrorMsgToMod(nullptr, "m", 0, "text"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_AddErrorMsgToMod(ctx_->errMng, nullptr, 0, "text"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_AddErrorMsgToMod(ctx_->errMng, "m", 0, nullptr), ZR_ERR_INVALID);
    EXPECT_THAT(Entries(ctx_), IsEmpty());
}

TEST_F(LoadErrors, AreScannedInTheOrderOfTheModulesNames)
{
    for (const char *name : {"m", "a", "z", "m"})
        ZR_CTX_AddModError(ctx_, name, "in %s", name);
    EXPECT_THAT(Entries(ctx_), ElementsAre("a|(null)|0|in a", "m|(null)|0|in m", "m|(null)|0|in m",
                                           "z|(null)|0|in z"));
}

struct StopAfter {
    int calls = 0;
    int stopAt;
};

uint32_t StopWith5(const char *, const char *, uint32_t, const char *, uint32_t, void *userData)
{
    auto *stop = static_cast<StopAfter *>(userData);
    return ++stop->calls == stop->stopAt ? 5 : 0;
}

TEST_F(LoadErrors, AScanStopsWithTheFirstNonZeroResult)
{
    ZR_CTX_AddModError(ctx_, "a", "one");
    ZR_CTX_AddModError(ctx_, "a", "two");
    ZR_CTX_AddModError(ctx_, "b", "three");
    for (int stopAt = 1; stopAt <= 3; ++stopAt) {
        StopAfter stop{0, stopAt};
        EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx_, StopWith5, &stop), 5u);
        EXPECT_EQ(stop.calls, stopAt);
    }
    StopAfter never{0, 4};
    EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx_, StopWith5, &never), ZR_OK);
    EXPECT_EQ(never.calls, 3);
}

TEST_F(LoadErrors, AScanWithoutACallbackOrContextIs0)
{
    ZR_CTX_AddModError(ctx_, "m", "text");
    EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx_, nullptr, nullptr), ZR_OK);
    StopAfter stop{0, 1};
    EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(nullptr, StopWith5, &stop), ZR_OK);
    EXPECT_EQ(ZRS_MOD_ScanModAllLoadFail(nullptr, StopWith5, &stop), ZR_OK);
    EXPECT_EQ(ZRS_MOD_ScanModAllLoadFail(ZR_CTX_GetErrNodeByModName(ctx_, "m"), nullptr, nullptr),
              ZR_OK);
    EXPECT_EQ(stop.calls, 0);
}

TEST_F(LoadErrors, TheNodeOfAModuleIsThereOnceSomethingWasRecorded)
{
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx_, "m"), nullptr);
    ZR_CTX_AddModWarning(ctx_, "m", "text");
    const ZrErrModNode *node = ZR_CTX_GetErrNodeByModName(ctx_, "m");
    ASSERT_NE(node, nullptr);
    EXPECT_STREQ(node->moduleName, "m");
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx_, "n"), nullptr);
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx_, nullptr), nullptr);
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(nullptr, "m"), nullptr);
}

TEST_F(LoadErrors, OfAModuleCanBeDeleted)
{
    ZR_CTX_AddModError(ctx_, "a", "one");
    ZR_CTX_AddModError(ctx_, "b", "two");
    ZR_CTX_DeleteErrNodeByModName(ctx_->errMng, "a");
    EXPECT_THAT(Entries(ctx_), ElementsAre("b|(null)|0|two"));
    ZR_CTX_AddModError(ctx_, "a", "again");
    EXPECT_THAT(Entries(ctx_), ElementsAre("a|(null)|0|again", "b|(null)|0|two"));
}

TEST_F(LoadErrors, DeletingThoseOfAModuleThatHasNoneDoesNothing)
{
    ZR_CTX_AddModError(ctx_, "a", "one");
    ZR_CTX_DeleteErrNodeByModName(ctx_->errMng, "b");
    ZR_CTX_DeleteErrNodeByModName(ctx_->errMng, nullptr);
    EXPECT_THAT(Entries(ctx_), ElementsAre("a|(null)|0|one"));
}

// A thread that holds the lock for writing is refused it a second time.
TEST_F(LoadErrors, StayAsTheyAreWhenTheLockCannotBeTaken)
{
    ZR_CTX_AddModError(ctx_, "m", "text");
    StopAfter stop{0, 1};
    ASSERT_EQ(pthread_rwlock_wrlock(&ctx_->errMng->lock), 0);
    EXPECT_EQ(ZR_CTX_AddModError(ctx_, "n", "text"), ZR_ERR_LOCK);
    EXPECT_EQ(ZR_CTX_AddErrorMsgToMod(ctx_->errMng, "m", 0, "text"), ZR_ERR_LOCK);
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx_, "m"), nullptr);
    ZR_CTX_ClearModErrByLoadStage(ctx_->errMng, "m", 0);
    ZR_CTX_DeleteErrNodeByModName(ctx_->errMng, "m");
    ZR_CTX_DestoryErrMngTree(ctx_->errMng);
    EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx_, StopWith5, &stop), ZR_ERR_LOCK);
    pthread_rwlock_unlock(&ctx_->errMng->lock);
    EXPECT_EQ(stop.calls, 0);
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|(null)|0|text"));
}

class LoadErrorStages : public LoadErrors {
protected:
    void Record(const char *moduleName, uint32_t stage, const char *message)
    {
        ZR_CTX_SetLoadStage(ctx_, stage);
        ZR_CTX_AddModError(ctx_, moduleName, "%s", message);
    }
};

TEST_F(LoadErrorStages, ClearingAStageKeepsTheOthersInOrderAndMakesRoom)
{
    Record("m", 2, "coupling");
    Record("m", 0, "parsing");
    ZR_CTX_ClearModErrByLoadStage(ctx_->errMng, "m", 2);
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|(null)|0|parsing"));
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx_, "m")->entryCount, 1u);
    Record("m", 2, "again");
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|(null)|0|parsing", "m|(null)|0|again"));
}

TEST_F(LoadErrorStages, ClearingTheSecondEntryKeepsTheFirst)
{
    Record("m", 0, "parsing");
    Record("m", 2, "coupling");
    ZR_CTX_ClearModErrByLoadStage(ctx_->errMng, "m", 2);
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|(null)|0|parsing"));
}

TEST_F(LoadErrorStages, ClearingAllEntriesLeavesNoneToRead)
{
    Record("m", 1, "one");
    Record("m", 1, "two");
    Record("n", 1, "other");
    ZR_CTX_ClearModCoupleErr(ctx_->errMng, "m");
    EXPECT_THAT(Entries(ctx_), ElementsAre("n|(null)|0|other"));
}

TEST_F(LoadErrorStages, CouplingErrorsAreThoseOfStageOne)
{
    Record("m", 1, "coupling");
    Record("m", 2, "later");
    ZR_CTX_ClearModCoupleErr(ctx_->errMng, "m");
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|(null)|0|later"));
}

TEST_F(LoadErrorStages, ClearingAStageOrModuleWithoutEntriesChangesNothing)
{
    Record("m", 1, "one");
    ZR_CTX_ClearModErrByLoadStage(ctx_->errMng, "m", 3);
    ZR_CTX_ClearModErrByLoadStage(ctx_->errMng, "n", 1);
    ZR_CTX_ClearModErrByLoadStage(ctx_->errMng, nullptr, 1);
    ZR_MOD_ClearErrByLoadStage(nullptr, 1);
    EXPECT_THAT(Entries(ctx_), ElementsAre("m|(null)|0|one"));
}

TEST_F(LoadErrors, TheStoreCanBeEmptied)
{
    ZR_CTX_AddModError(ctx_, "a", "one");
    ZR_CTX_AddModError(ctx_, "b", "two");
    ZR_CTX_DestoryErrMngTree(ctx_->errMng);
    EXPECT_THAT(Entries(ctx_), IsEmpty());
    ZR_CTX_AddModError(ctx_, "a", "three");
    EXPECT_THAT(Entries(ctx_), ElementsAre("a|(null)|0|three"));
}

TEST_F(LoadErrors, AContextWithoutAStoreRecordsNothing)
{
    ZR_CTX_AddModError(ctx_, "m", "text");
    ZR_CTX_DestroyErrMng(ctx_->errMng);
    EXPECT_EQ(ctx_->errMng, nullptr);
    EXPECT_EQ(ZR_CTX_AddModError(ctx_, "m", "text"), ZR_OK);
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx_, "m"), nullptr);
    StopAfter stop{0, 1};
    EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx_, StopWith5, &stop), ZR_OK);
}

TEST(LoadErrorStore, ANullStoreIsAccepted)
{
    ZR_CTX_DeleteErrNodeByModName(nullptr, "m");
    ZR_CTX_ClearModErrByLoadStage(nullptr, "m", 0);
    ZR_CTX_ClearModCoupleErr(nullptr, "m");
    ZR_CTX_DestoryErrMngTree(nullptr);
    ZR_CTX_DestroyErrMng(nullptr);
}

TEST(LoadErrorStore, InitIs22ForNullAnd12WhenMemoryRunsOut)
{
    EXPECT_EQ(ZR_CTX_InitErrMng(nullptr), ZR_ERR_INVALID);
    zrtest::AllocGuard guard;
    ZrCtx ctx{};
    guard.FailAt(0);
    EXPECT_EQ(ZR_CTX_InitErrMng(&ctx), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(ctx.errMng, nullptr);
    guard.Stop();
    EXPECT_EQ(ZR_CTX_InitErrMng(&ctx), ZR_OK);
    EXPECT_EQ(ctx.errMng->ctx, &ctx);
    ZR_CTX_DestroyErrMng(ctx.errMng);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(LoadErrorStore, RecordingFailsCleanlyWhenAnyAllocationFails)
{
    zrtest::AllocGuard guard;
    ZrCtx *ctx = ZR_CTX_Create(0);
    ZR_CTX_SetCurYinFile(ctx, "m.yin");
    auto recording = [&](const char *message) {
        return zrtest::FailEachAllocation(guard, [&](zrtest::FailPoint &memory) {
            int32_t status =
                memory.Run([&] { return ZR_CTX_AddModError(ctx, "m", "%s", message); });
            EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
            EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx, "m") == nullptr, memory.Failed());
            ZR_CTX_DeleteErrNodeByModName(ctx->errMng, "m");
        });
    };
    // The node, its name in two blocks, the entries, the message and the file's name.
    EXPECT_EQ(recording("text"), 6u);
    EXPECT_EQ(ZR_CTX_AddModError(ctx, "m", "one"), ZR_OK);
    for (uint64_t n = 0; n < 2; ++n) { // a second entry of the same module needs less
        int64_t withOne = guard.LiveBlocks();
        guard.FailAt(n);
        EXPECT_EQ(ZR_CTX_AddModError(ctx, "m", "two"), ZR_ERR_NO_MEMORY) << n;
        guard.Stop();
        EXPECT_EQ(guard.LiveBlocks(), withOne) << n;
    }
    EXPECT_THAT(Entries(ctx), ElementsAre("m|m.yin|0|one"));
    zrtest::DestroyBareContext(ctx);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST_F(LoadErrors, ANodeOfItsOwnTakesTwoEntries)
{
    ZrErrModNode *node = ZRS_MOD_CreateErrNode(ctx_, "m");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->treeNode.balance, -1);
    EXPECT_EQ(node->entryCount, 0u);
    EXPECT_EQ(node->entryCapacity, 2u);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(ZRS_MOD_RecordErrorInfo(ctx_, node, ZR_LOAD_WARNING, "text"), ZR_OK);
    EXPECT_EQ(node->entryCount, 2u);
    EXPECT_EQ(node->entries[1].kind, uint32_t{ZR_LOAD_WARNING});
    ZRS_MOD_FreeErrModNode(ctx_, node);
}

TEST_F(LoadErrors, AnEntryIsFilledAndCleared)
{
    ZrErrInfo entry{};
    ZR_CTX_SetCurYinFile(ctx_, "m.yin");
    ZR_CTX_SetLoadStage(ctx_, 4);
    EXPECT_EQ(ZRS_MOD_SetErrInfoNode(ctx_, &entry, ZR_LOAD_ERROR, "text"), ZR_OK);
    EXPECT_STREQ(entry.yinFile, "m.yin");
    EXPECT_STREQ(entry.message, "text");
    EXPECT_EQ(entry.loadStage, 4u);
    ZRS_MOD_ClearErrInfoNode(&entry);
    EXPECT_EQ(entry.yinFile, nullptr);
    EXPECT_EQ(entry.message, nullptr);
    EXPECT_EQ(entry.loadStage, 0u);
}

TEST_F(LoadErrors, NodeFunctionsAcceptNull)
{
    ZrErrInfo entry{};
    EXPECT_EQ(ZRS_MOD_CreateErrNode(nullptr, "m"), nullptr);
    EXPECT_EQ(ZRS_MOD_CreateErrNode(ctx_, nullptr), nullptr);
    EXPECT_EQ(ZRS_MOD_RecordErrorInfo(ctx_, nullptr, 0, "text"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_SetErrInfoNode(nullptr, &entry, 0, "text"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_SetErrInfoNode(ctx_, nullptr, 0, "text"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_SetErrInfoNode(ctx_, &entry, 0, nullptr), ZR_ERR_INVALID);
    ZRS_MOD_ClearErrInfoNode(nullptr);
    ZRS_MOD_FreeErrModNode(ctx_, nullptr);
}

TEST(CompareModuleName, ComparesBytes)
{
    EXPECT_EQ(ZR_CTX_CompareModuleName("m", std::string("m").c_str()), 0);
    EXPECT_LT(ZR_CTX_CompareModuleName("a", "b"), 0);
    EXPECT_GT(ZR_CTX_CompareModuleName("\xff", "b"), 0);
}

// The lock is the store's own: threads may record, read and delete at the same time.
TEST_F(LoadErrors, CanBeRecordedAndReadByManyThreadsAtOnce)
{
    constexpr int kThreads = 4;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([this, t] {
            std::string own = "m" + std::to_string(t);
            for (int i = 0; i < 200; ++i) {
                ZR_CTX_AddModError(ctx_, own.c_str(), "round %d", i);
                ZR_CTX_AddModError(ctx_, "shared", "from %d", t);
                StopAfter never{0, -1};
                ZR_CTX_ScanAllSchemaLoadFail(ctx_, StopWith5, &never);
                if (i % 50 == 0)
                    ZR_CTX_DeleteErrNodeByModName(ctx_->errMng, own.c_str());
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(Entries(ctx_).size(), 2u * (kThreads + 1));
}

} // namespace
