#include "validate_data.h"

#include <memory>
#include <new>

#include "xml_text.h"

namespace tool {

namespace {

using Plan = std::unique_ptr<ZrDataPlan, void (*)(ZrDataPlan *)>;
using Result = std::unique_ptr<ZrDataResult, void (*)(ZrDataResult *)>;

uint32_t OrThrow(uint32_t status)
{
    if (status == ZR_DATA_ERR_NO_MEMORY)
        throw std::bad_alloc();
    return status;
}

Plan MakePlan(const ZrCtx *ctx)
{
    ZrDataPlan *plan = nullptr;
    OrThrow(ZR_DATA_CreatePlan(ctx, nullptr, &plan));
    return Plan(plan, ZR_DATA_DeletePlan);
}

std::string Read(const std::string &file)
{
    std::string text, reason = ReadInput(file, text);
    if (!reason.empty())
        throw UsageError{"cannot read " + file + ": " + reason};
    return text;
}

// Says a fault, or keeps it for the document.
void Tell(Run &run, Json &errors, const std::string &file, const ZrDataError &error, bool isWarning)
{
    Problem problem{error.message, "", file, static_cast<long>(error.line), isWarning};
    std::string tag = ZR_DATA_GetTagName(error.tag);
    if (run.json()) {
        errors.push_back({{"tag", tag},
                          {"app-tag", TextOrNull(error.appTag)},
                          {"path", error.path},
                          {"bad-element", TextOrNull(error.badElement)},
                          {"bad-attribute", TextOrNull(error.badAttribute)}});
        errors.back().update(ToJson(problem));
        return;
    }
    std::string tags = error.appTag == nullptr ? tag : tag + ", " + error.appTag;
    problem.message = std::string(error.path) + ": " + error.message + " (" + tags + ")";
    run.Say(problem);
}

void TellAll(Run &run, Json &errors, const std::string &file, const ZrDataResult *result)
{
    size_t found = 0, count = ZR_DATA_GetErrorCount(result, &found);
    for (size_t i = 0; i < count; ++i)
        Tell(run, errors, file, *ZR_DATA_GetError(result, i), false);
    if (found > count)
        run.Say({std::to_string(found - count) + " more faults", "", file});
    for (size_t i = 0; i < ZR_DATA_GetWarningCount(result, nullptr); ++i)
        Tell(run, errors, file, *ZR_DATA_GetWarning(result, i), true);
}

bool CheckFile(Run &run, Json &errors, const ZrDataPlan *plan, const ZrDataOptions &options,
               const std::string &file)
{
    std::string text = Read(file);
    ZrDataResult *made = nullptr;
    uint32_t status = OrThrow(ZR_DATA_CheckText(plan, &options, text.data(), text.size(), &made));
    Result result(made, ZR_DATA_DeleteResult);
    if (status == ZR_DATA_ERR_INVALID)
        throw UsageError{options.kind == ZR_DATA_REPLY
                             ? std::string("no rpc or action is called ") + options.operation
                             : "cannot check " + file};
    TellAll(run, errors, file, result.get());
    if (!run.json())
        run.Print(file + (status == ZR_DATA_OK ? ": valid\n" : ": not valid\n"));
    return status == ZR_DATA_OK;
}

Document ReadDatastore(Run &run, const std::string &file)
{
    if (file.empty())
        return Document(nullptr, xmlFreeDoc);
    XmlFault fault;
    Document document = ParseXml(Read(file), fault);
    if (document == nullptr)
        run.Say({fault.reason, "", file, fault.line});
    return document;
}

} // namespace

int CheckDataFiles(Run &run, const ModuleOptions &modules, const DataChecks &checks)
{
    Session session(run, ZR_CTX_STANDARD, modules.directories);
    std::vector<std::string> names;
    if (!session.SetUp(modules, names))
        return kExitFailed; // no verdict on a schema that is not what was asked for
    Document datastore = ReadDatastore(run, checks.datastore);
    if (datastore == nullptr && !checks.datastore.empty())
        return kExitFailed;
    Plan plan = MakePlan(session.ctx());
    ZrDataOptions options = {};
    options.kind = checks.kind;
    options.operation = checks.operation.c_str();
    options.datastore = xmlDocGetRootElement(datastore.get());
    Json errors = Json::array();
    bool isValid = true;
    for (const std::string &file : checks.files)
        isValid &= CheckFile(run, errors, plan.get(), options, file);
    if (run.json())
        run.PrintDocument({{"valid", isValid}, {"errors", errors}});
    return isValid ? kExitOk : kExitFailed;
}

} // namespace tool
