// SPDX-License-Identifier: Apache-2.0
// What the conditions of one run have found by name among the many children of an element.
//
// A condition on each of 100,000 list entries may ask for a leaf that stands behind them all, or
// for one that is not there. Found once, it is remembered, and kept right while the run adds and
// removes elements, so that the cost of an entry does not grow with their number.
#pragma once

#include <libxml/tree.h>

#include <cstdint>

#include "platform/avl.h"

namespace zr {

bool HasName(const xmlNode *node, const char *name);

// The first node of that name among `child` and its following siblings, of any kind of node, or
// null.
xmlNode *FirstNamed(xmlNode *child, const char *name);

// Belongs to one run and to its tree. Where memory runs out nothing is remembered: the answers stay
// the same.
class ChildMemory {
public:
    ChildMemory() { PAL_AVL3_Init(&parents_); }
    ~ChildMemory();
    ChildMemory(const ChildMemory &) = delete;
    ChildMemory &operator=(const ChildMemory &) = delete;

    // FirstNamed() among the children of `parent`. A name has at most 64 characters.
    xmlNode *Find(const xmlNode *parent, const char *name);

    // To be called when `child` has become the last child of its parent.
    void NoteAdded(xmlNode *child);
    // To be called before `node` is taken out of the tree with everything below it.
    void NoteRemoval(xmlNode *node);

private:
    void Forget(const xmlNode *parent);

    PalAvlTree parents_; // of ParentEntry
};

} // namespace zr
