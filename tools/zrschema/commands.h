// SPDX-License-Identifier: Apache-2.0
// The commands of the program; each adds itself to the command line and runs when it is chosen.
#pragma once

#include "command_line.h"
#include "session.h"

namespace tool {

void AddTreeCommand(CommandLine &line, Run &run);
void AddCheckCommand(CommandLine &line, Run &run);
void AddPrepareCommand(CommandLine &line, Run &run);
void AddNodeCommand(CommandLine &line, Run &run);
void AddValueCommand(CommandLine &line, Run &run);
void AddValidateCommand(CommandLine &line, Run &run);
void AddConvertCommand(CommandLine &line, Run &run);

// For the shells' completion: the words are "complete", "--", and those of a command line after the
// program's name. Prints what may stand in place of the last of them, each as a line "WORD TAB
// HELP" or "WORD", or as ":files" or ":directories" where the shell knows better. A word that ends
// with / : or = goes on.
int Complete(const CommandLine &line, const Words &words, Run &run);
// For the man pages: prints all commands with their options as one JSON document.
int Describe(const CommandLine &line, const Words &words, Run &run);

// The documents of commands that fail before they have a result.
Json EmptyTreeDocument();
Json EmptyCheckDocument();
Json EmptyPrepareDocument();
Json EmptyNodeDocument();
Json EmptyValueDocument();
Json EmptyValidateDocument();
Json EmptyConvertDocument();

// Adds -p; the options for features; -m; --standard.
void AddDirectoryOption(Command &command, Words &directories);
void AddFeatureOptions(Command &command, ModuleOptions &options);
void AddModuleOption(Command &command, ModuleOptions &options);
void AddStandardOption(Command &command, bool &standard);
// The notes at the end of a command's help, with what MODULE is.
std::string WithModuleNote(const std::string &notes);

} // namespace tool
