// SPDX-License-Identifier: Apache-2.0
#include "model/context.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/bare_context.h"
#include "foundation/relations.h"
#include "foundation/search_dirs.h"
#include "model/module_records.h"
#include "support/alloc.h"
#include "support/context.h"
#include "support/matcher.h"

namespace {

using Context = zrtest::BareContextTest;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(Context, HasNoMatcherOfPatternsUntilOneIsSet)
{
    EXPECT_EQ(ctx_->patternMatcher, nullptr);
    zrtest::EqualityMatcher first, second;
    for (zrtest::EqualityMatcher *matcher : {&first, &second}) {
        ZrPatternMatcher record = *matcher;
        EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx_, &record), ZR_OK);
        EXPECT_NE(ctx_->patternMatcher, &record) << "it is copied";
        EXPECT_EQ(ctx_->patternMatcher->userData, matcher);
    }
    EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx_, nullptr), ZR_OK);
    EXPECT_EQ(ctx_->patternMatcher, nullptr);
}

TEST_F(Context, RefusesAMatcherThatLacksAFunction)
{
    zrtest::EqualityMatcher matcher;
    for (int lacking = 0; lacking < 3; ++lacking) {
        ZrPatternMatcher record = matcher;
        if (lacking == 0)
            record.compile = nullptr;
        else if (lacking == 1)
            record.match = nullptr;
        else
            record.release = nullptr;
        EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx_, &record), ZR_ERR_INVALID) << lacking;
        EXPECT_EQ(ctx_->patternMatcher, nullptr);
    }
    ZrPatternMatcher record = matcher;
    EXPECT_EQ(ZR_CTX_SetPatternMatcher(nullptr, &record), ZR_ERR_INVALID);
}

TEST(ContextMatcher, IsSetBeforeTheFirstModuleOrNotAtAll)
{
    zrtest::TestContext ctx;
    zrtest::EqualityMatcher matcher;
    ZrPatternMatcher record = matcher;
    ASSERT_EQ(ctx.LoadBody("m", ""), ZR_OK);
    EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx, &record), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx, nullptr), ZR_ERR_INVALID);
    ASSERT_EQ(ZR_CTX_UnloadModule(ctx, "m"), ZR_OK);
    EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx, &record), ZR_OK);
}

TEST(ContextMatcher, StaysAsItWasWhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    zrtest::EqualityMatcher first, second;
    ZrPatternMatcher record = first, other = second;
    zrtest::TestContext ctx;
    ASSERT_EQ(ZR_CTX_SetPatternMatcher(ctx, &record), ZR_OK);
    guard.FailAt(0);
    EXPECT_EQ(ZR_CTX_SetPatternMatcher(ctx, &other), ZR_ERR_NO_MEMORY);
    guard.Stop();
    EXPECT_EQ(ctx.get()->patternMatcher->userData, &first);
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
    uint64_t points = zrtest::FailEachAllocation([](zrtest::FailPoint &memory) {
        ZrCtx *ctx = memory.Run([] { return ZR_CTX_Create(0); });
        bool whole = !memory.Failed();
        EXPECT_EQ(ctx != nullptr, whole || memory.n() == 2);
        if (ctx != nullptr) {
            EXPECT_EQ(ctx->errMng != nullptr, whole);
        }
        zrtest::DestroyBareContext(ctx);
    });
    EXPECT_EQ(points, 3u);
}

TEST(ContextMemory, AContextWithoutAnErrorStoreRecordsNothingAndWorks)
{
    zrtest::AllocGuard guard;
    guard.FailAt(2);
    ZrCtx *ctx = ZR_CTX_Create(0);
    guard.Stop();
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

// A module record with nothing in it but its keys; the test owns it.
ZrMod MakeModule(const char *name, const char *ns)
{
    ZrMod module{};
    module.name = name;
    module.ns = ns;
    PAL_AVL3_InitNode(&module.byNameLink);
    PAL_AVL3_InitNode(&module.byNamespaceLink);
    return module;
}

class ModuleTree : public zrtest::BareContextTest {
protected:
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (ZrMod *module = zr::FirstModule(ctx_); module != nullptr;
             module = zr::NextModule(ctx_, module))
            names.emplace_back(module->name);
        return names;
    }
};

TEST_F(ModuleTree, FindsAModuleByNameAndByNamespace)
{
    ZrMod m = MakeModule("m", "urn:m");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &m), ZR_OK);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), &m);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), &m);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "urn:m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "m"), nullptr);
}

TEST_F(ModuleTree, IsScannedInTheOrderOfNames)
{
    struct Noted {
        std::vector<std::string> names;
        std::string stopAt;
    } noted;
    auto note = [](ZrMod *module, void *userData) -> uint32_t {
        auto *into = static_cast<Noted *>(userData);
        into->names.emplace_back(module->name);
        return into->stopAt == module->name ? 9 : 0;
    };
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, note, &noted), ZR_OK);
    EXPECT_THAT(noted.names, IsEmpty());
    ZrMod b = MakeModule("b", "urn:1");
    ZrMod c = MakeModule("c", "urn:0");
    ZrMod a = MakeModule("a", "urn:2");
    for (ZrMod *module : {&b, &c, &a})
        ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, module), ZR_OK);
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, note, &noted), ZR_OK);
    EXPECT_THAT(noted.names, ElementsAre("a", "b", "c"));
    noted = {{}, "b"};
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, note, &noted), 9u);
    EXPECT_THAT(noted.names, ElementsAre("a", "b"));
    EXPECT_EQ(ZR_CTX_ScanAllModules(nullptr, note, &noted), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, nullptr, &noted), ZR_ERR_INVALID);
}

TEST_F(ModuleTree, LookupsOfNullAreNull)
{
    EXPECT_EQ(ZR_CTX_GetModuleByModName(nullptr, "m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, nullptr), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(nullptr, "urn:m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, nullptr), nullptr);
}

TEST_F(ModuleTree, WalksModulesInTheOrderOfTheirNames)
{
    ZrMod modules[] = {MakeModule("m", "urn:1"), MakeModule("a", "urn:3"),
                       MakeModule("z", "urn:2")};
    for (ZrMod &module : modules)
        ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, &module), ZR_OK);
    EXPECT_THAT(Names(), ElementsAre("a", "m", "z"));
}

TEST_F(ModuleTree, IsWalkedByARangeInTheSameOrder)
{
    ZrMod z = MakeModule("z", "urn:1");
    ZrMod a = MakeModule("a", "urn:2");
    std::vector<const ZrMod *> walked;
    for (const ZrMod *module : zr::ModulesOf(ctx_))
        walked.push_back(module);
    EXPECT_TRUE(walked.empty());
    ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, &z), ZR_OK);
    ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, &a), ZR_OK);
    for (const ZrMod *module : zr::ModulesOf(ctx_))
        walked.push_back(module);
    EXPECT_THAT(walked, ElementsAre(&a, &z));
}

TEST_F(ModuleTree, WalksOfNullAreEmpty)
{
    ZrMod m = MakeModule("m", "urn:m");
    EXPECT_EQ(zr::FirstModule(nullptr), nullptr);
    EXPECT_EQ(zr::FirstModule(ctx_), nullptr);
    EXPECT_EQ(zr::NextModule(nullptr, &m), nullptr);
    EXPECT_EQ(zr::NextModule(ctx_, nullptr), nullptr);
}

TEST_F(ModuleTree, RefusesASecondModuleOfTheSameName)
{
    ZrMod first = MakeModule("m", "urn:1");
    ZrMod second = MakeModule("m", "urn:2");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &first), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &second), ZR_ERR_FAILED);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), &first);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:2"), nullptr);
}

TEST_F(ModuleTree, RefusesASecondModuleOfTheSameNamespaceAndTakesItsNameOutAgain)
{
    ZrMod first = MakeModule("a", "urn:m");
    ZrMod second = MakeModule("b", "urn:m");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &first), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &second), ZR_ERR_FAILED);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "b"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), &first);
    EXPECT_THAT(Names(), ElementsAre("a"));
}

TEST_F(ModuleTree, TakingOutARefusedModuleLeavesTheOneThatWasThereFirst)
{
    ZrMod first = MakeModule("a", "urn:m");
    ZrMod second = MakeModule("b", "urn:m");
    ZR_CTX_AddModuleNode(ctx_, &first);
    ZR_CTX_AddModuleNode(ctx_, &second);
    zr::RemoveModuleNode(ctx_, &second);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "a"), &first);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), &first);
}

TEST_F(ModuleTree, TakesAModuleOutOfBothTreesAndInAgain)
{
    ZrMod m = MakeModule("m", "urn:m");
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, &m), ZR_OK);
        zr::RemoveModuleNode(ctx_, &m);
        EXPECT_THAT(Names(), IsEmpty());
        EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), nullptr);
    }
    zr::RemoveModuleNode(ctx_, &m);
    zr::RemoveModuleNode(ctx_, nullptr);
    zr::RemoveModuleNode(nullptr, &m);
}

TEST_F(ModuleTree, AModuleWithoutANamespaceIsTheOnlyOne)
{
    ZrMod without = MakeModule("a", nullptr);
    ZrMod with = MakeModule("b", "urn:b");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &without), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &with), ZR_ERR_FAILED);
    EXPECT_THAT(Names(), ElementsAre("a"));
}

TEST_F(ModuleTree, NullArgumentsAre1)
{
    ZrMod m = MakeModule("m", "urn:m");
    EXPECT_EQ(ZR_CTX_AddModuleNode(nullptr, &m), ZR_ERR_FAILED);
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, nullptr), ZR_ERR_FAILED);
    ZR_CTX_InitModuleTree(nullptr);
}

TEST_F(ModuleTree, InitMakesBothTreesEmpty)
{
    ZrMod m = MakeModule("m", "urn:m");
    ZR_CTX_AddModuleNode(ctx_, &m);
    ZR_CTX_InitModuleTree(ctx_);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), nullptr);
}

TEST(ModTreeKeyCompare, ComparesBytesAndTakesNullAsEqualToEverything)
{
    EXPECT_EQ(ZR_CTX_ModTreeKeyCompare("a", std::string("a").c_str()), 0);
    EXPECT_LT(ZR_CTX_ModTreeKeyCompare("a", "b"), 0);
    EXPECT_GT(ZR_CTX_ModTreeKeyCompare("b", "a"), 0);
    EXPECT_GT(ZR_CTX_ModTreeKeyCompare("\xff", "a"), 0);
    EXPECT_EQ(ZR_CTX_ModTreeKeyCompare(nullptr, "a"), 0);
    EXPECT_EQ(ZR_CTX_ModTreeKeyCompare("a", nullptr), 0);
    EXPECT_EQ(ZR_CTX_ModTreeKeyCompare(nullptr, nullptr), 0);
}

} // namespace
