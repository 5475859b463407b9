// SPDX-License-Identifier: Apache-2.0
// A module split into parts that merge into it again.
#pragma once

#include <string>
#include <vector>

#include "loader/module_sets.h"

namespace zrtest {

// Splits a module's text into `count` parts. Members stand in every part; so does a share of the
// nodes, before those that stand in one part only; a deviation stands in one part.
std::vector<std::string> SplitIntoParts(const std::string &moduleText, size_t count,
                                        Random &random);

} // namespace zrtest
