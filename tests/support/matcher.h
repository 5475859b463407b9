// SPDX-License-Identifier: Apache-2.0
// A matcher from outside with rules of its own, which counts what is asked of it: a value matches
// the pattern that it equals. A pattern that starts with "refuse" is refused, for one that starts
// with "short" memory runs out, and one that starts with "open" is never decided.
#pragma once

#include <zrschema/types.h>

#include <atomic>
#include <string>

namespace zrtest {

class EqualityMatcher {
public:
    ZrPatternMatcher record() { return {Compile, Match, Release, this}; }
    operator ZrPatternMatcher() { return record(); }

    int compiled() const { return compiled_; } // forms that were made
    int asked() const { return asked_; }       // patterns that were to be compiled
    int matched() const { return matched_; }   // values that were to be matched
    int live() const { return live_; }         // forms that were made and not released

private:
    static uint32_t Compile(const char *pattern, void *userData, void **formOut)
    {
        auto *self = static_cast<EqualityMatcher *>(userData);
        ++self->asked_;
        std::string text = pattern;
        if (text.starts_with("refuse"))
            return ZR_ERR_INVALID;
        if (text.starts_with("short"))
            return ZR_ERR_NO_MEMORY;
        *formOut = new std::string(text);
        ++self->compiled_;
        ++self->live_;
        return ZR_OK;
    }
    static uint32_t Match(const void *form, const char *value, void *userData)
    {
        ++static_cast<EqualityMatcher *>(userData)->matched_;
        const std::string &pattern = *static_cast<const std::string *>(form);
        if (pattern.starts_with("open"))
            return ZR_PATTERN_UNDECIDED;
        return pattern == value ? ZR_PATTERN_MATCH : ZR_PATTERN_NO_MATCH;
    }
    static void Release(void *form, void *userData)
    {
        delete static_cast<std::string *>(form);
        --static_cast<EqualityMatcher *>(userData)->live_;
    }

    std::atomic<int> compiled_ = 0, asked_ = 0, matched_ = 0, live_ = 0;
};

} // namespace zrtest
