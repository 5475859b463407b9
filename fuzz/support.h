// SPDX-License-Identifier: Apache-2.0
// What the fuzz targets share: counted allocation hooks, checks that abort, texts of modules.
#pragma once

#include <zrschema/zrschema.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What every target defines, for libFuzzer or the plain driver to call: one input, always 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace zrfuzz {

// Aborts when `holds` is false, with `what` on standard error.
void Check(bool holds, const char *what);

// Something that the saved inputs of a target bring about between them, so that none of what the
// target is there for is out of reach. Goals are objects of namespace scope; a replay program that
// is told to look at them fails when one was not met.
class Goal {
public:
    explicit Goal(std::string what);
    Goal(const Goal &) = delete;
    Goal &operator=(const Goal &) = delete;
    void MeetIf(bool holds) { met_ = met_ || holds; }

    // Names the goals that were not met on standard error. False when there are some, or no goals.
    static bool AllMet();

private:
    std::string what_;
    bool met_ = false;
    Goal *next_;
};

// Registers the counting hooks and silences libxml2, once in the life of the process.
void SetUp();

// Blocks that the library holds now.
int64_t LiveBlocks();

// The n-th allocation from now on fails (0: the next one); with a negative number none does.
void FailAllocation(int64_t n);

// Memory of a library beside the engine, handed to it as hooks.
struct Memory {
    size_t live = 0;   // blocks
    size_t count = 0;  // allocations so far
    size_t failAt = 0; // the one that fails, from 1; 0: none does

    static void *Allocate(size_t size, void *user);
    static void Release(void *block, void *user);
};

// A number below `bound` that the text decides, for a choice that the input does not spell out.
uint32_t PickBy(std::string_view text, uint32_t bound);

// Checks at the end of the scope that the library holds as many blocks as at its beginning.
class BlockBalance {
public:
    explicit BlockBalance(const char *what) : what_(what), before_(LiveBlocks()) {}
    ~BlockBalance() { Check(LiveBlocks() == before_, what_); }
    BlockBalance(const BlockBalance &) = delete;
    BlockBalance &operator=(const BlockBalance &) = delete;

private:
    const char *what_;
    int64_t before_;
};

// A context that is deleted at the end of the scope, and then leaves no block behind.
class Context {
public:
    explicit Context(uint32_t flags);
    ~Context();
    Context(const Context &) = delete;
    Context &operator=(const Context &) = delete;
    ZrCtx *get() const { return ctx_; }
    operator ZrCtx *() const { return ctx_; }

private:
    BlockBalance balance_;
    ZrCtx *ctx_;
};

// One of the statuses of loading, unloading and printing.
bool IsLoadStatus(uint32_t status);

// The YIN text of a module: namespace urn:NAME, prefix NAME, then the body.
std::string ModuleText(const std::string &name, const std::string &body);

// The text as the value of an XML attribute. Bytes that XML has no way to write are dropped.
std::string AttributeText(std::string_view text);

// A context with a module that must load.
void LoadOrDie(ZrCtx *ctx, const std::string &yin);

// Takes the text up to the next line feed from the front of `rest`.
std::string TakeLine(std::string_view &rest);

// An input of several texts: each follows a line "=== NAME". What stands before the first is left
// out.
struct Part {
    std::string name;
    std::string text;
};
std::vector<Part> ReadParts(std::string_view input);

// Reads everything that a module offers: all scans, texts, types, paths, lookups, both printers.
// Checks that printing succeeds, unless `longLines` says that a line may be too long. All features
// of the module are on afterwards.
void WalkModule(ZrCtx *ctx, ZrMod *module, bool longLines);
// Reads the recorded errors.
void WalkErrors(ZrCtx *ctx);

} // namespace zrfuzz
