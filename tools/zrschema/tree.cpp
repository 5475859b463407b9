// SPDX-License-Identifier: Apache-2.0
// zrschema tree: prints modules as text trees.
#include "commands.h"

namespace tool {

namespace {

uint32_t Append(const char *text, uint32_t length, void *out)
{
    static_cast<std::string *>(out)->append(text, length);
    return 0;
}

struct TreeOptions : ModuleOptions {
    bool standard = false;
};

void PrintText(Run &run, const Json &trees)
{
    bool first = true;
    for (const Json &tree : trees) {
        if (tree["tree"].is_null())
            continue; // named as a failure already
        run.Print((first ? "" : "\n") + tree["tree"].get<std::string>());
        first = false;
    }
}

int RunTree(Run &run, const TreeOptions &options)
{
    Session session(run, options.standard ? ZR_CTX_STANDARD : 0, options.directories);
    std::vector<std::string> names;
    bool good = session.SetUp(options, names);
    Json trees = Json::array();
    for (const std::string &name : names) {
        const ZrMod *module = session.Module(name);
        std::string text;
        bool printed = ZR_MOD_PrintModelTree(module, Append, &text) == ZR_OK;
        if (!printed && module != nullptr)
            run.Complain("cannot print module " + name);
        good = good && printed;
        trees.push_back({{"module", name}, {"tree", printed ? Json(text) : Json(nullptr)}});
    }
    if (run.json())
        run.PrintDocument({{"trees", trees}});
    else
        PrintText(run, trees);
    return good ? kExitOk : kExitFailed;
}

} // namespace

Json EmptyTreeDocument()
{
    return {{"trees", Json::array()}};
}

void AddTreeCommand(CommandLine &line, Run &run)
{
    auto options = std::make_shared<TreeOptions>();
    Command command =
        line.Add("tree", "print modules as text trees (RFC 8340)",
                 WithModuleNote(
                     "Features start off; nodes that depend on one that is off are not printed."));
    AddDirectoryOption(command, options->directories);
    AddFeatureOptions(command, *options);
    AddStandardOption(command, options->standard);
    command.Json();
    command.Texts("modules", "MODULE", "the modules to print", options->modules, Need::kRequired);
    command.OnRun([options, &run] { return RunTree(run, *options); });
}

} // namespace tool
