// SPDX-License-Identifier: Apache-2.0
// The command line as the commands see it. What parses it, CLI11, is known to command_line.cpp
// alone: its header takes seconds to compile.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace tool {

class Run;

using Words = std::vector<std::string>;

enum class Need { kOptional, kRequired };

// An option, or a word that stands for itself, as the help tells it.
struct OptionHelp {
    Words names;       // "-p", "--path"; of a word its one name
    std::string value; // what its value is called, "" for a flag
    std::string help;
    Words choices; // all values that are taken, where these are a few words
    bool isRequired;
    bool isRepeated;
};

// A command as its help tells it; pages and completion are made of it.
struct CommandHelp {
    std::string name, help, notes;
    std::vector<OptionHelp> options, words;
};

// The values of options that take one of a few words.
using Choices = std::map<const CLI::Option *, Words>;

// The options and words of one command; each leaves its value where it is told to. Names are those
// of an option ("-p,--path") or, without dashes, of a word that stands for itself; `value` is what
// the help calls its value.
class Command {
public:
    Command(CLI::App &app, int &status, Choices &choices)
        : app_(app), status_(status), choices_(choices)
    {
    }

    void Flag(const char *names, const char *help, bool &target);
    void Text(const char *names, const char *value, const char *help, std::string &target,
              Need need = Need::kOptional);
    // The value is to be one of the words, which the command checks.
    void Choice(const char *names, const char *value, const char *help, const Words &choices,
                std::string &target, Need need = Need::kOptional);
    // One value each time the option is given; as words, as many as there are.
    void Texts(const char *names, const char *value, const char *help, Words &target,
               Need need = Need::kOptional);
    // A number from 1 on.
    void Count(const char *names, const char *value, const char *help, uint64_t &target);
    // Has no target: it is looked for before the command line is parsed, since mistakes in the rest
    // of it are told in the document too.
    void Json();
    // What is done where the command is chosen; the result is the exit status.
    void OnRun(std::function<int()> run);

private:
    CLI::App &app_;
    int &status_;
    Choices &choices_;
};

class CommandLine {
public:
    CommandLine(const char *help, const std::string &notes);
    ~CommandLine();

    // `notes` stand at the end of the command's help.
    Command Add(const char *name, const char *help, const std::string &notes);
    // Parses the words and runs the command that they choose, or prints the help that they ask for;
    // the exit status. Throws a UsageError.
    int Execute(int argc, char **argv, Run &run);
    // The program, under its own name, and then its commands in their order.
    std::vector<CommandHelp> Describe() const;

private:
    std::unique_ptr<CLI::App> app_;
    Choices choices_;
    int status_;
};

} // namespace tool
