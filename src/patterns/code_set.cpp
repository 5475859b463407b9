// SPDX-License-Identifier: Apache-2.0
#include "patterns/code_set.h"

#include <algorithm>

namespace zr::patterns {

CodeSet::CodeSet(std::span<const CodeRange> ranges)
{
    std::vector<CodeRange> sorted(ranges.begin(), ranges.end());
    std::sort(sorted.begin(), sorted.end(),
              [](const CodeRange &a, const CodeRange &b) { return a.first < b.first; });
    for (const CodeRange &range : sorted) {
        if (!ranges_.empty() && range.first <= ranges_.back().last + 1)
            ranges_.back().last = std::max(ranges_.back().last, range.last);
        else
            ranges_.push_back(range);
    }
}

CodeSet CodeSet::Of(char32_t first, char32_t last)
{
    const CodeRange range = {first, last};
    return CodeSet({&range, 1});
}

bool CodeSet::Contains(char32_t code) const
{
    auto after =
        std::upper_bound(ranges_.begin(), ranges_.end(), code,
                         [](char32_t c, const CodeRange &range) { return c < range.first; });
    return after != ranges_.begin() && code <= std::prev(after)->last;
}

CodeSet CodeSet::Complement() const
{
    CodeSet rest;
    char32_t next = 0;
    for (const CodeRange &range : ranges_) {
        if (range.first > next)
            rest.ranges_.push_back({next, range.first - 1});
        next = range.last + 1;
    }
    if (next <= kLastCode)
        rest.ranges_.push_back({next, kLastCode});
    return rest;
}

CodeSet CodeSet::Union(const CodeSet &other) const
{
    std::vector<CodeRange> all = ranges_;
    all.insert(all.end(), other.ranges_.begin(), other.ranges_.end());
    return CodeSet(all);
}

CodeSet CodeSet::Minus(const CodeSet &other) const
{
    return Complement().Union(other).Complement(); // De Morgan
}

} // namespace zr::patterns
