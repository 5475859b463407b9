// SPDX-License-Identifier: Apache-2.0
#include "support/schema.h"

#include <libxml/parser.h>
#include <zryang/zryang.h>

#include <memory>

namespace datatest {

namespace {

std::string ModuleText(const std::string &name, const std::string &body)
{
    return "module " + name + " { yang-version 1.1; namespace urn:" + name + "; prefix " + name +
           "; " + body + " }";
}

void FailWith(const ZrYangReport *report, void *)
{
    if (report->severity == ZR_YANG_ERROR)
        ADD_FAILURE() << report->module << ":" << report->line << ": " << report->message;
}

} // namespace

Schema::Schema(const std::string &body, uint32_t flags) : ctx_(ZR_CTX_Create(flags))
{
    if (!body.empty())
        Add("m", body);
}

Schema::Schema(const std::string &folder, const Texts &modules)
    : ctx_(ZR_CTX_Create(ZR_CTX_LOAD_IMPORTS))
{
    EXPECT_EQ(ZR_CTX_SetSearchDir(ctx_, folder.c_str()), ZR_OK);
    for (const std::string &module : modules)
        EXPECT_EQ(ZR_CTX_LoadModule(ctx_, module.c_str()), ZR_OK) << module;
}

Schema::~Schema()
{
    ZR_DATA_DeletePlan(plan_);
    ZR_CTX_Delete(ctx_);
}

void Schema::Decide(const std::string &module, const std::string &feature, bool isOn)
{
    decisions_.push_back({module, feature, isOn});
}

void Schema::Add(const std::string &name, const std::string &body)
{
    AddSource(name, ModuleText(name, body));
}

void Schema::AddSource(const std::string &name, const std::string &source)
{
    sources_.emplace_back(name, source);
    ZrYang *yang = ZR_YANG_Create(nullptr);
    ZR_YANG_SetReportFunc(yang, FailWith, nullptr);
    for (const auto &[known, text] : sources_)
        ZR_YANG_AddText(yang, known.c_str(), text.data(), text.size());
    for (const Decision &one : decisions_)
        ZR_YANG_SetFeature(yang, one.module.c_str(), one.feature.c_str(), one.isOn);
    char *prepared = nullptr;
    EXPECT_EQ(ZR_YANG_PrepareToText(yang, name.c_str(), &prepared, nullptr), ZR_YANG_OK);
    EXPECT_EQ(ZR_CTX_LoadMemory(ctx_, prepared), ZR_OK);
    ZR_YANG_FreeText(yang, prepared);
    ZR_YANG_Delete(yang);
}

const ZrDataPlan *Schema::plan()
{
    if (ZR_DATA_IsPlanCurrent(plan_) == 0) {
        ZR_DATA_DeletePlan(plan_);
        EXPECT_EQ(ZR_DATA_CreatePlan(ctx_, nullptr, &plan_), ZR_DATA_OK);
    }
    return plan_;
}

ZrDataOptions Options(uint32_t kind)
{
    ZrDataOptions options = {};
    options.kind = kind;
    return options;
}

Texts Schema::Run(CheckFunc *check, const ZrDataOptions &options, const std::string &document)
{
    ZrDataResult *result = nullptr;
    uint32_t status = check(plan(), &options, document.data(), document.size(), &result);
    Texts errors;
    lines_.clear();
    warnings_.clear();
    xml_.clear();
    for (size_t i = 0; i < ZR_DATA_GetErrorCount(result, nullptr); ++i) {
        errors.push_back(Describe(*ZR_DATA_GetError(result, i)));
        lines_.push_back(ZR_DATA_GetError(result, i)->line);
        xml_.emplace_back(ZR_DATA_GetErrorXml(result, i));
    }
    for (size_t i = 0; i < ZR_DATA_GetWarningCount(result, nullptr); ++i)
        warnings_.push_back(Describe(*ZR_DATA_GetWarning(result, i)));
    EXPECT_EQ(status, errors.empty() ? ZR_DATA_OK : ZR_DATA_ERR_FAULTY);
    ZR_DATA_DeleteResult(result);
    return errors;
}

Texts Schema::CheckDocument(const std::string &document, uint32_t kind)
{
    return Run(ZR_DATA_CheckText, Options(kind), document);
}

Texts Schema::CheckJson(const std::string &document, uint32_t kind)
{
    return Run(ZR_DATA_CheckJson, Options(kind), document);
}

Texts Schema::CheckMessage(const std::string &document, uint32_t kind, const std::string &datastore,
                           const char *operation)
{
    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> store(nullptr, xmlFreeDoc);
    ZrDataOptions options = Options(kind);
    options.operation = operation;
    if (!datastore.empty()) {
        store.reset(xmlReadMemory(datastore.data(), static_cast<int>(datastore.size()), nullptr,
                                  nullptr, 0));
        options.datastore = xmlDocGetRootElement(store.get());
    }
    return Run(ZR_DATA_CheckText, options, document);
}

std::string Schema::Write(const std::string &document, const ZrDataWriteOptions &how, uint32_t kind)
{
    ZrDataOptions options = Options(kind);
    ZrDataResult *result = nullptr;
    ZrDataDocument *read = nullptr;
    auto *readText = document.starts_with('{') ? ZR_DATA_ReadJson : ZR_DATA_ReadXml;
    EXPECT_EQ(readText(plan(), &options, document.data(), document.size(), &read, &result),
              ZR_DATA_OK)
        << (ZR_DATA_GetError(result, 0) == nullptr ? "" : Describe(*ZR_DATA_GetError(result, 0)))
        << " in " << document;
    ZR_DATA_DeleteResult(result);
    std::string text;
    if (read != nullptr) {
        EXPECT_EQ(ZR_DATA_WriteText(read, &how, AppendTo, &text), ZR_DATA_OK);
    }
    ZR_DATA_DeleteDocument(read);
    return text;
}

int AppendTo(const char *text, size_t length, void *string)
{
    static_cast<std::string *>(string)->append(text, length);
    return 0;
}

Texts Schema::Check(const std::string &data, uint32_t kind)
{
    return CheckDocument(Wrap(data), kind);
}

std::string Wrap(const std::string &data)
{
    return "<config xmlns=\"urn:m\">" + data + "</config>";
}

std::string Describe(const ZrDataError &error)
{
    std::string text = ZR_DATA_GetTagName(error.tag);
    if (error.appTag != nullptr)
        text += std::string("[") + error.appTag + "]";
    text += " ";
    for (const char *at = error.path; *at != '\0'; ++at) {
        bool isOwnPrefix =
            at[0] == 'm' && at[1] == ':' && (at == error.path || at[-1] == '/' || at[-1] == '[');
        if (isOwnPrefix)
            ++at;
        else
            text += *at;
    }
    return text + ": " + error.message;
}

} // namespace datatest
