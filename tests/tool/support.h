// SPDX-License-Identifier: Apache-2.0
// Runs the command-line program and catches what it prints.
#pragma once

#include <string>

#include "support/temp_dir.h"

struct ToolRun {
    int status;
    std::string out;
    std::string err;
};

// `arguments` is the rest of a shell command line, `input` what the program reads on standard
// input. A redirection of standard output in `arguments` holds.
ToolRun RunTool(const std::string &arguments, const std::string &input = "");

// The same with a terminal for standard output and standard error, whose text is both of theirs.
ToolRun RunToolOnTerminal(const std::string &arguments);

inline const std::string kExampleModules = "-p " ZR_EXAMPLE_MODULES;

// A directory of modules.
class Folder : public zrtest::TempDir {
public:
    // Writes a file; its path.
    std::string Add(const std::string &name, const std::string &text) const
    {
        return Write(name, text);
    }
    // Writes a module with a namespace, a prefix "p" and what else it holds; the file's path.
    std::string AddModule(const std::string &fileName, const std::string &name,
                          const std::string &body) const;
};
