// Runs the command-line program and catches what it prints.
#pragma once

#include <string>

struct ToolRun {
    int status;
    std::string out;
    std::string err;
};

// `arguments` is the rest of a shell command line, `input` what the program reads on standard
// input.
ToolRun RunTool(const std::string &arguments, const std::string &input = "");

inline const std::string kExampleModules = "-p " ZR_EXAMPLES_DIR "/modules";
