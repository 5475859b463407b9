// SPDX-License-Identifier: Apache-2.0
// The elements of an instance tree that are written, in the schema's order.
#pragma once

#include <zrdata/write.h>

#include "instance/tree/element.h"

namespace zr::data {

// What is told of the elements. Instances of one list or leaf-list come one after another, between
// OpenGroup() and CloseGroup().
class Listener {
public:
    virtual void Open(const Element &element) = 0; // a container or an entry
    virtual void Close(const Element &element) = 0;
    virtual void OpenGroup(const Element &first) = 0;
    virtual void CloseGroup(const Element &first) = 0;
    virtual void Leaf(const Element &leaf, bool isTagged) = 0;
    virtual void Any(const Element &any) = 0;

protected:
    ~Listener() = default;
};

// Tells of all that a mode of defaults (a ZrDataDefaults) shows.
void Walk(const Plan &plan, const Tree &tree, uint32_t defaults, std::pmr::memory_resource *memory,
          Listener &listener);

} // namespace zr::data
