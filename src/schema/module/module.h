// SPDX-License-Identifier: Apache-2.0
// Whole modules: birth, the augments of one, what it does when others come and go, its end and the
// end of all. What applications ask of a module stands in zrschema/module.h.
#pragma once

#include <zrschema/context.h>
#include <zrschema/module.h>

#include "model/module_records.h"
#include "model/scope.h"

// What happens to a module that others change.
enum ZrsModuleEvent : uint32_t { ZRS_MODULE_LOADED = 0, ZRS_MODULE_UNLOADING = 1 };

// Handler of one kind of relation; `extra` is the caller's of the notification, for handlers that
// need more than the names.
typedef uint32_t (*ZrsCoupleEventFunc)(ZrCtx *ctx, const char *changedModuleName,
                                       const char *dependentModuleName, void *extra);

extern "C" {
// The end (module_destroy.cpp).

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

// What the modules that augment or deviate a module do when it is loaded or about to go
// (change_events.cpp).

// Runs the handler of every relation of the module, newest relation first; their results are
// ignored. Always ZR_OK.
ZR_API uint32_t ZRS_MOD_NotifyModuleChangeEvent(ZrCtx *ctx, const char *moduleName, uint32_t event,
                                                void *extra);
// The handler of a ZrRelationKind and a ZrsModuleEvent; null for any other numbers.
ZR_API ZrsCoupleEventFunc ZRS_MOD_GetCoupleEvtProcFunc(uint32_t relationKind, uint32_t event);

// The handlers give ZR_OK, or ZR_ERR_FAILED when the dependent module is not loaded.

// Couples the dependent module's augments that are not coupled yet, and its deviations after them.
ZR_API uint32_t ZRS_MOD_CoupleAugmentFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                                 const char *dependentModuleName, void *extra);
// Takes back the dependent module's augments into the changed module.
ZR_API uint32_t ZRS_MOD_UnCoupleAugmentFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                                   const char *dependentModuleName, void *extra);
// Applies the dependent module's deviations that wait for a target.
ZR_API uint32_t ZRS_MOD_CoupleDeviationFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                                   const char *dependentModuleName, void *extra);
// Lets the dependent module's deviations of the changed module be applied afresh; reverts nothing.
ZR_API uint32_t ZRS_MOD_UnCoupleDeviationFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                                     const char *dependentModuleName, void *extra);
}

namespace zr {

// A zeroed module record of the context, standing in no tree; null when memory runs out.
ZrMod *NewModule(ZrCtx *ctx);

// The augments of a module (module_augments.cpp).

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
