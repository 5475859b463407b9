// SPDX-License-Identifier: Apache-2.0
#include <zryang/zryang.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using yangtest::Folder;
using yangtest::ModuleText;
using yangtest::Preparation;

namespace {

int KeepName(const char *name, void *user)
{
    static_cast<std::vector<std::string> *>(user)->push_back(name);
    return 0;
}

// Memory whose n-th allocation fails, and that knows what is live.
struct Failing {
    std::map<void *, size_t> live;
    size_t count = 0, failAt = SIZE_MAX;

    static void *Allocate(size_t size, void *user)
    {
        auto &self = *static_cast<Failing *>(user);
        if (self.count++ >= self.failAt)
            return nullptr;
        void *block = std::malloc(size);
        self.live[block] = size;
        return block;
    }
    static void Release(void *block, void *user)
    {
        EXPECT_EQ(static_cast<Failing *>(user)->live.erase(block), 1u);
        std::free(block);
    }
    ZrYangMemory hooks() { return {Allocate, Release, this}; }
};

constexpr const char *kMixed =
    "import t { prefix t; } import y { prefix y; } feature f; grouping g { leaf a { type t:k; "
    "default 4; } }"
    "container c { uses g { refine a { default 5; } } list l { key k; leaf k { type "
    "string; } } }"
    "choice h { if-feature \"not f\"; leaf y { type union { type int8; type t:k; } } }"
    "augment /y:c { leaf z { type leafref { path '../../c/a'; } } }"
    "deviation /y:c { deviate add { must \"m:c/m:a[. = '1']\"; } } leaf w { type y:k; }";
constexpr const char *kFaulty =
    "leaf x { type nothing; } leaf p { type string { pattern '('; } } leaf a { type leafref { path "
    "'/b'; } } leaf b { type leafref { path '/a'; } }";
constexpr const char *kPrepared =
    "<module name='y' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><namespace uri='urn:y'/><prefix "
    "value='y'/><typedef name='k'><type name='string'/><description><text>a &amp; "
    "b</text></description></typedef><container name='c'/></module>";

uint32_t AddSources(ZrYang *yang)
{
    const std::pair<const char *, std::string> sources[] = {
        {"m", ModuleText("m", kMixed)},
        {"bad", ModuleText("bad", kFaulty)},
        {"t", ModuleText("t", "typedef k { type int8 { range 1..9; } }")},
        {"y.yin", kPrepared},
    };
    uint32_t status = ZR_YANG_SetFeature(yang, "m", "f", 0);
    for (const auto &[name, text] : sources)
        if (status == ZR_YANG_OK)
            status = ZR_YANG_AddText(yang, name, text.data(), text.size());
    return status;
}

} // namespace

TEST(Library, RefusesNullArguments)
{
    Preparation one;
    ZrYang *yang = one.get();
    char *text = nullptr;
    EXPECT_EQ(ZR_YANG_AddDirectory(nullptr, "."), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_AddDirectory(yang, nullptr), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_AddFile(yang, nullptr), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_AddFile(yang, "a.txt"), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_AddText(yang, "a", nullptr, 0), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_SetFeature(yang, nullptr, "a", 1), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_SetOption(yang, 99, 1), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_SetOption(yang, ZR_YANG_OPTION_NODE_LIMIT, 0), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_ScanModules(yang, nullptr, nullptr), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_PrepareToText(yang, "m", nullptr, nullptr), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_PrepareToText(yang, nullptr, &text, nullptr), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_PrepareToFile(yang, "m", nullptr), ZR_YANG_ERR_INVALID);
    EXPECT_EQ(ZR_YANG_PrepareAll(yang, nullptr, nullptr, nullptr), ZR_YANG_ERR_INVALID);
    ZrYangMemory empty = {nullptr, nullptr, nullptr};
    EXPECT_EQ(ZR_YANG_Create(&empty), nullptr);
    ZR_YANG_Delete(nullptr);
    ZR_YANG_FreeText(yang, nullptr);
}

TEST(Library, SaysWhyADirectoryCannotBeListed)
{
    Preparation one;
    EXPECT_EQ(ZR_YANG_AddDirectory(one.get(), "/no/such/folder"), ZR_YANG_ERR_IO);
    EXPECT_EQ(errno, ENOENT);
}

TEST(Library, TellsTheModulesOfItsDirectories)
{
    Folder folder;
    folder.Add("b.yang", ModuleText("b", ""));
    folder.Add("a@2020-01-01.yang", ModuleText("a", "revision 2020-01-01;"));
    folder.Add("a@2021-01-01.yang", ModuleText("a", "revision 2021-01-01;"));
    folder.Add("s.yang", "submodule s { belongs-to b { prefix b; } }");
    folder.Add("notes.txt", "");
    Preparation one;
    ASSERT_EQ(ZR_YANG_AddDirectory(one.get(), folder.path().c_str()), ZR_YANG_OK);
    std::vector<std::string> names;
    EXPECT_EQ(ZR_YANG_ScanModules(one.get(), KeepName, &names), ZR_YANG_OK);
    EXPECT_THAT(names, ElementsAre("a", "b"));
}

TEST(Library, TellsTheFilesThatAModuleIsMadeOf)
{
    Folder folder;
    folder.Add("m.yang", ModuleText("m", "import t { prefix t; } include s;"));
    folder.Add("s.yang", "submodule s { yang-version 1.1; belongs-to m { prefix m; } }");
    folder.Add("t.yang", ModuleText("t", ""));
    Preparation one;
    ZR_YANG_AddDirectory(one.get(), folder.path().c_str());
    std::vector<std::string> files;
    EXPECT_EQ(ZR_YANG_ScanDependencies(one.get(), "m", KeepName, &files), ZR_YANG_OK);
    EXPECT_THAT(files, ElementsAre(folder.path() + "/m.yang", folder.path() + "/s.yang",
                                   folder.path() + "/t.yang"));
}

TEST(Library, WritesAFileForEachModuleWithoutAnError)
{
    Folder folder, out;
    folder.Add("good.yang", ModuleText("good", "leaf a { type string; }"));
    folder.Add("bad.yang", ModuleText("bad", "leaf a { type nothing; }"));
    Preparation one;
    ZR_YANG_AddDirectory(one.get(), folder.path().c_str());
    EXPECT_EQ(ZR_YANG_PrepareAll(one.get(), out.path().c_str(), nullptr, nullptr),
              ZR_YANG_ERR_FAULTY);
    EXPECT_EQ(one.reports().size(), 1u);
    std::vector<std::string> written;
    for (const auto &entry : std::filesystem::directory_iterator(out.path()))
        written.push_back(entry.path().filename());
    EXPECT_THAT(written, ElementsAre("good.yin"));
    one.Prepare("good");
    EXPECT_EQ(out.Read("good.yin"), one.text());
}

TEST(Library, WritesTheSameInEveryRun)
{
    std::string texts[2];
    for (std::string &text : texts) {
        Preparation one;
        one.AddModule("m", "import t { prefix t; } uses t:g; uses t:h;");
        one.AddModule("t", "import u { prefix u; } import v { prefix v; } grouping g { leaf a { "
                           "type v:k; } } grouping h { leaf b { type u:k; } }");
        one.AddModule("u", "typedef k { type string; }");
        one.AddModule("v", "typedef k { type string; }");
        ASSERT_EQ(one.Prepare("m"), ZR_YANG_OK);
        text = one.text();
    }
    EXPECT_EQ(texts[0], texts[1]);
}

TEST(Library, SaysWhereAFileCannotBeWritten)
{
    Preparation one;
    one.AddModule("m", "");
    EXPECT_EQ(ZR_YANG_PrepareToFile(one.get(), "m", "/no/such/folder"), ZR_YANG_ERR_IO);
    EXPECT_EQ(errno, ENOENT);
}

TEST(Library, TellsHowFarARunIs)
{
    Folder out;
    Preparation one;
    one.AddModule("a", "");
    one.AddModule("b", "");
    std::vector<std::string> steps;
    auto keep = [](size_t done, size_t total, const char *name, void *user) {
        static_cast<std::vector<std::string> *>(user)->push_back(
            std::to_string(done) + "/" + std::to_string(total) + " " + name);
        return 0;
    };
    EXPECT_EQ(ZR_YANG_PrepareAll(one.get(), out.path().c_str(), keep, &steps), ZR_YANG_OK);
    EXPECT_THAT(steps, ElementsAre("0/2 a", "1/2 b", "2/2 "));
    auto stop = [](size_t, size_t, const char *, void *) { return 1; };
    EXPECT_EQ(ZR_YANG_PrepareAll(one.get(), out.path().c_str(), stop, nullptr),
              ZR_YANG_ERR_STOPPED);
}

TEST(Library, ReportsFilesThatAreNoTexts)
{
    Folder folder;
    folder.Add("m.yang", std::string("\x7F"
                                     "ELF\0\1",
                                     6));
    std::filesystem::create_directory(folder.path() + "/d.yang");
    Preparation one;
    ZR_YANG_AddDirectory(one.get(), folder.path().c_str());
    EXPECT_EQ(one.Prepare("m"), ZR_YANG_ERR_FAULTY);
    EXPECT_EQ(one.Prepare("d"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(one.reports(),
                ElementsAre(folder.path() + "/m.yang:1:5: error: the file is not a text",
                            folder.path() + "/d.yang: error: cannot be read: not a regular file"));
}

TEST(Library, ReportsAFileThatIsLargerThanASourceMayBe)
{
    Folder folder;
    folder.Add("m.yang", ModuleText("m", ""));
    std::filesystem::resize_file(folder.path() + "/m.yang", uintmax_t{5} << 30);
    Preparation one;
    ZR_YANG_AddDirectory(one.get(), folder.path().c_str());
    EXPECT_EQ(one.Prepare("m"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(one.reports(),
                ElementsAre(folder.path() + "/m.yang: error: cannot be read: File too large"));
}

TEST(Library, AReportShowsItsLine)
{
    Preparation one;
    one.AddModule("m", "\r\n  leaf a { type nothing; }\r\n");
    std::string shown;
    ZR_YANG_SetReportFunc(
        one.get(),
        [](const ZrYangReport *report, void *user) {
            static_cast<std::string *>(user)->assign(report->sourceLine, report->sourceLength);
        },
        &shown);
    one.Prepare("m");
    EXPECT_EQ(shown, "  leaf a { type nothing; }");
}

// Each allocation fails in turn, with everything in the sources that the library has a road for.
TEST(Library, MemoryThatRunsOutIsAStatusAndNothingIsLost)
{
    for (size_t failAt = 0;; ++failAt) {
        Failing memory;
        memory.failAt = failAt;
        ZrYangMemory hooks = memory.hooks();
        ZrYang *yang = ZR_YANG_Create(&hooks);
        uint32_t status = yang == nullptr ? uint32_t{ZR_YANG_ERR_NO_MEMORY} : uint32_t{ZR_YANG_OK};
        if (yang != nullptr) {
            ZR_YANG_SetReportFunc(
                yang, [](const ZrYangReport *, void *) {}, nullptr);
            status = AddSources(yang);
            char *text = nullptr;
            if (status == ZR_YANG_OK)
                status = ZR_YANG_PrepareToText(yang, "bad", &text, nullptr);
            if (status == ZR_YANG_ERR_FAULTY)
                status = ZR_YANG_PrepareToText(yang, "m", &text, nullptr);
            ZR_YANG_FreeText(yang, text);
        }
        ZR_YANG_Delete(yang);
        EXPECT_TRUE(memory.live.empty()) << failAt;
        if (status == ZR_YANG_OK)
            break; // no allocation failed: the one was faulty, the other is prepared
        ASSERT_EQ(status, ZR_YANG_ERR_NO_MEMORY) << failAt;
        ASSERT_LT(failAt, 10000u);
    }
}
