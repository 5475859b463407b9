// SPDX-License-Identifier: Apache-2.0
// What one run of the program says: its result on standard output, and beside it what went wrong.
#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// Compiled in run.cpp alone; here it would be in every file.
extern template class nlohmann::basic_json<nlohmann::ordered_map>;

namespace tool {

using Json = nlohmann::ordered_json;

enum ExitStatus { kExitOk = 0, kExitFailed = 1, kExitUsage = 2 };
struct ExitMeaning {
    ExitStatus status;
    const char *text;
};
constexpr ExitMeaning kExitMeanings[] = {
    {kExitOk, "all well"}, {kExitFailed, "something failed"}, {kExitUsage, "wrong usage"}};

// A mistake in the words of the command line.
struct UsageError {
    std::string message;
};

// Something that went wrong, or a warning, with the place where it was seen.
struct Problem {
    std::string message;
    std::string module = ""; // "" when it belongs to none
    std::string file = "";   // "" when it belongs to none
    long line = 0;           // 0 when it belongs to none
    bool warning = false;
    long column = 0;             // of a source, with its line
    bool isSource = false;       // of YANG: told like a compiler tells it
    std::string sourceLine = ""; // shown on a terminal
};

// "FILE", or "FILE:LINE" when the line is known; "" without a file.
std::string PlaceOf(const Problem &problem);
const char *KindName(const Problem &problem);
// The members that every problem has in a document.
Json ToJson(const Problem &problem);
Json TextOrNull(const char *text);

class Run {
public:
    // `json`: the result is one JSON document.
    explicit Run(bool json) : json_(json) {}
    ~Run() { ClearProgress(); }
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;

    bool json() const { return json_; }
    // The document of a run that fails before it has a result of its own.
    void SetEmptyDocument(Json document) { empty_ = std::move(document); }

    // From now on nothing is said or kept.
    void Silence() { isSilent_ = true; }

    // Says something on standard error, at once, and keeps it for the document.
    void Say(Problem problem);
    void Complain(const std::string &message);
    // How many errors, or warnings, of sources were said.
    size_t CountOfSources(bool warnings) const;

    // Tells on a terminal how far the run is, once it takes more than a second. Whatever is said or
    // printed next takes the place of it, and so does the end of the run.
    void ShowProgress(const char *what, size_t done, size_t total, const std::string &name);
    void ClearProgress();

    void Print(const std::string &text);
    // Prints the run's document with `errors`, all that was said, in it; in each of its objects
    // when the document is an array.
    void PrintDocument(Json document);

    // Ends the run: prints the empty document when a document is due and none was printed. The
    // exit status, which is a failure also when an error was said or output could not be written.
    int Finish(int status);

private:
    bool json_;
    bool isSilent_ = false;
    bool answered_ = false;
    bool showsProgress_ = false; // there is a line of it
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    int writeError_ = 0; // errno of the first failure
    Json empty_ = Json::object();
    std::vector<Problem> problems_;
};

} // namespace tool
