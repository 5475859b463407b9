// SPDX-License-Identifier: Apache-2.0
#include "loader/files/module_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <unistd.h>

#include "foundation/array.h"
#include "loader/loader_fixture.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "platform/system.h"
#include "schema/module/module.h"
#include "support/alloc.h"
#include "support/context.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using zrtest::ModuleUnderTest;
using zrtest::TempDir;
using zrtest::TestContext;

struct Collection {
    ZrsPathCollection *files;
    Collection(const ZrCtx *ctx, const char *name)
        : files(ZRS_LOADER_CollectFilePathMatchedInAllDir(ctx, name))
    {
    }
    ~Collection() { zr::FreePathCollection(files); }
    std::vector<std::string> Paths() const
    {
        std::vector<std::string> paths;
        for (uint32_t i = 0; files != nullptr && i < files->count; ++i)
            paths.emplace_back(files->objects[i].path);
        return paths;
    }
};

TEST(CollectFiles, FindsNothingWhereThereIsNothing)
{
    TempDir dir;
    TestContext ctx;
    EXPECT_EQ(ZRS_LOADER_CollectFilePathMatchedInAllDir(ctx, "m"), nullptr);
    ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
    dir.Write("other.yin", "");
    dir.Write("m.yang", "");
    dir.Write("mm.yin", "");
    EXPECT_EQ(ZRS_LOADER_CollectFilePathMatchedInAllDir(ctx, "m"), nullptr);
}

TEST(CollectFiles, TakesThePlainFileAloneWhereThereIsOne)
{
    TempDir dir;
    TestContext ctx;
    dir.Write("m.yin", "");
    dir.Write("m@2021-01-01.yin", "");
    dir.Write("m@@ext.yin", "");
    ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
    Collection collection(ctx, "m");
    EXPECT_THAT(collection.Paths(), ElementsAre(dir.path() + "/m.yin"));
    EXPECT_EQ(collection.files->hasPlain, 1);
    EXPECT_EQ(collection.files->hasSuffixed, 0);
    EXPECT_EQ(collection.files->limit, 1);
    EXPECT_EQ(collection.files->processed, 0);
}

TEST(CollectFiles, StopsAtTheFirstDirectoryWithThePlainFile)
{
    TempDir a, b;
    TestContext ctx;
    a.Write("m.yin", "");
    b.Write("m.yin", "");
    ZR_CTX_SetSearchDir(ctx, b.path().c_str());
    ZR_CTX_SetSearchDir(ctx, a.path().c_str());
    EXPECT_THAT(Collection(ctx, "m").Paths(), ElementsAre(b.path() + "/m.yin"));
}

TEST(CollectFiles, KeepsRevisionFilesOfEarlierDirectoriesBeforeAPlainFile)
{
    TempDir a, b, c;
    TestContext ctx;
    a.Write("m@2020-01-01.yin", "");
    b.Write("m.yin", "");
    c.Write("m@2022-01-01.yin", "");
    for (const TempDir *dir : {&a, &b, &c})
        ZR_CTX_SetSearchDir(ctx, dir->path().c_str());
    EXPECT_THAT(Collection(ctx, "m").Paths(),
                ElementsAre(a.path() + "/m@2020-01-01.yin", b.path() + "/m.yin"));
}

TEST(CollectFiles, ReadsTheSuffixBetweenTheMarkAndTheNextDot)
{
    TempDir dir;
    TestContext ctx;
    dir.Write("m@@ext.yin", "");
    dir.Write("m@@a.b.yin", "");
    dir.Write("m@2020-01-01.yin", "");
    dir.Write("m@@.yin", "");
    ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
    Collection collection(ctx, "m");
    std::vector<std::string> suffixes;
    for (uint32_t i = 0; i < collection.files->count; ++i)
        suffixes.emplace_back(collection.files->objects[i].suffix);
    EXPECT_THAT(suffixes, UnorderedElementsAre("ext", "a", "", ""));
    EXPECT_EQ(collection.files->hasPlain, 1);
    EXPECT_EQ(collection.files->hasSuffixed, 1);
}

TEST(CollectFiles, CutsASuffixToNineCharacters)
{
    TempDir dir;
    TestContext ctx;
    dir.Write("m@@123456789abc.yin", "");
    ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
    EXPECT_STREQ(Collection(ctx, "m").files->objects[0].suffix, "123456789");
}

TEST(CollectFiles, PassesOverPathsThatDoNotFit)
{
    TempDir dir;
    TestContext ctx;
    std::string name(200, 'm');
    std::string deep(60, 'd');
    dir.Write(deep + "/" + name + ".yin", "");
    dir.Write(deep + "/" + name + "@1.yin", "");
    ZR_CTX_SetSearchDir(ctx, (dir.path() + "/" + deep).c_str());
    EXPECT_EQ(ZRS_LOADER_CollectFilePathMatchedInAllDir(ctx, name.c_str()), nullptr);
}

TEST(CollectFiles, FindsNothingForANameThatLeavesTheDirectoryOrStandsForOthers)
{
    TempDir dir;
    TestContext ctx;
    dir.Write("st1.yin", "");
    dir.Write("st1@2020-01-01.yin", "");
    dir.Write("st*.yin", "");
    dir.Write("private/sub.yin", "");
    dir.Write("public/m.yin", "");
    ZR_CTX_SetSearchDir(ctx, (dir.path() + "/public").c_str());
    ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
    for (const char *name : {"../private/sub", "private/sub", "/private/sub", "st*", "st?", "*",
                             "st[1]", "[s]t1", "s\\t1"})
        EXPECT_EQ(ZRS_LOADER_CollectFilePathMatchedInAllDir(ctx, name), nullptr) << name;
    EXPECT_EQ(ZRS_LOADER_CollectFilePathMatchedInAllDir(ctx, nullptr), nullptr);
    EXPECT_THAT(Collection(ctx, "st1").Paths(), ElementsAre(dir.path() + "/st1.yin"));
}

TEST(CollectFiles, SurvivesEveryFailingAllocation)
{
    TempDir dir;
    dir.Write("m@@a.yin", "");
    dir.Write("m@@b.yin", "");
    TestContext ctx;
    ZR_CTX_SetSearchDir(ctx, dir.path().c_str());
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        auto *files =
            memory.Run([&] { return ZRS_LOADER_CollectFilePathMatchedInAllDir(ctx, "m"); });
        zr::FreePathCollection(files);
    });
}

TEST(ReadYinFile, ReturnsTheDocumentOfAWellFormedFile)
{
    TempDir dir;
    xmlDoc *document = ZRS_LOADER_ReadYinFileToXmlDoc(dir.Write("m.yin", "<a> <b/> </a>").c_str());
    ASSERT_NE(document, nullptr);
    xmlNode *root = xmlDocGetRootElement(document);
    EXPECT_STREQ(reinterpret_cast<const char *>(root->children->name), "b") << "blanks are dropped";
    xmlFreeDoc(document);
}

TEST(ReadYinFile, ReturnsNothingForWhatIsNoXmlFile)
{
    TempDir dir;
    EXPECT_EQ(ZRS_LOADER_ReadYinFileToXmlDoc((dir.path() + "/absent").c_str()), nullptr);
    EXPECT_EQ(ZRS_LOADER_ReadYinFileToXmlDoc(dir.path().c_str()), nullptr) << "a directory";
    EXPECT_EQ(ZRS_LOADER_ReadYinFileToXmlDoc(dir.Write("empty", "").c_str()), nullptr);
    EXPECT_EQ(ZRS_LOADER_ReadYinFileToXmlDoc(dir.Write("text", "module m {}").c_str()), nullptr);
    EXPECT_EQ(ZRS_LOADER_ReadYinFileToXmlDoc(dir.Write("cut", "<module><leaf").c_str()), nullptr);
}

TEST(ReadYinFile, ReturnsNothingWithoutAnOpenFile)
{
    EXPECT_EQ(ZRS_LOADER_ReadFileContentAsDoc(nullptr), nullptr);
}

TEST(ReadYinFile, RefusesFilesBeyondTheParsersSizeBeforeItAsksForMemory)
{
    TempDir dir;
    zrtest::AllocGuard guard;
    std::string path = dir.Write("m.yin", "<a/>");
    for (int64_t size : {int64_t{INT_MAX} + 1, (int64_t{1} << 32) - 1, int64_t{1} << 32,
                         (int64_t{1} << 32) + 4, int64_t{1} << 40}) {
        ASSERT_EQ(truncate64(path.c_str(), size), 0) << size; // sparse: takes no room
        PalFile *file = PAL_VFS_FOpen(path.c_str(), "r");
        ASSERT_NE(file, nullptr) << size;
        guard.FailAt(UINT64_MAX);
        EXPECT_EQ(ZRS_LOADER_ReadFileContentAsDoc(file), nullptr) << size;
        EXPECT_EQ(guard.Count(), 0u) << size;
        PAL_VFS_FClose(file);
    }
}

TEST(ReadYinFile, RefusesANulInTheFile)
{
    TempDir dir;
    std::string text("<a/>\0<b/>", 9);
    EXPECT_EQ(ZRS_LOADER_ReadYinFileToXmlDoc(dir.Write("inside.yin", text).c_str()), nullptr);
    text.resize(5);
    EXPECT_EQ(ZRS_LOADER_ReadYinFileToXmlDoc(dir.Write("end.yin", text).c_str()), nullptr);
}

TEST(ReadYinFile, PrintsNothingAboutMalformedText)
{
    TempDir dir;
    std::string path = dir.Write("bad", "<a><b></a>&undefined;");
    testing::internal::CaptureStderr();
    EXPECT_EQ(ZRS_LOADER_ReadYinFileToXmlDoc(path.c_str()), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ReadYinFile, ReturnsNothingWhenTheBufferCannotBeHad)
{
    TempDir dir;
    std::string path = dir.Write("m.yin", "<a/>");
    zrtest::AllocGuard guard;
    zrtest::FailEachAllocation(
        guard,
        [&](zrtest::FailPoint &memory) {
            xmlDoc *document =
                memory.Run([&] { return ZRS_LOADER_ReadYinFileToXmlDoc(path.c_str()); });
            EXPECT_EQ(document == nullptr, memory.Failed());
            xmlFreeDoc(document);
        },
        true);
}

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

TEST(LoadModuleByName, FindsNothingOutsideTheSearchDirectoriesOrByAPattern)
{
    TempDir dir;
    TestContext ctx;
    dir.Write("private/secret.yin", zrtest::ModuleText("../private/secret", ""));
    dir.Write("public/st1.yin", zrtest::ModuleText("st*", ""));
    ZR_CTX_SetSearchDir(ctx, (dir.path() + "/public").c_str());
    for (const char *name : {"../private/secret", "st*", "st?", "st[1]"}) {
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, name), ZR_ERR_NOT_FOUND) << name;
        EXPECT_THAT(ctx.Messages(name), ElementsAre("Module \"" + std::string(name) +
                                                    "\" not found from search directories."));
    }
}

TEST(LoadModuleByName, FollowsNoImportOutOfTheSearchDirectories)
{
    TempDir dir;
    TestContext ctx(ZR_CTX_LOAD_IMPORTS);
    dir.Write("private/secret.yin", zrtest::ModuleText("../private/secret", ""));
    dir.Write("public/m.yin", zrtest::ModuleText("m", "<import module='../private/secret'>"
                                                      "<prefix value='s'/></import>"));
    ZR_CTX_SetSearchDir(ctx, (dir.path() + "/public").c_str());
    EXPECT_EQ(ZR_CTX_LoadModule(ctx, "m"), ZR_ERR_NOT_FOUND);
    EXPECT_THAT(ctx.Messages("../private/secret"),
                ElementsAre("Module \"../private/secret\" not found from search directories."));
}

} // namespace
