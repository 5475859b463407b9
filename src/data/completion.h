// Default completion: adds the default leaves that the data leaves out, and the non-presence
// containers that are needed to hold them (RFC 7950, sections 7.5.1 and 7.6.1).
#pragma once

#include "data/check_run.h"

extern "C" {
// Completes below an rpc's or action's element; does nothing outside of RPC runs.
ZR_API uint32_t ZRD_PAS_CompleteTree(ZrdCheckAux *check, xmlNode *element, uint32_t mode);
// Completes what one schema node leaves out below the parent element. `*added` becomes 1 when
// something was added, else it is left as it is.
ZR_API uint32_t ZRD_PAS_CompleteSubTree(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                        uint32_t *added);
// One a kind of schema node, with the arguments of CompleteSubTree.
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForContainer(ZrdCheckAux *check, xmlNode *parent,
                                                     ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForLeaf(ZrdCheckAux *check, xmlNode *parent,
                                                ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForLeaflist(ZrdCheckAux *check, xmlNode *parent,
                                                    ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForList(ZrdCheckAux *check, xmlNode *parent,
                                                ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForChoice(ZrdCheckAux *check, xmlNode *parent,
                                                  ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForCase(ZrdCheckAux *check, xmlNode *parent,
                                                ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForRpc(ZrdCheckAux *check, xmlNode *parent,
                                               ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForInput(ZrdCheckAux *check, xmlNode *parent,
                                                 ZrNode *schemaNode, uint32_t *added);
}

namespace zr {
// Moves what was added from the end of its parent to its place in the schema's order.
void PlaceDefaults(const ZrdCheckAux *check);
} // namespace zr

// The elements that default completion adds: how they are marked, listed, kept and taken out.

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
