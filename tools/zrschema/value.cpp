// SPDX-License-Identifier: Apache-2.0
// zrschema value: says for each value whether a leaf takes it.
#include <cstdio>

#include "commands.h"
#include "lookup.h"
#include "types.h"

namespace tool {

namespace {

struct ValueOptions {
    ModuleOptions modules;
    std::string path;
    std::vector<std::string> values;
};

struct Answer {
    std::string value;
    uint32_t status;
    std::string type;     // the one that took it
    std::string expected; // what would have been taken
};

Answer Ask(const ZrCtx *ctx, const ZrNode *leaf, const std::string &value)
{
    Answer answer{value, ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, value.c_str()), "", ""};
    if (answer.status == ZR_OK)
        answer.type = MatchedTypeName(
            ctx, leaf, ZR_NODE_FindRealTypeMatchedValue(leaf, ZR_VALUE_STRING, value.c_str()));
    else
        answer.expected = ExpectedValue(ctx, leaf);
    return answer;
}

void PrintText(Run &run, const std::vector<Answer> &answers)
{
    for (const Answer &answer : answers) {
        char status[16];
        std::snprintf(status, sizeof(status), "0x%x ", answer.status);
        run.Print(answer.value + ": " +
                  (answer.status == ZR_OK
                       ? "accepted as " + answer.type
                       : "refused, " + std::string(status) + ZR_GetStatusName(answer.status) +
                             "; expected " + answer.expected) +
                  "\n");
    }
}

Json Describe(const Answer &answer)
{
    bool accepted = answer.status == ZR_OK;
    return {{"value", answer.value},
            {"status", answer.status},
            {"name", ZR_GetStatusName(answer.status)},
            {"type", accepted ? Json(answer.type) : Json(nullptr)},
            {"expected", accepted ? Json(nullptr) : Json(answer.expected)}};
}

int RunValue(Run &run, const ValueOptions &options)
{
    Session session(run, 0, options.modules.directories);
    std::vector<std::string> modules;
    if (!session.SetUp(options.modules, modules))
        return kExitFailed; // no verdict on a schema that is not what was asked for
    const ZrNode *leaf = FindNode(session, modules, options.path);
    if (leaf == nullptr)
        return kExitFailed;
    if (ZR_NODE_GetRealType(leaf) == nullptr) {
        run.Complain("not a leaf or leaf-list: " + options.path);
        return kExitFailed;
    }
    bool good = true;
    std::vector<Answer> answers;
    Json document = Json::array();
    for (const std::string &value : options.values) {
        answers.push_back(Ask(session.ctx(), leaf, value));
        document.push_back(Describe(answers.back()));
        good = good && answers.back().status == ZR_OK;
    }
    if (run.json())
        run.PrintDocument(document);
    else
        PrintText(run, answers);
    return good ? kExitOk : kExitFailed;
}

} // namespace

Json EmptyValueDocument()
{
    Json answer = {{"value", nullptr},
                   {"status", nullptr},
                   {"name", nullptr},
                   {"type", nullptr},
                   {"expected", nullptr}};
    return Json::array({answer});
}

void AddValueCommand(CommandLine &line, Run &run)
{
    auto options = std::make_shared<ValueOptions>();
    Command command = line.Add(
        "value", "check values against a leaf's type",
        WithModuleNote("A refused value is shown with what was expected. Values that begin with - "
                       "stand behind --."));
    AddDirectoryOption(command, options->modules.directories);
    AddModuleOption(command, options->modules);
    command.Json();
    command.Text("path", "PATH", "the leaf's schema path, such as /module:container/leaf",
                 options->path, Need::kRequired);
    command.Texts("values", "VALUE", "the values to check", options->values, Need::kRequired);
    command.OnRun([options, &run] { return RunValue(run, *options); });
}

} // namespace tool
