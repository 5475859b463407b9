// The commands of the program; each adds itself to the command line and runs when it is chosen.
#pragma once

#include <CLI/CLI.hpp>

#include "session.h"

namespace tool {

// The exit status of the command that ran is left in `status`.
void AddTreeCommand(CLI::App &app, int &status);
void AddCheckCommand(CLI::App &app, int &status);
void AddNodeCommand(CLI::App &app, int &status);
void AddValueCommand(CLI::App &app, int &status);
void AddValidateCommand(CLI::App &app, int &status);

// Adds -p; the options for features; -m.
void AddDirectoryOption(CLI::App &command, std::vector<std::string> &directories);
void AddFeatureOptions(CLI::App &command, ModuleOptions &options);
void AddModuleOption(CLI::App &command, ModuleOptions &options);

} // namespace tool
