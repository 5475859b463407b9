// SPDX-License-Identifier: Apache-2.0
#include "data_files.h"

#include <new>

#include "xml_text.h"

namespace tool {

uint32_t OrThrow(uint32_t status)
{
    if (status == ZR_DATA_ERR_NO_MEMORY)
        throw std::bad_alloc();
    return status;
}

DataPlan MakePlan(const ZrCtx *ctx)
{
    ZrDataPlan *plan = nullptr;
    OrThrow(ZR_DATA_CreatePlan(ctx, nullptr, &plan));
    return DataPlan(plan, ZR_DATA_DeletePlan);
}

std::string ReadOrThrow(const std::string &file)
{
    std::string text, reason = ReadInput(file, text);
    if (!reason.empty())
        throw UsageError{"cannot read " + file + ": " + reason};
    return text;
}

bool IsJson(const std::string &text)
{
    size_t start = text.compare(0, 3, "\xef\xbb\xbf") == 0 ? 3 : 0;
    start = text.find_first_not_of(" \t\r\n", start);
    return start != std::string::npos && (text[start] == '{' || text[start] == '[');
}

Problem ProblemOf(const ZrDataError &error, const std::string &file, bool isWarning)
{
    std::string tags = ZR_DATA_GetTagName(error.tag);
    if (error.appTag != nullptr)
        tags += std::string(", ") + error.appTag;
    return {std::string(error.path) + ": " + error.message + " (" + tags + ")", "", file,
            static_cast<long>(error.line), isWarning};
}

void SayHowManyMore(Run &run, const ZrDataResult *result, const std::string &file)
{
    size_t found = 0, count = ZR_DATA_GetErrorCount(result, &found);
    if (found > count)
        run.Say({std::to_string(found - count) + " more faults", "", file});
}

void SayAll(Run &run, const ZrDataResult *result, const std::string &file)
{
    for (size_t i = 0; i < ZR_DATA_GetErrorCount(result, nullptr); ++i)
        run.Say(ProblemOf(*ZR_DATA_GetError(result, i), file, false));
    SayHowManyMore(run, result, file);
    for (size_t i = 0; i < ZR_DATA_GetWarningCount(result, nullptr); ++i)
        run.Say(ProblemOf(*ZR_DATA_GetWarning(result, i), file, true));
}

} // namespace tool
