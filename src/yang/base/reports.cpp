// SPDX-License-Identifier: Apache-2.0
#include "yang/base/reports.h"

#include <algorithm>
#include <functional>
#include <string>
#include <tuple>

namespace zr::yang {

Reports::Reports(Arena &arena, std::pmr::memory_resource *memory)
    : arena_(arena), pending_(memory), known_(memory)
{
}

void Reports::Error(const Place &place, uint32_t code,
                    std::initializer_list<std::string_view> pieces)
{
    Add(place, ZR_YANG_ERROR, code, pieces);
}

void Reports::Warning(const Place &place, uint32_t code,
                      std::initializer_list<std::string_view> pieces)
{
    Add(place, ZR_YANG_WARNING, code, pieces);
}

void Reports::Add(const Place &given, uint32_t severity, uint32_t code,
                  std::initializer_list<std::string_view> pieces)
{
    Place place = given;
    if (place.source == nullptr)
        place.source = &nowhere_;
    Source &source = *place.source;
    if (source.isPrepared)
        return;
    std::pmr::string message(pending_.get_allocator()); // of which the arena keeps what is told
    for (std::string_view piece : pieces)
        message += piece;
    size_t hash = std::hash<std::string_view>()(message);
    for (size_t part : {static_cast<size_t>(source.order), static_cast<size_t>(place.line),
                        static_cast<size_t>(place.column)})
        hash = hash * 1000003u + part;
    if (!known_.insert(hash).second)
        return;
    source.errors += severity == ZR_YANG_ERROR;
    if (source.reports > limit)
        return;
    if (source.reports++ == limit)
        message = "further reports on this file are left out";
    pending_.push_back({place, severity, code, arena_.Copy(message)});
}

void Reports::Deliver(ZrYangReportFunc func, void *user)
{
    auto key = [](const Report &report) {
        return std::tuple(report.place.source->order, report.place.line, report.place.column);
    };
    std::stable_sort(pending_.begin(), pending_.end(),
                     [&](const Report &a, const Report &b) { return key(a) < key(b); });
    std::pmr::string name(pending_.get_allocator()), message(pending_.get_allocator());
    for (const Report &report : pending_) {
        if (func == nullptr)
            break;
        const Source &source = *report.place.source;
        std::string_view line = LineOf(source, report.place.line);
        name = source.name;
        message = report.message;
        bool hasLine = report.place.line != 0 && line.data() != nullptr;
        ZrYangReport told = {name.c_str(),      source.path.empty() ? "" : source.path.data(),
                             report.place.line, report.place.column,
                             report.severity,   report.code,
                             message.c_str(),   hasLine ? line.data() : nullptr,
                             line.size()};
        func(&told, user);
    }
    pending_.clear();
}

} // namespace zr::yang
