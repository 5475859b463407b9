// Augments (RFC 7950, section 7.17): conditions passed down, coupling and uncoupling.
//
// An augment is a node whose name is its target path and whose children are the nodes that it
// adds. Coupling moves the children to the end of the target's children; the augment keeps its
// first and last link, which then mark a stretch of the target's chain. A coupled augment cannot
// be freed.
#pragma once

#include <zrschema/context.h>

#include "foundation/dict.h"
#include "foundation/statement_ids.h"
#include "foundation/text.h"
#include "model/node_record.h"

extern "C" {
// Passes the "when" and the if-features of an augment that was just parsed down to its children,
// actions and notifications left out. 0, 12 or 22.
ZR_API uint32_t ZRS_NODE_InheritAugNodeEvalToAllChildNode(ZrDict *dict, ZrNode *augment);
// Passes them down to one child; `condition` is the rewritten "when", or null.
ZR_API uint32_t ZRS_NODE_InheritAugNodeEvalToChildNode(ZrDict *dict, const ZrNode *augment,
                                                       ZrNode *child, const char *condition);
// The condition becomes the child's, or is put before the child's own with "and". 0 or 22.
ZR_API uint32_t ZRS_NODE_InheritAugNodeWhenCondToChildNode(ZrDict *dict, ZrNode *child,
                                                           const char *condition);
// Appends the augment's if-features that the child does not have. 0 or the failing append's status.
ZR_API uint32_t ZRS_NODE_InheritAugNodeIfFeatArrayToChildNode(ZrDict *dict, const ZrNode *augment,
                                                              ZrNode *child);
// The condition as it reads one level further down: every path that starts at the context node
// climbs one level first. A new text, freed with zr::Free; null when the condition cannot be read.
ZR_API char *ZRS_NODE_GetParentCond(const char *condition);
// "(a) and (b)" as a new text, freed with zr::Free; null for a null text and without memory.
ZR_API char *ZRS_NODE_CombineTwoWhenCondition(const char *a, const char *b);

// Moves the augment's children into its target, making a missing input or output node. 0 (also
// when it is coupled already), or 22 for null, without a target, and when the target is a leaf,
// leaf-list, anydata, anyxml, rpc or action.
ZR_API uint32_t ZRS_NODE_CoupleAugmentNode(ZrNode *augment);
// Takes the children back; needs no memory for it. 0, or 22 unless the augment is coupled and its
// target is there.
ZR_API uint32_t ZRS_NODE_UnCoupleAugmentNode(ZrNode *augment);
// The relinking of the two. Uncoupling gives 22 when the links are not those of a coupled augment
// of this target.
ZR_API uint32_t ZRS_NODE_CoupleAugmentNodeAndTargetNode(ZrNode *augment, ZrNode *target);
ZR_API uint32_t ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(ZrNode *augment, ZrNode *target);
// Keeps the stretch of a coupled augment right when `node`, still linked, is about to leave it.
ZR_API void ZRS_NODE_RemoveCoupledAugmentNodeChildLink(ZrNode *augment, const ZrNode *node);
// Calls the context's first-augment-child relink callback.
ZR_API void ZRS_NODE_NotifyAugmentFirstChildNodeRelink(ZrNode *node);

// The input or output node that the path names, made in the rpc or action when it is not there;
// null when the path names no such node.
ZR_API ZrNode *ZRS_NODE_UpdateTargetPathWithInputOutput(ZrCtx *ctx, const char *targetPath);
ZR_API ZrNode *ZRS_NODE_ConstructInputOutputNodeIfMatch(ZrCtx *ctx, const char *headPath,
                                                        const char *lastStep);
// The rpc or action of the head path, and the kind that the last step asks for; null when either
// does not fit.
ZR_API ZrNode *ZRS_NODE_GetAugRpcParentNodeAndChildType(ZrCtx *ctx, const char *headPath,
                                                        const char *lastStep, uint32_t *kindOut);
}

namespace zr {

// The flags of an augment that coupling sets, and no statement.
constexpr uint32_t kFlagsOfCoupling = uint32_t{ZRS_FLAG_COUPLED} | uint32_t{ZRS_FLAG_MADE_TARGET};

// Records under another load stage; at the end of the scope the stage is what it was.
class ScopedLoadStage {
public:
    ScopedLoadStage(ZrCtx *ctx, uint32_t stage) : ctx_(ctx), before_(ZR_CTX_GetLoadStage(ctx))
    {
        ZR_CTX_SetLoadStage(ctx, stage);
    }
    ~ScopedLoadStage() { ZR_CTX_SetLoadStage(ctx_, before_); }
    ScopedLoadStage(const ScopedLoadStage &) = delete;
    ScopedLoadStage &operator=(const ScopedLoadStage &) = delete;

private:
    ZrCtx *ctx_;
    uint32_t before_;
};

using ModuleNameText = char[kNameSize];

// The module that a target path names last, which owns the target: false for a path without one.
bool LastNamedModule(const char *path, ModuleNameText &nameOut);

// Whether the node is part of a schema; one that hangs in an augment without a target is not yet.
bool StandsInSchema(const ZrNode *node);

// Whether `path` is `root` or leads to something below it.
bool IsPathAtOrBelow(const char *path, const char *root);

// ZRS_NODE_CoupleAugmentNode for an augment that is not coupled, with the target that its path
// leads to, or null.
uint32_t CoupleAugment(ZrNode *augment, ZrNode *target);

// Takes a coupled augment's nodes back without telling the application, for an augment that is
// about to be freed with them.
void TakeBackAugmentNodes(ZrNode *augment);

// Couples the module's augments that are not coupled yet and records a relation for each; load
// errors of the coupling are cleared when none is left uncoupled. 0, or the status of one that
// stays uncoupled. Augments whose target a "not-supported" deviation removed are dropped. Other
// modules' deviations that waited for the nodes are applied; the module's own are left to the
// caller, who applies them next.
uint32_t CoupleModuleAugments(ZrMod *module);

// The same after a change elsewhere: the module's own deviations are applied too.
void RetryModuleAugments(ZrMod *module);

// Records that augments of the module are not coupled, unless that is recorded already.
void RecordUncoupledAugments(const ZrMod *module);

// Whether every augment of the module is coupled; clears the load errors of the coupling if so.
bool SettleModuleAugments(ZrMod *module);

// Uncouples the module's augments; an input or output node that was made for one of them and that
// nothing needs any more goes too.
void UncoupleModuleAugments(ZrMod *module);

// Uncouples the augments, of all modules, of "input" and "output" nodes of the module that were
// made for them; these nodes go.
void UncoupleMadeTargetsIn(const ZrMod *module);

} // namespace zr
