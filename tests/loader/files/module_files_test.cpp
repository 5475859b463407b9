#include "loader/files/module_files.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <climits>
#include <gtest/gtest.h>

#include "platform/memory.h"
#include "platform/system.h"
#include "support/alloc.h"
#include "support/context.h"

using testing::ElementsAre;
using testing::EndsWith;
using testing::UnorderedElementsAre;
using zrtest::TempDir;
using zrtest::TestContext;

namespace {

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

} // namespace

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
