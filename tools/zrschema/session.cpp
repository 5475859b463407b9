#include "session.h"

#include <cstdio>
#include <filesystem>
#include <map>

#include "module_files.h"

namespace fs = std::filesystem;

namespace tool {

namespace {

std::string Text(const char *text)
{
    return text != nullptr ? text : "";
}

uint32_t CollectError(const char *moduleName, const char *yinFile, uint32_t kind,
                      const char *message, uint32_t, void *userData)
{
    static_cast<std::vector<LoadError> *>(userData)->push_back(
        {Text(moduleName), Text(yinFile), kind == ZR_LOAD_WARNING, Text(message)});
    return 0;
}

} // namespace

void Complain(const std::string &message)
{
    std::fprintf(stderr, "zrschema: %s\n", message.c_str());
}

Session::Session(uint32_t flags, const std::vector<std::string> &directories)
    : ctx_(ZR_CTX_Create(flags))
{
    if (ctx_ == nullptr)
        throw std::bad_alloc();
    for (const std::string &directory : directories) {
        std::error_code error;
        fs::path path = fs::canonical(directory, error);
        if (error || ZR_CTX_SetSearchDir(ctx_, path.c_str()) != ZR_OK) {
            ZR_CTX_Delete(ctx_);
            throw UsageError{"not a directory: " + directory};
        }
        directories_.push_back(path.string());
    }
}

Session::~Session()
{
    ZR_CTX_Delete(ctx_);
}

ZrMod *Session::Module(const std::string &name) const
{
    return ZR_CTX_GetModuleByModName(ctx_, name.c_str());
}

bool Session::Load(const std::string &name)
{
    return ZR_CTX_LoadModule(ctx_, name.c_str()) == ZR_OK;
}

bool Session::EnableFeatures(const std::vector<std::string> &features)
{
    bool all = true;
    for (const std::string &feature : features) {
        size_t colon = feature.find(':');
        if (colon == std::string::npos || colon == 0 || colon + 1 == feature.size())
            throw UsageError{"--feature takes MODULE:NAME or MODULE:*, not " + feature};
        ZrMod *module = Module(feature.substr(0, colon));
        if (ZR_MOD_EnableFeature(module, feature.c_str() + colon + 1) != ZR_OK) {
            Complain("no such feature: " + feature);
            all = false;
        }
    }
    return all;
}

void Session::EnableAllFeatures(const std::vector<std::string> &modules)
{
    for (const std::string &name : modules)
        ZR_MOD_EnableFeature(Module(name), "*");
}

std::vector<LoadError> Session::Errors() const
{
    std::vector<LoadError> errors;
    ZR_CTX_ScanAllSchemaLoadFail(ctx_, CollectError, &errors);
    return errors;
}

bool Session::ReportFailures(const std::vector<std::string> &modules) const
{
    bool clean = true;
    for (const std::string &name : modules)
        if (Module(name) == nullptr) {
            Complain("cannot load module " + name);
            clean = false;
        }
    for (const LoadError &error : Errors()) {
        std::string where =
            error.file.empty() ? error.module : error.module + " (" + error.file + ")";
        Complain(where + ": " + (error.warning ? "warning: " : "error: ") + error.message);
        clean = clean && error.warning;
    }
    return clean;
}

bool LoadWithImports(Session &session, const ModuleOptions &options)
{
    std::vector<std::string> order =
        ModuleFiles(session.directories()).WithImports(options.modules);
    for (const std::string &name : order)
        session.Load(name);
    bool clean = session.ReportFailures(order);
    if (options.allFeatures)
        session.EnableAllFeatures(order);
    return session.EnableFeatures(options.features) && clean;
}

} // namespace tool
