// SPDX-License-Identifier: Apache-2.0
#include "validate_data.h"

#include <zrdata/write.h>

#include <memory>

#include "data_files.h"
#include "xml_text.h"

namespace tool {

namespace {

// Says what is wrong with a file, or keeps it for the document.
void Tell(Run &run, Json &errors, const ZrDataResult *result, const std::string &file)
{
    if (!run.json()) {
        SayAll(run, result, file);
        return;
    }
    auto keep = [&](const ZrDataError &error, bool isWarning) {
        errors.push_back({{"tag", ZR_DATA_GetTagName(error.tag)},
                          {"app-tag", TextOrNull(error.appTag)},
                          {"path", error.path},
                          {"bad-element", TextOrNull(error.badElement)},
                          {"bad-attribute", TextOrNull(error.badAttribute)}});
        errors.back().update(
            ToJson({error.message, "", file, static_cast<long>(error.line), isWarning}));
    };
    for (size_t i = 0; i < ZR_DATA_GetErrorCount(result, nullptr); ++i)
        keep(*ZR_DATA_GetError(result, i), false);
    for (size_t i = 0; i < ZR_DATA_GetWarningCount(result, nullptr); ++i)
        keep(*ZR_DATA_GetWarning(result, i), true);
    SayHowManyMore(run, result, file);
}

bool CheckFile(Run &run, Json &errors, const ZrDataPlan *plan, const ZrDataOptions &options,
               const std::string &file)
{
    std::string text = ReadOrThrow(file);
    auto *check = IsJson(text) ? ZR_DATA_CheckJson : ZR_DATA_CheckText;
    ZrDataResult *made = nullptr;
    uint32_t status = OrThrow(check(plan, &options, text.data(), text.size(), &made));
    DataResult result(made, ZR_DATA_DeleteResult);
    if (status == ZR_DATA_ERR_INVALID)
        throw UsageError{options.kind == ZR_DATA_REPLY
                             ? std::string("no rpc or action is called ") + options.operation
                             : "cannot check " + file};
    Tell(run, errors, result.get(), file);
    if (!run.json())
        run.Print(file + (status == ZR_DATA_OK ? ": valid\n" : ": not valid\n"));
    return status == ZR_DATA_OK;
}

// The datastore as a tree; null after a fault, which is said. Its faults as data are told with each
// message that looks into it, but JSON has to have none.
Document ReadDatastore(Run &run, const ZrDataPlan *plan, const std::string &file)
{
    std::string text = ReadOrThrow(file);
    XmlFault fault;
    if (!IsJson(text)) {
        Document document = ParseXml(text, fault);
        if (document == nullptr)
            run.Say({fault.reason, "", file, fault.line});
        return document;
    }
    ZrDataOptions options = {};
    options.kind = ZR_DATA_CONFIG_AND_STATE;
    ZrDataDocument *made = nullptr;
    ZrDataResult *result = nullptr;
    OrThrow(ZR_DATA_ReadJson(plan, &options, text.data(), text.size(), &made, &result));
    DataResult faults(result, ZR_DATA_DeleteResult);
    std::unique_ptr<ZrDataDocument, decltype(&ZR_DATA_DeleteDocument)> document(
        made, ZR_DATA_DeleteDocument);
    SayAll(run, result, file);
    void *tree = nullptr;
    if (document != nullptr)
        OrThrow(ZR_DATA_WriteTree(made, ZR_DATA_EXPLICIT, &tree));
    return Document(static_cast<xmlDoc *>(tree), xmlFreeDoc);
}

} // namespace

int CheckDataFiles(Run &run, const ModuleOptions &modules, const DataChecks &checks)
{
    Session session(run, ZR_CTX_STANDARD, modules.directories);
    std::vector<std::string> names;
    if (!session.SetUp(modules, names))
        return kExitFailed; // no verdict on a schema that is not what was asked for
    DataPlan plan = MakePlan(session.ctx());
    Document datastore(nullptr, xmlFreeDoc);
    if (!checks.datastore.empty())
        datastore = ReadDatastore(run, plan.get(), checks.datastore);
    if (datastore == nullptr && !checks.datastore.empty())
        return kExitFailed;
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
