// SPDX-License-Identifier: Apache-2.0
// A context for tests, YIN from strings, and what the context recorded.
#pragma once

#include <zrschema/zrschema.h>

#include <string>
#include <vector>

#include "support/temp_dir.h"
#include "support/yin.h"

namespace zrtest {

// A context that is deleted at the end of the scope.
class TestContext {
public:
    explicit TestContext(uint32_t flags = 0) : ctx_(ZR_CTX_Create(flags)) {}
    ~TestContext() { ZR_CTX_Delete(ctx_); }
    TestContext(const TestContext &) = delete;
    TestContext &operator=(const TestContext &) = delete;
    ZrCtx *get() const { return ctx_; }
    operator ZrCtx *() const { return ctx_; }

    // Loads a whole YIN text, or a body put into <module name=NAME> with namespace urn:NAME and
    // prefix NAME.
    uint32_t Load(const std::string &yin) { return ZR_CTX_LoadMemory(ctx_, yin.c_str()); }
    uint32_t LoadBody(const std::string &name, const std::string &body);
    ZrMod *Module(const char *name) { return ZR_CTX_GetModuleByModName(ctx_, name); }
    ZrNode *Node(const char *path) { return ZR_CTX_GetTargetNode(ctx_, path, nullptr); }

    // Recorded errors and warnings of a module ("" for all), each as its message.
    std::vector<std::string> Messages(const std::string &moduleName = "");

private:
    ZrCtx *ctx_;
};

// The printed tree of a module.
std::string Tree(const ZrMod *module);

// The folder of the real modules, or "" when there is none.
std::string CorpusDir();

} // namespace zrtest
