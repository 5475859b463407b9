// SPDX-License-Identifier: Apache-2.0
// Which sub-statements each kind of schema node takes, and where they go.
#pragma once

#include <cstdint>
#include <span>

#include "loader/statements/engine.h"
#include "model/node_record.h"

namespace zr {

// What the parser of one node keeps while its children are parsed.
struct NodeWork {
    ZrNode *node;
    const char *keyText; // a list's "key" argument, the document's own text
    uint16_t ifFeatures; // slots filled of each array
    uint16_t musts;
    uint16_t defaults;
    uint16_t extInsts;     // not used: the node counts its own
    uint16_t extInstTotal; // length of the node's extension-instance array
};

// One row of a node's table: the statement, and what makes its engine row for one node.
struct NodeRow {
    uint32_t statement;
    ZrsSubElem (*make)(uint32_t statement, NodeWork *work);
};

constexpr uint32_t kMaxNodeRows = 18;

// The table of a node kind; empty for a kind that is none.
std::span<const NodeRow> NodeRows(uint32_t kind);

} // namespace zr
