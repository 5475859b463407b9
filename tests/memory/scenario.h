// SPDX-License-Identifier: Apache-2.0
// Scenarios of the library's use, which are run over and over with allocations failing.
#pragma once

#include <zrschema/zrschema.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "support/context.h"

namespace zrtest {

// One run of a scenario: its context, its folder of files, and what came out. Every operation
// checks that its status is among those that its declaration states.
class World {
public:
    World(ZrCtx *ctx, const TempDir &folder) : ctx_(ctx), folder_(folder) {}

    ZrCtx *ctx() const { return ctx_; }
    ZrNode *Node(const char *path);

    void SetDir(const std::string &name = "");
    void UnsetDir(const std::string &name);
    void Load(const char *module);
    void LoadText(const std::string &yin);
    // A text as LoadText() takes it, by TestContext's naming.
    void LoadBody(const std::string &name, const std::string &body);
    void Unload(const char *module);
    void Enable(const char *module, const char *feature);
    // Prints all loaded modules of these names.
    void Print(std::initializer_list<const char *> modules);
    void PrintNode(const char *path);
    // Checks a value against a leaf through both kinds of input.
    void Value(const char *path, const char *value);
    void Request(const std::string &xml);
    void Notify(const std::string &xml);
    // Any other result.
    void Note(const std::string &result) { results_.push_back(result); }
    void Status(const char *operation, uint32_t status, std::initializer_list<uint32_t> stated);

    // What the operations gave, in order.
    const std::vector<std::string> &results() const { return results_; }

private:
    ZrCtx *ctx_;
    const TempDir &folder_;
    std::vector<std::string> results_;
};

struct Scenario {
    const char *name;
    uint32_t flags;
    void (*writeFiles)(const TempDir &folder); // may be null
    void (*run)(World &world);
};

const std::vector<Scenario> &LoadingScenarios();
const std::vector<Scenario> &CouplingScenarios();
const std::vector<Scenario> &DataScenarios();

} // namespace zrtest
