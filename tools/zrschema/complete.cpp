// SPDX-License-Identifier: Apache-2.0
// zrschema complete: what may stand at the end of a command line, for the shells.
#include <cstdlib>

#include "candidates.h"
#include "commands.h"

namespace tool {

namespace {

bool IsOption(const std::string &word)
{
    return word.size() > 1 && word.front() == '-';
}

// "~/yang" as a shell would give it to the program.
std::string WithHome(const std::string &path)
{
    const char *home = std::getenv("HOME");
    return path.starts_with("~/") && home != nullptr ? home + path.substr(1) : path;
}

// A command line that is read up to its last word.
class Reader {
public:
    explicit Reader(const CommandHelp &command) : command_(command) {}

    Candidates Complete(const Words &words)
    {
        for (size_t i = 0; i + 1 < words.size(); ++i)
            Take(words[i]);
        return CompleteWord(words.back());
    }

private:
    const OptionHelp *Find(const std::string &name) const
    {
        for (const OptionHelp &option : command_.options)
            for (const std::string &one : option.names)
                if (one == name)
                    return &option;
        return nullptr;
    }

    const OptionHelp *NextWord() const
    {
        const std::vector<OptionHelp> &words = command_.words;
        if (count_ < words.size())
            return &words[count_];
        return !words.empty() && words.back().isRepeated ? &words.back() : nullptr;
    }

    void Keep(const OptionHelp *option, const std::string &value)
    {
        if (option != nullptr && option->value == "DIR")
            given_.directories.push_back(WithHome(value));
        if (option != nullptr && option->value == "MODULE")
            given_.modules.push_back(value);
    }

    void Take(const std::string &word)
    {
        if (waiting_ != nullptr) {
            Keep(waiting_, word);
            waiting_ = nullptr;
        } else if (!onlyWords_ && word == "--") {
            onlyWords_ = true;
        } else if (!onlyWords_ && IsOption(word)) {
            TakeOption(word);
        } else {
            Keep(NextWord(), word);
            ++count_;
        }
    }

    // "--path", "--path=DIR", "-p" or "-pDIR".
    void TakeOption(const std::string &word)
    {
        size_t end = word[1] == '-' ? word.find('=') : 2;
        const OptionHelp *option = Find(word.substr(0, end));
        if (end < word.size())
            Keep(option, word.substr(word[1] == '-' ? end + 1 : end));
        else if (option != nullptr && !option->value.empty())
            waiting_ = option;
    }

    Candidates CompleteWord(const std::string &word) const
    {
        if (waiting_ != nullptr)
            return ValuesOf(*waiting_, given_, word);
        if (!onlyWords_ && word.starts_with('-'))
            return word.find('=') == std::string::npos ? Options() : OptionValues(word);
        const OptionHelp *next = NextWord();
        return next != nullptr ? ValuesOf(*next, given_, word) : Candidates();
    }

    Candidates Options() const
    {
        Candidates options;
        for (const OptionHelp &option : command_.options)
            for (const std::string &name : option.names)
                options.push_back({name, option.help});
        return options;
    }

    Candidates OptionValues(const std::string &word) const
    {
        size_t start = word.find('=') + 1;
        const OptionHelp *option = Find(word.substr(0, start - 1));
        if (option == nullptr)
            return {};
        Candidates values = ValuesOf(*option, given_, word.substr(start));
        for (Candidate &value : values)
            if (value.text[0] != ':')
                value.text.insert(0, word, 0, start);
        return values;
    }

    const CommandHelp &command_;
    const OptionHelp *waiting_ = nullptr; // whose value comes next
    bool onlyWords_ = false;              // there was a "--"
    size_t count_ = 0;                    // of the words that stand for themselves
    Given given_;
};

Candidates CompleteLine(const std::vector<CommandHelp> &commands, const Words &words)
{
    for (const CommandHelp &command : commands)
        if (words.size() > 1 && command.name == words.front() && &command != &commands.front())
            return Reader(command).Complete({words.begin() + 1, words.end()});
    if (words.size() != 1)
        return {};
    if (IsOption(words.front()) || words.front() == "-")
        return Reader(commands.front()).Complete(words);
    Candidates names;
    for (auto command = commands.begin() + 1; command != commands.end(); ++command)
        names.push_back({command->name, command->help});
    return names;
}

} // namespace

int Complete(const CommandLine &line, const Words &words, Run &run)
{
    if (words.size() < 3 || words[1] != "--")
        throw UsageError{"complete takes -- and the words of a command line"};
    run.Silence();
    Candidates candidates;
    try {
        candidates = CompleteLine(line.Describe(), {words.begin() + 2, words.end()});
    } catch (const std::exception &) {
        // What cannot be found out is no candidate; the command itself says why.
    }
    for (const Candidate &candidate : candidates)
        if (candidate.text[0] == ':' || candidate.text.starts_with(words.back()))
            run.Print(candidate.text + (candidate.help.empty() ? "" : "\t" + candidate.help) +
                      "\n");
    return kExitOk;
}

} // namespace tool
