// Schema nodes by path, paths of schema nodes, and the placing of top-level nodes.
//
// Paths are in module-name form: a step carries a module's name where the path enters that module,
// so the first step always does. Predicates are passed over. A path that does not resolve yields
// null; the caller knows what to say about it.
#pragma once

#include <zrschema/context.h>

#include "model/navigation.h"

extern "C" {
// Appends a node to the module's chain for its kind; 22 for a kind that is no top-level one.
ZR_API uint32_t ZRS_MOD_AddTopNodeToSchemaTree(ZrMod *module, ZrNode *node);
// By schema node identifier, from `start` or else from the module's top-level nodes: every schema
// node is a step, choice, case, input and output too (RFC 7950, section 6.5).
ZR_API ZrNode *ZRS_MOD_GetNodeBySchemaNodeId(const ZrMod *module, ZrNode *start, const char *path);
// Below the module's own augments of exactly that target; `*augmentOut`, which may be left out,
// becomes the augment in which the node was found, or null.
ZR_API ZrNode *ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(const ZrMod *module,
                                                         const char *augmentTarget,
                                                         const char *restPath, ZrNode **augmentOut);
// The target of an augment of the module's own nodes, without the context. 0 with null when the
// target lies in another module or is not there; the split's failure leaves `*nodeOut` alone.
ZR_API uint32_t ZRS_MOD_FindAugNodeTargetInSelfMod(const ZrMod *module, const ZrNode *augment,
                                                   ZrNode **nodeOut);
// A node's path as a new text, freed with the free hook; null when it is longer than 3095
// characters or memory runs out. ZR_CTX_GetTargetNode() finds the node by it again.
ZR_API char *ZRS_NODE_PrintPath(const ZrNode *node);
// Writes the path behind the first `*length` characters and adds to them: 0, 22 for a null
// argument, 12 when it does not fit.
ZR_API uint32_t ZRS_NODE_PrintJsonPathRecursive(const ZrNode *node, char *buffer, uint32_t size,
                                                uint32_t *length);
}

namespace zr {
class ChildIndex;

// ZR_CTX_GetTargetNode() for many paths in a row, with an index that may be null.
ZrNode *FindTarget(const ZrCtx *ctx, const char *path, ZrNode **augmentOut, ChildIndex *index);
} // namespace zr
