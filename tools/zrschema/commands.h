// The commands of the program; each adds itself to the command line and runs when it is chosen.
#pragma once

#include <CLI/CLI.hpp>

#include "session.h"

namespace tool {

// The exit status of the command that ran is left in `status`.
void AddTreeCommand(CLI::App &app, Run &run, int &status);
void AddCheckCommand(CLI::App &app, Run &run, int &status);
void AddPrepareCommand(CLI::App &app, Run &run, int &status);
void AddNodeCommand(CLI::App &app, Run &run, int &status);
void AddValueCommand(CLI::App &app, Run &run, int &status);
void AddValidateCommand(CLI::App &app, Run &run, int &status);
void AddConvertCommand(CLI::App &app, Run &run, int &status);

// The documents of commands that fail before they have a result.
Json EmptyTreeDocument();
Json EmptyCheckDocument();
Json EmptyPrepareDocument();
Json EmptyNodeDocument();
Json EmptyValueDocument();
Json EmptyValidateDocument();
Json EmptyConvertDocument();

// Adds -p; the options for features; -m; --json; --standard; what --help says at its end.
void AddDirectoryOption(CLI::App &command, std::vector<std::string> &directories);
void AddFeatureOptions(CLI::App &command, ModuleOptions &options);
void AddModuleOption(CLI::App &command, ModuleOptions &options);
void AddJsonOption(CLI::App &command);
void AddStandardOption(CLI::App &command, bool &standard);
void AddNotes(CLI::App &command, const std::string &notes);

} // namespace tool
