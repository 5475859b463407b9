// SPDX-License-Identifier: Apache-2.0
// The conditions of one element, as the passes over a tree and the search for missing nodes ask
// for them, and what a run remembers between them.
#pragma once

#include "data/check_records.h"
#include "xpath/run_memory.h"

extern "C" {
// The "when" conditions that apply to one element: its own and those of the choices and cases
// around it. `*pass` is 1 when all hold, else 0; the status tells whether they could be evaluated:
// ZR_OK, or the evaluator's with the fault in the run's record.
ZR_API uint32_t ZRD_PAS_EvalDataNodeWhenCond(ZrdCheckAux *check, xmlNode *element, uint32_t *pass);
// One of them.
ZR_API uint32_t ZRD_PAS_EvalDataNodeOneWhenCond(ZrdCheckAux *check, xmlNode *contextNode,
                                                const char *condition, uint32_t *pass);
// The "must" conditions of a schema node on an element, up to the first that does not hold. ZR_OK;
// ZR_XPATH_RESULT_FALSE for a false one, in a request with its record; or the evaluator's status,
// with its record.
ZR_API uint32_t ZRD_PAS_EvalDataNodeMustCond(ZrdCheckAux *check, xmlNode *element,
                                             const ZrNode *schemaNode);
}

namespace zr {

// A run with a memory, set up with ZRD_MODE_REMEMBERS in its mode. A bare ZrdCheckAux, without that
// bit, gives the same answers. The first condition is evaluated after the last default was added:
// what changes the tree from then on tells the memory.
struct ValidationRun : ZrdCheckAux {
    RunMemory memory;
};

// The run's memory; null for one without.
inline RunMemory *MemoryOf(ZrdCheckAux *check)
{
    return (check->mode & ZRD_MODE_REMEMBERS) != 0 ? &static_cast<ValidationRun *>(check)->memory
                                                   : nullptr;
}

// Tells the memory of an element that has become the last child of its parent.
inline void NoteAdded(ZrdCheckAux *check, xmlNode *element)
{
    if (RunMemory *memory = MemoryOf(check))
        memory->children.NoteAdded(element);
}

// Tells it of an element that is about to leave the tree with all that stands below it.
inline void NoteRemoval(ZrdCheckAux *check, xmlNode *element)
{
    if (RunMemory *memory = MemoryOf(check))
        memory->children.NoteRemoval(element);
}

} // namespace zr
