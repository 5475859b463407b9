// SPDX-License-Identifier: Apache-2.0
// The attributes of edits (RFC 6241, section 7.2; RFC 7950, sections 7.7.9 and 7.8.6).
#pragma once

#include "instance/check/run.h"

namespace zr::data {

// Whether an attribute is one of those that edits have, wherever it stands.
bool IsEditAttribute(const xmlAttr &attribute);

// Reads the attributes of an element, tells what is wrong with them, and keeps the operation.
void ReadEditAttributes(Run &run, Element &element);

// A name of RFC 6241 as an operation; "none" gives Operation::None. False for any other name.
bool ReadOperation(std::string_view name, Operation &out);

} // namespace zr::data
