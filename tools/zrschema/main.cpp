// zrschema: loads YIN modules and prints, checks and uses them.
#include <cstdio>
#include <new>

#include "commands.h"

namespace tool {

void AddDirectoryOption(CLI::App &command, std::vector<std::string> &directories)
{
    command.add_option("-p,--path", directories, "a directory that is searched for YIN files")
        ->required()
        ->type_name("DIR")
        ->allow_extra_args(false);
}

void AddFeatureOptions(CLI::App &command, ModuleOptions &options)
{
    command
        .add_option("--feature", options.features,
                    "a feature to turn on; MODULE:* turns all of a module's features on")
        ->type_name("MODULE:NAME")
        ->allow_extra_args(false);
    command.add_flag("--all-features", options.allFeatures, "turn all features of every module on");
}

void AddModuleOption(CLI::App &command, ModuleOptions &options)
{
    command.add_option("-m,--module", options.modules, "a module to load, with what it imports")
        ->required()
        ->type_name("MODULE")
        ->allow_extra_args(false);
}

} // namespace tool

namespace {

int Run(int argc, char **argv)
{
    CLI::App app("Loads YANG modules in their XML form (YIN) and prints, checks and uses them.",
                 "zrschema");
    app.set_version_flag("--version", "zrschema " ZR_VERSION);
    app.require_subcommand(1);
    int status = tool::kExitOk;
    tool::AddTreeCommand(app, status);
    tool::AddCheckCommand(app, status);
    tool::AddNodeCommand(app, status);
    tool::AddValueCommand(app, status);
    tool::AddValidateCommand(app, status);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0)
            return app.exit(error); // --help and --version
        throw tool::UsageError{error.what()};
    }
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return Run(argc, argv);
    } catch (const tool::UsageError &error) {
        tool::Complain(error.message + " (see zrschema --help)");
        return tool::kExitUsage;
    } catch (const std::bad_alloc &) {
        tool::Complain("out of memory");
        return tool::kExitFailed;
    } catch (const std::exception &error) {
        tool::Complain(error.what());
        return tool::kExitFailed;
    }
}
