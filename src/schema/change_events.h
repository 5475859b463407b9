// What the modules that augment or deviate a module do when it is loaded or about to go.
#pragma once

#include <zrschema/context.h>

enum ZrsModuleEvent : uint32_t { ZRS_MODULE_LOADED = 0, ZRS_MODULE_UNLOADING = 1 };

// Handler of one kind of relation: (context, changed module, dependent module, extra).
typedef uint32_t (*ZrsCoupleEventFunc)(ZrCtx *ctx, const char *changedModuleName,
                                       const char *dependentModuleName, void *extra);

extern "C" {
ZR_API uint32_t ZRS_MOD_NotifyModuleChangeEvent(ZrCtx *ctx, const char *moduleName, uint32_t event,
                                                void *extra);
ZR_API ZrsCoupleEventFunc ZRS_MOD_GetCoupleEvtProcFunc(uint32_t relationKind, uint32_t event);
ZR_API uint32_t ZRS_MOD_CoupleAugmentFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                                 const char *dependentModuleName, void *extra);
ZR_API uint32_t ZRS_MOD_UnCoupleAugmentFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                                   const char *dependentModuleName, void *extra);
ZR_API uint32_t ZRS_MOD_CoupleDeviationFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                                   const char *dependentModuleName, void *extra);
ZR_API uint32_t ZRS_MOD_UnCoupleDeviationFromDepMods(ZrCtx *ctx, const char *changedModuleName,
                                                     const char *dependentModuleName, void *extra);
}
