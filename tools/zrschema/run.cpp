// SPDX-License-Identifier: Apache-2.0
#include "run.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>

template class nlohmann::basic_json<nlohmann::ordered_map>;

namespace tool {

namespace {

// Whatever a name or a reason holds.
std::string OneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return std::iscntrl(c) != 0; }, ' ');
    return text;
}

// "FILE:LINE:COLUMN: error: MESSAGE", and on a terminal the line with a mark under the place.
void SayOfSource(const Problem &problem)
{
    std::string text = OneLine(PlaceOf(problem));
    if (problem.column > 0)
        text += ":" + std::to_string(problem.column);
    text += (text.empty() ? "zrschema: " : ": ") + std::string(KindName(problem)) + ": " +
            problem.message + "\n";
    if (problem.column > 0 && isatty(STDERR_FILENO) == 1)
        text += "  " + OneLine(problem.sourceLine) + "\n  " +
                std::string(static_cast<size_t>(problem.column) - 1, ' ') + "^\n";
    std::fputs(text.c_str(), stderr);
}

} // namespace

std::string PlaceOf(const Problem &problem)
{
    return problem.line > 0 ? problem.file + ":" + std::to_string(problem.line) : problem.file;
}

const char *KindName(const Problem &problem)
{
    return problem.warning ? "warning" : "error";
}

Json TextOrNull(const char *text)
{
    return text != nullptr ? Json(text) : Json(nullptr);
}

Json ToJson(const Problem &problem)
{
    Json document = {{"file", problem.file.empty() ? Json(nullptr) : Json(problem.file)},
                     {"line", problem.line > 0 ? Json(problem.line) : Json(nullptr)},
                     {"kind", KindName(problem)},
                     {"message", problem.message}};
    if (problem.column > 0)
        document["column"] = problem.column;
    return document;
}

void Run::ShowProgress(const char *what, size_t done, size_t total, const std::string &name)
{
    constexpr std::chrono::seconds kPatience(1);
    static const bool isTerminal = isatty(STDERR_FILENO) == 1;
    if (isSilent_ || !isTerminal || std::chrono::steady_clock::now() - start_ < kPatience)
        return;
    std::fprintf(stderr, "\r\033[K%s %zu/%zu %s", what, done, total, OneLine(name).c_str());
    showsProgress_ = true;
}

void Run::ClearProgress()
{
    if (showsProgress_)
        std::fputs("\r\033[K", stderr);
    showsProgress_ = false;
}

void Run::Say(Problem problem)
{
    if (isSilent_)
        return;
    ClearProgress();
    problem.message = OneLine(problem.message);
    if (problem.isSource) {
        SayOfSource(problem);
        problems_.push_back(std::move(problem));
        return;
    }
    std::string place = OneLine(PlaceOf(problem));
    if (!problem.module.empty())
        place = place.empty() ? problem.module : problem.module + " (" + place + ")";
    std::string line = "zrschema: ";
    if (!place.empty())
        line += place + ": ";
    if (!place.empty() || problem.warning)
        line += std::string(KindName(problem)) + ": ";
    std::fputs((line + problem.message + "\n").c_str(), stderr);
    problems_.push_back(std::move(problem));
}

size_t Run::CountOfSources(bool warnings) const
{
    return static_cast<size_t>(
        std::count_if(problems_.begin(), problems_.end(), [&](const Problem &problem) {
            return problem.isSource && problem.warning == warnings;
        }));
}

void Run::Complain(const std::string &message)
{
    Say({message});
}

void Run::Print(const std::string &text)
{
    ClearProgress();
    answered_ = true;
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && writeError_ == 0)
        writeError_ = errno;
}

void Run::PrintDocument(Json document)
{
    Json errors = Json::array();
    for (const Problem &problem : problems_) {
        Json error = {{"module", problem.module.empty() ? Json(nullptr) : Json(problem.module)}};
        error.update(ToJson(problem));
        errors.push_back(error);
    }
    if (document.is_array()) {
        for (Json &item : document)
            item["errors"] = errors;
    } else {
        Json &all = document["errors"]; // a command may have put its own there
        for (Json &error : errors)
            all.push_back(std::move(error));
        if (all.is_null())
            all = Json::array();
    }
    Print(document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

int Run::Finish(int status)
{
    if (json_ && !answered_)
        PrintDocument(empty_);
    if (std::fflush(stdout) != 0 && writeError_ == 0)
        writeError_ = errno;
    auto isError = [](const Problem &problem) { return !problem.warning; };
    if (status == kExitOk && std::any_of(problems_.begin(), problems_.end(), isError))
        status = kExitFailed;
    if (writeError_ == 0)
        return status;
    Complain(std::string("cannot write the output: ") + std::strerror(writeError_));
    return kExitFailed;
}

} // namespace tool
