// SPDX-License-Identifier: Apache-2.0
// Sets of Unicode code points as ranges.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zr::patterns {

constexpr char32_t kLastCode = 0x10FFFF;

struct CodeRange {
    char32_t first, last;
    bool operator==(const CodeRange &) const = default;
};

// The ranges of a set stand in ascending order, apart from each other by at least one code point.
class CodeSet {
public:
    CodeSet() = default;
    explicit CodeSet(std::span<const CodeRange> ranges); // in any order
    static CodeSet Of(char32_t first, char32_t last);

    std::span<const CodeRange> ranges() const { return ranges_; }
    bool Contains(char32_t code) const;
    CodeSet Complement() const;
    CodeSet Union(const CodeSet &other) const;
    CodeSet Minus(const CodeSet &other) const;
    bool operator==(const CodeSet &) const = default;

private:
    std::vector<CodeRange> ranges_;
};

} // namespace zr::patterns
