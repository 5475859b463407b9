#include "model/context.h"

#include <gtest/gtest.h>

#include "foundation/bare_context.h"
#include "foundation/relations.h"
#include "foundation/search_dirs.h"
#include "support/alloc.h"

namespace {

using Context = zrtest::BareContextTest;

TEST_F(Context, StartsEmpty)
{
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), nullptr);
    EXPECT_EQ(ctx_->searchDirCount, 0u);
    EXPECT_EQ(ctx_->searchDirCapacity, 0u);
    EXPECT_EQ(ctx_->searchDirs, nullptr);
    EXPECT_STREQ(ctx_->curYinFile, "");
    EXPECT_NE(ctx_->errMng, nullptr);
    EXPECT_EQ(ctx_->dict.bucketCount, 1024u);
    EXPECT_EQ(ZR_CTX_GetLoadStage(ctx_), 0u);
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx_, "m"), nullptr);
}

TEST_F(Context, HasNoCallbackAtFirst)
{
    EXPECT_EQ(ctx_->pridataFreeFunc, nullptr);
    EXPECT_EQ(ctx_->firstAugChildRelinkFunc, nullptr);
    EXPECT_EQ(ctx_->beforeDeviateNotSupportFunc, nullptr);
    EXPECT_EQ(ctx_->beforeDeviateExtInstFunc, nullptr);
    EXPECT_EQ(ctx_->reloadModuleFunc, nullptr);
    EXPECT_EQ(ctx_->extInstFilterFunc, nullptr);
}

TEST(ContextFlags, AreStoredAsTheyWereGiven)
{
    for (uint32_t flags : {0x00u, 0x01u, 0x02u, 0x08u, 0x10u, 0x1bu, 0xffffffffu}) {
        ZrCtx *ctx = ZR_CTX_Create(flags);
        ASSERT_NE(ctx, nullptr);
        EXPECT_EQ(ctx->flags, flags);
        zrtest::DestroyBareContext(ctx);
    }
}

TEST(ContextFlags, IgnoreImportErrorsIsBitFour)
{
    for (uint32_t bit = 0; bit < 32; ++bit) {
        ZrCtx *ctx = ZR_CTX_Create(1u << bit);
        EXPECT_EQ(ZT_CTX_IgnoreImportModError(ctx), bit == 4 ? 1u : 0u) << bit;
        zrtest::DestroyBareContext(ctx);
    }
    EXPECT_EQ(ZT_CTX_IgnoreImportModError(nullptr), 0u);
}

TEST_F(Context, KeepsTheLoadStage)
{
    ZR_CTX_SetLoadStage(ctx_, 2);
    EXPECT_EQ(ZR_CTX_GetLoadStage(ctx_), 2u);
    ZR_CTX_SetLoadStage(ctx_, 0xffffffffu);
    EXPECT_EQ(ZR_CTX_GetLoadStage(ctx_), 0xffffffffu);
}

TEST(ContextLoadStage, OfANullContextIsZero)
{
    ZR_CTX_SetLoadStage(nullptr, 1);
    EXPECT_EQ(ZR_CTX_GetLoadStage(nullptr), 0u);
}

void OnPridataFree(ZrNode *, void *) {}
void OnRelink(ZrCtx *, ZrNode *, ZrCtx *) {}
void OnNotSupported(ZrCtx *, ZrNode *, ZrCtx *) {}
void OnDeviateExtInst(ZrCtx *, ZrNode *, ZrCtx *) {}
void OnReload(ZrCtx *, const char *) {}
uint32_t OnFilter(const char *, const char *)
{
    return 0;
}

TEST_F(Context, EachSetterStoresItsOwnCallback)
{
    ZR_CTX_SetPridataFreeFunc(ctx_, OnPridataFree);
    ZR_CTX_SetFirstAugChildRelinkFunc(ctx_, OnRelink);
    ZR_CTX_SetBeforeDeviateNotSupportFunc(ctx_, OnNotSupported);
    ZR_CTX_SetBeforeDeviateExtInstFunc(ctx_, OnDeviateExtInst);
    ZR_CTX_SetReloadModuleCbFunc(ctx_, OnReload);
    ZR_CTX_SetExtInstFilterCbFunc(ctx_, OnFilter);
    EXPECT_EQ(ctx_->pridataFreeFunc, OnPridataFree);
    EXPECT_EQ(ctx_->firstAugChildRelinkFunc, OnRelink);
    EXPECT_EQ(ctx_->beforeDeviateNotSupportFunc, OnNotSupported);
    EXPECT_EQ(ctx_->beforeDeviateExtInstFunc, OnDeviateExtInst);
    EXPECT_EQ(ctx_->reloadModuleFunc, OnReload);
    EXPECT_EQ(ctx_->extInstFilterFunc, OnFilter);
}

TEST_F(Context, ACallbackCanBeTakenAwayAgain)
{
    ZR_CTX_SetReloadModuleCbFunc(ctx_, OnReload);
    ZR_CTX_SetReloadModuleCbFunc(ctx_, nullptr);
    EXPECT_EQ(ctx_->reloadModuleFunc, nullptr);
}

TEST(ContextCallbacks, SettersIgnoreANullContext)
{
    ZR_CTX_SetPridataFreeFunc(nullptr, OnPridataFree);
    ZR_CTX_SetFirstAugChildRelinkFunc(nullptr, OnRelink);
    ZR_CTX_SetBeforeDeviateNotSupportFunc(nullptr, OnNotSupported);
    ZR_CTX_SetBeforeDeviateExtInstFunc(nullptr, OnDeviateExtInst);
    ZR_CTX_SetReloadModuleCbFunc(nullptr, OnReload);
    ZR_CTX_SetExtInstFilterCbFunc(nullptr, OnFilter);
}

TEST(ContextMemory, TakingApartGivesEveryBlockBack)
{
    zrtest::AllocGuard guard;
    ZrCtx *ctx = ZR_CTX_Create(0);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, "/tmp"), ZR_OK);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, "/"), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddTwoModRelation(ctx, "a", "b", ZR_RELATION_AUGMENTED_BY), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddTwoModRelation(ctx, "a", "c", ZR_RELATION_DEVIATED_BY), ZR_OK);
    ZR_CTX_SetCurYinFile(ctx, "/a/m.yin");
    ZR_CTX_AddModError(ctx, "m", "text");
    zrtest::DestroyBareContext(ctx);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(ContextMemory, NullIsAcceptedForTakingApart)
{
    zr::DestroyContextParts(nullptr);
}

// Record, dictionary and error store are had in this order; only the last can be done without.
TEST(ContextMemory, CreateFailsCleanlyWhenAnyAllocationFails)
{
    zrtest::AllocGuard guard;
    ZrCtx *whole = ZR_CTX_Create(0);
    uint64_t allocations = guard.Count();
    zrtest::DestroyBareContext(whole);
    ASSERT_EQ(allocations, 3u);
    for (uint64_t n = 0; n < allocations; ++n) {
        guard.FailAt(n);
        ZrCtx *ctx = ZR_CTX_Create(0);
        EXPECT_EQ(ctx != nullptr, n == allocations - 1) << n;
        if (ctx != nullptr) {
            EXPECT_EQ(ctx->errMng, nullptr);
        }
        zrtest::DestroyBareContext(ctx);
        EXPECT_EQ(guard.LiveBlocks(), 0) << n;
    }
}

TEST(ContextMemory, AContextWithoutAnErrorStoreRecordsNothingAndWorks)
{
    zrtest::AllocGuard guard;
    guard.FailAt(2);
    ZrCtx *ctx = ZR_CTX_Create(0);
    guard.FailNone();
    ASSERT_NE(ctx, nullptr);
    EXPECT_EQ(ZR_CTX_AddModError(ctx, "m", "text"), ZR_OK);
    EXPECT_EQ(ZR_CTX_GetErrNodeByModName(ctx, "m"), nullptr);
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, "/tmp"), ZR_OK);
    zrtest::DestroyBareContext(ctx);
}

TEST(Contexts, KnowNothingOfEachOther)
{
    ZrCtx *a = ZR_CTX_Create(0);
    ZrCtx *b = ZR_CTX_Create(0);
    ZR_CTX_SetSearchDir(a, "/tmp");
    ZR_CTX_SetLoadStage(a, 3);
    EXPECT_EQ(b->searchDirCount, 0u);
    EXPECT_EQ(ZR_CTX_GetLoadStage(b), 0u);
    zrtest::DestroyBareContext(a);
    zrtest::DestroyBareContext(b);
}

} // namespace
