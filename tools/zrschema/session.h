// SPDX-License-Identifier: Apache-2.0
// What a run works on: a context, its search directories, what was loaded and what went wrong.
#pragma once

#include <zrschema/zrschema.h>

#include <map>
#include <string>
#include <vector>

#include "module_files.h"
#include "run.h"
#include "sources.h"

namespace tool {

// Options that every command with modules has.
struct ModuleOptions {
    std::vector<std::string> directories;
    std::vector<std::string> modules;
    std::vector<std::string> features;
    bool allFeatures = false;
};

class Session {
public:
    Session(Run &run, uint32_t flags, const std::vector<std::string> &directories);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    ZrCtx *ctx() const { return ctx_; }
    Run &run() { return run_; }
    ModuleFiles &files() { return files_; }
    // The search directories as absolute paths.
    const std::vector<std::string> &directories() const { return directories_; }
    ZrMod *Module(const std::string &name) const;

    // The names of the modules that were named on the command line in one way or another.
    std::vector<std::string> Choose(const std::vector<std::string> &given);
    void Load(const std::string &name);
    // The same for a module that another one imports.
    void LoadImport(const std::string &name);
    // Whether a module that this context does not take is taken by one with ZR_CTX_STANDARD.
    bool LoadsWithStandard(const std::string &name);
    // Says that a module is not loaded, and why; `advice` stands at the end.
    void ExplainNotLoaded(const std::string &name, const std::string &advice = "");
    // The recorded load errors and warnings.
    std::vector<Problem> Errors() const;

    // Loads the modules with what they import (as far as it is found), and turns features on.
    // `namesOut` receives the modules' names. False when something failed, which has been said.
    bool SetUp(const ModuleOptions &options, std::vector<std::string> &namesOut);

private:
    void LoadInto(ZrCtx *ctx, const std::string &name);
    bool ReportFailures(const std::vector<std::string> &modules);
    void ReportMissingImports(const std::vector<std::string> &modules);
    bool EnableFeature(const std::string &feature);

    Run &run_;
    ZrCtx *ctx_;
    uint32_t flags_;
    std::vector<std::string> directories_;
    Sources sources_;
    ModuleFiles files_;
    std::map<std::string, std::string> refused_; // why, by the name that was given
};

} // namespace tool
