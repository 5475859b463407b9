// SPDX-License-Identifier: Apache-2.0
// Augments (RFC 7950, section 7.17): conditions passed down, coupling and uncoupling.
//
// An augment is a node whose name is its target path and whose children are the nodes that it
// adds. Coupling moves the children to the end of the target's children; the augment keeps its
// first and last link, which then mark a stretch of the target's chain. A coupled augment cannot
// be freed.
#pragma once

#include <zrschema/context.h>

#include "foundation/dict.h"
#include "model/node_record.h"

extern "C" {
// What an augment passes down (augment_conditions.cpp). Texts are new ones, freed with zr::Free.

// Passes the "when" and the if-features of an augment that was just parsed down to its children,
// actions and notifications left out. ZR_OK, ZR_ERR_NO_MEMORY or ZR_ERR_INVALID.
ZR_API uint32_t ZRS_NODE_InheritAugNodeEvalToAllChildNode(ZrDict *dict, ZrNode *augment);
// Passes them down to one child; `condition` is the rewritten "when", or null.
ZR_API uint32_t ZRS_NODE_InheritAugNodeEvalToChildNode(ZrDict *dict, const ZrNode *augment,
                                                       ZrNode *child, const char *condition);
// The condition becomes the child's, or is put before the child's own with "and". ZR_OK or
// ZR_ERR_INVALID.
ZR_API uint32_t ZRS_NODE_InheritAugNodeWhenCondToChildNode(ZrDict *dict, ZrNode *child,
                                                           const char *condition);
// Appends the augment's if-features that the child does not have. ZR_OK or the failing append's
// status.
ZR_API uint32_t ZRS_NODE_InheritAugNodeIfFeatArrayToChildNode(ZrDict *dict, const ZrNode *augment,
                                                              ZrNode *child);
// The condition as it reads one level further down: every path that starts at the context node
// climbs one level first. Null when the condition cannot be read. For callers outside the library.
ZR_API char *ZRS_NODE_GetParentCond(const char *condition);
// "(a) and (b)"; null for a null text and without memory.
ZR_API char *ZRS_NODE_CombineTwoWhenCondition(const char *a, const char *b);

// Coupling (augment.cpp).

// Moves the augment's children into its target, making a missing input or output node. ZR_OK (also
// when it is coupled already), or ZR_ERR_INVALID for null, without a target, and when the target is
// a leaf, leaf-list, anydata, anyxml, rpc or action. For callers outside the library.
ZR_API uint32_t ZRS_NODE_CoupleAugmentNode(ZrNode *augment);
// Takes the children back; needs no memory for it. ZR_OK, or ZR_ERR_INVALID unless the augment is
// coupled and its target is there.
ZR_API uint32_t ZRS_NODE_UnCoupleAugmentNode(ZrNode *augment);
// The relinking of the first of the two.
ZR_API uint32_t ZRS_NODE_CoupleAugmentNodeAndTargetNode(ZrNode *augment, ZrNode *target);
// The relinking of the second. ZR_ERR_INVALID when the links are not those of a coupled augment of
// this target.
ZR_API uint32_t ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(ZrNode *augment, ZrNode *target);
// Keeps the stretch of a coupled augment right when `node`, still linked, is about to leave it.
ZR_API void ZRS_NODE_RemoveCoupledAugmentNodeChildLink(ZrNode *augment, const ZrNode *node);
// Calls the context's first-augment-child relink callback.
ZR_API void ZRS_NODE_NotifyAugmentFirstChildNodeRelink(ZrNode *node);

// Makes the input or output node that the path names, in an rpc or action that is there; null for
// another path and without memory.
ZR_API ZrNode *ZRS_NODE_UpdateTargetPathWithInputOutput(ZrCtx *ctx, const char *targetPath);
// The same for a path that is cut before its last step.
ZR_API ZrNode *ZRS_NODE_ConstructInputOutputNodeIfMatch(ZrCtx *ctx, const char *headPath,
                                                        const char *lastStep);
// The rpc or action of the head path, and the kind that the last step asks for; null when either
// does not fit.
ZR_API ZrNode *ZRS_NODE_GetAugRpcParentNodeAndChildType(ZrCtx *ctx, const char *headPath,
                                                        const char *lastStep, uint32_t *kindOut);
}

namespace zr {

inline bool IsCoupled(const ZrNode *augment)
{
    return (augment->flags & ZRS_FLAG_COUPLED) != 0;
}

// ZRS_NODE_CoupleAugmentNode for an augment that is not coupled, with the target that its path
// leads to, or null.
uint32_t CoupleAugment(ZrNode *augment, ZrNode *target);

// Takes a coupled augment's nodes back without telling the application, for an augment that is
// about to be freed with them.
void TakeBackAugmentNodes(ZrNode *augment);

// Whether every augment of the module is coupled; clears the load errors of the coupling if so.
bool SettleModuleAugments(ZrMod *module);

} // namespace zr
