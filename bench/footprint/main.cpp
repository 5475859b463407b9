// SPDX-License-Identifier: Apache-2.0
// What the engine takes while it runs, as Markdown: memory held by the real modules and at the peak
// of a load, and the stack that real schemas and schemas made to be deep need.
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>
#include <pthread.h>
#include <sys/mman.h>
#include <zrschema/zrschema.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/deep_schema.h"

namespace {

namespace fs = std::filesystem;

// Memory: the hooks and libxml2 take their blocks here, each with its size in front.

struct Meter {
    size_t now = 0, peak = 0;
    void Add(size_t size) { peak = std::max(peak, now += size); }
};
Meter hooks, xml, both;

constexpr size_t kHead = alignof(std::max_align_t);

template <Meter &meter> void *Take(size_t size)
{
    auto *block = static_cast<char *>(std::malloc(kHead + size));
    if (block == nullptr)
        return nullptr;
    std::memcpy(block, &size, sizeof(size));
    meter.Add(size);
    both.Add(size);
    return block + kHead;
}

template <Meter &meter> void GiveBack(void *at)
{
    if (at == nullptr)
        return;
    char *block = static_cast<char *>(at) - kHead;
    size_t size;
    std::memcpy(&size, block, sizeof(size));
    meter.now -= size;
    both.now -= size;
    std::free(block);
}

template <Meter &meter> void *Change(void *at, size_t size)
{
    void *block = Take<meter>(size);
    if (block == nullptr || at == nullptr)
        return block;
    size_t had;
    std::memcpy(&had, static_cast<char *>(at) - kHead, sizeof(had));
    std::memcpy(block, at, std::min(had, size));
    GiveBack<meter>(at);
    return block;
}

char *CopyText(const char *text)
{
    auto *copy = static_cast<char *>(Take<xml>(std::strlen(text) + 1));
    return copy != nullptr ? std::strcpy(copy, text) : nullptr;
}

size_t Kilobytes(size_t bytes)
{
    return (bytes + 512) / 1024;
}

struct Loaded {
    std::string name;
    size_t text, held, peak;
};

std::vector<Loaded> LoadEach(ZrCtx *ctx, const char *dir)
{
    std::vector<fs::path> paths;
    for (const fs::directory_entry &entry : fs::directory_iterator(dir))
        if (entry.path().extension() == ".yin")
            paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::vector<Loaded> all;
    for (const fs::path &path : paths) {
        std::string stem = path.stem().string();
        std::string name = stem.substr(0, stem.find('@'));
        auto size = static_cast<size_t>(fs::file_size(path));
        if (!all.empty() && all.back().name == name) { // another file of the same module
            all.back().text += size;
            continue;
        }
        size_t before = hooks.now;
        size_t beforeBoth = both.peak = both.now;
        uint32_t status = ZR_CTX_LoadModule(ctx, name.c_str());
        if (status != ZR_OK)
            std::fprintf(stderr, "footprint: %s is left out: status %u\n", name.c_str(), status);
        else
            all.push_back({name, size, hooks.now - before, both.peak - beforeBoth});
    }
    return all;
}

void ReportMemory(const char *dir)
{
    size_t start = hooks.now;
    ZrCtx *ctx = ZR_CTX_Create(0);
    ZR_CTX_SetSearchDir(ctx, dir);
    size_t empty = hooks.now - start;
    std::vector<Loaded> all = LoadEach(ctx, dir);
    size_t held = hooks.now - start, text = 0;
    for (const Loaded &one : all)
        text += one.text;
    auto byHeld = [](const Loaded &a, const Loaded &b) { return a.held < b.held; };
    auto byPeak = [](const Loaded &a, const Loaded &b) { return a.peak < b.peak; };
    std::sort(all.begin(), all.end(), byHeld);
    const Loaded &most = all.back();
    const Loaded &highest = *std::max_element(all.begin(), all.end(), byPeak);
    std::printf("| what | |\n|---|---|\n");
    std::printf("| a context without modules | %zu bytes |\n", empty);
    std::printf("| %zu modules, %zu KB of prepared YIN | %zu KB |\n", all.size(), Kilobytes(text),
                Kilobytes(held));
    std::printf("| a module, on average | %zu KB |\n", Kilobytes((held - empty) / all.size()));
    std::printf("| the median module | %zu KB |\n", Kilobytes(all[all.size() / 2].held));
    std::printf("| the largest, `%s`, %zu KB of YIN | %zu KB |\n", most.name.c_str(),
                Kilobytes(most.text), Kilobytes(most.held));
    std::printf("| the highest peak of a load, `%s`, %zu KB of YIN | %zu KB |\n",
                highest.name.c_str(), Kilobytes(highest.text), Kilobytes(highest.peak));
    ZR_CTX_Delete(ctx);
    if (hooks.now != start)
        std::fprintf(stderr, "footprint: %zu bytes are left\n", hooks.now - start);
}

// Stack: a thread runs on one that was painted, and where the paint is gone it has been.

constexpr size_t kStack = size_t{16} << 20;
constexpr unsigned char kPaint = 0xA5;

size_t Untouched(const unsigned char *stack)
{
    return size_t(std::find_if(stack, stack + kStack, [](auto byte) { return byte != kPaint; }) -
                  stack);
}

// The bytes below the thread's own records that `work` has touched; 0 when it failed.
size_t StackOf(const std::function<uint32_t()> &work)
{
    void *stack = mmap(nullptr, kStack, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (stack == MAP_FAILED)
        return 0;
    std::memset(stack, kPaint, kStack);
    struct Run {
        const std::function<uint32_t()> &work;
        uint32_t status;
    } run = {work, ZR_ERR_FAILED};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, kStack);
    auto start = [](void *at) -> void * {
        auto *self = static_cast<Run *>(at);
        self->status = self->work();
        return nullptr;
    };
    pthread_t thread;
    if (pthread_create(&thread, &attributes, start, &run) == 0)
        pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    size_t used = kStack - Untouched(static_cast<unsigned char *>(stack));
    munmap(stack, kStack);
    return run.status == ZR_OK ? used : 0;
}

uint32_t LoadText(const std::string &text)
{
    ZrCtx *ctx = ZR_CTX_Create(0);
    uint32_t status = ZR_CTX_LoadMemory(ctx, text.c_str());
    if (status == ZR_OK)
        status = ZR_CTX_UnloadModule(ctx, "m");
    ZR_CTX_Delete(ctx);
    return status;
}

uint32_t AddLength(const char *, uint32_t length, void *total)
{
    *static_cast<size_t *>(total) += length;
    return 0;
}

uint32_t PrintAll(ZrCtx *ctx, const std::vector<std::string> &names)
{
    size_t length = 0;
    for (const std::string &name : names) {
        const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name.c_str());
        if (module != nullptr && ZR_MOD_PrintModelTree(module, AddLength, &length) != ZR_OK)
            return ZR_ERR_FAILED;
    }
    return length > 0 ? ZR_OK : ZR_ERR_FAILED;
}

uint32_t Validate(ZrCtx *ctx, uint32_t levels, const std::string &leaf)
{
    xmlNode *request = zrtest::Request(levels, leaf.c_str());
    ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_XML, request, nullptr, nullptr);
    uint32_t status = error == nullptr ? ZR_OK : ZR_ERR_INVALID;
    ZR_FreeErrNode(error);
    xmlFreeDoc(request->doc);
    return status;
}

void ReportRow(const char *what, const std::function<uint32_t()> &work)
{
    static const size_t threadItself = StackOf([] { return uint32_t{ZR_OK}; });
    size_t used = StackOf(work);
    if (used == 0)
        std::fprintf(stderr, "footprint: failed: %s\n", what);
    else
        std::printf("| %s | %zu KB |\n", what, Kilobytes(used - threadItself));
}

// Prints and validates what is as deep as can be loaded, with `inner` in the last level.
void ReportDeepest(const char *print, const char *validate, const std::string &inner,
                   const std::string &leaf)
{
    uint32_t levels = 0;
    ZrCtx *ctx = ZR_CTX_Create(0);
    if (ZR_CTX_LoadMemory(ctx, zrtest::DeepestModule(inner, &levels).c_str()) != ZR_OK)
        std::fprintf(stderr, "footprint: failed: %s\n", validate);
    if (print != nullptr)
        ReportRow(print, [&] { return PrintAll(ctx, {"m"}); });
    ReportRow(validate, [&] { return Validate(ctx, levels, leaf); });
    ZR_CTX_Delete(ctx);
}

void ReportRealStack(const char *dir)
{
    std::vector<std::string> names;
    ZrCtx *ctx = ZR_CTX_Create(0);
    ZR_CTX_SetSearchDir(ctx, dir);
    ReportRow("load the real modules", [&] {
        for (const Loaded &one : LoadEach(ctx, dir))
            names.push_back(one.name);
        return names.empty() ? ZR_ERR_FAILED : ZR_OK;
    });
    ReportRow("print their trees", [&] { return PrintAll(ctx, names); });
    ZR_CTX_Delete(ctx);
}

void ReportStack(const char *dir)
{
    constexpr uint32_t kLevels = 250, kChained = 1023;
    std::printf("| what | |\n|---|---|\n");
    if (dir != nullptr)
        ReportRealStack(dir);
    std::string nested = zrtest::Module(zrtest::Repeat("<container name=\"a\">", kLevels) +
                                        zrtest::Repeat("</container>", kLevels));
    ReportRow("load 250 levels of one file", [&] { return LoadText(nested); });
    uint32_t levels = 0;
    std::string deepest = zrtest::DeepestModule("", &levels);
    ReportRow("load and unload the deepest augments of augments",
              [&] { return LoadText(deepest); });
    ReportDeepest("print them", "validate a request as deep",
                  R"(<leaf name="l"><type name="int8"/></leaf>)", "l");
    ReportDeepest(nullptr, "validate one with a value that is handed on 2,046 times",
                  zrtest::Chain(kChained), "l" + std::to_string(kChained - 1));
}

} // namespace

int main(int argc, char **argv)
{
    const char *dir = argc > 1 && argv[1][0] != '\0' ? argv[1] : nullptr;
    if (xmlMemSetup(GiveBack<xml>, Take<xml>, Change<xml>, CopyText) != 0 ||
        ZR_MemRegisterCallBack(Take<hooks>, Change<hooks>, GiveBack<hooks>) != ZR_OK)
        return 1;
    xmlInitParser();
    if (dir != nullptr) {
        std::printf("### Memory\n\n");
        ReportMemory(dir);
        std::printf("\n");
    }
    std::printf("### Stack\n\n");
    ReportStack(dir);
}
