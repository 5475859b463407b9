// SPDX-License-Identifier: Apache-2.0
// The boundary of the library: its objects as callers hold them, and where exceptions end.
#pragma once

#include <zrdata/zrdata.h>

#include <new>

#include "instance/errors/result.h"
#include "instance/plan/plan.h"
#include "shared/guard.h"
#include "shared/xml_reports.h"

struct ZrDataPlan {
    explicit ZrDataPlan(const ZrDataMemory &hooks) : plan(hooks) {}
    zr::data::Plan plan;
};

struct ZrDataResult {
    explicit ZrDataResult(const ZrDataMemory &hooks) : result(hooks) {}
    zr::data::Result result;
};

namespace zr::data {

// Runs a piece of work and turns memory that runs out, also libxml2's, into a status.
template <typename Work> uint32_t Guard(Work work) noexcept
{
    XmlReports reports;
    uint32_t status = zr::Guard<ZR_DATA_ERR_NO_MEMORY>(work);
    return reports.isOutOfMemory() ? uint32_t{ZR_DATA_ERR_NO_MEMORY} : status;
}

// Takes an object apart and gives its block back.
template <typename Object> void Destroy(Object *object, const ZrDataMemory &hooks)
{
    object->~Object();
    hooks.release(object, hooks.user);
}

// Makes an object in a block of the hooks; null when there is no memory for it. The constructors
// take no memory that they could not give back.
template <typename Object, typename... Arguments>
Object *Construct(const ZrDataMemory &hooks, const Arguments &...arguments)
{
    void *place = hooks.allocate(sizeof(Object), hooks.user);
    if (place == nullptr)
        return nullptr;
    try {
        return new (place) Object(hooks, arguments...);
    } catch (const std::bad_alloc &) {
        hooks.release(place, hooks.user);
        return nullptr;
    }
}

} // namespace zr::data
