// SPDX-License-Identifier: Apache-2.0
// The public functions. Every exception ends here.
#include <re2/re2.h>
#include <zrpatterns/zrpatterns.h>

#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "patterns/expression.h"
#include "patterns/translate.h"
#include "patterns/utf8.h"

struct ZrPattern {
    ZrPattern(const std::string &expression, const RE2::Options &options)
        : compiled(expression, options)
    {
    }
    RE2 compiled;
};

namespace {

using zr::patterns::Verdict;

constexpr int64_t kMostMemory = 8 * 1024 * 1024; // of one pattern

RE2::Options Options()
{
    RE2::Options options;
    options.set_log_errors(false);
    options.set_never_capture(true);
    options.set_max_mem(kMostMemory);
    return options;
}

uint32_t Compile(const char *pattern, ZrPattern **patternOut)
{
    zr::patterns::Node expression;
    switch (zr::patterns::Parse(pattern, expression)) {
    case Verdict::Faulty:
        return ZR_PATTERNS_ERR_FAULTY;
    case Verdict::TooLarge:
        return ZR_PATTERNS_ERR_TOO_LARGE;
    case Verdict::Sound:
        break;
    }
    auto made = std::make_unique<ZrPattern>(zr::patterns::Translate(expression), Options());
    if (!made->compiled.ok()) // it is well-formed, so it must be its size
        return ZR_PATTERNS_ERR_TOO_LARGE;
    *patternOut = made.release();
    return ZR_PATTERNS_OK;
}

uint32_t Match(const ZrPattern *pattern, std::string_view value)
{
    // RE2 would take some forms of a character that UTF-8 forbids for the character.
    if (!zr::patterns::IsXmlText(value))
        return ZR_PATTERN_UNDECIDED;
    const re2::StringPiece text(value.data(), value.size());
    bool matches = pattern->compiled.Match(text, 0, text.size(), RE2::ANCHOR_BOTH, nullptr, 0);
    return matches ? ZR_PATTERN_MATCH : ZR_PATTERN_NO_MATCH;
}

// Runs `work`; what it throws becomes `failure`.
template <typename Work> uint32_t Guarded(uint32_t failure, Work work)
{
    try {
        return work();
    } catch (const std::exception &) { // bad_alloc, or length_error for what no memory could hold
        return failure;
    }
}

uint32_t CompileForm(const char *pattern, void *, void **formOut)
{
    ZrPattern *made = nullptr;
    uint32_t status = ZR_PATTERNS_Compile(pattern, &made);
    *formOut = made;
    return status;
}

uint32_t MatchForm(const void *form, const char *value, void *)
{
    return ZR_PATTERNS_Match(static_cast<const ZrPattern *>(form), value);
}

void FreeForm(void *form, void *)
{
    ZR_PATTERNS_Free(static_cast<ZrPattern *>(form));
}

constexpr ZrPatternMatcher kMatcher = {CompileForm, MatchForm, FreeForm, nullptr};
static_assert(uint32_t{ZR_PATTERNS_OK} == uint32_t{ZR_OK} &&
              uint32_t{ZR_PATTERNS_ERR_NO_MEMORY} == uint32_t{ZR_ERR_NO_MEMORY});

} // namespace

const ZrPatternMatcher *ZR_PATTERNS_GetMatcher(void)
{
    return &kMatcher;
}

uint32_t ZR_PATTERNS_Compile(const char *pattern, ZrPattern **patternOut)
{
    if (patternOut != nullptr)
        *patternOut = nullptr;
    if (pattern == nullptr || patternOut == nullptr)
        return ZR_PATTERNS_ERR_INVALID;
    return Guarded(ZR_PATTERNS_ERR_NO_MEMORY, [&] { return Compile(pattern, patternOut); });
}

uint32_t ZR_PATTERNS_Match(const ZrPattern *pattern, const char *value)
{
    if (pattern == nullptr || value == nullptr)
        return ZR_PATTERN_UNDECIDED;
    return Guarded(ZR_PATTERN_UNDECIDED, [&] { return Match(pattern, value); });
}

void ZR_PATTERNS_Free(ZrPattern *pattern)
{
    delete pattern;
}
