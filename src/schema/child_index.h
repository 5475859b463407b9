// The children of one node by name, for many lookups below the same parent in a row.
#pragma once

#include "foundation/memory.h"
#include "schema/node_record.h"

namespace zr {

// Finds what ZRS_NODE_FindChildNodeByName finds. Where a parent has many children it does so
// through a hash table of them, which serves until another parent with many is asked for or this
// one gets more; without memory for the table it passes the siblings like that function. No child
// may be taken out between two lookups, unless Forget() is called then.
class ChildIndex {
public:
    ZrNode *Find(const ZrNode *parent, const char *moduleName, const char *name);
    void Forget() { parent_ = nullptr; }

private:
    bool Serves(const ZrNode *parent);
    bool Build(const ZrNode *parent);

    const ZrNode *parent_ = nullptr;
    const ZrNode *firstChild_ = nullptr; // of the parent when the table was made
    const ZrNode *lastChild_ = nullptr;
    ScopedBlock<ZrNode *> slots_;
    size_t mask_ = 0; // number of slots less one; at least half of them are empty
};

} // namespace zr
