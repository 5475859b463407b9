// SPDX-License-Identifier: Apache-2.0
// zrschema: prepares and loads modules, and prints, checks and uses them.
#include <algorithm>
#include <new>

#include "commands.h"

namespace tool {

std::string WithModuleNote(const std::string &notes)
{
    return notes + "\nMODULE is a module's name, NAME@REVISION, or a file.";
}

void AddDirectoryOption(Command &command, Words &directories)
{
    command.Texts("-p,--path", "DIR", "a directory that is searched for modules, YANG or YIN",
                  directories, Need::kRequired);
}

void AddFeatureOptions(Command &command, ModuleOptions &options)
{
    command.Texts("--feature", "MODULE:NAME",
                  "a feature to turn on; MODULE:* turns all of a module's features on",
                  options.features);
    command.Flag("--all-features", "turn all features of every module on", options.allFeatures);
}

void AddModuleOption(Command &command, ModuleOptions &options)
{
    command.Texts("-m,--module", "MODULE", "a module to load, with what it imports",
                  options.modules, Need::kRequired);
}

void AddStandardOption(Command &command, bool &standard)
{
    command.Flag("--standard",
                 "take what RFC 7950 allows where the library's own limits are narrower", standard);
}

namespace {

constexpr const char *kNotes =
    "Features start off: --feature and --all-features turn them on.\n"
    "validate reads standard input for -, and takes what it checks out of <rpc>, <action> and\n"
    "<notification>.\n";

std::string ExitNote()
{
    std::string note;
    for (const ExitMeaning &meaning : kExitMeanings)
        note += (note.empty() ? "Exit status: " : ", ") + std::to_string(meaning.status) + " " +
                meaning.text;
    return note + ".";
}

struct Entry {
    const char *name;
    void (*add)(CommandLine &line, Run &run);
    Json (*emptyDocument)();
};

// clang-format off
constexpr Entry kCommands[] = {
    {"tree",     AddTreeCommand,     EmptyTreeDocument},
    {"check",    AddCheckCommand,    EmptyCheckDocument},
    {"prepare",  AddPrepareCommand,  EmptyPrepareDocument},
    {"node",     AddNodeCommand,     EmptyNodeDocument},
    {"value",    AddValueCommand,    EmptyValueDocument},
    {"validate", AddValidateCommand, EmptyValidateDocument},
    {"convert",  AddConvertCommand,  EmptyConvertDocument},
};
// clang-format on

// What the shells' completion and the build of the man pages ask; the help does not show them.
struct HiddenEntry {
    const char *name;
    int (*run)(const CommandLine &line, const Words &words, Run &run);
};
constexpr HiddenEntry kHiddenCommands[] = {{"complete", Complete}, {"describe", Describe}};

bool AsksForJson(const Words &words)
{
    auto end = std::find(words.begin(), words.end(), "--"); // what follows are no options
    return std::find(words.begin(), end, "--json") != end;
}

int ParseAndRun(int argc, char **argv, const Words &words, Run &run)
{
    CommandLine line(
        "Loads YANG modules, as sources or in prepared YIN, and prints, checks and uses them.",
        kNotes + ExitNote());
    for (const Entry &command : kCommands) {
        command.add(line, run);
        if (!words.empty() && words.front() == command.name)
            run.SetEmptyDocument(command.emptyDocument());
    }
    for (const HiddenEntry &command : kHiddenCommands)
        if (!words.empty() && words.front() == command.name)
            return command.run(line, words, run);
    return line.Execute(argc, argv, run);
}

int Execute(int argc, char **argv, const Words &words, Run &run)
{
    try {
        return ParseAndRun(argc, argv, words, run);
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
