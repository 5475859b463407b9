// SPDX-License-Identifier: Apache-2.0
// The modules of a plan, and what they define beside nodes: identities and annotations.
#pragma once

#include "instance/plan/plan.h"

namespace zr::data {

// Fills the modules and identities of a plan that has its context.
void MakeModules(Plan &plan);

} // namespace zr::data
