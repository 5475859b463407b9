// SPDX-License-Identifier: Apache-2.0
#include "command_line.h"

#include <CLI/CLI.hpp>
#include <sstream>

#include "close_names.h"
#include "run.h"

namespace tool {

namespace {

constexpr const char *kVersion = "zrschema " ZR_VERSION;

CommandHelp HelpOf(const CLI::App &app, const Choices &choices)
{
    CommandHelp help{app.get_name(), app.get_description(), app.get_footer(), {}, {}};
    for (const CLI::Option *option : app.get_options()) {
        bool isWord = option->get_positional();
        OptionHelp one{{}, "", option->get_description(), {}, option->get_required(), false};
        for (const std::string &name : option->get_snames())
            one.names.push_back("-" + name);
        for (const std::string &name : option->get_lnames())
            one.names.push_back("--" + name);
        if (isWord)
            one.names.push_back(option->get_name(true));
        if (option->get_items_expected_max() > 0) {
            one.value = option->get_type_name();
            one.isRepeated = option->get_expected_max() > 1;
        }
        auto found = choices.find(option);
        if (found != choices.end())
            one.choices = found->second;
        (isWord ? help.words : help.options).push_back(std::move(one));
    }
    return help;
}

void Finish(CLI::Option &option, const char *value, Need need)
{
    option.type_name(value)->required(need == Need::kRequired);
}

std::string NoSuchCommand(const CLI::App &app, const std::string &word)
{
    Words names;
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
        names.push_back(command->get_name());
    return "no such command: " + word + DidYouMean(CloseNames(word, names));
}

std::string NoSuchOption(const CLI::App &command, const std::string &word)
{
    Words names;
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
        return words.empty() ? error.what() : NoSuchCommand(app, words.front());
    for (const std::string &word : app.remaining(true))
        if (word.size() > 1 && word.front() == '-')
            return NoSuchOption(*app.get_subcommands().front(), word);
    return error.what();
}

} // namespace

void Command::Flag(const char *names, const char *help, bool &target)
{
    app_.add_flag(names, target, help);
}

void Command::Text(const char *names, const char *value, const char *help, std::string &target,
                   Need need)
{
    Finish(*app_.add_option(names, target, help), value, need);
}

void Command::Choice(const char *names, const char *value, const char *help, const Words &choices,
                     std::string &target, Need need)
{
    CLI::Option &option = *app_.add_option(names, target, help);
    Finish(option, value, need);
    choices_[&option] = choices;
}

void Command::Texts(const char *names, const char *value, const char *help, Words &target,
                    Need need)
{
    CLI::Option &option = *app_.add_option(names, target, help);
    Finish(option, value, need);
    if (!option.get_positional())
        option.allow_extra_args(false);
}

void Command::Count(const char *names, const char *value, const char *help, uint64_t &target)
{
    CLI::Option &option = *app_.add_option(names, target, help);
    Finish(option, value, Need::kOptional);
    option.check(CLI::PositiveNumber);
}

void Command::Json()
{
    app_.add_flag("--json")->description("print one JSON document, also when something fails");
}

void Command::OnRun(std::function<int()> run)
{
    app_.callback([run = std::move(run), &status = status_] { status = run(); });
}

CommandLine::CommandLine(const char *help, const std::string &notes)
    : app_(std::make_unique<CLI::App>(help, "zrschema")), status_(kExitOk)
{
    app_->set_version_flag("--version", kVersion);
    app_->footer(notes);
    app_->require_subcommand(1);
}

CommandLine::~CommandLine() = default;

Command CommandLine::Add(const char *name, const char *help, const std::string &notes)
{
    CLI::App &app = *app_->add_subcommand(name, help);
    app.footer(notes);
    app.set_version_flag("--version", kVersion);
    return {app, status_, choices_};
}

std::vector<CommandHelp> CommandLine::Describe() const
{
    std::vector<CommandHelp> all = {HelpOf(*app_, choices_)};
    for (const CLI::App *command : app_->get_subcommands([](const CLI::App *) { return true; }))
        all.push_back(HelpOf(*command, choices_));
    return all;
}

int CommandLine::Execute(int argc, char **argv, Run &run)
{
    try {
        app_->parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() != kExitOk)
            throw UsageError{Explain(*app_, Words(argv + std::min(argc, 1), argv + argc), error)};
        std::stringstream out; // --help and --version
        app_->exit(error, out, out);
        run.Print(out.str());
    }
    return status_;
}

} // namespace tool
