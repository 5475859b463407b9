// Deviations (RFC 7950, section 7.20.3) applied to their live targets.
//
// A deviation changes its target in place and cannot be reverted: the modules that it changed are
// loaded again instead. Messages are recorded under the deviating module's name.
#pragma once

#include "model/module_records.h"

// Of a deviation's flags: applying it failed part of the way, and what was changed stays. It is
// not tried again on the same target, since the changes would be made twice.
enum : uint16_t { ZRS_DEVIATION_FAILED = 0x2 };

// Of a deviate's flags: its identity defaults carry module names already.
enum : uint16_t { ZRS_DEVIATE_DEFAULTS_QUALIFIED = 0x8000 };

extern "C" {
// Applies one deviation. 0, also when it is applied already or its target is not there, or the
// status of the first deviate that fails.
ZR_API uint32_t ZRS_MOD_CoupleDeviation(ZrMod *module, ZrsDeviation *deviation);
// Applies one deviate; `augment` is the augment that holds the target, or null. A kind that does
// not exist gives 1.
ZR_API uint32_t ZRS_MOD_CoupleDeviate(ZrMod *module, ZrsDeviation *deviation, ZrsDeviate *deviate,
                                      ZrNode *target, ZrNode *augment);
// Gives the defaults module names when the type in force is an identityref. 0 or 22.
ZR_API uint32_t ZRS_MOD_RefreshDeviateDefaults(ZrMod *module, const ZrNode *target,
                                               ZrsDeviate *deviate);

// "add". Each step gives 0, 1 for a rule that is broken or a kind of node that has no such
// property, or 12.
ZR_API uint32_t ZRS_MOD_CoupleDevAdd(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevAddFlag(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_AddNodeMandatory(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevAddDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_AddChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_AddLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_AddLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevAddMusts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevAddUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevAddExtInsts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

// "delete"; the steps' statuses are those of "add".
ZR_API uint32_t ZRS_MOD_CoupleDevDel(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevDelDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_DelChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_DelLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_DelLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevDelMusts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevDelUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevDelExtInsts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

// "replace"; the steps' statuses are those of "add". The flags cannot fail.
ZR_API uint32_t ZRS_MOD_CoupleDevRepl(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API void ZRS_MOD_CoupleDevReplFlag(const ZrsDeviate *deviate, ZrNode *target);
ZR_API void ZRS_MOD_ReplNodeConfig(const ZrsDeviate *deviate, ZrNode *target);
ZR_API void ZRS_MOD_ReplNodeMandatory(const ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevReplDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_ReplChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_ReplLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_ReplLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevReplType(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
ZR_API uint32_t ZRS_MOD_CoupleDevReplUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

// "not-supported": the target goes with its subtree, and so do the augments that point into it.
ZR_API uint32_t ZRS_MOD_CoupleDevNotSup(ZrMod *module, const ZrsDeviation *deviation,
                                        ZrNode *target, ZrNode *augment);
// Drop the augments whose target path is the deviation path or leads below it: of all modules, or
// of one. A relation to the deviating module is recorded for each module that loses one; without
// memory for it nothing is dropped. 0 or 12.
ZR_API uint32_t ZRS_MOD_RemoveAllModAugmentStartsWithDeviationPath(ZrMod *targetModule,
                                                                   const char *deviatingModuleName,
                                                                   const char *deviationPath);
ZR_API uint32_t ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(ZrMod *module,
                                                                   const char *deviatingModuleName,
                                                                   const char *deviationPath);

// Call the context's before-deviate-not-supported and before-deviate-extension-instances
// callbacks.
ZR_API void ZRS_NODE_NotifyBeforeDeviateNotSupport(ZrNode *node);
ZR_API void ZRS_NODE_NotifyBeforeExtInstsChange(ZrNode *node);
}

namespace zr {

// Applies the module's deviations that were not tried on their targets yet and records a relation
// for each. 0 or the status of the first that fails.
uint32_t CoupleModuleDeviations(ZrMod *module);
// The same after a change elsewhere; a failure that recorded nothing itself is recorded here.
void RetryModuleDeviations(ZrMod *module);

// The module with an applied "not-supported" deviation at or above the path, or null.
ZrMod *FindRemover(const ZrCtx *ctx, const char *path);

// Drops one augment that is not coupled, for a deviation of `remover` that removed its target. 0,
// or 12 with nothing changed.
uint32_t DropAugment(ZrNode *augment, const ZrMod *remover);

} // namespace zr
