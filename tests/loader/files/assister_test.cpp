#include "loader/files/module_files.h"

#include <gtest/gtest.h>

#include "foundation/array.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "schema/module/module.h"
#include "support/alloc.h"
#include "support/context.h"

namespace {

class AssisterTest : public testing::Test {
protected:
    ~AssisterTest() override
    {
        ZRS_LOADER_ClearLoadAssister(&assister);
        zr::FreePathCollection(collection);
    }
    // Collects made-up files with these suffixes ("" for a plain file).
    void Collect(const std::vector<const char *> &suffixes)
    {
        collection = zr::New<ZrsPathCollection>();
        collection->limit = 10;
        for (const char *suffix : suffixes) {
            ASSERT_EQ(zr::ExpandArray(&collection->objects, collection->count, 1), ZR_OK);
            strcpy_s(collection->objects[collection->count++].suffix, 10, suffix);
            (suffix[0] == '\0' ? collection->hasPlain : collection->hasSuffixed) = 1;
        }
    }
    // Index of the file that is handed out next, -1 for none; it counts as loaded.
    int Next()
    {
        const ZrsPathObj *object = ZRS_LOADER_GetNextPathObjToProc(collection, &assister);
        ZRS_LOADER_ResetCurrentLoadingSuffix(&assister, 1);
        return object == nullptr ? -1 : static_cast<int>(object - collection->objects);
    }
    ZrsLoadAssister assister = {};
    ZrsPathCollection *collection = nullptr;
};

TEST_F(AssisterTest, KeepsEachSuffixOnce)
{
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, "a", 0), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, "a", 1), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, "b", 1), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, "", 0), ZR_OK);
    ASSERT_EQ(assister.suffixCount, 2);
    EXPECT_STREQ(assister.suffixes[0].suffix, "a");
    EXPECT_EQ(assister.suffixes[0].done, 0);
    EXPECT_EQ(assister.suffixes[1].done, 1);
}

TEST_F(AssisterTest, RefusesNullAndOverLongSuffixes)
{
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, nullptr, 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, "1234567890", 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, "123456789", 0), ZR_OK);
    const char *mixed[] = {"x", nullptr, "y"};
    EXPECT_EQ(ZRS_LOADER_AppendSuffixsToAssister(&assister, 3, mixed, 0), ZR_ERR_INVALID);
    EXPECT_EQ(assister.suffixCount, 2) << "stops at the first failure";
}

TEST_F(AssisterTest, ReportsMemoryThatCannotBeHad)
{
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, "a", 0), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(assister.suffixCount, 0);
}

TEST_F(AssisterTest, TakesSuffixesOnlyFromACollectionThatHasSome)
{
    Collect({"", ""});
    EXPECT_EQ(ZRS_LOADER_AddPathObjToLoadAssister(&assister, collection), ZR_OK);
    EXPECT_EQ(assister.suffixCount, 0);
}

TEST_F(AssisterTest, GoesThroughTheSuffixesThatAreNotDone)
{
    const char *loaded[] = {"a"};
    ZRS_LOADER_AppendSuffixsToAssister(&assister, 1, loaded, 1);
    ZRS_LOADER_AppendOneSuffixToAssister(&assister, "b", 0);
    ZRS_LOADER_AppendOneSuffixToAssister(&assister, "c", 0);
    EXPECT_STREQ(ZRS_LOADER_UpdateNextLoadingSuffix(&assister), "b");
    EXPECT_STREQ(ZRS_LOADER_UpdateNextLoadingSuffix(&assister), "b") << "still the current one";
    ZRS_LOADER_ResetCurrentLoadingSuffix(&assister, 1);
    EXPECT_STREQ(ZRS_LOADER_UpdateNextLoadingSuffix(&assister), "c");
    ZRS_LOADER_ResetCurrentLoadingSuffix(&assister, 1);
    EXPECT_EQ(ZRS_LOADER_UpdateNextLoadingSuffix(&assister), nullptr);
}

TEST_F(AssisterTest, HandsOutOneFileWhenThereAreNoSuffixes)
{
    Collect({"", "", ""});
    ZRS_LOADER_AddPathObjToLoadAssister(&assister, collection);
    EXPECT_EQ(Next(), 0);
    EXPECT_EQ(Next(), -1);
}

TEST_F(AssisterTest, HandsOutOneFileForEachSuffix)
{
    Collect({"a", "b", "a", "c"});
    ZRS_LOADER_AddPathObjToLoadAssister(&assister, collection);
    EXPECT_EQ(Next(), 0);
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(Next(), 3);
    EXPECT_EQ(Next(), -1);
}

TEST_F(AssisterTest, HandsOutAPlainFileThatStandsBeforeTheSuffixedOne)
{
    Collect({"a", "", "b"});
    ZRS_LOADER_AddPathObjToLoadAssister(&assister, collection);
    EXPECT_EQ(Next(), 0);
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(Next(), -1);
}

TEST_F(AssisterTest, HandsOutNoFileForASuffixThatIsNotThere)
{
    Collect({"a"});
    ZRS_LOADER_AppendOneSuffixToAssister(&assister, "z", 0);
    EXPECT_EQ(Next(), -1);
    EXPECT_EQ(collection->processed, 0);
}

TEST_F(AssisterTest, StopsAtTheLimit)
{
    Collect({"a", "b", "c"});
    collection->limit = 2;
    ZRS_LOADER_AddPathObjToLoadAssister(&assister, collection);
    EXPECT_EQ(Next(), 0);
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(Next(), -1);
}

TEST_F(AssisterTest, ProceedsForAModuleThatIsNotLoadedOrHasMergeSources)
{
    zrtest::TestContext ctx;
    ZrMod *module = zr::NewModule(ctx);
    Collect({"a", "b"});
    uint32_t proceed = 1;
    EXPECT_EQ(ZRS_LOADER_PreFillLoadAssisterFromExisting(module, collection, &assister, &proceed),
              ZR_OK);
    EXPECT_EQ(proceed, 0u) << "a module of one file is loaded already";
    EXPECT_EQ(assister.suffixCount, 0);

    proceed = 1;
    EXPECT_EQ(ZRS_LOADER_PreFillLoadAssisterFromExisting(nullptr, collection, &assister, &proceed),
              ZR_OK);
    EXPECT_EQ(proceed, 1u);
    EXPECT_EQ(assister.suffixCount, 2);

    assister.suffixes[0].done = 1; // "a" was loaded, "b" was not
    EXPECT_EQ(ZRS_LOADER_SaveSuccLoadingSuffix(module, &assister), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_SaveSuccLoadingSuffix(module, &assister), ZR_OK);
    ASSERT_EQ(module->mergeSourceCount, 1) << "each loaded suffix once";
    EXPECT_STREQ(module->mergeSources[0], "a");

    ZRS_LOADER_ClearLoadAssister(&assister);
    EXPECT_EQ(ZRS_LOADER_PreFillLoadAssisterFromExisting(module, collection, &assister, &proceed),
              ZR_OK);
    EXPECT_EQ(proceed, 1u);
    ASSERT_EQ(assister.suffixCount, 2);
    EXPECT_EQ(assister.suffixes[0].done, 1);
    EXPECT_EQ(assister.suffixes[1].done, 0);
    ZRS_MOD_Free(module);
}

TEST_F(AssisterTest, SavingReportsMemoryThatCannotBeHad)
{
    zrtest::AllocGuard guard;
    {
        zrtest::TestContext ctx;
        ZRS_LOADER_AppendOneSuffixToAssister(&assister, "a", 1);
        zrtest::FailEachAllocation(guard, [&](zrtest::FailPoint &memory) {
            ZrMod *module = zr::NewModule(ctx);
            uint32_t status =
                memory.Run([&] { return ZRS_LOADER_SaveSuccLoadingSuffix(module, &assister); });
            EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
            EXPECT_EQ(module->mergeSourceCount, memory.Failed() ? 0 : 1);
            ZRS_MOD_Free(module);
        });
        ZRS_LOADER_ClearLoadAssister(&assister);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST_F(AssisterTest, RefusesMoreSuffixesThanItsCountCanHold)
{
    ASSERT_EQ(zr::NewArray(&assister.suffixes, UINT16_MAX), ZR_OK);
    assister.suffixCount = UINT16_MAX;
    EXPECT_EQ(ZRS_LOADER_AppendOneSuffixToAssister(&assister, "a", 0), ZR_ERR_INVALID);
    EXPECT_EQ(assister.suffixCount, UINT16_MAX);
}

TEST_F(AssisterTest, SavesNoMoreSuffixesThanAModuleCanHold)
{
    zrtest::TestContext ctx;
    ZrMod *module = zr::NewModule(ctx);
    ASSERT_EQ(zr::NewArray(&module->mergeSources, UINT16_MAX), ZR_OK);
    module->mergeSourceCount = UINT16_MAX;
    ZRS_LOADER_AppendOneSuffixToAssister(&assister, "a", 1);
    EXPECT_EQ(ZRS_LOADER_SaveSuccLoadingSuffix(module, &assister), ZR_ERR_INVALID);
    EXPECT_EQ(module->mergeSourceCount, UINT16_MAX);
    ZRS_MOD_Free(module);
}

} // namespace
