// SPDX-License-Identifier: Apache-2.0
// zrschema check: loads modules and reports what went wrong.
#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "commands.h"

namespace tool {

namespace {

struct CheckOptions {
    std::vector<std::string> directories;
    std::vector<std::string> modules;
    bool all = false;
    bool imports = false;
    bool standard = false;
};

struct ModuleReport {
    std::string name;
    const ZrMod *module; // null: not loaded
    std::vector<Problem> errors;
};

struct Totals {
    size_t loaded = 0;
    size_t failed = 0;
    size_t errors = 0;
    size_t warnings = 0;
};

// The modules to check. All of them: what is in the directories and no module file is said.
std::vector<std::string> ModulesToCheck(Session &session, const CheckOptions &options)
{
    if (!options.all)
        return session.Choose(options.modules);
    ModuleFiles &files = session.files();
    for (const Problem &problem : files.leftOut())
        session.run().Say(problem);
    std::vector<std::string> names = files.InOrder(files.Names());
    if (names.empty()) {
        std::string message =
            "no module found: looked for module files NAME.yang, NAME.yin, NAME@*.yin in";
        for (const std::string &directory : session.directories())
            message += " " + directory;
        session.run().Complain(message);
    }
    return names;
}

void LoadAll(Session &session, std::vector<std::string> names)
{
    // What was chosen by its file comes before an import of the same name can.
    std::stable_partition(names.begin(), names.end(), [&](const std::string &name) {
        return !session.files().ChosenPath(name).empty();
    });
    for (size_t i = 0; i < names.size(); ++i) {
        session.run().ShowProgress("loading", i + 1, names.size(), names[i]);
        session.Load(names[i]);
    }
}

// The named modules in their order, then those that were only imported and have something to tell.
std::vector<ModuleReport> Collect(Session &session, const std::vector<std::string> &names,
                                  bool everyFile)
{
    std::map<std::string, std::vector<Problem>> errors;
    for (const Problem &error : session.Errors())
        errors[error.module].push_back(error);
    std::vector<ModuleReport> reports;
    std::set<std::string> reported;
    for (const std::string &name : names)
        if (reported.insert(name).second)
            reports.push_back({name, session.Module(name), errors[name]});
    for (const auto &[name, entries] : errors)
        if (reported.insert(name).second)
            reports.push_back({name, session.Module(name), entries});
    ModuleFiles &files = session.files();
    for (ModuleReport &report : reports) {
        auto add = [&report](std::vector<Problem> problems) {
            std::ranges::move(problems, std::back_inserter(report.errors));
        };
        add(files.FaultsOf(report.name, report.module != nullptr));
        if (everyFile)
            add(files.FaultsBeside(report.name));
        add(files.PassedOverIn(report.name));
    }
    return reports;
}

Totals Count(const Run &run, const std::vector<ModuleReport> &reports)
{
    Totals totals;
    totals.errors = run.CountOfSources(false);
    totals.warnings = run.CountOfSources(true);
    for (const ModuleReport &report : reports) {
        ++(report.module != nullptr ? totals.loaded : totals.failed);
        for (const Problem &error : report.errors)
            ++(error.warning ? totals.warnings : totals.errors);
    }
    return totals;
}

void PrintText(Run &run, const std::vector<ModuleReport> &reports, const Totals &totals)
{
    for (const ModuleReport &report : reports) {
        const char *revision = ZR_MOD_GetRevision(report.module);
        run.Print(report.name + ": " + (report.module != nullptr ? "loaded" : "not loaded") +
                  (revision != nullptr ? std::string(" ") + revision : "") + "\n");
        for (const Problem &error : report.errors) {
            std::string place = PlaceOf(error);
            run.Print("  " + place + (place.empty() ? "" : ": ") + KindName(error) + ": " +
                      error.message + "\n");
        }
    }
    run.Print(std::to_string(reports.size()) + " modules: " + std::to_string(totals.loaded) +
              " loaded, " + std::to_string(totals.failed) + " failed, " +
              std::to_string(totals.errors) + " errors, " + std::to_string(totals.warnings) +
              " warnings\n");
}

void PrintJson(Run &run, const std::vector<ModuleReport> &reports, const Totals &totals)
{
    Json modules = Json::array();
    for (const ModuleReport &report : reports) {
        Json errors = Json::array();
        for (const Problem &error : report.errors)
            errors.push_back(ToJson(error));
        modules.push_back({{"name", report.name},
                           {"revision", TextOrNull(ZR_MOD_GetRevision(report.module))},
                           {"namespace", TextOrNull(ZR_MOD_GetModuleNs(report.module))},
                           {"loaded", report.module != nullptr},
                           {"errors", errors}});
    }
    run.PrintDocument({{"modules", modules}, {"loaded", totals.loaded}, {"failed", totals.failed}});
}

int RunCheck(Run &run, const CheckOptions &options)
{
    if (options.all != options.modules.empty())
        throw UsageError{"check takes either MODULE... or --all"};
    uint32_t flags = options.imports ? ZR_CTX_LOAD_IMPORTS | ZR_CTX_IGNORE_IMPORT_ERRORS : 0;
    if (options.standard)
        flags |= ZR_CTX_STANDARD;
    Session session(run, flags, options.directories);
    std::vector<std::string> names = ModulesToCheck(session, options);
    LoadAll(session, names);
    std::vector<ModuleReport> reports = Collect(session, names, options.all);
    Totals totals = Count(run, reports);
    for (const ModuleReport &report : reports)
        if (report.module == nullptr)
            session.ExplainNotLoaded(report.name, session.LoadsWithStandard(report.name)
                                                      ? "; it loads with --standard"
                                                      : "");
    (run.json() ? PrintJson : PrintText)(run, reports, totals);
    return !names.empty() && totals.failed == 0 && totals.errors == 0 ? kExitOk : kExitFailed;
}

} // namespace

Json EmptyCheckDocument()
{
    return {{"modules", Json::array()}, {"loaded", 0}, {"failed", 0}};
}

void AddCheckCommand(CommandLine &line, Run &run)
{
    auto options = std::make_shared<CheckOptions>();
    Command command =
        line.Add("check", "load modules and report what went wrong",
                 WithModuleNote("Warnings tell of what the library passes over, such as uses and "
                                "grouping: YIN is to be\nprepared (see docs/yin.md). They are no "
                                "failure."));
    AddDirectoryOption(command, options->directories);
    command.Flag("--imports", "also load what the modules import", options->imports);
    AddStandardOption(command, options->standard);
    command.Json();
    command.Flag("--all", "check every module of the directories, imported modules first",
                 options->all);
    command.Texts("modules", "MODULE", "the modules to check", options->modules);
    command.OnRun([options, &run] { return RunCheck(run, *options); });
}

} // namespace tool
