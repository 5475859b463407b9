// zrschema value: says for each value whether a leaf takes it.
#include <cstdio>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "names.h"

namespace tool {

namespace {

using Json = nlohmann::ordered_json;

struct ValueOptions {
    ModuleOptions modules;
    std::string path;
    std::vector<std::string> values;
    bool json = false;
};

struct Answer {
    std::string value;
    uint32_t status;
    std::string type; // the one that took it
};

Answer Ask(const ZrCtx *ctx, const ZrNode *leaf, const std::string &value)
{
    Answer answer{value, ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, value.c_str()), ""};
    if (answer.status == ZR_OK)
        answer.type = MatchedTypeName(
            ctx, leaf, ZR_NODE_FindRealTypeMatchedValue(leaf, ZR_VALUE_STRING, value.c_str()));
    return answer;
}

void PrintText(const std::vector<Answer> &answers)
{
    for (const Answer &answer : answers)
        if (answer.status == ZR_OK)
            std::printf("%s: accepted as %s\n", answer.value.c_str(), answer.type.c_str());
        else
            std::printf("%s: refused, 0x%x %s\n", answer.value.c_str(), answer.status,
                        StatusName(answer.status).c_str());
}

void PrintJson(const std::vector<Answer> &answers)
{
    Json array = Json::array();
    for (const Answer &answer : answers)
        array.push_back({{"value", answer.value},
                         {"status", answer.status},
                         {"name", StatusName(answer.status)},
                         {"type", answer.status == ZR_OK ? Json(answer.type) : Json(nullptr)}});
    std::puts(array.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

int RunValue(const ValueOptions &options)
{
    Session session(0, options.modules.directories);
    bool good = LoadWithImports(session, options.modules);
    const ZrNode *leaf = ZR_CTX_GetTargetNode(session.ctx(), options.path.c_str(), nullptr);
    if (ZR_NODE_GetRealType(leaf) == nullptr) {
        Complain((leaf == nullptr ? "no such node: " : "not a leaf or leaf-list: ") + options.path);
        return kExitFailed;
    }
    std::vector<Answer> answers;
    for (const std::string &value : options.values) {
        answers.push_back(Ask(session.ctx(), leaf, value));
        good = good && answers.back().status == ZR_OK;
    }
    (options.json ? PrintJson : PrintText)(answers);
    return good ? kExitOk : kExitFailed;
}

} // namespace

void AddValueCommand(CLI::App &app, int &status)
{
    auto options = std::make_shared<ValueOptions>();
    CLI::App *command = app.add_subcommand("value", "check values against a leaf's type");
    command->set_version_flag("--version", "zrschema " ZR_VERSION);
    AddDirectoryOption(*command, options->modules.directories);
    AddModuleOption(*command, options->modules);
    command->add_flag("--json", options->json, "print one JSON array");
    command
        ->add_option("path", options->path,
                     "the leaf's schema path, such as /module:container/leaf")
        ->required()
        ->type_name("PATH");
    command->add_option("values", options->values, "the values to check")
        ->required()
        ->type_name("VALUE");
    command->callback([options, &status] { status = RunValue(*options); });
}

} // namespace tool
