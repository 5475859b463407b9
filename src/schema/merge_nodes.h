// Merging of schema trees: two lists of siblings are compared position by position, and nodes that
// the destination lacks are moved to its end. Statuses are 0, 22 for trees that disagree and 12
// when memory runs out.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

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
// The ZrsDiffReason of a pair, and its name: "none", "extension", "name", "other" or "unknown".
ZR_API uint32_t ZRS_NODE_CompareTwoTreeNodeSelfData(const ZrNode *destination,
                                                    const ZrNode *source);
ZR_API const char *ZRS_NODE_GetDiffReasonName(uint32_t reason);
// Does what the difference of a pair asks for. On ZRS_DIFF_NAME the source node and its following
// siblings go to the end of the destination's list, and the source slot is cleared when the node
// was its head.
ZR_API uint32_t ZRS_NODE_MergeNodeListWithDiffReason(ZrNode *destination, ZrNode *source,
                                                     ZrNode **sourceList, uint32_t reason,
                                                     ZrMod *destinationModule);
// Gives the destination, which must have none, a copy of the source's extension instances.
ZR_API uint32_t ZRS_NODE_MergeDstNodeWithMimExtInst(ZrNode *destination, const ZrNode *source);
// 0 when no node from `source` on has the name of one from `destination` on, else 22.
ZR_API uint32_t ZRS_NODE_CheckPostSiblingNodeUnique(const ZrNode *destination,
                                                    const ZrNode *source);
// Moves `source` and its following siblings to `anchor`, as its last children or as its last
// siblings (ZrsLinkMode). A node with a type that cannot be resolved in the module is the last one
// that is moved.
ZR_API uint32_t ZRS_NODE_MergeNodeListToTgtWithTravType(ZrNode *anchor, ZrNode *source,
                                                        uint32_t mode, ZrMod *destinationModule);
// Moves what is left of a longer source list. Kept: at the top of a module whose list is not empty
// nothing is moved, and the nodes go with their source.
ZR_API uint32_t ZRS_NODE_MoveExtraNodeList(ZrNode **destinationList, ZrNode *source, ZrNode *parent,
                                           ZrMod *destinationModule);
// Makes the module the owner of the node and of everything below it, and resolves their types in
// it. 0, or 22 when a typedef is not there; the module is set on every node all the same.
ZR_API uint32_t ZRS_NODE_RefreshNodeTreeToZrMod(ZrNode *root, ZrMod *module);
// The messages of the two ways to fail; `parent` is null at the top of the module.
ZR_API void ZRS_NODE_RecordNodeListMergeError(const ZrMod *module, const ZrNode *node,
                                              const ZrNode *parent, uint32_t reason);
ZR_API void ZRS_NODE_RecordExtraNodeListMergeError(const ZrMod *module, const ZrNode *node,
                                                   const ZrNode *parent);
}
