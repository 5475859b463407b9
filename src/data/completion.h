// Default completion: adds the default leaves that the data leaves out, and the non-presence
// containers that are needed to hold them (RFC 7950, sections 7.5.1 and 7.6.1).
#pragma once

#include "data/check_records.h"

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
