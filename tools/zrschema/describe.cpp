// SPDX-License-Identifier: Apache-2.0
// What the program's help says, as data.
#include "commands.h"

namespace tool {

namespace {

Json ToJson(const OptionHelp &option)
{
    return {{"names", option.names},         {"value", option.value},
            {"help", option.help},           {"choices", option.choices},
            {"required", option.isRequired}, {"repeated", option.isRepeated}};
}

Json ToJson(const std::vector<OptionHelp> &options)
{
    Json list = Json::array();
    for (const OptionHelp &option : options)
        list.push_back(ToJson(option));
    return list;
}

} // namespace

int Describe(const CommandLine &line, const Words &words, Run &run)
{
    if (words.size() != 1)
        throw UsageError{"describe takes no words"};
    Json commands = Json::array(), statuses = Json::array();
    for (const CommandHelp &command : line.Describe())
        commands.push_back({{"name", command.name},
                            {"help", command.help},
                            {"notes", command.notes},
                            {"options", ToJson(command.options)},
                            {"words", ToJson(command.words)}});
    for (const ExitMeaning &meaning : kExitMeanings)
        statuses.push_back({{"status", meaning.status}, {"meaning", meaning.text}});
    run.PrintDocument(
        {{"version", ZR_VERSION}, {"commands", commands}, {"exit-statuses", statuses}});
    return kExitOk;
}

} // namespace tool
