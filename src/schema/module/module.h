// Whole modules: birth, the augments of one, its end and the end of all. What applications ask of a
// module stands in zrschema/module.h.
#pragma once

#include <zrschema/context.h>
#include <zrschema/module.h>

#include "model/module_records.h"
#include "model/scope.h"

extern "C" {
// One half of freeing a module: its header and member arrays.
ZR_API void ZRS_MOD_DestroyNonNodeMember(ZrMod *module);
// The other half: its four chains of nodes. Coupled augments must be uncoupled before.
ZR_API void ZRS_MOD_DestroyNodeMember(ZrMod *module);
// Frees the record with everything in it; null is accepted. The module stands in no tree any more.
ZR_API void ZRS_MOD_Free(ZrMod *module);

// Takes the module out of the context's trees, deletes its load errors and frees it.
ZR_API void ZR_CTX_DestroyModuleNode(ZrCtx *ctx, ZrMod *module);
// Uncouples all augments of all modules, then destroys every module in name order.
ZR_API void ZR_CTX_DeInitModuleTree(ZrCtx *ctx);
}

namespace zr {

// A zeroed module record of the context, standing in no tree; null when memory runs out.
ZrMod *NewModule(ZrCtx *ctx);

// Couples the module's augments that are not coupled yet and records a relation for each; load
// errors of the coupling are cleared when none is left uncoupled. ZR_OK, or the status of one that
// stays uncoupled. Augments whose target a "not-supported" deviation removed are dropped. Other
// modules' deviations that waited for the nodes are applied; the module's own are left to the
// caller, who applies them next.
uint32_t CoupleModuleAugments(ZrMod *module);

// The same after a change elsewhere: the module's own deviations are applied too.
void RetryModuleAugments(ZrMod *module);

// Records that augments of the module are not coupled, unless that is recorded already.
void RecordUncoupledAugments(const ZrMod *module);

// Uncouples the module's augments; an input or output node that was made for one of them and that
// nothing needs any more goes too.
void UncoupleModuleAugments(ZrMod *module);

// Uncouples the augments, of all modules, of "input" and "output" nodes of the module that were
// made for them; these nodes go.
void UncoupleMadeTargetsIn(const ZrMod *module);

} // namespace zr
