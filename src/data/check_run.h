// One validation run over an element and all that stands below it.
#pragma once

#include <zrschema/types.h>

#include <libxml/tree.h>

#include <cstdint>

#include "foundation/relations.h"
#include "xpath/child_memory.h"

extern "C" {
ZR_API void ZRD_PAS_InitCheckAux(ZrdCheckAux *check, ZrCtx *ctx, uint32_t mode,
                                 ZrDefaultNodeFunc callback, void *userData);
// Matching, completion, "when", "must" and mandatory nodes, in this order. 0, or the first phase's
// failure; most failures leave a record in the run.
ZR_API uint32_t ZRD_PAS_ValidateDataTree(ZrdCheckAux *check, xmlNode *top);
}

// The records of a validation run: the run itself, its error, its list of added default nodes.

// An rpc-error (RFC 6241, section 4.3). All texts are owned and may be null.
struct ZrdErrNode {
    uint32_t type;      // ZrErrorType
    uint32_t severity;  // ZrErrorSeverity
    uint32_t tag;       // ZrErrorTag
    char *appTag;       // error-app-tag
    char *path;         // error-path
    char *message;      // error-message
    char *badElement;   // local name of the offending element
    char *badAttribute; // kept for the record's form; no check sets it
};

// Bits of ZrdCheckAux::mode.
enum : uint32_t {
    ZRD_MODE_RPC = 0x1,
    ZRD_MODE_NOTIF = 0x2,
    ZRD_MODE_ACTION = 0x4,       // an RPC run whose top element is data that carries an action
    ZRD_MODE_IN_ACTION = 0x8,    // while the children of the action element are matched
    ZRD_MODE_MOUNT_POINT = 0x10, // a schema-mount point was met (RFC 8528)
    ZRD_MODE_REMEMBERS = 0x20    // the record is the head of a zr::ValidationRun
};

// The root of one subtree that default completion added.
struct ZrdDefaultNodeEntry {
    ZrListLink link;
    xmlNode *node;
};

struct ZrdCheckAux {
    ZrCtx *ctx;
    uint32_t mode;          // ZRD_MODE_...
    xmlNode *root;          // parent of the top element; paths and absolute XPaths start below it
    xmlNode *actionElement; // the one element that instantiates an action, or null
    ZrdErrNode *error;      // null while no fault was found
    ZrListLink defaults;    // of ZrdDefaultNodeEntry, newest first
    ZrDefaultNodeFunc callback;
    void *userData;
};

#if UINTPTR_MAX == UINT32_MAX
static_assert(sizeof(ZrdErrNode) == 32);
static_assert(sizeof(ZrdDefaultNodeEntry) == 12);
static_assert(sizeof(ZrdCheckAux) == 36);
#endif

// What a run remembers for its conditions.

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
