// SPDX-License-Identifier: Apache-2.0
// The paths of leafrefs (RFC 7950, section 9.9.2), compiled for an index.
#pragma once

#include "instance/plan/plan.h"

namespace zr::data {

// Finds what the path of a leaf's type leads to, with its predicates; every node of the plan must
// be there. A path that cannot be used is told as a problem, and the type gets no target.
void CompileLeafref(Plan &plan, const PlanNode &leaf, const char *path, Type &type);

} // namespace zr::data
