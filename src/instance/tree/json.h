// SPDX-License-Identifier: Apache-2.0
// JSON text to a tree in the shape of libxml2's.
#pragma once

#include "instance/tree/json_node.h"
#include "instance/tree/parse.h"

namespace zr::data {

// Returns a wrapper element whose children are the top-level data nodes, in the arena; null, with
// what is wrong, for a text that is no JSON object. Arrays are their values, one node each; names
// of modules are namespaces, annotations (RFC 7952) attributes. The text may be of any depth.
// Throws std::bad_alloc.
const xmlNode *ParseJson(const Plan &plan, Arena &arena, std::pmr::memory_resource *memory,
                         std::string_view text, ParseFault &fault);

} // namespace zr::data
