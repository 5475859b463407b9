// SPDX-License-Identifier: Apache-2.0
// Where a fault is, as an instance-identifier whose prefixes are names of modules.
#pragma once

#include <memory_resource>
#include <string>
#include <vector>

#include "instance/errors/faults.h"

namespace zr::data {

// Appends the path of an element, and to `prefixes` what is new among its prefixes.
void AppendPath(const Element &element, std::pmr::string &out,
                std::pmr::vector<ZrDataPrefix> &prefixes);
// The same of what a fault names; "/" for the data as a whole.
void AppendPath(const Fault &fault, std::pmr::string &out,
                std::pmr::vector<ZrDataPrefix> &prefixes);

} // namespace zr::data
