// SPDX-License-Identifier: Apache-2.0
#include "session.h"

#include <zrpatterns/zrpatterns.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <new>
#include <stdexcept>

#include "close_names.h"
#include "xml_text.h"

namespace fs = std::filesystem;

namespace tool {

namespace {

std::string OrNothing(const char *text)
{
    return text != nullptr ? text : "";
}

uint32_t CollectError(const char *moduleName, const char *yinFile, uint32_t kind,
                      const char *message, uint32_t, void *userData)
{
    static_cast<std::vector<Problem> *>(userData)->push_back(
        {OrNothing(message), OrNothing(moduleName), OrNothing(yinFile), 0,
         kind == ZR_LOAD_WARNING});
    return 0;
}

std::vector<std::string> AbsolutePaths(const std::vector<std::string> &directories)
{
    std::vector<std::string> paths;
    for (const std::string &directory : directories) {
        std::error_code error;
        fs::path path = fs::canonical(directory, error);
        if (!error && !fs::is_directory(path, error))
            error = std::make_error_code(std::errc::not_a_directory);
        if (error)
            throw std::runtime_error("cannot list " + directory + ": " + error.message());
        paths.push_back(path.string());
    }
    return paths;
}

using Context = std::unique_ptr<ZrCtx, decltype(&ZR_CTX_Delete)>;

Context MakeContext(uint32_t flags, const std::vector<std::string> &directories)
{
    Context ctx(ZR_CTX_Create(flags), ZR_CTX_Delete);
    if (!ctx || ZR_CTX_SetPatternMatcher(ctx.get(), ZR_PATTERNS_GetMatcher()) != ZR_OK)
        throw std::bad_alloc();
    for (const std::string &path : directories)
        if (ZR_CTX_SetSearchDir(ctx.get(), path.c_str()) != ZR_OK)
            throw std::bad_alloc();
    return ctx;
}

} // namespace

Session::Session(Run &run, uint32_t flags, const std::vector<std::string> &directories)
    : run_(run), ctx_(nullptr), flags_(flags), directories_(AbsolutePaths(directories)),
      sources_(run), files_(run_, directories_, sources_)
{
    ctx_ = MakeContext(flags, directories_).release();
}

Session::~Session()
{
    ZR_CTX_Delete(ctx_);
}

ZrMod *Session::Module(const std::string &name) const
{
    return ZR_CTX_GetModuleByModName(ctx_, name.c_str());
}

std::vector<std::string> Session::Choose(const std::vector<std::string> &given)
{
    std::vector<std::string> names;
    for (const std::string &word : given) {
        ModuleChoice choice = files_.Choose(word);
        if (!choice.problem.empty())
            refused_[choice.name] = choice.problem;
        names.push_back(choice.name);
    }
    return names;
}

void Session::LoadInto(ZrCtx *ctx, const std::string &name)
{
    std::string path = files_.ChosenPath(name), text;
    if (path.empty())
        ZR_CTX_LoadModule(ctx, name.c_str());
    else if (files_.ReadText(path, text).empty())
        ZR_CTX_LoadMemory(ctx, text.c_str());
}

void Session::Load(const std::string &name)
{
    if (refused_.count(name) != 0)
        return;
    LoadInto(ctx_, name);
    // Loading from memory leaves imports to its caller.
    if ((flags_ & ZR_CTX_LOAD_IMPORTS) != 0 && !files_.ChosenPath(name).empty())
        for (const std::string &import : files_.ImportsOf(name))
            LoadImport(import);
}

void Session::LoadImport(const std::string &name)
{
    if (Module(name) != nullptr)
        return;
    files_.Take(name);
    if (files_.ChosenPath(name).empty())
        ZR_CTX_LoadModule(ctx_, name.c_str());
    else
        Load(name);
}

bool Session::LoadsWithStandard(const std::string &name)
{
    if ((flags_ & ZR_CTX_STANDARD) != 0 || refused_.count(name) != 0 || !files_.Has(name))
        return false;
    Context ctx = MakeContext(ZR_CTX_STANDARD, directories_);
    LoadInto(ctx.get(), name);
    return ZR_CTX_GetModuleByModName(ctx.get(), name.c_str()) != nullptr;
}

void Session::ExplainNotLoaded(const std::string &name, const std::string &advice)
{
    std::string message = "cannot load module " + name;
    auto refused = refused_.find(name);
    if (refused != refused_.end())
        message += ": " + refused->second;
    else if (!files_.Has(name))
        message += DidYouMean(files_.CloseTo(name));
    for (const Problem &problem : files_.leftOut())
        if (fs::path(problem.file).stem() == name)
            message += ": " + problem.file + " is " + problem.message;
    run_.Complain(message + advice);
}

std::vector<Problem> Session::Errors() const
{
    std::vector<Problem> errors;
    ZR_CTX_ScanAllSchemaLoadFail(ctx_, CollectError, &errors);
    return errors;
}

bool Session::ReportFailures(const std::vector<std::string> &modules)
{
    bool clean = true;
    std::vector<Problem> problems;
    for (const std::string &name : modules) {
        bool isLoaded = Module(name) != nullptr;
        if (!isLoaded) {
            ExplainNotLoaded(name);
            clean = false;
        }
        for (Problem &fault : files_.FaultsOf(name, isLoaded)) {
            fault.module = name;
            problems.push_back(fault);
        }
    }
    for (const Problem &error : Errors())
        problems.push_back(error);
    for (const Problem &problem : problems) {
        run_.Say(problem);
        clean = clean && problem.warning;
    }
    return clean;
}

void Session::ReportMissingImports(const std::vector<std::string> &modules)
{
    for (const std::string &name : modules)
        for (const std::string &import : files_.ImportsOf(name))
            if (Module(import) == nullptr && !files_.Has(import))
                run_.Say({"imports " + import + ", which the search directories do not have", name,
                          "", 0, true});
}

bool Session::EnableFeature(const std::string &feature)
{
    size_t colon = feature.find(':');
    if (colon == std::string::npos || colon == 0 || colon + 1 == feature.size())
        throw UsageError{"--feature takes MODULE:NAME or MODULE:*, not " + feature};
    std::string module = feature.substr(0, colon), name = feature.substr(colon + 1);
    if (ZR_MOD_EnableFeature(Module(module), name.c_str()) == ZR_OK)
        return true;
    std::set<std::string> features = files_.FeaturesOf(module);
    std::vector<std::string> close = CloseNames(name, {features.begin(), features.end()});
    for (std::string &one : close)
        one.insert(0, ":").insert(0, module);
    run_.Complain("no such feature: " + feature +
                  (Module(module) == nullptr ? " (module " + module + " is not loaded)" : "") +
                  DidYouMean(close));
    return false;
}

bool Session::SetUp(const ModuleOptions &options, std::vector<std::string> &namesOut)
{
    sources_.DecideFeatures(options.features, options.allFeatures);
    namesOut = Choose(options.modules);
    std::vector<std::string> order = files_.WithImports(namesOut);
    for (size_t i = 0; i < order.size(); ++i) {
        run_.ShowProgress("loading", i + 1, order.size(), order[i]);
        Load(order[i]);
    }
    bool clean = ReportFailures(order);
    ReportMissingImports(order);
    if (options.allFeatures)
        for (const std::string &name : order)
            ZR_MOD_EnableFeature(Module(name), "*");
    for (const std::string &feature : options.features)
        clean = EnableFeature(feature) && clean;
    return clean;
}

} // namespace tool
