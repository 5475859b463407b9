// SPDX-License-Identifier: Apache-2.0
// The functions that YANG adds to XPath (RFC 7950, section 10).
#pragma once

#include <libxml/xpath.h>

namespace zr::data {

// Makes the functions known to a context whose `extra` is its Evaluator; false when memory runs
// out.
bool RegisterFunctions(xmlXPathContext &context);

} // namespace zr::data
