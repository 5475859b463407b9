// What the modules that augment or deviate a module do when it is loaded or about to go.
#pragma once

#include <zrschema/types.h>

#include <cstdint>

// What happens to a module that others change.
enum ZrsModuleEvent : uint32_t { ZRS_MODULE_LOADED = 0, ZRS_MODULE_UNLOADING = 1 };

// Handler of one kind of relation; `extra` is the caller's of the notification, for handlers that
// need more than the names.
typedef uint32_t (*ZrsCoupleEventFunc)(ZrCtx *ctx, const char *changedModuleName,
                                       const char *dependentModuleName, void *extra);

extern "C" {
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
