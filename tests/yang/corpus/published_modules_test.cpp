// SPDX-License-Identifier: Apache-2.0
// The published modules: each is prepared without an error, and the engine prints the same tree of
// it as of the module that was prepared elsewhere.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <zrschema/zrschema.h>

#include "support/preparation.h"

using testing::IsEmpty;

namespace {

std::string CorpusDir()
{
    const char *set = std::getenv("ZR_CORPUS_DIR");
    return set != nullptr ? set : ZR_CORPUS_DIR;
}

// The sources stand beside the prepared modules, in a folder whose name begins with "yang-".
std::string SourceDir()
{
    std::filesystem::path prepared = CorpusDir();
    return prepared.empty() ? ""
                            : prepared.parent_path() / ("yang-" + prepared.filename().string());
}

uint32_t Append(const char *text, uint32_t length, void *user)
{
    static_cast<std::string *>(user)->append(text, length);
    return ZR_OK;
}

std::string TreeOf(const std::string &directory, const std::string &name)
{
    ZrCtx *ctx = ZR_CTX_Create(ZR_CTX_LOAD_IMPORTS | ZR_CTX_IGNORE_IMPORT_ERRORS);
    ZR_CTX_SetSearchDir(ctx, directory.c_str());
    ZR_CTX_LoadModule(ctx, name.c_str());
    std::string tree;
    if (ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name.c_str())) {
        ZR_MOD_EnableFeature(module, "*");
        ZR_MOD_PrintModelTree(module, Append, &tree);
    }
    ZR_CTX_Delete(ctx);
    return tree;
}

class PublishedModules : public testing::Test {
protected:
    void SetUp() override
    {
        if (CorpusDir().empty() || !std::filesystem::is_directory(SourceDir()))
            GTEST_SKIP() << "ZR_CORPUS_DIR names no folder beside which the sources stand";
        ASSERT_EQ(ZR_YANG_AddDirectory(preparation.get(), SourceDir().c_str()), ZR_YANG_OK);
    }

    yangtest::Preparation preparation;
    yangtest::Folder out;
};

} // namespace

TEST_F(PublishedModules, ArePreparedWithoutAnError)
{
    EXPECT_EQ(ZR_YANG_PrepareAll(preparation.get(), out.path().c_str(), nullptr, nullptr),
              ZR_YANG_OK);
    for (const std::string &report : preparation.reports())
        EXPECT_THAT(report, testing::Not(testing::HasSubstr(": error: ")));
}

TEST_F(PublishedModules, HaveTheTreesOfThePreparedOnes)
{
    ZR_YANG_PrepareAll(preparation.get(), out.path().c_str(), nullptr, nullptr);
    size_t compared = 0;
    for (const auto &entry : std::filesystem::directory_iterator(CorpusDir())) {
        if (entry.path().extension() != ".yin")
            continue;
        std::string name = entry.path().stem();
        EXPECT_EQ(TreeOf(out.path(), name), TreeOf(CorpusDir(), name)) << name;
        ++compared;
    }
    EXPECT_GT(compared, 0u);
}
