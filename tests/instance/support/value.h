// SPDX-License-Identifier: Apache-2.0
// One value of one type, as section 9 of RFC 7950 looks at it.
#pragma once

#include "support/schema.h"

namespace datatest {

// "leaf v" with that type, written as it stands behind "type" but for a ';'.
std::string Leaf(const std::string &type, const std::string &inner = "");

// Whether a leaf of a type takes a text; `rest` is what else the module "m" holds. The prefix "m"
// stands for its namespace, which is the default one too.
bool Takes(const std::string &type, const std::string &text, const std::string &rest = "");

// Whether it takes the text, and a condition sees `canonical`.
bool Reads(const std::string &type, const std::string &text, const std::string &canonical,
           const std::string &rest = "");

} // namespace datatest
