// SPDX-License-Identifier: Apache-2.0
// An application of the library: a folder of modules, a context over it, and what it is told.
//
// A module's text here is its body alone: the namespace is urn:NAME, the prefix NAME.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zrschema/zrschema.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/names.h"
#include "support/temp_dir.h"
#include "support/yin.h"

using Texts = std::vector<std::string>;

// "text", or "-" for null.
inline std::string OrDash(const char *text)
{
    return text != nullptr ? text : "-";
}

class Application : public testing::Test {
protected:
    ~Application() override { ZR_CTX_Delete(ctx_); }

    // Makes the context, which finds its modules in the folder.
    void Start(uint32_t flags = 0)
    {
        ctx_ = ZR_CTX_Create(flags);
        ASSERT_NE(ctx_, nullptr);
        ASSERT_EQ(ZR_CTX_SetSearchDir(ctx_, folder_.path().c_str()), ZR_OK);
    }
    void Write(const std::string &name, const std::string &body)
    {
        WriteFile(name + ".yin", zrtest::ModuleText(name, body));
    }
    void WriteFile(const std::string &file, const std::string &text) { folder_.Write(file, text); }
    void Remove(const std::string &file) { std::filesystem::remove(folder_.path() + "/" + file); }

    uint32_t Load(const std::string &name) { return ZR_CTX_LoadModule(ctx_, name.c_str()); }
    uint32_t Unload(const std::string &name) { return ZR_CTX_UnloadModule(ctx_, name.c_str()); }
    // Writes a module and loads it.
    void Have(const std::string &name, const std::string &body)
    {
        Write(name, body);
        ASSERT_EQ(Load(name), ZR_OK) << testing::PrintToString(Errors());
    }

    ZrMod *Module(const std::string &name) { return ZR_CTX_GetModuleByModName(ctx_, name.c_str()); }
    ZrNode *Node(const std::string &path)
    {
        return ZR_CTX_GetTargetNode(ctx_, path.c_str(), nullptr);
    }
    uint32_t Check(const std::string &path, const std::string &value)
    {
        return ZR_NODE_ValidateValue(Node(path), ZR_VALUE_STRING, value.c_str());
    }

    // The names of the loaded modules.
    Texts Loaded()
    {
        Texts names;
        auto append = [](ZrMod *module, void *out) {
            static_cast<Texts *>(out)->emplace_back(ZR_MOD_GetModuleName(module));
            return 0u;
        };
        EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, append, &names), ZR_OK);
        return names;
    }
    // What loading has recorded, as "module: message".
    Texts Errors()
    {
        Texts errors;
        auto append = [](const char *module, const char *, uint32_t, const char *message, uint32_t,
                         void *out) {
            static_cast<Texts *>(out)->push_back(std::string(module) + ": " + message);
            return 0u;
        };
        EXPECT_EQ(ZR_CTX_ScanAllSchemaLoadFail(ctx_, append, &errors), ZR_OK);
        return errors;
    }
    // The printed tree of a module, with a line break before it.
    std::string Tree(const std::string &name)
    {
        std::string tree = "\n";
        auto append = [](const char *text, uint32_t length, void *out) {
            static_cast<std::string *>(out)->append(text, length);
            return 0u;
        };
        EXPECT_EQ(ZR_MOD_PrintModelTree(Module(name), append, &tree), ZR_OK);
        return tree;
    }

    zrtest::TempDir folder_;
    ZrCtx *ctx_ = nullptr;
};
