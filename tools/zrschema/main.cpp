// zrschema: prepares and loads modules, and prints, checks and uses them.
#include <algorithm>
#include <new>
#include <sstream>

#include "close_names.h"
#include "commands.h"

namespace tool {

void AddDirectoryOption(CLI::App &command, std::vector<std::string> &directories)
{
    command
        .add_option("-p,--path", directories,
                    "a directory that is searched for modules, YANG or YIN")
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

void AddJsonOption(CLI::App &command)
{
    // Whether it is there is known before the command line is parsed, since mistakes in the rest
    // of it are told in the document too.
    command.add_flag("--json")->description("print one JSON document, also when something fails");
}

void AddStandardOption(CLI::App &command, bool &standard)
{
    command.add_flag("--standard", standard,
                     "take what RFC 7950 allows where the library's own limits are narrower");
}

void AddNotes(CLI::App &command, const std::string &notes)
{
    command.footer(notes + "\nMODULE is a module's name, NAME@REVISION, or a file.");
    command.set_version_flag("--version", "zrschema " ZR_VERSION);
}

namespace {

constexpr const char *kNotes =
    "Features start off: --feature and --all-features turn them on.\n"
    "validate reads standard input for -, and takes what it checks out of <rpc>, <action> and\n"
    "<notification>.\n"
    "Exit status: 0 all well, 1 something failed, 2 wrong usage.";

struct Command {
    const char *name;
    void (*add)(CLI::App &app, Run &run, int &status);
    Json (*emptyDocument)();
};

// clang-format off
constexpr Command kCommands[] = {
    {"tree",     AddTreeCommand,     EmptyTreeDocument},
    {"check",    AddCheckCommand,    EmptyCheckDocument},
    {"prepare",  AddPrepareCommand,  EmptyPrepareDocument},
    {"node",     AddNodeCommand,     EmptyNodeDocument},
    {"value",    AddValueCommand,    EmptyValueDocument},
    {"validate", AddValidateCommand, EmptyValidateDocument},
    {"convert",  AddConvertCommand,  EmptyConvertDocument},
};
// clang-format on

using Words = std::vector<std::string>;

bool AsksForJson(const Words &words)
{
    auto end = std::find(words.begin(), words.end(), "--"); // what follows are no options
    return std::find(words.begin(), end, "--json") != end;
}

std::string NoSuchCommand(const std::string &word)
{
    std::vector<std::string> names;
    for (const Command &command : kCommands)
        names.push_back(command.name);
    return "no such command: " + word + DidYouMean(CloseNames(word, names));
}

std::string NoSuchOption(const CLI::App &command, const std::string &word)
{
    std::vector<std::string> names;
    for (const CLI::Option *option : command.get_options())
        for (const std::string &name : option->get_lnames())
            names.push_back("--" + name);
    std::string close = DidYouMean(CloseNames(word.substr(0, word.find('=')), names));
    return "no such option: " + word +
           (close.empty() ? "; a value that begins with - stands behind --" : close);
}

// What is wrong with the command line: a word that means nothing, or else what the parser says.
std::string Explain(const CLI::App &app, const Words &words, const CLI::ParseError &error)
{
    if (app.get_subcommands().empty())
        return words.empty() ? error.what() : NoSuchCommand(words.front());
    for (const std::string &word : app.remaining(true))
        if (word.size() > 1 && word.front() == '-')
            return NoSuchOption(*app.get_subcommands().front(), word);
    return error.what();
}

int Parse(int argc, char **argv, const Words &words, Run &run)
{
    CLI::App app(
        "Loads YANG modules, as sources or in prepared YIN, and prints, checks and uses them.",
        "zrschema");
    app.set_version_flag("--version", "zrschema " ZR_VERSION);
    app.footer(kNotes);
    app.require_subcommand(1);
    int status = kExitOk;
    for (const Command &command : kCommands) {
        command.add(app, run, status);
        if (!words.empty() && words.front() == command.name)
            run.SetEmptyDocument(command.emptyDocument());
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() != 0)
            throw UsageError{Explain(app, words, error)};
        std::stringstream out; // --help and --version
        app.exit(error, out, out);
        run.Print(out.str());
    }
    return status;
}

int Execute(int argc, char **argv, const Words &words, Run &run)
{
    try {
        return Parse(argc, argv, words, run);
    } catch (const UsageError &error) {
        run.Complain(error.message + " (see zrschema --help)");
        return kExitUsage;
    } catch (const std::bad_alloc &) {
        run.Complain("out of memory");
    } catch (const std::exception &error) {
        run.Complain(error.what());
    }
    return kExitFailed;
}

} // namespace

} // namespace tool

int main(int argc, char **argv)
try {
    tool::Words words(argv + std::min(argc, 1), argv + argc);
    tool::Run run(tool::AsksForJson(words));
    return run.Finish(tool::Execute(argc, argv, words, run));
} catch (...) {
    return tool::kExitFailed; // not even the words or the end of the output found memory
}
