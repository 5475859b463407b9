// Merging one module record into another of the same context: the parts of a module that stands in
// several files. Global definitions that the destination lacks are added, those that it has must
// agree, and schema nodes that it lacks are moved into its tree. A failure stops the merge; what
// was merged before it stays. The messages are recorded under the destination's name.
#pragma once

#include "model/module_record.h"

extern "C" {
// Merges everything of `source`, which the caller then frees with whatever was not moved.
ZR_API uint32_t ZRS_MOD_MergeTwoModuleInSameCtx(ZrMod *destination, ZrMod *source);
// The members, kind by kind.
ZR_API uint32_t ZRS_MOD_MergeGlobalDefData(ZrMod *destination, const ZrMod *source);
// The four lists of top-level nodes.
ZR_API uint32_t ZRS_MOD_MergeTreeNodeData(ZrMod *destination, ZrMod *source);

// One kind of member each. 0, 22 for members that disagree or cannot be added, 12 when memory
// runs out.
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberImport(ZrMod *destination, const ZrMod *source);
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberInclude(ZrMod *destination, const ZrMod *source);
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberFeature(ZrMod *destination, const ZrMod *source);
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberIdentity(ZrMod *destination, const ZrMod *source);
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberExtension(ZrMod *destination, const ZrMod *source);
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberDeviation(ZrMod *destination, const ZrMod *source);
ZR_API uint32_t ZRS_MOD_MergeNonNodeMemberTypeDef(ZrMod *destination, const ZrMod *source);
}
