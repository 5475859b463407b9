// SPDX-License-Identifier: Apache-2.0
// Expressions for libxml2's XPath: every name with the name of its module as the prefix, so that
// one set of prefixes serves all expressions of a plan.
#pragma once

#include <memory_resource>
#include <span>
#include <string>
#include <string_view>

#include "instance/plan/plan.h"

namespace zr::data {

// The functions that an expression may call: those of XPath 1.0 and of YANG. Each name is
// NUL-terminated.
std::span<const std::string_view> FunctionNames();

// Appends the expression as libxml2 is given it. Names without a prefix are those of `module` (RFC
// 7950, section 6.4.1). Returns what is wrong with the expression, or null.
const char *RewriteExpression(const Plan &plan, const PlanModule &module, std::string_view source,
                              std::pmr::string &out);

} // namespace zr::data
