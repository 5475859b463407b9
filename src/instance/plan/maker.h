// SPDX-License-Identifier: Apache-2.0
// Making a plan from what a context has loaded.
#pragma once

#include "instance/plan/plan.h"

namespace zr::data {

// Fills an empty plan. Throws std::bad_alloc.
void MakePlan(Plan &plan, const ZrCtx *ctx);

} // namespace zr::data
