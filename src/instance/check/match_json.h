// SPDX-License-Identifier: Apache-2.0
// What only a document in JSON has: its shapes, and members without a module. `at` names the place
// of a fault, whose tag is put in here.
#pragma once

#include "instance/errors/faults.h"
#include "instance/tree/json_node.h"

namespace zr::data {

void TellNoModule(Faults &faults, const Fault &at, const JsonNode &member);

// Whether a value is to be read as a node; what is wrong with it is told.
bool IsShaped(Faults &faults, Faults &warnings, const Fault &at, const PlanNode &plan,
              const JsonNode &value);

// What JSON can write and data has no place for (RFC 7951, sections 5.5 and 5.6): told as faults of
// the anydata or anyxml, since the schema has no path into it.
void CheckAny(Faults &faults, const Fault &at, const Element &any);

} // namespace zr::data
