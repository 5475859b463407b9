// SPDX-License-Identifier: Apache-2.0
#include "instance/errors/faults.h"

#include <algorithm>
#include <tuple>

namespace zr::data {

namespace {

bool IsBefore(const Fault &a, const Fault &b)
{
    return std::tie(a.order, a.number) < std::tie(b.order, b.number);
}

} // namespace

void Faults::Add(Fault fault, std::initializer_list<std::string_view> pieces)
{
    fault.number = found_++;
    if (limit_ == 0 || (kept_.size() == limit_ && !IsBefore(fault, kept_.front())))
        return;
    std::pmr::string message(kept_.get_allocator());
    for (std::string_view piece : pieces)
        message += piece;
    fault.message = arena_.CopyText(message);
    if (fault.badElement != nullptr)
        fault.badElement = arena_.CopyText(fault.badElement);
    if (fault.badAttribute != nullptr)
        fault.badAttribute = arena_.CopyText(fault.badAttribute);
    fault.child = arena_.Copy(fault.child);
    kept_.push_back(fault);
    std::push_heap(kept_.begin(), kept_.end(), IsBefore);
    if (kept_.size() > limit_) {
        std::pop_heap(kept_.begin(), kept_.end(), IsBefore);
        kept_.pop_back();
    }
}

std::pmr::vector<Fault> &Faults::Sorted()
{
    std::sort(kept_.begin(), kept_.end(), IsBefore);
    return kept_;
}

Fault FaultAt(const Element &element, uint32_t tag)
{
    Fault fault;
    fault.at = &element;
    fault.order = element.order;
    fault.tag = tag;
    fault.badElement = element.plan->name;
    return fault;
}

Fault FaultBelow(const Element &parent, const PlanNode &child, uint32_t tag)
{
    Fault fault = FaultAt(parent, tag);
    fault.childModule = child.module;
    fault.child = child.name;
    fault.badElement = child.name;
    return fault;
}

} // namespace zr::data
