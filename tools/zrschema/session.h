// One run of the program: a context, its search directories, what was loaded and what went wrong.
#pragma once

#include <zrschema/zrschema.h>

#include <string>
#include <vector>

namespace tool {

enum ExitStatus { kExitOk = 0, kExitFailed = 1, kExitUsage = 2 };

// A mistake in the words of the command line.
struct UsageError {
    std::string message;
};

// One recorded error or warning.
struct LoadError {
    std::string module;
    std::string file; // "" when none
    bool warning;
    std::string message;
};

class Session {
public:
    Session(uint32_t flags, const std::vector<std::string> &directories);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    ZrCtx *ctx() const { return ctx_; }
    // The search directories as absolute paths.
    const std::vector<std::string> &directories() const { return directories_; }
    ZrMod *Module(const std::string &name) const;
    bool Load(const std::string &name);
    // Turns on what --feature and --all-features ask for; false when a feature is not there.
    bool EnableFeatures(const std::vector<std::string> &features);
    void EnableAllFeatures(const std::vector<std::string> &modules);
    std::vector<LoadError> Errors() const;
    // Names every module of the list that is not loaded, with its errors, on standard error; and
    // the errors of the others. True when there was nothing to say.
    bool ReportFailures(const std::vector<std::string> &modules) const;

private:
    ZrCtx *ctx_;
    std::vector<std::string> directories_;
};

// Options that every command with modules has.
struct ModuleOptions {
    std::vector<std::string> directories;
    std::vector<std::string> modules;
    std::vector<std::string> features;
    bool allFeatures = false;
};

// Loads the modules with what they import (as far as it is found), and turns features on. False
// when something failed, which has been said on standard error.
bool LoadWithImports(Session &session, const ModuleOptions &options);

// Prints "zrschema: MESSAGE" on standard error.
void Complain(const std::string &message);

} // namespace tool
