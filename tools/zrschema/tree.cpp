// zrschema tree: prints modules as text trees.
#include <cstdio>

#include "commands.h"

namespace tool {

namespace {

uint32_t WriteOut(const char *text, uint32_t length, void *)
{
    return std::fwrite(text, 1, length, stdout) == length ? 0 : 1;
}

int RunTree(const ModuleOptions &options)
{
    Session session(0, options.directories);
    bool good = LoadWithImports(session, options);
    bool first = true;
    for (const std::string &name : options.modules) {
        const ZrMod *module = session.Module(name);
        if (module == nullptr)
            continue; // named as a failure already
        if (!first)
            std::fputc('\n', stdout);
        first = false;
        if (ZR_MOD_PrintModelTree(module, WriteOut, nullptr) != ZR_OK) {
            Complain("cannot print module " + name);
            good = false;
        }
    }
    return good ? kExitOk : kExitFailed;
}

} // namespace

void AddTreeCommand(CLI::App &app, int &status)
{
    auto options = std::make_shared<ModuleOptions>();
    CLI::App *command = app.add_subcommand("tree", "print modules as text trees (RFC 8340)");
    command->set_version_flag("--version", "zrschema " ZR_VERSION);
    AddDirectoryOption(*command, options->directories);
    AddFeatureOptions(*command, *options);
    command->add_option("modules", options->modules, "the modules to print")
        ->required()
        ->type_name("MODULE");
    command->callback([options, &status] { status = RunTree(*options); });
}

} // namespace tool
