// SPDX-License-Identifier: Apache-2.0
// Deviations (RFC 7950, section 7.20.3) applied to their live targets.
//
// A deviation changes its target in place and cannot be reverted: the modules that it changed are
// loaded again instead. Messages are recorded under the deviating module's name.
#pragma once

#include <string_view>

#include "model/module_records.h"
#include "platform/memory.h"

extern "C" {
// Applies one deviation. ZR_OK, also when it is applied already or its target is not there, or the
// status of the first deviate that fails. For callers outside the library.
ZR_API uint32_t ZRS_MOD_CoupleDeviation(ZrMod *module, ZrsDeviation *deviation);
// Applies one deviate; `augment` is the augment that holds the target, or null. ZR_ERR_FAILED for
// no ZrsDeviateKind. For callers outside the library.
ZR_API uint32_t ZRS_MOD_CoupleDeviate(ZrMod *module, ZrsDeviation *deviation, ZrsDeviate *deviate,
                                      ZrNode *target, ZrNode *augment);
// Gives the defaults module names when the type in force is an identityref. ZR_OK or
// ZR_ERR_INVALID.
ZR_API uint32_t ZRS_MOD_RefreshDeviateDefaults(ZrMod *module, const ZrNode *target,
                                               ZrsDeviate *deviate);

// "add": all that the deviate carries, then one step a property. Each step gives ZR_OK,
// ZR_ERR_FAILED for a rule that is broken or a kind of node that has no such property, or
// ZR_ERR_NO_MEMORY.

// All that the deviate carries, step by step; the first step that fails ends it.
ZR_API uint32_t ZRS_MOD_CoupleDevAdd(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// "config" and "mandatory".
ZR_API uint32_t ZRS_MOD_CoupleDevAddFlag(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// "mandatory", for a target without one.
ZR_API uint32_t ZRS_MOD_AddNodeMandatory(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Defaults, by the kind of the target.
ZR_API uint32_t ZRS_MOD_CoupleDevAddDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// The default case of a choice that has none.
ZR_API uint32_t ZRS_MOD_AddChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// The default of a leaf that has none.
ZR_API uint32_t ZRS_MOD_AddLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Defaults that the leaf-list does not have yet.
ZR_API uint32_t ZRS_MOD_AddLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Musts, behind those of the target.
ZR_API uint32_t ZRS_MOD_CoupleDevAddMusts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Units, for a target that has none.
ZR_API uint32_t ZRS_MOD_CoupleDevAddUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Extension instances that the target does not have yet.
ZR_API uint32_t ZRS_MOD_CoupleDevAddExtInsts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

// "delete"; the steps and their statuses are like those of "add".

// All that the deviate carries, step by step; the first step that fails ends it.
ZR_API uint32_t ZRS_MOD_CoupleDevDel(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Defaults, by the kind of the target.
ZR_API uint32_t ZRS_MOD_CoupleDevDelDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// The default case of a choice.
ZR_API uint32_t ZRS_MOD_DelChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// The default of a leaf.
ZR_API uint32_t ZRS_MOD_DelLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Defaults of a leaf-list; it must have each of them.
ZR_API uint32_t ZRS_MOD_DelLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Musts, by their conditions; the target must have each of them.
ZR_API uint32_t ZRS_MOD_CoupleDevDelMusts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Units.
ZR_API uint32_t ZRS_MOD_CoupleDevDelUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Extension instances; those that the target lacks are passed over. One of ietf-netconf-acm stays,
// with a message.
ZR_API uint32_t ZRS_MOD_CoupleDevDelExtInsts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

// "replace"; the steps and their statuses are like those of "add". The flags cannot fail.

// All that the deviate carries: the flags, then step by step; the first step that fails ends it.
ZR_API uint32_t ZRS_MOD_CoupleDevRepl(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// "config" and "mandatory".
ZR_API void ZRS_MOD_CoupleDevReplFlag(const ZrsDeviate *deviate, ZrNode *target);
// "config", which then holds below any parent.
ZR_API void ZRS_MOD_ReplNodeConfig(const ZrsDeviate *deviate, ZrNode *target);
// "mandatory", whether the target has one or not.
ZR_API void ZRS_MOD_ReplNodeMandatory(const ZrsDeviate *deviate, ZrNode *target);
// Defaults, by the kind of the target.
ZR_API uint32_t ZRS_MOD_CoupleDevReplDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// The default case of a choice that has one.
ZR_API uint32_t ZRS_MOD_ReplChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// The default of a leaf that has one.
ZR_API uint32_t ZRS_MOD_ReplLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// The defaults of a leaf-list that has some.
ZR_API uint32_t ZRS_MOD_ReplLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// The type of a leaf or leaf-list.
ZR_API uint32_t ZRS_MOD_CoupleDevReplType(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);
// Units, for a target that has some.
ZR_API uint32_t ZRS_MOD_CoupleDevReplUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

// "not-supported": the target goes with its subtree, and so do the augments that point into it.
// For callers outside the library.
ZR_API uint32_t ZRS_MOD_CoupleDevNotSup(ZrMod *module, const ZrsDeviation *deviation,
                                        ZrNode *target, ZrNode *augment);
// Drops the augments, of all modules, whose target path is the deviation path or leads below it. A
// relation to the deviating module is recorded for each module that loses one; without memory for
// it nothing is dropped. ZR_OK, ZR_ERR_NO_MEMORY or ZR_ERR_INVALID. For callers outside the
// library.
ZR_API uint32_t ZRS_MOD_RemoveAllModAugmentStartsWithDeviationPath(ZrMod *targetModule,
                                                                   const char *deviatingModuleName,
                                                                   const char *deviationPath);
// The same for the augments of one module. For callers outside the library.
ZR_API uint32_t ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(ZrMod *module,
                                                                   const char *deviatingModuleName,
                                                                   const char *deviationPath);

// Calls the context's before-deviate-not-supported callback.
ZR_API void ZRS_NODE_NotifyBeforeDeviateNotSupport(ZrNode *node);
// Calls the context's before-deviate-extension-instances callback.
ZR_API void ZRS_NODE_NotifyBeforeExtInstsChange(ZrNode *node);
}

namespace zr {

// Applies the module's deviations that were not tried on their targets yet and records a relation
// for each. ZR_OK or the status of the first that fails.
uint32_t CoupleModuleDeviations(ZrMod *module);
// The same after a change elsewhere; a failure that recorded nothing itself is recorded here.
void RetryModuleDeviations(ZrMod *module);

// The module with an applied "not-supported" deviation at or above the path, or null.
ZrMod *FindRemover(const ZrCtx *ctx, const char *path);

// FindRemover() for many paths, while no deviation is applied. After some questions the removed
// paths are put in order; without memory for that each is looked for as the first ones are.
class RemovedPaths {
public:
    ZrMod *FindRemover(const ZrCtx *ctx, const char *path);

private:
    struct Removal {
        const char *path;
        ZrMod *module;
    };

    bool Make(const ZrCtx *ctx);
    ZrMod *RemoverOf(std::string_view path) const;

    Owned<Removal> paths_;
    uint32_t count_ = 0;
    uint32_t questions_ = 0;
    bool isMade_ = false;
};

// Drops one augment that is not coupled, for a deviation of `remover` that removed its target.
// ZR_OK, or ZR_ERR_NO_MEMORY with nothing changed.
uint32_t DropAugment(ZrNode *augment, const ZrMod *remover);

} // namespace zr
