// SPDX-License-Identifier: Apache-2.0
// Ranges and lengths (RFC 7950, sections 9.2.4 and 9.4.4): ascending intervals of numbers.
#pragma once

#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace zr::yang {

// Which numbers a range is of. A number is kept as an ordinal, an unsigned number of the same
// order: signed numbers have their sign bit turned over. A decimal64 is kept as its digits without
// the point.
struct NumberForm {
    bool isSigned = false;
    uint32_t fractionDigits = 0; // 0: an integer
};

struct Interval {
    uint64_t low, high; // ordinals, both included
};
using Intervals = std::pmr::vector<Interval>;

// Reads a number of that form; false when it is none or does not fit into 64 bits.
bool ReadNumber(std::string_view text, const NumberForm &form, uint64_t &ordinalOut);
// The same with the notations of integers as values: hexadecimal and octal ones, and leading zeros
// (RFC 7950, section 9.2.1).
bool ReadIntegerValue(std::string_view text, const NumberForm &form, uint64_t &ordinalOut);

// Reads "1..4 | 8..max" within the intervals `base`, which "min" and "max" mean the ends of.
// Returns null, or what is wrong with it.
const char *ReadIntervals(std::string_view text, const NumberForm &form, const Intervals &base,
                          Intervals &out);

bool Contains(const Intervals &intervals, uint64_t ordinal);

} // namespace zr::yang
