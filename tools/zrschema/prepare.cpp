// SPDX-License-Identifier: Apache-2.0
// zrschema prepare: writes prepared YIN of YANG sources.
#include <cerrno>
#include <cstring>
#include <fstream>

#include "commands.h"
#include "sources.h"

namespace tool {

namespace {

struct PrepareOptions {
    std::vector<std::string> directories;
    std::vector<std::string> modules;
    std::vector<std::string> features;
    std::string output;
    std::string dependencies;
    uint64_t nodeLimit = 0; // 0: as the library has it
    bool all = false;
    bool toStandardOutput = false;
    bool strip = false;
};

struct Prepared {
    std::string module;
    std::string file; // "" when it was not written
};

// "MODULE:NAME,NAME": these are on and the module's others off; "MODULE:" turns all off, "MODULE:*"
// all on.
void SetFeatures(ZrYang *yang, const std::string &given)
{
    size_t colon = given.find(':');
    if (colon == std::string::npos || colon == 0)
        throw UsageError{"--features takes MODULE:NAME,NAME..., not " + given};
    std::string module = given.substr(0, colon), rest = given.substr(colon + 1);
    ZR_YANG_SetFeature(yang, module.c_str(), "*", 0);
    while (!rest.empty()) {
        size_t comma = std::min(rest.find(','), rest.size());
        ZR_YANG_SetFeature(yang, module.c_str(), rest.substr(0, comma).c_str(), 1);
        rest.erase(0, comma + 1);
    }
}

// A path as make reads it.
std::string ForMake(const std::string &path)
{
    std::string text;
    for (char c : path) {
        if (c == ' ' || c == '#')
            text += '\\';
        if (c == '$')
            text += '$';
        text += c;
    }
    return text;
}

int AppendDependency(const char *path, void *user)
{
    *static_cast<std::string *>(user) += " \\\n  " + ForMake(path);
    return 0;
}

// A rule for make: the prepared file and all the sources that it is made from.
bool WriteDependencies(Run &run, Sources &sources, const std::string &path,
                       const std::vector<Prepared> &modules)
{
    std::string rules;
    for (const Prepared &one : modules) {
        if (one.file.empty())
            continue;
        rules += ForMake(one.file) + ":";
        ZR_YANG_ScanDependencies(sources.yang(), one.module.c_str(), AppendDependency, &rules);
        rules += "\n";
    }
    std::ofstream file(path, std::ios::binary);
    file << rules << std::flush;
    if (!file)
        run.Complain("cannot write " + path + ": " + std::strerror(errno));
    return static_cast<bool>(file);
}

bool PrepareOne(Run &run, Sources &sources, const PrepareOptions &options, Prepared &one)
{
    if (options.toStandardOutput) {
        std::string text;
        bool isDone = sources.Prepare(one.module, text);
        if (isDone)
            run.Print(text);
        return isDone;
    }
    uint32_t status =
        ZR_YANG_PrepareToFile(sources.yang(), one.module.c_str(), options.output.c_str());
    if (status == ZR_YANG_ERR_NO_MEMORY)
        throw std::bad_alloc();
    std::string path = options.output + "/" + one.module.substr(0, one.module.find('@')) + ".yin";
    if (status == ZR_YANG_ERR_IO)
        run.Complain("cannot write " + path + ": " + std::strerror(errno));
    if (status == ZR_YANG_OK)
        one.file = path;
    return status == ZR_YANG_OK;
}

void CheckUsage(const Run &run, const PrepareOptions &options)
{
    if (options.all == !options.modules.empty())
        throw UsageError{"prepare takes either modules or --all"};
    if (options.toStandardOutput == !options.output.empty())
        throw UsageError{"prepare takes either -o or --stdout"};
    if (options.toStandardOutput && (options.all || options.modules.size() != 1 || run.json()))
        throw UsageError{"--stdout takes one module, and no --json"};
    if (options.toStandardOutput && !options.dependencies.empty())
        throw UsageError{"--dependencies needs -o"};
}

int RunPrepare(Run &run, const PrepareOptions &options)
{
    CheckUsage(run, options);
    Sources sources(run);
    for (const std::string &directory : options.directories)
        if (!sources.AddDirectory(directory))
            return kExitFailed;
    for (const std::string &given : options.features)
        SetFeatures(sources.yang(), given);
    ZR_YANG_SetOption(sources.yang(), ZR_YANG_OPTION_STRIP, options.strip);
    if (options.nodeLimit != 0)
        ZR_YANG_SetOption(sources.yang(), ZR_YANG_OPTION_NODE_LIMIT, options.nodeLimit);
    std::vector<std::string> names = options.all ? sources.Names() : options.modules;
    if (names.empty())
        run.Complain("no module found: the directories hold no NAME.yang");
    std::vector<Prepared> modules;
    bool good = !names.empty();
    for (const std::string &name : names) {
        run.ShowProgress("preparing", modules.size() + 1, names.size(), name);
        good = PrepareOne(run, sources, options, modules.emplace_back(Prepared{name, ""})) && good;
    }
    if (!options.dependencies.empty())
        good = WriteDependencies(run, sources, options.dependencies, modules) && good;
    Json list = Json::array();
    for (const Prepared &one : modules)
        list.push_back(
            {{"module", one.module}, {"file", one.file.empty() ? Json(nullptr) : Json(one.file)}});
    if (run.json())
        run.PrintDocument({{"modules", list}});
    return good ? kExitOk : kExitFailed;
}

} // namespace

Json EmptyPrepareDocument()
{
    return {{"modules", Json::array()}};
}

void AddPrepareCommand(CommandLine &line, Run &run)
{
    auto options = std::make_shared<PrepareOptions>();
    Command command = line.Add(
        "prepare", "check YANG sources and write them as prepared YIN",
        "Nothing is written for a module with an error; warnings are none. What is wrong is said "
        "as\nFILE:LINE:COLUMN: error: MESSAGE.\n"
        "MODULE is a module's name, whose newest revision is taken, or NAME@REVISION.");
    command.Texts("-p,--path", "DIR", "a directory with YANG sources", options->directories,
                  Need::kRequired);
    command.Text("-o,--output", "OUTDIR", "the directory for NAME.yin of each module",
                 options->output);
    command.Flag("--stdout", "print one module instead", options->toStandardOutput);
    command.Texts("--features", "MODULE:NAME,NAME...",
                  "the features of a module that are on, for expressions that prepared YIN cannot "
                  "hold; * is all",
                  options->features);
    command.Text("--dependencies", "FILE",
                 "write the sources of each prepared file as a rule for make",
                 options->dependencies);
    command.Flag("--strip", "leave descriptions, references and contacts out", options->strip);
    command.Count("--node-limit", "COUNT",
                  "the most nodes that a module may expand to; 1000000 when nothing is said",
                  options->nodeLimit);
    command.Flag("--all", "prepare every module of the directories", options->all);
    command.Json();
    command.Texts("modules", "MODULE", "the modules to prepare", options->modules);
    command.OnRun([options, &run] { return RunPrepare(run, *options); });
}

} // namespace tool
