// SPDX-License-Identifier: Apache-2.0
#include "support/context.h"

#include <cstdlib>
#include <filesystem>

namespace zrtest {

namespace {

struct Collected {
    std::string moduleName;
    std::vector<std::string> messages;
};

uint32_t Collect(const char *moduleName, const char *, uint32_t, const char *message, uint32_t,
                 void *userData)
{
    auto *collected = static_cast<Collected *>(userData);
    if (collected->moduleName.empty() || collected->moduleName == moduleName)
        collected->messages.emplace_back(message);
    return 0;
}

uint32_t AppendText(const char *text, uint32_t length, void *userData)
{
    static_cast<std::string *>(userData)->append(text, length);
    return 0;
}

} // namespace

uint32_t TestContext::LoadBody(const std::string &name, const std::string &body)
{
    return Load(ModuleText(name, body));
}

std::vector<std::string> TestContext::Messages(const std::string &moduleName)
{
    Collected collected{moduleName, {}};
    ZR_CTX_ScanAllSchemaLoadFail(ctx_, Collect, &collected);
    return collected.messages;
}

std::string Tree(const ZrMod *module)
{
    std::string text;
    return ZR_MOD_PrintModelTree(module, AppendText, &text) == ZR_OK ? text : "(failed)\n" + text;
}

std::string CorpusDir()
{
    const char *fromEnvironment = std::getenv("ZR_CORPUS_DIR");
    std::string dir = fromEnvironment != nullptr ? fromEnvironment : ZR_CORPUS_DIR;
    return std::filesystem::is_directory(dir) ? dir : "";
}

} // namespace zrtest
