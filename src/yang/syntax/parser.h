// SPDX-License-Identifier: Apache-2.0
// From tokens to a tree of statements.
#pragma once

#include "yang/base/reports.h"
#include "yang/syntax/statement.h"

namespace zr::yang {

// How deep statements may stand in each other: later rooms call themselves for what stands inside.
constexpr uint32_t kDepthLimit = 200;

// Reads the module or submodule of a source. What cannot be read is reported; the rest is read all
// the same. Null when there is no statement to return, or memory for text that is none.
Statement *Parse(Source &source, Reports &reports, Arena &arena);

} // namespace zr::yang
