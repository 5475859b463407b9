// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <libxml/xmlerror.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace zrfuzz {

namespace {

int64_t g_liveBlocks = 0;
int64_t g_failAt = -1;

bool Refuses()
{
    return g_failAt >= 0 && g_failAt-- == 0;
}

void *Malloc(size_t size)
{
    void *block = Refuses() ? nullptr : std::malloc(size);
    g_liveBlocks += block != nullptr;
    return block;
}

void *Realloc(void *block, size_t size)
{
    if (Refuses())
        return nullptr;
    void *bigger = std::realloc(block, size);
    g_liveBlocks += block == nullptr && bigger != nullptr;
    return bigger;
}

void Free(void *block)
{
    --g_liveBlocks;
    std::free(block);
}

void Ignore(void *, const char *, ...) {}

Goal *g_goals = nullptr;

} // namespace

void Check(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "violated: %s\n", what);
    std::abort();
}

Goal::Goal(std::string what) : what_(std::move(what)), next_(g_goals)
{
    g_goals = this;
}

bool Goal::AllMet()
{
    bool all = g_goals != nullptr;
    for (const Goal *goal = g_goals; goal != nullptr; goal = goal->next_) {
        if (!goal->met_)
            std::fprintf(stderr, "no input does this: %s\n", goal->what_.c_str());
        all = all && goal->met_;
    }
    return all;
}

void SetUp()
{
    static bool ready = false;
    if (ready)
        return;
    ready = true;
    xmlSetGenericErrorFunc(nullptr, Ignore);
    Check(ZR_MemRegisterCallBack(Malloc, Realloc, Free) == ZR_OK, "the hooks are registered once");
}

int64_t LiveBlocks()
{
    return g_liveBlocks;
}

void *Memory::Allocate(size_t size, void *user)
{
    auto &self = *static_cast<Memory *>(user);
    if (++self.count == self.failAt)
        return nullptr;
    ++self.live;
    return std::malloc(size);
}

void Memory::Release(void *block, void *user)
{
    --static_cast<Memory *>(user)->live;
    std::free(block);
}

void FailAllocation(int64_t n)
{
    g_failAt = n;
}

uint32_t PickBy(std::string_view text, uint32_t bound)
{
    uint32_t hash = 2166136261; // FNV-1a
    for (char ch : text) {
        hash ^= static_cast<unsigned char>(ch);
        hash *= 16777619;
    }
    return hash % bound;
}

Context::Context(uint32_t flags)
    : balance_("a deleted context leaves no block"), ctx_(ZR_CTX_Create(flags))
{
    Check(ctx_ != nullptr, "a context is created");
}

Context::~Context()
{
    ZR_CTX_Delete(ctx_);
}

bool IsLoadStatus(uint32_t status)
{
    return status == ZR_OK || status == ZR_ERR_FAILED || status == ZR_ERR_NOT_FOUND ||
           status == ZR_ERR_NO_MEMORY || status == ZR_ERR_INVALID;
}

std::string ModuleText(const std::string &name, const std::string &body)
{
    return "<module name=\"" + name +
           "\" xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\" xmlns:" + name + "=\"urn:" + name +
           "\"><namespace uri=\"urn:" + name + "\"/><prefix value=\"" + name + "\"/>" + body +
           "</module>";
}

std::string AttributeText(std::string_view text)
{
    std::string result;
    for (char ch : text) {
        auto byte = static_cast<unsigned char>(ch);
        bool writable = byte >= 0x20 || ch == '\t' || ch == '\n' || ch == '\r';
        // Each byte stands for the character of that number, so that the text is UTF-8.
        if (writable && (byte >= 0x7f || ch == '<' || ch == '&' || ch == '"' || byte < 0x20))
            result += "&#" + std::to_string(byte) + ";";
        else if (writable)
            result += ch;
    }
    return result;
}

void LoadOrDie(ZrCtx *ctx, const std::string &yin)
{
    Check(ZR_CTX_LoadMemory(ctx, yin.c_str()) == ZR_OK, "the fixed module loads");
}

std::string TakeLine(std::string_view &rest)
{
    size_t end = rest.find('\n');
    std::string line(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

std::vector<Part> ReadParts(std::string_view input)
{
    constexpr std::string_view kMark = "=== ";
    std::vector<Part> parts;
    while (!input.empty()) {
        std::string line = TakeLine(input);
        if (line.starts_with(kMark))
            parts.push_back({line.substr(kMark.size()), ""});
        else if (!parts.empty())
            parts.back().text += line + "\n";
    }
    return parts;
}

} // namespace zrfuzz
