// SPDX-License-Identifier: Apache-2.0
// Reports: what is wrong with the sources, as values that are collected and told at the end.
#pragma once

#include <initializer_list>
#include <memory_resource>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "yang/base/memory.h"
#include "yang/base/source.h"

namespace zr::yang {

struct Report {
    Place place;
    uint32_t severity; // ZrYangSeverity
    uint32_t code;     // ZrYangCode
    std::string_view message;
};

class Reports {
public:
    Reports(Arena &arena, std::pmr::memory_resource *memory);

    // The message is what the pieces make together. The same at the same place is kept once: what
    // stands in a grouping is seen at each of its uses.
    void Error(const Place &place, uint32_t code, std::initializer_list<std::string_view> pieces);
    void Warning(const Place &place, uint32_t code, std::initializer_list<std::string_view> pieces);

    uint64_t limit = 100; // the reports of one source

    // Tells all that was not told yet, in the order of sources, lines and columns.
    void Deliver(ZrYangReportFunc func, void *user);

private:
    void Add(const Place &place, uint32_t severity, uint32_t code,
             std::initializer_list<std::string_view> pieces);

    Arena &arena_;
    std::pmr::vector<Report> pending_;
    std::pmr::unordered_set<size_t> known_; // hashes of what was reported
    Source nowhere_;                        // for what belongs to no file
};

} // namespace zr::yang
