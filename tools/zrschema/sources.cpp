// SPDX-License-Identifier: Apache-2.0
#include "sources.h"

#include <cerrno>
#include <cstring>
#include <new>

namespace tool {

namespace {

void Say(const ZrYangReport *report, void *user)
{
    Problem problem;
    problem.message = report->message;
    problem.module = report->module;
    problem.file = report->file;
    problem.line = report->line;
    problem.column = report->column;
    problem.warning = report->severity == ZR_YANG_WARNING;
    problem.isSource = true;
    if (report->sourceLine != nullptr)
        problem.sourceLine.assign(report->sourceLine, report->sourceLength);
    static_cast<Run *>(user)->Say(problem);
}

int KeepName(const char *name, void *user)
{
    static_cast<std::vector<std::string> *>(user)->push_back(name);
    return 0;
}

void RequireMemory(uint32_t status)
{
    if (status == ZR_YANG_ERR_NO_MEMORY)
        throw std::bad_alloc();
}

} // namespace

Sources::Sources(Run &run) : run_(run), yang_(ZR_YANG_Create(nullptr))
{
    if (yang_ == nullptr)
        throw std::bad_alloc();
    ZR_YANG_SetReportFunc(yang_, Say, &run_);
}

Sources::~Sources()
{
    ZR_YANG_Delete(yang_);
}

bool Sources::AddDirectory(const std::string &directory)
{
    uint32_t status = ZR_YANG_AddDirectory(yang_, directory.c_str());
    RequireMemory(status);
    if (status != ZR_YANG_OK)
        run_.Complain("cannot list " + directory + ": " + std::strerror(errno));
    return status == ZR_YANG_OK;
}

void Sources::AddFile(const std::string &path)
{
    RequireMemory(ZR_YANG_AddFile(yang_, path.c_str()));
}

void Sources::DecideFeatures(const std::vector<std::string> &on, bool all)
{
    RequireMemory(ZR_YANG_SetFeature(yang_, "*", "*", all));
    for (const std::string &feature : on) {
        size_t colon = feature.find(':');
        if (colon != std::string::npos)
            RequireMemory(ZR_YANG_SetFeature(yang_, feature.substr(0, colon).c_str(),
                                             feature.substr(colon + 1).c_str(), 1));
    }
}

bool Sources::Prepare(const std::string &module, std::string &text)
{
    char *prepared = nullptr;
    size_t length = 0;
    uint32_t status = ZR_YANG_PrepareToText(yang_, module.c_str(), &prepared, &length);
    RequireMemory(status);
    if (status != ZR_YANG_OK)
        return false;
    text.assign(prepared, length);
    ZR_YANG_FreeText(yang_, prepared);
    return true;
}

std::vector<std::string> Sources::Names()
{
    std::vector<std::string> names;
    RequireMemory(ZR_YANG_ScanModules(yang_, KeepName, &names));
    return names;
}

} // namespace tool
