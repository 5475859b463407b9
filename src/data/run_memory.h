// What a run remembers for its conditions.
#pragma once

#include "data/check_records.h"
#include "xpath/child_memory.h"

namespace zr {

// A run with a memory, set up with ZRD_MODE_REMEMBERS in its mode. A bare ZrdCheckAux, without that
// bit, gives the same answers. The first condition is evaluated after the last default was added:
// what changes the tree from then on tells the memory.
struct ValidationRun : ZrdCheckAux {
    ChildMemory children;
};

// The run's memory; null for one without.
inline ChildMemory *MemoryOf(ZrdCheckAux *check)
{
    return (check->mode & ZRD_MODE_REMEMBERS) != 0 ? &static_cast<ValidationRun *>(check)->children
                                                   : nullptr;
}

// Tells the memory of an element that has become the last child of its parent.
inline void NoteAdded(ZrdCheckAux *check, xmlNode *element)
{
    if (ChildMemory *memory = MemoryOf(check))
        memory->NoteAdded(element);
}

// Tells it of an element that is about to leave the tree with all that stands below it.
inline void NoteRemoval(ZrdCheckAux *check, xmlNode *element)
{
    if (ChildMemory *memory = MemoryOf(check))
        memory->NoteRemoval(element);
}

} // namespace zr
