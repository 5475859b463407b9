// The elements that default completion adds: how they are marked, listed, kept and taken out.
#pragma once

#include "data/check_records.h"

// The value of the `line` field of an added element. libxml2 leaves the field at 0 in elements that
// are built in memory.
enum : uint16_t { ZRD_DEFAULT_MARK = 256 };

extern "C" {
ZR_API uint32_t ZRD_PAS_IsDefaultAddNode(const xmlNode *node);
ZR_API void ZRD_PAS_ClearDefaultNodeTreeFlag(xmlNode *node);
// The list holds the roots of the added subtrees: an unmarked element, or one below a marked one,
// is not entered. 12 when there is no memory for the entry.
ZR_API uint32_t ZRD_PAS_AddDefaultNodeToList(ZrListLink *list, xmlNode *element);
ZR_API void ZRD_PAS_RemoveDefaultNodeFromList(ZrListLink *list, xmlNode *element);
// Takes an added element out of the tree, and out of the list when it stands there.
ZR_API void ZRD_PAS_DeleteDefaultAddNode(ZrdCheckAux *check, xmlNode *element);
// Empties the list: with `keep` 1 the elements stay, unmarked, and go to the run's callback, newest
// first; with any other value they are removed from the tree and freed.
ZR_API void ZRD_PAS_ClearDefaultNodeList(ZrdCheckAux *check, uint32_t keep);
}

namespace zr {
inline void MarkAsDefault(xmlNode *element)
{
    element->line = ZRD_DEFAULT_MARK;
}
} // namespace zr
