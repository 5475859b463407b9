// SPDX-License-Identifier: Apache-2.0
// Merging one module record into another of the same context: the parts of a module that stands in
// several files. Global definitions that the destination lacks are added, those that it has must
// agree, and schema nodes that it lacks are moved into its tree. A failure stops the merge; what
// was merged before it stays. The messages are recorded under the destination's name.
#pragma once

#include <zrschema/types.h>

#include <cstdint>

#include "model/module_records.h"
#include "model/node_record.h"
#include "platform/memory.h"

extern "C" {
// Merges everything of `source`, which the caller then frees with whatever was not moved.
ZR_API uint32_t ZRS_MOD_MergeTwoModuleInSameCtx(ZrMod *destination, ZrMod *source);
// The members, kind by kind.
ZR_API uint32_t ZRS_MOD_MergeGlobalDefData(ZrMod *destination, const ZrMod *source);
// The four lists of top-level nodes.
ZR_API uint32_t ZRS_MOD_MergeTreeNodeData(ZrMod *destination, ZrMod *source);

// One kind of member each. ZR_OK, ZR_ERR_INVALID for members that disagree or cannot be added, or
// ZR_ERR_NO_MEMORY.

// Imports, by prefix.
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberImport(ZrMod *destination, const ZrMod *source);
// Includes, by the name of the submodule.
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberInclude(ZrMod *destination, const ZrMod *source);
// Features, by name; the if-features must agree. An added one is off.
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberFeature(ZrMod *destination, const ZrMod *source);
// Identities, by name; bases and if-features must agree (docs/oddities.md: descriptions).
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberIdentity(ZrMod *destination, const ZrMod *source);
// Extensions, by name; the argument must agree.
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberExtension(ZrMod *destination, const ZrMod *source);
// Deviations; each one is added.
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberDeviation(ZrMod *destination, const ZrMod *source);
// Typedefs, by name; one that is there is kept without a comparison.
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberTypeDef(ZrMod *destination, const ZrMod *source);
}

// Merging of schema trees (merge_nodes.cpp): two lists of siblings are compared position by
// position, and nodes that the destination lacks are moved to its end. Statuses are ZR_OK,
// ZR_ERR_INVALID for trees that disagree and ZR_ERR_NO_MEMORY.

// How the source node of a pair differs from the destination node.
enum ZrsDiffReason : uint32_t {
    ZRS_DIFF_NONE = 0,
    ZRS_DIFF_EXTENSION = 1, // only the source has extension instances
    ZRS_DIFF_NAME = 2,
    ZRS_DIFF_OTHER = 4 // in flags (whether an augment is coupled is none), in kind, or in the
                       // number of extension instances
};

extern "C" {
// Merges two lists of siblings with everything below them. The slots are the list heads in their
// owners; `parent` is the destination's, null at the top of the module.
ZR_API uint32_t ZRS_NODE_MergeTreeNodeFromRootStart(ZrNode **destinationList, ZrNode **sourceList,
                                                    ZrNode *parent, ZrMod *destinationModule);
// The same for the lists alone, without what is below them.
ZR_API uint32_t ZRS_NODE_CompareAndMergeNodeList(ZrNode **destinationList, ZrNode **sourceList,
                                                 ZrNode *parent, ZrMod *destinationModule);
// The ZrsDiffReason of a pair; ZRS_DIFF_OTHER when one is null.
ZR_API uint32_t ZRS_NODE_CompareTwoTreeNodeSelfData(const ZrNode *destination,
                                                    const ZrNode *source);
// The name of a ZrsDiffReason in messages; "unknown" for a number that is none.
ZR_API const char *ZRS_NODE_GetDiffReasonName(uint32_t reason);
// Does what the difference of a pair asks for. On ZRS_DIFF_NAME the source node and its following
// siblings go to the end of the destination's list, and the source slot is cleared when the node
// was its head.
ZR_API uint32_t ZRS_NODE_MergeNodeListWithDiffReason(ZrNode *destination, ZrNode *source,
                                                     ZrNode **sourceList, uint32_t reason,
                                                     ZrMod *destinationModule);
// Gives the destination, which must have none, a copy of the source's extension instances.
ZR_API uint32_t ZRS_NODE_MergeDstNodeWithMimExtInst(ZrNode *destination, const ZrNode *source);
// ZR_OK when no node from `source` on has the name of one from `destination` on, else
// ZR_ERR_INVALID.
ZR_API uint32_t ZRS_NODE_CheckPostSiblingNodeUnique(const ZrNode *destination,
                                                    const ZrNode *source);
// Moves `source` and its following siblings to `anchor`, as its last children or as its last
// siblings (ZrsLinkMode). A node with a type that cannot be resolved in the module is the last one
// that is moved.
ZR_API uint32_t ZRS_NODE_MergeNodeListToTgtWithTravType(ZrNode *anchor, ZrNode *source,
                                                        uint32_t mode, ZrMod *destinationModule);
// Moves what is left of a longer source list; at the top of a module only into a list that is empty
// (docs/oddities.md).
ZR_API uint32_t ZRS_NODE_MoveExtraNodeList(ZrNode **destinationList, ZrNode *source, ZrNode *parent,
                                           ZrMod *destinationModule);
// Makes the module the owner of the node and of everything below it, and resolves their types in
// it. ZR_OK, or ZR_ERR_INVALID when a typedef is not there; the module is set on every node all the
// same.
ZR_API uint32_t ZRS_NODE_RefreshNodeTreeToZrMod(ZrNode *root, ZrMod *module);
// Records that a node could not be merged, and why; `parent` is null at the top of the module.
ZR_API void ZRS_NODE_RecordNodeListMergeError(const ZrMod *module, const ZrNode *node,
                                              const ZrNode *parent, uint32_t reason);
// Records that what is left of a longer source list could not be moved.
ZR_API void ZRS_NODE_RecordExtraNodeListMergeError(const ZrMod *module, const ZrNode *node,
                                                   const ZrNode *parent);
}

// Typedef references while modules are merged (merge_nodes.cpp). A derived type points into its
// module's typedef array, and that array moves when a typedef is added to it; so the pointers of
// the whole module are dropped before it grows. A dropped pointer does no harm: the typedef is
// looked up by its name until the reference is resolved again, which linking the module into its
// context does.

namespace zr {
// Drops the resolved typedefs of a type and of its union members.
void ForgetResolved(ZrtRealType *type);
// The same for every type of the module: its typedefs, and its nodes wherever they stand.
void ForgetResolvedOfModule(ZrMod *module);
// Resolves the type's references to typedefs of `module`, also those that were resolved before.
// ZR_OK, or ZR_ERR_INVALID when one is not there.
uint32_t ResolveAgain(ZrtRealType *type, const ZrMod *module);
} // namespace zr

// A module that is coupled when a further part of it arrives (late_parts.cpp).

// Coupled augments while a further part is merged into their module, or into the module in which
// their nodes stand: they step out of their targets, so that the merge meets the module's own
// statements, in their own lists, and nothing else. Then each goes back to its place.

namespace zr {

class AugmentsAside {
public:
    explicit AugmentsAside(ZrMod *module) : module_(module) {}

    // Takes the nodes of the augments out of their targets and puts them under their augments. The
    // augments stay marked as coupled, but for two kinds, which are coupled anew with the module:
    // the module's own ones without nodes, and all whose target is an "input" or "output" that
    // coupling made; such a node goes. ZR_OK, or ZR_ERR_NO_MEMORY with nothing changed.
    uint32_t TakeOut();

    // Puts the nodes back where they stood. Nodes that the module's augments have won stand behind
    // those that they had; its new augments of its own nodes are coupled before the other modules'
    // return, as they are when all parts come together.
    void PutBack();

private:
    struct Stretch {
        ZrNode *augment;
        ZrNode *target;
        ZrNode *next; // the node behind the stretch, or null
    };

    bool IsConcerned(const ZrNode *augment) const;
    uint32_t CountConcerned() const;
    void TakeOutOf(const ZrMod *owner);
    void TakeOutOne(ZrNode *augment);
    void CoupleNewAugments() const;

    ZrMod *module_;
    Owned<Stretch> stretches_; // in the order in which they were taken out
    uint32_t count_ = 0;
};

} // namespace zr

// A module that has been coupled, brought back to what its files say. Couplings change a module's
// own nodes: deviations change and remove them, and nodes that its augments add take flags from
// their targets. A further part is merged with the nodes as they were read.

namespace zr {

// Whether couplings may have changed the module's own nodes.
bool MayDifferFromFiles(const ZrMod *module);

// Gives the module's nodes the properties of those of `original`, which was read from the same
// files once more and loses what is taken from it, and moves those that are missing into the
// module; deviations of the module's nodes count as not applied from then on. No augment's nodes
// may stand in the module's trees. Nodes and texts of the module stay where they are. False, with
// nothing changed, when the module has nodes that the original has not.
bool BringBackOriginal(ZrMod *module, ZrMod *original);

} // namespace zr
