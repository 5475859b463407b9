// zrschema check: loads modules and reports what went wrong.
#include <unistd.h>

#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "commands.h"
#include "module_files.h"

namespace tool {

namespace {

using Json = nlohmann::ordered_json;

constexpr size_t kManyModules = 10; // from here on a terminal shows the progress

struct CheckOptions {
    std::vector<std::string> directories;
    std::vector<std::string> modules;
    bool all = false;
    bool imports = false;
    bool json = false;
};

struct ModuleReport {
    std::string name;
    const ZrMod *module; // null: not loaded
    std::vector<LoadError> errors;
};

struct Totals {
    size_t loaded = 0;
    size_t failed = 0;
    size_t errors = 0;
    size_t warnings = 0;
};

void LoadAll(Session &session, const std::vector<std::string> &names)
{
    bool progress = names.size() >= kManyModules && isatty(STDERR_FILENO) == 1;
    for (size_t i = 0; i < names.size(); ++i) {
        if (progress)
            std::fprintf(stderr, "\r\033[Kloading %zu/%zu %s", i + 1, names.size(),
                         names[i].c_str());
        session.Load(names[i]);
    }
    if (progress)
        std::fputs("\r\033[K", stderr);
}

// The named modules in their order, then those that were only imported and have something to tell.
std::vector<ModuleReport> Collect(const Session &session, const std::vector<std::string> &names)
{
    std::map<std::string, std::vector<LoadError>> errors;
    for (LoadError &error : session.Errors())
        errors[error.module].push_back(error);
    std::vector<ModuleReport> reports;
    std::set<std::string> reported;
    for (const std::string &name : names)
        if (reported.insert(name).second)
            reports.push_back({name, session.Module(name), errors[name]});
    for (const auto &[name, entries] : errors)
        if (reported.insert(name).second)
            reports.push_back({name, session.Module(name), entries});
    return reports;
}

Totals Count(const std::vector<ModuleReport> &reports)
{
    Totals totals;
    for (const ModuleReport &report : reports) {
        ++(report.module != nullptr ? totals.loaded : totals.failed);
        for (const LoadError &error : report.errors)
            ++(error.warning ? totals.warnings : totals.errors);
    }
    return totals;
}

const char *KindName(const LoadError &error)
{
    return error.warning ? "warning" : "error";
}

void PrintText(const std::vector<ModuleReport> &reports, const Totals &totals)
{
    for (const ModuleReport &report : reports) {
        const char *revision = ZR_MOD_GetRevision(report.module);
        std::printf("%s: %s%s%s\n", report.name.c_str(),
                    report.module != nullptr ? "loaded" : "not loaded",
                    revision != nullptr ? " " : "", revision != nullptr ? revision : "");
        for (const LoadError &error : report.errors)
            std::printf("  %s%s%s: %s\n", error.file.c_str(), error.file.empty() ? "" : ": ",
                        KindName(error), error.message.c_str());
    }
    std::printf("%zu modules: %zu loaded, %zu failed, %zu errors, %zu warnings\n", reports.size(),
                totals.loaded, totals.failed, totals.errors, totals.warnings);
}

Json TextOrNull(const char *text)
{
    return text != nullptr ? Json(text) : Json(nullptr);
}

void PrintJson(const std::vector<ModuleReport> &reports, const Totals &totals)
{
    Json modules = Json::array();
    for (const ModuleReport &report : reports) {
        Json errors = Json::array();
        for (const LoadError &error : report.errors)
            errors.push_back({{"file", error.file.empty() ? Json(nullptr) : Json(error.file)},
                              {"kind", KindName(error)},
                              {"message", error.message}});
        modules.push_back({{"name", report.name},
                           {"revision", TextOrNull(ZR_MOD_GetRevision(report.module))},
                           {"namespace", TextOrNull(ZR_MOD_GetModuleNs(report.module))},
                           {"loaded", report.module != nullptr},
                           {"errors", errors}});
    }
    Json whole = {{"modules", modules}, {"loaded", totals.loaded}, {"failed", totals.failed}};
    std::puts(whole.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

int RunCheck(const CheckOptions &options)
{
    if (options.all != options.modules.empty())
        throw UsageError{"check takes either MODULE... or --all"};
    uint32_t flags = options.imports ? ZR_CTX_LOAD_IMPORTS | ZR_CTX_IGNORE_IMPORT_ERRORS : 0;
    Session session(flags, options.directories);
    std::vector<std::string> names = options.modules;
    if (options.all) {
        ModuleFiles files(session.directories());
        names = files.InOrder(files.Names());
    }
    LoadAll(session, names);
    std::vector<ModuleReport> reports = Collect(session, names);
    Totals totals = Count(reports);
    (options.json ? PrintJson : PrintText)(reports, totals);
    for (const ModuleReport &report : reports)
        if (report.module == nullptr)
            Complain("cannot load module " + report.name);
    return totals.failed == 0 && totals.errors == 0 ? kExitOk : kExitFailed;
}

} // namespace

void AddCheckCommand(CLI::App &app, int &status)
{
    auto options = std::make_shared<CheckOptions>();
    CLI::App *command = app.add_subcommand("check", "load modules and report what went wrong");
    command->set_version_flag("--version", "zrschema " ZR_VERSION);
    AddDirectoryOption(*command, options->directories);
    command->add_flag("--imports", options->imports, "also load what the modules import");
    command->add_flag("--json", options->json, "print one JSON object");
    command->add_flag("--all", options->all,
                      "check every module of the directories, imported modules first");
    command->add_option("modules", options->modules, "the modules to check")->type_name("MODULE");
    command->callback([options, &status] { status = RunCheck(*options); });
}

} // namespace tool
