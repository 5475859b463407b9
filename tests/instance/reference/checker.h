// SPDX-License-Identifier: Apache-2.0
// What RFC 7950 has to say of a document, found the slow way: every rule is looked up again for
// every element, in the tree as it was written.
#pragma once

#include "reference/model.h"

namespace datatest::reference {

// Each fault as "TAG[APP-TAG] PATH", in no order.
std::vector<std::string> FaultsOf(const Node &schema, const Element &document);

} // namespace datatest::reference
